//===- bench/bench_list.cpp - Linked lists against std::list -------------===//
//
// The intrusive lists link nodes the host already owns; std::list allocates one
// node per value, which is what a host writes without them. Cases: building a
// list and walking it; walking a safe list while removing every other node (the
// iterator moves off each removed node by notification) against std::list's
// erase-and-continue; and the singly linked list's removal of its last node, which
// has to search from the head (the worst case), against std::forward_list doing
// the same search.
//
//===------------------------------------------------------------------===//
#include "scc_list.h"
#include "scc_safelist.h"

#include <benchmark/benchmark.h>

#include <forward_list>
#include <list>
#include <vector>

namespace {

struct DNode : SCC_DListNode<DNode> {
  int value = 0;
};
struct SNode : SCC_SListNode<SNode> {
  int value = 0;
};
struct SafeNode : SCC_SafeDListNode<SafeNode> {
  int value = 0;
};

void sizes(benchmark::internal::Benchmark *b) { b->Arg(1000)->Arg(100000); }

void List_BuildAndWalk_Bfc(benchmark::State &state) {
  std::vector<DNode> nodes(static_cast<size_t>(state.range(0)));
  for (size_t i = 0; i < nodes.size(); ++i) nodes[i].value = static_cast<int>(i);
  for (auto _ : state) {
    SCC_DList<DNode> list;
    for (DNode &node : nodes) list.AddTail(&node);
    long sum = 0;
    for (DNode *node = list.GetHead(); node != nullptr; node = node->m_Next) sum += node->value;
    benchmark::DoNotOptimize(sum);
    list.RemoveAll();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(List_BuildAndWalk_Bfc)->Apply(sizes);

void List_BuildAndWalk_Std(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    std::list<int> list;
    for (int i = 0; i < count; ++i) list.push_back(i);
    long sum = 0;
    for (int value : list) sum += value;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(List_BuildAndWalk_Std)->Apply(sizes);

void List_WalkRemovingHalf_SafeBfc(benchmark::State &state) {
  std::vector<SafeNode> nodes(static_cast<size_t>(state.range(0)));
  for (size_t i = 0; i < nodes.size(); ++i) nodes[i].value = static_cast<int>(i);
  for (auto _ : state) {
    state.PauseTiming();
    SCC_SafeDList<SafeNode> list;
    for (SafeNode &node : nodes) list.AddTail(&node);
    state.ResumeTiming();
    for (SCC_SafeDList<SafeNode>::Iterator it(list); it.IsValid();) {
      SafeNode *const node = it.Get();
      if (node->value % 2 == 0) {
        list.Remove(node);  // the iterator is told and moves on
      } else {
        it.Next();
      }
    }
    benchmark::DoNotOptimize(list.GetHead());
    state.PauseTiming();
    list.RemoveAll();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(List_WalkRemovingHalf_SafeBfc)->Apply(sizes);

void List_WalkRemovingHalf_Std(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    std::list<int> list;
    for (int i = 0; i < count; ++i) list.push_back(i);
    state.ResumeTiming();
    for (auto it = list.begin(); it != list.end();) it = *it % 2 == 0 ? list.erase(it) : std::next(it);
    benchmark::DoNotOptimize(list.front());
    state.PauseTiming();
    list.clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(List_WalkRemovingHalf_Std)->Apply(sizes);

void List_RemoveLastSingly_Bfc(benchmark::State &state) {
  std::vector<SNode> nodes(static_cast<size_t>(state.range(0)));
  SCC_SList<SNode> list;
  for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) list.AddHead(&*node);
  for (auto _ : state) {
    list.Remove(&nodes.back());  // a walk from the head to the end
    list.InsertAfter(&nodes[nodes.size() - 2], &nodes.back());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(List_RemoveLastSingly_Bfc)->Apply(sizes);

void List_RemoveLastSingly_Std(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  std::forward_list<int> list;
  for (int i = count - 1; i >= 0; --i) list.push_front(i);
  for (auto _ : state) {
    auto before = list.before_begin();
    for (auto it = list.begin(); *it != count - 1; ++it) before = it;
    list.erase_after(before);
    list.insert_after(before, count - 1);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(List_RemoveLastSingly_Std)->Apply(sizes);

}  // namespace
