// Screen: what a test does with the screen as a whole, where the systems differ.
#pragma once

#include <wx/gdicmn.h>

#include <string>

namespace Screen {

// A part of the screen into a PNG file.
bool Save(const std::string& szFile, const wxRect& aPart);
// A click on the program's icon in the notification area.
void ClickTrayIcon(bool bRight);

}  // namespace Screen
