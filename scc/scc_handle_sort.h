//===- scc/scc_handle_sort.h - The stable sort of the collection's items -===//
//
// A reload sorts the new items once instead of inserting them one by one. The
// sort stays safe with a compare function that is no order at all: it never
// reads outside its storage.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_HANDLE_SORT_H
#define BFC_SCC_HANDLE_SORT_H

#include "sys_base.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace scc_detail {

/// Sorts `handles` stably: `after(a, b)` is true when a must come after b. The result is the
/// one that inserting each handle at the end of its equal range gives. Runs of 16 are sorted by
/// insertion, then merged bottom-up; halves already in order are copied without comparing.
template <class After>
void stableSortHandles(std::vector<SYS_Handle> &handles, After after) {
  std::size_t const n = handles.size();
  constexpr std::size_t kRun = 16;
  for (std::size_t lo = 0; lo < n; lo += kRun) {
    std::size_t const hi = std::min(lo + kRun, n);
    for (std::size_t i = lo + 1; i < hi; ++i) {
      SYS_Handle const moving = handles[i];
      std::size_t j = i;
      for (; j > lo && after(handles[j - 1], moving); --j) handles[j] = handles[j - 1];
      handles[j] = moving;
    }
  }
  if (n <= kRun) return;
  std::vector<SYS_Handle> merged(n);
  for (std::size_t width = kRun; width < n; width *= 2) {
    for (std::size_t lo = 0; lo < n; lo += 2 * width) {
      std::size_t const mid = std::min(lo + width, n);
      std::size_t const hi = std::min(lo + 2 * width, n);
      std::size_t i = lo, j = mid, k = lo;
      if (mid < hi && after(handles[mid - 1], handles[mid])) {
        while (i < mid && j < hi) merged[k++] = after(handles[i], handles[j]) ? handles[j++] : handles[i++];
      }
      std::copy(handles.begin() + static_cast<std::ptrdiff_t>(i), handles.begin() + static_cast<std::ptrdiff_t>(mid),
                merged.begin() + static_cast<std::ptrdiff_t>(k));
      k += mid - i;
      std::copy(handles.begin() + static_cast<std::ptrdiff_t>(j), handles.begin() + static_cast<std::ptrdiff_t>(hi),
                merged.begin() + static_cast<std::ptrdiff_t>(k));
    }
    handles.swap(merged);
  }
}

}  // namespace scc_detail

#endif
