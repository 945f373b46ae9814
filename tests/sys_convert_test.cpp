//===- tests/sys_convert_test.cpp - Unit conversion, parsing, formatting ===//
#include "sys_convert.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <locale.h>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr long kSentinel = 777;
constexpr long kFactors[] = {38100, 1500000, 38100000, 1500};
constexpr int kPrecisions[] = {2, 5, 5, 2};
char const *const kUnitNames[] = {"mil", "mm", "inch", "um"};
constexpr SYS_UnitType mil = SYS_UnitMil, mm = SYS_UnitMillimetre, inch = SYS_UnitInch, um = SYS_UnitMicrometre;

SYS_Convert converter(SYS_UnitType type, int zeroTrim = 1) {
  SYS_Convert c(type);
  c.SetZeroTrimMode(zeroTrim);
  return c;
}

std::string text(SYS_String const &s) { return std::string(static_cast<char const *>(s)); }

/// A parser returns `ok` and stores `value`, or on failure leaves its out-value untouched.
template <class T, class Parse> void expectParse(Parse parse, char const *text, int ok, T value) {
  SCOPED_TRACE(std::string("\"") + (text != nullptr ? text : "(null)") + "\"");
  T got = kSentinel;
  EXPECT_EQ(parse(text, &got), ok);
  EXPECT_EQ(got, ok ? value : T(kSentinel));
}

}  // namespace

// Present only in sanitizer builds: the C library keeps the LOCPATH list it reads for
// newlocale without freeing it, which is not ours to report.
extern "C" void __lsan_disable() __attribute__((weak));
extern "C" void __lsan_enable() __attribute__((weak));

// Each unit is its number of base units; defaults are 2, 5, 5, 2 decimals, 3 for angles, zero trimming on.
TEST(Convert, UnitSizesAndDefaults) {
  for (int t = 0; t < SYS_UnitTypeCount; ++t) {
    SCOPED_TRACE(kUnitNames[t]);
    SYS_Convert const c(static_cast<SYS_UnitType>(t));
    EXPECT_EQ(c.User2Base(1.0), kFactors[t]);
    EXPECT_EQ(c.User2BaseDouble(2.5), 2.5 * kFactors[t]);
    EXPECT_EQ(c.Base2User(kFactors[t] * 3L), 3.0);
    EXPECT_EQ(c.Base2User(static_cast<double>(kFactors[t]) / 2), 0.5);
    EXPECT_EQ(c.GetUnitPrecision(), kPrecisions[t]);
    EXPECT_EQ(c.GetAnglePrecision(), 3);
    EXPECT_EQ(c.IsZeroTrimMode(), 1);
  }
}

// Each unit keeps its own precision across unit changes; copies carry every setting; SetData resets them all.
TEST(Convert, SettingsPerUnitAndReset) {
  SYS_Convert c(SYS_UnitMillimetre, SYS_Point(1, 2));
  c.SetUnitPrecision(3);
  c.SetUnitType(SYS_UnitInch);
  EXPECT_EQ(c.GetUnitPrecision(), 5);
  c.SetUnitPrecision(1);
  c.SetUnitType(SYS_UnitMillimetre);
  EXPECT_EQ(c.GetUnitPrecision(), 3);
  c.SetAnglePrecision(0);
  c.SetZeroTrimMode(0);
  SYS_Convert const copy(c);
  EXPECT_EQ(text(copy.Base2Str(2250000L)), "1.500");
  EXPECT_EQ(text(copy.Angle2Str(162000000L)), "90");
  c.SetData(SYS_UnitInch, SYS_Point(0, 0));
  EXPECT_EQ(c.GetUnitPrecision(), 5);
  c.SetUnitType(SYS_UnitMillimetre);
  EXPECT_EQ(c.GetUnitPrecision(), 5);
  EXPECT_EQ(c.GetAnglePrecision(), 3);
  EXPECT_EQ(c.IsZeroTrimMode(), 1);
  EXPECT_EQ(c.GetOrigin(), SYS_Point(0, 0));
}

// A value that is not a unit type is ignored; precisions stay within 0 to MaxPrecision, so texts fit BufferSize.
TEST(Convert, BadSettingsAreContained) {
  SYS_Convert c(static_cast<SYS_UnitType>(9));
  EXPECT_EQ(c.GetUnitType(), SYS_UnitMil);
  c.SetUnitType(SYS_UnitInch);
  c.SetUnitType(static_cast<SYS_UnitType>(-1));
  c.SetData(static_cast<SYS_UnitType>(4), SYS_Point(0, 0));
  EXPECT_EQ(c.GetUnitType(), SYS_UnitInch);
  EXPECT_STREQ(SYS_Convert::GetUnitName(static_cast<SYS_UnitType>(4)), "");
  EXPECT_STREQ(SYS_Convert::GetUnitName(static_cast<SYS_UnitType>(-1)), "");
  c.SetUnitPrecision(-3);
  EXPECT_EQ(c.GetUnitPrecision(), 0);
  c.SetUnitPrecision(1000);
  EXPECT_EQ(c.GetUnitPrecision(), SYS_Convert::MaxPrecision);
  c.SetAnglePrecision(INT_MAX);
  EXPECT_EQ(c.GetAnglePrecision(), SYS_Convert::MaxPrecision);
  c.SetUnitType(SYS_UnitMicrometre);
  c.SetUnitPrecision(SYS_Convert::MaxPrecision);
  c.SetZeroTrimMode(0);
  char buffer[SYS_Convert::BufferSize + 8];
  std::memset(buffer, 'x', sizeof buffer);
  c.Base2Str(buffer, INT32_MIN);  // the longest text: the most negative micrometre value
  EXPECT_LT(std::strlen(buffer), static_cast<size_t>(SYS_Convert::BufferSize));
  EXPECT_EQ(buffer[SYS_Convert::BufferSize], 'x');
  EXPECT_EQ(std::string(buffer).substr(0, 12), "-1431655.765");
  c.Angle2Str(buffer, INT32_MIN);
  EXPECT_LT(std::strlen(buffer), static_cast<size_t>(SYS_Convert::BufferSize));
}

// User2Base rounds half away from zero; beyond 2,147,483,647 / f (a double quotient), NaN and infinity overflow.
TEST(Convert, User2BaseRoundsAndOverflows) {
  long const overflow = SYS_Convert::OverflowValue;
  struct Case { char const *name; SYS_UnitType unit; double user; long base; } cases[] = {
      {"half up", um, 0.001, 2}, {"half down", um, -0.001, -2}, {"below half", um, 0.0003, 0},
      {"below half negative", um, -0.0003, 0}, {"largest micrometre", um, 1431655.76, 2147483640},
      {"smallest micrometre", um, -1431655.76, -2147483640}, {"past the largest", um, 1431655.77, overflow},
      {"past the smallest", um, -1431655.77, overflow}, {"inch fits", inch, 56.36, 2147316000},
      {"inch overflows", inch, 56.37, overflow}, {"at the quotient", mil, 2147483647.0 / 38100, 2147483647},
      {"at minus the quotient", mil, -2147483647.0 / 38100, -2147483647}, {"infinity", mil, HUGE_VAL, overflow},
      {"not a number", mil, std::nan(""), overflow},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SYS_Convert(c.unit).User2Base(c.user), c.base);
  }
}

// Base values are 32-bit: on LP64 the bits above are dropped, as the 32-bit model never has them.
TEST(Convert, BaseValuesAre32Bit) {
  SYS_Convert const um(SYS_UnitMicrometre);
  if (sizeof(long) == 8) {
    long const wide = static_cast<long>((INT64_C(1) << 32) + 1500);
    EXPECT_EQ(um.Base2User(wide), 1.0);
    EXPECT_EQ(text(um.Base2Str(wide)), "1");
    EXPECT_EQ(text(um.Angle2Str(static_cast<long>((INT64_C(1) << 32) + 162000000))), "90");
  }
  EXPECT_EQ(um.Base2User(INT32_MIN), -2147483648.0 / 1500);
}

// Str2Double gives the very double strtod gives, sign of zero included, on random decimal texts of every shape.
TEST(Convert, Str2DoubleAgreesWithStrtod) {
  std::mt19937 rng(5);
  auto digits = [&](int most) {
    std::string d(rng() % (most + 1), '0');
    for (char &c : d) c = static_cast<char>('0' + rng() % 10);
    if (!d.empty() && rng() % 3 == 0) d[0] = '0';
    return d;
  };
  for (int i = 0; i < 20000; ++i) {
    std::string t;
    if (rng() % 4 == 0) t += " ";
    if (rng() % 3 == 0) t += rng() % 2 ? "-" : "+";
    t += digits(i % 10 == 0 ? 24 : 9);  // short texts are read without strtod, long ones with it
    if (rng() % 2) t += "." + digits(i % 10 == 1 ? 24 : 8);
    if (rng() % 5 == 0) t += std::string(rng() % 2 ? "e" : "E") + (rng() % 2 ? "-" : "") + digits(3);
    SCOPED_TRACE(t);
    errno = 0;
    char *end;
    double const expected = std::strtod(t.c_str(), &end);
    int const expectedOk = *end == '\0' && errno != ERANGE ? 1 : 0;
    double value = kSentinel;
    ASSERT_EQ(SYS_Convert::Str2Double(t.c_str(), &value), expectedOk);
    ASSERT_TRUE(!expectedOk || std::memcmp(&value, &expected, sizeof value) == 0) << value << " vs " << expected;
  }
  errno = 0;
}

// A range error left in errno is cleared before parsing, any other code stays; this parse's range error is left.
TEST(Convert, ParsingClearsOnlyTheRangeError) {
  struct Case { int before; bool isLong; char const *text; int ok, after; } cases[] = {
      {ERANGE, false, "1", 1, 0}, {ERANGE, true, "x", 0, 0}, {ERANGE, true, "5", 1, 0}, {EINVAL, false, "1", 1, EINVAL},
      {EINVAL, false, "1e999", 0, ERANGE}, {0, true, "4294967296", 0, ERANGE},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    double d;
    long l;
    errno = c.before;
    EXPECT_EQ(c.isLong ? SYS_Convert::Str2Long(c.text, &l) : SYS_Convert::Str2Double(c.text, &d), c.ok);
    EXPECT_EQ(errno, c.after);
  }
  errno = 0;
}

// The parsers read the whole text after leading blanks; "" and null give 0, blanks alone and any trailing text fail.
// Str2Double reads decimal text only; Str2Long base 10 within the 32-bit range, the same in both data models;
// Str2Base user units up to the coordinate limit itself (28 inches) but nothing beyond; Str2Measure refuses negative
// numbers and the overflow value but has no coordinate limit; Str2Angle multiplies degrees by 1,800,000 and
// truncates toward zero, with no range check.
TEST(Convert, ParsersReadTheWholeText) {
  enum Parser { Double, Long, BaseInch, BaseMm, BaseMil, MeasureInch, Angle };
  char const *const names[] = {"Str2Double", "Str2Long",    "Str2Base inch", "Str2Base mm",
                               "Str2Base mil", "Str2Measure", "Str2Angle"};
  int (*const parsers[])(char const *, long *) = {
      nullptr, SYS_Convert::Str2Long, [](char const *t, long *v) { return SYS_Convert(inch).Str2Base(t, v); },
      [](char const *t, long *v) { return SYS_Convert(mm).Str2Base(t, v); },
      [](char const *t, long *v) { return SYS_Convert(mil).Str2Base(t, v); },
      [](char const *t, long *v) { return SYS_Convert(inch).Str2Measure(t, v); }, SYS_Convert::Str2Angle,
  };
  struct Case { Parser parser; char const *text; int ok; double value; } const cases[] = {
      {Double, "", 1, 0}, {Double, nullptr, 1, 0}, {Double, "\t\n 3", 1, 3}, {Double, "1.5 ", 0, 0},
      {Double, "12abc", 0, 0}, {Double, "   ", 0, 0}, {Double, "-", 0, 0}, {Double, "1e", 0, 0}, {Double, "1e+", 0, 0},
      {Double, "0x10", 0, 0}, {Double, "inf", 0, 0}, {Double, "nan", 0, 0}, {Double, "1,5", 0, 0},
      {Double, "1.2.3", 0, 0}, {Double, "1e400", 0, 0}, {Double, "-1e400", 0, 0}, {Double, "1e-400", 0, 0},
      {Double, "- 1", 0, 0}, {Double, ".5", 1, 0.5}, {Double, "5.", 1, 5}, {Double, "+2", 1, 2},
      {Double, "1E-2", 1, 0.01}, {Long, "", 1, 0}, {Long, "12abc", 0, 0}, {Long, " +7", 1, 7}, {Long, "7 ", 0, 0},
      {Long, "-0", 1, 0}, {Long, "1.0", 0, 0}, {Long, "0x1F", 0, 0}, {Long, "-", 0, 0}, {Long, "   ", 0, 0},
      {Long, "2147483647", 1, 2147483647}, {Long, "2147483648", 0, 0}, {Long, "-2147483648", 1, -2147483648.0},
      {Long, "-2147483649", 0, 0}, {Long, "99999999999999999999", 0, 0}, {Long, "000000000000000000042", 1, 42},
      {BaseInch, "1", 1, 38100000}, {BaseInch, "28", 1, 1066800000}, {BaseInch, "-28", 1, -1066800000},
      {BaseInch, "28.0001", 0, 0}, {BaseInch, "57", 0, 0},  // the overflow value
      {BaseMm, "711.2", 1, 1066800000}, {BaseMm, "711.2001", 0, 0}, {BaseMil, "", 1, 0}, {BaseMil, "0.00001", 1, 0},
      {BaseMil, "1 ", 0, 0}, {MeasureInch, "-1", 0, 0}, {MeasureInch, "0", 1, 0}, {MeasureInch, "-0", 1, 0},
      {MeasureInch, "-0.0000001", 0, 0}, {MeasureInch, "50", 1, 1905000000}, {MeasureInch, "100", 0, 0},
      {MeasureInch, "", 1, 0}, {Angle, "90", 1, 162000000}, {Angle, "0.0000001", 1, 0}, {Angle, "-0.0000001", 1, 0},
      {Angle, "-45", 1, -81000000}, {Angle, "0.1", 1, 180000}, {Angle, "720", 1, 1296000000},
      {Angle, "0.00000099", 1, 1}, {Angle, "-0.00000099", 1, -1}, {Angle, "1193.05", 1, -2147483648.0},
      {Angle, "abc", 0, 0}, {Angle, "", 1, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(names[c.parser]);
    if (c.parser == Double) expectParse(SYS_Convert::Str2Double, c.text, c.ok, c.value);
    else expectParse(parsers[c.parser], c.text, c.ok, static_cast<long>(c.value));
  }
  EXPECT_EQ(SYS_Convert::Str2Double("4", nullptr), 1);
  errno = 0;
}

// Trimming removes trailing zeros after a decimal point, then a point left at the end; no point, no change.
TEST(Convert, TrimStrNumber) {
  struct Case { char const *in, *out; } cases[] = {
      {"1.500", "1.5"}, {"2.000", "2"}, {"0.0", "0"}, {"120", "120"}, {"", ""}, {"-0.00000", "-0"}, {"100.", "100"},
      {"10", "10"}, {"1.05", "1.05"}, {"-2.50", "-2.5"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.in);
    char buffer[32];
    std::strcpy(buffer, c.in);
    EXPECT_EQ(SYS_Convert::TrimStrNumber(buffer), buffer);
    EXPECT_STREQ(buffer, c.out);
  }
  EXPECT_EQ(SYS_Convert::TrimStrNumber(nullptr), nullptr);
}

// Texts are "%.*f" at the precision, trimmed, "-0" kept; angles are × 5.555555555555555e-07, a hair under 1/1,800,000.
TEST(Convert, Base2StrAndAngle2StrFormat) {
  int const angle = -1;  // the unit of a row that formats an angle
  struct Case { char const *name; int unit, trim, precision; long base; char const *text; } cases[] = {
      {"1 mm", mm, 1, -1, 1500000, "1"}, {"1.5 mm", mm, 1, -1, 2250000, "1.5"},  // -1: default precision
      {"-1 base unit", mm, 1, -1, -1, "-0"}, {"-1 base unit untrimmed", mm, 0, -1, -1, "-0.00000"},
      {"+1 base unit", mm, 1, -1, 1, "0"}, {"zero", mm, 1, -1, 0, "0"}, {"1 mil untrimmed", mil, 0, -1, 38100, "1.00"},
      {"1 mil", mil, 1, -1, 38100, "1"}, {"rounding up", mil, 1, -1, 38100 + 191, "1.01"},
      {"rounding down", mil, 1, -1, 38100 + 190, "1"}, {"tie to even, down", mm, 1, 0, 3750000, "2"},
      {"tie to even, up", mm, 1, 0, 5250000, "4"}, {"negative tie to zero", mm, 1, 0, -750000, "-0"},
      {"no decimals, no point", mil, 1, 0, 3810000, "100"}, {"integer zeros stay", inch, 1, -1, 381000000, "10"},
      {"largest", um, 0, -1, INT32_MAX, "1431655.76"}, {"most negative", um, 0, -1, INT32_MIN, "-1431655.77"},
      {"right angle", angle, 1, 3, 162000000, "90"}, {"right angle untrimmed", angle, 0, 3, 162000000, "90.000"},
      {"below the tie", angle, 1, 3, 2700, "0.001"}, {"below the tie at 45", angle, 0, 3, 81000900, "45.000"},
      {"above the tie", angle, 1, 3, 900, "0.001"}, {"minus one unit", angle, 1, 3, -1, "-0"},
      {"minus one unit untrimmed", angle, 0, 3, -1, "-0.000"}, {"no decimals", angle, 1, 0, 54900000, "30"},
      {"more decimals show the shortfall", angle, 0, 20, 2700, "0.00149999999999999981"},
      {"most negative angle", angle, 0, 2, INT32_MIN, "-1193.05"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    bool const isAngle = c.unit == angle;
    SYS_Convert conv = converter(isAngle ? mil : static_cast<SYS_UnitType>(c.unit), c.trim);
    if (isAngle) conv.SetAnglePrecision(c.precision);
    else if (c.precision >= 0) conv.SetUnitPrecision(c.precision);
    char buffer[SYS_Convert::BufferSize];
    EXPECT_EQ(isAngle ? conv.Angle2Str(buffer, c.base) : conv.Base2Str(buffer, c.base), buffer);
    EXPECT_STREQ(buffer, c.text);
    EXPECT_EQ(text(isAngle ? conv.Angle2Str(c.base) : conv.Base2Str(c.base)), c.text);
  }
  EXPECT_EQ(SYS_Convert().Base2Str(nullptr, 5), nullptr);
  EXPECT_EQ(SYS_Convert().Angle2Str(nullptr, 5), nullptr);
}

// Coordinates are relative to the origin (32-bit differences), points "(x,y)"; prefix twins put the prefix first.
TEST(Convert, CoordinatesAndPoints) {
  SYS_Convert conv(SYS_UnitMicrometre, SYS_Point(100, 0));
  SYS_Convert wrap(SYS_UnitMicrometre, SYS_Point(1, -1));
  struct Case { SYS_String got; char const *text; } cases[] = {
      {conv.Point2String(SYS_Point(100, 200)), "(0,0.13)"}, {conv.Point2String("at ", {100, 200}), "at (0,0.13)"},
      {conv.CoordX2String(1600), "1"}, {conv.CoordY2String(1600), "1.07"}, {conv.CoordX2String("x=", 1600), "x=1"},
      {conv.CoordY2String("y=", -1500), "y=-1"}, {conv.Measure2String("w=", 1600), "w=1.07"},
      {conv.Measure2String(SYS_String(), 0), "0"}, {wrap.CoordX2String(INT32_MIN), "1431655.76"},
      {wrap.CoordY2String(INT32_MAX), "-1431655.77"},
  };
  for (auto const &c : cases) EXPECT_EQ(text(c.got), c.text);
  wrap.SetZeroTrimMode(0);
  EXPECT_EQ(text(wrap.Point2String(SYS_Point(INT32_MIN, INT32_MAX))), "(1431655.76,-1431655.77)");
}

// Every base value formats in each unit at its default precision and parses back within half a rounding step;
// angles at precision 3 parse back within half a step (900 units) plus what multiplying and truncating lose.
TEST(Convert, FormatParseRoundTrip) {
  std::mt19937 rng(2024);
  std::uniform_int_distribution<long> anyCoordinate(-1066800000L, 1066800000L), anyAngle(-648000000L, 648000000L);
  std::vector<long> values = {0, 1, -1, 7, -7, 190, 191, -190, -191, 1066800000L, -1066800000L,
                              1066799999L, 38100, -38100, 1500000, 750, -750, 749, -749};
  for (int i = 0; i < 3000; ++i) values.push_back(anyCoordinate(rng));
  for (int t = 0; t < SYS_UnitTypeCount; ++t) {
    for (int trim = 0; trim <= 1; ++trim) {
      SCOPED_TRACE(std::string(kUnitNames[t]) + (trim ? " trimmed" : " untrimmed"));
      SYS_Convert const conv = converter(static_cast<SYS_UnitType>(t), trim);
      double const step = kFactors[t] * std::pow(10.0, -kPrecisions[t]);
      for (long b : values) {
        SYS_String const s = conv.Base2Str(b);
        long parsed = kSentinel;
        ASSERT_EQ(conv.Str2Base(s, &parsed), 1) << b << " as " << text(s);
        ASSERT_LE(std::fabs(static_cast<double>(parsed) - b), step / 2 + 0.5) << b << " as " << text(s);
        ASSERT_TRUE(s[0] != '-' || b < 0) << text(s);  // a minus sign only for negative values
      }
    }
  }
  for (int i = 0; i < 3000; ++i) {
    long const a = i < 4 ? (i - 2) * 900L : anyAngle(rng);
    SYS_String const s = SYS_Convert().Angle2Str(a);
    long parsed = kSentinel;
    ASSERT_EQ(SYS_Convert::Str2Angle(s, &parsed), 1) << text(s);
    ASSERT_LE(std::labs(parsed - a), 902) << a << " as " << text(s);
  }
}

// With the grid of 1 every value, the extremes included, is aligned and stays as it is.
TEST(Convert, MinimumRoutingGrid) {
  SYS_Convert const conv;
  for (long v : {0L, 1L, -1L, 12345L, -2147483647L - 1, 2147483647L}) {
    EXPECT_EQ(conv.AlignToMinRoutingGrid(v), v);
    EXPECT_EQ(conv.IsAlignedToMinRoutingGrid(v), 1) << v;
  }
  EXPECT_EQ(conv.AlignToMinRoutingGrid(SYS_Point(INT32_MIN, INT32_MAX)), SYS_Point(INT32_MIN, INT32_MAX));
  EXPECT_EQ(conv.IsAlignedToMinRoutingGrid(SYS_Point(INT32_MIN, INT32_MAX)), 1);
}

// The unit list walks handles 1 to 4, standing for the types 0 to 3, each with its name; no unit, no name.
TEST(Convert, UnitTypeObjWalksTheFourUnits) {
  SYS_Convert::UnitTypeObj units;
  EXPECT_EQ(units.IsValid(), 0);
  EXPECT_STREQ(units.GetName(), "");
  std::vector<int> types;
  for (units.GetFirst(nullptr); units.IsValid(); units.GetNext()) {
    types.push_back(units.GetType());
    EXPECT_EQ(units.GetName(), SYS_Convert::GetUnitName(units.GetType()));
  }
  EXPECT_EQ(types, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(units.GetHandle(), 0);
  units.SetHandle(9, nullptr);
  EXPECT_STREQ(units.GetName(), "");
  EXPECT_EQ(SYS_Convert(mm).GetUnitName(), SYS_Convert::GetUnitName(mm));  // the current unit's
}

// Numbers are written and read with "." whatever the thread locale's decimal point ("," or several bytes).
TEST(Convert, DecimalPointIgnoresTheLocale) {
  // The locales are compiled for the test from the system's sources; where that fails the test is skipped.
  std::string pattern = testing::TempDir() + "bfc_locale_XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) GTEST_SKIP() << "no temporary directory";
  auto makeLocale = [&](char const *source) {
    std::string const command =
        std::string("localedef -i ") + source + " -f UTF-8 '" + pattern + "/" + source + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) == -1) return static_cast<locale_t>(nullptr);
    char const *const previous = std::getenv("LOCPATH");  // how the C library finds locales elsewhere
    std::string const saved = previous != nullptr ? previous : "";
    setenv("LOCPATH", pattern.c_str(), 1);
    if (__lsan_disable != nullptr) __lsan_disable();
    locale_t const locale = newlocale(LC_ALL_MASK, source, static_cast<locale_t>(nullptr));
    if (__lsan_enable != nullptr) __lsan_enable();
    previous != nullptr ? setenv("LOCPATH", saved.c_str(), 1) : unsetenv("LOCPATH");
    return locale;
  };
  struct Case { char const *source, *oneAndAHalf; } cases[] = {{"de_DE", "1,5"}, {"ps_AF", "1\xD9\xAB" "5"}};
  int tested = 0;
  for (auto const &c : cases) {
    SCOPED_TRACE(c.source);
    locale_t const locale = makeLocale(c.source);
    if (locale == static_cast<locale_t>(nullptr)) continue;
    uselocale(locale);
    char printed[16];
    std::snprintf(printed, sizeof printed, "%.1f", 1.5);
    if (std::strcmp(printed, c.oneAndAHalf) == 0) {
      ++tested;
      SYS_Convert const trimmed(mm), plain = converter(mm, 0);
      char buffer[SYS_Convert::BufferSize];
      EXPECT_EQ(text(trimmed.Base2Str(2250000L)) + " " + text(trimmed.Base2Str(-1L)) + " " +
                    text(trimmed.Point2String(SYS_Point(-1500000, 2250000))), "1.5 -0 (-1,1.5)");
      EXPECT_EQ(text(plain.Base2Str(2250000L)) + " " + text(plain.Angle2Str(162000000L)) + " " +
                    plain.Base2Str(buffer, INT32_MIN), "1.50000 90.000 -1431.65577");
      expectParse(SYS_Convert::Str2Double, "1.5", 1, 1.5);
      expectParse(SYS_Convert::Str2Double, "1.00000000000000000000001", 1, 1.0);  // read by strtod
      expectParse(SYS_Convert::Str2Double, "1,5", 0, 0.0);
    }
    uselocale(LC_GLOBAL_LOCALE);
    freelocale(locale);
  }
  std::error_code ignored;
  std::filesystem::remove_all(pattern, ignored);
  if (tested == 0) GTEST_SKIP() << "no locale with another decimal point could be made";
}
