//===- sys/sys_point.cpp - Polar form and transforms of points ---------===//
#include "sys_point.h"
#include "sys_transform.h"

namespace {

/// atan2 in angle units: scaled by a half turn, then by 1/π, truncated toward zero, and a
/// negative result taken once round the full turn.
long polarAngle(double x, double y) {
  long const a = sysgeom::radiansToAngle(std::atan2(y, x));
  return a < 0 ? a + SYS_FullTurn : a;
}

}  // namespace

long SYS_Point::GetPolarAngle() const { return polarAngle(static_cast<double>(m_x), static_cast<double>(m_y)); }

double SYS_Point::GetPolarRadius() const { return static_cast<SYS_DoublePoint>(*this).GetPolarRadius(); }

void SYS_Point::Transform(SYS_Transform const &t) { t.Transform(this); }

long SYS_DoublePoint::GetPolarAngle() const { return polarAngle(m_x, m_y); }

double SYS_DoublePoint::GetPolarRadius() const {
  double const s = m_x * m_x + m_y * m_y;
  double r = std::sqrt(s);
  if (r != 0.0) r = ((r * r + s) * 0.5) / r;
  return r;
}

void SYS_DoublePoint::Transform(SYS_Transform const &t) { t.Transform(this); }
