//===- sys/sys_convert_parse.cpp - Numbers typed by the user ------------===//
//
// The parses read what strtod and strtol with base 10 read and fail on any
// character left after the number. The scans are ASCII-only and the double is
// converted in the C locale; strtod alone would also take hexadecimal
// numbers, "inf" and "nan" and would follow the host's decimal point. The
// integer scan is our own so that both data models reject the same values:
// strtol on LP64 would accept anything up to 64 bits.
//
//===------------------------------------------------------------------===//
#include "sys_convert.h"

#include "plat/plat_clocale.h"
#include "sys_geom.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>

namespace {

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Decimal text as strtod reads it: white space, a sign, digits with at most one point and
/// at least one digit, and an exponent when a digit follows its sign.
struct DecimalScan {
  char const *end;      ///< where strtod would stop; the text itself when no number starts
  bool exact = false;   ///< `value` already is the correctly rounded number
  double value = 0.0;

  explicit DecimalScan(char const *text);
};

/// The powers of ten that doubles hold exactly.
constexpr double kExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Typed coordinates are short: with at most 15 significant digits and a power of ten up to
// 22, the number is one correctly rounded multiplication or division of two exact doubles,
// the very value strtod gives. Anything else is left to strtod.
DecimalScan::DecimalScan(char const *text) : end(text) {
  char const *p = text;
  while (isSpace(*p)) ++p;
  bool const negative = *p == '-';
  if (*p == '+' || *p == '-') ++p;
  std::uint64_t mantissa = 0;
  int significant = 0;  // digits from the first non-zero one on
  int scale = 0;        // the power of ten the mantissa is to be multiplied by
  bool seenDigit = false;
  auto addDigit = [&](char c) {
    seenDigit = true;
    if (significant < 19) {
      mantissa = mantissa * 10 + static_cast<unsigned>(c - '0');
      if (mantissa != 0) ++significant;
    } else {
      ++significant;
      ++scale;  // dropped digits only count; the scan is no longer exact
    }
  };
  for (; isDigit(*p); ++p) addDigit(*p);
  if (*p == '.') {
    for (++p; isDigit(*p); ++p) {
      addDigit(*p);
      --scale;
    }
  }
  if (!seenDigit) return;
  if (*p == 'e' || *p == 'E') {
    char const *q = p + 1;
    bool const negativeExponent = *q == '-';
    if (*q == '+' || *q == '-') ++q;
    if (isDigit(*q)) {
      int exponent = 0;
      for (; isDigit(*q); ++q)
        if (exponent < 100000) exponent = exponent * 10 + (*q - '0');
      scale += negativeExponent ? -exponent : exponent;
      p = q;
    }
  }
  end = p;
  if (mantissa == 0 && significant == 0) {
    exact = true;
    value = negative ? -0.0 : 0.0;
  } else if (significant <= 15 && scale >= -22 && scale <= 22) {
    exact = true;
    double const m = static_cast<double>(mantissa);
    value = scale < 0 ? m / kExactPowers[-scale] : m * kExactPowers[scale];
    if (negative) value = -value;
  }
}

/// The range error held from an earlier call is cleared; any other code is the caller's.
void clearRangeError() {
  if (errno == ERANGE) errno = 0;
}

}  // namespace

int SYS_Convert::Str2Double(char const *text, double *value) {
  clearRangeError();
  if (text == nullptr) text = "";
  DecimalScan const scan(text);
  if (*scan.end != '\0') return 0;
  double result = scan.value;
  if (scan.end != text && !scan.exact) {
    result = strtod_l(text, nullptr, plat::cLocale());
    if (errno == ERANGE) return 0;
  }
  if (value != nullptr) *value = result;
  return 1;
}

int SYS_Convert::Str2Long(char const *text, long *value) {
  clearRangeError();
  if (text == nullptr) text = "";
  char const *p = text;
  while (isSpace(*p)) ++p;
  bool const negative = *p == '-';
  if (*p == '+' || *p == '-') ++p;
  if (!isDigit(*p)) {
    // Nothing is converted: only the empty text leaves no character behind.
    if (*text != '\0') return 0;
    if (value != nullptr) *value = 0;
    return 1;
  }
  // The magnitude stops growing past the 32-bit range; the digits are still consumed.
  constexpr std::int64_t ceiling = std::int64_t{1} << 32;
  std::int64_t magnitude = 0;
  for (; isDigit(*p); ++p)
    if (magnitude < ceiling) magnitude = magnitude * 10 + (*p - '0');
  if (*p != '\0') return 0;
  std::int64_t const result = negative ? -magnitude : magnitude;
  if (result < INT32_MIN || result > INT32_MAX) {
    errno = ERANGE;
    return 0;
  }
  if (value != nullptr) *value = static_cast<long>(result);
  return 1;
}

int SYS_Convert::Str2Base(char const *text, long *value) const {
  double user;
  if (!Str2Double(text, &user)) return 0;
  long const base = User2Base(user);
  if (base < -SYS_CoordLimit || base > SYS_CoordLimit) return 0;
  if (value != nullptr) *value = base;
  return 1;
}

int SYS_Convert::Str2Measure(char const *text, long *value) const {
  double user;
  if (!Str2Double(text, &user) || user < 0) return 0;
  long const base = User2Base(user);
  if (base == OverflowValue) return 0;
  if (value != nullptr) *value = base;
  return 1;
}

int SYS_Convert::Str2Angle(char const *text, long *value) {
  double degrees;
  if (!Str2Double(text, &degrees)) return 0;
  if (value != nullptr) *value = sysgeom::truncate32(degrees * 1800000.0);
  return 1;
}
