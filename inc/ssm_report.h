//===- inc/ssm_report.h - Reporting a failed check ----------------------===//
//
// Every check in the library and its host reports through SSM_AssertFailed
// and, when that returns 0, calls SSM_Throw. Without an assertion manager the
// report returns 0 and SSM_Throw returns, so the code after the check runs on.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SSM_REPORT_H
#define BFC_SSM_REPORT_H

#include "sys_base.h"

/// How a failed check is treated by the assertion manager.
enum SSM_FailureType {
  SSM_Warning = 0,   ///< handlers decide; by default execution continues
  SSM_Error = 1,     ///< as a warning, except inside another report, where the caller throws
  SSM_Critical = 2,  ///< the report always ends by throwing; every check of the library
};

/// Reports a failed check at `file`/`line`. Returns non-zero when the caller is to go on and
/// 0 when it is to call SSM_Throw; may also throw by itself (the manager decides). An empty or
/// null `message` becomes "SSM: Assert ID #<id>, message not available", or "Message not
/// available" when `id` is 0. The thread's last-error code is the same after a report that
/// returns as before it.
BFC_API int SSM_AssertFailed(char const *message, char const *file, int line, SSM_FailureType type, int id);

/// Throws the manager's fatal or current assertion; returns when there is no manager or
/// nothing to throw.
BFC_API void SSM_Throw();

/// The library's own check: when `ok` is false, reports a critical failure with id 0 and
/// throws when the report says so. Returns `ok`, so the caller can still guard the code
/// after the check (it runs on when no manager exists).
inline bool SSM_Check(bool ok, char const *message, char const *file, int line) {
  if (!ok && SSM_AssertFailed(message, file, line, SSM_Critical, 0) == 0) SSM_Throw();
  return ok;
}

#endif
