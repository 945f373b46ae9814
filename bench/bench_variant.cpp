//===- bench/bench_variant.cpp - SCC_Variant against std::variant with std::visit ===//
//
// n values, a third each integers, doubles and numeric strings (a worst case
// of its own: every string is parsed), converted to double, to long and to
// text, and compared with their neighbours. The peer holds the same values in
// a std::variant<std::monostate, long, double, std::string> and applies the
// same rules through std::visit: strtod for strings, a checked truncation,
// std::to_string for text, comparison by the superior type.
//
//===------------------------------------------------------------------===//
#include "scc_variant.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace {

typedef std::variant<std::monostate, long, double, std::string> Peer;

/// The values of both sides: integer, double and string in turn, from one seed.
struct Values {
  std::vector<SCC_Variant> bfc;
  std::vector<Peer> peer;

  explicit Values(long n) {
    std::mt19937 random(42);
    for (long k = 0; k < n; ++k) {
      long const whole = static_cast<long>(random() % 2000000) - 1000000;
      double const real = whole / 64.0;
      switch (k % 3) {
        case 0: bfc.emplace_back(whole), peer.emplace_back(whole); break;
        case 1: bfc.emplace_back(real), peer.emplace_back(real); break;
        default: {
          std::string const text = std::to_string(real);
          bfc.emplace_back(text.c_str()), peer.emplace_back(text);
        }
      }
    }
  }
};

// The peer's rules, written as a host would with the standard library.
double peerDouble(Peer const &value) {
  return std::visit(
      [](auto const &x) -> double {
        using T = std::decay_t<decltype(x)>;
        if constexpr (std::is_same_v<T, std::monostate>) return 0.0;
        else if constexpr (std::is_same_v<T, std::string>) {
          char *end = nullptr;
          double const d = std::strtod(x.c_str(), &end);
          while (*end == ' ' || *end == '\t') ++end;
          if (*end != '\0') throw std::invalid_argument("not a number");
          return d;
        } else return static_cast<double>(x);
      },
      value);
}
long peerLong(Peer const &value) {
  if (auto const *whole = std::get_if<long>(&value)) return *whole;
  double const t = std::trunc(peerDouble(value));
  if (!(t >= -2147483648.0 && t <= 2147483647.0)) throw std::out_of_range("out of range");
  return static_cast<long>(t);
}
std::string peerText(Peer const &value) {
  return std::visit(
      [](auto const &x) -> std::string {
        using T = std::decay_t<decltype(x)>;
        if constexpr (std::is_same_v<T, std::monostate>) return std::string();
        else if constexpr (std::is_same_v<T, std::string>) return x;
        else return std::to_string(x);
      },
      value);
}
bool peerEqual(Peer const &a, Peer const &b) {
  std::size_t const type = std::max(a.index(), b.index());
  if (a.index() == 0 || b.index() == 0) return false;
  if (type == 1) return std::get<long>(a) == std::get<long>(b);
  if (type == 2) return peerDouble(a) == peerDouble(b);
  return peerText(a) == peerText(b);
}

enum Operation { kDouble, kLong, kText, kEqual };

/// Applies the operation of the state's second argument to every value; `the` gives the
/// side's four conversions.
template <class Value, class Side>
void run(benchmark::State &state, std::vector<Value> const &values, Side const &the) {
  auto const operation = static_cast<Operation>(state.range(1));
  std::size_t const n = values.size();
  for (auto _ : state) {
    double sum = 0;
    for (std::size_t k = 0; k < n; ++k) {
      Value const &v = values[k];
      switch (operation) {
        case kDouble: sum += the.toDouble(v); break;
        case kLong: sum += static_cast<double>(the.toLong(v)); break;
        case kText: sum += static_cast<double>(the.textLength(v)); break;
        case kEqual: sum += the.equal(v, values[(k + 3) % n]); break;
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

struct BfcSide {
  double toDouble(SCC_Variant const &v) const { return v; }
  long toLong(SCC_Variant const &v) const { return v; }
  int textLength(SCC_Variant const &v) const { return static_cast<SYS_String>(v).GetLength(); }
  bool equal(SCC_Variant const &a, SCC_Variant const &b) const { return a == b; }
};

struct PeerSide {
  double toDouble(Peer const &v) const { return peerDouble(v); }
  long toLong(Peer const &v) const { return peerLong(v); }
  std::size_t textLength(Peer const &v) const { return peerText(v).size(); }
  bool equal(Peer const &a, Peer const &b) const { return peerEqual(a, b); }
};

void Variant_Bfc(benchmark::State &state) { run(state, Values(state.range(0)).bfc, BfcSide()); }
BENCHMARK(Variant_Bfc)->ArgsProduct({{1000, 1000000}, {kDouble, kLong, kText, kEqual}})->Unit(benchmark::kMillisecond);

void Variant_StdVisit(benchmark::State &state) { run(state, Values(state.range(0)).peer, PeerSide()); }
BENCHMARK(Variant_StdVisit)->ArgsProduct({{1000, 1000000}, {kDouble, kLong, kText, kEqual}})->Unit(benchmark::kMillisecond);

}  // namespace
