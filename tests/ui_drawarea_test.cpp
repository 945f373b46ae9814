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

// A host built against the header and the library agree on the table of operations: the
// operations with fixed slots sit in them, and the last operation is in slot 80.
TEST(DrawAreaLayout, FixedSlots) {
  typedef UI_DrawArea A;
  struct Case { char const *name; int slot, expected; } const cases[] = {
      {"PenCap", slotOf(&A::PenCap), 7}, {"PenColor", slotOf(&A::PenColor), 8}, {"PenMode", slotOf(&A::PenMode), 9},
      {"GetPenMode", slotOf(&A::GetPenMode), 10}, {"PenSize", slotOf(&A::PenSize), 11},
      {"FillRect", slotOf(&A::FillRect), 16}, {"Scale2ScreenX", slotOf(&A::Scale2ScreenX), 18},
      {"Scale2ScreenY", slotOf(&A::Scale2ScreenY), 19}, {"GetScale", slotOf(&A::GetScale), 20},
      {"SetScale", slotOf(&A::SetScale), 21}, {"GetWorldScale", slotOf(&A::GetWorldScale), 22},
      {"Redraw()", slotOf(static_cast<void (A::*)()>(&A::Redraw)), 26},
      {"InstallDynamic", slotOf(&A::InstallDynamic), 31}, {"RedrawDynamic", slotOf(&A::RedrawDynamic), 32},
      {"DrawXorBox(box)", slotOf(static_cast<void (A::*)(SYS_Box)>(&A::DrawXorBox)), 33},
      {"DrawXorBox(points)", slotOf(static_cast<void (A::*)(SYS_Point, SYS_Point)>(&A::DrawXorBox)), 34},
      {"DrawXorText(x, y)",
       slotOf(static_cast<SYS_Box (A::*)(char const *, int, int, long, long, int)>(&A::DrawXorText)), 35},
      {"DrawXorText(point)",
       slotOf(static_cast<SYS_Box (A::*)(char const *, int, int, SYS_Point, int)>(&A::DrawXorText)), 36},
      {"StartBatchDraw", slotOf(&A::StartBatchDraw), 40}, {"EndBatchDraw", slotOf(&A::EndBatchDraw), 41},
      {"StartScreenDraw", slotOf(&A::StartScreenDraw), 42}, {"EndScreenDraw", slotOf(&A::EndScreenDraw), 43},
      {"FrameArc", slotOf(&A::FrameArc), 48}, {"FastFrameOval", slotOf(&A::FastFrameOval), 49},
      {"FastPolyPolyline", slotOf(&A::FastPolyPolyline), 50}, {"FastPolyPolygon", slotOf(&A::FastPolyPolygon), 51},
      {"FastFrameArc", slotOf(&A::FastFrameArc), 52}, {"FastPolyLine", slotOf(&A::FastPolyLine), 53},
      {"StrokeTextLen(3)", slotOf(static_cast<int (A::*)(char const *, int, int)>(&A::StrokeTextLen)), 59},
      {"StrokeTextLen(1)", slotOf(static_cast<int (A::*)(char const *)>(&A::StrokeTextLen)), 60},
      {"DrawString", slotOf(&A::DrawString), 64}, {"DrawLine", slotOf(&A::DrawLine), 65},
      {"StartXORDraw", slotOf(&A::StartXORDraw), 66}, {"EndXORDraw", slotOf(&A::EndXORDraw), 74},
      {"GetPixelSize (the last)", slotOf(&A::GetPixelSize), 80},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.slot, c.expected);
  }
}

#endif
