//===- plat/plat_find.h - Wildcard search of a directory -----------------===//
//
// A search takes a path whose last component may hold wildcards ("*", "?",
// "[...]", matched by fnmatch, never by a shell) and yields the matching
// entries of that directory one at a time, "." and ".." included when they
// match. The entries, with their status, are read once when the search starts
// and come in byte order of their names, so a search gives the same sequence
// on every run and holds no descriptor between calls.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_FIND_H
#define BFC_PLAT_FIND_H

#include "plat_findrecord.h"

#include <string>
#include <vector>

namespace plat {

/// One running search.
class DirSearch {
public:
  /// Starts a search for `pattern`; the first Next() is false when nothing matched.
  explicit DirSearch(char const *pattern);

  /// Fills `entry` with the next match; false (and the search closes) at the end.
  bool Next(PLAT_FindRecord &entry);

private:
  /// Adds the entry `name` of the open directory `dirFd`, unless it vanished meanwhile or
  /// its name is too long for the record.
  void add(int dirFd, char const *name);

  std::vector<PLAT_FindRecord> m_Entries;
  std::vector<std::size_t> m_Order;  // indices into m_Entries in name order; records are large
  std::size_t m_Next = 0;
};

}  // namespace plat

#endif
