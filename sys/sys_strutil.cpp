//===- sys/sys_strutil.cpp - Number recognisers, natural order, fields ---===//
#include "sys_strutil.h"

#include "plat/plat_mbcs.h"

#include <cstring>

namespace {

bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }
bool isOctDigit(unsigned char c) { return c >= '0' && c <= '7'; }
bool isHexDigit(unsigned char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Counts digits of one kind, skipping signs anywhere; returns the end of the scan.
template <class IsDigit>
char const *scanDigits(char const *p, int &digits, IsDigit isDigitOfBase) {
  for (;; ++p) {
    auto const c = static_cast<unsigned char>(*p);
    if (c == '+' || c == '-') continue;
    if (c == '\0' || !isDigitOfBase(c)) return p;
    ++digits;
  }
}

/// A digit run without its leading zeros, for comparing by value.
struct DigitRun {
  explicit DigitRun(unsigned char const *p) {
    while (*p == '0') ++p;
    first = p;
    while (isDigit(*p)) ++p;
    end = p;
  }
  size_t length() const { return static_cast<size_t>(end - first); }
  unsigned char const *first;
  unsigned char const *end;
};

int sign(int v) { return (v > 0) - (v < 0); }

}  // namespace

char *getdouble(char const *text, int plain) {
  if (text == nullptr || *text == '\0') return nullptr;
  int mantissaDigits = 0;
  int exponentDigits = 0;
  bool exponent = false;
  bool point = false;
  char const *p = text;
  for (; *p != '\0'; ++p) {
    char const c = *p;
    if (c == '+' || c == '-') continue;
    if (c == '.') {
      if (point || exponent) break;
      point = true;
    } else if ((c == 'e' || c == 'E') && !exponent) {
      if (plain) return mantissaDigits > 0 ? const_cast<char *>(p) : nullptr;
      exponent = true;
    } else if (isDigit(static_cast<unsigned char>(c))) {
      ++(exponent ? exponentDigits : mantissaDigits);
    } else {
      break;
    }
  }
  if ((exponent && exponentDigits == 0) || mantissaDigits == 0) return nullptr;
  return const_cast<char *>(p);
}

int isdouble(char const *text, int plain) {
  char const *const end = getdouble(text, plain);
  return end != nullptr && *end == '\0';
}

char *getinteger(char const *text, int base) {
  if (text == nullptr || *text == '\0') return nullptr;
  int digits = 0;
  char const *end;
  if (base == 1) {
    end = scanDigits(text, digits, isDigit);
  } else if (base == 2) {
    end = scanDigits(text, digits, isOctDigit);
  } else if (base == 3) {
    end = scanDigits(text, digits, isHexDigit);
  } else {
    char const *p = text;
    while (*p == '+' || *p == '-') ++p;
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X') && isHexDigit(static_cast<unsigned char>(p[2]))) {
      end = scanDigits(p + 2, digits, isHexDigit);
    } else if (p[0] == '0') {
      end = scanDigits(p, digits, isOctDigit);
    } else {
      end = scanDigits(p, digits, isDigit);
    }
  }
  return digits > 0 ? const_cast<char *>(end) : nullptr;
}

int isinteger(char const *text, int base) {
  char const *const end = getinteger(text, base);
  return end != nullptr && *end == '\0';
}

int isdecdouble(char const *text) { return isdouble(text, 1); }
int isdecinteger(char const *text) { return isinteger(text, 1); }
int ishexinteger(char const *text) { return isinteger(text, 3); }
int isoctinteger(char const *text) { return isinteger(text, 2); }

int _tcsnumcmp(char const *a, char const *b) {
  auto const *pa = reinterpret_cast<unsigned char const *>(a);
  auto const *pb = reinterpret_cast<unsigned char const *>(b);
  while (*pa != '\0' && *pb != '\0') {
    if (isDigit(*pa) && isDigit(*pb)) {
      DigitRun const ra(pa), rb(pb);
      if (ra.length() != rb.length()) return ra.length() > rb.length() ? 1 : -1;
      int const byValue = std::memcmp(ra.first, rb.first, ra.length());
      if (byValue != 0) return sign(byValue);
      pa = ra.end;
      pb = rb.end;
      continue;
    }
    if (*pa != *pb) break;
    if (*pa < 0x80) {
      ++pa;
      ++pb;
      continue;
    }
    auto const *ca = reinterpret_cast<char const *>(pa);
    auto const *cb = reinterpret_cast<char const *>(pb);
    long const na = plat::nextChar(ca) - ca;
    long const nb = plat::nextChar(cb) - cb;
    if (na != nb || std::memcmp(pa, pb, static_cast<size_t>(na)) != 0) break;
    pa += na;
    pb += nb;
  }
  bool const dollarA = *pa == '$';
  bool const dollarB = *pb == '$';
  if (dollarA != dollarB) return dollarA ? 1 : -1;
  // Characters compare by code; in UTF-8 the byte order of two characters is their code
  // order, and the first differing byte decides.
  while (*pa == *pb && *pa != '\0') ++pa, ++pb;
  return sign(static_cast<int>(*pa) - static_cast<int>(*pb));
}

int SysExtractSubString(SYS_String &field, char const *list, int index, char separator) {
  if (list == nullptr) return 0;
  auto nextSeparator = [separator](char const *p) -> char const * {
    for (; *p != '\0'; p = plat::nextChar(p))
      if (*p == separator && plat::nextChar(p) == p + 1) return p;
    return nullptr;
  };
  char const *start = list;
  for (int i = 0; i < index; ++i) {
    char const *const sep = nextSeparator(start);
    if (sep == nullptr) {
      field.Empty();
      return 0;
    }
    start = sep + 1;
  }
  if (index < 0) {
    field.Empty();
    return 0;
  }
  char const *const stop = nextSeparator(start);
  int const length = static_cast<int>(stop != nullptr ? stop - start : std::strlen(start));
  field = SYS_String(start, length);
  return 1;
}

SYS_String FormattedString(char const *format, ...) {
  SYS_String result;
  va_list args;
  va_start(args, format);
  result.FormatV(format, args);
  va_end(args);
  return result;
}
