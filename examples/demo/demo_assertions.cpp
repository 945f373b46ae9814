//===- examples/demo/demo_assertions.cpp - The host's assertion manager -===//
//
// The host creates the assertion manager and decides what failed checks do:
// warnings continue, errors throw. Its own checks and the library's end up in
// the same records, which it lists at the end like any enumerable object.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

namespace {

char const *typeName(int type) {
  switch (type) {
    case SSM_Warning: return "warning";
    case SSM_Error: return "error";
    case SSM_Critical: return "critical";
    default: return "?";
  }
}

/// The record a handler is told about: the parameter carries the handle itself.
SSM::AssertObj recordOf(SYS_Handle *param) {
  SSM::AssertObj record;
  record.SetHandle(SSM::AssertObj::HandleOf(param), SSM::GetManager());
  return record;
}

/// The host's policy: a warning is noted and the work goes on, an error aborts the
/// command. Critical failures of the library never reach this handler.
int choosePolicy(int type, SYS_Handle *param) {
  SSM::AssertObj record = recordOf(param);
  record.SetAction(type == SSM_Warning ? SSM::ActContinue : SSM::ActThrow);
  std::printf("  [policy] %s -> %s\n", typeName(type), type == SSM_Warning ? "continue" : "throw");
  return 0;
}

/// The status window: every report, whatever the policy said.
int showReport(int type, SYS_Handle *param) {
  SSM::AssertObj const record = recordOf(param);
  std::printf("  [report] %-8s %s(%ld): \"%s\" (seen %ld time%s)\n", typeName(type),
              static_cast<char const *>(record.GetFileName()), record.GetLineNo(),
              static_cast<char const *>(record.GetMsg()), record.GetCount(), record.GetCount() == 1 ? "" : "s");
  return 0;
}

/// The session log: only for sites that want logging and are enabled.
int writeLog(int, SYS_Handle *param) {
  SSM::AssertObj record = recordOf(param);
  SYS_String entry;
  entry.Format("logged at report %ld", record.GetCount());
  record.SetLogMsg(entry);
  std::printf("  [log]    %s(%ld)\n", static_cast<char const *>(record.GetFileName()), record.GetLineNo());
  return 0;
}

/// A host command that checks its input the way the library does.
void placeVia(int x, int y) {
  if (x < 0 || y < 0) {
    if (SSM_AssertFailed("via outside the board", "demo/board", 101, SSM_Warning, 0) == 0) SSM_Throw();
    std::printf("  placeVia(%d, %d) went on after the warning\n", x, y);
  }
  if (x > 1000) {
    if (SSM_AssertFailed("via beyond the routing area", "demo/board", 105, SSM_Error, 0) == 0) SSM_Throw();
    std::printf("  placeVia(%d, %d) went on (not reached while errors throw)\n", x, y);
  }
}

/// Runs one host command and reports how it ended.
template <class Command>
void run(char const *title, Command command) {
  std::printf("\n%s:\n", title);
  try {
    command();
    std::printf("  -> the command finished\n");
  } catch (SSM::AssertData *record) {
    std::printf("  -> the command was aborted: caught the record of %s(%ld), \"%s\"\n",
                static_cast<char const *>(record->m_FileName), record->m_Line,
                static_cast<char const *>(record->m_Message));
  } catch (SSM::FatalException const &fatal) {
    std::printf("  -> fatal failure at %s\n", static_cast<char const *>(fatal.m_pRecord->m_FileName));
  }
}

void listRecords(SSM &manager) {
  std::printf("\nall records of the manager:\n");
  SSM::AssertObj record;
  for (record.GetFirst(&manager); record.IsValid(); record.GetNext()) {
    std::printf("  %-16s line %-4ld count %ld%s  \"%s\"  log: \"%s\"\n",
                static_cast<char const *>(record.GetFileName()), record.GetLineNo(), record.GetCount(),
                record.IsDisabled() ? "  (disabled)" : "", static_cast<char const *>(record.GetMsg()),
                static_cast<char const *>(record.GetLogMsg()));
  }
}

/// The host's session: the manager lives as long as it does.
void hostSession() {
  SSM manager;
  SCC_EventHook<SYS_Handle> policy(choosePolicy), report(showReport), log(writeLog);
  manager.GetAssertEvent().Insert(policy);
  manager.GetReportEvent().Insert(report);
  manager.GetLogEvent().Insert(log);
  std::printf("the host created the manager (current: %s, managers: %d) and hooked its policy, "
              "status window and log\n",
              SSM::GetManager() == &manager ? "yes" : "no", SSM::InstanceCount);

  run("place a via at (-5, 20)", [] { placeVia(-5, 20); });
  run("place a via at (-7, 3): the same check again", [] { placeVia(-7, 3); });
  run("place a via at (2000, 40)", [] { placeVia(2000, 40); });

  run("undo with an empty undo stack (a check of the library itself)", [] {
    SCC_Stack<int> undo;
    std::printf("  undo stack holds %d entries; popping\n", undo.GetTop());
    undo.Pop();
  });

  std::printf("\nthe user silences the off-board warning in the status window\n");
  SSM::AssertObj site;
  for (site.GetFirst(&manager); site.IsValid() && site.GetLineNo() != 101; site.GetNext()) {
  }
  site.Disable(1);
  run("place a via at (-1, -1)", [] { placeVia(-1, -1); });

  listRecords(manager);
}

}  // namespace

void demoAssertions() {
  demoHeading("Assertions: the host's manager and its handlers");
  hostSession();
  std::printf("\nthe host destroyed the manager: current %s, managers %d; checks fall through again\n",
              SSM::GetManager() == nullptr ? "none" : "still set", SSM::InstanceCount);
}
