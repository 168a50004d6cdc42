#include "app/Commands.h"

#include "app/frmAbout.h"
#include "dialogs/HelpCommands.h"
#include "dialogs/LogCommands.h"

// The one place where a menu item meets its dialog: include the dialog's header, name its function here.
// nullptr greys the item.
Commands::Action Commands::ActionOf(int lCommand) {
  switch (lCommand) {
    case CommandNumber(MenuCommand::mF_NewAddress):
      return nullptr;
    case CommandNumber(MenuCommand::mF_Import):
      return nullptr;
    case CommandNumber(MenuCommand::mF_Export):
      return nullptr;
    case CommandNumber(MenuCommand::mE_EditAddress):
      return nullptr;
    case CommandNumber(MenuCommand::mE_DelAddress):
      return nullptr;
    case CommandNumber(MenuCommand::mE_Options):
      return nullptr;
    case CommandNumber(MenuCommand::mnuLog_Open):
      return LogCommands::Open;
    case CommandNumber(MenuCommand::mnuLogs_ViewCur):
      return LogCommands::ViewCurrent;
    case CommandNumber(MenuCommand::mH_About):
      return ShowAbout;
    case mH_Topics:
      return HelpCommands::Topics;
    case mH_Tour:
      return HelpCommands::Tour;
    case mH_Updates:
      return HelpCommands::Updates;
    default:
      return nullptr;
  }
}
