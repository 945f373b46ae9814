//===- sys/sys_string_search.cpp - Searches and extraction --------------===//
//
// Searches for ASCII bytes run over raw bytes (an ASCII byte is always a whole
// character); everything else walks characters from the start position, so a
// match never begins on a trail byte or splits a character.
//
//===------------------------------------------------------------------===//
#include "sys_string.h"

#include "sys/sys_charset.h"
#include "sys_strutil.h"

#include <cstring>
#include <string_view>

namespace {

bool isAscii(char ch) { return static_cast<unsigned char>(ch) < 0x80; }

bool isAsciiText(char const *text, size_t length) {
  for (size_t i = 0; i < length; ++i)
    if (!isAscii(text[i])) return false;
  return true;
}

/// Index of the first single-byte character equal to `ch` in [from, end), or -1.
int findSingleByteChar(char const *base, char const *from, char const *end, char ch) {
  for (char const *p = from; p < end;) {
    int const n = plat::charLength(p, end);
    if (n == 1 && *p == ch) return static_cast<int>(p - base);
    p += n;
  }
  return -1;
}

int foldCase(unsigned char b) { return b >= 'A' && b <= 'Z' ? b + ('a' - 'A') : b; }

}  // namespace

int SYS_String::Compare(char const *other) const {
  return std::strcmp(m_pchData, other == nullptr ? "" : other);
}

int SYS_String::CompareNoCase(char const *other) const {
  auto const *a = reinterpret_cast<unsigned char const *>(m_pchData);
  auto const *b = reinterpret_cast<unsigned char const *>(other == nullptr ? "" : other);
  for (;; ++a, ++b) {
    int const diff = foldCase(*a) - foldCase(*b);
    if (diff != 0 || *a == 0) return diff;
  }
}

int SYS_String::CompareAlNum(char const *other) const {
  return _tcsnumcmp(m_pchData, other == nullptr ? "" : other);
}

SYS_String SYS_String::Mid(int first) const { return Mid(first, GetLength() - (first < 0 ? 0 : first)); }

SYS_String SYS_String::Mid(int first, int count) const {
  int const length = GetLength();
  if (first < 0) first = 0;
  if (count < 0) count = 0;
  if (first > length) return SYS_String();
  if (count > length - first) count = length - first;
  if (first == 0 && count == length) return *this;
  return SYS_String(m_pchData + first, count);
}

SYS_String SYS_String::Left(int count) const {
  if (count < 0) count = 0;
  return Mid(0, count);
}

SYS_String SYS_String::Right(int count) const {
  int const length = GetLength();
  if (count < 0) count = 0;
  if (count > length) count = length;
  return Mid(length - count, count);
}

SYS_String SYS_String::SpanIncluding(char const *set) const {
  sys::CharSet const members(set);
  char const *const end = m_pchData + GetLength();
  char const *p = m_pchData;
  for (int n; (n = plat::charLength(p, end)) > 0 && members.hasChar(p, n);) p += n;
  return Left(static_cast<int>(p - m_pchData));
}

SYS_String SYS_String::SpanExcluding(char const *set) const {
  sys::CharSet const members(set);
  char const *const end = m_pchData + GetLength();
  char const *p = m_pchData;
  for (int n; (n = plat::charLength(p, end)) > 0 && !members.hasChar(p, n);) p += n;
  return Left(static_cast<int>(p - m_pchData));
}

int SYS_String::Find(char ch, int start) const {
  int const length = GetLength();
  if (start < 0 || start > length) return -1;
  if (ch == '\0') return length;
  char const *const end = m_pchData + length;
  if (!isAscii(ch)) return findSingleByteChar(m_pchData, m_pchData + start, end, ch);
  auto const *hit = static_cast<char const *>(std::memchr(m_pchData + start, ch, static_cast<size_t>(length - start)));
  return hit == nullptr ? -1 : static_cast<int>(hit - m_pchData);
}

int SYS_String::Find(char const *sub, int start) const {
  int const length = GetLength();
  if (start < 0 || start >= length) return -1;
  if (sub == nullptr || *sub == '\0') return start;
  std::string_view const text(m_pchData, static_cast<size_t>(length));
  std::string_view const needle(sub);
  if (isAsciiText(sub, needle.size())) {
    size_t const at = text.find(needle, static_cast<size_t>(start));
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
  }
  // A candidate counts only where the text's characters, walked from `start`, begin at it
  // and end right after it.
  char const *const end = m_pchData + length;
  char const *walk = m_pchData + start;
  for (size_t from = static_cast<size_t>(start);;) {
    size_t const at = text.find(needle, from);
    if (at == std::string_view::npos) return -1;
    char const *const candidate = m_pchData + at;
    while (walk < candidate) walk += plat::charLength(walk, end);
    if (walk == candidate) {
      char const *stop = candidate;
      while (stop < candidate + needle.size()) stop += plat::charLength(stop, end);
      if (stop == candidate + needle.size()) return static_cast<int>(at);
    }
    from = at + 1;
  }
}

int SYS_String::FindOneOf(char const *set, int start) const {
  int const length = GetLength();
  if (start < 0 || start > length) return -1;
  sys::CharSet const members(set);
  char const *const end = m_pchData + length;
  if (members.isAsciiOnly()) {
    for (char const *p = m_pchData + start; p < end; ++p)
      if (members.hasByte(static_cast<unsigned char>(*p))) return static_cast<int>(p - m_pchData);
    return -1;
  }
  for (char const *p = m_pchData + start; p < end;) {
    int const n = plat::charLength(p, end);
    if (members.hasChar(p, n)) return static_cast<int>(p - m_pchData);
    p += n;
  }
  return -1;
}

int SYS_String::ReverseFind(char ch, int start) const {
  int const length = GetLength();
  if (ch == '\0') return start == -2 || start == length ? length : -1;
  if (start == -2) start = length - 1;
  if (start < 0 || start >= length) return -1;
  if (isAscii(ch)) {
    auto const *hit = static_cast<char const *>(memrchr(m_pchData, ch, static_cast<size_t>(start) + 1));
    return hit == nullptr ? -1 : static_cast<int>(hit - m_pchData);
  }
  char const *const end = m_pchData + length;
  int found = -1;
  for (char const *p = m_pchData; p <= m_pchData + start;) {
    int const n = plat::charLength(p, end);
    if (n == 1 && *p == ch) found = static_cast<int>(p - m_pchData);
    p += n;
  }
  return found;
}

int SYS_String::ReverseFindOneOf(char const *set, int start) const {
  int const length = GetLength();
  if (start == -2) start = length - 1;
  if (start < 0 || start >= length) return -1;
  sys::CharSet const members(set);
  if (members.isAsciiOnly()) {
    for (char const *p = m_pchData + start; p >= m_pchData; --p)
      if (members.hasByte(static_cast<unsigned char>(*p))) return static_cast<int>(p - m_pchData);
    return -1;
  }
  char const *const end = m_pchData + length;
  int found = -1;
  for (char const *p = m_pchData; p <= m_pchData + start;) {
    int const n = plat::charLength(p, end);
    if (members.hasChar(p, n)) found = static_cast<int>(p - m_pchData);
    p += n;
  }
  return found;
}
