//===- sys/sys_host_text.h - Filling in the host's numbered texts -------===//
//
// A host's text is never handed to printf as a format: a stray "%s" in it would
// read an argument that was never passed. Its placeholders are filled one by one,
// each only with an argument of the kind it names; anything else stands as written.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_HOST_TEXT_H
#define BFC_SYS_HOST_TEXT_H

#include "sys_string.h"

#include <initializer_list>

namespace sys {

/// One value for a placeholder of a host's text.
struct HostArgument {
  enum Kind { Whole, Real, Character };

  /// For "%d", "%i", "%u", "%x", "%X" and "%o"; written as the unsigned number it is.
  static HostArgument Unsigned(unsigned int value) { return {Whole, value, 0.0}; }
  /// For "%f", "%e", "%g", "%a" in either case.
  static HostArgument Double(double value) { return {Real, 0, value}; }
  /// For "%c".
  static HostArgument Char(char value) { return {Character, static_cast<unsigned char>(value), 0.0}; }

  Kind kind;
  unsigned int whole;
  double real;
};

/// `text` with its placeholders filled by `arguments` in order and "%%" made "%". A
/// placeholder is "%", any of the flags "-+ #0", a width and a precision of at most three
/// digits each, an optional length ("h", "hh", "l", "ll", "L") and a conversion; it takes
/// the next argument when that argument is of the kind the conversion names, and otherwise
/// stands as written, as does everything else. Numbers are written with "." as the
/// decimal point whatever the thread's locale.
SYS_String FillHostText(SYS_String const &text, std::initializer_list<HostArgument> arguments);

}  // namespace sys

#endif
