#include <gtest/gtest.h>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "tests/support/Captured.h"

namespace ZRKMetaData {
namespace {

TEST(Assertions, AreWrittenToStandardErrorAndReturn) {
  testing::internal::CaptureStderr();
  reportAssertion("a == b", "Unit", 12);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unit:12: assertion failed: a == b\n");
}

TEST(Assertions, AreReportedToTheInstalledHandler) {
  const AssertionHandler mine = [](const char*, const char*, int) {};
  const AssertionHandler before = setAssertionHandler(mine);
  EXPECT_EQ(setAssertionHandler(nullptr), mine);
  EXPECT_EQ(setAssertionHandler(before), before);  // null restores the default
  const testing_support::AssertionLog log;
  reportAssertion("x", "Unit", 1);
  EXPECT_EQ(log.text(), "Unit:1 x\n");
}

}  // namespace
}  // namespace ZRKMetaData
