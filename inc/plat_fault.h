//===- inc/plat_fault.h - Making platform calls fail on purpose ----------===//
//
// Every file, mapping and directory call of the platform layer passes a switch
// that a test (or a host's own fault drill) can set so that the n-th call of
// one kind fails with a chosen errno value, exactly as the real call would:
// nothing happens on the file system, and the last-error code is set.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_FAULT_H
#define BFC_PLAT_FAULT_H

#include "sys_base.h"

/// The kinds of platform call that can be made to fail.
enum PLAT_Call {
  PLAT_CallOpen,    ///< opening a stream or a file for mapping
  PLAT_CallRead,    ///< reading bytes, a character or a line
  PLAT_CallWrite,   ///< writing bytes, a character or formatted text
  PLAT_CallFlush,   ///< flushing a stream
  PLAT_CallClose,   ///< closing a stream
  PLAT_CallRemove,  ///< removing a file
  PLAT_CallRename,  ///< renaming a file
  PLAT_CallMkdir,   ///< creating a directory
  PLAT_CallMap,     ///< mapping a file into memory
  PLAT_CallSpawn,   ///< starting a program
  PLAT_CallKinds    ///< the number of kinds
};

/// From now on, the `nth` call (1 = the next one) of kind `call` fails with errno `error`;
/// the calls before and after it behave normally. `nth` 0 disarms the kind. Returns 0 (and
/// changes nothing) for an unknown kind, a negative `nth` or an `error` that is not positive.
BFC_API int PLAT_FailCall(PLAT_Call call, int nth, int error);

/// Disarms every kind.
BFC_API void PLAT_ClearFailures();

/// The number of calls of kind `call` made since the process started (failed ones included).
BFC_API long PLAT_CallCount(PLAT_Call call);

#endif
