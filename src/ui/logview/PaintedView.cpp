#include "ui/logview/PaintedView.h"

#include <wx/dcbuffer.h>

#include <algorithm>

PaintedView::PaintedView(wxWindow* pParent, const wxSize& aSize, const wxString& szName)
    : wxScrolledCanvas(pParent, wxID_ANY, wxDefaultPosition, aSize,
                       wxVSCROLL | wxBORDER_THEME | wxFULL_REPAINT_ON_RESIZE | wxWANTS_CHARS, szName),
      lLine(GetCharHeight()),
      lRowHeight(2 * lLine),
      lGap(std::max(4, lLine / 3)) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  SetScrollRate(0, lRowHeight);
  EnableScrolling(false, false);  // what stands below the rows stays in place
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
  // The click may turn to another page, and the keys go along: on Windows what is skipped takes them back.
  Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent& aEvent) {
    SetFocus();
    OnClick(aEvent.GetPosition());
  });
  Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& aEvent) {
    if (!OnKey(aEvent)) aEvent.Skip();
  });
  for (const auto& iEvent : {wxEVT_SET_FOCUS, wxEVT_KILL_FOCUS})
    Bind(iEvent, [this](wxFocusEvent& aEvent) {
      aEvent.Skip();
      Refresh();
    });
}
