#include "simulated/Desk.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "check/Schedule.h"
#include "simulated/Commands.h"
#include "simulated/Violation.h"

namespace Simulated {

Desk::Desk(PassBook& aTheBook, Random& aTheRandom) : aBook(aTheBook), aRandom(aTheRandom), aEngine(*this) {
}

void Desk::Tick() {
  if (std::abs(aBook.SecondsToDue()) < 1e-3) ThisMachine().Pass(0.005);  // no rounding shall decide
  ThisMachine().dNextTick = ThisMachine().Boot() + 1 + 0.02 * aRandom.Real();
  aBook.BeforeTick();
  aEngine.TimerMain_Timer();
  if (ThisMachine().Dead()) return;
  aBook.AfterTick();
  if (!bAutoTimer) return;
  const bool bDue = aBook.IsDue() && !aBook.Running() && !bExited;
  const auto lBefore = Tallies()["passes"];
  const bool bEmpty = aBook.aList.aSites.empty();
  if (bDue && bEmpty) aBook.SetNext(std::max(1, aBook.aOptions.aNow.Interval));
  aEngine.TimerAutoCheck_Timer();
  if (ThisMachine().Dead()) return;
  RequireSame("the number of passes that this tick starts", Tallies()["passes"] - lBefore,
              bDue && !bEmpty ? 1 : 0);
  if (!bDue || !bEmpty) return;
  aBook.CompareNext();
  RequireSame("the panel of the next check", szPanel2, "Next: " + FormatTimeOfDay(NextCheckTime));
  RequireSame("the panel of the last check", szPanel3, "No sites to check.");
}

void Desk::Refill() {
  aLights.clear();
  for (const auto& aSite : aBook.aList.aSites)
    aLights.push_back(aSite.iLight);
}

void Desk::ClickStart() {
  const auto lBefore = Tallies()["passes"];
  const bool bMay = !aBook.Running() && !bExited;
  const bool bEmpty = aBook.aList.aSites.empty();
  if (bMay && bEmpty) aBook.SetNext(std::max(1, aBook.aOptions.aNow.Interval));
  if (bMay) aMessages.clear();  // else the box of a click before this one may still be open
  bByHand = bMay;
  aEngine.mF_StartCheck_Click();
  bByHand = false;
  if (ThisMachine().Dead()) return;
  RequireSame("the number of passes that a click starts", Tallies()["passes"] - lBefore,
              bMay && !bEmpty ? 1 : 0);
  if (bMay && bEmpty)
    Require(aMessages == std::vector<std::string>{"No sites to check."}, "an empty list is not said");
}

void Desk::ClickStop() {
  const bool bRuns = aBook.Running();
  if (!bRuns) aMessages.clear();
  aBook.Stop(false);
  aEngine.StopCheck();
  if (ThisMachine().Dead() || bRuns) return;
  Require(aMessages == std::vector<std::string>{"Checking is not in progress."},
          "a stop without a pass is not said");
}

void Desk::ClickExit() {
  bExited = true;
  aBook.Stop(true);
  aEngine.Quit();
}

void Desk::ShowPanel(int iPanel, const std::string& szText) {
  if (iPanel == 2) szPanel2 = szText;
  if (iPanel == 3) szPanel3 = szText;
}

void Desk::ShowLight(std::int32_t lSlot, std::int16_t iIcon) {
  if (ThisMachine().Dead()) return;
  aBook.ShowsLight(lSlot, iIcon);
  aLights[static_cast<std::size_t>(lSlot) - 1] = iIcon;
}

void Desk::ReportTrouble(const std::string& szText) {
  if (Traced()) Trace(szText);
  aSaid.push_back(szText);
}

// A box that waits for its operator lets the timers run.
void Desk::ShowMessage(const std::string& szText) {
  if (ThisMachine().Dead()) return;
  aMessages.push_back(szText);
  if (!bActing && !bExited && aRandom.Chance(0.2)) LeaveBoxOpen(aRandom.Between(0.0, 30.0));
}

void Desk::LockCommands(bool bLock) {
  if (ThisMachine().Dead()) return;
  Require(bLock != bLocked, "the commands are locked or unlocked twice");
  bLocked = bLock;
  if (!bLock) return ComparePassEnd();
  aBook.Begin(std::exchange(bByHand, false));
  aSaid.clear();
  szStarted = FormatTimeOfDay(ThisMachine().Second());
}

void Desk::ComparePassEnd() {
  aBook.End();
  aBook.Says(aSaid, aEngine.AllKept());
  RequireSame("the panel of the next check", szPanel2, "Next: " + FormatTimeOfDay(NextCheckTime));
  RequireSame("the panel of the last check", szPanel3, "Last: " + szStarted);
  Require(!bProgress, "the progress window stays open");
  for (std::size_t i = 0; i < aLights.size(); ++i)
    if (aLights[i] != aBook.aList.aSites[i].iLight)
      RequireSame("the light of site " + std::to_string(i + 1), aLights[i], aBook.aList.aSites[i].iLight);
}

void Desk::PumpEvents() {
  if (ThisMachine().Dead()) return;
  if (ThisMachine().Boot() >= ThisMachine().dNextTick) Tick();
  if (ThisMachine().Dead() || bActing || lEventsToAct == 0 || --lEventsToAct > 0) return;
  bActing = true;
  ++Tallies()["acts of the operator in a pass"];
  ActInPass();
  bActing = false;
}

void Desk::LeaveBoxOpen(double dSeconds) {
  const auto dUntil = ThisMachine().Boot() + dSeconds;
  while (!ThisMachine().Dead() && ThisMachine().Boot() < dUntil) {
    ThisMachine().Pass(aRandom.Between(0.02, 0.4));
    aEngine.ServeClient();
    if (!ThisMachine().Dead() && ThisMachine().Boot() >= ThisMachine().dNextTick) Tick();
  }
}

void Desk::ActInPass() {
  Where().szStep = "the operator acts in a pass";
  switch (aRandom.Below(9)) {
    case 0:
      return ClickStop();
    case 1:
      return ClickExit();
    case 2:
      return LeaveBoxOpen(aRandom.Between(0.5, 20.0));
    case 3:
      return ClickStart();  // which must do nothing
    case 4:
      ThisMachine().SetBack(aRandom.Between(-90000.0, 90000.0));
      break;
    case 5:
      ThisMachine().Sleep(aRandom.Between(5.0, 50000.0));
      aBook.Awake();
      break;
    case 6:
      // Stopped by a signal, or a machine that stalls: here, or where the client waits.
      ThisMachine().dStall = aRandom.Between(2.1, 40.0);
      if (aRandom.Chance(0.5)) return;
      ThisMachine().Pass(std::exchange(ThisMachine().dStall, 0));
      aBook.Awake();
      break;
    default:
      return EditInPass();
  }
  if (aRandom.Chance(0.5)) Tick();
}

// An editor that was opened before the pass is closed with OK.
void Desk::EditInPass() {
  const auto aTroubles = std::exchange(ThisMachine().aTroubles, {});
  const auto lSites = static_cast<std::int32_t>(aBook.aList.aSites.size());
  if (lSites == 0 || aRandom.Chance(0.3)) {
    Commands::Add(aBook, aRandom);
  } else {
    const bool bHere = aBook.SlotInFlight() > 0 && aRandom.Chance(0.5);
    const auto lDropped =
        Commands::Edit(aBook, aRandom, bHere ? aBook.SlotInFlight() : aRandom.Between(1, lSites));
    if (lDropped > 0) {
      aBook.Drop(lDropped);
      aEngine.DropRequest(lDropped);
    }
  }
  Refill();
  ThisMachine().aTroubles = aTroubles;
}

}  // namespace Simulated
