//===- examples/demo/demo_text.cpp - Text: parsing, ordering, searching --===//
//
// What the host does with text every day: read numbers typed by the user, sort
// part references as a person expects, clean up names and search them, and
// find out what happens when a check fails before any assertion manager exists.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

#include <algorithm>
#include <vector>

namespace {

void parseNumbers() {
  std::printf("Parsing what the user typed:\n");
  for (char const *typed : {"  42 mil", "-17", "3.5e2", "0x1F", "abc", "99999999999"}) {
    SYS_String const input(typed);
    int asInt = 0;
    double asDouble = 0;
    char const *end = nullptr;
    input.Value(&asInt, &end);
    input.Value(&asDouble);
    std::printf("  %-14s int %-11d double %-10g rest \"%s\"  %s\n",
                FormattedString("\"%s\"", typed).operator char const *(), asInt, asDouble, end,
                isdecdouble(SYS_String(typed).AllTrim(""))
                    ? "(a plain decimal number)"
                    : "");
  }
}

void sortReferences() {
  std::vector<SYS_String> refs = {"R100", "C3", "R9", "U1", "R10", "C12", "R1"};
  std::sort(refs.begin(), refs.end(),
            [](SYS_String const &a, SYS_String const &b) { return a.CompareAlNum(b) < 0; });
  std::printf("Part references in natural order:");
  for (auto const &ref : refs) std::printf(" %s", static_cast<char const *>(ref));
  std::printf("\n");
}

void cleanAndSearch() {
  SYS_String net("  \tGND_ANALOG--  \r\n");
  net.AllTrim("");
  std::printf("Trimmed net name: \"%s\"", static_cast<char const *>(net));
  net.TrimRight("-");
  std::printf(", without trailing dashes: \"%s\"\n", static_cast<char const *>(net));

  // A component value with a multibyte character: searches report byte positions and never
  // stop inside a character.
  SYS_String const value("4.7k\xCE\xA9 \xC2\xB1" "5%");  // "4.7kΩ ±5%"
  std::printf("Value \"%s\" is %d bytes; 'k' at %d, the ohm sign at %d, \"5%%\" at %d\n",
              static_cast<char const *>(value), value.GetLength(), value.Find('k'),
              value.Find("\xCE\xA9"), value.Find("5%"));
  SYS_String field;
  char const *const list = "U7;SOIC-8;top;rotated 90";
  for (int i = 0; SysExtractSubString(field, list, i, ';'); ++i)
    std::printf("  field %d of \"%s\": \"%s\"\n", i, list, static_cast<char const *>(field));
}

void failWithoutManager() {
  PLAT_SetLastError(24);
  std::printf("No assertion manager exists (GetManager() is %s).\n",
              SSM::GetManager() == nullptr ? "null" : "set");
  bool const ok = SSM_Check(false, "pad list is empty", "demo/text", __LINE__);
  std::printf("A failed check reported and fell through: check %s, code after it ran on, "
              "last error still %d\n",
              ok ? "passed" : "failed", PLAT_GetLastError());
  PLAT_SetLastError(0);
}

}  // namespace

void demoText() {
  demoHeading("Text");
  parseNumbers();
  sortReferences();
  cleanAndSearch();
  failWithoutManager();
}
