#include "persistence/modAddress.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "base/Strings.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/Settings.h"
#include "persistence/SiteIndex.h"
#include "persistence/SiteKey.h"
#include "persistence/StoreMessages.h"
#include "platform/MsgBox.h"

namespace {

std::vector<SiteRecord> aList(1);
std::int32_t lCountOfList = 0;

}  // namespace

const std::vector<SiteRecord>& aSites = aList;
const std::int32_t& lSiteCount = lCountOfList;

namespace modAddress {
namespace {

// A pass changes the result of a site, and nothing else.
bool IsResult(const RegistryAccess::RegValueEntry& aField) {
  return aField.Name == "Status" || aField.Name == "Comments";
}

std::set<std::string> aUnsaved;  // key names

// 0, or the code after which the site is not stored as it is.
std::int32_t WriteSite(std::int32_t n, bool bIsNew) {
  const auto& aRecord = Site(n);
  const auto szKeyName = KeyName(aRecord.URL);
  if (szKeyName.empty()) return 0;
  const auto aAll = SiteKey::FieldsOf(aRecord, n);
  const auto aChanged = bIsNew ? std::optional(aAll) : SiteKey::ChangedFields(szKeyName, aRecord, n);
  // All of it where the store cannot be read, so that the write tells what is the matter.
  const auto aFields = aChanged.value_or(aAll);
  if (aFields.empty()) {
    aUnsaved.erase(szKeyName);
    return 0;
  }
  // What the operator enters puts a missing store together again. A pass leaves that to SaveAgain, which says
  // so.
  const bool bByThePass = !aChanged || std::all_of(aFields.begin(), aFields.end(), IsResult);
  Registry::Transaction aOneCommit(bByThePass ? Registry::Written::ByThePass
                                              : Registry::Written::ByTheOperator);
  std::int32_t lWritten = 0;
  if (bIsNew) {
    lWritten = SiteIndex::Write(n, szKeyName);
    SiteKey::Create(szKeyName);
  }
  if (lWritten == 0) lWritten = SiteKey::Write(szKeyName, aFields);
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
    RegistryAccess::RegCreatePath(Registry::HKEY_LOCAL_MACHINE, szKey);
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

// False where the reference leads to no usable site. A store that refuses does not tell.
bool TakeSite(const std::string& szKeyName, bool bKeepStatus, bool bKeepComments,
              const SiteIndex::KeysRead& aRead, std::set<std::string>& aLoaded) {
  SiteKey::Values aReadNow;
  SiteRecord aRecord;
  const auto aFound = aRead.find(szKeyName);
  const auto lCode = aFound == aRead.end() ? SiteKey::Read(szKeyName, aReadNow) : Registry::lSuccess;
  if (lCode != Registry::lSuccess) return lCode == Registry::lAccessDenied;
  const auto& aStored = aFound == aRead.end() ? aReadNow : aFound->second;
  if (!SiteKey::RecordOf(aStored, aRecord)) return false;
  if (!aLoaded.insert(KeyName(szKeyName)).second) return true;
  const auto Reset = [&](const RegistryAccess::RegValueEntry& aField) {
    if (!SiteKey::IsStored(aStored, aField)) SiteKey::Write(szKeyName, {aField});
  };
  if (!bKeepStatus) {
    aRecord.Status = SiteStatus::iNotChecked;
    Reset({"Status", std::int32_t{SiteStatus::iNotKnown}, RegistryAccess::lTypeNumber});
  }
  if (!bKeepComments) {
    aRecord.Comments.clear();
    Reset({"Comments", std::string(), RegistryAccess::lTypeText});
  }
  AddSite(aRecord);
  return true;
}

std::int32_t BeginIndex(std::string& szMessage) {
  const auto lCode = SiteIndex::Create();
  if (lCode == Registry::lSuccess)
    SetSiteCount(0);
  else
    szMessage = LoadResString(IDS_ADDRESS_CREATE_FAILED);
  return lCode;
}

std::int32_t ReadList(bool bKeepStatus, bool bKeepComments, const SiteIndex::KeysRead& aRead,
                      std::string& szMessage) {
  const Registry::Transaction aOneCommit;
  std::vector<SiteIndex::Reference> aReferences;
  const auto lCode = SiteIndex::Read(aReferences);
  if (lCode == Registry::lInvalidHandle) return BeginIndex(szMessage);
  if (lCode != Registry::lSuccess) {
    szMessage = LoadResString(IDS_ADDRESS_READ_FAILED);
    return lCode;
  }
  std::set<std::string> aLoaded;
  for (const auto& aReference : aReferences)
    if (!TakeSite(aReference.szKeyName, bKeepStatus, bKeepComments, aRead, aLoaded))
      SiteIndex::Remove(aReference.szName);
  SetSiteCount(lSiteCount);
  return Registry::lSuccess;
}

std::int32_t Load(bool bKeepStatus, bool bKeepComments, const SiteIndex::KeysRead& aRead) {
  lCountOfList = 0;
  aList.assign(1, {});
  std::string szMessage;
  aUnsaved.clear();
  const auto lCode = ReadList(bKeepStatus, bKeepComments, aRead, szMessage);
  if (!szMessage.empty()) MsgBox(szMessage + LoadResString(IDS_LINE_BREAKS_ERROR) + std::to_string(lCode));
  return lCode;
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

std::int32_t LoadSites(bool bKeepStatus, bool bKeepComments) {
  return Load(bKeepStatus, bKeepComments, {});
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
  if (szKeyName != szOldKey && !szOldKey.empty()) SiteKey::Remove(szOldKey);
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

std::vector<std::string> HiddenSites() {
  std::vector<std::string> aNames;
  ListKeyNames(aNames);
  std::set<std::string> aListed;
  for (std::int32_t n = 1; n <= lSiteCount; ++n)
    aListed.insert(KeyName(Site(n).URL));
  std::erase_if(aNames, [&](const auto& szName) { return aListed.contains(KeyName(szName)); });
  return aNames;
}

std::int32_t LoadRebuilt(bool bKeepStatus, bool bKeepComments, Mismatches& aFound) {
  SiteIndex::KeysRead aRead;
  aFound = SiteIndex::Rebuild(aRead);
  return Load(bKeepStatus, bKeepComments, aRead);
}

bool DeleteSite(std::int32_t n) {
  if (!IsSite(n)) return true;
  std::int32_t lCode = Registry::lSuccess;
  {
    Registry::Transaction aOneCommit(Registry::Written::ByTheOperator);
    SaveUnsaved();  // the list is read back below
    // The key of the site in the list, which is the one that the operator saw: the index may have a gap.
    const auto szKeyName = KeyName(Site(n).URL);
    if (!szKeyName.empty()) lCode = SiteKey::Remove(szKeyName);
    SiteIndex::Remove(SiteIndex::NameOf(n));
    RebuildSiteIndex();
    const auto lCommitted = aOneCommit.Commit();
    if (lCode == Registry::lSuccess || lCode == Registry::lNotFound) lCode = lCommitted;
  }
  LoadSites(true, true);
  return lCode == Registry::lSuccess;
}

}  // namespace modAddress
