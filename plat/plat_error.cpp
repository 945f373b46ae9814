//===- plat/plat_error.cpp - The thread's last-error code ---------------===//
#include "plat_error.h"

#include <cerrno>

namespace {
thread_local int t_LastError = 0;
}

int PLAT_GetLastError() { return t_LastError; }

void PLAT_SetLastError(int code) { t_LastError = code; }

int PLAT_SetLastErrorFromErrno() {
  t_LastError = errno;
  return t_LastError;
}
