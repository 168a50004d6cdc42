// WindowPlace: where windows stood and how large they were, from one run of the program to the next. It is
// kept in a small file of the user's, through the toolkit; before Open nothing is kept. A window that would
// not be seen (its screen has gone) is left where it is.
#pragma once

#include <wx/gdicmn.h>

class wxString;
class wxTopLevelWindow;

namespace WindowPlace {

// Called once, at the start of a program.
void Open();

// Size and place, and whether it filled the screen. A minimised window comes back in its usual size.
void Restore(wxTopLevelWindow& aWindow, const wxString& szName);
void Keep(const wxTopLevelWindow& aWindow, const wxString& szName);

// Its corner alone; wxDefaultPosition where none is known.
wxPoint Corner(const wxString& szName);
void KeepCorner(const wxPoint& aCorner, const wxString& szName);

}  // namespace WindowPlace
