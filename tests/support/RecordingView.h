// RecordingView: a view that writes down what the engine shows, and lets a test act in the middle of a pass.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "check/QuietView.h"

class RecordingView : public QuietView {
 public:
  std::vector<std::string> aEvents;  // in order; the clock panel and progress states are left out
  std::vector<std::string> aStates;  // the progress window's status line
  std::vector<std::string> aMessages;
  std::function<void()> OnPump;  // called at every PumpEvents

  // True when the event was recorded.
  bool Has(const std::string& szEvent) const { return std::ranges::find(aEvents, szEvent) != aEvents.end(); }

  void ShowPanel(int iPanel, const std::string& szText) override {
    if (iPanel != 1) Note("panel", iPanel, ": " + szText);
  }
  void ClearRemarks() override { aEvents.emplace_back("remarks cleared"); }
  void EnsureRowVisible(std::int32_t lSlot) override { Note("visible", lSlot); }
  void ShowLight(std::int32_t lSlot, std::int16_t iIcon) override {
    Note("light", lSlot, ": " + std::to_string(iIcon));
  }
  void ShowLightText(std::int32_t lSlot, const std::string& szText) override {
    Note("light text", lSlot, ": " + szText);
  }
  void ShowRemark(std::int32_t lSlot, const std::string& szText) override {
    Note("remark", lSlot, ": " + szText);
  }
  void SiteRecorded(std::int32_t lSlot) override { Note("recorded", lSlot); }
  void OpenProgress() override { aEvents.emplace_back("progress opened"); }
  void CloseProgress() override { aEvents.emplace_back("progress closed"); }
  void ShowProgressSite(const std::string& szText) override { aEvents.push_back("progress " + szText); }
  void ShowProgressStatus(const std::string& szText) override { aStates.push_back(szText); }
  void ShowMessage(const std::string& szText) override { aMessages.push_back(szText); }
  void LockCommands(bool bLock) override { aEvents.emplace_back(bLock ? "locked" : "unlocked"); }
  void EnableAutoTimer(bool bEnable) override { aEvents.emplace_back(bEnable ? "timer on" : "timer off"); }
  void PumpEvents() override {
    if (OnPump) OnPump();
  }

 private:
  void Note(const char* szWhat, std::int32_t lNumber, const std::string& szText = {}) {
    aEvents.push_back(std::string(szWhat) + " " + std::to_string(lNumber) + szText);
  }
};
