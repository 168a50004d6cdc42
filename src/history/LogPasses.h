// LogPasses: how long passes took, what they waited for, which of them began late, and whether they fit into
// the interval. Made on demand: it looks at every entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "history/LogHistory.h"

struct PassFigures {
  std::size_t lPass = 0;  // its place in LogHistory::Passes
  DateTime dtStart = 0;
  // As in LogPass; bWhole: every site of the list had its turn.
  bool bStarted = false, bManual = false, bWhole = false;
  std::int64_t lSeconds = 0;    // from its start to the end of its last check
  bool bExact = false;          // false: whole minutes of its last check may be missing
  bool bLastFailed = false;     // that check, so that it may well have taken minutes
  std::uint32_t lChecks = 0;    // sites asked; not those that are switched off
  std::uint32_t lFailures = 0;  // of these
  std::uint32_t lMailsSent = 0, lMailsFailed = 0;
  // About: what the checks with a mail took longer than the same site's failed check before.
  std::int64_t lMailSeconds = 0;
  // How much later than the usual interval allows it began, the pass before having run until then; 0: was not
  // late, or for another reason.
  std::int64_t lLate = 0;
  // The check that took longest.
  std::uint32_t lLongestSite = 0;  // number in LogHistory::Sites
  std::int64_t lLongest = 0;       // seconds
  bool bLongestMailed = false;     // a mail was sent, or tried, within it
};

struct PassReport {
  std::vector<PassFigures> aPasses;  // those with a known start and an entry, the first first
  std::int64_t lUsual = 0;           // median length, of the passes that ran to their end
  std::int64_t lInterval = 0;        // seconds from pass to pass at the end of the log; 0 not known
  // What a pass over the sites of the last whole one would take if each took as long as it ever did.
  std::int64_t lWorst = 0;
  std::uint64_t lUncertain = 0;         // checks of which whole minutes may be missing, or nothing is known
  std::optional<std::size_t> lLongest;  // in aPasses; of those that ran to their end
  std::optional<std::size_t> lLatest;   // in aPasses; the one that began latest
  std::size_t lLate = 0;                // how many began late
};

namespace LogPasses {
PassReport Of(const LogHistory& aHistory);
// Only when passes were and how long they took, without a look at any entry: whole minutes of their last
// checks are never counted.
PassReport Lengths(const LogHistory& aHistory);
}  // namespace LogPasses
