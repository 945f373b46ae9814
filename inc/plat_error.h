//===- inc/plat_error.h - The thread's last-error code ------------------===//
//
// A failing platform call records its errno value here; a report of a failed
// check saves and restores it, so code after a check that continues can still
// read the error of the call that failed (24 is "too many open files").
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_ERROR_H
#define BFC_PLAT_ERROR_H

#include "sys_base.h"

/// The calling thread's last-error code; 0 until a platform call fails.
BFC_API int PLAT_GetLastError();

/// Sets the calling thread's last-error code.
BFC_API void PLAT_SetLastError(int code);

/// Records the current errno value as the last-error code and returns it.
BFC_API int PLAT_SetLastErrorFromErrno();

#endif
