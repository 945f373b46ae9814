//===- tests/ui_drawarea_test.cpp - Defaults and layout of the drawing surface ===//
#include "ui_drawarea.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

// The library's defaults: void operations do nothing, the getters answer 0, the scales
// 1.0, the pixel conversions 1 and the XOR texts the zero box, for any argument.
TEST(DrawAreaDefaults, Results) {
  UI_DrawArea area;
  SYS_Point origin(3, 4);
  unsigned long colours[4] = {9, 9, 9, 9};
  EXPECT_EQ(area.GetPenMode(), 0);
  EXPECT_EQ(area.GetBackColor(), 0);
  EXPECT_EQ(area.GetPixelSize(), 0);
  EXPECT_EQ(area.StrokeTextAscendingHeight(), 0);
  EXPECT_EQ(area.StrokeTextDescendingHeight(), 0);
  EXPECT_EQ(area.StrokeTextFontHeight(), 0);
  EXPECT_EQ(area.RegisterBrush(0xFFFFFFFFu), 0);
  EXPECT_EQ(area.StrokeTextLen("abc", 10, 20), 0);
  EXPECT_EQ(area.StrokeTextLen("abc"), 0);
  EXPECT_EQ(area.GetCurrentPaletteColors(colours), 0);
  EXPECT_EQ(area.GetDefaultPaletteColors(colours), 0);
  EXPECT_EQ(colours[0], 9u);
  EXPECT_EQ(area.SetScale(2.5, &origin, 1), 0);
  EXPECT_EQ(area.GetWorldScale(), 1.0);
  EXPECT_EQ(area.GetScale(&origin), 1.0);
  EXPECT_EQ(area.GetScale(nullptr), 1.0);
  for (long length : {0L, 1L, -1L, 1000000L, -2147483647L - 1}) {
    SCOPED_TRACE(length);
    EXPECT_EQ(area.Scale2ScreenX(length), 1);
    EXPECT_EQ(area.Scale2ScreenY(length), 1);
  }
  EXPECT_EQ(area.DrawXorText("x", 1, 2, 3L, 4L, 1), SYS_Box(0, 0, 0, 0));
  EXPECT_EQ(area.DrawXorText(nullptr, 1, 2, SYS_Point(3, 4), 0), SYS_Box(0, 0, 0, 0));
  EXPECT_EQ(origin, SYS_Point(3, 4));

  // Operations with out-parameters leave them alone.
  SYS_Box viewport(1, 2, 3, 4);
  area.GetVP(viewport);
  area.GetUserVP(viewport);
  area.FitRectToWindow(viewport);
  EXPECT_EQ(viewport, SYS_Box(1, 2, 3, 4));
}

// The main draw area is the host's: null until set, and whatever was set last.
TEST(DrawAreaDefaults, MainDrawArea) {
  UI_DrawArea *const before = UI_DrawArea::GetMainDrawArea();
  UI_DrawArea first, second;
  UI_DrawArea::SetMainDrawArea(&first);
  EXPECT_EQ(UI_DrawArea::GetMainDrawArea(), &first);
  EXPECT_EQ(UI_DrawArea::s_pMainDrawArea, &first);
  UI_DrawArea::SetMainDrawArea(&second);
  EXPECT_EQ(UI_DrawArea::GetMainDrawArea(), &second);
  UI_DrawArea::SetMainDrawArea(nullptr);
  EXPECT_EQ(UI_DrawArea::GetMainDrawArea(), nullptr);
  UI_DrawArea::SetMainDrawArea(before);
}

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))

namespace {

/// The position of a virtual operation in the declaration order, read from its member
/// pointer: on this ABI a pointer to a virtual member holds 1 + the byte offset of its
/// entry, and the destructor's two entries come first.
template <class F>
int slotOf(F f) {
  static_assert(sizeof(F) == 2 * sizeof(void *), "a member pointer is two words here");
  std::uintptr_t raw;
  std::memcpy(&raw, &f, sizeof raw);
  return static_cast<int>((raw - 1) / sizeof(void *)) - 1;
}

}  // namespace

// A host built against the header and the library agree on the table of operations: the
// operations with fixed slots sit in them, and the last operation is in slot 80.
TEST(DrawAreaLayout, FixedSlots) {
  typedef UI_DrawArea A;
  struct Case {
    char const *name;
    int slot, expected;
  } const cases[] = {
      {"PenCap", slotOf(&A::PenCap), 7},
      {"PenColor", slotOf(&A::PenColor), 8},
      {"PenMode", slotOf(&A::PenMode), 9},
      {"GetPenMode", slotOf(&A::GetPenMode), 10},
      {"PenSize", slotOf(&A::PenSize), 11},
      {"FillRect", slotOf(&A::FillRect), 16},
      {"Scale2ScreenX", slotOf(&A::Scale2ScreenX), 18},
      {"Scale2ScreenY", slotOf(&A::Scale2ScreenY), 19},
      {"GetScale", slotOf(&A::GetScale), 20},
      {"SetScale", slotOf(&A::SetScale), 21},
      {"GetWorldScale", slotOf(&A::GetWorldScale), 22},
      {"Redraw()", slotOf(static_cast<void (A::*)()>(&A::Redraw)), 26},
      {"InstallDynamic", slotOf(&A::InstallDynamic), 31},
      {"RedrawDynamic", slotOf(&A::RedrawDynamic), 32},
      {"DrawXorBox(box)", slotOf(static_cast<void (A::*)(SYS_Box)>(&A::DrawXorBox)), 33},
      {"DrawXorBox(points)", slotOf(static_cast<void (A::*)(SYS_Point, SYS_Point)>(&A::DrawXorBox)), 34},
      {"DrawXorText(x, y)",
       slotOf(static_cast<SYS_Box (A::*)(char const *, int, int, long, long, int)>(&A::DrawXorText)), 35},
      {"DrawXorText(point)",
       slotOf(static_cast<SYS_Box (A::*)(char const *, int, int, SYS_Point, int)>(&A::DrawXorText)), 36},
      {"StartBatchDraw", slotOf(&A::StartBatchDraw), 40},
      {"EndBatchDraw", slotOf(&A::EndBatchDraw), 41},
      {"StartScreenDraw", slotOf(&A::StartScreenDraw), 42},
      {"EndScreenDraw", slotOf(&A::EndScreenDraw), 43},
      {"FrameArc", slotOf(&A::FrameArc), 48},
      {"FastFrameOval", slotOf(&A::FastFrameOval), 49},
      {"FastPolyPolyline", slotOf(&A::FastPolyPolyline), 50},
      {"FastPolyPolygon", slotOf(&A::FastPolyPolygon), 51},
      {"FastFrameArc", slotOf(&A::FastFrameArc), 52},
      {"FastPolyLine", slotOf(&A::FastPolyLine), 53},
      {"StrokeTextLen(3)", slotOf(static_cast<int (A::*)(char const *, int, int)>(&A::StrokeTextLen)), 59},
      {"StrokeTextLen(1)", slotOf(static_cast<int (A::*)(char const *)>(&A::StrokeTextLen)), 60},
      {"DrawString", slotOf(&A::DrawString), 64},
      {"DrawLine", slotOf(&A::DrawLine), 65},
      {"StartXORDraw", slotOf(&A::StartXORDraw), 66},
      {"EndXORDraw", slotOf(&A::EndXORDraw), 74},
      {"GetPixelSize (the last)", slotOf(&A::GetPixelSize), 80},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.slot, c.expected);
  }
}

#endif
