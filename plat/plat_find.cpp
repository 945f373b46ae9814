//===- plat/plat_find.cpp - Wildcard search of a directory ---------------===//
#include "plat/plat_find.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <dirent.h>
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
  m_Directory = cut == std::string::npos ? std::string() : path.substr(0, cut + 1);
  std::string name = cut == std::string::npos ? path : path.substr(cut + 1);
  if (name.empty()) return;
  // "*.*" is how hosts ask for every entry, dotted or not.
  if (name == "*.*") name = "*";
  if (!hasWildcard(name)) {
    // A plain name is one lookup, not a read of the whole directory.
    struct stat info;
    if (::stat((m_Directory + name).c_str(), &info) == 0) m_Names.push_back(name);
    return;
  }
  DIR *const dir = ::opendir(m_Directory.empty() ? "." : m_Directory.c_str());
  if (dir == nullptr) return;
  while (dirent const *item = ::readdir(dir))
    if (::fnmatch(name.c_str(), item->d_name, FNM_NOESCAPE) == 0) m_Names.emplace_back(item->d_name);
  ::closedir(dir);
  std::sort(m_Names.begin(), m_Names.end());
}

bool DirSearch::Next(PLAT_FindRecord &entry) {
  while (m_Next < m_Names.size()) {
    std::string const &name = m_Names[m_Next++];
    struct stat info;
    // An entry removed since the search started is passed over.
    if (::stat((m_Directory + name).c_str(), &info) != 0 && ::lstat((m_Directory + name).c_str(), &info) != 0)
      continue;
    entry.attrib = (S_ISDIR(info.st_mode) ? PLAT_FindRecord::kSubdirectory : 0) |
                   ((info.st_mode & S_IWUSR) == 0 ? PLAT_FindRecord::kReadOnly : 0);
    entry.time_create = clampTime(info.st_ctime);
    entry.time_access = clampTime(info.st_atime);
    entry.time_write = clampTime(info.st_mtime);
    entry.size = info.st_size > INT_MAX ? -1 : static_cast<long>(info.st_size);
    std::size_t const length = std::min(name.size(), static_cast<std::size_t>(PLAT_FindRecord::kNameSize - 1));
    std::memcpy(entry.name, name.data(), length);
    entry.name[length] = '\0';
    return true;
  }
  m_Names.clear();
  m_Next = 0;
  return false;
}

}  // namespace plat
