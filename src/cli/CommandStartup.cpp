// startup: whether the monitor starts by itself.
#include "base/Strings.h"
#include "base/Text.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "platform/Startup.h"

int CliCommands::Startup(StartupWish iWish) {
  const auto aAnswer = iWish == StartupWish::On    ? Startup::TurnOn()
                       : iWish == StartupWish::Off ? Startup::TurnOff()
                                                   : Startup::Read();
  if (aAnswer.iResult == Startup::Result::NotWritten)
    return Report::Fail(FillResString(IDS_CLI_STARTUP_FAILED, {aAnswer.szWhere}));
  const auto iOn = aAnswer.bLogin ? IDS_CLI_STARTUP_WATCH : IDS_CLI_STARTUP_ON;
  Report::Say(aAnswer.bOn ? Text::Printable(FillResString(iOn, {aAnswer.szWhere}))
                          : LoadResString(IDS_CLI_STARTUP_OFF));
  if (aAnswer.bOn && aAnswer.bLogin) Report::Say(LoadResString(IDS_CLI_STARTUP_LINGER));
  if (aAnswer.iResult == Startup::Result::Untold) return Report::Fail(LoadResString(IDS_CLI_STARTUP_BY_HAND));
  return Report::iAllUp;
}
