#include "simulated/OptionsBook.h"

#include <array>

#include "simulated/Disk.h"
#include "simulated/Store.h"
#include "simulated/Violation.h"

namespace Simulated {

namespace {

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;
constexpr char szInternet[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr char szAllow[] = "AllowCookies";
const std::string szMissing = "(missing)";

// In the order of Program::Options.
enum Place {
  Interval,
  Warning,
  Email,
  Name,
  Server,
  Port,
  LogPath,
  LogPeriod,
  LimitFiles,
  MostFiles,
  SkipDisabled,
  Cookies
};
struct Entry {
  const char* szKey;
  const char* szName;
};
constexpr std::array<Entry, 12> aEntries = {{{"Timer", "Interval"},
                                             {"Timer", "Warning"},
                                             {"Manager", "Email"},
                                             {"Manager", "Name"},
                                             {"Manager", "SMTP"},
                                             {"Manager", "SMTPPort"},
                                             {"Log", "LogPath"},
                                             {"Log", "LogPeriod"},
                                             {"Log", "DiskLogMaxFiles"},
                                             {"Log", "MaxLogFiles"},
                                             {"Log", "DiskLogDisabled"},
                                             {"AllowCookie", "AllowType"}}};

std::vector<std::string> AsTexts(const Program::Options& a) {
  return {std::to_string(a.lInterval),
          std::to_string(a.lWarning),
          a.szEmail,
          a.szName,
          a.szServer,
          std::to_string(a.lPort),
          a.szLogPath,
          std::to_string(a.lLogPeriod),
          std::to_string(a.lLimitFiles),
          std::to_string(a.lMostFiles),
          std::to_string(a.lSkipDisabled),
          std::to_string(a.lCookies)};
}

std::string Joined(const std::vector<std::string>& aTexts) {
  std::string szAll;
  for (const auto& szText : aTexts)
    szAll += szText + "|";
  return szAll;
}

}  // namespace

OptionsBook::Raw OptionsBook::ReadStore() {
  Raw aRaw;
  for (const auto& aEntry : aEntries) {
    const auto* const pValue = Store::Find(
        hRoot, std::string("Software\\Tamsel\\Kestrova\\Settings\\") + aEntry.szKey, aEntry.szName);
    aRaw.push_back(pValue == nullptr                      ? szMissing
                   : pValue->lType == Registry::REG_DWORD ? std::to_string(pValue->Number())
                                                          : pValue->Text());
  }
  return aRaw;
}

// What is missing or out of range takes its default, which is then stored too.
void OptionsBook::PlanLoad() {
  aStored = ReadStore();
  aPlannedStore = aStored;
  const auto NumberAt = [&](Place iPlace) {
    return aStored[iPlace] == szMissing ? 0 : std::stoi(aStored[iPlace]);
  };
  const auto TextAt = [&](Place iPlace) { return aStored[iPlace] == szMissing ? "" : aStored[iPlace]; };
  const auto Mend = [&](Place iPlace, std::int32_t& lField, bool bWrong, std::int32_t lDefault) {
    if (!bWrong) return;
    lField = lDefault;
    aPlannedStore[iPlace] = std::to_string(lDefault);
  };
  auto& a = aPlanned;
  a = {NumberAt(Interval),   NumberAt(Warning),   TextAt(Email),          TextAt(Name),
       TextAt(Server),       NumberAt(Port),      TextAt(LogPath),        NumberAt(LogPeriod),
       NumberAt(LimitFiles), NumberAt(MostFiles), NumberAt(SkipDisabled), NumberAt(Cookies)};
  Mend(Interval, a.lInterval, a.lInterval < 1, 60);
  Mend(Warning, a.lWarning, a.lWarning < 1, 15);
  if (a.lPort == 0) a.lPort = 25;  // in memory only
  Mend(LogPeriod, a.lLogPeriod, aStored[LogPeriod] == szMissing || a.lLogPeriod < 0 || a.lLogPeriod > 2, 1);
  Mend(LimitFiles, a.lLimitFiles, aStored[LimitFiles] == szMissing, 1);
  Mend(SkipDisabled, a.lSkipDisabled,
       aStored[SkipDisabled] == szMissing || (a.lSkipDisabled != 0 && a.lSkipDisabled != 1), 1);
  Mend(MostFiles, a.lMostFiles, a.lMostFiles < 1, 7);
  if (a.szLogPath.empty()) a.szLogPath = aPlannedStore[LogPath] = szDefaultLogs;
  if (a.lCookies != 1 && a.lCookies != 2) {
    a.lLogPeriod = 1;  // in memory only, and the other way round for the policy
    aPlannedStore[Cookies] = "1";
  }
}

void OptionsBook::PlanSave(const Program::Options& aNew) {
  aPlanned = aNew;
  aPlannedStore = AsTexts(aNew);
}

void OptionsBook::Conclude() {
  aNow = aPlanned;
  aStored = aPlannedStore;
  Compare();
}

void OptionsBook::ConcludeAfterTrouble(bool bWhole) {
  const auto aIs = ReadStore();
  bool bHolds = aIs == aStored || aIs == aPlannedStore;
  if (!bWhole) {
    bHolds = true;
    for (std::size_t i = 0; i < aIs.size(); ++i)
      bHolds = bHolds && (aIs[i] == aStored[i] || aIs[i] == aPlannedStore[i]);
  }
  if (!bHolds)
    Violate("the stored settings are " + Joined(aIs) + " and must be " + Joined(aStored) + " or " +
            Joined(aPlannedStore));
  aStored = aPlannedStore = aIs;
}

void OptionsBook::Compare() const {
  RequireSame("the settings in memory", Joined(AsTexts(Program::Current())), Joined(AsTexts(aNow)));
  RequireSame("the stored settings", Joined(ReadStore()), Joined(aStored));
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
  const auto Shown = [](std::optional<std::int32_t> a) { return a ? std::to_string(*a) : szMissing; };
  if (CookiesNow() != aCookies)
    RequireSame("the user's own cookie policy", Shown(CookiesNow()), Shown(aCookies));
}

void OptionsBook::RequireProgramCookies() const {
  if (!Store::HasKey(Registry::HKEY_CURRENT_USER, szInternet)) return;
  RequireSame("the cookie policy during a pass", CookiesNow().value_or(-1), aNow.lCookies);
}

}  // namespace Simulated
