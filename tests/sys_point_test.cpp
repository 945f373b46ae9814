//===- tests/sys_point_test.cpp - Integer and double points ------------===//
#include "bfc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

namespace {

std::string str(SYS_Point const &p) { return "(" + std::to_string(p.GetX()) + ", " + std::to_string(p.GetY()) + ")"; }

}  // namespace

// Doubles become integers half away from zero; out-of-range and NaN give the integer
// indefinite value in both data models instead of undefined behaviour.
TEST(SysRounding, HalfAwayFromZero) {
  struct Case { const char *name; double v; long expected; } cases[] = {
      {"2.5", 2.5, 3}, {"-2.5", -2.5, -3}, {"2.4999", 2.4999, 2}, {"-0.4", -0.4, 0},
      {"zero", 0.0, 0}, {"negative zero", -0.0, 0}, {"-1.5", -1.5, -2},
      {"largest int", 2147483647.0, 2147483647L}, {"beyond 32 bits", 3e9, INT32_MIN},
      {"NaN", std::nan(""), INT32_MIN},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Point p = SYS_DoublePoint(c.v, -c.v);
    EXPECT_EQ(p.GetX(), c.expected);
    if (!std::isnan(c.v) && c.v < 2147483648.0) {
      EXPECT_EQ(p.GetY(), -c.expected);  // symmetric
    }
  }
}

// `* double` truncates; `/ long`, Scale and Median round half away from zero.
TEST(SysPoint, RoundingDiffersByOperation) {
  SYS_Point const p(3, 3), n(-3, -3);
  EXPECT_EQ(p * 0.5, SYS_Point(1, 1));
  EXPECT_EQ(n * 0.5, SYS_Point(-1, -1));
  EXPECT_EQ(p / 2, SYS_Point(2, 2));
  EXPECT_EQ(SYS_Point(-3, 0) / 2, SYS_Point(-2, 0));
  SYS_Point s = p;
  s.Scale(0.5);
  EXPECT_EQ(s, SYS_Point(2, 2));
  s = n;
  s.Scale(0.5, 1.0 / 3.0);
  EXPECT_EQ(s, SYS_Point(-2, -1));
  EXPECT_EQ(SYS_Point(1, 1).Median(SYS_Point(2, 2)), SYS_Point(2, 2));
  EXPECT_EQ(SYS_Point(-1, -1).Median(SYS_Point(-2, -2)), SYS_Point(-2, -2));
  EXPECT_EQ(SYS_Point(-1, -1).Median(SYS_Point(0, 0)), SYS_Point(-1, -1));
}

// Integer arithmetic wraps in 32 bits, and a long beyond 32 bits is cut on store, so the
// LP64 build gives the 32-bit results.
TEST(SysPoint, ArithmeticWrapsIn32Bits) {
  SYS_Point const max(INT32_MAX, INT32_MIN);
  EXPECT_EQ(max + SYS_Point(1, -1), SYS_Point(INT32_MIN, INT32_MAX));
  EXPECT_EQ(max + 1L, SYS_Point(INT32_MIN, INT32_MIN + 1));
  EXPECT_EQ(SYS_Point(1 << 30, 3) * 4L, SYS_Point(0, 12));
  EXPECT_EQ(SYS_Point(70000, 1) * 70000, SYS_Point(static_cast<int32_t>(4900000000LL - 4294967296LL), 70000));
  EXPECT_EQ(SYS_Point(INT32_MIN, 0).MLength(), INT32_MIN);
  EXPECT_EQ(SYS_Point(2000000000, 0).MDistance(SYS_Point(-2000000000, 0)), 294967296);  // 4e9 wrapped
  SYS_Point cut(0, 0);
  cut.SetX(static_cast<long>(0x100000005LL));
  EXPECT_EQ(cut.GetX(), 5);
  SYS_Point moved(1, 2);
  moved += SYS_Point(10, 20);
  moved -= 1L;
  EXPECT_EQ(moved, SYS_Point(10, 21));
}

// Axis-parallel and diagonal lengths are exact; others take the square root.
TEST(SysPoint, Length) {
  EXPECT_EQ(SYS_Point(5, -5).Length(), 5 * 1.4142135623730951);
  EXPECT_EQ(SYS_Point(3, 4).Length(), 5.0);
  EXPECT_EQ(SYS_Point(0, -7).Length(), 7.0);
  EXPECT_EQ(SYS_Point(-7, 0).Length(), 7.0);
  EXPECT_EQ(SYS_Point(1, 2).Distance(SYS_Point(4, 6)), 5.0);
  EXPECT_EQ(SYS_Point(3, 4).GetPolarRadius(), 5.0);
  EXPECT_EQ(SYS_DoublePoint(0.0, 0.0).GetPolarRadius(), 0.0);
  EXPECT_EQ(SYS_Point(3, -4).ScalarProduct(SYS_Point(2, 1)), 2.0);
  EXPECT_EQ(SYS_Point(3, -4).VectorProduct(SYS_Point(2, 1)), 11.0);
}

// The polar angle is atan2 in angle units truncated toward zero before a negative result
// gets a full turn added: (-3, -4) gives 419,634,185 where the exact angle is .237 lower.
TEST(SysPoint, PolarAngle) {
  struct Case { long x, y, angle; } cases[] = {
      {0, 0, 0}, {1, 0, 0}, {0, 1, 162000000}, {-1, 0, 324000000}, {0, -1, 486000000},
      {1, 1, 81000000}, {1, -1, 567000000}, {-1, 1, 243000000}, {3, 4, 95634184},
      {-3, -4, 419634185}, {1000000, -1, 647999897}, {1, 1000000, 161999896},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(str(SYS_Point(c.x, c.y)));
    EXPECT_EQ(SYS_Point(c.x, c.y).GetPolarAngle(), c.angle);
    EXPECT_EQ(SYS_DoublePoint(c.x, c.y).GetPolarAngle(), c.angle);
  }
}

// x decides, then y; the index operator gives x only for 0.
TEST(SysPoint, OrderAndIndex) {
  EXPECT_TRUE(SYS_Point(1, 5) < SYS_Point(2, 0));
  EXPECT_FALSE(SYS_Point(2, 0) < SYS_Point(2, 0));
  EXPECT_TRUE(SYS_Point(2, 1) > SYS_Point(2, 0));
  EXPECT_TRUE(SYS_DoublePoint(2.0, -1.0) < SYS_DoublePoint(2.0, 0.0));
  SYS_Point const p(7, 9);
  EXPECT_EQ(p[0], 7);
  EXPECT_EQ(p[1], 9);
  EXPECT_EQ(p[-1], 9);
  EXPECT_EQ(SYS_DoublePoint(1.5, 2.5)[3], 2.5);
}

// A double point is valid strictly inside the coordinate limit; integer points always are.
TEST(SysDoublePoint, ValidityAtTheLimit) {
  struct Case { const char *name; double x, y; int valid; } cases[] = {
      {"inside", 1066799999.9, -1066799999.9, 1}, {"x at limit", 1066800000.0, 0.0, 0},
      {"y at minus limit", 0.0, -1066800000.0, 0}, {"NaN", std::nan(""), 0.0, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SYS_DoublePoint(c.x, c.y).IsValid(), c.valid);
  }
  EXPECT_EQ(SYS_Point(INT32_MAX, INT32_MIN).IsValid(), 1);
}

// Conversions: to doubles exactly, back rounded; double arithmetic applies a scalar to
// both coordinates and compares without tolerance.
TEST(SysDoublePoint, ConversionsAndArithmetic) {
  SYS_DoublePoint d;
  EXPECT_EQ(d, SYS_DoublePoint(0.0, 0.0));
  d = SYS_Point(-4, 6);
  EXPECT_EQ(d, SYS_DoublePoint(-4.0, 6.0));
  d += 0.5;
  EXPECT_EQ(d, SYS_DoublePoint(-3.5, 6.5));
  SYS_Point p(0, 0);
  p = d;
  EXPECT_EQ(p, SYS_Point(-4, 7));
  d.Scale(2.0, -1.0);
  EXPECT_EQ(d - SYS_DoublePoint(1.0, 1.0), SYS_DoublePoint(-8.0, -7.5));
  EXPECT_NE(SYS_DoublePoint(0.1 + 0.2, 0.0), SYS_DoublePoint(0.3, 0.0));
}
