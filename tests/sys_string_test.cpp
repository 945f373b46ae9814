#include "bfc.h"
#include <gtest/gtest.h>
TEST(SysString, Smoke) { SYS_String s("abc"); s << 'd' << -12 << 7u << 2.5; EXPECT_STREQ(s, "abcd-1272.500000"); }
