#include <gtest/gtest.h>

#include "platform/SingleInstance.h"
#include "support/TestHome.h"

namespace {

TEST(SingleInstance, OneProcessMayAskTwiceAndGivesTheLockBack) {
  const TestHome aHome;
  for (int i = 0; i < 2; ++i) {
    SingleInstance aFirst;
    SingleInstance aSecond;
    EXPECT_TRUE(aFirst.TryLock());
    EXPECT_TRUE(aFirst.TryLock());
    EXPECT_TRUE(aSecond.TryLock());
  }
}

}  // namespace
