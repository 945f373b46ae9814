//===- bench/bench_string.cpp - SYS_String against std::string ----------===//
//
// Each case runs the same work on SYS_String and on the peer a host would
// otherwise pick; RESULTS.md gives the time ratios.
//
//===------------------------------------------------------------------===//
#include "sys_string.h"
#include "sys_strutil.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kAppends = 100000;

void String_AppendChar_Bfc(benchmark::State &state) {
  for (auto _ : state) {
    SYS_String s;
    for (int i = 0; i < kAppends; ++i) s += static_cast<char>('a' + (i & 15));
    benchmark::DoNotOptimize(s.GetLength());
  }
}
BENCHMARK(String_AppendChar_Bfc);

void String_AppendChar_Std(benchmark::State &state) {
  for (auto _ : state) {
    std::string s;
    for (int i = 0; i < kAppends; ++i) s += static_cast<char>('a' + (i & 15));
    benchmark::DoNotOptimize(s.size());
  }
}
BENCHMARK(String_AppendChar_Std);

void String_AppendNumber_Bfc(benchmark::State &state) {
  for (auto _ : state) {
    SYS_String s;
    for (int i = 0; i < kAppends / 10; ++i) s << i << ',';
    benchmark::DoNotOptimize(s.GetLength());
  }
}
BENCHMARK(String_AppendNumber_Bfc);

void String_AppendNumber_Std(benchmark::State &state) {
  for (auto _ : state) {
    std::string s;
    for (int i = 0; i < kAppends / 10; ++i) (s += std::to_string(i)) += ',';
    benchmark::DoNotOptimize(s.size());
  }
}
BENCHMARK(String_AppendNumber_Std);

// A 64 KiB net list text with the searched items near its end.
std::string searchText() {
  std::string text;
  while (text.size() < 65536) text += "NET_DATA_BUS_" + std::to_string(text.size() % 97) + ";";
  text += "#VCC_3V3;";
  return text;
}

void String_FindChar_Bfc(benchmark::State &state) {
  SYS_String const s(searchText().c_str());
  for (auto _ : state) benchmark::DoNotOptimize(s.Find('#', 0));
}
BENCHMARK(String_FindChar_Bfc);

void String_FindChar_Std(benchmark::State &state) {
  std::string const s = searchText();
  for (auto _ : state) benchmark::DoNotOptimize(s.find('#', 0));
}
BENCHMARK(String_FindChar_Std);

void String_FindSubstring_Bfc(benchmark::State &state) {
  SYS_String const s(searchText().c_str());
  for (auto _ : state) benchmark::DoNotOptimize(s.Find("VCC_3V3", 0));
}
BENCHMARK(String_FindSubstring_Bfc);

void String_FindSubstring_Std(benchmark::State &state) {
  std::string const s = searchText();
  for (auto _ : state) benchmark::DoNotOptimize(s.find("VCC_3V3", 0));
}
BENCHMARK(String_FindSubstring_Std);

// The worst input of a substring search: a text of one repeated character and a
// needle of the same character ending in another, so that every position matches
// almost to the needle's end. Texts of 4, 16 and 64 KiB show how the cost grows.
std::string const kWorstNeedle = std::string(63, 'a') + "b";

void String_FindWorstSubstring_Bfc(benchmark::State &state) {
  SYS_String const s(std::string(static_cast<size_t>(state.range(0)), 'a').c_str());
  for (auto _ : state) benchmark::DoNotOptimize(s.Find(kWorstNeedle.c_str(), 0));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(String_FindWorstSubstring_Bfc)->Arg(4096)->Arg(16384)->Arg(65536);

void String_FindWorstSubstring_Std(benchmark::State &state) {
  std::string const s(static_cast<size_t>(state.range(0)), 'a');
  for (auto _ : state) benchmark::DoNotOptimize(s.find(kWorstNeedle, 0));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(String_FindWorstSubstring_Std)->Arg(4096)->Arg(16384)->Arg(65536);

void String_InsertDeleteMiddle_Bfc(benchmark::State &state) {
  SYS_String s(std::string(4096, 'x').c_str());
  for (auto _ : state) {
    s.Insert(2048, "PAD");
    s.Delete(2048, 3);
    benchmark::DoNotOptimize(s.GetLength());
  }
}
BENCHMARK(String_InsertDeleteMiddle_Bfc);

void String_InsertDeleteMiddle_Std(benchmark::State &state) {
  std::string s(4096, 'x');
  for (auto _ : state) {
    s.insert(2048, "PAD");
    s.erase(2048, 3);
    benchmark::DoNotOptimize(s.size());
  }
}
BENCHMARK(String_InsertDeleteMiddle_Std);

void String_Copy1MB_Bfc(benchmark::State &state) {
  SYS_String const s(std::string(1 << 20, 'q').c_str());
  for (auto _ : state) {
    SYS_String copy(s);
    benchmark::DoNotOptimize(copy.GetLength());
  }
}
BENCHMARK(String_Copy1MB_Bfc);

void String_Copy1MB_Std(benchmark::State &state) {
  std::string const s(1 << 20, 'q');
  for (auto _ : state) {
    std::string copy(s);
    benchmark::DoNotOptimize(copy.size());
  }
}
BENCHMARK(String_Copy1MB_Std);

std::vector<std::string> partReferences() {
  std::mt19937 rng(7);
  char const *const prefixes[] = {"R", "C", "U", "L", "D", "Q", "TP", "J"};
  std::vector<std::string> refs;
  for (int i = 0; i < 100000; ++i) refs.push_back(prefixes[rng() % 8] + std::to_string(rng() % 5000));
  return refs;
}

/// Sorts the part references with `compare` (a strcmp-style function) in every iteration.
void naturalSort(benchmark::State &state, int (*compare)(char const *, char const *)) {
  std::vector<std::string> const refs = partReferences();
  std::vector<char const *> order;
  for (auto _ : state) {
    state.PauseTiming();
    order.clear();
    for (auto const &r : refs) order.push_back(r.c_str());
    state.ResumeTiming();
    std::sort(order.begin(), order.end(), [compare](char const *a, char const *b) { return compare(a, b) < 0; });
    benchmark::DoNotOptimize(order.data());
  }
}

void String_NaturalSort_Bfc(benchmark::State &state) { naturalSort(state, _tcsnumcmp); }
BENCHMARK(String_NaturalSort_Bfc)->Unit(benchmark::kMillisecond);

void String_NaturalSort_Strverscmp(benchmark::State &state) { naturalSort(state, strverscmp); }
BENCHMARK(String_NaturalSort_Strverscmp)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
