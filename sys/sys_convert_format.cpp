//===- sys/sys_convert_format.cpp - Coordinates, lengths and angles as text ===//
//
// Every text is printf's "%.*f" of a double, with "." as the decimal point
// whatever the thread's locale, trimmed when zero-trim mode is on. The rounding is printf's, of the double's
// exact binary value: -1 base unit in millimetres is "-0.00000", which trims
// to "-0".
//
//===------------------------------------------------------------------===//
#include "sys_convert.h"

#include "sys_geom.h"

#include <cstdio>
#include <cstring>

namespace {

/// The length of `number` after trimming it in place (see TrimStrNumber).
int trimNumber(char *number, int length) {
  if (std::memchr(number, '.', static_cast<size_t>(length)) == nullptr) return length;
  while (number[length - 1] == '0') --length;
  if (number[length - 1] == '.') --length;
  number[length] = '\0';
  return length;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// printf writes the decimal point of the thread's locale, which may be "," or even several
/// bytes; it is whatever stands between the integer digits and the fraction. Replacing it
/// afterwards costs less than switching the locale around every call.
int withDecimalPoint(char *text, int length) {
  char *point = text + (*text == '-' ? 1 : 0);
  while (isDigit(*point)) ++point;
  if (*point == '\0' || *point == '.') return length;
  char *fraction = point;
  while (*fraction != '\0' && !isDigit(*fraction)) ++fraction;
  *point = '.';
  std::memmove(point + 1, fraction, static_cast<size_t>(text + length - fraction) + 1);
  return length - static_cast<int>(fraction - point - 1);
}

/// Writes "%.*f" of `value` into `text` (SYS_Convert::BufferSize bytes) and trims it when
/// `trim` is non-zero; returns the length.
int formatFixed(char *text, int precision, double value, int trim) {
  int const length = std::snprintf(text, SYS_Convert::BufferSize, "%.*f", precision, value);
  // The values come from 32-bit integers and the precision is limited, so the text fits
  // (a decimal point of several bytes included).
  if (length < 0 || length >= SYS_Convert::BufferSize) {
    text[0] = '\0';
    return 0;
  }
  int const pointed = withDecimalPoint(text, length);
  return trim != 0 ? trimNumber(text, pointed) : pointed;
}

/// 1 / 1,800,000 as the angle formatting has always multiplied by it: a little less than
/// the quotient, so some texts come out one step lower than a division would give.
constexpr double kDegreesPerAngleUnit = 5.555555555555555e-07;

SYS_String withPrefix(SYS_String const &prefix, char const *text, int length) {
  SYS_String result(prefix);
  result += SYS_String(text, length);
  return result;
}

}  // namespace

char *SYS_Convert::TrimStrNumber(char *number) {
  if (number != nullptr && *number != '\0') trimNumber(number, static_cast<int>(std::strlen(number)));
  return number;
}

int SYS_Convert::formatBase(char *text, long b) const {
  return formatFixed(text, m_UnitPrecision[m_UnitType], Base2User(b), m_ZeroTrimMode);
}

int SYS_Convert::formatAngle(char *text, long a) const {
  double const degrees = static_cast<double>(sysgeom::cut32(a)) * kDegreesPerAngleUnit;
  return formatFixed(text, m_AnglePrecision, degrees, m_ZeroTrimMode);
}

char *SYS_Convert::Base2Str(char *buffer, long b) const {
  if (buffer != nullptr) formatBase(buffer, b);
  return buffer;
}

SYS_String SYS_Convert::Base2Str(long b) const {
  char text[BufferSize];
  return SYS_String(text, formatBase(text, b));
}

SYS_String SYS_Convert::Measure2String(SYS_String const &prefix, long b) const {
  char text[BufferSize];
  return withPrefix(prefix, text, formatBase(text, b));
}

SYS_String SYS_Convert::CoordX2String(long x) const { return Base2Str(sysgeom::sub32(x, m_Origin.GetX())); }

SYS_String SYS_Convert::CoordX2String(SYS_String const &prefix, long x) const {
  char text[BufferSize];
  return withPrefix(prefix, text, formatBase(text, sysgeom::sub32(x, m_Origin.GetX())));
}

SYS_String SYS_Convert::CoordY2String(long y) const { return Base2Str(sysgeom::sub32(y, m_Origin.GetY())); }

SYS_String SYS_Convert::CoordY2String(SYS_String const &prefix, long y) const {
  char text[BufferSize];
  return withPrefix(prefix, text, formatBase(text, sysgeom::sub32(y, m_Origin.GetY())));
}

SYS_String SYS_Convert::Point2String(SYS_Point const &p) const {
  char text[2 * BufferSize + 3];
  char *out = text;
  *out++ = '(';
  out += formatBase(out, sysgeom::sub32(p.GetX(), m_Origin.GetX()));
  *out++ = ',';
  out += formatBase(out, sysgeom::sub32(p.GetY(), m_Origin.GetY()));
  *out++ = ')';
  return SYS_String(text, static_cast<int>(out - text));
}

SYS_String SYS_Convert::Point2String(SYS_String const &prefix, SYS_Point const &p) const {
  SYS_String result(prefix);
  result += Point2String(p);
  return result;
}

char *SYS_Convert::Angle2Str(char *buffer, long a) const {
  if (buffer != nullptr) formatAngle(buffer, a);
  return buffer;
}

SYS_String SYS_Convert::Angle2Str(long a) const {
  char text[BufferSize];
  return SYS_String(text, formatAngle(text, a));
}
