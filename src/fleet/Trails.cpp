#include "fleet/Trails.h"

#include <algorithm>
#include <iterator>

#include "base/Text.h"

namespace {

using States = std::vector<StateInterval>;

// Two failed checks in a row are an outage from the first of them, though one of them ends what was known
// and the other begins what is new from lJoint on. Time that nobody watched lies in between at most.
void FindOutage(States& aStates, std::size_t lJoint) {
  const auto Continues = [](const StateInterval& a) {
    return IsFailure(a.iState) || a.iState == SiteState::Unwatched;
  };
  const auto Fails = [](const StateInterval& a) { return IsFailure(a.iState); };
  const auto pJoint = aStates.begin() + static_cast<std::ptrdiff_t>(lJoint);
  const auto pFirst = std::find_if_not(std::make_reverse_iterator(pJoint), aStates.rend(), Continues).base();
  const auto pPast = std::find_if_not(pJoint, aStates.end(), Continues);
  if (std::none_of(pFirst, pJoint, Fails) || std::none_of(pJoint, pPast, Fails)) return;
  std::for_each(pFirst, pPast, [](StateInterval& a) {
    if (a.iState == SiteState::Warning) a.iState = SiteState::Down;
  });
}

void Join(States& aStates, const States& aLater, double dMostGap) {
  if (aStates.empty()) {
    aStates = aLater;
    return;
  }
  const DateTime dtEnd = aStates.back().dtTo;
  const auto pNew = std::ranges::find_if(aLater, [&](const StateInterval& a) { return a.dtTo >= dtEnd; });
  if (pNew == aLater.end()) return;
  const DateTime dtNext = std::max(dtEnd, pNew->dtFrom);
  if (dtNext - dtEnd <= dMostGap || aStates.back().iState == SiteState::Unwatched)
    aStates.back().dtTo = dtNext;
  else
    aStates.push_back({dtEnd, dtNext, SiteState::Unwatched});
  const auto lJoint = aStates.size();
  aStates.insert(aStates.end(), pNew, aLater.end());
  aStates[lJoint].dtFrom = dtNext;
  FindOutage(aStates, lJoint);
  if (aStates[lJoint].iState != aStates[lJoint - 1].iState) return;
  aStates[lJoint].dtFrom = aStates[lJoint - 1].dtFrom;
  aStates.erase(aStates.begin() + static_cast<std::ptrdiff_t>(lJoint) - 1);
}

}  // namespace

void Trails::Take(const LogSummary& aSummary) {
  for (const SiteSummary& aSite : aSummary.aSites)
    if (!aSite.aStates.empty()) aTrails[Text::LowerCase(aSite.szSite)] = aSite.aStates;
  if (aSummary.dtFrom > 0 && (dtFrom == 0 || aSummary.dtFrom < dtFrom)) dtFrom = aSummary.dtFrom;
}

void Trails::Add(const std::string& szSite, SiteState iState, DateTime dtNow, double dMostGap) {
  auto& aStates = aTrails[Text::LowerCase(szSite)];
  if (dtFrom == 0) dtFrom = dtNow;
  if (!aStates.empty() && aStates.back().dtTo <= dtNow) {
    if (dtNow - aStates.back().dtTo <= dMostGap)
      aStates.back().dtTo = dtNow;
    else
      aStates.push_back({aStates.back().dtTo, dtNow, SiteState::Unwatched});
  }
  if (aStates.empty() || aStates.back().iState != iState) aStates.push_back({dtNow, dtNow, iState});
}

void Trails::Append(const Trails& aLater, double dMostGap) {
  for (const auto& [szSite, aStates] : aLater.aTrails)
    Join(aTrails[szSite], aStates, dMostGap);
  if (aLater.dtFrom > 0 && (dtFrom == 0 || aLater.dtFrom < dtFrom)) dtFrom = aLater.dtFrom;
}

void Trails::Trim(DateTime dtNow) {
  const DateTime dtOldest = AddDays(dtNow, -lDays);
  for (auto& [szSite, aStates] : aTrails) {
    std::erase_if(aStates, [&](const StateInterval& a) { return a.dtTo < dtOldest; });
    if (!aStates.empty()) aStates.front().dtFrom = std::max(aStates.front().dtFrom, dtOldest);
  }
  if (dtFrom > 0) dtFrom = std::max(dtFrom, dtOldest);
}

const std::vector<StateInterval>& Trails::Of(const std::string& szSite) const {
  static const std::vector<StateInterval> aNone;
  const auto pTrail = aTrails.find(Text::LowerCase(szSite));
  return pTrail == aTrails.end() ? aNone : pTrail->second;
}

Trails::Watched Trails::TimeUp(const std::vector<StateInterval>& aStates, DateTime dtFrom, DateTime dtTo) {
  Watched aTime;
  for (const StateInterval& a : aStates) {
    const double dLength = (std::min(a.dtTo, dtTo) - std::max(a.dtFrom, dtFrom)) * dSecondsPerDay;
    if (dLength <= 0 || a.iState == SiteState::Unwatched || a.iState == SiteState::Disabled) continue;
    aTime.dAll += dLength;
    if (a.iState == SiteState::Up) aTime.dUp += dLength;
  }
  return aTime;
}

DateTime Trails::FailingSince(const std::vector<StateInterval>& aStates) {
  DateTime dtSince = 0;
  for (auto pAt = aStates.rbegin(); pAt != aStates.rend(); ++pAt) {
    if (pAt->iState != SiteState::Unwatched && !IsFailure(pAt->iState)) break;
    if (IsFailure(pAt->iState)) dtSince = pAt->dtFrom;
  }
  return dtSince;
}

std::vector<Trails::Failure> Trails::Failures(const std::vector<StateInterval>& aStates) {
  std::vector<Failure> aFailures;
  Failure aOpen;
  bool bOpen = false;
  bool bDown = false;
  for (const StateInterval& a : aStates) {
    if (IsFailure(a.iState)) {
      if (!bOpen) aOpen = {a.dtFrom, a.dtTo, false};
      bOpen = true;
      bDown = bDown || a.iState == SiteState::Down;
      aOpen.dtTo = a.dtTo;
    } else if (a.iState == SiteState::Up || a.iState == SiteState::Disabled) {
      aOpen.bEnded = true;
      if (bDown) aFailures.push_back(aOpen);
      bOpen = bDown = false;
    }
  }
  if (bDown) aFailures.push_back(aOpen);
  return aFailures;
}
