//===- tests/ui_dynamic_record_test.cpp - The XOR layer's words and bounds -===//
#include "tests/ui_log_surface.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using uitest::LogSurface;
using uitest::wordsOf;

namespace {

typedef std::vector<int32_t> Words;

struct RecordCase {
  char const *name;
  std::function<void(CDynamic &)> record;
  Words words;
};

}  // namespace

// Recording the same whether attached or not, at the edges the random round trip does not
// reach: pen operands, the box form normalized, empty and null texts, the extremes of 32 bits.
TEST(DynamicRecording, CommandWords) {
  RecordCase const cases[] = {
      {"pen size", [](CDynamic &d) { d.PenSize(-7); }, {1, -7}},
      {"pen cap", [](CDynamic &d) { d.PenCap(2); }, {8, 2}},
      {"box form normalizes", [](CDynamic &d) { d.DrawXorBox(SYS_Box(10, 10, 0, 0)); }, {2, 0, 0, 10, 10}},
      {"text ab", [](CDynamic &d) { d.DrawXorText("ab", 1, 2, 10L, 20L, 0); }, {5, 10, 20, 1, 2, 3, 97, 98, 0}},
      {"empty text", [](CDynamic &d) { d.DrawXorText("", 0, 0, 0L, 0L, 0); }, {5, 0, 0, 0, 0, 1, 0}},
      {"null text is empty", [](CDynamic &d) { d.DrawXorText(nullptr, 0, 0, 0L, 0L, 0); }, {5, 0, 0, 0, 0, 1, 0}},
      {"UTF-8 bytes are negative words", [](CDynamic &d) { d.DrawXorText("\xC3\x98" "1", 0, 0, 0L, 0L, 0); },
       {5, 0, 0, 0, 0, 4, -61, -104, 49, 0}},
      {"no polylines", [](CDynamic &d) { d.FastPolyPolyline(nullptr, nullptr, 0); }, {9, 0}},
      {"extreme coordinates keep 32 bits",
       [](CDynamic &d) { d.DrawLine(SYS_Point(INT32_MIN, INT32_MAX), SYS_Point(-1, 1), INT32_MAX, -1); },
       {6, INT32_MIN, INT32_MAX, -1, 1, INT32_MAX, -1}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    CDynamic detached;
    c.record(detached);
    EXPECT_EQ(wordsOf(detached), c.words);
    LogSurface surface;
    CDynamic attached(&surface);
    c.record(attached);
    EXPECT_EQ(wordsOf(attached), c.words) << "attached";
  }
}

// Bad polyline arguments record nothing: the check fails and the code after it runs on.
TEST(DynamicRecording, RejectedPolylines) {
  SYS_Point pts[] = {{0, 0}, {1, 1}};
  unsigned long counts[] = {2};
  unsigned long tooMany[] = {0x80000000UL};
  struct Case { char const *name; SYS_Point *points; unsigned long const *counts; int n; } const cases[] = {
      {"negative count", pts, counts, -1}, {"null points", nullptr, counts, 1}, {"null counts", pts, nullptr, 1},
      {"a count past 32 signed bits", pts, tooMany, 1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    CDynamic layer;
    layer.PenColor(1);
    layer.FastPolyPolyline(c.points, c.counts, c.n);
    EXPECT_EQ(wordsOf(layer), (Words{0, 1}));
    EXPECT_EQ(layer.GetBounds(), SYS_Box());
  }
}

// A text keeps at most 1,023 bytes, cut before a character that would not fit whole, and
// always its terminating 0; the surface measures the text as recorded.
TEST(DynamicRecording, LongTextIsCut) {
  struct Case { char const *name; std::string text; std::string kept; } const cases[] = {
      {"1,023 bytes fit", std::string(1023, 'a'), std::string(1023, 'a')},
      {"1,024 bytes lose one", std::string(1024, 'b'), std::string(1023, 'b')},
      {"2,000 bytes", std::string(2000, 'c'), std::string(1023, 'c')},
      {"a two-byte character across the limit", std::string(1022, 'd') + "\xC3\xA9" + "e", std::string(1022, 'd')},
      {"a two-byte character ending at the limit", std::string(1021, 'f') + "\xC3\xA9" + "g",
       std::string(1021, 'f') + "\xC3\xA9"},
      {"an invalid byte is a character of its own", std::string(1022, 'h') + "\xC3" + "ij",
       std::string(1022, 'h') + "\xC3"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    LogSurface surface;
    CDynamic layer(&surface);
    surface.log.clear();
    layer.DrawXorText(c.text.c_str(), 0, 0, 0L, 0L, 0);
    Words const w = wordsOf(layer);
    ASSERT_EQ(w.size(), 7 + c.kept.size());
    EXPECT_EQ(w[5], static_cast<int32_t>(c.kept.size() + 1));
    EXPECT_EQ(w.back(), 0);
    std::string recorded;
    for (size_t i = 6; i + 1 < w.size(); ++i) recorded += static_cast<char>(w[i]);
    EXPECT_EQ(recorded, c.kept);
    ASSERT_EQ(surface.log.size(), 1u);
    EXPECT_EQ(surface.log[0], "DrawXorText(" + c.kept + ",0,0,0,0,0)");
  }
}

// Recording asks the surface only for a text's box (with the flag 0, whatever the form),
// and returns that box; detached, the zero box.
TEST(DynamicRecording, OnlyTextsReachTheSurface) {
  LogSurface surface;
  CDynamic layer(&surface);
  surface.log.clear();
  layer.PenColor(1), layer.PenSize(2), layer.PenCap(0), layer.PenMode(2);
  layer.DrawXorBox(SYS_Box(0, 0, 1, 1));
  layer.DrawXorOval(SYS_Box(0, 0, 1, 1));
  layer.FillRect(SYS_Box(0, 0, 1, 1), 4);
  layer.DrawLine(SYS_Point(0, 0), SYS_Point(1, 1), 1, 1);
  layer.DrawArc(SYS_Box(0, 0, 1, 1), SYS_Point(0, 0), SYS_Point(1, 1), 1, 1);
  layer.InvalidateRect(nullptr);
  EXPECT_TRUE(surface.log.empty());
  EXPECT_EQ(layer.GetPenMode(), 0);

  surface.textBox = SYS_Box(7, 8, 9, 10);
  EXPECT_EQ(layer.DrawXorText("t", 1, 2, SYS_Point(3, 4), 7), SYS_Box(7, 8, 9, 10));
  EXPECT_EQ(surface.log, (std::vector<std::string>{"DrawXorText(t,1,2,3,4,0)"}));

  CDynamic detached;
  EXPECT_EQ(detached.DrawXorText("t", 1, 2, 3L, 4L, 1), SYS_Box());
}

namespace {

struct BoundsCase {
  char const *name;
  std::function<void(CDynamic &)> record;
  SYS_Box bounds;
};

}  // namespace

// The bounds take the first drawn box as it is (they start as the zero box, a single point); later boxes are combined,
// a degenerate line's too. Pens do not count; an arc counts with its box, not its points; a detached text not at all.
TEST(DynamicRecording, Bounds) {
  BoundsCase const cases[] = {
      {"nothing recorded", [](CDynamic &) {}, SYS_Box()},
      {"pens only", [](CDynamic &d) { d.PenColor(3), d.PenSize(100), d.PenCap(1); }, SYS_Box()},
      {"first box replaces the zero box", [](CDynamic &d) { d.DrawXorBox(SYS_Box(10, 10, 20, 20)); },
       SYS_Box(10, 10, 20, 20)},
      {"a single point is replaced by the next box",
       [](CDynamic &d) { d.DrawLine(SYS_Point(5, 5), SYS_Point(5, 5), 0, 0), d.FillRect(SYS_Box(10, 10, 20, 20), 1); },
       SYS_Box(10, 10, 20, 20)},
      {"a vertical line is combined, not replaced",
       [](CDynamic &d) {
         d.DrawLine(SYS_Point(5, 0), SYS_Point(5, 10), 0, 0), d.FillRect(SYS_Box(10, 10, 20, 20), 1);
       },
       SYS_Box(5, 0, 20, 20)},
      {"a horizontal line is combined, not replaced",
       [](CDynamic &d) { d.DrawLine(SYS_Point(0, 5), SYS_Point(9, 5), 0, 0), d.DrawXorBox(SYS_Box(1, 1, 2, 2)); },
       SYS_Box(0, 1, 9, 5)},
      {"arc grows by its box, not its points",
       [](CDynamic &d) { d.DrawArc(SYS_Box(0, 0, 10, 10), SYS_Point(100, 100), SYS_Point(-100, -100), 1, 1); },
       SYS_Box(0, 0, 10, 10)},
      {"no polylines leave the bounds", [](CDynamic &d) { d.FastPolyPolyline(nullptr, nullptr, 0); }, SYS_Box()},
      {"a detached text leaves the bounds",
       [](CDynamic &d) { d.DrawXorBox(SYS_Box(1, 1, 2, 2)), d.DrawXorText("label", 0, 0, 100L, 100L, 0); },
       SYS_Box(1, 1, 2, 2)},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    CDynamic layer;
    c.record(layer);
    EXPECT_EQ(layer.GetBounds(), c.bounds);
  }
}

// Construction installs the layer on its surface; Install with null changes nothing;
// SetDrawArea changes the surface silently.
TEST(DynamicLayer, InstallAndSetDrawArea) {
  LogSurface first, second;
  CDynamic layer(&first);
  EXPECT_EQ(layer.GetDrawArea(), &first);
  EXPECT_EQ(first.installed, &layer);
  EXPECT_EQ(first.log, (std::vector<std::string>{"InstallDynamic"}));

  layer.Install(nullptr);
  EXPECT_EQ(layer.GetDrawArea(), &first);
  layer.SetDrawArea(&second);
  EXPECT_EQ(layer.GetDrawArea(), &second);
  EXPECT_TRUE(second.log.empty());
  layer.Install(&second);
  EXPECT_EQ(second.installed, &layer);

  CDynamic detached;
  EXPECT_EQ(detached.GetDrawArea(), nullptr);
  EXPECT_EQ(detached.GetBatchDepth(), 0);
  EXPECT_EQ(detached.GetBounds(), SYS_Box());
  EXPECT_TRUE(detached.GetCommands().IsEmpty());
}

// Clear tells the surface (flag 0, with the bounds still set) before it empties the list; every StartBatchDraw clears,
// nested ones too; each EndBatchDraw of an open batch sends the flag 1 and closes it.
TEST(DynamicLayer, NestedBatches) {
  LogSurface surface;
  CDynamic layer(&surface);
  surface.log.clear();
  layer.DrawXorBox(SYS_Box(0, 0, 10, 10));
  layer.StartBatchDraw();
  EXPECT_TRUE(layer.GetCommands().IsEmpty());
  EXPECT_EQ(layer.GetBounds(), SYS_Box());
  layer.StartBatchDraw();
  layer.DrawXorBox(SYS_Box(1, 2, 3, 4));
  EXPECT_EQ(layer.GetBatchDepth(), 2);
  layer.EndBatchDraw();
  layer.EndBatchDraw();
  EXPECT_EQ(layer.GetBatchDepth(), 0);
  layer.EndBatchDraw();  // no batch open: nothing
  EXPECT_EQ(surface.log, (std::vector<std::string>{"RedrawDynamic(0,0,0,10,10)", "RedrawDynamic(0,0,0,0,0)",
                                                   "RedrawDynamic(1,1,2,3,4)", "RedrawDynamic(1,1,2,3,4)"}));
  EXPECT_EQ(wordsOf(layer), (Words{2, 1, 2, 3, 4}));
}

// StartScreenDraw is passed on to the surface; EndScreenDraw is not.
TEST(DynamicLayer, ScreenDrawForwarding) {
  LogSurface surface;
  CDynamic layer(&surface);
  surface.log.clear();
  layer.StartScreenDraw();
  layer.EndScreenDraw();
  EXPECT_EQ(surface.log, (std::vector<std::string>{"StartScreenDraw"}));
  CDynamic detached;
  detached.StartScreenDraw();  // nothing to forward to
}

// Detached (here by the notification 2), the layer records on, but Clear keeps the list,
// EndBatchDraw keeps the depth and a replay draws nothing.
TEST(DynamicLayer, DetachedAfterCodeTwo) {
  LogSurface surface;
  SCC_Event<UI_DrawArea::RedrawBlock> redraw;
  CDynamic layer(&surface);
  redraw.Append(layer);
  layer.StartBatchDraw();
  layer.DrawXorBox(SYS_Box(0, 0, 5, 5));
  redraw.Notify(2, nullptr);
  EXPECT_EQ(layer.GetDrawArea(), nullptr);
  EXPECT_TRUE(layer.IsConnected());
  surface.log.clear();

  layer.Clear();
  layer.StartBatchDraw();
  layer.DrawXorBox(SYS_Box(1, 1, 6, 6));
  layer.EndBatchDraw();
  static_cast<UI_DrawArea &>(layer).Redraw();
  redraw.Notify(1, nullptr);
  EXPECT_TRUE(surface.log.empty());
  EXPECT_EQ(layer.GetBatchDepth(), 2);
  EXPECT_EQ(wordsOf(layer), (Words{2, 0, 0, 5, 5, 2, 1, 1, 6, 6}));
  EXPECT_EQ(layer.GetBounds(), SYS_Box(0, 0, 6, 6));
}

// A destroyed layer leaves its redraw event, which then reaches nobody.
TEST(DynamicLayer, DestroyedLayerLeavesTheEvent) {
  LogSurface surface;
  SCC_Event<UI_DrawArea::RedrawBlock> redraw;
  {
    CDynamic layer(&surface);
    redraw.Append(layer);
    layer.DrawXorBox(SYS_Box(0, 0, 1, 1));
  }
  surface.log.clear();
  redraw.Notify(1, nullptr);
  EXPECT_TRUE(surface.log.empty());
}
