//===- sys/sys_strpattern_code.h - Byte code of string patterns ---------===//
//
// The compiled form of a pattern, shared by the compiler and the matcher.
//
//   list     := "|" sequence "e" list | sequence "e"
//   sequence := ["^"] item...            (at least one item)
//   item     := atom | op length atom    (op one of * + ? # @, length = atom bytes)
//   atom     := "c" char | "." | "$" | ":" letter | ")" list
//             | "[" count members | "]" count members
//
// Groups carry no length: code is skipped by walking it. A length or count byte
// is read as unsigned (0 to 255). The compiler is the only producer of byte code,
// so the matcher trusts it to follow the grammar.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_STRPATTERN_CODE_H
#define BFC_SYS_STRPATTERN_CODE_H

#include "sys_string.h"

#include "plat/plat_mbcs.h"

#include <cstdint>

namespace sys::pattern {

using Byte = unsigned char;

// Opcodes (each is the byte itself).
constexpr Byte kAlternation = '|';
constexpr Byte kEndOfAlternative = 'e';
constexpr Byte kStart = '^';
constexpr Byte kChar = 'c';
constexpr Byte kAny = '.';
constexpr Byte kEnd = '$';
constexpr Byte kClass = ':';
constexpr Byte kGroup = ')';
constexpr Byte kSet = '[';
constexpr Byte kNotSet = ']';
constexpr Byte kStar = '*';
constexpr Byte kPlus = '+';
constexpr Byte kOptional = '?';
constexpr Byte kShortest = '#';        ///< one or more, shortest first
constexpr Byte kShortestOrNone = '@';  ///< zero or more, shortest first

/// The matcher recurses once per alternation, repetition and group met along one path
/// through a pattern (never per character of the text); the compiler refuses patterns whose
/// paths are deeper, which bounds the stack whatever the pattern and the text.
constexpr int kMaxDepth = 1000;

inline bool isRepeatOperator(Byte b) {
  return b == kStar || b == kPlus || b == kOptional || b == kShortest || b == kShortestOrNone;
}

inline bool isClassLetter(char c) {
  switch (c) {
    case 'a': case 'b': case 'c': case 'd': case 'h': case 'l': case 'n': case 'u': case 'x': case 'z':
      return true;
    default:
      return false;
  }
}

// ASCII classification, independent of the C library's locale.
inline bool isDigit(unsigned char b) { return b >= '0' && b <= '9'; }
inline bool isLower(unsigned char b) { return b >= 'a' && b <= 'z'; }
inline bool isUpper(unsigned char b) { return b >= 'A' && b <= 'Z'; }
inline bool isAlpha(unsigned char b) { return isLower(b) || isUpper(b); }
inline bool isHexDigit(unsigned char b) { return isDigit(b) || (b >= 'a' && b <= 'f') || (b >= 'A' && b <= 'F'); }
inline bool isSpace(unsigned char b) { return b == ' ' || (b >= '\t' && b <= '\r'); }

/// Whether the byte is in the one-character class `letter` (not h, n or z); ASCII only, so
/// a byte of 0x80 or above (and the NUL) is in none.
inline bool inClass(Byte letter, unsigned char b) {
  switch (letter) {
    case 'a': return isAlpha(b) || isDigit(b);
    case 'b': return isSpace(b);
    case 'c': return isAlpha(b);
    case 'd': return isDigit(b);
    case 'l': return isLower(b);
    case 'u': return isUpper(b);
    default: return isHexDigit(b);  // 'x'
  }
}

/// Byte count of the character of a "c" atom. What follows it in the code is an opcode or
/// the end (ASCII or NUL), so the character never runs on into the next byte.
inline int codeCharLength(Byte const *ch) {
  char const *const p = reinterpret_cast<char const *>(ch);
  return static_cast<int>(plat::nextChar(p) - p);
}

inline Byte const *skipList(Byte const *pc);

/// The code after the atom at `pc`.
inline Byte const *skipAtom(Byte const *pc) {
  switch (*pc) {
    case kChar: return pc + (pc[1] < 0x80 ? 2 : 1 + codeCharLength(pc + 1));
    case kClass: return pc + 2;
    case kSet: case kNotSet: return pc + 2 + pc[1];
    case kGroup: return skipList(pc + 1);
    default: return pc + 1;  // "." and "$"
  }
}

/// The code after the item at `pc`.
inline Byte const *skipItem(Byte const *pc) {
  return isRepeatOperator(*pc) ? pc + 2 + pc[1] : skipAtom(pc);
}

/// The "e" that ends the sequence starting at `pc`.
inline Byte const *skipSequence(Byte const *pc) {
  if (*pc == kStart) ++pc;
  for (;;) {
    if (pc[0] == kChar && pc[1] < 0x80) {
      pc += 2;  // a plain ASCII character, by far the most common item
    } else if (*pc == kEndOfAlternative) {
      return pc;
    } else {
      pc = skipItem(pc);
    }
  }
}

/// The code after the alternation list starting at `pc`.
inline Byte const *skipList(Byte const *pc) {
  while (*pc == kAlternation) pc = skipSequence(pc + 1) + 1;
  return skipSequence(pc) + 1;
}

/// The compiled form of `pattern`; empty when it does not compile (or is null or empty).
SYS_String compile(char const *pattern);

}  // namespace sys::pattern

#endif
