//===- sys/sys_stdinterface.cpp - Handle cursor over a numbered set -----===//
#include "sys_stdinterface.h"

#include <climits>
#include <cstdint>

SCC_Notifier *SYS_StdInterface::GetChangeEvent(void *) { return nullptr; }

void SYS_StdInterface::SetMaxHandle(SYS_Handle maxHandle) { m_MaxHandle = maxHandle; }

int SYS_StdInterface::IsValid() const { return m_Handle != 0 ? 1 : 0; }

void SYS_StdInterface::SetHandle(SYS_Handle handle, void *) { m_Handle = handle; }

SYS_Handle SYS_StdInterface::GetHandle() const { return m_Handle; }

void SYS_StdInterface::GetFirst(void *) { m_Handle = m_MaxHandle > 0 ? 1 : 0; }

// Compared before adding, so that a walk at the largest handle ends instead of wrapping.
void SYS_StdInterface::GetNext() { m_Handle = m_Handle < m_MaxHandle ? m_Handle + 1 : 0; }

void SYS_StdInterface::OnUpdatePointers() {}

int SYS_StdInterface::DefaultSort(SYS_Handle const &a, SYS_Handle const &b) {
  // Handles that carry addresses may lie further apart than an int reaches: the distance is
  // taken unsigned (it always fits) and saturated, so the sign is never lost.
  using Distance = std::uintptr_t;
  if (a >= b) {
    Distance const d = static_cast<Distance>(a) - static_cast<Distance>(b);
    return d > static_cast<Distance>(INT_MAX) ? INT_MAX : static_cast<int>(d);
  }
  Distance const d = static_cast<Distance>(b) - static_cast<Distance>(a);
  return d > static_cast<Distance>(INT_MAX) ? INT_MIN : -static_cast<int>(d);
}
