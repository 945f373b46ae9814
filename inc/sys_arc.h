//===- inc/sys_arc.h - Circles, segments and arcs -----------------------===//
//
// The sign of a radius is a direction: a positive radius runs counter-
// clockwise from start to end, a negative one clockwise. Transforms move
// centers and ends but never scale or negate a radius.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_ARC_H
#define BFC_SYS_ARC_H

#include "sys_box.h"

/// A center and a signed radius.
class BFC_API SYS_Circle {
public:
  SYS_Circle() : m_center(0, 0), m_radius(0) {}
  SYS_Circle(SYS_Point const &center, long radius) : m_center(center), m_radius(sysgeom::cut32(radius)) {}
  SYS_Circle(long x, long y, long radius) : SYS_Circle(SYS_Point(x, y), radius) {}

  void Initiate() { *this = SYS_Circle(); }
  void Set(SYS_Point const &center, long radius) { *this = SYS_Circle(center, radius); }
  void Set(long x, long y, long radius) { *this = SYS_Circle(x, y, radius); }
  SYS_Point &GetCenter() { return m_center; }
  SYS_Point const &GetCenter() const { return m_center; }
  long GetRadius() const { return m_radius; }
  void SetCenter(SYS_Point const &center) { m_center = center; }
  void SetCenter(long x, long y) { m_center.Set(x, y); }
  void SetRadius(long radius) { m_radius = sysgeom::cut32(radius); }

  /// 1 when the radius is within the coordinate limit; a negative radius is valid.
  int IsValid() const { return sysgeom::isWithinLimit(m_radius); }
  int operator==(SYS_Circle const &c) const { return m_radius == c.m_radius && m_center == c.m_center; }
  int operator!=(SYS_Circle const &c) const { return !(*this == c); }
  /// center ± the signed radius: a negative radius gives an inverted box.
  SYS_Box GetBox() const { return SYS_Box(m_center - m_radius, m_center + m_radius); }
  /// The center is transformed as a point; the radius stays as it is.
  void Transform(SYS_Transform const &t);

private:
  SYS_Point m_center;
  long m_radius;
};

/// A straight segment from start to end.
class BFC_API SYS_Segment {
public:
  SYS_Segment() : m_start(0, 0), m_end(0, 0) {}
  SYS_Segment(SYS_Point const &start, SYS_Point const &end) : m_start(start), m_end(end) {}
  SYS_Segment(long x1, long y1, long x2, long y2) : m_start(x1, y1), m_end(x2, y2) {}

  void Initiate() { *this = SYS_Segment(); }
  void Set(SYS_Point const &start, SYS_Point const &end) { m_start = start, m_end = end; }
  void Set(long x1, long y1, long x2, long y2) { m_start.Set(x1, y1), m_end.Set(x2, y2); }
  SYS_Point &GetStart() { return m_start; }
  SYS_Point const &GetStart() const { return m_start; }
  SYS_Point &GetEnd() { return m_end; }
  SYS_Point const &GetEnd() const { return m_end; }
  void SetStart(SYS_Point const &p) { m_start = p; }
  void SetStart(long x, long y) { m_start.Set(x, y); }
  void SetEnd(SYS_Point const &p) { m_end = p; }
  void SetEnd(long x, long y) { m_end.Set(x, y); }
  /// start for 0, end for any other index.
  SYS_Point const &operator[](int i) const { return i == 0 ? m_start : m_end; }

  /// Both ends moved by p; a long is added to (subtracted from) all four coordinates.
  SYS_Segment &operator+=(SYS_Point const &p) { return m_start += p, m_end += p, *this; }
  SYS_Segment &operator-=(SYS_Point const &p) { return m_start -= p, m_end -= p, *this; }
  SYS_Segment &operator+=(long d) { return m_start += d, m_end += d, *this; }
  SYS_Segment &operator-=(long d) { return m_start -= d, m_end -= d, *this; }
  SYS_Segment operator+(SYS_Point const &p) const { return SYS_Segment(*this) += p; }
  SYS_Segment operator-(SYS_Point const &p) const { return SYS_Segment(*this) -= p; }
  SYS_Segment operator+(long d) const { return SYS_Segment(*this) += d; }
  SYS_Segment operator-(long d) const { return SYS_Segment(*this) -= d; }

  int operator==(SYS_Segment const &s) const { return m_start == s.m_start && m_end == s.m_end; }
  int operator!=(SYS_Segment const &s) const { return !(*this == s); }
  long GetDX() const { return sysgeom::sub32(m_end.GetX(), m_start.GetX()); }
  long GetDY() const { return sysgeom::sub32(m_end.GetY(), m_start.GetY()); }
  /// The polar radius of (end - start).
  double GetLength() const { return (m_end - m_start).GetPolarRadius(); }
  /// The normalized box spanned by the two ends.
  SYS_Box GetBox() const {
    SYS_Box b(m_start, m_end);
    b.Normalize();
    return b;
  }
  /// Every segment is valid.
  int IsValid() const { return 1; }
  /// Start transformed, then end.
  void Transform(SYS_Transform const &t);

private:
  SYS_Point m_start, m_end;
};

/// A circular arc from start to end about center; the sign of the radius gives the
/// direction (positive counter-clockwise). Start and end are expected on the circle
/// (IsValidArc) but not forced there.
class BFC_API SYS_Arc : public SYS_Segment, public SYS_Circle {
public:
  SYS_Arc() = default;
  SYS_Arc(SYS_Point const &start, SYS_Point const &end, SYS_Point const &center, long radius)
      : SYS_Segment(start, end), SYS_Circle(center, radius) {}

  void Initiate() { *this = SYS_Arc(); }
  void Set(SYS_Point const &start, SYS_Point const &end, SYS_Point const &center, long radius) {
    *this = SYS_Arc(start, end, center, radius);
  }

  /// 1 when the radius is within the coordinate limit.
  int IsValid() const { return SYS_Circle::IsValid(); }
  /// 1 when both ends lie on the circle: for each, the squared distance from the center
  /// minus the squared radius, rounded half away from zero, is at most 1 in magnitude.
  int IsValidArc() const;
  int operator==(SYS_Arc const &a) const {
    return GetStart() == a.GetStart() && GetEnd() == a.GetEnd() && GetRadius() == a.GetRadius() &&
           GetCenter() == a.GetCenter();
  }
  int operator!=(SYS_Arc const &a) const { return !(*this == a); }

  /// Polar angles of (start - center) and (end - center), in [0, SYS_FullTurn).
  long GetStartAngle() const;
  long GetEndAngle() const;
  /// The signed sweep: in [0, full turn) for a positive radius, (-full turn, 0] for a
  /// negative one; ends at the same angle sweep 0, not a full turn. A zero radius takes
  /// the plain difference of the angles.
  long GetSizeAngle() const;
  /// sweep × π / half turn × radius: positive in both directions.
  double GetLength() const;
  /// Walking from `from` (a point of the arc) in the arc's direction, the first leftmost
  /// (-1) or rightmost (+1) point met before the end; 0 when none comes first. `out` gets
  /// the center, with x moved to the extreme on -1 or +1. `out` may be null.
  int GetXNearestExtrem(SYS_Point const &from, SYS_Point *out) const;
  /// As GetXNearestExtrem for the lowest (-1) and highest (+1) points.
  int GetYNearestExtrem(SYS_Point const &from, SYS_Point *out) const;
  /// The box of the ends, grown by at most two extremes per axis met along the arc.
  SYS_Box GetBox() const;

  /// Start, end and center are transformed as points; the radius, and so the direction,
  /// stays as it is.
  void Transform(SYS_Transform const &t);
};

#endif
