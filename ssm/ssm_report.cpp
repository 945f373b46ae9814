//===- ssm/ssm_report.cpp - Reporting a failed check --------------------===//
#include "ssm_report.h"

#include "plat_error.h"
#include "ssm.h"
#include "sys_string.h"

int SSM_AssertFailed(char const *message, char const *file, int line, SSM_FailureType type, int id) {
  SSM *const manager = SSM::GetManager();
  int const savedError = PLAT_GetLastError();

  SYS_String text(message);
  if (text.IsEmpty()) {
    if (id != 0) {
      text.Format("SSM: Assert ID #%d, message not available", id);
    } else {
      text = "Message not available";
    }
  }
  // A report that throws leaves the last-error code as the handlers left it.
  int const result = manager != nullptr && manager->AssertFailed(text, file, line, type, id) != 0 ? 1 : 0;
  PLAT_SetLastError(savedError);
  return result;
}

void SSM_Throw() {
  if (SSM *const manager = SSM::GetManager()) manager->Throw();
}
