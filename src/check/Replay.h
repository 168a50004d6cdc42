// Replay: which passes and mails there would be, by the monitor's own schedule, where it is known when each
// site is down. It has the process's clock and schedule to itself while it runs, so it is for processes that
// make no passes of their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/DateTime.h"

namespace Replay {

struct Span {
  DateTime dtFrom = 0, dtPast = 0;  // the second moment is no part of it
};

struct Site {
  double dTurn = 0;  // seconds from a pass's start to its turn
  // In the order of their times, none over another.
  std::vector<Span> aDown;
  std::vector<Span> aAway;  // it has no turn
};

struct Mail {
  std::size_t lSite;  // its place among the sites
  DateTime dtMoment;  // of the check that gives rise to it
};

struct Course {
  std::size_t lPasses = 0;
  std::vector<Mail> aMails;  // in the order of their times
};

// When the monitor runs, in order; with each span a fresh start, its first pass at once. And when it is told
// to check now, in order.
struct Times {
  std::vector<Span> aWatched;
  std::vector<DateTime> aByHand;
};

// aTheSites: in the order of their turns. Minutes of 1 or more.
Course Of(const Times& aTimes, const std::vector<Site>& aTheSites, std::int32_t lInterval,
          std::int32_t lWarning);

}  // namespace Replay
