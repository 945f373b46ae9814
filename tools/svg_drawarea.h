//===- tools/svg_drawarea.h - A drawing surface that writes SVG ---------===//
//
// A host-side surface for looking at drawing without a window: every line, box,
// oval, arc, filled rectangle, polyline and text it is asked to draw becomes an
// SVG element in base units, and the document shows them with y pointing up.
// It supports the dynamic layer the way a window surface would: it keeps a
// redraw event, connects layers to it, and shows or hides a layer's drawing
// when the layer asks.
//
//===------------------------------------------------------------------===//
#ifndef BFC_TOOLS_SVG_DRAWAREA_H
#define BFC_TOOLS_SVG_DRAWAREA_H

#include "scc_event.h"
#include "sys_box.h"
#include "ui_drawarea.h"

#include <string>
#include <utility>
#include <vector>

class CDynamic;

/// The redraw notification's argument of hosts that use this surface: the part of the
/// surface being redrawn, in base units.
struct UI_DrawArea::RedrawBlock {
  SYS_Box area;
};

/// A UI_DrawArea that turns drawing calls into an SVG document.
///
/// Colours are 0xRRGGBB. A pen width of 0 is a hairline, one pixel of the picture wide. Pen caps: 0
/// round, 1 square, 2 flat. Texts: the first int is the height in base units (0: 1 mm), the
/// second the alignment at the position (0 left, 1 centre, 2 right); the flag 0 only
/// measures the text, any other flag draws it too.
///
/// XOR drawing (pen mode 2, and DrawXorBox and DrawXorText always) behaves as on a screen:
/// drawing the same element a second time in XOR takes it away again. The surface keeps
/// whether the drawing of each layer installed on it is shown, so RedrawDynamic's "appear"
/// and "disappear" are states, not toggles: a second "appear" does not hide the drawing. A
/// layer it was not told of (attached by SetDrawArea) is replayed on every request.
class SvgDrawArea : public UI_DrawArea {
public:
  /// One drawn element: its SVG markup and whether it was drawn in XOR.
  struct Element {
    std::string markup;
    bool isXor;
  };

  /// Shows `view` (base units; normalized here) in a picture `widthPixels` wide, which sets
  /// the scale for Scale2ScreenX/Y. A view without width or height is made 1 mm wide or high.
  SvgDrawArea(SYS_Box view, int widthPixels);
  SvgDrawArea(SvgDrawArea const &) = delete;
  SvgDrawArea &operator=(SvgDrawArea const &) = delete;
  /// Tells every layer and hook the code 2 (the surface goes away), then disconnects them.
  ~SvgDrawArea() override;

  /// The whole document.
  std::string GetDocument() const;
  /// Writes the document to `path`; 1 when it was written whole, 0 otherwise.
  int WriteFile(char const *path) const;
  /// The elements shown now, in drawing order.
  std::vector<Element> const &GetElements() const { return m_Elements; }
  /// The picture's size in pixels.
  int GetWidthPixels() const { return m_WidthPixels; }
  int GetHeightPixels() const;
  /// Removes every element, XOR or not; the layers count as hidden.
  void Erase();

  void BackColor(int colour) override { m_BackColour = colour; }
  int GetBackColor() override { return m_BackColour; }
  void GetVP(SYS_Box &viewport) override { viewport = m_View; }
  void PenCap(int cap) override { m_PenCap = cap; }
  void PenColor(int colour) override { m_PenColour = colour; }
  void PenMode(int mode) override { m_PenMode = mode; }
  int GetPenMode() override { return m_PenMode; }
  void PenSize(long width) override { m_PenSize = width; }
  /// Pixels for a length, rounded half away from zero.
  int Scale2ScreenX(long length) override;
  int Scale2ScreenY(long length) override;
  /// Pixels per base unit.
  double GetScale(SYS_Point *origin) override;

  /// Every element is taken away; then the event's hooks and layers are told code 1 with
  /// the whole view, and the layers draw again.
  void Redraw() override;
  using UI_DrawArea::Redraw;
  void InstallDynamic(CDynamic *layer) override;
  void RedrawDynamic(CDynamic *layer, SYS_Box *box, int appear) override;
  void RegisterRedrawHook(SCC_EventHook<RedrawBlock> *hook) override;

  void FillRect(SYS_Box box, int colour) override;
  void DrawXorBox(SYS_Box box) override;
  void DrawXorBox(SYS_Point corner1, SYS_Point corner2) override;
  SYS_Box DrawXorText(char const *text, int height, int align, long x, long y, int flag) override;
  SYS_Box DrawXorText(char const *text, int height, int align, SYS_Point position, int flag) override;
  void FastMoveTo(SYS_Point const &p) override { m_Cursor = p; }
  void FastLineTo(SYS_Point const &p) override;
  void FastFrameOval(SYS_Box const &box) override;
  void FastPolyPolyline(SYS_Point *points, unsigned long const *counts, int count) override;
  void FastFrameArc(SYS_Box const &box, SYS_Point const &from, SYS_Point const &to) override;
  void DrawLine(SYS_Point const &from, SYS_Point const &to, long width, int colour) override;

private:
  /// Adds an element; in XOR, an equal XOR element already shown is taken away instead.
  void draw(std::string markup, bool isXor);
  /// The stroke attributes of the current pen with `colour` and `width`.
  std::string stroke(int colour, long width) const;
  /// Shows or hides a layer's drawing by replaying it; nothing when it already is so.
  void showLayer(CDynamic *layer, bool shown);

  SYS_Box m_View;
  int m_WidthPixels;
  double m_PixelsPerUnit;
  int m_BackColour = 0xFFFFFF;
  int m_PenColour = 0x000000;
  int m_PenMode = 0;
  int m_PenCap = 0;
  long m_PenSize = 0;
  SYS_Point m_Cursor{0, 0};
  std::vector<Element> m_Elements;
  /// The redraw event; it forgets a layer's entry when the layer leaves it.
  class LayerEvent : public SCC_Event<RedrawBlock> {
  public:
    explicit LayerEvent(SvgDrawArea &surface) : m_Surface(surface) {}
    void OnDisconnect(SCC_EventNode<RedrawBlock> *node) override;

  private:
    SvgDrawArea &m_Surface;
  };

  // Installed layers still connected to the event, and whether their drawing is shown.
  std::vector<std::pair<CDynamic *, bool>> m_Layers;
  LayerEvent m_RedrawEvent{*this};
};

#endif
