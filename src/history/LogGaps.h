// LogGaps: the times in which no pass ran though one was due (see LogSummary.h for the rule).
#pragma once

#include <cstdint>
#include <vector>

#include "base/DateTime.h"

struct StateInterval;
class LogHistory;

namespace LogGaps {
// For each of LogHistory::Passes, the gap that follows it; dtTo 0 where none does.
std::vector<StateInterval> Find(const LogHistory& aHistory);

// Seconds behind the last moment of the history for which somebody is still taken to watch.
std::int64_t LongestPauseAfter(const LogHistory& aHistory);

// When the pass after the last one should have begun at the latest: the usual distance, and a little more
// because a slow pass is none that is missing. 0 where no schedule can be seen.
DateTime NextDue(const LogHistory& aHistory);

// For each of LogHistory::Passes, the usual distance from pass to pass around it, seconds; 0 where no
// schedule can be seen.
std::vector<std::int64_t> Usual(const LogHistory& aHistory);

// The same at the end of the log.
std::int64_t Interval(const LogHistory& aHistory);
}  // namespace LogGaps
