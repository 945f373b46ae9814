//===- tests/geom_print.h - Points and boxes as text in test messages ===//
#ifndef BFC_TESTS_GEOM_PRINT_H
#define BFC_TESTS_GEOM_PRINT_H

#include "sys_box.h"
#include "sys_point.h"

#include <ostream>
#include <string>

/// "(x, y)".
inline std::string str(SYS_Point const &p) {
  return "(" + std::to_string(p.GetX()) + ", " + std::to_string(p.GetY()) + ")";
}

/// "(left, lower, right, upper)", the order of the box's constructor.
inline std::string str(SYS_Box const &b) {
  return "(" + std::to_string(b.GetLeft()) + ", " + std::to_string(b.GetLower()) + ", " + std::to_string(b.GetRight()) +
         ", " + std::to_string(b.GetUpper()) + ")";
}

// GoogleTest prints failing values through these.
inline void PrintTo(SYS_Point const &p, std::ostream *out) { *out << str(p); }
inline void PrintTo(SYS_Box const &b, std::ostream *out) { *out << str(b); }

#endif
