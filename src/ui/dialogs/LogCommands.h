// LogCommands: "Open Log" and "View Current Log". They choose and check files and start the viewer, a program
// of its own, with one or two full paths; they never read more of a log than its beginning.
#pragma once

class MainHost;

namespace LogCommands {

// Asks for a log, asks whether it is to be saved as a page too and where, starts the viewer.
void Open(MainHost& aHost);

// Shows the log of the present day or week, or offers the earlier ones where there is none.
void ViewCurrent(MainHost& aHost);
// The selected site's entries in it.
void ViewSite(MainHost& aHost);

}  // namespace LogCommands
