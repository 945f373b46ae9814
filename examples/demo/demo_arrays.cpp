//===- examples/demo/demo_arrays.cpp - Arrays: a pad list of a footprint ===//
//
// The host keeps the pads of a footprint in a sortable array of shared pads. The
// list grows at both ends, is shared with a snapshot until one of them is written,
// is sorted by pad number descending, and an iterator follows one pad while pads
// are inserted and deleted around it.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

namespace {

/// A pad of the footprint, shared between the lists that hold it.
struct Pad : SCC_SharedBuffer {
  Pad(char const *name, int number) : m_Name(name), m_Number(number) {}
  virtual ~Pad() { std::printf("  (pad %s freed)\n", static_cast<char const *>(m_Name)); }
  SYS_String m_Name;
  int m_Number;
};
typedef SCC_SharedPointer<Pad> PadRef;
typedef SCC_SortableArray<PadRef> PadList;

int byNumber(PadRef const &a, PadRef const &b) { return a->m_Number - b->m_Number; }

/// Prints the bounds, the room and the pads of a list. Reading by index gives a
/// shared list its own buffer, so this is only called on private lists.
void show(char const *title, PadList &pads) {
  _SCC_ArrayBuffer const *const buffer = pads.GetData();
  std::printf("  %-22s [%d, %d) in room [%d, %d):", title, pads.GetLowerBound(), pads.GetUpperBound(),
              buffer != nullptr ? buffer->m_AllocLower : 0, buffer != nullptr ? buffer->m_AllocUpper : 0);
  for (int i = pads.GetLowerBound(); i < pads.GetUpperBound(); ++i) {
    Pad *const pad = pads[i];
    std::printf(" %d:%s", i, pad != nullptr ? static_cast<char const *>(pad->m_Name) : "-");
  }
  std::printf("\n");
}

/// The host's change listener: says what each notification of the list means.
int announce(int code, SCC_ArrayParam *p) {
  switch (code) {
    case SCC_ArrayInserted:
      std::printf("  -> inserted %d at %d: run from %d moved to %d, run ending %d moved to %d\n", p->count, p->index,
                  p->runFirstFrom, p->runFirstTo, p->runLastFrom, p->runLastTo);
      break;
    case SCC_ArrayRemoved:
      std::printf("  -> about to remove %d from %d\n", p->removedCount, p->removedFrom);
      break;
    case SCC_ArrayRebuilt:
      std::printf("  -> the list moved into a new buffer\n");
      break;
  }
  return 0;
}

}  // namespace

void demoArrays() {
  demoHeading("Arrays: the pad list of a footprint");
  PadList pads(byNumber);
  SCC_EventHook<SCC_ArrayParam> listener(announce);
  pads.RegisterIterator(listener);

  std::printf("Pads 1 to 4 are appended at the top, each written one past the upper bound:\n");
  char const *const names[] = {"A1", "A2", "A3", "A4"};
  for (int n = 1; n <= 4; ++n) pads[pads.GetUpperBound()] = new Pad(names[n - 1], n);
  show("appended", pads);
  std::printf("Two mounting holes go below, written one under the lower bound:\n");
  pads[pads.GetLowerBound() - 1] = new Pad("MH2", 0);
  pads[pads.GetLowerBound() - 1] = new Pad("MH1", -1);
  show("prepended", pads);

  PadList::Iterator cursor(&pads, 2);
  std::printf("An iterator stands on %s at index %d.\n", static_cast<char const *>((*cursor)->m_Name),
              cursor.GetIndex());

  std::printf("\nA snapshot for undo shares the buffer until one side writes:\n");
  PadList snapshot(pads);
  std::printf("  the buffer has %ld holders\n", pads.GetData()->GetRefCount());
  snapshot[0] = new Pad("A1'", 1);
  std::printf("  after the snapshot replaced pad 1: list buffer %s snapshot buffer, %ld holder(s) each\n",
              pads.GetData() == snapshot.GetData() ? "is the" : "is not the", pads.GetData()->GetRefCount());
  show("list", pads);
  show("snapshot", snapshot);
  std::printf("  pad A2 is held by both: %ld holders\n", pads[1]->GetRefCount());

  std::printf("\nThe list is sorted by pad number, descending:\n");
  pads.Sort(-1);
  show("sorted", pads);
  cursor.SetIndex(pads.GetLowerBound());
  std::printf("The iterator is put on %s at index %d.\n", static_cast<char const *>((*cursor)->m_Name),
              cursor.GetIndex());

  std::printf("\nTwo test points are inserted in front of it:\n");
  pads.Insert(cursor.GetIndex(), 2);
  pads[cursor.GetIndex() - 2] = new Pad("TP1", 90);
  pads[cursor.GetIndex() - 1] = new Pad("TP2", 91);
  show("inserted", pads);
  std::printf("  the iterator follows %s to index %d\n", static_cast<char const *>((*cursor)->m_Name),
              cursor.GetIndex());

  std::printf("The pad after it is deleted, then the pad it stands on:\n");
  pads.Delete(cursor.GetIndex() + 1, 1);
  show("deleted one", pads);
  pads.Delete(cursor.GetIndex(), 1);
  std::printf("  the iterator now stands %s\n", cursor.GetIndex() == SYS_Nowhere ? "nowhere" : "somewhere");
  show("deleted another", pads);

  std::printf("\nThe lists go out of scope; each pad is freed with its last holder:\n");
}
