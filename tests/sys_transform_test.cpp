//===- tests/sys_transform_test.cpp - Transforms: setters, chains, inverses -===//
#include "bfc.h"
#include "tests/geom_print.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// One-setter transforms.
SYS_Transform rotation(long x, long y, long angle) { SYS_Transform t; t.SetRotate({x, y}, angle); return t; }
SYS_Transform move(long dx, long dy) { SYS_Transform t; t.SetMove(dx, dy); return t; }
SYS_Transform scale(long x, long y, double f) { SYS_Transform t; t.SetScale({x, y}, f); return t; }
/// Reflection in the line through (x, y) along (c, s), and in the line through (0, 0) at `angle`.
SYS_Transform mirror(long x, long y, double c, double s) { SYS_Transform t; t.SetMirror({x, y}, c, s); return t; }
SYS_Transform mirror(long angle) { SYS_Transform t; t.SetMirror({0, 0}, angle); return t; }
SYS_Transform mirrorY() { return mirror(0, 0, 0.0, 1.0); }  // in the vertical line through (0, 0)

template <class Shape> Shape transformed(Shape shape, SYS_Transform const &t) {
  shape.Transform(t);
  return shape;
}

}  // namespace

// Rotations, reflections and scales map points and set the orientation (twice a mirror's angle, not reduced).
TEST(SysTransform, ElementarySetters) {
  struct Case { char const *name; SYS_Transform t; SYS_Point from, to; long orientation; int mirror; } cases[] = {
      {"quarter turn", rotation(0, 0, 162000000), {1000, 0}, {0, 1000}, 162000000, 0},
      {"half turn about (10,10)", rotation(10, 10, 324000000), {20, 10}, {0, 10}, 324000000, 0},
      {"beyond a turn", rotation(0, 0, 700000000), {0, 0}, {0, 0}, 700000000, 0},
      {"in the y axis", mirrorY(), {5, 7}, {-5, 7}, 324000000, 1},
      {"in the diagonal", mirror(0, 0, 1.0, 1.0), {5, 0}, {0, 5}, 162000000, 1},
      {"in x = 3", mirror(3, 0, 0.0, 1.0), {5, 7}, {1, 7}, 324000000, 1}, {"at 0", mirror(0L), {5, 7}, {5, -7}, 0, 1},
      {"at 45", mirror(81000000L), {5, 7}, {7, 5}, 162000000, 1},
      {"at 90", mirror(162000000L), {5, 7}, {-5, 7}, 324000000, 1},
      {"at 225", mirror(405000000L), {5, 7}, {7, 5}, 810000000, 1},
      {"scale by -2", scale(0, 0, -2.0), {1, 2}, {-2, -4}, 324000000, 0},
      {"scale by 2 about (10,10)", scale(10, 10, 2.0), {11, 10}, {12, 10}, 0, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.t.Transform(c.from), c.to);
    EXPECT_EQ(c.t.GetOrientation(), c.orientation);
    EXPECT_EQ(c.t.GetMirror(), c.mirror);
    EXPECT_EQ(c.t.GetAngleFactor(), c.mirror ? -1.0 : 1.0);
  }
  EXPECT_EQ(mirrorY().GetRotation(), SYS_Pi);
  SYS_Transform const t = scale(0, 0, -2.0);
  long length = 3;
  t.Convert(length);
  EXPECT_EQ(length, -6);
  EXPECT_EQ(t + 3L, -6);
  EXPECT_EQ(t - 3L, -2);  // -1.5 rounded half away from zero
}

// The direction angle is that of the vector (c, s), exact on axes and diagonals; the orientation truncates it.
TEST(SysTransform, RotateByDirection) {
  struct Case { double c, s; double radians; long orientation; } cases[] = {
      {1, 0, 0.0, 0}, {0, 2, 1.5707963267948966, 162000000}, {-1, 0, SYS_Pi, 324000000},
      {0, -1, 4.71238898038469, 486000000}, {1, 1, 0.7853981633974483, 81000000},
      {-1, 1, SYS_Pi - 0.7853981633974483, 243000000}, {-1, -1, SYS_Pi + 0.7853981633974483, 405000000},
      {1, -1, 6.283185307179586 - 0.7853981633974483, 567000000},
      {-3, -4, SYS_Pi + (1.5707963267948966 - std::atan(0.6 / 0.8)), 419634184}, {0, 0, 0.0, 0},
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

// Composition applies this transform first; orientations compose through the angle factor without reduction.
TEST(SysTransform, CompositionOrder) {
  SYS_Transform t = move(10, 0);
  t.AddConv(rotation(0, 0, 162000000));
  EXPECT_EQ(t + SYS_Point(0, 0), SYS_Point(0, 10));
  EXPECT_EQ(rotation(0, 0, 162000000) + move(10, 0) + SYS_Point(0, 0), SYS_Point(10, 0));
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

// Inverses undo moves, rotations and mirrors; one that cannot be inverted gives 0, the identity, unchanged points.
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

  SYS_Transform flat = scale(5, 5, 0.0);
  inverse = move(1, 1);
  EXPECT_EQ(flat.SetRConv(inverse), 0);
  EXPECT_EQ(inverse, SYS_Transform());
  EXPECT_EQ(flat - SYS_Point(8, 9), SYS_Point(8, 9));
  EXPECT_EQ(move(2, 3) - flat, move(2, 3));  // composing with the inverse composes with the identity
  flat.RConv();
  EXPECT_EQ(flat, SYS_Transform());

  SYS_Transform self = move(5, -6);
  self.RConv();
  EXPECT_EQ(self + SYS_Point(5, -6), SYS_Point(0, 0));
  EXPECT_EQ(self.SetRConv(self), 1);  // out may be the transform itself
  EXPECT_EQ(self, move(5, -6));
}

// Equality compares the radians too: SetRotate(p, long) keeps an earlier direction's radians, so equal matrices differ.
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

// A change of coordinate system brings p to the origin turned by -angle; the direction form rotates with (-s, -c).
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

// Fitting a span into a box scales by the smaller ratio (with its sign) about the span's middle and centres it.
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

// A placement maps a part's local points: mirrored in y before or after the turn, about the origin or the position.
TEST(SysTransform, Placement) {
  struct Case { const char *name; int mirror, mirrorFirst, noMoveToOrigin, noMoveBack; long px, py, x, y; } cases[] = {
      {"placed", 0, 0, 1, 0, 10, 0, 100, 10}, {"placed, mirrored first", 1, 1, 1, 0, 10, 0, 100, -10},
      {"placed, mirrored after", 1, 0, 1, 0, 10, 0, 100, 10}, {"placed, mirrored after, y", 1, 0, 1, 0, 0, 10, 110, 0},
      {"turned about the origin", 0, 0, 0, 0, 110, 0, 100, 10}, {"to the origin only", 0, 0, 0, 1, 110, 0, 0, 10},
      {"rotation only", 0, 0, 1, 1, 10, 0, 0, 10},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Transform const t(SYS_Position(100, 0, 162000000, c.mirror), c.mirrorFirst, c.noMoveToOrigin, c.noMoveBack);
    EXPECT_EQ(t + SYS_Point(c.px, c.py), SYS_Point(c.x, c.y));
    EXPECT_EQ(t, SYS_Transform(SYS_Point(100, 0), 162000000, c.mirror, c.mirrorFirst, c.noMoveToOrigin, c.noMoveBack));
    EXPECT_EQ(t, SYS_Transform(100, 0, 162000000 + 648000000, c.mirror, c.mirrorFirst, c.noMoveToOrigin, c.noMoveBack));
    EXPECT_EQ(t.GetMirror(), c.mirror);
  }
  EXPECT_EQ(SYS_Transform(SYS_Position(), 0, 0, 0), SYS_Transform());
}

// Angles come into [0, turn] plus the orientation, mirrored as angle × -1; sweeps past a turn become +648,000,000.
TEST(SysTransform, ConvertAngleAndSweep) {
  SYS_Transform const id, quarter = rotation(0, 0, 162000000), mirrored = mirrorY();
  struct Case { const char *name; SYS_Transform t; long angle, sweep, toAngle, toSweep; } cases[] = {
      {"negative angle", id, -10, 100, 647999990, 100}, {"full turn stays", id, 648000000, 5, 648000000, 5},
      {"far beyond", id, 2000000000, 0, 56000000, 0}, {"rotated", quarter, 600000000, -7, 114000000, -7},
      {"rotated onto a full turn", quarter, 486000000, 0, 648000000, 0},
      {"sweep beyond a turn", id, 0, 700000000, 0, 648000000},
      {"sweep beyond a turn cw", id, 0, -700000000, 0, 648000000},
      {"clockwise full turn stays", id, 0, -648000000, 0, -648000000},
      {"mirrored", mirrored, 100, 1000, 323999900, -1000},
      {"mirrored 90", mirrored, 0, 162000000, 324000000, -162000000},
      {"mirrored 45", mirrored, 81000000, 1, 243000000, -1},
      {"mirrored past zero", mirrored, 500000000, 3, 472000000, -3},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    long angle = c.angle, sweep = c.sweep;
    c.t.Convert(angle, sweep);
    EXPECT_EQ(angle, c.toAngle);
    EXPECT_EQ(sweep, c.toSweep);
  }
}

// A location takes t's orientation, mirrored from the other side of the half turn; a position also flips its mirror.
TEST(SysTransform, LocationsAndPositions) {
  struct Case { long orientation, expected; } cases[] = {{100, 323999900}, {400000000, 572000000}, {-100, 324000100}};
  for (auto const &c : cases) {
    SCOPED_TRACE(c.orientation);
    EXPECT_EQ(transformed(SYS_Location(5, 6, c.orientation), mirror(0L)), SYS_Location(5, -6, c.expected));
  }
  SYS_Position p = transformed(SYS_Position(10, 0, 600000000, 0), rotation(0, 0, 162000000));
  EXPECT_EQ(p, SYS_Position(0, 10, 114000000, 0));
  p.Transform(mirrorY());
  EXPECT_EQ(p, SYS_Position(0, 10, 324000000 - (114000000 + 324000000) + 648000000, 1));
  p.Transform(mirrorY());
  EXPECT_EQ(p.GetMirror(), 0);
}

// Shapes move their points; radii are never scaled or negated, boxes come out normalized.
TEST(SysTransform, Shapes) {
  SYS_Transform const t = scale(0, 0, 2.0);
  EXPECT_EQ(transformed(SYS_Circle(1, 2, 3), t), SYS_Circle(2, 4, 3));
  EXPECT_EQ(transformed(SYS_Arc(SYS_Point(10, 0), SYS_Point(0, 10), SYS_Point(0, 0), 10), mirrorY()),
            SYS_Arc(SYS_Point(-10, 0), SYS_Point(0, 10), SYS_Point(0, 0), 10));
  EXPECT_EQ(transformed(SYS_Segment(1, 1, 2, 3), t), SYS_Segment(2, 2, 4, 6));
  EXPECT_EQ(transformed(SYS_Box(0, 0, 10, 20), rotation(0, 0, 162000000)), SYS_Box(-20, 0, 0, 10));
  EXPECT_EQ(transformed(SYS_Point(-1, 1), t), SYS_Point(-2, 2));
  EXPECT_EQ(transformed(SYS_DoublePoint(0.25, -0.5), t), SYS_DoublePoint(0.5, -1.0));
  t.Transform(static_cast<SYS_Point *>(nullptr));  // ignored
  t.Transform(static_cast<SYS_DoublePoint *>(nullptr));
}
