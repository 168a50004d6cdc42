#include "ui/logview/StripView.h"

#include <wx/control.h>
#include <wx/dc.h>
#include <wx/settings.h>

#include <algorithm>
#include <cmath>

#include "base/Text.h"
#include "base/Utf8.h"
#include "history/LogWords.h"
#include "ui/common/TextGlue.h"
#include "ui/logview/StateLook.h"

namespace {

constexpr std::size_t lMostNameBytes = 200;
constexpr int lBandUnits = 24;

void PaintBand(wxDC& aDC, const wxRect& aStrip, SiteState iState, int lFrom, int lPast) {
  const auto aBand = LogStrip::BandOf(iState);
  const wxRect aArea(aStrip.x + lFrom, aStrip.y + aStrip.height * aBand.lTop / lBandUnits, lPast - lFrom,
                     std::max(2, aStrip.height * aBand.lHeight / lBandUnits));
  aDC.SetPen(*wxTRANSPARENT_PEN);
  if (iState == SiteState::Unwatched || iState == SiteState::Disabled) {
    // Dashes and dots: there is nothing to see here.
    const int lPiece = std::max(2, iState == SiteState::Unwatched ? aStrip.height / 4 : aStrip.height / 10);
    aDC.SetBrush(wxBrush(StateLook::ColourOf(iState)));
    for (int lAt = 0; lAt < aArea.width; lAt += 2 * lPiece)
      aDC.DrawRectangle(aArea.x + lAt, aArea.y, std::min(lPiece, aArea.width - lAt), aArea.height);
    return;
  }
  aDC.SetBrush(wxBrush(StateLook::ColourOf(iState)));
  aDC.DrawRectangle(aArea);
  if (iState == SiteState::Up || aArea.width < 4) return;
  aDC.SetBrush(iState == SiteState::Down ? wxBrush(wxColour(0x7d, 0x0f, 0x16), wxBRUSHSTYLE_CROSSDIAG_HATCH)
                                         : wxBrush(wxColour(0x5c, 0x42, 0x00), wxBRUSHSTYLE_BDIAGONAL_HATCH));
  aDC.DrawRectangle(aArea);
}

}  // namespace

StripView::StripView(wxWindow* pParent) : PaintedView(pParent, wxDefaultSize, wxPanelNameStr) {
}

void StripView::OnClick(const wxPoint& aPoint) {
  const auto lPlace = PlaceAt(aPoint);
  if (lPlace >= Places()) return;
  const int lColumn = aPoint.x - StripArea(lPlace).x;
  if (lColumn >= 0 && lColumn < lStripWidth)
    Choose(lPlace, lColumn);
  else if (Marked)
    Marked(lPlace);
}

void StripView::ShowSites(const LogSummary* pShown, const std::vector<std::size_t>* pNewOrder) {
  pSummary = pShown;
  pOrder = pNewOrder;
  if (lMarked >= Places()) lMarked = static_cast<std::size_t>(-1);
  Measure();
  Refresh();
}

// A window's height is bounded; no one scrolls through more sites than that anyway.
int StripView::FullRows() const {
  constexpr std::size_t lMostPixels = 1'000'000;
  return static_cast<int>(std::min(Places(), lMostPixels / static_cast<std::size_t>(lRowHeight)));
}

void StripView::Measure() {
  const int lWidth = GetClientSize().x;
  lNames = std::clamp(lWidth / 4, FromDIP(80), lLine * 18);
  lStripWidth = std::max(1, lWidth - lNames - 3 * lGap);
  SetVirtualSize(wxSize(-1, FullRows() * lRowHeight + Footer()));
}

void StripView::Mark(std::size_t lPlace) {
  lMarked = lPlace;
  const auto aArea = StripArea(lPlace);
  const int lVisible = GetClientSize().y - Footer();
  if (aArea.y < 0 || aArea.GetBottom() > lVisible) Scroll(-1, static_cast<int>(lPlace));
  Refresh();
}

wxRect StripView::StripArea(std::size_t lPlace) const {
  const int lTop = CalcScrolledPosition(wxPoint(0, static_cast<int>(lPlace) * lRowHeight)).y;
  return {lNames + 2 * lGap, lTop + lRowHeight / 6, lStripWidth, lRowHeight * 2 / 3};
}

std::size_t StripView::PlaceAt(const wxPoint& aPoint) const {
  if (aPoint.y >= GetClientSize().y - Footer()) return Places();
  const auto lPlace = static_cast<std::size_t>(std::max(0, CalcUnscrolledPosition(aPoint).y) / lRowHeight);
  return std::min(lPlace, Places());
}

wxString StripView::TipAt(const wxPoint& aPoint) const {
  const auto lPlace = PlaceAt(aPoint);
  if (!pSummary || lPlace >= Places()) return {};
  const auto& aSite = pSummary->aSites[(*pOrder)[lPlace]];
  const auto szSite = Utf8::Clean(Utf8::Shorten(aSite.szSite, lMostNameBytes));
  const int lColumn = aPoint.x - StripArea(lPlace).x;
  if (lColumn < 0 || lColumn >= lStripWidth) return ToWx(szSite);
  return ToWx(szSite + "\n" + Words(aSite, lColumn));
}

std::vector<StripView::Piece> StripView::Pieces(const SiteSummary& aSite) const {
  std::vector<Piece> aPieces;
  const auto aScale = MakeScale();
  if (LogStrip::ByDay(*pSummary)) {
    const auto aDays = LogStrip::Days(*pSummary, aSite);
    const auto Start = [&](std::size_t lDay) {
      return static_cast<int>(static_cast<std::size_t>(aScale.ColumnCount()) * lDay / aDays.size());
    };
    for (std::size_t i = 0; i < aDays.size(); ++i)
      aPieces.push_back({Start(i), Start(i + 1), aDays[i]});
    return aPieces;
  }
  for (const auto iState : LogStrip::Columns(aScale, aSite)) {
    if (aPieces.empty() || aPieces.back().iState != iState) {
      const int lFirst = aPieces.empty() ? 0 : aPieces.back().lPast;
      aPieces.push_back({lFirst, lFirst, iState});
    }
    ++aPieces.back().lPast;
  }
  return aPieces;
}

StripView::Piece StripView::PieceAt(const SiteSummary& aSite, int lColumn) const {
  const auto aPieces = Pieces(aSite);
  const auto aFound = std::ranges::upper_bound(aPieces, lColumn, {}, &Piece::lPast);
  return aFound == aPieces.end() ? aPieces.back() : *aFound;
}

std::string StripView::Words(const SiteSummary& aSite, int lColumn) const {
  const auto aScale = MakeScale();
  if (!LogStrip::ByDay(*pSummary))
    return LogStrip::Words(aScale, aSite, PieceAt(aSite, lColumn).iState, lColumn, lColumn + 1);
  std::string szAll;
  for (const auto& szLine : LogStrip::DayWords(aSite, std::floor(aScale.Moment(lColumn))))
    szAll += (szAll.empty() ? "" : "\n") + szLine;
  return szAll;
}

// Of a failure its beginning, or the day's; of all else the moment that was pointed at.
void StripView::Choose(std::size_t lPlace, int lColumn) {
  const auto& aSite = SiteAt(lPlace);
  const auto aScale = MakeScale();
  const auto iState = PieceAt(aSite, lColumn).iState;
  const bool bFailure = IsFailure(iState);
  auto dtMoment = aScale.Moment(lColumn);
  if (LogStrip::ByDay(*pSummary))
    dtMoment = std::floor(dtMoment);
  else if (bFailure)
    dtMoment = LogStrip::Stretch(aScale, aSite, iState, lColumn, lColumn + 1).dtFrom;
  if (Chosen) Chosen(lPlace, dtMoment, bFailure);
}

bool StripView::OnKey(const wxKeyEvent& aEvent) {
  if (aEvent.GetKeyCode() == WXK_TAB)
    return Navigate(aEvent.ShiftDown() ? 0 : wxNavigationKeyEvent::IsForward);
  if (Places() == 0 || aEvent.HasModifiers()) return false;
  const auto lPlace = lMarked < Places() ? lMarked : 0;
  const int lColumn = std::clamp(static_cast<int>(dCursor * lStripWidth), 0, lStripWidth - 1);
  const auto aPiece = PieceAt(SiteAt(lPlace), lColumn);
  switch (aEvent.GetKeyCode()) {
    case WXK_LEFT:
      MoveCursor(lPlace, aPiece.lFirst - 1);
      return true;
    case WXK_RIGHT:
      MoveCursor(lPlace, aPiece.lPast);
      return true;
    case WXK_HOME:
      MoveCursor(lPlace, 0);
      return true;
    case WXK_END:
      MoveCursor(lPlace, lStripWidth - 1);
      return true;
    case WXK_UP:
      MoveCursor(lPlace > 0 ? lPlace - 1 : 0, lColumn);
      return true;
    case WXK_DOWN:
      MoveCursor(std::min(lPlace + 1, Places() - 1), lColumn);
      return true;
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
      Choose(lPlace, lColumn);
      return true;
    default:
      return false;
  }
}

// To the middle of what is there, so that it is still there in a window of another width.
void StripView::MoveCursor(std::size_t lPlace, int lColumn) {
  const auto aPiece = PieceAt(SiteAt(lPlace), std::clamp(lColumn, 0, lStripWidth - 1));
  dCursor = (aPiece.lFirst + aPiece.lPast) / 2.0 / lStripWidth;
  if (Marked && lPlace != lMarked) Marked(lPlace);
  if (lPlace != lMarked) Mark(lPlace);
  Refresh();
  const auto szWords =
      Text::Replace(Words(SiteAt(lPlace), static_cast<int>(dCursor * lStripWidth)), "\n", "; ");
  if (Told) Told(Utf8::Clean(Utf8::Shorten(SiteAt(lPlace).szSite, lMostNameBytes)) + ": " + szWords);
}

void StripView::OnPaint(wxDC& aDC) {
  aDC.SetBackground(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOX)));
  aDC.Clear();
  if (!pSummary || Places() == 0) return;
  aDC.SetFont(GetFont());
  const auto aInk = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT);
  const int lBottom = GetClientSize().y - Footer();
  const auto lFirst =
      static_cast<std::size_t>(std::max(0, CalcUnscrolledPosition(wxPoint(0, 0)).y) / lRowHeight);
  aDC.SetClippingRegion(0, 0, GetClientSize().x, std::max(1, lBottom));
  for (auto lPlace = lFirst; lPlace < Places(); ++lPlace) {
    const auto aArea = StripArea(lPlace);
    if (aArea.y >= lBottom) break;
    const auto& aSite = pSummary->aSites[(*pOrder)[lPlace]];
    aDC.SetTextForeground(aInk);
    const bool bMarked = lPlace == lMarked;
    aDC.SetFont(bMarked ? GetFont().Bold() : GetFont());
    const auto szName = ToWx(Utf8::Clean(Utf8::Shorten(aSite.szSite, lMostNameBytes)));
    aDC.DrawText(wxControl::Ellipsize(szName, aDC, wxELLIPSIZE_MIDDLE, lNames, wxELLIPSIZE_FLAGS_NONE), lGap,
                 aArea.y + (aArea.height - lLine) / 2);
    PaintStrip(aDC, aArea, aSite, bMarked);
  }
  aDC.DestroyClippingRegion();
  PaintAxis(aDC, lBottom);
  PaintLegend(aDC, lBottom + lLine + 2 * lGap);
}

void StripView::PaintStrip(wxDC& aDC, const wxRect& aArea, const SiteSummary& aSite, bool bMarked) const {
  const bool bSquares = LogStrip::ByDay(*pSummary);
  for (const auto& aPiece : Pieces(aSite))
    PaintBand(aDC, aArea, aPiece.iState, aPiece.lFirst,
              bSquares ? std::max(aPiece.lFirst + 1, aPiece.lPast - 1) : aPiece.lPast);
  if (!bMarked || !HasFocus()) return;
  const auto aPiece = PieceAt(aSite, std::clamp(static_cast<int>(dCursor * lStripWidth), 0, lStripWidth - 1));
  aDC.SetBrush(*wxTRANSPARENT_BRUSH);
  aDC.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT), 2));
  aDC.DrawRectangle(aArea.x + aPiece.lFirst - 1, aArea.y - 2, aPiece.lPast - aPiece.lFirst + 2,
                    aArea.height + 4);
}

void StripView::PaintAxis(wxDC& aDC, int lTop) const {
  const auto aGrey = wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
  const auto aScale = MakeScale();
  const int lLeft = lNames + 2 * lGap;
  aDC.SetFont(GetFont());
  aDC.SetTextForeground(aGrey);
  aDC.SetPen(wxPen(aGrey));
  int lFree = 0;
  for (const auto dtDay : LogStrip::AxisDays(*pSummary)) {
    const int lAt = lLeft + aScale.Column(dtDay);
    aDC.DrawLine(lAt, lTop, lAt, lTop + lGap);
    const auto szDay = LogWords::Day(dtDay);
    const auto szShort = ToWx(szDay.substr(0, szDay.size() - 5));
    const int lWidth = aDC.GetTextExtent(szShort).x;
    if (lAt < lFree || lAt + lWidth > lLeft + lStripWidth) continue;
    aDC.DrawText(szShort, lAt, lTop + lGap);
    lFree = lAt + lWidth + lGap;
  }
}

void StripView::PaintLegend(wxDC& aDC, int lTop) const {
  aDC.SetFont(GetFont());
  aDC.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT));
  int lAt = lGap;
  for (const auto iState :
       {SiteState::Up, SiteState::Warning, SiteState::Down, SiteState::Disabled, SiteState::Unwatched}) {
    const auto szName = ResText(LogWords::StateName(iState));
    PaintBand(aDC, wxRect(lAt, lTop, 2 * lLine, lLine), iState, 0, 2 * lLine);
    aDC.DrawText(szName, lAt + 2 * lLine + lGap, lTop);
    lAt += 2 * lLine + 4 * lGap + aDC.GetTextExtent(szName).x;
  }
}
