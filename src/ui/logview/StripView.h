// StripView: a picture of every site's states over the time of the log, one strip a site. States differ by
// colour, by height and by pattern; a time in which nobody watched shows as a gap. What the pointer is on is
// told in words.
#pragma once

#include <wx/scrolwin.h>

#include <cstddef>
#include <functional>
#include <vector>

#include "history/LogStrip.h"
#include "history/LogSummary.h"

class StripView : public wxScrolledCanvas {
 public:
  explicit StripView(wxWindow* pParent);

  // The sites in this order, as places in aSummary.aSites. Both have to stay until the next call.
  void ShowSites(const LogSummary* pShown, const std::vector<std::size_t>* pOrder);
  // Marks a strip (place in the order) and scrolls to it.
  void Mark(std::size_t lPlace);
  // A click on a strip: its place and, where it was hit, the moment.
  std::function<void(std::size_t lPlace)> Clicked;

  // So that every strip is seen.
  int FullHeight() const { return FullRows() * lRow + Footer() + 2 * lGap; }
  // The words for a point of the window; empty where there is nothing.
  wxString TipAt(const wxPoint& aPoint) const;

 private:
  void OnPaint(wxDC& aDC);
  void PaintStrip(wxDC& aDC, const wxRect& aArea, const std::vector<SiteState>& aColumns) const;
  void PaintAxis(wxDC& aDC, int lTop) const;
  void PaintLegend(wxDC& aDC, int lTop) const;
  void Measure();
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
  int lLine = 16, lRow = 30, lGap = 6, lNames = 150, lStripWidth = 400;
};
