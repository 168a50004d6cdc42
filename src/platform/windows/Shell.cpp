#include "platform/Shell.h"

#include <cstdlib>
#include <string_view>

#include "platform/Files.h"
#include "platform/windows/System.h"
#include "platform/windows/UserFolders.h"

namespace {

std::string EnvironmentText(const char* szName) {
  const char* szValue = std::getenv(szName);
  return szValue ? szValue : "";
}

std::string WithoutTrailingSeparator(std::string szFolder) {
  while (!szFolder.empty() && (szFolder.back() == '\\' || szFolder.back() == '/') &&
         szFolder.size() > Files::DriveLength(szFolder))
    szFolder.pop_back();
  return szFolder;
}

// The environment's word first: it is the same in every usual session, and it lets a portable copy or a test
// be sent elsewhere.
std::string UserFolder(const char* szVariable, std::string (*pAskSystem)()) {
  const std::string szFolder = EnvironmentText(szVariable);
  return WithoutTrailingSeparator(szFolder.empty() ? pAskSystem() : szFolder);
}

// One argument as CommandLineToArgvW takes it apart again: backslashes count only before a quotation mark.
std::string Quoted(std::string_view szArgument) {
  std::string szQuoted = "\"";
  std::size_t lBackslashes = 0;
  for (const char ch : szArgument) {
    if (ch == '\\') {
      ++lBackslashes;
      continue;
    }
    szQuoted.append(ch == '"' ? 2 * lBackslashes + 1 : lBackslashes, '\\');
    szQuoted += ch;
    lBackslashes = 0;
  }
  return szQuoted.append(2 * lBackslashes, '\\') + '"';
}

}  // namespace

std::string Shell::ProgramFolder() {
  const std::string szHome = EnvironmentText("KESTROVA_HOME");
  if (!szHome.empty()) return WithoutTrailingSeparator(szHome);
  std::string szPath(32768, '\0');  // the longest path there is
  szPath.resize(GetModuleFileNameA(nullptr, szPath.data(), static_cast<DWORD>(szPath.size())));
  szPath.erase(szPath.rfind('\\') + 1);
  return WithoutTrailingSeparator(szPath);
}

// Who may write to "Program Files" is asked of the file system.
std::string Shell::UserDataFolder() {
  return UserFolder("LOCALAPPDATA", LocalDataFolder) + "\\Kestrova";
}

std::string Shell::DefaultLogFolder() {
  return ProgramFolder() + "\\Logs";
}

std::string Shell::HomeFolder() {
  return UserFolder("USERPROFILE", ProfileFolder);
}

std::string Shell::ProgramFileName(const std::string& szName) {
  return szName + ".exe";
}

std::int32_t Shell::OpenDocument(const std::string& szTarget) {
  const HINSTANCE hAnswer =
      ShellExecuteA(GetDesktopWindow(), "Open", szTarget.c_str(), nullptr, "C:\\", SW_SHOWNORMAL);
  const auto lCode = static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(hAnswer));
  if (lCode > 32) return 0;
  return lCode == 0 ? SE_ERR_OOM : static_cast<std::int32_t>(lCode);  // 0 says "out of memory" too
}

bool Shell::StartProgram(const std::string& szProgram, const std::vector<std::string>& aArguments) {
  std::string szCommandLine = Quoted(szProgram);
  for (const std::string& szArgument : aArguments)
    szCommandLine += ' ' + Quoted(szArgument);
  STARTUPINFOA aStart{};
  aStart.cb = sizeof aStart;
  PROCESS_INFORMATION aProcess{};
  if (!CreateProcessA(szProgram.c_str(), szCommandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &aStart, &aProcess))
    return false;
  CloseHandle(aProcess.hThread);
  CloseHandle(aProcess.hProcess);
  return true;
}
