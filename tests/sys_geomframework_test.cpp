//===- tests/sys_geomframework_test.cpp - Cursors, iterators, root rings ===//
#include "sys_geometry.h"
#include "sys_geomnode.h"
#include "sys_stdinterface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace {

/// The virtual-table slot of a virtual member function (Itanium C++ ABI: the pointer holds
/// 1 + the byte offset of the slot).
template <class F>
long slotOf(F function) {
  struct Representation {
    std::uintptr_t pointer;
    std::ptrdiff_t adjustment;
  } rep;
  static_assert(sizeof(F) == sizeof(Representation), "a member function pointer is two words");
  std::memcpy(&rep, &function, sizeof rep);
  return static_cast<long>((rep.pointer - 1) / sizeof(void *));
}

std::vector<SYS_Handle> walk(SYS_StdInterface &cursor) {
  std::vector<SYS_Handle> handles;
  for (cursor.GetFirst(nullptr); cursor.IsValid(); cursor.GetNext()) {
    handles.push_back(cursor.GetHandle());
    if (handles.size() > 10) break;
  }
  handles.push_back(cursor.GetHandle());
  return handles;
}

struct Node : SYS_GeomNode {
  explicit Node(int type = 0) : SYS_GeomNode(static_cast<SGN_Type>(type)) {}
  Node(Node const &other) = default;
  Node &operator=(Node const &other) = default;
};

/// The ring as seen from `start`: start, then GetRoot() until back at start (at most 20).
std::vector<SYS_GeomNode const *> ring(SYS_GeomNode const &start) {
  std::vector<SYS_GeomNode const *> nodes{&start};
  for (SYS_GeomNode const *p = start.GetRoot(); p != nullptr && p != &start && nodes.size() < 20; p = p->GetRoot())
    nodes.push_back(p);
  return nodes;
}

}  // namespace

// GetFirst and GetNext walk 1 to the maximum and end on 0; no positive maximum, no walk.
TEST(StdInterface, WalksOneToMaximum) {
  struct Case {
    char const *name;
    SYS_Handle max;
    std::vector<SYS_Handle> handles;
  } cases[] = {
      {"three", 3, {1, 2, 3, 0}}, {"one", 1, {1, 0}}, {"zero", 0, {0}}, {"negative", -4, {0}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_StdInterface cursor(c.max);
    EXPECT_EQ(walk(cursor), c.handles);
  }
  SYS_StdInterface fresh;
  EXPECT_EQ(fresh.IsValid(), 0);
  EXPECT_EQ(fresh.GetChangeEvent(nullptr), nullptr);
}

// GetNext is handle + 1 unless that passes the maximum: from no element it starts at 1, and
// at the largest 32-bit handle it ends instead of wrapping, in both models.
TEST(StdInterface, NextComparesBeforeAdding) {
  SYS_StdInterface cursor(5);
  cursor.SetHandle(0, nullptr);
  cursor.GetNext();
  EXPECT_EQ(cursor.GetHandle(), 1);
  cursor.SetHandle(9, nullptr);  // past the maximum: the walk ends
  cursor.GetNext();
  EXPECT_EQ(cursor.GetHandle(), 0);
  cursor.SetMaxHandle(INT_MAX);
  cursor.SetHandle(INT_MAX, nullptr);
  EXPECT_EQ(cursor.IsValid(), 1);
  cursor.GetNext();
  EXPECT_EQ(cursor.GetHandle(), 0);
}

// DefaultSort is a - b while that fits an int, and keeps its sign beyond (handles that
// carry addresses may be far apart on LP64).
TEST(StdInterface, DefaultSortIsTheSaturatedDifference) {
  struct Case {
    char const *name;
    SYS_Handle a, b;
    int result;
  } cases[] = {
      {"2 and 5", 2, 5, -3},
      {"5 and 2", 5, 2, 3},
      {"equal", 7, 7, 0},
      {"most negative minus one", INT_MIN, 1, INT_MIN},
      {"largest minus minus one", INT_MAX, -1, INT_MAX},
      {"full range", INT_MIN, INT_MAX, INT_MIN},
      {"exactly the most negative int", -1, INT_MAX, INT_MIN},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
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

// The host's overrides rely on the slot order: the cursor's eight operations, then the
// iterator's eight value operations.
TEST(StdInterface, VirtualSlotsKeepTheirOrder) {
  EXPECT_EQ(slotOf(&SYS_StdInterface::GetChangeEvent), 0);
  EXPECT_EQ(slotOf(&SYS_StdInterface::SetMaxHandle), 1);
  EXPECT_EQ(slotOf(&SYS_StdInterface::IsValid), 2);
  EXPECT_EQ(slotOf(&SYS_StdInterface::SetHandle), 3);
  EXPECT_EQ(slotOf(&SYS_StdInterface::GetHandle), 4);
  EXPECT_EQ(slotOf(&SYS_StdInterface::GetFirst), 5);
  EXPECT_EQ(slotOf(&SYS_StdInterface::GetNext), 6);
  EXPECT_EQ(slotOf(&SYS_StdInterface::OnUpdatePointers), 7);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetObjectType), 8);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetPointValue), 9);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetDoublePointValue), 10);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetLocationValue), 11);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetCircleValue), 12);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetSegmentValue), 13);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetArcValue), 14);
  EXPECT_EQ(slotOf(&SYS_GeomIterator::GetRectangleValue), 15);
  EXPECT_EQ(slotOf(&SYS_Geometry::GetGeometry), 0);
  EXPECT_EQ(slotOf(&SYS_Geometry::IsValid), 1);
}

// A geometry iterator starts with maximum 0, answers nothing, and a host iterator that only
// overrides the walk still gets those answers.
TEST(GeomIterator, AnswersNothingUntilOverridden) {
  struct Pads : SYS_GeomIterator {
    Pads() { SetMaxHandle(2); }
  } pads;
  SYS_GeomIterator &it = pads;
  EXPECT_EQ(walk(it), (std::vector<SYS_Handle>{1, 2, 0}));
  it.GetFirst(nullptr);
  EXPECT_EQ(it.GetObjectType(), SYS_NoGeometry);
  EXPECT_EQ(it.GetPointValue(), nullptr);
  EXPECT_EQ(it.GetDoublePointValue(), nullptr);
  EXPECT_EQ(it.GetLocationValue(), nullptr);
  EXPECT_EQ(it.GetCircleValue(), nullptr);
  EXPECT_EQ(it.GetSegmentValue(), nullptr);
  EXPECT_EQ(it.GetArcValue(), nullptr);
  EXPECT_EQ(it.GetRectangleValue(), nullptr);
  SYS_GeomIterator copy(it);
  EXPECT_EQ(copy.GetHandle(), 1);
  copy.GetNext();
  copy.GetNext();
  EXPECT_EQ(copy.IsValid(), 0);
  SYS_GeomIterator plain;
  plain.GetFirst(nullptr);
  EXPECT_EQ(plain.IsValid(), 0);
  SYS_Geometry geometry;
  EXPECT_EQ(geometry.GetGeometry(), SYS_NoGeometry);
  EXPECT_EQ(geometry.IsValid(), 0);
}

// A node alone is a ring of one: no next node, nothing found, and excluding it changes nothing.
TEST(GeomNode, AloneFindsNothing) {
  Node alone(1);
  EXPECT_EQ(alone.GetRoot(), nullptr);
  EXPECT_EQ(alone.GetNextGeomRoot(), nullptr);
  EXPECT_EQ(alone.GetDBRoot(), nullptr);
  EXPECT_EQ(alone.GetNextRoot(&alone), nullptr);
  EXPECT_EQ(alone.GetPrevRoot(&alone), nullptr);
  alone.ExcludeRoot(&alone);
  EXPECT_EQ(alone.GetRoot(), nullptr);
  alone.IncludeRoot(&alone);
  EXPECT_EQ(alone.GetRoot(), nullptr);
  alone.IncludeRoot(nullptr);
  alone.ExcludeRoot(nullptr);
  EXPECT_EQ(alone.GetRoot(), nullptr);
  EXPECT_EQ(alone.GetPrevRoot(nullptr), nullptr);
  EXPECT_EQ(alone.GetNextRoot(nullptr, SGN_DBRoot), nullptr);
  EXPECT_EQ(alone.IsValid(), 1);
  EXPECT_EQ(alone.IsGeomType(), 1);
  alone.SetGeomType(SGN_NotValid);
  EXPECT_EQ(alone.IsValid(), 0);
}

// Including puts a node right after the head, so the last included comes first; searches
// start after the head and find the first node of the type asked for.
TEST(GeomNode, IncludeAndSearch) {
  Node head, a(SGN_DBRoot), b(1), brt(SGN_BRTRoot), geom2(2);
  head.IncludeRoot(&a);
  head.IncludeRoot(&b);  // head, b, a
  EXPECT_EQ(ring(head), (std::vector<SYS_GeomNode const *>{&head, &b, &a}));
  EXPECT_EQ(head.GetDBRoot(), &a);
  EXPECT_EQ(head.GetNextGeomRoot(), &b);
  EXPECT_EQ(head.GetBRTRoot(), nullptr);
  EXPECT_EQ(head.GetNextRoot(&b), &a);
  EXPECT_EQ(head.GetNextRoot(&a), nullptr);  // a's next is the head
  EXPECT_EQ(head.GetPrevRoot(&head), &a);
  EXPECT_EQ(head.GetPrevRoot(&a), nullptr);
  EXPECT_EQ(head.GetPrevRoot(&b), &a);

  a.IncludeRoot(&brt);
  a.IncludeRoot(&geom2);  // head, b, a, geom2, brt
  EXPECT_EQ(head.GetBRTRoot(), &brt);
  EXPECT_EQ(head.GetNextRoot(&b, static_cast<SGN_Type>(2)), &geom2);
  EXPECT_EQ(head.GetNextRoot(&geom2, static_cast<SGN_Type>(1)), nullptr);  // b lies behind
  // Searching from another node of the same ring stops at that node.
  EXPECT_EQ(a.GetNextGeomRoot(), &geom2);
  EXPECT_EQ(brt.GetNextGeomRoot(), &b);
  EXPECT_EQ(geom2.GetDBRoot(), &a);
  EXPECT_EQ(a.GetDBRoot(), nullptr);
  EXPECT_EQ(b.GetPrevRoot(&b), &head);
}

// Excluding a node closes the ring behind it and leaves it alone; given itself, the node
// leaves; given another node of the ring, that node leaves.
TEST(GeomNode, ExcludeClosesTheRing) {
  Node head, a(SGN_DBRoot), b(1), c(2);
  head.IncludeRoot(&a);
  head.IncludeRoot(&b);  // head, b, a
  b.ExcludeRoot(&b);
  EXPECT_EQ(ring(head), (std::vector<SYS_GeomNode const *>{&head, &a}));
  EXPECT_EQ(b.GetRoot(), nullptr);
  EXPECT_EQ(head.GetDBRoot(), &a);
  EXPECT_EQ(head.GetNextGeomRoot(), nullptr);

  head.IncludeRoot(&b);
  b.IncludeRoot(&c);  // head, b, c, a
  head.ExcludeRoot(&c);
  EXPECT_EQ(ring(head), (std::vector<SYS_GeomNode const *>{&head, &b, &a}));
  EXPECT_EQ(c.GetRoot(), nullptr);
  a.ExcludeRoot(&head);  // the head itself may leave
  EXPECT_EQ(ring(b), (std::vector<SYS_GeomNode const *>{&b, &a}));
  EXPECT_EQ(head.GetRoot(), nullptr);
}

// A walk to a node's predecessor does not pass a node of type 6: GetPrevRoot gives null
// and ExcludeRoot leaves the ring as it was.
TEST(GeomNode, TypeSixStopsPredecessorWalks) {
  Node head, a(1), barrier(6), b(2);
  head.IncludeRoot(&b);
  head.IncludeRoot(&barrier);
  head.IncludeRoot(&a);  // head, a, barrier, b
  EXPECT_EQ(head.GetPrevRoot(&head), nullptr);
  EXPECT_EQ(head.GetPrevRoot(&barrier), &b);  // the walk starts behind the barrier
  b.ExcludeRoot(&a);  // the walk from a meets the barrier before reaching the head
  EXPECT_EQ(ring(head), (std::vector<SYS_GeomNode const *>{&head, &a, &barrier, &b}));
  head.ExcludeRoot(&barrier);  // behind it: b, head, a; a's next is the barrier
  EXPECT_EQ(ring(head), (std::vector<SYS_GeomNode const *>{&head, &a, &b}));
  EXPECT_EQ(barrier.GetRoot(), nullptr);
  EXPECT_EQ(head.GetNextGeomRoot(), &a);
}

// A node given from another ring, or a copy that took a node's link, never makes a walk
// spin: the search ends and finds nothing.
TEST(GeomNode, ForeignRingsEndTheWalk) {
  Node head, a(1), b(1);
  head.IncludeRoot(&a);
  head.IncludeRoot(&b);
  Node other, x(3), y(3);
  other.IncludeRoot(&x);
  other.IncludeRoot(&y);
  EXPECT_EQ(head.GetNextRoot(&x, SGN_DBRoot), nullptr);
  EXPECT_EQ(head.GetPrevRoot(&x), nullptr);
  EXPECT_EQ(head.GetNextRoot(&x, static_cast<SGN_Type>(3)), &y);  // found before going round

  Node copy;
  copy = a;  // copy points to the head, but nothing points to the copy
  EXPECT_EQ(copy.GetRoot(), &head);
  EXPECT_EQ(copy.GetNextGeomRoot(), &b);
  EXPECT_EQ(copy.GetBRTRoot(), nullptr);
  EXPECT_EQ(copy.GetPrevRoot(&copy), nullptr);
  copy.ExcludeRoot(&copy);  // it has no predecessor: nothing changes
  EXPECT_EQ(ring(head), (std::vector<SYS_GeomNode const *>{&head, &b, &a}));

  Node self;
  self.SetRoot(&a);  // a lone link into the ring
  self.SetRoot(nullptr);
  EXPECT_EQ(self.GetRoot(), nullptr);
}

// Random inclusions and exclusions agree with a model of rings as lists.
TEST(GeomNode, RandomOperationsMatchAModel) {
  std::mt19937 rng(8);
  std::vector<Node> nodes(12);
  for (size_t i = 0; i < nodes.size(); ++i) nodes[i].SetGeomType(static_cast<SGN_Type>(i % 7));
  // model[i]: the node following i.
  std::vector<size_t> model(nodes.size());
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
    // The first node of type 4 after node i, by the model.
    size_t expected = nodes.size();
    for (size_t p = model[i]; p != i; p = model[p])
      if (p % 7 == 4) {
        expected = p;
        break;
      }
    SYS_GeomNode const *found = nodes[i].GetDBRoot();
    ASSERT_EQ(found == nullptr ? nodes.size() : index(found), expected) << "step " << step;
  }
}
