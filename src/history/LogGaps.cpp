#include "history/LogGaps.h"

#include <algorithm>

#include "history/LogSummary.h"

namespace {

constexpr std::size_t lAround = 24;  // automatic passes looked at on either side
constexpr std::size_t lEnough = 3;
constexpr std::int64_t lWithoutSchedule = 7200;  // seconds
constexpr std::int64_t lShortest = 300;          // seconds

// Distance of an automatic pass to the start of the pass before it.
struct Distance {
  std::size_t lPass;
  std::int64_t lSeconds;
};

// Seconds; 0 where too few passes are around.
std::int64_t UsualDistance(const std::vector<Distance>& aAll, std::size_t lNext) {
  const auto lFrom = lNext > lAround ? lNext - lAround : 0;
  const auto lTo = std::min(aAll.size(), lNext + lAround);
  if (lTo - lFrom < lEnough) return 0;
  std::vector<std::int64_t> aSeconds;
  for (auto lAt = lFrom; lAt < lTo; ++lAt)
    aSeconds.push_back(aAll[lAt].lSeconds);
  const auto aUsual = aSeconds.begin() + static_cast<std::ptrdiff_t>((aSeconds.size() - 1) * 6 / 10);
  std::nth_element(aSeconds.begin(), aUsual, aSeconds.end());
  return std::max<std::int64_t>(*aUsual, 1);
}

std::int64_t LongestPause(const std::vector<Distance>& aAll, std::size_t lNext) {
  const auto lUsual = UsualDistance(aAll, lNext);
  return lUsual == 0 ? lWithoutSchedule : std::max(2 * lUsual, lShortest);
}

// The passes with a time, and the distances of the automatic ones among them.
void Measure(const LogHistory& aHistory, std::vector<std::size_t>& aTimed,
             std::vector<Distance>& aDistances) {
  const auto& aOrder = aHistory.Passes();
  for (std::size_t lPass = 0; lPass < aOrder.size(); ++lPass) {
    const auto& aPass = aHistory.Pass(aOrder[lPass]);
    if (aPass.dtStart <= 0) continue;
    if (!aTimed.empty() && aPass.bStarted && !aPass.bManual)
      aDistances.push_back(
          {lPass, SecondsBetween(aHistory.Pass(aOrder[aTimed.back()]).dtStart, aPass.dtStart)});
    aTimed.push_back(lPass);
  }
}

}  // namespace

std::vector<StateInterval> LogGaps::Find(const LogHistory& aHistory) {
  const auto& aOrder = aHistory.Passes();
  std::vector<StateInterval> aGaps(aOrder.size());
  std::vector<std::size_t> aTimed;
  std::vector<Distance> aDistances;
  Measure(aHistory, aTimed, aDistances);
  std::size_t lNext = 0;  // first distance at or behind the pause looked at
  for (std::size_t lAt = 1; lAt < aTimed.size(); ++lAt) {
    const auto& aBefore = aHistory.Pass(aOrder[aTimed[lAt - 1]]);
    const auto& aAfter = aHistory.Pass(aOrder[aTimed[lAt]]);
    while (lNext < aDistances.size() && aDistances[lNext].lPass < aTimed[lAt])
      ++lNext;
    const auto lPause = SecondsBetween(aBefore.dtLast, aAfter.dtStart);
    if (lPause > lShortest && lPause > LongestPause(aDistances, lNext))
      aGaps[aTimed[lAt - 1]] = {aBefore.dtLast, aAfter.dtStart, SiteState::Unwatched};
  }
  return aGaps;
}

std::int64_t LogGaps::LongestPauseAfter(const LogHistory& aHistory) {
  std::vector<std::size_t> aTimed;
  std::vector<Distance> aDistances;
  Measure(aHistory, aTimed, aDistances);
  return std::max(lShortest, LongestPause(aDistances, aDistances.size()));
}

DateTime LogGaps::NextDue(const LogHistory& aHistory) {
  constexpr double dGrace = 120;  // seconds
  std::vector<std::size_t> aTimed;
  std::vector<Distance> aDistances;
  Measure(aHistory, aTimed, aDistances);
  const auto lUsual = UsualDistance(aDistances, aDistances.size());
  if (lUsual == 0) return 0;
  const auto& aLast = aHistory.Pass(aHistory.Passes()[aTimed.back()]);
  return AddSeconds(std::max(aLast.dtLast, AddSeconds(aLast.dtStart, static_cast<double>(lUsual))), dGrace);
}

std::vector<std::int64_t> LogGaps::Usual(const LogHistory& aHistory) {
  std::vector<std::int64_t> aUsual(aHistory.Passes().size());
  std::vector<std::size_t> aTimed;
  std::vector<Distance> aDistances;
  Measure(aHistory, aTimed, aDistances);
  std::size_t lNext = 0;
  for (std::size_t lPass = 0; lPass < aUsual.size(); ++lPass) {
    while (lNext < aDistances.size() && aDistances[lNext].lPass < lPass)
      ++lNext;
    aUsual[lPass] = UsualDistance(aDistances, lNext);
  }
  return aUsual;
}

std::int64_t LogGaps::Interval(const LogHistory& aHistory) {
  std::vector<std::size_t> aTimed;
  std::vector<Distance> aDistances;
  Measure(aHistory, aTimed, aDistances);
  return UsualDistance(aDistances, aDistances.size());
}
