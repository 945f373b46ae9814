//===- sys/sys_location.cpp - Transforms of locations and positions ----===//
#include "sys_location.h"
#include "sys_transform.h"

void SYS_Location::Transform(SYS_Transform const &t) {
  t.Transform(&m_origin);
  long orientation = sysgeom::reduceAngle(sysgeom::add32(t.GetOrientation(), sysgeom::reduceAngle(m_orientation)));
  if (t.GetMirror()) {
    // A mirrored orientation is counted from the other side of the half turn.
    orientation = SYS_HalfTurn - orientation;
    if (orientation < 0) orientation += SYS_FullTurn;
  }
  m_orientation = orientation;
}

void SYS_Position::Transform(SYS_Transform const &t) {
  SYS_Location::Transform(t);
  if (t.GetMirror()) m_mirror = 1 - m_mirror;
}
