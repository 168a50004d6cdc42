// AccessibleRows: what assistive tools read of a list whose rows are drawn on demand. The lists that the
// toolkit paints itself tell them nothing; the system's own tell the first column, which may be a picture.
// Nothing is made before a tool asks.
#pragma once

#include <wx/listctrl.h>

#include <functional>

namespace AccessibleRows {

// What the list is called, and a row, from 0, in one line; the list's description names its columns. To be
// called once, before the list has children of ours; both are asked as long as the list lives.
void Tell(wxListView& aList, std::function<wxString()> Title, std::function<wxString(long lRow)> Name);

// The titles of the columns, in one line.
inline wxString Headers(const wxListView& aList) {
  wxString szHeaders;
  for (int i = 0; i < aList.GetColumnCount(); ++i) {
    wxListItem aColumn;
    aColumn.SetMask(wxLIST_MASK_TEXT);
    aList.GetColumn(i, aColumn);
    if (!aColumn.GetText().empty()) szHeaders << (szHeaders.empty() ? "" : ", ") << aColumn.GetText();
  }
  return szHeaders;
}

}  // namespace AccessibleRows
