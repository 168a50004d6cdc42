// modSysTray owns the program's icon in the notification area and its "&SysTray" menu.
#pragma once

class frmMain;

namespace modSysTray {

void AddIcon(frmMain& aMain);
void DeleteIcon();  // harmless when there is none
bool HasIcon();
void RefreshTip();
// "&Restore" is enabled while the window is minimised. "&Exit" always is.
void EnableRestore(bool bEnable);
bool RestoreEnabled();

}  // namespace modSysTray
