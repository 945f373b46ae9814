//===- plat/plat_fault.cpp - Making platform calls fail on purpose -------===//
#include "plat_fault.h"

#include "plat/plat_fault_gate.h"

#include <cerrno>

namespace {

// The countdown of each kind: 0 disarmed, n > 0 the n-th coming call fails.
struct Switch {
  int countdown = 0;
  int error = 0;
  long calls = 0;
};

thread_local Switch t_Switches[PLAT_CallKinds];

bool validKind(PLAT_Call call) { return call >= 0 && call < PLAT_CallKinds; }

}  // namespace

int PLAT_FailCall(PLAT_Call call, int nth, int error) {
  if (!validKind(call) || nth < 0 || error <= 0) return 0;
  t_Switches[call].countdown = nth;
  t_Switches[call].error = error;
  return 1;
}

void PLAT_ClearFailures() {
  for (Switch &entry : t_Switches) entry.countdown = 0;
}

long PLAT_CallCount(PLAT_Call call) { return validKind(call) ? t_Switches[call].calls : 0; }

bool plat::failsNow(PLAT_Call call) {
  Switch &entry = t_Switches[call];
  ++entry.calls;
  if (entry.countdown == 0 || --entry.countdown != 0) return false;
  errno = entry.error;
  return true;
}
