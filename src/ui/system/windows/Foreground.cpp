#include "ui/system/Foreground.h"

#include <wx/toplevel.h>

#include "platform/windows/System.h"

void Foreground::Offer() {
  AllowSetForegroundWindow(ASFW_ANY);
}

void Foreground::Take(wxTopLevelWindow& aWindow) {
  aWindow.Raise();
}
