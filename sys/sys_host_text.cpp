//===- sys/sys_host_text.cpp - Filling in the host's numbered texts -----===//
#include "sys/sys_host_text.h"

#include "plat/plat_clocale.h"

#include <cstdio>
#include <string>

namespace sys {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Whether conversion `c` takes an argument of `kind`.
bool accepts(HostArgument::Kind kind, char c) {
  switch (kind) {
    case HostArgument::Whole:
      return c == 'd' || c == 'i' || c == 'u' || c == 'x' || c == 'X' || c == 'o';
    case HostArgument::Real:
      return c == 'f' || c == 'F' || c == 'e' || c == 'E' || c == 'g' || c == 'G' || c == 'a' || c == 'A';
    case HostArgument::Character:
      return c == 'c';
  }
  return false;
}

/// A placeholder read from the host's text: what printf is to be given, rebuilt from
/// the parts that were checked (no length, and "u" for a signed conversion).
struct Placeholder {
  std::string format = "%";
  char conversion = '\0';
  int length = 0;  ///< bytes of the host's text it covers

  /// Reads the placeholder at `text` (which starts with "%"); false when it is none.
  bool Read(char const *text) {
    char const *p = text + 1;
    while (*p == '-' || *p == '+' || *p == ' ' || *p == '#' || *p == '0') format += *p++;
    if (!readDigits(p)) return false;
    if (*p == '.') {
      format += *p++;
      if (!readDigits(p)) return false;
    }
    if (*p == 'h' || *p == 'l') p += p[1] == p[0] ? 2 : 1;
    else if (*p == 'L') ++p;
    conversion = *p;  // a NUL here is a conversion no argument accepts
    format += conversion == 'd' || conversion == 'i' ? 'u' : conversion;
    length = static_cast<int>(p + 1 - text);
    return true;
  }

private:
  /// At most three digits, so that no placeholder asks for a huge field.
  bool readDigits(char const *&p) {
    int count = 0;
    while (isDigit(*p)) {
      if (++count > 3) return false;
      format += *p++;
    }
    return true;
  }
};

/// The placeholder printed with `argument` in the C locale.
std::string print(Placeholder const &placeholder, HostArgument const &argument) {
  locale_t const previous = uselocale(plat::cLocale());
  auto printWith = [&](char *into, std::size_t room) {
    // The format was rebuilt above from checked parts and matches the argument's type.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    if (argument.kind == HostArgument::Real)
      return std::snprintf(into, room, placeholder.format.c_str(), argument.real);
    return std::snprintf(into, room, placeholder.format.c_str(), argument.whole);
#pragma GCC diagnostic pop
  };
  int const size = printWith(nullptr, 0);
  std::string result(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
  printWith(&result[0], result.size() + 1);  // the NUL goes where the string keeps its own
  uselocale(previous);
  return result;
}

}  // namespace

SYS_String FillHostText(SYS_String const &text, std::initializer_list<HostArgument> arguments) {
  SYS_String result;
  HostArgument const *next = arguments.begin();
  char const *const begin = text;
  int const length = text.GetLength();
  for (int i = 0; i < length; ++i) {
    char const ch = begin[i];
    if (ch == '%' && begin[i + 1] == '%') {
      result += '%';
      ++i;
      continue;
    }
    Placeholder placeholder;
    if (ch == '%' && next != arguments.end() && placeholder.Read(begin + i) &&
        accepts(next->kind, placeholder.conversion)) {
      std::string const printed = print(placeholder, *next++);
      result += printed.c_str();
      i += placeholder.length - 1;
      continue;
    }
    result += ch;
  }
  return result;
}

}  // namespace sys
