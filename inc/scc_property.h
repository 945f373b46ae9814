//===- inc/scc_property.h - Reading and writing a value of collection items ===//
//
// A property reads and writes one field of the items of a collection: of one
// item by its handle (the per-item operations, which a derived property
// supplies), or of all the collection's focused items at once.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_PROPERTY_H
#define BFC_SCC_PROPERTY_H

#include "scc_shared.h"
#include "scc_variant.h"
#include "sys_base.h"
#include "sys_string.h"

#include <type_traits>

class SCC_StdCollection;

/// The base of a property: one value of the items of a collection, with an optional
/// validation text (see SCC_Variant::Validate) and an optional convertor.
///
/// A derived property overrides the two per-item operations and, when it can write,
/// HasSetMethod; it should also say `using SCC_StdProperty::GetValue;` and
/// `using SCC_StdProperty::SetValue;` so that the focus operations stay visible.
class BFC_API SCC_StdProperty : public SCC_SharedBuffer {
public:
  /// No convertor, empty validation.
  SCC_StdProperty() = default;
  /// Shares the convertor and copies the validation text.
  SCC_StdProperty(SCC_StdProperty const &) = default;
  SCC_StdProperty &operator=(SCC_StdProperty const &) = default;

  // The virtual operations, in their table order.
  virtual ~SCC_StdProperty();
  /// The value common to all focused items of `collection`: `value` takes the first item's
  /// value and is cleared, with the result 1, as soon as another item's differs (an
  /// empty value differs from every other, so one empty item leaves `value` empty). 0 when the collection has no focus or an item cannot be read. Without a
  /// collection, the value of handle 0.
  virtual int GetValue(SCC_StdCollection *collection, SCC_Variant &value);
  /// The value of one item; 0 here (nothing to read).
  virtual int GetValue(SYS_Handle handle, SCC_Variant &value);
  /// Writes `value` to every focused item in order; 0 at the first that fails, else 1
  /// (also without focus). Without a collection, writes handle 0.
  virtual int SetValue(SCC_StdCollection *collection, SCC_Variant &value, int flags);
  /// Writes one item; 0 here (nothing to write).
  virtual int SetValue(SYS_Handle handle, SCC_Variant &value, int flags);
  /// Non-zero when the property can write; 0 here.
  virtual int HasSetMethod();
  /// The property that reads the values; the property itself here.
  virtual SCC_StdProperty *GetDataSource();
  virtual char const *GetValidation();
  virtual void SetValidation(char const *validation);
  virtual SCC_SharedPointer<SCC_Convertor> GetConvertor();
  /// Takes `convertor` (before letting go of the old one) and returns the property.
  virtual SCC_StdProperty *SetConvertor(SCC_SharedPointer<SCC_Convertor> convertor);

  // An int handle, a literal 0 among them, is a handle: on LP64 it would otherwise fit
  // the collection pointer and the SYS_Handle equally well.
  template <class Int, typename std::enable_if<std::is_same<Int, int>::value, int>::type = 0>
  int GetValue(Int handle, SCC_Variant &value) {
    return GetValue(static_cast<SYS_Handle>(handle), value);
  }
  template <class Int, typename std::enable_if<std::is_same<Int, int>::value, int>::type = 0>
  int SetValue(Int handle, SCC_Variant &value, int flags) {
    return SetValue(static_cast<SYS_Handle>(handle), value, flags);
  }

private:
  SCC_SharedPointer<SCC_Convertor> m_Convertor;  // null when there is none
  SYS_String m_Validation;
};

#endif
