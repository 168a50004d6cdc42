#include "ui/Screen.h"

#include <wx/uiaction.h>

#include "support/ChildProcess.h"
#include "ui/Operator.h"

// The toolkit's own copy of the screen is taken once and then stale; ImageMagick asks the display. In few
// colours, so that the help book stays small.
bool Screen::Save(const std::string& szFile, const wxRect& aPart) {
  const std::string szCrop = std::to_string(aPart.width) + "x" + std::to_string(aPart.height) + "+" +
                             std::to_string(aPart.x) + "+" + std::to_string(aPart.y);
  ChildProcess aCamera("import", {"-window", "root", "-crop", szCrop, "+repage", "-strip", "+dither",
                                  "-colors", "96", "PNG8:" + szFile});
  return aCamera.Wait(60) == 0;
}

// The area lies at the bottom left corner and is as large as its icons.
void Screen::ClickTrayIcon(bool bRight) {
  wxUIActionSimulator aMouse;
  aMouse.MouseMove(12, wxGetDisplaySize().y - 12);
  aMouse.MouseClick(bRight ? wxMOUSE_BTN_RIGHT : wxMOUSE_BTN_LEFT);
  Settle();
}
