//===- bench/bench_map.cpp - SCC_Map against std::unordered_map ---------===//
//
// 100,000 integer and text keys inserted and looked up, both maps with
// n + n/4 buckets (the same load). Lookups go in a shuffled order, the same for
// both maps, so that neither gains from nodes allocated in lookup order.
//
//===------------------------------------------------------------------===//
#include "scc_map.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kKeys = 100000;
constexpr long kBuckets = kKeys + kKeys / 4;

std::vector<int> const &intKeys() {
  static std::vector<int> const keys = [] {
    std::mt19937 random(42);
    std::vector<int> out(kKeys);
    for (int &key : out) key = static_cast<int>(random() & 0x3FFFFFFF);
    return out;
  }();
  return keys;
}

/// The positions 0..n-1 in a fixed shuffled order: the order of the lookups.
std::vector<int> const &lookupOrder() {
  static std::vector<int> const order = [] {
    std::vector<int> out(kKeys);
    for (int i = 0; i < kKeys; ++i) out[i] = i;
    std::shuffle(out.begin(), out.end(), std::mt19937(7));
    return out;
  }();
  return order;
}

std::vector<std::string> const &textKeys() {
  static std::vector<std::string> const keys = [] {
    std::vector<std::string> out;
    for (int key : intKeys()) out.push_back("NET_" + std::to_string(key));
    return out;
  }();
  return keys;
}

std::vector<SYS_String> const &sysTextKeys() {
  static std::vector<SYS_String> const keys = [] {
    std::vector<SYS_String> out;
    for (auto const &key : textKeys()) out.emplace_back(key.c_str());
    return out;
  }();
  return keys;
}

template <class Key>
std::unordered_map<Key, int> stdMap() {
  std::unordered_map<Key, int> map;
  map.rehash(kBuckets);
  return map;
}

// The texts in lookup order, in buffers of their own so that lookups cannot find
// a key by its shared buffer.
std::vector<SYS_String> const &sysProbeKeys() {
  static std::vector<SYS_String> const keys = [] {
    std::vector<SYS_String> out;
    for (int i : lookupOrder()) out.emplace_back(textKeys()[i].c_str());
    return out;
  }();
  return keys;
}

std::vector<std::string> const &stdProbeKeys() {
  static std::vector<std::string> const keys = [] {
    std::vector<std::string> out;
    for (int i : lookupOrder()) out.push_back(textKeys()[i]);
    return out;
  }();
  return keys;
}

std::vector<int> const &intProbeKeys() {
  static std::vector<int> const keys = [] {
    std::vector<int> out;
    for (int i : lookupOrder()) out.push_back(intKeys()[i]);
    return out;
  }();
  return keys;
}

void Map_InsertInt_Bfc(benchmark::State &state) {
  auto const &keys = intKeys();
  for (auto _ : state) {
    SCC_Map<int, int> map(kBuckets);
    for (int i = 0; i < kKeys; ++i)
      if (int *value = map.Insert(keys[i])) *value = i;
    benchmark::DoNotOptimize(map.GetCount());
  }
}
BENCHMARK(Map_InsertInt_Bfc)->Unit(benchmark::kMillisecond);

void Map_InsertInt_Std(benchmark::State &state) {
  auto const &keys = intKeys();
  for (auto _ : state) {
    auto map = stdMap<int>();
    for (int i = 0; i < kKeys; ++i) map.emplace(keys[i], i);
    benchmark::DoNotOptimize(map.size());
  }
}
BENCHMARK(Map_InsertInt_Std)->Unit(benchmark::kMillisecond);

void Map_LookupInt_Bfc(benchmark::State &state) {
  auto const &keys = intKeys();
  SCC_Map<int, int> map(kBuckets);
  for (int i = 0; i < kKeys; ++i)
    if (int *value = map.Insert(keys[i])) *value = i;
  for (auto _ : state) {
    long sum = 0;
    for (int key : intProbeKeys()) sum += map.Lookup(key)->m_Value;
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(Map_LookupInt_Bfc)->Unit(benchmark::kMillisecond);

void Map_LookupInt_Std(benchmark::State &state) {
  auto const &keys = intKeys();
  auto map = stdMap<int>();
  for (int i = 0; i < kKeys; ++i) map.emplace(keys[i], i);
  for (auto _ : state) {
    long sum = 0;
    for (int key : intProbeKeys()) sum += map.find(key)->second;
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(Map_LookupInt_Std)->Unit(benchmark::kMillisecond);

void Map_InsertText_Bfc(benchmark::State &state) {
  auto const &keys = sysTextKeys();
  for (auto _ : state) {
    SCC_Map<SYS_String, int> map(kBuckets);
    for (int i = 0; i < kKeys; ++i)
      if (int *value = map.Insert(keys[i])) *value = i;
    benchmark::DoNotOptimize(map.GetCount());
  }
}
BENCHMARK(Map_InsertText_Bfc)->Unit(benchmark::kMillisecond);

void Map_InsertText_Std(benchmark::State &state) {
  auto const &keys = textKeys();
  for (auto _ : state) {
    auto map = stdMap<std::string>();
    for (int i = 0; i < kKeys; ++i) map.emplace(keys[i], i);
    benchmark::DoNotOptimize(map.size());
  }
}
BENCHMARK(Map_InsertText_Std)->Unit(benchmark::kMillisecond);

void Map_LookupText_Bfc(benchmark::State &state) {
  auto const &keys = sysTextKeys();
  SCC_Map<SYS_String, int> map(kBuckets);
  for (int i = 0; i < kKeys; ++i)
    if (int *value = map.Insert(keys[i])) *value = i;
  for (auto _ : state) {
    long sum = 0;
    for (auto const &key : sysProbeKeys()) sum += map.Lookup(key)->m_Value;
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(Map_LookupText_Bfc)->Unit(benchmark::kMillisecond);

void Map_LookupText_Std(benchmark::State &state) {
  auto const &keys = textKeys();
  auto map = stdMap<std::string>();
  for (int i = 0; i < kKeys; ++i) map.emplace(keys[i], i);
  for (auto _ : state) {
    long sum = 0;
    for (auto const &key : stdProbeKeys()) sum += map.find(key)->second;
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(Map_LookupText_Std)->Unit(benchmark::kMillisecond);

// The worst input: a hash that sends every key to one bucket, so each insertion
// (which first looks for the key) and each lookup walks the whole chain. Both maps
// get the same degenerate hash; the cost grows with the square of the count for
// both, and the ratio is the constant of the chain walk. Three sizes, each four
// times the last, show the growth.

long oneBucketHash(int const &, long) { return 0; }
struct OneBucketHash {
  size_t operator()(int) const { return 0; }
};

void Map_OneBucket_Bfc(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    SCC_Map<int, int> map(count, &oneBucketHash);
    for (int key = 0; key < count; ++key) *map.Insert(key) = key;
    long sum = 0;
    for (int key = 0; key < count; ++key) sum += map.Lookup(key)->m_Value;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(Map_OneBucket_Bfc)->Arg(250)->Arg(1000)->Arg(4000)->Unit(benchmark::kMicrosecond);

void Map_OneBucket_Std(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    std::unordered_map<int, int, OneBucketHash> map;
    map.reserve(count);
    for (int key = 0; key < count; ++key) map.emplace(key, key);
    long sum = 0;
    for (int key = 0; key < count; ++key) sum += map.find(key)->second;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(Map_OneBucket_Std)->Arg(250)->Arg(1000)->Arg(4000)->Unit(benchmark::kMicrosecond);

}  // namespace
