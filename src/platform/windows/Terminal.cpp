#include "platform/Terminal.h"

#include <atomic>
#include <cstdlib>
#include <string_view>

#include "platform/windows/Interrupt.h"
#include "platform/windows/System.h"

namespace {

std::atomic<bool> bInterrupted = false;
std::atomic<bool> bAgain = false;
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
  if ((lEvent == CTRL_C_EVENT || lEvent == CTRL_BREAK_EVENT) && (bSeen || bAgain))
    return FALSE;  // the system ends us
  if (bInterrupted) bAgain = true;
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

int Terminal::Columns() {
  CONSOLE_SCREEN_BUFFER_INFO aInfo{};
  if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &aInfo)) return 0;
  return aInfo.srWindow.Right - aInfo.srWindow.Left;  // one less: a full line would wrap
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

// There are no numbers here; this is the one that Ctrl-C has elsewhere.
int Terminal::InterruptSignal() {
  constexpr int lInterrupt = 2;
  return bInterrupted ? lInterrupt : 0;
}

bool Terminal::InterruptedAgain() {
  return bAgain;
}

bool Terminal::OutputClosed() {
  const HANDLE hOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD lWritten = 0;
  return GetFileType(hOutput) == FILE_TYPE_PIPE && !WriteFile(hOutput, "", 0, &lWritten, nullptr) &&
         (GetLastError() == ERROR_NO_DATA || GetLastError() == ERROR_BROKEN_PIPE);
}

void Terminal::ClearInterrupt() {
  bInterrupted = false;
  bAgain = false;
  bSeen = false;
  ResetEvent(InterruptEvent());
}
