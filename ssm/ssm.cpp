//===- ssm/ssm.cpp - The assertion manager ------------------------------===//
#include "ssm.h"

SSM *SSM::Instance = nullptr;
int SSM::InstanceCount = 0;

// No manager can be constructed yet, so nothing reaches these: a report without a
// manager returns 0 before asking one.
int SSM::AssertFailed(char const *, char const *, int, SSM_FailureType, int) { return 0; }

void SSM::Throw() {}
