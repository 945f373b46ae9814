//===- scc/scc_property.cpp - Reading and writing a value of collection items ===//
#include "scc_property.h"

#include "scc_stdcoll.h"

#include <utility>

SCC_StdProperty::~SCC_StdProperty() = default;

int SCC_StdProperty::GetValue(SCC_StdCollection *collection, SCC_Variant &value) {
  if (collection == nullptr) return GetValue(SYS_Handle{0}, value);
  if (!collection->HasFocus()) return 0;
  for (long i = 0;; ++i) {
    SYS_Handle const handle = collection->GetFocus(i);
    if (handle == 0) return 1;
    SCC_Variant item;
    if (!GetValue(handle, item)) return 0;
    // The first item gives the value, even an empty one: an empty value equals no other,
    // so the focus then has no common value.
    if (i == 0) {
      value = std::move(item);
    } else if (item != value) {
      value.Clear();  // the items differ: no common value
      return 1;
    }
  }
}

int SCC_StdProperty::GetValue(SYS_Handle, SCC_Variant &) { return 0; }

int SCC_StdProperty::SetValue(SCC_StdCollection *collection, SCC_Variant &value, int flags) {
  if (collection == nullptr) return SetValue(SYS_Handle{0}, value, flags);
  for (long i = 0;; ++i) {
    SYS_Handle const handle = collection->GetFocus(i);
    if (handle == 0) return 1;
    if (!SetValue(handle, value, flags)) return 0;
  }
}

int SCC_StdProperty::SetValue(SYS_Handle, SCC_Variant &, int) { return 0; }

int SCC_StdProperty::HasSetMethod() { return 0; }

SCC_StdProperty *SCC_StdProperty::GetDataSource() { return this; }

char const *SCC_StdProperty::GetValidation() { return m_Validation; }

void SCC_StdProperty::SetValidation(char const *validation) { m_Validation = validation; }

SCC_SharedPointer<SCC_Convertor> SCC_StdProperty::GetConvertor() { return m_Convertor; }

SCC_StdProperty *SCC_StdProperty::SetConvertor(SCC_SharedPointer<SCC_Convertor> convertor) {
  m_Convertor = std::move(convertor);
  return this;
}
