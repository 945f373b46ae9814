//===- examples/demo/demo_patterns.cpp - Net-name filters and renaming --===//
//
// The host filters the nets of a board by a pattern typed by the user and
// renames nets in bulk with Substitute.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

#include <cstring>
#include <string>

namespace {

char const *const kNets[] = {"VCC", "VCC3", "GND", "GND2", "GND-1", "AGND", "VCC_IO", "DDR_DQ7", "RESET_N", "CLK_100M"};

/// The compiled form, bytes that are not printable (most length and count bytes) shown in
/// hexadecimal. Only an empty set puts a NUL byte into a form; these patterns have none.
std::string showCode(char const *pattern) {
  SYS_StrPattern const p(pattern);
  std::string shown;
  for (char const *c = p; *c != '\0'; ++c) {
    auto const b = static_cast<unsigned char>(*c);
    if (b < 0x20 || b >= 0x7F) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "<%02X>", b);
      shown += hex;
    } else {
      shown += *c;
    }
  }
  return shown;
}

void filterNets(char const *pattern) {
  SYS_StrPattern const filter(pattern);
  std::printf("Filter \"%s\" compiles to %s\n", pattern, showCode(pattern).c_str());
  for (char const *net : kNets) {
    int length = 0;
    int const at = filter.Match(net, &length);
    int const size = static_cast<int>(std::strlen(net));
    if (at < 0) {
      std::printf("  %-9s  no match\n", net);
    } else if (at == 0 && length == size) {
      std::printf("  %-9s  whole name: selected\n", net);
    } else {
      std::printf("  %-9s  \"%.*s\" at %d, not the whole name\n", net, length, net + at, at);
    }
  }
}

void renameNets(char const *pattern, char const *replacement, int maxCount) {
  SYS_StrPattern const rename(pattern);
  std::printf("Rename \"%s\" -> \"%s\"%s:\n", pattern, replacement, maxCount == 0 ? "" : " (first only)");
  for (char const *net : kNets) {
    SYS_String name(net);
    int const count = rename.Substitute(name, replacement, maxCount);
    if (count > 0) std::printf("  %-9s -> %-10s (%d replaced)\n", net, static_cast<char const *>(name), count);
  }
}

}  // namespace

void demoPatterns() {
  demoHeading("String patterns");
  filterNets("VCC|GND:z?");
  filterNets("[A-Z]+_[A-Z0-9]+");

  renameNets("^VCC", "VDD", 0);
  renameNets("_", ".", 0);
  renameNets("[A-Z]", "x", 1);
  renameNets(":z$", "<n>", 0);

  // A pattern that does not compile selects nothing and renames nothing.
  SYS_StrPattern const broken("GND|");
  SYS_String name("GND");
  int length = 0;
  std::printf("\"GND|\" does not compile: compiled form \"%s\", Match gives %d, Substitute gives %d\n",
              static_cast<char const *>(broken), broken.Match("GND", &length), broken.Substitute(name, "X", 0));
}
