// What becomes of a request: the client's states, and the time-out. Every request has one outcome.
#include <exception>

#include "base/Strings.h"
#include "check/CheckEngine.h"
#include "check/ResultCodes.h"
#include "log/CheckLog.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"

namespace {

constexpr std::int16_t iStateResolving = 1;
constexpr std::int16_t iStateDisconnected = 10;
constexpr std::int16_t iStateError = 11;
constexpr std::int16_t iStateCompleted = 12;

}  // namespace

void CheckEngine::Inet1_StateChanged(std::int16_t iState) {
  if (!bPassRunning || !modAddress::IsSite(lCheckIndex) || iState == 0) return;
  if (iState >= iStateResolving && iState <= iStateDisconnected) {
    View.ShowProgressStatus(LoadResString(IDS_STATE_RESOLVING + iState - iStateResolving));
    return;
  }
  RecordOutcome([this, iState] {
    if (iState == iStateCompleted) {
      RecordResponse();
    } else if (iState == iStateError) {
      RecordError();
    } else {
      SiteCheckUpdate(lCheckIndex, "0",
                      ResultText(IDS_RESULT_UNKNOWN_STATE, " (" + std::to_string(iState) + ")"),
                      CheckLog::iClassFailure, iServerFailed);
    }
  });
}

void CheckEngine::TimerMain_Timer() {
  View.ShowPanel(1, FormatGeneral(Clock::Now()));
  // The tick may come from under an open menu or dialog, where nobody drives the client: an answer that has
  // arrived in time must be heard before the deadline is looked at.
  Inet1.Poll(0);
  if (RequestTimeOut == 0 || Clock::SteadyNow() < RequestTimeOut || !bOutcomePending) return;
  RecordOutcome([this] { RecordTimeOut(); });
  if (!bInetDoubleCheck) Inet1.Cancel();
}

void CheckEngine::RecordOutcome(const std::function<void()>& aRecord) {
  if (!bOutcomePending) return;
  bOutcomePending = false;
  RequestTimeOut = 0;
  try {
    aRecord();
  } catch (const std::exception&) {
    // An alert for which there is no text ends the recording here. Its log entry is still owed, and an IP
    // check that was being recorded must not stay open.
    bInetDoubleCheck = false;
    Inet1.Cancel();
  }
  // While the IP check runs, its own outcome will write the entry for both.
  if (bInetDoubleCheck) return;
  CheckLog::WriteLog(false, false, false);
  View.SiteRecorded(lCheckIndex);
}

void CheckEngine::RecordResponse() {
  if (!Inet1.GetHeader().empty()) szHeader = Inet1.GetHeader();
  const Classification aResult = ClassifyResponse(Inet1.GetHeader());
  if (aResult.bUp) {
    SiteCheckOK(lCheckIndex);
    return;
  }
  if (!aResult.aLogStatus.Empty()) {
    CheckLog::CurrentEntry.StatusText = aResult.aLogStatus;
    CheckLog::CurrentEntry.ResultClass = CheckLog::iClassFailure;
  }
  SiteCheckUpdate(lCheckIndex, aResult.szCode, aResult.aText, CheckLog::iClassFailure,
                  aResult.iBackupOutcome);
}

void CheckEngine::RecordError() {
  if (Inet1.TimedOut()) {
    RecordTimeOut();
    return;
  }
  SiteCheckUpdate(
      lCheckIndex, "8080",
      ResultText(IDS_RESULT_ERROR, " " + std::to_string(Inet1.ResponseCode()) + " " + Inet1.ResponseInfo()),
      CheckLog::iClassFailure, iServerFailed);
}

void CheckEngine::RecordTimeOut() {
  SiteCheckUpdate(lCheckIndex, "8001", ResultText(IDS_RESULT_TIMED_OUT), CheckLog::iClassFailure,
                  iServerFailed);
}
