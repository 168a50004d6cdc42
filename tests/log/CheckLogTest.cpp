// The log on a real disk. Names, pruning and every line of a pass are held against the simulated machine's
// book.
#include <gtest/gtest.h>

#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "support/TestHome.h"

using namespace CheckLog;
using Names = std::vector<std::string>;

namespace {

// Today's file counts though it is not there yet; other files and folders do not. Nothing is deleted for who
// looks, without a limit, and where no log is kept.
TEST(CheckLogTest, PrunesTheFirstLogsByName) {
  const TestHome aHome;
  const StandingClock aClock(JoinDateTime({2026, 1, 7, 12, 0, 0}));
  for (const char* szFile :
       {"D-20260101.kvl", "D-20260103.kvl", "W-20251228.kvl", "a.kvlbak", "folder.kvl/x"})
    aHome.Write(szFile, "x");
  Settings.LogPath = aHome.Folder();
  Settings.LogPeriod = 1;
  Settings.DiskLogMaxFiles = 1;
  Settings.MaxLogFiles = 3;
  const Names aBefore = aHome.Names();
  GetLogFileName(false);
  Settings.LogPeriod = 0;
  GetLogFileName(true);
  Settings.LogPeriod = 1;
  Settings.DiskLogMaxFiles = 0;
  GetLogFileName(true);
  EXPECT_EQ(aHome.Names(), aBefore);
  Settings.DiskLogMaxFiles = 1;
  GetLogFileName(true);
  EXPECT_EQ(aHome.Names(), (Names{"D-20260103.kvl", "W-20251228.kvl", "a.kvlbak", "folder.kvl"}));
}

TEST(CheckLogTest, AnEntryIsOneLineWhateverItHolds) {
  const TestHome aHome;
  const StandingClock aClock(JoinDateTime({1999, 11, 15, 17, 44, 21}));
  Settings.LogPath = aHome.Folder();
  Settings.LogPeriod = 1;
  GetLogFileName(false);
  CurrentEntry = {Clock::Now(), "a,b\r\n[END CHECK]\x1B", ResultText(IDS_RESULT_ERROR, "<BR>\xE4\n"), "c\n",
                  iClassFailure};
  WriteLog(false, false, false);
  EXPECT_EQ(aHome.Read("D-19991115.kvl"),
            "11/15/1999 5:44:21 PM,a,b??[END CHECK]?,ERROR: <BR>\xE4?,0,c?,2\r\n");
}

}  // namespace
