// frmAbout: what the program is, its version, its licence and what it is built with. Not modal: a scheduled
// pass may start meanwhile and its progress window stays usable. The main window takes no input until it
// closes.
#pragma once

#include <wx/dialog.h>

#include "ui/common/MainHost.h"

class wxButton;
class wxStaticText;

class frmAbout : public wxDialog {
 public:
  explicit frmAbout(MainHost& aHost);

  wxStaticText* lblVersion;
  wxButton* cmdOK;

 private:
  MainDisabler aDisabler;
};

// The About command.
void ShowAbout(MainHost& aHost);
