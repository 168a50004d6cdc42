#include "platform/Terminal.h"

#include <atomic>
#include <cstdlib>
#include <string_view>

#include "platform/windows/Interrupt.h"
#include "platform/windows/System.h"

namespace {

std::atomic<bool> bInterrupted = false;
std::atomic<bool> bSeen = false;  // the main thread took notice

bool IsConsole(DWORD lStream) {
  DWORD lMode = 0;
  return GetConsoleMode(GetStdHandle(lStream), &lMode) != 0;
}

// All text is UTF-8; a console shows it only when told. Its own code page is put back at the end, because the
// console outlives the program.
bool IsConsoleForText(DWORD lStream) {
  if (!IsConsole(lStream)) return false;
  static const UINT lBefore = [] {
    const UINT lOwn = GetConsoleOutputCP();
    if (SetConsoleOutputCP(CP_UTF8)) std::atexit([] { SetConsoleOutputCP(lBefore); });
    return lOwn;
  }();
  return lBefore != 0;
}

// Runs on a thread that the system makes for it.
BOOL WINAPI HandleEvent(DWORD lEvent) {
  if ((lEvent == CTRL_C_EVENT || lEvent == CTRL_BREAK_EVENT) && bSeen) return FALSE;  // the system ends us
  bInterrupted = true;
  SetEvent(InterruptEvent());
  // Closing the console, logging off and shutting down end the process as soon as this returns, and after
  // some seconds anyway: that time is the main thread's.
  if (lEvent != CTRL_C_EVENT && lEvent != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

HANDLE InterruptEvent() {
  static const HANDLE hEvent = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  return hEvent;
}

bool Terminal::OutputIsTerminal() {
  return IsConsoleForText(STD_OUTPUT_HANDLE);
}

bool Terminal::ErrorIsTerminal() {
  return IsConsoleForText(STD_ERROR_HANDLE);
}

bool Terminal::ColourWanted() {
  const char* szTerm = std::getenv("TERM");
  const char* szNoColour = std::getenv("NO_COLOR");
  if (!OutputIsTerminal() || (szTerm && std::string_view(szTerm) == "dumb") || (szNoColour && *szNoColour))
    return false;
  const HANDLE hOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD lMode = 0;
  return GetConsoleMode(hOutput, &lMode) &&
         SetConsoleMode(hOutput, lMode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

void Terminal::CatchInterrupt() {
  InterruptEvent();  // made here, so that the handler's thread finds it
  SetConsoleCtrlHandler(HandleEvent, TRUE);
}

bool Terminal::Interrupted() {
  if (bInterrupted) bSeen = true;
  return bInterrupted;
}

void Terminal::ClearInterrupt() {
  bInterrupted = false;
  bSeen = false;
  ResetEvent(InterruptEvent());
}
