//===- bench/bench_convert.cpp - SYS_Convert against snprintf and strtod ===//
//
// A million coordinates in millimetres (5 decimals, zeros trimmed) are
// formatted and parsed back, by SYS_Convert and by the code a host would write
// with snprintf and strtod for the same conversion. RESULTS.md gives the ratios.
//
//===------------------------------------------------------------------===//
#include "sys_convert.h"

#include <benchmark/benchmark.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kCoordinates = 1000000;
constexpr double kFactor = 1500000.0;  // base units per millimetre
constexpr int kPrecision = 5;

std::vector<long> const &coordinates() {
  static std::vector<long> const values = [] {
    std::mt19937 rng(11);
    std::uniform_int_distribution<long> any(-1066800000L, 1066800000L);
    std::vector<long> v(kCoordinates);
    for (auto &x : v) x = any(rng);
    return v;
  }();
  return values;
}

/// What the peer does by hand: "%.*f", then trailing zeros and a trailing point removed.
int peerFormat(char *buffer, size_t size, long base) {
  int length = std::snprintf(buffer, size, "%.*f", kPrecision, static_cast<double>(base) / kFactor);
  if (std::memchr(buffer, '.', static_cast<size_t>(length)) != nullptr) {
    while (buffer[length - 1] == '0') --length;
    if (buffer[length - 1] == '.') --length;
    buffer[length] = '\0';
  }
  return length;
}

/// The peer's parse: the whole text a number, no range error, within the coordinate limit.
bool peerParse(char const *text, long *value) {
  if (errno == ERANGE) errno = 0;
  char *end;
  double const user = std::strtod(text, &end);
  if (*end != '\0' || errno == ERANGE) return false;
  if (std::fabs(user) > 2147483647.0 / kFactor) return false;
  double const scaled = user * kFactor;
  long const base = static_cast<long>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
  if (base < -1066800000L || base > 1066800000L) return false;
  *value = base;
  return true;
}

std::vector<std::string> const &texts() {
  static std::vector<std::string> const values = [] {
    std::vector<std::string> v;
    v.reserve(kCoordinates);
    char buffer[64];
    for (long b : coordinates()) {
      peerFormat(buffer, sizeof buffer, b);
      v.emplace_back(buffer);
    }
    // Both sides must do the same work: check that they agree before timing them.
    SYS_Convert const mm(SYS_UnitMillimetre);
    for (size_t i = 0; i < 1000; ++i) {
      long ours = 0, peers = 0;
      if (std::string(mm.Base2Str(coordinates()[i])) != v[i] || !mm.Str2Base(v[i].c_str(), &ours) ||
          !peerParse(v[i].c_str(), &peers) || ours != peers) {
        std::fprintf(stderr, "bench_convert: the two sides disagree on %ld\n", coordinates()[i]);
        std::abort();
      }
    }
    return v;
  }();
  return values;
}

void Convert_FormatBuffer_Bfc(benchmark::State &state) {
  SYS_Convert const mm(SYS_UnitMillimetre);
  char buffer[SYS_Convert::BufferSize];
  for (auto _ : state)
    for (long b : coordinates()) benchmark::DoNotOptimize(mm.Base2Str(buffer, b));
  state.SetItemsProcessed(state.iterations() * kCoordinates);
}
BENCHMARK(Convert_FormatBuffer_Bfc)->Unit(benchmark::kMillisecond);

void Convert_FormatBuffer_Snprintf(benchmark::State &state) {
  char buffer[64];
  for (auto _ : state)
    for (long b : coordinates()) benchmark::DoNotOptimize(peerFormat(buffer, sizeof buffer, b));
  state.SetItemsProcessed(state.iterations() * kCoordinates);
}
BENCHMARK(Convert_FormatBuffer_Snprintf)->Unit(benchmark::kMillisecond);

void Convert_FormatString_Bfc(benchmark::State &state) {
  SYS_Convert const mm(SYS_UnitMillimetre);
  for (auto _ : state)
    for (long b : coordinates()) {
      SYS_String const s = mm.Base2Str(b);
      benchmark::DoNotOptimize(s.GetLength());
    }
  state.SetItemsProcessed(state.iterations() * kCoordinates);
}
BENCHMARK(Convert_FormatString_Bfc)->Unit(benchmark::kMillisecond);

void Convert_FormatString_Snprintf(benchmark::State &state) {
  char buffer[64];
  for (auto _ : state)
    for (long b : coordinates()) {
      int const length = peerFormat(buffer, sizeof buffer, b);
      std::string const s(buffer, static_cast<size_t>(length));
      benchmark::DoNotOptimize(s.size());
    }
  state.SetItemsProcessed(state.iterations() * kCoordinates);
}
BENCHMARK(Convert_FormatString_Snprintf)->Unit(benchmark::kMillisecond);

void Convert_Parse_Bfc(benchmark::State &state) {
  SYS_Convert const mm(SYS_UnitMillimetre);
  std::vector<std::string> const &input = texts();
  for (auto _ : state)
    for (auto const &t : input) {
      long value = 0;
      benchmark::DoNotOptimize(mm.Str2Base(t.c_str(), &value));
      benchmark::DoNotOptimize(value);
    }
  state.SetItemsProcessed(state.iterations() * kCoordinates);
}
BENCHMARK(Convert_Parse_Bfc)->Unit(benchmark::kMillisecond);

void Convert_Parse_Strtod(benchmark::State &state) {
  std::vector<std::string> const &input = texts();
  for (auto _ : state)
    for (auto const &t : input) {
      long value = 0;
      benchmark::DoNotOptimize(peerParse(t.c_str(), &value));
      benchmark::DoNotOptimize(value);
    }
  state.SetItemsProcessed(state.iterations() * kCoordinates);
}
BENCHMARK(Convert_Parse_Strtod)->Unit(benchmark::kMillisecond);

}  // namespace
