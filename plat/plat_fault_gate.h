//===- plat/plat_fault_gate.h - The switch each platform call passes -----===//
#ifndef BFC_PLAT_FAULT_GATE_H
#define BFC_PLAT_FAULT_GATE_H

#include "plat_fault.h"

namespace plat {

/// Counts a call of kind `call`; true (with errno set) when this call is to fail.
bool failsNow(PLAT_Call call);

}  // namespace plat

#endif
