//===- inc/sccstack.h - A stack on an array -----------------------------===//
//
// The stack keeps its elements at the indices 0 to the top - 1 of an array and
// never shrinks it: a popped slot keeps its value until it is pushed over.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCCSTACK_H
#define BFC_SCCSTACK_H

#include "scc_arr.h"

#include <climits>
#include <stdexcept>
#include <utility>

/// A last-in, first-out stack. It grows as needed and always has lower bound 0.
template <class T>
class SCC_Stack : public SCC_Array<T> {
public:
  SCC_Stack() noexcept : m_Top(0) {}
  /// Shares the source's buffer and takes its top, with a change event of its own.
  SCC_Stack(SCC_Stack const &source) : SCC_Array<T>(source), m_Top(source.m_Top) {}
  SCC_Stack &operator=(SCC_Stack const &source) {
    SCC_Array<T>::operator=(source);
    m_Top = source.m_Top;
    return *this;
  }

  /// Stores `value` at the top and raises the top by one.
  void Push(T value) {
    if (m_Top == INT_MAX) throw std::out_of_range("SCC_Stack is full");
    int const slot = m_Top;
    ++m_Top;
    (*this)[slot] = std::move(value);
  }
  /// Lowers the top by one and returns the element there. On an empty stack the
  /// report is made and the pop runs on: the top goes below 0 and the element
  /// below index 0 is made and returned.
  T Pop() {
    SSM_Check(m_Top >= 1, "", "scc/sccstack", __LINE__);
    if (m_Top == INT_MIN) throw std::out_of_range("SCC_Stack popped beyond its range");
    --m_Top;
    return (*this)[m_Top];
  }
  /// The number of elements pushed.
  int GetTop() const noexcept { return m_Top; }

  /// True when nothing is pushed.
  int IsEmpty() const override { return m_Top == 0; }
  /// The array's validity, then 0 <= top <= upper bound and lower bound 0
  /// (reported when not).
  int IsValid() override {
    if (!_SCC_Array::IsValid()) return 0;
    bool const ok = m_Top >= 0 && m_Top <= this->GetUpperBound() && this->GetLowerBound() == 0;
    return SSM_Check(ok, "", "scc/sccstack", __LINE__) ? 1 : 0;
  }

protected:
  int m_Top;  ///< the number of elements pushed
};

#endif
