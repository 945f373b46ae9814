//===- bench/bench_stdcoll.cpp - SCC_StdCollection against a sorted std::vector ===//
//
// A reload of n items with a filter (three in four pass) and a sort by a key
// computed from the handle, from a source in random key order and from one
// already in order; and 10,000 insertions and removals arriving as
// notifications on a collection of n items. The peer is what a host would
// write by hand: a std::vector kept sorted with std::upper_bound, and for the
// reload also the vector filled first and sorted once with std::stable_sort.
//
//===------------------------------------------------------------------===//
#include "scc_stdcoll.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace {

/// The sort key of a handle: a scrambled number below 50,000, so many handles share one.
inline long keyOf(SYS_Handle h) { return static_cast<long>((static_cast<unsigned long>(h) * 2654435761u >> 8) % 50000); }
int byKey(SYS_Handle const &a, SYS_Handle const &b) {
  long const x = keyOf(a), y = keyOf(b);
  return (x > y) - (x < y);
}
inline bool keyLess(SYS_Handle a, SYS_Handle b) { return keyOf(a) < keyOf(b); }
inline bool passes(SYS_Handle h) { return (h & 3) != 0; }

struct ThreeInFour : SYS_Filter {
  int IsTrue(SYS_Handle item) override { return passes(item) ? 1 : 0; }
};

/// A collection over a vector of handles; the slider is an index while the collection walks.
class VectorCollection : public SCC_StdCollection {
public:
  explicit VectorCollection(std::vector<SYS_Handle> const &source) : m_Source(source) {}
  using SCC_StdCollection::Reload;

protected:
  SYS_Handle _GetSlider() override { return m_Slider; }
  void _SetSlider(SYS_Handle handle) override {
    m_Slider = handle;
    m_At = handle == 0 ? -1 : -2;  // -2: somewhere the walk does not know
  }
  int _GetFirst() override { return stand(0); }
  int _GetNext() override {
    if (m_At == -2) m_At = std::find(m_Source.begin(), m_Source.end(), m_Slider) - m_Source.begin();
    return stand(m_At + 1);
  }

private:
  int stand(long at) {
    m_At = at;
    m_Slider = at < static_cast<long>(m_Source.size()) ? m_Source[at] : 0;
    return m_Slider != 0;
  }

  std::vector<SYS_Handle> const &m_Source;
  SYS_Handle m_Slider = 0;
  long m_At = -1;
};

/// Handles 1..n in random key order, or sorted by key.
std::vector<SYS_Handle> sourceOf(long n, bool sorted) {
  std::vector<SYS_Handle> source(static_cast<std::size_t>(n));
  for (long i = 0; i < n; ++i) source[i] = i + 1;
  std::shuffle(source.begin(), source.end(), std::mt19937(5));
  if (sorted) std::stable_sort(source.begin(), source.end(), keyLess);
  return source;
}

/// The sorted vector, filled as a reload fills the collection: repeats dropped.
void insertSorted(std::vector<SYS_Handle> &items, SYS_Handle h) {
  auto const range = std::equal_range(items.begin(), items.end(), h, keyLess);
  if (std::find(range.first, range.second, h) == range.second) items.insert(range.second, h);
}

void Collection_Reload_Bfc(benchmark::State &state) {
  auto const source = sourceOf(state.range(0), state.range(1) != 0);
  VectorCollection coll(source);
  ThreeInFour filter;
  coll.SetFilter(&filter);
  coll.SetSort(&byKey, 0);
  coll.AllowReload(1);
  for (auto _ : state) {
    coll.Reload();
    benchmark::DoNotOptimize(coll.GetCount());
  }
}
BENCHMARK(Collection_Reload_Bfc)->ArgsProduct({{1000, 10000, 100000}, {0, 1}})->Unit(benchmark::kMillisecond);

void Collection_Reload_VectorInsert(benchmark::State &state) {
  auto const source = sourceOf(state.range(0), state.range(1) != 0);
  for (auto _ : state) {
    std::vector<SYS_Handle> items;
    for (SYS_Handle h : source)
      if (passes(h)) insertSorted(items, h);
    benchmark::DoNotOptimize(items.size());
  }
}
BENCHMARK(Collection_Reload_VectorInsert)->ArgsProduct({{1000, 10000, 100000}, {0, 1}})->Unit(benchmark::kMillisecond);

void Collection_Reload_VectorStableSort(benchmark::State &state) {
  auto const source = sourceOf(state.range(0), state.range(1) != 0);
  for (auto _ : state) {
    std::vector<SYS_Handle> items;
    for (SYS_Handle h : source)
      if (passes(h)) items.push_back(h);
    std::stable_sort(items.begin(), items.end(), keyLess);
    benchmark::DoNotOptimize(items.size());
  }
}
BENCHMARK(Collection_Reload_VectorStableSort)->ArgsProduct({{1000, 10000, 100000}, {0, 1}})->Unit(benchmark::kMillisecond);

constexpr int kChanges = 10000;

/// 5,000 pairs (handle added, handle removed): every removal takes an item that is there, so
/// the collection keeps n items throughout.
std::vector<std::pair<SYS_Handle, SYS_Handle>> changesOf(std::vector<SYS_Handle> present) {
  std::vector<std::pair<SYS_Handle, SYS_Handle>> changes;
  std::mt19937 random(11);
  SYS_Handle fresh = static_cast<SYS_Handle>(present.size()) + 1;
  for (int k = 0; k < kChanges / 2; ++k) {
    present.push_back(fresh);
    std::size_t const at = random() % present.size();
    changes.emplace_back(fresh++, present[at]);
    present[at] = present.back();
    present.pop_back();
  }
  return changes;
}

/// A collection of n items, then the changes as notifications on its source's notifier.
void Collection_Notify_Bfc(benchmark::State &state) {
  auto const source = sourceOf(state.range(0), false);
  auto const changes = changesOf(source);
  for (auto _ : state) {
    state.PauseTiming();
    auto coll = std::make_unique<VectorCollection>(source);
    SCC_Notifier list;
    coll->SetEvent(&list);
    coll->SetSort(&byKey, 0);
    coll->AllowReload(1);
    state.ResumeTiming();
    for (auto const &change : changes) {
      list.Notify(SCC_ItemAdded, SCC_Notifier::ParamOf(change.first));
      list.Notify(SCC_ItemRemoving, SCC_Notifier::ParamOf(change.second));
    }
    benchmark::DoNotOptimize(coll->GetCount());
    state.PauseTiming();
    coll.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(Collection_Notify_Bfc)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void Collection_Notify_Vector(benchmark::State &state) {
  auto const source = sourceOf(state.range(0), false);
  auto const changes = changesOf(source);
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<SYS_Handle> items(source);
    std::stable_sort(items.begin(), items.end(), keyLess);
    state.ResumeTiming();
    for (auto const &change : changes) {
      items.insert(std::upper_bound(items.begin(), items.end(), change.first, keyLess), change.first);
      auto const range = std::equal_range(items.begin(), items.end(), change.second, keyLess);
      auto const at = std::find(range.first, range.second, change.second);
      if (at != range.second) items.erase(at);
    }
    benchmark::DoNotOptimize(items.size());
  }
}
BENCHMARK(Collection_Notify_Vector)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
