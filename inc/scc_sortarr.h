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
#include <utility>

namespace scc_detail {

/// The default order: -1, 0 or 1 by value for integers, else SCC_Compare.
template <class T>
int defaultCompare(T const &a, T const &b) {
  if constexpr (std::is_integral<T>::value || std::is_enum<T>::value) {
    return (b < a) - (a < b);
  } else {
    return SCC_Compare(a, b);
  }
}

/// `value` times `sign`, clipped to the int range.
inline int applySign(int value, int sign) {
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

  using _SCC_Array::Sort;
  /// Sorts every element.
  void Sort(int direction = 1) { Sort(this->GetLowerBound(), this->GetCount(), direction); }

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
    int const first = scc_detail::indexOf(i);
    int const second = scc_detail::indexOf(j);
    (*this)[second];
    T &a = (*this)[first];
    T &b = this->ElementAt(second);  // reaching i may have moved the buffer
    return scc_detail::applySign(m_Sort->Compare(a, b), sign());
  }
  /// Reaches i, then j, and exchanges them by assignment.
  void Swap(long i, long j) override {
    int const first = scc_detail::indexOf(i);
    int const second = scc_detail::indexOf(j);
    (*this)[first];
    T &b = (*this)[second];
    T &a = this->ElementAt(first);
    std::swap(a, b);
  }

  SCC_SharedPointer<SCC_Sort<T>> m_Sort;

private:
  int sign() const noexcept { return this->m_Buffer != nullptr ? this->m_Buffer->m_SortSign : 1; }
};

#endif
