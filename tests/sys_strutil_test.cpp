//===- tests/sys_strutil_test.cpp - Number recognisers, natural order ---===//
#include "sys_strutil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

namespace {
int sign(int v) { return (v > 0) - (v < 0); }
}  // namespace

// Doubles: signs are skipped anywhere, one point before the exponent, which needs a digit; plain mode stops at "e".
TEST(NumberRecognisers, Doubles) {
  struct Case { char const *text; int isDouble, isDecDouble; } cases[] = {
      {"1.5e10", 1, 0}, {"-.5", 1, 1}, {"5.", 1, 1}, {"1-2", 1, 1}, {"+-3", 1, 1}, {".", 0, 0}, {"e5", 0, 0},
      {"1e", 0, 0}, {"1.2.3", 0, 0}, {"", 0, 0}, {"1e5e", 0, 0}, {"1e.5", 0, 0}, {"-", 0, 0}, {"12", 1, 1},
      {"1E-3", 1, 0}, {"1e+-2", 1, 0}, {"+", 0, 0}, {" 1", 0, 0}, {"1 ", 0, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(isdouble(c.text, 0), c.isDouble);
    EXPECT_EQ(isdecdouble(c.text), c.isDecDouble);
  }
}

// The scanners return where the scan stopped inside the text, or null when no number starts it.
TEST(NumberRecognisers, ScanEnds) {
  char const exponent[] = "1.5e10", twoPoints[] = "1.2.3", exponentPoint[] = "2e3.5", multibyte[] = "12\xC3\xA9",
             hex[] = "0x1F", zeroX[] = "0xg";
  struct Case { char const *name, *text, *end; int used; } cases[] = {  // used -1: null
      {"plain mode stops at e", exponent, getdouble(exponent, 1), 3}, {"exponent", exponent, getdouble(exponent, 0), 6},
      {"no digit", "e5", getdouble("e5", 1), -1}, {"null", nullptr, getdouble(nullptr, 0), -1},
      {"second point", twoPoints, getdouble(twoPoints, 0), 3},
      {"point in exponent", exponentPoint, getdouble(exponentPoint, 0), 3},
      {"multibyte double", multibyte, getdouble(multibyte, 0), 2},
      {"multibyte integer", multibyte, getinteger(multibyte, 1), 2},
      {"hexadecimal in octal", hex, getinteger(hex, 3), 1}, {"empty integer", "", getinteger("", 1), -1},
      {"null integer", nullptr, getinteger(nullptr, 1), -1}, {"0x without digits", zeroX, getinteger(zeroX, 0), 1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.end, c.used < 0 ? nullptr : c.text + c.used);
  }
}

// Integers count digits of the chosen base; signs are skipped anywhere; base 0 picks it by prefix ("0x", "0", else 10).
TEST(NumberRecognisers, Integers) {
  struct Case { char const *text; int dec, hex, oct, any; } cases[] = {
      {"-42", 1, 1, 1, 1}, {"4-2", 1, 1, 1, 1}, {"4.2", 0, 0, 0, 0}, {"x", 0, 0, 0, 0}, {"", 0, 0, 0, 0},
      {"1aF", 0, 1, 0, 0}, {"1g", 0, 0, 0, 0}, {"17", 1, 1, 1, 1}, {"18", 1, 1, 0, 1}, {"0x1F", 0, 0, 0, 1},
      {"--", 0, 0, 0, 0}, {"+9+", 1, 1, 0, 1}, {"-0X1f", 0, 0, 0, 1}, {"017", 1, 1, 1, 1}, {"018", 1, 1, 0, 0},
      {"1F", 0, 1, 0, 0}, {"0x", 0, 0, 0, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(isdecinteger(c.text), c.dec);
    EXPECT_EQ(ishexinteger(c.text), c.hex);
    EXPECT_EQ(isoctinteger(c.text), c.oct);
    EXPECT_EQ(isinteger(c.text, 0), c.any);
  }
}

// Natural order: digit runs compare by value; "$" sorts after everything; the rest by unsigned code; both ways.
TEST(NaturalCompare, Order) {
  struct Case { char const *a, *b; int sign; } cases[] = {
      {"file9", "file10", -1}, {"a007b", "a7b", 0}, {"abc", "abd", -1}, {"ab", "abc", -1}, {"ab$", "abc", 1},
      {"ab$", "ab", 1}, {"ab$", "ab$", 0}, {"R9", "R10", -1}, {"R10", "R100", -1}, {"C1.2", "C1.10", -1}, {"", "", 0},
      {"", "a", -1}, {"U2a", "U2", 1}, {"7", "07", 0},
      {"a", "\xC3\xA9", -1},  // unsigned bytes: 0xC3 is above every ASCII byte
      {"\xC3\xA9", "\xC3\xA3", 1},  // same lead byte, the whole character decides
      {"x99999999999999999999", "x100000000000000000000", -1},  // beyond 32 bits
      {"x0000000000000000000001", "x2", -1}, {"x4294967296", "x4294967295", 1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string(c.a) + " vs " + c.b);
    EXPECT_EQ(sign(_tcsnumcmp(c.a, c.b)), c.sign);
    EXPECT_EQ(sign(_tcsnumcmp(c.b, c.a)), -c.sign);
  }
}

// Where atoi is defined digit runs compare as atoi reads them: random texts against a model built on atoi.
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

// Fields count from 0, empty ones too; a missing one gives "", null text keeps it; 0x80+ separators are whole.
// FormattedString gives the printf text, however long.
TEST(StringUtilities, FieldsAndFormattedText) {
  EXPECT_STREQ(FormattedString("%s%d", "R", 12), "R12");
  EXPECT_EQ(FormattedString("%0300d", 1).GetLength(), 300);
  struct Case { char const *text; int index; char separator; int result; char const *field; } cases[] = {
      {"a,b,,c", 0, ',', 1, "a"}, {"a,b,,c", 1, ',', 1, "b"}, {"a,b,,c", 2, ',', 1, ""}, {"a,b,,c", 3, ',', 1, "c"},
      {"a,b,,c", 4, ',', 0, ""}, {"a,b,,c", -1, ',', 0, ""}, {"a,", 1, ',', 1, ""}, {nullptr, 0, ',', 0, "old"},
      {"x\xC3\xA9\xA9y", 1, '\xA9', 1, "y"},  // the 0xA9 inside "é" is a trail byte
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string(c.text != nullptr ? c.text : "(null)") + " field " + std::to_string(c.index));
    SYS_String field("old");
    EXPECT_EQ(SysExtractSubString(field, c.text, c.index, c.separator), c.result);
    EXPECT_STREQ(field, c.field);
  }
}

