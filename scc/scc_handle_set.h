//===- scc/scc_handle_set.h - Scratch tools of the collection's reload -===//
//
// A reload sorts the new items once instead of inserting them one by one, and
// finds repeated handles with a flat hash set. Both stay safe with a compare
// function that is no order at all: they never read outside their storage.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_HANDLE_SET_H
#define BFC_SCC_HANDLE_SET_H

#include "sys_base.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace scc_detail {

/// A set of handles for one reload: open addressing, sized once for the handles it will hold.
/// Slot value 0 marks an empty slot; handle 0 has a flag of its own.
class HandleSet {
public:
  explicit HandleSet(std::size_t expected) {
    std::size_t capacity = 16;
    while (capacity < 2 * expected) capacity *= 2;
    m_Slots.assign(capacity, 0);
    m_Mask = capacity - 1;
  }

  /// True when `handle` was not in the set yet.
  bool Insert(SYS_Handle handle) {
    if (handle == 0) return !std::exchange(m_HasZero, true);
    for (std::size_t slot = hash(handle);; slot = (slot + 1) & m_Mask) {
      if (m_Slots[slot] == handle) return false;
      if (m_Slots[slot] == 0) {
        m_Slots[slot] = handle;
        return true;
      }
    }
  }
  bool Contains(SYS_Handle handle) const {
    if (handle == 0) return m_HasZero;
    for (std::size_t slot = hash(handle);; slot = (slot + 1) & m_Mask) {
      if (m_Slots[slot] == handle) return true;
      if (m_Slots[slot] == 0) return false;
    }
  }

private:
  std::size_t hash(SYS_Handle handle) const noexcept {
    auto const bits = static_cast<std::uint64_t>(handle);
    return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15ull) >> 32) & m_Mask;
  }

  std::vector<SYS_Handle> m_Slots;  // at most half full, so every probe ends
  std::size_t m_Mask = 0;
  bool m_HasZero = false;
};

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
