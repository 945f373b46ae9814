//===- tests/scc_arr_test.cpp - Array bounds, growth, sharing, changes --===//
#include "scc_arr.h"
#include "tests/report_spy.h"
#include "tests/scc_arr_support.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kNew = INT_MIN;  // an element the operation made: its value is not known

/// Checks the known elements of `array` against `expected` (kNew is skipped).
void expectContents(SCC_Array<int> &array, int lower, std::vector<int> const &expected) {
  ASSERT_EQ(array.GetLowerBound(), lower);
  ASSERT_EQ(array.GetCount(), static_cast<int>(expected.size()));
  for (int k = 0; k < static_cast<int>(expected.size()); ++k)
    if (expected[k] != kNew) {
      EXPECT_EQ(array[lower + k], expected[k]) << "at index " << lower + k;
    }
}

/// The bounds and the room of a buffer: lower, upper, alloc lower, alloc upper.
typedef std::array<int, 4> Room;
Room roomOf(_SCC_Array &array) {
  _SCC_ArrayBuffer const *const b = array.GetData();
  return b != nullptr ? Room{b->m_Lower, b->m_Upper, b->m_AllocLower, b->m_AllocUpper} : Room{0, 0, 0, 0};
}

/// An array without storage: the untyped algorithms with the base's bare buffers, recording every copy they ask for.
class BareArray : public _SCC_Array {
public:
  typedef std::array<int, 4> Copy;  // into the current buffer (0 or 1), to slot, from slot, count

  BareArray() = default;
  ~BareArray() override { SetData(nullptr); }
  BareArray &operator=(BareArray &other) {
    _SCC_Array::operator=(other);
    return *this;
  }

  _SCC_ArrayBuffer *GetData() override { return m_Data; }
  int GetUpperBound() const override { return m_Data != nullptr ? m_Data->m_Upper : 0; }
  int GetLowerBound() const override { return m_Data != nullptr ? m_Data->m_Lower : 0; }
  int GetCount() const override { return m_Data != nullptr ? m_Data->m_Upper - m_Data->m_Lower : 0; }

  std::vector<Copy> m_Copies;
  bool m_RecordCopies = true;  // when false, the base reports the copy
  int m_Granularity = -1;      // the base's rule when negative

protected:
  void SetData(_SCC_ArrayBuffer *buffer) override {
    _SCC_ArrayBuffer *const old = m_Data;
    m_Data = buffer;
    if (buffer != nullptr) buffer->Ref(buffer);
    if (old != nullptr && old->Deref() == 0) delete old;
  }
  void CopyData(_SCC_ArrayBuffer *to, int toSlot, int fromSlot, int count) override {
    if (!m_RecordCopies) return _SCC_Array::CopyData(to, toSlot, fromSlot, count);
    m_Copies.push_back(Copy{to == m_Data, toSlot, fromSlot, count});
  }
  int Granularity() override { return m_Granularity < 0 ? _SCC_Array::Granularity() : m_Granularity; }

private:
  _SCC_ArrayBuffer *m_Data = nullptr;
};

/// Makes `array` a new array of `count` elements and returns it.
SCC_Array<int> &grown(SCC_Array<int> &array, int count = 5) { return array = SCC_Array<int>(count); }

}  // namespace

// A buffer made afresh has room for max(request, granularity) more elements at each end that needs it; growth at one
// end keeps the other end's room; an un-shared copy keeps the room of the shared buffer; a buffer is never shrunk; at
// the ends of the index range the room is cut to the range.
TEST(SccArray, RoomFollowsTheGrowthRule) {
  struct Case { char const *name; std::function<void(SCC_Array<int> &, SCC_Array<int> &)> make; Room room;
  } const cases[] = {
      {"new array of 5", [](auto &a, auto &) { a = SCC_Array<int>(5); }, {0, 5, -5, 10}},
      {"grown in place to 6, then written at 10", [](auto &a, auto &) { grown(a)[5] = 0, a[10] = 0; },
       {0, 11, -5, 23}},
      {"empty, written at -1", [](auto &a, auto &) { a[-1] = 0; }, {-1, 0, -2, 1}},
      {"empty, written at 0", [](auto &a, auto &) { a[0] = 0; }, {0, 1, -1, 2}},
      {"empty, written at 4: the lower bound stays 0", [](auto &a, auto &) { a[4] = 0; }, {0, 5, -5, 10}},
      {"written at -6: room below, the room above kept", [](auto &a, auto &) { grown(a)[-6] = 0; },
       {-6, 5, -17, 10}},
      {"written at -5: in the room below", [](auto &a, auto &) { grown(a)[-5] = 0; }, {-5, 5, -5, 10}},
      {"granularity capped at 10000", [](auto &a, auto &) { grown(a, 6000).ChangeBounds(5000, 12001); },
       {5000, 12001, -6000, 22001}},
      {"shrinking keeps the buffer", [](auto &a, auto &) { grown(a).ChangeBounds(1, 3); }, {1, 3, -5, 10}},
      {"un-shared copy keeps the room", [](auto &a, auto &b) { b = grown(a), a[0] = 1; }, {0, 5, -5, 10}},
      {"shared buffer grown at the top", [](auto &a, auto &b) { b = grown(a), a[10] = 1; }, {0, 11, -5, 22}},
      {"insert beyond the room", [](auto &a, auto &) { grown(a).Insert(0, 20); }, {0, 25, -5, 50}},
      {"top of the range", [](auto &a, auto &) { a.ChangeBounds(INT_MAX - 7, INT_MAX - 2); },
       {INT_MAX - 7, INT_MAX - 2, INT_MAX - 12, INT_MAX - 1}},
      {"highest upper bound reached by writing",
       [](auto &a, auto &) { a.ChangeBounds(INT_MAX - 7, INT_MAX - 2), a[INT_MAX - 2] = 5; },
       {INT_MAX - 7, INT_MAX - 1, INT_MAX - 12, INT_MAX - 1}},
      {"bottom of the range", [](auto &a, auto &) { a.ChangeBounds(INT_MIN + 1, INT_MIN + 6); },
       {INT_MIN + 1, INT_MIN + 6, INT_MIN + 1, INT_MIN + 11}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array;
    SCC_Array<int> other;
    c.make(array, other);
    EXPECT_EQ(roomOf(array), c.room);
    EXPECT_EQ(array.GetData()->GetRefCount(), 1);
    EXPECT_EQ(array.GetData()->IsValid(), 1);
  }
}

// ChangeBounds raises code 3 with only the array set when the buffer is replaced
// (growth, un-sharing, dropping every element) and nothing for a change in place.
TEST(SccArray, ChangeBoundsNotifiesOnlyNewBuffers) {
  struct Case { char const *name; std::function<void(SCC_Array<int> &)> change; std::vector<int> codes; bool empty;
  } const cases[] = {
      {"in place", [](auto &a) { a.ChangeBounds(-5, 10); }, {}, false},
      {"past the room", [](auto &a) { a.ChangeBounds(0, 11); }, {3}, false},
      {"upper not above lower", [](auto &a) { a.ChangeBounds(4, 4); }, {3}, true},
      {"write in the room", [](auto &a) { a[9] = 1; }, {}, false},
      {"write past the room", [](auto &a) { a[-6] = 1; }, {3}, false},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array(5);
    ChangeLog log;
    array.RegisterIterator(log);
    c.change(array);
    EXPECT_EQ(log.Codes(), c.codes);
    for (auto const &e : log.m_Entries)
      EXPECT_EQ(fieldsOf(e.param, &array), (ParamFields{0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(array.GetData() == nullptr, c.empty);
    EXPECT_EQ(array.IsEmpty() != 0, c.empty);
  }
  SCC_Array<int> empty;
  ChangeLog log;
  empty.RegisterIterator(log);
  empty.ChangeBounds(3, 1);
  EXPECT_TRUE(log.m_Entries.empty());
}

// Insert makes |count| new elements; the sign chooses which side moves; outside the bounds the array reaches out to the
// new block. Code 1 follows the change and records both runs.
TEST(SccArray, InsertMovesTheRunsAndReportsThem) {
  struct Case { char const *name; bool fromEmpty; int index, count, lower; std::vector<int> contents;
      std::vector<ParamFields> params; } const cases[] = {
      {"inside, count 2", false, 2, 2, 0, {0, 10, kNew, kNew, 20, 30, 40}, {{2, 2, 1, 0, 0, 2, 4, 6, 3, 0, 0}}},
      {"inside, count -2", false, 2, -2, -2, {0, 10, kNew, kNew, 20, 30, 40}, {{2, -2, 1, 0, -2, 2, 4, 4, 3, 0, 0}}},
      {"at the lower bound", false, 0, 3, 0, {kNew, kNew, kNew, 0, 10, 20, 30, 40}, {{0, 3, 1, 0, 0, 0, 4, 7, 5, 0, 0}}},
      {"at the upper bound", false, 5, 2, 0, {0, 10, 20, 30, 40, kNew, kNew}, {{5, 2, 1, 0, 0, 5, 4, 4, 0, 0, 0}}},
      {"below, the block reaching into the array", false, -2, 4, -2, {kNew, kNew, kNew, kNew, 0, 10, 20, 30, 40},
       {{-2, 4, 1, 0, 2, 0, 4, 6, 5, 0, 0}}},
      {"below, the block ending under the array", false, -5, 2, -5,
       {kNew, kNew, kNew, kNew, kNew, 0, 10, 20, 30, 40}, {{-5, 2, 1, 0, 0, 0, 4, 4, 5, 0, 0}}},
      {"below, count -2", false, -3, -2, -5, {kNew, kNew, kNew, kNew, kNew, 0, 10, 20, 30, 40},
       {{-3, -2, 1, 0, 0, 0, 4, 4, 5, 0, 0}}},
      {"above, count 3", false, 8, 3, 0, {0, 10, 20, 30, 40, kNew, kNew, kNew, kNew, kNew, kNew},
       {{8, 3, 1, 0, 0, 5, 4, 4, 0, 0, 0}}},
      {"above, count -4 pulling the elements down", false, 6, -4, -3, {0, 10, 20, 30, 40, kNew, kNew, kNew, kNew},
       {{6, -4, 1, 0, -3, 5, 4, 1, 0, 0, 0}}},
      {"above, count -1 leaving them", false, 7, -1, 0, {0, 10, 20, 30, 40, kNew, kNew},
       {{7, -1, 1, 0, 0, 5, 4, 4, 0, 0, 0}}},
      {"above, count 0 reaching out", false, 7, 0, 0, {0, 10, 20, 30, 40, kNew, kNew},
       {{7, 0, 1, 0, 0, 5, 4, 4, 0, 0, 0}}},
      {"inside, count 0: nothing", false, 3, 0, 0, {0, 10, 20, 30, 40}, {}},
      {"empty, count 3", true, -2, 3, -2, {kNew, kNew, kNew}, {{-2, 3, 1, 0, 0, 0, 0, 0, 0, 0, 0}}},
      {"empty, count -3", true, 2, -3, -1, {kNew, kNew, kNew}, {{2, -3, 1, 0, 0, 0, 0, 0, 0, 0, 0}}},
      {"empty, count 0: nothing", true, 2, 0, 0, {}, {}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array;
    if (!c.fromEmpty) fillTens(array, 0, 5);
    ChangeLog log;
    array.RegisterIterator(log);
    log.m_Action = [&](int, SCC_ArrayParam *) { EXPECT_EQ(array.GetCount(), static_cast<int>(c.contents.size())); };
    array.Insert(c.index, c.count);
    std::vector<ParamFields> params;
    for (auto const &e : log.m_Entries) {
      EXPECT_EQ(e.code, 1);
      params.push_back(fieldsOf(e.param, &array));
    }
    EXPECT_EQ(params, c.params);
    expectContents(array, c.lower, c.contents);
  }
}

// An in-place insertion copies only the run that moves, a fresh buffer gets both
// runs; the first run is copied upward and the second downward from its top.
TEST(SccArray, InsertCopiesOnlyWhatMoves) {
  struct Case { char const *name; bool shared; int index, count; std::vector<BareArray::Copy> copies;
  } const cases[] = {
      {"in place, upper run moves", false, 2, 2, {{1, 11, 9, -3}}},
      {"in place, lower run moves", false, 2, -2, {{1, 3, 5, 2}}},
      {"in place, block below reaching in", false, -2, 4, {{1, 11, 9, -5}}},
      {"in place, nothing moves", false, 7, 2, {}},
      {"fresh buffer, both runs", true, 2, 2, {{0, 5, 5, 2}, {0, 11, 9, -3}}},
      {"fresh buffer, all below", true, 9, 1, {{0, 5, 5, 5}}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    BareArray array;
    array.ChangeBounds(0, 5);  // room [-5, 10)
    BareArray other;
    if (c.shared) other = array;
    array.m_Copies.clear();
    array.Insert(c.index, c.count);
    EXPECT_EQ(array.m_Copies, c.copies);
  }
}

// Delete removes |count| elements inside the bounds; code 2 comes before anything changes. Ranges that do not lie
// inside the bounds, and a count of 0, do nothing and report nothing.
TEST(SccArray, DeleteRemovesAndAnnouncesFirst) {
  std::vector<int> const all{0, 10, 20, 30, 40, 50, 60, 70, 80, 90};
  struct Case { char const *name; int index, count, lower; std::vector<int> contents; std::vector<ParamFields> params;
  } const cases[] = {
      {"count 3 from 2", 2, 3, 0, {0, 10, 50, 60, 70, 80, 90}, {{2, 3, 1, 5, 2, 5, 1, 1, 2, 2, 3}}},
      {"count -3 below 5", 5, -3, 3, {0, 10, 50, 60, 70, 80, 90}, {{5, -3, 1, 5, 5, 5, 1, 4, 2, 2, 3}}},
      {"the last element", 9, 1, 0, {0, 10, 20, 30, 40, 50, 60, 70, 80}, {{9, 1, 1, 10, 9, 0, 8, 8, 9, 9, 1}}},
      {"the first element, count -1", 1, -1, 1, {10, 20, 30, 40, 50, 60, 70, 80, 90},
       {{1, -1, 1, 1, 1, 9, -1, 0, 0, 0, 1}}},
      {"everything upward", 0, 10, 0, {}, {{0, 10, 1, 10, 0, 0, -1, -1, 0, 0, 10}}},
      {"everything downward", 9, -9, 9, {90}, {{9, -9, 1, 9, 9, 1, -1, 8, 0, 0, 9}}},
      {"past the upper bound", 8, 3, 0, all, {}}, {"below the lower bound", 0, -1, 0, all, {}},
      {"index at the upper bound", 10, -1, 0, all, {}}, {"index below the lower bound", -1, 2, 0, all, {}},
      {"count 0", 4, 0, 0, all, {}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array;
    fillTens(array, 0, 10);
    ChangeLog log;
    array.RegisterIterator(log);
    log.m_Action = [&](int, SCC_ArrayParam *p) {
      EXPECT_EQ(array.GetCount(), 10);  // nothing has changed yet
      EXPECT_EQ(array[p->removedFrom], p->removedFrom * 10);
    };
    ReportSpy spy;
    array.Delete(c.index, c.count);
    EXPECT_TRUE(spy.Reports().empty());
    std::vector<ParamFields> params;
    for (auto const &e : log.m_Entries) {
      EXPECT_EQ(e.code, 2);
      params.push_back(fieldsOf(e.param, &array));
    }
    EXPECT_EQ(params, c.params);
    expectContents(array, c.lower, c.contents);
    EXPECT_EQ(array.GetData() == nullptr, c.contents.empty());  // no elements, no buffer
  }
}

// Hooks of code 2 may change the array: the removal then goes on in the bounds they left (same indices) when the range
// still lies inside them, and a copy they take keeps every element.
TEST(SccArray, DeleteAfterHooksChangedTheArray) {
  struct Case { char const *name; std::function<void(SCC_Array<int> &, SCC_Array<int> &)> hook;
      std::vector<int> contents, copy; } const cases[] = {
      {"hook removes the first element", [](auto &a, auto &) { a.Delete(0, 1); }, {10, 20, 30, 40, 50, 80, 90}, {}},
      {"hook clears the array", [](auto &a, auto &) { a.Clear(); }, {}, {}},
      {"hook takes a copy", [](auto &a, auto &copy) { copy = a; }, {0, 10, 20, 30, 40, 70, 80, 90},
       {0, 10, 20, 30, 40, 50, 60, 70, 80, 90}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array, copy;
    fillTens(array, 0, 10);
    ChangeLog log;
    array.RegisterIterator(log);
    log.m_Action = [&](int code, SCC_ArrayParam *) {
      if (code == 2 && log.m_Entries.size() == 1) c.hook(array, copy);
    };
    array.Delete(5, 2);
    EXPECT_EQ(contentsOf(array), c.contents);
    EXPECT_EQ(contentsOf(copy), c.copy);
  }
}

// Clear drops the buffer and then raises code 2 with the old bounds; an empty array raises nothing.
TEST(SccArray, ClearAnnouncesAfterwards) {
  SCC_Array<int> array;
  fillTens(array, -3, 4);
  ChangeLog log;
  array.RegisterIterator(log);
  log.m_Action = [&](int, SCC_ArrayParam *) { EXPECT_EQ(array.GetData(), nullptr); };
  array.Clear();
  ASSERT_EQ(log.Codes(), std::vector<int>{2});
  EXPECT_EQ(fieldsOf(log.m_Entries[0].param, &array), (ParamFields{-3, 7, 1, 0, 0, 0, 0, 0, 0, -3, 7}));
  array.Clear();
  EXPECT_EQ(log.m_Entries.size(), 1u);
}

/// The number of slots of `array` (also those outside its bounds) that hold `part`.
static int slotsHolding(SCC_Array<PartRef> &array, Part *part) {
  auto *const buffer = static_cast<SCC_Array<PartRef>::Buffer *>(array.GetData());
  int n = 0;
  for (int s = 0; buffer != nullptr && s < slotsOf(array); ++s) n += buffer->m_Elements[s].Get() == part;
  return n;
}

// Shared pointers as elements: every object's count equals the number of slots that hold it, through growth, moves,
// sharing and un-sharing, and every object is freed when the arrays go.
TEST(SccArray, SharedPointerElementsStayBalanced) {
  Part::s_Alive = 0;
  {
    std::vector<PartRef> parts;  // one more holder each, so removed parts stay to be counted
    SCC_Array<PartRef> array, copy;
    auto const check = [&](char const *step) {
      SCOPED_TRACE(step);
      for (PartRef const &part : parts) {
        int holders = slotsHolding(array, part.Get());
        if (copy.GetData() != array.GetData()) holders += slotsHolding(copy, part.Get());
        EXPECT_EQ(part->GetRefCount(), holders + 1);
      }
    };
    for (int i = 0; i < 6; ++i) array[i] = parts.emplace_back(new Part);
    check("appended");
    std::pair<char const *, std::function<void()>> const steps[] = {
        {"inserted", [&] { array.Insert(2, 3); }},
        {"deleted", [&] { array.Delete(0, 2); }},
        {"shared", [&] { copy = array; }},
        {"un-shared", [&] { copy[copy.GetLowerBound()] = nullptr; }},
        {"grown below", [&] { array[-20] = parts[0]; }},
        {"deleted the first", [&] { array.Delete(-20, 1); }},
    };
    for (auto const &[name, step] : steps) {
      step();
      check(name);
    }
  }
  EXPECT_EQ(Part::s_Alive, 0);
}

// The typed copy starts a change event of its own, enabled and without hooks; the
// untyped copy constructor takes over the hooks and the enabled flag.
TEST(SccArray, CopiesAndTheirHooks) {
  SCC_Array<int> source;
  fillTens(source, 0, 3);
  ChangeLog log;
  source.RegisterIterator(log);
  source.GetChangeEvent().Disable();

  SCC_Array<int> typedCopy(source);
  EXPECT_TRUE(typedCopy.GetChangeEvent().IsEnabled());
  EXPECT_EQ(log.GetConnectedEvent(), &source.GetChangeEvent());
  typedCopy[5] = 1;
  EXPECT_TRUE(log.m_Entries.empty());

  _SCC_Array untypedCopy(source);
  EXPECT_FALSE(untypedCopy.GetChangeEvent().IsEnabled());
  EXPECT_EQ(log.GetConnectedEvent(), &untypedCopy.GetChangeEvent());
  EXPECT_EQ(untypedCopy.GetData(), nullptr);  // no elements come along
  source.GetChangeEvent().Enable();
  source.Insert(0, 1);
  EXPECT_TRUE(log.m_Entries.empty());
}

// Validity: an empty array is reported as not valid; a buffer whose bounds leave its
// room is reported once for each end, then the array once more.
TEST(SccArray, IsValidReports) {
  ReportSpy spy;
  SCC_Array<int> array;
  EXPECT_EQ(array.IsValid(), 0);
  EXPECT_EQ(spy.Summary(), (std::vector<std::string>{"scc/scc: "}));
  spy.Forget();

  array.ChangeBounds(0, 4);
  EXPECT_EQ(array.IsValid(), 1);
  _SCC_ArrayBuffer &buffer = *array.GetData();
  Room const kept = roomOf(array);
  buffer.m_Lower = buffer.m_AllocLower - 1;
  buffer.m_Upper = buffer.m_AllocUpper + 1;
  EXPECT_EQ(buffer.IsValid(), 0);
  EXPECT_EQ(spy.Reports().size(), 2u);
  spy.Forget();
  EXPECT_EQ(array.IsValid(), 0);
  EXPECT_EQ(spy.Reports().size(), 3u);
  for (auto const &r : spy.Reports()) {
    EXPECT_EQ(r.file, "scc/scc");
    EXPECT_EQ(r.type, SSM_Critical);
    EXPECT_EQ(r.id, 0);
  }
  buffer.m_Lower = kept[0];
  buffer.m_Upper = kept[1];
}

// The base class has no elements: its Comp and Swap report with their own texts, its CopyData reports without one.
TEST(SccArray, BaseOperationsReport) {
  ReportSpy spy;
  SCC_Array<int> array;
  fillTens(array, 0, 2);
  array.Sort(0, 2, 1);  // the selection pass: one Comp, one Swap
  EXPECT_EQ(spy.Summary(), (std::vector<std::string>{"scc/scc_arr: _SCC_Array::Comp is called.",
                                                     "scc/scc_arr: _SCC_Array::Swap is called."}));
  spy.Forget();

  BareArray bare;
  bare.m_RecordCopies = false;
  bare.ChangeBounds(0, 2);
  EXPECT_TRUE(spy.Reports().empty());
  bare.ChangeBounds(0, 100);  // a new buffer, so the overlap is copied
  EXPECT_EQ(spy.Summary(), (std::vector<std::string>{"scc/scc: "}));
}

// Bounds stay inside the index range: a change that would leave it is reported and
// not made, and an index that cannot be reached throws after its report.
TEST(SccArray, IndexRangeIsGuarded) {
  struct Case { char const *name; std::function<void(SCC_Array<int> &)> change; bool throws; } const cases[] = {
      {"write at no position", [](auto &a) { a[INT_MAX] = 1; }, true},
      {"write past the highest upper bound", [](auto &a) { a[INT_MAX - 1] = 1; }, true},
      {"write at the lowest int", [](auto &a) { a[INT_MIN] = 1; }, true},
      {"bounds down to the lowest int", [](auto &a) { a.ChangeBounds(INT_MIN, 3); }, false},
      {"bounds up to no position", [](auto &a) { a.ChangeBounds(0, INT_MAX); }, false},
      {"more elements than an int counts", [](auto &a) { a.ChangeBounds(-2000000000, 2000000000); }, false},
      {"insert past the range", [](auto &a) { a.Insert(0, INT_MAX); }, false},
      {"insert below the range", [](auto &a) { a.Insert(-5, INT_MIN); }, false},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array;
    fillTens(array, 0, 3);
    ReportSpy spy;
    if (c.throws) {
      EXPECT_THROW(c.change(array), std::out_of_range);
    } else {
      c.change(array);
    }
    EXPECT_EQ(spy.Summary(), (std::vector<std::string>{"scc/scc: "}));
    EXPECT_EQ(contentsOf(array), (std::vector<int>{0, 10, 20}));
  }
}

// Bounds of more than 2^31 slots with their room are cut to the slots an int counts; a granularity below 1 never makes
// the growth step smaller than the request. The untyped work runs without storage.
TEST(SccArray, HugeRoomIsCutToTheSlotCount) {
  BareArray array;
  array.ChangeBounds(-2000000000, 100000000);
  EXPECT_EQ(roomOf(array), (Room{-2000000000, 100000000, -2000000000, 147483647}));

  BareArray small;
  small.m_Granularity = 0;
  ReportSpy spy;
  small.ChangeBounds(0, 4);
  EXPECT_EQ(roomOf(small), (Room{0, 4, -4, 8}));
  EXPECT_TRUE(spy.Reports().empty());
}
