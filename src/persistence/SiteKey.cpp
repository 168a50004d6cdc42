#include "persistence/SiteKey.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "persistence/ProductKeys.h"
#include "persistence/modBasic.h"

using RegistryAccess::lTypeNumber;
using RegistryAccess::lTypeText;

namespace {

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;
constexpr std::int32_t lImportedIndex = 2000;

}  // namespace

namespace SiteKey {

std::string Path(const std::string& szKeyName) {
  return std::string(ProductKeys::szAddress) + "\\" + modBasic::EscapeBackslash(szKeyName);
}

std::int32_t Create(const std::string& szKeyName) {
  return RegistryAccess::RegCreatePath(hRoot, Path(szKeyName));
}

std::int32_t Remove(const std::string& szKeyName) {
  return RegistryAccess::RegRemoveKey(hRoot, Path(szKeyName));
}

std::int32_t Read(const std::string& szKeyName, Values& aStored) {
  return RegistryAccess::RegReadValues(hRoot, Path(szKeyName), aStored);
}

std::int32_t Write(const std::string& szKeyName, const Values& aFields) {
  std::int32_t lFailed = 0;
  for (const auto& aField : aFields) {
    const auto lCode =
        RegistryAccess::RegWriteValue(hRoot, Path(szKeyName), aField.Name, aField.Value, aField.Type);
    if (lFailed == 0) lFailed = lCode;
  }
  return lFailed;
}

Values FieldsOf(const SiteRecord& aRecord, std::int32_t lIndex) {
  return {{"Index", lIndex, lTypeNumber},
          {"URL", aRecord.URL, lTypeText},
          {"IP", aRecord.IP, lTypeText},
          {"Comments", aRecord.Comments, lTypeText},
          {"Enabled", std::int32_t{aRecord.Enabled}, lTypeNumber},
          {"Status", std::int32_t{aRecord.Status}, lTypeNumber},
          {"Timeout", aRecord.TimeOut, lTypeNumber}};
}

std::optional<Values> ChangedFields(const std::string& szKeyName, const SiteRecord& aRecord,
                                    std::int32_t lIndex) {
  const Registry::Transaction aOneLook;
  auto aFields = FieldsOf(aRecord, lIndex);
  Values aStored;
  if (Read(szKeyName, aStored) != Registry::lSuccess) return {};
  std::erase_if(aFields, [&](const auto& aField) { return IsStored(aStored, aField); });
  return aFields;
}

bool RecordOf(const Values& aStored, SiteRecord& aRecord) {
  const auto* const pURL = RegistryAccess::FindValue(aStored, "URL");
  if (pURL == nullptr || pURL->Type != lTypeText) return false;
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

bool IsStored(const Values& aStored, const RegistryAccess::RegValueEntry& aField) {
  const auto* const pStored = RegistryAccess::FindValue(aStored, aField.Name);
  return pStored != nullptr && pStored->Type == aField.Type && pStored->Value == aField.Value;
}

}  // namespace SiteKey

namespace modAddress {

std::string KeyName(const std::string& szURL) {
  return Text::Trim(Text::LowerCase(modBasic::EscapeBackslash(szURL)));
}

std::int32_t ReadSite(const std::string& szKeyName, std::vector<SiteRecord>& aTemp,
                      std::int16_t iExpectedIndex) {
  aTemp.assign(2, {});
  SiteKey::Values aStored;
  if (Text::IsBlank(szKeyName) || SiteKey::Read(szKeyName, aStored) != Registry::lSuccess ||
      !SiteKey::RecordOf(aStored, aTemp[1]))
    return 1;
  std::int16_t iIndex = 0;
  RegistryAccess::TakeValue(aStored, "Index", iIndex);
  return iIndex == iExpectedIndex ? 0 : 2;
}

bool FindStoredSite(const std::string& szURL, SiteRecord& aRecord) {
  std::vector<SiteRecord> aTemp;
  if (ReadSite(KeyName(szURL), aTemp, 0) == 1) return false;
  aRecord = std::move(aTemp[1]);
  return true;
}

std::int32_t WriteSiteRecord(const SiteRecord& aRecord, std::int32_t lIndex) {
  const auto szKeyName = KeyName(aRecord.URL);
  if (szKeyName.empty()) return 0;
  Registry::Transaction aOneCommit;
  SiteKey::Create(szKeyName);
  const auto lCode =
      SiteKey::Write(szKeyName, SiteKey::FieldsOf(aRecord, lIndex == 0 ? lImportedIndex : lIndex));
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

}  // namespace modAddress
