//===- sys/sys_charset.h - A set of characters given as text ------------===//
//
// The `set` arguments of the string searches: each character of the text is a
// member. An all-ASCII set (the common case) is a 256-bit table, so text bytes
// are tested without walking characters: a byte of 0x80 or above never belongs
// to an ASCII set, whichever character it is part of.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_CHARSET_H
#define BFC_SYS_CHARSET_H

#include "plat/plat_mbcs.h"

#include <cstdint>
#include <cstring>

namespace sys {

class CharSet {
public:
  explicit CharSet(char const *set) : m_Set(set == nullptr ? "" : set) {
    for (char const *p = m_Set; *p != '\0'; ++p) {
      auto const b = static_cast<unsigned char>(*p);
      if (b >= 0x80) m_AsciiOnly = false;
      m_Bits[b >> 6] |= std::uint64_t{1} << (b & 63);
    }
  }

  bool isAsciiOnly() const { return m_AsciiOnly; }
  /// Byte test, exact for an ASCII-only set.
  bool hasByte(unsigned char b) const { return (m_Bits[b >> 6] >> (b & 63)) & 1; }

  /// Whether the character of `length` bytes at `ch` is a member.
  bool hasChar(char const *ch, int length) const {
    if (length == 1 && static_cast<unsigned char>(*ch) < 0x80) return hasByte(static_cast<unsigned char>(*ch));
    if (m_AsciiOnly) return false;
    for (char const *p = m_Set; *p != '\0';) {
      char const *next = plat::nextChar(p);
      if (next - p == length && std::memcmp(p, ch, static_cast<size_t>(length)) == 0) return true;
      p = next;
    }
    return false;
  }

private:
  char const *m_Set;
  bool m_AsciiOnly = true;
  std::uint64_t m_Bits[4] = {0, 0, 0, 0};
};

}  // namespace sys

#endif
