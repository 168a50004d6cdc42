// frmWelcome: greets the operator at the very first start and offers the tour. Modeless: monitoring begins
// behind it.
#pragma once

#include <wx/dialog.h>

#include "base/DateTime.h"

class MainHost;
class wxButton;

class frmWelcome : public wxDialog {
 public:
  explicit frmWelcome(MainHost& aHost);

  wxButton* cmdRunTour;
  wxButton* cmdClose;

 private:
  void Main_Activate(wxActivateEvent& aEvent);

  const DateTime dtMade;  // steady
};
