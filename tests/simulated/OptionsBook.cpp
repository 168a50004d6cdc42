#include "simulated/OptionsBook.h"

#include <algorithm>

#include "simulated/Store.h"
#include "simulated/Violation.h"

namespace Simulated {

namespace {

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;
constexpr char szInternet[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr char szAllow[] = "AllowCookies";
const std::string szMissing = "(missing)";

// Every setting: its key, its name and its field.
template <typename Record, typename Take>
void EachOf(Record& a, const Take& aTake) {
  aTake("Timer", "Interval", a.Interval);
  aTake("Timer", "Warning", a.Warning);
  aTake("Manager", "Email", a.Email);
  aTake("Manager", "Name", a.Name);
  aTake("Manager", "SMTP", a.SMTP);
  aTake("Manager", "SMTPPort", a.SMTPPort);
  aTake("Log", "LogPath", a.LogPath);
  aTake("Log", "LogPeriod", a.LogPeriod);
  aTake("Log", "DiskLogMaxFiles", a.DiskLogMaxFiles);
  aTake("Log", "MaxLogFiles", a.MaxLogFiles);
  aTake("Log", "DiskLogDisabled", a.DiskLogDisabled);
  aTake("AllowCookie", "AllowType", a.AllowType);
}

template <typename Field>
std::string TextOf(const Field& aField) {
  if constexpr (std::is_integral_v<Field>)
    return std::to_string(aField);
  else
    return aField;
}

template <typename Field>
void Put(const std::string& szText, Field& aField) {
  if constexpr (std::is_integral_v<Field>)
    aField = static_cast<Field>(std::stoi(szText));
  else
    aField = szText;
}

}  // namespace

OptionsBook::Raw OptionsBook::RawOf(const SettingsRecord& aSettings) {
  Raw aRaw;
  EachOf(aSettings,
         [&](const char*, const char* szName, const auto& aField) { aRaw[szName] = TextOf(aField); });
  return aRaw;
}

OptionsBook::Raw OptionsBook::ReadStore() {
  Raw aRaw;
  EachOf(Settings, [&](const std::string& szKey, const char* szName, const auto&) {
    const auto* const pValue = Store::Find(hRoot, "Software\\Tamsel\\Kestrova\\Settings\\" + szKey, szName);
    if (pValue == nullptr) return;
    aRaw[szName] = pValue->lType == Registry::REG_DWORD ? std::to_string(pValue->Number()) : pValue->Text();
  });
  return aRaw;
}

std::string OptionsBook::Shown(const Raw& aRaw) {
  std::string szAll;
  for (const auto& [szName, szText] : aRaw)
    szAll += szName + "=" + szText + "|";
  return szAll;
}

// What is missing takes its default, which is then stored too. (Nothing here stores what is out of range.)
void OptionsBook::PlanLoad() {
  aPlannedStore = aStored = ReadStore();
  auto& a = aPlanned = {};
  EachOf(a, [&](const char*, const char* szName, auto& aField) {
    if (aStored.contains(szName)) Put(aStored[szName], aField);
  });
  const auto Mend = [&](const char* szName, auto& lField, std::int16_t iDefault) {
    if (aStored.contains(szName)) return;
    lField = iDefault;
    aPlannedStore[szName] = std::to_string(iDefault);
  };
  Mend("Interval", a.Interval, 60);
  Mend("Warning", a.Warning, 15);
  if (a.SMTPPort == 0) a.SMTPPort = 25;  // in memory only
  Mend("LogPeriod", a.LogPeriod, 1);
  Mend("DiskLogMaxFiles", a.DiskLogMaxFiles, 1);
  Mend("DiskLogDisabled", a.DiskLogDisabled, 1);
  Mend("MaxLogFiles", a.MaxLogFiles, 7);
  if (a.LogPath.empty()) a.LogPath = aPlannedStore["LogPath"] = szDefaultLogs;
  if (a.AllowType != 1 && a.AllowType != 2) {
    a.LogPeriod = 1;  // in memory only, and the other way round for the policy
    aPlannedStore["AllowType"] = "1";
  }
}

void OptionsBook::PlanSave(const SettingsRecord& aNew) {
  aPlanned = aNew;
  aPlannedStore = RawOf(aNew);
}

void OptionsBook::Conclude() {
  aNow = aPlanned;
  aStored = aPlannedStore;
  RequireSame("the settings in memory", Shown(RawOf(Settings)), Shown(RawOf(aNow)));
  RequireSame("the stored settings", Shown(ReadStore()), Shown(aStored));
}

void OptionsBook::RequireSaved(bool bSaid) const {
  RequireSame(bSaid ? "what was said to be stored" : "what was not stored", Shown(ReadStore()),
              Shown(bSaid ? aPlannedStore : aStored));
}

void OptionsBook::ConcludeAfterTrouble(bool bWhole) {
  auto aIs = ReadStore();
  bool bHolds = aIs == aStored || aIs == aPlannedStore;
  if (!bWhole)
    bHolds = std::ranges::all_of(RawOf(aNow), [&](const auto& aEntry) {
      const auto In = [&](Raw& aRaw) { return aRaw.contains(aEntry.first) ? aRaw[aEntry.first] : szMissing; };
      return In(aIs) == In(aStored) || In(aIs) == In(aPlannedStore);
    });
  if (!bHolds)
    Violate("the stored settings are " + Shown(aIs) + " and must be " + Shown(aStored) + " or " +
            Shown(aPlannedStore));
  aStored = aPlannedStore = aIs;
}

std::optional<std::int32_t> OptionsBook::CookiesNow() {
  const auto* const pValue = Store::Find(Registry::HKEY_CURRENT_USER, szInternet, szAllow);
  return pValue == nullptr ? std::nullopt : std::optional(pValue->Number());
}

void OptionsBook::SetCookies(std::optional<std::int32_t> aPolicy) {
  if (bCookiesOwed) return;
  aCookies = aPolicy;
  if (aPolicy)
    Store::PutNumber(Registry::HKEY_CURRENT_USER, szInternet, szAllow, *aPolicy);
  else
    Store::Remove(Registry::HKEY_CURRENT_USER, szInternet, szAllow);
}

void OptionsBook::RequireOwnCookies() const {
  RequireSame("the user's own cookie policy", CookiesNow().value_or(-1), aCookies.value_or(-1));
}

void OptionsBook::RequireProgramCookies() const {
  if (!Store::HasKey(Registry::HKEY_CURRENT_USER, szInternet)) return;
  RequireSame("the cookie policy during a pass", CookiesNow().value_or(-1), aNow.AllowType);
}

}  // namespace Simulated
