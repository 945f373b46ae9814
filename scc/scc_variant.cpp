//===- scc/scc_variant.cpp - Field values of collection items ------------===//
//
// Conversions and equality. Strings are read with strtod in the C locale, and
// doubles written as "%f" with "." whatever the thread's locale, so that a
// value written and read back is the same value.
//
//===------------------------------------------------------------------===//
#include "scc_variant.h"

#include "plat/plat_clocale.h"
#include "scc/scc_variant_texts.h"
#include "sfm_tr.h"
#include "sys_exception.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace scc_detail {

SYS_String variantText(VariantText id) {
  SYS_String text = TR(id);
  if (!text.IsEmpty()) return text;
  switch (id) {
    case kNotANumber: return "The text is not a number.";
    case kOutOfRange: return "The number is out of range.";
    case kNotInRange: return "The value must lie within %c%g, %g%c.";
  }
  return text;
}

}  // namespace scc_detail

namespace {

using scc_detail::variantText;

/// Throws the host's text `id`, used as a text (never as a format).
[[noreturn]] void fail(scc_detail::VariantText id) {
  throw SYS_Exception("%s", static_cast<char const *>(variantText(id)));
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// The string read as a double: blanks, the number as strtod reads it, blanks, and
/// nothing else (an embedded NUL included).
double readNumber(SYS_String const &text) {
  char const *p = text;
  char const *const end = p + text.GetLength();
  while (isBlank(*p)) ++p;
  char *stop = nullptr;
  double const value = strtod_l(p, &stop, plat::cLocale());
  char const *rest = stop;
  while (isBlank(*rest)) ++rest;
  if (rest != end) fail(scc_detail::kNotANumber);
  return value;
}

/// `value` truncated toward zero, when that lies in the 32-bit range.
long truncated(double value) {
  double const whole = std::trunc(value);
  // NaN fails both comparisons.
  if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) fail(scc_detail::kOutOfRange);
  return static_cast<long>(whole);
}

/// "%f" of `value`: to_chars writes the same correctly rounded digits as printf, "nan"
/// and "inf" included, always with ".".
SYS_String fixedText(double value) {
  char text[320];  // a sign, 309 integer digits, the point and six decimals
  auto const result = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 6);
  return SYS_String(text, static_cast<int>(result.ptr - text));
}

}  // namespace

SCC_Variant::SCC_Variant(long value) noexcept : m_Type(VT_Long), m_Long(value), m_Double(0.0) {
  if (value < INT_MIN || value > INT_MAX) {  // only on LP64
    m_Type = VT_Double;
    m_Long = 0;
    m_Double = static_cast<double>(value);
  }
}

void SCC_Variant::Clear() noexcept {
  m_Type = VT_Empty;
  m_Long = 0;
  m_Double = 0.0;
  m_String.Empty();
}

SCC_Variant::operator long() const {
  switch (m_Type) {
    case VT_Long: return m_Long;
    case VT_Double: return truncated(m_Double);
    case VT_String: return truncated(readNumber(m_String));
    case VT_Empty: break;
  }
  return 0;
}

SCC_Variant::operator double() const {
  switch (m_Type) {
    case VT_Long: return static_cast<double>(m_Long);
    case VT_Double: return m_Double;
    case VT_String: return readNumber(m_String);
    case VT_Empty: break;
  }
  return 0.0;
}

SCC_Variant::operator SYS_String() const {
  switch (m_Type) {
    case VT_Long: {
      SYS_String text;
      text << static_cast<int>(m_Long);
      return text;
    }
    case VT_Double: return fixedText(m_Double);
    case VT_String: return m_String;
    case VT_Empty: break;
  }
  return SYS_String();
}

int SCC_Variant::operator==(SCC_Variant const &other) const {
  switch (GetSuperiorType(other.m_Type)) {
    case VT_Long: return m_Long == other.m_Long;
    // Neither is a string here, so neither conversion can throw.
    case VT_Double: return static_cast<double>(*this) == static_cast<double>(other);
    case VT_String:
      if (m_Type == VT_String && other.m_Type == VT_String) return m_String.Compare(other.m_String) == 0;
      return static_cast<SYS_String>(*this).Compare(static_cast<SYS_String>(other)) == 0;
    case VT_Empty: break;
  }
  return 0;
}

SCC_Convertor::~SCC_Convertor() = default;
