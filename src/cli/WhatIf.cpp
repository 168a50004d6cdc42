#include "cli/WhatIf.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <random>

#include "base/Text.h"
#include "editing/OptionsRules.h"
#include "history/LogGaps.h"
#include "history/LogWords.h"

namespace {

using LogWords::Count;
using LogWords::Length;
using LogWords::Moment;

constexpr std::int64_t lSecondsPerMinute = 60;
constexpr double dSame = 60;  // seconds; a replay is no more exact
constexpr auto lSame = static_cast<std::int64_t>(dSame);
constexpr const char szInterval[] = "Interval", szWarning[] = "Warning";

enum { iSite, iBegan, iMailed, iWould, iDifference };

const std::vector<LogGrid::Column> aWhatIfColumns = {
    {IDS_LOG_COL_SITE, nullptr, false, 1},
    {IDS_WHAT_IF_COL_BEGAN, "Wed Dec 30 2000, 12:00 PM", false, 0, 2},
    {IDS_WHAT_IF_COL_MAILED, "Wed Dec 30 2000, 12:00 PM", false, 0, 1},
    {IDS_WHAT_IF_COL_WOULD, "Wed Dec 30 2000, 12:00 PM to 12:00 PM"},
    {IDS_WHAT_IF_COL_DIFFERENCE, "23 h 59 min to 23 h 59 min earlier"}};

double Median(std::vector<double>& aValues) {
  const auto aMiddle = aValues.begin() + static_cast<std::ptrdiff_t>(aValues.size() / 2);
  std::nth_element(aValues.begin(), aMiddle, aValues.end());
  return *aMiddle;
}

std::int32_t ToMinutes(double dSeconds) {
  return std::max(1,
                  static_cast<std::int32_t>(std::lround(dSeconds / static_cast<double>(lSecondsPerMinute))));
}

std::string InWords(WhatIf::Range aRange) {
  if (aRange.lLeast == aRange.lMost) return Count(aRange.lMost);
  return FillResString(IDS_WHAT_IF_RANGE, {Count(aRange.lLeast), Count(aRange.lMost)});
}

// How much of what the log leaves open a failure takes, at its beginning and at its end: from 0 to 1.
struct Openness {
  double dBefore, dBehind;
};

Replay::Span Down(const WhatIf::Failure& aFailure, Openness aOpen) {
  // From the first failed check to the last, within what a replay is exact to.
  const auto dtEarliest = aFailure.dtGood > 0 ? AddSeconds(aFailure.dtGood, 1) : aFailure.dtFirst;
  const auto dtFrom = std::max(dtEarliest, AddSeconds(aFailure.dtFirst, -dSame));
  const auto dtPast = std::min(aFailure.dtPast, AddSeconds(aFailure.dtLast, dSame));
  return {dtFrom - aOpen.dBefore * (dtFrom - dtEarliest),
          dtPast + aOpen.dBehind * (aFailure.dtPast - dtPast)};
}

void Widen(WhatIf::Range& aRange, std::size_t lFigure, bool bFirst) {
  aRange = {bFirst ? lFigure : std::min(aRange.lLeast, lFigure), std::max(aRange.lMost, lFigure)};
}

}  // namespace

std::string WhatIf::Read(const std::vector<std::string>& aWords, Minutes& aAsked) {
  for (const auto& szWord : aWords) {
    const auto lEquals = szWord.find('=');
    const auto szName = szWord.substr(0, lEquals);
    std::int32_t lMinutes = 0;
    if (lEquals != std::string::npos) {
      const auto* const pPast = szWord.data() + szWord.size();
      const auto aRead = std::from_chars(szWord.data() + lEquals + 1, pPast, lMinutes);
      if (aRead.ptr != pPast || lMinutes > OptionsRules::lMostInterval) lMinutes = 0;
    }
    const bool bInterval = Text::EqualNoCase(szName, szInterval);
    if (lMinutes < 1 || (!bInterval && !Text::EqualNoCase(szName, szWarning)))
      return FillResString(IDS_WHAT_IF_WRONG, {szWord});
    (bInterval ? aAsked.lInterval : aAsked.lWarning) = lMinutes;
  }
  return {};
}

WhatIf::WhatIf(const LogHistory& aTheHistory, const LogSummary& aSummary, Minutes aAsked,
               const std::vector<bool>& aTheWanted)
    : aHistory(aTheHistory), aWanted(aTheWanted), aNew(aAsked) {
  LookAtSchedule();
  if (aOld.lInterval == 0) return;
  if (aNew.lInterval == 0) aNew.lInterval = aOld.lInterval;
  if (aNew.lWarning == 0) aNew.lWarning = aOld.lWarning;
  LookAtSites(aSummary);
  Run();
  std::erase_if(aFailures, [&](const auto& aFailure) {
    return !aWanted[aFailure.lSite] || (aFailure.dtMailed <= 0 && aFailure.dtLatest <= 0);
  });
  std::ranges::stable_sort(aFailures, {}, &Failure::dtFirst);
}

// The log's own intervals, and when the monitor ran.
void WhatIf::LookAtSchedule() {
  const auto lInterval = LogGaps::Interval(aHistory);
  if (lInterval == 0) return;
  aOld.lInterval = ToMinutes(static_cast<double>(lInterval));
  aOld.lWarning = aOld.lInterval;
  std::vector<double> aAfterFailure;
  DateTime dtFailure = 0;  // the last first failure of the pass before
  const auto aGaps = LogGaps::Find(aHistory);
  for (std::size_t lPass = 0; lPass < aHistory.Passes().size(); ++lPass) {
    const auto aRef = aHistory.Passes()[lPass];
    const auto& aPass = aHistory.Pass(aRef);
    if (aPass.bStarted) ++lLoggedPasses;
    if (aPass.dtStart <= 0) continue;
    if (dtFailure > 0 && aPass.bStarted && !aPass.bManual)
      aAfterFailure.push_back(static_cast<double>(SecondsBetween(dtFailure, aPass.dtStart)));
    dtFailure = 0;
    for (std::uint32_t lLine = aPass.lFirst; lLine < aPass.lPast; ++lLine)
      if (const auto& aLine = aHistory.Line({aRef.lFile, lLine});
          aLine.iKind == LineKind::Entry && aLine.iOutcome == Outcome::Warning && aLine.bTimeKnown)
        dtFailure = aLine.dtMoment;
    Watch(aPass, aGaps[lPass].dtTo > 0);
    if (aGaps[lPass].dtTo > 0) dtFailure = 0;
    // One over chosen sites leaves no end line, and would be told as one over all.
    if (aPass.bManual && aPass.Complete()) aTimes.aByHand.push_back(aPass.dtStart);
  }
  if (!aAfterFailure.empty()) aOld.lWarning = ToMinutes(Median(aAfterFailure));
}

// The clock may have been set back between two passes: what is behind then begins where the other ended.
void WhatIf::Watch(const LogPass& aPass, bool bGapBehind) {
  if (!bWatching) {
    const auto dtFrom =
        aTimes.aWatched.empty() ? aPass.dtStart : std::max(aPass.dtStart, aTimes.aWatched.back().dtPast);
    aTimes.aWatched.push_back({dtFrom, dtFrom});
  }
  bWatching = !bGapBehind;
  aTimes.aWatched.back().dtPast =
      std::max(aTimes.aWatched.back().dtPast, AddSeconds(std::max(aPass.dtStart, aPass.dtLast), 1));
}

// What each site was found to be, and when it has its turn.
void WhatIf::LookAtSites(const LogSummary& aSummary) {
  aLooks.resize(aHistory.Sites().size());
  std::vector<std::vector<double>> aTurns(aLooks.size());
  for (const auto aRef : aHistory.Passes()) {
    const auto& aPass = aHistory.Pass(aRef);
    for (std::uint32_t lLine = aPass.lFirst; lLine < aPass.lPast; ++lLine) {
      const auto& aLine = aHistory.Line({aRef.lFile, lLine});
      if (aLine.iKind != LineKind::Entry || !aLine.bTimeKnown) continue;
      if (aPass.bStarted && aPass.dtStart > 0)
        aTurns[aLine.lSite].push_back(static_cast<double>(SecondsBetween(aPass.dtStart, aLine.dtMoment)));
      if (IsFailure(aLine.iOutcome) || aLine.iOutcome == Outcome::Up)
        TakeCheck(aLine.lSite, aLine.dtMoment, IsFailure(aLine.iOutcome));
    }
  }
  for (std::size_t lSite = 0; lSite < aLooks.size(); ++lSite)
    if (!aTurns[lSite].empty()) aLooks[lSite].dTurn = Median(aTurns[lSite]);
  for (const auto& aSite : aSummary.aSites) {
    const auto aFound = std::ranges::find(aHistory.Sites(), aSite.szSite);
    TakeSite(static_cast<std::uint32_t>(aFound - aHistory.Sites().begin()), aSite);
  }
}

void WhatIf::TakeCheck(std::uint32_t lSite, DateTime dtMoment, bool bFailed) {
  auto& aSite = aLooks[lSite];
  if (dtMoment < aSite.dtChecked) return;  // the clock was set back
  aSite.dtChecked = dtMoment;
  if (!bFailed) {
    if (aSite.lFailing) aFailures[*aSite.lFailing].dtPast = dtMoment;
    aSite.lFailing.reset();
    aSite.dtGood = dtMoment;
  } else if (aSite.lFailing) {
    aFailures[*aSite.lFailing].dtLast = dtMoment;
  } else {
    aSite.lFailing = aFailures.size();
    // Where nothing is known of the time behind it, it goes on.
    aFailures.push_back({.lSite = lSite,
                         .dtGood = aSite.dtGood,
                         .dtFirst = dtMoment,
                         .dtLast = dtMoment,
                         .dtPast = AddDays(aTimes.aWatched.back().dtPast, 1)});
  }
}

// When it was not watched, and what was mailed of it.
void WhatIf::TakeSite(std::uint32_t lSite, const SiteSummary& aSummary) {
  auto& aAway = aLooks[lSite].aAway;
  if (!aSummary.aStates.empty()) aAway.push_back({0, aSummary.aStates.front().dtFrom});
  for (const auto& aState : aSummary.aStates)
    if (aState.iState == SiteState::Unwatched || aState.iState == SiteState::Disabled)
      aAway.push_back({aState.dtFrom, aState.dtTo});
  for (const auto* const pRuns : {&aSummary.aOutages, &aSummary.aHiccups})
    for (const auto& aRun : *pRuns)
      for (const auto& aMail : aRun.aMails)
        TakeMail(lSite, aMail);
}

void WhatIf::TakeMail(std::uint32_t lSite, const MailAttempt& aMail) {
  if (aWanted[lSite]) ++lLoggedMails;
  for (auto& aFailure : aFailures) {
    const bool bIts =
        aFailure.lSite == lSite && aFailure.dtFirst <= aMail.dtMoment && aMail.dtMoment <= aFailure.dtLast;
    if (!bIts || (aFailure.dtMailed > 0 && aFailure.dtMailed <= aMail.dtMoment)) continue;
    aFailure.dtMailed = aMail.dtMoment;
    aFailure.bSent = aMail.bSent;
  }
}

// The sites in the order of their turns, which nothing brings down yet.
std::vector<Replay::Site> WhatIf::Turns() {
  aOrder.resize(aLooks.size());
  std::iota(aOrder.begin(), aOrder.end(), 0U);
  std::ranges::stable_sort(aOrder, {}, [&](auto lSite) { return aLooks[lSite].dTurn; });
  std::vector<Replay::Site> aTurns;
  for (const auto lSite : aOrder)
    aTurns.push_back({.dTurn = aLooks[lSite].dTurn, .aDown = {}, .aAway = aLooks[lSite].aAway});
  return aTurns;
}

void WhatIf::Run() {
  auto aTurns = Turns();
  std::vector<std::size_t> aPlace(aOrder.size());
  for (std::size_t i = 0; i < aOrder.size(); ++i)
    aPlace[aOrder[i]] = i;
  std::mt19937 aRandom(1);  // the same log gives the same answer
  std::uniform_real_distribution<double> aPart(0, 1);
  for (std::size_t i = 0; i < lAllReplays; ++i) {
    for (auto& aSite : aTurns)
      aSite.aDown.clear();
    for (const auto& aFailure : aFailures) {
      auto aOpen = i == 0 ? Openness{0, 0} : Openness{1, 1};
      if (i > 1) aOpen = {aPart(aRandom), aPart(aRandom)};
      aTurns[aPlace[aFailure.lSite]].aDown.push_back(Down(aFailure, aOpen));
    }
    Take(Replay::Of(aTimes, aTurns, aNew.lInterval, aNew.lWarning), i == 0);
  }
}

void WhatIf::Take(const Replay::Course& aCourse, bool bFirst) {
  std::vector<std::vector<DateTime>> aMailsOf(aLooks.size());
  std::size_t lMails = 0;
  for (const auto& aMail : aCourse.aMails) {
    const auto lSite = aOrder[aMail.lSite];
    aMailsOf[lSite].push_back(aMail.dtMoment);
    if (aWanted[lSite]) ++lMails;
  }
  Widen(aPasses, aCourse.lPasses, bFirst);
  Widen(aMails, lMails, bFirst);
  for (auto& aFailure : aFailures) {
    const auto& aOwn = aMailsOf[aFailure.lSite];
    const auto aFirst = std::ranges::find_if(aOwn, [&](auto dtMail) { return dtMail > aFailure.dtGood; });
    if (aFirst == aOwn.end() || *aFirst >= aFailure.dtPast) continue;
    aFailure.dtEarliest = aFailure.lReplays == 0 ? *aFirst : std::min(aFailure.dtEarliest, *aFirst);
    aFailure.dtLatest = std::max(aFailure.dtLatest, *aFirst);
    ++aFailure.lReplays;
  }
}

const std::vector<LogGrid::Column>& WhatIf::Columns() const {
  return aWhatIfColumns;
}

std::string WhatIf::Would(const Failure& aFailure) {
  if (aFailure.dtLatest <= 0) return LoadResString(IDS_WHAT_IF_NOT_MAILED);
  const auto szFrom = Moment(aFailure.dtEarliest), szTo = Moment(aFailure.dtLatest);
  const auto lDay = szFrom.rfind(", ");
  const auto szTime = szTo.substr(szTo.compare(0, lDay, szFrom, 0, lDay) == 0 ? lDay + 2 : 0);
  const auto szWhen = szFrom == szTo ? szFrom : FillResString(IDS_WHAT_IF_RANGE, {szFrom, szTime});
  return aFailure.Certain() ? szWhen : FillResString(IDS_WHAT_IF_PERHAPS, {szWhen});
}

std::string WhatIf::Difference(const Failure& aFailure) {
  if (aFailure.dtMailed <= 0 || aFailure.dtLatest <= 0) return "-";
  const auto lLeast = SecondsBetween(aFailure.dtMailed, aFailure.dtEarliest);
  const auto lMost = SecondsBetween(aFailure.dtMailed, aFailure.dtLatest);
  const auto InMinutes = [](std::int64_t lSeconds) {
    return Length((std::abs(lSeconds) + lSecondsPerMinute / 2) / lSecondsPerMinute * lSecondsPerMinute);
  };
  const auto One = [&](std::int64_t lSeconds) {
    if (std::abs(lSeconds) < lSame) return std::string(LoadResString(IDS_WHAT_IF_SAME));
    return FillResString(lSeconds < 0 ? IDS_WHAT_IF_EARLIER : IDS_WHAT_IF_LATER, {InMinutes(lSeconds)});
  };
  const auto szLeast = One(lLeast), szMost = One(lMost);
  return szLeast == szMost ? szLeast : FillResString(IDS_WHAT_IF_RANGE, {szLeast, szMost});
}

std::string WhatIf::Cell(std::size_t lRow, std::size_t lColumn) const {
  const auto& aFailure = aFailures[lRow];
  switch (lColumn) {
    case iSite:
      return SiteOf(aFailure);
    case iBegan:
      return Moment(aFailure.dtFirst);
    case iMailed:
      if (aFailure.dtMailed <= 0) return LoadResString(IDS_WHAT_IF_NOT_MAILED);
      return aFailure.bSent ? Moment(aFailure.dtMailed)
                            : FillResString(IDS_WHAT_IF_NOT_SENT, {Moment(aFailure.dtMailed)});
    case iWould:
      return Would(aFailure);
    default:
      return Difference(aFailure);
  }
}

std::vector<std::string> WhatIf::Words() const {
  if (aOld.lInterval == 0) return {LoadResString(IDS_WHAT_IF_NO_SCHEDULE)};
  const auto InMinutes = [](std::int32_t lMinutes) { return Length(lMinutes * lSecondsPerMinute); };
  std::vector<std::string> aWords{
      FillResString(IDS_WHAT_IF_HEAD, {InMinutes(aNew.lInterval), InMinutes(aNew.lWarning),
                                       InMinutes(aOld.lInterval), InMinutes(aOld.lWarning)}),
      FillResString(IDS_WHAT_IF_PASSES, {InWords(aPasses), Count(lLoggedPasses)}),
      FillResString(IDS_WHAT_IF_MAILS, {InWords(aMails), Count(lLoggedMails)})};
  std::size_t lMailed = 0, lEarlier = 0, lLater = 0, lNew = 0;
  for (const auto& aFailure : aFailures) {
    if (aFailure.dtMailed <= 0) {
      ++lNew;
      continue;
    }
    ++lMailed;
    if (!aFailure.Certain() || aFailure.dtLatest <= 0) continue;
    if (SecondsBetween(aFailure.dtLatest, aFailure.dtMailed) >= lSame) ++lEarlier;
    if (SecondsBetween(aFailure.dtMailed, aFailure.dtEarliest) >= lSame) ++lLater;
  }
  if (lMailed > 0)
    aWords.push_back(FillResString(IDS_WHAT_IF_TOLD, {Count(lMailed), Count(lEarlier), Count(lLater),
                                                      Count(lMailed - lEarlier - lLater)}));
  if (lNew > 0) aWords.push_back(FillResString(IDS_WHAT_IF_NEW, {Count(lNew)}));
  return aWords;
}
