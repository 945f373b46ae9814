//===- tests/sys_strpattern_stack_test.cpp - Long texts, small stacks ---===//
//
// Repetitions over millions of occurrences and alternations of thousands of alternatives run on a thread with a 256 KiB
// stack: a matcher that recursed once per occurrence or per alternative would overflow it at once.
//
//===------------------------------------------------------------------===//
#include "bfc.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <functional>
#include <string>
#include <utility>

namespace {

// Under the sanitizers every step is several times slower: a shorter text still has far
// more occurrences than any stack has room for frames. The deepest patterns the compiler
// accepts get a 1 MiB stack, 4 MiB for the sanitizers' larger frames.
#if defined(__SANITIZE_ADDRESS__)
constexpr size_t kLongText = size_t{4} << 20, kDeepStack = size_t{4} << 20;
#else
constexpr size_t kLongText = size_t{64} << 20, kDeepStack = size_t{1} << 20;
#endif

constexpr size_t kSmallStack = 256 * 1024;

/// Runs `work` to its end on a fresh thread with a stack of `stackBytes`.
void runOnSmallStack(std::function<void()> const &work, size_t stackBytes = kSmallStack) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackBytes), 0);
  pthread_t thread;
  auto const body = [](void *argument) -> void * {
    (*static_cast<std::function<void()> const *>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, body, const_cast<std::function<void()> *>(&work)), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

/// Offset and length of the match `pattern` finds in `text`.
std::pair<int, int> match(std::string const &pattern, char const *text) {
  int length = -2;
  int const offset = SYS_StrPattern(pattern.c_str()).Match(text, &length);
  return {offset, length};
}

std::string repeat(char const *piece, int times) {
  std::string s;
  for (int i = 0; i < times; ++i) s += piece;
  return s;
}

}  // namespace

// Greedy and shortest repetitions over a text of one repeated character iterate over their occurrences: the whole text
// matches, given back where the rest of the pattern needs it. A group matches each occurrence on its own, which costs
// more per occurrence: an eighth of the text is still millions of occurrences.
TEST(StrPatternLongText, RepetitionsOverOneRepeatedCharacter) {
  std::string const text(kLongText, 'a');
  struct Case { char const *pattern; size_t size; } const cases[] = {
      {"a*", kLongText}, {"a+a$", kLongText}, {".+$", kLongText},
      {"a*a", kLongText},  // the last occurrence is given back
      {"a@$", kLongText},  // the rest is tried after every occurrence
      {"[ab]@$", kLongText / 8}, {"(a)*$", kLongText / 8}, {"(b|a)+$", kLongText / 8},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.pattern);
    std::pair<int, int> found;
    runOnSmallStack([&] { found = match(c.pattern, text.c_str() + (kLongText - c.size)); });
    EXPECT_EQ(found, std::make_pair(0, static_cast<int>(c.size)));
  }
}

// Occurrences of different widths (one- and two-byte characters) are given back exactly,
// through runs of equal steps, far from where they were taken.
TEST(StrPatternLongText, GivesBackOccurrencesOfMixedWidths) {
  std::string text;
  while (text.size() < kLongText / 16) text += "a\xC3\xA9" "bb\xC3\xA9";
  std::string const withTail = text + "xyz";
  int const size = static_cast<int>(text.size());
  std::pair<int, int> all, backToX, backToE;
  runOnSmallStack([&] {
    all = match(".*", text.c_str());
    backToX = match(".*x", withTail.c_str());
    backToE = match("a.*éxyz", withTail.c_str());  // given back over "xyz", then "é" as one step
  });
  EXPECT_EQ(all, std::make_pair(0, size));
  EXPECT_EQ(backToX, std::make_pair(0, size + 1));
  EXPECT_EQ(backToE, std::make_pair(0, size + 3));
}

// Nesting along one path is capped at 1000 (repetitions, alternations and groups all
// count), which bounds the matcher's recursion; the deepest accepted patterns still match.
TEST(StrPatternLongText, NestingDepthLimit) {
  std::string const as(1000, 'a'), asThenB = as + "b";
  struct Case { std::string pattern; bool compiles; char const *text = nullptr; std::pair<int, int> found{}; };
  Case const cases[] = {
      {repeat("a?", 1000), true, as.c_str(), {0, 1000}}, {repeat("a?", 1001), false},
      {repeat("(", 1000) + "a" + repeat(")", 1000), true, "ba", {1, 1}},
      {repeat("(", 1001) + "a" + repeat(")", 1001), false},
      {repeat("(a|b)", 500), true, asThenB.c_str(), {0, 500}},  // each is a group and an alternation
      {repeat("(a|b)", 501), false},
      {"(" + repeat("a?", 998) + "|" + repeat("b?", 998) + ")", true},  // alternatives do not add up
      {"(" + repeat("a?", 999) + "|" + repeat("b?", 999) + ")", false},
      {repeat("a?", 499) + "(" + repeat("b?", 499) + ")", true},  // a sequence does
      {repeat("a?", 500) + "(" + repeat("b?", 500) + ")", false},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.pattern.substr(0, 30) + "... of " + std::to_string(c.pattern.size()));
    EXPECT_EQ(*static_cast<char const *>(SYS_StrPattern(c.pattern.c_str())) != '\0', c.compiles);
    if (c.text == nullptr) continue;
    std::pair<int, int> found;
    runOnSmallStack([&] { found = match(c.pattern, c.text); }, kDeepStack);  // the deepest patterns still match
    EXPECT_EQ(found, c.found);
  }
}
