//===- tests/sys_string_test.cpp - SYS_String --------------------------===//
#include "sys_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>

namespace {

std::string str(SYS_String const &s) { return std::string(s, static_cast<size_t>(s.GetLength())); }

// "é" (U+00E9) and "€" (U+20AC) in UTF-8.
char const kEAcute[] = "\xC3\xA9";
char const kEuro[] = "\xE2\x82\xAC";

}  // namespace

// Construction: counts below 1 give the empty string; a length takes exactly that many
// bytes, NULs included; null text counts as empty.
TEST(SysString, Construction) {
  EXPECT_EQ(str(SYS_String()), "");
  EXPECT_EQ(str(SYS_String('x', 3)), "xxx");
  EXPECT_EQ(str(SYS_String('x', 0)), "");
  EXPECT_EQ(str(SYS_String('x', -5)), "");
  EXPECT_EQ(str(SYS_String(static_cast<char const *>(nullptr))), "");
  EXPECT_EQ(str(SYS_String("abcdef", 3)), "abc");
  EXPECT_EQ(str(SYS_String("abcdef", -1)), "");
  EXPECT_EQ(str(SYS_String(nullptr, 4)), "");
  SYS_String const withNul("a\0b", 3);
  EXPECT_EQ(withNul.GetLength(), 3);
  EXPECT_EQ(str(withNul), std::string("a\0b", 3));
  unsigned char const bytes[] = {0xC3, 0xA9, 0};
  EXPECT_EQ(str(SYS_String(bytes)), kEAcute);
}

// UTF-16 converts to UTF-8, surrogate pairs to four bytes, an unpaired surrogate to U+FFFD.
TEST(SysString, FromUtf16) {
  unsigned short const text[] = {'a', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xD800, 'z', 0};
  SYS_String s(text);
  EXPECT_EQ(str(s), std::string("a") + kEAcute + kEuro + "\xF0\x9F\x98\x80" + "\xEF\xBF\xBD" + "z");
  unsigned short const empty[] = {0};
  s = empty;
  EXPECT_EQ(str(s), "");
  s = static_cast<unsigned short const *>(nullptr);
  EXPECT_EQ(str(s), "");
}

// Assignment replaces the content, also from the string's own text; a NUL char gives "".
TEST(SysString, Assignment) {
  SYS_String s("hello");
  s = 'q';
  EXPECT_EQ(str(s), "q");
  s = '\0';
  EXPECT_EQ(str(s), "");
  s = "abcdef";
  s = static_cast<char const *>(s) + 2;  // the source lies in the string's own buffer
  EXPECT_EQ(str(s), "cdef");
  s = static_cast<char const *>(nullptr);
  EXPECT_EQ(str(s), "");
  SYS_String t("x");
  t = t;
  EXPECT_EQ(str(t), "x");
}

// Stream appends chain; numbers use the plain decimal and "%f" forms.
TEST(SysString, StreamAppend) {
  SYS_String s("abc");
  s << 'd' << -12 << 7u << 2.5;
  EXPECT_EQ(str(s), "abcd-1272.500000");

  struct Case {
    char const *name;
    SYS_String value;
    char const *expected;
  } cases[] = {
      {"int min", SYS_String() << INT_MIN, "-2147483648"},
      {"uint max", SYS_String() << UINT_MAX, "4294967295"},
      {"long is cut to 32 bits", SYS_String() << static_cast<long>(-7), "-7"},
      {"unsigned long", SYS_String() << 4000000000ul, "4000000000"},
      {"float widens", SYS_String() << 0.5f, "0.500000"},
      {"negative zero", SYS_String() << -0.0, "-0.000000"},
      {"large double", SYS_String() << 1e20, "100000000000000000000.000000"},
      {"NUL appends nothing", SYS_String("ab") << '\0' << "c", "abc"},
      {"null text appends nothing", SYS_String("ab") << static_cast<char const *>(nullptr), "ab"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(str(c.value), c.expected);
  }
  SYS_String huge;
  huge << 1e300;
  EXPECT_EQ(huge.GetLength(), 301 + 7);
}

// Appending characters one by one reallocates rarely and keeps every byte.
TEST(SysString, AppendManyCharacters) {
  SYS_String s;
  std::string model;
  for (int i = 0; i < 100000; ++i) {
    char const c = static_cast<char>('a' + i % 26);
    s += c;
    model += c;
  }
  EXPECT_EQ(str(s), model);
  s += s;  // appending a string to itself
  EXPECT_EQ(str(s), model + model);
}

// Concatenation puts the left text first; NUL characters and null pointers add nothing.
TEST(SysString, Concatenation) {
  SYS_String const ab("ab");
  EXPECT_EQ(str(ab + SYS_String("cd")), "abcd");
  EXPECT_EQ(str(ab + "cd"), "abcd");
  EXPECT_EQ(str("cd" + ab), "cdab");
  EXPECT_EQ(str(ab + 'c'), "abc");
  EXPECT_EQ(str('c' + ab), "cab");
  EXPECT_EQ(str(ab + '\0'), "ab");
  EXPECT_EQ(str('\0' + ab), "ab");
  EXPECT_EQ(str(ab + static_cast<char const *>(nullptr)), "ab");
  EXPECT_EQ(str(static_cast<char const *>(nullptr) + ab), "ab");
}

// Copies share one buffer until one of them is written; no write reaches another string.
TEST(SysString, CopyOnWrite) {
  SYS_String const original("pad list");
  SYS_String copy(original);
  EXPECT_EQ(static_cast<char const *>(copy), static_cast<char const *>(original));

  struct Edit {
    char const *name;
    void (*apply)(SYS_String &);
  } edits[] = {
      {"SetAt", [](SYS_String &s) { s.SetAt(0, 'P'); }},
      {"+=", [](SYS_String &s) { s += "!"; }},
      {"<<", [](SYS_String &s) { s << 5; }},
      {"Insert", [](SYS_String &s) { s.Insert(1, "x"); }},
      {"Delete", [](SYS_String &s) { s.Delete(1, 1); }},
      {"Replace", [](SYS_String &s) { s.Replace(0, 1, "Q"); }},
      {"TrimLeft", [](SYS_String &s) { s.TrimLeft("p"); }},
      {"TrimRight", [](SYS_String &s) { s.TrimRight("t"); }},
      {"MakeUpper", [](SYS_String &s) { s.MakeUpper(); }},
      {"Format", [](SYS_String &s) { s.Format("%d", 1); }},
      {"GetBuffer", [](SYS_String &s) { s.GetBuffer(0)[0] = 'Z'; s.ReleaseBuffer(); }},
      {"GetBufferSetLength", [](SYS_String &s) { s.GetBufferSetLength(3)[0] = 'Z'; s.ReleaseBuffer(3); }},
      {"Empty", [](SYS_String &s) { s.Empty(); }},
  };
  for (auto const &edit : edits) {
    SCOPED_TRACE(edit.name);
    SYS_String victim(original);
    SYS_String bystander(original);
    char const *const before = bystander;
    edit.apply(victim);
    EXPECT_EQ(str(bystander), "pad list");
    EXPECT_EQ(static_cast<char const *>(bystander), before);
    EXPECT_EQ(str(original), "pad list");
  }
}

// While a buffer is out through GetBuffer, a copy takes its own text, so writes through the
// buffer never show in the copy.
TEST(SysString, BufferIsNeverShared) {
  SYS_String s("abc");
  char *buffer = s.GetBuffer(10);
  SYS_String const copy(s);
  SYS_String assigned;
  assigned = s;
  buffer[0] = 'X';
  s.ReleaseBuffer();
  EXPECT_EQ(str(s), "Xbc");
  EXPECT_EQ(str(copy), "abc");
  EXPECT_EQ(str(assigned), "abc");
}

// GetBuffer keeps the whole text even for a smaller request; ReleaseBuffer(-1) takes the
// length from the first NUL; GetBufferSetLength sets the length at once.
TEST(SysString, BufferAccess) {
  SYS_String s("abcdef");
  char *b = s.GetBuffer(2);
  EXPECT_STREQ(b, "abcdef");
  s.ReleaseBuffer();
  EXPECT_EQ(str(s), "abcdef");

  b = s.GetBuffer(20);
  std::strcpy(b, "a longer text here");
  s.ReleaseBuffer();
  EXPECT_EQ(str(s), "a longer text here");

  b = s.GetBuffer(0);
  b[3] = '\0';
  s.ReleaseBuffer();
  EXPECT_EQ(str(s), "a l");

  b = s.GetBufferSetLength(2);
  EXPECT_EQ(s.GetLength(), 2);
  EXPECT_STREQ(b, "a ");
  s.ReleaseBuffer(1);
  EXPECT_EQ(str(s), "a");

  SYS_String empty;
  std::strcpy(empty.GetBuffer(5), "12345");
  empty.ReleaseBuffer();
  EXPECT_EQ(str(empty), "12345");
}

// Element read, SetAt, IsEmpty, Empty and case changes of ASCII letters only.
TEST(SysString, ElementsAndCase) {
  SYS_String s("aB1");
  EXPECT_EQ(s[1], 'B');
  EXPECT_EQ(s.GetAt(3), '\0');
  s.SetAt(2, 'c');
  EXPECT_EQ(str(s), "aBc");
  SYS_String mixed(std::string("Ab" + std::string(kEAcute) + "Z").c_str());
  mixed.MakeUpper();
  EXPECT_EQ(str(mixed), std::string("AB") + kEAcute + "Z");
  mixed.MakeLower();
  EXPECT_EQ(str(mixed), std::string("ab") + kEAcute + "z");
  EXPECT_FALSE(s.IsEmpty());
  s.Empty();
  EXPECT_TRUE(s.IsEmpty());
  EXPECT_STREQ(s, "");
}

// Comparisons follow byte order; CompareNoCase folds only A-Z; null counts as empty.
TEST(SysString, Comparison) {
  SYS_String const abc("abc");
  EXPECT_TRUE(abc == "abc");
  EXPECT_TRUE("abc" == abc);
  EXPECT_TRUE(abc == SYS_String("abc"));
  EXPECT_TRUE(abc != SYS_String("abc", 2));
  EXPECT_TRUE(SYS_String("a\0b", 3) != SYS_String("a\0c", 3));  // bytes after a NUL count
  EXPECT_TRUE(SYS_String("a\0b", 3) == SYS_String("a\0b", 3));
  EXPECT_TRUE(abc < "abd");
  EXPECT_TRUE(abc > "ab");
  EXPECT_TRUE("abb" < abc);
  EXPECT_TRUE(abc <= "abc" && abc >= "abc");
  EXPECT_GT(abc.Compare(nullptr), 0);
  EXPECT_EQ(SYS_String().Compare(nullptr), 0);
  EXPECT_EQ(abc.CompareNoCase("ABC"), 0);
  EXPECT_LT(abc.CompareNoCase("ABD"), 0);
  EXPECT_GT(SYS_String("\xC3").Compare("a"), 0);  // bytes compare as unsigned
  EXPECT_LT(SYS_String("R9").CompareAlNum("R10"), 0);
  EXPECT_EQ(SYS_String("R007").CompareAlNum("R7"), 0);
}

// Extraction clamps its arguments and never fails.
TEST(SysString, Extraction) {
  SYS_String const s("abcdef");
  struct Case {
    char const *name;
    SYS_String result;
    char const *expected;
  } cases[] = {
      {"Mid(-3,2)", s.Mid(-3, 2), "ab"},
      {"Mid(4,10)", s.Mid(4, 10), "ef"},
      {"Mid(7,1)", s.Mid(7, 1), ""},
      {"Mid(6,1)", s.Mid(6, 1), ""},
      {"Mid(2,-1)", s.Mid(2, -1), ""},
      {"Mid(2)", s.Mid(2), "cdef"},
      {"Mid(-2)", s.Mid(-2), "abcdef"},
      {"Mid(9)", s.Mid(9), ""},
      {"Mid(1, INT_MAX)", s.Mid(1, INT_MAX), "bcdef"},
      {"Right(10)", s.Right(10), "abcdef"},
      {"Right(2)", s.Right(2), "ef"},
      {"Right(-1)", s.Right(-1), ""},
      {"Left(-1)", s.Left(-1), ""},
      {"Left(2)", s.Left(2), "ab"},
      {"Left(99)", s.Left(99), "abcdef"},
      {"SpanIncluding", s.SpanIncluding("bca"), "abc"},
      {"SpanIncluding none", s.SpanIncluding("x"), ""},
      {"SpanIncluding null", s.SpanIncluding(nullptr), ""},
      {"SpanExcluding", s.SpanExcluding("ed"), "abc"},
      {"SpanExcluding null", s.SpanExcluding(nullptr), "abcdef"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(str(c.result), c.expected);
  }
}

// The span functions compare whole characters: a set holding "é" does not hold "ã", which
// shares its lead byte.
TEST(SysString, SpansAreMultibyteAware) {
  std::string const text = std::string(kEAcute) + kEAcute + "\xC3\xA3" + "x";
  SYS_String const s(text.c_str());
  EXPECT_EQ(str(s.SpanIncluding(kEAcute)), std::string(kEAcute) + kEAcute);
  EXPECT_EQ(str(s.SpanExcluding("\xC3\xA3")), std::string(kEAcute) + kEAcute);
  EXPECT_EQ(str(s.SpanExcluding("\xC3")), text);  // a lone lead byte is a different character
}

// Each search has its own start rule; -2 is special only for the reverse searches.
TEST(SysString, SearchStartRules) {
  SYS_String const s("abcabc");
  struct Case {
    char const *name;
    int result, expected;
  } cases[] = {
      {"Find c from 3", s.Find('c', 3), 5},
      {"Find x", s.Find('x', 0), -1},
      {"Find a from 6", s.Find('a', 6), -1},
      {"Find a from 7", s.Find('a', 7), -1},
      {"Find a from -1", s.Find('a', -1), -1},
      {"Find a from -2", s.Find('a', -2), -1},
      {"Find NUL from 6", s.Find('\0', 6), 6},
      {"Find NUL from 0", s.Find('\0', 0), 6},
      {"Find NUL from 7", s.Find('\0', 7), -1},
      {"Find bc from 5", s.Find("bc", 5), -1},
      {"Find bc from 2", s.Find("bc", 2), 4},
      {"Find empty from 2", s.Find("", 2), 2},
      {"Find empty from 6", s.Find("", 6), -1},
      {"Find null from 0", s.Find(static_cast<char const *>(nullptr), 0), 0},
      {"Find longer than text", s.Find("abcabcd", 0), -1},
      {"FindOneOf from 6", s.FindOneOf("a", 6), -1},
      {"FindOneOf from 7", s.FindOneOf("a", 7), -1},
      {"FindOneOf cb from 3", s.FindOneOf("cb", 3), 4},
      {"FindOneOf null", s.FindOneOf(nullptr, 0), -1},
      {"ReverseFind a from -2", s.ReverseFind('a', -2), 3},
      {"ReverseFind a from 2", s.ReverseFind('a', 2), 0},
      {"ReverseFind a from 6", s.ReverseFind('a', 6), -1},
      {"ReverseFind a from -1", s.ReverseFind('a', -1), -1},
      {"ReverseFind a from 3", s.ReverseFind('a', 3), 3},
      {"ReverseFind NUL from -2", s.ReverseFind('\0', -2), 6},
      {"ReverseFind NUL from 6", s.ReverseFind('\0', 6), 6},
      {"ReverseFind NUL from 5", s.ReverseFind('\0', 5), -1},
      {"ReverseFindOneOf from 6", s.ReverseFindOneOf("a", 6), -1},
      {"ReverseFindOneOf cb from 3", s.ReverseFindOneOf("cb", 3), 2},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.result, c.expected);
  }
  EXPECT_EQ(SYS_String("a/b:c").ReverseFindOneOf("/:", -2), 3);
  EXPECT_EQ(SYS_String("/x").ReverseFindOneOf("/:", -2), 0);
  EXPECT_EQ(SYS_String("/x").ReverseFindOneOf("/:", 0), 0);
  // On the empty string -2 becomes -1: nothing is found, except the terminator.
  EXPECT_EQ(SYS_String().ReverseFind('a', -2), -1);
  EXPECT_EQ(SYS_String().ReverseFind('\0', -2), 0);
  EXPECT_EQ(SYS_String().Find('\0', 0), 0);
  EXPECT_EQ(SYS_String().Find("", 0), -1);
}

// Searches never match a trail byte or split a character; an invalid byte is a character.
TEST(SysString, SearchIsMultibyteAware) {
  // "é€" then an invalid lone 0xA9 then "a": bytes C3 A9 E2 82 AC A9 61.
  std::string const text = std::string(kEAcute) + kEuro + "\xA9" + "a";
  SYS_String const s(text.c_str());
  EXPECT_EQ(s.Find('\xA9', 0), 5);  // the trail byte at 1 is not a character of its own
  EXPECT_EQ(s.Find('\xC3', 0), -1);  // nor is a lead byte
  EXPECT_EQ(s.Find("\xA9", 0), 5);
  EXPECT_EQ(s.Find("\xA9" "a", 0), 5);
  EXPECT_EQ(s.Find(kEuro, 0), 2);
  EXPECT_EQ(s.Find("\x82\xAC", 0), -1);
  EXPECT_EQ(s.Find("\xC3", 0), -1);  // would split "é"
  EXPECT_EQ(s.FindOneOf("\xA9", 0), 5);
  EXPECT_EQ(s.FindOneOf(kEuro, 0), 2);
  EXPECT_EQ(s.FindOneOf(kEuro, 3), -1);
  EXPECT_EQ(s.ReverseFind('\xA9', -2), 5);
  EXPECT_EQ(s.ReverseFind('\xA9', 4), -1);
  EXPECT_EQ(s.ReverseFindOneOf(kEAcute, -2), 0);
  EXPECT_EQ(s.ReverseFindOneOf("a\xA9", 5), 5);
  // A start inside a character walks from there: the trail bytes become characters.
  EXPECT_EQ(s.Find('\xAC', 4), 4);
  // ASCII searches cross multibyte text unaffected.
  SYS_String const mixed((std::string("R1") + kEuro + "R10").c_str());
  EXPECT_EQ(mixed.Find("R1", 1), 5);
  EXPECT_EQ(mixed.ReverseFind('R', -2), 5);
}

// Searches see embedded NUL bytes as ordinary bytes within the length.
TEST(SysString, SearchWithEmbeddedNul) {
  SYS_String const s("ab\0cd", 5);
  EXPECT_EQ(s.Find('c', 0), 3);
  EXPECT_EQ(s.Find("cd", 0), 3);
  EXPECT_EQ(s.ReverseFind('a', -2), 0);
  EXPECT_EQ(s.FindOneOf("d", 0), 4);
}

// Insert pads with spaces past the end; Delete and Replace with count 0 take the tail.
TEST(SysString, Editing) {
  struct Case {
    char const *name;
    char const *start;
    void (*edit)(SYS_String &);
    char const *expected;
  } cases[] = {
      {"Insert past end pads", "ab", [](SYS_String &s) { s.Insert(5, "x"); }, "ab   x"},
      {"Insert at end", "ab", [](SYS_String &s) { s.Insert(2, "x"); }, "abx"},
      {"Insert at 0", "ab", [](SYS_String &s) { s.Insert(0, "xy"); }, "xyab"},
      {"Insert empty", "ab", [](SYS_String &s) { s.Insert(5, ""); }, "ab"},
      {"Insert null", "ab", [](SYS_String &s) { s.Insert(1, nullptr); }, "ab"},
      {"Insert into empty", "", [](SYS_String &s) { s.Insert(2, "x"); }, "  x"},
      {"Delete count 0", "abcdef", [](SYS_String &s) { s.Delete(1, 0); }, "a"},
      {"Delete count 2", "abcdef", [](SYS_String &s) { s.Delete(1, 2); }, "adef"},
      {"Delete at end", "abcdef", [](SYS_String &s) { s.Delete(6, 1); }, "abcdef"},
      {"Delete past tail", "abcdef", [](SYS_String &s) { s.Delete(4, 9); }, "abcd"},
      {"Delete exact tail", "abcdef", [](SYS_String &s) { s.Delete(4, 2); }, "abcd"},
      {"Delete all", "abcdef", [](SYS_String &s) { s.Delete(0, 0); }, ""},
      {"Replace count 2", "abcdef", [](SYS_String &s) { s.Replace(1, 2, "XY"); }, "aXYdef"},
      {"Replace count 0", "abcdef", [](SYS_String &s) { s.Replace(1, 0, "XY"); }, "aXY"},
      {"Replace past end", "ab", [](SYS_String &s) { s.Replace(4, 1, "Z"); }, "ab  Z"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String s(c.start);
    c.edit(s);
    EXPECT_EQ(str(s), c.expected);
  }
}

// Inserting or replacing with the string's own text works on a copy of that text.
TEST(SysString, EditingWithOwnText) {
  SYS_String s("abc");
  s.Insert(1, s);
  EXPECT_EQ(str(s), "aabcbc");
  SYS_String t("abcdef");
  t.Replace(0, 2, static_cast<char const *>(t) + 3);
  EXPECT_EQ(str(t), "defcdef");
}

// Trimming: white space is exactly 0x09-0x0D and 0x20; otherwise only the target's first
// character, which may be a multibyte character.
TEST(SysString, Trimming) {
  struct Case {
    char const *name;
    char const *start;
    SYS_String &(SYS_String::*trim)(char const *);
    char const *target;
    std::string expected;
  } cases[] = {
      {"TrimRight white", "ab \t\r\n\v\f", &SYS_String::TrimRight, "", "ab"},
      {"TrimRight null target", "ab  ", &SYS_String::TrimRight, nullptr, "ab"},
      {"TrimRight keeps 0x85 and 0xA0", "ab\xA0", &SYS_String::TrimRight, "", "ab\xA0"},
      {"TrimRight xy", "abxxyx", &SYS_String::TrimRight, "xy", "abxxy"},
      {"AllTrim dash", "--a-b--", &SYS_String::AllTrim, "-", "a-b"},
      {"AllTrim spaces only", "   ", &SYS_String::AllTrim, "", ""},
      {"TrimLeft white", " \n ab ", &SYS_String::TrimLeft, "", "ab "},
      {"TrimLeft all", "xxx", &SYS_String::TrimLeft, "x", ""},
      {"TrimRight all", "xxx", &SYS_String::TrimRight, "x", ""},
      {"TrimRight euro", "a\xE2\x82\xAC\xE2\x82\xAC", &SYS_String::TrimRight, kEuro, "a"},
      {"TrimRight euro keeps trail", "a\x82\xAC", &SYS_String::TrimRight, kEuro, "a\x82\xAC"},
      {"TrimLeft euro", "\xE2\x82\xAC" "a", &SYS_String::TrimLeft, kEuro, "a"},
      {"TrimRight invalid byte", "a\xA9\xA9", &SYS_String::TrimRight, "\xA9", "a"},
      {"TrimRight spares trail byte", "\xC3\xA9", &SYS_String::TrimRight, "\xA9", "\xC3\xA9"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String s(c.start);
    SYS_String &result = (s.*c.trim)(c.target);
    EXPECT_EQ(&result, &s);
    EXPECT_EQ(str(s), c.expected);
  }
}

// Value reads a number from the start, stores 0 when there is none, and saturates at the
// 32-bit limits on both data models.
TEST(SysString, ValueIntegers) {
  struct Case {
    char const *text;
    int asInt;
    short asShort;
    unsigned asUnsigned;
    int used;
  } cases[] = {
      {"  42abc", 42, 42, 42u, 4},
      {"abc", 0, 0, 0u, 0},
      {"", 0, 0, 0u, 0},
      {"-", 0, 0, 0u, 0},
      {" +-1", 0, 0, 0u, 0},
      {"0x1F", 0, 0, 0u, 1},
      {"-17", -17, -17, 4294967279u, 3},
      {"2147483647", INT_MAX, -1, 2147483647u, 10},
      {"2147483648", INT_MAX, -1, 2147483648u, 10},
      {"-2147483649", INT_MIN, 0, 2147483647u, 11},
      {"4294967295", INT_MAX, -1, 4294967295u, 10},
      {"4294967296", INT_MAX, -1, 4294967295u, 10},
      {"-4294967296", INT_MIN, 0, 4294967295u, 11},
      {"99999999999999999999", INT_MAX, -1, 4294967295u, 20},
      {"65537", 65537, 1, 65537u, 5},
      {"-32769", -32769, 32767, 4294934527u, 6},
      {"\t\n 7", 7, 7, 7u, 4},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    SYS_String const s(c.text);
    int i = -99;
    char const *end = nullptr;
    EXPECT_EQ(s.Value(&i, &end), c.asInt);
    EXPECT_EQ(i, c.asInt);
    EXPECT_EQ(end - static_cast<char const *>(s), c.used);
    short sh = -99;
    EXPECT_EQ(s.Value(&sh, nullptr), c.asShort);
    EXPECT_EQ(sh, c.asShort);
    unsigned u = 99;
    end = nullptr;
    EXPECT_EQ(s.Value(&u, &end), c.asUnsigned);
    EXPECT_EQ(end - static_cast<char const *>(s), c.used);
  }
}

// The floating forms read decimal text only, in the C locale; float narrows the double.
TEST(SysString, ValueFloatingPoint) {
  struct Case {
    char const *text;
    double value;
    int used;
  } cases[] = {
      {" 2.5x", 2.5, 4},    {"-.5", -0.5, 3},   {"5.", 5.0, 2},     {"1e3", 1000.0, 3},
      {"1e", 1.0, 1},       {"1e+", 1.0, 1},    {".", 0.0, 0},      {"abc", 0.0, 0},
      {"0x10", 0.0, 1},     {"inf", 0.0, 0},    {"nan", 0.0, 0},    {"+7E-1", 0.7, 5},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    SYS_String const s(c.text);
    double d = -99;
    char const *end = nullptr;
    EXPECT_DOUBLE_EQ(s.Value(&d, &end), c.value);
    EXPECT_EQ(end - static_cast<char const *>(s), c.used);
    float f = -99;
    EXPECT_FLOAT_EQ(s.Value(&f, nullptr), static_cast<float>(c.value));
  }
  float f = 0;
  SYS_String("1e300").Value(&f);
  EXPECT_TRUE(std::isinf(f) && f > 0);
  SYS_String("-1e300").Value(&f);
  EXPECT_TRUE(std::isinf(f) && f < 0);
}

// Format replaces the content, however long the result.
TEST(SysString, Format) {
  SYS_String s("old");
  s.Format("%s-%03d", "R", 7);
  EXPECT_EQ(str(s), "R-007");
  s.Format("%s", std::string(1000, 'z').c_str());
  EXPECT_EQ(s.GetLength(), 1000);
  s.Format("%s", "");
  EXPECT_EQ(str(s), "");
  s.Format(nullptr);
  EXPECT_EQ(str(s), "");
}
