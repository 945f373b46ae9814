//===- sys/sys_string_value.cpp - Numbers read from the start of a string ---===//
//
// The integer forms behave as strtol/strtoul of the 32-bit model on both data
// models: saturation at the 32-bit limits, no hexadecimal prefix. The floating
// forms read decimal text only (no hexadecimal floats, "inf" or "nan") in the
// C locale, whatever locale the host has set.
//
//===------------------------------------------------------------------===//
#include "sys_string.h"

#include "plat/plat_clocale.h"

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// A decimal integer as strtol/strtoul read it: the magnitude (saturated just above
/// 2^32) and its sign. `end` is the text itself when no digit was read.
struct Integer {
  std::uint64_t magnitude = 0;
  bool negative = false;
  char const *end;

  explicit Integer(char const *text) : end(text) {
    char const *p = text;
    while (isSpace(*p)) ++p;
    if (*p == '+' || *p == '-') negative = *p++ == '-';
    if (!isDigit(*p)) return;
    constexpr std::uint64_t ceiling = std::uint64_t{1} << 33;
    for (; isDigit(*p); ++p) {
      magnitude = magnitude * 10 + static_cast<unsigned>(*p - '0');
      if (magnitude > ceiling) magnitude = ceiling;
    }
    end = p;
  }

  std::int32_t asLong() const {
    if (negative) return magnitude > 0x80000000u ? INT32_MIN : static_cast<std::int32_t>(-static_cast<std::int64_t>(magnitude));
    return magnitude > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(magnitude);
  }

  std::uint32_t asUnsignedLong() const {
    if (magnitude > UINT32_MAX) return UINT32_MAX;
    auto const value = static_cast<std::uint32_t>(magnitude);
    return negative ? 0u - value : value;
  }
};

/// The end of the decimal floating-point text that starts at `text` (after white space
/// and a sign: digits, an optional point and digits, an optional exponent), or `text`.
char const *decimalEnd(char const *text) {
  char const *p = text;
  while (isSpace(*p)) ++p;
  if (*p == '+' || *p == '-') ++p;
  char const *const digitsStart = p;
  while (isDigit(*p)) ++p;
  bool sawDigit = p != digitsStart;
  if (*p == '.') {
    char const *const fraction = ++p;
    while (isDigit(*p)) ++p;
    sawDigit = sawDigit || p != fraction;
  }
  if (!sawDigit) return text;
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

double parseDouble(char const *text, char const **end) {
  char const *const stop = decimalEnd(text);
  if (end != nullptr) *end = stop;
  if (stop == text) return 0.0;
  // strtod would also take hexadecimal floats and "inf": hand it only the decimal span.
  std::string const span(text, static_cast<size_t>(stop - text));
  return strtod_l(span.c_str(), nullptr, plat::cLocale());
}

}  // namespace

short SYS_String::Value(short *out, char const **end) const {
  Integer const number(m_pchData);
  if (end != nullptr) *end = number.end;
  // The low 16 bits of the saturated 32-bit value, as two's complement.
  *out = static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(number.asLong())));
  return *out;
}

int SYS_String::Value(int *out, char const **end) const {
  Integer const number(m_pchData);
  if (end != nullptr) *end = number.end;
  *out = number.asLong();
  return *out;
}

unsigned int SYS_String::Value(unsigned int *out, char const **end) const {
  Integer const number(m_pchData);
  if (end != nullptr) *end = number.end;
  *out = number.asUnsignedLong();
  return *out;
}

float SYS_String::Value(float *out, char const **end) const {
  double const parsed = parseDouble(m_pchData, end);
  // Beyond float's range the narrowing gives infinity, as the hardware conversion does.
  if (parsed > FLT_MAX || parsed < -FLT_MAX) {
    *out = parsed > 0 ? HUGE_VALF : -HUGE_VALF;
    return *out;
  }
  *out = static_cast<float>(parsed);
  return *out;
}

double SYS_String::Value(double *out, char const **end) const {
  *out = parseDouble(m_pchData, end);
  return *out;
}
