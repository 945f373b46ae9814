//===- sfm/sfmdir.cpp - Directories: search, copy, move, delete, create --===//
#include "sfm_directory.h"

#include "plat/plat_file.h"
#include "plat/plat_find.h"
#include "plat_error.h"
#include "sfm.h"
#include "ssm_report.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace {

constexpr char kSource[] = "sfm/sfmdir";

/// The byte copy moves a file in chunks of at most this many bytes.
constexpr long kCopyChunk = 100000;

bool isSeparator(char ch) { return ch == '\\' || ch == '/'; }

/// Raises `code` with both names and returns the answer.
SFM::EventCode raise(SFM::EventCode code, SYS_String const &first, SYS_String const &second) {
  SFM *const manager = SFM::GetManager();
  if (manager == nullptr) return SFM::EventNone;
  SFM_EventData data(first, second);
  return manager->Event(code, data);
}

}  // namespace

SFM_FindData::SFM_FindData() = default;

SFM_FindData::~SFM_FindData() = default;

void SFM_FindData::Start(char const *pattern) {
  Close();
  m_Search.reset(new plat::DirSearch(pattern));
  Advance();
}

void SFM_FindData::Advance() {
  if (m_Search && !m_Search->Next(*this)) m_Search.reset();
}

void SFM_FindData::Close() { m_Search.reset(); }

SFM_Directory::SFM_Directory() = default;

SFM_Directory::SFM_Directory(char const *path) : SFM_FilePath(path) {}

SFM_Directory::SFM_Directory(SFM_Directory const &source) : SFM_FilePath(source) {}

SFM_Directory &SFM_Directory::operator=(SFM_Directory const &source) {
  SFM_FilePath::operator=(source);
  return *this;
}

SFM_Directory::~SFM_Directory() = default;

SYS_String SFM_Directory::operator+(char const *name) const {
  SFM_FilePath path(name);
  return path.SetDefPath(*this);
}

SYS_String SFM_Directory::resolve(char const *name) const { return *this + name; }

SYS_String const SFM_Directory::GetCurDir() const {
  SFM_FilePath path(plat::currentDirectory().c_str());
  path.AddSeparator();
  return path.GetFileDirectory();
}

SFM_FindData &SFM_Directory::entrySearch() {
  if (!m_EntrySearch) m_EntrySearch.reset(new SFM_FindData);
  return *m_EntrySearch;
}

SFM_FindData &SFM_Directory::subdirSearch() {
  if (!m_SubdirSearch) m_SubdirSearch.reset(new SFM_FindData);
  return *m_SubdirSearch;
}

char *SFM_Directory::GetNextItem(SFM_FindData *search, char const *pattern) {
  if (pattern != nullptr) {
    SYS_String text(pattern);
    // A closing separator names the directory itself, not what is in it.
    if (!text.IsEmpty() && text[text.GetLength() - 1] == DefaultSeparatorChar())
      text = text.Left(text.GetLength() - 1);
    SFM_FilePath path(text);
    search->Start(path.SetDefPath(*this));
  } else {
    search->Advance();
  }
  return search->IsOpen() ? search->name : nullptr;
}

char *SFM_Directory::GetNextEntry(char const *pattern) { return GetNextItem(&entrySearch(), pattern); }

char *SFM_Directory::GetNextFile(char const *pattern) {
  SFM_FindData &search = entrySearch();
  for (char *name = GetNextItem(&search, pattern); name != nullptr; name = GetNextItem(&search, nullptr))
    if ((search.attrib & PLAT_FindRecord::kSubdirectory) == 0) return name;
  return nullptr;
}

char *SFM_Directory::GetNextSubdir(char const *pattern) {
  SFM_FindData &search = subdirSearch();
  for (char *name = GetNextItem(&search, pattern); name != nullptr; name = GetNextItem(&search, nullptr)) {
    bool const dots = std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
    if ((search.attrib & PLAT_FindRecord::kSubdirectory) != 0 && !dots) return name;
  }
  return nullptr;
}

int SFM_Directory::FileExists(char const *pattern) {
  int const found = GetNextFile(pattern) != nullptr ? 1 : 0;
  entrySearch().Close();
  return found;
}

int SFM_Directory::DirExists(char const *pattern) {
  int const found = GetNextSubdir(pattern) != nullptr ? 1 : 0;
  subdirSearch().Close();
  return found;
}

int SFM_Directory::copyWithRetries(SYS_String const &source, SYS_String const &target, int overwrite,
                                   int failureCode, char const *givenTarget) {
  if (overwrite == 0 && FileExists(givenTarget)) {
    PLAT_SetLastError(EEXIST);
    if (raise(SFM::EventTargetExists, source, target) != SFM::EventYes) return 0;
  }
  while (_CopyFile(source, target) == 0)
    if (raise(static_cast<SFM::EventCode>(failureCode), source, target) != SFM::EventRetry) return 0;
  return 1;
}

int SFM_Directory::CopyFileA(char const *source, char const *target, int overwrite) {
  if (!SSM_Check(SFM::GetManager() != nullptr, "", kSource, __LINE__)) return 0;
  if (!SSM_Check(source != nullptr && target != nullptr, "", kSource, __LINE__)) return 0;
  return copyWithRetries(resolve(source), resolve(target), overwrite, SFM::EventCopyFailed, target);
}

int SFM_Directory::MoveFileA(char const *source, char const *target, int overwrite) {
  if (!SSM_Check(SFM::GetManager() != nullptr, "", kSource, __LINE__)) return 0;
  if (!SSM_Check(source != nullptr && target != nullptr, "", kSource, __LINE__)) return 0;
  if (!copyWithRetries(resolve(source), resolve(target), overwrite, SFM::EventMoveFailed, target)) return 0;
  return DeleteFileA(source);
}

int SFM_Directory::DeleteFileA(char const *name) {
  if (!SSM_Check(SFM::GetManager() != nullptr, "", kSource, __LINE__)) return 0;
  if (!SSM_Check(name != nullptr, "", kSource, __LINE__)) return 0;
  SYS_String const resolved = resolve(name);
  while (!plat::removeFile(resolved))
    if (raise(SFM::EventDeleteFailed, resolved, SYS_String()) != SFM::EventRetry) return 0;
  return 1;
}

int SFM_Directory::_CopyFile(char const *source, char const *target) {
  // Opening the target for writing would empty the source.
  if (plat::sameFile(source, target)) {
    PLAT_SetLastError(EINVAL);
    return 0;
  }
  // A directory opens for reading here; it is refused by name before its length misleads.
  if (plat::fileSize(source) < 0 && PLAT_GetLastError() == EISDIR) return 0;
  SFM_File from(source);
  if (!from.Open("rb")) return 0;
  long const length = from.GetLength();
  if (length < 0) return 0;
  SFM_File to(target);
  if (!to.Open("wb")) return 0;
  bool intact = true;
  long copied = 0;
  if (length > 0) {
    long const chunk = std::min(length, kCopyChunk);
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[chunk]);
    if (!buffer) {
      PLAT_SetLastError(ENOMEM);
      return 0;
    }
    for (;;) {
      long const done = from.Read(buffer.get(), chunk);
      if (done > 0) intact = to.Write(buffer.get(), done) != 0 && intact;
      copied += done;
      if (done < chunk || from.Eof()) break;
    }
  }
  // A copy that lost a byte on the way (a read or write error, a failed close, a source
  // that changed its length) is no copy: a move must not delete its source after it.
  intact = to.Close() != 0 && intact;
  from.Close();
  if (intact && copied != length) PLAT_SetLastError(EIO);
  return intact && copied == length ? 1 : 0;
}

int SFM_Directory::MakeDirectory(SYS_String path) { return plat::makeDirectory(path) ? 1 : 0; }

int SFM_Directory::MakePath(SYS_String path) {
  if (path.IsEmpty()) return 0;
  if (!isSeparator(path[path.GetLength() - 1])) path += DefaultSeparatorChar();
  int result = 1;
  int const length = path.GetLength();
  for (int i = 0; i < length; ++i) {
    if (!isSeparator(path[i]) || i == 0 || path[i - 1] == ':') continue;
    result = MakeDirectory(path.Left(i));
  }
  return result;
}

// The file's own operations work on its name through a directory without a path, so the
// name means what it means to the file. Buffered output goes out first: a copy of an open
// file holds every byte written to it so far.

int SFM_File::Copy(char const *target, int overwrite) {
  if (m_Stream != nullptr) Flush();
  return SFM_Directory().CopyFileA(m_Name, target, overwrite);
}

int SFM_File::Move(char const *target, int overwrite) {
  if (m_Stream != nullptr) Flush();
  return SFM_Directory().MoveFileA(m_Name, target, overwrite);
}

int SFM_File::Delete() { return SFM_Directory().DeleteFileA(m_Name); }

int SFM_File::Exists() { return SFM_Directory().FileExists(m_Name); }
