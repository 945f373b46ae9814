//===- scc/scc_compare.cpp - Comparison and hash of text and addresses --===//
//
// The text hash weighs each byte by its position and a running power of
// 6293815, all in unsigned 32 bits, so both data models agree bit for bit.
// Case folding is ASCII only and independent of the C library's locale.
//
//===------------------------------------------------------------------===//
#include "scc_compare.h"

#include "ssm_report.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::uint32_t kHashFactor = 6293815u;  // 0x600937

inline int lowerAscii(int c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; }

inline int sign(int value) { return (value > 0) - (value < 0); }

/// The weight k * 6293815^k of the k-th byte for the first kWeighted bytes, so
/// that short texts (all keys in practice) cost one multiply per byte.
constexpr int kWeighted = 64;
struct HashWeights {
  std::uint32_t weight[kWeighted + 1];
  std::uint32_t nextPower;  // 6293815^(kWeighted + 1)
  constexpr HashWeights() : weight(), nextPower(kHashFactor) {
    for (std::uint32_t k = 1; k <= kWeighted; ++k) {
      weight[k] = k * nextPower;
      nextPower *= kHashFactor;
    }
  }
};
constexpr HashWeights kWeights;

template <bool fold>
inline std::uint32_t byteValue(char byte) {
  int const c = static_cast<signed char>(byte);
  return static_cast<std::uint32_t>(fold ? lowerAscii(c) : c);
}

/// The text hash of `text` up to its NUL; each byte sign-extended, A-Z lowered
/// first when `fold` is set.
template <bool fold>
std::uint32_t textHash(char const *text) {
  std::uint32_t hash = 0;
  std::uint32_t position = 1;
  for (; position <= kWeighted; ++position, ++text) {
    if (*text == '\0') return hash;
    hash += byteValue<fold>(*text) * kWeights.weight[position];
  }
  for (std::uint32_t power = kWeights.nextPower; *text != '\0'; ++text, ++position) {
    hash += byteValue<fold>(*text) * position * power;
    power *= kHashFactor;
  }
  return hash;
}

inline long reduce(std::uint32_t hash, long n) {
  return static_cast<long>(hash % static_cast<std::uint32_t>(scc_detail::modulus(n)));
}

inline std::uint32_t foldAddress(void *address) {
  auto const bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address));
  return static_cast<std::uint32_t>(bits ^ (bits >> 32));
}

}  // namespace

int SCC_Compare(double const &a, double const &b) {
  if (std::isnan(a) || std::isnan(b) || a == b) return 0;
  return a < b ? -1 : 1;
}

int SCC_Compare(char const *const &a, char const *const &b) {
  return sign(std::strcmp(a != nullptr ? a : "", b != nullptr ? b : ""));
}

int SCC_Compare(SYS_String const &a, SYS_String const &b) {
  return sign(std::strcmp(static_cast<char const *>(a), static_cast<char const *>(b)));
}

int SCC_Compare(SCC_StrNoCase const &a, SCC_StrNoCase const &b) {
  auto const *left = reinterpret_cast<unsigned char const *>(static_cast<char const *>(a));
  auto const *right = reinterpret_cast<unsigned char const *>(static_cast<char const *>(b));
  int l, r;
  do {
    l = lowerAscii(*left++);
    r = lowerAscii(*right++);
  } while (l != 0 && l == r);
  return l - r;
}

int SCC_Compare(void *const &a, void *const &b) {
  auto const left = reinterpret_cast<std::uintptr_t>(a);
  auto const right = reinterpret_cast<std::uintptr_t>(b);
  return (left > right) - (left < right);
}

long SCC_Hash(char const *const &text, long n) {
  if (!SSM_Check(n >= 1, "", "scc/scc", __LINE__)) return 0;
  return text != nullptr ? reduce(textHash<false>(text), n) : 0;
}

long SCC_Hash(SYS_String const &text, long n) { return n < 1 ? 0 : reduce(textHash<false>(text), n); }

long SCC_Hash(SCC_StrNoCase const &text, long n) { return n < 1 ? 0 : reduce(textHash<true>(text), n); }

std::uint32_t SCC_TextHash(char const *text, int fold) {
  if (text == nullptr) return 0;
  return fold != 0 ? textHash<true>(text) : textHash<false>(text);
}

long SCC_Hash(void *const &address, long n) { return n < 1 ? 0 : reduce(foldAddress(address), n); }
