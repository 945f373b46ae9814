//===- bench/bench_geometry.cpp - Transforms, clipping and arc boxes -----===//
//
// Each case runs the same work on the geometry classes and on the loop a
// host would otherwise write by hand; RESULTS.md gives the time ratios.
//
//===------------------------------------------------------------------===//
#include "sys_arc.h"
#include "sys_transform.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr int kPoints = 1000000;
constexpr int kShapes = 1024;

std::vector<SYS_Point> const &points() {
  static std::vector<SYS_Point> const data = [] {
    std::mt19937 engine(11);
    std::vector<SYS_Point> v(kPoints);
    for (SYS_Point &p : v)
      p.Set(static_cast<long>(engine() % 200000001) - 100000000, static_cast<long>(engine() % 200000001) - 100000000);
    return v;
  }();
  return data;
}

// A part placed at (1, 2) mm, turned 30 degrees and mirrored: a full matrix.
SYS_Transform const &placement() {
  static SYS_Transform const t(SYS_Position(1500000, 3000000, 30 * SYS_AngleUnitsPerDegree, 1), 0, 1, 0);
  return t;
}

void Geometry_TransformPoints_Bfc(benchmark::State &state) {
  std::vector<SYS_Point> const &src = points();
  std::vector<SYS_Point> dst(src.size());
  SYS_Transform const t = placement();
  for (auto _ : state) {
    for (std::size_t i = 0; i < src.size(); ++i) dst[i] = t.Transform(src[i]);
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}
BENCHMARK(Geometry_TransformPoints_Bfc);

// The host's own affine loop over the same points with the same matrix, rounding half
// away from zero as the library does: add a half with the value's sign, then truncate.
template <typename Round>
void transformByHand(benchmark::State &state, Round round) {
  std::vector<SYS_Point> const &src = points();
  std::vector<SYS_Point> dst(src.size());
  SYS_Transform const &t = placement();
  double const a = t.GetMatrix(0, 0), b = t.GetMatrix(0, 1), tx = t.GetMatrix(0, 2);
  double const c = t.GetMatrix(1, 0), d = t.GetMatrix(1, 1), ty = t.GetMatrix(1, 2);
  for (auto _ : state) {
    for (std::size_t i = 0; i < src.size(); ++i) {
      double const x = static_cast<double>(src[i].GetX()), y = static_cast<double>(src[i].GetY());
      dst[i].Set(round(a * x + b * y + tx), round(c * x + d * y + ty));
    }
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

void Geometry_TransformPoints_Loop(benchmark::State &state) {
  transformByHand(state, [](double v) { return static_cast<long>(v + std::copysign(0.5, v)); });
}
BENCHMARK(Geometry_TransformPoints_Loop);

// The same loop with the rounding written as a comparison, as it often is by hand.
void Geometry_TransformPoints_LoopTernary(benchmark::State &state) {
  transformByHand(state, [](double v) { return static_cast<long>(v + (v > 0 ? 0.5 : -0.5)); });
}
BENCHMARK(Geometry_TransformPoints_LoopTernary);

struct ClipPair {
  SYS_Box clip, b;
};

std::vector<ClipPair> const &clipPairs() {
  static std::vector<ClipPair> const data = [] {
    std::mt19937 engine(12);
    auto box = [&] {
      long const l = engine() % 1000, lo = engine() % 1000;
      return SYS_Box(l, lo, l + 1 + engine() % 600, lo + 1 + engine() % 600);
    };
    std::vector<ClipPair> v(kShapes);
    for (ClipPair &p : v) p = {box(), box()};
    return v;
  }();
  return data;
}

void Geometry_BoxClip_Bfc(benchmark::State &state) {
  std::vector<ClipPair> const &pairs = clipPairs();
  SYS_Box out[4];
  std::size_t i = 0;
  for (auto _ : state) {
    ClipPair const &p = pairs[i++ & (kShapes - 1)];
    benchmark::DoNotOptimize(p.clip.Clip(p.b, out));
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(Geometry_BoxClip_Bfc);

// The subtraction a host writes for normalized boxes: the columns left and right of the
// clipping box, then the pieces below and above it.
int handClip(SYS_Box const &c, SYS_Box const &b, SYS_Box *out) {
  if (b.GetRight() <= c.GetLeft() || c.GetRight() <= b.GetLeft() || b.GetUpper() <= c.GetLower() ||
      c.GetUpper() <= b.GetLower()) {
    out[0] = b;
    return 1;
  }
  int n = 0;
  long const l = std::max(b.GetLeft(), c.GetLeft()), r = std::min(b.GetRight(), c.GetRight());
  if (b.GetLeft() < c.GetLeft()) out[n++] = SYS_Box(b.GetLeft(), b.GetLower(), c.GetLeft(), b.GetUpper());
  if (b.GetLower() < c.GetLower()) out[n++] = SYS_Box(l, b.GetLower(), r, c.GetLower());
  if (c.GetUpper() < b.GetUpper()) out[n++] = SYS_Box(l, c.GetUpper(), r, b.GetUpper());
  if (c.GetRight() < b.GetRight()) out[n++] = SYS_Box(c.GetRight(), b.GetLower(), b.GetRight(), b.GetUpper());
  return n;
}

void Geometry_BoxClip_Loop(benchmark::State &state) {
  std::vector<ClipPair> const &pairs = clipPairs();
  SYS_Box out[4];
  std::size_t i = 0;
  for (auto _ : state) {
    ClipPair const &p = pairs[i++ & (kShapes - 1)];
    benchmark::DoNotOptimize(handClip(p.clip, p.b, out));
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(Geometry_BoxClip_Loop);

std::vector<SYS_Arc> const &arcs() {
  static std::vector<SYS_Arc> const data = [] {
    std::mt19937 engine(13);
    std::vector<SYS_Arc> v(kShapes);
    for (SYS_Arc &a : v) {
      long const r = 1000 + engine() % 100000;
      double const a0 = (engine() % 3600) * SYS_Pi / 1800, a1 = (engine() % 3600) * SYS_Pi / 1800;
      auto at = [&](double angle) {
        return SYS_Point(sysgeom::round32(r * std::cos(angle)), sysgeom::round32(r * std::sin(angle)));
      };
      a.Set(at(a0), at(a1), SYS_Point(0, 0), engine() % 2 ? r : -r);
    }
    return v;
  }();
  return data;
}

void Geometry_ArcBox_Bfc(benchmark::State &state) {
  std::vector<SYS_Arc> const &all = arcs();
  std::size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(all[i++ & (kShapes - 1)].GetBox());
}
BENCHMARK(Geometry_ArcBox_Bfc);

// The host's own arc box: the angles of both ends, then each axis direction the sweep
// passes.
SYS_Box angleArcBox(SYS_Arc const &a) {
  double const twoPi = 2 * SYS_Pi;
  SYS_Point const s = a.GetStart() - a.GetCenter(), e = a.GetEnd() - a.GetCenter();
  double const start = std::atan2(static_cast<double>(s.GetY()), static_cast<double>(s.GetX()));
  double const end = std::atan2(static_cast<double>(e.GetY()), static_cast<double>(e.GetX()));
  int const direction = a.GetRadius() < 0 ? -1 : 1;
  double const span = std::fmod(direction * (end - start) + 2 * twoPi, twoPi);
  SYS_Box box = a.SYS_Segment::GetBox();
  long const r = std::labs(a.GetRadius());
  long const cx = a.GetCenter().GetX(), cy = a.GetCenter().GetY();
  SYS_Point const extremes[4] = {SYS_Point(cx + r, cy), SYS_Point(cx, cy + r), SYS_Point(cx - r, cy), SYS_Point(cx, cy - r)};
  for (int k = 0; k < 4; ++k) {
    double const along = std::fmod(direction * (k * SYS_Pi / 2 - start) + 2 * twoPi, twoPi);
    if (along > 0 && along < span) box.Increase(extremes[k].GetX(), extremes[k].GetY());
  }
  return box;
}

void Geometry_ArcBox_Angles(benchmark::State &state) {
  std::vector<SYS_Arc> const &all = arcs();
  std::size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(angleArcBox(all[i++ & (kShapes - 1)]));
}
BENCHMARK(Geometry_ArcBox_Angles);

}  // namespace
