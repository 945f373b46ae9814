//===- plat/plat_find.cpp - Wildcard search of a directory ---------------===//
#include "plat/plat_find.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>

namespace plat {

namespace {

bool hasWildcard(std::string const &text) { return text.find_first_of("*?[") != std::string::npos; }

int clampTime(long long seconds) { return seconds > INT_MAX ? INT_MAX : static_cast<int>(seconds); }

}  // namespace

DirSearch::DirSearch(char const *pattern) {
  std::string const path = pattern != nullptr ? pattern : "";
  std::size_t const cut = path.rfind('/');
  std::string const directory = cut == std::string::npos ? std::string() : path.substr(0, cut + 1);
  std::string name = cut == std::string::npos ? path : path.substr(cut + 1);
  if (name.empty()) return;
  // "*.*" is how hosts ask for every entry, dotted or not.
  if (name == "*.*") name = "*";
  DIR *const dir = ::opendir(directory.empty() ? "." : directory.c_str());
  if (dir == nullptr) return;
  int const dirFd = ::dirfd(dir);
  if (!hasWildcard(name)) {
    // A plain name is one lookup, not a read of the whole directory.
    add(dirFd, name.c_str());
  } else {
    // The names first, then their status: asking for status between directory reads
    // makes both slower.
    std::vector<std::string> names;
    while (dirent const *item = ::readdir(dir))
      if (::fnmatch(name.c_str(), item->d_name, FNM_NOESCAPE) == 0) names.emplace_back(item->d_name);
    m_Entries.reserve(names.size());
    for (std::string const &match : names) add(dirFd, match.c_str());
  }
  // Every entry is looked at while the directory is open, so the search holds no
  // descriptor between its calls.
  ::closedir(dir);
  m_Order.resize(m_Entries.size());
  for (std::size_t i = 0; i < m_Order.size(); ++i) m_Order[i] = i;
  std::sort(m_Order.begin(), m_Order.end(),
            [this](std::size_t a, std::size_t b) { return std::strcmp(m_Entries[a].name, m_Entries[b].name) < 0; });
}

void DirSearch::add(int dirFd, char const *name) {
  struct stat info;
  // A dangling link is still an entry: its own status stands in for its target's.
  if (::fstatat(dirFd, name, &info, 0) != 0 && ::fstatat(dirFd, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return;
  std::size_t const length = std::strlen(name);
  if (length >= static_cast<std::size_t>(PLAT_FindRecord::kNameSize)) return;  // cannot be shown whole
  m_Entries.emplace_back();
  PLAT_FindRecord &entry = m_Entries.back();
  entry.attrib = (S_ISDIR(info.st_mode) ? PLAT_FindRecord::kSubdirectory : 0) |
                 ((info.st_mode & S_IWUSR) == 0 ? PLAT_FindRecord::kReadOnly : 0);
  entry.time_create = clampTime(info.st_ctime);
  entry.time_access = clampTime(info.st_atime);
  entry.time_write = clampTime(info.st_mtime);
  entry.size = info.st_size > INT_MAX ? -1 : static_cast<long>(info.st_size);
  std::memcpy(entry.name, name, length + 1);
}

bool DirSearch::Next(PLAT_FindRecord &entry) {
  if (m_Next < m_Order.size()) {
    entry = m_Entries[m_Order[m_Next++]];
    return true;
  }
  m_Entries.clear();
  m_Order.clear();
  m_Next = 0;
  return false;
}

}  // namespace plat
