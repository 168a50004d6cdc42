#include "app/Commands.h"

#include "app/frmWelcome.h"

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
      return nullptr;
    case CommandNumber(MenuCommand::mnuLogs_ViewCur):
      return nullptr;
    case CommandNumber(MenuCommand::mH_About):
      return nullptr;
    case mH_Topics:
      return nullptr;
    case mH_Tour:
      return StartTour;
    case mH_Updates:
      return nullptr;
    default:
      return nullptr;
  }
}
