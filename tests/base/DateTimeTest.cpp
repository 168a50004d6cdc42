#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "base/DateTime.h"
#include "base/Text.h"

namespace {

constexpr auto dInfinity = std::numeric_limits<double>::infinity();

TEST(DateTime, IsShownInOneFormAndReadBack) {
  const auto dtSeconds = JoinDateTime({1999, 11, 15, 17, 44, 21});
  const struct {
    DateTime dtMoment;
    const char *szGeneral, *szDay;
    std::int32_t lWeekday;
  } aCases[] = {
      {0, "12/30/1899 12:00:00 AM", "18991230", 7},
      {dtSeconds - 1e-9, "11/15/1999 5:44:21 PM", "19991115", 2},  // 20 when cut off
      {JoinDateTime({2024, 12, 31, 23, 59, 59}) + 7e-6, "1/1/2025 12:00:00 AM", "20250101", 4},
      {JoinDateTime({1850, 1, 1, 6, 5, 4}), "1/1/1850 6:05:04 AM", "18500101", 3},
      {JoinDateTime({2023, 14, 35, 0, 0, 0}), "3/6/2024 12:00:00 AM", "20240306", 4},
      {std::nan(""), "12/30/1899 12:00:00 AM", "18991230", 7},
      {dInfinity, "12/31/9999 11:59:59 PM", "99991231", 6},
      {-1e300, "1/1/0001 12:00:00 AM", "00010101", 2},
  };
  for (const auto& aCase : aCases) {
    EXPECT_EQ(aCase.szGeneral, FormatGeneral(aCase.dtMoment));
    EXPECT_EQ(aCase.szDay, FormatDay(aCase.dtMoment));
    EXPECT_EQ(aCase.lWeekday, SplitDateTime(aCase.dtMoment).lWeekday);
    DateTime dtRead = -1;
    EXPECT_TRUE(ParseGeneral(aCase.szGeneral, dtRead));
    EXPECT_EQ(aCase.szGeneral, FormatGeneral(dtRead));
  }
  EXPECT_EQ(-86400, SecondsBetween(dtSeconds, AddDays(dtSeconds, -1)));
  EXPECT_LT(0, SecondsBetween(0, dInfinity));
  for (const char* const szNone : {"", "11/15/1999", "11/15/99 5:44:21 PM", "2/30/2000 1:00:00 AM",
                                   "11/15/1999 05:44:21 PM", "99999999999/1/2000 1:00:00 AM"}) {
    DateTime dtRead = -1;
    EXPECT_FALSE(ParseGeneral(szNone, dtRead)) << szNone;
    EXPECT_EQ(-1, dtRead);
  }
}

TEST(Text, TakesOnlyAsciiForWhatItIsAndSaturates) {
  EXPECT_EQ("a?[2J??c\xC3\xA9?", Text::Printable("a\x1B[2J\r\nc\xC3\xA9\xC2\x9B"));
  const std::pair<const char*, std::int32_t> aCases[] = {
      {"", 0}, {"  -7x", -7}, {"x3", 0}, {"2147483648", INT_MAX}, {"-99999999999999999999999", INT_MIN}};
  for (const auto& [szText, lNumber] : aCases)
    EXPECT_EQ(lNumber, Text::LeadingNumber(szText)) << szText;
}

}  // namespace
