// Date-times as the whole system keeps them: days since 30 December 1899, 0:00 local time, as a double.
// Forms are fixed and never follow the locale, so that a log reads the same everywhere.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

using DateTime = double;

inline constexpr double dSecondsPerDay = 86400;  // a day is one, whatever the clocks do to it

struct DateParts {
  std::int32_t lYear = 1899;
  std::int32_t lMonth = 12;   // 1 to 12
  std::int32_t lDay = 30;     // 1 to 31
  std::int32_t lHour = 0;     // 0 to 23
  std::int32_t lMinute = 0;   // 0 to 59
  std::int32_t lSecond = 0;   // 0 to 59
  std::int32_t lWeekday = 7;  // 1 Sunday to 7 Saturday; not read by JoinDateTime
};

// Splits after rounding to whole seconds, because 5:44:21 as a double may lie a hair below it.
DateParts SplitDateTime(DateTime dtMoment);      // what lies beyond the years 1 to 9999 gives their ends
DateTime JoinDateTime(const DateParts& aParts);  // parts out of range run over: month 14 is next February

DateTime AddSeconds(DateTime dtMoment, double dSeconds);
DateTime AddMinutes(DateTime dtMoment, double dMinutes);
DateTime AddDays(DateTime dtMoment, std::int32_t lDays);

// Whole seconds from the first to the second moment, rounded; negative when it lies before.
std::int64_t SecondsBetween(DateTime dtFirst, DateTime dtSecond);

std::string FormatGeneral(DateTime dtMoment);    // 11/15/1999 5:44:21 PM
std::string FormatTimeOfDay(DateTime dtMoment);  // 5:44:21 PM
std::string FormatDay(DateTime dtMoment);        // 19991115
std::string FormatMonth(DateTime dtMoment);      // 199911

// Reads the form that FormatGeneral writes. False, and no change, for any other text.
bool ParseGeneral(std::string_view szText, DateTime& dtMoment);
