//===- scc/scc_savedhandles.cpp - Remembered item handles that follow their items ===//
//
// An entry may be destroyed inside its own notification (code 2 deletes it, code 6
// empties the set): the entry hands the code on as its last act, and the event's
// delivery steps back past a node that leaves its ring.
//
//===------------------------------------------------------------------===//
#include "scc_savedhandles.h"

namespace {

/// The codes of a change event that the set reacts to.
enum ChangeCode { kItemRemoved = 2, kAllReset = 6, kRenumbered = 7 };

}  // namespace

// SCC_HandleWithEvent --------------------------------------------------------

SCC_HandleWithEvent &SCC_HandleWithEvent::operator=(SCC_HandleWithEvent &source) {
  SCC_EventNode<SYS_Handle>::operator=(source);
  m_Type = source.m_Type;
  m_Handle = source.m_Handle;
  m_pOwner = source.m_pOwner;
  return *this;
}

SCC_HandleWithEvent::~SCC_HandleWithEvent() = default;  // the node leaves its event

int SCC_HandleWithEvent::OnNotification(int code, SYS_Handle *param) {
  if (code == kRenumbered) OnUpdatePointers();
  if (m_pOwner == nullptr) return 0;
  return m_pOwner->HandleNotification(m_Handle, m_Type, code, param);
}

SCC_Notifier *SCC_HandleWithEvent::GetChangeEvent() { return nullptr; }

void SCC_HandleWithEvent::OnUpdatePointers() {}

// SCC_SavedHandles -----------------------------------------------------------

SCC_SavedHandles &SCC_SavedHandles::operator=(SCC_SavedHandles const &source) {
  SCC_SortableArray<Entry>::operator=(source);
  m_Resort = source.m_Resort;
  return *this;
}

SCC_SavedHandles::~SCC_SavedHandles() = default;

SCC_SavedHandles::Entry SCC_SavedHandles::CreateByType(SYS_Handle, long) { return Entry(); }

int SCC_SavedHandles::HandleNotification(SYS_Handle, long type, int code, SYS_Handle *param) {
  switch (code) {
    case kItemRemoved: Delete(SCC_Notifier::HandleOf(param), type); break;
    case kAllReset: Clear(); break;
    case kRenumbered: m_Resort = 1; break;
    default: break;
  }
  return 0;
}

int SCC_SavedHandles::Save(SYS_Handle handle, long type) {
  long position = 0;
  if (Find(handle, type, &position) != nullptr) return 0;
  Entry const entry = CreateByType(handle, type);
  if (entry == nullptr) return 0;
  if (SCC_Notifier *const event = entry->GetChangeEvent()) event->Append(*entry);
  int const at = scc_detail::indexOf(position);
  Insert(at, 1);
  (*this)[at] = entry;
  return 1;
}

int SCC_SavedHandles::Delete(SYS_Handle handle, long type) {
  long position = 0;
  // Held here until the set is consistent again: when this is the last holder, the
  // entry leaves its event on return, not in the middle of the removal.
  Entry const found = Find(handle, type, &position);
  if (found == nullptr) return 0;
  _SCC_Array::Delete(scc_detail::indexOf(position), 1);
  releaseVacatedSlots();
  return 1;
}

SCC_SavedHandles::Entry SCC_SavedHandles::Find(SYS_Handle handle, long type, long *position) {
  if (m_Resort != 0) {
    m_Resort = 0;
    Sort(1);
  }
  long index = 0;
  Entry result;
  int const count = GetCount();
  if (count > 0) {
    SCC_HandleWithEvent key(handle, type, this);
    Entry const keyEntry(&key);  // not made by new: its holders never delete it
    // The first element not below the key, so of equal ones the first.
    int const lower = GetLowerBound();
    int low = lower;
    int high = lower + count;
    while (low < high) {
      int const middle = low + (high - low) / 2;
      if (CompareItems(GetElements()[middle - lower], keyEntry) < 0) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    index = low;
    if (low < lower + count && CompareItems(GetElements()[low - lower], keyEntry) == 0)
      result = GetElements()[low - lower];
  }
  if (position != nullptr) *position = index;
  return result;
}

void SCC_SavedHandles::releaseVacatedSlots() {
  // A removal leaves the buffer private (or none): it un-shares before it moves anything.
  SCC_Array<Entry>::Buffer *const buffer = m_Buffer;
  if (buffer == nullptr) return;
  if (buffer->m_Upper < buffer->m_AllocUpper) buffer->m_Elements[buffer->m_Upper - buffer->m_AllocLower].Release();
  if (buffer->m_Lower > buffer->m_AllocLower) buffer->m_Elements[buffer->m_Lower - 1 - buffer->m_AllocLower].Release();
}
