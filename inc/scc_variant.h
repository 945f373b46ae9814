//===- inc/scc_variant.h - Field values of collection items ---------------===//
//
// A variant is empty or holds one 32-bit integer, one double or one string, and
// converts between them. Only the payload of its type is ever set: the other
// fields stay 0 or empty, so copying the fields copies exactly the value.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_VARIANT_H
#define BFC_SCC_VARIANT_H

#include "scc_shared.h"
#include "sys_base.h"
#include "sys_string.h"

#include <cstdint>

class SCC_Convertor;

/// The value in which the properties of collection items exchange field values: empty,
/// an integer, a double or a string, with conversions, a type-promoting equality and a
/// validation against a range or a maximum length written as a short text.
///
/// The integer is 32 bits in both data models. The conversions to long and double throw
/// SYS_Exception with the host's texts 45062 (a string that is not a number) and 45063
/// (a number beyond the 32-bit range); nothing else throws.
class BFC_API SCC_Variant {
public:
  /// The type of a variant; a larger value is the superior type.
  enum ValueType : std::int32_t { VT_Long = 1, VT_Double = 2, VT_String = 3, VT_Empty = 4 };

  SCC_Variant() noexcept : m_Type(VT_Empty), m_Long(0), m_Double(0.0) {}
  SCC_Variant(int value) noexcept : m_Type(VT_Long), m_Long(value), m_Double(0.0) {}
  /// A VT_Long; on LP64 a value beyond the 32-bit range gives a VT_Double of that value
  /// instead (no 32-bit integer can hold it; reading it back as long throws 45063).
  SCC_Variant(long value) noexcept;
  SCC_Variant(double value) noexcept : m_Type(VT_Double), m_Long(0), m_Double(value) {}
  SCC_Variant(SYS_String const &value) : m_Type(VT_String), m_Long(0), m_Double(0.0), m_String(value) {}
  /// Null counts as the empty text (still a VT_String).
  SCC_Variant(char const *value) : m_Type(VT_String), m_Long(0), m_Double(0.0), m_String(value) {}

  // Every payload but the type's own is 0 or empty, so a plain copy of the four fields
  // is the value's copy: assignment takes the type and exactly its payload.
  SCC_Variant(SCC_Variant const &) = default;
  SCC_Variant(SCC_Variant &&) noexcept = default;
  SCC_Variant &operator=(SCC_Variant const &) = default;
  SCC_Variant &operator=(SCC_Variant &&) noexcept = default;
  ~SCC_Variant() = default;

  /// Empty, with the integer and double 0 and the string empty.
  void Clear() noexcept;
  bool IsEmpty() const noexcept { return m_Type == VT_Empty; }
  ValueType GetType() const noexcept { return m_Type; }

  /// The integer; a double truncated toward zero when the result lies in the 32-bit
  /// range (else SYS_Exception 45063, as for NaN); a string read as a double first
  /// (SYS_Exception 45062 when it is not a number); 0 when empty.
  operator long() const;
  /// The double; a string read as a double (below); 0.0 when empty. A string is read
  /// with strtod in the C locale after leading spaces and tabs, and only spaces and tabs
  /// may follow the number; an empty or blank string reads as 0.0.
  operator double() const;
  /// "%d" of the integer, "%f" of the double (with "." as the decimal point), the string,
  /// or the empty string.
  operator SYS_String() const;

  /// Compares by the superior type of the two: integers, doubles, or strings by their
  /// bytes. Empty is never equal to anything, not even to empty. Never throws.
  int operator==(SCC_Variant const &other) const;
  int operator!=(SCC_Variant const &other) const { return !(*this == other); }

  /// 1 when the value passes `validation`, else 0. Empty texts and empty variants pass.
  /// "#" in front asks for conversion through `convertor` (direction 1 for the value,
  /// 0 for the bounds of the message). A range "[low,high]" (either bracket open or
  /// closed, spaces allowed) tests the value's double; on failure the variant becomes the
  /// host's text 45064 filled with the opening character, the two bounds and the closing
  /// character, and the result is 0; a value that is not a number fails the same way.
  /// A number is a maximum length in bytes of the string (numbers always pass a limit of
  /// 0 or more). Any other text passes. Never throws.
  int Validate(SYS_String const &validation, SCC_Convertor *convertor);

protected:
  /// The greater of the own type and `other`.
  ValueType GetSuperiorType(ValueType other) const noexcept { return other > m_Type ? other : m_Type; }

private:
  ValueType m_Type;
  long m_Long;  // within the 32-bit range in both data models
  double m_Double;
  SYS_String m_String;
};

/// Converts values between two representations, for instance a stored value and the
/// value shown in the current unit. Handed around through SCC_SharedPointer: the last
/// holder of one made with new deletes it. The library defines none; the host does.
class BFC_API SCC_Convertor : public SCC_SharedBuffer {
public:
  /// The converted value: direction 1 towards the value that validation tests, 0 back.
  virtual SCC_Variant Convert(SCC_Variant value, int direction) = 0;
  virtual ~SCC_Convertor();
};

#endif
