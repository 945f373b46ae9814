//===- bench/bench_dynamic.cpp - Recording and replaying the XOR layer --===//
//
// One million primitives (lines, two-point boxes and pen colours) recorded by
// CDynamic through the surface interface, against an inline loop that appends
// the same words to a std::vector<int32_t>; then the replay of those words onto
// a surface, against an inline loop that walks the vector and makes the same
// calls.
//
//===------------------------------------------------------------------===//
#include "ui_drawarea.h"
#include "ui_dynamic.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

constexpr int kPrimitives = 1000000;

/// The points of the primitives, the same for every case.
std::vector<SYS_Point> const &points() {
  static std::vector<SYS_Point> const all = [] {
    std::mt19937 random(7);
    std::vector<SYS_Point> p(2 * kPrimitives);
    for (auto &q : p) q.Set(static_cast<long>(random() % 200000000), static_cast<long>(random() % 150000000));
    return p;
  }();
  return all;
}

/// A surface that only sums what it is told, so that no call can be dropped.
class SumSurface final : public UI_DrawArea {
public:
  int64_t sum = 0;
  using UI_DrawArea::DrawXorBox;
  void PenColor(int c) override { sum += c; }
  void PenSize(long w) override { sum += w; }
  void PenMode(int m) override { sum += m; }
  int GetPenMode() override { return 0; }
  void DrawXorBox(SYS_Box b) override { sum += b.GetLeft() ^ b.GetUpper(); }
  void DrawLine(SYS_Point const &a, SYS_Point const &b, long w, int c) override {
    sum += a.GetX() ^ b.GetY() ^ w ^ c;
  }
};

// Every fourth primitive is a pen colour; the others alternate lines and boxes.
template <class Record>
void recordAll(Record &&record) {
  std::vector<SYS_Point> const &p = points();
  for (int i = 0; i < kPrimitives; ++i) record(i, p[2 * i], p[2 * i + 1]);
}

void Dynamic_Record_Bfc(benchmark::State &state) {
  UI_DrawArea idle;
  CDynamic layer;
  layer.SetDrawArea(&idle);  // attached, so that Clear empties the list
  UI_DrawArea &area = layer;  // a host draws through the surface interface
  for (auto _ : state) {
    layer.Clear();
    recordAll([&](int i, SYS_Point const &a, SYS_Point const &b) {
      switch (i & 3) {
        case 0: area.PenColor(i); break;
        case 1: area.DrawLine(a, b, 250000, 7); break;
        default: area.DrawXorBox(a, b); break;
      }
    });
    benchmark::DoNotOptimize(layer.GetCommands().GetData());
  }
  state.SetItemsProcessed(state.iterations() * kPrimitives);
}
BENCHMARK(Dynamic_Record_Bfc)->Unit(benchmark::kMillisecond);

void Dynamic_Record_Vector(benchmark::State &state) {
  std::vector<int32_t> words;
  for (auto _ : state) {
    words.clear();
    recordAll([&](int i, SYS_Point const &a, SYS_Point const &b) {
      int32_t const x1 = static_cast<int32_t>(a.GetX()), y1 = static_cast<int32_t>(a.GetY());
      int32_t const x2 = static_cast<int32_t>(b.GetX()), y2 = static_cast<int32_t>(b.GetY());
      switch (i & 3) {
        case 0: words.push_back(0), words.push_back(i); break;
        case 1:
          for (int32_t w : {6, x1, y1, x2, y2, 250000, 7}) words.push_back(w);
          break;
        default:
          for (int32_t w : {2, x1, y1, x2, y2}) words.push_back(w);
          break;
      }
    });
    benchmark::DoNotOptimize(words.data());
  }
  state.SetItemsProcessed(state.iterations() * kPrimitives);
}
BENCHMARK(Dynamic_Record_Vector)->Unit(benchmark::kMillisecond);

/// A layer filled with the primitives, replayed by the benchmark.
struct ReplayLayer : CDynamic {
  explicit ReplayLayer(UI_DrawArea *area) : CDynamic(area) {
    recordAll([&](int i, SYS_Point const &a, SYS_Point const &b) {
      switch (i & 3) {
        case 0: PenColor(i); break;
        case 1: DrawLine(a, b, 250000, 7); break;
        default: DrawXorBox(a, b); break;
      }
    });
  }
  void replay() { Redraw(); }
};

void Dynamic_Replay_Bfc(benchmark::State &state) {
  SumSurface surface;
  ReplayLayer layer(&surface);
  for (auto _ : state) {
    layer.replay();
    benchmark::DoNotOptimize(surface.sum);
  }
  state.SetItemsProcessed(state.iterations() * kPrimitives);
}
BENCHMARK(Dynamic_Replay_Bfc)->Unit(benchmark::kMillisecond);

void Dynamic_Replay_Vector(benchmark::State &state) {
  SumSurface surface;
  ReplayLayer layer(&surface);
  UI_WordList const &list = layer.GetCommands();
  std::vector<int32_t> const words(list.GetData(), list.GetData() + list.GetSize());
  UI_DrawArea *surfaceInterface = &surface;
  benchmark::DoNotOptimize(surfaceInterface);  // called through the interface, as the layer does
  UI_DrawArea &area = *surfaceInterface;
  for (auto _ : state) {
    int const saved = area.GetPenMode();
    for (size_t i = 0; i < words.size();) {
      int32_t const *w = &words[i];
      switch (w[0]) {
        case 0: area.PenColor(w[1]), i += 2; break;
        case 2: area.DrawXorBox(SYS_Box(w[1], w[2], w[3], w[4])), i += 5; break;
        case 6:
          area.PenMode(2), area.PenColor(w[6]), area.PenSize(w[5]);
          area.DrawLine(SYS_Point(w[1], w[2]), SYS_Point(w[3], w[4]), w[5], w[6]);
          i += 7;
          break;
        default: ++i; break;
      }
    }
    area.PenMode(saved);
    benchmark::DoNotOptimize(surface.sum);
  }
  state.SetItemsProcessed(state.iterations() * kPrimitives);
}
BENCHMARK(Dynamic_Replay_Vector)->Unit(benchmark::kMillisecond);

}  // namespace
