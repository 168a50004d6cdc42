#include "platform/windows/UserFolders.h"

#include "platform/windows/System.h"

// clang-format off (needs windows.h before it)
#include <shlobj.h>
// clang-format on

namespace {

std::string SpecialFolder(int lNumber) {
  char szPath[MAX_PATH] = "";
  return SUCCEEDED(SHGetFolderPathA(nullptr, lNumber, nullptr, SHGFP_TYPE_CURRENT, szPath)) ? szPath : "";
}

}  // namespace

std::string LocalDataFolder() {
  return SpecialFolder(CSIDL_LOCAL_APPDATA);
}

std::string CommonStartupFolder() {
  return SpecialFolder(CSIDL_COMMON_STARTUP);
}

std::string ProfileFolder() {
  return SpecialFolder(CSIDL_PROFILE);
}
