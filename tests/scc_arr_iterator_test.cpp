//===- tests/scc_arr_iterator_test.cpp - Iterators that follow elements --===//
#include "scc_arr.h"
#include "tests/report_spy.h"
#include "tests/scc_arr_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

constexpr int N = SYS_Nowhere;
typedef SCC_Array<int>::Iterator IntIterator;

// An iterator on an element follows it; one just past the end follows the first run (so it moves on a removal and when
// the elements are pulled down, but not on an insertion inside the array); on a removal every other position goes
// nowhere; insertions leave other positions, and growth leaves every position, alone.
TEST(SccArrayIterator, FollowsItsElement) {
  struct Case { char const *name; int lower, upper; std::function<void(SCC_Array<int> &)> change;
      std::vector<std::pair<int, int>> moves; } const cases[] = {  // moves: {from, to}
      {"Delete(2, 3)", 0, 10, [](auto &a) { a.Delete(2, 3); },
       {{0, 0}, {1, 1}, {2, N}, {3, N}, {4, N}, {5, 2}, {7, 4}, {9, 6}, {10, 7}, {11, N}, {-1, N}, {N, N}}},
      {"Delete(5, -3)", 0, 10, [](auto &a) { a.Delete(5, -3); },
       {{0, 3}, {1, 4}, {2, N}, {4, N}, {5, 5}, {9, 9}, {10, 10}, {11, N}, {-1, N}}},
      {"Insert(3, 2)", 0, 10, [](auto &a) { a.Insert(3, 2); },
       {{0, 0}, {2, 2}, {3, 5}, {9, 11}, {10, 10}, {11, 11}, {-1, -1}, {N, N}}},
      {"Insert(3, -2)", 0, 10, [](auto &a) { a.Insert(3, -2); },
       {{0, -2}, {2, 0}, {3, 3}, {9, 9}, {10, 10}, {-1, -1}}},
      {"Insert(-2, 4): the block below reaches in", 0, 10, [](auto &a) { a.Insert(-2, 4); },
       {{0, 2}, {9, 11}, {10, 10}, {-1, -1}, {-2, -2}}},
      {"Insert(12, -4): the elements pulled down", 0, 10, [](auto &a) { a.Insert(12, -4); },
       {{0, -2}, {9, 7}, {10, 8}, {11, 11}, {12, 12}}},
      {"Insert(12, 3): above, nothing moves", 0, 10, [](auto &a) { a.Insert(12, 3); },
       {{0, 0}, {9, 9}, {10, 10}, {12, 12}}},
      {"Clear keeps index 0 only", 3, 8, [](auto &a) { a.Clear(); }, {{0, 0}, {3, N}, {7, N}, {8, N}, {N, N}}},
      {"growth leaves every position", 0, 10, [](auto &a) { a.ChangeBounds(5, 30); }, {{0, 0}, {7, 7}, {N, N}}},
      {"a removal outside the bounds moves nothing", 0, 10, [](auto &a) { a.Delete(8, 3); }, {{3, 3}, {N, N}}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array;
    fillTens(array, c.lower, c.upper);
    std::vector<IntIterator> iterators(c.moves.size());
    for (size_t k = 0; k < c.moves.size(); ++k) {
      iterators[k].Attach(&array, c.lower);
      iterators[k].SetIndex(c.moves[k].first);
    }
    c.change(array);
    for (size_t k = 0; k < c.moves.size(); ++k)
      EXPECT_EQ(iterators[k].GetIndex(), c.moves[k].second) << "from " << c.moves[k].first;
  }
}

// Attach takes the lower bound for no position and connects; attaching to no array keeps the index and stops following.
// An iterator may die before its array, and an array before its iterators, which are then left alive and unconnected.
TEST(SccArrayIterator, AttachAndLifetimes) {
  SCC_Array<int> array;
  fillTens(array, -4, 4);
  IntIterator first(&array);
  EXPECT_EQ(first.GetIndex(), -4);
  EXPECT_EQ(first.GetArray(), &array);
  IntIterator second;
  second.Attach(&array, 2);
  EXPECT_EQ(second.GetIndex(), 2);
  second.Attach(nullptr);
  EXPECT_FALSE(second.IsConnected());
  {
    IntIterator shortLived(&array, 2);
  }
  array.Insert(-4, 3);
  EXPECT_EQ(first.GetIndex(), -1);
  EXPECT_EQ(second.GetIndex(), 2);
  {
    SCC_Array<int> gone;
    fillTens(gone, 0, 4);
    second.Attach(&gone, 1);
  }
  EXPECT_FALSE(second.IsConnected());
  EXPECT_EQ(second.GetIndex(), 1);
}

// A copy stands where the source stands but does not follow, with priority 0; an
// assigned iterator is connected just in front of its source and follows.
TEST(SccArrayIterator, CopyAndAssignment) {
  SCC_Array<int> array;
  fillTens(array, 0, 5);
  IntIterator source(&array, 3);
  source.SetPriority(5);
  IntIterator copy(source);
  EXPECT_EQ(copy.GetArray(), &array);
  EXPECT_FALSE(copy.IsConnected());
  EXPECT_EQ(copy.GetPriority(), 0);
  IntIterator assigned;
  assigned = source;
  EXPECT_TRUE(assigned.IsConnected());
  EXPECT_EQ(assigned.GetPriority(), 5);
  array.Insert(0, 2);
  EXPECT_EQ(source.GetIndex(), 5);
  EXPECT_EQ(assigned.GetIndex(), 5);
  EXPECT_EQ(copy.GetIndex(), 3);
}

// Elements are reached through the array: standing past the end grows the array when written; standing nowhere throws.
TEST(SccArrayIterator, ReachesElementsThroughTheArray) {
  SCC_Array<int> array;
  fillTens(array, 0, 3);
  IntIterator it(&array, 1);
  EXPECT_EQ(*it, 10);
  ++it;
  EXPECT_EQ(*it, 20);
  ++it;
  EXPECT_FALSE(it.IsValid());
  *it = 30;
  EXPECT_EQ(array.GetUpperBound(), 4);
  EXPECT_TRUE(it.IsValid());
  ++it;
  array.Delete(0, 1);
  EXPECT_EQ(it.GetIndex(), 3);  // one past the end still
  --it;
  EXPECT_EQ(*it, 30);
  array.Delete(2, 1);
  EXPECT_EQ(it.GetIndex(), N);
  ++it;
  EXPECT_EQ(it.GetIndex(), N);
  EXPECT_THROW(*it, std::out_of_range);
  IntIterator detached;
  EXPECT_THROW(*detached, std::out_of_range);
}

// Without a parameter the notification is reported and the index stays, whatever
// the code; codes other than 1 and 2 never move it.
TEST(SccArrayIterator, NotificationGuards) {
  SCC_ArrayParam param{};  // the first run: 10 elements from 0 to 3
  param.runFirstTo = 3;
  param.runFirstCount = 10;
  struct Case { int code; SCC_ArrayParam *param; int index; } const cases[] = {
      {1, nullptr, 4}, {2, nullptr, 4}, {3, nullptr, 4}, {0, &param, 4},
      {3, &param, 4},  {4, &param, 4},  {-1, &param, 4}, {1, &param, 7}};
  for (auto const &c : cases) {
    SCOPED_TRACE(std::to_string(c.code) + (c.param != nullptr ? " with a parameter" : " without one"));
    ReportSpy spy;
    int index = 4;
    EXPECT_EQ(OnSCCArrayIteratorNotification(c.code, c.param, index), 0);
    EXPECT_EQ(index, c.index);
    EXPECT_EQ(spy.Summary(), c.param != nullptr ? std::vector<std::string>{} : std::vector<std::string>{"scc/scc: "});
  }
}

// A handler may move an iterator's array along during its own notification: the
// iterators connected behind it still see each change once, in the order raised.
TEST(SccArrayIterator, NestedChangesReachEveryIterator) {
  SCC_Array<int> array;
  fillTens(array, 0, 10);
  IntIterator follower(&array, 6);
  ChangeLog first(10);
  first.m_Action = [&](int code, SCC_ArrayParam *) {
    if (code == 2 && first.m_Entries.size() == 1) array.Delete(0, 1);  // removes element 0 first
  };
  array.RegisterIterator(first);
  array.Delete(8, 1);
  // The follower sees the inner removal (6 -> 5) and then the outer one, whose runs
  // it applies to its new index: 5 is below 8 and stays.
  EXPECT_EQ(follower.GetIndex(), 5);
  EXPECT_EQ(array[follower.GetIndex()], 60);
}
