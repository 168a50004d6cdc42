#include "support/ChildProcess.h"

#include "platform/windows/Handle.h"

namespace {

// The number of a process that Ctrl-C ended, and here also of one that was killed.
constexpr DWORD lEndedFromOutside = 0xC000013A;

HANDLE Inherited(const std::string& szFile, DWORD lAccess, DWORD lHow) {
  SECURITY_ATTRIBUTES aInherited{sizeof aInherited, nullptr, TRUE};
  constexpr DWORD lShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return CreateFileA(szFile.c_str(), lAccess, lShare, &aInherited, lHow, 0, nullptr);
}

}  // namespace

void ChildProcess::Start(const std::vector<std::string>& aWords) {
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
  // A group of its own, so that an interrupt reaches the child and not the test.
  if (!CreateProcessA(nullptr, szCommandLine.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP,
                      nullptr, nullptr, &aStart, &aProcess))
    return;
  CloseHandle(aProcess.hThread);
  hProcess = reinterpret_cast<std::intptr_t>(aProcess.hProcess);
}

bool ChildProcess::Ended() {
  const auto hChild = reinterpret_cast<HANDLE>(hProcess);
  if (WaitForSingleObject(hChild, 0) != WAIT_OBJECT_0) return false;
  DWORD lCode = 0;
  GetExitCodeProcess(hChild, &lCode);
  CloseHandle(hChild);
  lResult = lCode >= 0x80000000 ? lKilled : static_cast<int>(lCode);  // crashes have such codes too
  return true;
}

void ChildProcess::Kill() {
  if (lResult == lRunning) TerminateProcess(reinterpret_cast<HANDLE>(hProcess), lEndedFromOutside);
}

// Ctrl-C itself cannot be sent to one group; the program takes Ctrl-Break for the same.
void ChildProcess::Interrupt() {
  if (lResult == lRunning)
    GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, GetProcessId(reinterpret_cast<HANDLE>(hProcess)));
}

std::string ChildProcess::BuiltProgram(const std::string& szName) {
  char szPath[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, szPath, MAX_PATH);
  const std::string szOwn = szPath;
  return szOwn.substr(0, szOwn.rfind('\\') + 1) + szName + ".exe";
}
