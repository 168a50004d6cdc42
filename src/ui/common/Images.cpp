#include "ui/common/Images.h"

#include <wx/icon.h>

#include <string>

#include "base/Embedded.h"

extern const Embedded::Files aImageFiles;

wxBitmapBundle Images::Bundle(std::string_view szName, wxSize aSize) {
  const auto szSVG = Embedded::Bytes(aImageFiles, std::string(szName) + ".svg");
  return szSVG.empty() ? wxBitmapBundle() : wxBitmapBundle::FromSVG(szSVG.data(), aSize);
}

wxIconBundle Images::ProgramIcons() {
  const wxBitmapBundle aBundle = Bundle("Kestrova", 32);
  wxIconBundle aIcons;
  for (const int iSide : {16, 24, 32, 48, 64, 128, 256})
    aIcons.AddIcon(aBundle.GetIcon(wxSize(iSide, iSide)));
  return aIcons;
}
