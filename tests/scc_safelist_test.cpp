//===- tests/scc_safelist_test.cpp - Safe lists and surviving iterators -===//
#include "scc_safelist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

struct Item : SCC_SafeDListNode<Item> {
  explicit Item(int value = 0) : m_Value(value) {}
  int m_Value;
};

typedef SCC_SafeDList<Item> List;

/// The values from head to tail, checked against the walk from the tail.
std::vector<int> values(List &list) {
  std::vector<int> forward, backward;
  for (List::Iterator it(list); it.IsValid(); it.Next()) forward.push_back(it->m_Value);
  List::Iterator back;
  for (back.Last(list); back.IsValid(); back.Prev()) backward.insert(backward.begin(), back->m_Value);
  EXPECT_EQ(forward, backward) << "links disagree";
  return forward;
}

/// The value an iterator stands on, -1 for nowhere.
int at(List::Iterator const &it) { return it.IsValid() ? it->m_Value : -1; }

}  // namespace

// A node destroyed while linked leaves its list as by Remove: its iterators, copies
// included, move on; one destroyed after leaving releases any iterator still on it.
TEST(SccSafeDList, DestroyedNodeLeavesAndMovesIterators) {
  Item a(1), c(3);
  auto b = std::make_unique<Item>(2);
  List list;
  list.AddTail(&a);
  list.AddTail(b.get());
  list.AddTail(&c);
  List::Iterator it;
  it.Set(b.get());
  List::Iterator const copy(it);  // a copy stands on the node as well
  b.reset();
  EXPECT_EQ(at(it), 3);
  EXPECT_EQ(at(copy), 3);
  EXPECT_EQ(values(list), (std::vector<int>{1, 3}));
  EXPECT_EQ(list.GetCount(), 2);
  {
    Item last(4);
    list.AddTail(&last);
    it.Set(&last);
  }
  EXPECT_EQ(at(it), -1);
  EXPECT_EQ(values(list), (std::vector<int>{1, 3}));
}

// Emptying a list, by RemoveAll or by destroying it, unlinks the nodes first to last and tells each node's iterators
// code 6 with the node once it is unlinked: they stand nowhere, also the one on the first node that a removal (code 2)
// would have moved on. The nodes stay alive and can be linked again.
TEST(SccSafeDList, EmptyingTellsCodeSixAfterUnlinking) {
  struct Watch : List::Iterator {
    std::vector<std::string> *log = nullptr;
    int OnNotification(int code, void *param) override {
      auto *const node = static_cast<Item *>(static_cast<SCC_SafeDListNode<Item> *>(param));
      log->push_back(std::to_string(code) + ":" + std::to_string(node->m_Value) +
                     (node->IsLinked() ? " linked" : " unlinked"));
      return List::Iterator::OnNotification(code, param);
    }
  };
  for (bool const destroy : {false, true}) {
    SCOPED_TRACE(destroy ? "destructor" : "RemoveAll");
    std::vector<std::string> log;
    Item a(1), b(2);
    Watch onA, onB;
    onA.log = onB.log = &log;
    {
      List list;
      list.AddTail(&a);
      list.AddTail(&b);
      onA.Set(&a);
      onB.Set(&b);
      if (!destroy) {
        list.RemoveAll();
        EXPECT_TRUE(list.IsEmpty());
        list.AddTail(&a);  // reusable at once
        EXPECT_EQ(values(list), std::vector<int>{1});
        list.RemoveAll();
      }
    }
    EXPECT_EQ(log, (std::vector<std::string>{"6:1 unlinked", "6:2 unlinked"}));
    EXPECT_EQ(at(onA), -1);
    EXPECT_EQ(at(onB), -1);
    EXPECT_FALSE(a.IsLinked());
    EXPECT_FALSE(b.IsLinked());
  }
}

// Taking over a list moves its whole ring; the source is left empty, iterators
// stay on their nodes, and nodes removed later leave the new list.
TEST(SccSafeDList, TakeOverMovesTheRing) {
  Item a(1), b(2), mine(9);
  List source, target;
  source.AddTail(&a);
  source.AddTail(&b);
  target.AddTail(&mine);
  List::Iterator it;
  it.Set(&a);
  target = source;
  EXPECT_EQ(values(target), (std::vector<int>{1, 2}));
  EXPECT_TRUE(source.IsEmpty());
  EXPECT_FALSE(mine.IsLinked());
  EXPECT_EQ(at(it), 1);
  {
    Item extra(3);
    target.AddTail(&extra);
  }
  EXPECT_EQ(values(target), (std::vector<int>{1, 2}));
  List moved(target);
  EXPECT_EQ(values(moved), (std::vector<int>{1, 2}));
  EXPECT_TRUE(target.IsEmpty());
  moved.Remove(&a);
  EXPECT_EQ(at(it), 2);
}

// Linking rules: null positions stand for the root; linking a linked node, or next to an unlinked position, is reported
// and changes nothing; removing an unlinked node returns null.
TEST(SccSafeDList, LinkingRulesAndBadArguments) {
  Item a(1), b(2), c(3), d(4), loose(5);
  List list, other;
  EXPECT_EQ(list.RemoveHead(), nullptr);
  EXPECT_EQ(list.RemoveTail(), nullptr);
  EXPECT_EQ(list.GetHead(), nullptr);
  list.InsertBefore(nullptr, &b);
  list.InsertAfter(nullptr, &a);
  list.InsertAfter(&b, &d);
  list.InsertBefore(&d, &c);
  EXPECT_EQ(values(list), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(list.GetTail(), &d);

  EXPECT_EQ(other.AddTail(&a), nullptr);             // already linked
  EXPECT_EQ(list.InsertAfter(&loose, &loose), nullptr);  // position not linked
  EXPECT_EQ(list.AddHead(nullptr), nullptr);
  EXPECT_EQ(list.Remove(nullptr), nullptr);
  EXPECT_EQ(list.Remove(&loose), nullptr);
  EXPECT_EQ(values(list), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_TRUE(other.IsEmpty());

  List::Iterator it;
  it.Set(&loose);  // an unlinked node is no place to stand
  EXPECT_EQ(at(it), -1);
  EXPECT_EQ(list.RemoveHead(), &a);
  EXPECT_EQ(list.RemoveTail(), &d);
  EXPECT_EQ(values(list), (std::vector<int>{2, 3}));
}

// Random links, removals and iterator moves against a simple model: an iterator
// on a removed node stands on its successor or nowhere.
TEST(SccSafeDList, RandomisedAgainstModel) {
  std::mt19937 random(20240605);
  constexpr int kItems = 24;
  constexpr int kIterators = 5;
  std::vector<std::unique_ptr<Item>> items;
  for (int i = 0; i < kItems; ++i) items.push_back(std::make_unique<Item>(i));
  List list;
  std::vector<int> model;
  List::Iterator iterators[kIterators];
  int positions[kIterators] = {-1, -1, -1, -1, -1};
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  auto indexOf = [&](int value) { return std::find(model.begin(), model.end(), value) - model.begin(); };

  for (int step = 0; step < 4000; ++step) {
    SCOPED_TRACE(step);
    int const item = pick(kItems);
    bool const linked = items[item]->IsLinked();
    switch (pick(6)) {
      case 0:  // link first or last
        if (linked) break;
        if (pick(2) != 0) {
          list.AddHead(items[item].get());
          model.insert(model.begin(), item);
        } else {
          list.AddTail(items[item].get());
          model.push_back(item);
        }
        break;
      case 1: {  // link next to a linked node
        if (linked || model.empty()) break;
        int const pos = model[pick(static_cast<int>(model.size()))];
        auto const where = model.begin() + indexOf(pos);
        if (pick(2) != 0) {
          list.InsertBefore(items[pos].get(), items[item].get());
          model.insert(where, item);
        } else {
          list.InsertAfter(items[pos].get(), items[item].get());
          model.insert(where + 1, item);
        }
        break;
      }
      case 2:
      case 3: {  // remove
        if (!linked) break;
        auto const index = indexOf(item);
        int const successor = index + 1 < static_cast<long>(model.size()) ? model[index + 1] : -1;
        for (int &position : positions)
          if (position == item) position = successor;
        model.erase(model.begin() + index);
        list.Remove(items[item].get());
        break;
      }
      case 4: {  // place an iterator
        int const which = pick(kIterators);
        if (linked) {
          iterators[which].Set(items[item].get());
          positions[which] = item;
        } else {
          iterators[which].First(list);
          positions[which] = model.empty() ? -1 : model.front();
        }
        break;
      }
      case 5: {  // step an iterator
        int const which = pick(kIterators);
        if (positions[which] < 0) break;
        auto const index = indexOf(positions[which]);
        if (pick(2) != 0) {
          iterators[which].Next();
          positions[which] = index + 1 < static_cast<long>(model.size()) ? model[index + 1] : -1;
        } else {
          iterators[which].Prev();
          positions[which] = index > 0 ? model[index - 1] : -1;
        }
        break;
      }
    }
    for (int i = 0; i < kIterators; ++i) ASSERT_EQ(at(iterators[i]), positions[i]) << "iterator " << i;
  }
  EXPECT_EQ(values(list), model);
  EXPECT_EQ(list.GetCount(), static_cast<int>(model.size()));
  EXPECT_TRUE(list.IsValid());
}
