// Display: a screen of the tests' own, so that windows neither disturb nor are disturbed. On a system whose
// windows need no server all of this does nothing.
#pragma once

namespace Display {

// Before the toolkit starts. False when no screen can be had.
bool Start();
// A window manager and a notification area on it; they run until Stop or the end of the returned helper.
bool StartWindowManager();
bool StartTray();
void StopTray();
void Stop();

}  // namespace Display
