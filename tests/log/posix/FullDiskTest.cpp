#include <gtest/gtest.h>

#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

TEST(FullDiskTest, ALineIsWrittenWholeOrNotAtAll) {
  const TestHome aHome;
  Settings.LogPeriod = 1;
  CheckLog::CurrentLogFile = aHome.Path("D.kvl");
  EXPECT_EQ(0, InChild([] {
              LimitFiles(18);
              CheckLog::WriteLog(false, false, true);
              CheckLog::WriteLog(false, false, true);
              return 0;
            }));
  EXPECT_EQ(aHome.Read("D.kvl"), "[END CHECK]\r\n");
  CheckLog::WriteLog(false, false, true);
  EXPECT_EQ(aHome.Read("D.kvl"), "[END CHECK]\r\n[END CHECK]\r\n");
}
