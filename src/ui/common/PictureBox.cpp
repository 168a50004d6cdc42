#include "ui/common/PictureBox.h"

#include <wx/dcclient.h>

#include "ui/common/Images.h"

PictureBox::PictureBox(wxWindow* pParent, int lSide)
    : wxWindow(pParent, wxID_ANY, wxDefaultPosition, wxSize(lSide, lSide)) {
  SetMinSize(wxSize(lSide, lSide));
  SetCursor(wxCURSOR_HAND);
  Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
    wxPaintDC aDC(this);
    if (aImage.IsOk()) aDC.DrawBitmap(aImage.GetBitmapFor(this), 0, 0, true);
  });
  Bind(wxEVT_LEFT_UP, [this](wxMouseEvent&) {
    if (Click) Click();
  });
}

void PictureBox::Picture(const std::string& szImage) {
  if (szImage == szName) return;
  szName = szImage;
  aImage = Images::Bundle(szImage, ToDIP(GetMinSize().x));
  Refresh();
}
