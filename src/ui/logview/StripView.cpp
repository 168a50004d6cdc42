#include "ui/logview/StripView.h"

#include <wx/control.h>
#include <wx/dcbuffer.h>
#include <wx/settings.h>

#include <algorithm>

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

StripView::StripView(wxWindow* pParent)
    : wxScrolledCanvas(pParent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                       wxVSCROLL | wxBORDER_THEME | wxFULL_REPAINT_ON_RESIZE) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  lLine = GetCharHeight();
  lRow = lLine * 2;
  lGap = std::max(4, lLine / 3);
  SetScrollRate(0, lRow);
  EnableScrolling(false, false);  // the axis and the legend stay in place below the strips
  Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
    wxAutoBufferedPaintDC aDC(this);
    OnPaint(aDC);
  });
  Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    Measure();
  });
  Bind(wxEVT_MOTION, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    const auto szTip = TipAt(aEvent.GetPosition());
    if (szTip.empty())
      UnsetToolTip();
    else if (GetToolTipText() != szTip)
      SetToolTip(szTip);
  });
  Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    const auto lPlace = PlaceAt(aEvent.GetPosition());
    if (lPlace < Places() && Clicked) Clicked(lPlace);
  });
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
  return static_cast<int>(std::min(Places(), lMostPixels / static_cast<std::size_t>(lRow)));
}

void StripView::Measure() {
  const int lWidth = GetClientSize().x;
  lNames = std::clamp(lWidth / 4, FromDIP(80), lLine * 18);
  lStripWidth = std::max(1, lWidth - lNames - 3 * lGap);
  SetVirtualSize(wxSize(-1, FullRows() * lRow + Footer()));
}

void StripView::Mark(std::size_t lPlace) {
  lMarked = lPlace;
  const auto aArea = StripArea(lPlace);
  const int lVisible = GetClientSize().y - Footer();
  if (aArea.y < 0 || aArea.GetBottom() > lVisible) Scroll(-1, static_cast<int>(lPlace));
  Refresh();
}

wxRect StripView::StripArea(std::size_t lPlace) const {
  const int lTop = CalcScrolledPosition(wxPoint(0, static_cast<int>(lPlace) * lRow)).y;
  return {lNames + 2 * lGap, lTop + lRow / 6, lStripWidth, lRow * 2 / 3};
}

std::size_t StripView::PlaceAt(const wxPoint& aPoint) const {
  if (aPoint.y >= GetClientSize().y - Footer()) return Places();
  const auto lPlace = static_cast<std::size_t>(std::max(0, CalcUnscrolledPosition(aPoint).y) / lRow);
  return std::min(lPlace, Places());
}

wxString StripView::TipAt(const wxPoint& aPoint) const {
  const auto lPlace = PlaceAt(aPoint);
  if (!pSummary || lPlace >= Places()) return {};
  const auto& aSite = pSummary->aSites[(*pOrder)[lPlace]];
  const auto szSite = Utf8::Clean(Utf8::Shorten(aSite.szSite, lMostNameBytes));
  const int lColumn = aPoint.x - StripArea(lPlace).x;
  if (lColumn < 0 || lColumn >= lStripWidth) return ToWx(szSite);
  const auto aScale = MakeScale();
  const auto aColumns = LogStrip::Columns(aScale, aSite);
  const auto iState = aColumns[static_cast<std::size_t>(lColumn)];
  return ToWx(szSite + "\n" + LogStrip::Words(aScale, aSite, iState, lColumn, lColumn + 1));
}

void StripView::OnPaint(wxDC& aDC) {
  aDC.SetBackground(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOX)));
  aDC.Clear();
  if (!pSummary || Places() == 0) return;
  aDC.SetFont(GetFont());
  const auto aInk = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT);
  const int lBottom = GetClientSize().y - Footer();
  const auto aScale = MakeScale();
  const auto lFirst = static_cast<std::size_t>(std::max(0, CalcUnscrolledPosition(wxPoint(0, 0)).y) / lRow);
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
    PaintStrip(aDC, aArea, LogStrip::Columns(aScale, aSite));
  }
  aDC.DestroyClippingRegion();
  PaintAxis(aDC, lBottom);
  PaintLegend(aDC, lBottom + lLine + 2 * lGap);
}

void StripView::PaintStrip(wxDC& aDC, const wxRect& aArea, const std::vector<SiteState>& aColumns) const {
  const int lCount = static_cast<int>(aColumns.size());
  for (int lFrom = 0, lPast = 0; lFrom < lCount; lFrom = lPast) {
    const auto iState = aColumns[static_cast<std::size_t>(lFrom)];
    while (lPast < lCount && aColumns[static_cast<std::size_t>(lPast)] == iState)
      ++lPast;
    PaintBand(aDC, aArea, iState, lFrom, lPast);
  }
}

void StripView::PaintAxis(wxDC& aDC, int lTop) const {
  const auto aGrey = wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
  const auto aScale = MakeScale();
  const int lLeft = lNames + 2 * lGap;
  aDC.SetFont(GetFont());
  aDC.SetTextForeground(aGrey);
  aDC.SetPen(wxPen(aGrey));
  int lFree = 0;
  for (const auto dtDay : LogStrip::Midnights(*pSummary)) {
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
