#include "platform/RegistryReply.h"

#include <cstring>

#include "platform/Registry.h"

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
