//===- sys/sys_unit_table.h - The table of the four unit types ----------===//
//
// Built once when the library loads (plat/plat_load.cpp), with the names the
// host supplies, and destroyed when it unloads.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_UNIT_TABLE_H
#define BFC_SYS_UNIT_TABLE_H

#include "sys_convert.h"
#include "sys_string.h"

namespace sysunits {

/// Base units per unit, default precisions and the numbers of the names, by unit type.
constexpr long kFactors[SYS_UnitTypeCount] = {38100, 1500000, 38100000, 1500};
constexpr int kDefaultPrecisions[SYS_UnitTypeCount] = {2, 5, 5, 2};
constexpr int kNameIds[SYS_UnitTypeCount] = {45104, 45105, 45106, 45107};

inline bool isUnitType(int type) { return type >= 0 && type < SYS_UnitTypeCount; }

struct UnitTypeEntry {
  SYS_UnitType type;
  SYS_String name;
  int precision;
  long factor;
};

/// The four entries in the order of their types; the names are fetched with TR.
class UnitTable {
public:
  UnitTable();
  UnitTypeEntry const &operator[](SYS_UnitType type) const { return m_Entries[type]; }

private:
  UnitTypeEntry m_Entries[SYS_UnitTypeCount];
};

/// The table built at load.
UnitTable const &unitTable();

}  // namespace sysunits

#endif
