//===- tests/scc_arr_support.h - Element types and probes for array tests ===//
#ifndef BFC_TESTS_SCC_ARR_SUPPORT_H
#define BFC_TESTS_SCC_ARR_SUPPORT_H

#include "scc_arr.h"
#include "scc_shared.h"

#include <array>
#include <functional>
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

/// A shared object that counts how many of it are alive, for arrays of holders.
struct Part : SCC_SharedBuffer {
  static inline int s_Alive = 0;
  explicit Part(int n = 0) : number(n) { ++s_Alive; }
  virtual ~Part() { --s_Alive; }
  int number;
};
typedef SCC_SharedPointer<Part> PartRef;

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

/// The eleven fields of a parameter as one comparable record, in declaration order:
/// index, count, array (1 when it is the expected array), the first run's from, to
/// and count, the last run's from, to and count, removedFrom and removedCount.
typedef std::array<int, 11> ParamFields;

inline ParamFields fieldsOf(SCC_ArrayParam const &p, _SCC_Array const *array) {
  return ParamFields{p.index,       p.count,     p.array == array, p.runFirstFrom, p.runFirstTo, p.runFirstCount,
                     p.runLastFrom, p.runLastTo, p.runLastCount,   p.removedFrom,  p.removedCount};
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

/// Gives `array` the bounds of `values` from `lower` and writes them.
template <class Array>
void load(Array &array, int lower, std::vector<int> const &values) {
  array.ChangeBounds(lower, lower + static_cast<int>(values.size()));
  for (size_t k = 0; k < values.size(); ++k) array[lower + static_cast<int>(k)] = values[k];
}

/// An int array with the bounds [lower, upper) whose element i holds i * 10.
inline void fillTens(SCC_Array<int> &array, int lower, int upper) {
  array.ChangeBounds(lower, upper);
  for (int i = lower; i < upper; ++i) array[i] = i * 10;
}

#endif
