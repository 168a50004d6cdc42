// TerminalView: a check pass as a terminal shows it. One line a site when its outcome is recorded; on a
// terminal also one line that rewrites itself with the progress of the request in flight. It ticks the
// engine's clock from inside a pass and turns Ctrl-C into the stop command.
#pragma once

#include <cstdint>
#include <string>

#include "base/DateTime.h"
#include "check/CheckView.h"

class CheckEngine;

class TerminalView : public CheckView {
 public:
  TerminalView();

  // The engine that this view belongs to; needed before the first pass.
  void Attach(CheckEngine& aEngine) { pEngine = &aEngine; }
  // The pass starts with a line that names its time; for passes that nobody started by hand.
  bool bHeadline = false;

  // The main timer's tick, when its second has come.
  void TickMainTimer();

  std::int32_t PassesStarted() const { return lPasses; }
  bool WasStopped() const { return bStopped; }
  // What the last pass found, in one line.
  virtual void ShowSummary();

  void ShowPanel(int iPanel, const std::string& szText) override;
  void ClearRemarks() override;
  void EnsureRowVisible(std::int32_t) override {}
  void ShowLight(std::int32_t lSlot, std::int16_t iStatus) override;
  void ShowLightText(std::int32_t lSlot, const std::string& szText) override;
  void ShowRemark(std::int32_t lSlot, const std::string& szText) override;
  void SiteRecorded(std::int32_t lSlot) override;
  bool IsMinimised() override { return false; }
  void OpenProgress() override;
  void CloseProgress() override;
  void ShowProgressSite(const std::string& szText) override;
  void ShowProgressStatus(const std::string& szText) override;
  void ShowMessage(const std::string& szText) override;
  void ReportTrouble(const std::string& szText) override;
  void SoundBell() override;
  void LockCommands(bool) override {}
  void EnableAutoTimer(bool) override {}
  void PumpEvents() override;

 protected:
  // The outcome of a site, in words that a terminal can show; empty where there is nothing to say.
  struct Outcome {
    std::int32_t lSlot;
    bool bStopped;
    std::string szWord;
    const char* szColour;
    std::string szAddress, szRemark, szElapsed, szComment;
  };
  virtual void ShowOutcome(const Outcome& aOutcome);
  std::string Coloured(const std::string& szWord, const char* szColour) const;
  // A line that the next output takes the place of; on no terminal a line like any other.
  void ShowPassing(const std::string& szLine);
  void ErasePassing();

 private:
  bool OutputClosed();
  void DrawProgress();

  CheckEngine* pEngine = nullptr;
  const bool bTerminal;
  const bool bColour;

  // The site in flight.
  std::string szSite, szStatus, szRemark;
  DateTime dtRequested = 0, dtAnswered = 0;  // steady date-times; 0: not yet
  bool bSiteStopped = false;

  // The line that rewrites itself.
  bool bProgress = false;
  bool bProgressDirty = false;
  std::size_t lDrawnWidth = 0;
  double dNextDraw = 0;

  double dNextTick = 0;
  double dNextLook = 0;
  bool bStopped = false;  // the last pass
  std::int32_t lPasses = 0;
  std::int32_t lChecked = 0, lUp = 0, lWarning = 0, lDown = 0;
  double dPassStarted = 0;
};
