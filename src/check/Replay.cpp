#include "check/Replay.h"

#include <algorithm>

#include "check/Schedule.h"
#include "check/SiteCourse.h"
#include "platform/StandingClock.h"

namespace {

using Replay::Course;
using Replay::Site;
using Replay::Span;

// Whether a moment lies in one of the spans. Moments are asked for in their order.
class Cursor {
 public:
  explicit Cursor(const std::vector<Span>& aTheSpans) : aSpans(aTheSpans) {}
  bool Holds(DateTime dtMoment) {
    while (lNext < aSpans.size() && SecondsBetween(dtMoment, aSpans[lNext].dtPast) <= 0)
      ++lNext;
    return lNext < aSpans.size() && SecondsBetween(aSpans[lNext].dtFrom, dtMoment) >= 0;
  }

 private:
  const std::vector<Span>& aSpans;
  std::size_t lNext = 0;
};

struct Watch {
  explicit Watch(const Site& aSite) : dTurn(aSite.dTurn), aDown(aSite.aDown), aAway(aSite.aAway) {}
  double dTurn;
  Cursor aDown, aAway;
  std::uint8_t iStatus = SiteStatus::iNotChecked;
};

void Pass(StandingClock& aClock, std::vector<Watch>& aWatches, std::int32_t lInterval, std::int32_t lWarning,
          Course& aCourse) {
  const DateTime dtStart = Clock::Now();
  ++aCourse.lPasses;
  Schedule::SetNextCheck(lInterval);
  for (std::size_t i = 0; i < aWatches.size(); ++i) {
    auto& aWatch = aWatches[i];
    const auto dWait = aWatch.dTurn - static_cast<double>(SecondsBetween(dtStart, Clock::Now()));
    if (dWait > 0) aClock.Advance(dWait);
    const DateTime dtNow = Clock::Now();
    if (aWatch.aAway.Holds(dtNow)) continue;
    const auto aTurn = aWatch.aDown.Holds(dtNow) ? SiteCourse::AfterFailure(aWatch.iStatus)
                                                 : SiteCourse::Turn{.iStatus = SiteStatus::iUp};
    aWatch.iStatus = aTurn.iStatus;
    if (aTurn.bAlert) aCourse.aMails.push_back({i, dtNow});
    if (aTurn.bSoon) Schedule::SetNextCheck(lWarning);
  }
}

}  // namespace

Course Replay::Of(const Times& aTimes, const std::vector<Site>& aTheSites, std::int32_t lInterval,
                  std::int32_t lWarning) {
  Course aCourse;
  std::vector<Watch> aWatches(aTheSites.begin(), aTheSites.end());
  auto aHand = aTimes.aByHand.begin();
  for (const auto& aSpan : aTimes.aWatched) {
    StandingClock aClock(aSpan.dtFrom);
    for (auto& aWatch : aWatches)
      aWatch.iStatus = SiteStatus::iNotChecked;
    while (SecondsBetween(Clock::Now(), aSpan.dtPast) > 0) {
      Pass(aClock, aWatches, lInterval, lWarning, aCourse);
      while (aHand != aTimes.aByHand.end() && SecondsBetween(*aHand, Clock::Now()) >= 0)
        ++aHand;
      const auto dtNext = aHand != aTimes.aByHand.end() ? std::min(*aHand, NextCheckTime) : NextCheckTime;
      // An overdue pass begins with the next second.
      aClock.Advance(std::max<double>(1, static_cast<double>(SecondsBetween(Clock::Now(), dtNext))));
    }
  }
  return aCourse;
}
