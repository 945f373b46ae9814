//===- tests/scc_shared_test.cpp - Shared objects and their holders -----===//
#include "scc_shared.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

namespace {

/// A shared object that counts how many of its kind were destroyed.
struct Pad : SCC_SharedBuffer {
  static inline int s_Destroyed = 0;
  explicit Pad(int n = 0) : number(n) {}
  virtual ~Pad() { ++s_Destroyed; }
  int number;
};

/// A class whose shared part is not at the start of the object.
struct Label {
  virtual ~Label() = default;
  std::string text = "label";
};
struct LabelledPad : Label, Pad {};

/// An object that holds a shared object as a member.
struct Footprint { Pad pad; };

}  // namespace

// The marker of a block is negative for every address of either data model, also those above 2 GiB that a 32-bit
// process under a 64-bit kernel gets, and different for every address at which an object can start.
TEST(SccSharedBuffer, AllocationMarkerIsNegativeAndUnique) {
  constexpr std::uintptr_t align = alignof(SCC_SharedBuffer);
  struct Case { char const *name; std::uintptr_t address; } const cases[] = {
      {"null", 0}, {"first aligned", align}, {"below 2 GiB", 0x7FFFFFF0u}, {"2 GiB", 0x80000000u},
      {"top of 4 GiB", 0xFFFFFFF0u & ~(align - 1)}, {"highest aligned address", UINTPTR_MAX & ~(align - 1)},
  };
  std::set<SYS_Handle> seen;
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    auto const at = [](std::uintptr_t address) { return reinterpret_cast<void const *>(address); };
    SYS_Handle const marker = SCC_SharedBuffer::AllocationMarker(at(c.address));
    EXPECT_LT(marker, 0);
    EXPECT_TRUE(seen.insert(marker).second);
    EXPECT_NE(SCC_SharedBuffer::AllocationMarker(at(c.address + align)), marker);  // the next object start
  }
}

// The shared operator new remembers its block; the first holder of an object made
// there gets 1 and deletes it when it lets go.
TEST(SccSharedBuffer, SharedNewObjectIsDeletedByItsLastHolder) {
  Pad::s_Destroyed = 0;
  Pad *const pad = new Pad(7);
  EXPECT_EQ(SCC_SharedBuffer::s_LastAllocated, static_cast<void *>(pad));  // what new gave
  EXPECT_EQ(pad->GetRefCount(), 0);  // never referenced yet
  EXPECT_FALSE(pad->IsShared());
  {
    SCC_SharedPointer<Pad> first(pad);
    EXPECT_EQ(pad->GetRefCount(), 1);
    SCC_SharedPointer<Pad> second(first);
    EXPECT_EQ(pad->GetRefCount(), 2);
    EXPECT_TRUE(pad->IsShared());
  }
  EXPECT_EQ(Pad::s_Destroyed, 1);
}

// Objects not made by the shared operator new (on the stack, static, a member, or made after another shared block)
// count 2 from their first holder on and are never deleted by their holders.
TEST(SccSharedBuffer, OtherObjectsAreNeverDeletedByHolders) {
  static Pad staticPad;
  Pad stackPad;
  Footprint footprint;
  delete new Pad;  // a shared block given out last and freed: its address may come back
  auto *const heapFootprint = new Footprint;  // an ordinary new: its pad is a member
  SCC_SharedPointer<Pad> alive(new Pad);      // a shared block given out last, alive
  Pad laterPad;
  struct Case { char const *name; Pad *pad; } const cases[] = {
      {"static", &staticPad}, {"stack", &stackPad},      {"member", &footprint.pad},
      {"member of a heap object", &heapFootprint->pad}, {"made after a shared block", &laterPad},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    Pad::s_Destroyed = 0;
    EXPECT_EQ(c.pad->GetRefCount(), 0);
    {
      SCC_SharedPointer<Pad> holder(c.pad);
      EXPECT_EQ(c.pad->GetRefCount(), 2);
      EXPECT_TRUE(c.pad->IsShared());
    }
    EXPECT_EQ(c.pad->GetRefCount(), 1);
    EXPECT_EQ(Pad::s_Destroyed, 0);
  }
  delete heapFootprint;
}

// Freeing the block given out last forgets it; freeing an older one does not.
TEST(SccSharedBuffer, FreedBlockIsForgotten) {
  Pad *const older = new Pad;
  Pad *const newer = new Pad;
  delete older;
  EXPECT_EQ(SCC_SharedBuffer::s_LastAllocated, static_cast<void *>(newer));
  delete newer;
  EXPECT_EQ(SCC_SharedBuffer::s_LastAllocated, nullptr);
}

// Copying makes a count of the copy's own; assignment leaves the target's count.
TEST(SccSharedBuffer, CopyAndAssignmentKeepCountsApart) {
  SCC_SharedPointer<Pad> held(new Pad(1));
  Pad copy(*held);  // on the stack: its own marker, not the source's count
  EXPECT_EQ(copy.GetRefCount(), 0);
  EXPECT_EQ(copy.Ref(&copy), 2);

  SCC_SharedPointer<Pad> other(new Pad(2));
  SCC_SharedPointer<Pad> otherAgain(other);
  *held = *other;
  EXPECT_EQ(held->GetRefCount(), 1);
  EXPECT_EQ(held->number, 2);
  EXPECT_EQ(other->GetRefCount(), 2);
}

// A holder of a base that does not start the object still passes the object's start
// to Ref, so the object is recognised as shared-made and freed.
TEST(SccSharedPointer, BaseAtAnOffsetIsStillOwned) {
  Pad::s_Destroyed = 0;
  auto *const labelled = new LabelledPad;
  Pad *const base = labelled;
  ASSERT_NE(static_cast<void *>(base), static_cast<void *>(labelled));
  {
    SCC_SharedPointer<Pad> holder(base);
    EXPECT_EQ(base->GetRefCount(), 1);
  }
  EXPECT_EQ(Pad::s_Destroyed, 1);
}

// Reassignment takes the new object before letting go of the old one: assigning the
// object to itself or its holder to itself never frees it.
TEST(SccSharedPointer, AssignmentTakesBeforeLettingGo) {
  Pad::s_Destroyed = 0;
  SCC_SharedPointer<Pad> holder(new Pad(3));
  holder = holder.Get();
  auto &alias = holder;
  holder = alias;
  EXPECT_EQ(Pad::s_Destroyed, 0);
  EXPECT_EQ(holder->GetRefCount(), 1);

  holder = new Pad(4);
  EXPECT_EQ(Pad::s_Destroyed, 1);
  EXPECT_EQ(holder->number, 4);
  holder = nullptr;
  EXPECT_EQ(Pad::s_Destroyed, 2);
  EXPECT_EQ(holder.Get(), nullptr);
}

// Letting go clears the holder before the count drops, so a destructor that looks at its holder sees it empty.
TEST(SccSharedPointer, ReleaseClearsFirst) {
  static SCC_SharedPointer<Pad> *watched = nullptr;
  static bool sawEmpty = false;
  struct Watcher : Pad {
    ~Watcher() override { sawEmpty = watched->Get() == nullptr; }
  };
  SCC_SharedPointer<Pad> holder(new Watcher);
  watched = &holder;
  holder.Release();
  EXPECT_TRUE(sawEmpty);
}
