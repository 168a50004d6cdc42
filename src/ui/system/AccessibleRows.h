// AccessibleRows: what assistive tools read of a list whose rows are drawn on demand. The lists that the
// toolkit paints itself tell them nothing; the system's own tell the first column, which may be a picture.
// Nothing is made before a tool asks.
#pragma once

#include <functional>

class wxListView;
class wxString;

namespace AccessibleRows {

// What the list is called, and a row, from 0, in one line. To be called once, before the list has children of
// ours; both are asked as long as the list lives.
void Tell(wxListView& aList, std::function<wxString()> Title, std::function<wxString(long lRow)> Name);

}  // namespace AccessibleRows
