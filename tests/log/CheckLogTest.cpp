#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "platform/Files.h"
#include "support/TestHome.h"

using namespace CheckLog;

namespace {

DateTime At(int lYear, int lMonth, int lDay, int lHour = 12, int lMinute = 0, int lSecond = 0) {
  return JoinDateTime({lYear, lMonth, lDay, lHour, lMinute, lSecond});
}

TEST(CheckLogTest, NamesTheFileForTheDayOrTheWeeksSunday) {
  Settings.LogPath = "logs";
  for (const auto& [iPeriod, dtNow, szName] : {std::tuple{1, At(2026, 1, 7), "D-20260107.kvl"},
                                               {2, At(2026, 1, 4, 0), "W-20260104.kvl"},
                                               {2, At(2026, 1, 3, 23, 59, 59), "W-20251228.kvl"},
                                               {3, At(2026, 1, 7), "M-202601.kvl"}}) {
    const StandingClock aClock(dtNow);
    Settings.LogPeriod = static_cast<std::int16_t>(iPeriod);
    GetLogFileName(false);
    EXPECT_EQ(CurrentLogFile, std::string("logs") + Files::chSeparator + szName);
  }
}

TEST(CheckLogTest, PrunesSoThatTheLimitHoldsOnceThePassHasWritten) {
  const struct {
    const char* szFiles;
    int iPeriod, iMax, iMaxFiles;
    bool bDelete;
    const char* szLeft;  // nullptr: all
  } aCases[] = {
      {"D-20260101.kvl D-20260103.kvl W-20251228.kvl", 1, 1, 3, true, "D-20260103.kvl W-20251228.kvl"},
      {"D-20260101.kvl D-20260103.kvl W-20251228.kvl", 1, 1, 4, true, nullptr},  // room for today's
      {"D-20260107.kvl W-1.kvl W-2.kvl", 1, 1, 1, true, "D-20260107.kvl"},       // today's stays
      {"a.kvlbak b.kvl b.txt z.kvl", 1, 1, 2, true, "a.kvlbak b.txt z.kvl"},
      {"a.kvl b.kvl", 1, 1, 1, false, nullptr},  // viewing
      {"a.kvl b.kvl", 0, 1, 1, true, nullptr},   // no log
  };
  const StandingClock aClock(At(2026, 1, 7));
  for (const auto& aCase : aCases) {
    const TestHome aHome;
    std::istringstream aFiles(aCase.szFiles);
    for (std::string szName; aFiles >> szName;)
      aHome.Write(szName, "x");
    aHome.Write("folder.kvl/x", "x");  // is no log file
    Settings.LogPath = aHome.Folder();
    Settings.LogPeriod = static_cast<std::int16_t>(aCase.iPeriod);
    Settings.DiskLogMaxFiles = static_cast<std::int16_t>(aCase.iMax);
    Settings.MaxLogFiles = static_cast<std::int16_t>(aCase.iMaxFiles);
    GetLogFileName(aCase.bDelete);
    std::string szLeft;
    for (const auto& szName : aHome.Names())
      if (szName != "folder.kvl") szLeft += (szLeft.empty() ? "" : " ") + szName;
    EXPECT_EQ(szLeft, aCase.szLeft != nullptr ? aCase.szLeft : aCase.szFiles);
  }
}

TEST(CheckLogTest, WritesAPassLineByLine) {
  const TestHome aHome;
  StandingClock aClock(At(1999, 11, 15, 17, 44, 21));
  Settings.LogPath = aHome.Folder();
  Settings.LogPeriod = 1;
  GetLogFileName(false);
  WriteLog(true, true, true);
  CurrentEntry = {Clock::Now(), "http://SITE1", ResultText(IDS_SITE_OK), "", iClassSuccess};
  aClock.Advance(75);
  WriteLog(false, true, false);
  aClock.SetWall(At(1999, 11, 16, 0, 0, 0));  // past midnight: the same file
  CurrentEntry = {At(1999, 11, 16, 0, 0, 9), "a,b\r\n[END CHECK]\x1B",
                  ResultText(IDS_RESULT_ERROR, "<BR>\xE4"), "", iClassFailure};
  AddComment("<SPAN class=\"Emphasis\">IP Check Performed</SPAN>");
  AddComment("Manually Stopped.");
  WriteLog(false, false, false);  // the clock was set back
  WriteLog(false, false, true);
  WriteLog(true, false, false);
  EXPECT_EQ(aHome.Read("D-19991115.kvl"),
            "[START CHECK: MANUAL - 11/15/1999 5:44:21 PM]\r\n"
            "11/15/1999 5:44:21 PM,http://SITE1,Site OK,15,,1\r\n"
            "11/16/1999 12:00:09 AM,a,b??[END CHECK]?,ERROR: <BR>\xE4,0,"
            "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; Manually Stopped.,2\r\n"
            "[END CHECK]\r\n"
            "[START CHECK: AUTO - 11/16/1999 12:00:00 AM]\r\n");
}

}  // namespace
