// CheckEngine holds the state of a check pass and runs it. One thread: a pass waits for each request by
// driving the HTTP client and letting the view handle pending events, so clicks and timer ticks arrive inside
// a pass. What keeps that safe: one pass at a time, the conflicting commands locked, one outcome per request,
// and slot numbers instead of references across every pump. docs/pass.md tells the whole of it.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "alert/AlertText.h"
#include "base/DateTime.h"
#include "check/CheckView.h"
#include "check/ResultCodes.h"
#include "platform/Inet.h"

// Where a pass stands.
enum class PassState : std::uint8_t {
  Idle,             // there is none
  BetweenRequests,  // nothing is in flight, or its outcome is being recorded
  RequestingURL,    // a site is asked by its URL
  RequestingIP,     // a site that has no URL is asked by its IP address
  CheckingIP,       // a site whose URL failed a second time is asked by its IP address too
  Stopping,         // no further site has its turn
};

class CheckEngine {
 public:
  explicit CheckEngine(CheckView& aView);
  CheckEngine(const CheckEngine&) = delete;
  CheckEngine& operator=(const CheckEngine&) = delete;

  // The commands and timers. The two timers tick every 1000 ms; their handlers never throw.
  void mF_StartCheck_Click();
  // The same over these sites only. Its log has no end line, which would say that every site had its turn.
  void StartCheckOf(const std::set<std::int32_t>& aSlots);
  void TimerAutoCheck_Timer();
  void TimerMain_Timer();
  void StopCheck();
  // Lets the request in flight proceed without waiting; for a timer that runs while a menu or dialog is open.
  void ServeClient();

  PassState State() const { return iState; }
  // True from the moment a starter locks the commands until it has unlocked them.
  bool PassRunning() const { return iState != PassState::Idle; }
  // The same, and nobody has stopped it.
  bool CheckInProgress() const { return PassRunning() && iState != PassState::Stopping; }
  // The site being checked; 0 before the first of a pass.
  std::int32_t CheckIndex() const { return lCheckIndex; }
  // The sites that the pass is over; empty: all.
  const std::set<std::int32_t>& Chosen() const { return aChosen; }
  // The how-manieth of its sites is being checked, and how many they are.
  struct Turn {
    std::int32_t lAt, lOf;
  };
  Turn TurnNow() const;
  // Whether the last pass could ask every site and store every result. What it could not has been reported to
  // the view. Lines that the log misses are CheckLog's to count.
  bool AllKept() const { return bAllKept; }
  // What the last pass has reported of the store; empty where that took everything.
  const std::string& StoreTrouble() const { return szStoreTrouble; }

  // While one lives no pass starts, because the site list is being rewritten. Several may live at once.
  class ListHold {
   public:
    explicit ListHold(CheckEngine& aHeld) : Engine(aHeld) { ++Engine.lListHolds; }
    ~ListHold() { --Engine.lListHolds; }
    ListHold(const ListHold&) = delete;
    ListHold& operator=(const ListHold&) = delete;

   private:
    CheckEngine& Engine;
  };
  bool ListBusy() const { return lListHolds > 0; }

  // The program is ending: stops a running pass as StopCheck does, but without a word, and starts no other.
  void Quit();

  // The site in that slot got another address. If its request is in flight the answer would be about the old
  // address: it is dropped, nothing is recorded, and the pass goes on.
  void DropRequest(std::int32_t lSlot);

 private:
  // A pass from its first lock to its last unlock; the destructor winds it down whatever happened between.
  class PassScope;

  bool MayStart() const { return !PassRunning() && !ListBusy() && !bQuitting; }
  void NameLogFile();
  void AutoSiteCheck();
  void ReportTroubles();
  void CheckSite(std::int32_t i);
  void RequestSite(std::int32_t i);
  void LogMissingAddress(std::int32_t i);
  void LogDisabledSite(std::int32_t i);
  void ShowProgressFor(std::int32_t i);
  void WaitForClient();

  void Inet1_StateChanged(std::int16_t iInetState);
  // Notices that the process or the machine has stood still since the last call. Before the client is driven.
  void LookAtGap();
  // Where it has, a request without an answer proves nothing: it is made once more. True when it was.
  bool AskAgain(const Classification& aResult);
  // This machine could not make the request: the site keeps its status.
  void LeaveUnjudged();
  Classification OutcomeOfError() const;
  // Takes the outcome of the request in flight, if it is still to be had, and writes its log entry.
  void TakeOutcome(const Classification& aResult);

  // iAsked: the request that the outcome belongs to, as the state in which it was in flight.
  void SiteCheckOK(std::int32_t lIndex, PassState iAsked);
  void SiteCheckUpdate(std::int32_t lIndex, PassState iAsked, const Classification& aResult);
  void RecordBackup(std::int32_t lIndex, const Classification& aResult);
  void StartBackup(std::int32_t lIndex, const Classification& aResult);
  void RecordOrdinary(std::int32_t lIndex, const Classification& aResult);
  // What the client knows of the request that has just had this outcome.
  RequestFacts LastRequest(const Classification& aResult) const;
  // aFacts: the requests; the times are added.
  void SendAlert(std::int32_t lIndex, CheckFacts aFacts);

  bool RequestInFlight() const;
  void Request(PassState iAsking, const std::string& szAddress, std::int32_t lTimeOut);
  void DisarmRequest();
  void CancelRequestFor(const std::string& szAddress);

  void SiteCheck_Disable();
  void SiteCheck_Enable();

  CheckView& View;
  Inet Inet1;
  PassState iState = PassState::Idle;
  DateTime RequestTimeOut = 0;  // steady date-time; counts while a request is in flight
  std::int32_t lCheckIndex = 0;
  std::set<std::int32_t> aChosen;
  bool bPassFailure = false;  // a site was found down during this pass
  bool bAllKept = true;
  std::string szStoreTrouble;
  // Of this pass: requests with an outcome, whether one of them met anybody, sites that could not be asked.
  std::int32_t lOutcomes = 0, lUnjudged = 0;
  bool bAnyReached = false;
  double dLastLook = 0;       // boot seconds
  double dLastHeard = 0;      // the same: of the request in flight
  bool bStoodStill = false;   // during the request in flight
  int lAskedAgain = 0;        // how often, for this site
  Classification FirstCheck;  // the URL's failure while the IP check runs
  RequestFacts FirstRequest;  // and its request
  // When each URL failed for the first time, as far as this run has seen it.
  std::map<std::string, DateTime> aFirstFailures;
  std::int32_t lListHolds = 0;
  bool bQuitting = false;
};
