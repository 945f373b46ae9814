//===- scc/scc_handle_set.h - The set of handles a reload has met -------===//
//
// A reload finds repeated handles with a flat hash set, sized once for the
// handles the source yielded.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_HANDLE_SET_H
#define BFC_SCC_HANDLE_SET_H

#include "sys_base.h"

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

}  // namespace scc_detail

#endif
