#include "ui/main/Commands.h"

#include "ui/common/HelpCommands.h"
#include "ui/dialogs/ExchangeCommands.h"
#include "ui/dialogs/LogCommands.h"
#include "ui/dialogs/SiteCommands.h"
#include "ui/dialogs/frmAbout.h"

// The one place where a menu item meets its dialog: include the dialog's header, name its function here.
// nullptr greys the item.
Commands::Action Commands::ActionOf(int lCommand) {
  switch (lCommand) {
    case CommandNumber(MenuCommand::mF_NewAddress):
      return SiteCommands::NewAddress;
    case CommandNumber(MenuCommand::mF_Import):
      return ExchangeCommands::ImportList;
    case CommandNumber(MenuCommand::mF_Export):
      return ExchangeCommands::ExportList;
    case CommandNumber(MenuCommand::mE_EditAddress):
      return SiteCommands::EditAddress;
    case CommandNumber(MenuCommand::mE_DelAddress):
      return SiteCommands::DeleteAddress;
    case CommandNumber(MenuCommand::mE_Options):
      return SiteCommands::Options;
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
