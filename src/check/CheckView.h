// CheckView: everything the check engine shows. The main window is one, the terminal another, a test's
// recorder a third. Slots are site numbers; a view without a row for a slot ignores the call.
#pragma once

#include <cstdint>
#include <string>

class CheckView {
 public:
  virtual ~CheckView() = default;

  // Status bar: panel 1 the clock, 2 the pass state or the next check, 3 the last check.
  virtual void ShowPanel(int iPanel, const std::string& szText) = 0;

  // The list: column 4 carries the light (icon 1 up, 2 warning, 3 down), column 5 the remark.
  virtual void ClearRemarks() = 0;
  virtual void EnsureRowVisible(std::int32_t lSlot) = 0;
  virtual void ShowLight(std::int32_t lSlot, std::int16_t iIcon) = 0;
  virtual void ShowLightText(std::int32_t lSlot, const std::string& szText) = 0;
  virtual void ShowRemark(std::int32_t lSlot, const std::string& szText) = 0;
  // The outcome of a site is recorded and its log entry written.
  virtual void SiteRecorded(std::int32_t /*lSlot*/) {}

  // The progress window. Opening empties both labels and takes no focus; closing one that is not open is
  // fine.
  virtual bool IsMinimised() = 0;
  virtual void OpenProgress() = 0;
  virtual void CloseProgress() = 0;
  virtual void ShowProgressSite(const std::string& szText) = 0;
  virtual void ShowProgressStatus(const std::string& szText) = 0;

  virtual void ShowMessage(const std::string& szText) = 0;
  // What the operator must know of the pass that is ending beside its sites: something could not be kept. A
  // line, not a box; the pass is still wound down.
  virtual void ReportTrouble(const std::string& /*szText*/) {}
  virtual void SoundBell() = 0;
  // A pass begins or has ended: the commands that must not run meanwhile rest, in the order of the menus.
  virtual void LockCommands(bool bLock) = 0;
  virtual void EnableAutoTimer(bool bEnable) = 0;

  // Handles the pending events: clicks, timers. Called about every 10 ms while a request is in flight.
  virtual void PumpEvents() = 0;
};
