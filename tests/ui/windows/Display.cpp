#include "ui/Display.h"

#include "platform/windows/System.h"

bool Display::Start() {
  return true;
}

void Display::Stop() {
}

void Display::Sync() {
}

// Wine without a window manager sometimes gives it to the desktop, and an active window alone says nothing
// about it.
bool Display::HasKeyboard() {
  DWORD lProcess = 0;
  GetWindowThreadProcessId(GetForegroundWindow(), &lProcess);
  if (lProcess == GetCurrentProcessId()) return true;
  SetForegroundWindow(GetActiveWindow());
  return false;
}

bool Display::StartTray() {
  return true;
}

void Display::StopTray() {
}
