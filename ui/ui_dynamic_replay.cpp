//===- ui/ui_dynamic_replay.cpp - Replaying the XOR layer onto its surface -===//
//
// Every call goes to the surface explicitly: the layer is a draw area itself,
// and an unqualified call here would only record again. Operands are read
// before each call, because a surface may record into the layer (and so move
// its words) while it draws.
//
//===------------------------------------------------------------------===//
#include "ui_dynamic.h"

#include <cstdint>
#include <string>
#include <vector>

namespace {

constexpr int kXorPenMode = 2;

/// At least 2 pixels in magnitude, without abs() of the most negative int.
inline bool isVisible(int pixels) { return pixels >= 2 || pixels <= -2; }

/// Whether the box is at least 2 by 2 pixels on `area`; both extents are always asked.
inline bool isLargeEnough(UI_DrawArea *area, SYS_Box const &box) {
  int const width = area->Scale2ScreenX(box.GetDX());
  int const height = area->Scale2ScreenY(box.GetDY());
  return isVisible(width) && isVisible(height);
}

/// Draws the text command at `w` (its code word) with `operands` words after it. Returns
/// the words it took, or 0 when the command cannot be read whole.
int replayText(UI_DrawArea *area, int32_t const *w, int operands) {
  if (operands < 5) return 0;
  int const n = w[5];
  if (n < 0 || n > operands - 5) return 0;
  // Words are bytes; the command's own 0 ends the text, and a crafted one gets one.
  char small[CDynamic::MaxTextBytes + 2];
  std::string large;
  char *text = small;
  if (n > CDynamic::MaxTextBytes + 1) {
    large.resize(static_cast<size_t>(n) + 1);
    text = &large[0];
  }
  for (int k = 0; k < n; ++k) text[k] = static_cast<char>(w[6 + k]);
  text[n] = '\0';
  area->DrawXorText(text, w[3], w[4], SYS_Point(w[1], w[2]), 1);
  return 6 + n;
}

/// Draws the polyline command at `w`, as replayText.
int replayPolylines(UI_DrawArea *area, int32_t const *w, int operands) {
  if (operands < 1) return 0;
  int const n = w[1];
  if (n < 0 || n > operands - 1) return 0;
  // Counts and points are copied into the surface's types: on LP64 neither an unsigned
  // long nor a SYS_Point is a word.
  std::vector<unsigned long> counts(static_cast<size_t>(n));
  int64_t total = 0;
  for (int k = 0; k < n; ++k) {
    int32_t const c = w[2 + k];
    if (c < 0) return 0;
    counts[static_cast<size_t>(k)] = static_cast<unsigned long>(c);
    total += c;
  }
  if (total * 2 > operands - 1 - n) return 0;
  std::vector<SYS_Point> points(static_cast<size_t>(total));
  int32_t const *xy = w + 2 + n;
  for (auto &p : points) p.Set(xy[0], xy[1]), xy += 2;
  area->FastPolyPolyline(points.data(), counts.data(), n);
  return 2 + n + static_cast<int>(2 * total);
}

}  // namespace

void CDynamic::Redraw() {
  UI_DrawArea *const area = m_DrawArea;
  if (area == nullptr) return;
  int const savedMode = area->GetPenMode();
  // A command that cannot be read whole is the end of the list, or a crafted one: it ends
  // the walk. Any other word that is no code is skipped by itself.
  for (int i = 0, taken = 1; taken != 0;) {
    int const size = m_Commands.GetSize();
    if (i >= size) break;
    int32_t const *const w = m_Commands.GetData() + i;
    int const operands = size - i - 1;
    static constexpr int kOperands[] = {1, 1, 4, 4, 5, 0, 6, 10, 1, 0};
    int32_t const code = w[0];
    if (code >= 0 && code <= 9 && code != 5 && code != 9) {
      if (operands < kOperands[code]) break;
      i += 1 + kOperands[code];
    }
    switch (code) {
      case 0:
        area->PenColor(w[1]);
        break;
      case 1:
        area->PenSize(w[1]);
        break;
      case 8:
        area->PenCap(w[1]);
        break;
      case 2:
        area->DrawXorBox(SYS_Box(w[1], w[2], w[3], w[4]));
        break;
      case 3: {
        SYS_Box const box(w[1], w[2], w[3], w[4]);
        if (isLargeEnough(area, box)) {
          area->PenMode(kXorPenMode);
          area->FastFrameOval(box);
        } else {
          area->DrawXorBox(box);
        }
        break;
      }
      case 4: {
        int const colour = w[5];
        SYS_Box const box(w[1], w[2], w[3], w[4]);
        area->PenMode(kXorPenMode);
        area->FillRect(box, colour);
        break;
      }
      case 5:
        i += taken = replayText(area, w, operands);
        break;
      case 6: {
        SYS_Point const from(w[1], w[2]), to(w[3], w[4]);
        long const width = w[5];
        int const colour = w[6];
        area->PenMode(kXorPenMode);
        area->PenColor(colour);
        area->PenSize(width);
        area->DrawLine(from, to, width, colour);
        break;
      }
      case 7: {
        SYS_Box const box(w[1], w[2], w[3], w[4]);
        SYS_Point const from(w[5], w[6]), to(w[7], w[8]);
        long const width = w[9];
        int const colour = w[10];
        area->PenMode(kXorPenMode);
        area->PenColor(colour);
        area->PenSize(width);
        if (isLargeEnough(area, box))
          area->FastFrameArc(box, from, to);
        else
          area->DrawLine(from, to, width, colour);
        break;
      }
      case 9:
        i += taken = replayPolylines(area, w, operands);
        break;
      default:
        ++i;  // not a command: the walk moves on by one word
        break;
    }
  }
  area->PenMode(savedMode);
}
