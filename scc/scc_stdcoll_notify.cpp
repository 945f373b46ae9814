//===- scc/scc_stdcoll_notify.cpp - How a collection follows its items ---===//
//
// Item notifiers, the event source and the parent tell the collection what
// changed; it updates items, focus, position and per-handle data, and tells its
// own listeners. While suspended it holds notifications back and replays them,
// each handle once, newest first.
//
//===------------------------------------------------------------------===//
#include "scc_stdcoll.h"

/// Marks the notifications being replayed, so that a renumbering reaches them too
/// and a resume nested in the replay leaves the rest to it.
class SCC_StdCollection::ReplayGuard {
public:
  ReplayGuard(SCC_StdCollection &collection, SCC_Array<SuspendedEvent> &queue) noexcept
      : m_Collection(collection), m_Outer(collection.m_pReplaying) {
    collection.m_pReplaying = &queue;
  }
  ~ReplayGuard() { m_Collection.m_pReplaying = m_Outer; }
  ReplayGuard(ReplayGuard const &) = delete;
  ReplayGuard &operator=(ReplayGuard const &) = delete;

private:
  SCC_StdCollection &m_Collection;
  SCC_Array<SuspendedEvent> *m_Outer;
};

namespace {

/// Replaces every handle of `array` by what `update` makes of it. The bounds are read
/// again after each call, which may reach back into the collection.
template <class T, class Update>
void renumberEach(SCC_Array<T> &array, Update update) {
  for (int k = array.GetLowerBound(); k < array.GetUpperBound(); ++k) {
    T const renumbered = update(array.GetElements()[k - array.GetLowerBound()]);
    if (k < array.GetUpperBound()) array[k] = renumbered;
  }
}

}  // namespace

// Item notifier hooks ----------------------------------------------------------------

void SCC_StdCollection::ConnectEvent(int connect, SCC_Notifier **notifier, EventHook **hook) {
  SCC_Notifier *const event = GetEvent();
  if (event == nullptr) return;
  SYS_Handle const key = reinterpret_cast<SYS_Handle>(event);
  EventHook *found = nullptr;
  if (notifier != nullptr && hook != nullptr && *notifier == event) {
    found = *hook;
  } else {
    if (SCC_Map<SYS_Handle, EventHook>::MapNode *const entry = m_EventHooks.Lookup(key)) {
      found = &entry->m_Value;
    } else if (connect != 0 && static_cast<SCC_EventNode<SYS_Handle> *>(event) != m_Event) {
      // Notifications of the event the collection is a node of already reach it.
      found = m_EventHooks.Insert(key);
      if (found != nullptr) {
        found->SetObject(this, &SCC_StdCollection::OnNotification);
        found->m_UseCount = 0;
        event->Insert(*found);
      }
    }
    if (notifier != nullptr) *notifier = event;
    if (hook != nullptr) *hook = found;
  }
  if (found == nullptr) return;
  if (connect != 0) {
    ++found->m_UseCount;
  } else if (--found->m_UseCount <= 0) {
    ++m_HookRemovals;
    m_EventHooks.Remove(key);  // destroying the hook disconnects it
  }
}

// Item notifications -------------------------------------------------------------------

int SCC_StdCollection::OnNotification(int code, SYS_Handle *param) {
  SYS_Handle const handle = SCC_Notifier::HandleOf(param);
  bool passes = true;
  long found = -1;
  if (handle != 0) {
    passes = Filter(handle) != 0;
    found = findItem(handle);
    if (!passes && found < 0) return 0;
  } else if (code == SCC_ItemAdded || code == SCC_ItemChanged) {
    return 0;  // handle 0 names no item: there is nothing to add
  }
  if (m_Suspended != 0) {
    if (code != SCC_ItemsReload && code != SCC_ItemsDropped) {
      hold(code, handle);
      return 0;
    }
    m_SuspendedEvents.Clear();
  }

  Position const saved(m_Position);
  if (code != SCC_ItemAdded && code != SCC_ItemChanged) sliderTo(handle, found);  // SetSlider, without a second scan
  Position at;  // follows the item through the changes below
  if (found >= 0) {
    at.Attach(&m_Items, 0);
    at.SetIndex(static_cast<int>(found));
  }
  switch (code) {
    case SCC_ItemAdded:
      itemAdded(handle);
      break;
    case SCC_ItemRemoving:
      itemRemoving(handle);
      break;
    case SCC_ItemChanged:
      if (found < 0) {
        itemAdded(handle);
      } else {
        itemChanged(handle, passes, at);
      }
      break;
    case SCC_ItemPassOn:
      raise(SCC_CollectionPassed, handle);
      break;
    case SCC_ItemsReload:
      Reload();
      break;
    case SCC_ItemsDropped:
      raise(SCC_CollectionDropped, handle);
      dropAll();
      break;
    case SCC_ItemsRenumbered:
      renumber();
      raise(SCC_CollectionRenumbered, 0);
      break;
    default:
      break;
  }

  // Back to the index the position had (the items under it may have changed).
  int const index = saved.GetIndex();
  bool const valid = saved.GetArray() != nullptr && index >= m_Items.GetLowerBound() && index < m_Items.GetUpperBound();
  SetSlider(valid ? GetAt(index) : 0);
  m_Position.m_Data = saved.m_Data;
  return 0;
}

void SCC_StdCollection::itemAdded(SYS_Handle handle) {
  placeAt(insertItem(handle));
  _SetSlider(handle);
  ConnectEvent(1, nullptr, nullptr);
  raise(SCC_CollectionAdded, handle);
}

// A listener of code 2 may move the position or change the items: the item
// deleted is the handle itself, found again when the position left it.
void SCC_StdCollection::itemRemoving(SYS_Handle handle) {
  removeFocus(handle);
  if (!m_Position.IsValid()) return;
  ConnectEvent(0, nullptr, nullptr);
  raise(SCC_CollectionRemoving, handle);
  deleteItem(handle, m_Position.GetIndex());
  m_HandleData.Remove(handle);
}

// An item that still passes and sorts where it stands is only announced; otherwise
// it leaves (keeping its per-handle data) and, when it passes, comes back at its
// new place, focused again if it was.
void SCC_StdCollection::itemChanged(SYS_Handle handle, bool passes, Position const &at) {
  placeAt(at.GetIndex());
  _SetSlider(handle);
  if (passes && inOrder(at.GetIndex())) {
    raise(SCC_CollectionFocus, handle);
    return;
  }
  bool const focused = removeFocus(handle);
  raise(SCC_CollectionRemoving, handle);
  if (_GetSlider() != handle) _SetSlider(handle);  // the hook let go of must be the item's
  ConnectEvent(0, nullptr, nullptr);
  deleteItem(handle, at.GetIndex());
  if (!passes) return;
  placeAt(insertItem(handle));
  ConnectEvent(1, nullptr, nullptr);
  if (focused) addFocus(handle);
  _SetSlider(handle);
  raise(SCC_CollectionAdded, handle);
}

void SCC_StdCollection::renumber() {
  auto const update = [this](SYS_Handle handle) { return UpdateHandle(handle); };
  renumberEach(m_Items, update);
  renumberEach(m_Focus, update);
  auto const updateEvent = [this](SuspendedEvent event) {
    event.m_Handle = UpdateHandle(event.m_Handle);
    return event;
  };
  renumberEach(m_SuspendedEvents, updateEvent);
  if (m_pReplaying != nullptr) renumberEach(*m_pReplaying, updateEvent);
  m_Focus.Sort(1);
  // Later insertions find their place by binary search, so the items must be in order.
  resortItems();
}

// Suspension ---------------------------------------------------------------------------

void SCC_StdCollection::hold(int code, SYS_Handle handle) {
  long const count = m_SuspendedEvents.GetCount();
  if (count > 0) {
    SuspendedEvent const &last = m_SuspendedEvents.GetElements()[count - 1];
    if (last.m_Code == code && last.m_Handle == handle) return;
  }
  m_SuspendedEvents[m_SuspendedEvents.GetUpperBound()] = SuspendedEvent{code, handle};
}

void SCC_StdCollection::Suspend(int suspend) {
  if (suspend != 0) {
    m_Suspended = 1;
    return;
  }
  if (m_Suspended == 0) return;
  m_Suspended = 0;
  if (m_pReplaying == nullptr) replay();
}

// What a listener holds back while a replay runs (it suspended and resumed inside
// it) is replayed after the current notifications; what it still holds back when
// the replay ends stays queued for its own resume.
void SCC_StdCollection::replay() {
  while (m_Suspended == 0 && m_SuspendedEvents.GetCount() > 0) {
    SCC_Array<SuspendedEvent> queue(m_SuspendedEvents);
    m_SuspendedEvents.Clear();
    ReplayGuard const guard(*this, queue);
    long const count = queue.GetCount();
    SCC_Map<SYS_Handle, int> replayed(count > 1 ? count : 1);
    for (long k = count - 1; k >= 0 && k < queue.GetCount(); --k) {
      SuspendedEvent const event = queue.GetElements()[k];
      if (replayed.Lookup(event.m_Handle) != nullptr) continue;
      OnNotification(event.m_Code, SCC_Notifier::ParamOf(event.m_Handle));
      replayed.Insert(event.m_Handle);
    }
  }
}

// The parent ---------------------------------------------------------------------------

int SCC_StdCollection::HandleNotificationsAllowed(SYS_Handle handle) {
  if (handle == 0) return 1;
  SCC_StdCollection *const parent = this->parent();
  return parent != nullptr && parent->IsInFocus(handle, nullptr) ? 1 : 0;
}

int SCC_StdCollection::OnParentNotification(int code, SYS_Handle *param) {
  if (HandleNotificationsAllowed(SCC_Notifier::HandleOf(param)) == 0) return 0;
  switch (code) {
    case SCC_CollectionAdded:
    case SCC_CollectionFocus:
    case SCC_CollectionPassed:
    case SCC_CollectionRebuilt:
      Reload();
      break;
    case SCC_CollectionRemoving:
      // The items under the parent's slider go, each as if its own notifier said so.
      SetSlider(0);
      while (_GetNextByParentSlider() != 0) {
        SYS_Handle const item = GetSlider();
        if (item == 0) break;
        if (Filter(item) != 0) {
          OnNotification(SCC_ItemRemoving, SCC_Notifier::ParamOf(item));
          _SetSlider(item);
        }
      }
      break;
    case SCC_CollectionDropped:
      OnNotification(SCC_ItemsDropped, param);
      break;
    default:
      break;
  }
  return 0;
}
