//===- inc/scc_savedhandles.h - Remembered item handles that follow their items ===//
//
// A set of saved handles keeps entries ordered by type and then by handle. Each
// entry can connect itself to the event that announces changes of its item, so
// that a removal (code 2), a reset (code 6) or a renumbering (code 7) reaches
// the set and keeps it correct.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_SAVEDHANDLES_H
#define BFC_SCC_SAVEDHANDLES_H

#include "scc_event.h"
#include "scc_shared.h"
#include "scc_sortarr.h"
#include "sys_base.h"

class SCC_SavedHandles;

/// One saved handle with its type: a shared node that may be connected to the change
/// event of its item and hands what it is told to its set.
///
/// A derived entry names its event (GetChangeEvent) and, when its item can be
/// renumbered, updates its handle in OnUpdatePointers. An entry is made with new and
/// lives as long as a shared pointer holds it; when it goes it leaves its event.
class BFC_API SCC_HandleWithEvent : public SCC_SharedBuffer, public SCC_EventNode<SYS_Handle> {
public:
  /// An unconnected entry.
  SCC_HandleWithEvent(SYS_Handle handle, long type, SCC_SavedHandles *owner) noexcept
      : m_Type(type), m_Handle(handle), m_pOwner(owner) {}
  /// The same type, handle and owner; unconnected.
  SCC_HandleWithEvent(SCC_HandleWithEvent const &source) noexcept
      : SCC_SharedBuffer(source), SCC_EventNode<SYS_Handle>(source), m_Type(source.m_Type),
        m_Handle(source.m_Handle), m_pOwner(source.m_pOwner) {}
  /// Takes type, handle and owner, and connects to the source's event just in front of it.
  SCC_HandleWithEvent &operator=(SCC_HandleWithEvent &source);

  // The virtual operations, in their table order after the node's.
  ~SCC_HandleWithEvent() override;
  /// On code 7 calls OnUpdatePointers first; then hands the code to the owner's
  /// HandleNotification and returns its result (0 without an owner). Touches nothing of
  /// the entry afterwards: the owner may have let go of it.
  int OnNotification(int code, SYS_Handle *param) override;
  /// The event that announces changes of the item; none here.
  virtual SCC_Notifier *GetChangeEvent();
  /// Told of a renumbering before the set is; does nothing here.
  virtual void OnUpdatePointers();

  long GetType() const noexcept { return m_Type; }
  SYS_Handle GetHandle() const noexcept { return m_Handle; }

protected:
  long m_Type;
  SYS_Handle m_Handle;
  SCC_SavedHandles *m_pOwner;
};

/// The default order of saved entries: by type, then by handle, both as signed numbers.
/// A null entry comes before every other.
inline int SCC_Compare(SCC_SharedPointer<SCC_HandleWithEvent> const &a,
                       SCC_SharedPointer<SCC_HandleWithEvent> const &b) {
  SCC_HandleWithEvent const *const x = a.Get();
  SCC_HandleWithEvent const *const y = b.Get();
  if (x == nullptr || y == nullptr) return (x != nullptr) - (y != nullptr);
  if (x->GetType() != y->GetType()) return x->GetType() < y->GetType() ? -1 : 1;
  return (x->GetHandle() > y->GetHandle()) - (x->GetHandle() < y->GetHandle());
}

/// A sorted set of saved handles, each with its type, searched by binary search.
///
/// Derived classes make the entries (CreateByType). The set is an ascending sortable
/// array of shared pointers; after a renumbering (code 7) the order is repaired at the
/// next Find, and of entries that compare equal then, Find gives the first. Delete also
/// empties the slot its removal vacates behind the bounds, so an entry removed from the
/// set is held by nothing the set keeps and leaves its event at once.
class BFC_API SCC_SavedHandles : public SCC_SortableArray<SCC_SharedPointer<SCC_HandleWithEvent>> {
public:
  typedef SCC_SharedPointer<SCC_HandleWithEvent> Entry;

  /// Empty, with a sort object of the default order.
  SCC_SavedHandles() : m_Resort(0) {}
  /// Shares the elements and the sort object, and copies the re-sort flag.
  SCC_SavedHandles(SCC_SavedHandles const &source)
      : SCC_SortableArray<Entry>(source), m_Resort(source.m_Resort) {}
  SCC_SavedHandles &operator=(SCC_SavedHandles const &source);
  ~SCC_SavedHandles() override;

  // The virtual operations, in their table order after those of the sortable array.
protected:
  /// The entry for `handle` of `type`; none here, so the base set saves nothing.
  virtual Entry CreateByType(SYS_Handle handle, long type);

public:
  /// Code 2 deletes the entry of `type` whose handle `param` carries; code 6 empties
  /// the set; code 7 marks it for re-sorting. Returns 0.
  virtual int HandleNotification(SYS_Handle handle, long type, int code, SYS_Handle *param);
  /// Saves a new entry (connected last to its change event, if it names one) at its
  /// place: 1, or 0 when the key is saved already or CreateByType makes nothing.
  virtual int Save(SYS_Handle handle, long type);
  /// Removes the entry of the key: 1, or 0 when there is none.
  virtual int Delete(SYS_Handle handle, long type);
  /// The first entry equal to the key, its index stored in `*position`; or null, and the
  /// index at which the key would keep the order. `position` may be null. Re-sorts
  /// first when a renumbering asked for it.
  virtual Entry Find(SYS_Handle handle, long type, long *position);

private:
  /// Empties the slots next to the bounds, where an in-place removal leaves a holding.
  void releaseVacatedSlots();

  unsigned char m_Resort;  // 1 after a renumbering, until the next Find sorts again
};

#endif
