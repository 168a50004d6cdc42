// LogCompare: two periods side by side, site by site. Time in which nobody watched counts in neither. Made on
// demand: it looks at every entry.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "history/LogPeriod.h"
#include "history/LogSummary.h"

struct PeriodFigures {
  std::uint32_t lChecks = 0, lWell = 0;  // those begun in it
  std::uint32_t lOutages = 0;            // those begun in it
  Availability aAvailable;               // of the time in it
  std::int64_t lDown = 0;                // seconds of it, of whichever outage

  bool Watched() const { return aAvailable.lWatched > 0 || lChecks > 0; }
  void Add(const PeriodFigures& aOther);
};

struct SiteComparison {
  std::string szSite;  // bytes as logged
  PeriodFigures aNow, aBefore;
  // How much longer it was down than before, seconds; 0 where one of the two was not watched.
  std::int64_t Worse() const { return aNow.Watched() && aBefore.Watched() ? aNow.lDown - aBefore.lDown : 0; }
};

struct PeriodComparison {
  LogPeriod aNow, aBefore;
  PeriodFigures aAllNow, aAllBefore;
  std::vector<SiteComparison> aSites;  // watched in one of them; those that got worse most first
};

namespace LogCompare {
// Of the summary's sites; the summary is one of the whole history, so that what goes on across a border is
// known.
PeriodComparison Of(const LogHistory& aHistory, const LogSummary& aSummary, const LogPeriod& aNow,
                    const LogPeriod& aBefore);
}  // namespace LogCompare
