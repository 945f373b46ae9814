//===- tests/sccstack_test.cpp - The stack on an array -------------------===//
#include "sccstack.h"
#include "tests/report_spy.h"
#include "tests/scc_arr_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

// Last in, first out; the stack grows from index 0 through the array's growth and never shrinks: a popped slot keeps
// its value until pushed over. A copy shares the buffer and takes the top; pushing onto either un-shares it.
TEST(SccStack, LastInFirstOut) {
  SCC_Stack<int> stack;
  EXPECT_TRUE(stack.IsEmpty());
  for (int v = 1; v <= 100; ++v) stack.Push(v);
  EXPECT_EQ(stack.GetTop(), 100);
  EXPECT_EQ(stack.GetLowerBound(), 0);
  EXPECT_EQ(stack.GetUpperBound(), 100);
  for (int v = 100; v > 90; --v) EXPECT_EQ(stack.Pop(), v);
  EXPECT_EQ(stack.GetTop(), 90);
  EXPECT_EQ(stack.GetUpperBound(), 100);
  EXPECT_EQ(stack[95], 96);
  stack.Push(-1);
  EXPECT_EQ(stack[90], -1);
  EXPECT_EQ(stack.IsValid(), 1);
  while (stack.GetTop() > 1) stack.Pop();
  EXPECT_FALSE(stack.IsEmpty());
  stack.Pop();
  EXPECT_TRUE(stack.IsEmpty());  // empty means nothing pushed, whatever the array holds
  EXPECT_EQ(stack.GetCount(), 100);

  SCC_Stack<int> shared;
  shared.Push(1);
  shared.Push(2);
  SCC_Stack<int> copy(shared);
  EXPECT_EQ(copy.GetData(), shared.GetData());
  EXPECT_EQ(copy.GetTop(), 2);
  copy.Push(3);
  EXPECT_NE(copy.GetData(), shared.GetData());
  EXPECT_EQ(shared.GetTop(), 2);
  EXPECT_EQ(shared.GetUpperBound(), 2);
  EXPECT_EQ(copy.Pop(), 3);
  EXPECT_EQ(shared.Pop(), 2);
}

// Pop on an empty stack reports and runs on: the top goes to -1 and the element at
// -1 is made (the array grows below 0) and returned; the stack is then not valid.
TEST(SccStack, PopOnEmptyRunsOn) {
  SCC_Stack<Tracked> stack;
  ReportSpy spy;
  Tracked const popped = stack.Pop();
  EXPECT_EQ(spy.Summary(), (std::vector<std::string>{"scc/sccstack: "}));
  EXPECT_EQ(popped.value, -1);  // default-constructed in a new buffer
  EXPECT_EQ(stack.GetTop(), -1);
  EXPECT_EQ(stack.GetLowerBound(), -1);
  EXPECT_EQ(stack.GetUpperBound(), 0);
  spy.Forget();
  EXPECT_EQ(stack.IsValid(), 0);
  EXPECT_EQ(spy.Summary(), (std::vector<std::string>{"scc/sccstack: "}));
}

// Validity: the array's first (an empty stack has no buffer), then the top within
// 0..upper bound and lower bound 0.
TEST(SccStack, IsValid) {
  struct Case { char const *name; std::function<void(SCC_Stack<int> &)> make; int valid;
      std::vector<std::string> reports; } const cases[] = {
      {"new", [](auto &) {}, 0, {"scc/scc: "}},
      {"pushed", [](auto &s) { s.Push(1); }, 1, {}},
      {"pushed and popped", [](auto &s) { s.Push(1), s.Pop(); }, 1, {}},
      {"grown below 0", [](auto &s) { s.Push(1), s[-1] = 0; }, 0, {"scc/sccstack: "}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Stack<int> stack;
    c.make(stack);
    ReportSpy spy;
    EXPECT_EQ(stack.IsValid(), c.valid);
    EXPECT_EQ(spy.Summary(), c.reports);
  }
}

