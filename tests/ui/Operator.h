// What an operator does with the windows: waits, presses keys, clicks, and answers the boxes that come.
#pragma once

#include <wx/modalhook.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>

#include <functional>
#include <string>
#include <vector>

// Handles events until the condition holds. False when the time ran out first.
bool Until(const std::function<bool()>& aHolds, double dSeconds = 5);
void PumpFor(double dSeconds);

// The open window of a class, nullptr for none.
template <typename Window>
Window* Open() {
  for (wxWindow* pWindow : wxTopLevelWindows)
    if (auto* pFound = dynamic_cast<Window*>(pWindow);
        pFound && pFound->IsShown() && !pFound->IsBeingDeleted())
      return pFound;
  return nullptr;
}

// Waits until the control has the focus of the keyboard.
bool Focused(wxWindow* pControl);
void Key(int lKey, int lModifiers = wxMOD_NONE);
void Type(const std::string& szLettersAndDigits);
void Click(wxWindow* pControl);
std::string TextOf(const wxTextCtrl* pBox);

// The message over a dialog; empty when there is none. Waits a moment for one that is only due.
std::string NoticeText();
std::string CloseNotice();  // with Enter

// Answers boxes and file windows in order: "ok", "yes", "no", "cancel", or the path to choose. One that
// nobody expects is cancelled and fails the test, as does one that does not come.
class Answers : public wxModalDialogHook {
 public:
  explicit Answers(std::vector<std::string> aAnswers) : aScript(std::move(aAnswers)) { Register(); }
  ~Answers() override;
  // A message, with its second part after "|"; a file window's title, suggested name and filter.
  std::vector<std::string> aSaid;

 protected:
  int Enter(wxDialog* pDialog) override;

 private:
  std::vector<std::string> aScript;
};

using Texts = std::vector<std::string>;
