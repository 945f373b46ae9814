//===- plat/plat_clocale.h - Numbers in the C locale, whatever the host set ===//
//
// Numbers the library parses always use "." as the decimal point, also when
// the host has switched the process or its thread to a locale that writes ",".
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_CLOCALE_H
#define BFC_PLAT_CLOCALE_H

#include <locale.h>

namespace plat {

/// The C locale, made once and kept for the life of the process.
locale_t cLocale();

}  // namespace plat

#endif
