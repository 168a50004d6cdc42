// Commands: the numbers of the main window's commands, and which function carries out each one that lives in
// a dialog. A command without a function is greyed.
#pragma once

#include <wx/defs.h>

#include "check/CheckView.h"

class MainHost;

// The locked commands come first, in their own order, so that a number is its MenuCommand plus lFirstCommand.
inline constexpr int lFirstCommand = wxID_HIGHEST + 1;
constexpr int CommandNumber(MenuCommand iCommand) {
  return lFirstCommand + static_cast<int>(iCommand);
}
enum UnlockedCommand : int {
  mF_StopCheck = lFirstCommand + lLockedCommands,
  mH_Topics,
  mH_Tour,
  mH_Updates,
  mnuTray_Restore,
  mnuTray_Exit,
  lCommandsEnd
};
constexpr bool IsLockedDuringPass(int lCommand) {
  return lCommand >= lFirstCommand && lCommand < lFirstCommand + lLockedCommands;
}

namespace Commands {

using Action = void (*)(MainHost&);

// What carries the command out; nullptr for none. The main window's own commands have none here.
Action ActionOf(int lCommand);

}  // namespace Commands
