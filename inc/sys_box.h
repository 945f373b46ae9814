//===- inc/sys_box.h - Axis-aligned boxes -------------------------------===//
//
// A box is its lower-left and upper-right corners, stored as given: only
// Normalize, Expand and Transform put left <= right and lower <= upper.
// The undefined box (left = lower = limit, right = upper = -limit) is where
// an accumulation by Combine starts; the default box is the zero box.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_BOX_H
#define BFC_SYS_BOX_H

#include "sys_point.h"

/// An axis-aligned rectangle in base units: extents, hit tests, unions, intersections
/// and the pieces left when one box is cut out of another.
class BFC_API SYS_Box {
public:
  SYS_Box() : m_lowerLeft(0, 0), m_upperRight(0, 0) {}
  SYS_Box(SYS_Point const &lowerLeft, SYS_Point const &upperRight)
      : m_lowerLeft(lowerLeft), m_upperRight(upperRight) {}
  SYS_Box(long left, long lower, long right, long upper) : m_lowerLeft(left, lower), m_upperRight(right, upper) {}
  /// The square of side abs(size) with `p` as its lower-left corner (size >= 0) or its
  /// upper-right corner (size < 0).
  SYS_Box(SYS_Point const &p, long size) { Set(p, size); }

  /// The undefined box: the start of an accumulation by Combine.
  static SYS_Box Undefined() { return SYS_Box(SYS_CoordLimit, SYS_CoordLimit, -SYS_CoordLimit, -SYS_CoordLimit); }

  void Set(SYS_Point const &lowerLeft, SYS_Point const &upperRight) {
    m_lowerLeft = lowerLeft, m_upperRight = upperRight;
  }
  void Set(long left, long lower, long right, long upper) {
    m_lowerLeft.Set(left, lower), m_upperRight.Set(right, upper);
  }
  void Set(SYS_Point const &p, long size) {
    if (size >= 0)
      m_lowerLeft = p, m_upperRight = p + size;
    else
      m_lowerLeft = p + size, m_upperRight = p;
  }

  long GetLeft() const { return m_lowerLeft.GetX(); }
  long GetLower() const { return m_lowerLeft.GetY(); }
  long GetRight() const { return m_upperRight.GetX(); }
  long GetUpper() const { return m_upperRight.GetY(); }
  void SetLeft(long v) { m_lowerLeft.SetX(v); }
  void SetLower(long v) { m_lowerLeft.SetY(v); }
  void SetRight(long v) { m_upperRight.SetX(v); }
  void SetUpper(long v) { m_upperRight.SetY(v); }
  SYS_Point &GetLowerLeft() { return m_lowerLeft; }
  SYS_Point const &GetLowerLeft() const { return m_lowerLeft; }
  SYS_Point &GetUpperRight() { return m_upperRight; }
  SYS_Point const &GetUpperRight() const { return m_upperRight; }
  void SetLowerLeft(SYS_Point const &p) { m_lowerLeft = p; }
  void SetLowerLeft(long x, long y) { m_lowerLeft.Set(x, y); }
  void SetUpperRight(SYS_Point const &p) { m_upperRight = p; }
  void SetUpperRight(long x, long y) { m_upperRight.Set(x, y); }
  SYS_Point GetUpperLeft() const { return SYS_Point(GetLeft(), GetUpper()); }
  SYS_Point GetLowerRight() const { return SYS_Point(GetRight(), GetLower()); }

  /// Signed extents: negative for an inverted box.
  long GetDX() const { return sysgeom::sub32(GetRight(), GetLeft()); }
  long GetDY() const { return sysgeom::sub32(GetUpper(), GetLower()); }
  long GetWidth() const { return GetDX(); }
  long GetHeight() const { return GetDY(); }

  /// 1 when the box is normalized (left <= right and lower <= upper).
  int IsValid() const { return GetLeft() <= GetRight() && GetLower() <= GetUpper(); }
  /// 1 when the box has zero width or zero height; an inverted box is not empty.
  int IsEmpty() const { return GetRight() == GetLeft() || GetUpper() == GetLower(); }
  /// Makes the zero box.
  void SetEmpty() { *this = SYS_Box(); }
  int operator==(SYS_Box const &b) const { return m_lowerLeft == b.m_lowerLeft && m_upperRight == b.m_upperRight; }
  int operator!=(SYS_Box const &b) const { return !(*this == b); }

  /// Edges included.
  int IsInclude(SYS_Point const &p) const {
    return GetLeft() <= p.GetX() && p.GetX() <= GetRight() && GetLower() <= p.GetY() && p.GetY() <= GetUpper();
  }
  void Move(SYS_Point const &d) { m_lowerLeft += d, m_upperRight += d; }
  /// Grows the box to contain (x, y).
  void Increase(long x, long y) {
    if (x < GetLeft()) SetLeft(x);
    if (y < GetLower()) SetLower(y);
    if (x > GetRight()) SetRight(x);
    if (y > GetUpper()) SetUpper(y);
  }
  /// Moves every edge outwards by d (inwards for a negative d), then normalizes.
  void Expand(long d) {
    m_lowerLeft -= d, m_upperRight += d;
    Normalize();
  }
  /// Swaps left and right if inverted, then lower and upper.
  void Normalize() {
    if (GetLeft() > GetRight()) {
      long const t = GetLeft();
      SetLeft(GetRight()), SetRight(t);
    }
    if (GetLower() > GetUpper()) {
      long const t = GetLower();
      SetLower(GetUpper()), SetUpper(t);
    }
  }
  /// Half the 32-bit sums, the division truncating toward zero.
  SYS_Point GetCenter() const {
    return SYS_Point(sysgeom::add32(GetLeft(), GetRight()) / 2, sysgeom::add32(GetLower(), GetUpper()) / 2);
  }
  /// Moves the box, keeping its extents, so that its left/lower edge lies half the extent
  /// (truncated) before c.
  void SetCenter(SYS_Point const &c) {
    long const w = GetDX(), h = GetDY();
    SetLowerLeft(sysgeom::sub32(c.GetX(), w / 2), sysgeom::sub32(c.GetY(), h / 2));
    SetUpperRight(sysgeom::add32(GetLeft(), w), sysgeom::add32(GetLower(), h));
  }

  /// 1 for the undefined box.
  int IsUndefined() const {
    return GetLeft() == SYS_CoordLimit && GetLower() == SYS_CoordLimit && GetRight() == -SYS_CoordLimit &&
           GetUpper() == -SYS_CoordLimit;
  }
  /// The union: the undefined box takes b as it is, an undefined b changes nothing,
  /// otherwise the extremes of both (no normalization).
  void Combine(SYS_Box const &b) {
    if (IsUndefined()) {
      *this = b;
    } else if (!b.IsUndefined()) {
      if (b.GetLeft() < GetLeft()) SetLeft(b.GetLeft());
      if (b.GetLower() < GetLower()) SetLower(b.GetLower());
      if (b.GetRight() > GetRight()) SetRight(b.GetRight());
      if (b.GetUpper() > GetUpper()) SetUpper(b.GetUpper());
    }
  }
  /// This box becomes the overlap of a and b. Returns 1 when it has positive width and
  /// height; otherwise 0, with the collapsed extent set to zero (left = right or
  /// lower = upper), so boxes that only touch give 0.
  int SetAsIntersection(SYS_Box const &a, SYS_Box const &b) {
    Set(a.GetLeft() > b.GetLeft() ? a.GetLeft() : b.GetLeft(), a.GetLower() > b.GetLower() ? a.GetLower() : b.GetLower(),
        a.GetRight() < b.GetRight() ? a.GetRight() : b.GetRight(), a.GetUpper() < b.GetUpper() ? a.GetUpper() : b.GetUpper());
    if (GetLeft() >= GetRight()) {
      SetLeft(GetRight());
      return 0;
    }
    if (GetLower() >= GetUpper()) {
      SetLower(GetUpper());
      return 0;
    }
    return 1;
  }
  /// Writes b minus this box into out as non-overlapping boxes and returns their number,
  /// 0 to 4; out must have room for four. Pieces come column by column from left to
  /// right (a column beside this box spans b's whole height; above and below this box,
  /// the lower piece first). An inverted box on an axis counts with its ends exchanged;
  /// a b of zero width or height leaves no pieces.
  int Clip(SYS_Box const &b, SYS_Box *out) const;

  /// Transforms the four corners; the box becomes their bounding box (always normalized).
  void Transform(SYS_Transform const &t);

private:
  SYS_Point m_lowerLeft, m_upperRight;
};

#endif
