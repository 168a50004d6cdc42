// QuietView: a view that shows nothing. For runs that nobody watches, and as the base of views that show
// little.
#pragma once

#include "check/CheckView.h"

class QuietView : public CheckView {
 public:
  void ShowPanel(int, const std::string&) override {}
  void ClearRemarks() override {}
  void EnsureRowVisible(std::int32_t) override {}
  void ShowLight(std::int32_t, std::int16_t) override {}
  void ShowLightText(std::int32_t, const std::string&) override {}
  void ShowRemark(std::int32_t, const std::string&) override {}
  bool IsMinimised() override { return false; }
  void OpenProgress() override {}
  void CloseProgress() override {}
  void ShowProgressSite(const std::string&) override {}
  void ShowProgressStatus(const std::string&) override {}
  void ShowMessage(const std::string&) override {}
  void SoundBell() override {}
  void LockCommands(bool) override {}
  void EnableAutoTimer(bool) override {}
  void PumpEvents() override {}
};
