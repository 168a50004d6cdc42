// LogPace: how long each site takes to answer, day by day, and whether it has become slower. Only checks that
// were answered well count: how long a failure takes is set by the time-out and the mail server. Made on
// demand: it looks at every entry.
//
// The later time is the last 7 days where the log reaches back 10 or more, and what is before them, 7 days of
// it at most, the earlier; else they are the two halves of the log. A difference is named only where the
// figures carry it: 20 good answers on either side, medians and means a second apart or more, and the answer
// of one side the longer in 3 of 4 pairs that can be made of the two. (A median alone jumps from 0 to 1 where
// half a second becomes a little more than that.)
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "history/LogPeriod.h"
#include "history/LogSummary.h"

// Seconds. A share of the answers took no longer than each of these says.
struct Pace {
  std::uint32_t lAnswers = 0;
  std::int64_t lMedian = 0, lMost = 0, lLongest = 0;  // half of them, 95 of 100, all
};

struct PaceDay {
  DateTime dtDay = 0;  // its midnight
  Pace aPace;
};

enum class PaceTrend : std::uint8_t { TooFew, Same, Slower, Quicker };

struct SitePace {
  std::string szSite;  // bytes as logged
  Pace aPace;
  std::vector<PaceDay> aDays;  // those with a good answer
  Pace aNow, aBefore;
  PaceTrend iTrend = PaceTrend::TooFew;
};

struct PaceReport {
  LogPeriod aNow, aBefore;
  bool bByWeek = false;           // else by halves
  bool bLongEnough = false;       // for a trend: the log covers two days or more
  DateTime dtFrom = 0, dtTo = 0;  // first and last moment of the log
  std::vector<SitePace> aSites;   // those with a good answer, the slowest first
};

namespace LogPaces {
// Of the summary's sites.
PaceReport Of(const LogHistory& aHistory, const LogSummary& aSummary);
// Which of the log's sites are in the summary, by their numbers.
std::vector<bool> SitesOf(const LogHistory& aHistory, const LogSummary& aSummary);
}  // namespace LogPaces
