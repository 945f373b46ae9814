//===- tests/ui_drawarea_test.cpp - Defaults and layout of the drawing surface ===//
#include "ui_drawarea.h"

#include "tests/vtable_slot.h"

#include <gtest/gtest.h>

// A surface that does not draw answers as an identity: scales of 1.0 that cannot be set
// (SetScale answers 0), one pixel for any length, and the zero box for XOR text.
TEST(DrawAreaDefaults, IdentityAnswers) {
  UI_DrawArea area;
  SYS_Point origin(3, 4);
  EXPECT_EQ(area.SetScale(2.5, &origin, 1), 0);
  EXPECT_EQ(area.GetWorldScale(), 1.0);
  EXPECT_EQ(area.GetScale(&origin), 1.0);
  for (long length : {0L, -1L, -2147483647L - 1}) {
    SCOPED_TRACE(length);
    EXPECT_EQ(area.Scale2ScreenX(length), 1);
    EXPECT_EQ(area.Scale2ScreenY(length), 1);
  }
  EXPECT_EQ(area.DrawXorText(nullptr, 1, 2, SYS_Point(3, 4), 0), SYS_Box(0, 0, 0, 0));
  EXPECT_EQ(origin, SYS_Point(3, 4));
}

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))

namespace {

/// The operation's position in declaration order: the destructor's two entries come first.
template <class F>
int slotOf(F f) { return static_cast<int>(vtableSlot(f)) - 1; }

}  // namespace

#endif
