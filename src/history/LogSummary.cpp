#include "history/LogSummary.h"

#include <algorithm>

#include "base/Strings.h"
#include "history/LogGaps.h"

namespace {

constexpr std::uint32_t lNever = UINT32_MAX;

bool IsFailure(SiteState iState) {
  return iState == SiteState::Warning || iState == SiteState::Down;
}

bool IsWatched(SiteState iState) {
  return iState == SiteState::Up || IsFailure(iState);
}

SiteState StateOf(Outcome iOutcome) {
  switch (iOutcome) {
    case Outcome::Up:
      return SiteState::Up;
    case Outcome::Warning:
      return SiteState::Warning;
    case Outcome::Down:
      return SiteState::Down;
    default:
      return SiteState::Disabled;
  }
}

// One site while the passes go by.
struct SiteProgress {
  SiteSummary aSite;
  std::uint32_t lLastPass = lNever;  // place in LogHistory::Passes; lNever: not seen yet
  bool bOutage = false;              // the last outage is open
  bool bWatchedBefore = false;       // an entry precedes, and nobody looked away since
};

class Summariser {
 public:
  explicit Summariser(const LogHistory& aTheHistory)
      : aHistory(aTheHistory), aSites(aTheHistory.Sites().size()) {}

  LogSummary Run();

 private:
  void FindGaps();
  void CountPass(std::uint32_t lPass);
  void CountEntry(std::uint32_t lPass, LogHistory::LineRef aRef);
  void CountFailure(SiteProgress& aSite, const LogLine& aLine, const LogFields& aFields, SiteState iBefore);
  void CloseOutage(SiteProgress& aSite, DateTime dtUntil, OutageEnd iEnd, bool bEndKnown);
  void LookAway(SiteProgress& aSite, std::uint32_t lPass, DateTime dtNow);
  void Enter(SiteProgress& aSite, SiteState iState, DateTime dtNow);
  DateTime UnwatchedSince(const SiteProgress& aSite, std::uint32_t lPass) const;
  void Finish(SiteProgress& aSite);

  const LogHistory& aHistory;
  LogSummary aSummary;
  std::vector<SiteProgress> aSites;
  // For each pass: the next pass, itself included, behind which a gap lies; and the next one, itself not
  // included, that ran complete. lNever: none.
  std::vector<std::uint32_t> aNextGap, aNextComplete;
  const std::string szMailSent = LoadResString(IDS_MAIL_SENT);
  const std::string szMailFailed = LoadResString(IDS_MAIL_FAILED);
};

void Summariser::FindGaps() {
  const auto& aPasses = aHistory.Passes();
  const auto aBehind = LogGaps::Find(aHistory);
  aNextGap.assign(aPasses.size() + 1, lNever);
  aNextComplete.assign(aPasses.size() + 1, lNever);
  for (auto lPass = static_cast<std::uint32_t>(aPasses.size()); lPass-- > 0;) {
    aNextGap[lPass] = aBehind[lPass].dtTo > 0 ? lPass : aNextGap[lPass + 1];
    const bool bNextComplete = lPass + 1 < aPasses.size() && aHistory.Pass(aPasses[lPass + 1]).Complete();
    aNextComplete[lPass] = bNextComplete ? lPass + 1 : aNextComplete[lPass + 1];
  }
  for (const auto& aGap : aBehind)
    if (aGap.dtTo > 0) aSummary.aGaps.push_back(aGap);
}

LogSummary Summariser::Run() {
  FindGaps();
  const auto& aPasses = aHistory.Passes();
  for (std::uint32_t lPass = 0; lPass < aPasses.size(); ++lPass)
    CountPass(lPass);
  for (auto& aSite : aSites)
    if (aSite.lLastPass != lNever) {
      Finish(aSite);
      aSummary.aSites.push_back(std::move(aSite.aSite));
    }
  return std::move(aSummary);
}

void Summariser::CountPass(std::uint32_t lPass) {
  const auto aRef = aHistory.Passes()[lPass];
  const auto& aPass = aHistory.Pass(aRef);
  if (aPass.bStarted) ++(aPass.bManual ? aSummary.lManual : aSummary.lAutomatic);
  if (!aPass.bStarted && aPass.lEntries > 0) ++aSummary.lStartless;
  if (aPass.bStarted && !aPass.bEnded && lPass + 1 < aHistory.Passes().size()) ++aSummary.lEndless;
  aSummary.lUnread += aPass.lUnread;
  aSummary.lEntries += aPass.lEntries;
  if (aPass.dtStart > 0) {
    aSummary.dtFrom = aSummary.dtFrom > 0 ? std::min(aSummary.dtFrom, aPass.dtStart) : aPass.dtStart;
    aSummary.dtTo = std::max(aSummary.dtTo, aPass.dtLast);
  }
  for (auto lLine = aPass.lFirst; lLine < aPass.lPast; ++lLine)
    CountEntry(lPass, {aRef.lFile, lLine});
}

void Summariser::CountEntry(std::uint32_t lPass, LogHistory::LineRef aRef) {
  const auto& aLine = aHistory.Line(aRef);
  if (aLine.iKind != LineKind::Entry) return;
  auto& aSite = aSites[aLine.lSite];
  if (aSite.lLastPass == lNever) aSite.aSite.szSite = aHistory.Sites()[aLine.lSite];
  if (aSite.lLastPass != lNever) LookAway(aSite, lPass, aLine.dtMoment);
  aSite.lLastPass = lPass;
  if (aLine.iOutcome == Outcome::None) return;
  const auto iState = StateOf(aLine.iOutcome);
  if (iState != SiteState::Disabled) {
    ++aSite.aSite.lChecks;
    aSite.aSite.dtLastCheck = aLine.dtMoment;
  }
  const auto iBefore = aSite.aSite.aStates.empty() ? SiteState::Unwatched : aSite.aSite.aStates.back().iState;
  Enter(aSite, iState, aLine.dtMoment);
  if (IsFailure(iState)) CountFailure(aSite, aLine, aHistory.Fields(aRef), iBefore);
  if (iState == SiteState::Up) {
    ++aSite.aSite.lSuccesses;
    if (aSite.bOutage) CloseOutage(aSite, aLine.dtMoment, OutageEnd::Recovered, IsWatched(iBefore));
  }
}

void Summariser::CountFailure(SiteProgress& aSite, const LogLine& aLine, const LogFields& aFields,
                              SiteState iBefore) {
  auto& aOutages = aSite.aSite.aOutages;
  if (!aSite.bOutage) {
    aOutages.emplace_back();
    aOutages.back().dtFrom = aLine.dtMoment;
    aOutages.back().bStartKnown = iBefore == SiteState::Up;
    aSite.bOutage = true;
  }
  auto& aOutage = aOutages.back();
  ++aOutage.lFailures;
  aOutage.szText = aFields.StatusText;
  const bool bSent = aFields.Comment.find(szMailSent) != std::string_view::npos;
  const bool bFailed = aFields.Comment.find(szMailFailed) != std::string_view::npos;
  aOutage.lMailsSent += bSent ? 1 : 0;
  aOutage.lMailsFailed += bFailed ? 1 : 0;
  aSummary.lMailsSent += bSent ? 1 : 0;
  aSummary.lMailsFailed += bFailed ? 1 : 0;
}

void Summariser::CloseOutage(SiteProgress& aSite, DateTime dtUntil, OutageEnd iEnd, bool bEndKnown) {
  auto& aOutage = aSite.aSite.aOutages.back();
  aOutage.iEnd = iEnd;
  aOutage.bEndKnown = bEndKnown;
  aOutage.dtTo = std::max(aOutage.dtFrom, dtUntil);
  const auto& aStates = aSite.aSite.aStates;
  for (auto aAt = aStates.rbegin(); aAt != aStates.rend() && aAt->dtTo > aOutage.dtFrom; ++aAt)
    if (!IsWatched(aAt->iState) && aAt->dtFrom < aOutage.dtTo)
      aOutage.lUnwatched += SecondsBetween(aAt->dtFrom, std::min(aAt->dtTo, aOutage.dtTo));
  aOutage.lSeconds =
      std::max<std::int64_t>(0, SecondsBetween(aOutage.dtFrom, aOutage.dtTo) - aOutage.lUnwatched);
  aSite.aSite.lDownSeconds += aOutage.lSeconds;
  aSite.bOutage = false;
}

// The first moment after the site's last entry at which nobody watched it any more; 0 when somebody did.
DateTime Summariser::UnwatchedSince(const SiteProgress& aSite, std::uint32_t lPass) const {
  const auto lGap = aNextGap[aSite.lLastPass];
  const auto lWithout = aNextComplete[aSite.lLastPass];
  if (lGap < lPass && (lWithout >= lPass || lGap < lWithout))
    return aHistory.Pass(aHistory.Passes()[lGap]).dtLast;
  return lWithout < lPass ? aHistory.Pass(aHistory.Passes()[lWithout]).dtStart : 0;
}

void Summariser::LookAway(SiteProgress& aSite, std::uint32_t lPass, DateTime dtNow) {
  const auto dtSince = UnwatchedSince(aSite, lPass);
  if (dtSince <= 0 || aSite.aSite.aStates.empty()) return;
  Enter(aSite, SiteState::Unwatched, std::min(dtSince, dtNow));
}

// Ends the present state and begins another.
void Summariser::Enter(SiteProgress& aSite, SiteState iState, DateTime dtNow) {
  auto& aStates = aSite.aSite.aStates;
  if (!aStates.empty()) {
    auto& aLast = aStates.back();
    aLast.dtTo = std::max(aLast.dtTo, dtNow);
    if (aLast.iState == iState) return;
    dtNow = aLast.dtTo;
  }
  aStates.push_back({dtNow, dtNow, iState});
}

void Summariser::Finish(SiteProgress& aProgress) {
  auto& aSite = aProgress.aSite;
  LookAway(aProgress, static_cast<std::uint32_t>(aHistory.Passes().size()), aSummary.dtTo);
  if (aSite.aStates.empty()) return;
  const auto iLast = aSite.aStates.back().iState;
  aSite.aStates.back().dtTo = std::max(aSite.aStates.back().dtTo, aSummary.dtTo);
  if (aProgress.bOutage) {
    auto dtUntil = aSummary.dtTo;
    for (auto aAt = aSite.aStates.rbegin(); !IsWatched(aAt->iState); ++aAt)
      dtUntil = aAt->dtFrom;
    CloseOutage(aProgress, dtUntil, IsWatched(iLast) ? OutageEnd::StillDown : OutageEnd::NoLongerWatched,
                false);
  }
  aSite.iCurrent = iLast;
  // A warning that became an outage is one stretch of failure.
  auto aFirst = aSite.aStates.end() - 1;
  while (IsFailure(iLast) && aFirst != aSite.aStates.begin() && IsFailure((aFirst - 1)->iState))
    --aFirst;
  aSite.dtSince = aFirst->dtFrom;
  aSite.bSinceKnown = aFirst != aSite.aStates.begin() && (aFirst - 1)->iState != SiteState::Unwatched;
}

}  // namespace

const Outage* SiteSummary::Longest() const {
  const auto aFound = std::max_element(
      aOutages.begin(), aOutages.end(),
      [](const auto& aLeft, const auto& aRight) { return aLeft.lSeconds < aRight.lSeconds; });
  return aFound == aOutages.end() ? nullptr : &*aFound;
}

std::uint32_t LogSummary::Count(SiteState iState) const {
  return static_cast<std::uint32_t>(std::count_if(
      aSites.begin(), aSites.end(), [&](const auto& aSite) { return aSite.iCurrent == iState; }));
}

LogSummary Summarise(const LogHistory& aHistory) {
  return Summariser(aHistory).Run();
}
