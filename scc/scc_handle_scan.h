//===- scc/scc_handle_scan.h - The collection's linear search for a handle ===//
//
// Lookups by handle scan the items from the start. On x86 the scan compares
// eight handles at a time with SSE2 (the baseline of both data models); a
// block that holds the handle is searched one by one.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_HANDLE_SCAN_H
#define BFC_SCC_HANDLE_SCAN_H

#include "sys_base.h"

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace scc_detail {

#if defined(__SSE2__)
/// All ones in each handle-wide lane of `block` that equals the lane of `key`.
inline __m128i equalLanes(__m128i block, __m128i key) {
  __m128i const halves = _mm_cmpeq_epi32(block, key);
#if INTPTR_MAX > INT32_MAX
  // A 64-bit handle is equal when both of its halves are.
  return _mm_and_si128(halves, _mm_shuffle_epi32(halves, _MM_SHUFFLE(2, 3, 0, 1)));
#else
  return halves;
#endif
}
#endif

/// The first index of `handle` in first[0 .. count - 1]; -1 when it is not there.
inline long firstIndexOf(SYS_Handle const *first, long count, SYS_Handle handle) {
  long at = 0;
#if defined(__SSE2__)
  constexpr long kPerVector = 16 / static_cast<long>(sizeof(SYS_Handle));
  constexpr long kBlock = 4 * kPerVector;
#if INTPTR_MAX > INT32_MAX
  __m128i const key = _mm_set1_epi64x(handle);
#else
  __m128i const key = _mm_set1_epi32(handle);
#endif
  for (; at + kBlock <= count; at += kBlock) {
    __m128i const *const block = reinterpret_cast<__m128i const *>(first + at);
    __m128i const hits = _mm_or_si128(
        _mm_or_si128(equalLanes(_mm_loadu_si128(block), key), equalLanes(_mm_loadu_si128(block + 1), key)),
        _mm_or_si128(equalLanes(_mm_loadu_si128(block + 2), key), equalLanes(_mm_loadu_si128(block + 3), key)));
    if (_mm_movemask_epi8(hits) != 0) break;
  }
#endif
  for (; at < count; ++at)
    if (first[at] == handle) return at;
  return -1;
}

}  // namespace scc_detail

#endif
