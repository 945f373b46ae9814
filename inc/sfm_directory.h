//===- inc/sfm_directory.h - Directories: search, copy, move, delete, create ===//
//
// A directory is a path with operations on the file system below it. Relative
// names given to it, search patterns and the names of copies, moves and
// deletes alike, are resolved against its own path; a directory without a path
// leaves them relative to the working directory. Copy, move and delete report
// to the file manager and try again when a hook answers EventRetry.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SFM_DIRECTORY_H
#define BFC_SFM_DIRECTORY_H

#include "plat_findrecord.h"
#include "sfm_filepath.h"
#include "sys_base.h"
#include "sys_string.h"

#include <memory>

namespace plat {
class DirSearch;
}

/// A wildcard search in progress and the entry it found last.
class BFC_API SFM_FindData : public PLAT_FindRecord {
public:
  SFM_FindData();
  SFM_FindData(SFM_FindData const &) = delete;
  SFM_FindData &operator=(SFM_FindData const &) = delete;
  ~SFM_FindData();

  /// Starts a search for `pattern` (closing a running one) and finds its first entry.
  void Start(char const *pattern);
  /// Finds the next entry; at the end the search closes. A closed search stays closed.
  void Advance();
  void Close();
  /// 1 while the record holds an entry of a running search.
  int IsOpen() const noexcept { return m_Search != nullptr; }

private:
  std::unique_ptr<plat::DirSearch> m_Search;
};

/// A directory path with the operations on the files below it.
class BFC_API SFM_Directory : public SFM_FilePath {
public:
  SFM_Directory();
  SFM_Directory(char const *path);
  /// The same path, without the source's searches.
  SFM_Directory(SFM_Directory const &source);
  SFM_Directory &operator=(SFM_Directory const &source);
  ~SFM_Directory() override;

  /// Sets the path; the searches stay.
  SYS_String operator=(char const *path) { return SFM_FilePath::operator=(path); }
  SYS_String operator=(SYS_String const &path) { return SFM_FilePath::operator=(path); }

  /// `name` completed against this directory; a name with a base (drive, share, root) as
  /// it is.
  SYS_String operator+(char const *name) const;
  /// The working directory, closed with the default separator.
  SYS_String const GetCurDir() const;

  // A pattern starts a new search, null continues the running one. The name returned lives
  // in the search's record until the next call on the same search; null at the end.
  char *GetNextEntry(char const *pattern = nullptr);   ///< any entry, "." and ".." included
  char *GetNextFile(char const *pattern = nullptr);    ///< files only (shares the entry search)
  char *GetNextSubdir(char const *pattern = nullptr);  ///< directories but "." and ".."
  /// 1 when a file matches; the entry search is closed afterwards.
  int FileExists(char const *pattern);
  /// 1 when a directory matches; the subdirectory search is closed afterwards.
  int DirExists(char const *pattern);

  /// Copies `source` to `target`. An existing target with `overwrite` 0 raises 151 (error
  /// 17), and only the answer EventYes goes on; a failed copy raises 205 and EventRetry
  /// tries again. A missing source never touches the target; a file is never copied onto
  /// itself (by device and inode, whatever the names). 1 when copied.
  int CopyFileA(char const *source, char const *target, int overwrite);
  /// A copy (failures raise 206) followed by the deletion of the source. 1 when moved.
  int MoveFileA(char const *source, char const *target, int overwrite);
  /// Deletes a file (never a directory); a failure raises 207 and EventRetry tries again.
  int DeleteFileA(char const *name);
  /// Creates one directory; non-zero when it was created.
  int MakeDirectory(SYS_String path);
  /// Creates every directory along `path`, cutting at both separators. The result of the
  /// last creation (0 when the deepest directory existed); 0 for an empty path.
  int MakePath(SYS_String path);

protected:
  char *GetNextItem(SFM_FindData *search, char const *pattern);

private:
  SYS_String resolve(char const *name) const;
  int _CopyFile(char const *source, char const *target);
  int copyWithRetries(SYS_String const &source, SYS_String const &target, int overwrite, int failureCode,
                      char const *givenTarget);
  SFM_FindData &entrySearch();
  SFM_FindData &subdirSearch();

  std::unique_ptr<SFM_FindData> m_EntrySearch;
  std::unique_ptr<SFM_FindData> m_SubdirSearch;
};

#endif
