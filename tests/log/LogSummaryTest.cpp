#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <tuple>

#include "log/LogBench.h"
#include "log/LogSummary.h"
#include "log/LogSummaryText.h"

namespace {

LogSummary Of(const std::string& szText) {
  const TestHome aHome;
  return Summarise(Opened(aHome, szText));
}

// One pass every 30 minutes; a letter is what site "a" says: U up, W warning, D down, X disabled, S stopped
// by hand, "." not in the pass, "|" ten hours without any pass.
std::string Passes(const std::string& szStory) {
  LogWeek::Script aScript(dtMonday);
  const std::map<char, std::tuple<const char*, int, const char*>> aWords = {
      {'U', {"Site OK", 1, ""}},
      {'W', {"503 Service Unavailable", 4, ""}},
      {'D', {"404 File Not Found", 2, "E-mail Notification Sent"}},
      {'X', {"Unknown Site: Site #", 3, ""}},
      {'S', {"", 2, "Manually Stopped."}}};
  for (const char chPass : szStory) {
    if (chPass == '|') aScript.After(600);
    if (chPass == '|') continue;
    aScript.Start().Entry("http://other", "Site OK", 1, "", 0);
    if (const auto pWord = aWords.find(chPass); pWord != aWords.end()) {
      const auto& [szText, lClass, szComment] = pWord->second;
      aScript.Entry("http://a", szText, lClass, szComment, 0);
    }
    aScript.End().After(30);
  }
  return aScript.Text();
}

const SiteSummary& SiteA(const LogSummary& aSummary) {
  for (const auto& aSite : aSummary.aSites)
    if (aSite.szSite == "a") return aSite;
  ADD_FAILURE() << "no site a";
  return aSummary.aSites.front();
}

char Letter(SiteState iState) {
  return "?UWDX"[static_cast<std::size_t>(iState)];
}

// from-to(minutes down, minutes unwatched) in minutes since the start; "<" marks what may have been earlier.
std::string Outages(const SiteSummary& aSite) {
  std::string szAll;
  const auto Minutes = [](std::int64_t lSeconds) { return std::to_string(lSeconds / 60); };
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

std::string States(const SiteSummary& aSite) {
  std::string szAll;
  for (const auto& aState : aSite.aStates)
    szAll += Letter(aState.iState) + std::to_string(SecondsBetween(aState.dtFrom, aState.dtTo) / 60) + " ";
  return szAll;
}

}  // namespace

TEST(LogSummary, TellsEachSitesStory) {
  struct Case {
    const char *szStory, *szOutages, *szStates;
    std::uint32_t lChecks, lSuccesses;
    char chCurrent;
  };
  const Case aCases[] = {
      {"UUUU", "", "U90 ", 4, 4, 'U'},
      {"UWDDU", "30-120(90,0) ", "U30 W30 D60 U0 ", 5, 2, 'U'},
      {"UWU", "30-60(30,0) ", "U30 W30 U0 ", 3, 2, 'U'},
      {"DDU", "<0-60(60,0) ", "D60 U0 ", 3, 1, 'U'},
      {"UWDD", "30-<90still(60,0) ", "U30 W30 D30 ", 4, 1, 'D'},
      {"UUWD|DDU", "60-780(90,630) ", "U60 W30 D0 ?630 D60 U0 ", 7, 3, 'U'},
      {"UUWD|UU", "60-<720(30,630) ", "U60 W30 D0 ?630 U30 ", 6, 4, 'U'},
      {"UUUU|WD", "<720-<750still(30,0) ", "U90 ?630 W30 D0 ", 6, 4, 'D'},
      {"UWDXXXU", "30-<180(60,90) ", "U30 W30 D30 X90 U0 ", 4, 2, 'U'},
      {"UWDXX", "30-<90lost(60,0) ", "U30 W30 D30 X30 ", 3, 1, 'X'},
      {"UWD...", "30-<90lost(60,0) ", "U30 W30 D30 ?60 ", 3, 1, '?'},
      {"UU..U", "", "U60 ?60 U0 ", 3, 3, 'U'},
      {"UUSU", "", "U90 ", 3, 3, 'U'},
      {"XXXX", "", "X90 ", 0, 0, 'X'},
  };
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szStory);
    const auto aSummary = Of(Passes(aCase.szStory));
    const auto& aSite = SiteA(aSummary);
    EXPECT_EQ(Outages(aSite), aCase.szOutages);
    EXPECT_EQ(States(aSite), aCase.szStates);
    EXPECT_EQ(aSite.lChecks, aCase.lChecks);
    EXPECT_EQ(aSite.lSuccesses, aCase.lSuccesses);
    EXPECT_EQ(Letter(aSite.iCurrent), aCase.chCurrent);
  }
}

TEST(LogSummary, FindsGapsByTheUsualDistance) {
  const struct {
    const char* szMinutes;  // between passes
    int lTimes;
    bool bManual;
    std::size_t lGaps;
  } aCases[] = {
      {"30 30 30 59 30", 1, false, 0},
      {"30 30 30 75 30", 1, false, 1},  // the computer slept
      {"1 1 1 4 1 1", 1, false, 0},     // off for a short while between quick passes
      {"1 1 1 20 1 1", 1, false, 1},
      {"240 240 960", 5, false, 5},  // three a day
      {"5 30", 20, false, 0},        // second looks after 5 minutes
      {"10 60 110", 1, true, 0},
      {"1440", 2, true, 2},  // by hand once a day
      {"30 30 -600 30 30", 1, false, 0},
      {"5 5 5 5 5 5 30 30 30 30 30 30 30 30 30 30", 1, false, 0},  // the schedule was changed
  };
  for (const auto& aCase : aCases) {
    LogWeek::Script aScript(dtMonday);
    aScript.Start(aCase.bManual).Up("a").End();
    for (int i = 0; i < aCase.lTimes; ++i) {
      std::istringstream aMinutes(aCase.szMinutes);
      for (double dMinutes = 0; aMinutes >> dMinutes;)
        aScript.After(dMinutes).Start(aCase.bManual).Up("a").End();
    }
    EXPECT_EQ(Of(aScript.Text()).aGaps.size(), aCase.lGaps) << aCase.szMinutes;
  }
}

TEST(LogSummary, TellsAWeekInWordsAndSomethingOfNothing) {
  const auto aWeek = Of(LogWeek::Text());
  EXPECT_TRUE(aWeek.lAutomatic == 258 && aWeek.lManual == 3 && aWeek.lEndless == 1 && aWeek.lUnread == 1);
  EXPECT_TRUE(aWeek.lMailsSent == 3 && aWeek.lMailsFailed == 1 && aWeek.aGaps.size() == 1);
  const auto szText = LogSummaryText::Compose(aWeek);
  for (const auto* szPart :
       {"2 of 5 sites are down.\n",
        "intranet.example.com:8080/status has been down since Fri Jan 9 2026, 9:30 PM", "6 outages",
        "Wed Jan 7 2026, 3:00 PM to Thu Jan 8 2026, 1:00 AM", "99.23%", "Switched off"})
    EXPECT_NE(szText.find(szPart), std::string::npos) << szPart << " in\n" << szText;
  EXPECT_TRUE(LogSummaryText::Compose(Of("")).starts_with("This log holds no checks.\n"));
  LogWeek::Script aHostile(dtMonday);
  const auto szHostile = LogSummaryText::Compose(Of(aHostile.Start().Up("\x1b[2J\x07|a").End().Text()));
  EXPECT_TRUE(szHostile.starts_with("The site is up.\n"));
  EXPECT_EQ(szHostile.find_first_of("\x1b\x07"), std::string::npos);
}
