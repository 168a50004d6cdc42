#include <gtest/gtest.h>

#include "base/DateTime.h"
#include "history/LogPeriod.h"

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
                {"12h", false, "2/28/2026 6:30:00 PM"},
                {"2w", false, "2/15/2026 6:30:00 AM"},
                {"2026-02-29", false, nullptr},  // no leap year
                {"2026-13-01", false, nullptr},
                {"2026-02-28 24:00", false, nullptr},
                {"2026-02-28 14:05:59x", false, nullptr},
                {"-7d", false, nullptr},
                {"99999d", false, nullptr},
                {"", false, nullptr}};
  for (const auto& aCase : aCases) {
    const auto dtRead = LogPeriod::Moment(aCase.szText, dtEnd, aCase.bPast);
    EXPECT_EQ(dtRead ? FormatGeneral(*dtRead) : "none", aCase.szMoment ? aCase.szMoment : "none")
        << aCase.szText;
  }
}
