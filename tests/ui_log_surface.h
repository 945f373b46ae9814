//===- tests/ui_log_surface.h - A surface that logs every call it receives ===//
#ifndef BFC_TESTS_UI_LOG_SURFACE_H
#define BFC_TESTS_UI_LOG_SURFACE_H

#include "ui_drawarea.h"
#include "ui_dynamic.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace uitest {

inline std::string str(SYS_Point const &p) { return std::to_string(p.GetX()) + "," + std::to_string(p.GetY()); }
inline std::string str(SYS_Box const &b) { return str(b.GetLowerLeft()) + "," + str(b.GetUpperRight()); }

/// Logs each drawing call as "Name(args)" and answers with settable values. `onCall` runs
/// after each logged call, so a test can act from inside a replay.
struct LogSurface : UI_DrawArea {
  std::vector<std::string> log;
  std::function<void(std::string const &)> onCall;
  int penMode = 13;               // what GetPenMode answers
  long unitsPerPixel = 1;         // Scale2ScreenX/Y divide by it, truncating
  SYS_Box textBox{1, 2, 3, 4};    // what DrawXorText answers
  CDynamic *installed = nullptr;  // the last layer told InstallDynamic

  void add(std::string entry) {
    log.push_back(entry);
    if (onCall) onCall(entry);
  }

  using UI_DrawArea::DrawXorBox;
  using UI_DrawArea::DrawXorText;
  using UI_DrawArea::Redraw;

  void PenCap(int cap) override { add("PenCap(" + std::to_string(cap) + ")"); }
  void PenColor(int colour) override { add("PenColor(" + std::to_string(colour) + ")"); }
  void PenMode(int mode) override {
    penMode = mode;
    add("PenMode(" + std::to_string(mode) + ")");
  }
  int GetPenMode() override {
    add("GetPenMode");
    return penMode;
  }
  void PenSize(long width) override { add("PenSize(" + std::to_string(width) + ")"); }
  void FillRect(SYS_Box box, int colour) override { add("FillRect(" + str(box) + "," + std::to_string(colour) + ")"); }
  int Scale2ScreenX(long length) override {
    add("Scale2ScreenX(" + std::to_string(length) + ")");
    return static_cast<int>(length / unitsPerPixel);
  }
  int Scale2ScreenY(long length) override {
    add("Scale2ScreenY(" + std::to_string(length) + ")");
    return static_cast<int>(length / unitsPerPixel);
  }
  void InstallDynamic(CDynamic *layer) override {
    installed = layer;
    add("InstallDynamic");
  }
  void RedrawDynamic(CDynamic *, SYS_Box *box, int flag) override {
    add("RedrawDynamic(" + std::to_string(flag) + "," + str(*box) + ")");
  }
  void DrawXorBox(SYS_Box box) override { add("DrawXorBox(" + str(box) + ")"); }
  void DrawXorBox(SYS_Point p1, SYS_Point p2) override { add("DrawXorBox2(" + str(p1) + "," + str(p2) + ")"); }
  SYS_Box DrawXorText(char const *text, int a, int b, long x, long y, int flag) override {
    add("DrawXorText(" + std::string(text) + "," + std::to_string(a) + "," + std::to_string(b) + "," +
        std::to_string(x) + "," + std::to_string(y) + "," + std::to_string(flag) + ")");
    return textBox;
  }
  SYS_Box DrawXorText(char const *text, int a, int b, SYS_Point p, int flag) override {
    add("DrawXorTextAt(" + std::string(text) + "," + std::to_string(a) + "," + std::to_string(b) + "," + str(p) +
        "," + std::to_string(flag) + ")");
    return textBox;
  }
  void StartBatchDraw() override { add("StartBatchDraw"); }
  void EndBatchDraw() override { add("EndBatchDraw"); }
  void StartScreenDraw() override { add("StartScreenDraw"); }
  void EndScreenDraw() override { add("EndScreenDraw"); }
  void FastFrameOval(SYS_Box const &box) override { add("FastFrameOval(" + str(box) + ")"); }
  void FastPolyPolyline(SYS_Point *points, unsigned long const *counts, int n) override {
    std::string entry = "FastPolyPolyline(" + std::to_string(n);
    SYS_Point const *p = points;
    for (int i = 0; i < n; ++i) {
      entry += ";";
      for (unsigned long k = 0; k < counts[i]; ++k, ++p) entry += (k ? " " : "") + str(*p);
    }
    add(entry + ")");
  }
  void FastFrameArc(SYS_Box const &box, SYS_Point const &from, SYS_Point const &to) override {
    add("FastFrameArc(" + str(box) + "," + str(from) + "," + str(to) + ")");
  }
  void DrawLine(SYS_Point const &from, SYS_Point const &to, long width, int colour) override {
    add("DrawLine(" + str(from) + "," + str(to) + "," + std::to_string(width) + "," + std::to_string(colour) + ")");
  }
};

/// A layer whose words a test may write directly, and whose replay it may start.
struct OpenLayer : CDynamic {
  using CDynamic::CDynamic;
  void append(std::vector<int32_t> const &words) {
    for (int32_t w : words) m_Commands.Append(w);
  }
  void replay() { Redraw(); }
};

inline std::vector<int32_t> wordsOf(CDynamic const &layer) {
  UI_WordList const &list = layer.GetCommands();
  return std::vector<int32_t>(list.GetData(), list.GetData() + list.GetSize());
}

}  // namespace uitest

#endif
