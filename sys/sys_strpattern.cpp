//===- sys/sys_strpattern.cpp - Compiled string patterns ----------------===//
//
// The public face of patterns: compiling, finding and replacing. The byte
// code lives in sys_strpattern_code.h, the matcher in sys_strpattern_match.
//
//===------------------------------------------------------------------===//
#include "sys_strpattern.h"

#include "sys/sys_strpattern_code.h"
#include "sys/sys_strpattern_match.h"

#include <string>

void SYS_StrPattern::MakePattern(char const *pattern) { m_Code = sys::pattern::compile(pattern); }

int SYS_StrPattern::Match(char const *text, int *length) const {
  if (m_Code.IsEmpty()) {
    if (length != nullptr) *length = 0;
    return -1;
  }
  return sys::pattern::Matcher(m_Code).find(text, length);
}

// The text after the scan position is always the original text after the last match, so
// the result is built from the original in one pass instead of editing in place.
int SYS_StrPattern::Substitute(SYS_String &text, SYS_String const &replacement, int maxCount) const {
  if (m_Code.IsEmpty()) return 0;
  SYS_String const source(text);  // shares the buffer; keeps it while `text` is rebuilt
  SYS_String const with(replacement);
  char const *const begin = source;
  char const *const end = begin + source.GetLength();
  sys::pattern::Matcher matcher(m_Code);
  std::string result;
  char const *scan = begin;
  int count = 0;
  while (maxCount <= 0 || count < maxCount) {
    int length = 0;
    int const offset = matcher.find(scan, &length);
    if (offset < 0) break;
    result.append(scan, static_cast<size_t>(offset));
    result.append(with, static_cast<size_t>(with.GetLength()));
    scan += offset + length;
    ++count;
    if (length == 0 && scan < end) {
      // An empty match would be found again at once: keep one character and move past it.
      char const *const next = plat::nextChar(scan);
      result.append(scan, next);
      scan = next;
    }
  }
  if (count == 0) return 0;
  result.append(scan, end);
  text = SYS_String(result.data(), static_cast<int>(result.size()));
  return count;
}
