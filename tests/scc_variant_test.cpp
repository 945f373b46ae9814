//===- tests/scc_variant_test.cpp - Variant conversions, equality and validation ===//
#include "scc_variant.h"

#include "plat_strings.h"
#include "sys_exception.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace {

/// What a conversion gives: its value as text, or "throws: " and the exception's text.
template <class T>
std::string convert(SCC_Variant const &value) {
  try {
    T const result = value;
    if constexpr (std::is_same<T, SYS_String>::value) {
      return std::string(result);
    } else {
      return std::to_string(result);
    }
  } catch (SYS_Exception const &e) {
    return "throws: " + std::string(e.GetText());
  }
}

/// The host's texts for the variant while the fixture lives; a "%" in them is text.
struct VariantTexts : ::testing::Test {
  void SetUp() override {
    PLAT_StringEntry const texts[] = {
        {45062, "not a number (%s)"}, {45063, "out of range 100%"}, {45064, "must lie in %c%g..%.1f%c, not %d%s"}};
    ASSERT_EQ(PLAT_RegisterStrings(texts, 3), 1);
  }
  void TearDown() override { PLAT_RegisterStrings(nullptr, 0); }
};

/// A convertor between millimetres (shown) and mils (tested): 1 mm = 1000/25.4 mil.
struct MillimetreConvertor : SCC_Convertor {
  explicit MillimetreConvertor(int *destroyed = nullptr) : destroyed(destroyed) {}
  ~MillimetreConvertor() override {
    if (destroyed != nullptr) ++*destroyed;
  }
  SCC_Variant Convert(SCC_Variant value, int direction) override {
    double const mm = value;
    return direction == 1 ? SCC_Variant(mm / 0.0254) : SCC_Variant(mm * 0.0254);
  }
  int *destroyed;
};

}  // namespace

// A double becomes a long when its truncated value lies in the 32-bit range; the
// test is made after truncation, and NaN and infinities fail.
TEST_F(VariantTexts, LongFromDoubleAfterTruncation) {
  double const nan = std::numeric_limits<double>::quiet_NaN();
  double const inf = std::numeric_limits<double>::infinity();
  struct Case { double value; char const *expected; } cases[] = {
      {2.9, "2"}, {-2.9, "-2"}, {2147483647.9, "2147483647"}, {-2147483648.9, "-2147483648"},
      {2147483648.0, "throws: out of range 100%"}, {-2147483649.0, "throws: out of range 100%"},
      {3.0e9, "throws: out of range 100%"}, {nan, "throws: out of range 100%"}, {-inf, "throws: out of range 100%"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.value);
    EXPECT_EQ(convert<long>(SCC_Variant(c.value)), c.expected);
  }
}

// A string is read by strtod between blanks; anything else left over is no number.
TEST_F(VariantTexts, StringsReadAsNumbers) {
  struct Case { char const *text; char const *asDouble, *asLong; } cases[] = {
      {" 12.5 ", "12.500000", "12"}, {"\t-3\t", "-3.000000", "-3"}, {"", "0.000000", "0"}, {" \t ", "0.000000", "0"},
      {"1e3", "1000.000000", "1000"}, {"12x", "throws: not a number (%s)", "throws: not a number (%s)"},
      {"12 x", "throws: not a number (%s)", "throws: not a number (%s)"}, {"x", "throws: not a number (%s)", "throws: not a number (%s)"},
      {" 5\n", "throws: not a number (%s)", "throws: not a number (%s)"}, {"3e9", "3000000000.000000", "throws: out of range 100%"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(convert<double>(SCC_Variant(c.text)), c.asDouble);
    EXPECT_EQ(convert<long>(SCC_Variant(c.text)), c.asLong);
  }
  // Bytes after an embedded NUL are left over too.
  EXPECT_EQ(convert<double>(SCC_Variant(SYS_String("7\0" "1", 3))), "throws: not a number (%s)");
}

// Without the host's texts a failure still says what went wrong.
TEST(Variant, FailuresWithoutHostTexts) {
  EXPECT_EQ(convert<double>(SCC_Variant("abc")), "throws: The text is not a number.");
  EXPECT_EQ(convert<long>(SCC_Variant(1e10)), "throws: The number is out of range.");
  SCC_Variant value(20);
  EXPECT_EQ(value.Validate("[0,10)", nullptr), 0);
  EXPECT_EQ(std::string(SYS_String(value)), "The value must lie within [0, 10).");
}

// Numbers as text: "%d" and "%f" with "." whatever the locale; empty is the empty text.
TEST(Variant, NumbersAsText) {
  EXPECT_EQ(convert<SYS_String>(SCC_Variant(7)), "7");
  EXPECT_EQ(convert<SYS_String>(SCC_Variant(INT_MIN)), "-2147483648");
  EXPECT_EQ(convert<SYS_String>(SCC_Variant(0.5)), "0.500000");
  EXPECT_EQ(convert<SYS_String>(SCC_Variant(-0.0)), "-0.000000");
  EXPECT_EQ(convert<SYS_String>(SCC_Variant()), "");
  EXPECT_EQ(convert<double>(SCC_Variant()), "0.000000");
  EXPECT_EQ(convert<long>(SCC_Variant()), "0");
  // The digits are printf's, ties and the largest magnitudes included.
  std::mt19937_64 random(17);
  double const special[] = {0.0000005, 0.0000015, 2.5e-7, 1e300, -1.7976931348623157e308, 1e-320,
                            std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()};
  auto expectPrintf = [](double value) {
    char printed[400];
    std::snprintf(printed, sizeof printed, "%f", value);
    EXPECT_EQ(convert<SYS_String>(SCC_Variant(value)), printed) << value;
  };
  for (double value : special) expectPrintf(value);
  for (int k = 0; k < 2000; ++k) {
    std::uint64_t const bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    expectPrintf(k % 2 == 0 ? value : std::ldexp(static_cast<double>(bits >> 11), -int(bits % 60)));
  }
}

// A long beyond 32 bits (only on LP64) is kept as a double and does not read back as long.
TEST_F(VariantTexts, LongBeyondThirtyTwoBits) {
  if (sizeof(long) == 4) GTEST_SKIP() << "a long cannot exceed 32 bits here";
  SCC_Variant const big(static_cast<long>(static_cast<long long>(1) << 40));
  EXPECT_EQ(big.GetType(), SCC_Variant::VT_Double);
  EXPECT_EQ(convert<double>(big), "1099511627776.000000");
  EXPECT_EQ(convert<long>(big), "throws: out of range 100%");
  EXPECT_EQ(SCC_Variant(static_cast<long>(INT_MIN)).GetType(), SCC_Variant::VT_Long);
}

// Equality compares by the superior type; empty equals nothing.
TEST(Variant, EqualityBySuperiorType) {
  struct Case { SCC_Variant a, b; int equal; char const *name; } cases[] = {
      {SCC_Variant(1), SCC_Variant(1.0), 1, "long and double"},
      {SCC_Variant(2), SCC_Variant(2.5), 0, "a long is not truncated to compare"},
      {SCC_Variant(2), SCC_Variant("2"), 1, "\"2\" and \"2\""},
      {SCC_Variant(2.0), SCC_Variant("2"), 0, "\"2.000000\" and \"2\""},
      {SCC_Variant("abc"), SCC_Variant(SYS_String("abc")), 1, "strings"},
      {SCC_Variant("abc"), SCC_Variant("abd"), 0, "different strings"},
      {SCC_Variant("12x"), SCC_Variant(5), 0, "a non-number string does not throw"},
      {SCC_Variant(), SCC_Variant(), 0, "two empties"},
      {SCC_Variant(), SCC_Variant(0), 0, "empty and zero"},
      {SCC_Variant(""), SCC_Variant(), 0, "empty text and empty"},
      {SCC_Variant(std::nan("")), SCC_Variant(std::nan("")), 0, "NaN"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.a == c.b, c.equal);
    EXPECT_EQ(c.b == c.a, c.equal);
    EXPECT_EQ(c.a != c.b, !c.equal);
  }
}

// Assignment, copies and Clear give exactly the value, self-assignment included.
TEST(Variant, AssignmentAndClear) {
  SCC_Variant value("text");
  value = SCC_Variant(2.5);
  EXPECT_EQ(value.GetType(), SCC_Variant::VT_Double);
  EXPECT_EQ(convert<SYS_String>(value), "2.500000");
  SCC_Variant &self = value;
  value = self;
  EXPECT_EQ(convert<double>(value), "2.500000");
  SCC_Variant copy(value);
  value.Clear();
  EXPECT_TRUE(value.IsEmpty());
  EXPECT_EQ(convert<SYS_String>(value), "");
  EXPECT_EQ(copy == SCC_Variant(2.5), 1);
  SCC_Variant const null(static_cast<char const *>(nullptr));
  EXPECT_EQ(null.GetType(), SCC_Variant::VT_String);
  EXPECT_EQ(convert<SYS_String>(null), "");
}

// Ranges test the value's double against open or closed ends; a failure puts the host's
// text, filled with the brackets and bounds, into the variant.
TEST_F(VariantTexts, RangeValidation) {
  struct Case { SCC_Variant value; char const *validation; int passes; char const *after; } cases[] = {
      {SCC_Variant(0), "[0 , 10)", 1, "0"},
      {SCC_Variant(10), "[0 , 10)", 0, "must lie in [0..10.0), not %d%s"},
      {SCC_Variant(0), "(0 , 10]", 0, "must lie in (0..10.0], not %d%s"},
      {SCC_Variant(10), "(0,10]", 1, "10"},
      {SCC_Variant(" 9.5 "), "( 0 ,10 )", 1, " 9.5 "},
      {SCC_Variant(-0.5), "[-1e0,-0.5]", 1, "-0.500000"},
      {SCC_Variant("12x"), "[0,100]", 0, "must lie in [0..100.0], not %d%s"},
      {SCC_Variant(std::nan("")), "[0,1]", 0, "must lie in [0..1.0], not %d%s"},
      {SCC_Variant(10), "[\t0 ,\t10 ]", 1, "10"},
      {SCC_Variant(5), "[0;10]", 1, "5"},  // no range and no length: nothing to test
      {SCC_Variant(5), "[0,]", 1, "5"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.validation);
    SCC_Variant value = c.value;
    EXPECT_EQ(value.Validate(c.validation, nullptr), c.passes);
    EXPECT_EQ(convert<SYS_String>(value), c.after);
    EXPECT_EQ(value.GetType(), c.passes ? c.value.GetType() : SCC_Variant::VT_String);
  }
}

// The range message fills the host's placeholders of the right kind, with their flags,
// widths and precisions; any other "%" stands as written.
TEST(Variant, RangeMessagePlaceholders) {
  struct Case { char const *text, *expected; } cases[] = {
      {"%-3c|%+.3e|%#g|%5c", "[  |+0.000e+00|10.0000|    )"},
      {"%c%.123g,%010.2f%lc", "[0,0000010.00)"},
      {"%1000c %c%G %d %E%s", "%1000c [0 %d 1.000000E+01%s"},
      {"%hhc%Lf %hf%%%", "[0.000000 10.000000%%"},
      {"%x%c%a", "%x[0x0p+0"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    PLAT_StringEntry const texts[] = {{45064, c.text}};
    ASSERT_EQ(PLAT_RegisterStrings(texts, 1), 1);
    SCC_Variant value(20);
    EXPECT_EQ(value.Validate("[0,10)", nullptr), 0);
    EXPECT_EQ(convert<SYS_String>(value), c.expected);
  }
  PLAT_RegisterStrings(nullptr, 0);
}

// A number is a maximum length in bytes of the string; numbers have no string value.
TEST(Variant, LengthValidation) {
  struct Case { SCC_Variant value; char const *validation; int passes; } cases[] = {
      {SCC_Variant("abcde"), "5", 1}, {SCC_Variant("abcdef"), "5", 0}, {SCC_Variant("\xC2\xB5m"), "2", 0},
      {SCC_Variant(123456789), "5", 1}, {SCC_Variant(1.5), " +0", 1}, {SCC_Variant(""), "-1", 0},
      {SCC_Variant("abc"), "99999999999", 1}, {SCC_Variant("abc"), "", 1}, {SCC_Variant(), "0", 1},
      {SCC_Variant("abcdefghijkl"), "12", 1}, {SCC_Variant("abcdefghijklm"), "12", 0},
      {SCC_Variant("abcdefghij"), "9", 0}, {SCC_Variant("ab"), " 1", 0}, {SCC_Variant("ab"), "\t1x", 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.validation);
    SCC_Variant value = c.value;
    EXPECT_EQ(value.Validate(c.validation, nullptr), c.passes);
    EXPECT_EQ(value == c.value, c.value.IsEmpty() ? 0 : 1);  // left unchanged
  }
}

// With "#" the value is tested converted (direction 1) and the bounds are shown
// converted back (direction 0); without "#" the convertor is not used.
TEST_F(VariantTexts, ValidationThroughConvertor) {
  MillimetreConvertor convertor;
  SCC_Variant inside(0.254);  // 10 mil
  EXPECT_EQ(inside.Validate("#[5,10]", &convertor), 1);
  SCC_Variant outside(0.3);
  EXPECT_EQ(outside.Validate("#[5,10]", &convertor), 0);
  EXPECT_EQ(convert<SYS_String>(outside), "must lie in [0.127..0.3], not %d%s");
  SCC_Variant plain(0.3);
  EXPECT_EQ(plain.Validate("[5,10]", &convertor), 0);
  EXPECT_EQ(convert<SYS_String>(plain), "must lie in [5..10.0], not %d%s");
  SCC_Variant unconverted(7);
  EXPECT_EQ(unconverted.Validate("#[5,10]", nullptr), 1);
  // A value the convertor cannot read fails with the message instead of throwing.
  SCC_Variant text("wide");
  EXPECT_EQ(text.Validate("#[5,10]", &convertor), 0);
  EXPECT_EQ(convert<SYS_String>(text), "must lie in [0.127..0.3], not %d%s");
}

// The last holder of a convertor made with new deletes it through the base.
TEST(Variant, ConvertorFreedByLastHolder) {
  int destroyed = 0;
  {
    SCC_SharedPointer<SCC_Convertor> first(new MillimetreConvertor(&destroyed));
    SCC_SharedPointer<SCC_Convertor> const second(first);
    first.Release();
    EXPECT_EQ(destroyed, 0);
  }
  EXPECT_EQ(destroyed, 1);
}
