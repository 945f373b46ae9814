//===- tests/sys_string_test.cpp - SYS_String --------------------------===//
#include "sys_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string str(SYS_String const &s) { return std::string(s, static_cast<size_t>(s.GetLength())); }
int sign(int v) { return (v > 0) - (v < 0); }

// "é" (U+00E9) and "€" (U+20AC) in UTF-8.
char const kEAcute[] = "\xC3\xA9";
char const kEuro[] = "\xE2\x82\xAC";
char const *const kNull = nullptr;

/// A string made some way and the text it must hold.
struct TextCase { char const *name; SYS_String got; std::string expected; };
void expectTexts(std::vector<TextCase> const &cases) {
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(str(c.got), c.expected);
  }
}

/// A string holding `start`, the edit applied to it, and the text it must hold afterwards.
struct EditCase { char const *name, *start; void (*edit)(SYS_String &); std::string expected; };
void expectEdits(std::vector<EditCase> const &cases) {
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String s(c.start);
    c.edit(s);
    EXPECT_EQ(str(s), c.expected);
  }
}

/// A search result and the position it must give.
struct FoundCase { char const *name; int found, expected; };
void expectFound(std::vector<FoundCase> const &cases) {
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.found, c.expected);
  }
}

}  // namespace

// Counts below 1 give ""; a length takes that many bytes, NULs included; null is empty; UTF-16 becomes UTF-8.
TEST(SysString, Construction) {
  unsigned char const bytes[] = {0xC3, 0xA9, 0};
  unsigned short const wide[] = {'a', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xD800, 'z', 0};  // a pair, then a lone half
  expectTexts({
      {"default", SYS_String(), ""}, {"3 x", SYS_String('x', 3), "xxx"}, {"0 x", SYS_String('x', 0), ""},
      {"-5 x", SYS_String('x', -5), ""}, {"null", SYS_String(kNull), ""}, {"3 of 6", SYS_String("abcdef", 3), "abc"},
      {"-1 of 6", SYS_String("abcdef", -1), ""}, {"4 of null", SYS_String(nullptr, 4), ""},
      {"NUL inside", SYS_String("a\0b", 3), std::string("a\0b", 3)}, {"unsigned bytes", SYS_String(bytes), kEAcute},
      {"UTF-16", SYS_String(wide), std::string("a") + kEAcute + kEuro + "\xF0\x9F\x98\x80" "\xEF\xBF\xBD" "z"},
  });
}

// Assignment and Format replace the content, also from the string's own text; a NUL char or null gives "".
TEST(SysString, Assignment) {
  expectEdits({
      {"char", "hello", [](SYS_String &s) { s = 'q'; }, "q"}, {"NUL", "hello", [](SYS_String &s) { s = '\0'; }, ""},
      {"null", "abc", [](SYS_String &s) { s = kNull; }, ""}, {"itself", "x", [](SYS_String &s) { s = *&s; }, "x"},
      {"own tail", "abcdef", [](SYS_String &s) { s = static_cast<char const *>(s) + 2; }, "cdef"},
      {"empty UTF-16", "abc", [](SYS_String &s) { static unsigned short const none[] = {0}; s = none; }, ""},
      {"null UTF-16", "abc", [](SYS_String &s) { s = static_cast<unsigned short const *>(nullptr); }, ""},
      {"Format", "old", [](SYS_String &s) { s.Format("%s-%03d", "R", 7); }, "R-007"},
      {"Format long", "", [](SYS_String &s) { s.Format("%s", std::string(999, 'z').c_str()); }, std::string(999, 'z')},
      {"Format empty", "old", [](SYS_String &s) { s.Format("%s", ""); }, ""},
      {"Format null", "old", [](SYS_String &s) { s.Format(nullptr); }, ""},
  });
}

// Stream appends chain; numbers use the plain decimal and "%f" forms; concatenation puts the left text first;
// NUL characters and null pointers add nothing.
TEST(SysString, AppendAndConcatenate) {
  SYS_String const ab("ab");
  expectTexts({
      {"chain", SYS_String("abc") << 'd' << -12 << 7u << 2.5, "abcd-1272.500000"},
      {"int min", SYS_String() << INT_MIN, "-2147483648"}, {"uint max", SYS_String() << UINT_MAX, "4294967295"},
      {"long as int", SYS_String() << -7L, "-7"}, {"unsigned long", SYS_String() << 4000000000ul, "4000000000"},
      {"float widens", SYS_String() << 0.5f, "0.500000"}, {"negative zero", SYS_String() << -0.0, "-0.000000"},
      {"large double", SYS_String() << 1e20, "100000000000000000000.000000"},
      {"NUL", SYS_String("ab") << '\0' << "c", "abc"}, {"null text", SYS_String("ab") << kNull, "ab"},
      {"+ string", ab + SYS_String("cd"), "abcd"}, {"+ text", ab + "cd", "abcd"}, {"text +", "cd" + ab, "cdab"},
      {"+ char", ab + 'c', "abc"}, {"char +", 'c' + ab, "cab"}, {"+ NUL", ab + '\0', "ab"}, {"NUL +", '\0' + ab, "ab"},
      {"+ null", ab + kNull, "ab"}, {"null +", kNull + ab, "ab"},
  });
  EXPECT_EQ((SYS_String() << 1e300).GetLength(), 301 + 7);

  // Appending characters one by one keeps every byte; a string appended to itself doubles.
  SYS_String s;
  std::string model;
  for (int i = 0; i < 100000; ++i) {
    char const c = static_cast<char>('a' + i % 26);
    s += c;
    model += c;
  }
  EXPECT_EQ(str(s), model);
  s += s;
  EXPECT_EQ(str(s), model + model);
}

// Copies share one buffer until one of them is written; no write reaches another string.
TEST(SysString, CopyOnWrite) {
  SYS_String const original("pad list");
  EXPECT_EQ(static_cast<char const *>(SYS_String(original)), static_cast<char const *>(original));
  struct Edit { char const *name; void (*apply)(SYS_String &); } edits[] = {
      {"SetAt", [](SYS_String &s) { s.SetAt(0, 'P'); }}, {"+=", [](SYS_String &s) { s += "!"; }},
      {"<<", [](SYS_String &s) { s << 5; }}, {"Insert", [](SYS_String &s) { s.Insert(1, "x"); }},
      {"Delete", [](SYS_String &s) { s.Delete(1, 1); }}, {"Replace", [](SYS_String &s) { s.Replace(0, 1, "Q"); }},
      {"TrimLeft", [](SYS_String &s) { s.TrimLeft("p"); }}, {"TrimRight", [](SYS_String &s) { s.TrimRight("t"); }},
      {"MakeUpper", [](SYS_String &s) { s.MakeUpper(); }}, {"Format", [](SYS_String &s) { s.Format("%d", 1); }},
      {"GetBuffer", [](SYS_String &s) { s.GetBuffer(0)[0] = 'Z'; s.ReleaseBuffer(); }},
      {"GetBufferSetLength", [](SYS_String &s) { s.GetBufferSetLength(3)[0] = 'Z'; s.ReleaseBuffer(3); }},
      {"Empty", [](SYS_String &s) { s.Empty(); }},
  };
  for (auto const &edit : edits) {
    SCOPED_TRACE(edit.name);
    SYS_String victim(original), bystander(original);
    char const *const before = bystander;
    edit.apply(victim);
    EXPECT_EQ(str(bystander), "pad list");
    EXPECT_EQ(static_cast<char const *>(bystander), before);
    EXPECT_EQ(str(original), "pad list");
  }
}

// GetBuffer keeps the whole text even for a smaller request; ReleaseBuffer(-1) ends at the first NUL.
TEST(SysString, BufferAccess) {
  expectEdits({
      {"smaller request", "abcdef", [](SYS_String &s) { EXPECT_STREQ(s.GetBuffer(2), "abcdef"); s.ReleaseBuffer(); },
       "abcdef"},
      {"longer", "abcdef", [](SYS_String &s) { std::strcpy(s.GetBuffer(20), "a longer text here"); s.ReleaseBuffer(); },
       "a longer text here"},
      {"cut at a NUL", "a longer", [](SYS_String &s) { s.GetBuffer(0)[3] = '\0'; s.ReleaseBuffer(); }, "a l"},
      {"into empty", "", [](SYS_String &s) { std::strcpy(s.GetBuffer(5), "12345"); s.ReleaseBuffer(); }, "12345"},
  });
  SYS_String s("a l");
  char *b = s.GetBufferSetLength(2);  // the length is set at once
  EXPECT_EQ(s.GetLength(), 2);
  EXPECT_STREQ(b, "a ");
  s.ReleaseBuffer(1);
  EXPECT_EQ(str(s), "a");

  // While a buffer is out, a copy takes its own text, so writes through the buffer never show in it.
  char *buffer = s.GetBuffer(10);
  SYS_String const copy(s);
  SYS_String assigned;
  assigned = s;
  buffer[0] = 'X';
  s.ReleaseBuffer();
  EXPECT_EQ(str(s) + str(copy) + str(assigned), "Xaa");
}

// Comparisons follow unsigned byte order; CompareNoCase folds A-Z; null counts as empty; CompareAlNum is natural.
TEST(SysString, Comparison) {
  SYS_String const abc("abc");
  EXPECT_TRUE(abc == "abc" && "abc" == abc && abc == SYS_String("abc") && abc != SYS_String("abc", 2));
  // Bytes after an embedded NUL count for equality.
  EXPECT_TRUE(SYS_String("a\0b", 3) != SYS_String("a\0c", 3) && SYS_String("a\0b", 3) == SYS_String("a\0b", 3));
  EXPECT_TRUE(abc < "abd" && abc > "ab" && "abb" < abc && abc <= "abc" && abc >= "abc");
  struct Case { char const *name; int result, sign; } cases[] = {
      {"abc vs null", abc.Compare(nullptr), 1}, {"empty vs null", SYS_String().Compare(nullptr), 0},
      {"abc vs ABC", abc.CompareNoCase("ABC"), 0}, {"abc vs ABD", abc.CompareNoCase("ABD"), -1},
      {"0xC3 vs a", SYS_String("\xC3").Compare("a"), 1}, {"R9 vs R10", SYS_String("R9").CompareAlNum("R10"), -1},
      {"R007 vs R7", SYS_String("R007").CompareAlNum("R7"), 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(sign(c.result), c.sign);
  }
}

// Extraction clamps its arguments and never fails. The span functions compare whole characters: a set holding
// "é" does not hold "ã", which shares its lead byte, and a lone lead byte is a character of its own.
TEST(SysString, Extraction) {
  SYS_String const s("abcdef");
  std::string const multibyte = std::string(kEAcute) + kEAcute + "\xC3\xA3" + "x";
  SYS_String const m(multibyte.c_str());
  expectTexts({
      {"Mid(-3,2)", s.Mid(-3, 2), "ab"}, {"Mid(4,10)", s.Mid(4, 10), "ef"}, {"Mid(7,1)", s.Mid(7, 1), ""},
      {"Mid(6,1)", s.Mid(6, 1), ""}, {"Mid(2,-1)", s.Mid(2, -1), ""}, {"Mid(2)", s.Mid(2), "cdef"},
      {"Mid(-2)", s.Mid(-2), "abcdef"}, {"Mid(9)", s.Mid(9), ""}, {"Mid(1,max)", s.Mid(1, INT_MAX), "bcdef"},
      {"Right(10)", s.Right(10), "abcdef"}, {"Right(2)", s.Right(2), "ef"}, {"Right(-1)", s.Right(-1), ""},
      {"Left(-1)", s.Left(-1), ""}, {"Left(2)", s.Left(2), "ab"}, {"Left(99)", s.Left(99), "abcdef"},
      {"SpanIncluding", s.SpanIncluding("bca"), "abc"}, {"SpanIncluding none", s.SpanIncluding("x"), ""},
      {"SpanIncluding null", s.SpanIncluding(nullptr), ""}, {"SpanExcluding", s.SpanExcluding("ed"), "abc"},
      {"SpanExcluding null", s.SpanExcluding(nullptr), "abcdef"},
      {"multibyte including", m.SpanIncluding(kEAcute), std::string(kEAcute) + kEAcute},
      {"multibyte excluding", m.SpanExcluding("\xC3\xA3"), std::string(kEAcute) + kEAcute},
      {"a lone lead byte", m.SpanExcluding("\xC3"), multibyte},
  });
}

// Each search has its own start rule; -2 is special only for the reverse searches. Searches never match a trail
// byte or split a character; an invalid byte and an embedded NUL are characters.
TEST(SysString, Search) {
  SYS_String const s("abcabc"), empty;
  // "é€" then an invalid lone 0xA9 then "a": bytes C3 A9 E2 82 AC A9 61.
  SYS_String const m((std::string(kEAcute) + kEuro + "\xA9" + "a").c_str());
  SYS_String const mixed((std::string("R1") + kEuro + "R10").c_str()), nul("ab\0cd", 5);
  SYS_String const w("x\xC3\xA9y\xC3\xA9z\xE2\x82\xAC");  // x é y é z €: bytes 0, 1-2, 3, 4-5, 6, 7-9
  expectFound({
      {"Find c from 3", s.Find('c', 3), 5}, {"Find x", s.Find('x', 0), -1}, {"Find a from 6", s.Find('a', 6), -1},
      {"Find a from 7", s.Find('a', 7), -1}, {"Find a from -1", s.Find('a', -1), -1},
      {"Find a from -2", s.Find('a', -2), -1}, {"Find NUL from 6", s.Find('\0', 6), 6},
      {"Find NUL from 0", s.Find('\0', 0), 6}, {"Find NUL from 7", s.Find('\0', 7), -1},
      {"Find bc from 5", s.Find("bc", 5), -1}, {"Find bc from 2", s.Find("bc", 2), 4},
      {"Find empty from 2", s.Find("", 2), 2}, {"Find empty from 6", s.Find("", 6), -1},
      {"Find null from 0", s.Find(kNull, 0), 0}, {"Find longer than text", s.Find("abcabcd", 0), -1},
      {"FindOneOf from 6", s.FindOneOf("a", 6), -1}, {"FindOneOf from 7", s.FindOneOf("a", 7), -1},
      {"FindOneOf cb from 3", s.FindOneOf("cb", 3), 4}, {"FindOneOf null", s.FindOneOf(nullptr, 0), -1},
      {"ReverseFind a from -2", s.ReverseFind('a', -2), 3}, {"ReverseFind a from 2", s.ReverseFind('a', 2), 0},
      {"ReverseFind a from 6", s.ReverseFind('a', 6), -1}, {"ReverseFind a from -1", s.ReverseFind('a', -1), -1},
      {"ReverseFind a from 3", s.ReverseFind('a', 3), 3}, {"ReverseFind NUL from -2", s.ReverseFind('\0', -2), 6},
      {"ReverseFind NUL from 6", s.ReverseFind('\0', 6), 6}, {"ReverseFind NUL from 5", s.ReverseFind('\0', 5), -1},
      {"ReverseFindOneOf from 6", s.ReverseFindOneOf("a", 6), -1},
      {"ReverseFindOneOf cb from 3", s.ReverseFindOneOf("cb", 3), 2},
      {"ReverseFindOneOf /: from -2", SYS_String("a/b:c").ReverseFindOneOf("/:", -2), 3},
      {"ReverseFindOneOf at 0 from -2", SYS_String("/x").ReverseFindOneOf("/:", -2), 0},
      {"ReverseFindOneOf at 0 from 0", SYS_String("/x").ReverseFindOneOf("/:", 0), 0},
      // On the empty string -2 becomes -1: nothing is found, except the terminator.
      {"empty: ReverseFind a", empty.ReverseFind('a', -2), -1},
      {"empty: ReverseFind NUL", empty.ReverseFind('\0', -2), 0}, {"empty: Find NUL", empty.Find('\0', 0), 0},
      {"empty: Find empty", empty.Find("", 0), -1},
      // Whole characters, over "é€", 0xA9, "a", over "R1€R10" and over "ab", NUL, "cd".
      {"not the trail byte at 1", m.Find('\xA9', 0), 5}, {"not a lead byte", m.Find('\xC3', 0), -1},
      {"Find text 0xA9", m.Find("\xA9", 0), 5}, {"Find 0xA9 a", m.Find("\xA9" "a", 0), 5},
      {"Find euro", m.Find(kEuro, 0), 2}, {"Find trail bytes", m.Find("\x82\xAC", 0), -1},
      {"Find would split", m.Find("\xC3", 0), -1}, {"FindOneOf 0xA9", m.FindOneOf("\xA9", 0), 5},
      {"FindOneOf euro", m.FindOneOf(kEuro, 0), 2}, {"FindOneOf euro from 3", m.FindOneOf(kEuro, 3), -1},
      {"ReverseFind 0xA9", m.ReverseFind('\xA9', -2), 5}, {"ReverseFind 0xA9 from 4", m.ReverseFind('\xA9', 4), -1},
      {"ReverseFindOneOf é", m.ReverseFindOneOf(kEAcute, -2), 0},
      {"ReverseFindOneOf from 5", m.ReverseFindOneOf("a\xA9", 5), 5},
      {"a start inside walks trail bytes", m.Find('\xAC', 4), 4}, {"ASCII across multibyte", mixed.Find("R1", 1), 5},
      {"text from inside walks trail bytes", m.Find("\xAC\xA9", 4), 4}, {"é from 1", w.Find(kEAcute, 1), 1},
      {"é from 2", w.Find(kEAcute, 2), 4}, {"é from 3", w.Find(kEAcute, 3), 4}, {"é from 4", w.Find(kEAcute, 4), 4},
      {"é from 5", w.Find(kEAcute, 5), -1}, {"yé from 1", w.Find("y\xC3\xA9", 1), 3},
      {"éz from 2", w.Find("\xC3\xA9z", 2), 4}, {"euro from 5", w.Find(kEuro, 5), 7},
      {"euro from 8", w.Find(kEuro, 8), -1},
      {"reverse ASCII", mixed.ReverseFind('R', -2), 5}, {"NUL: Find c", nul.Find('c', 0), 3},
      {"NUL: Find cd", nul.Find("cd", 0), 3}, {"NUL: ReverseFind a", nul.ReverseFind('a', -2), 0},
      {"NUL: FindOneOf d", nul.FindOneOf("d", 0), 4},
  });
}

// Insert pads with spaces past the end; Delete and Replace with count 0 take the tail; own text is copied first;
// SetAt writes one byte; case changes touch ASCII letters only; Empty leaves "".
TEST(SysString, Editing) {
  enum Op { Insert, Delete, Replace };
  struct Case { char const *name, *start; Op op; int pos, count; char const *with, *expected; } cases[] = {
      {"Insert past end pads", "ab", Insert, 5, 0, "x", "ab   x"}, {"Insert at end", "ab", Insert, 2, 0, "x", "abx"},
      {"Insert at 0", "ab", Insert, 0, 0, "xy", "xyab"}, {"Insert empty", "ab", Insert, 5, 0, "", "ab"},
      {"Insert null", "ab", Insert, 1, 0, nullptr, "ab"}, {"Insert into empty", "", Insert, 2, 0, "x", "  x"},
      {"Delete count 0", "abcdef", Delete, 1, 0, "", "a"}, {"Delete count 2", "abcdef", Delete, 1, 2, "", "adef"},
      {"Delete at end", "abcdef", Delete, 6, 1, "", "abcdef"}, {"Delete past tail", "abcdef", Delete, 4, 9, "", "abcd"},
      {"Delete exact tail", "abcdef", Delete, 4, 2, "", "abcd"}, {"Delete all", "abcdef", Delete, 0, 0, "", ""},
      {"Replace 2", "abcdef", Replace, 1, 2, "XY", "aXYdef"}, {"Replace 0", "abcdef", Replace, 1, 0, "XY", "aXY"},
      {"Replace past end", "ab", Replace, 4, 1, "Z", "ab  Z"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String s(c.start);
    if (c.op == Insert) s.Insert(c.pos, c.with);
    if (c.op == Delete) s.Delete(c.pos, c.count);
    if (c.op == Replace) s.Replace(c.pos, c.count, c.with);
    EXPECT_EQ(str(s), c.expected);
  }
  std::string const mixed = std::string("Ab") + kEAcute + "Z";
  expectEdits({
      {"Insert own text", "abc", [](SYS_String &s) { s.Insert(1, s); }, "aabcbc"},
      {"Replace own text", "abcdef", [](SYS_String &s) { s.Replace(0, 2, static_cast<char const *>(s) + 3); },
       "defcdef"},
      {"SetAt", "aB1", [](SYS_String &s) { s.SetAt(2, 'c'); }, "aBc"},
      {"MakeUpper", mixed.c_str(), [](SYS_String &s) { s.MakeUpper(); }, std::string("AB") + kEAcute + "Z"},
      {"MakeLower", mixed.c_str(), [](SYS_String &s) { s.MakeLower(); }, std::string("ab") + kEAcute + "z"},
      {"Empty", "abc", [](SYS_String &s) { s.Empty(); }, ""},
  });
  EXPECT_EQ(SYS_String("aB1").GetAt(3), '\0');  // the terminator reads at the length
}

// Trimming: white space is exactly 0x09-0x0D and 0x20; otherwise the target's first (possibly multibyte) character.
TEST(SysString, Trimming) {
  using Trim = SYS_String &(SYS_String::*)(char const *);
  Trim const left = &SYS_String::TrimLeft, right = &SYS_String::TrimRight, both = &SYS_String::AllTrim;
  struct Case { char const *name, *start; Trim trim; char const *target, *expected; } cases[] = {
      {"right white", "ab \t\r\n\v\f", right, "", "ab"}, {"right, null target", "ab  ", right, nullptr, "ab"},
      {"right keeps 0xA0", "ab\xA0", right, "", "ab\xA0"}, {"right xy", "abxxyx", right, "xy", "abxxy"},
      {"both dash", "--a-b--", both, "-", "a-b"}, {"both, spaces only", "   ", both, "", ""},
      {"left white", " \n ab ", left, "", "ab "}, {"left all", "xxx", left, "x", ""},
      {"right all", "xxx", right, "x", ""}, {"right euro", "a\xE2\x82\xAC\xE2\x82\xAC", right, kEuro, "a"},
      {"right euro keeps trail bytes", "a\x82\xAC", right, kEuro, "a\x82\xAC"},
      {"left euro", "\xE2\x82\xAC" "a", left, kEuro, "a"}, {"right invalid byte", "a\xA9\xA9", right, "\xA9", "a"},
      {"right spares a trail byte", "\xC3\xA9", right, "\xA9", "\xC3\xA9"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String s(c.start);
    EXPECT_EQ(&(s.*c.trim)(c.target), &s);
    EXPECT_EQ(str(s), c.expected);
  }
}

// Value reads a number from the start, stores 0 when there is none, and saturates at the 32-bit limits on both models.
TEST(SysString, ValueIntegers) {
  struct Case { char const *text; int asInt; short asShort; unsigned asUnsigned; int used; } cases[] = {
      {"  42abc", 42, 42, 42u, 4}, {"abc", 0, 0, 0u, 0}, {"", 0, 0, 0u, 0}, {"-", 0, 0, 0u, 0}, {" +-1", 0, 0, 0u, 0},
      {"0x1F", 0, 0, 0u, 1}, {"-17", -17, -17, 4294967279u, 3}, {"2147483647", INT_MAX, -1, 2147483647u, 10},
      {"2147483648", INT_MAX, -1, 2147483648u, 10}, {"-2147483649", INT_MIN, 0, 2147483647u, 11},
      {"4294967295", INT_MAX, -1, 4294967295u, 10}, {"4294967296", INT_MAX, -1, 4294967295u, 10},
      {"-4294967296", INT_MIN, 0, 4294967295u, 11}, {"99999999999999999999", INT_MAX, -1, 4294967295u, 20},
      {"65537", 65537, 1, 65537u, 5}, {"-32769", -32769, 32767, 4294934527u, 6}, {"\t\n 7", 7, 7, 7u, 4},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    SYS_String const s(c.text);
    int i = -99;
    short sh = -99;
    unsigned u = 99;
    char const *end = nullptr, *uEnd = nullptr;
    EXPECT_EQ(s.Value(&i, &end), c.asInt);
    EXPECT_EQ(i, c.asInt);
    EXPECT_EQ(s.Value(&sh, nullptr), c.asShort);
    EXPECT_EQ(sh, c.asShort);
    EXPECT_EQ(s.Value(&u, &uEnd), c.asUnsigned);
    EXPECT_EQ(end - static_cast<char const *>(s), c.used);
    EXPECT_EQ(uEnd - static_cast<char const *>(s), c.used);
  }
}

// The floating forms read decimal text only, in the C locale; float narrows the double.
TEST(SysString, ValueFloatingPoint) {
  struct Case { char const *text; double value; int used; } cases[] = {
      {" 2.5x", 2.5, 4}, {"-.5", -0.5, 3}, {"5.", 5.0, 2}, {"1e3", 1000.0, 3}, {"1e", 1.0, 1}, {"1e+", 1.0, 1},
      {".", 0.0, 0}, {"abc", 0.0, 0}, {"0x10", 0.0, 1}, {"inf", 0.0, 0}, {"nan", 0.0, 0}, {"+7E-1", 0.7, 5},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    SYS_String const s(c.text);
    double d = -99;
    float f = -99;
    char const *end = nullptr;
    EXPECT_DOUBLE_EQ(s.Value(&d, &end), c.value);
    EXPECT_EQ(end - static_cast<char const *>(s), c.used);
    EXPECT_FLOAT_EQ(s.Value(&f, nullptr), static_cast<float>(c.value));
  }
  float f = 0;
  SYS_String("1e300").Value(&f);
  EXPECT_TRUE(std::isinf(f) && f > 0);
  SYS_String("-1e300").Value(&f);
  EXPECT_TRUE(std::isinf(f) && f < 0);
}
