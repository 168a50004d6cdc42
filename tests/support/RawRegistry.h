// RawRegistry: values of the registry as bytes, by the path of their key, as no operation of the program is
// needed to write or read them.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace RawRegistry {

inline constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;

// The key is made; the code is the last call's.
inline std::int32_t Put(const std::string& szPath, const std::string& szName, std::uint32_t lType,
                        const std::string& szBytes, Registry::Key hParent = hRoot) {
  Registry::Key hKey = 0;
  auto lCode = Registry::RegCreateKeyExA(hParent, szPath.c_str(), 0x3F, hKey);
  if (lCode == Registry::lSuccess)
    lCode = Registry::RegSetValueExA(hKey, szName.c_str(), lType, szBytes.data(),
                                     static_cast<std::uint32_t>(szBytes.size()));
  Registry::RegCloseKey(hKey);
  return lCode;
}

// The bytes, or the last call's code in brackets.
inline std::string Get(const std::string& szPath, const std::string& szName, Registry::Key hParent = hRoot) {
  Registry::Key hKey = 0;
  Registry::RegOpenKeyExA(hParent, szPath.c_str(), 0x3F, hKey);
  std::string szBytes(4096, '\0');
  std::uint32_t lSize = 4096;
  const auto lCode = Registry::RegQueryValueExA(hKey, szName.c_str(), nullptr, szBytes.data(), &lSize);
  Registry::RegCloseKey(hKey);
  return lCode == Registry::lSuccess ? szBytes.substr(0, lSize) : "[" + std::to_string(lCode) + "]";
}

}  // namespace RawRegistry
