//===- ui/ui_dynamic_replay.cpp - Replaying the XOR layer onto its surface -===//
//
// Every call goes to the surface explicitly: the layer is a draw area itself,
// and an unqualified call here would only record again. Operands are read into
// locals before each call, because a surface may record into the layer (and so
// move its words) while it draws.
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

}  // namespace

void CDynamic::Redraw() {
  UI_DrawArea *const area = m_DrawArea;
  if (area == nullptr) return;
  int const savedMode = area->GetPenMode();
  int i = 0;
  for (;;) {
    int const size = m_Commands.GetSize();
    if (i >= size) break;
    int32_t const *const w = m_Commands.GetData() + i;
    int const operands = size - i - 1;  // words after the code
    switch (w[0]) {
      case 0:
      case 1:
      case 8: {
        if (operands < 1) break;
        int32_t const value = w[1];
        i += 2;
        if (w[0] == 0)
          area->PenColor(value);
        else if (w[0] == 1)
          area->PenSize(value);
        else
          area->PenCap(value);
        continue;
      }
      case 2: {
        if (operands < 4) break;
        SYS_Box const box(w[1], w[2], w[3], w[4]);
        i += 5;
        area->DrawXorBox(box);
        continue;
      }
      case 3: {
        if (operands < 4) break;
        SYS_Box const box(w[1], w[2], w[3], w[4]);
        i += 5;
        if (isLargeEnough(area, box)) {
          area->PenMode(kXorPenMode);
          area->FastFrameOval(box);
        } else {
          area->DrawXorBox(box);
        }
        continue;
      }
      case 4: {
        if (operands < 5) break;
        SYS_Box const box(w[1], w[2], w[3], w[4]);
        int const colour = w[5];
        i += 6;
        area->PenMode(kXorPenMode);
        area->FillRect(box, colour);
        continue;
      }
      case 5: {
        if (operands < 5) break;
        int const n = w[5];
        if (n < 0 || n > operands - 5) break;
        SYS_Point const position(w[1], w[2]);
        int const param1 = w[3], param2 = w[4];
        // Words are bytes; the command's own 0 ends the text, and a crafted one gets one.
        char small[MaxTextBytes + 2];
        std::string large;
        char *text = small;
        if (n > MaxTextBytes + 1) {
          large.resize(static_cast<size_t>(n) + 1);
          text = &large[0];
        }
        for (int k = 0; k < n; ++k) text[k] = static_cast<char>(w[6 + k]);
        text[n] = '\0';
        i += 6 + n;
        area->DrawXorText(text, param1, param2, position, 1);
        continue;
      }
      case 6: {
        if (operands < 6) break;
        SYS_Point const from(w[1], w[2]), to(w[3], w[4]);
        long const width = w[5];
        int const colour = w[6];
        i += 7;
        area->PenMode(kXorPenMode);
        area->PenColor(colour);
        area->PenSize(width);
        area->DrawLine(from, to, width, colour);
        continue;
      }
      case 7: {
        if (operands < 10) break;
        SYS_Box const box(w[1], w[2], w[3], w[4]);
        SYS_Point const from(w[5], w[6]), to(w[7], w[8]);
        long const width = w[9];
        int const colour = w[10];
        i += 11;
        area->PenMode(kXorPenMode);
        area->PenColor(colour);
        area->PenSize(width);
        if (isLargeEnough(area, box))
          area->FastFrameArc(box, from, to);
        else
          area->DrawLine(from, to, width, colour);
        continue;
      }
      case 9: {
        if (operands < 1) break;
        int const n = w[1];
        if (n < 0 || n > operands - 1) break;
        // Counts and points are copied into the surface's types: on LP64 neither an
        // unsigned long nor a SYS_Point is a word.
        std::vector<unsigned long> counts(static_cast<size_t>(n));
        int64_t total = 0;
        bool valid = true;
        for (int k = 0; k < n && valid; ++k) {
          int32_t const c = w[2 + k];
          valid = c >= 0;
          counts[static_cast<size_t>(k)] = static_cast<unsigned long>(c);
          total += c;
        }
        if (!valid || total * 2 > operands - 1 - n) break;
        std::vector<SYS_Point> points(static_cast<size_t>(total));
        int32_t const *xy = w + 2 + n;
        for (auto &p : points) p.Set(xy[0], xy[1]), xy += 2;
        i += 2 + n + static_cast<int>(2 * total);
        area->FastPolyPolyline(points.data(), counts.data(), n);
        continue;
      }
      default:
        ++i;  // not a command: the walk moves on by one word
        continue;
    }
    break;  // a command that cannot be read whole ends the walk
  }
  area->PenMode(savedMode);
}
