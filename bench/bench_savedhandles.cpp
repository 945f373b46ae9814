//===- bench/bench_savedhandles.cpp - SCC_SavedHandles against a sorted std::vector ===//
//
// Find of 100,000 random keys (half of them absent) in n saved handles of four
// types, against std::lower_bound over a sorted std::vector of the same entries
// held by std::shared_ptr (what a host would write to share them), and over a
// vector of plain (type, handle) pairs (the least a search can touch). Then the
// worst input: every handle renumbered into reverse order, so the next Find
// sorts first, against std::sort and one lower_bound.
//
//===------------------------------------------------------------------===//
#include "scc_savedhandles.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace {

constexpr int kFinds = 100000;

/// The handle of key k: even numbers are saved, odd ones are searched and absent.
SYS_Handle handleOf(long k) { return static_cast<SYS_Handle>(k) * 2 + 2; }
long typeOf(long k) { return k % 4; }

class Set : public SCC_SavedHandles {
public:
  using SCC_SavedHandles::HandleNotification;

protected:
  Entry CreateByType(SYS_Handle handle, long type) override { return Entry(new SCC_HandleWithEvent(handle, type, this)); }
};

/// The keys searched: random saved ones and absent ones, alike for both sides.
std::vector<std::pair<long, SYS_Handle>> searches(long n) {
  std::mt19937 random(7);
  std::vector<std::pair<long, SYS_Handle>> keys;
  for (int k = 0; k < kFinds; ++k) {
    long const at = static_cast<long>(random() % static_cast<unsigned long>(n));
    keys.emplace_back(typeOf(at), handleOf(at) + (k & 1));
  }
  return keys;
}

/// n keys in random order.
std::vector<long> shuffled(long n) {
  std::vector<long> order(static_cast<std::size_t>(n));
  for (long k = 0; k < n; ++k) order[static_cast<std::size_t>(k)] = k;
  std::shuffle(order.begin(), order.end(), std::mt19937(3));
  return order;
}

struct PeerEntry {
  long type;
  SYS_Handle handle;
};
bool peerLess(std::shared_ptr<PeerEntry> const &a, std::pair<long, SYS_Handle> const &key) {
  return a->type != key.first ? a->type < key.first : a->handle < key.second;
}

void SavedHandles_Find_Bfc(benchmark::State &state) {
  Set set;
  for (long k : shuffled(state.range(0))) set.Save(handleOf(k), typeOf(k));
  auto const keys = searches(state.range(0));
  for (auto _ : state) {
    long found = 0;
    for (auto const &key : keys) found += set.Find(key.second, key.first, nullptr) != nullptr;
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * kFinds);
}
BENCHMARK(SavedHandles_Find_Bfc)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void SavedHandles_Find_SharedVector(benchmark::State &state) {
  std::vector<std::shared_ptr<PeerEntry>> entries;  // made in the order the set's entries are
  for (long k : shuffled(state.range(0)))
    entries.push_back(std::make_shared<PeerEntry>(PeerEntry{typeOf(k), handleOf(k)}));
  std::sort(entries.begin(), entries.end(), [](auto const &a, auto const &b) {
    return a->type != b->type ? a->type < b->type : a->handle < b->handle;
  });
  auto const keys = searches(state.range(0));
  for (auto _ : state) {
    long found = 0;
    for (auto const &key : keys) {
      auto const at = std::lower_bound(entries.begin(), entries.end(), key, peerLess);
      found += at != entries.end() && (*at)->type == key.first && (*at)->handle == key.second;
    }
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * kFinds);
}
BENCHMARK(SavedHandles_Find_SharedVector)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void SavedHandles_Find_PairVector(benchmark::State &state) {
  std::vector<std::pair<long, SYS_Handle>> entries;
  for (long k = 0; k < state.range(0); ++k) entries.emplace_back(typeOf(k), handleOf(k));
  std::sort(entries.begin(), entries.end());
  auto const keys = searches(state.range(0));
  for (auto _ : state) {
    long found = 0;
    for (auto const &key : keys) found += std::binary_search(entries.begin(), entries.end(), key);
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * kFinds);
}
BENCHMARK(SavedHandles_Find_PairVector)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// Renumbers every entry of a set to the reverse order, marks it and times the next Find.
class ReversingEntry : public SCC_HandleWithEvent {
public:
  using SCC_HandleWithEvent::SCC_HandleWithEvent;
  void Reverse() { m_Handle = -m_Handle; }
};

void SavedHandles_FindAfterRenumbering_Bfc(benchmark::State &state) {
  class ReversingSet : public SCC_SavedHandles {
  protected:
    Entry CreateByType(SYS_Handle handle, long type) override { return Entry(new ReversingEntry(handle, type, this)); }
  } set;
  for (long k : shuffled(state.range(0))) set.Save(handleOf(k), 1);
  for (auto _ : state) {
    state.PauseTiming();
    for (int k = 0; k < set.GetCount(); ++k) static_cast<ReversingEntry *>(set.GetElements()[k].Get())->Reverse();
    set.HandleNotification(0, 1, 7, nullptr);
    state.ResumeTiming();
    benchmark::DoNotOptimize(set.Find(handleOf(1), 1, nullptr));
  }
}
BENCHMARK(SavedHandles_FindAfterRenumbering_Bfc)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void SavedHandles_FindAfterRenumbering_SharedVector(benchmark::State &state) {
  std::vector<std::shared_ptr<PeerEntry>> entries;
  for (long k : shuffled(state.range(0))) entries.push_back(std::make_shared<PeerEntry>(PeerEntry{1, handleOf(k)}));
  auto const less = [](auto const &a, auto const &b) {
    return a->type != b->type ? a->type < b->type : a->handle < b->handle;
  };
  std::sort(entries.begin(), entries.end(), less);
  for (auto _ : state) {
    state.PauseTiming();
    for (auto &entry : entries) entry->handle = -entry->handle;
    state.ResumeTiming();
    std::sort(entries.begin(), entries.end(), less);
    benchmark::DoNotOptimize(std::lower_bound(entries.begin(), entries.end(), std::make_pair(1L, handleOf(1)), peerLess));
  }
}
BENCHMARK(SavedHandles_FindAfterRenumbering_SharedVector)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
