#include "fleet/Trails.h"

#include <algorithm>

#include "base/Text.h"

namespace {

bool IsFailure(SiteState iState) {
  return iState == SiteState::Warning || iState == SiteState::Down;
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
  constexpr double dSecondsPerDay = 86400;
  Watched aTime;
  for (const StateInterval& a : aStates) {
    const double dLength = (std::min(a.dtTo, dtTo) - std::max(a.dtFrom, dtFrom)) * dSecondsPerDay;
    if (dLength <= 0 || a.iState == SiteState::Unwatched || a.iState == SiteState::Disabled) continue;
    aTime.dAll += dLength;
    if (a.iState == SiteState::Up) aTime.dUp += dLength;
  }
  return aTime;
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
