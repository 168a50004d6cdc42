#include "ui/common/Boxes.h"

#include <wx/msgdlg.h>

#include "ui/common/TextGlue.h"

namespace {

int Show(wxWindow* pOwner, const std::string& szText, const std::string& szMore, long lStyle) {
  wxMessageDialog aBox(pOwner, BreakLines(ToWxLines(szText), pOwner), ResText(IDS_APP_TITLE), lStyle);
  if (!szMore.empty()) aBox.SetExtendedMessage(BreakLines(ToWxLines(szMore), pOwner));
  return aBox.ShowModal();
}

}  // namespace

void Boxes::Say(wxWindow* pOwner, const std::string& szText, const std::string& szMore) {
  Show(pOwner, szText, szMore, wxOK | wxICON_INFORMATION);
}

int Boxes::Ask(wxWindow* pOwner, const std::string& szText, long lButtons, const std::string& szMore) {
  return Show(pOwner, szText, szMore, lButtons | wxICON_QUESTION);
}
