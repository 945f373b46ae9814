//===- sys/sys_transform.cpp - Setters, composition and inversion ------===//
//
// Every setter starts from the identity; only SetRotate(p, long) and
// SetMirror(p, long) carry the rotation in radians over from before.
// Composition applies this transform first and the other second.
//
//===------------------------------------------------------------------===//
#include "sys_transform.h"

using namespace sysgeom;

namespace {

constexpr double kInversionEpsilon = 1e-12;
constexpr double kDirectionEpsilon = 1e-9;

/// Scales (c, s) to unit length: a square root refined by one Newton step; a direction
/// shorter than 1e-9 in squared length becomes (1, 0).
void normalizeDirection(double &c, double &s) {
  double const n = c * c + s * s;
  if (n == 1.0) return;
  if (n >= kDirectionEpsilon) {
    double r = std::sqrt(n);
    r = ((r * r + n) * 0.5) / r;
    c /= r;
    s /= r;
  } else {
    c = 1.0;
    s = 0.0;
  }
}

/// The angle in [0, 2π) of the vector (x, y), exact on the axes and the diagonals.
double directionAngle(double y, double x) {
  if (y == 0.0) return x >= 0.0 ? 0.0 : SYS_Pi;
  if (x == 0.0) return y >= 0.0 ? 1.5707963267948966 : 4.71238898038469;
  double const ax = std::fabs(x), ay = std::fabs(y);
  double const base = ax == ay ? 0.7853981633974483 : ax < ay ? 1.5707963267948966 - std::atan(ax / ay) : std::atan(ay / ax);
  if (x > 0.0) return y > 0.0 ? base : 6.283185307179586 - base;
  return y > 0.0 ? SYS_Pi - base : SYS_Pi + base;
}

/// Brings an angle into [0, full turn]; a full turn itself stays.
long bringIntoTurn(long angle) {
  while (angle < 0) angle += SYS_FullTurn;
  while (angle > SYS_FullTurn) angle -= SYS_FullTurn;
  return angle;
}

}  // namespace

SYS_Transform::SYS_Transform(SYS_Position const &position, int mirrorFirst, int noMoveToOrigin, int noMoveBack) {
  setPlacement(position.GetOrigin(), position.GetOrientation(), position.GetMirror(), mirrorFirst, noMoveToOrigin,
               noMoveBack);
}

SYS_Transform::SYS_Transform(SYS_Point const &origin, long orientation, int mirror, int mirrorFirst,
                             int noMoveToOrigin, int noMoveBack)
    : SYS_Transform(SYS_Position(origin, orientation, mirror), mirrorFirst, noMoveToOrigin, noMoveBack) {}

SYS_Transform::SYS_Transform(long x, long y, long orientation, int mirror, int mirrorFirst, int noMoveToOrigin,
                             int noMoveBack)
    : SYS_Transform(SYS_Position(x, y, orientation, mirror), mirrorFirst, noMoveToOrigin, noMoveBack) {}

void SYS_Transform::setPlacement(SYS_Point const &origin, long orientation, int mirror, int mirrorFirst,
                                 int noMoveToOrigin, int noMoveBack) {
  double const x = static_cast<double>(origin.GetX()), y = static_cast<double>(origin.GetY());
  if (noMoveToOrigin)
    setIdentity();
  else
    SetMove(-x, -y);
  SYS_Transform step;
  if (mirrorFirst && mirror) {
    step.SetMirror(SYS_Point(0, 0), 0.0, 1.0);  // x becomes -x
    AddConv(step);
  }
  if (orientation != 0) {
    step.SetRotate(SYS_Point(0, 0), orientation);
    AddConv(step);
  }
  if (!mirrorFirst && mirror) {
    step.SetMirror(SYS_Point(0, 0), 0.0, 1.0);
    AddConv(step);
  }
  if (!noMoveBack) {
    step.SetMove(x, y);
    AddConv(step);
  }
}

void SYS_Transform::setIdentity() {
  m_matrix[0][0] = 1.0, m_matrix[0][1] = 0.0, m_matrix[0][2] = 0.0;
  m_matrix[1][0] = 0.0, m_matrix[1][1] = 1.0, m_matrix[1][2] = 0.0;
  m_angleFactor = 1.0;
  m_rotation = 0.0;
  m_orientation = 0;
  m_sweepFactor = 1.0;
  m_sweepOffset = 0.0;
  m_sweepAngleOffset = 0;
  m_scale = 1.0;
}

void SYS_Transform::copyFrom(SYS_Transform const &t) {
  for (int row = 0; row < 2; ++row)
    for (int column = 0; column < 3; ++column) m_matrix[row][column] = t.m_matrix[row][column];
  m_angleFactor = t.m_angleFactor;
  m_rotation = t.m_rotation;
  m_orientation = t.m_orientation;
  m_sweepFactor = t.m_sweepFactor;
  m_sweepOffset = t.m_sweepOffset;
  m_sweepAngleOffset = t.m_sweepAngleOffset;
  m_scale = t.m_scale;
}

void SYS_Transform::setRotationMatrix(SYS_Point const &p, double c, double s) {
  double const x = static_cast<double>(p.GetX()), y = static_cast<double>(p.GetY());
  m_matrix[0][0] = c, m_matrix[0][1] = -s, m_matrix[0][2] = x - c * x + s * y;
  m_matrix[1][0] = s, m_matrix[1][1] = c, m_matrix[1][2] = y - s * x - c * y;
}

void SYS_Transform::setReflectionMatrix(SYS_Point const &p, double c, double s) {
  double const x = static_cast<double>(p.GetX()), y = static_cast<double>(p.GetY());
  m_matrix[0][0] = c, m_matrix[0][1] = s, m_matrix[0][2] = x - c * x - s * y;
  m_matrix[1][0] = s, m_matrix[1][1] = -c, m_matrix[1][2] = y - s * x + c * y;
}

void SYS_Transform::SetMove(double dx, double dy) {
  setIdentity();
  m_matrix[0][2] = dx;
  m_matrix[1][2] = dy;
}

void SYS_Transform::SetRotate(SYS_Point const &p, long angle) {
  double const rotation = m_rotation;
  setIdentity();
  m_rotation = rotation;
  double const theta = angleToRadians(angle);
  setRotationMatrix(p, std::cos(theta), std::sin(theta));
  m_orientation = cut32(angle);
}

void SYS_Transform::SetRotate(SYS_Point const &p, double c, double s) {
  normalizeDirection(c, s);
  setIdentity();
  setRotationMatrix(p, c, s);
  m_rotation = directionAngle(s, c);
  m_orientation = radiansToAngle(m_rotation);
}

void SYS_Transform::SetMirror(SYS_Point const &p, long angle) {
  double const rotation = m_rotation;
  setIdentity();
  m_rotation = rotation;
  double const phi = 2.0 * angleToRadians(angle);
  setReflectionMatrix(p, std::cos(phi), std::sin(phi));
  m_angleFactor = -1.0;
  m_orientation = mul32(2, angle);
  m_sweepFactor = -1.0;
}

void SYS_Transform::SetMirror(SYS_Point const &p, double c, double s) {
  normalizeDirection(c, s);
  double const c2 = c * c - s * s, s2 = 2.0 * c * s;  // the doubled direction
  setIdentity();
  setReflectionMatrix(p, c2, s2);
  m_angleFactor = -1.0;
  m_rotation = directionAngle(s2, c2);
  m_orientation = radiansToAngle(m_rotation);
  m_sweepFactor = -1.0;
}

void SYS_Transform::SetScale(SYS_Point const &p, double s) {
  double const x = static_cast<double>(p.GetX()), y = static_cast<double>(p.GetY());
  setIdentity();
  m_matrix[0][0] = s, m_matrix[0][2] = x - x * s;
  m_matrix[1][1] = s, m_matrix[1][2] = y - y * s;
  if (s < 0.0) {  // a negative scale also turns by a half turn
    m_rotation = SYS_Pi;
    m_orientation = SYS_HalfTurn;
  }
  m_scale = s;
}

void SYS_Transform::SetCoordSys(SYS_Point const &p, long angle) {
  SetRotate(p, neg32(angle));
  SYS_Transform move;
  move.SetMove(-static_cast<double>(p.GetX()), -static_cast<double>(p.GetY()));
  AddConv(move);
}

void SYS_Transform::SetCoordSys(SYS_Point const &p, double c, double s) {
  SetRotate(p, -s, -c);
  SYS_Transform move;
  move.SetMove(-static_cast<double>(p.GetX()), -static_cast<double>(p.GetY()));
  AddConv(move);
}

void SYS_Transform::SetBoxConv(SYS_Point const &p1, SYS_Point const &p2, SYS_Box const &box) {
  SYS_Point const m(add32(p1.GetX(), p2.GetX()) / 2, add32(p1.GetY(), p2.GetY()) / 2);
  SYS_Point const k = box.GetCenter();
  double const sx = static_cast<double>(box.GetWidth()) / static_cast<double>(sub32(p2.GetX(), p1.GetX()));
  double const sy = static_cast<double>(box.GetHeight()) / static_cast<double>(sub32(p2.GetY(), p1.GetY()));
  SetScale(m, sy < sx ? sy : sx);  // signed comparison: a flipped span can win
  m_matrix[0][2] += static_cast<double>(k.GetX()) - static_cast<double>(m.GetX());
  m_matrix[1][2] += static_cast<double>(k.GetY()) - static_cast<double>(m.GetY());
}

void SYS_Transform::AddConv(SYS_Transform const &t) {
  double const(&m1)[2][3] = m_matrix;
  double const(&m2)[2][3] = t.m_matrix;
  SYS_Transform r;
  for (int row = 0; row < 2; ++row) {
    r.m_matrix[row][0] = m2[row][0] * m1[0][0] + m2[row][1] * m1[1][0];
    r.m_matrix[row][1] = m2[row][0] * m1[0][1] + m2[row][1] * m1[1][1];
    r.m_matrix[row][2] = m2[row][0] * m1[0][2] + m2[row][1] * m1[1][2] + m2[row][2];
  }
  r.m_angleFactor = m_angleFactor * t.m_angleFactor;
  r.m_rotation = m_rotation * t.m_angleFactor + t.m_rotation;
  r.m_orientation = add32(truncate32(m_orientation * t.m_angleFactor), t.m_orientation);
  r.m_sweepFactor = m_sweepFactor * t.m_sweepFactor;
  r.m_sweepOffset = m_sweepOffset * t.m_sweepFactor + t.m_sweepOffset;
  r.m_sweepAngleOffset = add32(truncate32(m_sweepAngleOffset * t.m_sweepFactor), t.m_sweepAngleOffset);
  r.m_scale = m_scale * t.m_scale;
  copyFrom(r);
}

void SYS_Transform::SubConv(SYS_Transform const &t) {
  SYS_Transform inverse;
  t.SetRConv(inverse);  // the identity when t has no inverse
  AddConv(inverse);
}

short SYS_Transform::SetRConv(SYS_Transform &out) const {
  SYS_Transform r;  // out may be this transform
  out.setIdentity();
  double const a = m_matrix[0][0], b = m_matrix[0][1], tx = m_matrix[0][2];
  double const c = m_matrix[1][0], d = m_matrix[1][1], ty = m_matrix[1][2];
  double const det = a * d - b * c;
  if (std::fabs(det) < kInversionEpsilon || std::fabs(m_angleFactor) < kInversionEpsilon ||
      std::fabs(m_sweepFactor) < kInversionEpsilon || std::fabs(m_scale) < kInversionEpsilon)
    return 0;
  r.m_matrix[0][0] = d / det, r.m_matrix[0][1] = -b / det, r.m_matrix[0][2] = (ty * b - tx * d) / det;
  r.m_matrix[1][0] = -c / det, r.m_matrix[1][1] = a / det, r.m_matrix[1][2] = (tx * c - ty * a) / det;
  r.m_angleFactor = std::fabs(m_angleFactor - 1.0) < kInversionEpsilon ? m_angleFactor : 1.0 / m_angleFactor;
  r.m_rotation = -m_rotation;
  r.m_orientation = neg32(m_orientation);
  r.m_sweepFactor = 1.0 / m_sweepFactor;
  r.m_sweepOffset = -m_sweepOffset;
  r.m_sweepAngleOffset = neg32(m_sweepAngleOffset);
  r.m_scale = 1.0 / m_scale;
  out.copyFrom(r);
  return 1;
}

void SYS_Transform::RConv() {
  SYS_Transform inverse;
  SetRConv(inverse);
  copyFrom(inverse);
}

short SYS_Transform::operator==(SYS_Transform const &t) const {
  for (int row = 0; row < 2; ++row)
    for (int column = 0; column < 3; ++column)
      if (m_matrix[row][column] != t.m_matrix[row][column]) return 0;
  return m_angleFactor == t.m_angleFactor && m_orientation == t.m_orientation && m_rotation == t.m_rotation &&
         m_sweepFactor == t.m_sweepFactor && m_sweepOffset == t.m_sweepOffset &&
         m_sweepAngleOffset == t.m_sweepAngleOffset && m_scale == t.m_scale;
}

SYS_Point SYS_Transform::operator-(SYS_Point const &p) const {
  SYS_Transform inverse;
  return SetRConv(inverse) ? inverse.Transform(p) : p;
}

void SYS_Transform::Convert(long &angle, long &sweep) const {
  long a = bringIntoTurn(cut32(angle));
  if (std::fabs(m_angleFactor - 1.0) <= kDirectionEpsilon)
    a = add32(a, m_orientation);
  else
    a = round32(a * m_angleFactor + m_orientation);
  angle = bringIntoTurn(a);

  double const mapped = std::trunc(sweep * m_sweepFactor + m_sweepOffset);
  // Any sweep beyond a full turn, in either direction, is one full counter-clockwise turn.
  sweep = std::fabs(mapped) <= static_cast<double>(SYS_FullTurn) ? truncate32(mapped) : SYS_FullTurn;
}
