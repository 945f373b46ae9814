//===- plat/plat_find.h - Wildcard search of a directory -----------------===//
//
// A search takes a path whose last component may hold wildcards ("*", "?",
// "[...]", matched by fnmatch, never by a shell) and yields the matching
// entries of that directory one at a time, "." and ".." included when they
// match. The entries are read once when the search starts and come in byte
// order of their names, so a search gives the same sequence on every run.
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
  /// Starts a search for `pattern`; IsOpen() is false when nothing matched.
  explicit DirSearch(char const *pattern);

  bool IsOpen() const { return !m_Names.empty(); }
  /// Fills `entry` with the next match; false (and the search closes) at the end.
  bool Next(PLAT_FindRecord &entry);

private:
  std::string m_Directory;  // with its closing "/", or empty for the working directory
  std::vector<std::string> m_Names;
  std::size_t m_Next = 0;
};

}  // namespace plat

#endif
