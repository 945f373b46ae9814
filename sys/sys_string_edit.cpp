//===- sys/sys_string_edit.cpp - Insertion, deletion and trimming -------===//
#include "sys_string.h"

#include "plat/plat_mbcs.h"

#include <climits>
#include <cstring>
#include <new>

namespace {

bool isTrimSpace(unsigned char b) { return b == ' ' || (b >= 0x09 && b <= 0x0D); }

/// The character that trimming removes: white space when `target` is null or empty, else
/// the first character of `target`.
struct TrimTarget {
  explicit TrimTarget(char const *target) {
    if (target != nullptr && *target != '\0') {
      ch = target;
      length = static_cast<int>(plat::nextChar(target) - target);
    }
  }
  /// Whether the character of `n` bytes at `p` is trimmed.
  bool matches(char const *p, int n) const {
    if (ch == nullptr) return n == 1 && isTrimSpace(static_cast<unsigned char>(*p));
    return n == length && std::memcmp(p, ch, static_cast<size_t>(n)) == 0;
  }
  bool isAsciiByte() const { return ch == nullptr || (length == 1 && static_cast<unsigned char>(*ch) < 0x80); }

  char const *ch = nullptr;
  int length = 0;
};

}  // namespace

void SYS_String::Insert(int pos, char const *text) {
  if (text == nullptr || *text == '\0') return;
  if (pos < 0) pos = 0;
  if (text >= m_pchData && text <= m_pchData + GetLength()) {
    SYS_String const copy(text);  // the buffer may move or shift under `text`
    Insert(pos, copy);
    return;
  }
  size_t const textLength = std::strlen(text);
  int const length = GetLength();
  int const base = pos < length ? length : pos;
  if (textLength > static_cast<size_t>(INT_MAX - base)) throw std::bad_alloc();
  int const inserted = static_cast<int>(textLength);
  prepareWrite(base + inserted);
  if (pos < length) {
    std::memmove(m_pchData + pos + inserted, m_pchData + pos, static_cast<size_t>(length - pos));
  } else {
    std::memset(m_pchData + length, ' ', static_cast<size_t>(pos - length));
  }
  std::memcpy(m_pchData + pos, text, textLength);
  setLength(base + inserted);
}

void SYS_String::Delete(int pos, int count) {
  int const length = GetLength();
  if (pos < 0) pos = 0;
  if (pos >= length) return;
  if (count <= 0 || count > length - pos) count = length - pos;
  prepareWrite(length);
  std::memmove(m_pchData + pos, m_pchData + pos + count, static_cast<size_t>(length - pos - count));
  setLength(length - count);
}

void SYS_String::Replace(int pos, int count, char const *text) {
  if (text != nullptr && text >= m_pchData && text <= m_pchData + GetLength()) {
    SYS_String const copy(text);  // Delete would move the bytes under `text`
    Replace(pos, count, copy);
    return;
  }
  Delete(pos, count);
  Insert(pos, text);
}

SYS_String &SYS_String::TrimRight(char const *target) {
  TrimTarget const trim(target);
  int const length = GetLength();
  int keep = length;
  if (trim.isAsciiByte()) {
    // ASCII bytes are whole characters: the trailing run can be found from the back.
    while (keep > 0 && trim.matches(m_pchData + keep - 1, 1)) --keep;
  } else {
    char const *const end = m_pchData + length;
    char const *runStart = nullptr;
    for (char const *p = m_pchData; p < end;) {
      int const n = plat::charLength(p, end);
      if (!trim.matches(p, n)) {
        runStart = nullptr;
      } else if (runStart == nullptr) {
        runStart = p;
      }
      p += n;
    }
    if (runStart != nullptr) keep = static_cast<int>(runStart - m_pchData);
  }
  if (keep < length) Delete(keep, 0);
  return *this;
}

SYS_String &SYS_String::TrimLeft(char const *target) {
  TrimTarget const trim(target);
  char const *const end = m_pchData + GetLength();
  char const *p = m_pchData;
  for (int n; (n = plat::charLength(p, end)) > 0 && trim.matches(p, n);) p += n;
  int const cut = static_cast<int>(p - m_pchData);
  if (cut == GetLength()) {
    Empty();
  } else if (cut > 0) {
    Delete(0, cut);
  }
  return *this;
}

SYS_String &SYS_String::AllTrim(char const *target) {
  TrimRight(target);
  return TrimLeft(target);
}
