//===- tests/scc_arr_support.h - Element types and probes for array tests ===//
#ifndef BFC_TESTS_SCC_ARR_SUPPORT_H
#define BFC_TESTS_SCC_ARR_SUPPORT_H

#include "scc_arr.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// A class element type that counts how many of it are alive. Its default value
/// is -1, so default-constructed slots can be told from written ones.
struct Tracked {
  static inline int s_Live = 0;
  int value;

  Tracked() noexcept : value(-1) { ++s_Live; }
  Tracked(int v) noexcept : value(v) { ++s_Live; }
  Tracked(Tracked const &source) noexcept : value(source.value) { ++s_Live; }
  Tracked &operator=(Tracked const &source) noexcept {
    value = source.value;
    return *this;
  }
  ~Tracked() { --s_Live; }
};

/// The slots an array's buffer holds (0 without one).
inline int slotsOf(_SCC_Array &array) {
  _SCC_ArrayBuffer const *const buffer = array.GetData();
  return buffer != nullptr ? buffer->m_AllocUpper - buffer->m_AllocLower : 0;
}

/// Records every notification an array raises, and runs an optional action.
struct ChangeLog : SCC_EventHook<SCC_ArrayParam> {
  struct Entry {
    int code;
    SCC_ArrayParam param;
  };

  explicit ChangeLog(int priority = 0) : SCC_EventHook<SCC_ArrayParam>(nullptr, priority) {}

  int OnNotification(int code, SCC_ArrayParam *param) override {
    m_Entries.push_back(Entry{code, param != nullptr ? *param : SCC_ArrayParam{}});
    if (m_Action) m_Action(code, param);
    return 0;
  }
  std::vector<int> Codes() const {
    std::vector<int> codes;
    for (auto const &e : m_Entries) codes.push_back(e.code);
    return codes;
  }

  std::vector<Entry> m_Entries;
  std::function<void(int, SCC_ArrayParam *)> m_Action;
};

/// The eleven fields of a parameter as one comparable record, `array` as a flag.
struct ParamFields {
  int index, count, hasArray, runFirstFrom, runFirstTo, runFirstCount, runLastFrom, runLastTo, runLastCount,
      removedFrom, removedCount;
  bool operator==(ParamFields const &o) const {
    return index == o.index && count == o.count && hasArray == o.hasArray && runFirstFrom == o.runFirstFrom &&
           runFirstTo == o.runFirstTo && runFirstCount == o.runFirstCount && runLastFrom == o.runLastFrom &&
           runLastTo == o.runLastTo && runLastCount == o.runLastCount && removedFrom == o.removedFrom &&
           removedCount == o.removedCount;
  }
};

inline ParamFields fieldsOf(SCC_ArrayParam const &p, _SCC_Array const *array) {
  return ParamFields{p.index,       p.count,     p.array == array, p.runFirstFrom, p.runFirstTo, p.runFirstCount,
                     p.runLastFrom, p.runLastTo, p.runLastCount,   p.removedFrom,  p.removedCount};
}

inline std::ostream &operator<<(std::ostream &out, ParamFields const &p) {
  return out << "{index " << p.index << ", count " << p.count << ", array " << p.hasArray << ", first "
             << p.runFirstFrom << "->" << p.runFirstTo << " x" << p.runFirstCount << ", last " << p.runLastFrom
             << "->" << p.runLastTo << " x" << p.runLastCount << ", removed " << p.removedFrom << " x"
             << p.removedCount << "}";
}

inline int valueOf(int value) { return value; }
inline int valueOf(Tracked const &element) { return element.value; }

/// The elements of an int or Tracked array from its lower to its upper bound.
template <class Array>
std::vector<int> contentsOf(Array &array) {
  std::vector<int> out;
  for (int i = array.GetLowerBound(); i < array.GetUpperBound(); ++i) out.push_back(valueOf(array[i]));
  return out;
}

/// An int array with the bounds [lower, upper) whose element i holds i * 10.
inline void fillTens(SCC_Array<int> &array, int lower, int upper) {
  array.ChangeBounds(lower, upper);
  for (int i = lower; i < upper; ++i) array[i] = i * 10;
}

#endif
