//===- tests/scc_compare_test.cpp - Comparison and hash functions -------===//
#include "scc_compare.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <string>

namespace {

void *address(std::uintptr_t value) { return reinterpret_cast<void *>(value); }

}  // namespace

// The text hash weighs each sign-extended byte by position and a running power
// of 6293815 in 32 bits; the values are the same in both data models.
TEST(SccHash, TextHashValues) {
  struct Case { char const *text; long n; long expected; } const cases[] = {
      {"", 53, 0}, {"a", 2147483647, 610500055}, {"a", 53, 51}, {"ab", 53, 23}, {"ab", 1000003, 9312},
      {"geom(12)", 53, 12}, {"geom(12)", 1000003, 293906},
      {"\xc3\xa9", 1000003, 886182},  // bytes above 0x7F count as negative
      {"\xff", 53, 30}, {"ABC", 53, 41},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string(c.text) + " mod " + std::to_string(c.n));
    EXPECT_EQ(SCC_Hash(c.text, c.n), c.expected);
    EXPECT_EQ(SCC_Hash(SYS_String(c.text), c.n), c.expected);
  }
}

// Long texts hash as short ones do, past the precomputed weights of the first
// bytes; checked against the formula computed byte by byte.
TEST(SccHash, LongTextsFollowTheFormula) {
  auto reference = [](std::string const &text, bool fold) {
    std::uint32_t hash = 0, power = 6293815u, position = 1;
    for (char byte : text) {
      int c = static_cast<signed char>(byte);
      if (fold && c >= 'A' && c <= 'Z') c += 32;
      hash += static_cast<std::uint32_t>(c) * position++ * power;
      power *= 6293815u;
    }
    return hash;
  };
  for (int length : {0, 1, 63, 64, 65, 66, 200}) {
    SCOPED_TRACE(length);
    std::string text;
    for (int i = 0; i < length; ++i) text += static_cast<char>("Ab\x80z\xff" "9"[i % 6]);
    long const n = 2147483647;
    EXPECT_EQ(SCC_Hash(text.c_str(), n), static_cast<long>(reference(text, false) % n));
    EXPECT_EQ(SCC_Hash(SCC_StrNoCase(text.c_str()), n), static_cast<long>(reference(text, true) % n));
  }
}

// Case-insensitive keys hash and compare with A-Z folded and nothing else;
// non-positive bucket counts give 0 (reported for the plain text overload).
TEST(SccHash, NoCaseAndDegenerateCounts) {
  EXPECT_EQ(SCC_Hash(SCC_StrNoCase("ABC"), 53), SCC_Hash(SCC_StrNoCase("abc"), 53));
  EXPECT_EQ(SCC_Hash(SCC_StrNoCase("ABC"), 53), 52);
  EXPECT_EQ(SCC_Hash(SCC_StrNoCase("R10"), 53), 21);
  // U+00C9 and U+00E9 are different bytes; no locale folding applies to them.
  EXPECT_NE(SCC_Hash(SCC_StrNoCase("\xc3\x89"), 1000003), SCC_Hash(SCC_StrNoCase("\xc3\xa9"), 1000003));

  EXPECT_EQ(SCC_Hash(SYS_String("abc"), 0), 0);
  EXPECT_EQ(SCC_Hash(SCC_StrNoCase("abc"), -5), 0);
  char const *text = "abc";
  EXPECT_EQ(SCC_Hash(text, 0), 0);
  char const *none = nullptr;
  EXPECT_EQ(SCC_Hash(none, 53), 0);
  EXPECT_EQ(SCC_Hash(address(12345), 0), 0);
}

// Integer keys: the key modulo n, plus n when negative; on LP64 keys wider than 32 bits fold their halves.
TEST(SccHash, IntegerKeys) {
  struct Case { long long key; long n; long expected; } const cases[] = {
      {-1, 53, 52}, {0, 53, 0}, {53, 53, 0}, {-53, 53, 0}, {106, 53, 0},
      {INT_MAX, 53, INT_MAX % 53}, {INT_MIN, 53, INT_MIN % 53 + 53}, {7, 1, 0}, {7, 0, 0}, {-7, -3, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::to_string(c.key) + " mod " + std::to_string(c.n));
    int const asInt = static_cast<int>(c.key);
    long const asLong = static_cast<long>(c.key);
    EXPECT_EQ(SCC_Hash(asInt, c.n), c.expected);
    EXPECT_EQ(SCC_Hash(asLong, c.n), c.expected);
    EXPECT_EQ(SCC_Hash(c.key, c.n), c.expected);
  }
  short const small = -2;
  EXPECT_EQ(SCC_Hash(small, 10), 8);
  unsigned int const big = 0xFFFFFFFFu;
  EXPECT_EQ(SCC_Hash(big, 10), 5);
  long long const wide = 0x100000005LL;  // halves 1 and 5
  EXPECT_EQ(SCC_Hash(wide, 1000), 4);
  SYS_Handle const handle = -1;
  EXPECT_EQ(SCC_Hash(handle, 53), 52);
}

// Addresses hash and compare as unsigned numbers; on LP64 the halves are folded first for the hash.
TEST(SccHash, AddressesHashAndCompareUnsigned) {
  void *low = address(0x7FFFFFF0u), *high = address(0x80000010u);
  EXPECT_EQ(SCC_Compare(low, high), -1);
  EXPECT_EQ(SCC_Compare(high, low), 1);
  EXPECT_EQ(SCC_Compare(low, low), 0);
  EXPECT_EQ(SCC_Hash(address(0x12345678u), 1000), 0x12345678 % 1000);
  EXPECT_EQ(SCC_Hash(address(0xFFFFFFF0u), 1000), 0xFFFFFFF0u % 1000);  // no sign
  std::uint64_t const wide = 0x700001000ULL;  // LP64 folds the halves: 0x7 ^ 0x1000; ILP32 keeps the low half
  EXPECT_EQ(SCC_Hash(address(static_cast<std::uintptr_t>(wide)), 100000), sizeof(void *) == 8 ? 0x1007 : 0x1000);
}

// Texts compare byte-wise as unsigned bytes; the result is -1, 0 or 1 and reverses with the operands.
TEST(SccCompare, Texts) {
  struct Case { char const *a, *b; int sign; } const cases[] = {
      {"", "", 0}, {"a", "", 1}, {"abc", "abd", -1}, {"\x80", "a", 1}, {"R10", "R9", -1}, {"ab", "abc", -1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string(c.a) + " vs " + c.b);
    EXPECT_EQ(SCC_Compare(c.a, c.b), c.sign);
    EXPECT_EQ(SCC_Compare(c.b, c.a), -c.sign);
    EXPECT_EQ(SCC_Compare(SYS_String(c.a), SYS_String(c.b)), c.sign);
    EXPECT_EQ(SCC_Compare(SYS_String(c.b), SYS_String(c.a)), -c.sign);
  }
  char const *none = nullptr, *empty = "";
  EXPECT_EQ(SCC_Compare(none, empty), 0);
}

// Case-insensitive comparison returns the raw difference of the first differing
// lowered bytes, as _stricmp does, and equality follows it.
TEST(SccCompare, NoCaseIsTheRawLoweredDifference) {
  struct Case { char const *a, *b; int result; } const cases[] = {
      {"ABC", "abc", 0}, {"a", "B", 'a' - 'b'}, {"abc", "ABD", 'c' - 'd'}, {"a", "", 'a'},
      {"[", "A", '[' - 'a'},  // lowered, so '[' sorts before letters
      {"\xc3\x89", "\xc3\xa9", 0x89 - 0xa9},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string(c.a) + " vs " + c.b);
    EXPECT_EQ(SCC_Compare(SCC_StrNoCase(c.a), SCC_StrNoCase(c.b)), c.result);
    EXPECT_EQ(SCC_Compare(SCC_StrNoCase(c.b), SCC_StrNoCase(c.a)), -c.result);
    EXPECT_EQ(SCC_StrNoCase(c.a) == SCC_StrNoCase(c.b), c.result == 0);
    EXPECT_EQ(SCC_StrNoCase(c.a) == c.b, c.result == 0);
    EXPECT_EQ(c.a != SCC_StrNoCase(c.b), c.result != 0);
  }
}

// Doubles: not-a-number compares equal to everything; otherwise numeric order.
TEST(SccCompare, Doubles) {
  double const nan = std::nan("");
  struct Case { double a, b; int sign; } const cases[] = {
      {1.0, 2.0, -1}, {2.0, 2.0, 0}, {-0.0, 0.0, 0}, {nan, 1.0, 0}, {nan, nan, 0}, {-1e300, 1e-300, -1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::to_string(c.a) + " vs " + std::to_string(c.b));
    EXPECT_EQ(SCC_Compare(c.a, c.b), c.sign);
    EXPECT_EQ(SCC_Compare(c.b, c.a), -c.sign);
  }
}
