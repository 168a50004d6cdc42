#include "persistence/SiteIndex.h"

#include <algorithm>
#include <utility>

#include "base/Strings.h"
#include "base/Text.h"
#include "persistence/ProductKeys.h"
#include "persistence/modBasic.h"

using RegistryAccess::lTypeNumber;
using RegistryAccess::lTypeText;
using RegistryAccess::RegReadValue;
using RegistryAccess::RegValueEntry;
using RegistryAccess::RegWriteValue;
using SiteKey::Values;

namespace {

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;

}  // namespace

namespace SiteIndex {
namespace {

constexpr std::string_view szPrefix = "Domain";

bool IsReference(const RegValueEntry& aEntry) {
  const auto* pKeyName = std::get_if<std::string>(&aEntry.Value);
  return Text::EqualNoCase(aEntry.Name.substr(0, szPrefix.size()), szPrefix) && aEntry.Type == lTypeText &&
         pKeyName != nullptr && !Text::IsBlank(*pKeyName);
}

std::int16_t ReferenceNumber(const RegValueEntry& aEntry) {
  return Text::Saturate<std::int16_t>(Text::LeadingNumber(aEntry.Name.substr(szPrefix.size())));
}

std::int32_t ListReferences(std::vector<RegValueEntry>& aEntries) {
  std::int32_t lCount = 0;
  std::int32_t lFirstLimit = modAddress::lSiteCapacity;
  std::int32_t lLimit = modAddress::lSiteCapacity;
  return RegistryAccess::RegListValues(hRoot, ProductKeys::szAddressKey, aEntries, lCount, lFirstLimit,
                                       lLimit);
}

// An index that could not be deleted as a whole is emptied value by value: a reference left in it would bring
// a site into the list twice.
std::int32_t EmptyIndex() {
  RegistryAccess::RegRemoveKey(hRoot, ProductKeys::szAddressKey);
  Create();
  std::vector<RegValueEntry> aEntries;
  auto lCode = ListReferences(aEntries);
  for (std::size_t i = 1; i < aEntries.size() && lCode == Registry::lSuccess; ++i)
    lCode = Remove(aEntries[i].Name);
  return lCode;
}

using IndexedUrl = std::pair<RegistryAccess::Variant, RegistryAccess::Variant>;

// What a rebuild goes by.
struct IndexPlan {
  std::vector<IndexedUrl> aPairs = std::vector<IndexedUrl>(1);  // number and trimmed URL, from slot 1
  std::vector<std::string> aStale;                              // keys whose URL does not give their name
  std::vector<std::pair<std::string, std::string>> aMended;     // keys that the last good copy has a URL for
  bool bNumbers = true;                                         // all numbers are stored as numbers
  bool bWhole = true;                                           // the store gave all that was asked for
  KeysRead aRead;
};

bool GivesName(const std::string& szURL, const std::string& szKeyName) {
  return Text::LowerCase(modBasic::EscapeBackslash(szURL)) == Text::LowerCase(szKeyName);
}

// A key whose URL does not give its name is to go, but only where the read has told so: after one that failed
// the site may be there and whole. Nor where the last good copy knows the URL: then it was damage that turned
// it, and all else is as it is stored.
void PlanSite(const std::string& szKeyName, IndexPlan& aPlan) {
  Values aStored;
  const auto lRead = SiteKey::Read(szKeyName, aStored);
  aPlan.bWhole = aPlan.bWhole && lRead != Registry::lAccessDenied;
  if (lRead != Registry::lSuccess) return;
  std::string szURL;
  if (const auto* const pURL = RegistryAccess::FindValue(aStored, "URL")) {
    if (pURL->Type == lTypeText) szURL = Text::Trim(std::get<std::string>(pURL->Value));
  } else {
    std::int32_t lType = 0;  // left out: there is none, or it could not be read
    const auto lCode = RegReadValue(hRoot, SiteKey::Path(szKeyName), "URL", szURL, lType);
    aPlan.bWhole = aPlan.bWhole && lCode != Registry::lAccessDenied;
    if (lCode != Registry::lSuccess && lCode != Registry::lNotFound && lCode != -1) return;
    szURL.clear();
  }
  if (!GivesName(szURL, szKeyName)) {
    const auto szGood = Registry::LastGoodText(SiteKey::Path(szKeyName), "URL").value_or("");
    szURL = Text::Trim(szGood);
    if (!GivesName(szURL, szKeyName)) return aPlan.aStale.push_back(szKeyName);
    std::erase_if(aStored, [](const auto& aField) { return Text::EqualNoCase(aField.Name, "URL"); });
    aStored.push_back({"URL", szGood, lTypeText});
    aPlan.aMended.emplace_back(szKeyName, szGood);
  }
  std::int32_t lIndex = 0;
  RegistryAccess::TakeValue(aStored, "Index", lIndex);
  const auto* const pIndex = RegistryAccess::FindValue(aStored, "Index");
  aPlan.bNumbers = aPlan.bNumbers && pIndex != nullptr && pIndex->Type == lTypeNumber;
  aPlan.aPairs.emplace_back(lIndex, szURL);
  aPlan.aRead.emplace(Text::LowerCase(szKeyName), std::move(aStored));
}

// The index holds what WriteIndex would write, and nothing else.
bool IndexStands(const IndexPlan& aPlan) {
  Values aEntries;
  if (!aPlan.bNumbers || ListReferences(aEntries) != Registry::lSuccess) return false;
  if (aEntries.size() != aPlan.aPairs.size()) return false;
  std::map<std::string, RegistryAccess::Variant> aReferences;
  for (std::size_t i = 1; i < aEntries.size(); ++i)
    aReferences.emplace(aEntries[i].Name, aEntries[i].Value);
  for (std::size_t i = 1; i < aPlan.aPairs.size(); ++i) {
    const auto lSlot = static_cast<std::int32_t>(i);
    const auto& [aIndex, aURL] = aPlan.aPairs[i];
    const auto szURL = Text::LowerCase(std::get<std::string>(aURL));
    const auto pReference = aReferences.find(NameOf(lSlot));
    if (pReference == aReferences.end() ||
        pReference->second != RegistryAccess::Variant(modBasic::EscapeBackslash(szURL)))
      return false;
    if (aIndex != RegistryAccess::Variant(lSlot) && szURL.find('\\') == std::string::npos) return false;
  }
  return true;
}

std::int32_t WriteIndex(const std::vector<IndexedUrl>& aPairs) {
  auto lCode = Registry::lSuccess;
  for (std::size_t i = 1; i < aPairs.size() && lCode == Registry::lSuccess; ++i) {
    const auto lSlot = static_cast<std::int32_t>(i);
    const auto szURL = Text::LowerCase(std::get<std::string>(aPairs[i].second));
    lCode = Write(lSlot, modBasic::EscapeBackslash(szURL));
    // The number goes under the URL as it is: one with a backslash names no key, and its site keeps the
    // number that it has.
    if (szURL.find('\\') == std::string::npos && lCode == Registry::lSuccess)
      lCode = RegWriteValue(hRoot, SiteKey::Path(szURL), "Index", lSlot, lTypeNumber);
  }
  return lCode;
}

}  // namespace

std::int32_t Create() {
  return RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddressKey);
}

// The system lists values as it likes ("Domain10" before "Domain2"), and a site whose slot is not its number
// would be deleted in another's place.
std::int32_t Read(std::vector<Reference>& aReferences) {
  Values aEntries;
  const auto lCode = ListReferences(aEntries);
  std::erase_if(aEntries, [](const auto& aEntry) { return !IsReference(aEntry); });
  std::ranges::stable_sort(aEntries, {}, ReferenceNumber);
  for (auto& aEntry : aEntries)
    aReferences.push_back({std::move(aEntry.Name), std::get<std::string>(std::move(aEntry.Value))});
  return lCode;
}

std::string NameOf(std::int32_t n) {
  return std::string(szPrefix) + std::to_string(n);
}

std::int32_t Write(std::int32_t n, const std::string& szKeyName) {
  return RegWriteValue(hRoot, ProductKeys::szAddressKey, NameOf(n), szKeyName, lTypeText);
}

std::int32_t Remove(const std::string& szName) {
  return RegistryAccess::RegRemoveValue(hRoot, ProductKeys::szAddressKey, szName);
}

modAddress::Mismatches Rebuild(KeysRead& aRead) {
  Registry::Transaction aOneCommit;
  IndexPlan aPlan;
  std::vector<std::string> aNames;
  modAddress::Mismatches aFound;
  aPlan.bWhole = modAddress::ListKeyNames(aNames);
  for (const auto& szName : aNames)
    PlanSite(szName, aPlan);
  if (!aPlan.bWhole) {  // an index over half the sites would be worse than the old one
    aOneCommit.Abandon();
    return aFound;
  }
  const auto lCount = static_cast<std::int32_t>(aPlan.aPairs.size()) - 1;
  RegistryAccess::SortKeyedRecords(aPlan.aPairs, lCount, true);
  // At most starts nothing has to be numbered anew.
  const bool bStands = IndexStands(aPlan);
  auto lCode = bStands ? Registry::lSuccess : EmptyIndex();
  for (const auto& szName : aPlan.aStale)
    if (SiteKey::Remove(szName) == Registry::lSuccess) aFound.aDropped.push_back(szName);
  for (const auto& [szName, szURL] : aPlan.aMended)
    if (SiteKey::Write(szName, {{"URL", szURL, lTypeText}}) == Registry::lSuccess)
      aFound.aMended.push_back(szName);
  if (!bStands && lCode == Registry::lSuccess) lCode = WriteIndex(aPlan.aPairs);
  modAddress::SetSiteCount(lCount);
  if (lCode != Registry::lSuccess) aOneCommit.Abandon();
  if (aOneCommit.Commit() != Registry::lSuccess || lCode != Registry::lSuccess) aFound = {};
  aRead = std::move(aPlan.aRead);
  return aFound;
}

}  // namespace SiteIndex

namespace modAddress {

std::string Mismatches::Said() const {
  std::string szSaid;
  const auto Say = [&](std::int32_t lText, const std::vector<std::string>& aNames) {
    if (!aNames.empty())
      szSaid += (szSaid.empty() ? "" : " ") + FillResString(lText, {Text::Joined(aNames, ", ")});
  };
  Say(IDS_STORE_SITES_DROPPED, aDropped);
  Say(IDS_STORE_SITES_MENDED, aMended);
  return szSaid;
}

Mismatches RebuildSiteIndex() {
  SiteIndex::KeysRead aRead;
  return SiteIndex::Rebuild(aRead);
}

void SetSiteCount(std::int32_t n) {
  std::int32_t lStored = -1, lType = 0;
  RegReadValue(hRoot, ProductKeys::szAddress, "NumActualDomain", lStored, lType);
  if (lStored == n && lType == lTypeNumber) return;
  if (n == 0) RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddress);
  RegWriteValue(hRoot, ProductKeys::szAddress, "NumActualDomain", n, lTypeNumber);
}

}  // namespace modAddress
