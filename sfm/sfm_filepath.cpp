//===- sfm/sfm_filepath.cpp - Paths split into base, directory, name, extension ===//
#include "sfm_filepath.h"

SYS_String const SFM_FilePath::DirectorySeparators("\\/");
int SFM_FilePath::DefaultSeparator = 1;

namespace {

bool isSeparator(char ch) { return ch == '\\' || ch == '/'; }

/// The length of the base at the front of `path`: a drive up to the first ":", a share
/// "\\server\share\" (the whole path when it stops short), the root "/", or 0.
int baseLength(SYS_String const &path) {
  int const colon = path.Find(':');
  if (colon >= 0) return colon + 1;
  int const length = path.GetLength();
  if (length > 2 && isSeparator(path[0]) && path[1] == path[0]) {
    int const afterServer = path.FindOneOf(SFM_FilePath::DirectorySeparators, 2);
    int const afterShare = afterServer < 0 ? -1 : path.FindOneOf(SFM_FilePath::DirectorySeparators, afterServer + 1);
    return afterShare < 0 ? length : afterShare + 1;
  }
  if (length > 0 && path[0] == '/' && (length == 1 || path[1] != '/')) return 1;
  return 0;
}

/// True when `text` is not empty and does not end with the default separator.
bool needsSeparator(SYS_String const &text) {
  return !text.IsEmpty() && text[text.GetLength() - 1] != SFM_FilePath::DefaultSeparatorChar();
}

}  // namespace

char SFM_FilePath::DefaultSeparatorChar() noexcept {
  return DirectorySeparators[DefaultSeparator == 0 ? 0 : 1];
}

SFM_FilePath::SFM_FilePath(char const *path) { take(path); }

SFM_FilePath::SFM_FilePath(SYS_String const &path) { Process(path); }

SYS_String SFM_FilePath::operator=(char const *path) {
  take(path);
  return m_Full;
}

SYS_String SFM_FilePath::operator=(SYS_String const &path) {
  if (path.IsEmpty()) {
    Clear();
  } else {
    Process(path);
  }
  return m_Full;
}

void SFM_FilePath::take(char const *path) {
  if (path == nullptr) {
    Clear();
  } else {
    Process(SYS_String(path));
  }
}

SYS_String const &SFM_FilePath::reread(char const *path, SYS_String const &part) {
  if (path != nullptr) take(path);
  Regenerate();
  return part;
}

void SFM_FilePath::Process(SYS_String const &path) {
  int const restStart = baseLength(path);
  m_Base = path.Left(restStart);
  int const lastSeparator = path.ReverseFindOneOf(DirectorySeparators);
  if (lastSeparator >= restStart) {
    m_Directory = path.Mid(restStart, lastSeparator + 1 - restStart);
    m_NameExt = path.Mid(lastSeparator + 1);
  } else {
    m_Directory.Empty();
    m_NameExt = path.Mid(restStart);
  }
  m_NameExt.TrimRight(".");
  int const dot = m_NameExt.ReverseFind('.');
  if (dot >= 0) {
    m_Name = m_NameExt.Left(dot);
    m_Extension = m_NameExt.Mid(dot);
  } else {
    m_Name = m_NameExt;
    m_Extension.Empty();
  }
  Regenerate();
}

void SFM_FilePath::Clear() {
  m_Base.Empty();
  m_Directory.Empty();
  m_Name.Empty();
  m_Extension.Empty();
  Regenerate();
}

void SFM_FilePath::Regenerate() {
  m_NameExt = m_Name;
  m_NameExt += m_Extension;
  m_Full = m_Base;
  m_Full += m_Directory;
  m_Full += m_NameExt;
}

SYS_String SFM_FilePath::GetBasePath(char const *path) { return reread(path, m_Base); }

SYS_String SFM_FilePath::GetRelPath(char const *path) { return reread(path, m_Directory); }

SYS_String SFM_FilePath::GetFileDirectory(char const *path) {
  reread(path, m_Base);
  return m_Base + m_Directory;
}

SYS_String SFM_FilePath::GetFileName(char const *path) { return reread(path, m_Name); }

SYS_String SFM_FilePath::GetFileExtension(char const *path) { return reread(path, m_Extension); }

SYS_String SFM_FilePath::GetFileNameExt(char const *path) { return reread(path, m_NameExt); }

SYS_String SFM_FilePath::SetBasePath(char const *value) {
  m_Base = SFM_FilePath(value).m_Base;
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetRelPath(char const *value) {
  m_Directory = SFM_FilePath(value).m_Directory;
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetFileDirectory(char const *value) {
  SFM_FilePath const other(value);
  m_Base = other.m_Base;
  m_Directory = other.m_Directory;
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetFileName(char const *value, int nameOnly) {
  SFM_FilePath const other(value);
  m_Name = other.m_Name;
  if (nameOnly == 0) m_Name += other.m_Extension;
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetFileExtension(char const *value) {
  SYS_String extension(value);
  if (!extension.IsEmpty() && extension[0] != '.') extension.Insert(0, ".");
  m_Extension = SFM_FilePath(extension).m_Extension;
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetFileNameExt(char const *value) {
  SFM_FilePath const other(value);
  m_Name = other.m_Name;
  m_Extension = other.m_Extension;
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetDefault(char const *value) {
  SFM_FilePath const other(value);
  if (m_Base.IsEmpty()) m_Base = other.m_Base;
  if (m_Directory.IsEmpty()) m_Directory = other.m_Directory;
  if (m_Name.IsEmpty()) m_Name = other.m_Name;
  if (m_Extension.IsEmpty()) m_Extension = other.m_Extension;
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetDefPath(char const *value) {
  if (!m_Base.IsEmpty()) return m_Full;
  SFM_FilePath const other(value);
  m_Base = other.m_Base;
  SYS_String front = other.m_Directory + other.m_NameExt;
  if (needsSeparator(front)) front += DefaultSeparatorChar();
  m_Directory = front + m_Directory;
  if (needsSeparator(m_Directory)) m_Directory += DefaultSeparatorChar();
  Regenerate();
  return m_Full;
}

SYS_String SFM_FilePath::SetBasePath(char const *path, char const *value) {
  if (path != nullptr) take(path);
  return SetBasePath(value);
}

SYS_String SFM_FilePath::SetRelPath(char const *path, char const *value) {
  if (path != nullptr) take(path);
  return SetRelPath(value);
}

SYS_String SFM_FilePath::SetFileDirectory(char const *path, char const *value) {
  if (path != nullptr) take(path);
  return SetFileDirectory(value);
}

SYS_String SFM_FilePath::SetFileName(char const *path, char const *value, int nameOnly) {
  if (path != nullptr) take(path);
  return SetFileName(value, nameOnly);
}

SYS_String SFM_FilePath::SetFileExtension(char const *path, char const *value) {
  if (path != nullptr) take(path);
  return SetFileExtension(value);
}

SYS_String SFM_FilePath::SetFileNameExt(char const *path, char const *value) {
  if (path != nullptr) take(path);
  return SetFileNameExt(value);
}

void SFM_FilePath::AddSeparator() {
  if (!needsSeparator(m_Full)) return;
  Process(m_Full + DefaultSeparatorChar());
}
