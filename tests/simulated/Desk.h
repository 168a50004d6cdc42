// Desk: the screen, and the operator who sits before it. It is the engine's view: it passes on what is shown
// to the book, ticks the timers, and lets the operator act whenever events are handled.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "check/CheckEngine.h"
#include "check/QuietView.h"
#include "simulated/PassBook.h"
#include "simulated/Random.h"

namespace Simulated {

class Desk : public QuietView {
 public:
  Desk(PassBook& aTheBook, Random& aTheRandom);

  void Tick();    // both timers
  void Refill();  // the list, after a change
  void ClickStart();
  void ClickStop();
  void ClickExit();

  // The number of events until the operator does something in this pass; 0: nothing.
  int lEventsToAct = 0;
  bool bExited = false;
  std::vector<std::string> aMessages;

  void ShowPanel(int iPanel, const std::string& szText) override;
  void ShowLight(std::int32_t lSlot, std::int16_t iIcon) override;
  void ShowRemark(std::int32_t lSlot, const std::string& szText) override {
    if (!ThisMachine().Dead()) aBook.ShowsRemark(lSlot, szText);
  }
  void SiteRecorded(std::int32_t lSlot) override {
    if (!ThisMachine().Dead()) aBook.Recorded(lSlot);
  }
  void OpenProgress() override { bProgress = true; }
  void CloseProgress() override { bProgress = false; }
  void ShowMessage(const std::string& szText) override;
  void ReportTrouble(const std::string& szText) override;
  void SoundBell() override {
    if (!ThisMachine().Dead()) aBook.Rings();
  }
  void LockCommands(bool bLock) override;
  void EnableAutoTimer(bool bEnable) override { bAutoTimer = bEnable; }
  void PumpEvents() override;

 private:
  void ActInPass();
  void LeaveBoxOpen(double dSeconds);
  void EditInPass();
  void ComparePassEnd();

  PassBook& aBook;
  Random& aRandom;
  CheckEngine aEngine;
  bool bAutoTimer = true, bByHand = false, bActing = false, bProgress = false;
  bool bLocked = false;
  std::string szPanel2, szPanel3, szStarted;
  std::vector<std::string> aSaid;  // of the pass
  std::vector<int> aLights;        // by slot - 1
};

}  // namespace Simulated
