//===- tests/ui_wordlist_test.cpp - The growable word list --------------===//
#include "ui_wordlist.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <new>
#include <vector>

namespace {

std::vector<int32_t> contents(UI_WordList const &list) {
  return std::vector<int32_t>(list.GetData(), list.GetData() + list.GetSize());
}

}  // namespace

// Runs of words appended across every growth step keep all earlier words in order.
TEST(UiWordList, GrowthKeepsTheWords) {
  UI_WordList list;
  std::vector<int32_t> model;
  EXPECT_EQ(list.GetData(), nullptr);
  for (int run = 1; run <= 300; ++run) {
    int32_t *w = list.Extend(run % 17);
    for (int k = 0; k < run % 17; ++k) w[k] = run * 100 + k, model.push_back(run * 100 + k);
    list.Append(-run);
    model.push_back(-run);
  }
  EXPECT_EQ(contents(list), model);
  EXPECT_EQ(list[0], 100);
  EXPECT_EQ(list[list.GetSize() - 1], -300);
}

// A negative count, or a size past the range of an int, throws std::bad_alloc and leaves the list as it was.
TEST(UiWordList, ImpossibleGrowthThrows) {
  UI_WordList list;
  list.Append(7);
  for (int count : {-1, INT_MIN, INT_MAX}) {
    SCOPED_TRACE(count);
    EXPECT_THROW(list.Extend(count), std::bad_alloc);
    EXPECT_EQ(contents(list), (std::vector<int32_t>{7}));
  }
  EXPECT_EQ(list.Extend(0), list.GetData() + 1);
}
