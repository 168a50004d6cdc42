// frmDialog: what the dialogs that hold the main window have in common. They are modeless, because a true
// modal one would block the progress window too, and the main window takes no input while one is open. Every
// way out (buttons, Esc, close box, a failed creation) gives it back. F1 opens the dialog's help topic.
//
// It also tells when a field is left. That is never told inside a focus event, where a message would make
// the focus jump for ever, but from the event loop, and not at all when Cancel gets the focus, or OK by a
// click: OK checks everything itself.
#pragma once

#include <wx/dialog.h>
#include <wx/timer.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/common/HelpCommands.h"
#include "ui/common/MainHost.h"

class wxBoxSizer;
class wxButton;
class wxTextCtrl;

class frmDialog : public wxDialog {
 public:
  wxButton* cmdOK = nullptr;
  wxButton* cmdCancel = nullptr;
  std::int32_t lHelpContext;  // the topic that F1 opens

 protected:
  frmDialog(MainHost& aHost, std::int32_t lTitle, std::int32_t lHelp);

  // The row with OK and Cancel. Closing is dealt with here, OK is cmdOK_Click.
  wxBoxSizer* MakeButtons();
  virtual void cmdOK_Click() = 0;
  // Gives the main window back and closes. Harmless when repeated.
  virtual void Leave();
  bool Leaving() const { return !pDisabler; }

  // A field has lost the focus to another control of the dialog. False: it keeps the focus; the override has
  // put it back.
  virtual bool LeaveField(wxWindow* pLeft, wxWindow* pNext) = 0;
  // A click on this button leaves the focused field unchecked.
  void ClickWithoutCheck(wxButton* pButton);

  // Moves the focus, and whatever moves it by being hidden, without a field being told of as left.
  void MoveUnchecked(const std::function<void()>& Move);

  // Selects the whole text whenever the box gets the focus.
  void SelectOnFocus(wxTextCtrl* pBox);
  // Gives the box the focus with the caret behind its text.
  void FocusAtEnd(wxTextCtrl* pBox);
  // Puts another text into a box, without an event and with the caret where it was as far as possible.
  static void Put(wxTextCtrl* pBox, const std::string& szText);
  static std::string Get(const wxTextCtrl* pBox);
  // Sets a box's width to that of a text.
  static void FitTo(wxTextCtrl* pBox, const wxString& szText);

  MainHost& Host;

 private:
  struct Step {
    wxWindow* pLeft;
    wxWindow* pNext;
  };

  void Child_Focus(wxChildFocusEvent& aEvent);
  void DeliverSteps();

  std::unique_ptr<MainDisabler> pDisabler;
  wxTimer tmrLeave;
  wxWindow* pFocused = nullptr;
  wxWindow* pPressed = nullptr;  // the button on which the mouse is down and that is clicked without a check
  bool bMoving = false;
  std::vector<Step> aSteps;
  wxTextCtrl* pAtEnd = nullptr;  // a box whose text is not selected when the focus comes
};
