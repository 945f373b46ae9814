//===- inc/scc_sortarr.h - Sortable arrays and their sort objects -------===//
//
// A sortable array sorts itself through the virtual Comp and Swap of the untyped
// array; the order comes from a shared sort object, either a compare function or
// the default order of the element type.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_SORTARR_H
#define BFC_SCC_SORTARR_H

#include "scc_arr.h"
#include "scc_compare.h"

#include <climits>
#include <cstdint>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace scc_detail {

/// True when an SCC_Compare overload takes two T.
template <class T, class = void>
struct HasCompare : std::false_type {};
template <class T>
struct HasCompare<T, decltype(void(SCC_Compare(std::declval<T const &>(), std::declval<T const &>())))>
    : std::true_type {};

/// The default order: -1, 0 or 1 by value for integers, else SCC_Compare. A type
/// without either has no default order: comparing reports and gives 0 (such an
/// array sorts by a compare function).
template <class T>
int defaultCompare(T const &a, T const &b) {
  if constexpr (std::is_integral<T>::value || std::is_enum<T>::value) {
    return (b < a) - (a < b);
  } else if constexpr (HasCompare<T>::value) {
    return SCC_Compare(a, b);
  } else {
    SSM_Check(false, "", "scc/scc", __LINE__);
    return 0;
  }
}

/// `value` times `sign`, clipped to the int range.
inline int applySign(int value, int sign) {
  if (sign == 1) return value;
  std::int64_t const product = std::int64_t{value} * sign;
  return product > INT_MAX ? INT_MAX : product < INT_MIN ? INT_MIN : static_cast<int>(product);
}

/// A long index as the 32-bit value it is in this library (clipped on LP64).
inline int indexOf(long value) {
  return value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : static_cast<int>(value);
}

}  // namespace scc_detail

/// The order of a sortable array: a compare function, or without one the default
/// order of T. Shared between arrays and reference-counted.
template <class T>
class SCC_Sort : public SCC_SharedBuffer {
public:
  typedef int (*CompareFunction)(T const &a, T const &b);

  explicit SCC_Sort(CompareFunction compare = nullptr) noexcept : m_Compare(compare) {}
  virtual ~SCC_Sort() = default;

  /// Negative, 0 or positive as a sorts before, with or after b.
  virtual int Compare(T const &a, T const &b) {
    return m_Compare != nullptr ? m_Compare(a, b) : scc_detail::defaultCompare(a, b);
  }

  CompareFunction GetCompare() const noexcept { return m_Compare; }

protected:
  CompareFunction m_Compare;
};

/// An array that sorts itself: Sort(direction) orders all elements by its sort
/// object, ascending for +1 and descending for -1.
///
/// A sortable array always has a sort object. Copies share the buffer and the
/// sort object.
template <class T>
class SCC_SortableArray : public SCC_Array<T> {
public:
  typedef typename SCC_Sort<T>::CompareFunction CompareFunction;

  explicit SCC_SortableArray(CompareFunction compare = nullptr) : m_Sort(new SCC_Sort<T>(compare)) {}
  /// Shares the source's buffer and sort object, with a change event of its own.
  SCC_SortableArray(SCC_SortableArray const &source) : SCC_Array<T>(source), m_Sort(source.m_Sort) {}
  SCC_SortableArray &operator=(SCC_SortableArray const &source) {
    SCC_Array<T>::operator=(source);
    m_Sort = source.m_Sort;
    return *this;
  }

  /// Sorts every element.
  void Sort(int direction = 1) { Sort(this->GetLowerBound(), this->GetCount(), direction); }
  /// The untyped sort, step for step, made in the typed class so that comparisons
  /// inline: an array of exactly this class sorts its slots directly when every
  /// index of the range is valid in a private buffer (reaching an element would
  /// change nothing), and otherwise calls Comp and Swap as the untyped sort does.
  void Sort(long first, long count, int direction) override {
    std::int64_t lo, hi;
    if (!this->PrepareSort(first, count, direction, lo, hi)) return;
    if (sortsInPlace(lo, hi)) {
      sortSlots(lo, hi);
      return;
    }
    scc_detail::quickSort(
        lo, hi, [this](std::int64_t i, std::int64_t j) { return Comp(static_cast<long>(i), static_cast<long>(j)); },
        [this](std::int64_t i, std::int64_t j) { Swap(static_cast<long>(i), static_cast<long>(j)); },
        [this, direction](std::int64_t l, std::int64_t h) {
          ShortSort(static_cast<long>(l), static_cast<long>(h), direction);
        });
  }

  /// The sort object's Compare times the sort sign of the current buffer (+1
  /// without a buffer).
  virtual int CompareItems(T const &a, T const &b) { return scc_detail::applySign(m_Sort->Compare(a, b), sign()); }

  /// Uses `sort` from now on (taken before the old one is let go); null gives a
  /// sort object for the default order.
  void SetSort(SCC_Sort<T> *sort) { m_Sort = sort != nullptr ? sort : new SCC_Sort<T>(); }
  /// Uses a new sort object for `compare` from now on.
  void SetSort(CompareFunction compare) { m_Sort = new SCC_Sort<T>(compare); }
  SCC_Sort<T> *GetSort() const noexcept { return m_Sort; }

protected:
  /// Reaches j, then i (each through CheckArray), and compares them.
  int Comp(long i, long j) override {
    Buffer *const buffer = this->m_Buffer;
    if (holdsBoth(buffer, i, j)) {  // nothing to grow or un-share: the order of access does not show
      long const base = buffer->m_AllocLower;
      return scc_detail::applySign(m_Sort->Compare(buffer->m_Elements[i - base], buffer->m_Elements[j - base]),
                                   buffer->m_SortSign);
    }
    return compareReaching(i, j);
  }
  /// Reaches i, then j, and exchanges them by assignment.
  void Swap(long i, long j) override {
    Buffer *const buffer = this->m_Buffer;
    if (holdsBoth(buffer, i, j)) {
      long const base = buffer->m_AllocLower;
      std::swap(buffer->m_Elements[i - base], buffer->m_Elements[j - base]);
      return;
    }
    swapReaching(i, j);
  }
  /// The untyped selection pass, made here for the same reason as Sort.
  void ShortSort(long lo, long hi, int) override {
    scc_detail::selectionSort(
        lo, hi, [this](std::int64_t i, std::int64_t j) { return Comp(static_cast<long>(i), static_cast<long>(j)); },
        [this](std::int64_t i, std::int64_t j) { Swap(static_cast<long>(i), static_cast<long>(j)); });
  }

  SCC_SharedPointer<SCC_Sort<T>> m_Sort;

private:
  typedef typename SCC_Array<T>::Buffer Buffer;

  int sign() const noexcept { return this->m_Buffer != nullptr ? this->m_Buffer->m_SortSign : 1; }

  /// True when Comp, Swap, ShortSort and Compare are this library's own and every
  /// index of lo..hi is valid in a private buffer: then reaching an element changes
  /// nothing, and the sort may work on the slots directly.
  bool sortsInPlace(std::int64_t lo, std::int64_t hi) const {
    Buffer const *const buffer = this->m_Buffer;
    return typeid(*this) == typeid(SCC_SortableArray) && typeid(*m_Sort) == typeid(SCC_Sort<T>) &&
           buffer != nullptr && !buffer->IsShared() && lo >= buffer->m_Lower && hi < buffer->m_Upper;
  }
  /// The same comparisons and exchanges as Comp and Swap would make, on the slots.
  /// The buffer and the sort object are held meanwhile, so a compare function that
  /// changes the array or its sort object cannot pull them away.
  void sortSlots(std::int64_t lo, std::int64_t hi) {
    SCC_SharedPointer<Buffer> const buffer(this->m_Buffer);
    SCC_SharedPointer<SCC_Sort<T>> const sort(m_Sort);
    CompareFunction const compare = sort->GetCompare();
    int const direction = buffer->m_SortSign;
    T *const elements = buffer->m_Elements;
    std::int64_t const base = buffer->m_AllocLower;
    // Captured by value: the element stores of swap must not look as if they could
    // change these.
    auto comp = [elements, base, compare, direction](std::int64_t i, std::int64_t j) {
      T const &a = elements[i - base];
      T const &b = elements[j - base];
      return scc_detail::applySign(compare != nullptr ? compare(a, b) : scc_detail::defaultCompare(a, b), direction);
    };
    auto swap = [elements, base](std::int64_t i, std::int64_t j) { std::swap(elements[i - base], elements[j - base]); };
    scc_detail::quickSort(lo, hi, comp, swap,
                          [comp, swap](std::int64_t l, std::int64_t h) { scc_detail::selectionSort(l, h, comp, swap); });
  }

  // The paths that may grow or un-share, out of line so the common path stays small.
  __attribute__((noinline)) int compareReaching(long i, long j) {
    int const first = scc_detail::indexOf(i);
    int const second = scc_detail::indexOf(j);
    (*this)[second];
    T &a = (*this)[first];
    T &b = this->ElementAt(second);  // reaching i may have moved the buffer
    return scc_detail::applySign(m_Sort->Compare(a, b), sign());
  }
  __attribute__((noinline)) void swapReaching(long i, long j) {
    int const first = scc_detail::indexOf(i);
    int const second = scc_detail::indexOf(j);
    (*this)[first];
    T &b = (*this)[second];
    T &a = this->ElementAt(first);
    std::swap(a, b);
  }
  /// True when i and j are valid in a private buffer, so reaching them changes nothing.
  static bool holdsBoth(Buffer const *buffer, long i, long j) noexcept {
    if (buffer == nullptr || buffer->IsShared()) return false;
    // One unsigned comparison per index: below the lower bound wraps to a large value.
    std::int64_t const lower = buffer->m_Lower;
    auto const count = static_cast<std::uint64_t>(buffer->m_Upper - lower);
    return static_cast<std::uint64_t>(std::int64_t{i} - lower) < count &&
           static_cast<std::uint64_t>(std::int64_t{j} - lower) < count;
  }
};

#endif
