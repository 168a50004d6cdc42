#include "platform/RegistryRules.h"

#include <algorithm>
#include <cstring>

#include "platform/Registry.h"

bool Registry::SplitPath(std::string_view szPath, std::vector<std::string_view>& aParts) {
  while (!szPath.empty()) {
    const auto lEnd = std::min(szPath.find('\\'), szPath.size());
    if (lEnd > lLongestKeyName) return false;
    if (lEnd > 0) aParts.push_back(szPath.substr(0, lEnd));
    szPath.remove_prefix(std::min(lEnd + 1, szPath.size()));
  }
  return true;
}

std::int32_t Registry::Deliver(std::uint32_t lType, std::string_view szData, std::uint32_t* pType,
                               void* pData, std::uint32_t* pSize) {
  if (pData != nullptr && pSize == nullptr) return lInvalidParameter;
  if (pType != nullptr) *pType = lType;
  if (pSize == nullptr) return lSuccess;
  const auto lRoom = *pSize;
  *pSize = static_cast<std::uint32_t>(szData.size());
  if (pData == nullptr) return lSuccess;
  if (lRoom < szData.size()) return lMoreData;
  std::memcpy(pData, szData.data(), szData.size());
  return lSuccess;
}

bool Registry::CopyName(std::string_view szName, char* szBuffer, std::uint32_t lRoom) {
  if (szName.size() >= lRoom) return false;
  std::memcpy(szBuffer, szName.data(), szName.size());
  szBuffer[szName.size()] = '\0';
  return true;
}
