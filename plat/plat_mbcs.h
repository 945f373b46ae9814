//===- plat/plat_mbcs.h - Characters of the multibyte code page ---------===//
//
// The process's multibyte code page is UTF-8. A character is one ASCII byte or
// one valid UTF-8 sequence (no overlong forms, no surrogates, nothing above
// U+10FFFF); any other byte is a character of its own. Because every byte of a
// multibyte sequence is 0x80 or above, an ASCII byte is always a whole
// character, which lets ASCII-only searches run byte by byte.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_MBCS_H
#define BFC_PLAT_MBCS_H

#include <string>

namespace plat {

inline bool isTrailByte(unsigned char b) { return (b & 0xC0) == 0x80; }

/// The byte count of the character that starts at `p`; never reads at or past `end`.
/// 0 only when `p == end`.
inline int charLength(char const *p, char const *end) {
  if (p >= end) return 0;
  unsigned char const b0 = static_cast<unsigned char>(*p);
  if (b0 < 0x80) return 1;
  long const room = end - p;
  auto at = [p](int i) { return static_cast<unsigned char>(p[i]); };
  if (b0 >= 0xC2 && b0 <= 0xDF) return room >= 2 && isTrailByte(at(1)) ? 2 : 1;
  if (b0 >= 0xE0 && b0 <= 0xEF) {
    if (room < 3) return 1;
    unsigned char const lo = b0 == 0xE0 ? 0xA0 : 0x80;
    unsigned char const hi = b0 == 0xED ? 0x9F : 0xBF;
    return at(1) >= lo && at(1) <= hi && isTrailByte(at(2)) ? 3 : 1;
  }
  if (b0 >= 0xF0 && b0 <= 0xF4) {
    if (room < 4) return 1;
    unsigned char const lo = b0 == 0xF0 ? 0x90 : 0x80;
    unsigned char const hi = b0 == 0xF4 ? 0x8F : 0xBF;
    return at(1) >= lo && at(1) <= hi && isTrailByte(at(2)) && isTrailByte(at(3)) ? 4 : 1;
  }
  return 1;
}

/// The character after the one at `p` in NUL-terminated text (`_mbsinc`); at the
/// terminating NUL it stays put.
inline char const *nextChar(char const *p) {
  if (*p == '\0') return p;
  if (static_cast<unsigned char>(*p) < 0x80) return p + 1;
  // A sequence never contains NUL, so four bytes (or fewer, up to the NUL) may be read.
  char const *end = p + 1;
  while (end < p + 4 && *end != '\0') ++end;
  return p + charLength(p, end);
}

/// Appends the UTF-8 form of the code point `cp` (at most U+10FFFF).
void appendCodePoint(std::string &out, unsigned long cp);

/// Appends the UTF-8 form of the NUL-terminated UTF-16 text; an unpaired surrogate
/// becomes U+FFFD.
void appendUtf16AsUtf8(std::string &out, unsigned short const *wide);

}  // namespace plat

#endif
