// PaintedView: a picture of rows that scrolls, tells in words what the pointer is on, and takes clicks and
// keys.
#pragma once

#include <wx/scrolwin.h>

#include <functional>
#include <string>

class PaintedView : public wxScrolledCanvas {
 public:
  // What the keys have led to, in words.
  std::function<void(const std::string& szWords)> Told;

  // The words for a point of the window; empty where there is nothing.
  virtual wxString TipAt(const wxPoint& aPoint) const = 0;

 protected:
  PaintedView(wxWindow* pParent, const wxSize& aSize, const wxString& szName);

  virtual void OnPaint(wxDC& aDC) = 0;
  virtual void OnClick(const wxPoint& aPoint) = 0;
  virtual bool OnKey(const wxKeyEvent& aEvent) = 0;  // false: the key is for others
  virtual void Measure() = 0;                        // after a change of size

  const int lLine, lRowHeight, lGap;  // pixels; a line of text, a row, what is between things
};
