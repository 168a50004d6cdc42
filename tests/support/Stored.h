// Short words for what a test puts into the store and finds there, below HKEY_LOCAL_MACHINE.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/modAddress.h"
#include "support/RawRegistry.h"

namespace Stored {

using RawRegistry::hRoot;

inline void Put(const std::string& szPath, const std::string& szName, const RegistryAccess::Variant& aValue) {
  RegistryAccess::RegCreatePath(hRoot, szPath);
  RegistryAccess::RegWriteValue(hRoot, szPath, szName, aValue, aValue.index() == 1 ? 4 : 1);
}

// The value as text: "(none)" where there is none.
inline std::string Get(const std::string& szPath, const std::string& szName) {
  std::string szValue = "(none)";
  std::int32_t lType = 0;
  RegistryAccess::RegReadValue(hRoot, szPath, szName, szValue, lType);
  return szValue;
}

// "name=value" for each value of a key, in listing order.
inline std::vector<std::string> Values(const std::string& szPath) {
  std::vector<RegistryAccess::RegValueEntry> aEntries;
  std::int32_t lCount = 0, lFirst = 0, lLimit = 1100;
  RegistryAccess::RegListValues(hRoot, szPath, aEntries, lCount, lFirst, lLimit);
  std::vector<std::string> aTexts;
  for (std::size_t i = 1; i < aEntries.size(); ++i)
    aTexts.push_back(aEntries[i].Name + "=" + Get(szPath, aEntries[i].Name));
  return aTexts;
}

inline std::vector<std::string> SortedValues(const std::string& szPath) {
  auto aTexts = Values(szPath);
  std::ranges::sort(aTexts);
  return aTexts;
}

// The user's own cookie setting; where it cannot be read, the code.
inline void PutCookies(const RegistryAccess::Variant& aValue) {
  RegistryAccess::RegCreatePath(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings);
  RegistryAccess::RegWriteValue(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, "AllowCookies",
                                aValue, aValue.index() == 1 ? 4 : 1);
}
inline std::string Cookies() {
  std::string szValue;
  std::int32_t lType = 0;
  const auto lCode = RegistryAccess::RegReadValue(
      Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, "AllowCookies", szValue, lType);
  return lCode == 0 ? szValue : "code " + std::to_string(lCode);
}

inline std::string SiteKey(const std::string& szName) {
  return std::string(ProductKeys::szAddress) + "\\" + szName;
}

// A site's key as an earlier run has left it.
inline void PutSite(const std::string& szURL, std::int32_t lIndex) {
  modAddress::WriteSiteRecord({"", szURL, 3, 1, 60, "old"}, lIndex);
}

// The loaded URLs in slot order, joined by blanks.
inline std::string Urls() {
  std::string szUrls;
  for (std::int32_t n = 1; n <= lSiteCount; ++n)
    szUrls += (n > 1 ? " " : "") + aSites.at(static_cast<std::size_t>(n)).URL;
  return szUrls;
}

}  // namespace Stored
