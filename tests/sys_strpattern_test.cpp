//===- tests/sys_strpattern_test.cpp - Compiling, matching, replacing ---===//
#include "bfc.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace std::string_literals;  // "..."s keeps NUL bytes

/// The first `size` bytes of the compiled form (it may hold NUL bytes, so its text can end
/// early; the expected size says how far to read).
std::string compiled(SYS_StrPattern const &p, size_t size) {
  return std::string(static_cast<char const *>(p), size);
}

bool compiles(SYS_StrPattern const &p) { return *static_cast<char const *>(p) != '\0'; }

/// A pattern, a text, and the offset and length of the match it must give.
struct MatchCase { char const *pattern, *text; int offset, length; };

void expectMatches(std::vector<MatchCase> const &cases) {
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string("\"") + c.pattern + "\" in \"" + c.text + "\"");
    SYS_StrPattern const p(c.pattern);
    ASSERT_TRUE(compiles(p)) << "does not compile";
    int length = -7;
    EXPECT_EQ(p.Match(c.text, &length), c.offset);
    EXPECT_EQ(length, c.length);
  }
}

}  // namespace

// The compiled form is the documented byte code, byte for byte: "|" before every
// alternative but the last, "e" after each, operator and length byte before a repeated atom.
TEST(StrPatternCompile, ByteCodeOfEachConstruct) {
  struct Case { char const *pattern; std::string code; } const cases[] = {
      {"ab*|c", "|ca*\x02" "cbecce"s}, {"(a|b)", ")|caecbee"s}, {"a|b|c", "|cae|cbecce"s}, {"^a$", "^ca$e"s},
      {"(a)#", "#\x04)caee"s}, {".@$", "@\x01.$e"s}, {"x?", "?\x02" "cxe"s}, {":z+", "+\x02:ze"s},
      {":q", "c:cqe"s},  // not a class letter: a plain colon, then "q"
      {"a:", "cac:e"s}, {"\\x41\\n\\b\\t\\r\\f", "cAc\nc\bc\tc\rc\fe"s}, {"\\x4a\\x4A\\x7", "cJcJc\x07" "e"s},
      {"\\x414", "cAc4e"s},  // at most two digits
      {"\\*\\(\\\\\\q", "c*c(c\\cqe"s}, {"[a-d]", "[\x04" "abcde"s}, {"[^a-c]", "]\x03" "abce"s},
      {"[]", "[\x00" "e"s}, {"[^]", "]\x00" "e"s}, {"[]|x", "|[\x00" "ecxe"s}, {"[a-]", "[\x02" "a-e"s},
      {"[-a]", "[\x02-ae"s}, {"[^-]", "]\x01-e"s}, {"[--0]", "[\x04-./0e"s},
      {"[c-a]", "[\x01" "ce"s},        // end before start: nothing added
      {"[a-c-e]", "[\x05" "abcdee"s},  // the second range starts after "c"
      {"[c-a-e]", "[\x03" "cdee"s},    // an empty range leaves "c" the last member
      {"[\\x41-C\\]]", "[\x04" "ABC]e"s},
      {"[\\x7e-\\x81]", "[\x04~\x7f\x80\x81" "e"s},  // bytes compare unsigned
      {"é*", "*\x03" "c\xC3\xA9" "e"s},             // a character atom carries all its bytes
      {"[α-γ]", "[\x06\xCE\xB1\xCE\xB2\xCE\xB3" "e"s},
      {"[\\x7f-\xC2\x81]", "[\x05\x7f\xC2\x80\xC2\x81" "e"s},  // ASCII to UTF-8: by code point
      {"[\xD0\xBF-\xD1\x81]", "[\x06\xD0\xBF\xD1\x80\xD1\x81" "e"s},  // п to с: across lead bytes
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.pattern);
    EXPECT_EQ(compiled(SYS_StrPattern(c.pattern), c.code.size() + 1), c.code + '\0');
  }
}

// Whatever does not compile leaves the empty compiled form, which matches nothing.
TEST(StrPatternCompile, RefusedPatternsLeaveEmptyForm) {
  char const *const cases[] = {
      "a**", "*a", "a)", "(a", "[a", "\\x", "\\", "a\\", "\\x0", "\\x00", "\\xg", "[\\x0]", "a|", "|a", "()",
      "(|a)", "(a|)", "^", "(^)", "a^b", "a]", "?", "a|*", "[a-", "[a-\\", "x@#", "a+?", "(a)(", ")", "",
  };
  for (char const *c : cases) {
    SCOPED_TRACE(c);
    SYS_StrPattern const p(c);
    EXPECT_STREQ(p, "");
    int length = 5;
    EXPECT_EQ(p.Match("a(|)^]x*\\", &length), -1);
    EXPECT_EQ(length, 0);
  }
  EXPECT_STREQ(SYS_StrPattern(static_cast<char const *>(nullptr)), "");
  EXPECT_STREQ(SYS_StrPattern(), "");
}

// A length or count byte holds 255: longer atoms and sets are refused, and lengths of 128
// and more are read unsigned, so such atoms are skipped and matched correctly.
TEST(StrPatternCompile, AtomAndSetLengthLimits) {
  struct Case { std::string pattern; bool compiles; } const cases[] = {
      {"(" + std::string(126, 'a') + ")*", true},    // ")" + 126 x "ca" + "e" = 254 bytes
      {"(" + std::string(126, 'a') + "b)*", false},  // 256 bytes
      {"[" + std::string(255, 'a') + "]", true}, {"[" + std::string(256, 'a') + "]", false},
      {"[\\x01-\\xff]", true}, {"[a\\x01-\\xff]", false},  // 1 + 254 bytes, then one more
      {"[\xC2\x80-\xDF\xBF]", false},                       // far too many characters
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.pattern.substr(0, 40));
    EXPECT_EQ(compiles(SYS_StrPattern(c.pattern.c_str())), c.compiles);
  }

  // A 200-byte repeated atom followed by more code: both are reached.
  std::string const group = "(" + std::string(99, 'a') + ")";  // 1 + 198 + 1 = 200 bytes
  SYS_StrPattern const p((group + "*b").c_str());
  EXPECT_EQ(static_cast<unsigned char>(static_cast<char const *>(p)[1]), 200u);
  std::string const text = "x" + std::string(198, 'a') + "b";
  int length = 0;
  EXPECT_EQ(p.Match(text.c_str(), &length), 1);
  EXPECT_EQ(length, 199);
  EXPECT_EQ(SYS_StrPattern((group + "?b").c_str()).Match("b", &length), 0);
  EXPECT_EQ(length, 1);
}

// Copies and assignments carry the whole compiled form, past a NUL byte inside it.
TEST(StrPatternCompile, CopiesKeepNulBytes) {
  SYS_StrPattern const original("[]|x");  // "|[", 0, "e", "cx", "e"
  SYS_StrPattern copy(original), assigned, reassigned("abc");
  assigned = original;
  reassigned = assigned;
  SYS_StrPattern const *const all[] = {&original, &copy, &assigned, &reassigned};
  for (SYS_StrPattern const *p : all) {
    int length = 0;
    EXPECT_EQ(p->Match("yx", &length), 1);
    EXPECT_EQ(length, 1);
    EXPECT_EQ(compiled(*p, 7), "|[\x00" "ecxe"s);
  }
  // Assigning a text compiles it; a failing one empties a pattern that had a form.
  reassigned = "a(";
  EXPECT_STREQ(reassigned, "");
  reassigned = SYS_String("b+");
  EXPECT_STREQ(reassigned, "+\x02" "cbe");
}

// The worked cases of the matching rules: leftmost match, longest alternative, greedy
// repetitions that keep their first occurrence, shortest repetitions, anchors.
TEST(StrPatternMatch, RepetitionsAlternationsAnchors) {
  expectMatches({
      {"b+", "aabbbc", 2, 3}, {"b#", "aabbbc", 2, 1}, {"b?c", "abc", 1, 2}, {"a@a", "a", -1, 0},
      {"a*a", "a", -1, 0},  // the star keeps the one "a"
      {"a*a", "aa", 0, 2},  // later occurrences are given back
      {"a?a", "a", 0, 1}, {"a@b", "aaab", 0, 4}, {"a+a", "aaa", 0, 3}, {"ab|abcd", "xabcd", 1, 4},
      {"abcd|ab", "xabcd", 1, 4}, {"a|ab|abc|b", "abc", 0, 3}, {"x@", "abc", 0, 0}, {"x#", "abc", -1, 0},
      {"x*", "abc", 0, 0},  // zero occurrences: an empty match at the first character
      {"a.*b", "axxbyyb", 0, 7}, {"a.#b", "axxbyyb", 0, 4}, {"a@", "aaa", 0, 1}, {"a#b", "aab", 0, 3},
      {"a.@b", "abyyb", 0, 5},  // "." matches, so it must be taken once
      {"ab*c", "abbbc", 0, 5}, {"(a|b)*", "abba", 0, 4}, {"(a*)*", "b", 0, 0}, {"(a*)+", "b", 0, 0},
      {"(a|ab)(c|bcd)", "abcd", 0, 4},  // each alternative runs on into the rest
      {"(a|ab)?b", "ab", 0, 2},         // the optional atom runs on into the rest too
      {"(ab|a)*b", "abab", 1, 1},       // occurrences match alone: "ab", "ab", nothing left
      {"(a*)*b", "aab", 0, 3},          // an empty occurrence ends the repetition
      {"(a?)@b", "ab", 0, 2}, {"^b", "ab", -1, 0}, {"^a", "ab", 0, 1}, {"^a|b", "cb", 1, 1}, {"c$", "abc", 2, 1},
      {"$", "abc", -1, 0}, {"a$|b", "ab", 1, 1}, {"a*$", "baaa", 1, 3}, {"$*a", "ba", 1, 1},
      {"x(^a)", "xa", 0, 2},  // "^" looks at where the attempt started
      {"ca(^b)", "cab", 0, 3}, {"ca(^b)", "zcab", -1, 0},
  });
}

// A character is one ASCII byte, one valid UTF-8 sequence or one invalid byte: atoms, sets
// and "." take whole characters, and an attempt never starts inside one.
TEST(StrPatternMatch, MultibyteCharacters) {
  expectMatches({
      {"é", "aé", 1, 2}, {"é+", "xééé", 1, 6}, {".:d", "é5", 0, 3}, {"..", "aé", 0, 3}, {"[é]", "aé", 1, 2},
      {"[^é]", "é", -1, 0}, {"[^a]", "é", 0, 2}, {"[aé]+", "xaéa", 1, 4}, {"[α-γ]+", "xβγδ", 1, 4},
      {"\\xC3", "é", -1, 0},    // one byte is not the two-byte character
      {"\\xA9", "é", -1, 0},    // nor is an attempt made at its second byte
      {"\\xA9", "\xA9", 0, 1},  // an invalid byte is a character of its own
      {".", "\xC3x", 0, 1}, {"\\xC3x", "\xC3x", 0, 2}, {"€#x", "€€x", 0, 7}, {"[€a]", "b€", 1, 3},
      {":d", "é", -1, 0}, {":a+", "aéb", 0, 1},  // classes are ASCII only
  });
}

// Empty text and null text give -1 and length 0, as does the empty pattern; a null length pointer is allowed.
TEST(StrPatternMatch, EmptyNullAndEmptyPattern) {
  struct Case { SYS_StrPattern pattern; char const *text; } const cases[] = {
      {SYS_StrPattern("x*"), ""}, {SYS_StrPattern("x*"), nullptr}, {SYS_StrPattern(), "abc"},
  };
  for (auto const &c : cases) {
    int length = 9;
    EXPECT_EQ(c.pattern.Match(c.text, &length), -1);
    EXPECT_EQ(length, 0);
  }
  EXPECT_EQ(SYS_StrPattern("b").Match("abc", nullptr), 1);
}

// Successive matches are replaced; the search restarts after each replacement (so "^"
// matches there again), and after an empty match one character is kept and passed.
TEST(StrPatternSubstitute, ReplacesSuccessiveMatches) {
  struct Case { char const *pattern, *replacement, *text; int maxCount; char const *result; int count; };
  Case const cases[] = {
      {"a", "bb", "aaa", 0, "bbbbbb", 3}, {"a", "bb", "aaa", 2, "bbbba", 2}, {"a", "bb", "aaa", -1, "bbbbbb", 3},
      {"a", "aa", "aaa", 0, "aaaaaa", 3},  // replacements are not searched again
      {"^a", "b", "aaa", 0, "bbb", 3}, {"^a", "b", "aba", 0, "bba", 1}, {"b", "", "abcb", 0, "ac", 2},
      {"x*", "-", "ab", 0, "-a-b", 2}, {"x*", "-", "", 0, "", 0}, {"a*", "-", "aab", 0, "--b", 2},
      {"x*", "-", "é", 0, "-é", 1},  // a whole character is kept
      {"é", "e", "aéé", 0, "aee", 2}, {"z", "y", "abc", 0, "abc", 0}, {"$", "y", "abc", 0, "abc", 0},
      {"[", "y", "a[b", 0, "a[b", 0},  // does not compile: nothing happens
      {":z", "<n>", "R10 C-3", 0, "R<n> C<n>", 2},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::string(c.pattern) + " -> " + c.replacement + " in " + c.text);
    SYS_String text(c.text);
    EXPECT_EQ(SYS_StrPattern(c.pattern).Substitute(text, c.replacement, c.maxCount), c.count);
    EXPECT_STREQ(text, c.result);
  }
}

// The text and the replacement may be one string, and copies of the text keep their value;
// the bytes after an embedded NUL are kept as they are: the search ends at the NUL.
TEST(StrPatternSubstitute, AliasedSharedAndNulStrings) {
  SYS_String text("ab");
  SYS_String const before(text);
  EXPECT_EQ(SYS_StrPattern("b").Substitute(text, text, 0), 1);
  EXPECT_STREQ(text, "aab");
  EXPECT_STREQ(before, "ab");

  SYS_String nul("a\0a", 3);
  EXPECT_EQ(SYS_StrPattern("a").Substitute(nul, "b", 0), 1);
  ASSERT_EQ(nul.GetLength(), 3);
  EXPECT_EQ(std::memcmp(static_cast<char const *>(nul), "b\0a", 3), 0);
}
