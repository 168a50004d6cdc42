// LogGaps: the times in which no pass ran though one was due (see LogSummary.h for the rule).
#pragma once

#include <vector>

struct StateInterval;
class LogHistory;

namespace LogGaps {
// For each of LogHistory::Passes, the gap that follows it; dtTo 0 where none does.
std::vector<StateInterval> Find(const LogHistory& aHistory);
}  // namespace LogGaps
