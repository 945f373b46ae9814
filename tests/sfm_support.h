//===- tests/sfm_support.h - Temporary directories and event recorders ---===//
#ifndef BFC_TESTS_SFM_SUPPORT_H
#define BFC_TESTS_SFM_SUPPORT_H

#include "plat_fault.h"
#include "sfm.h"

#include <string>
#include <vector>

/// A fresh directory under the system's temporary directory, removed with all it holds.
class TempDir {
public:
  TempDir();
  ~TempDir();
  TempDir(TempDir const &) = delete;
  TempDir &operator=(TempDir const &) = delete;

  /// The directory with its closing "/".
  std::string const &Path() const { return m_Path; }
  /// The path of `name` inside the directory.
  std::string operator/(std::string const &name) const { return m_Path + name; }
  /// Writes `bytes` to the file `name` inside the directory; returns its path.
  std::string Write(std::string const &name, std::string const &bytes) const;
  /// The bytes of a file, or "<missing>".
  static std::string Read(std::string const &path);

private:
  std::string m_Path;
};

/// One event as a hook saw it.
struct SeenEvent {
  int code;
  unsigned int error;
  std::string name1, name2, text;
};

/// A manager with a hook that records every event and answers from a script: the next
/// answer queued for the event's code, or 0.
class RecordingManager {
public:
  RecordingManager();
  ~RecordingManager();

  SFM manager;
  std::vector<SeenEvent> events;
  /// Queues `count` answers `answer` to the code `code`.
  void Answer(int code, SFM::EventCode answer, int count = 1);
  /// The codes seen, in order, leaving out 101, 102 and 103 when `errorsOnly`.
  std::vector<int> Codes(bool errorsOnly = false) const;
  /// How many events of `code` were seen.
  int Count(int code) const;

private:
  static int onEvent(int code, SFM_EventData *data);
  std::vector<std::pair<int, SFM::EventCode>> m_Answers;
  SFM_EventHook m_Hook;
  static RecordingManager *s_Current;
};

/// Disarms the platform's fault switch when it goes.
struct FaultGuard {
  ~FaultGuard() { PLAT_ClearFailures(); }
};

#endif
