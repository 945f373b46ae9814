//===- inc/scc_arr.h - Arrays with movable bounds and copy on write -----===//
//
// An array has a lower bound as well as an upper bound, grows at either end,
// shares its buffer with its copies until the first write, and announces every
// structural change on its change event so that iterators keep standing on the
// same elements. The untyped work lives in _SCC_Array (scc/scc_arr.cpp);
// SCC_Array<T> only stores, copies and casts.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_ARR_H
#define BFC_SCC_ARR_H

#include "scc_event.h"
#include "scc_shared.h"
#include "ssm_report.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

class _SCC_Array;

/// The codes an array raises on its change event.
enum SCC_ArrayChange {
  SCC_ArrayInserted = 1,  ///< by Insert, after the change
  SCC_ArrayRemoved = 2,   ///< by Delete before the change, by Clear after it
  SCC_ArrayRebuilt = 3,   ///< by ChangeBounds (so by growth), after the buffer was replaced
};

/// What changed: the parameter of every change notification. An insertion or
/// removal moves at most two runs of elements, the run that starts at the old
/// lower bound and the run that ends at the old last index. Fields an operation
/// does not set are 0.
struct SCC_ArrayParam {
  int index;          ///< the index given to the operation (the old lower bound for Clear)
  int count;          ///< the count given, with its sign (the old count for Clear)
  _SCC_Array *array;  ///< the array that changed
  int runFirstFrom;   ///< old index of the first element of the first run
  int runFirstTo;     ///< its new index
  int runFirstCount;  ///< length of the first run
  int runLastFrom;    ///< old index of the last element of the second run
  int runLastTo;      ///< its new index
  int runLastCount;   ///< length of the second run
  int removedFrom;    ///< first removed index (Delete, Clear)
  int removedCount;   ///< number of removed elements (Delete, Clear)
};

/// Moves `index` the way an iterator follows the elements on codes 1 and 2: an
/// index on a moved element moves with it, one just past the first run moves with
/// that run, and on a removal every other index goes nowhere (SYS_Nowhere). Other
/// codes leave it alone. A null `param` is reported and leaves it alone. Returns 0.
BFC_API int OnSCCArrayIteratorNotification(int code, SCC_ArrayParam *param, int &index);

/// The element store of an array, without the elements: its bounds and sort sign.
///
/// Element i lives in slot i - m_AllocLower. Kept by the arrays:
/// m_AllocLower <= m_Lower <= m_Upper <= m_AllocUpper.
class BFC_API _SCC_ArrayBuffer : public SCC_SharedBuffer {
public:
  /// Sign 1, all bounds 0.
  _SCC_ArrayBuffer() noexcept;
  /// Copies the sign and the bounds; the count is the new object's own.
  _SCC_ArrayBuffer(_SCC_ArrayBuffer const &source) noexcept;
  _SCC_ArrayBuffer &operator=(_SCC_ArrayBuffer const &) = default;
  virtual ~_SCC_ArrayBuffer();

  /// Reports (once for each) a lower bound below the allocated room and an upper
  /// bound above it; true when neither.
  int IsValid() const;

  int m_SortSign;    ///< applied to every comparison of a sortable array; 1 in a new buffer
  int m_Lower;       ///< the first valid index
  int m_AllocLower;  ///< the index the first slot holds
  int m_Upper;       ///< one past the last valid index
  int m_AllocUpper;  ///< one past the index the last slot holds
};

/// The untyped array: bounds, growth, insertion, removal, sorting and the change
/// event. The typed SCC_Array<T> supplies the storage through the virtual
/// operations.
///
/// Indices run from -2147483647 to 2147483645, so that one below the lower bound
/// and one past the upper bound are numbers and never the no-position value; a
/// change that would leave that range is reported and not made.
class BFC_API _SCC_Array {
public:
  /// Takes over the source's hooks and its enabled flag, and no elements.
  _SCC_Array(_SCC_Array &source);
  /// Disconnects every hook (they stay alive, unconnected).
  virtual ~_SCC_Array();

  /// Gives the array the bounds [lower, upper): the overlap with the old bounds
  /// keeps its elements, the rest are new. No elements when upper <= lower. Raises
  /// code 3 when the buffer was replaced; a change in place raises nothing.
  void ChangeBounds(int lower, int upper);
  /// Makes room for |count| new elements at `index`; count > 0 moves the elements
  /// from `index` up, count < 0 moves those below `index` down. Outside the bounds
  /// the array reaches out to the new block (see scc/scc_arr.cpp). A count of 0
  /// inside the bounds or on an empty array changes nothing. Raises code 1 after.
  void Insert(int index, int count);
  /// Removes `index`..`index`+count-1 (count > 0) or `index`+count..`index`-1
  /// (count < 0). Does nothing unless the whole range lies inside the bounds and
  /// count is not 0. Raises code 2 before anything changes; when its hooks change
  /// the array, the same indices are removed from the bounds they left, as long as
  /// the range still lies inside them.
  void Delete(int index, int count);
  /// Lets go of every element; raises code 2 afterwards. Nothing for an empty array.
  void Clear();
  /// Connects `hook` to the change event by its priority.
  void RegisterIterator(SCC_EventHook<SCC_ArrayParam> &hook);
  /// The change event, for hosts that connect nodes or disable it.
  SCC_Event<SCC_ArrayParam> &GetChangeEvent() noexcept { return m_ChangeEvent; }

  // The virtual operations, in their table order.

  /// The current buffer, null without elements.
  virtual _SCC_ArrayBuffer *GetData();
  virtual int GetUpperBound() const;
  virtual int GetLowerBound() const;

protected:
  /// Takes `buffer` (null for none) and lets go of the previous one.
  virtual void SetData(_SCC_ArrayBuffer *buffer);
  /// A new buffer with room for `slots` elements; here a bare one without storage.
  virtual _SCC_ArrayBuffer *AllocData(int slots);
  /// Copies `count` elements from the current buffer into `to`: upward from the two
  /// slots when count > 0, downward from them (the slots of the top element) when
  /// count < 0. Reported here: there are no elements to copy.
  virtual void CopyData(_SCC_ArrayBuffer *to, int toSlot, int fromSlot, int count);
  /// Compares elements i and j; reported here and 0.
  virtual int Comp(long i, long j);
  /// Exchanges elements i and j; reported here.
  virtual void Swap(long i, long j);

public:
  /// Sorts `count` elements from `first` by Comp and Swap (a non-recursive
  /// quicksort, not stable). `direction` (+1 ascending, -1 descending) is stored
  /// in the buffer before any element is reached; a buffer made afresh starts
  /// again with +1, so sorting an array that still shares its buffer gives the
  /// ascending order.
  virtual void Sort(long first, long count, int direction);

protected:
  /// Selection sort of lo..hi by Comp and Swap; `direction` is not used.
  virtual void ShortSort(long lo, long hi, int direction);
  /// The least growth step: twice the count, at least 1, at most 10000.
  virtual int Granularity();

public:
  virtual int GetCount() const;
  /// True when the count is not above 0.
  virtual int IsEmpty() const;
  /// 1 when there is a buffer and it is valid; otherwise reported and 0.
  virtual int IsValid();

protected:
  _SCC_Array() noexcept;
  /// The typed constructor sets the bounds once the typed array is complete.
  explicit _SCC_Array(long count) noexcept;
  _SCC_Array(int lower, int upper) noexcept;
  /// Shares the other array's buffer.
  _SCC_Array &operator=(_SCC_Array &other);

  /// The start of Sort: stores `direction` in the buffer and reports a direction of
  /// 0 and a range beyond the bounds. False when there is nothing to sort; else the
  /// range is lo..hi.
  bool PrepareSort(long first, long count, int direction, std::int64_t &lo, std::int64_t &hi);
  /// Makes `index` valid and the buffer private: grows the array to reach it, or
  /// un-shares the buffer. An index that cannot be reached is reported.
  void CheckArray(int index);
  /// The buffer for the bounds [lower, upper): the current one when it is private
  /// and has the room, else a new one with growth max(upper - lower, Granularity())
  /// at each end that needs it. Sets its bounds; null when upper <= lower. The
  /// bounds must lie in the index range.
  _SCC_ArrayBuffer *CreateBuffer(int lower, int upper);

  SCC_Event<SCC_ArrayParam> m_ChangeEvent;

private:
  void raise(int code, SCC_ArrayParam &param) { m_ChangeEvent.Notify(code, &param); }
};

/// A typed array with movable bounds. Every element access goes through the
/// bounds and sharing test of CheckArray, so writing past either bound grows the
/// array and the first access by index to a shared buffer un-shares it.
///
/// Plain element types (trivially copyable and destructible) get raw storage whose
/// new slots are not initialised; class types are constructed with their storage
/// and destroyed with it, and every move inside a buffer is an assignment. So a
/// slot that an in-place removal leaves outside the bounds keeps its value (for a
/// shared pointer, its holding) until it is written again or the buffer is freed.
template <class T>
class SCC_Array : public _SCC_Array {
public:
  class Buffer;
  class Iterator;

  SCC_Array() noexcept : m_Buffer(nullptr) {}
  /// Bounds 0 and `count`; no elements when count < 1.
  explicit SCC_Array(long count) : _SCC_Array(count), m_Buffer(nullptr) {
    ChangeBounds(0, static_cast<int>(count > INT_MAX ? INT_MAX : count < INT_MIN ? INT_MIN : count));
  }
  /// Shares the source's buffer, with a change event of its own and no hooks.
  SCC_Array(SCC_Array const &source) : _SCC_Array(), m_Buffer(nullptr) {
    _SCC_Array::operator=(const_cast<SCC_Array &>(source));
  }
  /// Shares the source's buffer; the hooks stay where they are.
  SCC_Array &operator=(SCC_Array const &source) {
    _SCC_Array::operator=(const_cast<SCC_Array &>(source));
    return *this;
  }
  ~SCC_Array() override { SetData(nullptr); }

  /// The element at `index`, made valid and private first (growing the array to
  /// reach it). The reference lasts until the next change of the bounds. An index
  /// that cannot be reached is reported and throws std::out_of_range.
  T &operator[](int index);

  _SCC_ArrayBuffer *GetData() override { return m_Buffer; }
  /// The elements from the lower bound on, read-only and without un-sharing the buffer;
  /// null when there are none. Valid until the array next changes.
  T const *GetElements() const noexcept {
    Buffer const *const buffer = m_Buffer;
    return buffer != nullptr && buffer->m_Upper > buffer->m_Lower
               ? buffer->m_Elements + (buffer->m_Lower - buffer->m_AllocLower)
               : nullptr;
  }
  int GetUpperBound() const override { return m_Buffer != nullptr ? m_Buffer->m_Upper : 0; }
  int GetLowerBound() const override { return m_Buffer != nullptr ? m_Buffer->m_Lower : 0; }
  int GetCount() const override { return m_Buffer != nullptr ? m_Buffer->m_Upper - m_Buffer->m_Lower : 0; }

protected:
  void SetData(_SCC_ArrayBuffer *buffer) override;
  /// Null when slots < 1.
  _SCC_ArrayBuffer *AllocData(int slots) override;
  void CopyData(_SCC_ArrayBuffer *to, int toSlot, int fromSlot, int count) override;

  /// The element at a valid index, without growing; throws std::out_of_range for
  /// an index outside the bounds (which only a hook that changed the array during
  /// the access can cause).
  T &ElementAt(int index);

  Buffer *m_Buffer;

private:
  T &reach(int index);
};

/// The buffer of a typed array: bounds and slots in one block from the shared
/// operator new. The buffer and its elements are freed together.
template <class T>
class SCC_Array<T>::Buffer : public _SCC_ArrayBuffer {
public:
  /// Raw storage: no construction, destruction, or copying other than by bytes.
  static constexpr bool kRaw = std::is_trivially_copyable<T>::value && std::is_trivially_destructible<T>::value;

  /// Allocates the buffer with room for `slots` elements behind it.
  static void *operator new(std::size_t size, int slots);
  /// Frees the block when the constructor throws.
  static void operator delete(void *block, int) noexcept { SCC_SharedBuffer::operator delete(block); }
  static void operator delete(void *block) noexcept { SCC_SharedBuffer::operator delete(block); }

  explicit Buffer(int slots);
  Buffer(Buffer const &) = delete;
  Buffer &operator=(Buffer const &) = delete;
  ~Buffer() override;

  T *m_Elements;  ///< the slots, right behind this object in its block

private:
  static std::size_t storageOffset() noexcept { return (sizeof(Buffer) + alignof(T) - 1) / alignof(T) * alignof(T); }

  int m_Slots;
};

/// An index into an array that follows its element through insertions and
/// removals (see OnSCCArrayIteratorNotification). It stands nowhere (SYS_Nowhere)
/// once its element is removed.
///
/// A copy stands at the same index of the same array but is unconnected, with
/// priority 0: attach it to make it follow. An iterator must not be used to reach
/// elements after its array is destroyed.
template <class T>
class SCC_Array<T>::Iterator : public SCC_EventHook<SCC_ArrayParam> {
public:
  Iterator() noexcept : m_Index(SYS_Nowhere), m_Array(nullptr) {}
  /// Attaches to `array` at `index` (its lower bound when `index` is no position).
  explicit Iterator(SCC_Array *array, int index = SYS_Nowhere) : Iterator() { Attach(array, index); }
  Iterator(Iterator const &source) noexcept
      : SCC_EventHook<SCC_ArrayParam>(source), m_Index(source.m_Index), m_Array(source.m_Array) {}
  /// Connects in front of the source on its array's event and takes its place.
  Iterator &operator=(Iterator &source) {
    SCC_EventHook<SCC_ArrayParam>::operator=(source);
    m_Index = source.m_Index;
    m_Array = source.m_Array;
    return *this;
  }

  int OnNotification(int code, SCC_ArrayParam *param) override {
    return OnSCCArrayIteratorNotification(code, param, m_Index);
  }

  /// Follows `array` from `index` (its lower bound when `index` is no position).
  /// A null array leaves the index and disconnects: the iterator follows nothing.
  void Attach(SCC_Array *array, int index = SYS_Nowhere) {
    m_Array = array;
    if (array == nullptr) {
      this->Disconnect();
      return;
    }
    m_Index = index == SYS_Nowhere ? array->GetLowerBound() : index;
    array->RegisterIterator(*this);
  }

  int GetIndex() const noexcept { return m_Index; }
  void SetIndex(int index) noexcept { m_Index = index; }
  SCC_Array *GetArray() const noexcept { return m_Array; }
  /// True when the iterator stands on an element of its array.
  int IsValid() const {
    return m_Array != nullptr && m_Index >= m_Array->GetLowerBound() && m_Index < m_Array->GetUpperBound();
  }

  /// The element it stands on, reached through the array (so standing past an end
  /// grows the array). Throws std::out_of_range without an array or position.
  T &operator*() const {
    if (m_Array == nullptr || m_Index == SYS_Nowhere) throw std::out_of_range("SCC_Array::Iterator stands nowhere");
    return (*m_Array)[m_Index];
  }
  T *operator->() const { return &**this; }
  /// Steps by one; no position stays no position.
  Iterator &operator++() noexcept {
    if (m_Index != SYS_Nowhere && m_Index != SYS_Nowhere - 1) ++m_Index;
    return *this;
  }
  Iterator &operator--() noexcept {
    if (m_Index != SYS_Nowhere && m_Index != INT_MIN) --m_Index;
    return *this;
  }

protected:
  int m_Index;         ///< where it stands, or SYS_Nowhere
  SCC_Array *m_Array;  ///< the array it follows, or null
};

namespace scc_detail {

/// The selection pass: while hi > lo, the first of the largest of lo..hi (scanning
/// upward) is swapped to hi, even when it is there already, and hi goes down.
template <class Compare, class Exchange>
void selectionSort(std::int64_t lo, std::int64_t hi, Compare comp, Exchange swap) {
  for (std::int64_t top = hi; top > lo; --top) {
    std::int64_t largest = lo;
    for (std::int64_t k = lo + 1; k <= top; ++k)
      if (comp(k, largest) > 0) largest = k;
    swap(largest, top);
  }
}

/// The non-recursive quicksort of lo..hi: ranges of up to 8 go to `shortSort`;
/// larger ones are partitioned around their middle element, the larger part is
/// pushed and the smaller one sorted next. A range at depth d then holds at most
/// 2^32 / 2^d elements and is only split above 8, so 30 entries never fill.
template <class Compare, class Exchange, class Short>
void quickSort(std::int64_t lo, std::int64_t hi, Compare comp, Exchange swap, Short shortSort) {
  constexpr int kDepth = 30;
  std::int64_t pendingLo[kDepth];
  std::int64_t pendingHi[kDepth];
  int depth = 0;
  auto push = [&](std::int64_t from, std::int64_t to) {
    if (!SSM_Check(depth < kDepth, "", "scc/scc", __LINE__)) return;
    pendingLo[depth] = from;
    pendingHi[depth] = to;
    ++depth;
  };
  for (;;) {
    if (hi - lo + 1 <= 8) {
      shortSort(lo, hi);
    } else {
      swap(lo + (hi - lo + 1) / 2, lo);  // the middle element is the pivot, at lo
      std::int64_t a = lo;
      std::int64_t b = hi + 1;
      for (;;) {
        do {
          ++a;
        } while (a <= hi && comp(a, lo) <= 0);
        do {
          --b;
        } while (b > lo && comp(b, lo) >= 0);
        if (b < a) break;
        swap(a, b);
      }
      swap(lo, b);
      if (b - 1 - lo >= hi - a) {
        if (lo + 1 < b) push(lo, b - 1);
        if (a < hi) {
          lo = a;
          continue;
        }
      } else {
        if (a < hi) push(a, hi);
        if (lo + 1 < b) {
          hi = b - 1;
          continue;
        }
      }
    }
    if (depth == 0) return;
    --depth;
    lo = pendingLo[depth];
    hi = pendingHi[depth];
  }
}

}  // namespace scc_detail

// SCC_Array<T> -------------------------------------------------------------

template <class T>
inline T &SCC_Array<T>::operator[](int index) {
  // The cases of CheckArray that keep a private buffer in place, inline: they move
  // one bound and raise nothing. Everything else takes the full path.
  Buffer *const buffer = m_Buffer;
  if (buffer != nullptr && !buffer->IsShared()) {
    if (index >= buffer->m_Lower) {
      if (index < buffer->m_Upper) return buffer->m_Elements[index - buffer->m_AllocLower];
      if (index < buffer->m_AllocUpper) {
        buffer->m_Upper = index + 1;
        return buffer->m_Elements[index - buffer->m_AllocLower];
      }
    } else if (index >= buffer->m_AllocLower) {
      buffer->m_Lower = index;
      return buffer->m_Elements[index - buffer->m_AllocLower];
    }
  }
  return reach(index);
}

template <class T>
T &SCC_Array<T>::reach(int index) {
  CheckArray(index);
  return ElementAt(index);
}

template <class T>
T &SCC_Array<T>::ElementAt(int index) {
  Buffer *const buffer = m_Buffer;
  if (buffer == nullptr || index < buffer->m_Lower || index >= buffer->m_Upper)
    throw std::out_of_range("SCC_Array: index out of the bounds");
  return buffer->m_Elements[index - buffer->m_AllocLower];
}

template <class T>
void SCC_Array<T>::SetData(_SCC_ArrayBuffer *buffer) {
  Buffer *const old = m_Buffer;
  m_Buffer = static_cast<Buffer *>(buffer);
  if (m_Buffer != nullptr) m_Buffer->Ref(static_cast<void *>(m_Buffer));
  if (old != nullptr && old->Deref() == 0) delete old;
}

template <class T>
_SCC_ArrayBuffer *SCC_Array<T>::AllocData(int slots) {
  return slots < 1 ? nullptr : new (slots) Buffer(slots);
}

template <class T>
void SCC_Array<T>::CopyData(_SCC_ArrayBuffer *to, int toSlot, int fromSlot, int count) {
  if (to == nullptr || m_Buffer == nullptr || count == 0) return;
  T *const target = static_cast<Buffer *>(to)->m_Elements;
  T *const source = m_Buffer->m_Elements;
  if (count > 0) {
    auto const n = static_cast<std::size_t>(count);
    if constexpr (Buffer::kRaw) {
      std::memmove(static_cast<void *>(target + toSlot), source + fromSlot, n * sizeof(T));
    } else {
      for (std::size_t k = 0; k < n; ++k) target[toSlot + k] = source[fromSlot + k];
    }
  } else {
    // Downward: the run ends at the given slots, so it may move up within one buffer.
    auto const n = static_cast<std::size_t>(-static_cast<long long>(count));
    if constexpr (Buffer::kRaw) {
      std::memmove(static_cast<void *>(target + toSlot + 1 - n), source + fromSlot + 1 - n, n * sizeof(T));
    } else {
      for (std::size_t k = 0; k < n; ++k) target[toSlot - k] = source[fromSlot - k];
    }
  }
}

// SCC_Array<T>::Buffer -----------------------------------------------------

template <class T>
void *SCC_Array<T>::Buffer::operator new(std::size_t, int slots) {
  static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "elements fit the default alignment");
  std::size_t const offset = storageOffset();
  auto const count = static_cast<std::size_t>(slots);
  // The offset covers the buffer object itself and the padding behind it.
  if (count > (SIZE_MAX - offset) / sizeof(T)) throw std::bad_array_new_length();
  return SCC_SharedBuffer::operator new(offset + count * sizeof(T));
}

template <class T>
SCC_Array<T>::Buffer::Buffer(int slots)
    : m_Elements(reinterpret_cast<T *>(reinterpret_cast<char *>(this) + storageOffset())), m_Slots(slots) {
  if constexpr (!kRaw) std::uninitialized_value_construct_n(m_Elements, static_cast<std::size_t>(slots));
}

template <class T>
SCC_Array<T>::Buffer::~Buffer() {
  if constexpr (!kRaw) std::destroy_n(m_Elements, static_cast<std::size_t>(m_Slots));
}

#endif
