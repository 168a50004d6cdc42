// The main window's commands: menus, keys, pop-ups, and the one way in for all of them.
#include <wx/menu.h>

#include "ui/common/TextGlue.h"
#include "ui/main/Commands.h"
#include "ui/main/frmMain.h"
#include "ui/main/modMain.h"

namespace {

struct Item {
  int lCommand;  // 0 a separator
  std::int32_t lText = 0;
  const char* szKey = "";
  wxItemKind iKind = wxITEM_NORMAL;
};

constexpr int Number(MenuCommand iCommand) {
  return CommandNumber(iCommand);
}

const Item aFile[] = {{Number(MenuCommand::mF_NewAddress), IDS_NEW_ADDRESS, "Ctrl+N"},
                      {Number(MenuCommand::mF_Import), IDS_IMPORT_LIST, "Ctrl+I"},
                      {Number(MenuCommand::mF_Export), IDS_EXPORT_LIST, "Ctrl+E"},
                      {0},
                      {Number(MenuCommand::mF_StartCheck), IDS_START_CHECK, "Ctrl+S"},
                      {mF_StopCheck, IDS_STOP_CHECK},
                      {0},
                      {Number(MenuCommand::mF_Exit), IDS_EXIT}};
const Item aEdit[] = {{Number(MenuCommand::mE_EditAddress), IDS_EDIT_ADDRESS},
                      {Number(MenuCommand::mE_DelAddress), IDS_DELETE_ADDRESS, "Del"},
                      {0},
                      {Number(MenuCommand::mE_Options), IDS_OPTIONS, "Ctrl+O"}};
const Item aView[] = {{Number(MenuCommand::mV_All), IDS_VIEW_ALL, "", wxITEM_RADIO},
                      {Number(MenuCommand::mV_Successful), IDS_VIEW_SUCCESSFUL, "", wxITEM_RADIO},
                      {Number(MenuCommand::mV_Warning), IDS_VIEW_WARNING, "", wxITEM_RADIO},
                      {Number(MenuCommand::mV_Unsuccessful), IDS_VIEW_UNSUCCESSFUL, "", wxITEM_RADIO},
                      {0},
                      {Number(MenuCommand::mV_Both), IDS_VIEW_BOTH, "", wxITEM_RADIO},
                      {Number(MenuCommand::mV_Enabled), IDS_VIEW_ENABLED, "", wxITEM_RADIO},
                      {Number(MenuCommand::mV_Disabled), IDS_VIEW_DISABLED, "", wxITEM_RADIO}};
const Item aLogs[] = {{Number(MenuCommand::mnuLog_Open), IDS_OPEN_LOG},
                      {Number(MenuCommand::mnuLogs_ViewCur), IDS_VIEW_CURRENT_LOG}};
const Item aHelp[] = {{mH_Topics, IDS_HELP_TOPICS, "F1"},
                      {mH_Tour, IDS_INTERACTIVE_TOUR},
                      {mH_Updates, IDS_UPDATES},
                      {0},
                      {Number(MenuCommand::mH_About), IDS_ABOUT}};

template <std::size_t lCount>
wxMenu* BuildMenu(const Item (&aItems)[lCount]) {
  auto* pMenu = new wxMenu;
  for (const Item& aItem : aItems) {
    if (aItem.lCommand == 0) {
      pMenu->AppendSeparator();
      continue;
    }
    wxString szText = ResText(aItem.lText);
    if (*aItem.szKey != '\0') szText << '\t' << aItem.szKey;
    pMenu->Append(aItem.lCommand, szText, "", aItem.iKind);
  }
  return pMenu;
}

bool IsOwnCommand(int lCommand) {
  switch (lCommand) {
    case Number(MenuCommand::mF_StartCheck):
    case Number(MenuCommand::mF_Exit):
    case mF_StopCheck:
    case mnuTray_Restore:
    case mnuTray_Exit:
      return true;
    default:
      return lCommand >= Number(MenuCommand::mV_All) && lCommand <= Number(MenuCommand::mV_Disabled);
  }
}

}  // namespace

void frmMain::BuildMenus() {
  auto* pBar = new wxMenuBar;
  pBar->Append(BuildMenu(aFile), ResText(IDS_MENU_FILE));
  pBar->Append(BuildMenu(aEdit), ResText(IDS_MENU_EDIT));
  pBar->Append(BuildMenu(aView), ResText(IDS_MENU_VIEW));
  pBar->Append(BuildMenu(aLogs), ResText(IDS_MENU_LOGS));
  pBar->Append(BuildMenu(aHelp), ResText(IDS_MENU_HELP));
  SetMenuBar(pBar);
  for (int lCommand = lFirstCommand; lCommand < mnuTray_Restore; ++lCommand)
    pBar->Enable(lCommand, IsOwnCommand(lCommand) || Commands::ActionOf(lCommand));
  pBar->Enable(mF_StopCheck, false);
}

void frmMain::EnableCommand(MenuCommand iCommand, bool bEnable) {
  const int lCommand = Number(iCommand);
  GetMenuBar()->Enable(lCommand, bEnable && (IsOwnCommand(lCommand) || Commands::ActionOf(lCommand)));
  if (iCommand == MenuCommand::mF_StartCheck) GetMenuBar()->Enable(mF_StopCheck, !bEnable);
}

void frmMain::Menu_Click(wxCommandEvent& aEvent) {
  RunCommand(aEvent.GetId());
}

bool frmMain::CommandAllowed(int lCommand) {
  if (lCommand == mnuTray_Restore || lCommand == mnuTray_Exit) return true;
  if (lCommand < lFirstCommand || lCommand >= lCommandsEnd) return false;
  if (bExiting || aEngine.bListBusy || !IsEnabled()) return false;
  if (!IsShown() && !bMinimised) return false;  // on Windows it hears keys behind the splash window
  if (IsLockedDuringPass(lCommand) && aEngine.PassRunning()) return false;
  return GetMenuBar()->IsEnabled(lCommand);
}

void frmMain::RunCommand(int lCommand) {
  if (!CommandAllowed(lCommand)) {
    SoundBell();
    return;
  }
  switch (lCommand) {
    case Number(MenuCommand::mF_StartCheck):
      RunEngine(&CheckEngine::mF_StartCheck_Click);
      break;
    case mF_StopCheck:
      aEngine.StopCheck();
      break;
    case Number(MenuCommand::mF_Exit):
    case mnuTray_Exit:
      modMain::RequestExit();
      break;
    case mnuTray_Restore:
      RestoreWindow();
      break;
    case Number(MenuCommand::mV_All):
    case Number(MenuCommand::mV_Successful):
    case Number(MenuCommand::mV_Warning):
    case Number(MenuCommand::mV_Unsuccessful):
      ResultFilter = static_cast<std::int16_t>(lCommand - Number(MenuCommand::mV_All));
      Check_MnuView();
      Display_lvwMain(0);
      break;
    case Number(MenuCommand::mV_Both):
    case Number(MenuCommand::mV_Enabled):
    case Number(MenuCommand::mV_Disabled):
      EnabledFilter = static_cast<std::int16_t>(lCommand - Number(MenuCommand::mV_Both));
      Check_MnuView();
      Display_lvwMain(0);
      break;
    default:
      Commands::ActionOf(lCommand)(*this);
  }
}

// A pass runs inside its starter. While it does, a timer serves the request in flight too, because an open
// menu or dialog runs its own event loop above the pass's wait.
void frmMain::RunEngine(void (CheckEngine::*pStarter)()) {
  constexpr int lServeMilliseconds = 20;
  const bool bOutermost = !aEngine.PassRunning();
  if (bOutermost) tmrServe.Start(lServeMilliseconds);
  (aEngine.*pStarter)();
  if (!bOutermost) return;
  tmrServe.Stop();
  AfterPass();
}

void frmMain::Check_MnuView() {
  const int lResult = ResultFilter >= 1 && ResultFilter <= 3 ? ResultFilter : 0;
  const int lEnabled = EnabledFilter == 1 || EnabledFilter == 2 ? EnabledFilter : 0;
  GetMenuBar()->Check(Number(MenuCommand::mV_All) + lResult, true);
  GetMenuBar()->Check(Number(MenuCommand::mV_Both) + lEnabled, true);
}

void frmMain::lvwMain_KeyDown(wxKeyEvent& aEvent) {
  const int lKey = aEvent.GetKeyCode();
  int lCommand = 0;
  if (aEvent.GetModifiers() == wxMOD_CONTROL) {
    switch (lKey) {
      case 'O':
        lCommand = Number(MenuCommand::mE_Options);
        break;
      case 'N':
        lCommand = Number(MenuCommand::mF_NewAddress);
        break;
      case 'I':
        lCommand = Number(MenuCommand::mF_Import);
        break;
      case 'E':
        lCommand = Number(MenuCommand::mF_Export);
        break;
      case 'S':
        lCommand = Number(MenuCommand::mF_StartCheck);
        break;
      default:
        break;
    }
  } else if (aEvent.GetModifiers() == wxMOD_NONE) {
    if (lKey == WXK_DELETE || lKey == WXK_NUMPAD_DELETE) lCommand = Number(MenuCommand::mE_DelAddress);
    if (lKey == WXK_F5) lCommand = Number(MenuCommand::mF_StartCheck);
    if (lKey == WXK_RETURN || lKey == WXK_NUMPAD_ENTER) {
      if (SelectedSlot() == 0) return;
      lCommand = Number(MenuCommand::mE_EditAddress);
    }
  }
  if (lCommand == 0)
    aEvent.Skip();
  else
    RunCommand(lCommand);
}

wxMenu* frmMain::MakePopup() {
  auto* pMenu = new wxMenu;
  pMenu->Append(Number(MenuCommand::mF_NewAddress), ResText(IDS_POP_NEW));
  pMenu->Append(Number(MenuCommand::mE_EditAddress), ResText(IDS_POP_EDIT));
  pMenu->Append(Number(MenuCommand::mE_DelAddress), ResText(IDS_POP_DELETE));
  pMenu->AppendSeparator();
  pMenu->Append(Number(MenuCommand::mF_StartCheck), ResText(IDS_POP_CHECK));
  pMenu->Enable(Number(MenuCommand::mE_EditAddress), RowCount() > 0);
  pMenu->Enable(Number(MenuCommand::mE_DelAddress), RowCount() > 0);
  return pMenu;
}
