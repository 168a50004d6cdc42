// The nine entry points, on the store.
#include "platform/Registry.h"

#include <array>

#include "base/Text.h"
#include "platform/RegistryRules.h"
#include "platform/posix/Store.h"
#include "platform/posix/UserFolders.h"

namespace Registry {

namespace {

using Store::OpenKey;
using Use = Database::Use;

constexpr std::size_t lLongestValueName = 16383;

using Walk = std::int32_t (*)(Database&, std::int64_t, Store::Path, std::int64_t&);

std::int32_t OpenBy(Walk pWalk, Key hKey, const char* szPath, Key& hResult) {
  hResult = 0;
  Database* pDatabase = nullptr;
  OpenKey* pKey = nullptr;
  std::vector<std::string_view> aParts;
  auto lCode = Store::Find(hKey, pDatabase, pKey);
  if (lCode == lSuccess && !SplitPath(szPath, aParts)) return lInvalidParameter;
  std::int64_t lId = 0;
  if (lCode == lSuccess) lCode = pWalk(*pDatabase, pKey->lId, aParts, lId);
  if (lCode == lSuccess) hResult = Store::Hold(lId);
  if (lCode == lAccessDenied) hResult = Store::hUnreadable;
  return lCode;
}

// What Windows keeps in the registry and the desktop keeps elsewhere: the user's desktop folder.
bool IsDesktopFolder(Database& aDatabase, std::int64_t lId, std::string_view szName) {
  if (!Text::EqualNoCase(szName, "Desktop")) return false;
  constexpr std::array<std::string_view, 6> aFolders = {"Software",       "Microsoft", "Windows",
                                                        "CurrentVersion", "Explorer",  "Shell Folders"};
  std::int64_t lFolders = 0;
  return Store::Resolve(aDatabase, Database::lCurrentUser, aFolders, lFolders) == lSuccess && lFolders == lId;
}

}  // namespace

std::int32_t RegOpenKeyExA(Key hKey, const char* szPath, std::uint32_t, Key& hResult) {
  return OpenBy(Store::Resolve, hKey, szPath != nullptr ? szPath : "", hResult);
}

std::int32_t RegCreateKeyExA(Key hKey, const char* szPath, std::uint32_t, Key& hResult) {
  hResult = 0;
  return szPath != nullptr ? OpenBy(Store::Make, hKey, szPath, hResult) : lInvalidParameter;
}

std::int32_t RegCloseKey(Key hKey) {
  return Store::Release(hKey);
}

std::int32_t RegQueryValueExA(Key hKey, const char* szName, std::uint32_t* pType, void* pData,
                              std::uint32_t* pSize) {
  Database* pDatabase = nullptr;
  OpenKey* pKey = nullptr;
  const auto lCode = Store::Find(hKey, pDatabase, pKey);
  if (lCode != lSuccess) return lCode;
  const std::string_view szWanted = szName != nullptr ? szName : "";
  Use aFind(*pDatabase, Database::FIND_VALUE);
  if (aFind.Bind(pKey->lId).Bind(szWanted).Row())
    return Deliver(static_cast<std::uint32_t>(aFind.Number(0)), aFind.Bytes(1), pType, pData, pSize);
  if (aFind.Code() != lSuccess) return aFind.Code();
  if (IsDesktopFolder(*pDatabase, pKey->lId, szWanted)) {
    const auto szDesktop = UserFolders::Desktop();
    return Deliver(REG_SZ, {szDesktop.c_str(), szDesktop.size() + 1}, pType, pData, pSize);
  }
  const auto lExists = Store::CheckExists(*pDatabase, pKey->lId);
  return lExists == lSuccess ? lNotFound : lExists;
}

std::int32_t RegSetValueExA(Key hKey, const char* szName, std::uint32_t lType, const void* pData,
                            std::uint32_t lSize) {
  Database* pDatabase = nullptr;
  OpenKey* pKey = nullptr;
  auto lCode = Store::Find(hKey, pDatabase, pKey);
  if (lCode != lSuccess) return lCode;
  const std::string_view szValue = szName != nullptr ? szName : "";
  if ((pData == nullptr && lSize > 0) || szValue.size() > lLongestValueName) return lInvalidParameter;
  lCode = pDatabase->BeforeWrite();
  if (lCode != lSuccess) return lCode;
  Store::ValuesChanged(pKey->lId);
  const std::string_view szData(static_cast<const char*>(pData), lSize);
  return Use(*pDatabase, Database::SET_VALUE)
      .Bind(pKey->lId)
      .Bind(szValue)
      .Bind(std::int64_t{lType})
      .BindData(szData)
      .Run();
}

std::int32_t RegDeleteKeyA(Key hKey, const char* szPath) {
  if (szPath == nullptr) return lInvalidParameter;
  Database* pDatabase = nullptr;
  OpenKey* pKey = nullptr;
  auto lCode = Store::Find(hKey, pDatabase, pKey);
  if (lCode != lSuccess) return lCode;
  std::vector<std::string_view> aParts;
  if (!SplitPath(szPath, aParts)) return lInvalidParameter;
  std::int64_t lId = 0;
  lCode = Store::Resolve(*pDatabase, pKey->lId, aParts, lId);
  if (lCode != lSuccess) return lCode;
  if (lId == Database::lLocalMachine || lId == Database::lCurrentUser) return lAccessDenied;
  lCode = pDatabase->BeforeWrite();
  if (lCode != lSuccess) return lCode;
  Store::KeysChanged();
  Store::ValuesChanged(lId);
  lCode = Use(*pDatabase, Database::DELETE_KEY).Bind(lId).Run();
  if (lCode != lSuccess || pDatabase->Changes() == 1) return lCode;
  lCode = Store::CheckExists(*pDatabase, lId);
  return lCode == lSuccess ? lAccessDenied : lCode == lInvalidHandle ? lNotFound : lCode;
}

std::int32_t RegDeleteValueA(Key hKey, const char* szName) {
  Database* pDatabase = nullptr;
  OpenKey* pKey = nullptr;
  auto lCode = Store::Find(hKey, pDatabase, pKey);
  if (lCode == lSuccess) lCode = pDatabase->BeforeWrite();
  if (lCode != lSuccess) return lCode;
  Store::ValuesChanged(pKey->lId);
  lCode = Use(*pDatabase, Database::DELETE_VALUE).Bind(pKey->lId).Bind(szName != nullptr ? szName : "").Run();
  if (lCode != lSuccess || pDatabase->Changes() == 1) return lCode;
  lCode = Store::CheckExists(*pDatabase, pKey->lId);
  return lCode == lSuccess ? lNotFound : lCode;
}

std::int32_t RegEnumKeyA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t lNameSize) {
  Database* pDatabase = nullptr;
  OpenKey* pKey = nullptr;
  auto lCode = Store::Find(hKey, pDatabase, pKey);
  if (lCode == lSuccess && szName == nullptr) lCode = lInvalidParameter;
  if (lCode == lSuccess) lCode = Store::ListKeys(*pDatabase, *pKey);
  if (lCode != lSuccess) return lCode;
  if (lIndex >= pKey->aKeys.size()) return lNoMoreItems;
  return CopyName(pKey->aKeys[lIndex], szName, lNameSize) ? lSuccess : lMoreData;
}

std::int32_t RegEnumValueA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t* pNameSize,
                           std::uint32_t* pType, void* pData, std::uint32_t* pSize) {
  Database* pDatabase = nullptr;
  OpenKey* pKey = nullptr;
  auto lCode = Store::Find(hKey, pDatabase, pKey);
  if (lCode == lSuccess && (szName == nullptr || pNameSize == nullptr)) lCode = lInvalidParameter;
  if (lCode == lSuccess) lCode = Store::ListValues(*pDatabase, *pKey);
  if (lCode != lSuccess) return lCode;
  if (lIndex >= pKey->pValues->size()) return lNoMoreItems;
  const auto& aValue = (*pKey->pValues)[lIndex];
  if (!CopyName(aValue.szName, szName, *pNameSize)) return lMoreData;
  *pNameSize = static_cast<std::uint32_t>(aValue.szName.size());
  return Deliver(aValue.lType, aValue.szData, pType, pData, pSize);
}

}  // namespace Registry
