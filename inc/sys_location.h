//===- inc/sys_location.h - Locations and positions ---------------------===//
//
// A location is an origin with an orientation, a position adds the mirror
// flag: the placement of a part or a text. The orientation is kept reduced
// modulo a full turn (it keeps its sign, so -52,000,000 stays negative) and
// the mirror flag is kept 0 or 1.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_LOCATION_H
#define BFC_SYS_LOCATION_H

#include "sys_point.h"

/// An origin and an orientation in angle units.
class BFC_API SYS_Location {
public:
  SYS_Location() : m_origin(0, 0), m_orientation(0) {}
  SYS_Location(SYS_Point const &origin, long orientation)
      : m_origin(origin), m_orientation(sysgeom::reduceAngle(orientation)) {}
  SYS_Location(long x, long y, long orientation) : SYS_Location(SYS_Point(x, y), orientation) {}

  void Initiate() { *this = SYS_Location(); }
  void Set(SYS_Point const &origin, long orientation) { *this = SYS_Location(origin, orientation); }
  void Set(long x, long y, long orientation) { *this = SYS_Location(x, y, orientation); }
  SYS_Point &GetOrigin() { return m_origin; }
  SYS_Point const &GetOrigin() const { return m_origin; }
  long GetOrientation() const { return m_orientation; }
  void SetOrigin(SYS_Point const &origin) { m_origin = origin; }
  void SetOrigin(long x, long y) { m_origin.Set(x, y); }
  /// Stores the orientation reduced modulo a full turn.
  void SetOrientation(long orientation) { m_orientation = sysgeom::reduceAngle(orientation); }

  /// Origins add; orientations add and the sum is reduced modulo a full turn.
  SYS_Location &operator+=(SYS_Location const &l) {
    m_origin += l.m_origin;
    m_orientation = sysgeom::reduceAngle(sysgeom::add32(m_orientation, l.m_orientation));
    return *this;
  }
  SYS_Location operator+(SYS_Location const &l) const { return SYS_Location(*this) += l; }

  int operator==(SYS_Location const &l) const {
    return m_origin == l.m_origin && m_orientation == l.m_orientation;
  }
  int operator!=(SYS_Location const &l) const { return !(*this == l); }

  /// 1 when the orientation lies strictly within one full turn either way.
  int IsValid() const { return m_orientation > -SYS_FullTurn && m_orientation < SYS_FullTurn; }
  /// The origin is transformed as a point; t's orientation is added and the sum reduced;
  /// a mirroring t then turns the orientation into a half turn minus it, in [0, full turn].
  void Transform(SYS_Transform const &t);

private:
  SYS_Point m_origin;
  long m_orientation;
};

/// A location with a mirror flag: how a part or a text is placed on the board.
class BFC_API SYS_Position : public SYS_Location {
public:
  SYS_Position() : m_mirror(0) {}
  SYS_Position(SYS_Location const &l, int mirror) : SYS_Location(l), m_mirror(mirror != 0) {}
  SYS_Position(SYS_Point const &origin, long orientation, int mirror)
      : SYS_Location(origin, orientation), m_mirror(mirror != 0) {}
  SYS_Position(long x, long y, long orientation, int mirror)
      : SYS_Location(x, y, orientation), m_mirror(mirror != 0) {}

  void Initiate() { *this = SYS_Position(); }
  void Set(SYS_Point const &origin, long orientation, int mirror) {
    *this = SYS_Position(origin, orientation, mirror);
  }
  void Set(long x, long y, long orientation, int mirror) { *this = SYS_Position(x, y, orientation, mirror); }
  int GetMirror() const { return m_mirror; }
  void SetMirror(int mirror) { m_mirror = mirror != 0; }

  /// The location sum; a mirrored p flips this position's mirror.
  SYS_Position &operator+=(SYS_Position const &p) {
    SYS_Location::operator+=(p);
    if (p.m_mirror) m_mirror = 1 - m_mirror;
    return *this;
  }
  /// The location sum; mirror is the exclusive-or of both flags.
  SYS_Position operator+(SYS_Position const &p) const {
    return SYS_Position(SYS_Location::operator+(p), (m_mirror != 0) != (p.m_mirror != 0));
  }

  int operator==(SYS_Position const &p) const {
    return SYS_Location::operator==(p) && m_mirror == p.m_mirror;
  }
  int operator!=(SYS_Position const &p) const { return !(*this == p); }

  /// A valid orientation and a mirror flag of exactly 0 or 1.
  int IsValid() const { return SYS_Location::IsValid() && (m_mirror == 0 || m_mirror == 1); }
  /// The location transform; a mirroring t then flips the mirror flag.
  void Transform(SYS_Transform const &t);

private:
  int m_mirror;  // 0 or 1
};

#endif
