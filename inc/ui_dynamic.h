//===- inc/ui_dynamic.h - The dynamic (XOR) drawing layer ---------------===//
//
// CDynamic records the temporary XOR drawing of a drag or a rubber band as a
// list of 32-bit words, keeps the bounding box of it, and replays it onto the
// real surface, in XOR, whenever that surface asks.
//
// The command list: a code word, then its operands (base units, signed):
//   0 pen colour: colour                 1 pen size: width
//   2 XOR box: left, lower, right, upper (as given by the two-point form)
//   3 oval: left, lower, right, upper of the normalized box
//   4 filled rectangle: normalized box, colour
//   5 text: x, y, param1, param2, n, then n bytes as signed values, the last 0
//   6 line: x1, y1, x2, y2, width, colour
//   7 arc: normalized box, x1, y1, x2, y2, width, colour
//   8 pen cap: cap
//   9 polylines: n, n point counts, then x, y of every point in order
//
//===------------------------------------------------------------------===//
#ifndef BFC_UI_DYNAMIC_H
#define BFC_UI_DYNAMIC_H

#include "scc_event.h"
#include "sys_box.h"
#include "ui_drawarea.h"
#include "ui_wordlist.h"

/// A draw area that does not draw: it records XOR drawing (boxes, ovals, lines, arcs,
/// texts, filled rectangles, polylines and pen changes) and replays it onto the surface it
/// is attached to when that surface redraws.
///
/// The layer listens to its surface's redraw event: codes 0 and 1 replay the drawing, code 2
/// detaches the layer (it forgets the surface). Detached, it goes on recording but neither
/// clears nor replays. Recording never draws; only a text asks the surface for its box.
class BFC_API CDynamic : public SCC_EventNode<UI_DrawArea::RedrawBlock>, public UI_DrawArea {
public:
  /// The longest text a command holds, in bytes: a longer text is cut at the last whole
  /// character that fits, and the terminating 0 is always recorded.
  static constexpr int MaxTextBytes = 1023;

  /// An empty layer attached to `area` (see Install); detached when `area` is null.
  explicit CDynamic(UI_DrawArea *area = nullptr);
  /// A layer belongs to one surface and one event: it is neither copied nor assigned.
  CDynamic(CDynamic const &) = delete;
  CDynamic &operator=(CDynamic const &) = delete;
  /// Releases the list and leaves the redraw event it is connected to.
  ~CDynamic() override;

  /// Attaches to `area` and tells it InstallDynamic(this); a null area changes nothing.
  void Install(UI_DrawArea *area);
  /// Sets the surface without telling it (null detaches).
  void SetDrawArea(UI_DrawArea *area) { m_DrawArea = area; }
  UI_DrawArea *GetDrawArea() const { return m_DrawArea; }

  /// The recorded words, the bounds of the recorded drawing (the zero box after a clear)
  /// and the number of open batches.
  UI_WordList const &GetCommands() const { return m_Commands; }
  SYS_Box const &GetBounds() const { return m_Bounds; }
  int GetBatchDepth() const { return m_BatchDepth; }

  // Recording. Pen commands do not grow the bounds; every drawing command does.
  void PenCap(int cap) override;
  void PenColor(int colour) override;
  void PenSize(long width) override;
  /// Records `box` normalized, then `colour`.
  void FillRect(SYS_Box box, int colour) override;
  /// Normalizes `box` and records it through the two-point form.
  void DrawXorBox(SYS_Box box) override;
  /// Records the corners as given.
  void DrawXorBox(SYS_Point corner1, SYS_Point corner2) override;
  /// Records the text (see MaxTextBytes; a null text is the empty text); then, when
  /// attached, asks the surface's DrawXorText with the flag 0 for the box the text covers,
  /// grows the bounds by it and returns it. Detached: the zero box, bounds unchanged.
  SYS_Box DrawXorText(char const *text, int param1, int param2, long x, long y, int flag) override;
  /// The form above with the position's coordinates and the flag 1.
  SYS_Box DrawXorText(char const *text, int param1, int param2, SYS_Point position, int flag) override;
  /// Records the polylines. A negative count, or null arrays with a positive count, record
  /// nothing and fail a check, as does a point total too large for one list.
  void FastPolyPolyline(SYS_Point *points, unsigned long const *counts, int count) override;
  void DrawLine(SYS_Point const &from, SYS_Point const &to, long width, int colour) override;
  /// Records `box` normalized.
  void DrawXorOval(SYS_Box box);
  /// Records `box` normalized with the arc's end directions, width and colour; grows the
  /// bounds by the box.
  void DrawArc(SYS_Box box, SYS_Point const &from, SYS_Point const &to, long width, int colour);

  /// Clears the recording (see Clear), then opens a batch; nested batches clear too.
  void StartBatchDraw() override;
  /// When a batch is open and a surface is attached: RedrawDynamic(this, bounds, 1), then
  /// the batch closes. Otherwise nothing happens.
  void EndBatchDraw() override;
  /// Forwarded to the surface, when attached.
  void StartScreenDraw() override;
  /// When attached: RedrawDynamic(this, bounds, 0), then the list is emptied and the bounds
  /// become the zero box. Detached: nothing happens, the list is kept.
  void Clear();

  /// The layer itself has no pen and no invalid area.
  void PenMode(int mode) override;
  int GetPenMode() override;
  void InvalidateRect(SYS_Box const *box) override;

  /// Codes 0 and 1 replay the drawing; code 2 detaches; other codes do nothing. Returns 0.
  int OnNotification(int code, UI_DrawArea::RedrawBlock *block) override;

  /// Keeps the surface's Redraw(SYS_Box) callable on a layer beside the replay below.
  using UI_DrawArea::Redraw;

protected:
  /// Replays the list onto the attached surface in XOR (pen mode 2), then puts back the
  /// surface's pen mode. Ovals and arcs smaller than 2 by 2 pixels are drawn as their box
  /// and their chord. Unknown words are skipped one by one; a command cut short by the end
  /// of the list is skipped. Reached through a UI_DrawArea & or the redraw notification.
  void Redraw() override;

  UI_WordList m_Commands;
  UI_DrawArea *m_DrawArea;  // the surface; not owned; null while detached
  int m_BatchDepth;         // open StartBatchDraw calls; never negative
  SYS_Box m_Bounds;         // of everything recorded since the last clear; zero box at first
};

#endif
