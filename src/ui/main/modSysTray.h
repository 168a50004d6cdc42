// modSysTray owns the program's icon in the notification area and its "&SysTray" menu.
#pragma once

#include <functional>

class wxFrame;
class wxString;

namespace modSysTray {

// The menu's commands go to the owner as wxEVT_MENU. aRestore: a click on the icon.
void AddIcon(wxFrame& aOwner, std::function<void()> aRestore);
void DeleteIcon();  // harmless when there is none
bool HasIcon();
// Whether the window may be hidden now: the icon is there, or the desktop has just got a place for it.
bool CanHideWindow();
void RefreshTip();
// "&Restore" is enabled while the window is minimised. "&Exit" always is.
void EnableRestore(bool bEnable);
bool RestoreEnabled();
// A notification under the program's name. False when the desktop did not take it.
bool Tell(const wxString& szText);

}  // namespace modSysTray
