//===- inc/sfm.h - The file manager and its events -----------------------===//
//
// One manager exists at a time; the host makes it before any file object and
// connects its hooks to the manager's event. Every file outcome goes through
// SFM::Event: the platform's error code is recorded, errors get a composed
// text, the hooks answer, and the answer goes back to the file operation,
// which tries again on EventRetry.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SFM_H
#define BFC_SFM_H

#include "scc_event.h"
#include "scc_safelist.h"
#include "sfm_file.h"
#include "sys_base.h"
#include "sys_string.h"

class SFM_EventData;

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
  /// Stops being current and detaches (neither closes nor deletes) the files still listed.
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

private:
  void CreateMessage(EventCode code, SFM_EventData &data);
  bool TempCloseSomeFile();
  SFM_File *findFile(SYS_String const &name);

  SCC_SafeDList<SFM_File> m_Files;
  SCC_Event<SFM_EventData> m_Event;
  bool m_IsCurrent;
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
