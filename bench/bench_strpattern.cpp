//===- bench/bench_strpattern.cpp - Patterns against std::regex, PCRE2 --===//
//
// Compiling and matching typical net-list patterns with SYS_StrPattern,
// std::regex (ECMAScript) and PCRE2 without JIT, over the same lines. Each
// pattern is written in both languages so that all three find the same
// matches on these lines; the first run checks that they do.
//
//===------------------------------------------------------------------===//
#include "sys_strpattern.h"

#include <benchmark/benchmark.h>

#include <random>
#include <regex>
#include <string>
#include <vector>

#if defined(BFC_HAVE_PCRE2)
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

namespace {

struct TypicalPattern {
  char const *name;
  char const *ours;
  char const *regex;  // ECMAScript and PCRE2 alike
};

// Alternatives that are no prefix of one another, and repetitions whose first occurrence
// is never needed back, so that longest and first-found semantics agree on these lines.
TypicalPattern const kPatterns[] = {
    {"Literal", "GND", "GND"},
    {"Class", "U:d:d", "U[0-9][0-9]"},
    {"SetRanges", "[A-Z]+_[A-Z0-9]+", "[A-Z]+_[A-Z0-9]+"},
    {"Alternation", "VCC|GND|VDD|VSS", "VCC|GND|VDD|VSS"},
    {"Greedy", "VCC.*V", "VCC.*V"},
    {"Shortest", "R.#\\.", "R.+?\\."},
};

/// 2,000 net-list lines: a net name and the pins on it.
std::vector<std::string> const &netLines() {
  static std::vector<std::string> const lines = [] {
    static char const *const nets[] = {"VCC_3V3", "GND",     "AGND",      "DDR_DQ17", "CLK_100M", "USB_DP",
                                       "VDD_CORE", "VSS",    "RESET_N",   "SPI_MOSI", "NET0042",  "VCC_1V8"};
    static char const *const parts[] = {"R", "C", "U", "L", "J", "TP"};
    std::mt19937 random(4711);
    std::vector<std::string> out;
    for (int i = 0; i < 2000; ++i) {
      std::string line = "NET ";
      line += nets[random() % std::size(nets)];
      for (int pins = 1 + static_cast<int>(random() % 6); pins > 0; --pins) {
        line += ' ';
        line += parts[random() % std::size(parts)];
        line += std::to_string(1 + random() % 120);
        line += '.';
        line += std::to_string(1 + random() % 16);
      }
      out.push_back(line);
    }
    return out;
  }();
  return lines;
}

/// What a run over all lines found: matches and the sum of their offsets and lengths.
struct Tally {
  long matches = 0;
  long sum = 0;
  bool operator==(Tally const &o) const { return matches == o.matches && sum == o.sum; }
  void add(int offset, int length) {
    if (offset < 0) return;
    ++matches;
    sum += offset * 1000 + length;
  }
};

Tally matchOurs(SYS_StrPattern const &p) {
  Tally t;
  for (std::string const &line : netLines()) {
    int length = 0;
    int const offset = p.Match(line.c_str(), &length);
    t.add(offset, length);
  }
  return t;
}

Tally matchRegex(std::regex const &re) {
  Tally t;
  std::cmatch m;
  for (std::string const &line : netLines()) {
    if (std::regex_search(line.c_str(), m, re)) t.add(static_cast<int>(m.position(0)), static_cast<int>(m.length(0)));
  }
  return t;
}

#if defined(BFC_HAVE_PCRE2)
/// A compiled PCRE2 pattern with its match data, interpreted (no JIT).
struct Pcre2 {
  explicit Pcre2(char const *pattern) {
    int error = 0;
    PCRE2_SIZE where = 0;
    code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED, 0, &error, &where, nullptr);
    data = pcre2_match_data_create_from_pattern(code, nullptr);
  }
  ~Pcre2() {
    pcre2_match_data_free(data);
    pcre2_code_free(code);
  }
  Pcre2(Pcre2 const &) = delete;
  Pcre2 &operator=(Pcre2 const &) = delete;
  pcre2_code *code = nullptr;
  pcre2_match_data *data = nullptr;
};

Tally matchPcre2(Pcre2 const &p) {
  Tally t;
  for (std::string const &line : netLines()) {
    int const rc = pcre2_match(p.code, reinterpret_cast<PCRE2_SPTR>(line.data()), line.size(), 0, 0, p.data, nullptr);
    if (rc > 0) {
      PCRE2_SIZE const *const v = pcre2_get_ovector_pointer(p.data);
      t.add(static_cast<int>(v[0]), static_cast<int>(v[1] - v[0]));
    }
  }
  return t;
}
#endif

/// Whether every engine finds what ours finds for pattern `i`; reported once.
bool sameResults(size_t i, benchmark::State &state) {
  Tally const ours = matchOurs(SYS_StrPattern(kPatterns[i].ours));
  bool same = ours.matches > 0 && ours == matchRegex(std::regex(kPatterns[i].regex));
#if defined(BFC_HAVE_PCRE2)
  Pcre2 const pcre(kPatterns[i].regex);
  same = same && ours == matchPcre2(pcre);
#endif
  if (!same) state.SkipWithError("the engines disagree on this pattern");
  return same;
}

void StrPattern_Match_Bfc(benchmark::State &state) {
  size_t const i = static_cast<size_t>(state.range(0));
  if (!sameResults(i, state)) return;
  SYS_StrPattern const p(kPatterns[i].ours);
  for (auto _ : state) benchmark::DoNotOptimize(matchOurs(p));
  state.SetLabel(kPatterns[i].name);
  state.SetItemsProcessed(state.iterations() * static_cast<long>(netLines().size()));
}

void StrPattern_Match_Regex(benchmark::State &state) {
  size_t const i = static_cast<size_t>(state.range(0));
  if (!sameResults(i, state)) return;
  std::regex const re(kPatterns[i].regex);
  for (auto _ : state) benchmark::DoNotOptimize(matchRegex(re));
  state.SetLabel(kPatterns[i].name);
  state.SetItemsProcessed(state.iterations() * static_cast<long>(netLines().size()));
}

#if defined(BFC_HAVE_PCRE2)
void StrPattern_Match_Pcre2(benchmark::State &state) {
  size_t const i = static_cast<size_t>(state.range(0));
  if (!sameResults(i, state)) return;
  Pcre2 const p(kPatterns[i].regex);
  for (auto _ : state) benchmark::DoNotOptimize(matchPcre2(p));
  state.SetLabel(kPatterns[i].name);
  state.SetItemsProcessed(state.iterations() * static_cast<long>(netLines().size()));
}
#endif

void StrPattern_Compile_Bfc(benchmark::State &state) {
  for (auto _ : state) {
    for (auto const &p : kPatterns) benchmark::DoNotOptimize(SYS_StrPattern(p.ours));
  }
}

void StrPattern_Compile_Regex(benchmark::State &state) {
  for (auto _ : state) {
    for (auto const &p : kPatterns) benchmark::DoNotOptimize(std::regex(p.regex));
  }
}

#if defined(BFC_HAVE_PCRE2)
void StrPattern_Compile_Pcre2(benchmark::State &state) {
  for (auto _ : state) {
    for (auto const &p : kPatterns) {
      int error = 0;
      PCRE2_SIZE where = 0;
      pcre2_code *const code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(p.regex), PCRE2_ZERO_TERMINATED, 0, &error, &where, nullptr);
      benchmark::DoNotOptimize(code);
      pcre2_code_free(code);
    }
  }
}
#endif

void patternArguments(benchmark::internal::Benchmark *b) {
  for (long i = 0; i < static_cast<long>(std::size(kPatterns)); ++i) b->Arg(i);
}

}  // namespace

BENCHMARK(StrPattern_Compile_Bfc);
BENCHMARK(StrPattern_Compile_Regex);
#if defined(BFC_HAVE_PCRE2)
BENCHMARK(StrPattern_Compile_Pcre2);
#endif
BENCHMARK(StrPattern_Match_Bfc)->Apply(patternArguments);
BENCHMARK(StrPattern_Match_Regex)->Apply(patternArguments);
#if defined(BFC_HAVE_PCRE2)
BENCHMARK(StrPattern_Match_Pcre2)->Apply(patternArguments);
#endif
