// What becomes of a request: the client's states, and the time-out. Every request has one outcome.
#include <exception>

#include "base/Strings.h"
#include "base/Text.h"
#include "check/CheckEngine.h"
#include "log/CheckLog.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"

void CheckEngine::Inet1_StateChanged(std::int16_t iInetState) {
  LookAtGap();  // who stands still does so most likely while the client waits, and that hands on what it met
  dLastHeard = dLastLook;
  if (!RequestInFlight() || iInetState == Inet::None) return;
  if (iInetState >= Inet::ResolvingHost && iInetState <= Inet::Disconnected)
    View.ShowProgressStatus(LoadResString(IDS_STATE_RESOLVING + iInetState - Inet::ResolvingHost));
  else if (iInetState == Inet::ResponseCompleted)
    TakeOutcome(ClassifyResponse(Inet1.GetHeader()));
  else if (iInetState == Inet::Error && Inet1.OwnFault() && iState != PassState::CheckingIP)
    LeaveUnjudged();
  else if (iInetState == Inet::Error)
    TakeOutcome(OutcomeOfError());
  else
    TakeOutcome(ClassifyUnknownState(iInetState));
}

Classification CheckEngine::OutcomeOfError() const {
  return Inet1.TimedOut() ? ClassifyTimeOut() : ClassifyError(Inet1.ResponseCode(), Inet1.ResponseInfo());
}

void CheckEngine::TimerMain_Timer() {
  View.ShowPanel(1, FormatGeneral(Clock::Now()));
  LookAtGap();
  // The tick may come from under an open menu or dialog, where nobody drives the client: an answer that has
  // arrived in time must be heard before the deadline is looked at.
  Inet1.Poll(0);
  if (!RequestInFlight() || Clock::SteadyNow() < RequestTimeOut) return;
  TakeOutcome(ClassifyTimeOut());
  if (!RequestInFlight()) Inet1.Cancel();
}

// On the clock that counts sleep, and the machine's own: a clock that is put in its place jumps as it likes.
void CheckEngine::LookAtGap() {
  constexpr double dLongest = 2;  // seconds; timers and waits come every second at the latest
  const double dNow = Clock::System().BootSeconds();
  if (RequestInFlight() && dNow - dLastLook > dLongest) bStoodStill = true;
  dLastLook = dNow;
}

bool CheckEngine::AskAgain(const Classification& aResult) {
  constexpr int lMostTimes = 3;
  const bool bAnswered = aResult.szCode != szCodeTimedOut && aResult.szCode != szCodeError;
  if (!bStoodStill || bAnswered || !modAddress::IsSite(lCheckIndex) || lAskedAgain == lMostTimes)
    return false;
  ++lAskedAgain;
  const SiteRecord aSite = modAddress::Site(lCheckIndex);
  const bool bByURL = iState == PassState::RequestingURL;
  if (bByURL) CheckLog::CurrentEntry.CheckTime = Clock::Now();
  Request(iState, Text::Trim(bByURL ? aSite.URL : aSite.IP), aSite.TimeOut);
  return true;
}

// One entry for the pass tells of it; the report at its end tells of how many.
void CheckEngine::LeaveUnjudged() {
  iState = PassState::BetweenRequests;
  const ResultText aText(IDS_RESULT_NOT_CHECKED);
  View.ShowRemark(lCheckIndex, aText.Text());
  if (lUnjudged++ > 0) return;
  CheckLog::CurrentEntry.StatusText = aText;
  CheckLog::WriteLog(false, false, false);
}

void CheckEngine::TakeOutcome(const Classification& aResult) {
  // The first of answer, error, time-out and stop takes the outcome. What comes later about the same request
  // is dropped, or one slow answer would count twice.
  if (!RequestInFlight() || AskAgain(aResult)) return;
  const PassState iAsked = iState;
  ++lOutcomes;
  bAnyReached = bAnyReached || Inet1.Reached();
  iState = PassState::BetweenRequests;
  try {
    if (aResult.bUp)
      SiteCheckOK(lCheckIndex, iAsked);
    else
      SiteCheckUpdate(lCheckIndex, iAsked, aResult);
  } catch (const std::exception&) {
    // An alert for which there is no text ends the recording here. Its log entry is still owed.
    DisarmRequest();
  }
  // Where the IP check has begun, its own outcome will write the entry for both.
  if (RequestInFlight()) return;
  CheckLog::WriteLog(false, false, false);
  View.SiteRecorded(lCheckIndex);
}
