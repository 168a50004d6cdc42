#include "persistence/modAddress.h"

#include <algorithm>
#include <map>
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

using Values = std::vector<RegValueEntry>;

// A site's values in the order in which they are written.
Values FieldsOf(const SiteRecord& aRecord, std::int32_t lIndex) {
  return {{"Index", lIndex, lNumber},
          {"URL", aRecord.URL, lText},
          {"IP", aRecord.IP, lText},
          {"Comments", aRecord.Comments, lText},
          {"Enabled", std::int32_t{aRecord.Enabled}, lNumber},
          {"Status", std::int32_t{aRecord.Status}, lNumber},
          {"Timeout", aRecord.TimeOut, lNumber}};
}

// 0, or the code of the first write that failed; all are tried.
std::int32_t WriteFields(const std::string& szKeyName, const Values& aFields) {
  std::int32_t lFailed = 0;
  for (const auto& aField : aFields) {
    const auto lCode = RegWriteValue(hRoot, SiteKey(szKeyName), aField.Name, aField.Value, aField.Type);
    if (lFailed == 0) lFailed = lCode;
  }
  return lFailed;
}

bool IsStored(const Values& aStored, const RegValueEntry& aField) {
  const auto* const pStored = RegistryAccess::FindValue(aStored, aField.Name);
  return pStored != nullptr && pStored->Type == aField.Type && pStored->Value == aField.Value;
}

// What is to be written of a site that should be there: what is stored in another way. All of it where the
// store cannot be read, so that the write tells what is the matter.
Values ChangedFields(const std::string& szKeyName, const SiteRecord& aRecord, std::int32_t n) {
  const Registry::Transaction aOneLook;
  auto aFields = FieldsOf(aRecord, n);
  Values aStored;
  if (RegistryAccess::RegReadValues(hRoot, SiteKey(szKeyName), aStored) == Registry::lSuccess)
    std::erase_if(aFields, [&](const RegValueEntry& aField) { return IsStored(aStored, aField); });
  return aFields;
}

// A pass changes the result of a site, and nothing else.
bool IsResult(const RegValueEntry& aField) {
  return aField.Name == "Status" || aField.Name == "Comments";
}

std::set<std::string> aUnsaved;  // key names

// 0, or the code after which the site is not stored as it is.
std::int32_t WriteSite(std::int32_t n, bool bIsNew) {
  const auto& aRecord = Site(n);
  const auto szKeyName = KeyName(aRecord.URL);
  if (szKeyName.empty()) return 0;
  const auto aFields = bIsNew ? FieldsOf(aRecord, n) : ChangedFields(szKeyName, aRecord, n);
  if (aFields.empty()) {
    aUnsaved.erase(szKeyName);
    return 0;
  }
  const bool bByThePass = std::all_of(aFields.begin(), aFields.end(), IsResult);
  Registry::Transaction aOneCommit(bByThePass ? Registry::Written::ByThePass
                                              : Registry::Written::ByTheOperator);
  if (bIsNew) {
    RegWriteValue(hRoot, ProductKeys::szAddressKey, ReferenceName(n), szKeyName, lText);
    RegistryAccess::RegCreatePath(hRoot, SiteKey(szKeyName));
  }
  const auto lWritten = WriteFields(szKeyName, aFields);
  if (lWritten != 0) aOneCommit.Abandon();  // half a record would be believed
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
  for (const char* const szKey : {ProductKeys::szAddressKey, ProductKeys::szAddress, ProductKeys::szTimer,
                                  ProductKeys::szManager, ProductKeys::szLog, ProductKeys::szAllowCookie})
    RegistryAccess::RegCreatePath(hRoot, szKey);
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

// The record that the values are, by the rules for each of them. False without a usable URL.
bool RecordOf(const Values& aStored, SiteRecord& aRecord) {
  const auto* const pURL = RegistryAccess::FindValue(aStored, "URL");
  if (pURL == nullptr || pURL->Type != lText) return false;
  RegistryAccess::TakeValue(aStored, "URL", aRecord.URL);
  if (Text::IsBlank(aRecord.URL)) return false;
  RegistryAccess::TakeValue(aStored, "IP", aRecord.IP);
  RegistryAccess::TakeValue(aStored, "Enabled", aRecord.Enabled);
  if (aRecord.Enabled != SiteRecord::iEnabled) aRecord.Enabled = SiteRecord::iDisabled;
  RegistryAccess::TakeValue(aStored, "Status", aRecord.Status);
  if (!SiteStatus::HasLight(aRecord.Status)) aRecord.Status = SiteStatus::iNotKnown;
  RegistryAccess::TakeValue(aStored, "TimeOut", aRecord.TimeOut);
  aRecord.TimeOut = std::clamp(aRecord.TimeOut, SiteRecord::lShortestTimeOut, SiteRecord::lLongestTimeOut);
  RegistryAccess::TakeValue(aStored, "Comments", aRecord.Comments);
  return true;
}

// What was read of sites a moment ago, by the name of their key.
using AtHand = std::map<std::string, Values>;

// 0, or the code of the failure; what was read until then is there.
std::int32_t ReadValuesOf(const std::string& szKeyName, Values& aStored) {
  return RegistryAccess::RegReadValues(hRoot, SiteKey(modBasic::EscapeBackslash(szKeyName)), aStored);
}

// False where the reference leads to no usable site.
bool TakeSite(const std::string& szKeyName, bool bKeepStatus, bool bKeepComments, const AtHand& aAtHand,
              std::set<std::string>& aLoaded) {
  Values aRead;
  SiteRecord aRecord;
  const auto aFound = aAtHand.find(szKeyName);
  if (aFound == aAtHand.end() && ReadValuesOf(szKeyName, aRead) != Registry::lSuccess) return false;
  const auto& aStored = aFound == aAtHand.end() ? aRead : aFound->second;
  if (!RecordOf(aStored, aRecord)) return false;
  if (!aLoaded.insert(KeyName(szKeyName)).second) return true;
  const auto Reset = [&](const RegValueEntry& aField) {
    if (!IsStored(aStored, aField))
      RegWriteValue(hRoot, SiteKey(modBasic::EscapeBackslash(szKeyName)), aField.Name, aField.Value,
                    aField.Type);
  };
  if (!bKeepStatus) {
    aRecord.Status = SiteStatus::iNotChecked;
    Reset({"Status", std::int32_t{SiteStatus::iNotKnown}, lNumber});
  }
  if (!bKeepComments) {
    aRecord.Comments.clear();
    Reset({"Comments", std::string(), lText});
  }
  AddSite(aRecord);
  return true;
}

std::int32_t BeginIndex(std::string& szMessage) {
  const auto lCode = RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddressKey);
  if (lCode == Registry::lSuccess)
    SetSiteCount(0);
  else
    szMessage = LoadResString(IDS_ADDRESS_CREATE_FAILED);
  return lCode;
}

std::int32_t ReadList(bool bKeepStatus, bool bKeepComments, const AtHand& aAtHand, std::string& szMessage) {
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
    if (!TakeSite(szKeyName, bKeepStatus, bKeepComments, aAtHand, aLoaded))
      RegistryAccess::RegRemoveValue(hRoot, ProductKeys::szAddressKey, aReference.Name);
  }
  SetSiteCount(lSiteCount);
  return Registry::lSuccess;
}

std::int32_t Load(bool bKeepStatus, bool bKeepComments, const AtHand& aAtHand) {
  lCountOfList = 0;
  aList.assign(1, {});
  std::string szMessage;
  aUnsaved.clear();
  const auto lCode = ReadList(bKeepStatus, bKeepComments, aAtHand, szMessage);
  if (!szMessage.empty()) MsgBox(szMessage + LoadResString(IDS_LINE_BREAKS_ERROR) + std::to_string(lCode));
  return lCode;
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

// What a rebuild goes by.
struct IndexPlan {
  std::vector<IndexedUrl> aPairs = std::vector<IndexedUrl>(1);  // number and trimmed URL, from slot 1
  std::vector<std::string> aStale;                              // keys whose URL does not give their name
  bool bNumbers = true;                                         // all numbers are stored as numbers
  AtHand aRead;
};

// A key whose URL does not give its name is to go, but only where the read has told so: after one that failed
// the site may be there and whole.
void PlanSite(const std::string& szKeyName, IndexPlan& aPlan) {
  Values aStored;
  if (RegistryAccess::RegReadValues(hRoot, SiteKey(szKeyName), aStored) != Registry::lSuccess) return;
  std::string szURL;
  if (const auto* const pURL = RegistryAccess::FindValue(aStored, "URL")) {
    if (pURL->Type == lText) szURL = Text::Trim(std::get<std::string>(pURL->Value));
  } else {
    std::int32_t lType = 0;  // left out: there is none, or it could not be read
    const auto lCode = RegReadValue(hRoot, SiteKey(szKeyName), "URL", szURL, lType);
    if (lCode != Registry::lSuccess && lCode != Registry::lNotFound && lCode != -1) return;
    szURL.clear();
  }
  if (Text::LowerCase(modBasic::EscapeBackslash(szURL)) != Text::LowerCase(szKeyName))
    return aPlan.aStale.push_back(szKeyName);
  std::int32_t lIndex = 0;
  RegistryAccess::TakeValue(aStored, "Index", lIndex);
  const auto* const pIndex = RegistryAccess::FindValue(aStored, "Index");
  aPlan.bNumbers = aPlan.bNumbers && pIndex != nullptr && pIndex->Type == lNumber;
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
    const auto pReference = aReferences.find(ReferenceName(lSlot));
    if (pReference == aReferences.end() ||
        pReference->second != RegistryAccess::Variant(modBasic::EscapeBackslash(szURL)))
      return false;
    if (aIndex != RegistryAccess::Variant(lSlot) && szURL.find('\\') == std::string::npos) return false;
  }
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
  return Load(bKeepStatus, bKeepComments, {});
}

std::int32_t ReadSite(const std::string& szKeyName, std::vector<SiteRecord>& aTemp,
                      std::int16_t iExpectedIndex) {
  aTemp.assign(2, {});
  Values aStored;
  if (Text::IsBlank(szKeyName) || ReadValuesOf(szKeyName, aStored) != Registry::lSuccess ||
      !RecordOf(aStored, aTemp[1]))
    return 1;
  std::int16_t iIndex = 0;
  RegistryAccess::TakeValue(aStored, "Index", iIndex);
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
  if (aUnsaved.empty() && SettingsAreSaved()) return {};
  auto szSaid = StoreMessages::Compose(Registry::OpenStore());
  const auto Say = [&](const std::string& szText) { szSaid += (szSaid.empty() ? "" : " ") + szText; };
  if (WriteUnsaved() == Registry::lInvalidHandle && WriteWholeList() == 0)
    Say(FillResString(IDS_STORE_STORED_ANEW, {Registry::StoreName()}));
  if (!SettingsAreSaved() && !SaveSettings(Settings)) Say(LoadResString(IDS_STORE_OPTIONS_UNSAVED));
  if (aUnsaved.size() == 1) Say(LoadResString(IDS_STORE_UNSAVED_ONE));
  if (aUnsaved.size() > 1) Say(FillResString(IDS_STORE_UNSAVED_MANY, {std::to_string(aUnsaved.size())}));
  return szSaid;
}

std::int32_t WriteSiteRecord(const SiteRecord& aRecord, std::int32_t lIndex) {
  const auto szKeyName = KeyName(aRecord.URL);
  if (szKeyName.empty()) return 0;
  Registry::Transaction aOneCommit;
  RegistryAccess::RegCreatePath(hRoot, SiteKey(szKeyName));
  const auto lCode = WriteFields(szKeyName, FieldsOf(aRecord, lIndex == 0 ? lImportedIndex : lIndex));
  const auto lCommitted = aOneCommit.Commit();
  return lCode != 0 ? lCode : lCommitted;
}

bool ListKeyNames(std::vector<std::string>& aNames) {
  const Registry::Transaction aOneLook;
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

std::vector<std::string> HiddenSites() {
  std::vector<std::string> aNames;
  ListKeyNames(aNames);
  std::set<std::string> aListed;
  for (std::int32_t n = 1; n <= lSiteCount; ++n)
    aListed.insert(KeyName(Site(n).URL));
  std::erase_if(aNames, [&](const auto& szName) { return aListed.contains(KeyName(szName)); });
  return aNames;
}

namespace {

std::vector<std::string> Rebuild(IndexPlan& aPlan) {
  Registry::Transaction aOneCommit;
  std::vector<std::string> aNames, aDropped;
  if (!ListKeyNames(aNames)) return aDropped;  // an index over half the sites would be worse than the old one
  for (const auto& szName : aNames)
    PlanSite(szName, aPlan);
  const auto lCount = static_cast<std::int32_t>(aPlan.aPairs.size()) - 1;
  RegistryAccess::SortKeyedRecords(aPlan.aPairs, lCount, true);
  // At most starts nothing has to be numbered anew.
  const bool bStands = IndexStands(aPlan);
  if (!bStands) EmptyIndex();
  for (const auto& szName : aPlan.aStale)
    if (RegistryAccess::RegRemoveKey(hRoot, SiteKey(szName)) == Registry::lSuccess)
      aDropped.push_back(szName);
  if (!bStands) WriteIndex(aPlan.aPairs);
  SetSiteCount(lCount);
  if (aOneCommit.Commit() != Registry::lSuccess) aDropped.clear();
  return aDropped;
}

}  // namespace

std::vector<std::string> RebuildSiteIndex() {
  IndexPlan aPlan;
  return Rebuild(aPlan);
}

std::int32_t LoadRebuilt(bool bKeepStatus, bool bKeepComments, std::vector<std::string>& aDropped) {
  IndexPlan aPlan;
  aDropped = Rebuild(aPlan);
  return Load(bKeepStatus, bKeepComments, aPlan.aRead);
}

void SetSiteCount(std::int32_t n) {
  std::int32_t lStored = -1, lType = 0;
  RegReadValue(hRoot, ProductKeys::szAddress, "NumActualDomain", lStored, lType);
  if (lStored == n && lType == lNumber) return;
  if (n == 0) RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAddress);
  RegWriteValue(hRoot, ProductKeys::szAddress, "NumActualDomain", n, lNumber);
}

bool DeleteSite(std::int32_t n) {
  if (!IsSite(n)) return true;
  std::int32_t lCode = Registry::lSuccess;
  {
    Registry::Transaction aOneCommit(Registry::Written::ByTheOperator);
    SaveUnsaved();  // the list is read back below
    // The key of the site in the list, which is the one that the operator saw: the index may have a gap.
    const auto szKeyName = KeyName(Site(n).URL);
    if (!szKeyName.empty()) lCode = RegistryAccess::RegRemoveKey(hRoot, SiteKey(szKeyName));
    RegistryAccess::RegRemoveValue(hRoot, ProductKeys::szAddressKey, ReferenceName(n));
    RebuildSiteIndex();
    const auto lCommitted = aOneCommit.Commit();
    if (lCode == Registry::lSuccess || lCode == Registry::lNotFound) lCode = lCommitted;
  }
  LoadSites(true, true);
  return lCode == Registry::lSuccess;
}

bool FindStoredSite(const std::string& szURL, SiteRecord& aRecord) {
  std::vector<SiteRecord> aTemp;
  if (ReadSite(KeyName(szURL), aTemp, 0) == 1) return false;
  aRecord = std::move(aTemp[1]);
  return true;
}

}  // namespace modAddress
