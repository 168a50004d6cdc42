#include "persistence/KeptFiles.h"

#include <cstdint>

#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"

using RegistryAccess::lTypeText;

namespace {

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;

const char* NameOf(KeptFiles::Kind iKind) {
  return iKind == KeptFiles::Kind::Metrics ? "MetricsFile" : "PageFile";
}

}  // namespace

std::string KeptFiles::Read(Kind iKind) {
  std::string szPath;
  std::int32_t lType = 0;
  RegistryAccess::RegReadValue(hRoot, ProductKeys::szKeptFiles, NameOf(iKind), szPath, lType);
  return szPath;
}

bool KeptFiles::Store(Kind iKind, const std::string& szPath) {
  if (szPath.empty()) {
    const auto lCode = RegistryAccess::RegRemoveValue(hRoot, ProductKeys::szKeptFiles, NameOf(iKind));
    return lCode == Registry::lSuccess || lCode == Registry::lNotFound || lCode == Registry::lInvalidHandle;
  }
  RegistryAccess::RegCreatePath(hRoot, ProductKeys::szKeptFiles);
  RegistryAccess::RegWriteValue(hRoot, ProductKeys::szKeptFiles, NameOf(iKind), szPath, lTypeText);
  return Read(iKind) == szPath;
}
