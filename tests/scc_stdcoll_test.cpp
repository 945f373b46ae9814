//===- tests/scc_stdcoll_test.cpp - Structure, reload, focus and navigation ===//
#include "scc_stdcoll.h"
#include "tests/report_spy.h"
#include "tests/scc_stdcoll_support.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

typedef CollectionTest Collection;

// Sort key of a handle: its number divided by 10, so 11 and 15 sort as equals.
int byTens(SYS_Handle const &a, SYS_Handle const &b) {
  long const x = (a & 0xFFFF) / 10, y = (b & 0xFFFF) / 10;
  return (x > y) - (x < y);
}

struct ByParity : SYS_Filter {
  int IsTrue(SYS_Handle item) override { return (item & 1) != 0 ? -7 : 0; }  // any non-zero passes
};

}  // namespace

// A new collection loads nothing; allowing reload sorts the handles and drops repeats.
TEST_F(Collection, ReloadSortsAndDropsRepeats) {
  items.source = handles({5, 3, 9, 3});
  items.Reload();
  EXPECT_EQ(items.GetCount(), 0);
  items.AllowReload(1);
  EXPECT_EQ(items.Items(), handles({3, 5, 9}));
  EXPECT_EQ(changes.Take(), "3:0 5:0");  // the source turned non-empty, then the items came
  EXPECT_EQ(items.GetPositionByHandle(handleOf(9)), 2);
  EXPECT_EQ(items.GetPositionByHandle(handleOf(4)), -1);
  EXPECT_EQ(items.GetPositionByHandle(0), -1);
  EXPECT_EQ(items.GetAt(3), 0);
  EXPECT_EQ(items.GetAt(-1), 0);
  EXPECT_TRUE(items.IsEmpty());  // a reload leaves the position nowhere
  EXPECT_EQ(items.GetPosition(), SYS_Nowhere);

  items.source = handles({9, 5, 3});  // the same items in another source order
  items.Reload();
  EXPECT_EQ(changes.Take(), "");
}

// While reloading is not allowed, a reload only notes whether the source has a passing item,
// and says so (code 3 with 0) each time that changes.
TEST_F(Collection, ReloadNotAllowedReportsEmptinessChanges) {
  items.source = handles({4});
  items.Reload();
  items.Reload();
  EXPECT_EQ(changes.Take(), "3:0");
  ByParity odd;
  items.SetFilter(&odd);  // 4 fails: the source counts as empty again
  EXPECT_EQ(changes.Take(), "3:0");
  EXPECT_EQ(items.GetCount(), 0);
}

// Equal keys keep the source's order, descending reverses the key order, and a filter
// that rejects everything empties the items with code 5.
TEST_F(Collection, SortFilterAndDirection) {
  Load({15, 31, 11, 22, 13});
  items.SetSort(&byTens, 0);
  EXPECT_EQ(items.Items(), handles({15, 11, 13, 22, 31}));
  items.SetSort(&byTens, 1);
  EXPECT_EQ(items.Items(), handles({31, 22, 15, 11, 13}));
  ByParity odd;
  items.SetFilter(&odd);
  EXPECT_EQ(items.Items(), handles({31, 15, 11, 13}));
  SYS_Filter nothing;
  changes.Take();
  items.SetFilter(&nothing);
  EXPECT_EQ(items.GetCount(), 0);
  EXPECT_EQ(changes.Take(), "5:0");
}

// GetFirst, GetNext and GetPrev walk the items and move the source's slider; past either
// end the position is the count or -1, and no longer valid.
TEST_F(Collection, NavigationMovesSliderAndStopsAtEnds) {
  EXPECT_EQ(items.GetFirst(), 0);
  EXPECT_EQ(items.GetPosition(), SYS_Nowhere);
  EXPECT_EQ(items.sliderLog, handles({0}));
  Load({2, 1});
  items.sliderLog.clear();
  EXPECT_EQ(items.GetFirst(), 1);
  EXPECT_FALSE(items.IsEmpty());
  EXPECT_EQ(items.GetNext(), 1);
  EXPECT_EQ(items.GetNext(), 0);
  EXPECT_EQ(items.GetPosition(), 2);
  EXPECT_TRUE(items.IsEmpty());
  EXPECT_EQ(items.sliderLog, handles({1, 2}));
  items.SetPosition(0);
  EXPECT_EQ(items.GetPrev(), 0);
  EXPECT_EQ(items.GetPosition(), -1);
  items.SetSlider(handleOf(2));
  EXPECT_EQ(items.GetPosition(), 1);
  EXPECT_EQ(items.GetSlider(), handleOf(2));
  items.SetSlider(handleOf(7));  // not an item
  EXPECT_EQ(items.GetPosition(), SYS_Nowhere);
  EXPECT_EQ(items.GetSlider(), 0);
}

// A lookup finds the first index wherever it falls in the scan's blocks of eight, and never
// takes a handle that shares only one 32-bit half with the one sought.
TEST_F(Collection, LookupComparesWholeHandles) {
  SYS_Handle const high = static_cast<SYS_Handle>(sizeof(SYS_Handle) > 4 ? 1LL << 40 : 0);  // 0 on i386
  items.source = {high | 21};
  for (long n = 1; n <= 20; ++n) items.source.push_back(n);
  items.AllowReload(1);  // by value: 1 .. 20, then high | 21
  for (long n : {1, 8, 9, 16, 17, 20}) EXPECT_EQ(items.GetPositionByHandle(n), n - 1) << n;
  EXPECT_EQ(items.GetPositionByHandle(high | 21), 20);
  EXPECT_EQ(items.GetPositionByHandle(21), high != 0 ? -1 : 20);
  EXPECT_EQ(items.GetPositionByHandle(high | 3), high != 0 ? -1 : 2);
}

// FindNextTempItem finds the next passing handle in source order and puts the slider back.
TEST_F(Collection, FindNextTempItemSkipsFailingHandles) {
  Load({8, 3, 6, 5});
  ByParity odd;
  items.SetFilter(&odd);
  items.SetSlider(handleOf(5));
  EXPECT_EQ(items.FindNextTempItem(0), handleOf(3));
  EXPECT_EQ(items.FindNextTempItem(handleOf(3)), handleOf(5));
  EXPECT_EQ(items.FindNextTempItem(handleOf(5)), 0);
  EXPECT_EQ(items.GetSlider(), handleOf(5));
}

// Focusing alone raises 3 with the position on the handle during the notification, and puts
// position and slider back; adding raises nothing and may add a handle twice; a handle that
// is not an item clears the focus silently.
TEST_F(Collection, FocusRulesAndNotification) {
  Load({1, 2, 3});
  items.SetPosition(2);
  long during = -1;
  changes.action = [&](int, SYS_Handle) { during = items.GetPosition(); };
  items.SetFocus(handleOf(1), false);
  EXPECT_TRUE(items.HasFocus());
  EXPECT_EQ(changes.Take(), "3:1");
  EXPECT_EQ(during, 0);
  EXPECT_EQ(items.GetPosition(), 2);
  EXPECT_EQ(items.GetSlider(), handleOf(3));

  items.SetFocus(handleOf(3), true);
  items.SetFocus(handleOf(1), true);
  EXPECT_EQ(items.Focus(), handles({1, 1, 3}));
  long index = -1;
  EXPECT_TRUE(items.IsInFocus(handleOf(1), &index));
  EXPECT_EQ(index, 0);  // the first of the repeats
  EXPECT_FALSE(items.IsInFocus(handleOf(2), &index));
  EXPECT_EQ(index, 2);  // where it would go
  EXPECT_EQ(items.GetFocus(3) | items.GetFocus(-1), 0);
  items.SetFocus(handleOf(9), true);  // not an item: counts as 0, which clears
  EXPECT_FALSE(items.HasFocus());
  EXPECT_EQ(changes.Take(), "");
}

// Setting per-handle data tells the event source, which the collection hears as an item
// change. Clear drops everything without a word and forbids reloading until allowed again.
TEST_F(Collection, HandleDataThenClear) {
  SCC_Notifier own;
  items.notifierOf = [&](SYS_Handle) { return &own; };
  Load({1, 2});
  items.SetFocus(handleOf(1), false);
  items.SetHandleData(handleOf(2), 5);
  EXPECT_EQ(items.GetHandleData(handleOf(2)), 5);
  EXPECT_EQ(items.UseCount(&own), 2);
  EXPECT_EQ(changes.Take(), "3:1 3:2");
  items.Clear();
  EXPECT_TRUE(items.GetCount() == 0 && !items.HasFocus() && items.HookCount() == 0);
  EXPECT_EQ(items.GetHandleData(handleOf(2)), 0);
  EXPECT_EQ(changes.Take(), "");
  EXPECT_FALSE(items.IsReloadAllowed());
  items.AllowReload(1);
  EXPECT_EQ(items.GetCount(), 2);
}

// A copy is a collection of its own: same items, focus and data, hooked where the original
// is, while the original keeps its listeners. Assigning tells the target's listeners.
TEST_F(Collection, CopiesAreIndependent) {
  Load({1, 2});
  items.SetFocus(handleOf(2), false);
  items.SetHandleData(handleOf(1), 7);
  items.SetPosition(1);
  changes.Take();
  ListCollection copy(items);
  EXPECT_EQ(copy.GetPosition(), 1);
  EXPECT_EQ(copy.Items(), items.Items());
  EXPECT_EQ(copy.Focus(), handles({2}));
  EXPECT_EQ(copy.GetHandleData(handleOf(1)), 7);
  list.Notify(SCC_ItemRemoving, SCC_Notifier::ParamOf(handleOf(1)));  // both hear it
  EXPECT_EQ(copy.Items(), handles({2}));
  EXPECT_EQ(items.Items(), handles({2}));
  EXPECT_EQ(changes.Take(), "2:1");  // once: the copy has no listeners

  ListCollection other;
  other.source = handles({4});
  other.AllowReload(1);
  items = other;
  EXPECT_EQ(items.Items(), handles({4}));
  EXPECT_EQ(changes.Take(), "5:0");
}

// A child whose parent is destroyed first stops following it instead of touching it.
TEST(CollectionParent, DestroyedParentIsForgotten) {
  auto parent = std::make_unique<ListCollection>();
  parent->source = handles({1});
  ListCollection child(parent.get());
  child.source = handles({5});
  parent.reset();
  child.AllowReload(1);
  child.Reload();
  EXPECT_EQ(child.Items(), handles({5}));
  EXPECT_EQ(child.HandleNotificationsAllowed(handleOf(5)), 0);
  ReportSpy spy;
  child.SetParent(&child);  // refused with a report: it would follow itself
  EXPECT_EQ(spy.Reports().size(), 1u);
}

