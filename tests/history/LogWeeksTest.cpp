// What a log says of weeks: durations, passes, paces, hours and two periods, over logs whose truth is known.
#include <gtest/gtest.h>

#include <algorithm>

#include "history/LogDurations.h"
#include "history/LogHours.h"
#include "history/LogPaceTable.h"
#include "history/LogPassTable.h"
#include "history/LogPeriodTable.h"
#include "support/LogScript.h"

namespace {

// A check that takes lSeconds and is logged with the seconds hand of it; the next one begins lPause later.
void Check(LogScript& aScript, const std::string& szSite, int lSeconds, int lClass = 1,
           const std::string& szComment = {}, int lPause = 0) {
  aScript.Raw(FormatGeneral(aScript.dtNow) + ",http://" + szSite + "," +
              (lClass == 1 ? "Site OK" : "Request Timed-Out") + "," + std::to_string(lSeconds % 60) + "," +
              szComment + "," + std::to_string(lClass) + "\r\n");
  aScript.After((lSeconds + lPause) / 60.0);
}

// "75" exactly, "15+" at least, "?" not known.
std::string Durations(const LogHistory& aHistory) {
  std::string szAll;
  std::vector<CheckDuration> aChecks;
  for (std::size_t lPass = 0; lPass < aHistory.Passes().size(); ++lPass) {
    LogDurations::Of(aHistory, lPass, aChecks);
    for (const auto& aCheck : aChecks)
      szAll +=
          aCheck.iKnown == CheckDuration::Known::No
              ? "? "
              : std::to_string(aCheck.lSeconds) + (aCheck.iKnown == CheckDuration::Known::Exact ? " " : "+ ");
    szAll += "| ";
  }
  return szAll;
}

std::string All(const std::vector<std::string>& aSentences) {
  std::string szAll;
  for (const auto& szSentence : aSentences)
    szAll += szSentence + "\n";
  return szAll;
}

}  // namespace

TEST(LogDurations, MinutesAreToldByTheNextStart) {
  TestHome aHome;
  LogScript aScript;
  aScript.Start();
  for (const int lSeconds : {0, 15, 59, 60, 75, 154, 3})
    Check(aScript, "a" + std::to_string(lSeconds), lSeconds);
  aScript.End().After(0.5).Start();     // the next pass, 30 s later: the last check took 3 s
  Check(aScript, "a0", 15, 1, "", 85);  // then the computer slept: 15 s or 75
  Check(aScript, "a15", 20, 1, "", 3);  // a pause that two checks may have between them
  Check(aScript, "a59", 130);           // the last of the pass, and hours to the next
  aScript.End().After(180).Start();
  Check(aScript, "a0", 4);
  aScript.Raw(FormatGeneral(0) + ",http://192.0.2.1,Site OK,17,,1\r\n").After(0.5);  // no time of its own
  Check(aScript, "a15", 2);
  aScript.dtNow = AddMinutes(aScript.dtNow, -60);  // the clock is set back
  Check(aScript, "a59", 7);
  const Opened aHistory(aHome, aScript.szText);
  EXPECT_EQ(Durations(aHistory), "0 15 59 60 75 154 3 | 15+ 20 10+ | 4 30 2+ 7+ | ");
}

TEST(LogPasses, TellLengthLatenessAndWhatWasWaitedFor) {
  TestHome aHome;
  LogScript aScript;
  const auto Next = [&](double dMinutes) { aScript.End().dtNow = AddMinutes(dtMonday, dMinutes); };
  for (int lPass = 0; lPass < 10; ++lPass) {  // every 15 minutes, 10 s each
    aScript.Start();
    Check(aScript, "a", 4);
    Check(aScript, "shop", 6);
    Next(15.0 * (lPass + 1));
  }
  aScript.Start();
  Check(aScript, "a", 40);
  Check(aScript, "shop", 60, 4);
  Check(aScript, "z", 2);
  Next(165);
  // The second failure: the mail server held it for another 13 minutes, so the pass overran its interval.
  aScript.Start();
  Check(aScript, "a", 4);
  Check(aScript, "shop", 840, 2, "E-mail Notification Failed");
  Check(aScript, "z", 59);
  aScript.End().After(1 / 60.0).Start();  // due after 15 minutes, begun after 15 min 4 s
  Check(aScript, "a", 4);
  Check(aScript, "shop", 60, 2);
  Check(aScript, "z", 2);
  aScript.End().Start(true);  // by hand, straight behind: is not late
  Check(aScript, "a", 4);
  aScript.End();
  const Opened aHistory(aHome, aScript.szText);
  const LogPassTable aTable(aHistory);
  const auto szWords = All(aTable.Words());
  for (const auto* szPart :
       {"A pass takes 10 s, the longest took 15 min (Mon Jan 5 2026, 10:45:00 AM), of which about 13 min",
        "; the interval is 15 min: there is no room.", "The longest waited most for shop (14 min), z (59 s).",
        "1 pass began late because the one before it was still running: by 4 s, Mon Jan 5 2026, 11:00:04 AM.",
        "a pass would take 16 min: longer than the interval"})
    EXPECT_NE(szWords.find(szPart), std::string::npos) << szPart << " in\n" << szWords;
}

TEST(LogPasses, SayNothingWhereNothingIsKnown) {
  TestHome aHome;
  for (const auto* szText :
       {"", "garbage\r\n", "[START CHECK: AUTO - 1/5/2026 8:00:00 AM]\r\n[END CHECK]\r\n",
        "[START CHECK: AUTO - 1/5/2026 8:00:00 AM]\r\n1/5/2026 8:00:00 AM,http://a,"
        "Site OK,1,,1\r\n"}) {
    const Opened aHistory(aHome, szText);
    EXPECT_EQ(All(LogPassTable(aHistory).Words()),
              "The log holds no pass of which beginning and end are known.\n");
    const auto aSummary = Summarise(aHistory);
    EXPECT_FALSE(LogPaceTable(LogPaces::Of(aHistory, aSummary)).Words().empty());
    EXPECT_EQ(LogHours::Words(LogHours::Of(aHistory, aSummary)),
              "No check failed, so there is no hour to point at.");
    const auto aNow = LogPeriod::Last(aHistory, 7);
    EXPECT_FALSE(LogPeriodTable(LogCompare::Of(aHistory, aSummary, aNow, aNow.Before())).Words().empty());
  }
}

namespace {

// A pass every hour over so many days; Seconds(day, pass) is how long site "a" takes.
template <typename Function>
std::string Days(int lDays, const Function& Seconds) {
  LogScript aScript;
  for (int lPass = 0; lPass < lDays * 24; ++lPass) {
    aScript.dtNow = AddMinutes(dtMonday, 60.0 * lPass);
    aScript.Start();
    Check(aScript, "a", Seconds(lPass / 24, lPass));
    Check(aScript, "steady", 1);
    aScript.End();
  }
  return aScript.szText;
}

}  // namespace

TEST(LogPace, NamesADifferenceOnlyWhereTheFiguresCarryIt) {
  TestHome aHome;
  const struct {
    const char* szStory;
    int lDays;
    int (*Seconds)(int lDay, int lPass);
    PaceTrend iTrend;
    bool bByWeek;
  } aCases[] = {
      {"twice as slow in the second week", 14, [](int lDay, int) { return lDay < 7 ? 2 : 4; },
       PaceTrend::Slower, true},
      {"quicker", 14, [](int lDay, int) { return lDay < 7 ? 4 : 2; }, PaceTrend::Quicker, true},
      // 0.45 s and 0.55 s: of the whole seconds the median jumps, the mean hardly moves.
      {"a median that jumps", 14,
       [](int lDay, int lPass) { return lPass * 37 % 100 < (lDay < 7 ? 45 : 55) ? 1 : 0; }, PaceTrend::Same,
       true},
      {"a few that are very slow", 14,
       [](int lDay, int lPass) { return lDay > 6 && lPass % 10 == 0 ? 50 : 2; }, PaceTrend::Same, true},
      {"slower in the second half", 7, [](int lDay, int) { return 1 + lDay; }, PaceTrend::Slower, false},
      {"one day", 1, [](int, int lPass) { return lPass; }, PaceTrend::TooFew, false}};
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szStory);
    const Opened aHistory(aHome, Days(aCase.lDays, aCase.Seconds));
    const auto aReport = LogPaces::Of(aHistory, Summarise(aHistory));
    const auto& aSite = *std::ranges::find(aReport.aSites, "a", &SitePace::szSite);
    EXPECT_EQ(aSite.iTrend, aCase.iTrend);
    EXPECT_EQ(aReport.bByWeek, aCase.bByWeek);
    EXPECT_NE(std::ranges::find(aReport.aSites, "steady", &SitePace::szSite)->iTrend, PaceTrend::Slower);
  }
}

TEST(LogPace, MeasuresDayByDayWithoutWhatFailed) {
  TestHome aHome;
  LogScript aScript;
  for (int lSeconds = 1; lSeconds <= 100; ++lSeconds) {
    aScript.Start();
    Check(aScript, "a", lSeconds);
    Check(aScript, "b", 59, 4);
    aScript.End().dtNow = AddMinutes(dtMonday, 5.0 * lSeconds);
  }
  const Opened aHistory(aHome, aScript.szText);
  const LogPaceTable aTable(LogPaces::Of(aHistory, Summarise(aHistory)));
  ASSERT_EQ(aTable.Rows(), 1U) << "b never answered well";
  const auto& aSite = aTable.Report().aSites[0];
  EXPECT_EQ(aSite.aPace.lMedian, 50);
  EXPECT_EQ(aSite.aPace.lMost, 95);
  EXPECT_EQ(aSite.aPace.lLongest, 100);
}

TEST(LogHours, CountsWhereFailuresBeginNotHowLongTheyLast) {
  TestHome aHome;
  LogScript aScript;
  // Three weeks, a pass every hour at ten past: a backup fails it each night at 2, an outage of 30 hours
  // begins once, on a Friday at 5 PM, and a Sunday is not watched.
  for (int lHour = 0; lHour < 21 * 24; ++lHour) {
    aScript.dtNow = AddMinutes(dtMonday, 60.0 * (lHour - 8) + 10);
    const int lDay = lHour / 24;
    if (lDay == 13) continue;
    const bool bLong = lHour >= 11 * 24 + 17 && lHour < 11 * 24 + 17 + 30;
    aScript.Start();
    if (lHour % 24 == 2 || bLong)
      aScript.Warn("a");
    else
      aScript.Up("a");
    aScript.Up("b").End();
  }
  const Opened aHistory(aHome, aScript.szText);
  const auto aReport = LogHours::Of(aHistory, Summarise(aHistory));
  // 21 nights less the one not watched and the one within the outage; and the outage itself.
  EXPECT_EQ(aReport.aAllDays[2].lBegun, 19U);
  EXPECT_EQ(aReport.lBegun, 20U);
  EXPECT_EQ(aReport.aCells[6][3].lBegun, 0U) << "still down is no new failure";
  EXPECT_EQ(aReport.aCells[0][2].lChecks, 4U) << "two Sundays were watched";
  EXPECT_EQ(LogHours::Words(aReport), "19 of 20 failures began between 2 AM and 3 AM, whatever the day.");
}

TEST(LogCompare, SetsTwoPeriodsSideBySideWithoutWhatNobodyWatched) {
  TestHome aHome;
  LogScript aScript;
  // Two weeks, a pass every half hour. The first: an hour down. The second: two hours across the border,
  // another two hours in it, and a night off, in the middle of an outage.
  const auto Down = [](double dHour) {
    return (dHour >= 50 && dHour < 51) || (dHour >= 167 && dHour < 169) || (dHour >= 200 && dHour < 202) ||
           (dHour >= 299 && dHour < 311);
  };
  for (int lHalf = 0; lHalf <= 2 * 336; ++lHalf) {
    const double dHour = lHalf / 2.0;
    if (dHour >= 300 && dHour < 310) continue;
    aScript.dtNow = AddMinutes(dtMonday, 60 * dHour);
    aScript.Start();
    Down(dHour) ? aScript.Down("a") : aScript.Up("a");
    aScript.Up("b").End();
  }
  const Opened aHistory(aHome, aScript.szText);
  const LogPeriod aNow{AddDays(dtMonday, 7), AddDays(dtMonday, 14)};
  const LogPeriodTable aTable(LogCompare::Of(aHistory, Summarise(aHistory), aNow, aNow.Before()));
  const auto& aSite = aTable.Comparison().aSites[0];
  ASSERT_EQ(aSite.szSite, "a") << "what got worse comes first";
  const auto Minutes = [](std::int64_t lSeconds) { return (lSeconds + 30) / 60; };
  EXPECT_EQ(Minutes(aSite.aBefore.lDown), 60 + 60);
  EXPECT_EQ(Minutes(aSite.aNow.lDown), 60 + 120 + 30 + 60) << "not the ten hours in which nobody looked";
  EXPECT_EQ(Minutes(aSite.aNow.aAvailable.lWatched), (168 - 10) * 60 - 30);
  EXPECT_EQ(aSite.aBefore.lOutages, 2U);
  EXPECT_EQ(aSite.aNow.lOutages, 2U) << "the one across the border began before it";
  const auto szWords = All(aTable.Words());
  EXPECT_NE(szWords.find("a got worse most: down for 4 h 30 min, before for 2 h."), std::string::npos)
      << szWords;
  const LogPeriodTable aNothing(
      LogCompare::Of(aHistory, Summarise(aHistory), aNow, {AddDays(dtMonday, -14), AddDays(dtMonday, -7)}));
  EXPECT_NE(All(aNothing.Words()).find("does not reach back"), std::string::npos);
}
