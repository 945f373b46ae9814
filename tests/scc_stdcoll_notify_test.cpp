//===- tests/scc_stdcoll_notify_test.cpp - Item, parent and held-back notifications ===//
#include "scc_stdcoll.h"
#include "tests/scc_stdcoll_support.h"

#include <gtest/gtest.h>

#include <set>

namespace {

typedef CollectionTest Notifications;

/// Passes every handle but those the test rejects.
struct Rejecting : SYS_Filter {
  int IsTrue(SYS_Handle item) override { return rejected.count(item) == 0; }
  std::set<SYS_Handle> rejected;
};

}  // namespace

// Held back: repeats of the last pair fold; the replay gives each handle its newest
// notification, newest first.
TEST_F(Notifications, ResumeReplaysNewestPerHandle) {
  Load({8});
  items.Suspend(1);
  items.Suspend(1);
  Raise(1, 7), Raise(3, 7), Raise(3, 7), Raise(2, 8);
  EXPECT_EQ(items.Held(), (std::vector<std::pair<int, SYS_Handle>>{{1, handleOf(7)}, {3, handleOf(7)}, {2, handleOf(8)}}));
  EXPECT_EQ(changes.Take(), "");
  items.Suspend(0);
  EXPECT_EQ(changes.Take(), "2:8 1:7");  // 3 for a handle that is not an item adds it
  EXPECT_EQ(items.Items(), handles({7}));
}

// An item that fails the filter on change leaves (keeping its data); a removal drops the
// data; a notification about a handle that neither is an item nor passes is ignored.
TEST_F(Notifications, FilterFailureKeepsDataRemovalDropsIt) {
  Rejecting filter;
  items.SetFilter(&filter);
  Load({2, 4, 6});
  items.SetHandleData(handleOf(4), 9);
  items.SetHandleData(handleOf(6), 5);
  changes.Take();
  filter.rejected.insert(handleOf(4));
  Raise(3, 4);
  EXPECT_EQ(changes.Take(), "2:4");
  EXPECT_EQ(items.GetHandleData(handleOf(4)), 9);
  Raise(2, 6);
  EXPECT_EQ(items.GetHandleData(handleOf(6)), 0);
  items.Suspend(1);
  Raise(1, 4);  // failing and absent: not even held
  EXPECT_TRUE(items.Held().empty());
  EXPECT_EQ(changes.Take(), "2:6");
}

// Renumbering replaces handles in items, focus and held-back notifications (also those a
// running replay has yet to deliver), sorts both again, and keeps data where it was.
TEST_F(Notifications, RenumberingReachesEverything) {
  Load({1, 2, 3});
  items.SetFocus(handleOf(3), false);
  items.SetFocus(handleOf(1), true);
  items.SetHandleData(handleOf(1), 4);
  changes.Take();
  items.renumber = [](SYS_Handle h) { return (h & 0xFF) == 1 ? handleOf(50) : h; };
  items.Suspend(1);
  Raise(3, 1);
  list.Notify(SCC_ItemsRenumbered, nullptr);
  items.Suspend(0);
  EXPECT_EQ(changes.Take(), "7:0 3:50");
  EXPECT_EQ(items.Items(), handles({2, 3, 50}));
  EXPECT_EQ(items.Focus(), handles({3, 50}));
  EXPECT_EQ(items.GetHandleData(handleOf(1)), 4);
  list.Notify(SCC_ItemAdded, SCC_Notifier::ParamOf(handleOf(4)));
  EXPECT_EQ(items.Items(), handles({2, 3, 4, 50}));
}

// A listener that suspends during a replay loses nothing: what it holds back is replayed
// after the current notifications when it resumes inside the replay, or later by itself.
TEST_F(Notifications, ListenerSuspendingDuringReplay) {
  Load({});
  bool nested = true;
  changes.action = [&](int code, SYS_Handle h) {
    if (code != 1 || h != handleOf(3)) return;
    items.Suspend(1);
    list.Notify(SCC_ItemAdded, SCC_Notifier::ParamOf(handleOf(9)));
    if (nested) items.Suspend(0);
  };
  items.Suspend(1);
  Raise(1, 1), Raise(1, 2), Raise(1, 3);
  items.Suspend(0);
  EXPECT_EQ(changes.Take(), "1:3 1:2 1:1 1:9");

  nested = false;
  items.Clear();
  items.AllowReload(1);
  items.Suspend(1);
  Raise(1, 1), Raise(1, 3);
  items.Suspend(0);
  EXPECT_EQ(changes.Take(), "1:3");
  EXPECT_EQ(items.Held().size(), 2u);  // the 9 and the 1 the replay met while suspended
  items.Suspend(0);
  EXPECT_EQ(changes.Take(), "1:1 1:9");
}

// A listener of code 2 that moves the position or inserts ahead of the item does not make the
// collection delete another item, and the position comes back to its index afterwards.
TEST_F(Notifications, RemovalSurvivesListenersThatMoveThings) {
  Load({1, 2, 3, 4});
  items.SetPosition(3);
  changes.action = [&](int code, SYS_Handle) {
    if (code != 2) return;
    items.GetFirst();
    list.Notify(SCC_ItemAdded, SCC_Notifier::ParamOf(handleOf(1)));  // ahead of the item
  };
  Raise(2, 3);
  EXPECT_EQ(items.Items(), handles({1, 1, 2, 4}));
  EXPECT_EQ(items.GetPosition(), 3);
}

// A child reloads when its parent focuses a handle, ignores codes about handles its parent
// has not in focus, and follows the parent's drop.
TEST(CollectionParent, ChildFollowsParentFocus) {
  ListCollection parent;
  parent.source = handles({1, 2});
  ListCollection child(&parent);
  EXPECT_EQ(parent.GetCount(), 2);  // taking it as parent allowed it to load
  CollectionLog changes;
  child.SetNotificationHandler(&changes);
  child.AllowReload(1);
  changes.Take();
  child.source = handles({10, 11});
  parent.SetFocus(handleOf(2), false);  // code 3 with a handle the parent now has in focus
  EXPECT_EQ(child.Items(), handles({10, 11}));
  child.source = handles({12});
  parent.GetChangeEvent()->Notify(SCC_CollectionFocus, SCC_Notifier::ParamOf(handleOf(1)));
  EXPECT_EQ(child.Items(), handles({10, 11}));  // 1 is not in the parent's focus
  parent.GetChangeEvent()->Notify(SCC_CollectionDropped, nullptr);
  EXPECT_EQ(child.GetCount(), 0);
  EXPECT_EQ(changes.Take(), "5:0 6:0");

  // The parent's item goes: the child's items under the parent's slider go one by one. Only a
  // handle focused twice is still in focus when the parent tells (it unfocuses first).
  child.Reload();
  parent.SetFocus(handleOf(2), true);
  parent.OnNotification(SCC_ItemRemoving, SCC_Notifier::ParamOf(handleOf(2)));
  EXPECT_EQ(changes.Take(), "5:0 2:12");

  // Parentless, the child reloads from its own source; the hook on the old parent stays, so
  // codes for handle 0 still reach it and codes for handles do not.
  child.source = handles({20});
  child.SetParent(nullptr);
  EXPECT_EQ(child.Items(), handles({20}));
  child.source = handles({21});
  parent.SetFocus(handleOf(1), false);
  EXPECT_EQ(child.Items(), handles({20}));
  parent.GetChangeEvent()->Notify(SCC_CollectionRebuilt, nullptr);
  EXPECT_EQ(child.Items(), handles({21}));
}
