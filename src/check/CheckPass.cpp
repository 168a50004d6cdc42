// The pass itself: its two starters, the walk over the sites, and the stop command.
#include <exception>
#include <iterator>

#include "base/Strings.h"
#include "base/Text.h"
#include "check/CheckEngine.h"
#include "check/CookiePolicy.h"
#include "check/Schedule.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"

namespace {

// A wait for an answer ends with every byte that comes, or with this time: events want to be handled.
constexpr std::int32_t lPollMilliseconds = 10;
constexpr std::int32_t lSilentPollMilliseconds = 50;  // where nothing came for so many seconds
constexpr double dSilence = 1;
constexpr std::int16_t iCookiesRefused = 2;

std::string AddressOf(const SiteRecord& aSite) {
  return LoadResString(IDS_AGENT) + (Text::IsBlank(aSite.URL) ? aSite.IP : aSite.URL);
}

std::string LastPanelText() {
  return LoadResString(IDS_LAST) + " " + FormatTimeOfDay(Clock::Now());
}

}  // namespace

class CheckEngine::PassScope {
 public:
  explicit PassScope(CheckEngine& aOwner) : Engine(aOwner) {
    Engine.iState = PassState::BetweenRequests;
    Engine.SiteCheck_Disable();
  }
  ~PassScope() {
    try {
      Engine.iState = PassState::Stopping;
      if (Engine.aChosen.empty()) CheckLog::WriteLog(false, false, true);
      Engine.ReportTroubles();
      if (Engine.bPassFailure && !Engine.bQuitting) Engine.View.SoundBell();
      Engine.SiteCheck_Enable();
    } catch (const std::exception&) {
      // Nothing in the wind-down is worth ending the program for.
    }
    Engine.iState = PassState::Idle;
  }
  PassScope(const PassScope&) = delete;
  PassScope& operator=(const PassScope&) = delete;

 private:
  CheckEngine& Engine;
};

CheckEngine::CheckEngine(CheckView& aView) : View(aView) {
  Inet1.StateChanged = [this](std::int16_t iInetState) { Inet1_StateChanged(iInetState); };
}

void CheckEngine::mF_StartCheck_Click() {
  if (!MayStart()) return;
  if (lSiteCount < 1) {
    Schedule::SetNextCheck(IntervalMinutes());
    View.ShowMessage(LoadResString(IDS_NO_SITES));
    return;
  }
  const PassScope aPass(*this);
  NameLogFile();
  if (Settings.LogPeriod != 0) CheckLog::WriteLog(true, true, false);
  Schedule::SetNextCheck(IntervalMinutes());
  View.ShowPanel(3, LastPanelText());
  View.EnableAutoTimer(false);
  AutoSiteCheck();
  View.ShowPanel(2, Schedule::NextPanelText());
  if (!bQuitting) View.EnableAutoTimer(true);
}

void CheckEngine::StartCheckOf(const std::set<std::int32_t>& aSlots) {
  aChosen = aSlots;
  mF_StartCheck_Click();
  aChosen.clear();
}

CheckEngine::Turn CheckEngine::TurnNow() const {
  if (aChosen.empty()) return {lCheckIndex, lSiteCount};
  const auto lAt = std::distance(aChosen.begin(), aChosen.upper_bound(lCheckIndex));
  return {static_cast<std::int32_t>(lAt), static_cast<std::int32_t>(aChosen.size())};
}

void CheckEngine::TimerAutoCheck_Timer() {
  // A pass that is longer than the interval is not joined by a second one: the overdue pass starts at the
  // first tick after this one's end.
  if (!MayStart() || !Schedule::IsDue()) return;
  if (lSiteCount < 1) {
    Schedule::SetNextCheck(IntervalMinutes());
    View.ShowPanel(3, LoadResString(IDS_NO_SITES));
    View.ShowPanel(2, Schedule::NextPanelText());
    return;
  }
  const PassScope aPass(*this);
  NameLogFile();
  if (Settings.LogPeriod != 0) CheckLog::WriteLog(true, false, false);
  Schedule::SetNextCheck(IntervalMinutes());
  View.ShowPanel(3, LastPanelText());
  AutoSiteCheck();
  View.ShowPanel(2, Schedule::NextPanelText());
}

// A log file that cannot be pruned is no reason not to check.
void CheckEngine::NameLogFile() {
  try {
    CheckLog::GetLogFileName(true);
  } catch (const std::exception&) {
    return;
  }
}

void CheckEngine::AutoSiteCheck() {
  bPassFailure = bAnyReached = false;
  lCheckIndex = lOutcomes = lUnjudged = 0;
  View.ShowPanel(2, LoadResString(IDS_IN_PROGRESS));
  Inet1.AcceptCookies(Settings.AllowType != iCookiesRefused);
  Inet1.ForgetCookies();
  {
    const CookiePolicy aPolicy(Settings.AllowType);
    if (aChosen.empty()) modAddress::ClearComments();
    for (const std::int32_t i : aChosen)
      modAddress::SetComments(i, "");
    View.ClearRemarks();

    // Sites that are added meanwhile wait for the next pass.
    const std::int32_t lLast = lSiteCount;
    for (std::int32_t i = 1; i <= lLast && i <= lSiteCount && CheckInProgress(); ++i) {
      if (!aChosen.empty() && !aChosen.contains(i)) continue;
      try {
        CheckSite(i);
      } catch (const std::exception&) {
        DisarmRequest();  // the next site must not pay for this one
      }
    }
  }
  View.CloseProgress();
}

// What could not be stored meanwhile is tried once more. The verdicts on the sites stand whatever is
// reported: where nobody was met, the fault is probably, but not surely, here.
void CheckEngine::ReportTroubles() {
  szStoreTrouble = modAddress::SaveAgain();
  if (!szStoreTrouble.empty()) View.ReportTrouble(szStoreTrouble);
  if (lUnjudged > 0) View.ReportTrouble(FillResString(IDS_SITES_UNJUDGED, {std::to_string(lUnjudged)}));
  if (lOutcomes > 1 && !bAnyReached) View.ReportTrouble(LoadResString(IDS_NO_SITE_REACHED));
  bAllKept = modAddress::UnsavedSites() == 0 && lUnjudged == 0;
}

void CheckEngine::CheckSite(std::int32_t i) {
  const SiteRecord aSite = modAddress::Site(i);
  if (!aSite.TakesPart()) {
    LogDisabledSite(i);
    return;
  }
  if (aSite.IP.empty() && Text::IsBlank(aSite.URL)) return;
  WaitForClient();
  if (!CheckInProgress()) return;  // stopped while it waited
  CheckLog::CurrentEntry = {};
  if (Text::IsBlank(aSite.URL) && Text::IsBlank(aSite.IP))
    LogMissingAddress(i);
  else
    RequestSite(i);
}

void CheckEngine::LogMissingAddress(std::int32_t i) {
  CheckLog::CurrentEntry.Address = LoadResString(IDS_UNKNOWN_SITE) + std::to_string(i);
  CheckLog::CurrentEntry.CheckTime = Clock::Now();
  CheckLog::CurrentEntry.StatusText = ResultText(IDS_MISSING_ADDRESS);
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassFailure;
  CheckLog::WriteLog(false, false, false);
  View.SiteRecorded(i);
}

void CheckEngine::RequestSite(std::int32_t i) {
  lCheckIndex = i;
  lAskedAgain = 0;
  const SiteRecord aSite = modAddress::Site(i);
  const bool bByURL = !Text::IsBlank(aSite.URL);
  if (bByURL) CheckLog::CurrentEntry.CheckTime = Clock::Now();
  CheckLog::CurrentEntry.Address = AddressOf(aSite);
  Request(bByURL ? PassState::RequestingURL : PassState::RequestingIP,
          Text::Trim(bByURL ? aSite.URL : aSite.IP), aSite.TimeOut);
  ShowProgressFor(i);
  WaitForClient();
}

void CheckEngine::LogDisabledSite(std::int32_t i) {
  if (Settings.DiskLogDisabled != 0 || Settings.LogPeriod == 0) return;
  const SiteRecord& aSite = modAddress::Site(i);
  const std::string szUnknown = LoadResString(IDS_UNKNOWN_SITE);
  CheckLog::CurrentEntry = {};
  CheckLog::CurrentEntry.Address =
      Text::IsBlank(aSite.URL) && Text::IsBlank(aSite.IP) ? szUnknown + std::to_string(i) : AddressOf(aSite);
  CheckLog::CurrentEntry.CheckTime = Clock::Now();
  CheckLog::CurrentEntry.StatusText = ResultText(IDS_UNKNOWN_SITE);
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassDisabled;
  CheckLog::WriteLog(false, false, false);
}

void CheckEngine::ShowProgressFor(std::int32_t i) {
  if (View.IsMinimised()) {
    View.CloseProgress();
    return;
  }
  View.OpenProgress();
  const SiteRecord& aSite = modAddress::Site(i);
  const std::string& szAddress = aSite.URL.empty() ? aSite.IP : aSite.URL;
  if (!szAddress.empty()) {
    View.ShowProgressSite(LoadResString(IDS_CHECKING) + " " + LoadResString(IDS_AGENT) + szAddress);
  }
}

void CheckEngine::WaitForClient() {
  while (Inet1.StillExecuting()) {
    LookAtGap();
    Inet1.Poll(dLastLook - dLastHeard < dSilence ? lPollMilliseconds : lSilentPollMilliseconds);
    View.PumpEvents();
  }
}

void CheckEngine::StopCheck() {
  if (!CheckInProgress()) {
    if (!bQuitting) View.ShowMessage(LoadResString(IDS_NOT_IN_PROGRESS));
    return;
  }
  const bool bInFlight = RequestInFlight();
  if (bInFlight) DisarmRequest();
  iState = PassState::Stopping;
  // Between two requests there is no site to put the remark on: its entry is written, or none has begun.
  if (!bInFlight) return;
  const std::string szStopped = LoadResString(IDS_MANUALLY_STOPPED);
  CheckLog::AddComment(szStopped);
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassFailure;
  CheckLog::WriteLog(false, false, false);
  View.ShowLightText(lCheckIndex, szStopped);
  View.ShowRemark(lCheckIndex, szStopped);
  View.SiteRecorded(lCheckIndex);
}

void CheckEngine::Quit() {
  bQuitting = true;
  if (CheckInProgress()) StopCheck();
}

void CheckEngine::DropRequest(std::int32_t lSlot) {
  if (RequestInFlight() && lCheckIndex == lSlot) DisarmRequest();
}

void CheckEngine::ServeClient() {
  LookAtGap();
  Inet1.Poll(0);
}

bool CheckEngine::RequestInFlight() const {
  return iState == PassState::RequestingURL || iState == PassState::RequestingIP ||
         iState == PassState::CheckingIP;
}

void CheckEngine::Request(PassState iAsking, const std::string& szAddress, std::int32_t lTimeOut) {
  // The time-out is TimerMain's to enforce. The client's own limit only stands behind it, so that a request
  // ends even if no timer runs.
  constexpr std::int32_t lBehindTimer = 5;
  RequestTimeOut = AddSeconds(Clock::SteadyNow(), lTimeOut);
  iState = iAsking;
  bStoodStill = false;
  dLastLook = dLastHeard = Clock::System().BootSeconds();
  Inet1.RequestTimeout(lTimeOut + lBehindTimer);
  Inet1.Execute(LoadResString(IDS_AGENT) + szAddress, "GET");
}

// Whatever was in flight is over and leaves no outcome.
void CheckEngine::DisarmRequest() {
  if (RequestInFlight()) iState = PassState::BetweenRequests;
  Inet1.Cancel();
}

void CheckEngine::SiteCheck_Disable() {
  View.LockCommands(true);
}

void CheckEngine::SiteCheck_Enable() {
  View.LockCommands(false);
}
