// What an operator does with the windows: waits, presses keys, clicks, and answers the boxes that come.
#pragma once

#include <wx/eventfilter.h>
#include <wx/menu.h>
#include <wx/modalhook.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>

#include <functional>
#include <string>
#include <vector>

// Handles events until the condition holds. False when it does not come to pass: the bound is far beyond what
// a busy machine needs and only ends a run that has failed.
bool Until(const std::function<bool()>& aHolds, double dSeconds = 60);
// Handles all that has been sent or asked for by now: before a test says that something did not happen.
void Settle();

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
// Keys and clicks are the screen's own. Each returns when the program has received it and dealt with it.
void Key(int lKey, int lModifiers = wxMOD_NONE);
void Type(const std::string& szLettersAndDigits);
void Click(wxWindow* pControl);
std::string TextOf(const wxTextCtrl* pBox);

// Counts the menus that open and close while it lives.
class OpenedMenus : public wxEventFilter {
 public:
  OpenedMenus() { wxEvtHandler::AddFilter(this); }
  ~OpenedMenus() override { wxEvtHandler::RemoveFilter(this); }
  OpenedMenus(const OpenedMenus&) = delete;
  OpenedMenus& operator=(const OpenedMenus&) = delete;
  int FilterEvent(wxEvent& aEvent) override {
    lOpened += aEvent.GetEventType() == wxEVT_MENU_OPEN ? 1 : 0;
    lClosed += aEvent.GetEventType() == wxEVT_MENU_CLOSE ? 1 : 0;
    return Event_Skip;
  }
  int lOpened = 0;
  int lClosed = 0;
};

std::string NoticeText();   // of the message over a dialog; empty when there is none
std::string CloseNotice();  // waits for one and closes it with Enter

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
