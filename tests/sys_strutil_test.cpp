//===- tests/sys_strutil_test.cpp - Number recognisers, natural order ---===//
#include "sys_strutil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {
int sign(int v) { return (v > 0) - (v < 0); }
}  // namespace

// Doubles: signs are skipped anywhere, one point before the exponent, an exponent needs a
// digit, and plain mode ends the scan at the "e".
TEST(NumberRecognisers, Doubles) {
  struct Case {
    char const *text;
    int isDouble, isDecDouble;
  } cases[] = {
      {"1.5e10", 1, 0}, {"-.5", 1, 1}, {"5.", 1, 1},   {"1-2", 1, 1},  {"+-3", 1, 1},
      {".", 0, 0},      {"e5", 0, 0},  {"1e", 0, 0},   {"1.2.3", 0, 0}, {"", 0, 0},
      {"1e5e", 0, 0},   {"1e.5", 0, 0}, {"-", 0, 0},   {"12", 1, 1},   {"1E-3", 1, 0},
      {"1e+-2", 1, 0},  {"+", 0, 0},   {" 1", 0, 0},   {"1 ", 0, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(isdouble(c.text, 0), c.isDouble);
    EXPECT_EQ(isdecdouble(c.text), c.isDecDouble);
  }
}

// The end positions point into the text: where the scan stopped.
TEST(NumberRecognisers, ScanEnds) {
  char const text[] = "1.5e10";
  EXPECT_EQ(getdouble(text, 1), text + 3);
  EXPECT_EQ(getdouble(text, 0), text + 6);
  EXPECT_EQ(getdouble("e5", 1), nullptr);
  EXPECT_EQ(getdouble(nullptr, 0), nullptr);
  char const twoPoints[] = "1.2.3";
  EXPECT_EQ(getdouble(twoPoints, 0), twoPoints + 3);
  char const exponentPoint[] = "2e3.5";
  EXPECT_EQ(getdouble(exponentPoint, 0), exponentPoint + 3);
  char const multibyte[] = "12\xC3\xA9";
  EXPECT_EQ(getdouble(multibyte, 0), multibyte + 2);
  EXPECT_EQ(getinteger(multibyte, 1), multibyte + 2);
  char const hex[] = "0x1F";
  EXPECT_EQ(getinteger(hex, 3), hex + 1);
  EXPECT_EQ(getinteger("", 1), nullptr);
  EXPECT_EQ(getinteger(nullptr, 1), nullptr);
}

// Integers count digits of the chosen base; signs are skipped anywhere.
TEST(NumberRecognisers, Integers) {
  struct Case {
    char const *text;
    int dec, hex, oct;
  } cases[] = {
      {"-42", 1, 1, 1}, {"4-2", 1, 1, 1}, {"4.2", 0, 0, 0}, {"x", 0, 0, 0}, {"", 0, 0, 0},
      {"1aF", 0, 1, 0}, {"1g", 0, 0, 0},  {"17", 1, 1, 1},  {"18", 1, 1, 0}, {"0x1F", 0, 0, 0},
      {"--", 0, 0, 0},  {"+9+", 1, 1, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(isdecinteger(c.text), c.dec);
    EXPECT_EQ(ishexinteger(c.text), c.hex);
    EXPECT_EQ(isoctinteger(c.text), c.oct);
  }
}

// Any other base picks the digits by prefix: "0x" hexadecimal, "0" octal, else decimal.
TEST(NumberRecognisers, BaseByPrefix) {
  EXPECT_EQ(isinteger("0x1F", 0), 1);
  EXPECT_EQ(isinteger("-0X1f", 0), 1);
  EXPECT_EQ(isinteger("017", 0), 1);
  EXPECT_EQ(isinteger("018", 0), 0);
  EXPECT_EQ(isinteger("19", 0), 1);
  EXPECT_EQ(isinteger("1F", 0), 0);
  EXPECT_EQ(isinteger("0x", 0), 0);
  char const zeroX[] = "0xg";
  EXPECT_EQ(getinteger(zeroX, 0), zeroX + 1);
}

// Natural order: digit runs compare by value; "$" sorts after everything; the rest by
// unsigned code. Every case is checked both ways.
TEST(NaturalCompare, Order) {
  struct Case {
    char const *a, *b;
    int sign;
  } cases[] = {
      {"file9", "file10", -1},
      {"a007b", "a7b", 0},
      {"abc", "abd", -1},
      {"ab", "abc", -1},
      {"ab$", "abc", 1},
      {"ab$", "ab", 1},
      {"ab$", "ab$", 0},
      {"R9", "R10", -1},
      {"R10", "R100", -1},
      {"C1.2", "C1.10", -1},
      {"", "", 0},
      {"", "a", -1},
      {"a", "\xC3\xA9", -1},  // unsigned bytes: 0xC3 is above every ASCII byte
      {"\xC3\xA9", "\xC3\xA3", 1},  // same lead byte, the whole character decides
      {"x99999999999999999999", "x100000000000000000000", -1},  // beyond 32 bits
      {"x0000000000000000000001", "x2", -1},
      {"x4294967296", "x4294967295", 1},
      {"U2a", "U2", 1},
      {"7", "07", 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string(c.a) + " vs " + c.b);
    EXPECT_EQ(sign(_tcsnumcmp(c.a, c.b)), c.sign);
    EXPECT_EQ(sign(_tcsnumcmp(c.b, c.a)), -c.sign);
  }
}

// Where atoi is defined the digit runs compare as atoi reads them: a randomised check of
// the order against a model built on atoi.
TEST(NaturalCompare, AgreesWithAtoiModel) {
  std::mt19937 rng(12345);
  auto randomText = [&rng]() {
    std::string s;
    int const n = static_cast<int>(rng() % 6);
    for (int i = 0; i < n; ++i) s += "ab09$"[rng() % 5];
    return s;
  };
  auto model = [](std::string const &a, std::string const &b) {
    size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
      if (isdigit(static_cast<unsigned char>(a[i])) && isdigit(static_cast<unsigned char>(b[j]))) {
        int const x = std::atoi(a.c_str() + i), y = std::atoi(b.c_str() + j);
        if (x != y) return x > y ? 1 : -1;
        while (i < a.size() && isdigit(static_cast<unsigned char>(a[i]))) ++i;
        while (j < b.size() && isdigit(static_cast<unsigned char>(b[j]))) ++j;
      } else if (a[i] != b[j]) {
        break;
      } else {
        ++i, ++j;
      }
    }
    unsigned char const ca = i < a.size() ? a[i] : 0, cb = j < b.size() ? b[j] : 0;
    if ((ca == '$') != (cb == '$')) return ca == '$' ? 1 : -1;
    return (ca > cb) - (ca < cb);
  };
  for (int k = 0; k < 20000; ++k) {
    std::string const a = randomText(), b = randomText();
    SCOPED_TRACE(a + " vs " + b);
    ASSERT_EQ(sign(_tcsnumcmp(a.c_str(), b.c_str())), model(a, b));
  }
}

// Sorting part references puts them in the order a person expects.
TEST(NaturalCompare, SortsPartReferences) {
  std::vector<std::string> refs = {"R100", "R9", "C2", "R10", "R1", "C10", "U1$", "U1"};
  std::sort(refs.begin(), refs.end(),
            [](std::string const &a, std::string const &b) { return _tcsnumcmp(a.c_str(), b.c_str()) < 0; });
  EXPECT_EQ(refs, (std::vector<std::string>{"C2", "C10", "R1", "R9", "R10", "R100", "U1", "U1$"}));
}

// Fields are counted from 0; empty fields exist; a missing field empties the result.
TEST(ExtractSubString, Fields) {
  struct Case {
    int index;
    int result;
    char const *field;
  } cases[] = {{0, 1, "a"}, {1, 1, "b"}, {2, 1, ""}, {3, 1, "c"}, {4, 0, ""}, {-1, 0, ""}};
  for (auto const &c : cases) {
    SCOPED_TRACE(c.index);
    SYS_String field("old");
    EXPECT_EQ(SysExtractSubString(field, "a,b,,c", c.index, ','), c.result);
    EXPECT_STREQ(field, c.field);
  }
  SYS_String field("kept");
  EXPECT_EQ(SysExtractSubString(field, nullptr, 0, ','), 0);
  EXPECT_STREQ(field, "kept");
  EXPECT_EQ(SysExtractSubString(field, "a,", 1, ','), 1);
  EXPECT_STREQ(field, "");
}

// A separator of 0x80 or above is found only where it is a character of its own.
TEST(ExtractSubString, MultibyteSeparator) {
  SYS_String field;
  // 0xA9 inside "é" is a trail byte; the lone 0xA9 after it separates.
  EXPECT_EQ(SysExtractSubString(field, "x\xC3\xA9\xA9y", 1, '\xA9'), 1);
  EXPECT_STREQ(field, "y");
}

TEST(FormattedString, Formats) {
  EXPECT_STREQ(FormattedString("%s%d", "R", 12), "R12");
  EXPECT_EQ(FormattedString("%0300d", 1).GetLength(), 300);
}
