// LogSummary: what a history says of each site and of the watching itself.
//
// A state is taken to hold from one check of a site to its next. It ends where nobody watched:
//   - a gap: no pass ran for longer than twice the usual distance between passes (and 5 minutes). The usual
//     distance is that which 60 % of the automatic passes around (24 either way) kept to the pass before
//     them, so neither the quick second look after a failure nor the nights off decide it. Where fewer than
//     three automatic passes are around, a gap is more than 2 hours.
//   - a pass that ran to its end without the site: it was off the list, or disabled and not logged.
// What lies there is neither up nor down.
//
// A site is down from its second failed check in a row, counted from the first of them, whatever the entries'
// classes say: a restart of the monitor forgets the first, so that the second is logged as a first one again.
// A single failed check with a success behind it is a hiccup, no outage.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "history/LogHistory.h"

enum class SiteState : std::uint8_t { Unwatched, Up, Warning, Down, Disabled };

constexpr bool IsFailure(SiteState iState) {
  return iState == SiteState::Warning || iState == SiteState::Down;
}

struct StateInterval {
  DateTime dtFrom = 0, dtTo = 0;
  SiteState iState = SiteState::Unwatched;
};

enum class OutageEnd : std::uint8_t {
  Recovered,       // a later check succeeded
  StillDown,       // the log ends before
  NoLongerWatched  // the site was taken off, or disabled, while it was down
};

// An alert mail that the monitor tried to send.
struct MailAttempt {
  DateTime dtMoment = 0;  // of the check that gave rise to it
  bool bSent = false;
};

// From the first failed check to the next that succeeds.
struct Outage {
  DateTime dtFrom = 0;
  DateTime dtTo = 0;            // the success; without one, the last moment at which it was watched
  std::int64_t lSeconds = 0;    // from dtFrom to dtTo without the time in which nobody watched
  std::int64_t lUnwatched = 0;  // seconds
  std::uint32_t lFailures = 0;  // failed checks
  std::vector<MailAttempt> aMails;
  // The last check that was logged as a first failure though it was none, because the monitor had been
  // started again; 0: none was.
  DateTime dtRestarted = 0;
  bool bDown = false;        // false: a hiccup
  bool bStartKnown = false;  // false: it may have begun earlier; no success was seen just before it
  bool bEndKnown = true;     // false: it may have ended earlier, while nobody watched
  OutageEnd iEnd = OutageEnd::StillDown;
  std::string szText;  // what its last failure was answered with; bytes as logged (LogWords::Answer)

  const MailAttempt* FirstSent() const;  // nullptr: no mail went out
  std::size_t MailsFailed() const;
};

// How long a site was watched, and how much of that it was up.
struct Availability {
  std::int64_t lUp = 0, lWatched = 0;  // seconds
};
// The stretches of time it is told for, each up to the end of the log: days, 0 for the whole log.
inline constexpr std::array<std::int32_t, 4> aAvailabilityDays{1, 7, 30, 0};

struct SiteSummary {
  std::string szSite;
  std::uint32_t lChecks = 0;  // successes and failures; not disabled, not stopped by hand
  std::uint32_t lSuccesses = 0;
  SiteState iCurrent = SiteState::Unwatched;  // at the end of the log; Unwatched: not checked any more
  DateTime dtSince = 0;                       // when that state began, as far as this log knows
  bool bSinceKnown = false;                   // false: it was so at its first check in the log
  DateTime dtLastCheck = 0;
  std::int64_t lDownSeconds = 0;    // of all outages
  std::int64_t lHiccupSeconds = 0;  // of all hiccups
  std::vector<Outage> aOutages;
  std::vector<Outage> aHiccups;  // the last of them perhaps the beginning of an outage
  std::array<Availability, aAvailabilityDays.size()> aAvailability;
  std::vector<StateInterval> aStates;  // without holes, from its first check to the end of the log

  const Outage* Longest() const;  // nullptr without outages
  // What it is in at the end of the log; nullptr where it is up or not watched.
  const Outage* Current() const;
  // How often it failed within the 24 hours in which it failed most often, outages and hiccups.
  std::size_t MostFailuresADay() const;
};

// So often within 24 hours, and a site is said to come and go.
inline constexpr std::size_t lFlapping = 4;

struct LogSummary {
  DateTime dtFrom = 0, dtTo = 0;  // first and last moment known; 0 when there is none
  std::uint32_t lManual = 0, lAutomatic = 0;
  std::uint32_t lStartless = 0;  // groups of entries whose start line is missing
  // Passes without end line, the last one not counted: on schedule, and by hand, which then had only chosen
  // sites or were broken off.
  std::uint32_t lEndless = 0, lPartial = 0;
  // Passes of several sites none of which was reached, and the last of them: no name found, no connection, no
  // answer in time.
  std::uint32_t lUnreached = 0;
  DateTime dtLastUnreached = 0;
  std::uint32_t lEntries = 0, lUnread = 0;
  std::uint32_t lMailsSent = 0, lMailsFailed = 0;
  DateTime dtLastCheck = 0;  // the newest check of any site; 0: none
  DateTime dtNextDue = 0;  // when a pass should have begun at the latest, by the usual distance; 0: not known
  std::vector<StateInterval> aGaps;  // all Unwatched
  std::vector<SiteSummary> aSites;   // as in LogHistory::Sites, those without an entry left out

  std::uint32_t Count(SiteState iState) const;  // sites now in that state
  SiteState Worst() const;                      // of all sites now; Unwatched where there are none
};

// What an entry's outcome says of the site on its own.
SiteState StateOf(Outcome iOutcome);

LogSummary Summarise(const LogHistory& aHistory);
