//===- scc/scc_shared.cpp - Reference-counted shared objects -----------===//
#include "scc_shared.h"

#include <new>

void *SCC_SharedBuffer::s_LastAllocated = nullptr;

long SCC_SharedBuffer::Ref(void *object) noexcept {
  // A marker is negative and a count is not, so the first test never matches a count.
  if (m_RefCount == AllocationMarker(object)) {
    m_RefCount = 1;
  } else if (m_RefCount >= 0) {
    ++m_RefCount;
  } else {
    m_RefCount = 2;  // not made by the shared operator new: no holder deletes it
  }
  return static_cast<long>(m_RefCount);
}

void *SCC_SharedBuffer::operator new(std::size_t size) {
  void *const block = ::operator new(size);
  s_LastAllocated = block;
  return block;
}

// A freed block is forgotten: the allocator may give its address to an ordinary
// object next, which must not be taken for a shared one.
void SCC_SharedBuffer::operator delete(void *block) noexcept {
  if (block == s_LastAllocated) s_LastAllocated = nullptr;
  ::operator delete(block);
}
