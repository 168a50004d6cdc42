// modSysTray owns the program's icon in the notification area and its "&SysTray" menu.
#pragma once

class frmMain;

namespace modSysTray {

void AddIcon(frmMain& aMain);
void DeleteIcon();  // harmless when there is none
bool HasIcon();
// Whether the window may be hidden now: the icon is there, or the desktop has just got a place for it.
bool CanHideWindow();
void RefreshTip();
// "&Restore" is enabled while the window is minimised. "&Exit" always is.
void EnableRestore(bool bEnable);
bool RestoreEnabled();

}  // namespace modSysTray
