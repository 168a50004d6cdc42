#include "support/ChildProcess.h"

#include <stdexcept>

#include "platform/windows/Handle.h"

namespace {

// The number of a process that Ctrl-C ended, and here also of one that was killed.
constexpr DWORD lEndedFromOutside = 0xC000013A;

double Seconds(const FILETIME& aTime) {
  return ((static_cast<double>(aTime.dwHighDateTime) * 4294967296.0) + aTime.dwLowDateTime) / 1e7;
}

HANDLE Inherited(const std::string& szFile, DWORD lAccess, DWORD lHow) {
  SECURITY_ATTRIBUTES aInherited{sizeof aInherited, nullptr, TRUE};
  constexpr DWORD lShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return CreateFileA(szFile.c_str(), lAccess, lShare, &aInherited, lHow, 0, nullptr);
}

bool HasWindowsOnly() {
  const auto* const pImage = reinterpret_cast<const char*>(GetModuleHandleA(nullptr));
  const auto* const pHeaders = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      pImage + reinterpret_cast<const IMAGE_DOS_HEADER*>(pImage)->e_lfanew);
  return pHeaders->OptionalHeader.Subsystem != IMAGE_SUBSYSTEM_WINDOWS_CUI;
}

// A console program hears Ctrl-C only through a console, which it shares with its starter. A test whose
// output goes elsewhere has none, and one with windows needs none. What the test sends it hears itself. One
// for the whole test: on a second a program that was started before it would hear nothing.
void HaveConsole() {
  static const bool bHas = [] {
    if (HasWindowsOnly() || GetConsoleWindow()) return true;
    FreeConsole();  // a console without a window is none for this
    if (!AllocConsole()) return false;
    ShowWindow(GetConsoleWindow(), SW_HIDE);
    return SetConsoleCtrlHandler([](DWORD lEvent) -> BOOL { return lEvent == CTRL_C_EVENT; }, TRUE) != 0;
  }();
  if (!bHas) throw std::runtime_error("no console for the programs that the test starts");
}

BOOL CALLBACK CloseWindowOf(HWND hWindow, LPARAM lProcess) {
  DWORD lOwner = 0;
  GetWindowThreadProcessId(hWindow, &lOwner);
  if (lOwner == static_cast<DWORD>(lProcess) && IsWindowVisible(hWindow))
    PostMessageA(hWindow, WM_CLOSE, 0, 0);
  return TRUE;
}

}  // namespace

void ChildProcess::Start(const std::vector<std::string>& aWords) {
  HaveConsole();
  const Handle hInput(Inherited("NUL", GENERIC_READ, OPEN_EXISTING));
  const Handle hOutput(Inherited(szOutputFile, GENERIC_WRITE, CREATE_ALWAYS));
  const Handle hErrors(Inherited(szErrorFile, GENERIC_WRITE, CREATE_ALWAYS));
  STARTUPINFOA aStart{};
  aStart.cb = sizeof aStart;
  aStart.dwFlags = STARTF_USESTDHANDLES;
  aStart.hStdInput = hInput.Get();
  aStart.hStdOutput = hOutput.Get();
  aStart.hStdError = hErrors.Get();
  std::string szCommandLine;  // no word of a test holds a quotation mark or ends in a backslash
  for (const std::string& szWord : aWords)
    szCommandLine += '"' + szWord + "\" ";
  PROCESS_INFORMATION aProcess{};
  if (!CreateProcessA(nullptr, szCommandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &aStart,
                      &aProcess))
    return;
  CloseHandle(aProcess.hThread);
  hProcess = reinterpret_cast<std::intptr_t>(aProcess.hProcess);
}

bool ChildProcess::Ended() {
  const auto hChild = reinterpret_cast<HANDLE>(hProcess);
  if (WaitForSingleObject(hChild, 0) != WAIT_OBJECT_0) return false;
  DWORD lCode = 0;
  GetExitCodeProcess(hChild, &lCode);
  FILETIME aStarted{}, aEnded{}, aKernel{}, aUser{};
  if (GetProcessTimes(hChild, &aStarted, &aEnded, &aKernel, &aUser))
    dCpuSeconds = Seconds(aKernel) + Seconds(aUser);
  CloseHandle(hChild);
  lResult = lCode >= 0x80000000 ? lKilled : static_cast<int>(lCode);  // crashes have such codes too
  return true;
}

void ChildProcess::Kill() {
  if (lResult == lRunning) TerminateProcess(reinterpret_cast<HANDLE>(hProcess), lEndedFromOutside);
}

// Ctrl-C goes to all who share the console. A program with windows is asked to close them, as the task
// manager does it.
void ChildProcess::Interrupt() {
  if (lResult != lRunning) return;
  if (!GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) && !HasWindowsOnly())
    throw std::runtime_error("Ctrl-C could not be sent");
  EnumWindows(CloseWindowOf, static_cast<LPARAM>(GetProcessId(reinterpret_cast<HANDLE>(hProcess))));
}

std::string ChildProcess::BuiltProgram(const std::string& szName) {
  char szPath[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, szPath, MAX_PATH);
  const std::string szOwn = szPath;
  return szOwn.substr(0, szOwn.rfind('\\') + 1) + szName + ".exe";
}
