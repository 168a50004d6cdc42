#include "support/ChildProcess.h"

#include <array>
#include <chrono>
#include <cstring>

#include "platform/Text.h"
#include "platform/windows/System.h"

using Steady = std::chrono::steady_clock;

namespace {

// The number of a process that Ctrl-C ended, and here also of one that was killed.
constexpr DWORD lEndedFromOutside = 0xC000013A;

// Set variables first, then the test's own that they do not replace.
std::string EnvironmentBlock(const ChildProcess::Variables& aSet) {
  std::string szBlock;
  for (const auto& [szName, szValue] : aSet)
    szBlock += szName + "=" + szValue + '\0';
  char* const pOwn = GetEnvironmentStringsA();
  for (const char* pEntry = pOwn; *pEntry; pEntry += std::strlen(pEntry) + 1) {
    const std::string szEntry = pEntry;
    bool bReplaced = false;
    for (const auto& aVariable : aSet)
      bReplaced = bReplaced || Text::EqualNoCase(szEntry.substr(0, szEntry.find('=', 1)), aVariable.first);
    if (!bReplaced) szBlock += szEntry + '\0';
  }
  FreeEnvironmentStringsA(pOwn);
  return szBlock + '\0';
}

std::string Quoted(const std::string& szArgument) {
  std::string szQuoted = "\"";
  std::size_t lBackslashes = 0;
  for (const char ch : szArgument) {
    if (ch == '"') szQuoted.append(lBackslashes + 1, '\\');
    lBackslashes = ch == '\\' ? lBackslashes + 1 : 0;
    szQuoted += ch;
  }
  return szQuoted.append(lBackslashes, '\\') + '"';
}

}  // namespace

struct ChildProcess::State {
  HANDLE hProcess = nullptr;
  DWORD lGroup = 0;
  int lResult = lRunning;
  std::array<HANDLE, 2> aPipes{};
  std::array<std::string, 2> aTexts;

  // Takes what is there. Lines end as everywhere in the tests, in LF.
  bool Read() {
    bool bAny = false;
    for (std::size_t i = 0; i < aPipes.size(); ++i) {
      DWORD lThere = 0;
      while (aPipes[i] && PeekNamedPipe(aPipes[i], nullptr, 0, nullptr, &lThere, nullptr) && lThere > 0) {
        std::string szPiece(lThere, '\0');
        DWORD lRead = 0;
        if (!ReadFile(aPipes[i], szPiece.data(), lThere, &lRead, nullptr)) break;
        aTexts[i].append(szPiece, 0, lRead);
        bAny = true;
      }
      for (auto lAt = aTexts[i].find("\r\n"); lAt != std::string::npos; lAt = aTexts[i].find("\r\n", lAt))
        aTexts[i].erase(lAt, 1);
    }
    return bAny;
  }

  bool Ended(DWORD lMilliseconds) {
    if (!hProcess) return true;
    if (WaitForSingleObject(hProcess, lMilliseconds) != WAIT_OBJECT_0) return false;
    DWORD lCode = 0;
    GetExitCodeProcess(hProcess, &lCode);
    CloseHandle(hProcess);
    hProcess = nullptr;
    lResult = lCode >= 0x80000000 ? lKilled : static_cast<int>(lCode);  // crashes have such codes too
    return true;
  }
};

ChildProcess::ChildProcess(const std::string& szProgram, const std::vector<std::string>& aArguments,
                           const Variables& aEnvironment)
    : pState(std::make_unique<State>()) {
  SECURITY_ATTRIBUTES aInherited{sizeof aInherited, nullptr, TRUE};
  std::array<HANDLE, 2> aWriteEnds{};
  for (std::size_t i = 0; i < 2; ++i) {
    CreatePipe(&pState->aPipes[i], &aWriteEnds[i], &aInherited, 1 << 16);
    SetHandleInformation(pState->aPipes[i], HANDLE_FLAG_INHERIT, 0);
  }
  STARTUPINFOA aStart{};
  aStart.cb = sizeof aStart;
  aStart.dwFlags = STARTF_USESTDHANDLES;
  aStart.hStdInput = CreateFileA("NUL", GENERIC_READ, 0, &aInherited, OPEN_EXISTING, 0, nullptr);
  aStart.hStdOutput = aWriteEnds[0];
  aStart.hStdError = aWriteEnds[1];
  std::string szCommandLine = Quoted(szProgram);
  for (const std::string& szArgument : aArguments)
    szCommandLine += ' ' + Quoted(szArgument);
  std::string szEnvironment = EnvironmentBlock(aEnvironment);
  PROCESS_INFORMATION aProcess{};
  // A group of its own, so that an interrupt reaches the child and not the test.
  if (CreateProcessA(nullptr, szCommandLine.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP,
                     szEnvironment.data(), nullptr, &aStart, &aProcess)) {
    CloseHandle(aProcess.hThread);
    pState->hProcess = aProcess.hProcess;
    pState->lGroup = aProcess.dwProcessId;
  } else {
    pState->lResult = 127;
    pState->aTexts[1] = "cannot start " + szProgram;
  }
  CloseHandle(aStart.hStdInput);
  for (const HANDLE hEnd : aWriteEnds)
    CloseHandle(hEnd);
}

ChildProcess::~ChildProcess() {
  Kill();
  pState->Ended(INFINITE);
  for (const HANDLE hPipe : pState->aPipes)
    CloseHandle(hPipe);
}

int ChildProcess::Wait(double dSeconds) {
  const auto aEnd = Steady::now() + std::chrono::duration<double>(dSeconds);
  while (!pState->Ended(pState->Read() ? 0 : 5)) {
    if (Steady::now() >= aEnd) return lRunning;
  }
  pState->Read();
  return pState->lResult;
}

bool ChildProcess::WaitForOutput(const std::string& szText, double dSeconds) {
  const auto aEnd = Steady::now() + std::chrono::duration<double>(dSeconds);
  for (;;) {
    const bool bEnded = pState->Ended(pState->Read() ? 0 : 5);
    if (bEnded) pState->Read();
    if (Output().find(szText) != std::string::npos) return true;
    if (bEnded || Steady::now() >= aEnd) return false;
  }
}

void ChildProcess::Kill() {
  if (pState->hProcess) TerminateProcess(pState->hProcess, lEndedFromOutside);
}

// Ctrl-C itself cannot be sent to one group; the program takes Ctrl-Break for the same.
void ChildProcess::Interrupt() {
  if (pState->hProcess) GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, pState->lGroup);
}

const std::string& ChildProcess::Output() const {
  return pState->aTexts[0];
}

const std::string& ChildProcess::Errors() const {
  return pState->aTexts[1];
}

std::string ChildProcess::BuiltProgram(const std::string& szName) {
  char szPath[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, szPath, MAX_PATH);
  const std::string szOwn = szPath;
  return szOwn.substr(0, szOwn.rfind('\\') + 1) + szName + ".exe";
}
