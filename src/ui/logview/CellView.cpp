#include "ui/logview/CellView.h"

#include <wx/control.h>
#include <wx/dc.h>
#include <wx/settings.h>

#include <algorithm>
#include <cmath>

#include "base/Utf8.h"
#include "ui/common/TextGlue.h"

namespace {

constexpr std::size_t lMostNameBytes = 200;
// Until it is laid out; GTK complains about a scroll bar without room.
const wxSize aFirstSize(300, 200);
// Between the ink and either paper, light and dark.
const wxColour aBarColour(0x5b, 0x82, 0xb4);

wxString Name(const std::string& szName) {
  return ToWx(Utf8::Clean(Utf8::Shorten(szName, lMostNameBytes)));
}

}  // namespace

CellView::CellView(wxWindow* pParent, const wxString& szName) : PaintedView(pParent, aFirstSize, szName) {
  SetLabel(szName);
}

void CellView::OnClick(const wxPoint& aPoint) {
  std::size_t lRow = 0, lColumn = 0;
  if (!At(aPoint, lRow, lColumn)) return;
  MoveTo(lRow, lColumn);
  if (Chosen) Chosen(lRow, lColumn);
}

void CellView::ShowCells(Cells aNew) {
  aCells = std::move(aNew);
  lRowAt = std::min(lRowAt, std::max<std::size_t>(aCells.lRows, 1) - 1);
  lColumnAt = std::min(lColumnAt, std::max<std::size_t>(aCells.lColumns, 1) - 1);
  Measure();
  Refresh();
}

int CellView::FullHeight() const {
  constexpr std::size_t lMostRows = 10000;  // a window's height is bounded
  return static_cast<int>(std::min(aCells.lRows, lMostRows)) * lRowHeight + Footer() + 2 * lGap;
}

void CellView::Measure() {
  const int lAll = GetClientSize().x;
  lNames = std::clamp(lAll / 4, FromDIP(80), lLine * 18);
  lWidth = std::max(1, lAll - lNames - 3 * lGap);
  SetVirtualSize(wxSize(-1, FullHeight()));
}

wxRect CellView::Area(std::size_t lRow, std::size_t lColumn) const {
  const auto lTop = CalcScrolledPosition(wxPoint(0, static_cast<int>(lRow) * lRowHeight)).y;
  const auto Edge = [&](std::size_t lAt) {
    return static_cast<int>(static_cast<double>(lWidth) * static_cast<double>(lAt) /
                            static_cast<double>(aCells.lColumns));
  };
  return {lNames + 2 * lGap + Edge(lColumn), lTop + lRowHeight / 8,
          std::max(1, Edge(lColumn + 1) - Edge(lColumn) - 1), lRowHeight * 3 / 4};
}

bool CellView::At(const wxPoint& aPoint, std::size_t& lRow, std::size_t& lColumn) const {
  const int lLeft = aPoint.x - lNames - 2 * lGap;
  if (Empty() || aPoint.y >= GetClientSize().y - Footer() || lLeft < 0 || lLeft >= lWidth) return false;
  lRow = static_cast<std::size_t>(std::max(0, CalcUnscrolledPosition(aPoint).y) / lRowHeight);
  lColumn = static_cast<std::size_t>(lLeft) * aCells.lColumns / static_cast<std::size_t>(lWidth);
  return lRow < aCells.lRows;
}

wxString CellView::TipAt(const wxPoint& aPoint) const {
  std::size_t lRow = 0, lColumn = 0;
  return At(aPoint, lRow, lColumn) ? ToWx(Utf8::Clean(aCells.Words(lRow, lColumn))) : wxString();
}

bool CellView::OnKey(const wxKeyEvent& aEvent) {
  if (aEvent.GetKeyCode() == WXK_TAB)
    return Navigate(aEvent.ShiftDown() ? 0 : wxNavigationKeyEvent::IsForward);
  if (Empty() || aEvent.HasModifiers()) return false;
  switch (aEvent.GetKeyCode()) {
    case WXK_LEFT:
      MoveTo(lRowAt, lColumnAt > 0 ? lColumnAt - 1 : 0);
      return true;
    case WXK_RIGHT:
      MoveTo(lRowAt, lColumnAt + 1);
      return true;
    case WXK_UP:
      MoveTo(lRowAt > 0 ? lRowAt - 1 : 0, lColumnAt);
      return true;
    case WXK_DOWN:
      MoveTo(lRowAt + 1, lColumnAt);
      return true;
    case WXK_HOME:
      MoveTo(lRowAt, 0);
      return true;
    case WXK_END:
      MoveTo(lRowAt, aCells.lColumns - 1);
      return true;
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
      if (Chosen) Chosen(lRowAt, lColumnAt);
      return true;
    default:
      return false;
  }
}

void CellView::MoveTo(std::size_t lRow, std::size_t lColumn) {
  lRowAt = std::min(lRow, aCells.lRows - 1);
  lColumnAt = std::min(lColumn, aCells.lColumns - 1);
  const auto aArea = Area(lRowAt, lColumnAt);
  if (aArea.y < 0 || aArea.GetBottom() > GetClientSize().y - Footer()) Scroll(-1, static_cast<int>(lRowAt));
  Refresh();
  if (Told) Told(Utf8::Clean(aCells.Words(lRowAt, lColumnAt)));
}

void CellView::OnPaint(wxDC& aDC) {
  aDC.SetBackground(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOX)));
  aDC.Clear();
  if (Empty()) return;
  aDC.SetFont(GetFont());
  const int lBottom = GetClientSize().y - Footer();
  const auto lFirst =
      static_cast<std::size_t>(std::max(0, CalcUnscrolledPosition(wxPoint(0, 0)).y) / lRowHeight);
  aDC.SetClippingRegion(0, 0, GetClientSize().x, std::max(1, lBottom));
  for (auto lRow = lFirst; lRow < aCells.lRows && Area(lRow, 0).y < lBottom; ++lRow)
    PaintRow(aDC, lRow);
  aDC.DestroyClippingRegion();
  // Below the last row, not at the foot of a tall window.
  PaintHeads(aDC, std::min(lBottom, Area(aCells.lRows - 1, 0).y + lRowHeight));
}

void CellView::PaintRow(wxDC& aDC, std::size_t lRow) {
  const auto aFirst = Area(lRow, 0);
  aDC.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT));
  aDC.DrawText(
      wxControl::Ellipsize(Name(aCells.Name(lRow)), aDC, wxELLIPSIZE_MIDDLE, lNames, wxELLIPSIZE_FLAGS_NONE),
      lGap, aFirst.y + (aFirst.height - lLine) / 2);
  for (std::size_t lColumn = 0; lColumn < aCells.lColumns; ++lColumn)
    PaintCell(aDC, Area(lRow, lColumn), aCells.At(lRow, lColumn));
  if (!HasFocus() || lRow != lRowAt) return;
  aDC.SetBrush(*wxTRANSPARENT_BRUSH);
  aDC.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT), 2));
  aDC.DrawRectangle(Area(lRow, lColumnAt).Inflate(1));
}

// The sign stands on the paper, beside the bar, so that it is read on light and dark alike.
void CellView::PaintCell(wxDC& aDC, const wxRect& aArea, const Cell& aCell) const {
  const auto aInk = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT);
  auto aBar = aArea;
  if (!aCell.szSign.empty()) {
    const auto szSign = ToWx(aCell.szSign);
    aDC.SetTextForeground(aInk);
    aDC.DrawText(szSign, aArea.x, aArea.y + (aArea.height - lLine) / 2);
    const int lSign = std::min(aDC.GetTextExtent(szSign).x + 1, aArea.width * 2 / 3);
    aBar = wxRect(aArea.x + lSign, aArea.y, aArea.width - lSign, aArea.height);
  }
  const auto Height = [&](double dPart) { return static_cast<int>(std::lround(dPart * aBar.height)); };
  const auto Fill = [&](int lFrom, int lTo) {
    if (lTo > lFrom) aDC.DrawRectangle(aBar.x, aBar.GetBottom() + 1 - lTo, aBar.width, lTo - lFrom);
  };
  aDC.SetPen(*wxTRANSPARENT_PEN);
  aDC.SetBrush(wxBrush(aBarColour));
  Fill(0, aCell.dSolid > 0 ? std::max(2, Height(aCell.dSolid)) : 0);
  aDC.SetBrush(wxBrush(aBarColour, wxBRUSHSTYLE_BDIAGONAL_HATCH));
  Fill(Height(aCell.dSolid), Height(aCell.dHatched));
  aDC.SetBrush(wxBrush(aInk));
  if (aCell.dLine > 0) Fill(std::max(0, Height(aCell.dLine) - 1), std::max(1, Height(aCell.dLine)));
}

void CellView::PaintHeads(wxDC& aDC, int lTop) const {
  aDC.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
  int lFree = 0;
  for (std::size_t lColumn = 0; lColumn < aCells.lColumns; ++lColumn) {
    const auto szHead = ToWx(aCells.Head(lColumn));
    const int lAt = Area(0, lColumn).x, lTextWidth = aDC.GetTextExtent(szHead).x;
    if (lAt < lFree || lAt + lTextWidth > lNames + 2 * lGap + lWidth) continue;
    aDC.DrawText(szHead, lAt, lTop + lGap);
    lFree = lAt + lTextWidth + 2 * lGap;
  }
}
