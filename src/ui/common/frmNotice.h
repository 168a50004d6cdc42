// frmNotice: a message with an OK button over a dialog. Like the dialog it is modeless: a box that waits
// would hold up a pass that runs beneath it. Its owner takes no input meanwhile.
#pragma once

#include <wx/dialog.h>

#include <functional>
#include <string>

class frmNotice : public wxDialog {
 public:
  // Shows it. aClosed runs when the operator has closed it, not when the owner goes first.
  frmNotice(wxWindow* pOwner, const std::string& szText, std::function<void()> aClosed);
  const std::string szMessage;

 private:
  void Leave();
  std::function<void()> aAfter;
};
