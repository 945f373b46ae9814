//===- inc/sys_exception.h - The library's exception with a text --------===//
#ifndef BFC_SYS_EXCEPTION_H
#define BFC_SYS_EXCEPTION_H

#include "sys_string.h"

/// Thrown by value, for instance by variant conversions, with a translated message.
class BFC_API SYS_Exception {
public:
  /// The text is the printf-style formatting of `format`.
  SYS_Exception(char const *format, ...) __attribute__((format(printf, 2, 3)));
  /// The text is empty; the number and further arguments are not used.
  SYS_Exception(int number, ...);

  SYS_String GetText() const { return m_Text; }

private:
  SYS_String m_Text;
};

#endif
