#include "ui/common/Images.h"

#include <wx/icon.h>

wxBitmapBundle Images::Bundle(std::string_view szName, wxSize aSize) {
  for (std::size_t i = 0; i < lImageCount; ++i)
    if (szName == aImageData[i].szName) return wxBitmapBundle::FromSVG(aImageData[i].szSVG, aSize);
  return {};
}

wxIconBundle Images::ProgramIcons() {
  const wxBitmapBundle aBundle = Bundle("Kestrova", 32);
  wxIconBundle aIcons;
  for (const int iSide : {16, 24, 32, 48, 64, 128, 256})
    aIcons.AddIcon(aBundle.GetIcon(wxSize(iSide, iSide)));
  return aIcons;
}
