// frmTour: the tour's window. One page at a time, turned by buttons, keys or a click on the picture.
#pragma once

#include <wx/bitmap.h>
#include <wx/frame.h>
#include <wx/image.h>

#include <cstddef>

class wxButton;
class wxPanel;
class wxStaticText;

class frmTour : public wxFrame {
 public:
  frmTour();  // at the first page; not shown

  std::size_t Page() const { return lPage; }  // from 0

  wxStaticText* lblHeading;
  wxStaticText* lblText;
  wxStaticText* lblPage;
  wxButton* cmdBack;
  wxButton* cmdNext;
  wxButton* cmdClose;
  wxPanel* pixPage;

 private:
  void GoTo(std::size_t lNew);  // a page that does not exist changes nothing
  void Form_KeyDown(wxKeyEvent& aEvent);
  void Form_Resize();
  void pixPage_Paint();

  std::size_t lPage = 0;
  wxImage aPicture;
  wxBitmap aScaled;  // the picture at the size that it was last drawn in
};
