#include "history/LogPace.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>
#include <unordered_set>

#include "history/LogDurations.h"

namespace {

constexpr double dWeek = 7, dEnoughForWeeks = 10, dEnough = 2;  // days

struct Answer {
  DateTime dtMoment;
  std::int64_t lSeconds;
};
using Answers = std::vector<Answer>;
using Seconds = std::vector<std::int64_t>;  // sorted

Seconds Sorted(const Answers& aAnswers, const LogPeriod& aPeriod) {
  Seconds aSeconds;
  for (const auto& aAnswer : aAnswers)
    if (aPeriod.Holds(aAnswer.dtMoment)) aSeconds.push_back(aAnswer.lSeconds);
  std::ranges::sort(aSeconds);
  return aSeconds;
}

Pace PaceOf(const Seconds& aSorted) {
  const auto lCount = aSorted.size();
  if (lCount == 0) return {};
  return {static_cast<std::uint32_t>(lCount), aSorted[(lCount - 1) / 2],
          aSorted[(lCount * 95 + 99) / 100 - 1], aSorted.back()};
}

double Mean(const Seconds& aSeconds) {
  return static_cast<double>(std::accumulate(aSeconds.begin(), aSeconds.end(), std::int64_t{0})) /
         static_cast<double>(aSeconds.size());
}

// In how many of all pairs the first's is the longer; where they are the same, half a pair.
double ShareLonger(const Seconds& aFirst, const Seconds& aOther) {
  double dPairs = 0;
  for (const auto lSeconds : aFirst) {
    const auto [aFrom, aPast] = std::equal_range(aOther.begin(), aOther.end(), lSeconds);
    dPairs += static_cast<double>(aFrom - aOther.begin()) + static_cast<double>(aPast - aFrom) / 2;
  }
  return dPairs / (static_cast<double>(aFirst.size()) * static_cast<double>(aOther.size()));
}

bool Longer(const Seconds& aFirst, const Seconds& aOther) {
  constexpr double dLeast = 1, dMostPairs = 0.75;
  return PaceOf(aFirst).lMedian - PaceOf(aOther).lMedian >= 1 && Mean(aFirst) - Mean(aOther) >= dLeast &&
         ShareLonger(aFirst, aOther) >= dMostPairs;
}

void Compare(SitePace& aSite, const Answers& aAnswers, const PaceReport& aReport) {
  constexpr std::size_t lEnough = 20;
  if (!aReport.bLongEnough) return;
  const auto aNow = Sorted(aAnswers, aReport.aNow), aBefore = Sorted(aAnswers, aReport.aBefore);
  aSite.aNow = PaceOf(aNow);
  aSite.aBefore = PaceOf(aBefore);
  if (aNow.size() < lEnough || aBefore.size() < lEnough) return;
  aSite.iTrend = Longer(aNow, aBefore)   ? PaceTrend::Slower
                 : Longer(aBefore, aNow) ? PaceTrend::Quicker
                                         : PaceTrend::Same;
}

// A log whose clock ran back has a day twice; it is still one day.
void AddDays(SitePace& aSite, Answers& aAnswers) {
  std::ranges::sort(aAnswers, {}, [](const Answer& aAnswer) {
    return std::pair(std::floor(aAnswer.dtMoment), aAnswer.lSeconds);
  });
  for (std::size_t lFrom = 0, lPast = 0; lFrom < aAnswers.size(); lFrom = lPast) {
    const auto dtDay = std::floor(aAnswers[lFrom].dtMoment);
    Seconds aSeconds;
    for (; lPast < aAnswers.size() && std::floor(aAnswers[lPast].dtMoment) == dtDay; ++lPast)
      aSeconds.push_back(aAnswers[lPast].lSeconds);
    aSite.aDays.push_back({dtDay, PaceOf(aSeconds)});
  }
}

std::vector<Answers> Collect(const LogHistory& aHistory) {
  std::vector<Answers> aAll(aHistory.Sites().size());
  std::vector<CheckDuration> aChecks;
  for (std::size_t lPass = 0; lPass < aHistory.Passes().size(); ++lPass) {
    LogDurations::Of(aHistory, lPass, aChecks);
    for (const auto& aCheck : aChecks) {
      const auto& aLine = aHistory.Line(aCheck.aRef);
      if (aLine.iOutcome == Outcome::Up && aCheck.iKnown != CheckDuration::Known::No && aLine.bTimeKnown)
        aAll[aLine.lSite].push_back({aLine.dtMoment, aCheck.lSeconds});
    }
  }
  return aAll;
}

void ChoosePeriods(PaceReport& aReport, const LogHistory& aHistory) {
  const auto aAll = LogPeriod::Of(aHistory);
  aReport.dtFrom = aAll.dtFrom;
  aReport.dtTo = aAll.dtPast;
  aReport.bByWeek = aAll.Days() >= dEnoughForWeeks;
  aReport.bLongEnough = aAll.Days() >= dEnough;
  aReport.aNow = LogPeriod::Last(aHistory, aReport.bByWeek ? dWeek : aAll.Days() / 2);
  aReport.aBefore = aReport.aNow.Before();
}

}  // namespace

std::vector<bool> LogPaces::SitesOf(const LogHistory& aHistory, const LogSummary& aSummary) {
  std::unordered_set<std::string_view> aNames;
  for (const auto& aSite : aSummary.aSites)
    aNames.insert(aSite.szSite);
  std::vector<bool> aWanted;
  for (const auto& szSite : aHistory.Sites())
    aWanted.push_back(aNames.contains(szSite));
  return aWanted;
}

PaceReport LogPaces::Of(const LogHistory& aHistory, const LogSummary& aSummary) {
  PaceReport aReport;
  ChoosePeriods(aReport, aHistory);
  const auto aWanted = SitesOf(aHistory, aSummary);
  auto aAnswers = Collect(aHistory);
  const LogPeriod aEver{1, 1e9};
  for (std::size_t lSite = 0; lSite < aAnswers.size(); ++lSite) {
    if (!aWanted[lSite] || aAnswers[lSite].empty()) continue;
    SitePace aSite;
    aSite.szSite = aHistory.Sites()[lSite];
    aSite.aPace = PaceOf(Sorted(aAnswers[lSite], aEver));
    Compare(aSite, aAnswers[lSite], aReport);
    AddDays(aSite, aAnswers[lSite]);
    aReport.aSites.push_back(std::move(aSite));
  }
  std::ranges::stable_sort(aReport.aSites, std::greater(), [](const SitePace& aSite) {
    return std::tuple(aSite.aPace.lMedian, aSite.aPace.lMost, aSite.aPace.lLongest);
  });
  return aReport;
}
