// Display: a screen of the tests' own, so that windows neither disturb nor are disturbed. On a system whose
// windows need no server all of this does nothing.
#pragma once

namespace Display {

// A screen with a window manager, before the toolkit starts. False when it cannot be had.
bool Start();
void Stop();
// Returns when the screen has dealt with all that was sent to it, so that its answers lie in our queue.
void Sync();
// Whether what the keyboard sends comes to this program's windows. When not, asks for it.
bool HasKeyboard();
// A notification area in the bottom left corner.
bool StartTray();
void StopTray();

}  // namespace Display
