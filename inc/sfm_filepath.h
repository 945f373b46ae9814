//===- inc/sfm_filepath.h - Paths split into base, directory, name, extension ===//
//
// A path is kept whole and in parts; every change of a part rebuilds the whole.
// Both the backslash and the slash separate directories when a path is split;
// the class writes the default one (the slash on this platform). A base is a
// drive ("C:"), a network share ("\\server\share\") or, for a path that starts
// with a single slash, the root "/", which plays the part of a drive: rooted
// paths are never put under another directory.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SFM_FILEPATH_H
#define BFC_SFM_FILEPATH_H

#include "sys_base.h"
#include "sys_string.h"

/// A file or directory path that can be read and changed part by part.
///
/// Invariant, kept by regenerate(): full = base + directory + name with extension, and
/// name with extension = name + extension.
class BFC_API SFM_FilePath {
public:
  /// The separators recognised when splitting: backslash and slash.
  static SYS_String const DirectorySeparators;
  /// Index into DirectorySeparators of the separator the class writes; 1 (the slash) at start.
  static int DefaultSeparator;

  SFM_FilePath() = default;
  SFM_FilePath(char const *path);
  SFM_FilePath(SYS_String const &path);
  SFM_FilePath(SFM_FilePath const &) = default;
  SFM_FilePath &operator=(SFM_FilePath const &) = default;
  virtual ~SFM_FilePath() = default;

  /// Takes `path` (null clears every part); returns the full path.
  SYS_String operator=(char const *path);
  SYS_String operator=(SYS_String const &path);

  operator char const *() const noexcept { return m_Full; }
  operator SYS_String() const { return m_Full; }
  int IsEmpty() const noexcept { return m_Full.IsEmpty(); }

  // Each getter first takes `path` when it is not null.
  SYS_String GetBasePath(char const *path = nullptr);       ///< base
  SYS_String GetRelPath(char const *path = nullptr);        ///< directory
  SYS_String GetFileDirectory(char const *path = nullptr);  ///< base + directory
  SYS_String GetFileName(char const *path = nullptr);       ///< name
  SYS_String GetFileExtension(char const *path = nullptr);  ///< extension, "." included
  SYS_String GetFileNameExt(char const *path = nullptr);    ///< name + extension

  // Each setter splits its argument as a path of its own, copies the named part of it and
  // returns the new full path; the two-argument forms first take `path`.
  SYS_String SetBasePath(char const *value);
  SYS_String SetRelPath(char const *value);
  SYS_String SetFileDirectory(char const *value);
  /// The argument's name, followed by its extension unless `nameOnly`; the extension stays.
  SYS_String SetFileName(char const *value, int nameOnly = 0);
  /// "txt" and ".txt" both give ".txt"; an empty argument removes the extension.
  SYS_String SetFileExtension(char const *value);
  /// The argument's name and extension (none when it has none).
  SYS_String SetFileNameExt(char const *value);
  /// Fills each empty part (base, directory, name, extension) from the argument.
  SYS_String SetDefault(char const *value);
  /// Completes a path without a base against the default path `value`: its base is taken
  /// and its directory and name go in front of this directory. A path with a base is
  /// returned unchanged.
  SYS_String SetDefPath(char const *value);
  SYS_String SetBasePath(char const *path, char const *value);
  SYS_String SetRelPath(char const *path, char const *value);
  SYS_String SetFileDirectory(char const *path, char const *value);
  SYS_String SetFileName(char const *path, char const *value, int nameOnly);
  SYS_String SetFileExtension(char const *path, char const *value);
  SYS_String SetFileNameExt(char const *path, char const *value);

  /// Makes the whole path a directory by appending the default separator, unless it is
  /// empty or already ends with that separator (the other one does not count).
  void AddSeparator();

  /// The separator the class writes, as a character.
  static char DefaultSeparatorChar() noexcept;

private:
  /// Splits `path` into the parts. Virtual so that a derived path can see each split.
  virtual void Process(SYS_String const &path);
  void Clear();
  void Regenerate();
  void take(char const *path);
  /// Takes `path` when it is not null, rebuilds and returns `part`, one of the fields.
  SYS_String const &reread(char const *path, SYS_String const &part);

  SYS_String m_Full;
  SYS_String m_Base;
  SYS_String m_Directory;
  SYS_String m_NameExt;
  SYS_String m_Name;
  SYS_String m_Extension;
};

#endif
