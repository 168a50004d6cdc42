// LogPeriod: a stretch of a log's time, as an operator names its two ends.
#pragma once

#include <optional>
#include <string_view>

#include "base/DateTime.h"

class LogHistory;

struct LogPeriod {
  DateTime dtFrom = 0, dtPast = 0;  // the second moment is no part of it

  double Days() const { return dtPast - dtFrom; }
  // As long, and just before it.
  LogPeriod Before() const { return {dtFrom - Days(), dtFrom}; }
  // To the second: as doubles two ways to the same one may lie a hair apart.
  bool Holds(DateTime dtMoment) const {
    return SecondsBetween(dtFrom, dtMoment) >= 0 && SecondsBetween(dtMoment, dtPast) > 0;
  }

  // From the start of the first pass to the last moment known; both 0 where no time is known.
  static LogPeriod Of(const LogHistory& aHistory);
  // The last so many days of the log, its last moment included.
  static LogPeriod Last(const LogHistory& aHistory, double dDays);

  // A day ("2026-11-21"), a day and a time ("2026-11-21 14:30", also with seconds, or "T" between them), or
  // how long before dtEnd ("12h", "7d", "2w"). bPast: a day without a time stands for its end. nullopt: none
  // of these.
  static std::optional<DateTime> Moment(std::string_view szText, DateTime dtEnd, bool bPast);
};
