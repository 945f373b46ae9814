//===- tests/sys_location_test.cpp - Locations and positions -----------===//
#include "bfc.h"

#include <gtest/gtest.h>

// Orientations are reduced by truncating division: the remainder keeps its sign (-700,000,000 gives -52,000,000).
// Sums add origins and reduce the summed orientation.
TEST(SysLocation, OrientationReducedKeepingItsSign) {
  struct Case { long given, stored; } cases[] = {
      {700000000, 52000000}, {-700000000, -52000000}, {648000000, 0}, {-648000000, 0}, {647999999, 647999999},
      {2147483647, 2147483647L % 648000000},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.given);
    SYS_Location l(1, 2, c.given);
    EXPECT_EQ(l.GetOrientation(), c.stored);
    EXPECT_EQ(l.IsValid(), 1);  // a negative remainder is still valid
    l.Set(SYS_Point(0, 0), 0);
    l.SetOrientation(c.given);
    EXPECT_EQ(l.GetOrientation(), c.stored);
    EXPECT_EQ(SYS_Position(SYS_Point(0, 0), c.given, 0).GetOrientation(), c.stored);
  }
  SYS_Location a(10, 20, 600000000);
  EXPECT_EQ(a + SYS_Location(1, -2, 100000000), SYS_Location(11, 18, 52000000));
  a += SYS_Location(0, 0, -640000000);
  EXPECT_EQ(a, SYS_Location(10, 20, -40000000));
  EXPECT_NE(a, SYS_Location(10, 20, -40000001));
}

// The mirror flag is 0 or 1 whatever is given; += flips on a mirrored operand, + takes the exclusive-or.
TEST(SysPosition, MirrorFlag) {
  SYS_Position p(0, 0, 0, 7);
  EXPECT_EQ(p.GetMirror(), 1);
  p.SetMirror(-3);
  EXPECT_EQ(p.GetMirror(), 1);
  SYS_Position const mirrored(1, 1, 100, 1), plain(1, 1, 100, 0);
  p += mirrored;
  EXPECT_EQ(p.GetMirror(), 0);
  p += plain;
  EXPECT_EQ(p.GetMirror(), 0);
  p += mirrored;
  EXPECT_EQ(p, SYS_Position(3, 3, 300, 1));
  EXPECT_EQ((mirrored + mirrored).GetMirror(), 0);
  EXPECT_EQ((plain + mirrored).GetMirror(), 1);
  EXPECT_NE(mirrored, plain);
  EXPECT_EQ(SYS_Position(SYS_Location(5, 6, 700000000), 2), SYS_Position(5, 6, 52000000, 1));
}

// Text attributes copy the style as a pointer, so a change of the style shows through every copy; the text is a value.
TEST(SysText, StyleSharedByCopies) {
  EXPECT_EQ(SYS_Text().GetStyle(), nullptr);
  SYS_TextStyle style;
  SYS_Text text;
  text.SetStyle(style);
  text.SetString("U17");
  SYS_Text const copy(text);
  SYS_TextAttributes assigned;
  assigned = text;
  style.SetHeight(3000000);
  EXPECT_EQ(copy.GetStyle(), &style);
  EXPECT_EQ(assigned.GetStyle(), &style);
  EXPECT_EQ(copy.GetStyle()->GetHeight(), 3000000);
  text.SetString("U18");
  EXPECT_STREQ(copy.GetString(), "U17");
}
