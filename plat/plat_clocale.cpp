//===- plat/plat_clocale.cpp - The C locale object ----------------------===//
#include "plat/plat_clocale.h"

namespace plat {

locale_t cLocale() {
  static locale_t const c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return c;
}

}  // namespace plat
