//===- tests/sys_arc_test.cpp - Circles, segments and arcs -------------===//
#include "bfc.h"
#include "tests/geom_print.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ArcCase {
  const char *name;
  long sx, sy, ex, ey, cx, cy, r;
  SYS_Arc arc() const { return SYS_Arc(SYS_Point(sx, sy), SYS_Point(ex, ey), SYS_Point(cx, cy), r); }
};

constexpr long L = SYS_CoordLimit;

}  // namespace

// A circle's box uses the signed radius (a negative one inverts it); the radius must lie inside the limit. A segment's
// box is normalized; its length is refined to the exact root.
TEST(SysCircleAndSegment, BoxesLengthAndValidity) {
  EXPECT_EQ(SYS_Segment(10, 0, 0, 10).GetBox(), SYS_Box(0, 0, 10, 10));
  EXPECT_EQ(SYS_Segment(1, 1, 4, 5).GetLength(), 5.0);
  EXPECT_EQ(SYS_Circle(1, 2, 3).GetBox(), SYS_Box(-2, -1, 4, 5));
  EXPECT_EQ(SYS_Circle(1, 2, -3).GetBox(), SYS_Box(4, 5, -2, -1));
  struct Case { long r; int valid; } cases[] = {{L - 1, 1}, {L, 0}, {-(L - 1), 1}, {-L, 0}, {0, 1}};
  for (auto const &c : cases) {
    SCOPED_TRACE(c.r);
    EXPECT_EQ(SYS_Circle(0, 0, c.r).IsValid(), c.valid);
    EXPECT_EQ(SYS_Arc(SYS_Point(0, 0), SYS_Point(0, 0), SYS_Point(0, 0), c.r).IsValid(), c.valid);
  }
}

// The sweep follows the radius' sign: [0, turn) ccw, (-turn, 0] cw; equal ends sweep 0; radius 0 gets no correction.
// The length is sweep × π × (1/half turn) × radius in that order: positive both ways.
TEST(SysArc, SweepAndLengthFollowRadiusSign) {
  struct Case { ArcCase a; long sweep; } cases[] = {
      {{"quarter ccw", 10, 0, 0, 10, 0, 0, 10}, 162000000}, {{"quarter ends, cw", 10, 0, 0, 10, 0, 0, -10}, -486000000},
      {{"quarter ends, r 0", 10, 0, 0, 10, 0, 0, 0}, 162000000}, {{"back ccw", 0, 10, 10, 0, 0, 0, 10}, 486000000},
      {{"back cw", 0, 10, 10, 0, 0, 0, -10}, -162000000}, {{"back, r 0", 0, 10, 10, 0, 0, 0, 0}, -162000000},
      {{"equal ends ccw", 10, 0, 10, 0, 0, 0, 10}, 0}, {{"equal ends cw", 10, 0, 10, 0, 0, 0, -10}, 0},
      {{"half cw", 10, 0, -10, 0, 0, 0, -10}, -324000000}, {{"off-center", 5, 15, 15, 5, 5, 5, 10}, 486000000},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.a.name);
    EXPECT_EQ(c.a.arc().GetSizeAngle(), c.sweep);
  }
  EXPECT_EQ(cases[9].a.arc().GetStartAngle(), 162000000);
  EXPECT_EQ(cases[9].a.arc().GetEndAngle(), 0);
  EXPECT_EQ(cases[0].a.arc().GetLength(), 15.707963267948966);
  EXPECT_DOUBLE_EQ(cases[1].a.arc().GetLength(), 47.12388980384690);
  EXPECT_EQ(cases[6].a.arc().GetLength(), 0.0);
}

// Both ends lie on the circle within 1 in the squared distance; ends whose square passes 32 bits fail.
TEST(SysArc, IsValidArc) {
  struct Case { ArcCase a; int valid; } cases[] = {
      {{"on the circle", 3, 4, 4, 3, 0, 0, 5}, 1}, {{"end off", 3, 4, 4, 4, 0, 0, 5}, 0},
      {{"squared distance 1 over", 3, 4, 5, 1, 0, 0, 5}, 1}, {{"one unit outside", 3, 4, 6, 0, 0, 0, 5}, 0},
      {{"start one unit inside", 4, 0, 4, 3, 0, 0, 5}, 0}, {{"negative radius", 3, 4, 4, 3, 0, 0, -5}, 1},
      {{"offset center", 103, 104, 104, 97, 100, 100, 5}, 1}, {{"far end", 3, 4, 2000000000, 0, 0, 0, 5}, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.a.name);
    EXPECT_EQ(c.a.arc().IsValidArc(), c.valid);
  }
}

// The nearest extreme from a point in the arc's direction, or 0 when the end comes first; out gets its coordinate.
TEST(SysArc, NearestExtremes) {
  struct Case { ArcCase a; long fx, fy; int kx; long outX; int ky; long outY; } cases[] = {
      {{"ccw from right to top", 10, 0, 0, 10, 0, 0, 10}, 10, 0, 0, 0, 0, 0},  // the top is the end
      {{"cw from right to top", 10, 0, 0, 10, 0, 0, -10}, 10, 0, -1, -10, -1, -10},
      {{"cw from the left point on", 10, 0, 0, 10, 0, 0, -10}, -10, 0, 0, 0, 0, 0},
      {{"ccw upper half, end beyond", 6, 8, -6, -8, 0, 0, 10}, 6, 8, -1, -10, 1, 10},
      {{"ccw upper half, end first", 6, 8, -8, 6, 0, 0, 10}, 6, 8, 0, 0, 1, 10},
      {{"ccw lower half", -6, -8, -6, 8, 0, 0, 10}, -6, -8, 1, 10, -1, -10},
      {{"offset center", 110, -50, 90, -50, 100, -50, 10}, 110, -50, 0, 100, 1, -40},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.a.name);
    SYS_Arc const a = c.a.arc();
    SYS_Point out(123, 456);
    EXPECT_EQ(a.GetXNearestExtrem(SYS_Point(c.fx, c.fy), &out), c.kx);
    EXPECT_EQ(out, SYS_Point(c.outX, c.a.cy));
    EXPECT_EQ(a.GetYNearestExtrem(SYS_Point(c.fx, c.fy), &out), c.ky);
    EXPECT_EQ(out, SYS_Point(c.a.cx, c.ky ? c.outY : c.a.cy));
    EXPECT_EQ(a.GetXNearestExtrem(SYS_Point(c.fx, c.fy), nullptr), c.kx);  // out is optional
  }
}

// The box holds the ends and every extreme the arc passes, in its direction.
TEST(SysArc, Box) {
  struct Case { ArcCase a; long l, lo, r, u; } cases[] = {
      {{"quarter ccw", 10, 0, 0, 10, 0, 0, 10}, 0, 0, 10, 10}, {{"3/4 cw", 10, 0, 0, 10, 0, 0, -10}, -10, -10, 10, 10},
      {{"upper half", 10, 0, -10, 0, 0, 0, 10}, -10, 0, 10, 10}, {{"lower", 10, 0, -10, 0, 0, 0, -10}, -10, -10, 10, 0},
      {{"top round to the right", 0, 10, 10, 0, 0, 0, 10}, -10, -10, 10, 10},
      {{"short, no extreme", 8, 6, 6, 8, 0, 0, 10}, 6, 6, 8, 8}, {{"long", 8, 6, 6, 8, 0, 0, -10}, -10, -10, 10, 10},
      {{"lower left to upper left", -6, -8, -6, 8, 0, 0, 10}, -6, -10, 10, 10},
      {{"offset center", 110, -50, 100, -40, 100, -50, 10}, 100, -50, 110, -40},
      {{"top, left and bottom", 6, 8, 6, -8, 0, 0, 10}, -10, -10, 6, 10},
      {{"both x extremes", 6, -8, -6, -8, 0, 0, 10}, -10, -8, 10, 10},
      // An end on the lowest row one unit past the bottom ties with the bottom point: the walk goes on to the top.
      {{"end tied with the bottom", -10, 0, 1, -10, 0, 0, 10}, -10, -10, 1, 10},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.a.name);
    SYS_Box const b = c.a.arc().GetBox();
    EXPECT_EQ(b, SYS_Box(c.l, c.lo, c.r, c.u));
  }
}

// Equal ends box the whole circle: the walk from the start meets every extreme before it
// comes back, whichever compass or octant point it starts from, in either direction.
TEST(SysArc, EqualEndsBoxTheWholeCircle) {
  SYS_Point const starts[] = {{-10, 0}, {-6, 8}, {-6, -8}, {0, 10}, {0, -10}, {10, 0}, {6, 8}, {6, -8}};
  for (SYS_Point const &p : starts)
    for (long r : {10L, -10L}) {
      SCOPED_TRACE(str(p) + " r " + std::to_string(r));
      EXPECT_EQ(SYS_Arc(p, p, SYS_Point(0, 0), r).GetBox(), SYS_Box(-10, -10, 10, 10));
    }
  // Angles are taken about the center, wherever it lies.
  SYS_Arc const offset(SYS_Point(110, -50), SYS_Point(100, -40), SYS_Point(100, -50), 10);
  EXPECT_EQ(offset.GetStartAngle(), 0);
  EXPECT_EQ(offset.GetEndAngle(), 162000000);
}
