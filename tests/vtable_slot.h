//===- tests/vtable_slot.h - Where a virtual operation sits in its class's table ===//
#ifndef BFC_TESTS_VTABLE_SLOT_H
#define BFC_TESTS_VTABLE_SLOT_H

#include <cstdint>
#include <cstring>

/// The index of a virtual member function's entry in the virtual table, read from its member pointer: on the Itanium
/// C++ ABI (x86_64 and i386 alike) such a pointer holds 1 + the byte offset of the entry, then an adjustment word.
template <class F>
long vtableSlot(F function) {
  static_assert(sizeof(F) == 2 * sizeof(void *), "a member function pointer is two words here");
  std::uintptr_t raw;
  std::memcpy(&raw, &function, sizeof raw);
  return static_cast<long>((raw - 1) / sizeof(void *));
}

#endif
