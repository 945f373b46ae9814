//===- inc/ui_drawarea.h - The abstract drawing surface -----------------===//
//
// UI_DrawArea is the surface the host derives from to draw on its window.
// Every operation has a do-nothing default, so a host overrides only what its
// surface supports. Coordinates and lengths are base units; turning them into
// pixels is the surface's business.
//
//===------------------------------------------------------------------===//
#ifndef BFC_UI_DRAWAREA_H
#define BFC_UI_DRAWAREA_H

#include "scc_event.h"
#include "sys_box.h"

class CDynamic;

/// The drawing surface a host implements: pens, text, scale, viewports, cursor, XOR and
/// fast primitives, redraw control and palette, 81 virtual operations in all.
///
/// THE DECLARATION ORDER BELOW IS FIXED. A host built against this header and the library
/// must agree on the table of virtual operations, so an operation is never moved, removed or
/// inserted in the middle; the slot comment (`// 26`) before each group names the slot of
/// its first operation (slot 0 is the destructor, which GCC lays out as two entries, so
/// the numbers count declarations, not table entries). Overloads share a name: a host that
/// overrides one form of `DrawXorBox`, `DrawXorText`, `Redraw`, `DrawOriginMark`,
/// `FastPaintOval` or `StrokeTextLen` adds `using UI_DrawArea::Name;` to keep the others.
///
/// The class holds no data; copying copies nothing.
class BFC_API UI_DrawArea {
public:
  /// The argument of redraw notifications. Declared here and defined by the host, whose
  /// fields they are: the library only passes pointers to it.
  struct RedrawBlock;

  UI_DrawArea() = default;
  UI_DrawArea(UI_DrawArea const &) = default;
  UI_DrawArea &operator=(UI_DrawArea const &) = default;

  // 0
  virtual ~UI_DrawArea();
  // 1
  virtual void BackColor(int colour);
  virtual void InvalidateRect(SYS_Box const *box);
  virtual void SetBitmapRedraw(int on);
  virtual void GetVP(SYS_Box &viewport);
  virtual void SetVP(SYS_Box &viewport);
  virtual void GetUserVP(SYS_Box &viewport);
  // 7: pens. Pen mode 2 selects XOR drawing.
  virtual void PenCap(int cap);
  virtual void PenColor(int colour);
  virtual void PenMode(int mode);
  /// 0 by default.
  virtual int GetPenMode();
  /// The width in base units.
  virtual void PenSize(long width);
  // 12
  virtual void SetUserVP(SYS_Box &viewport);
  /// 0 by default.
  virtual int GetBackColor();
  /// 0 by default.
  virtual int RegisterBrush(unsigned int pattern);
  virtual void EraseRect(SYS_Box box);
  // 16
  virtual void FillRect(SYS_Box box, int colour);
  virtual void MoveCursor(long x, long y);
  // 18: scale. A length in base units converted to screen pixels; 1 by default.
  virtual int Scale2ScreenX(long length);
  virtual int Scale2ScreenY(long length);
  /// 1.0 by default.
  virtual double GetScale(SYS_Point *origin);
  /// 0 by default.
  virtual int SetScale(double scale, SYS_Point *origin, int redraw);
  /// 1.0 by default.
  virtual double GetWorldScale();
  // 23
  virtual void FitRectToWindow(SYS_Box &box);
  virtual void SetRgnRedraw(SYS_Box *box, int on);
  // 25: redraw
  virtual void Redraw(SYS_Box box);
  /// Redraws the whole surface.
  virtual void Redraw();
  virtual void RedrawRect(SYS_Box box);
  virtual void RefreshCursor(SYS_Point *position);
  // 29
  virtual void StartResize();
  virtual void EndResize();
  // 31: the dynamic layer
  /// Remembers the layer that draws on this surface; a surface that supports layers
  /// connects it to its redraw event here.
  virtual void InstallDynamic(CDynamic *layer);
  /// The layer sends 0 just before it discards its drawing and 1 when a batch of drawing is
  /// complete; the surface makes the drawing disappear or appear over `box` (the layer's
  /// Redraw() replays it).
  virtual void RedrawDynamic(CDynamic *layer, SYS_Box *box, int appear);
  // 33: XOR drawing
  virtual void DrawXorBox(SYS_Box box);
  virtual void DrawXorBox(SYS_Point corner1, SYS_Point corner2);
  /// Draws `text` in XOR at (x, y); returns the box it covers, the zero box by default.
  virtual SYS_Box DrawXorText(char const *text, int param1, int param2, long x, long y, int flag);
  virtual SYS_Box DrawXorText(char const *text, int param1, int param2, SYS_Point position, int flag);
  // 37
  virtual void DrawOriginMark(SYS_Point origin);
  virtual void DrawOriginMark(long x, long y);
  virtual void SetPixel(SYS_Point const &p);
  // 40: batches
  virtual void StartBatchDraw();
  virtual void EndBatchDraw();
  virtual void StartScreenDraw();
  virtual void EndScreenDraw();
  // 44: fast primitives
  virtual void FastMoveTo(SYS_Point const &p);
  virtual void FastLineTo(SYS_Point const &p);
  virtual void FastPaintOval(SYS_Box box);
  virtual void FastPaintOval(SYS_Point const &centre, long diameter, int colour);
  /// The arc in `box` between two angles.
  virtual void FrameArc(SYS_Box box, double startAngle, double endAngle);
  /// The outline of the ellipse inscribed in `box`.
  virtual void FastFrameOval(SYS_Box const &box);
  /// `count` polylines: the points of all of them in sequence and the point count of each.
  virtual void FastPolyPolyline(SYS_Point *points, unsigned long const *counts, int count);
  virtual void FastPolyPolygon(SYS_Point *points, int const *counts, int count);
  /// The arc of the ellipse inscribed in `box`, counter-clockwise from the direction of
  /// `from` to that of `to`.
  virtual void FastFrameArc(SYS_Box const &box, SYS_Point const &from, SYS_Point const &to);
  virtual void FastPolyLine(int count, SYS_Point *points, long width, int colour);
  // 54: text
  virtual void TextSize(int width, int height);
  virtual void TextFace(int face);
  virtual void TextExtra(int extra);
  virtual void TextAlign(int horizontal, int vertical);
  virtual void TextPath(double angle);
  // 59: stroke font; every one 0 by default
  virtual int StrokeTextLen(char const *text, int height, int width);
  virtual int StrokeTextLen(char const *text);
  virtual int StrokeTextAscendingHeight();
  virtual int StrokeTextDescendingHeight();
  virtual int StrokeTextFontHeight();
  // 64
  virtual void DrawString(char const *text);
  virtual void DrawLine(SYS_Point const &from, SYS_Point const &to, long width, int colour);
  // 66: XOR drawing between StartXORDraw and EndXORDraw
  virtual void StartXORDraw();
  virtual void XORPenColor(long const &colour);
  virtual void XORFrameArc(SYS_Box const &box, SYS_Point const &from, SYS_Point const &to);
  virtual void XORFrameOval(SYS_Point const &centre, long const &diameter);
  virtual void XORPaintOval(SYS_Point const &centre, long const &diameter);
  virtual void XORMoveTo(SYS_Point const &p);
  virtual void XORLineTo(SYS_Point const &p);
  virtual void XORCross(SYS_Point const &p);
  virtual void EndXORDraw();
  // 75: palette; the getters give 0 by default
  virtual long GetDefaultPaletteColors(unsigned long *colours) const;
  virtual long GetCurrentPaletteColors(unsigned long *colours) const;
  virtual void SetCurrentPaletteColors(unsigned long *colours);
  // 78
  virtual void RegisterRedrawHook(SCC_EventHook<RedrawBlock> *hook);
  virtual void DrawDotGrid(SYS_Point &origin, long stepX, long stepY, SYS_Box &area);
  /// 0 by default.
  virtual long GetPixelSize();
  // 81 operations; append new ones here, never above.

  /// The main draw area: set by the host, null until then; the library never uses it.
  static UI_DrawArea *GetMainDrawArea() { return s_pMainDrawArea; }
  static void SetMainDrawArea(UI_DrawArea *area) { s_pMainDrawArea = area; }

  static UI_DrawArea *s_pMainDrawArea;
};

#endif
