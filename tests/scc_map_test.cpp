//===- tests/scc_map_test.cpp - Hash map, its codes and its iterator ----===//
#include "scc_map.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

typedef SCC_Map<int, int> IntMap;

/// A hook on an int-valued map that logs "code" or "code:value" and then runs an optional action.
struct MapProbe : SCC_EventHook<SYS_Handle> {
  int OnNotification(int code, SYS_Handle *param) override {
    std::string entry = std::to_string(code);
    if (code == 1 || code == 2) {
      entry += ":" + std::to_string(*IntMap::ValueOf(param));
      m_LastValue = IntMap::ValueOf(param);
    }
    m_Log.push_back(entry);
    if (m_Action) m_Action(code, IntMap::ValueOf(param));
    return 0;
  }
  std::vector<std::string> m_Log;
  int *m_LastValue = nullptr;
  std::function<void(int, int *)> m_Action;
};

typedef std::vector<std::string> Log;

/// The keys in iteration order, with the bucket of each.
template <class Map>
std::vector<std::pair<long, int>> walk(Map &map) {
  std::vector<std::pair<long, int>> out;
  for (typename Map::Iterator it(&map); it.IsValid(); it.Next()) out.emplace_back(it.GetBucket(), it.GetKey());
  return out;
}

long identityHash(int const &key, long) { return key; }

}  // namespace

// Insertion raises code 1 with the new value's address; a present key gives null and raises nothing. FindOrInsert
// inserts the same way, or finds.
TEST(SccMap, InsertAnnouncesTheNewValue) {
  IntMap map(53);
  MapProbe hook;
  map.Insert(hook);  // hooks connect to a map as to any notifier
  int *const value = map.Insert(7);
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(*value, 0);
  EXPECT_EQ(hook.m_LastValue, value);
  EXPECT_EQ(map.Insert(7), nullptr);
  EXPECT_EQ(map.GetCount(), 1);
  EXPECT_EQ(hook.m_Log, (Log{"1:0"}));
  EXPECT_EQ(map.Lookup(7)->m_Value, 0);
  EXPECT_EQ(map.Lookup(8), nullptr);
  *map.FindOrInsert(8) = 80;  // inserts as Insert does, then finds
  EXPECT_EQ(*map.FindOrInsert(8), 80);
  EXPECT_EQ(hook.m_Log, (Log{"1:0", "1:0"}));
}

// Removal raises code 2 while the entry is still in place, then frees it; a missing key raises nothing.
TEST(SccMap, RemoveAnnouncesBeforeFreeing) {
  IntMap map(53);
  *map.Insert(4) = 40;
  *map.Insert(57) = 570;  // same bucket as 4
  MapProbe hook;
  map.Insert(hook);
  hook.m_Action = [&](int code, int *) {
    if (code != 2) return;
    EXPECT_NE(map.Lookup(4), nullptr);
    EXPECT_EQ(map.GetCount(), 2);
  };
  EXPECT_EQ(map.Remove(4), 1);
  EXPECT_EQ(map.Remove(4), 0);
  EXPECT_EQ(hook.m_Log, (Log{"2:40"}));
  EXPECT_EQ(map.Lookup(4), nullptr);
  EXPECT_EQ(map.Lookup(57)->m_Value, 570);
  EXPECT_EQ(map.GetCount(), 1);
}

// Emptying raises code 6 once and no code 2; destruction raises 6, then leaves the hooks unconnected.
TEST(SccMap, RemoveAllAndDestruction) {
  MapProbe hook;
  {
    IntMap map(5);
    for (int key = 0; key < 12; ++key) map.Insert(key);
    map.Insert(hook);
    map.RemoveAll();
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_EQ(walk(map).size(), 0u);
    EXPECT_EQ(hook.m_Log, (Log{"6"}));
    map.Insert(1);
  }
  EXPECT_EQ(hook.m_Log, (Log{"6", "1:0", "6"}));
  EXPECT_FALSE(hook.IsConnected());
}

// A hash outside [0, count) is placed in bucket (hash as unsigned) % count and cached unreduced; a given hash must
// match it for a lookup to succeed.
TEST(SccMap, HashesOutsideTheBucketCount) {
  IntMap map(53, &identityHash);
  map.Insert(60);
  map.Insert(-5);
  EXPECT_EQ(walk(map),
            (std::vector<std::pair<long, int>>{{7, 60}, {static_cast<long>(0xFFFFFFFBu % 53u), -5}}));
  EXPECT_NE(map.Lookup(60), nullptr);
  EXPECT_NE(map.Lookup(60, 60), nullptr);
  EXPECT_EQ(map.Lookup(60, 7), nullptr);  // right bucket, wrong cached hash
  EXPECT_NE(map.Lookup(-5), nullptr);
  EXPECT_EQ(map.Lookup(-5, -1), map.Lookup(-5));  // a negative hash means "compute it"

  IntMap standard(53);
  standard.Insert(60);
  EXPECT_NE(standard.Lookup(60, 7), nullptr);
  EXPECT_EQ(standard.Lookup(60, 8), nullptr);
}

// A bucket count below 1 becomes 1.
TEST(SccMap, BucketCountBelowOneBecomesOne) {
  IntMap map(0);
  EXPECT_EQ(map.GetBucketCount(), 1);
  for (int key = -3; key <= 3; ++key) map.Insert(key);
  EXPECT_EQ(map.GetCount(), 7);
  EXPECT_EQ(walk(map).size(), 7u);
  EXPECT_EQ(map.Remove(0), 1);
  EXPECT_EQ(map.Lookup(3)->m_Key, 3);
}

// Keys of SCC_StrNoCase hash and compare without case: "ABC" finds "abc".
TEST(SccMap, NoCaseKeysFindEitherCase) {
  SCC_Map<SCC_StrNoCase, int> map(53);
  *map.Insert("abc") = 1;
  ASSERT_NE(map.Lookup("ABC"), nullptr);
  EXPECT_EQ(map.Lookup("ABC")->m_Value, 1);
  EXPECT_EQ(map.Insert("AbC"), nullptr);
  EXPECT_EQ(map.Remove("ABC"), 1);
  EXPECT_EQ(map.GetCount(), 0);
}

// String maps with the default hash find keys by the text hash whether it is
// computed or given; with a custom hash the same keys are found by that hash.
TEST(SccMap, StringKeysByDefaultGivenAndCustomHash) {
  SCC_Map<SYS_String, int> byDefault(53);
  *byDefault.Insert("geom(12)") = 12;
  *byDefault.Insert("net(7)") = 7;
  SYS_String const probe("geom(12)");  // a buffer of its own
  ASSERT_NE(byDefault.Lookup(probe), nullptr);
  EXPECT_EQ(byDefault.Lookup(probe, SCC_Hash(probe, 53))->m_Value, 12);
  EXPECT_EQ(byDefault.Lookup(probe, 11), nullptr);
  EXPECT_EQ(static_cast<long>(SCC_TextHash("geom(12)") % 53), SCC_Hash(probe, 53));

  SCC_Map<SYS_String, int> byLength(5, [](SYS_String const &key, long n) { return key.GetLength() % n; });
  *byLength.Insert("abc") = 1;
  *byLength.Insert("xyz") = 2;  // same bucket, same hash: told apart by the key
  EXPECT_EQ(byLength.Lookup("abc")->m_Value, 1);
  EXPECT_EQ(byLength.Lookup("xyz")->m_Value, 2);
  EXPECT_EQ(byLength.Lookup("abd"), nullptr);
  EXPECT_EQ(byLength.Remove("xyz"), 1);
  EXPECT_EQ(byLength.Lookup("abc", 3)->m_Value, 1);
}

// Hooks may change the map while it tells them: removing the entry being
// inserted, removing the entry being removed, emptying the map, inserting.
TEST(SccMapReentrancy, HooksChangingTheMap) {
  {
    SCOPED_TRACE("removes the new entry");
    IntMap map(7);
    MapProbe hook;
    map.Insert(hook);
    hook.m_Action = [&](int code, int *) {
      if (code == 1) map.Remove(3);
    };
    EXPECT_EQ(map.Insert(3), nullptr);
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_EQ(hook.m_Log, (Log{"1:0", "2:0"}));
  }
  {
    SCOPED_TRACE("removes the entry being removed");
    IntMap map(7);
    MapProbe hook;
    map.Insert(3);
    map.Insert(hook);
    int nested = -1;
    hook.m_Action = [&](int code, int *) {
      if (code == 2) nested = map.Remove(3);
    };
    EXPECT_EQ(map.Remove(3), 1);
    EXPECT_EQ(nested, 0);
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_EQ(hook.m_Log, (Log{"2:0"}));
  }
  {
    SCOPED_TRACE("empties the map");
    IntMap map(7);
    MapProbe hook;
    map.Insert(3);
    map.Insert(10);
    map.Insert(hook);
    hook.m_Action = [&](int code, int *) {
      if (code == 2) map.RemoveAll();
    };
    EXPECT_EQ(map.Remove(3), 1);
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_EQ(hook.m_Log, (Log{"2:0", "6"}));
  }
  {
    SCOPED_TRACE("inserts into the same bucket");
    IntMap map(7);
    MapProbe hook;
    *map.Insert(3) = 33;
    map.Insert(hook);
    hook.m_Action = [&](int code, int *) {
      if (code == 2) *map.Insert(10) = 100;
    };
    EXPECT_EQ(map.Remove(3), 1);
    EXPECT_EQ(map.Lookup(3), nullptr);
    EXPECT_EQ(map.Lookup(10)->m_Value, 100);
    EXPECT_EQ(map.GetCount(), 1);
  }
}

// Copying a map moves its entries and hooks: the addresses hooks were told stay valid, and the source is left empty
// with no hooks. Assignment first empties the target (code 6 to its own hooks), which then loses those hooks.
TEST(SccMap, CopyMovesEntriesAndHooks) {
  IntMap source(11);
  MapProbe sourceHook;
  source.Insert(sourceHook);
  int *const value = source.Insert(5);
  *value = 50;
  IntMap copy(source);
  EXPECT_EQ(copy.GetBucketCount(), 11);
  EXPECT_EQ(copy.GetCount(), 1);
  EXPECT_EQ(&copy.Lookup(5)->m_Value, value);
  EXPECT_EQ(source.GetCount(), 0);
  EXPECT_EQ(source.Lookup(5), nullptr);
  EXPECT_EQ(sourceHook.GetConnectedEvent(), &copy);
  source.Insert(6);  // the source still works, alone
  EXPECT_EQ(sourceHook.m_Log, (Log{"1:0"}));

  IntMap target(3);
  MapProbe targetHook;
  target.Insert(1);
  target.Insert(targetHook);
  target = copy;
  EXPECT_EQ(targetHook.m_Log, (Log{"6"}));
  EXPECT_FALSE(targetHook.IsConnected());
  EXPECT_EQ(target.GetBucketCount(), 11);
  EXPECT_EQ(&target.Lookup(5)->m_Value, value);
  EXPECT_EQ(target.Lookup(1), nullptr);
  EXPECT_EQ(copy.GetCount(), 0);
  target.Remove(5);
  EXPECT_EQ(sourceHook.m_Log, (Log{"1:0", "2:50"}));
}

// An iterator set on an entry stands in that entry's bucket; it is valid only with a map and an entry.
TEST(SccMap, IteratorSetOnAnEntry) {
  IntMap map(10);
  map.Insert(13);
  map.Insert(23);
  IntMap::Iterator it;
  it.Set(&map, map.Lookup(13));
  EXPECT_TRUE(it.IsValid());
  EXPECT_EQ(it.GetBucket(), 3);
  it.Next();
  EXPECT_FALSE(it.IsValid());  // 13 was inserted first, so it ends its chain
  it.Set(&map, nullptr);
  EXPECT_FALSE(it.IsValid());
  it.Set(nullptr, map.Lookup(23));
  EXPECT_FALSE(it.IsValid());
}

// Random insertions, lookups and removals on a small table of colliding keys
// against std::map; text keys as well as integers.
TEST(SccMap, RandomisedAgainstModel) {
  std::mt19937 random(5);
  IntMap ints(7);
  SCC_Map<SYS_String, int> texts(13);
  std::map<int, int> model;
  for (int step = 0; step < 20000; ++step) {
    int const key = static_cast<int>(random() % 200) - 100;
    SYS_String const text = SYS_String("k") << key;
    switch (random() % 8) {
      case 0:
      case 1:
      case 2: {
        bool const present = model.count(key) != 0;
        int *const value = ints.Insert(key);
        int *const textValue = texts.Insert(text);
        ASSERT_EQ(value == nullptr, present) << step;
        ASSERT_EQ(textValue == nullptr, present) << step;
        if (!present) *value = *textValue = model[key] = step;
        break;
      }
      case 3:
      case 4: {
        int const expected = static_cast<int>(model.erase(key));
        ASSERT_EQ(ints.Remove(key), expected) << step;
        ASSERT_EQ(texts.Remove(text), expected) << step;
        break;
      }
      case 5: {
        int &expected = model[key];
        ASSERT_EQ(*ints.FindOrInsert(key), expected) << step;
        ASSERT_EQ(*texts.FindOrInsert(text), expected) << step;
        break;
      }
      default: {
        auto const found = model.find(key);
        auto *const node = ints.Lookup(key);
        auto *const textNode = texts.Lookup(text);
        ASSERT_EQ(node != nullptr, found != model.end()) << step;
        ASSERT_EQ(textNode != nullptr, found != model.end()) << step;
        if (node != nullptr) {
          ASSERT_EQ(node->m_Value, found->second) << step;
          ASSERT_EQ(textNode->m_Value, found->second) << step;
        }
      }
    }
    if (step % 5000 == 4999) {
      std::map<int, int> seen;
      for (IntMap::Iterator it(&ints); it.IsValid(); it.Next()) seen[it.GetKey()] = it.GetValue();
      ASSERT_EQ(seen, model);
      ASSERT_EQ(texts.GetCount(), static_cast<long>(model.size()));
    }
  }
  ASSERT_EQ(ints.GetCount(), static_cast<long>(model.size()));
}
