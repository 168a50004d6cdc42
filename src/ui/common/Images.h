// Images: the program's drawn pictures, kept as SVG text inside the program and drawn at whatever size the
// screen needs.
#pragma once

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>

#include <string_view>

namespace Images {

// The picture by its name (its file's, without ".svg"), as a square (or of the given proportions) with this
// side in device-independent pixels (ToDIP of what WindowScale says: it would be enlarged twice on Windows).
// An unknown name gives an empty picture.
wxBitmapBundle Bundle(std::string_view szName, wxSize aSize);
inline wxBitmapBundle Bundle(std::string_view szName, int iSide = 16) {
  return Bundle(szName, wxSize(iSide, iSide));
}

// The program's icon in the sizes that desktops ask for.
wxIconBundle ProgramIcons();

}  // namespace Images
