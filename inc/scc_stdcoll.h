//===- inc/scc_stdcoll.h - The standard collection: a view of item handles ===//
//
// A collection does not own its items. A derived class walks an item source
// with a cursor of its own (the source's slider) through the protected virtual
// operations; the collection keeps the filtered, sorted handles, a current
// position, the focused handles and per-handle data, follows the items'
// notifiers and an optional parent collection, and tells its listeners what
// changed on its change notifier.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_STDCOLL_H
#define BFC_SCC_STDCOLL_H

#include "scc_event.h"
#include "scc_map.h"
#include "scc_sortarr.h"
#include "sys_base.h"
#include "sys_filter.h"

#include <cstddef>

/// The codes a collection raises on its change notifier, each with a handle.
enum SCC_CollectionChange {
  SCC_CollectionAdded = 1,      ///< an item was added
  SCC_CollectionRemoving = 2,   ///< an item is about to go (it is still there)
  SCC_CollectionFocus = 3,      ///< the focus moved to the handle; with 0, the source turned empty or not
  SCC_CollectionPassed = 4,     ///< passed on as it came from an item
  SCC_CollectionRebuilt = 5,    ///< the items were rebuilt (handle 0)
  SCC_CollectionDropped = 6,    ///< everything was dropped
  SCC_CollectionRenumbered = 7  ///< handles were renumbered (handle 0)
};

/// The codes an item source raises on the notifiers a collection hears, each with a handle.
enum SCC_ItemChange {
  SCC_ItemAdded = 1,        ///< the item was added
  SCC_ItemRemoving = 2,     ///< the item is about to go
  SCC_ItemChanged = 3,      ///< the item changed (it may now sort elsewhere or fail the filter)
  SCC_ItemPassOn = 4,       ///< to be passed on to the collection's listeners
  SCC_ItemsReload = 5,      ///< the items must be reloaded
  SCC_ItemsDropped = 6,     ///< every item went
  SCC_ItemsRenumbered = 7   ///< handles were renumbered (see UpdateHandle)
};

/// The host's view of a set of items (a selection, a net list, the rows of a property panel):
/// the handles that pass the filter, in the order of the sort object, kept exact while the items
/// and the parent change.
///
/// Kept here: m_Items is ordered by the sort object and direction, and a reload never puts a
/// handle into it twice; m_Focus is ascending; a reload that changes the items drops from the
/// focus every handle that is no longer an item. Handle 0 names no item. Listeners may call
/// back into the collection from inside its notifications; the item notifications and SetFocus
/// put the position and the source's slider back afterwards.
///
/// A parent must outlive its children or hand them to another parent first; a child whose
/// parent is destroyed anyway stops following it instead of reaching a dead object.
class BFC_API SCC_StdCollection : public SCC_EventNode<SYS_Handle> {
public:
  typedef SCC_SortableArray<SYS_Handle> HandleArray;
  typedef int (*CompareFunction)(SYS_Handle const &a, SYS_Handle const &b);

  /// An index into the items that follows its element, with a data word. A new position
  /// stands nowhere. It is valid when it has an array, the array has a buffer and the index
  /// lies within the bounds. In the per-handle data a position only carries m_Data.
  class Position : public SCC_Array<SYS_Handle>::Iterator {
  public:
    Position() noexcept : m_Data(0) {}
    /// Stands where the source stands, unconnected.
    Position(Position const &source) noexcept : SCC_Array<SYS_Handle>::Iterator(source), m_Data(source.m_Data) {}
    Position &operator=(Position &source) {
      SCC_Array<SYS_Handle>::Iterator::operator=(source);
      m_Data = source.m_Data;
      return *this;
    }

    int m_Data;
  };

  /// A notification held back while the collection is suspended.
  struct SuspendedEvent {
    int m_Code;
    SYS_Handle m_Handle;
  };

  /// The collection's hook on one item notifier, kept under that notifier's address; it
  /// counts the connections that go through it and goes when the count falls to 0.
  class EventHook : public SCC_ObjectEventHook<SCC_StdCollection, SYS_Handle> {
  public:
    EventHook() noexcept : m_UseCount(0) {}

    int m_UseCount;
  };

  /// An empty collection that loads nothing until reloading is allowed; SetParent(parent).
  explicit SCC_StdCollection(SCC_StdCollection *parent = nullptr);
  /// An independent collection with the same parent, event source, item notifiers, filter,
  /// sort, items, focus, per-handle data, position and suspended notifications. The
  /// listeners of the change notifier stay with the source.
  SCC_StdCollection(SCC_StdCollection const &source);
  /// As the copy constructor, over this collection's present state; its own listeners stay
  /// and hear code 5 when the items changed.
  SCC_StdCollection &operator=(SCC_StdCollection const &source);
  /// Disconnects everything; per-handle data and hooks raise map code 6 as they go.
  ~SCC_StdCollection() override;

  // The virtual operations, in their table order after those of the node.

  /// Reacts to a notification of the event source or of an item's notifier. Returns 0.
  int OnNotification(int code, SYS_Handle *param) override;

protected:
  /// Rebuilds the items from the source (or, while reloading is not allowed, only notes
  /// whether the source has any).
  virtual void Reload();
  /// The handle the source's slider stands on; 0 here.
  virtual SYS_Handle _GetSlider();
  /// Moves the source's slider to `handle` (0: before the first item); nothing here.
  virtual void _SetSlider(SYS_Handle handle);
  /// Moves the source's slider to its first item; non-zero when there is one. 0 here.
  virtual int _GetFirst();
  /// Moves the source's slider on; non-zero while there are items. 0 here.
  virtual int _GetNext();
  /// Moves the source's slider back; 0 here.
  virtual int _GetPrev();
  /// The first item under the parent's slider; _GetFirst() here.
  virtual int _GetFirstByParentSlider();
  /// The next item under the parent's slider; _GetNext() here.
  virtual int _GetNextByParentSlider();

public:
  /// Follows `parent` (allowing it to reload and hooking its change notifier), then reloads.
  /// Null makes the collection parentless; the hook stays where it was.
  virtual void SetParent(SCC_StdCollection *parent);
  /// Sets whether Reload may rebuild the items; reloads when it was not allowed before.
  virtual void AllowReload(int allow);
  virtual int IsReloadAllowed();
  /// The first handle after `handle` in the source that passes the filter (from the start
  /// when `handle` is 0 or not an item); 0 for none. The source's slider is put back.
  virtual SYS_Handle FindNextTempItem(SYS_Handle handle);
  /// Drops items, focus, per-handle data and item hooks, and forbids reloading. Raises nothing.
  virtual void Clear();
  /// The notifier of the item at the source's slider; null here.
  virtual SCC_Notifier *GetEvent();
  /// Connects the collection itself to `source` (leaving any other); null does nothing.
  virtual void SetEvent(SCC_Notifier *source);
  /// Appends `node` to the change notifier (leaving any other event); null does nothing.
  virtual void SetNotificationHandler(SCC_EventNode<SYS_Handle> *node);
  /// Reacts to the parent's change notifier. Returns 0.
  virtual int OnParentNotification(int code, SYS_Handle *param);
  /// Enables or disables the change notifier; returns the previous state.
  virtual int EnableNotifications(int enable);
  /// 1 for handle 0; 0 without a parent; else whether the parent has the handle in focus.
  virtual int HandleNotificationsAllowed(SYS_Handle handle);
  /// Non-zero holds item notifications back; 0 replays them, each handle once, newest first.
  virtual void Suspend(int suspend);
  /// True when the position is not valid.
  virtual int IsEmpty();
  virtual int HasFocus();
  /// The filter's answer for `handle`; 1 without a filter. Non-zero passes.
  virtual int Filter(SYS_Handle handle);
  /// The i-th focused handle; 0 outside 0 .. count - 1.
  virtual SYS_Handle GetFocus(long i);
  /// Focuses `handle` alone (raising code 3), or adds it to the focus when `add` is set
  /// (raising nothing). A handle that is not an item counts as 0, which clears the focus.
  virtual void SetFocus(SYS_Handle handle, bool add);
  /// True when `handle` is focused; `*index` (when given) gets its first index, or where it
  /// would go.
  virtual bool IsInFocus(SYS_Handle handle, long *index);
  /// _GetSlider().
  virtual SYS_Handle GetSlider();
  /// Puts the position and the source's slider on `handle`; nowhere and 0 when it is not an item.
  virtual void SetSlider(SYS_Handle handle);
  /// The position's index; 0x7FFFFFFF when it stands nowhere.
  virtual long GetPosition();
  /// Puts the position at `index` and the source's slider on the handle there (0 outside the items).
  virtual void SetPosition(long index);
  /// The handle at `index`; 0 outside the items.
  virtual SYS_Handle GetAt(long index);
  /// The first index of `handle` (a linear scan); -1 for 0 or a handle that is not an item.
  virtual long GetPositionByHandle(SYS_Handle handle);
  /// The handle's data word; 0 without one.
  virtual int GetHandleData(SYS_Handle handle);
  /// Sets the handle's data word, then raises code 3 with the handle on the event the
  /// collection is connected to, if any.
  virtual void SetHandleData(SYS_Handle handle, int data);
  /// Moves to the first item; false (and the source's slider to 0) when there is none.
  virtual int GetFirst();
  /// Steps the position on (back); false once it leaves the items, standing at the count
  /// (at -1).
  virtual int GetNext();
  virtual int GetPrev();
  /// The handle that `handle` became when handles were renumbered (code 7); 0 here.
  virtual SYS_Handle UpdateHandle(SYS_Handle handle);

  /// Uses `filter` (not owned; null passes everything) and reloads.
  void SetFilter(SYS_Filter *filter);
  /// Sorts by `compare` (null: by handle value), descending when `descending` is non-zero, and reloads.
  void SetSort(CompareFunction compare, int descending);
  /// Sorts by `sort` (shared; null: by handle value), descending when `descending` is non-zero, and reloads.
  void SetSort(SCC_Sort<SYS_Handle> *sort, int descending);
  /// Sorts by handle value, descending when `descending` is non-zero, and reloads.
  void SetSort(std::nullptr_t, int descending) { SetSort(static_cast<SCC_Sort<SYS_Handle> *>(nullptr), descending); }
  /// The collection's own change notifier.
  SCC_Notifier *GetChangeEvent() noexcept { return &m_ChangeEvent; }
  /// The number of items.
  long GetCount() const noexcept { return m_Items.GetCount(); }

protected:
  /// Counts one connection more (`connect` set) or less through the hook of the notifier of
  /// the item at the source's slider, making the hook on the first and dropping it on the
  /// last. `*notifier` and `*hook` (when given) remember the last pair, so a walk over items
  /// that share a notifier looks it up once.
  void ConnectEvent(int connect, SCC_Notifier **notifier, EventHook **hook);

  HandleArray m_Focus;                                // focused handles, ascending
  SCC_Map<SYS_Handle, EventHook> m_EventHooks;        // one hook per item notifier, by its address
  SCC_Notifier *m_EventSource;                        // the notifier given to SetEvent
  SCC_Notifier m_ChangeEvent;                         // tells listeners what changed
  SYS_Filter *m_Filter;                               // not owned; null passes everything
  SCC_Array<SuspendedEvent> m_SuspendedEvents;        // held back while suspended, oldest first
  HandleArray m_Items;                                // the handles, in sort order, from index 0
  SCC_Map<SYS_Handle, Position> m_HandleData;         // per-handle data words
  Position m_Position;                                // the current position in m_Items
  SCC_StdCollection *m_Parent;                        // not owned
  int m_Suspended;                                    // 1 while notifications are held back
  int m_ReloadAllowed;                                // 1 when Reload may rebuild m_Items
  int m_HasItems;                                     // whether the source had items, while reloading is not allowed
  SCC_ObjectEventHook<SCC_StdCollection, SYS_Handle> m_ParentHook;  // on the parent's change notifier

private:
  class ReplayGuard;

  /// The parent while it is alive: a destroyed parent cut the hook on its way out.
  SCC_StdCollection *parent() const noexcept;
  /// Negative, 0 or positive as `a` sorts before, with or after `b` in the items.
  int compareItems(SYS_Handle a, SYS_Handle b);
  /// The first index of `handle` in the items by a linear scan; -1 when absent.
  long findItem(SYS_Handle handle) const;
  /// The end of the equal range of `handle` in the items, by binary search.
  long insertionIndex(SYS_Handle handle);
  /// Inserts `handle` at the end of its equal range; returns its index.
  long insertItem(SYS_Handle handle);
  /// Deletes `handle` from the items: at `hint` when it is still there, else its first index.
  void deleteItem(SYS_Handle handle, long hint);
  /// Whether the item at `index` is in order with its neighbours.
  bool inOrder(long index);
  /// Stably re-sorts the items in place (after a renumbering); raises nothing.
  void resortItems();
  /// Rebuilds the items while reloading is allowed (steps after the first of Reload).
  void rebuildItems();
  /// Inserts `handle` into the focus at the end of its equal range.
  void addFocus(SYS_Handle handle);
  /// Removes the first occurrence of `handle` from the focus; true when there was one.
  bool removeFocus(SYS_Handle handle);
  /// SetSlider for a handle whose first index is known (-1: not an item).
  void sliderTo(SYS_Handle handle, long index);
  void placeAt(long index);
  /// GetNext (by 1) and GetPrev (by -1).
  int step(int by);
  void standNowhere();
  void restorePosition(Position const &saved);
  /// The reactions to item codes 1, 2 and 3 (for an item that is there).
  void itemAdded(SYS_Handle handle);
  void itemRemoving(SYS_Handle handle);
  void itemChanged(SYS_Handle handle, bool passes, Position const &at);
  void raise(int code, SYS_Handle handle) { m_ChangeEvent.Notify(code, SCC_Notifier::ParamOf(handle)); }
  /// Drops items, focus, per-handle data and item hooks (the maps raise code 6 first).
  void dropAll();
  /// Appends (code, handle) to the held-back notifications unless it repeats the last one.
  void hold(int code, SYS_Handle handle);
  /// Replays what is held back, newest first, each handle once; again while more arrives.
  void replay();
  /// Replaces every handle of the items, the focus and the held-back notifications.
  void renumber();
  /// The connections, hooks, flags and contents of `source` (this collection holds none).
  void copyFrom(SCC_StdCollection const &source);

  int m_SortDirection;                      // 1 ascending, -1 descending
  unsigned m_HookRemovals;                  // counts hooks let go of, so a remembered hook can be trusted
  SCC_Array<SuspendedEvent> *m_pReplaying;  // the notifications being replayed, or null
};

#endif
