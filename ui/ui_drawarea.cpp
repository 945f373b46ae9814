//===- ui/ui_drawarea.cpp - The do-nothing defaults of the drawing surface ===//
//
// Defined out of line so that the table of virtual operations lives in the
// library, once: the destructor is the first non-inline operation.
//
//===------------------------------------------------------------------===//
#include "ui_drawarea.h"

UI_DrawArea *UI_DrawArea::s_pMainDrawArea = nullptr;

UI_DrawArea::~UI_DrawArea() = default;

void UI_DrawArea::BackColor(int) {}
void UI_DrawArea::InvalidateRect(SYS_Box const *) {}
void UI_DrawArea::SetBitmapRedraw(int) {}
void UI_DrawArea::GetVP(SYS_Box &) {}
void UI_DrawArea::SetVP(SYS_Box &) {}
void UI_DrawArea::GetUserVP(SYS_Box &) {}
void UI_DrawArea::PenCap(int) {}
void UI_DrawArea::PenColor(int) {}
void UI_DrawArea::PenMode(int) {}
int UI_DrawArea::GetPenMode() { return 0; }
void UI_DrawArea::PenSize(long) {}
void UI_DrawArea::SetUserVP(SYS_Box &) {}
int UI_DrawArea::GetBackColor() { return 0; }
int UI_DrawArea::RegisterBrush(unsigned int) { return 0; }
void UI_DrawArea::EraseRect(SYS_Box) {}
void UI_DrawArea::FillRect(SYS_Box, int) {}
void UI_DrawArea::MoveCursor(long, long) {}
int UI_DrawArea::Scale2ScreenX(long) { return 1; }
int UI_DrawArea::Scale2ScreenY(long) { return 1; }
double UI_DrawArea::GetScale(SYS_Point *) { return 1.0; }
int UI_DrawArea::SetScale(double, SYS_Point *, int) { return 0; }
double UI_DrawArea::GetWorldScale() { return 1.0; }
void UI_DrawArea::FitRectToWindow(SYS_Box &) {}
void UI_DrawArea::SetRgnRedraw(SYS_Box *, int) {}
void UI_DrawArea::Redraw(SYS_Box) {}
void UI_DrawArea::Redraw() {}
void UI_DrawArea::RedrawRect(SYS_Box) {}
void UI_DrawArea::RefreshCursor(SYS_Point *) {}
void UI_DrawArea::StartResize() {}
void UI_DrawArea::EndResize() {}
void UI_DrawArea::InstallDynamic(CDynamic *) {}
void UI_DrawArea::RedrawDynamic(CDynamic *, SYS_Box *, int) {}
void UI_DrawArea::DrawXorBox(SYS_Box) {}
void UI_DrawArea::DrawXorBox(SYS_Point, SYS_Point) {}
SYS_Box UI_DrawArea::DrawXorText(char const *, int, int, long, long, int) { return SYS_Box(); }
SYS_Box UI_DrawArea::DrawXorText(char const *, int, int, SYS_Point, int) { return SYS_Box(); }
void UI_DrawArea::DrawOriginMark(SYS_Point) {}
void UI_DrawArea::DrawOriginMark(long, long) {}
void UI_DrawArea::SetPixel(SYS_Point const &) {}
void UI_DrawArea::StartBatchDraw() {}
void UI_DrawArea::EndBatchDraw() {}
void UI_DrawArea::StartScreenDraw() {}
void UI_DrawArea::EndScreenDraw() {}
void UI_DrawArea::FastMoveTo(SYS_Point const &) {}
void UI_DrawArea::FastLineTo(SYS_Point const &) {}
void UI_DrawArea::FastPaintOval(SYS_Box) {}
void UI_DrawArea::FastPaintOval(SYS_Point const &, long, int) {}
void UI_DrawArea::FrameArc(SYS_Box, double, double) {}
void UI_DrawArea::FastFrameOval(SYS_Box const &) {}
void UI_DrawArea::FastPolyPolyline(SYS_Point *, unsigned long const *, int) {}
void UI_DrawArea::FastPolyPolygon(SYS_Point *, int const *, int) {}
void UI_DrawArea::FastFrameArc(SYS_Box const &, SYS_Point const &, SYS_Point const &) {}
void UI_DrawArea::FastPolyLine(int, SYS_Point *, long, int) {}
void UI_DrawArea::TextSize(int, int) {}
void UI_DrawArea::TextFace(int) {}
void UI_DrawArea::TextExtra(int) {}
void UI_DrawArea::TextAlign(int, int) {}
void UI_DrawArea::TextPath(double) {}
int UI_DrawArea::StrokeTextLen(char const *, int, int) { return 0; }
int UI_DrawArea::StrokeTextLen(char const *) { return 0; }
int UI_DrawArea::StrokeTextAscendingHeight() { return 0; }
int UI_DrawArea::StrokeTextDescendingHeight() { return 0; }
int UI_DrawArea::StrokeTextFontHeight() { return 0; }
void UI_DrawArea::DrawString(char const *) {}
void UI_DrawArea::DrawLine(SYS_Point const &, SYS_Point const &, long, int) {}
void UI_DrawArea::StartXORDraw() {}
void UI_DrawArea::XORPenColor(long const &) {}
void UI_DrawArea::XORFrameArc(SYS_Box const &, SYS_Point const &, SYS_Point const &) {}
void UI_DrawArea::XORFrameOval(SYS_Point const &, long const &) {}
void UI_DrawArea::XORPaintOval(SYS_Point const &, long const &) {}
void UI_DrawArea::XORMoveTo(SYS_Point const &) {}
void UI_DrawArea::XORLineTo(SYS_Point const &) {}
void UI_DrawArea::XORCross(SYS_Point const &) {}
void UI_DrawArea::EndXORDraw() {}
long UI_DrawArea::GetDefaultPaletteColors(unsigned long *) const { return 0; }
long UI_DrawArea::GetCurrentPaletteColors(unsigned long *) const { return 0; }
void UI_DrawArea::SetCurrentPaletteColors(unsigned long *) {}
void UI_DrawArea::RegisterRedrawHook(SCC_EventHook<RedrawBlock> *) {}
void UI_DrawArea::DrawDotGrid(SYS_Point &, long, long, SYS_Box &) {}
long UI_DrawArea::GetPixelSize() { return 0; }
