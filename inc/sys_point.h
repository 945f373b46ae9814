//===- inc/sys_point.h - Integer and double points ----------------------===//
//
// SYS_Point is a point or vector in base units, SYS_DoublePoint its double
// counterpart. Integer arithmetic wraps in 32 bits; where a double becomes an
// integer the rule is stated at the operation: `* double` truncates toward
// zero, while `/`, Scale, Median and the conversion from a double point round
// half away from zero.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_POINT_H
#define BFC_SYS_POINT_H

#include "sys_geom.h"

class SYS_DoublePoint;
class SYS_Transform;

/// A point (or vector) in integer base units: the coordinate of the whole library.
class BFC_API SYS_Point {
public:
  /// Leaves both coordinates unset (arrays of points cost nothing to create).
  SYS_Point() = default;
  SYS_Point(long x, long y) : m_x(sysgeom::cut32(x)), m_y(sysgeom::cut32(y)) {}

  void Initiate() { m_x = m_y = 0; }
  long GetX() const { return m_x; }
  long GetY() const { return m_y; }
  void SetX(long x) { m_x = sysgeom::cut32(x); }
  void SetY(long y) { m_y = sysgeom::cut32(y); }
  void Set(long x, long y) { SetX(x), SetY(y); }
  /// x for 0, y for any other index.
  long operator[](int i) const { return i == 0 ? m_x : m_y; }

  SYS_Point operator+(SYS_Point const &p) const {
    return SYS_Point(sysgeom::add32(m_x, p.m_x), sysgeom::add32(m_y, p.m_y));
  }
  SYS_Point operator-(SYS_Point const &p) const {
    return SYS_Point(sysgeom::sub32(m_x, p.m_x), sysgeom::sub32(m_y, p.m_y));
  }
  /// `d` added to (subtracted from) both coordinates.
  SYS_Point operator+(long d) const { return SYS_Point(sysgeom::add32(m_x, d), sysgeom::add32(m_y, d)); }
  SYS_Point operator-(long d) const { return SYS_Point(sysgeom::sub32(m_x, d), sysgeom::sub32(m_y, d)); }
  SYS_Point &operator+=(SYS_Point const &p) { return *this = *this + p; }
  SYS_Point &operator-=(SYS_Point const &p) { return *this = *this - p; }
  SYS_Point &operator+=(long d) { return *this = *this + d; }
  SYS_Point &operator-=(long d) { return *this = *this - d; }

  /// Integer product, wrapping in 32 bits.
  SYS_Point operator*(long f) const { return SYS_Point(sysgeom::mul32(m_x, f), sysgeom::mul32(m_y, f)); }
  /// An `int` factor is the integer product (without this, `p * 2` would be ambiguous).
  SYS_Point operator*(int f) const { return *this * static_cast<long>(f); }
  /// Each coordinate times `f`, truncated toward zero (not rounded).
  SYS_Point operator*(double f) const {
    return SYS_Point(sysgeom::truncate32(m_x * f), sysgeom::truncate32(m_y * f));
  }
  /// Each coordinate divided in double, rounded half away from zero. `d` must not be 0.
  SYS_Point operator/(long d) const {
    double const divisor = static_cast<double>(d);
    return SYS_Point(sysgeom::round32(m_x / divisor), sysgeom::round32(m_y / divisor));
  }
  /// In place, each coordinate rounded half away from zero.
  void Scale(double f) { Scale(f, f); }
  void Scale(double fx, double fy) { Set(sysgeom::round32(m_x * fx), sysgeom::round32(m_y * fy)); }
  /// Half the 32-bit sum, each coordinate rounded half away from zero: the median of
  /// (1, 1) and (2, 2) is (2, 2), that of (-1, -1) and (0, 0) is (-1, -1).
  SYS_Point Median(SYS_Point const &p) const {
    SYS_Point const s = *this + p;
    return SYS_Point(sysgeom::round32(s.m_x * 0.5), sysgeom::round32(s.m_y * 0.5));
  }

  /// The length of the vector. Axis-parallel and diagonal vectors avoid the square root.
  double Length() const {
    double const x = static_cast<double>(m_x), y = static_cast<double>(m_y);
    if (m_x == 0) return std::fabs(y);
    if (m_y == 0) return std::fabs(x);
    if (std::fabs(x) == std::fabs(y)) return std::fabs(x) * 1.4142135623730951;
    return std::sqrt(x * x + y * y);
  }
  /// The Length() of the 32-bit difference (this - p).
  double Distance(SYS_Point const &p) const { return (*this - p).Length(); }
  /// abs(x) + abs(y), wrapping in 32 bits.
  long MLength() const { return sysgeom::add32(sysgeom::abs32(m_x), sysgeom::abs32(m_y)); }
  long MDistance(SYS_Point const &p) const { return (*this - p).MLength(); }
  double ScalarProduct(SYS_Point const &p) const {
    return static_cast<double>(m_x) * p.m_x + static_cast<double>(m_y) * p.m_y;
  }
  double VectorProduct(SYS_Point const &p) const {
    return static_cast<double>(m_x) * p.m_y - static_cast<double>(m_y) * p.m_x;
  }
  /// The angle of the vector in [0, SYS_FullTurn); (0, 0) gives 0.
  long GetPolarAngle() const;
  /// The radius of the vector, refined by one Newton step.
  double GetPolarRadius() const;

  int operator==(SYS_Point const &p) const { return m_x == p.m_x && m_y == p.m_y; }
  int operator!=(SYS_Point const &p) const { return !(*this == p); }
  /// Lexicographic: x decides, then y.
  int operator<(SYS_Point const &p) const { return m_x < p.m_x || (m_x == p.m_x && m_y < p.m_y); }
  int operator>(SYS_Point const &p) const { return p < *this; }

  /// Exact conversion to doubles.
  inline operator SYS_DoublePoint() const;
  /// Both coordinates rounded half away from zero.
  inline SYS_Point &operator=(SYS_DoublePoint const &p);

  /// Every integer point is valid.
  int IsValid() const { return 1; }
  /// Drawing is the host's business: a point draws nothing by itself.
  void Draw() const {}
  /// Applies `t` in place, each coordinate rounded half away from zero.
  void Transform(SYS_Transform const &t);

private:
  long m_x, m_y;  // always 32-bit values, also on LP64
};

/// A point in doubles: exact intermediate results of the geometry, no rounding.
class BFC_API SYS_DoublePoint {
public:
  SYS_DoublePoint() : m_x(0.0), m_y(0.0) {}
  SYS_DoublePoint(double x, double y) : m_x(x), m_y(y) {}

  void Initiate() { m_x = m_y = 0.0; }
  double GetX() const { return m_x; }
  double GetY() const { return m_y; }
  void SetX(double x) { m_x = x; }
  void SetY(double y) { m_y = y; }
  void Set(double x, double y) { m_x = x, m_y = y; }
  /// x for 0, y for any other index.
  double operator[](int i) const { return i == 0 ? m_x : m_y; }

  SYS_DoublePoint operator+(SYS_DoublePoint const &p) const { return SYS_DoublePoint(m_x + p.m_x, m_y + p.m_y); }
  SYS_DoublePoint operator-(SYS_DoublePoint const &p) const { return SYS_DoublePoint(m_x - p.m_x, m_y - p.m_y); }
  /// `d` added to (subtracted from) both coordinates.
  SYS_DoublePoint operator+(double d) const { return SYS_DoublePoint(m_x + d, m_y + d); }
  SYS_DoublePoint operator-(double d) const { return SYS_DoublePoint(m_x - d, m_y - d); }
  SYS_DoublePoint &operator+=(SYS_DoublePoint const &p) { return *this = *this + p; }
  SYS_DoublePoint &operator-=(SYS_DoublePoint const &p) { return *this = *this - p; }
  SYS_DoublePoint &operator+=(double d) { return *this = *this + d; }
  SYS_DoublePoint &operator-=(double d) { return *this = *this - d; }
  void Scale(double f) { m_x *= f, m_y *= f; }
  void Scale(double fx, double fy) { m_x *= fx, m_y *= fy; }

  double ScalarProduct(SYS_DoublePoint const &p) const { return m_x * p.m_x + m_y * p.m_y; }
  double VectorProduct(SYS_DoublePoint const &p) const { return m_x * p.m_y - m_y * p.m_x; }
  /// atan2 scaled to angle units and truncated toward zero; a negative angle gets a full
  /// turn added, so the result lies in [0, SYS_FullTurn).
  long GetPolarAngle() const;
  /// sqrt(x·x + y·y) refined by one Newton step; 0 for the zero vector.
  double GetPolarRadius() const;

  /// Exact comparison, no tolerance.
  int operator==(SYS_DoublePoint const &p) const { return m_x == p.m_x && m_y == p.m_y; }
  int operator!=(SYS_DoublePoint const &p) const { return !(*this == p); }
  int operator<(SYS_DoublePoint const &p) const { return m_x < p.m_x || (m_x == p.m_x && m_y < p.m_y); }
  int operator>(SYS_DoublePoint const &p) const { return p < *this; }

  SYS_DoublePoint &operator=(SYS_Point const &p) {
    return *this = SYS_DoublePoint(static_cast<double>(p.GetX()), static_cast<double>(p.GetY()));
  }
  /// Both coordinates rounded half away from zero.
  operator SYS_Point() const { return SYS_Point(sysgeom::round32(m_x), sysgeom::round32(m_y)); }

  /// 1 when both coordinates are strictly within the coordinate limit.
  int IsValid() const { return sysgeom::isWithinLimit(m_x) && sysgeom::isWithinLimit(m_y); }
  /// Applies `t` in place in doubles, no rounding.
  void Transform(SYS_Transform const &t);

private:
  double m_x, m_y;
};

inline SYS_Point::operator SYS_DoublePoint() const {
  return SYS_DoublePoint(static_cast<double>(m_x), static_cast<double>(m_y));
}

inline SYS_Point &SYS_Point::operator=(SYS_DoublePoint const &p) { return *this = static_cast<SYS_Point>(p); }

#endif
