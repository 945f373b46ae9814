//===- scc/scc_arr.cpp - Growable arrays with movable bounds -----------===//
//
// Arrays grow at both ends and share their buffer until first written. The
// untyped work lives here; SCC_Array<T> in inc/scc_arr.h only stores and casts.
// Bound arithmetic is done in 64 bits and checked against the index range, so
// both data models give the same results and nothing overflows.
//
//===------------------------------------------------------------------===//
#include "scc_arr.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr char const kSource[] = "scc/scc";
constexpr char const kSortSource[] = "scc/scc_arr";

// The index range. One below the lowest index and one past the highest upper bound
// are still numbers, and neither is the no-position value.
constexpr std::int64_t kLowest = INT32_MIN + 1;
constexpr std::int64_t kHighestUpper = INT32_MAX - 1;

/// True when [lower, upper) can be the bounds of an array.
bool boundsFit(std::int64_t lower, std::int64_t upper) {
  return lower >= kLowest && upper <= kHighestUpper && upper - lower <= INT32_MAX;
}

/// A value known to lie in the int range, as int.
int narrow(std::int64_t value) { return static_cast<int>(value); }

/// A long argument as the 32-bit value it is in this library (clipped on LP64).
std::int64_t clip(long value) {
  return std::max<std::int64_t>(INT32_MIN, std::min<std::int64_t>(INT32_MAX, value));
}

/// Deletes a buffer that CreateBuffer made when the operation leaves (by an
/// exception) before the array has taken it.
class FreshBuffer {
public:
  FreshBuffer(_SCC_ArrayBuffer *fresh, _SCC_ArrayBuffer *current) : m_Buffer(fresh != current ? fresh : nullptr) {}
  FreshBuffer(FreshBuffer const &) = delete;
  FreshBuffer &operator=(FreshBuffer const &) = delete;
  ~FreshBuffer() { delete m_Buffer; }
  void Release() { m_Buffer = nullptr; }

private:
  _SCC_ArrayBuffer *m_Buffer;
};

/// The two runs of an insertion or removal: the first starts at the old lower
/// bound and is copied upward (it moves down or stays), the second ends at the old
/// last index and is copied downward (it moves up or stays).
struct Runs {
  std::int64_t firstFrom, firstTo, firstCount;
  std::int64_t lastFrom, lastTo, lastCount;

  void Store(SCC_ArrayParam &param) const {
    param.runFirstFrom = narrow(firstFrom);
    param.runFirstTo = narrow(firstTo);
    param.runFirstCount = narrow(firstCount);
    param.runLastFrom = narrow(lastFrom);
    param.runLastTo = narrow(lastTo);
    param.runLastCount = narrow(lastCount);
  }
};

SCC_ArrayParam makeParam(_SCC_Array *array, int index, int count) {
  SCC_ArrayParam param{};
  param.index = index;
  param.count = count;
  param.array = array;
  return param;
}

/// The runs of Delete(index, count) on the bounds [lo, hi); the range is valid.
Runs removalRuns(std::int64_t index, std::int64_t count, std::int64_t lo, std::int64_t hi) {
  if (count > 0) return Runs{index + count, index, hi - index - count, index - 1, index - 1, index - lo};
  return Runs{index, index, hi - index, index + count - 1, index - 1, index + count - lo};
}

/// True when Delete(index, count) removes something from [lo, hi).
bool removable(std::int64_t index, std::int64_t count, std::int64_t lo, std::int64_t hi) {
  return count != 0 && lo <= index && index < hi && lo <= index + count && index + count <= hi;
}

/// Moves the runs that move (all of them into a fresh buffer) with `copy(toSlot, fromSlot,
/// count)`: the first run upward, the last run downward.
template <class Copy>
void copyRuns(Runs const &runs, std::int64_t toAllocLower, std::int64_t fromAllocLower, bool fresh, Copy copy) {
  if (runs.firstCount > 0 && (fresh || runs.firstTo != runs.firstFrom))
    copy(narrow(runs.firstTo - toAllocLower), narrow(runs.firstFrom - fromAllocLower), narrow(runs.firstCount));
  if (runs.lastCount > 0 && (fresh || runs.lastTo != runs.lastFrom))
    copy(narrow(runs.lastTo - toAllocLower), narrow(runs.lastFrom - fromAllocLower), narrow(-runs.lastCount));
}

}  // namespace

// _SCC_ArrayBuffer ---------------------------------------------------------

_SCC_ArrayBuffer::_SCC_ArrayBuffer() noexcept : m_SortSign(1), m_Lower(0), m_AllocLower(0), m_Upper(0), m_AllocUpper(0) {}

_SCC_ArrayBuffer::_SCC_ArrayBuffer(_SCC_ArrayBuffer const &source) noexcept
    : SCC_SharedBuffer(source),
      m_SortSign(source.m_SortSign),
      m_Lower(source.m_Lower),
      m_AllocLower(source.m_AllocLower),
      m_Upper(source.m_Upper),
      m_AllocUpper(source.m_AllocUpper) {}

_SCC_ArrayBuffer::~_SCC_ArrayBuffer() = default;

int _SCC_ArrayBuffer::IsValid() const {
  bool const lowerInside = SSM_Check(m_Lower >= m_AllocLower, "", kSource, __LINE__);
  bool const upperInside = SSM_Check(m_AllocUpper >= m_Upper, "", kSource, __LINE__);
  return lowerInside && upperInside;
}

// _SCC_Array: life and sharing ---------------------------------------------

_SCC_Array::_SCC_Array() noexcept = default;
_SCC_Array::_SCC_Array(long) noexcept {}
_SCC_Array::_SCC_Array(int, int) noexcept {}

// The event's copy moves the ring; no elements come along.
_SCC_Array::_SCC_Array(_SCC_Array &source) : m_ChangeEvent(source.m_ChangeEvent) {}

// The typed destructor has let go of the buffer; the event now disconnects its hooks.
_SCC_Array::~_SCC_Array() = default;

_SCC_Array &_SCC_Array::operator=(_SCC_Array &other) {
  SetData(other.GetData());
  return *this;
}

void _SCC_Array::RegisterIterator(SCC_EventHook<SCC_ArrayParam> &hook) { m_ChangeEvent.Insert(hook); }

// The base has no storage: a typed array supplies these.

_SCC_ArrayBuffer *_SCC_Array::GetData() { return nullptr; }
int _SCC_Array::GetUpperBound() const { return 0; }
int _SCC_Array::GetLowerBound() const { return 0; }
void _SCC_Array::SetData(_SCC_ArrayBuffer *) {}
_SCC_ArrayBuffer *_SCC_Array::AllocData(int) { return new _SCC_ArrayBuffer; }
void _SCC_Array::CopyData(_SCC_ArrayBuffer *, int, int, int) { SSM_Check(false, "", kSource, __LINE__); }
int _SCC_Array::GetCount() const { return 0; }
int _SCC_Array::IsEmpty() const { return GetCount() <= 0; }

int _SCC_Array::IsValid() {
  _SCC_ArrayBuffer *const buffer = GetData();
  if (buffer != nullptr && buffer->IsValid()) return 1;
  SSM_Check(false, "", kSource, __LINE__);
  return 0;
}

int _SCC_Array::Granularity() { return narrow(std::clamp<std::int64_t>(2 * std::int64_t{GetCount()}, 1, 10000)); }

// _SCC_Array: bounds -------------------------------------------------------

void _SCC_Array::CheckArray(int index) {
  int const upper = GetUpperBound();
  int const lower = GetLowerBound();
  if (index >= upper) {
    if (!SSM_Check(index < kHighestUpper, "", kSource, __LINE__)) return;
    ChangeBounds(lower, index + 1);
  } else if (index < lower) {
    ChangeBounds(index, upper);
  } else if (_SCC_ArrayBuffer *const buffer = GetData(); buffer != nullptr && buffer->IsShared()) {
    ChangeBounds(lower, upper);  // the same bounds in a private copy
  }
}

_SCC_ArrayBuffer *_SCC_Array::CreateBuffer(int lower, int upper) {
  if (upper <= lower) return nullptr;
  _SCC_ArrayBuffer *const current = GetData();
  if (!SSM_Check(boundsFit(lower, upper), "", kSource, __LINE__)) return current;

  std::int64_t allocLower = current != nullptr ? current->m_AllocLower : lower;
  std::int64_t allocUpper = current != nullptr ? current->m_AllocUpper : upper;
  std::int64_t const grow = std::max<std::int64_t>(std::int64_t{upper} - lower, Granularity());
  SSM_Check(grow >= 1, "In SCC_Array, Granularity should be > 0", kSource, __LINE__);
  bool fresh = current == nullptr || current->IsShared();
  if (current == nullptr || upper > allocUpper) {
    allocUpper = upper + grow;
    fresh = true;
  }
  if (current == nullptr || lower < allocLower) {
    allocLower = lower - grow;
    fresh = true;
  }

  _SCC_ArrayBuffer *buffer = current;
  if (fresh) {
    // The room stays inside the index range, and the slot count inside int.
    allocLower = std::max(allocLower, kLowest);
    allocUpper = std::min(allocUpper, kHighestUpper);
    if (allocUpper - allocLower > INT32_MAX) {
      allocLower = lower;
      allocUpper = std::min<std::int64_t>(allocUpper, std::int64_t{lower} + INT32_MAX);
    }
    buffer = AllocData(narrow(allocUpper - allocLower));
    if (buffer == nullptr) return nullptr;
  }
  buffer->m_AllocLower = narrow(allocLower);
  buffer->m_AllocUpper = narrow(allocUpper);
  buffer->m_Lower = lower;
  buffer->m_Upper = upper;
  return buffer;
}

void _SCC_Array::ChangeBounds(int lower, int upper) {
  if (upper > lower && !SSM_Check(boundsFit(lower, upper), "", kSource, __LINE__)) return;
  _SCC_ArrayBuffer *const current = GetData();
  // CreateBuffer changes the bounds of the current buffer only when it keeps it.
  int const oldLower = current != nullptr ? current->m_Lower : 0;
  int const oldUpper = current != nullptr ? current->m_Upper : 0;
  int const oldAllocLower = current != nullptr ? current->m_AllocLower : 0;
  _SCC_ArrayBuffer *const buffer = CreateBuffer(lower, upper);
  if (buffer == current) return;

  FreshBuffer guard(buffer, current);
  int const from = std::max(oldLower, lower);
  int const to = std::min(oldUpper, upper);
  if (buffer != nullptr && current != nullptr && from < to)
    CopyData(buffer, from - buffer->m_AllocLower, from - oldAllocLower, to - from);
  guard.Release();
  SetData(buffer);
  SCC_ArrayParam param = makeParam(this, 0, 0);
  raise(SCC_ArrayRebuilt, param);
}

// _SCC_Array: insertion and removal ----------------------------------------
//
// Insert(index, count) on the bounds [lo, hi) holding n elements:
//   inside, count > 0   index..hi-1 move up by count; lo..index-1 stay.
//   inside, count < 0   lo..index-1 move down by |count|; index..hi-1 stay.
//   index < lo          the new lower bound is min(index, index + count); the
//                       elements move up to start at index + count when that is
//                       above lo, else they stay. All of them form the second run.
//   index >= hi         the new upper bound is max(index, index + count); the
//                       elements move down to end just below index + count when
//                       that is below hi, else they stay. All form the first run.
//   empty array         the bounds become [min, max) of index and index + count.
// So an iterator one past the end moves only when the elements move down.

void _SCC_Array::Insert(int index, int count) {
  _SCC_ArrayBuffer *const current = GetData();
  std::int64_t const lo = GetLowerBound();
  std::int64_t const hi = GetUpperBound();
  std::int64_t const n = current != nullptr ? hi - lo : 0;
  std::int64_t const at = index;
  std::int64_t const end = at + count;  // the far side of the new block

  std::int64_t newLower, newUpper;
  Runs runs{};
  if (n <= 0) {
    if (count == 0) return;
    newLower = std::min(at, end);
    newUpper = std::max(at, end);
  } else if (lo <= at && at < hi) {
    if (count == 0) return;
    if (count > 0) {
      newLower = lo;
      newUpper = hi + count;
      runs = Runs{lo, lo, at - lo, hi - 1, hi - 1 + count, hi - at};
    } else {
      newLower = lo + count;
      newUpper = hi;
      runs = Runs{lo, lo + count, at - lo, hi - 1, hi - 1, hi - at};
    }
  } else if (at < lo) {
    std::int64_t const shift = end > lo ? end - lo : 0;
    newLower = std::min(at, end);
    newUpper = hi + shift;
    runs = Runs{lo, lo + shift, 0, hi - 1, hi - 1 + shift, n};
  } else {
    std::int64_t const shift = end < hi ? end - hi : 0;
    newLower = lo + shift;
    newUpper = std::max(at, end);
    runs = Runs{lo, lo + shift, n, hi - 1, hi - 1 + shift, 0};
  }
  if (!SSM_Check(boundsFit(newLower, newUpper), "", kSource, __LINE__)) return;

  SCC_ArrayParam param = makeParam(this, index, count);
  if (n > 0) runs.Store(param);

  int const oldAllocLower = current != nullptr ? current->m_AllocLower : 0;
  _SCC_ArrayBuffer *const buffer = CreateBuffer(narrow(newLower), narrow(newUpper));
  if (buffer == nullptr) return;
  FreshBuffer guard(buffer, current);
  bool const fresh = buffer != current;
  if (n > 0)
    copyRuns(runs, buffer->m_AllocLower, oldAllocLower, fresh,
             [this, buffer](int to, int from, int count) { CopyData(buffer, to, from, count); });
  guard.Release();
  if (fresh) SetData(buffer);
  raise(SCC_ArrayInserted, param);
}

void _SCC_Array::Delete(int index, int count) {
  if (!removable(index, count, GetLowerBound(), GetUpperBound())) return;
  {
    std::int64_t const lo = GetLowerBound();
    SCC_ArrayParam param = makeParam(this, index, count);
    removalRuns(index, count, lo, GetUpperBound()).Store(param);
    param.removedFrom = count > 0 ? index : index + count;
    param.removedCount = count > 0 ? count : -count;
    raise(SCC_ArrayRemoved, param);
  }

  // The hooks may have changed the array: the removal goes on in the bounds they
  // left, as long as the range still lies inside them.
  _SCC_ArrayBuffer *const current = GetData();
  std::int64_t const lo = GetLowerBound();
  std::int64_t const hi = GetUpperBound();
  if (current == nullptr || !removable(index, count, lo, hi)) return;
  Runs const runs = removalRuns(index, count, lo, hi);
  int const oldAllocLower = current->m_AllocLower;
  _SCC_ArrayBuffer *const buffer =
      count > 0 ? CreateBuffer(narrow(lo), narrow(hi - count)) : CreateBuffer(narrow(lo - count), narrow(hi));
  FreshBuffer guard(buffer, current);
  bool const fresh = buffer != current;
  if (buffer != nullptr)
    copyRuns(runs, buffer->m_AllocLower, oldAllocLower, fresh,
             [this, buffer](int to, int from, int count) { CopyData(buffer, to, from, count); });
  guard.Release();
  if (fresh) SetData(buffer);
}

void _SCC_Array::Clear() {
  if (GetData() == nullptr) return;
  int const lo = GetLowerBound();
  int const count = GetUpperBound() - lo;
  SCC_ArrayParam param = makeParam(this, lo, count);
  param.removedFrom = lo;
  param.removedCount = count;
  SetData(nullptr);
  raise(SCC_ArrayRemoved, param);
}

// Iterators ------------------------------------------------------------------

int OnSCCArrayIteratorNotification(int code, SCC_ArrayParam *param, int &index) {
  if (!SSM_Check(param != nullptr, "", kSource, __LINE__)) return 0;
  if (code != SCC_ArrayInserted && code != SCC_ArrayRemoved) return 0;
  std::int64_t const at = index;
  // Positions are wrapped to 32 bits; only an iterator parked far outside the
  // index range can get there.
  if (std::int64_t{param->runLastFrom} - param->runLastCount < at && at <= param->runLastFrom) {
    index = static_cast<int>(static_cast<std::uint32_t>(at + param->runLastTo - param->runLastFrom));
  } else if (param->runFirstFrom <= at && at <= std::int64_t{param->runFirstFrom} + param->runFirstCount) {
    index = static_cast<int>(static_cast<std::uint32_t>(at + param->runFirstTo - param->runFirstFrom));
  } else if (code == SCC_ArrayRemoved) {
    index = SYS_Nowhere;
  }
  return 0;
}

// Sorting --------------------------------------------------------------------

int _SCC_Array::Comp(long, long) {
  SSM_Check(false, "_SCC_Array::Comp is called.", kSortSource, __LINE__);
  return 0;
}

void _SCC_Array::Swap(long, long) { SSM_Check(false, "_SCC_Array::Swap is called.", kSortSource, __LINE__); }

bool _SCC_Array::PrepareSort(long first, long count, int direction, std::int64_t &lo, std::int64_t &hi) {
  _SCC_ArrayBuffer *const buffer = GetData();
  if (buffer == nullptr) return false;
  buffer->m_SortSign = direction;  // before any element is reached
  if (count < 1) return false;
  std::int64_t const start = clip(first);
  std::int64_t const end = start + clip(count);
  SSM_Check(direction != 0, "", kSource, __LINE__);
  SSM_Check(start >= GetLowerBound(), "", kSource, __LINE__);
  SSM_Check(end <= GetUpperBound(), "", kSource, __LINE__);
  if (count < 2) return false;
  lo = start;
  hi = std::min<std::int64_t>(end - 1, INT32_MAX);
  return true;
}

// Indices are in the int range here, so they pass through long unchanged.

void _SCC_Array::Sort(long first, long count, int direction) {
  std::int64_t lo, hi;
  if (!PrepareSort(first, count, direction, lo, hi)) return;
  scc_detail::quickSort(
      lo, hi, [this](std::int64_t i, std::int64_t j) { return Comp(static_cast<long>(i), static_cast<long>(j)); },
      [this](std::int64_t i, std::int64_t j) { Swap(static_cast<long>(i), static_cast<long>(j)); },
      [this, direction](std::int64_t l, std::int64_t h) {
        ShortSort(static_cast<long>(l), static_cast<long>(h), direction);
      });
}

void _SCC_Array::ShortSort(long lo, long hi, int) {
  scc_detail::selectionSort(
      lo, hi, [this](std::int64_t i, std::int64_t j) { return Comp(static_cast<long>(i), static_cast<long>(j)); },
      [this](std::int64_t i, std::int64_t j) { Swap(static_cast<long>(i), static_cast<long>(j)); });
}
