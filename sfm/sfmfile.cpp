//===- sfm/sfmfile.cpp - Named files: life, opening, closing, positions --===//
//
// The typed, line and formatted transfers live in sfmfile_io.cpp; mapping in
// sfmfile_map.cpp. Every event goes through the manager, whose hooks may do
// anything, this file's own operations included: after an event the stream is
// looked up again, never kept in a local across it.
//
//===------------------------------------------------------------------===//
#include "sfm_file.h"

#include "plat/plat_file.h"
#include "plat_error.h"
#include "sfm.h"
#include "sfm/sfm_file_events.h"
#include "sfm/sfm_mapping.h"
#include "ssm_report.h"

#include <cerrno>
#include <climits>

SFM::EventCode sfm_file::raise(SFM::EventCode code, SYS_String const &name) {
  SFM *const manager = SFM::GetManager();
  if (manager == nullptr) return SFM::EventNone;
  SFM_EventData data(name, nullptr);
  return manager->Event(code, data);
}

SFM_File::SFM_File(char const *name) {
  if (name != nullptr && *name != '\0') {
    m_Name = name;
    m_Length = -1;
  }
  registerWithManager();
}

SFM_File::SFM_File(char const *name, char const *mode) : SFM_File(name) {
  bool const named = sfm_file::check(name != nullptr && *name != '\0', __LINE__);
  if (!sfm_file::check(mode != nullptr && *mode != '\0', __LINE__) || !named) return;
  m_Mode = mode;
  Open(SYS_String());
  CheckLength();
}

SFM_File::SFM_File(SFM_File &source)
    : SCC_SafeDListNode<SFM_File>(), m_Name(source.m_Name), m_Mode(source.m_Mode), m_Length(-1) {
  SFM *const manager = SFM::GetManager();
  if (!sfm_file::check(manager != nullptr, __LINE__)) return;
  if (source.IsLinked()) {
    manager->GetFileList().InsertAfter(&source, this);
  } else {
    manager->GetFileList().AddHead(this);
  }
}

SFM_File &SFM_File::operator=(SFM_File &source) {
  if (&source != this && sfm_file::check(!IsOpen(), __LINE__)) {
    m_Name = source.m_Name;
    m_Mode = source.m_Mode;
    forgetLength();
  }
  return *this;
}

char const *SFM_File::operator=(char const *name) {
  SetName(SYS_String(name));
  return name;
}

SFM_File::~SFM_File() {
  try {
    Close();
  } catch (...) {
    // The failed check was reported; a destructor cannot pass the throw on.
  }
}

void SFM_File::registerWithManager() {
  SFM *const manager = SFM::GetManager();
  if (sfm_file::check(manager != nullptr, __LINE__)) manager->GetFileList().AddHead(this);
}

void SFM_File::SetName(SYS_String const &name) {
  if (!sfm_file::check(!IsOpen(), __LINE__)) return;
  m_Name = name;
  forgetLength();
}

void SFM_File::SetMode(SYS_String const &mode) {
  if (sfm_file::check(!IsOpen(), __LINE__)) m_Mode = mode;
}

int SFM_File::IsValid() { return 1; }

int SFM_File::IsOpen() { return m_Stream != nullptr || m_TempClosed != 0; }

int SFM_File::ReOpen(SYS_String const &name, SYS_String const &mode) {
  Close();
  SetName(name);
  return Open(mode);
}

int SFM_File::Open(SYS_String mode) {
  if (!sfm_file::check(!IsOpen(), __LINE__)) return 0;
  if (!sfm_file::check(SFM::GetManager() != nullptr, __LINE__)) return 0;
  sfm_file::raise(SFM::EventOpening, m_Name);
  if (!mode.IsEmpty()) m_Mode = mode;
  for (;;) {
    // A hook may have opened the file meanwhile.
    if (IsOpen()) return 1;
    if (openStream(m_Mode)) {
      sfm_file::raise(SFM::EventOpened, m_Name);
      forgetLength();
      return 1;
    }
    if (sfm_file::raise(SFM::EventOpenFailed, m_Name) != SFM::EventRetry) return 0;
  }
}

bool SFM_File::openStream(char const *mode) {
  errno = 0;
  m_Stream = plat::openStream(m_Name, mode);
  m_LastAccess = LastAccess::None;
  return m_Stream != nullptr;
}

int SFM_File::MayBeTempClosed() { return m_Stream != nullptr && m_TempClosed == 0; }

int SFM_File::TempClose() {
  if (!sfm_file::check(MayBeTempClosed() != 0, __LINE__)) return 0;
  // Output still buffered goes out now: when it cannot, the file stays open with its buffer
  // (204 tells the hooks), so a temporary close never drops a byte.
  if (!plat::flushStream(m_Stream)) {
    sfm_file::raise(SFM::EventWriteError, m_Name);
    return 0;
  }
  // A stream without positions (a pipe, a terminal) could not be reopened where it was.
  long const position = std::ftell(m_Stream);
  if (position < 0) return 0;
  m_Positions.Push(position);
  m_TempClosed = 1;
  std::FILE *const stream = m_Stream;
  m_Stream = nullptr;
  if (!plat::closeStream(stream)) sfm_file::raise(SFM::EventCloseFailed, m_Name);
  return 1;
}

SYS_String SFM_File::GetReOpenMode() const {
  SYS_String mode = m_Mode;
  if (!mode.IsEmpty() && mode[0] == 'w') mode.SetAt(0, 'a');
  // "x" (the file must not exist yet) held for the first opening only.
  for (int at = mode.Find('x'); at >= 0; at = mode.Find('x')) mode.Delete(at, 1);
  return mode;
}

int SFM_File::ReOpen() {
  if (!sfm_file::check(SFM::GetManager() != nullptr, __LINE__)) return 0;
  if (m_TempClosed == 0) return 1;
  m_TempClosed = 0;
  sfm_file::raise(SFM::EventOpening, m_Name);
  SYS_String const mode = GetReOpenMode();
  while (!openStream(mode)) {
    // The manager answers 2 only when it freed a descriptor; the hooks decide the rest.
    if (sfm_file::raise(SFM::EventOpenFailed, m_Name) != SFM::EventRetry) {
      m_TempClosed = 1;  // still closed for a while, its position kept for a later try
      sfm_file::check(false, __LINE__);
      return 0;
    }
  }
  if (m_Positions.IsEmpty()) return 1;
  long const position = m_Positions.Pop();
  return std::fseek(m_Stream, position, SEEK_SET) == 0 ? 1 : 0;
}

int SFM_File::Close() {
  // Without a manager the stream is still closed (no events), and only then reported:
  // a report may throw, and the bytes come first.
  bool const managed = SFM::GetManager() != nullptr;
  int closed = 1;
  if (IsOpen()) {
    // A file closed for a while was written out then; it is reopened only to be closed
    // with its events, and a failed reopen leaves nothing to do.
    if (m_TempClosed != 0 && managed) ReOpen();
    if (m_Stream != nullptr) {
      errno = 0;
      std::FILE *const stream = m_Stream;
      m_Stream = nullptr;
      clearerr(stream);
      closed = plat::closeStream(stream) ? 1 : 0;
      if (managed) sfm_file::raise(closed ? SFM::EventClosed : SFM::EventCloseFailed, m_Name);
    }
    if (m_TempClosed != 0 && !m_Positions.IsEmpty()) m_Positions.Pop();
  }
  m_Stream = nullptr;
  m_TempClosed = 0;
  if (m_Mapping) UnmapMemory();
  sfm_file::check(managed, __LINE__);
  return closed;
}

int SFM_File::Flush() {
  if (!IsOpen()) return 0;
  if (ReOpen() == 0 || !sfm_file::check(m_Stream != nullptr, __LINE__)) return 0;
  errno = 0;
  if (plat::flushStream(m_Stream)) return 1;
  raiseStreamError(SFM::EventWriteError);
  return 0;
}

int SFM_File::Eof() {
  if (!sfm_file::check(IsOpen() != 0, __LINE__)) return 1;
  if (ReOpen() == 0 || !sfm_file::check(m_Stream != nullptr, __LINE__)) return 1;
  if (std::feof(m_Stream)) return 1;
  long const position = GetPosition();
  return position >= 0 && position == GetLength() ? 1 : 0;
}

int SFM_File::Seek(int offset, SeekType origin) {
  if (ReOpen() == 0 || m_Stream == nullptr) return 0;
  m_LastAccess = LastAccess::None;
  return std::fseek(m_Stream, offset, origin) == 0 ? 1 : 0;
}

long SFM_File::GetPosition() {
  if (!IsOpen() || ReOpen() == 0 || m_Stream == nullptr) return -1;
  long const position = std::ftell(m_Stream);
  if (position > INT_MAX) {
    PLAT_SetLastError(EOVERFLOW);
    return -1;
  }
  return position;
}

int SFM_File::PushPosition(int offset, SeekType origin) {
  long const position = GetPosition();
  if (position < 0) return 0;
  if (Seek(offset, origin)) {
    m_Positions.Push(position);
    return 1;
  }
  Seek(static_cast<int>(position), FromStart);
  return 0;
}

int SFM_File::PopPosition() {
  if (!sfm_file::check(!m_Positions.IsEmpty(), __LINE__)) return 0;
  long const position = m_Positions.Pop();
  return Seek(static_cast<int>(position), FromStart);
}

long SFM_File::GetLength() {
  if (m_Length != -1 || m_Name.IsEmpty()) return m_Length;
  if (m_Stream == nullptr) {
    // Closed, or closed for a while with everything written out: the file system knows.
    long long const size = plat::fileSize(m_Name);
    if (size > INT_MAX) PLAT_SetLastError(EFBIG);
    if (size < 0 || size > INT_MAX) return -1;
    m_Length = static_cast<int>(size);
    return m_Length;
  }
  long const position = std::ftell(m_Stream);
  m_LastAccess = LastAccess::None;
  if (position < 0 || std::fseek(m_Stream, 0, SEEK_END) != 0) return -1;
  long const end = std::ftell(m_Stream);
  std::fseek(m_Stream, position, SEEK_SET);
  if (end > INT_MAX) PLAT_SetLastError(EFBIG);
  if (end < 0 || end > INT_MAX) return -1;
  m_Length = static_cast<int>(end);
  return m_Length;
}

void SFM_File::CheckLength() {
  if (m_Length == -1) return;
  if (m_Stream == nullptr) {
    forgetLength();
    return;
  }
  long const position = std::ftell(m_Stream);
  if (position < 0 || position >= m_Length) forgetLength();
}
