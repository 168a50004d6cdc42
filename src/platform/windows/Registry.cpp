#include "platform/Registry.h"

#include <cstdlib>
#include <string_view>

#include "platform/windows/KeyAccess.h"
#include "platform/windows/System.h"

namespace {

constexpr REGSAM lFullAccess = 0x3F;
constexpr char szProduct[] = "Software\\Tamsel\\Kestrova";
constexpr char szStores[] = "Software\\Tamsel\\Stores\\";  // below HKEY_CURRENT_USER

// Answered where access is refused: a key on which every call answers 5. No handle of the system's is odd.
constexpr Registry::Key hRefused = 5;

// Where the two roots lie: the system's own, or two keys of a store of its own.
struct Roots {
  HKEY hUser = hSystemCurrentUser;
  HKEY hMachine = hSystemLocalMachine;
};

Roots aRoots;
bool bRootsKnown = false;

// The store of its own that the environment names; empty for the system's registry itself.
std::string OwnStore() {
  const char* szName = std::getenv("KESTROVA_REGISTRY");
  return szName && *szName ? szStores + std::string(szName) : "";
}

std::int32_t CreateKey(HKEY hKey, const std::string& szPath, REGSAM lAccess, HKEY& hResult) {
  return RegCreateKeyExA(hKey, szPath.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, lAccess, nullptr,
                         &hResult, nullptr);
}

const Roots& GetRoots() {
  if (bRootsKnown) return aRoots;
  aRoots = {};
  bRootsKnown = true;
  if (const std::string szStore = OwnStore(); !szStore.empty()) {
    aRoots = {nullptr, nullptr};
    CreateKey(hSystemCurrentUser, szStore + "\\HKEY_CURRENT_USER", lFullAccess, aRoots.hUser);
    CreateKey(hSystemCurrentUser, szStore + "\\HKEY_LOCAL_MACHINE", lFullAccess, aRoots.hMachine);
  }
  return aRoots;
}

bool IsRoot(Registry::Key hKey) {
  return hKey == Registry::HKEY_CURRENT_USER || hKey == Registry::HKEY_LOCAL_MACHINE;
}

// What a call on hKey works on. 0, or the code to answer.
std::int32_t Find(Registry::Key hKey, HKEY& hSystem) {
  if (hKey == hRefused) return ERROR_ACCESS_DENIED;
  hSystem = hKey == Registry::HKEY_CURRENT_USER    ? GetRoots().hUser
            : hKey == Registry::HKEY_LOCAL_MACHINE ? GetRoots().hMachine
                                                   : reinterpret_cast<HKEY>(hKey);
  return hSystem ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

std::int32_t Opened(std::int32_t lCode, HKEY hSystem, Registry::Key& hResult) {
  hResult = lCode == ERROR_SUCCESS ? reinterpret_cast<Registry::Key>(hSystem) : 0;
  if (lCode == ERROR_ACCESS_DENIED) hResult = hRefused;
  return lCode;
}

}  // namespace

// A standard account may read where it may not write: then its list is shown at least, and every write
// answers 5.
std::int32_t Registry::RegOpenKeyExA(Key hKey, const char* szPath, std::uint32_t lAccess, Key& hResult) {
  HKEY hSystem = nullptr;
  HKEY hOpened = nullptr;
  std::int32_t lCode = Find(hKey, hSystem);
  if (lCode == ERROR_SUCCESS) lCode = ::RegOpenKeyExA(hSystem, szPath, 0, lAccess, &hOpened);
  if (lCode == ERROR_ACCESS_DENIED && hSystem)
    lCode = ::RegOpenKeyExA(hSystem, szPath, 0, KEY_READ, &hOpened);
  return Opened(lCode, hOpened, hResult);
}

std::int32_t Registry::RegCreateKeyExA(Key hKey, const char* szPath, std::uint32_t lAccess, Key& hResult) {
  HKEY hSystem = nullptr;
  HKEY hOpened = nullptr;
  std::int32_t lCode = szPath ? Find(hKey, hSystem) : lInvalidParameter;
  if (lCode == ERROR_SUCCESS) lCode = CreateKey(hSystem, szPath, lAccess, hOpened);
  return Opened(lCode, hOpened, hResult);
}

// The roots stay open: every call uses them.
std::int32_t Registry::RegCloseKey(Key hKey) {
  HKEY hSystem = nullptr;
  if (IsRoot(hKey) || hKey == hRefused) return ERROR_SUCCESS;
  const std::int32_t lCode = Find(hKey, hSystem);
  return lCode == ERROR_SUCCESS ? ::RegCloseKey(hSystem) : lCode;
}

std::int32_t Registry::RegQueryValueExA(Key hKey, const char* szName, std::uint32_t* pType, void* pData,
                                        std::uint32_t* pSize) {
  HKEY hSystem = nullptr;
  DWORD lType = 0;
  DWORD lSize = pSize ? *pSize : 0;
  std::int32_t lCode = Find(hKey, hSystem);
  if (lCode != ERROR_SUCCESS) return lCode;
  lCode = ::RegQueryValueExA(hSystem, szName, nullptr, &lType, static_cast<BYTE*>(pData),
                             pSize ? &lSize : nullptr);
  if (lCode != ERROR_SUCCESS && lCode != ERROR_MORE_DATA) return lCode;
  if (pType) *pType = lType;
  if (pSize) *pSize = lSize;
  return lCode;
}

std::int32_t Registry::RegSetValueExA(Key hKey, const char* szName, std::uint32_t lType, const void* pData,
                                      std::uint32_t lSize) {
  HKEY hSystem = nullptr;
  const std::int32_t lCode = Find(hKey, hSystem);
  if (lCode != ERROR_SUCCESS) return lCode;
  return ::RegSetValueExA(hSystem, szName, 0, lType, static_cast<const BYTE*>(pData), lSize);
}

std::int32_t Registry::RegDeleteKeyA(Key hKey, const char* szPath) {
  HKEY hSystem = nullptr;
  const std::int32_t lCode = Find(hKey, hSystem);
  return lCode == ERROR_SUCCESS ? ::RegDeleteKeyA(hSystem, szPath) : lCode;
}

std::int32_t Registry::RegDeleteValueA(Key hKey, const char* szName) {
  HKEY hSystem = nullptr;
  const std::int32_t lCode = Find(hKey, hSystem);
  return lCode == ERROR_SUCCESS ? ::RegDeleteValueA(hSystem, szName) : lCode;
}

std::int32_t Registry::RegEnumKeyA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t lNameSize) {
  HKEY hSystem = nullptr;
  const std::int32_t lCode = Find(hKey, hSystem);
  return lCode == ERROR_SUCCESS ? ::RegEnumKeyA(hSystem, lIndex, szName, lNameSize) : lCode;
}

std::int32_t Registry::RegEnumValueA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t* pNameSize,
                                     std::uint32_t* pType, void* pData, std::uint32_t* pSize) {
  HKEY hSystem = nullptr;
  std::int32_t lCode = Find(hKey, hSystem);
  if (lCode == ERROR_SUCCESS && (!szName || !pNameSize)) lCode = lInvalidParameter;
  if (lCode != ERROR_SUCCESS) return lCode;
  DWORD lNameSize = *pNameSize;
  DWORD lType = 0;
  DWORD lSize = pSize ? *pSize : 0;
  lCode = ::RegEnumValueA(hSystem, lIndex, szName, &lNameSize, nullptr, &lType, static_cast<BYTE*>(pData),
                          pSize ? &lSize : nullptr);
  if (lCode != ERROR_SUCCESS && lCode != ERROR_MORE_DATA) return lCode;
  *pNameSize = lNameSize;
  if (pType) *pType = lType;
  if (pSize) *pSize = lSize;
  return lCode;
}

Registry::Transaction::Transaction(Written) {
}
Registry::Transaction::~Transaction() = default;

std::int32_t Registry::Transaction::Commit() {
  bEnded = true;
  return lSuccess;
}

void Registry::Transaction::Abandon() {
  bEnded = true;
}

Registry::StoreState Registry::OpenStore(bool) {
  HKEY hSystem = nullptr;
  HKEY hProduct = nullptr;
  std::int32_t lCode = Find(HKEY_LOCAL_MACHINE, hSystem);
  if (lCode == ERROR_SUCCESS) lCode = CreateKey(hSystem, szProduct, lFullAccess, hProduct);
  StoreState aState;
  if (lCode == ERROR_SUCCESS) {
    ::RegCloseKey(hProduct);
    aState.bReadable = true;
    return aState;
  }
  aState.iCondition = lCode == ERROR_ACCESS_DENIED ? StoreCondition::KeyRefused : StoreCondition::KeyFailed;
  aState.szSystem = std::to_string(lCode);
  // A standard account may read where it may not write.
  aState.bReadable = ::RegOpenKeyExA(hSystem, szProduct, 0, KEY_READ, &hProduct) == ERROR_SUCCESS;
  if (aState.bReadable) ::RegCloseKey(hProduct);
  return aState;
}

Registry::StoreState Registry::ShareStore() {
  StoreState aState = OpenStore();
  if (aState.iCondition != StoreCondition::Ready) return aState;
  const std::string szStore = OwnStore();
  const std::int32_t lCode = GrantUsersFullAccess(szStore.empty() ? std::string("MACHINE\\") + szProduct
                                                                  : "CURRENT_USER\\" + szStore +
                                                                        "\\HKEY_LOCAL_MACHINE\\" + szProduct);
  if (lCode == ERROR_SUCCESS) return aState;
  aState.iCondition = StoreCondition::NotShared;
  aState.szSystem = std::to_string(lCode);
  return aState;
}

void Registry::CloseStore() {
  if (bRootsKnown && aRoots.hUser != hSystemCurrentUser) {
    if (aRoots.hUser) ::RegCloseKey(aRoots.hUser);
    if (aRoots.hMachine) ::RegCloseKey(aRoots.hMachine);
  }
  bRootsKnown = false;
}

std::optional<std::string> Registry::LastGoodText(const std::string&, const std::string&) {
  return {};
}

// The key, and the one above it where nothing else is there. Not further up: other stores lie beside it.
void Registry::RemoveOwnStore() {
  constexpr std::string_view szRoot = "HKEY_CURRENT_USER\\";
  CloseStore();
  std::string szKey = StoreName();
  if (!szKey.starts_with(szRoot)) return;
  szKey.erase(0, szRoot.size());
  RegDeleteTreeA(hSystemCurrentUser, szKey.c_str());
  ::RegDeleteKeyA(hSystemCurrentUser, szKey.erase(szKey.rfind('\\')).c_str());
}

std::string Registry::StoreName() {
  const std::string szStore = OwnStore();
  return szStore.empty() ? std::string("HKEY_LOCAL_MACHINE\\") + szProduct : "HKEY_CURRENT_USER\\" + szStore;
}
