// CheckEngine holds the state of a check pass and runs it. One thread: a pass waits for each request by
// driving the HTTP client and letting the view handle pending events, so clicks and timer ticks arrive inside
// a pass. What keeps that safe: one pass at a time (bPassRunning), the conflicting commands locked, one
// outcome per request, and slot numbers instead of references across every pump.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "alert/AlertText.h"
#include "base/DateTime.h"
#include "check/CheckView.h"
#include "log/ResultText.h"
#include "platform/Inet.h"

class CheckEngine {
 public:
  explicit CheckEngine(CheckView& aView);

  // The commands and timers. The two timers tick every 1000 ms; their handlers never throw.
  void mF_StartCheck_Click();
  void TimerAutoCheck_Timer();
  void TimerMain_Timer();
  void StopCheck();
  // Lets the request in flight proceed without waiting; for a timer that runs while a menu or dialog is open.
  void ServeClient();

  // True from the moment a starter locks the commands until it has unlocked them.
  bool PassRunning() const { return bPassRunning; }
  // While set, the schedule starts nothing: the site list is being rewritten.
  bool bListBusy = false;
  // The program is ending: stops a running pass as StopCheck does, but without a word, and starts no other.
  void Quit();

  // The site in that slot got another address. If its request is in flight the answer would be about the old
  // address: it is dropped, nothing is recorded, and the pass goes on.
  void DropRequest(std::int32_t lSlot);

  // The state of the pass.
  DateTime RequestTimeOut = 0;          // steady date-time; 0: no request is armed
  std::int16_t InetCheckType = 0;       // what is requested: 1 the URL, 2 the IP address
  bool bInetDoubleCheck = false;        // the request in flight is the IP check
  bool bCheckInProgress = false;        // clearing it ends the pass at the next site
  std::int32_t lCheckIndex = 0;         // the site being checked; 0 before the first
  bool bPassFailure = false;            // a site was found down during this pass
  std::int16_t iDoubleTakeResult2 = 0;  // outcome of the IP check: 1 answered, 2 failed, 5 answered oddly
  std::string FirstCheckCode;           // the URL's failure while the IP check runs, as a code and in words
  ResultText FirstCheckText;
  std::int16_t FirstCheckClass = 0;
  std::string szHeader;  // raw header of the last completed response

 private:
  // A pass from its first lock to its last unlock; the destructor winds it down whatever happened between.
  class PassScope;

  void NameLogFile();
  void AutoSiteCheck();
  void CheckSite(std::int32_t i);
  void RequestSite(std::int32_t i);
  void LogDisabledSite(std::int32_t i);
  void ShowProgressFor(std::int32_t i);
  void WaitForClient();

  void Inet1_StateChanged(std::int16_t iState);
  // Takes the outcome of the request in flight, if it is still to be had, and writes its log entry.
  void RecordOutcome(const std::function<void()>& aRecord);
  void RecordResponse();
  void RecordError();
  void RecordTimeOut();

  void SiteCheckOK(std::int32_t lIndex);
  void SiteCheckUpdate(std::int32_t lIndex, const std::string& szCode, const ResultText& aText,
                       std::int16_t iResultClass, std::int16_t iBackupOutcome);
  void RecordBackup(std::int32_t lIndex, const ResultText& aText, std::int16_t iBackupOutcome);
  bool StartBackup(std::int32_t lIndex, const std::string& szCode, const ResultText& aText,
                   std::int16_t iResultClass);
  void RecordOrdinary(std::int32_t lIndex, const std::string& szCode, const ResultText& aText,
                      std::int16_t iResultClass);
  void SendAlert(const std::string& szCode, std::int32_t lIndex);
  void CancelRequestFor(const std::string& szAddress);
  void Request(std::int16_t iCheckType, const std::string& szAddress, std::int32_t lTimeOut);
  void DisarmRequest();

  void SiteCheck_Disable();
  void SiteCheck_Enable();

  CheckView& View;
  Inet Inet1;
  bool bPassRunning = false;
  bool bQuitting = false;
  // A request was sent and its outcome is not recorded yet. The first of answer, error, time-out and stop
  // takes the outcome; what comes later about the same request is dropped, or one slow answer would count
  // twice.
  bool bOutcomePending = false;
};
