#include "ui/main/modSysTray.h"

#include <wx/menu.h>

#include <memory>

#include "ui/common/TextGlue.h"
#include "ui/main/Commands.h"
#include "ui/main/frmMain.h"
#include "ui/system/TrayIcon.h"

namespace {

std::unique_ptr<TrayIcon> pIcon;
bool bRestoreEnabled = false;

std::unique_ptr<wxMenu> MakeMenu() {
  auto pMenu = std::make_unique<wxMenu>();
  pMenu->Append(mnuTray_Restore, ResText(IDS_TRAY_RESTORE));
  pMenu->Append(mnuTray_Exit, ResText(IDS_TRAY_EXIT));
  pMenu->Enable(mnuTray_Restore, bRestoreEnabled);
  return pMenu;
}

}  // namespace

void modSysTray::AddIcon(frmMain& aMain) {
  pIcon = std::make_unique<TrayIcon>(aMain);
  pIcon->Restore = [&aMain] { aMain.RestoreWindow(); };
  pIcon->MakeMenu = [&aMain] {
    if (!aMain.IsMinimised()) aMain.Raise();
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
