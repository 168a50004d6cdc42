#include "ui/main/Commands.h"

#include <algorithm>
#include <iterator>

#include "base/Strings.h"
#include "ui/common/HelpCommands.h"
#include "ui/dialogs/ExchangeCommands.h"
#include "ui/dialogs/LogCommands.h"
#include "ui/dialogs/SiteCommands.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/main/frmMain.h"

using namespace Commands;

namespace {

// Carried out by a dialog's own function.
template <void (*pFunction)(MainHost&)>
void By(frmMain& aMain) {
  pFunction(aMain);
}

template <std::int16_t iResult>
void ShowResult(frmMain& aMain) {
  aMain.ShowOnly(iResult, aMain.EnabledFilter);
}

template <std::int16_t iEnabled>
void ShowEnabled(frmMain& aMain) {
  aMain.ShowOnly(aMain.ResultFilter, iEnabled);
}

void Exit(frmMain& aMain) {
  aMain.Close();
}

void StartCheck(frmMain& aMain) {
  aMain.StartCheck();
}

void CheckSite(frmMain& aMain) {
  aMain.CheckSelected();
}

void StopCheck(frmMain& aMain) {
  aMain.StopCheck();
}

void Restore(frmMain& aMain) {
  aMain.RestoreWindow();
}

constexpr std::int32_t lFile = IDS_MENU_FILE, lEdit = IDS_MENU_EDIT, lView = IDS_MENU_VIEW,
                       lLogs = IDS_MENU_LOGS, lHelp = IDS_MENU_HELP, lTray = 0, lNoPop = 0;

constexpr Command aCommands[] = {
    {mF_NewAddress, lFile, IDS_NEW_ADDRESS, "Ctrl+N", "", IDS_POP_NEW, Locked, By<SiteCommands::NewAddress>},
    {mF_Import, lFile, IDS_IMPORT_LIST, "Ctrl+I", "", lNoPop, Locked, By<ExchangeCommands::ImportList>},
    {mF_Export, lFile, IDS_EXPORT_LIST, "Ctrl+E", "", lNoPop, Locked, By<ExchangeCommands::ExportList>},
    {mF_StartCheck, lFile, IDS_START_CHECK, "Ctrl+S", "F5", IDS_POP_CHECK, Locked | Separated, StartCheck},
    {mF_StopCheck, lFile, IDS_STOP_CHECK, "Ctrl+.", "", lNoPop, None, StopCheck},
    {mF_Exit, lFile, IDS_EXIT, "", "", lNoPop, Locked | Separated, Exit},
    {mE_EditAddress, lEdit, IDS_EDIT_ADDRESS, "", "Enter", IDS_POP_EDIT, Locked,
     By<SiteCommands::EditAddress>},
    {mE_DelAddress, lEdit, IDS_DELETE_ADDRESS, "Del", "", IDS_POP_DELETE, Locked,
     By<SiteCommands::DeleteAddress>},
    {mE_CheckSite, lEdit, IDS_CHECK_SITE, "Ctrl+F5", "", lNoPop, Locked | Separated, CheckSite},
    {mE_OpenSite, lEdit, IDS_OPEN_SITE, "Ctrl+B", "", lNoPop, None, By<SiteCommands::OpenSite>},
    {mE_CopyAddress, lEdit, IDS_COPY_ADDRESS, "Ctrl+C", "", lNoPop, None, By<SiteCommands::CopyAddress>},
    {mE_SiteLog, lEdit, IDS_SITE_LOG, "Ctrl+L", "", lNoPop, None, By<LogCommands::ViewSite>},
    {mE_Options, lEdit, IDS_OPTIONS, "Ctrl+O", "", lNoPop, Locked | Separated, By<SiteCommands::Options>},
    {mV_All, lView, IDS_VIEW_ALL, "", "", lNoPop, Locked | Radio, ShowResult<0>},
    {mV_Successful, lView, IDS_VIEW_SUCCESSFUL, "", "", lNoPop, Locked | Radio, ShowResult<1>},
    {mV_Warning, lView, IDS_VIEW_WARNING, "", "", lNoPop, Locked | Radio, ShowResult<2>},
    {mV_Unsuccessful, lView, IDS_VIEW_UNSUCCESSFUL, "", "", lNoPop, Locked | Radio, ShowResult<3>},
    {mV_Both, lView, IDS_VIEW_BOTH, "", "", lNoPop, Locked | Radio | Separated, ShowEnabled<0>},
    {mV_Enabled, lView, IDS_VIEW_ENABLED, "", "", lNoPop, Locked | Radio, ShowEnabled<1>},
    {mV_Disabled, lView, IDS_VIEW_DISABLED, "", "", lNoPop, Locked | Radio, ShowEnabled<2>},
    {mnuLog_Open, lLogs, IDS_OPEN_LOG, "", "", lNoPop, Locked, By<LogCommands::Open>},
    {mnuLogs_ViewCur, lLogs, IDS_VIEW_CURRENT_LOG, "", "", lNoPop, Locked, By<LogCommands::ViewCurrent>},
    {mH_Topics, lHelp, IDS_HELP_TOPICS, "F1", "", lNoPop, None, By<HelpCommands::Topics>},
    {mH_Tour, lHelp, IDS_INTERACTIVE_TOUR, "", "", lNoPop, None, By<HelpCommands::Tour>},
    {mH_Updates, lHelp, IDS_UPDATES, "", "", lNoPop, None, By<HelpCommands::Updates>},
    {mH_About, lHelp, IDS_ABOUT, "", "", lNoPop, Locked | Separated, By<ShowAbout>},
    {mnuTray_Restore, lTray, IDS_TRAY_RESTORE, "", "", lNoPop, None, Restore},
    {mnuTray_Exit, lTray, IDS_TRAY_EXIT, "", "", lNoPop, None, Exit},
};

constexpr bool NumbersAreTheirPlaces() {
  int lExpected = mF_NewAddress;
  return std::all_of(std::begin(aCommands), std::end(aCommands),
                     [&](const Command& aCommand) { return aCommand.iNumber == lExpected++; }) &&
         lExpected == lCommandsEnd;
}
static_assert(NumbersAreTheirPlaces());

}  // namespace

std::span<const Commands::Command> Commands::All() {
  return aCommands;
}

const Commands::Command* Commands::Find(int lNumber) {
  return lNumber >= mF_NewAddress && lNumber < lCommandsEnd ? &aCommands[lNumber - mF_NewAddress] : nullptr;
}
