//===- scc/scc_stdcoll.cpp - The standard collection: structure and reload ===//
//
// Construction, copying, navigation, focus, sorting, filtering and reloading.
// How the collection reacts to notifications is in scc_stdcoll_notify.cpp.
//
//===------------------------------------------------------------------===//
#include "scc_stdcoll.h"

#include "scc/scc_handle_scan.h"
#include "scc/scc_handle_set.h"
#include "scc/scc_handle_sort.h"
#include "ssm_report.h"

#include <algorithm>
#include <vector>

namespace {

constexpr long kBuckets = 53;

/// The handles of `array`, in order, as a vector.
std::vector<SYS_Handle> handlesOf(SCC_StdCollection::HandleArray const &array) {
  SYS_Handle const *const first = array.GetElements();
  return first != nullptr ? std::vector<SYS_Handle>(first, first + array.GetCount()) : std::vector<SYS_Handle>();
}

/// Makes `array` hold exactly `handles`, from index 0, raising one change at most.
void assign(SCC_StdCollection::HandleArray &array, std::vector<SYS_Handle> const &handles) {
  array.Clear();
  if (handles.empty()) return;
  array.Insert(0, static_cast<int>(handles.size()));
  std::copy(handles.begin(), handles.end(), &array[0]);
}

bool sameHandles(SCC_StdCollection::HandleArray const &a, SCC_StdCollection::HandleArray const &b) {
  long const count = a.GetCount();
  return count == b.GetCount() && (count == 0 || std::equal(a.GetElements(), a.GetElements() + count, b.GetElements()));
}

}  // namespace

// Construction -----------------------------------------------------------------

SCC_StdCollection::SCC_StdCollection(SCC_StdCollection *parent)
    : m_EventHooks(kBuckets),
      m_EventSource(nullptr),
      m_Filter(nullptr),
      m_HandleData(kBuckets),
      m_Parent(nullptr),
      m_Suspended(0),
      m_ReloadAllowed(0),
      m_HasItems(0),
      m_ParentHook(this, &SCC_StdCollection::OnParentNotification, 0),
      m_SortDirection(1),
      m_HookRemovals(0),
      m_pReplaying(nullptr) {
  SetParent(parent);
}

SCC_StdCollection::SCC_StdCollection(SCC_StdCollection const &source) : SCC_StdCollection(nullptr) {
  copyFrom(source);
}

SCC_StdCollection &SCC_StdCollection::operator=(SCC_StdCollection const &source) {
  if (&source == this) return *this;
  HandleArray const before(m_Items);
  m_HandleData.RemoveAll();
  ++m_HookRemovals;
  m_EventHooks.RemoveAll();
  SCC_EventNode<SYS_Handle>::Disconnect();
  m_EventSource = nullptr;
  m_ParentHook.Disconnect();
  m_Parent = nullptr;
  m_SuspendedEvents.Clear();
  copyFrom(source);
  if (!sameHandles(before, m_Items)) raise(SCC_CollectionRebuilt, 0);
  return *this;
}

// The members go in reverse order, which is the order the collection lets go of
// things: the parent hook and position, the per-handle data, the arrays, the
// change notifier's nodes (untold), the item hooks, and last its own event.
SCC_StdCollection::~SCC_StdCollection() = default;

void SCC_StdCollection::copyFrom(SCC_StdCollection const &source) {
  SCC_StdCollection &from = const_cast<SCC_StdCollection &>(source);
  m_Filter = from.m_Filter;
  m_SortDirection = from.m_SortDirection;
  m_Items = from.m_Items;
  m_Focus = from.m_Focus;
  m_SuspendedEvents = from.m_SuspendedEvents;
  m_Suspended = from.m_Suspended;
  m_ReloadAllowed = from.m_ReloadAllowed;
  m_HasItems = from.m_HasItems;
  EnableNotifications(from.m_ChangeEvent.IsEnabled());
  for (SCC_Map<SYS_Handle, Position>::Iterator entry(&from.m_HandleData); entry.IsValid(); entry.Next())
    if (Position *const data = m_HandleData.Insert(entry.GetKey())) data->m_Data = entry.GetValue().m_Data;
  // A hook is connected while its notifier lives; the copy hooks the same notifier.
  for (SCC_Map<SYS_Handle, EventHook>::Iterator entry(&from.m_EventHooks); entry.IsValid(); entry.Next()) {
    EventHook &theirs = entry.GetValue();
    if (!theirs.IsConnected()) continue;
    EventHook *const mine = m_EventHooks.Insert(entry.GetKey());
    if (mine == nullptr) continue;
    mine->SetObject(this, &SCC_StdCollection::OnNotification);
    mine->m_UseCount = theirs.m_UseCount;
    static_cast<SCC_Event<SYS_Handle> *>(theirs.GetConnectedEvent())->Insert(*mine);
  }
  if (from.IsConnected()) {
    static_cast<SCC_Event<SYS_Handle> *>(from.m_Event)->Append(*this);
    m_EventSource = from.m_EventSource;
  }
  if (SCC_StdCollection *const parent = from.parent()) {
    m_Parent = parent;
    parent->SetNotificationHandler(&m_ParentHook);
  }
  if (from.m_Position.GetArray() != nullptr) {
    placeAt(from.m_Position.GetIndex());
  } else {
    standNowhere();
  }
  m_Position.m_Data = from.m_Position.m_Data;
}

// The source, as this class knows it: empty ------------------------------------

SYS_Handle SCC_StdCollection::_GetSlider() { return 0; }
void SCC_StdCollection::_SetSlider(SYS_Handle) {}
int SCC_StdCollection::_GetFirst() { return 0; }
int SCC_StdCollection::_GetNext() { return 0; }
int SCC_StdCollection::_GetPrev() { return 0; }
int SCC_StdCollection::_GetFirstByParentSlider() { return _GetFirst(); }
int SCC_StdCollection::_GetNextByParentSlider() { return _GetNext(); }
SCC_Notifier *SCC_StdCollection::GetEvent() { return nullptr; }
SYS_Handle SCC_StdCollection::UpdateHandle(SYS_Handle) { return 0; }

// Connections --------------------------------------------------------------------

SCC_StdCollection *SCC_StdCollection::parent() const noexcept {
  return m_Parent != nullptr && m_ParentHook.IsConnected() ? m_Parent : nullptr;
}

void SCC_StdCollection::SetParent(SCC_StdCollection *parent) {
  if (!SSM_Check(parent != this, "a collection cannot be its own parent", "scc/scc_stdcoll", __LINE__)) return;
  m_Parent = parent;
  if (parent != nullptr) {
    parent->AllowReload(1);
    parent->SetNotificationHandler(&m_ParentHook);
  }
  Reload();
}

void SCC_StdCollection::SetEvent(SCC_Notifier *source) {
  if (source == nullptr) return;
  source->Append(*this);
  m_EventSource = source;
}

void SCC_StdCollection::SetNotificationHandler(SCC_EventNode<SYS_Handle> *node) {
  if (node != nullptr) m_ChangeEvent.Append(*node);
}

int SCC_StdCollection::EnableNotifications(int enable) {
  int const previous = m_ChangeEvent.IsEnabled();
  if (enable != 0) {
    m_ChangeEvent.Enable();
  } else {
    m_ChangeEvent.Disable();
  }
  return previous;
}

// Reloading ----------------------------------------------------------------------

void SCC_StdCollection::AllowReload(int allow) {
  int const was = m_ReloadAllowed;
  m_ReloadAllowed = allow;
  if (was == 0) Reload();
}

int SCC_StdCollection::IsReloadAllowed() { return m_ReloadAllowed; }

SYS_Handle SCC_StdCollection::FindNextTempItem(SYS_Handle handle) {
  SYS_Handle const remembered = GetSlider();
  SetSlider(handle);
  SYS_Handle found = 0;
  while (_GetNext() != 0) {
    SYS_Handle const candidate = GetSlider();
    if (candidate == 0 || Filter(candidate) != 0) {
      found = candidate;
      break;
    }
  }
  SetSlider(remembered);
  return found;
}

void SCC_StdCollection::Reload() {
  if (m_ReloadAllowed == 0) {
    int const had = m_HasItems;
    m_HasItems = FindNextTempItem(0) != 0 ? 1 : 0;
    if (m_HasItems != had) raise(SCC_CollectionFocus, 0);
    return;
  }
  rebuildItems();
}

// Inserting the passing handles one by one at the end of their equal ranges is the
// same as sorting them stably once, which costs n log n instead of n squared moves.
void SCC_StdCollection::rebuildItems() {
  HandleArray const before(m_Items);
  m_Items.Clear();
  SCC_StdCollection *const parent = this->parent();
  SYS_Handle parentSlider = 0;
  if (parent != nullptr) {
    parent->AllowReload(1);
    parentSlider = parent->GetSlider();
  }
  SetSlider(0);
  SCC_Notifier *notifier = nullptr;
  EventHook *hook = nullptr;
  ConnectEvent(1, &notifier, &hook);
  unsigned removals = m_HookRemovals;
  std::vector<SYS_Handle> passing;
  for (int more = _GetFirst(); more != 0; more = _GetNext()) {
    SYS_Handle const handle = GetSlider();
    if (Filter(handle) != 0) passing.push_back(handle);
    // The source and the filter may have made the collection let go of the remembered hook.
    if (m_HookRemovals != removals) notifier = nullptr, hook = nullptr, removals = m_HookRemovals;
    ConnectEvent(1, &notifier, &hook);
  }
  if (parent != nullptr) parent->SetSlider(parentSlider);

  // Items that a reload nested in the parent's put in meanwhile were inserted first.
  std::vector<SYS_Handle> items = handlesOf(m_Items);
  scc_detail::HandleSet present(items.size() + passing.size());
  for (SYS_Handle const handle : items) present.Insert(handle);
  for (SYS_Handle const handle : passing)
    if (present.Insert(handle)) items.push_back(handle);
  SCC_SharedPointer<SCC_Sort<SYS_Handle>> const sort(m_Items.GetSort());
  int const direction = m_SortDirection;
  scc_detail::stableSortHandles(items, [&sort, direction](SYS_Handle a, SYS_Handle b) {
    return scc_detail::applySign(sort->Compare(a, b), direction) > 0;
  });
  assign(m_Items, items);
  standNowhere();
  if (sameHandles(before, m_Items)) return;

  m_HasItems = m_Focus.GetCount() > 0 ? 1 : 0;
  std::vector<SYS_Handle> focus = handlesOf(m_Focus);
  focus.erase(std::remove_if(focus.begin(), focus.end(), [&present](SYS_Handle h) { return !present.Contains(h); }),
              focus.end());
  m_Focus.SetSort(static_cast<SCC_Sort<SYS_Handle> *>(nullptr));
  assign(m_Focus, focus);
  m_Focus.Sort(1);
  raise(SCC_CollectionRebuilt, 0);
}

void SCC_StdCollection::Clear() {
  dropAll();
  AllowReload(0);
}

void SCC_StdCollection::dropAll() {
  m_HandleData.RemoveAll();
  ++m_HookRemovals;
  m_EventHooks.RemoveAll();
  m_Items.Clear();
  m_Focus.Clear();
}

void SCC_StdCollection::SetFilter(SYS_Filter *filter) {
  m_Filter = filter;
  Reload();
}

int SCC_StdCollection::Filter(SYS_Handle handle) { return m_Filter != nullptr ? m_Filter->IsTrue(handle) : 1; }

void SCC_StdCollection::SetSort(CompareFunction compare, int descending) {
  SetSort(new SCC_Sort<SYS_Handle>(compare), descending);
}

void SCC_StdCollection::SetSort(SCC_Sort<SYS_Handle> *sort, int descending) {
  m_Items.SetSort(sort);
  m_Items.Clear();
  m_SortDirection = descending != 0 ? -1 : 1;
  Reload();
}

// The order of the items -----------------------------------------------------------

int SCC_StdCollection::compareItems(SYS_Handle a, SYS_Handle b) {
  return scc_detail::applySign(m_Items.GetSort()->Compare(a, b), m_SortDirection);
}

long SCC_StdCollection::findItem(SYS_Handle handle) const {
  long const at = scc_detail::firstIndexOf(m_Items.GetElements(), m_Items.GetCount(), handle);
  return at >= 0 ? m_Items.GetLowerBound() + at : -1;
}

// The element is read afresh at every step: a compare function that changes the
// collection cannot make the search read outside the items.
long SCC_StdCollection::insertionIndex(SYS_Handle handle) {
  long low = m_Items.GetLowerBound();
  long high = m_Items.GetUpperBound();
  while (low < high) {
    long const middle = low + (high - low) / 2;
    if (compareItems(GetAt(middle), handle) <= 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return std::min(low, static_cast<long>(m_Items.GetUpperBound()));
}

long SCC_StdCollection::insertItem(SYS_Handle handle) {
  int const at = static_cast<int>(m_Items.GetCount() > 0 ? insertionIndex(handle) : 0);
  m_Items.Insert(at, 1);
  m_Items[at] = handle;
  return at;
}

void SCC_StdCollection::deleteItem(SYS_Handle handle, long hint) {
  long const at = GetAt(hint) == handle ? hint : findItem(handle);
  if (at >= 0) m_Items.Delete(static_cast<int>(at), 1);
}

bool SCC_StdCollection::inOrder(long index) {
  long const low = m_Items.GetLowerBound();
  long const high = m_Items.GetUpperBound();
  if (index < low || index >= high) return false;
  if (high - low == 1) return true;
  SYS_Handle const handle = GetAt(index);
  bool const afterPrevious = index == low || compareItems(handle, GetAt(index - 1)) >= 0;
  bool const beforeNext = index == high - 1 || compareItems(handle, GetAt(index + 1)) <= 0;
  return afterPrevious && beforeNext;
}

void SCC_StdCollection::resortItems() {
  std::vector<SYS_Handle> items = handlesOf(m_Items);
  scc_detail::stableSortHandles(items, [this](SYS_Handle a, SYS_Handle b) { return compareItems(a, b) > 0; });
  int const low = m_Items.GetLowerBound();
  for (std::size_t k = 0; k < items.size() && low + static_cast<long>(k) < m_Items.GetUpperBound(); ++k)
    m_Items[low + static_cast<int>(k)] = items[k];
}

// Focus --------------------------------------------------------------------------

int SCC_StdCollection::HasFocus() { return m_Focus.GetCount() > 0 ? 1 : 0; }

SYS_Handle SCC_StdCollection::GetFocus(long i) {
  return i >= 0 && i < m_Focus.GetCount() ? m_Focus.GetElements()[i] : 0;
}

bool SCC_StdCollection::IsInFocus(SYS_Handle handle, long *index) {
  SYS_Handle const *const first = m_Focus.GetElements();
  long const count = m_Focus.GetCount();
  long const at = first != nullptr ? std::lower_bound(first, first + count, handle) - first : 0;
  if (index != nullptr) *index = at;
  return at < count && first[at] == handle;
}

void SCC_StdCollection::addFocus(SYS_Handle handle) {
  SYS_Handle const *const first = m_Focus.GetElements();
  int const at = first != nullptr ? static_cast<int>(std::upper_bound(first, first + m_Focus.GetCount(), handle) - first) : 0;
  m_Focus.Insert(at, 1);
  m_Focus[at] = handle;
}

bool SCC_StdCollection::removeFocus(SYS_Handle handle) {
  long at = 0;
  if (!IsInFocus(handle, &at)) return false;
  m_Focus.Delete(static_cast<int>(at), 1);
  return true;
}

void SCC_StdCollection::SetFocus(SYS_Handle handle, bool add) {
  if (handle != 0 && findItem(handle) < 0) handle = 0;
  if (!add || handle == 0) {
    m_Focus.Clear();
    if (handle == 0) return;
  }
  addFocus(handle);
  if (add) return;
  Position const saved(m_Position);
  SYS_Handle const remembered = GetSlider();
  SetSlider(handle);
  raise(SCC_CollectionFocus, handle);
  SetSlider(remembered);
  restorePosition(saved);
}

// Position and slider ----------------------------------------------------------------

// Attaching walks the items' listeners: a position that follows the items already stays.
void SCC_StdCollection::placeAt(long index) {
  if (m_Position.GetArray() != &m_Items || !m_Position.IsConnected()) m_Position.Attach(&m_Items, 0);
  m_Position.SetIndex(scc_detail::indexOf(index));
}

void SCC_StdCollection::standNowhere() {
  m_Position.Attach(nullptr);
  m_Position.SetIndex(SYS_Nowhere);
}

void SCC_StdCollection::restorePosition(Position const &saved) {
  if (saved.GetArray() != nullptr) {
    m_Position.Attach(saved.GetArray(), 0);
  } else {
    m_Position.Attach(nullptr);
  }
  m_Position.SetIndex(saved.GetIndex());
  m_Position.m_Data = saved.m_Data;
}

SYS_Handle SCC_StdCollection::GetSlider() { return _GetSlider(); }

void SCC_StdCollection::SetSlider(SYS_Handle handle) { sliderTo(handle, handle != 0 ? findItem(handle) : -1); }

void SCC_StdCollection::sliderTo(SYS_Handle handle, long index) {
  if (index < 0) {
    standNowhere();
    _SetSlider(0);
    return;
  }
  placeAt(index);
  _SetSlider(handle);
}

int SCC_StdCollection::IsEmpty() { return m_Position.IsValid() ? 0 : 1; }

long SCC_StdCollection::GetPosition() { return m_Position.GetIndex(); }

void SCC_StdCollection::SetPosition(long index) {
  placeAt(index);
  _SetSlider(GetAt(index));
}

SYS_Handle SCC_StdCollection::GetAt(long index) {
  long const low = m_Items.GetLowerBound();
  return index >= low && index < m_Items.GetUpperBound() ? m_Items.GetElements()[index - low] : 0;
}

long SCC_StdCollection::GetPositionByHandle(SYS_Handle handle) { return handle != 0 ? findItem(handle) : -1; }

int SCC_StdCollection::GetFirst() {
  if (m_Items.GetCount() <= 0) {
    SetSlider(0);
  } else {
    SetPosition(m_Items.GetLowerBound());
  }
  return m_Position.IsValid() ? 1 : 0;
}

int SCC_StdCollection::GetNext() { return step(1); }

int SCC_StdCollection::GetPrev() { return step(-1); }

int SCC_StdCollection::step(int by) {
  if (!m_Position.IsValid()) return 0;
  m_Position.SetIndex(m_Position.GetIndex() + by);  // a valid index is never the last int
  if (!m_Position.IsValid()) return 0;
  _SetSlider(GetAt(m_Position.GetIndex()));
  return m_Position.IsValid() ? 1 : 0;
}

// Per-handle data --------------------------------------------------------------------

int SCC_StdCollection::GetHandleData(SYS_Handle handle) {
  SCC_Map<SYS_Handle, Position>::MapNode const *const entry = m_HandleData.Lookup(handle);
  return entry != nullptr ? entry->m_Value.m_Data : 0;
}

void SCC_StdCollection::SetHandleData(SYS_Handle handle, int data) {
  if (Position *const entry = m_HandleData.FindOrInsert(handle)) entry->m_Data = data;
  // The ring's head is always an event.
  if (IsConnected())
    static_cast<SCC_Event<SYS_Handle> *>(m_Event)->Notify(SCC_ItemChanged, SCC_Notifier::ParamOf(handle));
}
