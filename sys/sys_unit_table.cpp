//===- sys/sys_unit_table.cpp - The table of the four unit types --------===//
#include "sys/sys_unit_table.h"

#include "sfm_tr.h"

namespace sysunits {

UnitTable::UnitTable()
    : m_Entries{
          {SYS_UnitMil, TR(kNameIds[0]), kDefaultPrecisions[0], kFactors[0]},
          {SYS_UnitMillimetre, TR(kNameIds[1]), kDefaultPrecisions[1], kFactors[1]},
          {SYS_UnitInch, TR(kNameIds[2]), kDefaultPrecisions[2], kFactors[2]},
          {SYS_UnitMicrometre, TR(kNameIds[3]), kDefaultPrecisions[3], kFactors[3]},
      } {}

}  // namespace sysunits
