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

inline void Put(const std::string& szPath, const std::string& szName, const RegistryAccess::Variant& aValue,
                Registry::Key hParent = hRoot) {
  RegistryAccess::RegCreatePath(hParent, szPath);
  RegistryAccess::RegWriteValue(hParent, szPath, szName, aValue, aValue.index() == 1 ? 4 : 1);
}

// The value as text; where it cannot be read, the code.
inline std::string Get(const std::string& szPath, const std::string& szName, Registry::Key hParent = hRoot) {
  std::string szValue;
  std::int32_t lType = 0;
  const auto lCode = RegistryAccess::RegReadValue(hParent, szPath, szName, szValue, lType);
  return lCode == 0 ? szValue : "code " + std::to_string(lCode);
}

// "name=value" for each value of a key, sorted.
inline std::vector<std::string> Values(const std::string& szPath) {
  std::vector<RegistryAccess::RegValueEntry> aEntries;
  std::int32_t lCount = 0, lFirst = 0, lLimit = 1100;
  RegistryAccess::RegListValues(hRoot, szPath, aEntries, lCount, lFirst, lLimit);
  std::vector<std::string> aTexts;
  for (std::size_t i = 1; i < aEntries.size(); ++i)
    aTexts.push_back(aEntries[i].Name + "=" + Get(szPath, aEntries[i].Name));
  std::ranges::sort(aTexts);
  return aTexts;
}

// The user's own cookie setting.
inline void PutCookies(const RegistryAccess::Variant& aValue) {
  Put(ProductKeys::szInternetSettings, "AllowCookies", aValue, Registry::HKEY_CURRENT_USER);
}

inline std::string Cookies() {
  return Get(ProductKeys::szInternetSettings, "AllowCookies", Registry::HKEY_CURRENT_USER);
}

inline std::string SiteKey(const std::string& szName) {
  return std::string(ProductKeys::szAddress) + "\\" + szName;
}

// Mails go to that port of this machine.
inline void PutMailServer(std::int32_t lPort) {
  Put(ProductKeys::szManager, "Email", "manager@kestrova.invalid");
  Put(ProductKeys::szManager, "SMTP", "127.0.0.1");
  Put(ProductKeys::szManager, "SMTPPort", lPort);
}

// A site's key as an earlier run has left it.
inline void PutSite(const std::string& szURL, std::int32_t lIndex) {
  modAddress::WriteSiteRecord({"", szURL, SiteStatus::iDown, SiteRecord::iEnabled, 60, "old"}, lIndex);
}

// The loaded URLs in slot order, joined by blanks.
inline std::string Urls() {
  std::string szUrls;
  for (std::int32_t n = 1; n <= lSiteCount; ++n)
    szUrls += (n > 1 ? " " : "") + aSites.at(static_cast<std::size_t>(n)).URL;
  return szUrls;
}

}  // namespace Stored
