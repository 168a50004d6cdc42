#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "history/LogSummary.h"
#include "history/LogSummaryText.h"
#include "history/LogTables.h"
#include "history/LogWords.h"
#include "support/LogScript.h"
#include "support/WellFormed.h"

namespace {

LogSummary Of(const std::string& szText) {
  return Summarise(Opened(TestHome(), szText));
}

// One pass every 30 minutes; a letter is what site "a" says: U up, W warning, D down, X disabled, S stopped
// by hand, "." not in the pass, "|" ten hours without any pass.
std::string Passes(const std::string& szStory) {
  LogScript aScript;
  for (const char chPass : szStory) {
    if (chPass == '|') {
      aScript.After(600);
      continue;
    }
    const auto dtStart = aScript.dtNow;
    aScript.Start().Up("other");
    if (chPass == 'U') aScript.Up("a");
    if (chPass == 'W') aScript.Warn("a");
    if (chPass == 'D') aScript.Down("a");
    if (chPass == 'X') aScript.Entry("http://a", "Unknown Site: Site #", 3);
    if (chPass == 'S') aScript.Entry("http://a", "", 2, "Manually Stopped.");
    aScript.End().After(30 - (aScript.dtNow - dtStart) * 1440);
  }
  return aScript.szText;
}

std::string Minutes(std::int64_t lSeconds) {
  return std::to_string((lSeconds + 30) / 60);
}

const SiteSummary& SiteA(const LogSummary& aSummary) {
  return *std::ranges::find(aSummary.aSites, "a", &SiteSummary::szSite);
}

// from-to(minutes down, minutes unwatched) in minutes since the start; "<" marks what may have been earlier.
std::string Told(const std::vector<Outage>& aOutages) {
  std::string szAll;
  for (const auto& aOutage : aOutages) {
    szAll += (aOutage.bStartKnown ? "" : "<") + Minutes(SecondsBetween(dtMonday, aOutage.dtFrom)) + "-" +
             (aOutage.bEndKnown ? "" : "<") + Minutes(SecondsBetween(dtMonday, aOutage.dtTo));
    szAll += aOutage.iEnd == OutageEnd::Recovered   ? ""
             : aOutage.iEnd == OutageEnd::StillDown ? "still"
                                                    : "lost";
    szAll += "(" + Minutes(aOutage.lSeconds) + "," + Minutes(aOutage.lUnwatched) + ") ";
  }
  return szAll;
}

}  // namespace

TEST(LogSummary, TellsEachSitesStory) {
  const struct {
    const char *szStory, *szOutages, *szHiccups;
    std::uint32_t lChecks, lSuccesses;
    char chCurrent;
  } aCases[] = {
      {"UWDDU", "30-120(90,0) ", "", 5, 2, 'U'},
      {"UWDD", "30-<90still(60,0) ", "", 4, 1, 'D'},
      {"UUWD|DDU", "60-780(90,630) ", "", 7, 3, 'U'},
      {"UUWD|UU", "60-<720(30,630) ", "", 6, 4, 'U'},
      {"UWDXXXU", "30-<180(60,90) ", "", 4, 2, 'U'},
      {"UWDXX", "30-<90lost(60,0) ", "", 3, 1, 'X'},
      {"UWD...", "30-<90lost(60,0) ", "", 3, 1, '?'},
      {"UUSU", "", "", 3, 3, 'U'},
      // One failed check alone is no outage.
      {"UWUUWU", "", "30-60(30,0) 120-150(30,0) ", 6, 4, 'U'},
      {"UUW", "", "60-<60still(0,0) ", 3, 2, 'W'},
      // After a restart the second failure in a row is logged as a first one.
      {"UWW", "30-<60still(30,0) ", "", 3, 1, 'D'},
      {"UWDDWDU", "30-180(150,0) ", "", 7, 2, 'U'},
      {"UW|WU", "30-690(30,630) ", "", 4, 2, 'U'},
  };
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szStory);
    const auto aSummary = Of(Passes(aCase.szStory));
    const auto& aSite = SiteA(aSummary);
    EXPECT_EQ(Told(aSite.aOutages), aCase.szOutages);
    EXPECT_EQ(Told(aSite.aHiccups), aCase.szHiccups);
    EXPECT_EQ(aSite.lChecks, aCase.lChecks);
    EXPECT_EQ(aSite.lSuccesses, aCase.lSuccesses);
    EXPECT_EQ("?UWDX"[static_cast<std::size_t>(aSite.iCurrent)], aCase.chCurrent);
  }
}

// A failing site is asked again after 5 minutes instead of 30: by its checks it would look worse than it was.
TEST(LogSummary, MeasuresAvailabilityByTimeNotByChecks) {
  LogScript aScript;
  const auto Pass = [&](bool bUp, double dMinutes) {
    const auto dtNext = AddMinutes(aScript.dtNow, dMinutes);
    aScript.Start();
    (bUp ? aScript.Up("a") : aScript.Down("a")).End().dtNow = dtNext;
  };
  for (int i = 0; i < 96; ++i)  // two good days
    Pass(true, 30);
  for (int i = 0; i < 12; ++i)  // an hour down
    Pass(false, 5);
  for (int i = 0; i < 46; ++i)  // and up until 24 hours after it began
    Pass(true, 30);
  aScript.Start().Up("a").End();
  const auto aSummary = Of(aScript.szText);
  const auto& aSite = SiteA(aSummary);
  const auto Hours = [](std::int64_t lSeconds) { return (lSeconds + 1800) / 3600; };
  const auto& aDay = aSite.aAvailability.front();
  EXPECT_EQ(Hours(aDay.lWatched), 24);
  EXPECT_EQ(Hours(aDay.lUp), 23);
  const auto& aAll = aSite.aAvailability.back();
  EXPECT_EQ(Hours(aAll.lWatched), 72);
  EXPECT_EQ(Hours(aAll.lUp), 71);
  EXPECT_EQ(LogWords::Share(aAll), "98.61%");
  EXPECT_EQ(LogWords::Share(aSite.lSuccesses, aSite.lChecks), "92.25%");
}

TEST(LogSummary, TellsEveryMailAndWhoHeardNothing) {
  LogScript aScript;
  const auto Fail = [&](int lClass, const char* szComment) {
    aScript.Start().Entry("http://a", "500 Internal Server Error", lClass, szComment).End().After(30);
  };
  aScript.Start().Up("a").End().After(30);
  Fail(4, "");
  Fail(2, "E-mail Notification Failed (Missing SMTP)");
  Fail(2, "");
  Fail(4, "");  // a restart
  Fail(2, "E-mail Notification Sent");
  aScript.Start().Up("a").End().After(30);
  Fail(4, "");
  Fail(2, "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; E-mail Notification Sent");
  aScript.Start().Up("a").End();
  const auto aSummary = Of(aScript.szText);
  const auto aRows = LogTables::Outages(aSummary);
  ASSERT_EQ(aRows.size(), 2U);
  const auto Mail = [&](std::size_t lRow) {
    return LogTables::Cell(aRows[lRow], LogTables::OutageColumn::Mail);
  };
  EXPECT_EQ(Mail(0), "sent after 30 min");
  EXPECT_EQ(Mail(1),
            "could not be sent Mon Jan 5 2026, 9:00 AM; "
            "sent Mon Jan 5 2026, 10:30 AM, 2 h after the first failure");
  const auto szAll = LogSummaryText::Compose(aSummary, aScript.dtNow);
  EXPECT_NE(szAll.find("Nobody was told of a for 2 h: the mail of Mon Jan 5 2026, 9:00 AM could not be sent, "
                       "the next went out on Mon Jan 5 2026, 10:30 AM.\n"),
            std::string::npos)
      << szAll;
  EXPECT_NE(szAll.find("not sent: a, Mon Jan 5 2026, 9:00 AM\n"), std::string::npos) << szAll;
}

TEST(LogSummary, SaysWhatStandsAtTheEndAndWhetherItIsStillTrue) {
  const struct {
    const char* szStory;
    double dMinutesLater;
    const char* szTold;
  } aCases[] = {
      {"UUUUU", 29, "All 2 sites are up.\nLast check: Mon Jan 5 2026, 10:00 AM (29 min ago).\n"},
      {"UUUUU", 31, "All 2 sites are up.\n"},
      {"UUUUU", 240,
       "All 2 sites were up at the last check, Mon Jan 5 2026, 10:00 AM (4 h ago).\n"
       "No check has run since Mon Jan 5 2026, 10:00 AM, though one was due by Mon Jan 5 2026, 10:32 AM."},
      {"UUUUW", 10, "1 of 2 sites failed its last check.\n"},
      // Down before the program was started again, and down after.
      {"UUWWW", 10,
       "1 of 2 sites is down.\nLast check: Mon Jan 5 2026, 10:00 AM (10 min ago).\n"
       "a has been down since Mon Jan 5 2026, 9:00 AM (1 h): 404 File Not Found. It failed again at "
       "Mon Jan 5 2026, 10:00 AM, after a restart.\n"},
      {"WUWUWUWU", 10, "a comes and goes: within 24 hours it failed 4 times.\n"},
      {"UUWUU", 10, "1 single check failed"},
  };
  for (const auto& aCase : aCases) {
    const auto aSummary = Of(Passes(aCase.szStory));
    const auto szTold =
        LogSummaryText::Compose(aSummary, AddMinutes(aSummary.dtLastCheck, aCase.dMinutesLater));
    EXPECT_NE(szTold.find(aCase.szTold), std::string::npos) << aCase.szStory << "\n" << szTold;
  }
}

// A check of chosen sites leaves no end line, and those it passed over were watched all the same.
TEST(LogSummary, AChosenSiteIsNoPassThatBrokeOff) {
  LogScript aScript;
  for (int lPass = 0; lPass < 6; ++lPass) {
    aScript.Start().Up("a").Up("b").End().After(10);
    if (lPass == 2) aScript.Start(true).Up("a").After(10);
  }
  auto aSummary = Of(aScript.szText);
  EXPECT_EQ(aSummary.lPartial, 1U);
  EXPECT_EQ(aSummary.lEndless, 0U);
  for (const auto& aSite : aSummary.aSites)
    EXPECT_EQ(aSite.aStates.size(), 1U) << aSite.szSite;
  aSummary = Of(aScript.Start().Up("a").Start().Up("a").Up("b").End().szText);
  EXPECT_EQ(aSummary.lEndless, 1U);
}

// Also where a mail server has refused for days: a text of twenty thousand characters is broken into lines at
// once.
TEST(LogSummary, WhatBecameOfTheMailsIsToldInTheTerminalsWidth) {
  LogScript aScript;
  constexpr std::size_t lRefused = 500;
  aScript.Start().Up("www.example.com/page").End().After(30).Start().Warn("www.example.com/page").End();
  for (std::size_t i = 0; i <= lRefused; ++i)
    aScript.After(30)
        .Start()
        .Entry("http://www.example.com/page", "404 File Not Found", CheckLog::iClassFailure,
               i < lRefused ? "E-mail Notification Failed" : "E-mail Notification Sent")
        .End();
  const auto aSummary = Of(aScript.szText);
  const auto szWide = LogSummaryText::Outages(aSummary, LogTables::Runs::Outages, 0);
  EXPECT_EQ(std::ranges::count(szWide, '\n'), 2);
  for (const std::size_t lColumns : {60U, 80U, 120U}) {
    const auto szTable = LogSummaryText::Outages(aSummary, LogTables::Runs::Outages, lColumns);
    std::istringstream aLines(szTable);
    for (std::string szLine; std::getline(aLines, szLine);)
      EXPECT_LE(szLine.size(), lColumns) << szLine;
    EXPECT_EQ(Occurrences(szTable, "could"), lRefused);
    for (const char* szWord : {"sent", "failure"})
      EXPECT_NE(szTable.find(szWord), std::string::npos) << szTable;
  }
}

TEST(LogSummary, FindsGapsByTheUsualDistance) {
  const struct {
    const char* szMinutes;  // between passes
    int lTimes;
    std::size_t lGaps;
  } aCases[] = {
      {"30 30 30 59 30", 1, 0},
      {"30 30 30 75 30", 1, 1},  // the computer slept
      {"240 240 960", 5, 5},     // three a day
      {"5 30", 20, 0},           // second looks after 5 minutes
      {"30 30 -600 30 30", 1, 0},
      {"5 5 5 5 5 5 30 30 30 30 30 30 30 30 30 30", 1, 0},  // the schedule was changed
  };
  for (const auto& aCase : aCases) {
    LogScript aScript;
    aScript.Start().Up("a").End();
    for (int i = 0; i < aCase.lTimes; ++i) {
      std::istringstream aMinutes(aCase.szMinutes);
      for (double dMinutes = 0; aMinutes >> dMinutes;)
        aScript.After(dMinutes).Start().Up("a").End();
    }
    EXPECT_EQ(Of(aScript.szText).aGaps.size(), aCase.lGaps) << aCase.szMinutes;
  }
}
