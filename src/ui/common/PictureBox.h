// PictureBox: a picture that can be clicked and takes no focus, so that the keys stay with the list.
#pragma once

#include <wx/bmpbndl.h>
#include <wx/window.h>

#include <functional>
#include <string>

class PictureBox : public wxWindow {
 public:
  PictureBox(wxWindow* pParent, int lSide);

  // Shows one of the drawn images by its name.
  void Picture(const std::string& szImage);
  const std::string& PictureName() const { return szName; }
  std::function<void()> Click;

  bool AcceptsFocus() const override { return false; }
  bool AcceptsFocusFromKeyboard() const override { return false; }

 private:
  std::string szName;
  wxBitmapBundle aImage;
};
