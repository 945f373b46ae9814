//===- inc/sys_strpattern.h - Compiled string patterns ------------------===//
//
// A small regular-expression language of the library's own, compiled once
// into a compact byte code and then used to find or replace matches.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_STRPATTERN_H
#define BFC_SYS_STRPATTERN_H

#include "sys_string.h"

/// A compiled pattern, for finding the leftmost match in a text and replacing matches.
///
/// The language:
///   a|b     alternatives; the one whose match (with the rest of the pattern) ends furthest
///   (...)   a group
///   ^       at the start of an alternative: the match attempt started at the start of the
///           text (not the current position: "x(^a)" matches "xa")
///   $       the end of the text
///   .       any one character
///   [a-z]   one character of the set; [^a-z] one character not in it; "[]" is the empty set.
///           A "-" after a member, not right before "]", adds the characters after the last
///           member added up to the one after the "-" (by byte value for two one-byte
///           characters, by code point for two UTF-8 characters, nothing across an invalid
///           byte and a UTF-8 character, nothing when the end lies before the start)
///   :a :b :c :d :l :u :x   one alphanumeric, white-space, alphabetic, decimal digit,
///           lower-case, upper-case or hexadecimal-digit character (ASCII only)
///   :h :n :z   a whole hexadecimal integer, decimal number without exponent, or decimal
///           integer as getinteger/getdouble scan it (signs skipped anywhere; never given back)
///   \b \f \n \r \t \xHH   control characters and a byte by value; "\" before anything else
///           makes that character literal. A ":" not followed by a class letter is literal.
///   X* X+   longest first: every occurrence is taken, then given back one by one, but the
///           first is never given back ("a*a" does not match "a"); "*" takes zero
///           occurrences only where X does not match at all
///   X# X@   shortest first: the rest is tried after each occurrence ("#" one or more, "@"
///           zero or more, zero again only where X does not match at all)
///   X?      X followed by the rest, or else the rest alone
/// A repeated atom is matched on its own; a repetition stops at an occurrence that matches
/// the empty string, so "(a*)*" terminates. Characters are UTF-8 (an invalid byte is a
/// character of its own) and are never split.
///
/// A pattern that does not compile leaves the empty compiled form, which matches nothing.
/// Besides stray ")", "]", "^" and operators with nothing to repeat, refused are: empty
/// alternatives and groups ("a|", "|a", "()", a lone "^"), a "\" at the end, "\x" without a
/// hexadecimal digit or with the value 0, a repeated atom or a set of more than 255 bytes
/// (length and count bytes are read unsigned, so 128 to 255 work), and nesting of groups,
/// alternations and repetitions more than 1000 deep along one path (which bounds the stack
/// the matcher needs; it never recurses per character of the text).
class BFC_API SYS_StrPattern {
public:
  /// The empty compiled form.
  SYS_StrPattern() = default;
  /// Compiles `pattern` (up to its first NUL; null counts as empty).
  SYS_StrPattern(char const *pattern) { MakePattern(pattern); }
  SYS_StrPattern(SYS_String const &pattern) { MakePattern(pattern); }
  /// Copies the compiled form whole, NUL bytes included.
  SYS_StrPattern(SYS_StrPattern const &other) = default;
  SYS_StrPattern &operator=(SYS_StrPattern const &other) = default;
  SYS_StrPattern &operator=(char const *pattern) {
    MakePattern(pattern);
    return *this;
  }
  SYS_StrPattern &operator=(SYS_String const &pattern) {
    MakePattern(pattern);
    return *this;
  }

  /// The compiled form; it may hold NUL bytes (the count of an empty set), so this text
  /// can end early: copy patterns, never this text.
  operator char const *() const noexcept { return m_Code; }

  /// The byte offset of the leftmost match in `text` and its length in `*length` (which may
  /// be null); -1 and length 0 when there is none, the text is null or empty, or the
  /// pattern is empty. Attempts start at each character; the final NUL is never tried, so
  /// "$" alone matches nothing.
  int Match(char const *text, int *length) const;

  /// Replaces successive matches in `text` by `replacement` and returns how many. Each
  /// search starts right after the previous replacement ("^" matches there again); after
  /// an empty match the next character is kept and the search moves past it. `maxCount`
  /// 0 or less means no limit. `text` and `replacement` may be the same string.
  int Substitute(SYS_String &text, SYS_String const &replacement, int maxCount) const;

private:
  void MakePattern(char const *pattern);

  SYS_String m_Code;  // the compiled form; empty when there is no usable pattern
};

#endif
