//===- inc/scc_shared.h - Reference-counted shared objects -------------===//
//
// A shared object counts its holders. One made by the shared operator new is
// deleted by the holder that lets go of it last; any other (on the stack,
// static, a member, from another allocator) counts 2 from its first holder on,
// so its holders never delete it. The constructor tells the two apart by the
// block that the shared operator new gave out last.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_SHARED_H
#define BFC_SCC_SHARED_H

#include "sys_base.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The base of every reference-counted object: array buffers, sort objects and
/// whatever is handed around through SCC_SharedPointer.
///
/// The count is a holder count (0 or more) once the object has been referenced,
/// and before that the allocation marker of the block the object was made in.
/// Copying or assigning an object never copies its count.
class BFC_API SCC_SharedBuffer {
public:
  /// The count starts as the marker of the last block the shared operator new
  /// gave out: it matches this object only when the object starts that block.
  SCC_SharedBuffer() noexcept : m_RefCount(AllocationMarker(s_LastAllocated)) {}
  SCC_SharedBuffer(SCC_SharedBuffer const &) noexcept : SCC_SharedBuffer() {}
  /// Leaves the count of the assigned-to object as it was.
  SCC_SharedBuffer &operator=(SCC_SharedBuffer const &) noexcept { return *this; }

  /// Takes one holder; `object` is the address at which the whole object starts.
  /// The first holder of an object made by the shared operator new gets 1; the
  /// first holder of any other object gets 2. Returns the new count.
  long Ref(void *object) noexcept;
  /// Lets one holder go and returns the new count; the holder deletes the object at 0.
  long Deref() noexcept { return static_cast<long>(--m_RefCount); }
  /// The number of holders; 0 for an object that was never referenced.
  long GetRefCount() const noexcept { return m_RefCount < 0 ? 0 : static_cast<long>(m_RefCount); }
  /// True when more than one holder has the object.
  int IsShared() const noexcept { return m_RefCount > 1; }

  /// Allocates the block and remembers its address in s_LastAllocated.
  static void *operator new(std::size_t size);
  /// Frees the block; s_LastAllocated becomes null when it names this block.
  static void operator delete(void *block) noexcept;

  /// The marker of the block at `address`: minus the address counted in units of
  /// the object alignment, minus 1. It is negative for every address in both data
  /// models (so it can never be mistaken for a holder count) and different for
  /// every address at which an object can start.
  static SYS_Handle AllocationMarker(void const *address) noexcept {
    auto const units = reinterpret_cast<std::uintptr_t>(address) / alignof(SCC_SharedBuffer);
    return -static_cast<SYS_Handle>(units) - 1;
  }

  /// The address of the block the shared operator new gave out last while it is
  /// alive, else null. One unguarded value for the process: objects are made on one
  /// thread.
  static void *s_LastAllocated;

protected:
  // A holder count (>= 0), or while negative the allocation marker of the block
  // the object was constructed in. As wide as an address, so the marker is exact.
  SYS_Handle m_RefCount;
};

/// A holder of a shared object: takes it (Ref) when given it and lets it go
/// (Deref, and delete at 0) when reassigned or destroyed.
///
/// T derives from SCC_SharedBuffer. An object that was not made by the shared
/// operator new is never deleted through its holders.
template <class T>
class SCC_SharedPointer {
public:
  SCC_SharedPointer() noexcept : m_Object(nullptr) {}
  SCC_SharedPointer(T *object) noexcept : m_Object(object) { take(object); }
  SCC_SharedPointer(SCC_SharedPointer const &source) noexcept : m_Object(source.m_Object) { take(m_Object); }
  /// Moves the holding itself: the count does not change.
  SCC_SharedPointer(SCC_SharedPointer &&source) noexcept : m_Object(source.m_Object) { source.m_Object = nullptr; }
  ~SCC_SharedPointer() { Release(); }

  /// Takes the new object before letting go of the old, so self-assignment is safe.
  SCC_SharedPointer &operator=(T *object) {
    take(object);
    T *const old = m_Object;
    m_Object = object;
    letGo(old);
    return *this;
  }
  SCC_SharedPointer &operator=(SCC_SharedPointer const &source) { return *this = source.m_Object; }
  SCC_SharedPointer &operator=(SCC_SharedPointer &&source) noexcept {
    if (&source != this) {
      T *const old = m_Object;
      m_Object = source.m_Object;
      source.m_Object = nullptr;
      letGo(old);
    }
    return *this;
  }

  /// Holds nothing afterwards: the pointer is cleared before the object is let go.
  void Release() {
    T *const old = m_Object;
    m_Object = nullptr;
    letGo(old);
  }

  T *Get() const noexcept { return m_Object; }
  T *operator->() const noexcept { return m_Object; }
  T &operator*() const noexcept { return *m_Object; }
  operator T *() const noexcept { return m_Object; }

private:
  static void take(T *object) noexcept {
    static_assert(std::is_base_of<SCC_SharedBuffer, T>::value, "shared objects derive from SCC_SharedBuffer");
    if (object != nullptr) object->Ref(wholeObject(object));
  }
  static void letGo(T *object) {
    if (object != nullptr && object->Deref() == 0) delete object;
  }
  /// Where the whole object starts, which is where its block starts when the
  /// shared operator new made it (T may be a base of the object's class).
  static void *wholeObject(T *object) noexcept {
    if constexpr (std::is_polymorphic<T>::value) {
      return dynamic_cast<void *>(object);
    } else {
      return object;
    }
  }

  T *m_Object;
};

/// Address order of the held objects: -1, 0 or 1. A more specific overload (for
/// one pointee type) takes precedence where it is declared.
template <class T>
int SCC_Compare(SCC_SharedPointer<T> const &a, SCC_SharedPointer<T> const &b) {
  auto const x = reinterpret_cast<std::uintptr_t>(a.Get());
  auto const y = reinterpret_cast<std::uintptr_t>(b.Get());
  return (x > y) - (x < y);
}

#endif
