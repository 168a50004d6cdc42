#include "ui/main/CountStrip.h"

#include <wx/dcclient.h>
#include <wx/settings.h>

#include <algorithm>

#include "ui/common/TextGlue.h"
#include "ui/system/AccessibleName.h"

CountStrip::CountStrip(wxWindow* pParent, std::function<void(std::int16_t iResult)> ShowOnly)
    : wxWindow(pParent, wxID_ANY), aShowOnly(std::move(ShowOnly)) {
  Bind(wxEVT_PAINT, [this](wxPaintEvent&) { Paint(); });
  Bind(wxEVT_MOTION, [this](wxMouseEvent& aEvent) {
    const Piece* pPiece = At(aEvent.GetPosition());
    const bool bLeads = OnNote(aEvent.GetPosition()) || (pPiece && pPiece->iResult >= 0);
    SetCursor(bLeads ? wxCURSOR_HAND : wxCURSOR_ARROW);
  });
  Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& aEvent) { Click(aEvent.GetPosition()); });
}

void CountStrip::Show(const Counts& aNew) {
  if (aNew == aCounts) return;
  aCounts = aNew;
  aPieces.clear();
  szText.clear();
  const auto Say = [this](std::int32_t lText, std::int32_t lCount, std::int16_t iResult) {
    Add(ToWx(FillResString(lText, {std::to_string(lCount)})), iResult);
  };
  if (aCounts.lSites > 0) Say(aCounts.lSites == 1 ? IDS_COUNT_SITE : IDS_COUNT_SITES, aCounts.lSites, 0);
  if (aCounts.lShown < aCounts.lSites) {
    Add(" (", -1);
    Say(IDS_COUNT_SHOWN, aCounts.lShown, -1);
    Add(")", -1);
  }
  const char* szBefore = ": ";
  for (std::int16_t i = 1; i <= 3; ++i) {
    const std::int32_t lCount = aCounts.aLights[static_cast<std::size_t>(i) - 1];
    if (lCount == 0) continue;
    Add(szBefore, -1);
    Say(i == 1 ? IDS_COUNT_UP : i == 2 ? IDS_COUNT_WARNING : IDS_COUNT_DOWN, lCount, i);
    szBefore = ", ";
  }
  AccessibleName::Set(*this, szText);
  Refresh();
}

void CountStrip::Add(const wxString& szPiece, std::int16_t iResult) {
  const int lLeft = aPieces.empty() ? 0 : aPieces.back().lRight;
  aPieces.push_back({szPiece, iResult, lLeft, lLeft + GetTextExtent(szPiece).x});
  szText += szPiece;
}

void CountStrip::ShowNote(const wxString& szNew) {
  if (szNew == szNote) return;
  szNote = szNew;
  SetToolTip(szNote);
  Refresh();
}

const CountStrip::Piece* CountStrip::At(const wxPoint& aAt) const {
  const auto aFound = std::ranges::find_if(
      aPieces, [&](const Piece& aPiece) { return aAt.x >= aPiece.lLeft && aAt.x < aPiece.lRight; });
  return aFound == aPieces.end() || (!szNote.empty() && aAt.y >= NoteTop()) ? nullptr : &*aFound;
}

bool CountStrip::OnNote(const wxPoint& aAt) const {
  return !szNote.empty() && aAt.y >= NoteTop() && aAt.x < GetTextExtent(szNote).x;
}

void CountStrip::Click(const wxPoint& aAt) {
  const Piece* pPiece = At(aAt);
  if (pPiece && pPiece->iResult >= 0)
    aShowOnly(pPiece->iResult);
  else if (OnNote(aAt) && NoteClicked)
    NoteClicked();
}

void CountStrip::Paint() {
  wxPaintDC aDC(this);
  aDC.SetFont(GetFont());
  aDC.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
  const int lTop = szNote.empty() ? (GetClientSize().y - GetCharHeight()) / 2 : NoteTop() - GetCharHeight();
  for (const Piece& aPiece : aPieces)
    aDC.DrawText(aPiece.szText, aPiece.lLeft, lTop);
  if (!szNote.empty()) aDC.DrawText(szNote, 0, NoteTop());
}
