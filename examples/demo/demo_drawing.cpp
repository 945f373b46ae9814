//===- examples/demo/demo_drawing.cpp - Drawing: a part dragged across the board ===//
//
// The host draws a small board on an SVG surface, then drags part U7 across it:
// each mouse move records the XOR feedback (selection box, pad outlines, the
// rubber-band track to J1, the rotation handle arc and a label) into a dynamic
// layer in one batch. The surface erases the last frame and shows the new one
// when the layer asks. The last frame is written to demo-dynamic.svg.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"
#include "svg_drawarea.h"

#include <cstdio>

namespace {

long mm(double v) { return static_cast<long>(v * SYS_BaseUnitsPerMm + (v < 0 ? -0.5 : 0.5)); }
double toMm(long v) { return static_cast<double>(v) / SYS_BaseUnitsPerMm; }
SYS_Point at(double x, double y) { return SYS_Point(mm(x), mm(y)); }
SYS_Box box(double left, double lower, double right, double upper) {
  return SYS_Box(mm(left), mm(lower), mm(right), mm(upper));
}

void printBox(char const *label, SYS_Box const &b) {
  std::printf("%s(%.3f, %.3f)-(%.3f, %.3f) mm", label, toMm(b.GetLeft()), toMm(b.GetLower()), toMm(b.GetRight()),
              toMm(b.GetUpper()));
}

int xorCount(SvgDrawArea const &svg) {
  int n = 0;
  for (auto const &e : svg.GetElements()) n += e.isXor;
  return n;
}

/// The host's window surface, here an SVG one that also says what the layer asks of it.
class BoardView : public SvgDrawArea {
public:
  BoardView() : SvgDrawArea(box(0, 0, 60, 40), 900) {}
  void RedrawDynamic(CDynamic *layer, SYS_Box *over, int appear) override {
    std::printf("    surface: the layer's drawing is to %s over ", appear ? "appear" : "disappear");
    printBox("", *over);
    SvgDrawArea::RedrawDynamic(layer, over, appear);
    std::printf(" -> %d XOR elements shown\n", xorCount(*this));
  }
};

constexpr int kCopper = 0xC89B3C, kTrack = 0xB87333, kOutline = 0xD8D8D8;

/// The board under the drag, drawn in the ordinary pen mode.
void drawBoard(BoardView &view) {
  view.BackColor(0x0F3B1F);
  view.PenMode(0);
  view.PenColor(kOutline);
  view.PenSize(mm(0.2));
  SYS_Point outline[] = {at(2, 2), at(58, 2), at(58, 38), at(2, 38), at(2, 2)};
  unsigned long counts[] = {5};
  view.FastPolyPolyline(outline, counts, 1);
  for (double y : {8.0, 12.0, 16.0}) view.FillRect(box(5, y - 1, 8, y + 1), kCopper);  // J1
  for (double x : {40.0, 44.0, 48.0}) view.FillRect(box(x - 1, 32, x + 1, 35), kCopper);  // J2
  view.DrawLine(at(8, 16), at(20, 16), mm(0.4), kTrack);
  view.DrawLine(at(20, 16), at(40, 32), mm(0.4), kTrack);
}

/// One frame of the drag feedback for part U7, whose origin follows the mouse.
void recordDragFrame(CDynamic &layer, SYS_Point mouse, SYS_Point grabbed) {
  double const x = toMm(mouse.GetX()), y = toMm(mouse.GetY());
  layer.StartBatchDraw();
  layer.PenColor(0xFFFFFF);
  layer.PenSize(0);
  layer.DrawXorBox(grabbed, mouse);  // the selection stretched from where the drag began
  layer.PenColor(0x40E0FF);
  layer.DrawXorBox(box(x - 3, y - 2, x + 3, y + 2));  // U7's body
  layer.DrawXorOval(box(x - 2.6, y - 0.6, x - 1.4, y + 0.6));  // pin 1
  layer.DrawXorOval(box(x + 1.4, y - 0.6, x + 2.6, y + 0.6));  // pin 2
  layer.DrawXorOval(box(x - 0.01, y + 1.49, x + 0.01, y + 1.51));  // a 0.02 mm via: under 2 pixels
  layer.DrawLine(at(8, 12), at(x - 2, y), mm(0.4), 0xFFE040);  // rubber band from J1 pin 2
  layer.DrawArc(box(x - 4, y - 4, x + 4, y + 4), at(x + 4, y), at(x, y + 4), 0, 0xFF60FF);  // rotate handle
  layer.PenColor(0xFFFFFF);
  char label[64];
  std::snprintf(label, sizeof label, "U7  (%.2f, %.2f) mm", x, y);
  layer.DrawXorText(label, static_cast<int>(mm(1.5)), 0, at(x - 3, y + 4.5), 0);
  layer.EndBatchDraw();
}

}  // namespace

void demoDrawing() {
  demoHeading("Drawing: dragging a part with the XOR layer");
  BoardView view;
  UI_DrawArea::SetMainDrawArea(&view);
  drawBoard(view);
  std::printf("  board drawn: %d elements; 1 pixel is %.3f mm, 2 pixels are %d base units\n",
              static_cast<int>(view.GetElements().size()), toMm(mm(60)) / view.GetWidthPixels(),
              static_cast<int>(mm(60) / view.GetWidthPixels() * 2));

  CDynamic layer(&view);
  std::printf("  layer installed on the surface and connected to its redraw event\n");
  SYS_Point const grabbed = at(22, 9);
  SYS_Point const path[] = {at(24, 10), at(28, 14), at(33, 19), at(36, 22)};
  int frame = 0;
  for (SYS_Point const &mouse : path) {
    std::printf("  frame %d: mouse at (%.2f, %.2f) mm\n", ++frame, toMm(mouse.GetX()), toMm(mouse.GetY()));
    recordDragFrame(layer, mouse, grabbed);
    std::printf("    layer: %d words, ", layer.GetCommands().GetSize());
    printBox("bounds ", layer.GetBounds());
    std::printf("\n");
  }
  int ellipses = 0, boxes = 0;
  for (auto const &e : view.GetElements()) {
    if (!e.isXor) continue;
    ellipses += e.markup.rfind("<ellipse", 0) == 0;
    boxes += e.markup.rfind("<rect", 0) == 0;
  }
  std::printf("  shown now: %d ellipses (the pins) and %d box outlines (selection, body, and the via,\n"
              "  too small for an oval at this scale)\n", ellipses, boxes);

  char const *const file = "demo-dynamic.svg";
  if (view.WriteFile(file))
    std::printf("  wrote %s: %dx%d pixels, %d elements (open it in a browser)\n", file, view.GetWidthPixels(),
                view.GetHeightPixels(), static_cast<int>(view.GetElements().size()));
  else
    std::printf("  could not write %s\n", file);

  std::printf("  the mouse is released: the layer clears\n");
  layer.Clear();
  UI_DrawArea::SetMainDrawArea(nullptr);

  CDynamic late;
  {
    BoardView closing;
    late.Install(&closing);
    late.DrawXorBox(box(1, 1, 2, 2));
  }
  std::printf("  a window closes under a layer (code 2): layer detached = %s, words kept = %d\n",
              late.GetDrawArea() == nullptr ? "yes" : "no", late.GetCommands().GetSize());
}
