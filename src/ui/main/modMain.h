// modMain: the program's beginning and end. It owns the main window and the lock of the single instance.
#pragma once

#include <string>

class frmMain;

namespace modMain {

// Starts the program: must run inside an event loop, because it handles events while the splash is shown.
// False when there is nothing to run (a second copy, or the end was asked for meanwhile).
bool Main();

// The one end: removes the tray icon, unloads every window and leaves the event loop.
void ShutDown();

// Asks for the end from anywhere: close box, menu, tray, end of the session, signal. Windows disappear at
// once; a running pass unwinds, open dialogs end as cancelled, then ShutDown follows.
void RequestExit();
bool ExitRequested();
// Goes on with a requested end as far as it can now; ExitSoon the same from the event loop.
void TryExit();
void ExitSoon();

// The main window, nullptr before it is loaded and after the end.
frmMain* MainWindow();

}  // namespace modMain
