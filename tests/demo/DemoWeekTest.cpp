// The played week is what operators see first: it must tell its own story, from the engine to the page.
#include <gtest/gtest.h>

#include <cmath>

#include "demo/DemoWeek.h"
#include "history/LogHtml.h"
#include "history/LogSummaryText.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "support/LogScript.h"
#include "support/WellFormed.h"

TEST(DemoWeek, IsToldByItsPage) {
  TestHome aHome;
  EXPECT_EQ(DemoWeek::Play(aHome.Path("week"), std::floor(dtMonday)), 326U);
  const std::string szMails = aHome.Path("week") + Files::chSeparator + "mails";
  const auto aMails = Files::List(szMails, ".eml");
  EXPECT_EQ(aMails.size(), 10U);
  for (const auto& szName : aMails)
    EXPECT_NE(Files::ReadWhole(szMails + Files::chSeparator + szName, 65536).value_or("").find(" Jan 2026 "),
              std::string::npos)
        << szName << " does not bear the date on which it went out";
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("week") + Files::chSeparator + "Logs"}));
  const auto aSummary = Summarise(aHistory);
  const StandingClock aClock(AddMinutes(aSummary.dtTo, 10));
  LogHtml::Limits aLimits;
  aLimits.bEveryEntry = true;
  const auto szPage = LogHtml::Compose(aHistory, aSummary, aLimits);
  const auto szAll = LogSummaryText::Compose(aSummary, Clock::Now()) + szPage;
  for (const auto* szPart :
       {"1 of 7 sites is down.\n", "(323 on schedule, 3 started by hand)", "10 sent, 1 could not be sent",
        "Nobody was told of partner.example.net/feed for 14 h",
        "Not watched: Fri Jan 9 2026, 8:52 PM to Sat Jan 10 2026, 9:10 AM (12 h 18 min)",
        "The longest waited most for reports.example.com/daily",
        "1 pass began late because the one before it was still running: by 6 min",
        "has become slower than in the first half of the time covered: 7 s instead of 3 s",
        "failures began between 2 AM and 3 AM, whatever the day.",
        "partner.example.net/feed got worse most: down for 6 h"})
    EXPECT_NE(szAll.find(szPart), std::string::npos) << szPart << " in\n" << szAll.substr(0, 2000);
  EXPECT_EQ(Occurrences(szPage, "scope=\"rowgroup\""), 326U);
  EXPECT_EQ(szPage.find("src="), std::string::npos) << "nothing is loaded from elsewhere";
  ExpectWellFormed(aHome, szPage);
}
