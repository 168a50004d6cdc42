#include "editing/LastLocation.h"

#include <algorithm>

#include "base/Text.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "platform/Files.h"
#include "platform/Shell.h"

namespace {

std::string ReadFolder(Registry::Key hRoot, const char* szKey, const char* szName) {
  std::string szFolder;
  std::int32_t lType = 0;
  RegistryAccess::RegReadValue(hRoot, szKey, szName, szFolder, lType);
  return szFolder;
}

}  // namespace

std::string LastLocation::StartFolder(const char* szValue, const std::string& szGone) {
  const auto IsThere = [](const std::string& szFolder) {
    return !Text::IsBlank(szFolder) && Files::FolderExists(szFolder);
  };
  auto szRemembered = ReadFolder(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szLastLoc, szValue);
  if (IsThere(szRemembered)) return szRemembered;
  if (!Text::IsBlank(szRemembered) && IsThere(szGone)) return szGone;
  const auto szDesktop = ReadFolder(Registry::HKEY_CURRENT_USER, ProductKeys::szShellFolders, "Desktop");
  return IsThere(szDesktop) ? szDesktop : Shell::HomeFolder();
}

void LastLocation::Remember(const char* szValue, const std::string& szFile) {
  const auto lCut = szFile.rfind(Files::chSeparator);
  if (lCut == std::string::npos) return;
  // A file in the root has nothing before the separator; the root itself is meant.
  const auto szFolder = szFile.substr(0, std::max(lCut, Files::DriveLength(szFile)));
  RegistryAccess::RegCreatePath(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szLastLoc);
  RegistryAccess::RegWriteValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szLastLoc, szValue, szFolder,
                                RegistryAccess::lTypeText);
}
