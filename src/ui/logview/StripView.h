// StripView: a picture of every site's states over the time of the log, one strip a site; of a long log a
// square a day. States differ by colour, by height and by pattern; a time in which nobody watched shows as a
// gap. What the pointer is on is told in words. With the arrow keys one goes from square to square, or from
// state to state, and from site to site.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "history/LogStrip.h"
#include "history/LogSummary.h"
#include "ui/logview/PaintedView.h"

class StripView : public PaintedView {
 public:
  explicit StripView(wxWindow* pParent);

  // The sites in this order, as places in aSummary.aSites. Both have to stay until the next call.
  void ShowSites(const LogSummary* pShown, const std::vector<std::size_t>* pOrder);
  // Marks a strip (place in the order) and scrolls to it.
  void Mark(std::size_t lPlace);
  // A click on a name, or keys that lead to another strip.
  std::function<void(std::size_t lPlace)> Marked;
  // A click on a strip, or Enter: its place, the moment, and whether the site failed then.
  std::function<void(std::size_t lPlace, DateTime dtMoment, bool bFailure)> Chosen;
  // So that every strip is seen.
  int FullHeight() const { return FullRows() * lRowHeight + Footer() + 2 * lGap; }
  wxString TipAt(const wxPoint& aPoint) const override;

 private:
  // The columns of a strip that belong together: a day's, or those of one state. On the screen a day's last
  // one stays empty.
  struct Piece {
    int lFirst, lPast;
    SiteState iState;
  };
  std::vector<Piece> Pieces(const SiteSummary& aSite) const;
  Piece PieceAt(const SiteSummary& aSite, int lColumn) const;
  const SiteSummary& SiteAt(std::size_t lPlace) const { return pSummary->aSites[(*pOrder)[lPlace]]; }
  std::string Words(const SiteSummary& aSite, int lColumn) const;
  void Choose(std::size_t lPlace, int lColumn);
  bool OnKey(const wxKeyEvent& aEvent) override;
  void MoveCursor(std::size_t lPlace, int lColumn);
  void OnPaint(wxDC& aDC) override;
  void OnClick(const wxPoint& aPoint) override;
  void PaintStrip(wxDC& aDC, const wxRect& aArea, const SiteSummary& aSite, bool bMarked) const;
  void PaintAxis(wxDC& aDC, int lTop) const;
  void PaintLegend(wxDC& aDC, int lTop) const;
  void Measure() override;
  int FullRows() const;
  std::size_t Places() const { return pOrder ? pOrder->size() : 0; }
  // The strip at a point of the window; Places() for none.
  std::size_t PlaceAt(const wxPoint& aPoint) const;
  wxRect StripArea(std::size_t lPlace) const;  // in the window
  int Footer() const { return 2 * lLine + 3 * lGap; }
  LogStrip::Scale MakeScale() const { return {*pSummary, std::max(1, lStripWidth)}; }

  const LogSummary* pSummary = nullptr;
  const std::vector<std::size_t>* pOrder = nullptr;
  std::size_t lMarked = static_cast<std::size_t>(-1);
  double dCursor = 1;  // where the keys are, as a part of the strip
  int lNames = 150, lStripWidth = 400;
};
