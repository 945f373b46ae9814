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

/// Where strtod would stop on decimal text: after white space, a sign, digits with at most
/// one point and at least one digit, and an exponent when a digit follows its sign. `text`
/// when no number starts there.
char const *decimalEnd(char const *text) {
  char const *p = text;
  while (isSpace(*p)) ++p;
  if (*p == '+' || *p == '-') ++p;
  char const *const digits = p;
  while (isDigit(*p)) ++p;
  bool seenDigit = p != digits;
  if (*p == '.') {
    char const *const fraction = ++p;
    while (isDigit(*p)) ++p;
    seenDigit = seenDigit || p != fraction;
  }
  if (!seenDigit) return text;
  if (*p == 'e' || *p == 'E') {
    char const *q = p + 1;
    if (*q == '+' || *q == '-') ++q;
    if (isDigit(*q)) {
      while (isDigit(*q)) ++q;
      p = q;
    }
  }
  return p;
}

/// The range error held from an earlier call is cleared; any other code is the caller's.
void clearRangeError() {
  if (errno == ERANGE) errno = 0;
}

}  // namespace

int SYS_Convert::Str2Double(char const *text, double *value) {
  clearRangeError();
  if (text == nullptr) text = "";
  char const *const end = decimalEnd(text);
  if (*end != '\0') return 0;
  double result = 0.0;
  if (end != text) {
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
