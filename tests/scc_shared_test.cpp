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
