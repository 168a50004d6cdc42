#include "persistence/modAddress.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/Strings.h"
#include "base/Text.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/Settings.h"
#include "persistence/StoreMessages.h"
#include "persistence/modBasic.h"
#include "platform/MsgBox.h"

namespace {

std::vector<SiteRecord> aList(1);
std::int32_t lCountOfList = 0;

}  // namespace

const std::vector<SiteRecord>& aSites = aList;
const std::int32_t& lSiteCount = lCountOfList;

namespace modAddress {
namespace {

using RegistryAccess::RegReadValue;
using RegistryAccess::RegValueEntry;
using RegistryAccess::RegWriteValue;

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;
constexpr std::int32_t lText = 1;
constexpr std::int32_t lNumber = 4;
constexpr std::int32_t lImportedIndex = 2000;
constexpr std::size_t lReferencePrefix = 6;  // "Domain"

std::string SiteKey(const std::string& szKeyName) {
  return std::string(ProductKeys::szAddress) + "\\" + szKeyName;
}

std::string ReferenceName(std::int32_t n) {
  return "Domain" + std::to_string(n);
}

bool IsReference(const RegValueEntry& aEntry) {
  const auto* pKeyName = std::get_if<std::string>(&aEntry.Value);
  return Text::EqualNoCase(aEntry.Name.substr(0, lReferencePrefix), "Domain") && aEntry.Type == lText &&
         pKeyName != nullptr && !Text::IsBlank(*pKeyName);
}

std::int16_t ReferenceNumber(const RegValueEntry& aEntry) {
  return Text::Saturate<std::int16_t>(Text::LeadingNumber(aEntry.Name.substr(lReferencePrefix)));
}

// The references in the order of their numbers. The system lists values as it likes ("Domain10" before
// "Domain2"), and a site whose slot is not its number would be deleted in another's place.
std::vector<RegValueEntry> SortedReferences(const std::vector<RegValueEntry>& aEntries) {
  std::vector<RegValueEntry> aReferences;
  std::copy_if(aEntries.begin(), aEntries.end(), std::back_inserter(aReferences), IsReference);
  std::stable_sort(aReferences.begin(), aReferences.end(), [](const auto& aLeft, const auto& aRight) {
    return ReferenceNumber(aLeft) < ReferenceNumber(aRight);
  });
  return aReferences;
}

std::int32_t ListReferences(std::vector<RegValueEntry>& aEntries) {
  std::int32_t lCount = 0;
  std::int32_t lFirstLimit = lSiteCapacity;
  std::int32_t lLimit = lSiteCapacity;
  return RegistryAccess::RegListValues(hRoot, ProductKeys::szAddressKey, aEntries, lCount, lFirstLimit,
                                       lLimit);
}

// 0, or the code of the first write that failed; all are tried.
std::int32_t WriteFields(const std::string& szKeyName, const SiteRecord& aRecord, std::int32_t lIndex) {
  const auto szKey = SiteKey(szKeyName);
  std::int32_t lFailed = 0;
  const auto Write = [&](const char* szName, const RegistryAccess::Variant& aValue, std::int32_t lType) {
    const auto lCode = RegWriteValue(hRoot, szKey, szName, aValue, lType);
    if (lFailed == 0) lFailed = lCode;
  };
  Write("Index", lIndex, lNumber);
  Write("URL", aRecord.URL, lText);
  Write("IP", aRecord.IP, lText);
  Write("Comments", aRecord.Comments, lText);
  Write("Enabled", std::int32_t{aRecord.Enabled}, lNumber);
  Write("Status", std::int32_t{aRecord.Status}, lNumber);
  Write("Timeout", aRecord.TimeOut, lNumber);
  return lFailed;
}

std::set<std::string> aUnsaved;  // key names

// A pass changes the result of a site that is stored, and nothing else.
bool OnlyResultChanged(const std::string& szKeyName, const SiteRecord& aRecord, std::int32_t n) {
  std::vector<SiteRecord> aStored;
  return ReadSite(szKeyName, aStored, Text::Saturate<std::int16_t>(n)) == 0 &&
         aStored[1].URL == aRecord.URL && aStored[1].IP == aRecord.IP &&
         aStored[1].Enabled == aRecord.Enabled && aStored[1].TimeOut == aRecord.TimeOut;
}

// 0, or the code after which the site is not stored as it is.
std::int32_t WriteSite(std::int32_t n, bool bIsNew) {
  const auto& aRecord = Site(n);
  const auto szKeyName = KeyName(aRecord.URL);
  if (szKeyName.empty()) return 0;
  const bool bByThePass = !bIsNew && OnlyResultChanged(szKeyName, aRecord, n);
  Registry::Transaction aOneCommit(bByThePass ? Registry::Written::ByThePass
                                              : Registry::Written::ByTheOperator);
  if (bIsNew) {
    RegWriteValue(hRoot, ProductKeys::szAddressKey, ReferenceName(n), szKeyName, lText);
    RegistryAccess::RegCreatePath(hRoot, SiteKey(szKeyName));
  }
  const auto lWritten = WriteFields(szKeyName, aRecord, n);
  const auto lCommitted = aOneCommit.Commit();
  const auto lCode = lWritten != 0 ? lWritten : lCommitted;
  if (lCode == 0)
    aUnsaved.erase(szKeyName);
  else
    aUnsaved.insert(szKeyName);
  return lCode;
}

// Those that are still in the list. The first failure ends it; the code tells why.
std::int32_t WriteUnsaved() {
  std::int32_t lCode = 0;
  for (std::int32_t n = 1; n <= lSiteCount && lCode == 0; ++n)
    if (aUnsaved.contains(KeyName(Site(n).URL))) lCode = WriteSite(n, false);
  if (lCode == 0) aUnsaved.clear();  // what is left was renamed or deleted meanwhile
  return lCode;
}

std::int32_t WriteWholeList() {
  Registry::Transaction aOneCommit(Registry::Written::ByTheOperator);
  RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddressKey);
  SetSiteCount(lSiteCount);
  const auto aBefore = aUnsaved;
  std::int32_t lCode = 0;
  for (std::int32_t n = 1; n <= lSiteCount && lCode == 0; ++n)
    lCode = WriteSite(n, true);
  SaveSettings(Settings);
  const auto lCommitted = aOneCommit.Commit();
  if (lCommitted != 0) aUnsaved = aBefore;  // within the bracket each write seemed to succeed
  return lCode != 0 ? lCode : lCommitted;
}

void TakeSite(const std::string& szKeyName, SiteRecord aRecord, bool bKeepStatus, bool bKeepComments) {
  const auto szKey = SiteKey(modBasic::EscapeBackslash(szKeyName));
  if (!bKeepStatus) {
    aRecord.Status = SiteStatus::iNotChecked;
    RegWriteValue(hRoot, szKey, "Status", std::int32_t{SiteStatus::iNotKnown}, lNumber);
  }
  if (!bKeepComments) {
    aRecord.Comments.clear();
    RegWriteValue(hRoot, szKey, "Comments", std::string(), lText);
  }
  AddSite(aRecord);
}

std::int32_t BeginIndex(std::string& szMessage) {
  const auto lCode = RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddressKey);
  if (lCode == Registry::lSuccess)
    SetSiteCount(0);
  else
    szMessage = LoadResString(IDS_ADDRESS_CREATE_FAILED);
  return lCode;
}

std::int32_t ReadList(bool bKeepStatus, bool bKeepComments, std::string& szMessage) {
  const Registry::Transaction aOneCommit;
  std::vector<RegValueEntry> aEntries;
  const auto lCode = ListReferences(aEntries);
  if (lCode == Registry::lInvalidHandle) return BeginIndex(szMessage);
  if (lCode != Registry::lSuccess) {
    szMessage = LoadResString(IDS_ADDRESS_READ_FAILED);
    return lCode;
  }
  std::set<std::string> aLoaded;
  for (const auto& aReference : SortedReferences(aEntries)) {
    const auto& szKeyName = std::get<std::string>(aReference.Value);
    std::vector<SiteRecord> aTemp;
    if (ReadSite(szKeyName, aTemp, ReferenceNumber(aReference)) == 1)
      RegistryAccess::RegRemoveValue(hRoot, ProductKeys::szAddressKey, aReference.Name);
    else if (aLoaded.insert(KeyName(szKeyName)).second)
      TakeSite(szKeyName, aTemp[1], bKeepStatus, bKeepComments);
  }
  SetSiteCount(lSiteCount);
  return Registry::lSuccess;
}

// An index that could not be deleted as a whole is emptied value by value: a reference left in it would bring
// a site into the list twice.
void EmptyIndex() {
  RegistryAccess::RegRemoveKey(hRoot, ProductKeys::szAddressKey);
  RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddressKey);
  std::vector<RegValueEntry> aEntries;
  ListReferences(aEntries);
  for (std::size_t i = 1; i < aEntries.size(); ++i)
    RegistryAccess::RegRemoveValue(hRoot, ProductKeys::szAddressKey, aEntries[i].Name);
}

using IndexedUrl = std::pair<RegistryAccess::Variant, RegistryAccess::Variant>;

// The site's number and trimmed URL. A key whose URL does not give its name is deleted, but only where the
// read has told so: after one that failed the site may be there and whole.
bool ReadForIndex(const std::string& szKeyName, IndexedUrl& aPair) {
  std::string szURL;
  std::int32_t lType = 0;
  const auto lCode = RegReadValue(hRoot, SiteKey(szKeyName), "URL", szURL, lType);
  if (lCode != Registry::lSuccess && lCode != Registry::lNotFound && lCode != -1) return false;
  szURL = lType == lText ? Text::Trim(szURL) : std::string();
  if (Text::LowerCase(modBasic::EscapeBackslash(szURL)) != Text::LowerCase(szKeyName)) {
    RegistryAccess::RegRemoveKey(hRoot, SiteKey(szKeyName));
    return false;
  }
  std::int32_t lIndex = 0;
  RegReadValue(hRoot, SiteKey(szKeyName), "Index", lIndex, lType);
  aPair = {lIndex, szURL};
  return true;
}

void WriteIndex(const std::vector<IndexedUrl>& aPairs) {
  for (std::size_t i = 1; i < aPairs.size(); ++i) {
    const auto lSlot = static_cast<std::int32_t>(i);
    const auto szURL = Text::LowerCase(std::get<std::string>(aPairs[i].second));
    RegWriteValue(hRoot, ProductKeys::szAddressKey, ReferenceName(lSlot), modBasic::EscapeBackslash(szURL),
                  lText);
    // The number goes under the URL as it is. A URL with a backslash names no key that way and keeps its old
    // number; it is not written at all, because "x\" would address the key of the site "x".
    if (szURL.find('\\') == std::string::npos) RegWriteValue(hRoot, SiteKey(szURL), "Index", lSlot, lNumber);
  }
}

}  // namespace

bool IsSite(std::int32_t n) {
  return n >= 1 && n <= lSiteCount;
}

const SiteRecord& Site(std::int32_t n) {
  return aList[static_cast<std::size_t>(n)];
}

std::int32_t AddSite(const SiteRecord& aRecord) {
  aList.push_back(aRecord);
  return ++lCountOfList;
}

void ReplaceSite(std::int32_t n, const SiteRecord& aRecord) {
  if (IsSite(n)) aList[static_cast<std::size_t>(n)] = aRecord;
}

void SetStatus(std::int32_t n, std::uint8_t iStatus) {
  if (IsSite(n)) aList[static_cast<std::size_t>(n)].Status = iStatus;
}

void SetComments(std::int32_t n, const std::string& szComments) {
  if (IsSite(n)) aList[static_cast<std::size_t>(n)].Comments = szComments;
}

void ClearComments() {
  for (auto& aSite : aList)
    aSite.Comments.clear();
}

std::string KeyName(const std::string& szURL) {
  return Text::Trim(Text::LowerCase(modBasic::EscapeBackslash(szURL)));
}

std::int32_t LoadSites(bool bKeepStatus, bool bKeepComments) {
  lCountOfList = 0;
  aList.assign(1, {});
  std::string szMessage;
  aUnsaved.clear();
  const auto lCode = ReadList(bKeepStatus, bKeepComments, szMessage);
  if (!szMessage.empty()) MsgBox(szMessage + LoadResString(IDS_LINE_BREAKS_ERROR) + std::to_string(lCode));
  return lCode;
}

std::int32_t ReadSite(const std::string& szKeyName, std::vector<SiteRecord>& aTemp,
                      std::int16_t iExpectedIndex) {
  aTemp.assign(2, {});
  auto& aRecord = aTemp[1];
  if (Text::IsBlank(szKeyName)) return 1;
  const auto szKey = SiteKey(modBasic::EscapeBackslash(szKeyName));
  std::int32_t lType = 0;
  const auto lCode = RegReadValue(hRoot, szKey, "URL", aRecord.URL, lType);
  if (lCode != Registry::lSuccess || lType != lText || Text::IsBlank(aRecord.URL)) return 1;
  std::int16_t iIndex = 0;
  RegReadValue(hRoot, szKey, "Index", iIndex, lType);
  RegReadValue(hRoot, szKey, "IP", aRecord.IP, lType);
  RegReadValue(hRoot, szKey, "Enabled", aRecord.Enabled, lType);
  if (aRecord.Enabled != SiteRecord::iEnabled) aRecord.Enabled = SiteRecord::iDisabled;
  RegReadValue(hRoot, szKey, "Status", aRecord.Status, lType);
  if (!SiteStatus::HasLight(aRecord.Status)) aRecord.Status = SiteStatus::iNotKnown;
  RegReadValue(hRoot, szKey, "TimeOut", aRecord.TimeOut, lType);
  aRecord.TimeOut = std::clamp(aRecord.TimeOut, 1, 1800);
  RegReadValue(hRoot, szKey, "Comments", aRecord.Comments, lType);
  return iIndex == iExpectedIndex ? 0 : 2;
}

void SaveSite(std::int32_t n, bool bIsNew) {
  if (IsSite(n) && WriteSite(n, bIsNew) == 0) SaveUnsaved();
}

void SaveEntered(std::int32_t n, const std::string& szOldKey) {
  if (!IsSite(n)) return;
  Registry::Transaction aOneCommit(Registry::Written::ByTheOperator);
  const auto aBefore = aUnsaved;
  const auto szKeyName = KeyName(Site(n).URL);
  SaveSite(n, szKeyName != szOldKey);
  if (szKeyName != szOldKey && !szOldKey.empty()) RegistryAccess::RegRemoveKey(hRoot, SiteKey(szOldKey));
  if (szOldKey.empty()) SetSiteCount(lSiteCount);
  if (aOneCommit.Commit() == 0) return;
  aUnsaved = aBefore;  // within the bracket each write seemed to succeed
  aUnsaved.insert(szKeyName);
}

void SaveUnsaved() {
  if (!aUnsaved.empty()) WriteUnsaved();
}

std::int32_t UnsavedSites() {
  return static_cast<std::int32_t>(aUnsaved.size());
}

bool IsUnsaved(std::int32_t n) {
  return IsSite(n) && aUnsaved.contains(KeyName(Site(n).URL));
}

std::string SaveAgain() {
  if (aUnsaved.empty()) return {};
  auto szSaid = StoreMessages::Compose(Registry::OpenStore());
  const auto Say = [&](const std::string& szText) { szSaid += (szSaid.empty() ? "" : " ") + szText; };
  if (WriteUnsaved() == Registry::lInvalidHandle && WriteWholeList() == 0)
    Say(FillResString(IDS_STORE_STORED_ANEW, {Registry::StoreName()}));
  if (aUnsaved.size() == 1) Say(LoadResString(IDS_STORE_UNSAVED_ONE));
  if (aUnsaved.size() > 1) Say(FillResString(IDS_STORE_UNSAVED_MANY, {std::to_string(aUnsaved.size())}));
  return szSaid;
}

std::int32_t WriteSiteRecord(const SiteRecord& aRecord, std::int32_t lIndex) {
  const auto szKeyName = KeyName(aRecord.URL);
  if (szKeyName.empty()) return 0;
  Registry::Transaction aOneCommit;
  RegistryAccess::RegCreatePath(hRoot, SiteKey(szKeyName));
  const auto lCode = WriteFields(szKeyName, aRecord, lIndex == 0 ? lImportedIndex : lIndex);
  const auto lCommitted = aOneCommit.Commit();
  return lCode != 0 ? lCode : lCommitted;
}

bool ListKeyNames(std::vector<std::string>& aNames) {
  aNames.clear();
  std::string szNames;
  std::int32_t lCount = 0;
  std::int32_t lMaxIndex = lSiteCapacity;
  std::int32_t lBufferLength = 1000;
  std::int32_t lEnd = 0;
  RegistryAccess::RegListKeys(hRoot, ProductKeys::szAddress, szNames, lCount, lMaxIndex, lBufferLength,
                              &lEnd);
  if (!szNames.ends_with('\0')) szNames += '\0';
  for (std::size_t lStart = 0, lNul = 0; (lNul = szNames.find('\0', lStart)) != std::string::npos;
       lStart = lNul + 1) {
    auto szName = Text::Trim(szNames.substr(lStart, lNul - lStart));
    if (!szName.empty()) aNames.push_back(std::move(szName));
  }
  return lEnd == Registry::lSuccess || lEnd == Registry::lNoMoreItems || lEnd == Registry::lInvalidHandle;
}

void RebuildSiteIndex() {
  const Registry::Transaction aOneCommit;
  std::vector<std::string> aNames;
  if (!ListKeyNames(aNames)) return;  // an index over half the sites would be worse than the old one
  EmptyIndex();
  std::vector<IndexedUrl> aPairs(1);
  for (const auto& szName : aNames) {
    IndexedUrl aPair;
    if (ReadForIndex(szName, aPair)) aPairs.push_back(std::move(aPair));
  }
  const auto lCount = static_cast<std::int32_t>(aPairs.size()) - 1;
  RegistryAccess::SortKeyedRecords(aPairs, lCount, true);
  WriteIndex(aPairs);
  SetSiteCount(lCount);
}

void SetSiteCount(std::int32_t n) {
  if (n == 0) RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddress);
  RegWriteValue(hRoot, ProductKeys::szAddress, "NumActualDomain", n, lNumber);
}

void DeleteSite(std::int32_t n) {
  if (!IsSite(n)) return;
  {
    const Registry::Transaction aOneCommit(Registry::Written::ByTheOperator);
    SaveUnsaved();  // the list is read back below
    // The key of the site in the list, which is the one that the operator saw: the index may have a gap.
    const auto szKeyName = KeyName(Site(n).URL);
    if (!szKeyName.empty()) RegistryAccess::RegRemoveKey(hRoot, SiteKey(szKeyName));
    RegistryAccess::RegRemoveValue(hRoot, ProductKeys::szAddressKey, ReferenceName(n));
    RebuildSiteIndex();
  }
  LoadSites(true, true);
}

bool FindStoredSite(const std::string& szURL, SiteRecord& aRecord) {
  std::vector<SiteRecord> aTemp;
  if (ReadSite(KeyName(szURL), aTemp, 0) == 1) return false;
  aRecord = std::move(aTemp[1]);
  return true;
}

}  // namespace modAddress
