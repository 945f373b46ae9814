//===- inc/sys_strutil.h - Number recognisers, natural order, fields ----===//
//
// Free functions over NUL-terminated text in the multibyte code page. A
// multibyte character is never taken for a digit, sign or separator.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_STRUTIL_H
#define BFC_SYS_STRUTIL_H

#include "sys_string.h"

/// Where a floating-point number starting at `text` ends, or null when none starts there.
/// Signs are skipped wherever they stand; one point before any exponent; `plain` non-zero
/// refuses an exponent (the scan ends at the "e"). A number needs a mantissa digit, and an
/// exponent that was started needs a digit.
BFC_API char *getdouble(char const *text, int plain);
/// 1 when getdouble finds a number that ends at the end of `text`.
BFC_API int isdouble(char const *text, int plain);

/// Where an integer starting at `text` ends, or null when none starts there. Signs are
/// skipped wherever they stand. `base` 1 counts decimal digits, 2 octal, 3 hexadecimal (a
/// "0x" prefix is not special: the scan ends at the "x"). Any other `base` picks the digits
/// by prefix after the signs: "0x" or "0X" followed by a hexadecimal digit reads
/// hexadecimal digits after it, a leading "0" octal, anything else decimal.
BFC_API char *getinteger(char const *text, int base);
/// 1 when getinteger finds an integer that ends at the end of `text`.
BFC_API int isinteger(char const *text, int base);

BFC_API int isdecdouble(char const *text);    ///< isdouble(text, 1)
BFC_API int isdecinteger(char const *text);   ///< isinteger(text, 1)
BFC_API int ishexinteger(char const *text);   ///< isinteger(text, 3)
BFC_API int isoctinteger(char const *text);   ///< isinteger(text, 2)

/// Numeric-aware order: -1, 0 or 1. Digit runs met at the same place compare by value
/// (exactly, however long; leading zeros ignored, so "007" ranks with "7"); other
/// characters compare by code as unsigned bytes, and "$" sorts after everything, the end
/// of the text included.
BFC_API int _tcsnumcmp(char const *a, char const *b);

/// Stores field `index` (from 0) of the `separator`-separated `list` in `field` and returns
/// 1; 0 when the list has fewer fields (then `field` is emptied) or `list` is null (then
/// `field` is left alone). An empty field is stored as the empty string with result 1.
BFC_API int SysExtractSubString(SYS_String &field, char const *list, int index, char separator);

/// A new string holding the printf-style formatting of `format`.
BFC_API SYS_String FormattedString(char const *format, ...) __attribute__((format(printf, 1, 2)));

#endif
