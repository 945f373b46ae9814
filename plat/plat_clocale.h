//===- plat/plat_clocale.h - Numbers in the C locale, whatever the host set ===//
//
// Numbers the library formats and parses always use "." as the decimal point,
// also when the host has switched the process or its thread to a locale that
// writes ",".
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_CLOCALE_H
#define BFC_PLAT_CLOCALE_H

#include <locale.h>

namespace plat {

/// The C locale, made once and kept for the life of the process.
locale_t cLocale();

/// Switches the calling thread to the C locale for its lifetime (printf family calls).
class CLocaleScope {
public:
  CLocaleScope() : m_Previous(uselocale(cLocale())) {}
  ~CLocaleScope() { uselocale(m_Previous); }
  CLocaleScope(CLocaleScope const &) = delete;
  CLocaleScope &operator=(CLocaleScope const &) = delete;

private:
  locale_t m_Previous;
};

}  // namespace plat

#endif
