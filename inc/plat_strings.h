//===- inc/plat_strings.h - The host's numbered texts -------------------===//
//
// The library looks numbered texts up (TR in sfm_tr.h) in two tables the host
// supplies. The program's table is read when the library loads, before any of
// its own load-time objects are built, so texts fetched at load (the unit
// names 45104 to 45107) are found. It comes from a text file:
//   - the file named by the environment variable BFC_STRINGS, when that is
//     set (set but empty: no program table at all);
//   - otherwise the file beside the program named after it with ".strings"
//     appended (/opt/board/bin/board -> /opt/board/bin/board.strings), when
//     that file exists.
// The run-time table is registered by the host later, from entries in memory
// or from a file of the same format. docs/strings.md describes the format.
//
// Numbers run from 0 to 65535; an empty text counts as no text.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_STRINGS_H
#define BFC_PLAT_STRINGS_H

#include "sys_base.h"
#include "sys_string.h"

/// One numbered text of a run-time table; a null text counts as empty.
struct PLAT_StringEntry {
  int id;
  char const *text;
};

/// The environment variable that names the program's string file.
constexpr char const PLAT_StringFileVariable[] = "BFC_STRINGS";

/// Replaces the run-time table with copies of `count` entries (none, and the table is
/// removed, when `count` is 0). Returns 1; returns 0 and keeps the old table when a number
/// lies outside 0 to 65535, appears twice, `count` is negative or `entries` is null with a
/// positive count.
BFC_API int PLAT_RegisterStrings(PLAT_StringEntry const *entries, int count);

/// Replaces the run-time table with the texts of a string file. Returns 1; returns 0 and
/// keeps the old table when the file cannot be read or has a bad line, and then stores a
/// message such as "app.strings:3: a number from 0 to 65535 is expected" in `*error`
/// when `error` is not null.
BFC_API int PLAT_RegisterStringFile(char const *path, SYS_String *error = nullptr);

/// The file the program's table was read from at load; empty when there was none.
BFC_API SYS_String PLAT_GetProgramStringFile();

#endif
