// TextStyle: how running text looks beside the tables.
#pragma once

#include <wx/arrstr.h>
#include <wx/textctrl.h>

#include <algorithm>

// Set off from the edge of the box, and the rest of a broken line further in.
inline wxTextAttr IndentedText(const wxFont& aFont) {
  wxTextAttr aStyle(wxNullColour, wxNullColour, aFont);
  aStyle.SetLeftIndent(20, 40);  // tenths of a millimetre
  return aStyle;
}

// How many lines the text takes at the width of the box, about. GTK counts a line once, however often it is
// broken.
inline int LinesOf(const wxTextCtrl& aBox) {
  const int lWidth = std::max(1, aBox.GetClientSize().x - 6 * aBox.GetCharWidth());
  int lLines = 0;
  for (const wxString& szLine : wxSplit(aBox.GetValue(), '\n', '\0'))
    lLines += 1 + aBox.GetTextExtent(szLine).x / lWidth;
  return lLines;
}

// A line "Name: text", its name in bold.
inline void AppendNamed(wxTextCtrl& aBox, const wxFont& aFont, const wxString& szName,
                        const wxString& szText) {
  aBox.SetDefaultStyle(IndentedText(aFont.Bold()));
  aBox.AppendText(szName + " ");
  aBox.SetDefaultStyle(IndentedText(aFont));
  aBox.AppendText(szText + "\n");
}
