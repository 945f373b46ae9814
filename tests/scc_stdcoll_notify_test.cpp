//===- tests/scc_stdcoll_notify_test.cpp - Item, parent and held-back notifications ===//
#include "scc_stdcoll.h"
#include "tests/scc_stdcoll_support.h"

#include <gtest/gtest.h>

#include <set>

namespace {

/// Sort keys the test changes: handle number -> key; unknown handles sort by their number.
std::map<SYS_Handle, int> g_Keys;
int byKey(SYS_Handle const &a, SYS_Handle const &b) {
  long const x = g_Keys.count(a) ? g_Keys[a] : a & 0xFFFF, y = g_Keys.count(b) ? g_Keys[b] : b & 0xFFFF;
  return (x > y) - (x < y);
}

struct Notifications : ::testing::Test {
  void SetUp() override {
    g_Keys.clear();
    items.listNotifier = &list;
    items.SetEvent(&list);
    items.SetNotificationHandler(&changes);
    items.SetSort(&byKey, 0);
  }
  void Load(std::initializer_list<long> numbers) {
    items.source = handles(numbers);
    items.AllowReload(1);
    changes.Take();
  }
  void Raise(int code, long number) { list.Notify(code, SCC_Notifier::ParamOf(handleOf(number))); }

  SCC_Notifier list;
  ListCollection items;
  CollectionLog changes;
};

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
  items.Suspend(0);  // not suspended: nothing
  EXPECT_TRUE(items.Held().empty());
}

// Codes 5 and 6 are never held: they drop what is held and act at once.
TEST_F(Notifications, ReloadAndDropActWhileSuspended) {
  Load({1});
  items.Suspend(1);
  Raise(2, 1);
  items.source = handles({1, 2});
  list.Notify(SCC_ItemsReload, nullptr);
  EXPECT_TRUE(items.Held().empty());
  EXPECT_EQ(items.Items(), handles({1, 2}));
  list.Notify(SCC_ItemsDropped, nullptr);
  EXPECT_EQ(items.GetCount(), 0);
  EXPECT_EQ(changes.Take(), "5:0 6:0");
}

// A changed item that sorts where it stands is announced; one whose key moved past a
// neighbour leaves and comes back at its new place, still focused; the position stays.
TEST_F(Notifications, ChangedItemMovesOrIsAnnounced) {
  Load({1, 2, 3});
  items.SetFocus(handleOf(1), false);
  items.SetPosition(1);
  changes.Take();
  Raise(3, 2);
  EXPECT_EQ(changes.Take(), "3:2");
  g_Keys[handleOf(1)] = 10;
  Raise(3, 1);
  EXPECT_EQ(changes.Take(), "2:1 1:1");
  EXPECT_EQ(items.Items(), handles({2, 3, 1}));
  EXPECT_EQ(items.Focus(), handles({1}));
  EXPECT_EQ(items.GetPosition(), 1);
  EXPECT_EQ(items.GetSlider(), handleOf(3));  // the handle now at the old index
}

// An item that fails the filter on change leaves (keeping its data); a removal drops the
// data; notifications about handles that are neither items nor passing are ignored, also
// while suspended.
TEST_F(Notifications, FilterFailureRemovalAndIgnoredHandles) {
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
  Raise(2, 5), Raise(3, 4);  // passing but absent; failing and absent
  items.Suspend(1);
  Raise(1, 4);
  EXPECT_TRUE(items.Held().empty());
  items.Suspend(0);
  EXPECT_EQ(changes.Take(), "2:6");
  EXPECT_EQ(items.Items(), handles({2}));
}

// Items that share a notifier share one hook; it goes with the last of them, even when that
// removal is delivered through the hook itself.
TEST_F(Notifications, SharedNotifierHookCountsItsItems) {
  SCC_Notifier shared, single;
  items.notifierOf = [&](SYS_Handle h) { return (h & 0xFF) == 3 ? &single : &shared; };
  Load({1, 2, 3});
  EXPECT_EQ(items.UseCount(&shared), 2);
  EXPECT_EQ(items.UseCount(&single), 1);
  shared.Notify(SCC_ItemRemoving, SCC_Notifier::ParamOf(handleOf(1)));
  EXPECT_EQ(items.UseCount(&shared), 1);
  shared.Notify(SCC_ItemRemoving, SCC_Notifier::ParamOf(handleOf(2)));
  EXPECT_EQ(items.UseCount(&shared), -1);
  shared.Notify(SCC_ItemsDropped, nullptr);  // no longer heard
  EXPECT_EQ(items.Items(), handles({3}));
  single.Notify(SCC_ItemAdded, SCC_Notifier::ParamOf(handleOf(3)));  // no presence check
  EXPECT_EQ(items.Items(), handles({3, 3}));
  EXPECT_EQ(items.UseCount(&single), 2);
  EXPECT_EQ(changes.Take(), "2:1 2:2 1:3");
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
