#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "history/LogStrip.h"
#include "history/LogSummary.h"
#include "support/LogScript.h"

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

// from-to(minutes down, minutes unwatched) in minutes since the start; "<" marks what may have been earlier.
std::string Outages(const SiteSummary& aSite) {
  std::string szAll;
  const auto Minutes = [](std::int64_t lSeconds) { return std::to_string((lSeconds + 30) / 60); };
  for (const auto& aOutage : aSite.aOutages) {
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
    const char *szStory, *szOutages;
    std::uint32_t lChecks, lSuccesses;
    char chCurrent;
  } aCases[] = {
      {"UWDDU", "30-120(90,0) ", 5, 2, 'U'},      {"UWDD", "30-<90still(60,0) ", 4, 1, 'D'},
      {"UUWD|DDU", "60-780(90,630) ", 7, 3, 'U'}, {"UUWD|UU", "60-<720(30,630) ", 6, 4, 'U'},
      {"UWDXXXU", "30-<180(60,90) ", 4, 2, 'U'},  {"UWDXX", "30-<90lost(60,0) ", 3, 1, 'X'},
      {"UWD...", "30-<90lost(60,0) ", 3, 1, '?'}, {"UUSU", "", 3, 3, 'U'},
  };
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szStory);
    const auto aSummary = Of(Passes(aCase.szStory));
    const auto& aSite = *std::ranges::find(aSummary.aSites, "a", &SiteSummary::szSite);
    EXPECT_EQ(Outages(aSite), aCase.szOutages);
    EXPECT_TRUE(aSite.lChecks == aCase.lChecks && aSite.lSuccesses == aCase.lSuccesses);
    EXPECT_EQ("?UWDX"[static_cast<std::size_t>(aSite.iCurrent)], aCase.chCurrent);
  }
}

// Told to the minute of the checks, however wide a minute is painted.
TEST(LogStrip, TellsTheRealTimes) {
  const auto aSummary = Of(Passes("UUUUWDDUUUUUUUUUUUU|UUUUUUUUUU"));
  const LogStrip::Scale aScale(aSummary, 40);  // half an hour and more a column
  const auto& aSite = *std::ranges::find(aSummary.aSites, "a", &SiteSummary::szSite);
  const auto aColumns = LogStrip::Columns(aScale, aSite);
  const auto At = [&](double dMinutes) {
    const auto lColumn = aScale.Column(AddMinutes(dtMonday, dMinutes));
    return LogStrip::Words(aScale, aSite, aColumns[static_cast<std::size_t>(lColumn)], lColumn, lColumn + 1);
  };
  EXPECT_EQ(At(10), "Up: Mon Jan 5 2026, 8:00 AM to Mon Jan 5 2026, 10:00 AM");
  EXPECT_EQ(At(200), "Down: Mon Jan 5 2026, 10:30 AM to Mon Jan 5 2026, 11:30 AM");
  EXPECT_EQ(At(900), "Not watched: Mon Jan 5 2026, 5:00 PM to Tue Jan 6 2026, 3:30 AM");
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
