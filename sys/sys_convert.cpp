//===- sys/sys_convert.cpp - Display settings, unit arithmetic, grid ----===//
//
// The unit factors are small integers held exactly in doubles; every
// conversion is one multiplication or division by them.
//
//===------------------------------------------------------------------===//
#include "sys_convert.h"

#include "sys/sys_unit_table.h"
#include "sys_geom.h"

#include <cmath>
#include <cstdint>

namespace {

constexpr double kFactorValues[SYS_UnitTypeCount] = {
    static_cast<double>(sysunits::kFactors[0]), static_cast<double>(sysunits::kFactors[1]),
    static_cast<double>(sysunits::kFactors[2]), static_cast<double>(sysunits::kFactors[3])};

int limitedPrecision(int precision) {
  if (precision < 0) return 0;
  return precision > SYS_Convert::MaxPrecision ? SYS_Convert::MaxPrecision : precision;
}

}  // namespace

SYS_Convert::SYS_Convert() : SYS_Convert(SYS_UnitMil, SYS_Point(0, 0)) {}

SYS_Convert::SYS_Convert(SYS_UnitType type) : SYS_Convert(type, SYS_Point(0, 0)) {}

SYS_Convert::SYS_Convert(SYS_Point const &origin) : SYS_Convert(SYS_UnitMil, origin) {}

SYS_Convert::SYS_Convert(SYS_UnitType type, SYS_Point const &origin) : m_UnitType(SYS_UnitMil) {
  SetData(type, origin);
}

void SYS_Convert::SetData(SYS_UnitType type, SYS_Point const &origin) {
  SetUnitType(type);
  m_Origin = origin;
  m_ZeroTrimMode = 1;
  for (int i = 0; i < SYS_UnitTypeCount; ++i) m_UnitPrecision[i] = sysunits::kDefaultPrecisions[i];
  m_AnglePrecision = 3;
}

void SYS_Convert::SetUnitType(SYS_UnitType type) {
  if (sysunits::isUnitType(type)) m_UnitType = type;
}

void SYS_Convert::SetUnitPrecision(int precision) { m_UnitPrecision[m_UnitType] = limitedPrecision(precision); }

void SYS_Convert::SetAnglePrecision(int precision) { m_AnglePrecision = limitedPrecision(precision); }

char const *SYS_Convert::GetUnitName() const { return sysunits::unitTable()[m_UnitType].name; }

char const *SYS_Convert::GetUnitName(SYS_UnitType type) {
  return sysunits::isUnitType(type) ? static_cast<char const *>(sysunits::unitTable()[type].name) : "";
}

char const *SYS_Convert::UnitTypeObj::GetName() const {
  SYS_Handle const handle = GetHandle();
  return handle >= 1 && handle <= SYS_UnitTypeCount ? GetUnitName(GetType()) : "";
}

long SYS_Convert::User2Base(double u) const {
  double const f = kFactorValues[m_UnitType];
  // Written so that NaN fails the test too.
  if (!(std::fabs(u) <= 2147483647.0 / f)) return OverflowValue;
  return sysgeom::round32(u * f);
}

double SYS_Convert::User2BaseDouble(double u) const { return u * kFactorValues[m_UnitType]; }

double SYS_Convert::Base2User(double b) const { return b / kFactorValues[m_UnitType]; }

double SYS_Convert::Base2User(long b) const {
  return static_cast<double>(sysgeom::cut32(b)) / kFactorValues[m_UnitType];
}

// With any grid g: r = abs(v mod g) with the remainder taking v's sign; below g / 2
// (truncated) v moves toward zero by r, otherwise away from zero by g - r. Computed in 64
// bits and cut to 32, so the largest values wrap as the 32-bit arithmetic does.
long SYS_Convert::AlignToMinRoutingGrid(long v) const {
  long long const value = sysgeom::cut32(v);
  long long const grid = GetMinRoutingGrid();
  long long const r = value % grid < 0 ? -(value % grid) : value % grid;
  if (r == 0) return value;
  long long const sign = value < 0 ? -1 : 1;
  long long const moved = r < grid / 2 ? value - sign * r : value + sign * (grid - r);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(moved));
}

SYS_Point SYS_Convert::AlignToMinRoutingGrid(SYS_Point const &p) const {
  return SYS_Point(AlignToMinRoutingGrid(p.GetX()), AlignToMinRoutingGrid(p.GetY()));
}

int SYS_Convert::IsAlignedToMinRoutingGrid(long v) const {
  return sysgeom::cut32(v) % GetMinRoutingGrid() == 0 ? 1 : 0;
}

int SYS_Convert::IsAlignedToMinRoutingGrid(SYS_Point const &p) const {
  return IsAlignedToMinRoutingGrid(p.GetX()) && IsAlignedToMinRoutingGrid(p.GetY()) ? 1 : 0;
}
