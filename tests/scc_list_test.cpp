//===- tests/scc_list_test.cpp - Linked lists and the reference list ----===//
#include "scc_list.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace {

struct Named : SCC_DListRefNode {
  explicit Named(char const *name, SCC_RefDList *list = nullptr) : SCC_DListRefNode(list), m_Name(name) {}
  Named(Named &other) : SCC_DListRefNode(other), m_Name(other.m_Name + "'") {}
  /// Moves in the list; the name stays.
  Named &operator=(Named &other) {
    SCC_DListRefNode::operator=(other);
    return *this;
  }
  std::string m_Name;
};

/// The names of a list's nodes from head to tail, checked against the walk back from the tail.
std::string names(SCC_RefDList const &list) {
  std::string forward, backward;
  for (SCC_DListRefNode *node = list.GetHead(); node != nullptr; node = node->m_Next)
    forward += static_cast<Named *>(node)->m_Name + " ";
  for (SCC_DListRefNode *node = list.GetTail(); node != nullptr; node = node->m_Prev)
    backward = static_cast<Named *>(node)->m_Name + " " + backward;
  EXPECT_EQ(forward, backward) << "links disagree";
  return forward;
}

void fill(SCC_RefDList &list, std::initializer_list<Named *> nodes) {
  for (Named *node : nodes) list += *node;
}

struct Counted : SCC_DListNode<Counted> {
  explicit Counted(int value) : m_Value(value) { ++s_Alive; }
  ~Counted() { --s_Alive; }
  int m_Value;
  static int s_Alive;
};
int Counted::s_Alive = 0;

template <class List>
std::vector<int> values(List const &list) {
  std::vector<int> out;
  for (Counted *node = list.GetHead(); node != nullptr; node = node->m_Next) out.push_back(node->m_Value);
  return out;
}

}  // namespace

// A node leaving its list fixes the head and the tail wherever it stood. A node that
// was only given a list (never linked) must not unlink anything when it changes again.
TEST(SccRefDList, ChangeListFixesHeadAndTail) {
  struct Case {
    int leaving;
    char const *remaining;
  } const cases[] = {{0, "b c "}, {1, "a c "}, {2, "a b "}};
  for (auto const &c : cases) {
    SCOPED_TRACE(c.leaving);
    SCC_RefDList list, other;
    Named nodes[] = {Named("a"), Named("b"), Named("c")};
    fill(list, {&nodes[0], &nodes[1], &nodes[2]});
    Named &leaving = nodes[c.leaving];
    leaving.ChangeList(&other);
    EXPECT_EQ(names(list), c.remaining);
    EXPECT_EQ(leaving.GetList(), &other);
    EXPECT_EQ(leaving.m_Next, nullptr);
    EXPECT_EQ(leaving.m_Prev, nullptr);
    EXPECT_TRUE(list.IsValid());
  }
  SCC_RefDList single, list;
  Named only("only", &single), a("a", &list), b("b", &list), loose("loose");
  only.ChangeList(nullptr);
  EXPECT_TRUE(single.IsEmpty());
  EXPECT_EQ(single.GetTail(), nullptr);
  loose.ChangeList(&list);
  loose.ChangeList(nullptr);
  EXPECT_EQ(names(list), "b a ");
}

// Each linking operation first takes the node out of the list it was in; bad arguments
// are reported and change nothing (without an assertion manager they return null).
TEST(SccRefDList, LinkingMovesNodesAndRefusesBadArguments) {
  SCC_RefDList first, second;
  Named a("a"), b("b"), c("c");
  first.AddTail(&a);
  first.AddTail(&b);
  first.AddHead(&c);
  EXPECT_EQ(names(first), "c a b ");
  second.AddHead(&a);
  second.InsertAfter(&a, &c);
  second.InsertBefore(&a, &b);
  EXPECT_EQ(names(first), "");
  EXPECT_EQ(names(second), "b a c ");
  EXPECT_EQ(second.RemoveHead(), &b);
  EXPECT_EQ(second.RemoveTail(), &c);
  EXPECT_EQ(names(second), "a ");
  EXPECT_EQ(b.GetList(), nullptr);

  first += b;
  EXPECT_EQ(second.AddHead(nullptr), nullptr);
  EXPECT_EQ(second.AddTail(nullptr), nullptr);
  EXPECT_EQ(second.Remove(nullptr), nullptr);
  EXPECT_EQ(second.InsertBefore(nullptr, &c), nullptr);
  EXPECT_EQ(second.InsertAfter(&b, &c), nullptr);  // b is in the other list
  EXPECT_EQ(second.InsertBefore(&a, &a), nullptr);
  EXPECT_EQ(second.InsertAfter(&a, nullptr), nullptr);
  EXPECT_EQ(names(second), "a ");
  EXPECT_EQ(names(first), "b ");
  EXPECT_EQ(c.GetList(), nullptr);
  EXPECT_TRUE(first.IsValid());
  EXPECT_TRUE(second.IsValid());
}

// Copy-constructing a node that is in a list puts the copy just before its source;
// assigning moves the target just before the source. A destroyed node leaves its list.
TEST(SccRefDList, NodeCopiesAssignmentsAndDestruction) {
  SCC_RefDList list, other;
  Named a("a", &list), b("b", &list);  // each added at the head: b a
  Named copy(a);
  EXPECT_EQ(names(list), "b a' a ");
  Named mover("m", &other);
  mover = b;
  EXPECT_EQ(names(list), "m b a' a ");
  EXPECT_TRUE(other.IsEmpty());
  Named loose("loose");
  mover = loose;  // an unlisted source leaves the target in no list
  EXPECT_EQ(mover.GetList(), nullptr);
  EXPECT_EQ(names(list), "b a' a ");
  Named looseCopy(loose);
  EXPECT_EQ(looseCopy.GetList(), nullptr);
  {
    Named c("c", &list);
    EXPECT_EQ(names(list), "c b a' a ");
  }
  EXPECT_EQ(names(list), "b a' a ");
}

// Assignment takes over the other chain, leaving the target's old nodes in no list; so do the copy constructor and
// Merge (to the tail, head first). A destroyed list leaves its nodes listless.
TEST(SccRefDList, ListsTakeOverChains) {
  SCC_RefDList target, source;
  Named old("old", &target), a("a"), b("b"), c("c"), d("d");
  fill(source, {&a, &b});
  target = source;
  EXPECT_EQ(names(target), "a b ");
  EXPECT_TRUE(source.IsEmpty());
  EXPECT_EQ(old.GetList(), nullptr);
  EXPECT_EQ(old.m_Next, nullptr);
  EXPECT_EQ(a.GetList(), &target);
  EXPECT_TRUE(target.IsValid());
  SCC_RefDList moved(target);
  EXPECT_EQ(names(moved), "a b ");
  EXPECT_EQ(b.GetList(), &moved);

  fill(source, {&c, &d});
  moved.Merge(source);
  EXPECT_EQ(names(moved), "a b c d ");
  EXPECT_TRUE(source.IsEmpty());
  EXPECT_TRUE(moved.IsValid());
  moved.Merge(moved);
  EXPECT_EQ(names(moved), "a b c d ");
  {
    SCC_RefDList temporary;
    fill(temporary, {&c, &d});
  }
  EXPECT_EQ(c.GetList(), nullptr);
  EXPECT_EQ(c.m_Next, nullptr);
  EXPECT_EQ(names(moved), "a b ");
}

// NotifyNodes returns the last result (0 for an empty list), tells nodes linked
// behind the current one, and goes on when a node leaves the list during its call.
TEST(SccRefDList, NotifyNodesWalksChangingLists) {
  struct Reacting : Named {
    using Named::Named;
    int OnNotification(int code, void *param) override {
      static_cast<std::string *>(param)->append(m_Name);
      if (m_Action) m_Action();
      return code + static_cast<int>(m_Name.size());
    }
    std::function<void()> m_Action;
  };
  SCC_RefDList list, elsewhere;
  std::string seen;
  EXPECT_EQ(list.NotifyNodes(4, &seen), 0);

  Reacting a("a"), b("bb"), c("c"), late("late");
  fill(list, {&a, &b, &c});
  a.m_Action = [&] { list.InsertAfter(&a, &late); };
  b.m_Action = [&] { elsewhere += b; };
  EXPECT_EQ(list.NotifyNodes(4, &seen), 5);  // c's result: 4 + 1
  EXPECT_EQ(seen, "alatebbc");
  EXPECT_EQ(names(list), "a late c ");

  seen.clear();
  a.m_Action = [&] { list.Remove(&a); };  // the head leaves: go on from the new head
  late.m_Action = nullptr;
  EXPECT_EQ(list.NotifyNodes(1, &seen), 2);
  EXPECT_EQ(seen, "alatec");
  EXPECT_EQ(SCC_DListRefNode().OnNotification(9, nullptr), 9);
}

// An owning list deletes its nodes when emptied or destroyed; a linking one never
// does, and removal hands the node back.
TEST(SccList, OwnershipFlag) {
  Counted kept(0);
  {
    SCC_DList<Counted, 1> owning;
    owning.AddTail(new Counted(1));
    owning.AddTail(new Counted(2));
    Counted *removed = owning.RemoveHead();
    EXPECT_EQ(Counted::s_Alive, 3);
    delete removed;
  }
  EXPECT_EQ(Counted::s_Alive, 1);
  {
    SCC_SList<Counted, 1> owning;
    owning.AddHead(new Counted(3));
    owning.RemoveAll();
    EXPECT_EQ(Counted::s_Alive, 1);
    SCC_DList<Counted, 0> linking;
    linking.AddTail(&kept);
  }
  EXPECT_EQ(Counted::s_Alive, 1);
}

// Doubly linked insertions and removals at both ends and in the middle keep the
// head and tail right; the singly linked list removes by walking.
TEST(SccList, LinkOrder) {
  Counted n1(1), n2(2), n3(3), n4(4);
  SCC_DList<Counted> dlist;
  dlist.AddTail(&n2);
  dlist.AddHead(&n1);
  dlist.InsertAfter(&n2, &n4);
  dlist.InsertBefore(&n4, &n3);
  EXPECT_EQ(values(dlist), (std::vector<int>{1, 2, 3, 4}));
  dlist.Remove(&n4);
  EXPECT_EQ(dlist.GetTail(), &n3);
  dlist.Remove(&n1);
  EXPECT_EQ(dlist.GetHead(), &n2);
  EXPECT_EQ(dlist.RemoveTail(), &n3);
  EXPECT_EQ(dlist.RemoveTail(), &n2);
  EXPECT_EQ(dlist.RemoveTail(), nullptr);
  EXPECT_TRUE(dlist.IsEmpty());

  SCC_SList<Counted> slist;
  slist.AddHead(&n3);
  slist.AddHead(&n1);
  slist.InsertAfter(&n1, &n2);
  EXPECT_EQ(values(slist), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(slist.GetCount(), 3);
  EXPECT_EQ(slist.Remove(&n4), nullptr);
  EXPECT_EQ(slist.Remove(&n2), &n2);
  EXPECT_EQ(values(slist), (std::vector<int>{1, 3}));
  int walked = 0;
  for (SCC_SList<Counted>::Iterator it(slist); it.IsValid(); it.Next()) walked += it.GetNode()->m_Value;
  EXPECT_EQ(walked, 4);
}
