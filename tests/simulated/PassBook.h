// PassBook: what must come next in a pass, step by step: which request, which outcome, which light, remark,
// mail and log line, and when the next pass is due. It is told of everything that the program does to the
// machine and shows, and compares.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulated/ListBook.h"
#include "simulated/LogBook.h"
#include "simulated/Machine.h"
#include "simulated/OptionsBook.h"
#include "simulated/Rules.h"
#include "simulated/Violation.h"

namespace Simulated {

class PassBook : public Witness {
 public:
  ListBook aList;
  OptionsBook aOptions;
  LogBook aLog;
  bool bUnknownTemplate = false;  // the folder of the alert texts has one for every code

  // The schedule.
  void SetNext(std::int32_t lMinutes);
  double SecondsToDue() const;
  bool IsDue() const { return SecondsToDue() <= 0; }
  void CompareNext() const;

  // A pass from its first lock to its last unlock.
  void Begin(bool bManual);
  void End();
  bool Running() const { return iPhase != Phase::Idle; }
  void Forget();  // the machine went away in the middle

  // Around a tick of the main timer, which judges the time.
  void BeforeTick();
  void AfterTick() const { Require(!OutcomeKnown(), "a time-out is not recorded"); }

  // What the operator does in a pass.
  void Stop(bool bQuitting);
  void Drop(std::int32_t lSlot);  // the request in flight asks an old address
  std::int32_t SlotInFlight() const { return iPhase == Phase::Asked ? lSlot : 0; }

  // What the program shows.
  void ShowsLight(std::int32_t lOf, std::int16_t iIcon);
  void ShowsRemark(std::int32_t lOf, const std::string& szText);
  void Recorded(std::int32_t lOf);
  void Rings() { ++lBells; }
  // All that was said of the pass at its end.
  void Says(const std::vector<std::string>& aTroubles, bool bAllKept) const;

  void Requested(const std::string& szURL, const Conversation& aAnswer) override;
  void Answered(std::int16_t iState, bool bLimit) override;
  void Cancelled() override;
  void Mailed(const Mail& aMail, std::int32_t lResult) override;
  void Appended(const std::string& szFile, const std::string& szBytes, bool bKept) override;
  void Deleted(const std::string& szFile) override { aLog.Deleted(szFile); }
  void Awake() override;

 private:
  enum class Phase : std::uint8_t {
    Idle,
    Starting,   // the start line is owed
    Walking,    // between two sites
    Asked,      // a request is in flight
    BackupDue,  // the same site is to be asked by its IP address
    AgainDue,   // nothing was learned: the same request is to be made once more
    Recording   // the outcome is known: a mail, a log line and the record are owed
  };
  // The entry that is to be written.
  struct Entry {
    DateTime dtChecked = 0;
    std::string szAddress, szStatus, szComment;
    int iClass = 0;
    LogBook::Kind iKind = LogBook::Kind::Up;
  };

  BookedSite& Site() { return aList.aSites[static_cast<std::size_t>(lSlot) - 1]; }
  bool ProvesNothing();
  // And what follows of it is not done yet.
  bool OutcomeKnown() const {
    return iPhase == Phase::Recording || iPhase == Phase::BackupDue || iPhase == Phase::AgainDue;
  }
  bool GoOn();  // to the next site that leaves a trace; false at the end
  bool LogsDisabled() const { return aOptions.aNow.LogPeriod != 0 && aOptions.aNow.DiskLogDisabled == 0; }
  void Outcome(const Rules::Verdict& aVerdict);
  void BackupOutcome(const Rules::Verdict& aVerdict);
  void LeaveUnjudged();
  void FirstOutcome(const Rules::Verdict& aVerdict);
  void Alert(const std::string& szCode);
  void AddComment(const std::string& szText) {
    aEntry.szComment += (aEntry.szComment.empty() ? "" : "; ") + szText;
  }
  std::string LineOf(const Entry& aEntry) const;
  void TakeLine(const std::string& szBytes, const std::string& szMustBe, LogBook::Kind iKind,
                DateTime dtMoment, bool bKept);

  Phase iPhase = Phase::Idle;
  bool bManual = false, bStopped = false, bQuit = false, bFailureSeen = false, bEndWritten = false,
       bInFlight = false;
  bool bSilent = false;      // a cancel is expected
  bool bStoodStill = false;  // since the request was made
  bool bAnyReached = false;  // in this pass
  std::int32_t lOutcomes = 0, lUnjudged = 0;
  bool bUnjudgedRemark = false, bUnjudgedLine = false;  // are owed
  std::int32_t lSlot = 0, lLast = 0, lBells = 0;

  Conversation aAnswer;
  double dAsked = 0, dDeadline = 0, dAwake = 0;
  bool bBackup = false;
  std::string szFirstCode, szFirstText;

  Entry aEntry;
  bool bLineWritten = false, bMailDue = false, bMailTried = false, bSaved = false;
  std::string szMailCode;
  std::string szRemark;        // in the list's row
  std::string szRemarkBefore;  // the site's own, before the result of an IP check
  int iLightShown = 0;
  std::string szRemarkShown;
  std::int64_t lStoreFaultsBefore = 0, lFileFaultsBefore = 0;
  std::int64_t lPassStoreFaults = 0, lPassFileFaults = 0, lStoreFaultsRecorded = 0;
  std::int32_t lMissingLines = 0;
  bool bPruningDue = false;  // the first line is written: old files must be gone when the first site is asked

  DateTime dtNextWall = 0;
  double dNextBoot = 0;
};

}  // namespace Simulated
