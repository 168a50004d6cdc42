// LogDurations: how long each check took, from its start to its log line, a mail included.
//
// The log keeps the seconds hand alone: 75 seconds show as 15. The minutes are told by the start of the check
// behind it, because a request goes out as soon as the one before it is written down. They cannot be told
// where no start follows in time (the last check of a pass, mostly), where the pause behind fits no whole
// minute (the computer slept, the clock was set), and where the check behind has no time of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "history/LogHistory.h"

struct CheckDuration {
  enum class Known : std::uint8_t {
    Exact,
    Least,  // whole minutes may be missing
    No      // the check has no time of its own, and its neighbours do not tell either
  };
  LogHistory::LineRef aRef;
  std::int64_t lSeconds = 0;  // never more than it took; 0 where not known
  Known iKnown = Known::No;
};

namespace LogDurations {
// Of the entries of a pass (its place in LogHistory::Passes), in their order. aInto loses what it held.
void Of(const LogHistory& aHistory, std::size_t lPass, std::vector<CheckDuration>& aInto);
}  // namespace LogDurations
