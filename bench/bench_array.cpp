//===- bench/bench_array.cpp - Arrays against std::vector and std::deque ===//
//
// A million ints appended, prepended, written at random, inserted in the middle,
// copied and sorted: SCC_Array against the standard container a host would pick
// for the same job, on the same data.
//
//===------------------------------------------------------------------===//
#include "scc_arr.h"
#include "scc_sortarr.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <deque>
#include <random>
#include <vector>

namespace {

constexpr int kMillion = 1000000;

std::vector<int> randomInts(int n, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<int> values(n);
  for (auto &v : values) v = static_cast<int>(random());
  return values;
}

// Appending: each element written one past the upper bound.

void Array_Append_Bfc(benchmark::State &state) {
  for (auto _ : state) {
    SCC_Array<int> array;
    for (int i = 0; i < kMillion; ++i) array[i] = i;
    benchmark::DoNotOptimize(array.GetData());
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_Append_Bfc)->Unit(benchmark::kMillisecond);

void Array_Append_Vector(benchmark::State &state) {
  for (auto _ : state) {
    std::vector<int> vector;
    for (int i = 0; i < kMillion; ++i) vector.push_back(i);
    benchmark::DoNotOptimize(vector.data());
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_Append_Vector)->Unit(benchmark::kMillisecond);

// Prepending: each element written one under the lower bound.

void Array_Prepend_Bfc(benchmark::State &state) {
  for (auto _ : state) {
    SCC_Array<int> array;
    for (int i = 0; i < kMillion; ++i) array[-1 - i] = i;
    benchmark::DoNotOptimize(array.GetData());
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_Prepend_Bfc)->Unit(benchmark::kMillisecond);

void Array_Prepend_Deque(benchmark::State &state) {
  for (auto _ : state) {
    std::deque<int> deque;
    for (int i = 0; i < kMillion; ++i) deque.push_front(i);
    benchmark::DoNotOptimize(&deque.front());
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_Prepend_Deque)->Unit(benchmark::kMillisecond);

// Random writes into a million elements.

std::vector<int> const &randomIndices() {
  static std::vector<int> const indices = [] {
    std::vector<int> values = randomInts(kMillion, 3);
    for (auto &v : values) v = static_cast<int>(static_cast<unsigned>(v) % kMillion);
    return values;
  }();
  return indices;
}

void Array_RandomWrite_Bfc(benchmark::State &state) {
  SCC_Array<int> array(kMillion);
  auto const &indices = randomIndices();
  for (auto _ : state) {
    for (int i = 0; i < kMillion; ++i) array[indices[i]] = i;
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_RandomWrite_Bfc)->Unit(benchmark::kMillisecond);

void Array_RandomWrite_Vector(benchmark::State &state) {
  std::vector<int> vector(kMillion);
  auto const &indices = randomIndices();
  for (auto _ : state) {
    for (int i = 0; i < kMillion; ++i) vector[indices[i]] = i;
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_RandomWrite_Vector)->Unit(benchmark::kMillisecond);

// A thousand single elements inserted in the middle of 100,000.

constexpr int kMiddleBase = 100000;
constexpr int kMiddleInserts = 1000;

void Array_MiddleInsert_Bfc(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    SCC_Array<int> array(kMiddleBase);
    state.ResumeTiming();
    for (int k = 0; k < kMiddleInserts; ++k) {
      int const middle = array.GetCount() / 2;
      array.Insert(middle, 1);
      array[middle] = k;
    }
    benchmark::DoNotOptimize(array.GetData());
  }
  state.SetItemsProcessed(state.iterations() * kMiddleInserts);
}
BENCHMARK(Array_MiddleInsert_Bfc)->Unit(benchmark::kMillisecond);

void Array_MiddleInsert_Vector(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<int> vector(kMiddleBase);
    state.ResumeTiming();
    for (int k = 0; k < kMiddleInserts; ++k) vector.insert(vector.begin() + vector.size() / 2, k);
    benchmark::DoNotOptimize(vector.data());
  }
  state.SetItemsProcessed(state.iterations() * kMiddleInserts);
}
BENCHMARK(Array_MiddleInsert_Vector)->Unit(benchmark::kMillisecond);

// Copying a million elements: sharing alone, and sharing followed by the write that
// makes the copy private, against a vector copy.

void Array_Copy_Bfc(benchmark::State &state) {
  SCC_Array<int> source(kMillion);
  for (auto _ : state) {
    SCC_Array<int> copy(source);
    benchmark::DoNotOptimize(copy.GetData());
  }
}
BENCHMARK(Array_Copy_Bfc)->Unit(benchmark::kMicrosecond);

void Array_CopyThenWrite_Bfc(benchmark::State &state) {
  SCC_Array<int> source(kMillion);
  for (auto _ : state) {
    SCC_Array<int> copy(source);
    copy[0] = 1;
    benchmark::DoNotOptimize(copy.GetData());
  }
}
BENCHMARK(Array_CopyThenWrite_Bfc)->Unit(benchmark::kMicrosecond);

void Array_Copy_Vector(benchmark::State &state) {
  std::vector<int> const source(kMillion);
  for (auto _ : state) {
    std::vector<int> copy(source);
    benchmark::DoNotOptimize(copy.data());
  }
}
BENCHMARK(Array_Copy_Vector)->Unit(benchmark::kMicrosecond);

// Sorting a million random ints.

void Array_Sort_Bfc(benchmark::State &state) {
  std::vector<int> const values = randomInts(kMillion, 5);
  for (auto _ : state) {
    state.PauseTiming();
    SCC_SortableArray<int> array;
    array.ChangeBounds(0, kMillion);
    for (int i = 0; i < kMillion; ++i) array[i] = values[i];
    state.ResumeTiming();
    array.Sort(1);
    benchmark::DoNotOptimize(array.GetData());
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_Sort_Bfc)->Unit(benchmark::kMillisecond);

void Array_Sort_StdSort(benchmark::State &state) {
  std::vector<int> const values = randomInts(kMillion, 5);
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<int> vector(values);
    state.ResumeTiming();
    std::sort(vector.begin(), vector.end());
    benchmark::DoNotOptimize(vector.data());
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(Array_Sort_StdSort)->Unit(benchmark::kMillisecond);

// The worst input of the partition: two distinct values. Both scans pass over elements
// equal to the pivot, so the cost grows with the square of the count; std::sort stays
// at n log n. Three sizes, each four times the last, show the growth.

void Array_SortTwoValues_Bfc(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    SCC_SortableArray<int> array;
    array.ChangeBounds(0, count);
    for (int i = 0; i < count; ++i) array[i] = i & 1;
    state.ResumeTiming();
    array.Sort(1);
    benchmark::DoNotOptimize(array.GetData());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(Array_SortTwoValues_Bfc)->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMicrosecond);

void Array_SortTwoValues_StdSort(benchmark::State &state) {
  int const count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<int> vector(count);
    for (int i = 0; i < count; ++i) vector[i] = i & 1;
    state.ResumeTiming();
    std::sort(vector.begin(), vector.end());
    benchmark::DoNotOptimize(vector.data());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(Array_SortTwoValues_StdSort)->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMicrosecond);

}  // namespace
