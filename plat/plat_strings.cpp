//===- plat/plat_strings.cpp - The host's tables of numbered texts ------===//
//
// Both tables are reached through functions holding them as local statics:
// the program's table is then read on the first lookup, which the unit table
// makes while the library loads, whatever order the library's files are
// initialised in, and it outlives every load-time object that looked it up.
//
//===------------------------------------------------------------------===//
#include "plat_strings.h"

#include "plat/plat_string_file.h"
#include "plat/plat_string_store.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

struct ProgramStrings {
  std::string source;  // the file read; empty when there was none
  plat::StringTable table;
};

/// The file beside the running program: its path with ".strings" appended.
std::string besideProgram() {
  char path[PATH_MAX];
  ssize_t const length = readlink("/proc/self/exe", path, sizeof path - 1);
  if (length <= 0) return std::string();
  return std::string(path, static_cast<size_t>(length)) + ".strings";
}

// Bad lines are skipped; nobody can be told at load but the person who runs the program.
ProgramStrings loadProgramStrings() {
  ProgramStrings strings;
  char const *const named = std::getenv(PLAT_StringFileVariable);
  std::string const path = named != nullptr ? std::string(named) : besideProgram();
  if (path.empty()) return strings;
  plat::StringFile file = plat::readStringFile(path.c_str());
  if (named == nullptr && file.missing) return strings;
  for (auto const &error : file.errors) std::fprintf(stderr, "bfc: %s\n", error.c_str());
  if (file.read) strings.source = path;
  strings.table = std::move(file.table);
  return strings;
}

ProgramStrings const &programStrings() {
  static ProgramStrings const strings = loadProgramStrings();
  return strings;
}

plat::StringTable &registeredStrings() {
  static plat::StringTable table;
  return table;
}

}  // namespace

namespace plat {

char const *findProgramString(int id) { return programStrings().table.find(id); }

char const *findRegisteredString(int id) { return registeredStrings().find(id); }

}  // namespace plat

int PLAT_RegisterStrings(PLAT_StringEntry const *entries, int count) {
  if (count < 0 || (entries == nullptr && count > 0)) return 0;
  plat::StringTable table;
  for (int i = 0; i < count; ++i) {
    char const *const text = entries[i].text;
    if (!table.add(entries[i].id, text != nullptr ? text : "")) return 0;
  }
  registeredStrings() = std::move(table);
  return 1;
}

int PLAT_RegisterStringFile(char const *path, SYS_String *error) {
  if (path == nullptr || *path == '\0') {
    if (error != nullptr) *error = "no string file was named";
    return 0;
  }
  plat::StringFile file = plat::readStringFile(path);
  if (!file.errors.empty()) {
    if (error != nullptr) *error = file.errors.front().c_str();
    return 0;
  }
  registeredStrings() = std::move(file.table);
  return 1;
}

SYS_String PLAT_GetProgramStringFile() { return SYS_String(programStrings().source.c_str()); }
