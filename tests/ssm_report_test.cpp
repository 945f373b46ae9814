//===- tests/ssm_report_test.cpp - Reporting without a manager ----------===//
#include "plat_error.h"
#include "ssm.h"
#include "sys_exception.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <thread>

// Without a manager a report returns 0, SSM_Throw returns, and the code runs on with the last-error code it had.
TEST(AssertReporting, WithoutManagerFallsThrough) {
  ASSERT_EQ(SSM::GetManager(), nullptr);
  PLAT_SetLastError(24);
  EXPECT_EQ(SSM_AssertFailed("broken", "sys/test", 10, SSM_Critical, 0), 0);
  EXPECT_EQ(SSM_AssertFailed(nullptr, "sys/test", 11, SSM_Warning, 7), 0);
  EXPECT_NO_THROW(SSM_Throw());
  EXPECT_FALSE(SSM_Check(false, "", "scc/scc", 1));  // returned, so the code after the check can guard itself
  EXPECT_TRUE(SSM_Check(true, "", "scc/scc", 2));
  EXPECT_EQ(PLAT_GetLastError(), 24);
}

// The last-error code is per thread and set from errno by failing platform calls.
TEST(LastError, FromErrnoAndPerThread) {
  errno = EMFILE;
  EXPECT_EQ(PLAT_SetLastErrorFromErrno(), 24);
  EXPECT_EQ(PLAT_GetLastError(), 24);
  int seenByOtherThread = -1;
  std::thread([&seenByOtherThread] { seenByOtherThread = PLAT_GetLastError(); }).join();
  EXPECT_EQ(seenByOtherThread, 0);
  EXPECT_EQ(std::fopen("/nonexistent/dir/file", "r"), nullptr);
  PLAT_SetLastErrorFromErrno();
  EXPECT_EQ(PLAT_GetLastError(), ENOENT);
  PLAT_SetLastError(0);
}

// SYS_Exception from a number has the empty text, from a format the formatted one, kept through copies and throws.
TEST(SysException, Text) {
  EXPECT_STREQ(SYS_Exception(12).GetText(), "");
  SYS_Exception const original("%s", "copy me");
  SYS_Exception assigned(1);
  assigned = original;
  EXPECT_STREQ(SYS_Exception(original).GetText(), "copy me");
  EXPECT_STREQ(assigned.GetText(), "copy me");
  try {
    throw SYS_Exception("value %d out of range", 99);
  } catch (SYS_Exception const &e) {
    EXPECT_STREQ(e.GetText(), "value 99 out of range");
  }
}
