// Short words for tests that drive the dialogs: which one is open, keys as an operator types them, and
// answers to the boxes that wait.
#pragma once

#include <wx/filedlg.h>
#include <wx/modalhook.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include <string>
#include <vector>

#include "app/Program.h"

// The open window of a class, nullptr for none.
template <typename Window>
Window* Open() {
  for (wxWindow* pWindow : wxTopLevelWindows)
    if (auto* pFound = dynamic_cast<Window*>(pWindow);
        pFound && pFound->IsShown() && !pFound->IsBeingDeleted())
      return pFound;
  return nullptr;
}

// The message over a dialog; empty when there is none. Waits a moment for one that is only due.
std::string NoticeText();
// The same, closed with Enter.
std::string CloseNotice();

// Waits until the control has the focus of the keyboard.
bool Focused(wxWindow* pControl);
void Key(int lKey, int lModifiers = wxMOD_NONE);
void Type(const std::string& szLettersAndDigits);
void Click(wxWindow* pControl);
std::string TextOf(const wxTextCtrl* pBox);

// Replies the boxes that wait, in order: a button's number, or a path for a file or folder window (empty: it
// is cancelled). One box too many is a failure.
class Replies : public wxModalDialogHook {
 public:
  struct Reply {
    int lButton = wxID_OK;
    std::string szPath = {};
    std::function<void()> aThen = {};  // what happens while a file window is open
  };
  explicit Replies(std::vector<Reply> aReplies);
  ~Replies() override;
  // What the boxes said: a message, with its second part after "|", or the title of a file window.
  std::vector<std::string> aTexts;

 protected:
  int Enter(wxDialog* pDialog) override;

 private:
  std::vector<Reply> aLeft;
};
