//===- sys/sys_filter.cpp - Composite filters and their ownership -------===//
//
// The composites made from one filter form a list through m_NextOwned, newest
// first. A replaced composite is not freed early: a collection may still be
// asking it, so it lives until its owner goes.
//
//===------------------------------------------------------------------===//
#include "sys_filter.h"

/// A filter made by an operator. Final, so that deleting one through this type is exact
/// although the filter's destructor is not virtual.
class SYS_Filter::Composite final : public SYS_Filter {
public:
  Composite(SYS_Filter *first, SYS_Filter *second, Test test) noexcept : SYS_Filter(first, second, test) {}
};

namespace {

inline int ask(SYS_Filter *filter, SYS_Handle item) { return filter != nullptr ? filter->IsTrue(item) : 0; }

}  // namespace

SYS_Filter::~SYS_Filter() {
  while (m_Owned != nullptr) {
    Composite *const next = m_Owned->m_NextOwned;
    delete m_Owned;
    m_Owned = next;
  }
}

int SYS_Filter::And_F(SYS_Filter const *filter, SYS_Handle item) {
  int const second = ask(filter->m_Second, item);
  return ask(filter->m_First, item) & second;
}

int SYS_Filter::Or_F(SYS_Filter const *filter, SYS_Handle item) {
  int const second = ask(filter->m_Second, item);
  return ask(filter->m_First, item) | second;
}

int SYS_Filter::Not_F(SYS_Filter const *filter, SYS_Handle item) { return ask(filter->m_First, item) <= 0 ? 1 : 0; }

SYS_Filter &SYS_Filter::compose(SYS_Filter *second, Test test) {
  Composite *const made = new Composite(this, second, test);
  made->m_NextOwned = m_Owned;
  m_Owned = made;
  return *made;
}

SYS_Filter &SYS_Filter::operator|(SYS_Filter &other) { return compose(&other, &Or_F); }
SYS_Filter &SYS_Filter::operator&(SYS_Filter &other) { return compose(&other, &And_F); }
SYS_Filter &SYS_Filter::operator!() { return compose(nullptr, &Not_F); }

int SYS_Filter::GetOwnedCount() const {
  int count = 0;
  for (Composite const *c = m_Owned; c != nullptr; c = c->m_NextOwned) ++count;
  return count;
}
