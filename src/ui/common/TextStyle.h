// TextStyle: how running text looks beside the tables.
#pragma once

#include <wx/textctrl.h>

// Set off from the edge of the box, and the rest of a broken line further in.
inline wxTextAttr IndentedText(const wxFont& aFont) {
  wxTextAttr aStyle(wxNullColour, wxNullColour, aFont);
  aStyle.SetLeftIndent(20, 40);  // tenths of a millimetre
  return aStyle;
}

// A line "Name: text", its name in bold.
inline void AppendNamed(wxTextCtrl& aBox, const wxFont& aFont, const wxString& szName,
                        const wxString& szText) {
  aBox.SetDefaultStyle(IndentedText(aFont.Bold()));
  aBox.AppendText(szName + " ");
  aBox.SetDefaultStyle(IndentedText(aFont));
  aBox.AppendText(szText + "\n");
}
