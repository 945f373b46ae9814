//===- tests/sys_geomframework_test.cpp - Cursors, iterators, root rings ===//
#include "sys_geometry.h"
#include "sys_geomnode.h"
#include "sys_stdinterface.h"
#include "tests/vtable_slot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <vector>

namespace {

std::vector<SYS_Handle> walk(SYS_StdInterface &cursor) {
  std::vector<SYS_Handle> handles;
  for (cursor.GetFirst(nullptr); cursor.IsValid() && handles.size() <= 10; cursor.GetNext())
    handles.push_back(cursor.GetHandle());
  handles.push_back(cursor.GetHandle());
  return handles;
}

struct Node : SYS_GeomNode {
  explicit Node(int type = 0) : SYS_GeomNode(static_cast<SGN_Type>(type)) {}
  Node(Node const &other) = default;
  Node &operator=(Node const &other) = default;
};
using Ring = std::vector<SYS_GeomNode const *>;

/// The ring as seen from `start`: start, then GetRoot() until back at start (at most 20).
Ring ring(SYS_GeomNode const &start) {
  Ring nodes{&start};
  for (SYS_GeomNode const *p = start.GetRoot(); p != nullptr && p != &start && nodes.size() < 20; p = p->GetRoot())
    nodes.push_back(p);
  return nodes;
}

/// A node a search found and the node it must find.
struct FoundCase { char const *name; SYS_GeomNode const *found, *expected; };
void expectFound(std::vector<FoundCase> const &cases) {
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.found, c.expected);
  }
}

SGN_Type type(int t) { return static_cast<SGN_Type>(t); }

}  // namespace

// A walk goes 1 to the maximum and ends on 0; GetNext is handle + 1 unless that passes the maximum (no wrap).
TEST(StdInterface, WalksOneToMaximum) {
  struct Case { SYS_Handle max; std::vector<SYS_Handle> handles; } cases[] = {
      {3, {1, 2, 3, 0}}, {1, {1, 0}}, {0, {0}}, {-4, {0}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.max);
    SYS_StdInterface cursor(c.max);
    EXPECT_EQ(walk(cursor), c.handles);
  }
  struct Step { SYS_Handle max, handle, next; } steps[] = {
      {5, 0, 1}, {5, 4, 5}, {5, 5, 0}, {5, 9, 0}, {INT_MAX, INT_MAX, 0},
  };
  for (auto const &c : steps) {
    SCOPED_TRACE(std::to_string(c.handle) + " of " + std::to_string(c.max));
    SYS_StdInterface cursor(c.max);
    cursor.SetHandle(c.handle, nullptr);
    cursor.GetNext();
    EXPECT_EQ(cursor.GetHandle(), c.next);
  }
  EXPECT_EQ(SYS_StdInterface().GetChangeEvent(nullptr), nullptr);  // the set never changes
}

// DefaultSort is a - b while that fits an int, and keeps its sign beyond (LP64 handles may be far apart).
TEST(StdInterface, DefaultSortIsTheSaturatedDifference) {
  struct Case { SYS_Handle a, b; int result; } cases[] = {
      {2, 5, -3}, {5, 2, 3}, {7, 7, 0}, {INT_MIN, 1, INT_MIN}, {INT_MAX, -1, INT_MAX}, {INT_MIN, INT_MAX, INT_MIN},
      {-1, INT_MAX, INT_MIN},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(std::to_string(c.a) + " - " + std::to_string(c.b));
    EXPECT_EQ(SYS_StdInterface::DefaultSort(c.a, c.b), c.result);
  }
  if (sizeof(SYS_Handle) == 8) {
    SYS_Handle const far = static_cast<SYS_Handle>(INT64_C(1) << 40);
    EXPECT_EQ(SYS_StdInterface::DefaultSort(far, 1), INT_MAX);
    EXPECT_EQ(SYS_StdInterface::DefaultSort(1, far), INT_MIN);
  }
  std::vector<SYS_Handle> handles{9, -3, INT_MAX, 0, INT_MIN, 4};
  std::sort(handles.begin(), handles.end(),
            [](SYS_Handle a, SYS_Handle b) { return SYS_StdInterface::DefaultSort(a, b) < 0; });
  EXPECT_TRUE(std::is_sorted(handles.begin(), handles.end()));
}

// The host's overrides rely on the slot order: the cursor's eight operations, then the iterator's eight values.
TEST(StdInterface, VirtualSlotsKeepTheirOrder) {
  long const slots[] = {
      vtableSlot(&SYS_StdInterface::GetChangeEvent),     vtableSlot(&SYS_StdInterface::SetMaxHandle),
      vtableSlot(&SYS_StdInterface::IsValid),            vtableSlot(&SYS_StdInterface::SetHandle),
      vtableSlot(&SYS_StdInterface::GetHandle),          vtableSlot(&SYS_StdInterface::GetFirst),
      vtableSlot(&SYS_StdInterface::GetNext),            vtableSlot(&SYS_StdInterface::OnUpdatePointers),
      vtableSlot(&SYS_GeomIterator::GetObjectType),      vtableSlot(&SYS_GeomIterator::GetPointValue),
      vtableSlot(&SYS_GeomIterator::GetDoublePointValue), vtableSlot(&SYS_GeomIterator::GetLocationValue),
      vtableSlot(&SYS_GeomIterator::GetCircleValue),     vtableSlot(&SYS_GeomIterator::GetSegmentValue),
      vtableSlot(&SYS_GeomIterator::GetArcValue),        vtableSlot(&SYS_GeomIterator::GetRectangleValue),
  };
  for (long i = 0; i < 16; ++i) EXPECT_EQ(slots[i], i) << "operation " << i << " in declaration order";
  EXPECT_EQ(vtableSlot(&SYS_Geometry::GetGeometry), 0);
  EXPECT_EQ(vtableSlot(&SYS_Geometry::IsValid), 1);
}

// A node alone is a ring of one: no next node, nothing found, and including or excluding itself changes nothing.
TEST(GeomNode, AloneFindsNothing) {
  Node alone(1);
  alone.ExcludeRoot(&alone);
  alone.IncludeRoot(&alone);
  alone.IncludeRoot(nullptr);
  alone.ExcludeRoot(nullptr);
  expectFound({
      {"root", alone.GetRoot(), nullptr}, {"geometry", alone.GetNextGeomRoot(), nullptr},
      {"database", alone.GetDBRoot(), nullptr}, {"next of itself", alone.GetNextRoot(&alone), nullptr},
      {"previous of itself", alone.GetPrevRoot(&alone), nullptr},
      {"previous of null", alone.GetPrevRoot(nullptr), nullptr},
      {"next of null by type", alone.GetNextRoot(nullptr, SGN_DBRoot), nullptr},
  });
}

// Including puts a node right after the head (the last included comes first); searches find the first of a type.
TEST(GeomNode, IncludeAndSearch) {
  Node head, a(SGN_DBRoot), b(1), brt(SGN_BRTRoot), geom2(2);
  head.IncludeRoot(&a);
  head.IncludeRoot(&b);
  EXPECT_EQ(ring(head), (Ring{&head, &b, &a}));
  expectFound({
      {"database", head.GetDBRoot(), &a}, {"geometry", head.GetNextGeomRoot(), &b},
      {"no BRT", head.GetBRTRoot(), nullptr}, {"after b", head.GetNextRoot(&b), &a},
      {"after a is the head", head.GetNextRoot(&a), nullptr}, {"before the head", head.GetPrevRoot(&head), &a},
      {"before b from a", head.GetPrevRoot(&a), nullptr}, {"from b round to a", head.GetPrevRoot(&b), &a},
  });
  a.IncludeRoot(&brt);
  a.IncludeRoot(&geom2);
  EXPECT_EQ(ring(head), (Ring{&head, &b, &a, &geom2, &brt}));
  expectFound({
      {"BRT", head.GetBRTRoot(), &brt}, {"type 2 after b", head.GetNextRoot(&b, type(2)), &geom2},
      {"type 1 lies behind", head.GetNextRoot(&geom2, type(1)), nullptr},
      // Searching from another node of the same ring stops at that node.
      {"geometry from a", a.GetNextGeomRoot(), &geom2}, {"geometry from brt", brt.GetNextGeomRoot(), &b},
      {"database from geom2", geom2.GetDBRoot(), &a}, {"database from a", a.GetDBRoot(), nullptr},
      {"previous from b's side", b.GetPrevRoot(&b), &head},
  });
}

// A walk to a node's predecessor does not pass a node of type 6: GetPrevRoot gives null, ExcludeRoot does nothing.
TEST(GeomNode, TypeSixStopsPredecessorWalks) {
  Node head, a(1), barrier(6), b(2);
  head.IncludeRoot(&b);
  head.IncludeRoot(&barrier);
  head.IncludeRoot(&a);  // head, a, barrier, b
  EXPECT_EQ(head.GetPrevRoot(&head), nullptr);
  EXPECT_EQ(head.GetPrevRoot(&barrier), &b);  // the walk starts behind the barrier
  b.ExcludeRoot(&a);  // the walk from a meets the barrier before reaching the head
  EXPECT_EQ(ring(head), (Ring{&head, &a, &barrier, &b}));
  head.ExcludeRoot(&barrier);  // behind it: b, head, a; a's next is the barrier
  EXPECT_EQ(ring(head), (Ring{&head, &a, &b}));
  EXPECT_EQ(ring(barrier), (Ring{&barrier}));
  EXPECT_EQ(head.GetNextGeomRoot(), &a);
}

// A node of another ring, or a copy that took a node's link, never makes a walk spin: it ends finding nothing.
TEST(GeomNode, ForeignRingsEndTheWalk) {
  Node head, a(1), b(1), other, x(3), y(3);
  head.IncludeRoot(&a);
  head.IncludeRoot(&b);
  other.IncludeRoot(&x);
  other.IncludeRoot(&y);
  Node copy;
  copy = a;  // copy points to the head, but nothing points to the copy
  expectFound({
      {"database from x", head.GetNextRoot(&x, SGN_DBRoot), nullptr}, {"previous of x", head.GetPrevRoot(&x), nullptr},
      {"found before going round", head.GetNextRoot(&x, type(3)), &y}, {"copy's root", copy.GetRoot(), &head},
      {"copy's geometry", copy.GetNextGeomRoot(), &b}, {"copy's BRT", copy.GetBRTRoot(), nullptr},
      {"copy's predecessor", copy.GetPrevRoot(&copy), nullptr},
  });
  copy.ExcludeRoot(&copy);  // it has no predecessor: nothing changes
  EXPECT_EQ(ring(head), (Ring{&head, &b, &a}));
}

// A chain that runs into a ring without coming back to its first node: searches find what the ring holds and
// end when they go round it (the walk's mark moves into the ring), and no predecessor exists.
TEST(GeomNode, ChainIntoAnotherRingEnds) {
  Node lead, tail, head, a(SGN_DBRoot), b(1);
  head.IncludeRoot(&b);
  head.IncludeRoot(&a);  // head, a, b
  lead.SetRoot(&tail);
  tail.SetRoot(&head);
  expectFound({
      {"database through the tail", lead.GetDBRoot(), &a}, {"no BRT", lead.GetBRTRoot(), nullptr},
      {"no predecessor", lead.GetPrevRoot(&lead), nullptr},
  });
  lead.ExcludeRoot(&lead);
  EXPECT_EQ(lead.GetRoot(), &tail);
  EXPECT_EQ(ring(head), (Ring{&head, &a, &b}));
}

// Random inclusions and exclusions agree with a model of rings as lists.
TEST(GeomNode, RandomOperationsMatchAModel) {
  std::mt19937 rng(8);
  std::vector<Node> nodes(12);
  for (size_t i = 0; i < nodes.size(); ++i) nodes[i].SetGeomType(type(static_cast<int>(i % 7)));
  std::vector<size_t> model(nodes.size());  // model[i]: the node following i
  for (size_t i = 0; i < model.size(); ++i) model[i] = i;
  auto index = [&](SYS_GeomNode const *p) { return static_cast<size_t>(static_cast<Node const *>(p) - nodes.data()); };
  for (int step = 0; step < 2000; ++step) {
    size_t const i = rng() % nodes.size(), j = rng() % nodes.size();
    if (rng() % 2 == 0) {
      if (model[j] != j || i == j) continue;  // include only nodes that are alone
      nodes[i].IncludeRoot(&nodes[j]);
      model[j] = model[i];
      model[i] = j;
    } else {
      nodes[i].ExcludeRoot(&nodes[j]);
      if (model[j] == j) continue;
      size_t before = j;
      bool barrier = false;
      do {
        before = model[before];
        barrier = barrier || before % 7 == 6;
      } while (model[before] != j);
      if (barrier) continue;
      model[before] = model[j];
      model[j] = j;
    }
    for (size_t k = 0; k < nodes.size(); ++k) {
      SYS_GeomNode const *next = nodes[k].GetRoot();
      ASSERT_EQ(next == nullptr ? k : index(next), model[k]) << "step " << step << " node " << k;
    }
    size_t expected = nodes.size();  // the first node of type 4 after node i, by the model
    for (size_t p = model[i]; p != i && expected == nodes.size(); p = model[p])
      if (p % 7 == 4) expected = p;
    SYS_GeomNode const *found = nodes[i].GetDBRoot();
    ASSERT_EQ(found == nullptr ? nodes.size() : index(found), expected) << "step " << step;
  }
}
