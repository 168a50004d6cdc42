#include "ui/main/modSysTray.h"

#include <wx/frame.h>
#include <wx/menu.h>

#include <memory>

#include "ui/common/TextGlue.h"
#include "ui/main/Commands.h"
#include "ui/system/TrayIcon.h"

namespace {

std::unique_ptr<TrayIcon> pIcon;
bool bRestoreEnabled = false;

std::unique_ptr<wxMenu> MakeMenu() {
  auto pMenu = std::make_unique<wxMenu>();
  for (const int lCommand : {mnuTray_Restore, mnuTray_Exit})
    pMenu->Append(lCommand, ResText(Commands::Find(lCommand)->lText));
  pMenu->Enable(mnuTray_Restore, bRestoreEnabled);
  return pMenu;
}

}  // namespace

void modSysTray::AddIcon(wxFrame& aOwner, std::function<void()> aRestore) {
  pIcon = std::make_unique<TrayIcon>(aOwner);
  pIcon->Restore = std::move(aRestore);
  pIcon->MakeMenu = [&aOwner] {
    if (!bRestoreEnabled) aOwner.Raise();
    return MakeMenu();
  };
  if (TrayIcon::Available()) pIcon->Add(ResText(IDS_APP_TITLE));
}

void modSysTray::DeleteIcon() {
  pIcon.reset();
  bRestoreEnabled = false;
}

bool modSysTray::HasIcon() {
  return pIcon && pIcon->Added();
}

bool modSysTray::CanHideWindow() {
  if (!pIcon || !TrayIcon::Available()) return false;
  return pIcon->Added() || pIcon->Add(ResText(IDS_APP_TITLE));
}

void modSysTray::RefreshTip() {
  if (pIcon) pIcon->RefreshTip(ResText(IDS_APP_TITLE));
}

void modSysTray::EnableRestore(bool bEnable) {
  bRestoreEnabled = bEnable;
}

bool modSysTray::RestoreEnabled() {
  return bRestoreEnabled;
}

bool modSysTray::Tell(const wxString& szText) {
  return pIcon && pIcon->Tell(ResText(IDS_APP_TITLE), szText);
}
