//===- tests/sys_box_test.cpp - Boxes: extents, unions, intersections, clipping -===//
#include "bfc.h"
#include "tests/geom_print.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Coords { long l, lo, r, u; };

SYS_Box box(Coords const &c) { return SYS_Box(c.l, c.lo, c.r, c.u); }

constexpr long L = SYS_CoordLimit;

}  // namespace

// Empty means zero width or height; valid means normalized; an inverted box is neither; extents are signed.
TEST(SysBox, EmptyAndValid) {
  struct Case { const char *name; Coords c; int empty, valid; long dx, dy; } cases[] = {
      {"flat", {0, 0, 10, 0}, 1, 1, 10, 0}, {"inverted", {10, 10, 0, 0}, 0, 0, -10, -10},
      {"point", {3, 3, 3, 3}, 1, 1, 0, 0}, {"normal", {-1, -2, 3, 4}, 0, 1, 4, 6},
      {"inverted in y", {0, 5, 10, 4}, 0, 0, 10, -1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Box const b = box(c.c);
    EXPECT_EQ(b.IsEmpty(), c.empty);
    EXPECT_EQ(b.IsValid(), c.valid);
    EXPECT_EQ(b.GetWidth(), c.dx);
    EXPECT_EQ(b.GetHeight(), c.dy);
  }
  EXPECT_TRUE(SYS_Box(0, 0, 10, 10).IsInclude(SYS_Point(10, 0)));  // the edges count
  EXPECT_FALSE(SYS_Box(0, 0, 10, 10).IsInclude(SYS_Point(11, 5)));
}

// The size form takes p as a corner: lower left for size >= 0, upper right for size < 0. Centres use 32-bit sums and
// truncating division; SetCenter keeps the signed extents; Increase and Expand grow.
TEST(SysBox, SquareCenterAndGrowth) {
  EXPECT_EQ(SYS_Box(SYS_Point(1, 2), 3), SYS_Box(1, 2, 4, 5));
  EXPECT_EQ(SYS_Box(SYS_Point(1, 2), -3), SYS_Box(-2, -1, 1, 2));
  EXPECT_EQ(SYS_Box(SYS_Point(1, 2), 0), SYS_Box(1, 2, 1, 2));
  EXPECT_EQ(SYS_Box(-3, -3, 0, 0).GetCenter(), SYS_Point(-1, -1));
  EXPECT_EQ(SYS_Box(2000000000, 0, 2000000000, 1).GetCenter(), SYS_Point(-147483648, 0));  // 4e9 wrapped
  struct Case { const char *name; Coords start; void (*edit)(SYS_Box &); Coords expected; } cases[] = {
      {"SetCenter", {0, 0, 5, 3}, [](SYS_Box &b) { b.SetCenter(SYS_Point(10, 10)); }, {8, 9, 13, 12}},
      {"SetCenter inverted", {5, 0, 0, 0}, [](SYS_Box &b) { b.SetCenter(SYS_Point(0, 0)); }, {2, 0, -3, 0}},
      {"Increase to a point", {0, 0, 10, 10}, [](SYS_Box &b) { b.Increase(-5, 20); }, {-5, 0, 10, 20}},
      {"Expand normalizes", {0, 0, 10, 10}, [](SYS_Box &b) { b.Expand(-6); }, {4, 4, 6, 6}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Box b = box(c.start);
    c.edit(b);
    EXPECT_EQ(b, box(c.expected));
  }
}

// The undefined box starts an accumulation; only coordinates beyond the limit tell it from a plain min/max.
TEST(SysBox, CombineWithUndefinedBox) {
  struct Case { const char *name; Coords a, b, expected; } cases[] = {
      {"undefined takes b", {L, L, -L, -L}, {1, 2, 3, 4}, {1, 2, 3, 4}},
      {"undefined b changes nothing", {1, 2, 3, 4}, {L, L, -L, -L}, {1, 2, 3, 4}},
      {"undefined takes b beyond it", {L, L, -L, -L}, {L + 5, L + 6, L + 7, L + 8}, {L + 5, L + 6, L + 7, L + 8}},
      {"undefined takes an inverted b", {L, L, -L, -L}, {0, 0, -L - 9, -L - 9}, {0, 0, -L - 9, -L - 9}},
      {"undefined b beside a beyond it", {L + 5, L + 5, L + 6, L + 6}, {L, L, -L, -L}, {L + 5, L + 5, L + 6, L + 6}},
      {"almost undefined is plain", {L, L, -L, -L + 1}, {L + 5, L + 6, L + 7, L + 8}, {L, L, L + 7, L + 8}},
      {"plain union, no normalization", {0, 0, -5, 10}, {2, -3, -4, 1}, {0, -3, -4, 10}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Box a = box(c.a);
    a.Combine(box(c.b));
    EXPECT_EQ(a, box(c.expected));
  }
}

// Without area the intersection collapses to zero width (checked first) or height; boxes that only touch give 0.
TEST(SysBox, SetAsIntersection) {
  SYS_Box const a(0, 0, 10, 10);
  struct Case { const char *name; Coords b, expected; int result; } cases[] = {
      {"touching in x", {10, 0, 20, 10}, {10, 0, 10, 10}, 0}, {"touching in y", {0, 10, 10, 20}, {0, 10, 10, 10}, 0},
      {"disjoint", {20, 20, 30, 30}, {10, 20, 10, 10}, 0}, {"overlap", {5, -5, 15, 5}, {5, 0, 10, 5}, 1},
      {"inside", {2, 3, 4, 5}, {2, 3, 4, 5}, 1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Box r(7, 7, 7, 7);
    EXPECT_EQ(r.SetAsIntersection(a, box(c.b)), c.result);
    EXPECT_EQ(r, box(c.expected));
    EXPECT_EQ(r.SetAsIntersection(box(c.b), a), c.result);  // symmetric
  }
  SYS_Box self(0, 0, 10, 10);  // the result may be one of the operands
  EXPECT_EQ(self.SetAsIntersection(self, SYS_Box(5, 5, 20, 20)), 1);
  EXPECT_EQ(self, SYS_Box(5, 5, 10, 10));
}

// Clip writes b minus the clip column by column, left to right, below before above; inverted boxes are normalized.
TEST(SysBox, Clip) {
  std::vector<Coords> const frame = {{-5, -5, 0, 15}, {0, -5, 10, 0}, {0, 10, 10, 15}, {10, -5, 15, 15}};
  struct Case { const char *name; Coords clip, b; std::vector<Coords> pieces; } cases[] = {
      {"surrounding", {0, 0, 10, 10}, {-5, -5, 15, 15}, frame}, {"inverted", {10, 10, 0, 0}, {-5, -5, 15, 15}, frame},
      {"inverted b", {0, 0, 10, 10}, {15, 15, -5, -5}, frame}, {"inside", {0, 0, 10, 10}, {2, 2, 8, 8}, {}},
      {"equal", {0, 0, 10, 10}, {0, 0, 10, 10}, {}},
      {"disjoint in x", {0, 0, 10, 10}, {20, 0, 30, 10}, {{20, 0, 30, 10}}},
      {"touching", {0, 0, 10, 10}, {10, 0, 20, 10}, {{10, 0, 20, 10}}},
      {"below, wider", {0, 20, 10, 30}, {-5, 0, 15, 10}, {{-5, 0, 0, 10}, {0, 0, 10, 10}, {10, 0, 15, 10}}},
      {"from the left", {0, 0, 10, 10}, {-5, 2, 5, 8}, {{-5, 2, 0, 8}}},
      {"across", {0, 0, 10, 10}, {-5, 4, 15, 6}, {{-5, 4, 0, 6}, {10, 4, 15, 6}}},
      {"up and down", {0, 0, 10, 10}, {4, -5, 6, 15}, {{4, -5, 6, 0}, {4, 10, 6, 15}}},
      {"corner", {0, 0, 10, 10}, {5, 5, 15, 15}, {{5, 10, 10, 15}, {10, 5, 15, 15}}},
      {"flat b", {0, 0, 10, 10}, {-5, 5, 15, 5}, {}},
      // A flat clip removes nothing, but its merged breakpoint still splits b.
      {"flat clip", {0, 5, 10, 5}, {-5, 0, 15, 10}, {{-5, 0, 0, 10}, {0, 0, 10, 5}, {0, 5, 10, 10}, {10, 0, 15, 10}}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Box out[4];
    int const n = box(c.clip).Clip(box(c.b), out);
    ASSERT_EQ(n, static_cast<int>(c.pieces.size()));
    for (int i = 0; i < n; ++i) EXPECT_EQ(out[i], box(c.pieces[i])) << "piece " << i << " " << str(out[i]);
  }
  SYS_Box aliased[4] = {SYS_Box(-5, -5, 15, 15)};  // out may hold the clipped box itself
  EXPECT_EQ(SYS_Box(0, 0, 10, 10).Clip(aliased[0], aliased), 4);
  EXPECT_EQ(aliased[3], SYS_Box(10, -5, 15, 15));
  EXPECT_EQ(SYS_Box(0, 0, 10, 10).Clip(SYS_Box(20, 0, 30, 10), nullptr), 0);  // nowhere to write
}
