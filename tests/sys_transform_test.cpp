//===- tests/sys_transform_test.cpp - Transforms: setters, chains, inverses -===//
#include "bfc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string str(SYS_Point const &p) { return "(" + std::to_string(p.GetX()) + ", " + std::to_string(p.GetY()) + ")"; }

SYS_Transform rotation(long x, long y, long angle) {
  SYS_Transform t;
  t.SetRotate(SYS_Point(x, y), angle);
  return t;
}

SYS_Transform move(long dx, long dy) {
  SYS_Transform t;
  t.SetMove(dx, dy);
  return t;
}

SYS_Transform mirrorY() {  // reflection in the vertical line through (0, 0)
  SYS_Transform t;
  t.SetMirror(SYS_Point(0, 0), 0.0, 1.0);
  return t;
}

}  // namespace

// Quarter turns land on exact integer points, also far from the origin and after several
// turns, in both data models.
TEST(SysTransform, QuarterTurnsAreExact) {
  struct Center { long x, y; } const centers[] = {{0, 0}, {1000000, -2000000}, {-500000000, 500000000}};
  struct Offset { long x, y; } const offsets[] = {{1000, 0}, {123456789, -98765432}, {-500000000, 499999999}};
  for (int k = -4; k <= 8; ++k) {
    for (auto const &c : centers) {
      for (auto const &o : offsets) {
        SCOPED_TRACE("k=" + std::to_string(k) + " center " + str(SYS_Point(c.x, c.y)) + " offset " + str(SYS_Point(o.x, o.y)));
        long ex = o.x, ey = o.y;
        for (int i = 0; i < ((k % 4) + 4) % 4; ++i) {
          long const t = ex;
          ex = -ey, ey = t;
        }
        SYS_Point p(c.x + o.x, c.y + o.y);
        rotation(c.x, c.y, k * 162000000L).Transform(&p);
        EXPECT_EQ(p, SYS_Point(c.x + ex, c.y + ey));
      }
    }
  }
}

// Rotations, reflections and scales map the documented points and set their bookkeeping.
TEST(SysTransform, ElementarySetters) {
  SYS_Transform t = rotation(0, 0, 162000000);
  EXPECT_EQ(t.Transform(SYS_Point(1000, 0)), SYS_Point(0, 1000));
  EXPECT_EQ(t.GetOrientation(), 162000000);
  EXPECT_EQ(t.IsRotate(), 1);
  EXPECT_EQ(t.GetMirror(), 0);
  EXPECT_EQ(rotation(10, 10, 324000000) + SYS_Point(20, 10), SYS_Point(0, 10));
  EXPECT_EQ(rotation(0, 0, 700000000).GetOrientation(), 700000000);  // not reduced

  t = mirrorY();
  EXPECT_EQ(t.Transform(SYS_Point(5, 7)), SYS_Point(-5, 7));
  EXPECT_EQ(t.IsRotate(), 1);
  EXPECT_EQ(t.GetMirror(), 1);
  EXPECT_EQ(t.GetOrientation(), 324000000);
  EXPECT_EQ(t.GetRotation(), SYS_Pi);

  t.SetMirror(SYS_Point(0, 0), 1.0, 1.0);  // the diagonal
  EXPECT_EQ(t.Transform(SYS_Point(5, 0)), SYS_Point(0, 5));
  EXPECT_EQ(t.GetOrientation(), 162000000);
  t.SetMirror(SYS_Point(3, 0), 0.0, 1.0);
  EXPECT_EQ(t.Transform(SYS_Point(5, 7)), SYS_Point(1, 7));

  struct Case { long angle; long x, y; long orientation; } mirrors[] = {
      {0, 5, -7, 0}, {81000000, 7, 5, 162000000}, {162000000, -5, 7, 324000000}, {405000000, 7, 5, 810000000},
  };
  for (auto const &c : mirrors) {
    SCOPED_TRACE(c.angle);
    t.SetMirror(SYS_Point(0, 0), c.angle);
    EXPECT_EQ(t.Transform(SYS_Point(5, 7)), SYS_Point(c.x, c.y));
    EXPECT_EQ(t.GetOrientation(), c.orientation);  // twice the angle, not reduced
    EXPECT_EQ(t.GetAngleFactor(), -1.0);
  }

  t.SetScale(SYS_Point(0, 0), -2.0);
  EXPECT_EQ(t + SYS_Point(1, 2), SYS_Point(-2, -4));
  EXPECT_EQ(t.GetOrientation(), 324000000);
  EXPECT_EQ(t.IsScale(), 1);
  EXPECT_EQ(t + 3L, -6);
  EXPECT_EQ(t - 3L, -2);  // -1.5 rounded half away from zero
  long length = 3;
  t.Convert(length);
  EXPECT_EQ(length, -6);
  t.SetScale(SYS_Point(10, 10), 2.0);
  EXPECT_EQ(t + SYS_Point(11, 10), SYS_Point(12, 10));
  EXPECT_EQ(t.GetOrientation(), 0);
}

// The direction angle is that of the vector (c, s), exact on the axes and diagonals;
// the orientation truncates it: (-3, -4) gives 419,634,184.
TEST(SysTransform, RotateByDirection) {
  struct Case { double c, s; double radians; long orientation; } cases[] = {
      {1, 0, 0.0, 0},
      {0, 2, 1.5707963267948966, 162000000},
      {-1, 0, SYS_Pi, 324000000},
      {0, -1, 4.71238898038469, 486000000},
      {1, 1, 0.7853981633974483, 81000000},
      {-1, 1, SYS_Pi - 0.7853981633974483, 243000000},
      {-1, -1, SYS_Pi + 0.7853981633974483, 405000000},
      {1, -1, 6.283185307179586 - 0.7853981633974483, 567000000},
      {-3, -4, SYS_Pi + (1.5707963267948966 - std::atan(0.6 / 0.8)), 419634184},
      {0, 0, 0.0, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::to_string(c.c) + ", " + std::to_string(c.s));
    SYS_Transform t;
    t.SetRotate(SYS_Point(0, 0), c.c, c.s);
    EXPECT_EQ(t.GetRotation(), c.radians);
    EXPECT_EQ(t.GetOrientation(), c.orientation);
  }
  SYS_Transform zero;
  zero.SetRotate(SYS_Point(5, 5), 0.0, 0.0);  // no direction: the identity
  EXPECT_EQ(zero, SYS_Transform());
  zero.SetRotate(SYS_Point(0, 0), 0.0, 3.0);
  EXPECT_EQ(zero + SYS_Point(1000, 0), SYS_Point(0, 1000));
}

// Composition applies this transform first; orientations compose through the angle
// factor without reduction.
TEST(SysTransform, CompositionOrder) {
  SYS_Transform t = move(10, 0);
  t.AddConv(rotation(0, 0, 162000000));
  EXPECT_EQ(t + SYS_Point(0, 0), SYS_Point(0, 10));
  SYS_Transform u = rotation(0, 0, 162000000) + move(10, 0);
  EXPECT_EQ(u + SYS_Point(0, 0), SYS_Point(10, 0));

  SYS_Transform r = rotation(0, 0, 100) + mirrorY();
  EXPECT_EQ(r.GetOrientation(), 323999900);
  EXPECT_EQ(r.GetAngleFactor(), -1.0);
  EXPECT_EQ(r.GetSweepFactor(), -1.0);
  r.AddConv(mirrorY());
  EXPECT_EQ(r.GetOrientation(), -323999900 + 324000000);
  EXPECT_EQ(r.GetMirror(), 0);
  EXPECT_EQ(r.IsRotate(), 1);
  SYS_Transform twice = rotation(0, 0, 500000000);
  twice.AddConv(twice);  // the operand may be the transform itself
  EXPECT_EQ(twice.GetOrientation(), 1000000000);
}

// Inverses undo moves, rotations and mirrors; a transform that cannot be inverted gives 0,
// the identity, an unchanged point, and composes with the identity.
TEST(SysTransform, Inversion) {
  SYS_Transform inverse;
  EXPECT_EQ(move(3, 4).SetRConv(inverse), 1);
  EXPECT_EQ(inverse + SYS_Point(3, 4), SYS_Point(0, 0));
  EXPECT_EQ(move(3, 4) - SYS_Point(3, 4), SYS_Point(0, 0));
  SYS_Transform const r = rotation(7, 9, 100000000) + mirrorY();
  EXPECT_EQ(r.SetRConv(inverse), 1);
  EXPECT_EQ(inverse.GetOrientation(), -r.GetOrientation());
  EXPECT_EQ(inverse.GetRotation(), -r.GetRotation());
  EXPECT_EQ(inverse.GetAngleFactor(), -1.0);
  EXPECT_EQ(inverse.GetSweepFactor(), -1.0);

  SYS_Transform flat;
  flat.SetScale(SYS_Point(5, 5), 0.0);
  inverse = move(1, 1);
  EXPECT_EQ(flat.SetRConv(inverse), 0);
  EXPECT_EQ(inverse, SYS_Transform());
  EXPECT_EQ(flat - SYS_Point(8, 9), SYS_Point(8, 9));
  SYS_Transform composed = move(2, 3);
  composed.SubConv(flat);
  EXPECT_EQ(composed, move(2, 3));
  EXPECT_EQ(move(2, 3) - flat, move(2, 3));
  flat.RConv();
  EXPECT_EQ(flat, SYS_Transform());

  SYS_Transform self = move(5, -6);
  self.RConv();
  EXPECT_EQ(self + SYS_Point(5, -6), SYS_Point(0, 0));
}

// Equality compares every field, the radians too: SetRotate(p, long) keeps the radians
// of an earlier direction rotation, so equal matrices may compare unequal.
TEST(SysTransform, EqualityComparesTheRadians) {
  EXPECT_EQ(rotation(1, 2, 300), rotation(1, 2, 300));
  EXPECT_NE(rotation(1, 2, 300), rotation(1, 2, 301));
  SYS_Transform t;
  t.SetRotate(SYS_Point(0, 0), 0.0, 1.0);
  t.SetRotate(SYS_Point(0, 0), 0L);
  EXPECT_EQ(t.GetRotation(), 1.5707963267948966);
  EXPECT_NE(t, rotation(0, 0, 0));
  SYS_Transform copy;
  copy = &t;
  EXPECT_EQ(copy, t);
  copy = static_cast<SYS_Transform const *>(nullptr);  // no source: unchanged
  EXPECT_EQ(copy, t);
}

// A change of coordinate system brings p to the origin turned by -angle; the direction
// form literally rotates with (-s, -c).
TEST(SysTransform, CoordinateSystem) {
  SYS_Transform t;
  t.SetCoordSys(SYS_Point(100, 100), 162000000);
  EXPECT_EQ(t + SYS_Point(100, 110), SYS_Point(10, 0));
  EXPECT_EQ(t + SYS_Point(100, 100), SYS_Point(0, 0));
  EXPECT_EQ(t.GetOrientation(), -162000000);
  t.SetCoordSys(SYS_Point(100, 100), 1.0, 0.0);  // rotates with (-0, -1): a clockwise quarter
  EXPECT_EQ(t + SYS_Point(100, 110), SYS_Point(10, 0));
  EXPECT_EQ(t.GetOrientation(), 486000000);
}

// Fitting a span into a box scales uniformly by the smaller ratio (with its sign) about the
// span's middle and centres it on the box.
TEST(SysTransform, BoxConversion) {
  SYS_Transform t;
  t.SetBoxConv(SYS_Point(0, 0), SYS_Point(100, 50), SYS_Box(0, 0, 1000, 1000));
  EXPECT_EQ(t.GetScale(), 10.0);
  EXPECT_EQ(t + SYS_Point(0, 0), SYS_Point(0, 250));
  EXPECT_EQ(t + SYS_Point(100, 50), SYS_Point(1000, 750));
  t.SetBoxConv(SYS_Point(0, 0), SYS_Point(100, -50), SYS_Box(0, 0, 1000, 1000));
  EXPECT_EQ(t.GetScale(), -20.0);  // the negative ratio is the smaller
  EXPECT_EQ(t.GetOrientation(), 324000000);
  EXPECT_EQ(t + SYS_Point(50, -25), SYS_Point(500, 500));
}

// A placement maps a part's local points: mirrored in y before or after the rotation,
// turning about the origin or about the position.
TEST(SysTransform, Placement) {
  struct Case { const char *name; int mirror, mirrorFirst, noMoveToOrigin, noMoveBack; long px, py, x, y; } cases[] = {
      {"placed", 0, 0, 1, 0, 10, 0, 100, 10},
      {"placed, mirrored first", 1, 1, 1, 0, 10, 0, 100, -10},
      {"placed, mirrored after", 1, 0, 1, 0, 10, 0, 100, 10},
      {"placed, mirrored after, y", 1, 0, 1, 0, 0, 10, 110, 0},
      {"turned about the origin", 0, 0, 0, 0, 110, 0, 100, 10},
      {"to the origin only", 0, 0, 0, 1, 110, 0, 0, 10},
      {"rotation only", 0, 0, 1, 1, 10, 0, 0, 10},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Position const pos(100, 0, 162000000, c.mirror);
    SYS_Transform const t(pos, c.mirrorFirst, c.noMoveToOrigin, c.noMoveBack);
    EXPECT_EQ(t + SYS_Point(c.px, c.py), SYS_Point(c.x, c.y));
    EXPECT_EQ(t, SYS_Transform(SYS_Point(100, 0), 162000000, c.mirror, c.mirrorFirst, c.noMoveToOrigin, c.noMoveBack));
    EXPECT_EQ(t, SYS_Transform(100, 0, 162000000 + 648000000, c.mirror, c.mirrorFirst, c.noMoveToOrigin, c.noMoveBack));
    EXPECT_EQ(t.GetMirror(), c.mirror);
  }
  EXPECT_EQ(SYS_Transform(SYS_Position(), 0, 0, 0), SYS_Transform());
}

// Angles come into [0, full turn] (a full turn stays), the orientation is added; a
// mirror maps the angle to angle × -1 + orientation. Sweeps truncate, and anything beyond
// a full turn either way becomes +648,000,000.
TEST(SysTransform, ConvertAngleAndSweep) {
  struct Case { const char *name; SYS_Transform t; long angle, sweep, toAngle, toSweep; } cases[] = {
      {"negative angle", SYS_Transform(), -10, 100, 647999990, 100},
      {"full turn stays", SYS_Transform(), 648000000, 5, 648000000, 5},
      {"far beyond", SYS_Transform(), 2000000000, 0, 56000000, 0},
      {"rotated", rotation(0, 0, 162000000), 600000000, -7, 114000000, -7},
      {"rotated onto a full turn", rotation(0, 0, 162000000), 486000000, 0, 648000000, 0},
      {"sweep beyond a turn", SYS_Transform(), 0, 700000000, 0, 648000000},
      {"sweep beyond a turn clockwise", SYS_Transform(), 0, -700000000, 0, 648000000},
      {"clockwise full turn stays", SYS_Transform(), 0, -648000000, 0, -648000000},
      {"mirrored", mirrorY(), 100, 1000, 323999900, -1000},
      {"mirrored quarter", mirrorY(), 0, 162000000, 324000000, -162000000},
      {"mirrored at 45 degrees", mirrorY(), 81000000, 1, 243000000, -1},
      {"mirrored past zero", mirrorY(), 500000000, 3, 472000000, -3},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    long angle = c.angle, sweep = c.sweep;
    c.t.Convert(angle, sweep);
    EXPECT_EQ(angle, c.toAngle);
    EXPECT_EQ(sweep, c.toSweep);
  }
}

// A location takes t's orientation; a mirror counts it from the other side of the half
// turn (negative results get a full turn); a position also flips its mirror flag.
TEST(SysTransform, LocationsAndPositions) {
  SYS_Transform reflection;
  reflection.SetMirror(SYS_Point(0, 0), 0L);
  struct Case { long orientation, expected; } cases[] = {{100, 323999900}, {400000000, 572000000}, {-100, 324000100}};
  for (auto const &c : cases) {
    SCOPED_TRACE(c.orientation);
    SYS_Location l(5, 6, c.orientation);
    l.Transform(reflection);
    EXPECT_EQ(l, SYS_Location(5, -6, c.expected));
  }
  SYS_Position p(10, 0, 600000000, 0);
  p.Transform(rotation(0, 0, 162000000));
  EXPECT_EQ(p, SYS_Position(0, 10, 114000000, 0));
  p.Transform(mirrorY());
  EXPECT_EQ(p, SYS_Position(0, 10, 324000000 - (114000000 + 324000000) + 648000000, 1));
  p.Transform(mirrorY());
  EXPECT_EQ(p.GetMirror(), 0);
}

// Shapes move their points; radii are never scaled or negated, boxes come out normalized.
TEST(SysTransform, Shapes) {
  SYS_Transform t;
  t.SetScale(SYS_Point(0, 0), 2.0);
  SYS_Circle c(1, 2, 3);
  c.Transform(t);
  EXPECT_EQ(c, SYS_Circle(2, 4, 3));
  SYS_Arc a(SYS_Point(10, 0), SYS_Point(0, 10), SYS_Point(0, 0), 10);
  a.Transform(mirrorY());
  EXPECT_EQ(a, SYS_Arc(SYS_Point(-10, 0), SYS_Point(0, 10), SYS_Point(0, 0), 10));
  SYS_Segment s(1, 1, 2, 3);
  s.Transform(t);
  EXPECT_EQ(s, SYS_Segment(2, 2, 4, 6));
  SYS_Box b(0, 0, 10, 20);
  b.Transform(rotation(0, 0, 162000000));
  EXPECT_EQ(b, SYS_Box(-20, 0, 0, 10));
  SYS_Point p(-1, 1);
  p.Transform(t);
  EXPECT_EQ(p, SYS_Point(-2, 2));
  SYS_DoublePoint d(0.25, -0.5);
  d.Transform(t);
  EXPECT_EQ(d, SYS_DoublePoint(0.5, -1.0));
}
