//===- ui/ui_dynamic.cpp - Recording, bounds and batches of the XOR layer -===//
//
// Each recording operation reserves its whole command at once and writes the
// words in place. Coordinates are 32-bit values already; widths and other
// `long` operands keep their low 32 bits, as they would in the 32-bit model.
//
//===------------------------------------------------------------------===//
#include "ui_dynamic.h"

#include "plat/plat_mbcs.h"
#include "ssm_report.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace {

char const kSource[] = "ui/dynamic";

enum Code : int32_t { PenColorCode = 0, PenSizeCode, BoxCode, OvalCode, FillCode, TextCode, LineCode, ArcCode,
                      PenCapCode, PolylinesCode };

inline int32_t word(long v) { return static_cast<int32_t>(static_cast<uint32_t>(v)); }

/// The number of leading bytes of `text` (at least `MaxTextBytes` + 1 long) that a command
/// keeps: at most `limit`, never splitting a multibyte character.
int cutLength(char const *text, int limit) {
  char const *const end = text + strnlen(text, static_cast<size_t>(limit) + 4);
  char const *p = text;
  while (p < end) {
    int const length = plat::charLength(p, end);
    if (p + length - text > limit) break;
    p += length;
  }
  return static_cast<int>(p - text);
}

/// The smaller and the larger of two coordinates, without a branch: drag feedback comes in
/// every orientation, and a mispredicted swap costs more than the rest of a command. The
/// difference of two 32-bit values always fits 64 bits.
inline long smaller(long a, long b) {
  int64_t const d = static_cast<int64_t>(a) - b;
  return static_cast<long>(b + (d & (d >> 63)));
}
inline long larger(long a, long b) {
  int64_t const d = static_cast<int64_t>(a) - b;
  return static_cast<long>(a - (d & (d >> 63)));
}

/// The box with corners (x1, y1) and (x2, y2), normalized.
inline SYS_Box spanned(long x1, long y1, long x2, long y2) {
  return SYS_Box(smaller(x1, x2), smaller(y1, y2), larger(x1, x2), larger(y1, y2));
}
inline SYS_Box spanned(SYS_Box const &box) {
  return spanned(box.GetLeft(), box.GetLower(), box.GetRight(), box.GetUpper());
}

/// The bounds take the normalized `box` while they are a single point, and are combined
/// with it otherwise. Both are normalized, so combining is taking the extremes (the
/// undefined box, which Combine treats apart, is never normalized). A free function, so
/// that it inlines: members of exported classes are called through the symbol table.
inline void growBounds(SYS_Box &bounds, SYS_Box const &box) {
  if (bounds.GetLeft() == bounds.GetRight() && bounds.GetLower() == bounds.GetUpper())
    bounds = box;
  else
    bounds.Set(smaller(bounds.GetLeft(), box.GetLeft()), smaller(bounds.GetLower(), box.GetLower()),
               larger(bounds.GetRight(), box.GetRight()), larger(bounds.GetUpper(), box.GetUpper()));
}

}  // namespace

CDynamic::CDynamic(UI_DrawArea *area) : m_DrawArea(nullptr), m_BatchDepth(0), m_Bounds() { Install(area); }

CDynamic::~CDynamic() = default;

void CDynamic::Install(UI_DrawArea *area) {
  if (area == nullptr) return;
  m_DrawArea = area;
  area->InstallDynamic(this);
}

void CDynamic::PenCap(int cap) {
  int32_t *const w = m_Commands.Extend(2);
  w[0] = PenCapCode, w[1] = cap;
}

void CDynamic::PenColor(int colour) {
  int32_t *const w = m_Commands.Extend(2);
  w[0] = PenColorCode, w[1] = colour;
}

void CDynamic::PenSize(long width) {
  int32_t *const w = m_Commands.Extend(2);
  w[0] = PenSizeCode, w[1] = word(width);
}

void CDynamic::FillRect(SYS_Box box, int colour) {
  box = spanned(box);
  int32_t *const w = m_Commands.Extend(6);
  w[0] = FillCode, w[1] = word(box.GetLeft()), w[2] = word(box.GetLower()), w[3] = word(box.GetRight()),
  w[4] = word(box.GetUpper()), w[5] = colour;
  growBounds(m_Bounds, box);
}

void CDynamic::DrawXorBox(SYS_Box box) {
  box = spanned(box);
  DrawXorBox(box.GetLowerLeft(), box.GetUpperRight());
}

void CDynamic::DrawXorBox(SYS_Point corner1, SYS_Point corner2) {
  int32_t *const w = m_Commands.Extend(5);
  w[0] = BoxCode, w[1] = word(corner1.GetX()), w[2] = word(corner1.GetY()), w[3] = word(corner2.GetX()),
  w[4] = word(corner2.GetY());
  growBounds(m_Bounds, spanned(corner1.GetX(), corner1.GetY(), corner2.GetX(), corner2.GetY()));
}

void CDynamic::DrawXorOval(SYS_Box box) {
  box = spanned(box);
  int32_t *const w = m_Commands.Extend(5);
  w[0] = OvalCode, w[1] = word(box.GetLeft()), w[2] = word(box.GetLower()), w[3] = word(box.GetRight()),
  w[4] = word(box.GetUpper());
  growBounds(m_Bounds, box);
}

SYS_Box CDynamic::DrawXorText(char const *text, int param1, int param2, long x, long y, int) {
  if (text == nullptr) text = "";
  int length = static_cast<int>(strnlen(text, MaxTextBytes + 1));
  bool const cut = length > MaxTextBytes;
  if (cut) length = cutLength(text, MaxTextBytes);
  int32_t *const w = m_Commands.Extend(7 + length);
  w[0] = TextCode, w[1] = word(x), w[2] = word(y), w[3] = param1, w[4] = param2, w[5] = length + 1;
  for (int i = 0; i < length; ++i) w[6 + i] = static_cast<signed char>(text[i]);
  w[6 + length] = 0;
  if (m_DrawArea == nullptr) return SYS_Box();
  // The surface measures what the command holds, so the bounds match what a replay draws.
  std::string const kept = cut ? std::string(text, static_cast<size_t>(length)) : std::string();
  SYS_Box const box = m_DrawArea->DrawXorText(cut ? kept.c_str() : text, param1, param2, x, y, 0);
  growBounds(m_Bounds, spanned(box));
  return box;
}

SYS_Box CDynamic::DrawXorText(char const *text, int param1, int param2, SYS_Point position, int) {
  return DrawXorText(text, param1, param2, position.GetX(), position.GetY(), 1);
}

void CDynamic::FastPolyPolyline(SYS_Point *points, unsigned long const *counts, int count) {
  if (!SSM_Check(count >= 0 && (count == 0 || (points != nullptr && counts != nullptr)), "", kSource, __LINE__))
    return;
  // Every count and the whole command must fit the signed 32-bit words of the list.
  uint64_t total = 0;
  for (int i = 0; i < count; ++i) {
    if (!SSM_Check(counts[i] <= INT32_MAX, "", kSource, __LINE__)) return;
    total += counts[i];
  }
  if (!SSM_Check(2 + static_cast<uint64_t>(count) + 2 * total <= INT32_MAX, "", kSource, __LINE__)) return;
  int const pointCount = static_cast<int>(total);
  int32_t *w = m_Commands.Extend(2 + count + 2 * pointCount);
  *w++ = PolylinesCode;
  *w++ = count;
  for (int i = 0; i < count; ++i) *w++ = static_cast<int32_t>(counts[i]);
  if (pointCount == 0) return;
  long left = points[0].GetX(), right = left, lower = points[0].GetY(), upper = lower;
  for (int i = 0; i < pointCount; ++i) {
    long const x = points[i].GetX(), y = points[i].GetY();
    *w++ = word(x);
    *w++ = word(y);
    left = smaller(left, x), right = larger(right, x);
    lower = smaller(lower, y), upper = larger(upper, y);
  }
  growBounds(m_Bounds, SYS_Box(left, lower, right, upper));
}

void CDynamic::DrawLine(SYS_Point const &from, SYS_Point const &to, long width, int colour) {
  int32_t *const w = m_Commands.Extend(7);
  long const x1 = from.GetX(), y1 = from.GetY(), x2 = to.GetX(), y2 = to.GetY();
  w[0] = LineCode, w[1] = word(x1), w[2] = word(y1), w[3] = word(x2), w[4] = word(y2), w[5] = word(width),
  w[6] = colour;
  growBounds(m_Bounds, spanned(x1, y1, x2, y2));
}

void CDynamic::DrawArc(SYS_Box box, SYS_Point const &from, SYS_Point const &to, long width, int colour) {
  box = spanned(box);
  int32_t *const w = m_Commands.Extend(11);
  w[0] = ArcCode, w[1] = word(box.GetLeft()), w[2] = word(box.GetLower()), w[3] = word(box.GetRight()),
  w[4] = word(box.GetUpper()), w[5] = word(from.GetX()), w[6] = word(from.GetY()), w[7] = word(to.GetX()),
  w[8] = word(to.GetY()), w[9] = word(width), w[10] = colour;
  growBounds(m_Bounds, box);
}

void CDynamic::StartBatchDraw() {
  Clear();
  ++m_BatchDepth;
}

void CDynamic::EndBatchDraw() {
  if (m_BatchDepth <= 0 || m_DrawArea == nullptr) return;
  m_DrawArea->RedrawDynamic(this, &m_Bounds, 1);
  --m_BatchDepth;
}

void CDynamic::StartScreenDraw() {
  if (m_DrawArea != nullptr) m_DrawArea->StartScreenDraw();
}

void CDynamic::Clear() {
  if (m_DrawArea == nullptr) return;
  // The surface may erase the drawing by replaying it: the list goes only afterwards.
  m_DrawArea->RedrawDynamic(this, &m_Bounds, 0);
  m_Commands.RemoveAll();
  m_Bounds = SYS_Box();
}

void CDynamic::PenMode(int) {}
int CDynamic::GetPenMode() { return 0; }
void CDynamic::InvalidateRect(SYS_Box const *) {}

int CDynamic::OnNotification(int code, UI_DrawArea::RedrawBlock *) {
  if (code == 0 || code == 1)
    Redraw();
  else if (code == 2)
    m_DrawArea = nullptr;
  return 0;
}
