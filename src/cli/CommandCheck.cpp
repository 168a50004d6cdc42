// check and watch: the engine in a terminal.
#include <algorithm>
#include <iostream>
#include <sstream>

#include "base/Strings.h"
#include "check/CheckEngine.h"
#include "check/CookiePolicy.h"
#include "check/Schedule.h"
#include "cli/CliCommands.h"
#include "cli/PassView.h"
#include "cli/Report.h"
#include "cli/SiteChoice.h"
#include "cli/WatchView.h"
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

// What the log misses of the pass is said.
bool LogIsWhole() {
  const auto lMissing = CheckLog::TakeMissingLines();
  if (lMissing == 1) Report::Complain(FillResString(IDS_LOG_LINE_MISSING, {CheckLog::CurrentLogFile}));
  if (lMissing > 1)
    Report::Complain(
        FillResString(IDS_LOG_LINES_MISSING, {std::to_string(lMissing), CheckLog::CurrentLogFile}));
  return lMissing == 0;
}

int OutcomeOf(const std::set<std::int32_t>& aSlots) {
  const bool bAllUp = std::all_of(aSlots.begin(), aSlots.end(), [](std::int32_t n) {
    return !modAddress::Site(n).TakesPart() || modAddress::Site(n).Status == SiteStatus::iUp;
  });
  return bAllUp ? Report::iAllUp : Report::iNotAllUp;
}

// A monitoring system calls a plugin for each of its services, several at the same moment, and each is to
// have its turn; it waits a minute for the answer.
bool LockInTurn(SingleInstance& aInstance, bool bPlugin) {
  constexpr double dPatience = 30;  // seconds
  constexpr double dPause = 0.1;
  for (double dWaited = 0; !aInstance.TryLock(); dWaited += dPause) {
    if (!bPlugin || dWaited > dPatience) return false;
    Clock::Wait(dPause);
  }
  return true;
}

// A pass for a script or a person: its exit code.
int CheckOnce(const PassOptions& aOptions, PassView& aView) {
  if (!Report::OpenStore()) return Report::iFailed;
  SingleInstance aInstance;
  if (!LockInTurn(aInstance, aOptions.bPlugin))
    return Report::Fail(FillResString(IDS_CLI_IN_USE, {Registry::StoreName()}));
  if (!Load(aInstance, aOptions.bRestart)) return Report::iFailed;

  const auto aSlots = SiteChoice::Read(aOptions.szSite);
  if (!aSlots) return Report::iFailed;
  const auto TakesPart = [](std::int32_t n) { return modAddress::Site(n).TakesPart(); };
  if (!aOptions.szSite.empty() && std::none_of(aSlots->begin(), aSlots->end(), TakesPart))
    return Report::Fail(FillResString(IDS_CLI_ONLY_DISABLED, {aOptions.szSite}));

  Terminal::CatchInterrupt();
  CheckEngine aEngine(aView);
  aView.Attach(aEngine);
  aView.aSlots = *aSlots;
  if (aOptions.szSite.empty())
    aEngine.mF_StartCheck_Click();
  else
    aEngine.StartCheckOf(*aSlots);
  const bool bKept = LogIsWhole() && aEngine.AllKept();
  const bool bWritten = aView.PassesStarted() == 0 || aView.EndPass();
  if (aView.WasStopped() && Terminal::InterruptSignal() != 0)
    return Report::iSignalBase + Terminal::InterruptSignal();
  if (aView.WasStopped()) return Report::Fail(LoadResString(IDS_CLI_OUTPUT_CLOSED));
  return bKept && bWritten ? OutcomeOf(*aSlots) : Report::iFailed;
}

// While it lives standard error goes nowhere but into the text: who calls a plugin reads standard output
// alone.
class ErrorsKept {
 public:
  explicit ErrorsKept(std::string& szText) : szKept(szText), pBefore(std::cerr.rdbuf(aErrors.rdbuf())) {}
  ~ErrorsKept() {
    std::cerr.rdbuf(pBefore);
    szKept = aErrors.str();
  }
  ErrorsKept(const ErrorsKept&) = delete;
  ErrorsKept& operator=(const ErrorsKept&) = delete;

 private:
  std::ostringstream aErrors;
  std::string& szKept;
  std::streambuf* const pBefore;
};

}  // namespace

int CliCommands::Check(const PassOptions& aOptions) {
  PassView aView(aOptions, true);
  if (!aOptions.bPlugin) return CheckOnce(aOptions, aView);
  std::string szErrors;
  {
    const ErrorsKept aErrors(szErrors);
    CheckOnce(aOptions, aView);
  }
  return aView.AnswerAsPlugin(szErrors.substr(0, szErrors.find('\n')));
}

int CliCommands::Watch(const PassOptions& aOptions) {
  if (!Report::OpenStore()) return Report::iFailed;
  SingleInstance aInstance;
  if (!aInstance.TryLock()) return Report::Fail(FillResString(IDS_CLI_IN_USE, {Registry::StoreName()}));
  if (!Load(aInstance, false)) return Report::iFailed;

  Terminal::CatchInterrupt();
  WatchView aView(aOptions);
  CheckEngine aEngine(aView);
  aView.Attach(aEngine);
  Schedule::SetNextCheck(WarningMinutes());
  aView.ShowStart();
  if (Settings.LogPeriod != 0 && !Files::FolderExists(Settings.LogPath))
    Report::Complain(FillResString(IDS_CLI_NO_LOG_FOLDER, {Settings.LogPath}));
  while (!Terminal::Interrupted() && !Terminal::OutputClosed()) {
    aView.TickMainTimer();
    const std::int32_t lPassesBefore = aView.PassesStarted();
    aEngine.TimerAutoCheck_Timer();
    if (aView.PassesStarted() != lPassesBefore) {
      LogIsWhole();
      aView.EndPass();
    }
    if (!Terminal::Interrupted()) Clock::Wait(dIdleSeconds);
  }
  if (!Terminal::Interrupted()) return Report::Fail(LoadResString(IDS_CLI_OUTPUT_CLOSED));
  aView.ShowEnd();
  if (!aEngine.AllKept()) modAddress::SaveAgain();
  return modAddress::UnsavedSites() == 0 ? Report::iAllUp : Report::iFailed;
}
