// Trails: the states of each site over the last 30 days, so far as they are known: from the check logs at
// first, then from each result as it comes. A state holds from one check to the next, unless nobody watched
// meanwhile.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "history/LogSummary.h"

class Trails {
 public:
  static constexpr std::int32_t lDays = 30;

  void Take(const LogSummary& aSummary);
  // A result of now. dMostGap: days without a check after which nobody is taken to have watched.
  void Add(const std::string& szSite, SiteState iState, DateTime dtNow, double dMostGap);
  // What follows in time. Where the two overlap, the later one gives way.
  void Append(const Trails& aLater, double dMostGap);
  // Nothing older than lDays is kept.
  void Trim(DateTime dtNow);

  // In order, without holes; empty for a site that is not known. Letter case of the name does not matter.
  const std::vector<StateInterval>& Of(const std::string& szSite) const;
  DateTime From() const { return dtFrom; }  // the earliest moment known; 0: none

  // How long it was watched between the two moments, and how long of that it was up, in seconds.
  struct Watched {
    double dUp = 0, dAll = 0;
  };
  static Watched TimeUp(const std::vector<StateInterval>& aStates, DateTime dtFrom, DateTime dtTo);
  // When the failed checks began with which the states end; 0: they end with none.
  static DateTime FailingSince(const std::vector<StateInterval>& aStates);
  // From a first failure to the next success, where a second one came between.
  struct Failure {
    DateTime dtFrom = 0, dtTo = 0;
    bool bEnded = false;
  };
  static std::vector<Failure> Failures(const std::vector<StateInterval>& aStates);

 private:
  std::unordered_map<std::string, std::vector<StateInterval>> aTrails;  // by name in lower case
  DateTime dtFrom = 0;
};
