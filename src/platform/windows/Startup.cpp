#include "platform/Startup.h"

#include "platform/Files.h"
#include "platform/windows/System.h"
#include "platform/windows/UserFolders.h"

namespace {

constexpr char szRunKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char szValue[] = "Kestrova";
constexpr DWORD lRegSz = 1;

std::string ValueName() {
  return std::string("HKEY_CURRENT_USER\\") + szRunKey + "\\" + szValue;
}

bool HasValue() {
  return RegGetValueA(hSystemCurrentUser, szRunKey, szValue, RRF_RT_ANY, nullptr, nullptr, nullptr) ==
         ERROR_SUCCESS;
}

// What the installer makes for every user of the computer.
std::string CommonShortcut() {
  return CommonStartupFolder() + "\\Kestrova.lnk";
}

std::string Command() {
  std::string szPath(32768, '\0');  // the longest path there is
  szPath.resize(GetModuleFileNameA(nullptr, szPath.data(), static_cast<DWORD>(szPath.size())));
  szPath.erase(szPath.rfind('\\') + 1);
  return "\"" + szPath + "kestrova.exe\"";
}

}  // namespace

Startup::Answer Startup::Read() {
  if (HasValue()) return {Result::Done, true, false, ValueName()};
  if (Files::FileExists(CommonShortcut())) return {Result::Done, true, false, CommonShortcut()};
  return {};
}

Startup::Answer Startup::TurnOn() {
  if (Answer aPresent = Read(); aPresent.bOn && !HasValue()) return aPresent;
  const std::string szCommand = Command();
  const auto lCode = RegSetKeyValueA(hSystemCurrentUser, szRunKey, szValue, lRegSz, szCommand.c_str(),
                                     static_cast<DWORD>(szCommand.size() + 1));
  if (lCode != ERROR_SUCCESS) return {Result::NotWritten, false, false, ValueName()};
  return {Result::Done, true, false, ValueName()};
}

Startup::Answer Startup::TurnOff() {
  if (HasValue() && RegDeleteKeyValueA(hSystemCurrentUser, szRunKey, szValue) != ERROR_SUCCESS)
    return {Result::NotWritten, true, false, ValueName()};
  if (Files::Delete(CommonShortcut()) == Files::Deletion::Failed)
    return {Result::NotWritten, true, false, CommonShortcut()};
  return {};
}
