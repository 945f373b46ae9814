//===- tests/scc_arr_model_test.cpp - Arrays against a simple model -----===//
//
// Random insertions, removals, bound changes, writes at both ends, clears and copies, checked after every step against
// a model that keeps each element's identity: contents, bounds, the shared copy, the room invariant, the number of live
// class elements, and where every iterator stands.
//
//===------------------------------------------------------------------===//
#include "scc_arr.h"
#include "tests/report_spy.h"
#include "tests/scc_arr_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

/// One element of the model: who it is, and its value when the test wrote it.
struct Element { int id; bool known; int value; };

/// The array as the rules describe it.
struct Model {
  int lower = 0;
  std::vector<Element> elements;
  int nextId = 1;

  int Upper() const { return lower + static_cast<int>(elements.size()); }
  bool Empty() const { return elements.empty(); }
  Element Fresh() { return Element{nextId++, false, 0}; }
  /// The index of the element with `id`, or SYS_Nowhere.
  int IndexOf(int id) const {
    for (size_t k = 0; k < elements.size(); ++k)
      if (elements[k].id == id) return lower + static_cast<int>(k);
    return SYS_Nowhere;
  }
  void SetBounds(int newLower, int newUpper) {
    if (newUpper <= newLower) {
      *this = Model{0, {}, nextId};
      return;
    }
    std::vector<Element> next;
    for (int i = newLower; i < newUpper; ++i)
      next.push_back(i >= lower && i < Upper() ? elements[i - lower] : Fresh());
    lower = newLower;
    elements = std::move(next);
  }
};

/// Where an iterator stood before a change, in the model's terms.
struct Standing {
  int index;
  int elementId;  // 0 when not on an element
  bool onePast;
};

/// Compares an array with the model without touching it through CheckArray.
template <class T>
void expectMatches(SCC_Array<T> &array, Model const &model, char const *what) {
  SCOPED_TRACE(what);
  ASSERT_EQ(array.GetCount(), static_cast<int>(model.elements.size()));
  if (model.Empty()) {
    ASSERT_EQ(array.GetData(), nullptr);
    return;
  }
  ASSERT_EQ(array.GetLowerBound(), model.lower);
  ASSERT_EQ(array.GetUpperBound(), model.Upper());
  auto const &b = *static_cast<typename SCC_Array<T>::Buffer *>(array.GetData());
  ASSERT_LE(b.m_AllocLower, b.m_Lower);
  ASSERT_LE(b.m_Upper, b.m_AllocUpper);
  for (int i = model.lower; i < model.Upper(); ++i) {
    Element const &e = model.elements[i - model.lower];
    if (e.known) {
      ASSERT_EQ(valueOf(b.m_Elements[i - b.m_AllocLower]), e.value) << "at index " << i;
    }
  }
}

template <class T>
void runAgainstModel(unsigned seed, int steps) {
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(random); };

  SCC_Array<T> array;
  Model model;
  SCC_Array<T> copy;  // shares the array's buffer from time to time, never written
  Model copyModel;
  constexpr int kIterators = 6;
  typename SCC_Array<T>::Iterator iterators[kIterators];
  for (auto &it : iterators) it.Attach(&array, 0);
  int nextValue = 1;

  for (int step = 0; step < steps; ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    int const lo = model.lower;
    int const hi = model.Upper();
    int const n = static_cast<int>(model.elements.size());

    // Where the iterators stand now, to move them by the rules afterwards.
    Standing before[kIterators];
    for (int k = 0; k < kIterators; ++k) {
      int const at = iterators[k].GetIndex();
      bool const onElement = n > 0 && at >= lo && at < hi;
      before[k] = Standing{at, onElement ? model.elements[at - lo].id : 0, n > 0 && at == hi};
    }
    std::string op;
    int expectedCode = 0;  // the notification the step raises, 0 for none of 1 and 2
    int onePastShift = 0;  // how far an iterator one past the end moves

    int const choice = pick(0, 99);
    if (choice < 30) {
      int const index = pick(lo - 12, hi + 12);  // an empty model stands at 0
      int const value = nextValue++;
      op = "write " + std::to_string(index);
      array[index] = value;
      model.SetBounds(std::min(index, lo), std::max(index + 1, hi));
      Element &e = model.elements[index - model.lower];
      e.known = true;
      e.value = value;
    } else if (choice < 55) {
      int const index = pick(lo - 10, hi + 10);
      int const count = pick(-7, 7);
      op = "Insert(" + std::to_string(index) + ", " + std::to_string(count) + ")";
      array.Insert(index, count);
      int const end = index + count;
      bool const inside = index >= lo && index < hi;  // never for an empty model
      expectedCode = count != 0 || (n > 0 && !inside) ? 1 : 0;
      if (n == 0) {
        if (count != 0) model.SetBounds(std::min(index, end), std::max(index, end));
      } else if (inside) {
        for (int k = 0; k < std::abs(count); ++k)
          model.elements.insert(model.elements.begin() + (index - lo), model.Fresh());
        if (count < 0) model.lower += count;
      } else if (index < lo) {  // fresh elements up to the block's end or the old lower bound
        for (int i = std::min(index, end); i < std::max(end, lo); ++i)
          model.elements.insert(model.elements.begin(), model.Fresh());
        model.lower = std::min(index, end);
      } else {
        if (end < hi) {  // the elements are pulled down to end at the block
          model.lower = end - n;
          onePastShift = end - hi;
        }
        while (model.Upper() < std::max(index, end)) model.elements.push_back(model.Fresh());
      }
    } else if (choice < 80) {
      int const index = n > 0 ? pick(lo - 2, hi + 2) : pick(-3, 3);
      int const count = pick(-8, 8);
      op = "Delete(" + std::to_string(index) + ", " + std::to_string(count) + ")";
      array.Delete(index, count);
      int const end = index + count;
      if (count != 0 && n > 0 && index >= lo && index < hi && end >= lo && end <= hi) {
        int const from = std::min(index, end);
        auto const first = model.elements.begin() + (from - lo);
        model.elements.erase(first, first + std::abs(count));
        if (count < 0) model.lower -= count;
        if (model.Empty()) model.lower = 0;
        onePastShift = count > 0 ? -count : 0;
        expectedCode = 2;
      }
    } else if (choice < 90) {
      int const newLower = lo + pick(-15, 15);
      int const newUpper = newLower + pick(-3, 30);
      op = "ChangeBounds(" + std::to_string(newLower) + ", " + std::to_string(newUpper) + ")";
      array.ChangeBounds(newLower, newUpper);
      model.SetBounds(newLower, newUpper);
    } else if (choice < 97) {
      op = "copy";
      copy = array;
      copyModel = model;
    } else {
      op = "Clear";
      array.Clear();
      if (n > 0) expectedCode = -2;  // code 2 with the clearing rule
      model.SetBounds(0, 0);
    }
    SCOPED_TRACE(op);

    expectMatches(array, model, "array");
    expectMatches(copy, copyModel, "copy");
    if constexpr (!SCC_Array<T>::Buffer::kRaw) {
      int slots = slotsOf(array) + (copy.GetData() != array.GetData() ? slotsOf(copy) : 0);
      ASSERT_EQ(Tracked::s_Live, slots);
    }

    for (int k = 0; k < kIterators; ++k) {
      Standing const &was = before[k];
      int expected = was.index;
      if (expectedCode == -2) {
        expected = was.index == 0 ? 0 : SYS_Nowhere;
      } else if (expectedCode != 0 && was.elementId != 0) {
        expected = model.IndexOf(was.elementId);
      } else if (expectedCode != 0 && was.onePast) {
        expected = was.index + onePastShift;
      } else if (expectedCode == 2) {
        expected = SYS_Nowhere;
      }
      ASSERT_EQ(iterators[k].GetIndex(), expected) << "iterator " << k << " from " << was.index;
    }

    // Now and then an iterator moves somewhere else, possibly outside the bounds.
    if (pick(0, 9) == 0) {
      int const k = pick(0, kIterators - 1);
      iterators[k].SetIndex(pick(model.lower - 3, model.Upper() + 3));
    }
  }
}

}  // namespace

// Plain elements: raw storage, contents and iterator positions as the model says.
TEST(SccArrayModel, PlainElements) {
  for (unsigned seed : {1u, 2u, 3u, 4u}) runAgainstModel<int>(seed, 1500);
}

// Class elements: the same, and exactly one live element per slot of every buffer.
TEST(SccArrayModel, ClassElements) {
  Tracked::s_Live = 0;
  for (unsigned seed : {11u, 12u, 13u, 14u}) runAgainstModel<Tracked>(seed, 1500);
  EXPECT_EQ(Tracked::s_Live, 0);
}
