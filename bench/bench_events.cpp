//===- bench/bench_events.cpp - Event delivery against its peers --------===//
//
// One event delivered to 1, 10 and 100 hooks: SCC_Event against a loop of plain
// function-pointer calls (the floor) and against boost::signals2.
//
//===------------------------------------------------------------------===//
#include "scc_event.h"

#include <benchmark/benchmark.h>
#include <boost/signals2/signal.hpp>

#include <vector>

namespace {

// The handler every variant calls: a little work the compiler cannot drop.
__attribute__((noinline)) int countCode(int code, int *total) {
  *total += code;
  return 0;
}

void Events_Deliver_Bfc(benchmark::State &state) {
  int const hooks = static_cast<int>(state.range(0));
  SCC_Event<int> event;
  std::vector<SCC_EventHook<int>> connected(hooks);
  for (auto &hook : connected) {
    hook.SetHandler(&countCode);
    event.Insert(hook);
  }
  int total = 0;
  for (auto _ : state) {
    event.Notify(1, &total);
    benchmark::ClobberMemory();
  }
  benchmark::DoNotOptimize(total);
  state.SetItemsProcessed(state.iterations() * hooks);
}
BENCHMARK(Events_Deliver_Bfc)->Arg(1)->Arg(10)->Arg(100);

void Events_Deliver_FunctionPointers(benchmark::State &state) {
  int const hooks = static_cast<int>(state.range(0));
  std::vector<int (*)(int, int *)> handlers(hooks, &countCode);
  int total = 0;
  for (auto _ : state) {
    for (auto handler : handlers) handler(1, &total);
    benchmark::ClobberMemory();
  }
  benchmark::DoNotOptimize(total);
  state.SetItemsProcessed(state.iterations() * hooks);
}
BENCHMARK(Events_Deliver_FunctionPointers)->Arg(1)->Arg(10)->Arg(100);

void Events_Deliver_Signals2(benchmark::State &state) {
  int const hooks = static_cast<int>(state.range(0));
  boost::signals2::signal<int(int, int *)> signal;
  for (int i = 0; i < hooks; ++i) signal.connect(&countCode);
  int total = 0;
  for (auto _ : state) {
    signal(1, &total);
    benchmark::ClobberMemory();
  }
  benchmark::DoNotOptimize(total);
  state.SetItemsProcessed(state.iterations() * hooks);
}
BENCHMARK(Events_Deliver_Signals2)->Arg(1)->Arg(10)->Arg(100);

}  // namespace
