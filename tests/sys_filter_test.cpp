//===- tests/sys_filter_test.cpp - Filters, composites and their ownership ===//
#include "sys_filter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

namespace {

/// When set, the next allocation of this process fails: the one failure path of filters.
bool g_FailNextAllocation = false;

}  // namespace

// Allocation goes through malloc as usual, so that leak checks still see every block.
void *operator new(std::size_t size) {
  if (g_FailNextAllocation) {
    g_FailNextAllocation = false;
    throw std::bad_alloc();
  }
  if (void *block = std::malloc(size != 0 ? size : 1)) return block;
  throw std::bad_alloc();
}
// Every form that pairs with the deletes below allocates the same way (std::stable_sort asks for
// its buffer without exceptions).
void *operator new(std::size_t size, std::nothrow_t const &) noexcept {
  try {
    return operator new(size);
  } catch (std::bad_alloc const &) {
    return nullptr;
  }
}
void operator delete(void *block) noexcept { std::free(block); }
void operator delete(void *block, std::size_t) noexcept { std::free(block); }

namespace {

int isEven(SYS_Filter const *, SYS_Handle item) { return item % 2 == 0 ? 1 : 0; }
int isAboveTen(SYS_Filter const *, SYS_Handle item) { return item > 10 ? 1 : 0; }

/// A leaf that answers a fixed value and logs that it was asked.
struct Leaf : SYS_Filter {
  Leaf(int answer, std::string name, std::vector<std::string> *log = nullptr)
      : m_Answer(answer), m_Name(std::move(name)), m_Log(log) {}
  int IsTrue(SYS_Handle) override {
    if (m_Log != nullptr) m_Log->push_back(m_Name);
    return m_Answer;
  }
  int m_Answer;
  std::string m_Name;
  std::vector<std::string> *m_Log;
};

}  // namespace

// The composites combine their operands' answers bitwise, so answers other than 0 and 1
// carry through; ! is 1 exactly for answers of 0 or below.
TEST(SysFilter, TruthTables) {
  int const answers[] = {0, 1, 2, 3, -1, 0x40000000, -2147483647 - 1};
  for (int x : answers) {
    for (int y : answers) {
      SCOPED_TRACE(std::to_string(x) + " and " + std::to_string(y));
      Leaf a(x, "a"), b(y, "b");
      EXPECT_EQ((a & b).IsTrue(1), x & y);
      EXPECT_EQ((a | b).IsTrue(1), x | y);
    }
    SCOPED_TRACE(x);
    Leaf a(x, "a");
    EXPECT_EQ((!a).IsTrue(1), x <= 0 ? 1 : 0);
  }
}

// A filter without a test passes nothing, so does a composite of such filters, and its
// negation passes everything; a composite built by hand with a missing operand asks none.
TEST(SysFilter, EmptyFilters) {
  SYS_Filter a, b;
  for (SYS_Handle item : {SYS_Handle(0), SYS_Handle(1), SYS_Handle(-5)}) {
    SCOPED_TRACE(item);
    EXPECT_EQ(a.IsTrue(item), 0);
    EXPECT_EQ((a & b).IsTrue(item), 0);
    EXPECT_EQ((a | b).IsTrue(item), 0);
    EXPECT_EQ((!(a & b)).IsTrue(item), 1);
  }
  SYS_Filter orphanAnd(nullptr, nullptr, SYS_Filter::And_F), orphanNot(nullptr, nullptr, SYS_Filter::Not_F);
  EXPECT_EQ(orphanAnd.IsTrue(1), 0);
  EXPECT_EQ(orphanNot.IsTrue(1), 1);
}

// A composite belongs to the filter on its left; a second operator on the same filter makes a second composite, and
// both live until their owner goes (the sanitizer's leak check sees any composite left behind).
TEST(SysFilter, Ownership) {
  Leaf c(1, "c");
  {
    Leaf a(1, "a"), b(0, "b");
    SYS_Filter &ab = a | b;
    SYS_Filter &whole = ab & !c;
    EXPECT_EQ(a.GetOwnedCount(), 1);
    EXPECT_EQ(ab.GetOwnedCount(), 1);
    EXPECT_EQ(c.GetOwnedCount(), 1);
    EXPECT_EQ(whole.GetFirst(), &ab);
    EXPECT_EQ(whole.GetSecond()->GetFirst(), &c);
    EXPECT_EQ(whole.GetSecond()->GetSecond(), nullptr);

    SYS_Filter &replaced = a & b;  // the newer composite; `ab` is still owned and usable
    EXPECT_EQ(a.GetOwnedCount(), 2);
    EXPECT_EQ(replaced.IsTrue(0), 0);
    EXPECT_EQ(whole.IsTrue(0), 0);
    EXPECT_EQ(ab.IsTrue(0), 1);
    for (int i = 0; i < 100; ++i) !a;
    EXPECT_EQ(a.GetOwnedCount(), 102);
  }
  EXPECT_EQ(c.GetOwnedCount(), 1);  // !c stays with c
}

// A copy takes the test and the operands and owns nothing; assignment keeps the target's
// own composites, so each composite is freed exactly once.
TEST(SysFilter, CopyAndAssign) {
  SYS_Filter e(nullptr, nullptr, isEven), g(nullptr, nullptr, isAboveTen);
  SYS_Filter &both = e & g;
  SYS_Filter copy(both);
  EXPECT_EQ(copy.GetOwnedCount(), 0);
  EXPECT_EQ(copy.GetFirst(), &e);
  EXPECT_EQ(copy.IsTrue(12), 1);
  EXPECT_EQ(copy.IsTrue(4), 0);

  SYS_Filter target(nullptr, nullptr, isAboveTen);
  SYS_Filter &targets = !target;
  target = both;
  EXPECT_EQ(target.GetOwnedCount(), 1);
  EXPECT_EQ(target.GetTest(), &SYS_Filter::And_F);
  EXPECT_EQ(target.IsTrue(4), 0);
  EXPECT_EQ(targets.IsTrue(4), 1);  // its operand now answers as `both` does

  both = copy;  // a composite assigned to keeps its place in its owner's list
  EXPECT_EQ(e.GetOwnedCount(), 1);
  target = target;
  EXPECT_EQ(target.GetOwnedCount(), 1);
}

// When the heap refuses a composite, the operator throws std::bad_alloc and records
// nothing; the filter works on and later composites are owned as usual.
TEST(SysFilter, AllocationFailure) {
  SYS_Filter e(nullptr, nullptr, isEven), g(nullptr, nullptr, isAboveTen);
  SYS_Filter &first = e | g;
  g_FailNextAllocation = true;
  EXPECT_THROW(e & g, std::bad_alloc);
  g_FailNextAllocation = false;
  EXPECT_EQ(e.GetOwnedCount(), 1);
  EXPECT_EQ(first.IsTrue(3), 0);
  g_FailNextAllocation = true;
  EXPECT_THROW(!e, std::bad_alloc);
  g_FailNextAllocation = false;
  SYS_Filter &later = !e;
  EXPECT_EQ(e.GetOwnedCount(), 2);
  EXPECT_EQ(later.IsTrue(3), 1);
}
