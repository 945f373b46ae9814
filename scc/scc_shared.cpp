//===- scc/scc_shared.cpp - Reference-counted shared objects -----------===//
#include "scc_shared.h"

#include <new>

SYS_Handle SCC_SharedBuffer::s_LastAllocated = 0;

long SCC_SharedBuffer::Ref(void *object) noexcept {
  // A marker is negative and a count is not, so the first test never matches a count.
  if (m_RefCount == AllocationMarker(reinterpret_cast<SYS_Handle>(object))) {
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
  s_LastAllocated = reinterpret_cast<SYS_Handle>(block);
  return block;
}

void SCC_SharedBuffer::operator delete(void *block) noexcept { ::operator delete(block); }
