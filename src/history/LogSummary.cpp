#include "history/LogSummary.h"

#include <algorithm>

#include "base/Strings.h"
#include "history/LogGaps.h"
#include "history/LogWords.h"
#include "log/LogGrammar.h"
#include "log/ResultText.h"
#include "platform/Inet.h"

namespace {

constexpr std::uint32_t lNever = UINT32_MAX;

bool IsWatched(SiteState iState) {
  return iState == SiteState::Up || IsFailure(iState);
}

const std::string& NameUnknown() {
  static const auto szBegin = ResultText::ErrorBegin(Inet::lNameUnknown);
  return szBegin;
}

// By name and by IP address where both were asked.
bool WasMissed(std::string_view szStatus) {
  static const std::string szTimedOut = LoadResString(IDS_RESULT_TIMED_OUT);
  static const auto szNoConnection = ResultText::ErrorBegin(Inet::lNoConnection);
  if (const auto szSecond = LogGrammar::SecondOfNumbered(szStatus); !szSecond.empty())
    return WasMissed(LogGrammar::FirstOfNumbered(szStatus)) && WasMissed(szSecond);
  return szStatus == szTimedOut || szStatus.starts_with(NameUnknown()) ||
         szStatus.starts_with(szNoConnection);
}

// One site while the passes go by.
struct SiteProgress {
  SiteSummary aSite;
  std::uint32_t lLastPass = lNever;  // place in LogHistory::Passes; lNever: not seen yet
  bool bFailing = false;             // aRun is open
  Outage aRun;                       // the failed checks since the last success
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
  SiteState CountFailure(SiteProgress& aSite, const LogLine& aLine, const LogFields& aFields);
  void CloseRun(SiteProgress& aSite, DateTime dtUntil, OutageEnd iEnd, bool bEndKnown);
  void LookAway(SiteProgress& aSite, std::uint32_t lPass, DateTime dtNow);
  void Enter(SiteProgress& aSite, SiteState iState, DateTime dtNow);
  DateTime UnwatchedSince(const SiteProgress& aSite, std::uint32_t lPass) const;
  void MeasureAvailability(SiteSummary& aSite) const;
  void Finish(SiteProgress& aSite);

  const LogHistory& aHistory;
  LogSummary aSummary;
  std::vector<SiteProgress> aSites;
  // For each pass: the next pass, itself included, behind which a gap lies; and the next one, itself not
  // included, that ran complete. lNever: none.
  std::vector<std::uint32_t> aNextGap, aNextComplete;
  std::uint32_t lJudged = 0, lMissed = 0;  // sites of the pass in hand: asked, and not reached
  bool bNoName = false;                    // the name of one of them was not found
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
  aSummary.dtNextDue = LogGaps::NextDue(aHistory);
  return std::move(aSummary);
}

void Summariser::CountPass(std::uint32_t lPass) {
  const auto aRef = aHistory.Passes()[lPass];
  const auto& aPass = aHistory.Pass(aRef);
  if (aPass.bStarted) ++(aPass.bManual ? aSummary.lManual : aSummary.lAutomatic);
  if (!aPass.bStarted && aPass.lEntries > 0) ++aSummary.lStartless;
  if (aPass.bStarted && !aPass.bEnded && lPass + 1 < aHistory.Passes().size())
    ++(aPass.bManual ? aSummary.lPartial : aSummary.lEndless);
  aSummary.lUnread += aPass.lUnread;
  aSummary.lEntries += aPass.lEntries;
  if (aPass.dtStart > 0) {
    aSummary.dtFrom = aSummary.dtFrom > 0 ? std::min(aSummary.dtFrom, aPass.dtStart) : aPass.dtStart;
    aSummary.dtTo = std::max(aSummary.dtTo, aPass.dtLast);
  }
  lJudged = lMissed = 0;
  bNoName = false;
  for (auto lLine = aPass.lFirst; lLine < aPass.lPast; ++lLine)
    CountEntry(lPass, {aRef.lFile, lLine});
  // A server that refuses reads like one to which no way leads: a name has to be unknown too.
  if (lJudged < 2 || lMissed < lJudged || !bNoName) return;
  ++aSummary.lUnreached;
  aSummary.dtLastUnreached = std::max(aSummary.dtLastUnreached, aPass.dtLast);
}

void Summariser::CountEntry(std::uint32_t lPass, LogHistory::LineRef aRef) {
  const auto& aLine = aHistory.Line(aRef);
  if (aLine.iKind != LineKind::Entry) return;
  auto& aSite = aSites[aLine.lSite];
  if (aSite.lLastPass == lNever) aSite.aSite.szSite = aHistory.Sites()[aLine.lSite];
  if (aSite.lLastPass != lNever) LookAway(aSite, lPass, aLine.dtMoment);
  aSite.lLastPass = lPass;
  if (aLine.iOutcome == Outcome::None) return;
  auto iState = StateOf(aLine.iOutcome);
  if (iState != SiteState::Disabled) {
    ++lJudged;
    ++aSite.aSite.lChecks;
    aSite.aSite.dtLastCheck = aLine.dtMoment;
    aSummary.dtLastCheck = std::max(aSummary.dtLastCheck, aLine.dtMoment);
  }
  const auto iBefore = aSite.aSite.aStates.empty() ? SiteState::Unwatched : aSite.aSite.aStates.back().iState;
  if (IsFailure(iState)) {
    if (!aSite.bFailing) aSite.aRun.bStartKnown = iBefore == SiteState::Up;
    iState = CountFailure(aSite, aLine, aHistory.Fields(aRef));
  }
  Enter(aSite, iState, aLine.dtMoment);
  if (iState == SiteState::Up) {
    ++aSite.aSite.lSuccesses;
    if (aSite.bFailing) CloseRun(aSite, aLine.dtMoment, OutageEnd::Recovered, IsWatched(iBefore));
  }
}

// What the failure makes of the site.
SiteState Summariser::CountFailure(SiteProgress& aSite, const LogLine& aLine, const LogFields& aFields) {
  auto& aRun = aSite.aRun;
  const bool bFirst = !aSite.bFailing;
  if (bFirst) aRun.dtFrom = aLine.dtMoment;
  aSite.bFailing = true;
  ++aRun.lFailures;
  lMissed += WasMissed(aFields.StatusText) ? 1 : 0;
  bNoName = bNoName || aFields.StatusText.find(NameUnknown()) != std::string_view::npos;
  aRun.szText = LogWords::Answer(aFields.StatusText);
  if (aLine.iOutcome == Outcome::Warning && !bFirst) aRun.dtRestarted = aLine.dtMoment;
  if (!aRun.bDown && (aLine.iOutcome == Outcome::Down || !bFirst)) {
    aRun.bDown = true;
    // What looked like a hiccup was the beginning.
    for (auto& aState : aSite.aSite.aStates)
      if (aState.iState == SiteState::Warning && aState.dtFrom >= aRun.dtFrom)
        aState.iState = SiteState::Down;
  }
  const bool bSent = aFields.Comment.find(szMailSent) != std::string_view::npos;
  const bool bFailed = aFields.Comment.find(szMailFailed) != std::string_view::npos;
  if (bSent || bFailed) aRun.aMails.push_back({aLine.dtMoment, bSent});
  aSummary.lMailsSent += bSent ? 1 : 0;
  aSummary.lMailsFailed += bFailed ? 1 : 0;
  return aRun.bDown ? SiteState::Down : SiteState::Warning;
}

void Summariser::CloseRun(SiteProgress& aSite, DateTime dtUntil, OutageEnd iEnd, bool bEndKnown) {
  auto& aRun = aSite.aRun;
  aRun.iEnd = iEnd;
  aRun.bEndKnown = bEndKnown;
  aRun.dtTo = std::max(aRun.dtFrom, dtUntil);
  const auto& aStates = aSite.aSite.aStates;
  for (auto aAt = aStates.rbegin(); aAt != aStates.rend() && aAt->dtTo > aRun.dtFrom; ++aAt)
    if (!IsWatched(aAt->iState) && aAt->dtFrom < aRun.dtTo)
      aRun.lUnwatched += SecondsBetween(aAt->dtFrom, std::min(aAt->dtTo, aRun.dtTo));
  aRun.lSeconds = std::max<std::int64_t>(0, SecondsBetween(aRun.dtFrom, aRun.dtTo) - aRun.lUnwatched);
  (aRun.bDown ? aSite.aSite.lDownSeconds : aSite.aSite.lHiccupSeconds) += aRun.lSeconds;
  (aRun.bDown ? aSite.aSite.aOutages : aSite.aSite.aHiccups).push_back(std::move(aRun));
  aRun = {};
  aSite.bFailing = false;
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

void Summariser::MeasureAvailability(SiteSummary& aSite) const {
  for (std::size_t i = 0; i < aAvailabilityDays.size(); ++i) {
    const auto dtFrom = aAvailabilityDays[i] > 0 ? AddDays(aSummary.dtTo, -aAvailabilityDays[i]) : 0;
    for (auto aAt = aSite.aStates.rbegin(); aAt != aSite.aStates.rend() && aAt->dtTo > dtFrom; ++aAt) {
      if (!IsWatched(aAt->iState)) continue;
      const auto lSeconds = SecondsBetween(std::max(aAt->dtFrom, dtFrom), aAt->dtTo);
      aSite.aAvailability[i].lWatched += lSeconds;
      if (aAt->iState == SiteState::Up) aSite.aAvailability[i].lUp += lSeconds;
    }
  }
}

void Summariser::Finish(SiteProgress& aProgress) {
  auto& aSite = aProgress.aSite;
  LookAway(aProgress, static_cast<std::uint32_t>(aHistory.Passes().size()), aSummary.dtTo);
  if (aSite.aStates.empty()) return;
  const auto iLast = aSite.aStates.back().iState;
  aSite.aStates.back().dtTo = std::max(aSite.aStates.back().dtTo, aSummary.dtTo);
  MeasureAvailability(aSite);
  if (aProgress.bFailing) {
    auto dtUntil = aSummary.dtTo;
    for (auto aAt = aSite.aStates.rbegin(); !IsWatched(aAt->iState); ++aAt)
      dtUntil = aAt->dtFrom;
    CloseRun(aProgress, dtUntil, IsWatched(iLast) ? OutageEnd::StillDown : OutageEnd::NoLongerWatched, false);
  }
  aSite.iCurrent = iLast;
  aSite.dtSince = aSite.aStates.back().dtFrom;
  aSite.bSinceKnown = aSite.aStates.size() > 1 && (aSite.aStates.end() - 2)->iState != SiteState::Unwatched;
}

}  // namespace

const MailAttempt* Outage::FirstSent() const {
  const auto aFound = std::ranges::find_if(aMails, &MailAttempt::bSent);
  return aFound == aMails.end() ? nullptr : &*aFound;
}

std::size_t Outage::MailsFailed() const {
  return static_cast<std::size_t>(std::ranges::count(aMails, false, &MailAttempt::bSent));
}

const Outage* SiteSummary::Longest() const {
  const auto aFound = std::ranges::max_element(aOutages, {}, &Outage::lSeconds);
  return aFound == aOutages.end() ? nullptr : &*aFound;
}

const Outage* SiteSummary::Current() const {
  if (!IsFailure(iCurrent)) return nullptr;
  return iCurrent == SiteState::Down ? &aOutages.back() : &aHiccups.back();
}

std::size_t SiteSummary::MostFailuresADay() const {
  std::vector<DateTime> aBegun;
  for (const auto* pList : {&aOutages, &aHiccups})
    for (const auto& aRun : *pList)
      aBegun.push_back(aRun.dtFrom);
  std::ranges::sort(aBegun);
  std::size_t lMost = 0;
  for (std::size_t lFirst = 0, lPast = 0; lPast < aBegun.size(); ++lPast) {
    while (aBegun[lPast] - aBegun[lFirst] > 1)
      ++lFirst;
    lMost = std::max(lMost, lPast + 1 - lFirst);
  }
  return lMost;
}

std::uint32_t LogSummary::Count(SiteState iState) const {
  return static_cast<std::uint32_t>(std::ranges::count(aSites, iState, &SiteSummary::iCurrent));
}

SiteState LogSummary::Worst() const {
  for (const auto iState : {SiteState::Down, SiteState::Warning, SiteState::Up, SiteState::Disabled})
    if (Count(iState) > 0) return iState;
  return SiteState::Unwatched;
}

SiteState StateOf(Outcome iOutcome) {
  constexpr std::array aStates{SiteState::Unwatched, SiteState::Up,      SiteState::Down,
                               SiteState::Disabled,  SiteState::Warning, SiteState::Unwatched};
  return aStates[static_cast<std::size_t>(iOutcome)];
}

LogSummary Summarise(const LogHistory& aHistory) {
  return Summariser(aHistory).Run();
}
