//===- inc/sys_test.h - Test recording and memory statistics ------------===//
//
// Entry points for recording and replaying test runs and for memory statistics.
// They are interfaces only: every operation does nothing or returns 0, so host
// code that calls them links and runs unchanged.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_TEST_H
#define BFC_SYS_TEST_H

#include "sys_base.h"

/// The identifier of a recorded function. The constructors set no field; no operation
/// reads one.
class BFC_API SYS_TestFncID {
public:
  SYS_TestFncID() {}
  explicit SYS_TestFncID(char *) {}
  SYS_TestFncID(char *, char *) {}

  char const *m_pName;
  char const *m_pModule;
};

/// A recorded step.
struct BFC_API SYS_TestRec {
  SYS_TestFncID *m_pFunction;
  int m_Step;
};

/// Recording and replay of test runs (not recorded in this library).
class BFC_API SYS_TestRepeater {
public:
  static void Start();
  static void Stop();
  static void Record(SYS_TestFncID *function, ...);

private:
  static void FncRegister(SYS_TestFncID *function);
  static void FncProcess();
  static void WriteRec();
};

/// Memory statistics (not kept in this library: both sizes are 0).
class BFC_API SYS_Memory {
public:
  static long GetCurrentMemorySize();
  static long GetPeakMemorySize();
};

#endif
