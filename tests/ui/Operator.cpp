#include "ui/Operator.h"

#include <gtest/gtest.h>
#include <wx/dirdlg.h>
#include <wx/evtloop.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/stopwatch.h>
#include <wx/uiaction.h>

#include <algorithm>
#include <map>
#include <utility>

#include "ui/Display.h"
#include "ui/common/EventPump.h"
#include "ui/common/TextGlue.h"
#include "ui/common/frmNotice.h"

namespace {

// Waits until an event of these types has reached the program.
class Arrival : public wxEventFilter {
 public:
  explicit Arrival(std::vector<wxEventType> aTypes) : aAwaited(std::move(aTypes)) {
    wxEvtHandler::AddFilter(this);
  }
  ~Arrival() override { wxEvtHandler::RemoveFilter(this); }
  Arrival(const Arrival&) = delete;
  Arrival& operator=(const Arrival&) = delete;

  int FilterEvent(wxEvent& aEvent) override {
    bCame = bCame || std::ranges::count(aAwaited, aEvent.GetEventType()) > 0;
    return Event_Skip;
  }
  bool Came() {
    return Until([this] { return bCame; });
  }

  bool bCame = false;

 private:
  const std::vector<wxEventType> aAwaited;
};

}  // namespace

bool Until(const std::function<bool()>& aHolds, double dSeconds) {
  wxStopWatch aWatch;
  while (!aHolds()) {
    if (static_cast<double>(aWatch.Time()) > dSeconds * 1000) return false;
    EventPump::Run();
    wxMilliSleep(2);
  }
  return true;
}

void Settle() {
  // What is handled asks for more: a relayed call, the idle work behind it, the display's answer to that.
  constexpr int lRounds = 3;
  for (int i = 0; i < lRounds; ++i) {
    Display::Sync();
    EventPump::Run();
    if (wxEventLoopBase* pLoop = wxEventLoopBase::GetActive()) pLoop->ProcessIdle();
  }
}

bool Focused(wxWindow* pControl) {
  auto* pTop = dynamic_cast<wxTopLevelWindow*>(wxGetTopLevelParent(pControl));
  return Until([&] {
    // A list's focus is in a window within it.
    wxWindow* pFocus = wxWindow::FindFocus();
    return pTop->IsActive() && (pFocus == pControl || (pFocus && pControl->IsDescendant(pFocus)));
  });
}

void Key(int lKey, int lModifiers) {
  // A menu's own key comes as the command. One that was pressed while the keyboard went elsewhere is gone.
  Arrival aArrival({wxEVT_CHAR_HOOK, wxEVT_KEY_DOWN, wxEVT_MENU});
  EXPECT_TRUE(Until([&] {
    if (!Display::HasKeyboard()) return false;
    wxUIActionSimulator().Char(lKey, lModifiers);
    return Until([&] { return aArrival.bCame || !Display::HasKeyboard(); }) && aArrival.bCame;
  })) << "key "
      << lKey;
  Settle();
}

void Type(const std::string& szLettersAndDigits) {
  for (const char ch : szLettersAndDigits)
    Key(ch, ch >= 'A' && ch <= 'Z' ? wxMOD_SHIFT : wxMOD_NONE);
}

void Click(wxWindow* pControl) {
  Arrival aArrival({wxEVT_LEFT_UP});
  wxUIActionSimulator aMouse;
  aMouse.MouseMove(pControl->GetScreenPosition() + pControl->GetSize() / 2);
  aMouse.MouseClick();
  EXPECT_TRUE(aArrival.Came());
  Settle();
}

std::string TextOf(const wxTextCtrl* pBox) {
  return FromWx(pBox->GetValue());
}

std::string NoticeText() {
  const auto* pNotice = Open<frmNotice>();
  return pNotice ? pNotice->szMessage : "";
}

std::string CloseNotice() {
  const auto bReady = [] {
    auto* pNotice = Open<frmNotice>();
    return pNotice && pNotice->IsActive() && pNotice->IsDescendant(wxWindow::FindFocus());
  };
  EXPECT_TRUE(Until(bReady));
  auto szText = NoticeText();
  if (szText.empty()) return szText;
  Key(WXK_RETURN);
  EXPECT_TRUE(Until([] { return !Open<frmNotice>(); })) << szText;
  return szText;
}

Answers::~Answers() {
  Unregister();
  EXPECT_TRUE(aScript.empty()) << aScript.size() << " boxes were expected and did not come";
}

int Answers::Enter(wxDialog* pDialog) {
  struct Box : wxMessageDialog {
    using wxMessageDialog::GetExtendedMessage;  // has no public reader
  };
  auto* pFile = dynamic_cast<wxFileDialog*>(pDialog);
  auto* pFolder = dynamic_cast<wxDirDialog*>(pDialog);
  wxString szSaid = pFolder ? pFolder->GetMessage() : pDialog->GetTitle();
  if (pFile) {
    const bool bMany = pFile->HasFlag(wxFD_MULTIPLE);  // then it suggests none
    szSaid = pFile->GetMessage() + "|" + (bMany ? "" : pFile->GetFilename()) + "|" + pFile->GetWildcard();
  }
  if (const auto* pBox = dynamic_cast<wxMessageDialog*>(pDialog)) {
    const auto szMore = (pBox->*&Box::GetExtendedMessage)();
    szSaid = pBox->GetMessage() + (szMore.empty() ? "" : "|" + szMore);
  }
  aSaid.push_back(FromWx(szSaid));
  if (aScript.empty()) {
    ADD_FAILURE() << "unexpected: " << aSaid.back();
    return wxID_CANCEL;
  }
  const auto szAnswer = aScript.front();
  aScript.erase(aScript.begin());
  static const std::map<std::string, int> aButtons = {
      {"ok", wxID_OK}, {"yes", wxID_YES}, {"no", wxID_NO}, {"cancel", wxID_CANCEL}};
  if (const auto aButton = aButtons.find(szAnswer); aButton != aButtons.end()) return aButton->second;
  // GTK's choosers read the folder before they know the path.
  const auto Choose = [&](auto* pChooser) {
    pChooser->SetPath(ToWx(szAnswer));
    EXPECT_TRUE(Until([&] { return FromWx(pChooser->GetPath()) == szAnswer; })) << szAnswer;
  };
  if (pFile) Choose(pFile);
  if (pFolder) Choose(pFolder);
  return wxID_OK;
}
