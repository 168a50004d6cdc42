#include "app/Dialogs.h"

#include <gtest/gtest.h>
#include <wx/dirdlg.h>
#include <wx/msgdlg.h>

#include "dialogs/frmNotice.h"
#include "resources/TextGlue.h"

namespace {

// The parts of a box that have no public reader.
class Box : public wxMessageDialog {
 public:
  static std::string Text(const wxMessageDialog& aBox) {
    const auto& aOpen = static_cast<const Box&>(aBox);
    const auto szMore = FromWx(aOpen.GetExtendedMessage());
    return FromWx(aOpen.GetMessage()) + (szMore.empty() ? "" : "|" + szMore);
  }
};

}  // namespace

std::string NoticeText() {
  return Until([] { return Open<frmNotice>() != nullptr; }, 0.5) ? Open<frmNotice>()->szMessage : "";
}

std::string CloseNotice() {
  const auto szText = NoticeText();
  if (szText.empty()) return szText;
  PumpFor(0.05);
  Key(WXK_RETURN);
  EXPECT_TRUE(Until([] { return !Open<frmNotice>(); })) << szText;
  return szText;
}

bool Focused(wxWindow* pControl) {
  auto* pTop = dynamic_cast<wxTopLevelWindow*>(wxGetTopLevelParent(pControl));
  return Until(
      [&] {
        // A list's focus is in a window within it.
        wxWindow* pFocus = wxWindow::FindFocus();
        return pTop->IsActive() && (pFocus == pControl || (pFocus && pControl->IsDescendant(pFocus)));
      },
      2);
}

void Key(int lKey, int lModifiers) {
  wxUIActionSimulator().Char(lKey, lModifiers);
  PumpFor(0.03);
}

void Type(const std::string& szLettersAndDigits) {
  for (const char ch : szLettersAndDigits)
    Key(ch, ch >= 'A' && ch <= 'Z' ? wxMOD_SHIFT : wxMOD_NONE);
}

void Click(wxWindow* pControl) {
  wxUIActionSimulator aMouse;
  aMouse.MouseMove(pControl->GetScreenPosition() + pControl->GetSize() / 2);
  PumpFor(0.03);
  aMouse.MouseClick();
  PumpFor(0.05);
}

std::string TextOf(const wxTextCtrl* pBox) {
  return FromWx(pBox->GetValue());
}

Replies::Replies(std::vector<Reply> aReplies) : aLeft(std::move(aReplies)) {
  Register();
}

Replies::~Replies() {
  Unregister();
  EXPECT_TRUE(aLeft.empty()) << aLeft.size() << " boxes were expected and did not come";
}

int Replies::Enter(wxDialog* pDialog) {
  const auto* pBox = dynamic_cast<wxMessageDialog*>(pDialog);
  aTexts.push_back(pBox ? Box::Text(*pBox) : FromWx(pDialog->GetTitle()));
  if (aLeft.empty()) {
    ADD_FAILURE() << "unexpected: " << aTexts.back();
    return wxID_CANCEL;
  }
  const Reply aReply = aLeft.front();
  aLeft.erase(aLeft.begin());
  if (pBox) return aReply.lButton;
  // GTK's choosers read the folder before they know the path.
  const auto Take = [&](auto* pChooser) {
    if (aReply.szPath.empty()) return;
    pChooser->SetPath(ToWx(aReply.szPath));
    Until([&] { return FromWx(pChooser->GetPath()) == aReply.szPath; }, 2);
    if (aReply.aThen) aReply.aThen();
  };
  if (auto* pFile = dynamic_cast<wxFileDialog*>(pDialog)) {
    aTexts.back() =
        FromWx(pFile->GetMessage()) + "|" + FromWx(pFile->GetFilename()) + "|" + FromWx(pFile->GetWildcard());
    Take(pFile);
  }
  if (auto* pFolder = dynamic_cast<wxDirDialog*>(pDialog)) {
    aTexts.back() = FromWx(pFolder->GetMessage());
    Take(pFolder);
  }
  return aReply.szPath.empty() ? wxID_CANCEL : wxID_OK;
}
