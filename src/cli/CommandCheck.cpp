// check and watch: the engine in a terminal.
#include <algorithm>
#include <iostream>

#include "base/Strings.h"
#include "check/CheckEngine.h"
#include "check/CookiePolicy.h"
#include "check/Schedule.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "cli/TerminalView.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/SingleInstance.h"
#include "platform/Terminal.h"

namespace {

// How long an interrupt may wait while nothing is being checked.
constexpr double dIdleSeconds = 0.1;

bool Load(const SingleInstance& /*aHeld*/, bool bRestart) {
  CookiePolicy::RestoreAfterKill();
  LoadSettings();
  // A rebuild that was killed half-way is healed by the next one.
  return Report::LoadRebuilt(!bRestart);
}

// After a pass: what could not be stored meanwhile is tried once more, and what could not be kept is said.
bool AllWasKept() {
  const auto szSaid = modAddress::SaveAgain();
  if (!szSaid.empty()) Report::Complain(szSaid);
  const auto lMissing = CheckLog::TakeMissingLines();
  if (lMissing > 0)
    Report::Complain(
        FillResString(IDS_CLI_LOG_MISSING, {std::to_string(lMissing), CheckLog::CurrentLogFile}));
  return modAddress::UnsavedSites() == 0 && lMissing == 0;
}

int OutcomeOfSites() {
  const bool bAllUp = std::all_of(aSites.begin() + 1, aSites.end(), [](const SiteRecord& aSite) {
    return !aSite.TakesPart() || aSite.Status == SiteStatus::iUp;
  });
  return bAllUp ? Report::iAllUp : Report::iNotAllUp;
}

}  // namespace

int CliCommands::Check(bool bRestart) {
  if (!Report::OpenStore()) return Report::iFailed;
  SingleInstance aInstance;
  if (!aInstance.TryLock()) return Report::Fail(FillResString(IDS_CLI_IN_USE, {Registry::StoreName()}));
  if (!Load(aInstance, bRestart)) return Report::iFailed;

  Terminal::CatchInterrupt();
  TerminalView aView;
  CheckEngine aEngine(aView);
  aView.Attach(aEngine);
  aEngine.mF_StartCheck_Click();
  const bool bKept = AllWasKept();
  if (aView.PassesStarted() > 0) aView.ShowSummary();
  if (aView.WasStopped() && Terminal::InterruptSignal() != 0)
    return Report::iSignalBase + Terminal::InterruptSignal();
  if (aView.WasStopped()) return Report::Fail(LoadResString(IDS_CLI_OUTPUT_CLOSED));
  return bKept ? OutcomeOfSites() : Report::iFailed;
}

int CliCommands::Watch() {
  if (!Report::OpenStore()) return Report::iFailed;
  SingleInstance aInstance;
  if (!aInstance.TryLock()) return Report::Fail(FillResString(IDS_CLI_IN_USE, {Registry::StoreName()}));
  if (!Load(aInstance, false)) return Report::iFailed;

  Terminal::CatchInterrupt();
  TerminalView aView;
  CheckEngine aEngine(aView);
  aView.Attach(aEngine);
  aView.bHeadline = true;
  Schedule::SetNextCheck(WarningMinutes());
  Report::Say(FillResString(IDS_CLI_WATCHING, {Report::SiteNumber(lSiteCount), Schedule::NextPanelText()}));
  std::cout.flush();
  if (Settings.LogPeriod != 0 && !Files::FolderExists(Settings.LogPath))
    Report::Complain(FillResString(IDS_CLI_NO_LOG_FOLDER, {Settings.LogPath}));
  bool bKept = true;
  while (!Terminal::Interrupted() && !Terminal::OutputClosed()) {
    aView.TickMainTimer();
    const std::int32_t lPassesBefore = aView.PassesStarted();
    aEngine.TimerAutoCheck_Timer();
    if (aView.PassesStarted() != lPassesBefore) {
      bKept = AllWasKept();
      aView.ShowSummary();
      Report::Say(Schedule::NextPanelText());
      std::cout.flush();
    }
    if (!Terminal::Interrupted()) Clock::Wait(dIdleSeconds);
  }
  if (!Terminal::Interrupted()) return Report::Fail(LoadResString(IDS_CLI_OUTPUT_CLOSED));
  return bKept || AllWasKept() ? Report::iAllUp : Report::iFailed;
}
