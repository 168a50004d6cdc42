#include <gtest/gtest.h>

#include "history/LogPeriod.h"
#include "history/LogSummary.h"
#include "support/LogScript.h"

TEST(LogPeriod, ReadsDaysTimesAndHowLongAgo) {
  const auto dtEnd = JoinDateTime({2026, 3, 1, 6, 30, 0});
  const struct {
    const char* szText;
    bool bPast;
    const char* szMoment;  // nullptr: none
  } aCases[] = {{"2026-02-28", false, "2/28/2026 12:00:00 AM"},
                {"2026-02-28", true, "3/1/2026 12:00:00 AM"},
                {"2026-02-28 14:05", true, "2/28/2026 2:05:00 PM"},
                {"2026-02-28T14:05:59", false, "2/28/2026 2:05:59 PM"},
                {"7d", false, "2/22/2026 6:30:00 AM"},
                {"7d", true, "2/22/2026 6:30:00 AM"},
                {"12h", false, "2/28/2026 6:30:00 PM"},
                {"2w", false, "2/15/2026 6:30:00 AM"},
                {"2026-02-29", false, nullptr},  // no leap year
                {"2026-13-01", false, nullptr},
                {"2026-02-28 24:00", false, nullptr},
                {"2026-02-28 14", false, nullptr},
                {"2026-02-28 14:05:59x", false, nullptr},
                {"2026-2-8", false, nullptr},
                {"-7d", false, nullptr},
                {"7", false, nullptr},
                {"99999d", false, nullptr},
                {"", false, nullptr}};
  for (const auto& aCase : aCases) {
    const auto dtRead = LogPeriod::Moment(aCase.szText, dtEnd, aCase.bPast);
    EXPECT_EQ(dtRead ? FormatGeneral(*dtRead) : "none", aCase.szMoment ? aCase.szMoment : "none")
        << aCase.szText;
  }
}

TEST(LogPeriod, KeepsThePassesThatBeginInIt) {
  TestHome aHome;
  LogScript aScript;
  aScript.Raw("http://torn line before the first pass\r\n");
  for (int lPass = 0; lPass < 5; ++lPass)  // 8:00, 8:30, ... 10:00
    aScript.Start().Up("a").Up("b" + std::to_string(lPass)).End().dtNow =
        AddMinutes(dtMonday, 30.0 * (lPass + 1));
  Opened aHistory(aHome, aScript.szText);
  const auto aAll = LogPeriod::Of(aHistory);
  EXPECT_EQ(FormatGeneral(aAll.dtFrom) + FormatGeneral(aAll.dtPast),
            "1/5/2026 8:00:00 AM1/5/2026 10:00:02 AM");
  aHistory.Keep({AddMinutes(dtMonday, 30), AddMinutes(dtMonday, 90)});
  ASSERT_EQ(aHistory.Passes().size(), 2U);
  EXPECT_EQ(aHistory.Lines().size(), 8U);
  const auto aSummary = Summarise(aHistory);
  EXPECT_EQ(aSummary.aSites.size(), 3U) << "a, b1 and b2";
  EXPECT_EQ(FormatGeneral(aSummary.dtFrom), "1/5/2026 8:30:00 AM");
  EXPECT_EQ(aSummary.lUnread, 0U);
}
