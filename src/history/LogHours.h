// LogHours: at which hours of which weekdays failures begin. A failure begins with the first failed check
// behind a good one; a site that stays down for days would otherwise fill every hour. Where it is not known
// when one began, because nobody watched, it is counted in no hour. Made on demand: it looks at every entry.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "history/LogSummary.h"

struct HourFigures {
  std::uint32_t lChecks = 0;  // those that were answered well, and the first to fail
  std::uint32_t lBegun = 0;   // failures: outages and hiccups
  std::uint32_t lDays = 0;    // on so many different days
};

struct HourReport {
  static constexpr std::size_t lDays = 7, lHours = 24;
  std::array<std::array<HourFigures, lHours>, lDays> aCells;  // from Sunday on, from midnight on
  std::array<HourFigures, lHours> aAllDays;
  std::uint32_t lBegun = 0;

  // The row of a weekday, or behind them that of all days.
  const std::array<HourFigures, lHours>& Row(std::size_t lDay) const {
    return lDay < lDays ? aCells[lDay] : aAllDays;
  }
  // 0 to 1: the share of the checks that were the first to fail, beside the largest such share of the row's
  // kind (weekdays, or all days).
  double Height(std::size_t lDay, std::size_t lHour) const;
};

namespace LogHours {
// Of the summary's sites.
HourReport Of(const LogHistory& aHistory, const LogSummary& aSummary);
// One sentence that says what is seen.
std::string Words(const HourReport& aReport);
// What one cell says; lDay HourReport::lDays: all days.
std::string CellWords(const HourReport& aReport, std::size_t lDay, std::size_t lHour);
std::string DayName(std::size_t lDay);
// "3", "+" beyond 9, "." where nothing failed, " " where nobody watched.
char Sign(const HourFigures& aCell);
// As lines ended by "\n", with the hours above, closer together where lColumns (0: any width) ask for it.
std::string Text(const HourReport& aReport, std::size_t lColumns = 0);
}  // namespace LogHours
