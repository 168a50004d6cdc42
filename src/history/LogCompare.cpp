#include "history/LogCompare.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

namespace {

constexpr std::size_t lNone = static_cast<std::size_t>(-1);

std::int64_t SecondsWithin(const StateInterval& aState, const LogPeriod& aPeriod) {
  const auto dtFrom = std::max(aState.dtFrom, aPeriod.dtFrom), dtTo = std::min(aState.dtTo, aPeriod.dtPast);
  return dtTo > dtFrom ? SecondsBetween(dtFrom, dtTo) : 0;
}

PeriodFigures Measure(const SiteSummary& aSite, const LogPeriod& aPeriod) {
  PeriodFigures aFigures;
  for (const auto& aState : aSite.aStates) {
    if (aState.iState == SiteState::Unwatched || aState.iState == SiteState::Disabled) continue;
    const auto lSeconds = SecondsWithin(aState, aPeriod);
    aFigures.aAvailable.lWatched += lSeconds;
    if (aState.iState == SiteState::Up) aFigures.aAvailable.lUp += lSeconds;
    if (aState.iState == SiteState::Down) aFigures.lDown += lSeconds;
  }
  for (const auto& aOutage : aSite.aOutages)
    if (aPeriod.Holds(aOutage.dtFrom)) ++aFigures.lOutages;
  return aFigures;
}

void CountCheck(PeriodFigures& aFigures, Outcome iOutcome) {
  ++aFigures.lChecks;
  if (iOutcome == Outcome::Up) ++aFigures.lWell;
}

void CountChecks(PeriodComparison& aComparison, const LogHistory& aHistory) {
  std::unordered_map<std::string_view, std::size_t> aPlaces;
  for (std::size_t i = 0; i < aComparison.aSites.size(); ++i)
    aPlaces.emplace(aComparison.aSites[i].szSite, i);
  std::vector<std::size_t> aPlaceOf;
  for (const auto& szSite : aHistory.Sites()) {
    const auto aFound = aPlaces.find(szSite);
    aPlaceOf.push_back(aFound == aPlaces.end() ? lNone : aFound->second);
  }
  for (const auto aRef : aHistory.Lines()) {
    const auto& aLine = aHistory.Line(aRef);
    const bool bCheck = aLine.iOutcome == Outcome::Up || aLine.iOutcome == Outcome::Down ||
                        aLine.iOutcome == Outcome::Warning;
    if (aLine.iKind != LineKind::Entry || !bCheck || aPlaceOf[aLine.lSite] == lNone) continue;
    auto& aSite = aComparison.aSites[aPlaceOf[aLine.lSite]];
    if (aComparison.aNow.Holds(aLine.dtMoment)) CountCheck(aSite.aNow, aLine.iOutcome);
    if (aComparison.aBefore.Holds(aLine.dtMoment)) CountCheck(aSite.aBefore, aLine.iOutcome);
  }
}

}  // namespace

void PeriodFigures::Add(const PeriodFigures& aOther) {
  lChecks += aOther.lChecks;
  lWell += aOther.lWell;
  lOutages += aOther.lOutages;
  lDown += aOther.lDown;
  aAvailable.lUp += aOther.aAvailable.lUp;
  aAvailable.lWatched += aOther.aAvailable.lWatched;
}

PeriodComparison LogCompare::Of(const LogHistory& aHistory, const LogSummary& aSummary, const LogPeriod& aNow,
                                const LogPeriod& aBefore) {
  PeriodComparison aComparison;
  aComparison.aNow = aNow;
  aComparison.aBefore = aBefore;
  for (const auto& aSite : aSummary.aSites)
    aComparison.aSites.push_back({aSite.szSite, Measure(aSite, aNow), Measure(aSite, aBefore)});
  CountChecks(aComparison, aHistory);
  std::erase_if(aComparison.aSites, [](const SiteComparison& aSite) {
    return !aSite.aNow.Watched() && !aSite.aBefore.Watched();
  });
  for (const auto& aSite : aComparison.aSites) {
    aComparison.aAllNow.Add(aSite.aNow);
    aComparison.aAllBefore.Add(aSite.aBefore);
  }
  std::ranges::stable_sort(aComparison.aSites, std::ranges::greater(), &SiteComparison::Worse);
  return aComparison;
}
