#include "simulated/Trial.h"

#include <algorithm>

#include "check/CookiePolicy.h"
#include "check/Schedule.h"
#include "editing/AddressRules.h"
#include "log/CheckLog.h"
#include "platform/MsgBox.h"
#include "simulated/Commands.h"
#include "simulated/Violation.h"

namespace Simulated {

namespace {

constexpr std::int64_t lMostLogLines = 6000;

void PrepareDisk(bool bUnknownTemplate) {
  auto& aDisk = ThisMachine().aDisk;
  for (const char* const szFolder : {"/program", "/program/Logs", "/program/Messages", "/home/operator",
                                     "/home/operator/data", "/home/operator/logs"})
    aDisk.aFolders.insert(szFolder);
  aDisk.aFiles["/program/Messages/HTTP-404.txt"] =
      "Dear %MGRNAME%,\r\n\r\n%url% was not found.\r\n\r\n%HEADER%\r\n";
  if (bUnknownTemplate)
    aDisk.aFiles["/program/Messages/Unknown.txt"] = "%URL% failed: %ERRORINFO% (%ERRORCODE%)\r\n%HEADER%";
}

// A process begins: nothing of the one before is left in memory.
void BeginProcess() {
  Settings = {};
  CheckLog::CurrentLogFile.clear();
  CheckLog::CurrentEntry = {};
  CheckLog::TakeMissingLines();
  AddressRules::EditCopy.clear();
}

// What the program does before its first tick. bKeep: one pass for a scheduler, which goes on where the last
// one left off; else a program that stays.
void LoadProgram(bool bKeep) {
  CookiePolicy::RestoreAfterKill();
  LoadSettings();
  modAddress::Mismatches aFound;
  modAddress::LoadRebuilt(bKeep, bKeep, aFound);
  if (!bKeep) Schedule::SetNextCheck(WarningMinutes());
}

}  // namespace

Trial::Trial(std::uint64_t lSeed) : aRandom(lSeed), aWorld(lSeed ^ 0xA5A5A5A5U) {
  Where() = {lSeed, 0, 0, "starting", Where().lTraceFrom};
  const auto dtStart = JoinDateTime({.lYear = aRandom.Between(1999, 2060),
                                     .lMonth = aRandom.Between(1, 12),
                                     .lDay = aRandom.Between(1, 28),
                                     .lHour = aRandom.Below(24),
                                     .lMinute = aRandom.Below(60),
                                     .lSecond = aRandom.Below(60)});
  auto& aMachine = ThisMachine();
  aMachine.Reset(lSeed, dtStart);
  aMachine.bReadsSpareBrackets = aRandom.Chance(0.5);
  aMachine.pSurroundings = &aWorld;
  aMachine.pWitness = &aBook;
  aBook.bUnknownTemplate = aRandom.Chance(0.7);
  PrepareDisk(aBook.bUnknownTemplate);
  ThisMachine().aDisk.bTears = aRandom.Chance(0.3);
  if (aRandom.Chance(0.8)) aBook.aOptions.SetCookies(aRandom.Below(3));
  MsgBox_SetPresenter([](const std::string&) {});
}

void Trial::Run(std::int64_t lChecks) {
  while (Where().lChecks < lChecks)
    LiveOnce();
  Tallies()["checks"] += Where().lChecks;
  Tallies()["calls that failed"] += ThisMachine().lStoreFaults + ThisMachine().lFileFaults;
  Tallies()["days on the machines' clocks"] +=
      static_cast<std::int64_t>(ThisMachine().Boot() / dSecondsPerDay);
}

// One process, from its start to its end or to the next kill.
void Trial::LiveOnce() {
  ++Where().lLives;
  ++Tallies()["processes"];
  auto& aMachine = ThisMachine();
  bTrouble = false;
  const bool bKeep = aRandom.Chance(0.3);
  if (aRandom.Chance(0.05)) aMachine.KillAt(aRandom.Between(1, 400), aRandom.Chance(0.5));
  if (Boot(bKeep)) {
    if (aRandom.Chance(0.3))
      aMachine.KillAt(aRandom.Between(1, aRandom.Chance(0.5) ? 300 : 20000), aRandom.Chance(0.5));
    if (bKeep)
      OnePass();
    else
      Watch();
  }
  aMachine.aTroubles = {};
  pDesk.reset();
  if (aMachine.Dead()) return AfterPowerCut();
  aMachine.KillAt(0, false);
  aBook.Forget();
  if (bTrouble) {
    aBook.aList.ConcludeAfterTrouble();
    aBook.aOptions.ConcludeAfterTrouble(true);
  }
}

void Trial::AfterPowerCut() {
  Where().szStep = "after a kill";
  if (Traced()) Trace("killed");
  ++Tallies()["kills"];
  ThisMachine().PowerOn();
  aBook.Forget();
  aBook.aList.ConcludeAfterTrouble();
  aBook.aOptions.ConcludeAfterTrouble(false);
}

bool Trial::Boot(bool bKeep) {
  Where().szStep = "the program starts";
  if (Traced()) Trace(bKeep ? "one pass" : "to stay");
  auto& aMachine = ThisMachine();
  const auto lFaults = aMachine.lStoreFaults;
  if (aRandom.Chance(0.05)) aMachine.aTroubles = {.lStoreRead = 20, .lStoreWrite = 5, .lStoreCommit = 200};
  aBook.aOptions.PlanLoad();
  if (aRandom.Chance(0.1)) aBook.aList.MoveByHand(aRandom);
  aBook.aList.PlanLoad(bKeep);
  BeginProcess();
  LoadProgram(bKeep);
  aMachine.aTroubles = {};
  if (aMachine.Dead()) return false;
  if (aMachine.lStoreFaults != lFaults) {
    // Not one site may be lost over a store that could not be read for a moment.
    aBook.aList.ConcludeAfterTrouble();
    aBook.aOptions.ConcludeAfterTrouble(false);
    return false;
  }
  aBook.aOptions.Conclude();
  aBook.aOptions.RequireOwnCookies();
  aBook.aOptions.bCookiesOwed = false;
  aBook.aList.Conclude();
  if (!bKeep) aBook.SetNext(aBook.aOptions.aNow.Warning);
  pDesk = std::make_unique<Desk>(aBook, aRandom);
  pDesk->Refill();
  aMachine.dNextTick = aMachine.Boot() + aRandom.Real();
  return true;
}

void Trial::Watch() {
  for (int i = aRandom.Between(1, 120); i > 0 && !ThisMachine().Dead() && !bTrouble && !pDesk->bExited; --i) {
    if (aRandom.Chance(aBook.aList.OwesAny() ? 0.8 : 0.3)) Operate();
    if (ThisMachine().Dead() || bTrouble || pDesk->bExited) return;
    Where().szStep = "waiting for a pass";
    WaitForPass();
    if (!ThisMachine().Dead()) RequireNothingGrew();
  }
}

// Ticks now and then, which must start nothing, then right before and right after the moment.
void Trial::WaitForPass() {
  PlanPass();
  auto& aMachine = ThisMachine();
  for (int i = aRandom.Below(3); i > 0 && !aMachine.Dead() && !pDesk->bExited; --i) {
    const auto dLeft = aBook.SecondsToDue();
    if (dLeft > 2) aMachine.Pass((dLeft - 1) * aRandom.Real());
    pDesk->Tick();
  }
  if (aMachine.Dead() || pDesk->bExited) return;
  const auto dLeft = aBook.SecondsToDue();
  if (dLeft > 0.5) aMachine.Pass(dLeft - 0.3);
  pDesk->Tick();
  if (aMachine.Dead() || pDesk->bExited) return;
  aMachine.Pass(aRandom.Between(0.35, 1.3));
  pDesk->Tick();
  aMachine.aTroubles = {};
}

// What may go wrong in the pass that comes, and when its operator acts.
void Trial::PlanPass() {
  pDesk->lEventsToAct = aRandom.Chance(0.15) ? aRandom.Between(1, 200) : 0;
  if (aRandom.Chance(0.03))
    ThisMachine().aTroubles = {.lStoreRead = 5, .lStoreWrite = 20, .lStoreCommit = 100};
  if (aRandom.Chance(0.01)) ThisMachine().aTroubles = {.lStoreRead = 50};
  if (aRandom.Chance(0.02))
    ThisMachine().aTroubles = {.lStoreCommit = 900};  // much is owed when the pass ends
  if (aRandom.Chance(0.03)) ThisMachine().aTroubles.lFileWrite = 100;
  if (aRandom.Chance(0.03)) ThisMachine().aTroubles.lFileRead = 100;
  ThisMachine().aDisk.lRoom = aRandom.Chance(0.02) ? aRandom.Between(0, 2000) : -1;
  ThisMachine().aDisk.aLocked.clear();
  if (aRandom.Chance(0.01)) ThisMachine().aDisk.aLocked.insert(aBook.aOptions.aNow.LogPath);
}

void Trial::OnePass() {
  Where().szStep = "a pass by hand";
  PlanPass();
  pDesk->ClickStart();
  ThisMachine().aTroubles = {};
  if (!ThisMachine().Dead()) RequireNothingGrew();
}

void Trial::Operate() {
  for (int i = aRandom.Between(1, 3); i > 0 && !ThisMachine().Dead() && !bTrouble && !pDesk->bExited; --i) {
    ThisMachine().Pass(aRandom.Between(0.2, 20.0));
    switch (aRandom.Below(10)) {
      case 0:
        OnePass();
        break;
      case 1:
        pDesk->ClickStop();
        break;
      case 2:
        ChangeClocks();
        break;
      case 3:
        if (aRandom.Chance(0.1)) pDesk->ClickExit();
        break;
      case 4:
        aBook.aOptions.SetCookies(aRandom.Chance(0.8) ? std::optional(aRandom.Below(3)) : std::nullopt);
        break;
      default:
        Command();
        break;
    }
  }
  ForgetOldLogs();
}

void Trial::Command() {
  if (aBook.aList.IsUnsure()) return;  // what a list that is read back will be cannot be told
  Where().szStep = "a command";
  ++Tallies()["commands of the operator"];
  auto& aMachine = ThisMachine();
  const auto lFaults = aMachine.lStoreFaults;
  const bool bFew = aBook.aList.aSites.size() < 4;
  if (aRandom.Chance(0.05))
    aMachine.KillAt(aRandom.Between(1, aRandom.Chance(0.5) ? 200 : 2000), aRandom.Chance(0.5));
  // Where single writes fail, hardly a long command gets as far as its commit.
  if (aRandom.Chance(0.05)) aMachine.aTroubles = {.lStoreRead = 10, .lStoreWrite = 30, .lStoreCommit = 300};
  if (aRandom.Chance(0.03)) aMachine.aTroubles = {.lStoreCommit = 500};
  if (aRandom.Chance(0.15)) aMachine.aTroubles = {.lStoreRead = 4};  // a command that sees it gives up
  // Only so does a long one go on after a failure in its middle and meet no further one.
  if (aRandom.Chance(0.3)) aMachine.aTroubles = {.lOneCall = aRandom.Between(1, 200)};
  // What is owed must outlive a list that is read back.
  switch (aBook.aList.OwesAny() && aRandom.Chance(0.5) ? aRandom.Between(2, 3) : aRandom.Below(8)) {
    case 0:
    case 1:
      Commands::Add(aBook, aRandom);
      break;
    case 2:
    case 3:
      (bFew || aRandom.Chance(0.5) ? Commands::Import : Commands::Delete)(aBook, aRandom);
      break;
    case 4:
      Commands::Export(aBook, aRandom);
      break;
    case 5:
      Commands::ChangeOptions(aBook, aRandom);
      break;
    default:
      if (!aBook.aList.aSites.empty())
        Commands::Edit(aBook, aRandom,
                       aRandom.Between(1, static_cast<std::int32_t>(aBook.aList.aSites.size())));
      break;
  }
  aMachine.aTroubles = {};
  bTrouble = aMachine.lStoreFaults != lFaults;
  if (!aMachine.Dead() && !bTrouble) pDesk->Refill();
}

void Trial::ChangeClocks() {
  auto& aMachine = ThisMachine();
  if (aRandom.Chance(0.5))
    return aMachine.SetBack(aRandom.Between(-3.0, 3.0) * (aRandom.Chance(0.3) ? dSecondsPerDay : 3600));
  aMachine.Sleep(aRandom.Between(60.0, 200000.0));
}

// Without a limit the operator makes room; and a log that a kill has torn is read once more and then put
// away.
void Trial::ForgetOldLogs() {
  if (ThisMachine().Dead()) return;
  Where().szStep = "the log is read back";
  aBook.aLog.ReadBack(false);
  if (aBook.aLog.LineCount() < lMostLogLines && !(ThisMachine().aDisk.lTorn > 0 && aRandom.Chance(0.2)))
    return;
  aBook.aLog.ReadBack(true);
  aBook.aLog.ForgetAll();
}

void Trial::RequireNothingGrew() {
  const auto aSize = Store::Measure();
  RequireSame("the number of open keys", static_cast<std::int64_t>(aSize.lOpenKeys), 0);
  RequireSame("the number of open brackets", aSize.lBrackets, 0);
  const auto lSites = aBook.aList.aSites.size();
  if (aSize.lKeys > 40 + lSites || aSize.lValues > 40 + 8 * lSites) Violate("the store grows");
  if (ThisMachine().aDisk.aFiles.size() > 2000) Violate("the number of files grows");
}

}  // namespace Simulated
