//===- tests/svg_drawarea_test.cpp - The SVG surface and the XOR layer on it ===//
#include "svg_drawarea.h"
#include "ui_dynamic.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// An element's tag, attributes and text.
struct Parsed { std::string tag; std::map<std::string, std::string> attr; std::string text; };

Parsed parse(std::string const &markup) {
  Parsed p;
  std::smatch m;
  std::regex_search(markup, m, std::regex("^<(\\w+)"));
  p.tag = m[1];
  std::regex const attribute("([\\w-]+)=\"([^\"]*)\"");
  for (auto it = std::sregex_iterator(markup.begin(), markup.end(), attribute); it != std::sregex_iterator(); ++it)
    p.attr[(*it)[1]] = (*it)[2];
  if (std::regex_search(markup, m, std::regex(">([^<]*)</"))) p.text = m[1];
  return p;
}

std::string num(long v) { return std::to_string(v); }
std::vector<Parsed> xorElements(SvgDrawArea const &svg) {
  std::vector<Parsed> out;
  for (auto const &e : svg.GetElements())
    if (e.isXor) out.push_back(parse(e.markup));
  return out;
}

SYS_Box const kView(0, 0, 150000000, 90000000);  // 100 by 60 mm

/// Records one frame of a drag: every kind of primitive, at sizes well above 2 pixels.
void recordFrame(CDynamic &layer, long dx) {
  layer.StartBatchDraw();
  layer.PenColor(0x0000FF);
  layer.DrawXorBox(SYS_Point(10000000, 10000000), SYS_Point(40000000 + dx, 30000000));
  layer.PenColor(0xFF0000);
  layer.DrawXorOval(SYS_Box(50000000 + dx, 20000000, 53000000 + dx, 23000000));
  layer.FillRect(SYS_Box(60000000, 40000000, 56000000, 44000000), 0x00FF00);
  layer.DrawXorText("U7 <new> & more", 2250000, 0, SYS_Point(20000000, 50000000), 0);
  layer.DrawLine(SYS_Point(5000000, 5000000), SYS_Point(51500000 + dx, 21500000), 375000, 0x008000);
  layer.DrawArc(SYS_Box(70000000, 30000000, 90000000, 50000000), SYS_Point(90000000, 40000000),
                SYS_Point(80000000, 50000000), 0, 0x800080);
  SYS_Point pts[] = {{100000000, 10000000}, {110000000, 20000000}, {120000000, 10000000}, {100000000, 60000000},
                     {130000000, 70000000}};
  unsigned long counts[] = {3, 2};
  layer.FastPolyPolyline(pts, counts, 2);
  layer.EndBatchDraw();
}

}  // namespace

// After a batch, the surface shows one XOR element per drawing command of the layer, in order, at the coordinates
// recorded (base units, y up): boxes and fills as rectangles, ovals as ellipses, the text set 100 high, scaled to its
// height and flipped upright at its baseline, lines, the arc as a path counter-clockwise from its start (width 0: one
// pixel), and each polyline of a set; texts are escaped.
TEST(SvgDrawArea, ElementsMatchRecordedCommands) {
  SvgDrawArea svg(kView, 1000);
  CDynamic layer(&svg);
  recordFrame(layer, 0);
  std::string const stroke = "fill=\"none\" stroke=\"#";
  std::string const pixel = "\" stroke-linecap=\"round\" stroke-width=\"150000\"/>";
  std::vector<std::string> const expected = {
      "<rect x=\"10000000\" y=\"10000000\" width=\"30000000\" height=\"20000000\" " + stroke + "0000ff" + pixel,
      "<ellipse cx=\"51500000\" cy=\"21500000\" rx=\"1500000\" ry=\"1500000\" " + stroke + "ff0000" + pixel,
      "<rect x=\"56000000\" y=\"40000000\" width=\"4000000\" height=\"4000000\" fill=\"#00ff00\"/>",
      "<text transform=\"translate(20000000 50000000) scale(22500 -22500)\" font-family=\"sans-serif\" "
      "font-size=\"100\" text-anchor=\"start\" fill=\"#ff0000\">U7 &lt;new&gt; &amp; more</text>",
      "<line x1=\"5000000\" y1=\"5000000\" x2=\"51500000\" y2=\"21500000\" " + stroke +
          "008000\" stroke-linecap=\"round\" stroke-width=\"375000\"/>",
      "<path d=\"M 90000000 40000000 A 10000000 10000000 0 0 1 80000000 50000000\" " + stroke + "800080" + pixel,
      "<polyline points=\"100000000,10000000 110000000,20000000 120000000,10000000\" " + stroke + "800080" + pixel,
      "<polyline points=\"100000000,60000000 130000000,70000000\" " + stroke + "800080" + pixel,
  };
  std::vector<std::string> shown;
  for (auto const &e : svg.GetElements()) {
    EXPECT_TRUE(e.isXor);
    shown.push_back(e.markup);
  }
  EXPECT_EQ(shown, expected);
}

// XOR drawing twice takes the drawing away: a new frame erases the last one (flag 0) and
// shows its own (flag 1), so only the newest frame is on the surface; Clear leaves none.
TEST(SvgDrawArea, FramesReplaceEachOther) {
  SvgDrawArea svg(kView, 1000);
  CDynamic layer(&svg);
  svg.PenColor(0x123456);
  svg.DrawLine(SYS_Point(0, 0), SYS_Point(1, 1), 0, 0);  // the board, not XOR
  recordFrame(layer, 0);
  size_t const perFrame = xorElements(svg).size();
  EXPECT_EQ(perFrame, 8u);
  for (long dx : {1000000L, 2000000L, 3000000L}) {
    SCOPED_TRACE(dx);
    recordFrame(layer, dx);
    std::vector<Parsed> const shown = xorElements(svg);
    ASSERT_EQ(shown.size(), perFrame);
    EXPECT_EQ(shown[0].attr.at("width"), num(30000000 + dx));
  }
  layer.Clear();
  EXPECT_TRUE(xorElements(svg).empty());
  EXPECT_EQ(svg.GetElements().size(), 1u);
}

// "Appear" and "disappear" are states: nested batches end with the drawing shown, and a second disappear does not bring
// it back. Drawing the same XOR element twice directly takes it away.
TEST(SvgDrawArea, AppearIsAState) {
  SvgDrawArea svg(kView, 1000);
  CDynamic layer(&svg);
  layer.StartBatchDraw();
  layer.StartBatchDraw();
  layer.DrawXorBox(SYS_Box(0, 0, 10000000, 10000000));
  layer.EndBatchDraw();
  layer.EndBatchDraw();
  EXPECT_EQ(xorElements(svg).size(), 1u);
  svg.RedrawDynamic(&layer, nullptr, 0);
  svg.RedrawDynamic(&layer, nullptr, 0);
  EXPECT_TRUE(xorElements(svg).empty());
  svg.RedrawDynamic(&layer, nullptr, 1);
  EXPECT_EQ(xorElements(svg).size(), 1u);

  svg.DrawXorBox(SYS_Point(5, 5), SYS_Point(6, 6));
  EXPECT_EQ(xorElements(svg).size(), 2u);
  svg.DrawXorBox(SYS_Box(6, 6, 5, 5));
  EXPECT_EQ(xorElements(svg).size(), 1u);
}

// The document: pixel size from the view's aspect, a view box spanning -upper to -lower
// under a y flip, the background first; it is written to a file byte for byte.
TEST(SvgDrawArea, DocumentAndFile) {
  SvgDrawArea svg(SYS_Box(150000000, 90000000, 0, 30000000), 1000);  // normalized to 0..150M, 30M..90M
  EXPECT_EQ(svg.GetWidthPixels(), 1000);
  EXPECT_EQ(svg.GetHeightPixels(), 400);
  svg.DrawXorText("\xC3\xA9t\xC3\xA9 \xFF\x01", 0, 1, 0L, 0L, 1);
  std::string const doc = svg.GetDocument();
  EXPECT_NE(doc.find("viewBox=\"0 -90000000 150000000 60000000\""), std::string::npos);
  EXPECT_NE(doc.find("<g transform=\"scale(1 -1)\">"), std::string::npos);
  EXPECT_NE(doc.find("<rect x=\"0\" y=\"30000000\" width=\"150000000\" height=\"60000000\" fill=\"#ffffff\"/>"),
            std::string::npos);
  EXPECT_NE(doc.find(">\xC3\xA9t\xC3\xA9 \xEF\xBF\xBD\xEF\xBF\xBD</text>"), std::string::npos);
  EXPECT_NE(doc.find("text-anchor=\"middle\""), std::string::npos);

  std::string const path = ::testing::TempDir() + "svg_drawarea_test.svg";
  ASSERT_EQ(svg.WriteFile(path.c_str()), 1);
  std::ifstream in(path, std::ios::binary);
  std::stringstream read;
  read << in.rdbuf();
  EXPECT_EQ(read.str(), doc);
  std::remove(path.c_str());
  EXPECT_EQ(svg.WriteFile((::testing::TempDir() + "no-such-dir/x.svg").c_str()), 0);
  EXPECT_EQ(svg.WriteFile(nullptr), 0);
}

// A surface going away tells its layers (code 2), which detach; a layer going away leaves
// the surface, which then redraws without it.
TEST(SvgDrawArea, LifetimesOfSurfaceAndLayer) {
  CDynamic outlives;
  {
    SvgDrawArea svg(kView, 1000);
    outlives.Install(&svg);
    {
      CDynamic shortLived(&svg);
      shortLived.StartBatchDraw();
      shortLived.DrawXorBox(SYS_Box(0, 0, 1000000, 1000000));
      shortLived.EndBatchDraw();
    }
    svg.Redraw();  // the destroyed layer is no longer asked
    EXPECT_TRUE(svg.GetElements().empty());
  }
  EXPECT_EQ(outlives.GetDrawArea(), nullptr);
  outlives.StartBatchDraw();
  outlives.DrawXorBox(SYS_Box(0, 0, 1, 1));
  outlives.EndBatchDraw();
  EXPECT_EQ(outlives.GetBatchDepth(), 1);
}

// Redraw erases the surface, tells hooks and layers the code 1 with the whole view, and the layers draw again.
TEST(SvgDrawArea, RedrawTellsHooksAndLayers) {
  static std::vector<std::string> heard;
  heard.clear();
  SvgDrawArea svg(kView, 1000);
  SCC_EventHook<UI_DrawArea::RedrawBlock> hook([](int code, UI_DrawArea::RedrawBlock *block) {
    heard.push_back(std::to_string(code) + ":" + std::to_string(block->area.GetRight()));
    return 0;
  });
  svg.RegisterRedrawHook(&hook);
  CDynamic layer(&svg);
  recordFrame(layer, 0);
  svg.DrawLine(SYS_Point(0, 0), SYS_Point(5, 5), 0, 0);
  std::vector<SvgDrawArea::Element> const before = svg.GetElements();
  svg.Redraw();
  EXPECT_EQ(heard, (std::vector<std::string>{"1:150000000"}));
  ASSERT_EQ(svg.GetElements().size(), before.size() - 1);  // the plain line is gone
  EXPECT_EQ(xorElements(svg).size(), 8u);
  layer.StartBatchDraw();  // the drawing counts as shown: this erases it
  EXPECT_TRUE(xorElements(svg).empty());
}
