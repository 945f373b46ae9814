//===- plat/plat_load.cpp - The objects built when the library loads ----===//
//
// Everything the library builds at load is defined here, in one file,
// because only within one file is the order of construction fixed: the
// objects below are built top to bottom when the library loads and destroyed
// bottom to top when it unloads. Nothing else happens at load (threads need
// no attach or detach notices here). The host's numbered texts that these
// objects fetch are read from its string file on the first lookup, so they
// are in place before the first object needs them and outlive every object
// here.
//
//===------------------------------------------------------------------===//
#include "sys/sys_unit_table.h"

namespace {

/// The unit types with their names, the host's texts 45104 to 45107.
sysunits::UnitTable const g_UnitTable;

}  // namespace

sysunits::UnitTable const &sysunits::unitTable() { return g_UnitTable; }
