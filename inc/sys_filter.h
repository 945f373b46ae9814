//===- inc/sys_filter.h - Boolean filters over item handles -------------===//
//
// A filter is a leaf (a test function, or a derived class overriding IsTrue)
// or a composite made by |, & or !. Composites live on the heap and belong to
// the filter on their left: every composite made from a filter is freed with
// it, also when a later operator on the same filter made a newer one.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_FILTER_H
#define BFC_SYS_FILTER_H

#include "sys_base.h"

/// A predicate on item handles that combines with |, & and ! into larger predicates; a
/// collection asks its filter whether an item passes.
///
/// `(a | b) & !c` makes three composites: `a | b` belongs to a, the `&` composite to
/// `a | b`, and `!c` to c. A composite refers to its operands and must not outlive them.
/// The destructor is not virtual: a derived leaf is destroyed as what it is.
class BFC_API SYS_Filter {
public:
  /// The test of a filter: non-zero passes the item.
  typedef int (*Test)(SYS_Filter const *filter, SYS_Handle item);

  /// A filter that passes nothing.
  SYS_Filter() noexcept : m_Test(nullptr), m_First(nullptr), m_Second(nullptr), m_Owned(nullptr), m_NextOwned(nullptr) {}
  /// A filter with these operands and this test, owning nothing.
  SYS_Filter(SYS_Filter *first, SYS_Filter *second, Test test) noexcept
      : m_Test(test), m_First(first), m_Second(second), m_Owned(nullptr), m_NextOwned(nullptr) {}
  /// Copies the test and the operands; the copy owns nothing.
  SYS_Filter(SYS_Filter const &other) noexcept
      : m_Test(other.m_Test), m_First(other.m_First), m_Second(other.m_Second), m_Owned(nullptr), m_NextOwned(nullptr) {}
  /// Copies the test and the operands; the composites this filter owns stay its own.
  SYS_Filter &operator=(SYS_Filter const &other) noexcept {
    m_Test = other.m_Test, m_First = other.m_First, m_Second = other.m_Second;
    return *this;
  }
  /// Frees every composite made from this filter, and with each whatever it owns.
  ~SYS_Filter();

  /// 0 without a test; otherwise the test's answer for `item`.
  virtual int IsTrue(SYS_Handle item) { return m_Test != nullptr ? m_Test(this, item) : 0; }

  /// The tests of the composites. Both operands are always asked, the second first; the
  /// answers combine bitwise. A missing operand answers 0.
  static int And_F(SYS_Filter const *filter, SYS_Handle item);
  static int Or_F(SYS_Filter const *filter, SYS_Handle item);
  /// 1 when the first operand answers 0 or a negative value, 0 when it answers a positive one.
  static int Not_F(SYS_Filter const *filter, SYS_Handle item);

  /// A new composite (this, other) with Or_F, And_F, or (this) with Not_F, owned by this
  /// filter. Throws std::bad_alloc when the heap has no room; nothing is owned then.
  SYS_Filter &operator|(SYS_Filter &other);
  SYS_Filter &operator&(SYS_Filter &other);
  SYS_Filter &operator!();

  Test GetTest() const { return m_Test; }
  SYS_Filter *GetFirst() const { return m_First; }
  SYS_Filter *GetSecond() const { return m_Second; }
  /// The number of composites made from this filter and still owned by it.
  int GetOwnedCount() const;

private:
  class Composite;

  SYS_Filter &compose(SYS_Filter *second, Test test);

  Test m_Test;             // null: passes nothing
  SYS_Filter *m_First;     // left operand of a composite
  SYS_Filter *m_Second;    // right operand; null for a negation
  Composite *m_Owned;      // the newest composite made from this filter; owned
  Composite *m_NextOwned;  // in a composite: the next older one of the same owner; owned by that list
};

#endif
