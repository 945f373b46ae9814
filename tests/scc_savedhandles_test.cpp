//===- tests/scc_savedhandles_test.cpp - Saved handles and their notifications ===//
#include "scc_savedhandles.h"

#include "tests/scc_stdcoll_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Entries made, and entries destroyed, by every test set.
struct EntryCounts {
  int made = 0;
  int destroyed = 0;
  int Alive() const { return made - destroyed; }
};

/// An entry that hears its type's notifier and renumbers its handle when told to.
class TestEntry : public SCC_HandleWithEvent {
public:
  TestEntry(SYS_Handle handle, long type, SCC_SavedHandles *owner, SCC_Notifier *event,
            std::function<SYS_Handle(SYS_Handle)> const &renumber, EntryCounts &counts)
      : SCC_HandleWithEvent(handle, type, owner), m_Event(event), m_Renumber(renumber), m_Counts(counts) {
    ++m_Counts.made;
  }
  ~TestEntry() override { ++m_Counts.destroyed; }
  SCC_Notifier *GetChangeEvent() override { return m_Event; }
  void OnUpdatePointers() override {
    if (m_Renumber) m_Handle = m_Renumber(m_Handle);
  }

private:
  SCC_Notifier *m_Event;
  std::function<SYS_Handle(SYS_Handle)> const &m_Renumber;
  EntryCounts &m_Counts;
};

/// A set whose entries of type t hear notifier t; type 99 makes no entry.
class TestSet : public SCC_SavedHandles {
public:
  explicit TestSet(EntryCounts &counts) : m_Counts(counts) {}

  /// The (type, handle number) keys in the set's order; (-1, -1) for an empty slot.
  std::vector<std::pair<long, long>> Keys() const {
    std::vector<std::pair<long, long>> keys;
    for (int k = 0; k < GetCount(); ++k) {
      SCC_HandleWithEvent const *const entry = GetElements()[k];
      if (entry == nullptr) {
        keys.emplace_back(-1, -1);
      } else {
        keys.emplace_back(entry->GetType(), static_cast<long>(entry->GetHandle() & 0xFFFFFF));
      }
    }
    return keys;
  }
  void Raise(long type, int code, long number) { events[type].Notify(code, SCC_Notifier::ParamOf(handleOf(number))); }

  std::map<long, SCC_Notifier> events;
  std::function<SYS_Handle(SYS_Handle)> renumber;

protected:
  Entry CreateByType(SYS_Handle handle, long type) override {
    if (type == 99) return Entry();
    return Entry(new TestEntry(handle, type, this, &events[type], renumber, m_Counts));
  }

private:
  EntryCounts &m_Counts;
};

struct SavedHandlesTest : ::testing::Test {
  void Save(std::initializer_list<std::pair<long, long>> keys) {
    for (auto const &key : keys) ASSERT_EQ(set.Save(handleOf(key.second), key.first), 1);
  }
  EntryCounts counts;
  TestSet set{counts};
};

typedef std::vector<std::pair<long, long>> Keys;

}  // namespace

// The base set makes no entries, so it saves nothing; its notifications all return 0.
TEST(SavedHandles, BaseSetSavesNothing) {
  SCC_SavedHandles set;
  EXPECT_EQ(set.Save(5, 1), 0);
  EXPECT_EQ(set.GetCount(), 0);
  long position = -1;
  EXPECT_EQ(set.Find(5, 1, &position).Get(), nullptr);
  EXPECT_EQ(position, 0);
  EXPECT_EQ(set.Delete(5, 1), 0);
  for (int code = 0; code < 9; ++code) EXPECT_EQ(set.HandleNotification(5, 1, code, SCC_Notifier::ParamOf(5)), 0);
}

// Entries are kept by type, then handle, as signed numbers; Find of an absent key gives
// the index that keeps the order.
TEST_F(SavedHandlesTest, OrderedByTypeThenHandle) {
  Save({{2, 5}, {1, 9}, {1, 3}, {-0x7FFFFFFFL - 1, 7}, {0x7FFFFFFF, 0}});
  EXPECT_EQ(set.Keys(), (Keys{{-0x7FFFFFFFL - 1, 7}, {1, 3}, {1, 9}, {2, 5}, {0x7FFFFFFF, 0}}));
  EXPECT_EQ(set.Save(handleOf(9), 1), 0);  // saved already
  EXPECT_EQ(set.Save(handleOf(4), 99), 0);  // no entry made for the type
  EXPECT_EQ(counts.made, 5);
  long position = -1;
  EXPECT_EQ(set.Find(handleOf(5), 1, &position).Get(), nullptr);
  EXPECT_EQ(position, 2);
  SCC_SavedHandles::Entry const found = set.Find(handleOf(5), 2, &position);
  ASSERT_NE(found.Get(), nullptr);
  EXPECT_EQ(found->GetHandle(), handleOf(5));
  EXPECT_EQ(position, 3);
  EXPECT_EQ(set.Find(handleOf(1), 0x7FFFFFFF, &position).Get(), nullptr);
  EXPECT_EQ(position, 5);
  EXPECT_EQ(set.Find(handleOf(3), 1, nullptr).Get(), set.GetElements()[1].Get());
  EXPECT_EQ(set.Delete(handleOf(3), 2), 0);
  EXPECT_EQ(set.Keys().size(), 5u);
  // A negative handle sorts first within its type (on LP64 it is beyond 32 bits).
  ASSERT_EQ(set.Save(-handleOf(1), 1), 1);
  EXPECT_EQ(set.Keys()[1].first, 1);
  EXPECT_EQ(set.GetElements()[1]->GetHandle(), -handleOf(1));
}

// Positions are array indices, also when the host has moved the array's lower bound.
TEST_F(SavedHandlesTest, PositionsFollowTheBounds) {
  Save({{1, 2}, {1, 4}, {1, 6}, {1, 8}});
  set.Insert(-3, 3);  // three empty slots in front, which sort before every entry
  EXPECT_EQ(set.GetLowerBound(), -3);
  long position = 0;
  ASSERT_NE(set.Find(handleOf(6), 1, &position).Get(), nullptr);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(set.Find(handleOf(5), 1, &position).Get(), nullptr);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(set.Find(handleOf(2), 1, &position)->GetHandle(), handleOf(2));
  EXPECT_EQ(position, 0);
  ASSERT_EQ(set.Save(handleOf(5), 1), 1);
  EXPECT_EQ(set[2]->GetHandle(), handleOf(5));
  EXPECT_EQ(set.Delete(handleOf(8), 1), 1);
  EXPECT_EQ(set.Keys().back(), std::make_pair(1L, 6L));
}

// An entry removed from the set goes at once, whichever end of the array it left, and
// leaves its notifier: the notifier's later codes no longer reach the set.
TEST_F(SavedHandlesTest, RemovedEntriesGoAtOnce) {
  Save({{1, 1}, {1, 2}, {1, 3}, {2, 4}});
  EXPECT_EQ(set.Delete(handleOf(3), 1), 1);
  EXPECT_EQ(counts.destroyed, 1);
  EXPECT_EQ(set.Delete(handleOf(1), 1), 1);
  EXPECT_EQ(counts.destroyed, 2);
  EXPECT_EQ(set.Delete(handleOf(4), 2), 1);  // the last element
  EXPECT_EQ(counts.destroyed, 3);
  EXPECT_EQ(set.Keys(), (Keys{{1, 2}}));
  set.Raise(2, 6, 0);  // type 2 has no entries left to hear it
  EXPECT_EQ(set.GetCount(), 1);
  EXPECT_EQ(set[1].Get(), nullptr);  // the slot behind the bounds holds nothing any more
}

// Code 2 deletes the entry of the notified type whose handle the parameter carries, also
// when that is the very entry being told or one the delivery has yet to reach.
TEST_F(SavedHandlesTest, RemovalNotification) {
  Save({{1, 1}, {1, 2}, {1, 3}, {2, 2}});
  set.Raise(1, 2, 2);
  EXPECT_EQ(set.Keys(), (Keys{{1, 1}, {1, 3}, {2, 2}}));
  EXPECT_EQ(counts.destroyed, 1);
  set.Raise(1, 2, 1);  // the first entry of the ring, told first
  set.Raise(1, 2, 3);  // the last
  EXPECT_EQ(set.Keys(), (Keys{{2, 2}}));
  EXPECT_EQ(counts.destroyed, 3);
  set.Raise(1, 2, 2);  // nobody hears type 1 any more
  EXPECT_EQ(set.Keys(), (Keys{{2, 2}}));
}

// Code 6 from any entry's notifier empties the whole set; every entry goes during the
// delivery that told the first of them.
TEST_F(SavedHandlesTest, ResetEmptiesTheSet) {
  Save({{1, 1}, {1, 2}, {1, 3}, {2, 9}});
  set.Raise(1, 6, 0);
  EXPECT_EQ(set.GetCount(), 0);
  EXPECT_EQ(counts.destroyed, 4);
  Save({{1, 1}});
  EXPECT_EQ(set.GetCount(), 1);
}

// Code 7 lets each told entry renumber itself and marks the set; the next Find sorts
// again, and of keys that became equal it gives the first.
TEST_F(SavedHandlesTest, RenumberingResortsAtTheNextFind) {
  Save({{1, 1}, {1, 2}, {1, 3}, {1, 4}, {2, 1}});
  set.renumber = [](SYS_Handle handle) { return handleOf(10 - (handle & 0xFF)); };
  set.Raise(1, 7, 0);
  EXPECT_EQ(set.Keys(), (Keys{{1, 9}, {1, 8}, {1, 7}, {1, 6}, {2, 1}}));  // not yet sorted
  long position = -1;
  ASSERT_NE(set.Find(handleOf(8), 1, &position).Get(), nullptr);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(set.Keys(), (Keys{{1, 6}, {1, 7}, {1, 8}, {1, 9}, {2, 1}}));
  // Two entries renumbered onto one handle: Find gives the first of them.
  set.renumber = [](SYS_Handle handle) { return (handle & 0xFF) < 8 ? handleOf(7) : handle; };
  set.Raise(1, 7, 0);
  SCC_HandleWithEvent const *const first = set.Find(handleOf(7), 1, &position);  // sorts first
  EXPECT_EQ(first, set.GetElements()[0].Get());
  EXPECT_EQ(position, 0);
  EXPECT_EQ(set.Keys(), (Keys{{1, 7}, {1, 7}, {1, 8}, {1, 9}, {2, 1}}));
  EXPECT_EQ(set.Save(handleOf(7), 1), 0);
  EXPECT_EQ(set.Delete(handleOf(7), 1), 1);
  EXPECT_EQ(set.Delete(handleOf(7), 1), 1);
  EXPECT_EQ(set.Keys(), (Keys{{1, 8}, {1, 9}, {2, 1}}));
  EXPECT_EQ(counts.Alive(), 3);
}

// A copy shares the entries: an entry removed from one set lives on in the other and
// goes with its last holder.
TEST_F(SavedHandlesTest, CopiesShareEntries) {
  Save({{1, 1}, {1, 2}});
  {
    TestSet copy(counts);
    static_cast<SCC_SavedHandles &>(copy) = set;
    EXPECT_EQ(set.Delete(handleOf(1), 1), 1);
    EXPECT_EQ(counts.destroyed, 0);
    EXPECT_EQ(copy.Keys(), (Keys{{1, 1}, {1, 2}}));
    SCC_SavedHandles constructed(copy);
    EXPECT_EQ(constructed.Find(handleOf(1), 1, nullptr).Get(), copy.GetElements()[0].Get());
    SCC_SavedHandles last(set);
    EXPECT_EQ(set.Delete(handleOf(2), 1), 1);  // the last entry, while another set shares it
    EXPECT_EQ(set.GetCount(), 0);
  }
  EXPECT_EQ(counts.destroyed, 2);
}

// Against a model: saves, deletes and notifications (removal, reset, a renumbering that
// permutes the handles of one type) in random order keep the set equal to the model, and
// exactly the entries in the set are alive.
TEST(SavedHandlesModel, RandomOperations) {
  EntryCounts counts;
  TestSet set(counts);
  set.renumber = [](SYS_Handle handle) { return handleOf(((handle & 0xFF) * 7 + 3) % 101); };
  std::set<std::pair<long, long>> model;
  std::mt19937 random(1717);
  for (int step = 0; step < 4000; ++step) {
    long const type = static_cast<long>(random() % 3);
    long const number = static_cast<long>(random() % 101);
    unsigned const what = random() % 100;
    SCOPED_TRACE("step " + std::to_string(step));
    bool const present = model.count({type, number}) != 0;
    if (what < 45) {
      ASSERT_EQ(set.Save(handleOf(number), type), present ? 0 : 1);
      model.insert({type, number});
    } else if (what < 70) {
      ASSERT_EQ(set.Delete(handleOf(number), type), present ? 1 : 0);
      model.erase({type, number});
    } else if (what < 90) {
      set.Raise(type, 2, number);
      model.erase({type, number});
    } else if (what < 99) {
      bool heard = false;
      std::set<std::pair<long, long>> renumbered;
      for (auto const &key : model) {
        heard = heard || key.first == type;
        renumbered.insert(key.first == type ? std::make_pair(key.first, ((key.second * 7 + 3) % 101)) : key);
      }
      set.Raise(type, 7, 0);
      if (heard) model = renumbered;
    } else {
      bool heard = false;
      for (auto const &key : model) heard = heard || key.first == type;
      set.Raise(type, 6, 0);
      if (heard) model.clear();
    }
    set.Find(0, 0, nullptr);  // repairs the order after a renumbering
    ASSERT_EQ(set.Keys(), Keys(model.begin(), model.end()));
    ASSERT_EQ(counts.Alive(), set.GetCount());
  }
}
