//===- sys/sys_test.cpp - Test recording and memory statistics -----------===//
#include "sys_test.h"

void SYS_TestRepeater::Start() {}
void SYS_TestRepeater::Stop() {}
void SYS_TestRepeater::Record(SYS_TestFncID *, ...) {}
void SYS_TestRepeater::FncRegister(SYS_TestFncID *) {}
void SYS_TestRepeater::FncProcess() {}
void SYS_TestRepeater::WriteRec() {}

long SYS_Memory::GetCurrentMemorySize() { return 0; }
long SYS_Memory::GetPeakMemorySize() { return 0; }
