//===- sys/sys_arc.cpp - Arc angles, sweeps, extremes and boxes --------===//
//
// The extremes are found by walking the arc in its direction: with s the
// sign of the radius, the arc runs counter-clockwise in the frame mirrored
// by s, so every comparison below is made on offsets multiplied by s.
//
//===------------------------------------------------------------------===//
#include "sys_arc.h"
#include "sys_transform.h"

#include <initializer_list>

using namespace sysgeom;

void SYS_Circle::Transform(SYS_Transform const &t) { t.Transform(&m_center); }

void SYS_Segment::Transform(SYS_Transform const &t) {
  t.Transform(&m_start);
  t.Transform(&m_end);
}

int SYS_Arc::IsValidArc() const {
  double const r = static_cast<double>(GetRadius());
  for (SYS_Point const *p : {&GetStart(), &GetEnd()}) {
    SYS_Point const d = *p - GetCenter();
    double const x = static_cast<double>(d.GetX()), y = static_cast<double>(d.GetY());
    // |round(v)| > 1 exactly when |v| >= 1.5; compared in double so that no squared
    // distance is too large to count.
    if (std::fabs((x * x + y * y) - r * r) >= 1.5) return 0;
  }
  return 1;
}

long SYS_Arc::GetStartAngle() const {
  return SYS_DoublePoint(static_cast<double>(GetStart().GetX()) - GetCenter().GetX(),
                         static_cast<double>(GetStart().GetY()) - GetCenter().GetY())
      .GetPolarAngle();
}

long SYS_Arc::GetEndAngle() const {
  return SYS_DoublePoint(static_cast<double>(GetEnd().GetX()) - GetCenter().GetX(),
                         static_cast<double>(GetEnd().GetY()) - GetCenter().GetY())
      .GetPolarAngle();
}

long SYS_Arc::GetSizeAngle() const {
  long size = GetEndAngle() - GetStartAngle();
  if (size > 0 && GetRadius() < 0) size -= SYS_FullTurn;
  if (size < 0 && GetRadius() > 0) size += SYS_FullTurn;
  return size;
}

double SYS_Arc::GetLength() const {
  return static_cast<double>(GetSizeAngle()) * SYS_Pi * (1.0 / 324000000.0) * static_cast<double>(GetRadius());
}

int SYS_Arc::GetXNearestExtrem(SYS_Point const &from, SYS_Point *out) const {
  long const radius = GetRadius();
  long const s = radius < 0 ? -1 : 1;
  long const r = abs32(radius);
  SYS_Point const &m = GetCenter();
  SYS_Point const &e = GetEnd();
  long const ay = mul32(s, sub32(m.GetY(), e.GetY()));
  long const dy = mul32(s, sub32(m.GetY(), from.GetY()));
  long const dx = mul32(s, sub32(from.GetX(), m.GetX()));
  SYS_Point extreme = m;
  int result = 0;
  // In the upper half (or at the rightmost point) the walk goes left first.
  if ((dy < 0 || dx == radius) && (ay > 0 || from.GetX() <= e.GetX())) {
    extreme.SetX(sub32(m.GetX(), r));
    result = -1;
  } else if (dy > 0 || dx == neg32(radius)) {
    if (ay < 0 || from.GetX() >= e.GetX()) {
      extreme.SetX(add32(m.GetX(), r));
      result = 1;
    }
  }
  if (out) *out = extreme;
  return result;
}

int SYS_Arc::GetYNearestExtrem(SYS_Point const &from, SYS_Point *out) const {
  long const radius = GetRadius();
  long const s = radius < 0 ? -1 : 1;
  long const r = abs32(radius);
  SYS_Point const &m = GetCenter();
  SYS_Point const &e = GetEnd();
  long const ax = mul32(s, sub32(e.GetX(), m.GetX()));
  long const dy = mul32(s, sub32(m.GetY(), from.GetY()));
  long const dx = mul32(s, sub32(from.GetX(), m.GetX()));
  SYS_Point extreme = m;
  int result = 0;
  // In the left half (or at the top point) the walk goes down first.
  if ((dx < 0 || dy == neg32(radius)) && (ax > 0 || from.GetY() <= e.GetY())) {
    extreme.SetY(sub32(m.GetY(), r));
    result = -1;
  } else if (dx > 0 || dy == radius) {
    if (ax < 0 || from.GetY() >= e.GetY()) {
      extreme.SetY(add32(m.GetY(), r));
      result = 1;
    }
  }
  if (out) *out = extreme;
  return result;
}

SYS_Box SYS_Arc::GetBox() const {
  SYS_Box box = SYS_Segment::GetBox();
  SYS_Point first, second;
  // At most two extremes per axis: the first met from the start, then the next one from
  // there (the opposite side, if the arc gets that far).
  int k = GetXNearestExtrem(GetStart(), &first);
  if (k != 0) {
    if (k < 0) box.SetLeft(first.GetX()); else box.SetRight(first.GetX());
    int const k2 = GetXNearestExtrem(first, &second);
    if (k2 > 0) box.SetRight(second.GetX());
    if (k2 < 0) box.SetLeft(second.GetX());
  }
  k = GetYNearestExtrem(GetStart(), &first);
  if (k != 0) {
    if (k < 0) box.SetLower(first.GetY()); else box.SetUpper(first.GetY());
    int const k2 = GetYNearestExtrem(first, &second);
    if (k2 > 0) box.SetUpper(second.GetY());
    if (k2 < 0) box.SetLower(second.GetY());
  }
  return box;
}

void SYS_Arc::Transform(SYS_Transform const &t) {
  SYS_Segment::Transform(t);
  SYS_Circle::Transform(t);
}
