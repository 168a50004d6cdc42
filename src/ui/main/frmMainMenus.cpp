// The main window's commands: menus, keys, the list's pop-up, and the one way in for all of them.
#include <wx/accel.h>
#include <wx/menu.h>

#include <memory>

#include "base/Strings.h"
#include "persistence/modAddress.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/SiteCommands.h"
#include "ui/main/Commands.h"
#include "ui/main/frmMain.h"

using Commands::Command;

namespace {

// The number pad's keys do what the others do.
int PlainKey(int lKey) {
  return lKey == WXK_NUMPAD_ENTER ? WXK_RETURN : lKey == WXK_NUMPAD_DELETE ? WXK_DELETE : lKey;
}

bool IsKey(const char* szKey, const wxKeyEvent& aEvent) {
  const std::unique_ptr<wxAcceleratorEntry> pKey(wxAcceleratorEntry::Create(wxString("\t") + szKey));
  if (!pKey) return false;
  const int lModifiers = pKey->GetFlags() == wxACCEL_CTRL ? wxMOD_CONTROL : wxMOD_NONE;
  return aEvent.GetModifiers() == lModifiers && PlainKey(aEvent.GetKeyCode()) == pKey->GetKeyCode();
}

}  // namespace

void frmMain::BuildMenus() {
  auto* pBar = new wxMenuBar;
  wxMenu* pMenu = nullptr;
  std::int32_t lMenu = 0;
  for (const Command& aCommand : Commands::All()) {
    if (aCommand.lMenu == 0) continue;
    if (aCommand.lMenu != lMenu) {
      lMenu = aCommand.lMenu;
      pMenu = new wxMenu;
      pBar->Append(pMenu, ResText(lMenu));
    }
    if (aCommand.Has(Commands::Separated)) pMenu->AppendSeparator();
    wxString szText = ResText(aCommand.lText);
    if (*aCommand.szKey != '\0') szText << '\t' << aCommand.szKey;
    pMenu->Append(aCommand.iNumber, szText, "", aCommand.Has(Commands::Radio) ? wxITEM_RADIO : wxITEM_NORMAL);
  }
  SetMenuBar(pBar);
}

void frmMain::LockCommands(bool bLock) {
  for (const Command& aCommand : Commands::All())
    if (aCommand.Has(Commands::Locked)) GetMenuBar()->Enable(aCommand.iNumber, !bLock);
  if (bLock) {
    bPassRan = true;
    bStopped = false;
    szPassNote.clear();
    RememberRemarks();
    aWentDown.clear();
    aUnmailed.clear();
    return;
  }
  if (bStopped) GiveBackRemarks();
  lvwMain->GiveBackPlace();
}

void frmMain::Menu_Click(wxCommandEvent& aEvent) {
  RunCommand(aEvent.GetId());
}

bool frmMain::CommandAllowed(int lCommand) {
  const Command* pCommand = Commands::Find(lCommand);
  if (!pCommand) return false;
  if (pCommand->lMenu == 0) return true;  // the tray's
  if (bExiting || aEngine.ListBusy() || !IsEnabled()) return false;
  if (!IsShown() && !bMinimised) return false;  // on Windows it hears keys behind the splash window
  if (pCommand->Has(Commands::Locked) && aEngine.PassRunning()) return false;
  return GetMenuBar()->IsEnabled(lCommand);
}

void frmMain::RunCommand(int lCommand) {
  if (CommandAllowed(lCommand)) {
    Commands::Find(lCommand)->Run(*this);
    return;
  }
  SoundBell();
  if (!aEngine.PassRunning()) return;
  szRestsNote = LoadResString(IDS_NOTICE_RESTS);
  ShowNotes();
}

void frmMain::StartCheck() {
  RunEngine([this] { aEngine.mF_StartCheck_Click(); });
}

void frmMain::CheckSelected() {
  const auto n = SiteCommands::SelectedSite(*this);
  if (n == 0) return;
  if (!modAddress::Site(n).TakesPart()) {
    ShowMessage(LoadResString(IDS_CHECK_SITE_DISABLED));
    return;
  }
  RunEngine([this, n] { aEngine.StartCheckOf({n}); });
}

void frmMain::StopCheck() {
  bStopped = bStopped || aEngine.CheckInProgress();
  aEngine.StopCheck();
}

// A pass runs inside its starter. While it does, a timer serves the request in flight too, because an open
// menu or dialog runs its own event loop above the pass's wait.
void frmMain::RunEngine(const std::function<void()>& Start) {
  constexpr int lServeMilliseconds = 20;
  const bool bOutermost = !aEngine.PassRunning();
  if (bOutermost) tmrServe.Start(lServeMilliseconds);
  Start();
  if (!bOutermost) return;
  tmrServe.Stop();
  EndPassFiles();
  AfterPass();
}

void frmMain::Check_MnuView() {
  const int lResult = ResultFilter >= 1 && ResultFilter <= 3 ? ResultFilter : 0;
  const int lEnabled = EnabledFilter == 1 || EnabledFilter == 2 ? EnabledFilter : 0;
  GetMenuBar()->Check(mV_All + lResult, true);
  GetMenuBar()->Check(mV_Both + lEnabled, true);
}

void frmMain::lvwMain_KeyDown(wxKeyEvent& aEvent) {
  for (const Command& aCommand : Commands::All()) {
    if (!IsKey(aCommand.szKey, aEvent) && !IsKey(aCommand.szListKey, aEvent)) continue;
    if (aCommand.iNumber == mE_EditAddress && SelectedSlot() == 0) return;
    RunCommand(aCommand.iNumber);
    return;
  }
  aEvent.Skip();
}

// On Windows the key of a greyed item goes nowhere: nobody would hear why nothing happens.
void frmMain::LockedKey(wxKeyEvent& aEvent) {
  for (const Command& aCommand : Commands::All())
    if (aEngine.PassRunning() && aCommand.Has(Commands::Locked) && IsKey(aCommand.szKey, aEvent))
      return RunCommand(aCommand.iNumber);
  aEvent.Skip();
}

wxMenu* frmMain::MakePopup() {
  auto* pMenu = new wxMenu;
  for (const int lCommand : {mF_NewAddress, mE_EditAddress, mE_DelAddress, mF_StartCheck}) {
    const Command& aCommand = *Commands::Find(lCommand);
    if (aCommand.Has(Commands::Separated)) pMenu->AppendSeparator();
    pMenu->Append(lCommand, ResText(aCommand.lPopText));
  }
  for (const int lCommand : {mE_EditAddress, mE_DelAddress})
    pMenu->Enable(lCommand, RowCount() > 0);
  return pMenu;
}
