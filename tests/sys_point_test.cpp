//===- tests/sys_point_test.cpp - Integer and double points ------------===//
#include "bfc.h"
#include "tests/geom_print.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

// Doubles become integers half away from zero; out-of-range and NaN give the 32-bit indefinite value, no UB. A point
// becomes a double point exactly and comes back rounded the same way.
TEST(SysRounding, HalfAwayFromZero) {
  struct Case { const char *name; double v; long expected; } cases[] = {
      {"2.5", 2.5, 3}, {"-2.5", -2.5, -3}, {"2.4999", 2.4999, 2}, {"-0.4", -0.4, 0}, {"zero", 0.0, 0},
      {"negative zero", -0.0, 0}, {"-1.5", -1.5, -2}, {"largest int", 2147483647.0, 2147483647L},
      {"beyond 32 bits", 3e9, INT32_MIN}, {"NaN", std::nan(""), INT32_MIN},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Point p = SYS_DoublePoint(c.v, -c.v);
    EXPECT_EQ(p.GetX(), c.expected);
    EXPECT_TRUE(std::isnan(c.v) || c.v >= 2147483648.0 || p.GetY() == -c.expected) << p.GetY();  // symmetric
  }
  SYS_DoublePoint const d = SYS_Point(-4, 6);
  EXPECT_EQ(d, SYS_DoublePoint(-4.0, 6.0));
  SYS_Point p(0, 0);
  p = d + 0.5;
  EXPECT_EQ(p, SYS_Point(-4, 7));
}

// `* double` truncates; `/`, Scale and Median round half away from zero; integer arithmetic wraps in 32 bits.
TEST(SysPoint, RoundingAndWrapping) {
  auto scaled = [](SYS_Point p, double fx, double fy) { return p.Scale(fx, fy), p; };
  SYS_Point const max(INT32_MAX, INT32_MIN);
  struct Case { char const *name; SYS_Point got, expected; } cases[] = {
      {"3 * 0.5", SYS_Point(3, 3) * 0.5, {1, 1}}, {"-3 * 0.5", SYS_Point(-3, -3) * 0.5, {-1, -1}},
      {"3 / 2", SYS_Point(3, 3) / 2, {2, 2}}, {"-3 / 2", SYS_Point(-3, 0) / 2, {-2, 0}},
      {"Scale 0.5", scaled({3, 3}, 0.5, 0.5), {2, 2}}, {"Scale 0.5, 1/3", scaled({-3, -3}, 0.5, 1.0 / 3.0), {-2, -1}},
      {"Median up", SYS_Point(1, 1).Median({2, 2}), {2, 2}},
      {"Median down", SYS_Point(-1, -1).Median({-2, -2}), {-2, -2}},
      {"Median of -1 and 0", SYS_Point(-1, -1).Median({0, 0}), {-1, -1}},
      {"+ wraps", max + SYS_Point(1, -1), {INT32_MIN, INT32_MAX}}, {"+ long", max + 1L, {INT32_MIN, INT32_MIN + 1}},
      {"* long wraps", SYS_Point(1 << 30, 3) * 4L, {0, 12}},
      {"* 70000 wraps", SYS_Point(70000, 1) * 70000, {static_cast<int32_t>(4900000000LL - 4294967296LL), 70000}},
      {"SetX cuts to 32 bits", [] { SYS_Point p(0, 0); p.SetX(static_cast<long>(0x100000005LL)); return p; }(), {5, 0}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.got, c.expected) << str(c.got);
  }
  EXPECT_EQ(SYS_Point(INT32_MIN, 0).MLength(), INT32_MIN);
  EXPECT_EQ(SYS_Point(2000000000, 0).MDistance(SYS_Point(-2000000000, 0)), 294967296);  // 4e9 wrapped
}

// Axis-parallel and diagonal lengths are exact; others take the square root.
TEST(SysPoint, Length) {
  struct Case { char const *name; double got, expected; } cases[] = {
      {"diagonal", SYS_Point(5, -5).Length(), 5 * 1.4142135623730951}, {"3, 4", SYS_Point(3, 4).Length(), 5.0},
      {"vertical", SYS_Point(0, -7).Length(), 7.0}, {"horizontal", SYS_Point(-7, 0).Length(), 7.0},
      {"distance", SYS_Point(1, 2).Distance({4, 6}), 5.0}, {"polar radius", SYS_Point(3, 4).GetPolarRadius(), 5.0},
      {"zero radius", SYS_DoublePoint(0.0, 0.0).GetPolarRadius(), 0.0},
      {"scalar", SYS_Point(3, -4).ScalarProduct({2, 1}), 2.0}, {"vector", SYS_Point(3, -4).VectorProduct({2, 1}), 11.0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.got, c.expected);
  }
}

// The polar angle is atan2 in angle units truncated toward zero before a negative one gets a full turn added.
TEST(SysPoint, PolarAngle) {
  struct Case { long x, y, angle; } cases[] = {
      {0, 0, 0}, {1, 0, 0}, {0, 1, 162000000}, {-1, 0, 324000000}, {0, -1, 486000000}, {1, 1, 81000000},
      {1, -1, 567000000}, {-1, 1, 243000000}, {3, 4, 95634184}, {-3, -4, 419634185},  // the exact angle is .237 lower
      {1000000, -1, 647999897}, {1, 1000000, 161999896},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(str(SYS_Point(c.x, c.y)));
    EXPECT_EQ(SYS_Point(c.x, c.y).GetPolarAngle(), c.angle);
    EXPECT_EQ(SYS_DoublePoint(c.x, c.y).GetPolarAngle(), c.angle);
  }
}

// Points order by x, then y; a double point is valid strictly inside the coordinate limit, an integer one always.
TEST(SysPoint, OrderAndValidity) {
  EXPECT_TRUE(SYS_Point(1, 5) < SYS_Point(2, 0) && !(SYS_Point(2, 0) < SYS_Point(2, 0)));
  EXPECT_TRUE(SYS_Point(2, 1) > SYS_Point(2, 0));
  EXPECT_TRUE(SYS_DoublePoint(2.0, -1.0) < SYS_DoublePoint(2.0, 0.0));
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

