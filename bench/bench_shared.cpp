//===- bench/bench_shared.cpp - Shared pointers and stacks against std ---===//
//
// Shared pointers: copying a table of holders (one count up each) and dropping it
// again (one count down each), against std::shared_ptr made by std::make_shared;
// the BFC count lives in the object, so a copy touches the object itself. Stacks:
// pushing and popping a run of ints against std::stack on a std::vector.
//
//===------------------------------------------------------------------===//
#include "scc_shared.h"
#include "sccstack.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <stack>
#include <vector>

namespace {

struct Shape : SCC_SharedBuffer {
  int layer = 0;
};
struct PlainShape {
  int layer = 0;
};

void sizes(benchmark::internal::Benchmark *b) { b->Arg(1000)->Arg(100000); }

void Shared_CopyTable_Bfc(benchmark::State &state) {
  std::vector<SCC_SharedPointer<Shape>> table;
  for (long i = 0; i < state.range(0); ++i) table.emplace_back(new Shape);
  for (auto _ : state) {
    std::vector<SCC_SharedPointer<Shape>> copy(table);
    benchmark::DoNotOptimize(copy.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Shared_CopyTable_Bfc)->Apply(sizes);

void Shared_CopyTable_Std(benchmark::State &state) {
  std::vector<std::shared_ptr<PlainShape>> table;
  for (long i = 0; i < state.range(0); ++i) table.push_back(std::make_shared<PlainShape>());
  for (auto _ : state) {
    std::vector<std::shared_ptr<PlainShape>> copy(table);
    benchmark::DoNotOptimize(copy.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Shared_CopyTable_Std)->Apply(sizes);

void Stack_PushPop_Bfc(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  SCC_Stack<int> stack;
  for (auto _ : state) {
    for (int i = 0; i < count; ++i) stack.Push(i);
    long sum = 0;
    while (!stack.IsEmpty()) sum += stack.Pop();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(Stack_PushPop_Bfc)->Apply(sizes);

void Stack_PushPop_Std(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  std::stack<int, std::vector<int>> stack;
  for (auto _ : state) {
    for (int i = 0; i < count; ++i) stack.push(i);
    long sum = 0;
    while (!stack.empty()) {
      sum += stack.top();
      stack.pop();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(Stack_PushPop_Std)->Apply(sizes);

}  // namespace
