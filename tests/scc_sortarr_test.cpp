//===- tests/scc_sortarr_test.cpp - Sortable arrays and sort objects ----===//
#include "scc_sortarr.h"
#include "tests/report_spy.h"
#include "tests/scc_arr_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

/// Logs every Comp ("C i j") and Swap ("S i j") of an int array and can call them directly. On a sortable array they
/// are its own; on a plain array they compare and swap the ints here, so the library's untyped sort drives them.
template <class Base>
class Logging : public Base {
public:
  static constexpr bool kSortable = std::is_same_v<Base, SCC_SortableArray<int>>;
  int CallComp(long i, long j) { return Comp(i, j); }
  void CallSwap(long i, long j) { Swap(i, j); }
  std::vector<std::string> m_Calls;

protected:
  int Comp(long i, long j) override {
    m_Calls.push_back("C " + std::to_string(i) + " " + std::to_string(j));
    if constexpr (kSortable) return Base::Comp(i, j);
    int const b = (*this)[static_cast<int>(j)];
    int const a = (*this)[static_cast<int>(i)];
    return ((a > b) - (a < b)) * this->GetData()->m_SortSign;
  }
  void Swap(long i, long j) override {
    m_Calls.push_back("S " + std::to_string(i) + " " + std::to_string(j));
    if constexpr (kSortable) return Base::Swap(i, j);
    std::swap((*this)[static_cast<int>(i)], (*this)[static_cast<int>(j)]);
  }
};
typedef Logging<SCC_SortableArray<int>> LoggingArray;

int byValue(Tracked const &a, Tracked const &b) { return (a.value > b.value) - (a.value < b.value); }

/// `size` values, value i being `f(i)`.
std::vector<int> made(int size, std::function<int(int)> const &f) {
  std::vector<int> values(size);
  for (int i = 0; i < size; ++i) values[i] = f(i);
  return values;
}

}  // namespace

// Sort orders every element, ascending for +1 and descending for -1, and keeps the elements (a permutation), for short,
// partitioned, presorted and repeated inputs. The explicit stack of pending ranges holds for large inputs of any shape.
// Both scans of the partition pass over elements equal to the pivot, so inputs of few distinct values take quadratic
// time; that case stays small here.
TEST(SccSortableArray, OrdersInBothDirections) {
  std::mt19937 random(61);
  struct Case { char const *name; std::vector<int> values; } const cases[] = {
      {"one", {4}}, {"two", {4, -1}}, {"seven", {3, 1, 4, 1, 5, 9, 2}}, {"eight", {8, 7, 6, 5, 4, 3, 2, 1}},
      {"nine", {9, 1, 8, 2, 7, 3, 6, 4, 5}}, {"all equal", std::vector<int>(40, 7)},
      {"ascending", made(13, [](int i) { return i; })},
      {"organ pipe", made(100, [](int i) { return i < 50 ? i : 100 - i; })},
      {"random with repeats", made(1000, [&](int) { return static_cast<int>(random() % 200) - 100; })},
      {"large, random", made(30000, [&](int) { return static_cast<int>(random()); })},
      {"large, ascending", made(30000, [](int i) { return i; })},
      {"large, descending", made(30000, [](int i) { return -i; })},
      {"large saw", made(30000, [](int i) { return i % 1000; })},
      {"large, all equal", std::vector<int>(30000, 5)},
      {"two values", made(3000, [](int i) { return i & 1; })},
  };
  for (auto const &c : cases) {
    for (int direction : {1, -1}) {
      SCOPED_TRACE(std::string(c.name) + (direction > 0 ? " ascending" : " descending"));
      SCC_SortableArray<int> array;
      load(array, -3, c.values);
      array.Sort(direction);
      std::vector<int> expected = c.values;
      std::sort(expected.begin(), expected.end());
      if (direction < 0) std::reverse(expected.begin(), expected.end());
      EXPECT_EQ(contentsOf(array), expected);
      EXPECT_EQ(array.GetLowerBound(), -3);
    }
  }
}

// Up to 8 elements the selection pass alone sorts: it scans upward for the first of the largest and swaps it to the
// top, even when it is there already. From 9 elements on the middle element is swapped to the front as the pivot first.
TEST(SccSortableArray, SelectionPassAndPartition) {
  LoggingArray eight;
  load(eight, 0, {1, 2, 3, 4, 5, 6, 7, 8});
  eight.Sort(1);
  std::vector<std::string> swaps;
  for (auto const &call : eight.m_Calls)
    if (call[0] == 'S') swaps.push_back(call);
  EXPECT_EQ(eight.m_Calls.size(), swaps.size() + 7 + 6 + 5 + 4 + 3 + 2 + 1);
  EXPECT_EQ(swaps, (std::vector<std::string>{"S 7 7", "S 6 6", "S 5 5", "S 4 4", "S 3 3", "S 2 2", "S 1 1"}));
  EXPECT_EQ(eight.m_Calls.front(), "C 1 0");

  LoggingArray equalMaxima;
  load(equalMaxima, 0, {5, 5, 1});
  equalMaxima.Sort(1);
  EXPECT_EQ(equalMaxima.m_Calls.at(2), "S 0 2");  // the first of the two fives goes up

  LoggingArray nine;
  load(nine, 0, {9, 1, 8, 2, 7, 3, 6, 4, 5});
  nine.Sort(1);
  EXPECT_EQ(nine.m_Calls.front(), "S 4 0");
  EXPECT_EQ(contentsOf(nine), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

// The sortable array's own sort and the untyped one make the same calls in the same order, for both directions.
TEST(SccSortableArray, SameCallsAsTheUntypedSort) {
  std::mt19937 random(3);
  std::vector<int> const values = made(300, [&](int) { return static_cast<int>(random() % 50); });
  for (int direction : {1, -1}) {
    SCOPED_TRACE(direction);
    LoggingArray typed;
    Logging<SCC_Array<int>> untyped;
    load(typed, 5, values);
    load(untyped, 5, values);
    typed.Sort(5, 300, direction);
    untyped.Sort(5, 300, direction);
    EXPECT_EQ(typed.m_Calls, untyped.m_Calls);
    EXPECT_EQ(contentsOf(typed), contentsOf(untyped));
  }
}

namespace {

/// A record sorted by its key alone; the tag tells equal keys apart.
struct Keyed { int key; int tag; };
int byKey(Keyed const &a, Keyed const &b) { return a.key - b.key; }

/// A class of its own, so its sort goes through the virtual Comp and Swap.
class DerivedKeyedArray : public SCC_SortableArray<Keyed> {
public:
  DerivedKeyedArray() : SCC_SortableArray<Keyed>(byKey) {}
};

SCC_SortableArray<Keyed> *g_Meddled = nullptr;
int g_Calls = 0;

/// Compares by key and, part way through, writes into the array being sorted and then clears it.
int byKeyMeddling(Keyed const &a, Keyed const &b) {
  ++g_Calls;
  if (g_Calls == 100) (*g_Meddled)[g_Meddled->GetLowerBound()] = Keyed{-1, -1};
  if (g_Calls == 200) g_Meddled->Clear();
  return a.key - b.key;
}

}  // namespace

// An array of the library's own class sorts its slots directly; the result, down to
// the order of equal keys, is the one the virtual Comp and Swap give.
TEST(SccSortableArray, DirectSortMatchesTheVirtualOne) {
  std::mt19937 random(17);
  std::vector<Keyed> records(2000);
  for (int k = 0; k < 2000; ++k) records[k] = Keyed{static_cast<int>(random() % 40), k};
  for (int direction : {1, -1}) {
    SCOPED_TRACE(direction);
    SCC_SortableArray<Keyed> direct(byKey);
    DerivedKeyedArray virtualOnly;
    for (int k = 0; k < 2000; ++k) direct[k - 7] = virtualOnly[k - 7] = records[k];
    direct.Sort(direction);
    virtualOnly.Sort(direction);
    for (int i = -7; i < 2000 - 7; ++i) {
      ASSERT_EQ(direct[i].key, virtualOnly[i].key) << "at " << i;
      ASSERT_EQ(direct[i].tag, virtualOnly[i].tag) << "at " << i;
    }
  }
}

// A compare function that changes the array while it is sorted cannot pull the
// buffer away from the sort: the array ends as the function left it, nothing leaks.
TEST(SccSortableArray, CompareFunctionChangingTheArray) {
  SCC_SortableArray<Keyed> array(byKeyMeddling);
  for (int k = 0; k < 500; ++k) array[k] = Keyed{(k * 37) % 101, k};
  g_Meddled = &array;
  g_Calls = 0;
  array.Sort(1);
  EXPECT_GT(g_Calls, 200);
  EXPECT_EQ(array.GetData(), nullptr);
  g_Meddled = nullptr;
}

// The direction is the buffer's sort sign, which CompareItems applies; a buffer made afresh by growth starts again with
// +1, growth in place keeps the sign. The sign is stored in a shared buffer before the first access un-shares it, so
// sorting a shared array descending gives the ascending order, and the other array keeps its elements but has sign -1.
TEST(SccSortableArray, SortSignLivesInTheBuffer) {
  SCC_SortableArray<int> array;
  load(array, 0, {3, 1, 2});  // room [-3, 6)
  EXPECT_LT(array.CompareItems(1, 2), 0);
  array.Sort(-1);
  EXPECT_EQ(array.GetData()->m_SortSign, -1);
  EXPECT_GT(array.CompareItems(1, 2), 0);
  array[5] = 0;  // in place
  EXPECT_EQ(array.GetData()->m_SortSign, -1);
  array[6] = 0;  // past the room: a new buffer
  EXPECT_EQ(array.GetData()->m_SortSign, 1);
  EXPECT_LT(array.CompareItems(1, 2), 0);

  SCC_SortableArray<int> empty;
  EXPECT_LT(empty.CompareItems(1, 2), 0);  // no buffer: +1
  empty.Sort(-1);
  EXPECT_EQ(empty.GetData(), nullptr);
  load(array, 0, {1, 2, 3});
  array.Sort(0, 0, -1);  // no elements to sort: only the sign is stored
  EXPECT_EQ(array.GetData()->m_SortSign, -1);
  EXPECT_EQ(contentsOf(array)[0], 1);

  load(array, 0, {5, 9, 1, 7, 3, 8, 2, 6, 4, 0});
  SCC_SortableArray<int> other(array);
  array.Sort(-1);
  EXPECT_EQ(contentsOf(array), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(array.GetData()->m_SortSign, 1);
  EXPECT_EQ(other.GetData()->m_SortSign, -1);
  EXPECT_EQ(contentsOf(other), (std::vector<int>{5, 9, 1, 7, 3, 8, 2, 6, 4, 0}));
}

// A range is sorted alone; a direction of 0 and a range beyond either bound are
// reported, and the sort runs on (growing the array to reach the range).
TEST(SccSortableArray, RangesAndTheirReports) {
  SCC_SortableArray<int> part;
  load(part, 0, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0});
  part.Sort(2, 5, 1);
  EXPECT_EQ(contentsOf(part), (std::vector<int>{9, 8, 3, 4, 5, 6, 7, 2, 1, 0}));

  struct Case { char const *name; long first, count; int direction; int lower, upper; } const cases[] = {
      {"direction 0", 0, 4, 0, 0, 4}, {"first below the lower bound", -1, 3, 1, -1, 4},
      {"end past the upper bound", 2, 4, 1, 0, 6},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_SortableArray<Tracked> array(byValue);
    for (int i = 0; i < 4; ++i) array[i] = 4 - i;
    ReportSpy spy;
    array.Sort(c.first, c.count, c.direction);
    EXPECT_EQ(spy.Summary(), (std::vector<std::string>{"scc/scc: "}));
    EXPECT_EQ(array.GetLowerBound(), c.lower);
    EXPECT_EQ(array.GetUpperBound(), c.upper);
  }
}

// The order comes from the sort object: a compare function, or the default order of
// the element type; a sort object the array did not make is never deleted by it.
TEST(SccSortableArray, SortObjects) {
  SCC_SortableArray<Tracked> tracked(byValue);
  for (int v : {3, -2, 8}) tracked[tracked.GetUpperBound()] = v;
  tracked.Sort(1);
  EXPECT_EQ(contentsOf(tracked), (std::vector<int>{-2, 3, 8}));

  SCC_SortableArray<int> array;
  load(array, 0, {2, 10, 1});
  SCC_Sort<int> lastDigit([](int const &a, int const &b) { return a % 10 - b % 10; });
  array.SetSort(&lastDigit);
  EXPECT_EQ(lastDigit.GetRefCount(), 2);  // not made by the shared operator new
  array.Sort(1);
  EXPECT_EQ(contentsOf(array), (std::vector<int>{10, 1, 2}));
  array.SetSort(static_cast<SCC_Sort<int> *>(nullptr));
  EXPECT_EQ(lastDigit.GetRefCount(), 1);
  array.Sort(-1);
  EXPECT_EQ(contentsOf(array), (std::vector<int>{10, 2, 1}));

  SCC_SortableArray<SYS_String> names;
  for (char const *name : {"R10", "C2", "R9", "c1"}) names[names.GetUpperBound()] = name;
  names.Sort(1);
  std::vector<std::string> sorted;
  for (int i = 0; i < names.GetCount(); ++i) sorted.push_back(static_cast<char const *>(names[i]));
  EXPECT_EQ(sorted, (std::vector<std::string>{"C2", "R10", "R9", "c1"}));

  SCC_SortableArray<double> doubles;
  load(doubles, 0, {2, -1, 0});
  doubles.Sort(1);
  EXPECT_EQ(doubles[0], -1.0);
  EXPECT_EQ(doubles[2], 2.0);
}

// Sorting shared pointers exchanges them by assignment: every object is held once afterwards, as before.
TEST(SccSortableArray, SharedPointersKeepTheirCounts) {
  SCC_SortableArray<PartRef> parts([](PartRef const &a, PartRef const &b) { return a->number - b->number; });
  for (int n : {5, 3, 9, 1, 7, 2, 8, 6, 4, 0, 11}) parts[parts.GetUpperBound()] = new Part(n);
  parts.Sort(-1);
  for (int i = 0; i < parts.GetCount(); ++i) {
    EXPECT_EQ(parts[i]->GetRefCount(), 1);
    if (i > 0) {
      EXPECT_GT(parts[i - 1]->number, parts[i]->number);
    }
  }
}
