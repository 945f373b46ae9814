//===- sys/sys_string_resource.cpp - Strings loaded by number -----------===//
//
// The run-time table plays the part of the current resource module; the
// program's table is searched after it, as the program is always among the
// modules a resource lookup visits.
//
//===------------------------------------------------------------------===//
#include "sys_string.h"

#include "plat/plat_string_store.h"

#include <climits>

int SYS_String::LoadString(unsigned int id) {
  char const *text = nullptr;
  if (id <= static_cast<unsigned int>(INT_MAX)) {
    int const number = static_cast<int>(id);
    text = plat::findRegisteredString(number);
    if (text == nullptr || *text == '\0') text = plat::findProgramString(number);
  }
  if (text == nullptr || *text == '\0') {
    Empty();
    return 0;
  }
  *this = text;
  return 1;
}
