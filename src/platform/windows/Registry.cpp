#include "platform/Registry.h"

#include <cstdlib>

#include "platform/windows/System.h"

namespace {

constexpr REGSAM lFullAccess = 0x3F;
constexpr char szProduct[] = "Software\\Tamsel\\Kestrova";
constexpr char szStores[] = "Software\\Tamsel\\Stores\\";  // below HKEY_CURRENT_USER

// Where the two roots lie: the system's own, or two keys of a store of its own.
struct Roots {
  HKEY hUser = hSystemCurrentUser;
  HKEY hMachine = hSystemLocalMachine;
  std::int32_t lCode = ERROR_SUCCESS;  // why a store of its own cannot be had
  bool bOwn = false;
};

std::int32_t MakeRoot(const std::string& szPath, HKEY& hRoot) {
  return RegCreateKeyExA(hSystemCurrentUser, szPath.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, lFullAccess,
                         nullptr, &hRoot, nullptr);
}

std::string OwnStore() {
  const char* szName = std::getenv("KESTROVA_REGISTRY");
  return szName && *szName ? szStores + std::string(szName) : "";
}

bool bRootsKnown = false;
Roots aRoots;

Roots& GetRoots() {
  if (bRootsKnown) return aRoots;
  aRoots = {};
  bRootsKnown = true;
  if (const std::string szStore = OwnStore(); !szStore.empty()) {
    aRoots = {nullptr, nullptr, ERROR_SUCCESS, true};
    aRoots.lCode = MakeRoot(szStore + "\\HKEY_CURRENT_USER", aRoots.hUser);
    if (aRoots.lCode == ERROR_SUCCESS)
      aRoots.lCode = MakeRoot(szStore + "\\HKEY_LOCAL_MACHINE", aRoots.hMachine);
  }
  return aRoots;
}

// nullptr for no key; the calls answer ERROR_INVALID_HANDLE to it.
HKEY SystemKey(Registry::Key hKey) {
  if (hKey == Registry::HKEY_CURRENT_USER) return GetRoots().hUser;
  if (hKey == Registry::HKEY_LOCAL_MACHINE) return GetRoots().hMachine;
  return reinterpret_cast<HKEY>(hKey);
}

// RegCloseKey of a predefined key would close a root that other calls still use.
bool IsRoot(Registry::Key hKey) {
  return hKey == Registry::HKEY_CURRENT_USER || hKey == Registry::HKEY_LOCAL_MACHINE;
}

}  // namespace

std::int32_t Registry::RegOpenKeyExA(Key hKey, const char* szPath, std::uint32_t lAccess, Key& hResult) {
  HKEY hOpened = nullptr;
  const LSTATUS lCode = ::RegOpenKeyExA(SystemKey(hKey), szPath, 0, lAccess, &hOpened);
  hResult = lCode == ERROR_SUCCESS ? reinterpret_cast<Key>(hOpened) : 0;
  return lCode;
}

std::int32_t Registry::RegCreateKeyExA(Key hKey, const char* szPath, std::uint32_t lAccess, Key& hResult) {
  HKEY hOpened = nullptr;
  const LSTATUS lCode = ::RegCreateKeyExA(SystemKey(hKey), szPath, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                          lAccess, nullptr, &hOpened, nullptr);
  hResult = lCode == ERROR_SUCCESS ? reinterpret_cast<Key>(hOpened) : 0;
  return lCode;
}

std::int32_t Registry::RegCloseKey(Key hKey) {
  return IsRoot(hKey) ? ERROR_SUCCESS : ::RegCloseKey(SystemKey(hKey));
}

std::int32_t Registry::RegQueryValueExA(Key hKey, const char* szName, std::uint32_t* pType, void* pData,
                                        std::uint32_t* pSize) {
  DWORD lType = 0;
  DWORD lSize = pSize ? *pSize : 0;
  const LSTATUS lCode =
      ::RegQueryValueExA(SystemKey(hKey), szName, nullptr, &lType, static_cast<BYTE*>(pData), &lSize);
  if (pType && (lCode == ERROR_SUCCESS || lCode == ERROR_MORE_DATA)) *pType = lType;
  if (pSize) *pSize = lSize;
  return lCode;
}

std::int32_t Registry::RegSetValueExA(Key hKey, const char* szName, std::uint32_t lType, const void* pData,
                                      std::uint32_t lSize) {
  return ::RegSetValueExA(SystemKey(hKey), szName, 0, lType, static_cast<const BYTE*>(pData), lSize);
}

std::int32_t Registry::RegDeleteKeyA(Key hKey, const char* szPath) {
  return ::RegDeleteKeyA(SystemKey(hKey), szPath);
}

std::int32_t Registry::RegDeleteValueA(Key hKey, const char* szName) {
  return ::RegDeleteValueA(SystemKey(hKey), szName);
}

std::int32_t Registry::RegEnumKeyA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t lNameSize) {
  return ::RegEnumKeyA(SystemKey(hKey), lIndex, szName, lNameSize);
}

std::int32_t Registry::RegEnumValueA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t* pNameSize,
                                     std::uint32_t* pType, void* pData, std::uint32_t* pSize) {
  DWORD lNameSize = *pNameSize;
  DWORD lType = 0;
  DWORD lSize = pSize ? *pSize : 0;
  const LSTATUS lCode = ::RegEnumValueA(SystemKey(hKey), lIndex, szName, &lNameSize, nullptr, &lType,
                                        static_cast<BYTE*>(pData), pSize ? &lSize : nullptr);
  *pNameSize = lNameSize;
  if (pType) *pType = lType;
  if (pSize) *pSize = lSize;
  return lCode;
}

Registry::Transaction::Transaction() = default;
Registry::Transaction::~Transaction() = default;

void Registry::CloseStore() {
  if (aRoots.bOwn) {
    if (aRoots.hUser) ::RegCloseKey(aRoots.hUser);
    if (aRoots.hMachine) ::RegCloseKey(aRoots.hMachine);
  }
  bRootsKnown = false;
}

std::string Registry::StoreName() {
  const std::string szStore = OwnStore();
  return szStore.empty() ? std::string("HKEY_LOCAL_MACHINE\\") + szProduct : "HKEY_CURRENT_USER\\" + szStore;
}
