//===- scc/scc_variant_validate.cpp - Checking a value against a text ----===//
//
// A validation text is a range "[low,high]" read as scanf's "%c %lf , %lf %c"
// would read it (either bracket, spaces anywhere between the fields, anything
// after the closing character ignored), or a maximum length read as "%d".
// The numbers are read in the C locale.
//
//===------------------------------------------------------------------===//
#include "scc_variant.h"

#include "plat/plat_clocale.h"
#include "scc/scc_variant_texts.h"
#include "sys/sys_host_text.h"
#include "sys_exception.h"

#include <climits>
#include <cstdlib>

namespace {

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
void skipSpaces(char const *&p) {
  while (isSpace(*p)) ++p;
}

/// A range as written: the brackets and the bounds.
struct Range {
  char open = '\0';
  double low = 0.0;
  double high = 0.0;
  char close = '\0';

  /// Reads the four fields; false unless all four are there.
  bool Read(char const *p) {
    if (*p == '\0') return false;
    open = *p++;
    if (!readNumber(p, low)) return false;
    skipSpaces(p);
    if (*p++ != ',') return false;
    if (!readNumber(p, high)) return false;
    skipSpaces(p);
    if (*p == '\0') return false;
    close = *p;
    return true;
  }

  bool Holds(double value) const {
    bool const aboveLow = open == '[' ? value >= low : value > low;
    bool const belowHigh = close == ']' ? value <= high : value < high;
    return aboveLow && belowHigh;
  }

private:
  /// "%lf": white space, then a number, as strtod reads them.
  static bool readNumber(char const *&p, double &value) {
    char *stop = nullptr;
    value = strtod_l(p, &stop, plat::cLocale());
    if (stop == p) return false;
    p = stop;
    return true;
  }
};

/// "%d": white space, a sign and digits; the value is kept within the int range.
bool readMaximum(char const *p, long long &maximum) {
  skipSpaces(p);
  bool const negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (*p < '0' || *p > '9') return false;
  maximum = 0;
  for (; *p >= '0' && *p <= '9'; ++p)
    if (maximum <= INT_MAX) maximum = maximum * 10 + (*p - '0');
  if (negative) maximum = -maximum;
  return true;
}

/// The double of `value`; false when it is not a number. With a convertor, the value
/// it converts to in `direction`.
bool numberOf(SCC_Variant const &value, SCC_Convertor *convertor, int direction, double &number) {
  try {
    number = convertor != nullptr ? static_cast<double>(convertor->Convert(value, direction))
                                  : static_cast<double>(value);
    return true;
  } catch (SYS_Exception const &) {
    return false;
  }
}

}  // namespace

int SCC_Variant::Validate(SYS_String const &validation, SCC_Convertor *convertor) {
  if (validation.IsEmpty() || IsEmpty()) return 1;
  char const *text = validation;
  bool const conversion = *text == '#';
  if (conversion) ++text;
  SCC_Convertor *const through = conversion ? convertor : nullptr;

  Range range;
  if (range.Read(text)) {
    double value = 0.0;
    if (numberOf(*this, through, 1, value) && range.Holds(value)) return 1;
    // The bounds are shown as the user writes values: converted back when the value was
    // converted; a bound that does not convert back is shown as written.
    double low = range.low, high = range.high;
    if (through != nullptr) {
      double shown = 0.0;
      if (numberOf(SCC_Variant(low), through, 0, shown)) low = shown;
      if (numberOf(SCC_Variant(high), through, 0, shown)) high = shown;
    }
    *this = SCC_Variant(sys::FillHostText(
        scc_detail::variantText(scc_detail::kNotInRange),
        {sys::HostArgument::Char(range.open), sys::HostArgument::Double(low), sys::HostArgument::Double(high),
         sys::HostArgument::Char(range.close)}));
    return 0;
  }

  long long maximum = 0;
  if (!readMaximum(text, maximum)) return 1;  // neither a range nor a length: nothing to test
  return m_String.GetLength() <= maximum;
}
