//===- inc/sfm.h - The file manager and its events -----------------------===//
//
// One manager exists at a time; the host makes it before any file object and
// connects its hooks to the manager's event. Every file outcome goes through
// SFM::Event: the platform's error code is recorded, errors get a composed
// text, the hooks answer, and the answer goes back to the file operation,
// which tries again on EventRetry.
//
// The manager also owns the process's message database (Initiate), the
// directories external file names are resolved against, and the host's
// settings: an INI file at the path the host sets (SetProfilePath), else at
// $XDG_CONFIG_HOME/<program name>/settings.ini (~/.config when that is unset).
// The setting "editor" of section "general" names the program ShowFile runs.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SFM_H
#define BFC_SFM_H

#include "scc_arr.h"
#include "scc_event.h"
#include "scc_safelist.h"
#include "sfm_directory.h"
#include "sfm_file.h"
#include "sys_base.h"
#include "sys_string.h"

#include <memory>

class SFM_EventData;
class SFM_MessageDB;

/// The directories against which the manager resolves external file names.
typedef SCC_Array<SFM_Directory> SFM_DirArray;

/// The process-wide file manager.
class BFC_API SFM {
public:
  /// Events and their answers.
  enum EventCode {
    EventNone = 0,           ///< no answer
    EventYes = 1,            ///< answer: go ahead (overwrite)
    EventRetry = 2,          ///< answer: try again
    EventOpening = 101,      ///< a file is about to be opened
    EventOpened = 102,       ///< a file was opened
    EventClosed = 103,       ///< a file was closed
    EventTargetExists = 151, ///< copy or move: the target exists, overwriting not allowed
    EventOpenFailed = 201,
    EventCloseFailed = 202,
    EventReadError = 203,
    EventWriteError = 204,
    EventCopyFailed = 205,
    EventMoveFailed = 206,
    EventDeleteFailed = 207,
  };

  /// The current manager, or null.
  static SFM *Instance;
  /// 0 or 1.
  static long InstanceCount;

  /// Becomes the current manager; a second one is a reported check and never current.
  SFM();
  SFM(SFM const &) = delete;
  SFM &operator=(SFM const &) = delete;
  /// Creates the process's message database from `name` once: the compiled form for the
  /// extension ".mdb" (any case), else the text source. A file that cannot be opened still
  /// gives an (empty) database; later calls and a null name change nothing. 1 when a
  /// database exists afterwards.
  virtual int Initiate(char const *name);
  /// 1 when the database exists and is valid and so are the file list and every file in
  /// it; each failed requirement is a reported check.
  virtual int IsValid();
  /// Deletes the database, stops being current and detaches (neither closes nor deletes)
  /// the files still listed.
  virtual ~SFM();

  static SFM *GetManager() noexcept { return Instance; }

  /// Raises event `code` with `data` and returns the answer. Error 24 (too many open files)
  /// on 201 closes the least recently opened file for a while and answers EventRetry
  /// without the hooks; when no file can be closed the hooks hear of it like any error.
  EventCode Event(EventCode code, SFM_EventData &data);

  /// The event the host's hooks connect to.
  SCC_Event<SFM_EventData> &GetEvent() noexcept { return m_Event; }
  /// Every live file, the most recently opened first.
  SCC_SafeDList<SFM_File> &GetFileList() noexcept { return m_Files; }

  /// The database Initiate made, or null.
  SFM_MessageDB *GetMessageDB() noexcept { return m_MessageDB.get(); }
  /// The directories GetExternalFileName indexes; the host fills them.
  SFM_DirArray &GetDirectories() noexcept { return m_Directories; }
  /// `name` completed against the directory at `index`, which must lie within the
  /// array's bounds (a reported check, then "").
  SYS_String GetExternalFileName(int index, char const *name);

  /// The host's settings. A missing file, section or entry gives the default; an integer
  /// is read from the entry's text as atoi reads it. A null value removes the entry, a null
  /// entry the section. Writes are not reported.
  SYS_String ReadProfileString(char const *section, char const *entry, char const *defaultValue);
  void SetProfileString(char const *section, char const *entry, char const *value);
  int GetProfileIntA(char const *section, char const *entry, int defaultValue);
  void SetProfileInt(char const *section, char const *entry, int value);
  /// Where the settings are kept; null or "" goes back to the default place.
  void SetProfilePath(char const *path);
  SYS_String GetProfilePath() const;

  /// Starts the configured editor with `name` (quoted when it holds a blank or a quote) and
  /// does not wait; nothing happens, and nothing is reported, without an editor or when it
  /// cannot start. 1 when it was started.
  int ShowFile(char const *name);

private:
  void CreateMessage(EventCode code, SFM_EventData &data);
  bool TempCloseSomeFile();
  SFM_File *findFile(SYS_String const &name);

  SCC_SafeDList<SFM_File> m_Files;
  std::unique_ptr<SFM_MessageDB> m_MessageDB;
  SCC_Event<SFM_EventData> m_Event;
  SFM_DirArray m_Directories;
  bool m_IsCurrent;
  SYS_String m_ProfilePath;
};

/// The record passed with a file event.
class BFC_API SFM_EventData {
public:
  /// The two file names; null gives an empty name.
  SFM_EventData(char const *fileName1 = nullptr, char const *fileName2 = nullptr);

  SYS_String const &GetFileName1() const noexcept { return m_FileName1; }
  SYS_String const &GetFileName2() const noexcept { return m_FileName2; }
  /// The platform's error code recorded when the event was raised.
  unsigned int GetErrorCode() const noexcept { return m_ErrorCode; }
  void SetErrorCode(unsigned int code) noexcept { m_ErrorCode = code; }
  void SetText(SYS_String const &text) { m_Text = text; }
  /// The composed text, then for each non-empty name "\r\n" and the name in double quotes.
  SYS_String GetText() const;
  SFM::EventCode GetResult() const noexcept { return m_Result; }
  /// A hook's answer. Once an event has a non-zero answer, another non-zero one is a
  /// reported check and the first stays; 0 can always be set.
  void SetResult(SFM::EventCode result);

private:
  unsigned int m_ErrorCode = 0;
  SYS_String m_FileName1;
  SYS_String m_FileName2;
  SYS_String m_Text;
  SFM::EventCode m_Result = SFM::EventNone;
};

/// The hook type the host connects to the manager's event: it answers through SetResult.
typedef SCC_EventHook<SFM_EventData> SFM_EventHook;

#endif
