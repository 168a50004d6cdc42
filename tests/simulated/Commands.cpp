#include "simulated/Commands.h"

#include <optional>

#include "editing/AddressRules.h"
#include "editing/ListExchange.h"
#include "editing/OptionsRules.h"
#include "simulated/Violation.h"

namespace Simulated::Commands {

namespace {

constexpr std::size_t lMostSites = 30;
constexpr char szListFile[] = "/home/operator/list.kvd";

std::string AnyUrl(Random& aRandom) {
  static const std::vector<std::string> aForms = {"www.site%.example",         "WWW.Site%.Example/Path",
                                                  "site%.example/a,b?c=1",     "site%.example:8080/a b",
                                                  "s%.example/x\\y",           "10.1.2.%",
                                                  "s\xC3\xA4tze%.example/\xE4"};
  auto szUrl = aRandom.Chance(0.5) ? aForms.front() : aRandom.Pick(aForms);
  szUrl.replace(szUrl.find('%'), 1, std::to_string(aRandom.Below(60)));
  return szUrl;
}

SiteRecord AnySite(Random& aRandom) {
  SiteRecord aSite;
  aSite.URL = AnyUrl(aRandom);
  if (aRandom.Chance(0.6)) aSite.IP = "192.0.2." + std::to_string(aRandom.Below(50));
  aSite.Enabled = aRandom.Chance(0.9) ? 1 : 0;
  aSite.TimeOut = aRandom.Chance(0.01) ? aRandom.Between(60, 1800) : aRandom.Between(1, 12);
  aSite.Status = 4;
  return aSite;
}

// An editor that was opened with one site (none: for a new one), in which another was typed, is closed with
// OK: what is to be stored, unless it is refused, which must be so where the address is taken.
std::optional<SiteRecord> Typed(const SiteRecord* pOpened, const SiteRecord& aTyped, bool bTaken) {
  AddressRules::AddressMode = 1;
  AddressRules::EditCopy = {aTyped};
  auto aForm = AddressRules::OpeningForm();
  AddressRules::AddressMode = pOpened == nullptr ? 0 : 1;
  if (pOpened != nullptr) AddressRules::EditCopy = {*pOpened};
  SiteRecord aRecord;
  const bool bAccepted = AddressRules::Check(aForm, aRecord).szMessage.empty();
  if (!ThisMachine().Dead())
    Require(bAccepted != bTaken, "a site is given an address that is taken, or not a free one");
  return bAccepted ? std::optional(aRecord) : std::nullopt;
}

// True when every call went well and the machine is still there.
bool WentWell(std::int64_t lFaultsBefore) {
  return !ThisMachine().Dead() && ThisMachine().lStoreFaults == lFaultsBefore;
}

std::string FileLine(const SiteRecord& aSite) {
  return aSite.URL + "," + aSite.IP + "," + std::to_string(aSite.Status) + "," +
         std::to_string(aSite.Enabled) + "," + std::to_string(aSite.TimeOut) + "\r\n";
}

}  // namespace

void Add(PassBook& aBook, Random& aRandom) {
  if (aBook.aList.aSites.size() >= lMostSites) return;
  auto aSite = AnySite(aRandom);
  aSite.Comments = "Added";
  const bool bTaken = aBook.aList.IsTaken(aSite.URL, 0);
  if (!bTaken) aBook.aList.PlanAdd(aSite);
  const auto lFaults = ThisMachine().lStoreFaults;
  const auto aRecord = Typed(nullptr, aSite, bTaken);
  if (!aRecord) return;
  AddressRules::Store(*aRecord);
  if (WentWell(lFaults)) aBook.aList.Conclude();
}

std::int32_t Edit(PassBook& aBook, Random& aRandom, std::int32_t lSlot) {
  const auto aOld = aBook.aList.aSites[static_cast<std::size_t>(lSlot) - 1].aNow;
  auto aNew = aOld;
  const auto aOther = AnySite(aRandom);
  if (aRandom.Chance(0.3)) aNew.URL = aOther.URL;
  if (aRandom.Chance(0.3)) aNew.IP = aOther.IP;
  if (aRandom.Chance(0.5)) aNew.TimeOut = aOther.TimeOut;
  if (aRandom.Chance(0.3)) aNew.Enabled = aOther.Enabled;
  aNew.Status = aNew.URL == aOld.URL && aNew.Enabled == 1 ? aOld.Status : 4;
  aNew.Comments = "Edited";
  const bool bTaken = aBook.aList.IsTaken(aNew.URL, lSlot);
  if (!bTaken) aBook.aList.PlanEdit(lSlot, aNew);
  const auto lFaults = ThisMachine().lStoreFaults;
  AddressRules::AddressIndex = lSlot;
  const auto aRecord = Typed(&aOld, aNew, bTaken);
  if (!aRecord) return 0;
  const auto aResult = AddressRules::Store(*aRecord);
  if (!WentWell(lFaults)) return 0;
  aBook.aList.Conclude();
  return aResult.bAddressChanged ? aResult.lSlot : 0;
}

void Delete(PassBook& aBook, Random& aRandom) {
  if (aBook.aList.aSites.empty()) return;
  const auto lSlot = aRandom.Between(1, static_cast<std::int32_t>(aBook.aList.aSites.size()));
  aBook.aList.PlanDelete(lSlot);
  const auto lFaults = ThisMachine().lStoreFaults;
  const bool bDeleted = modAddress::DeleteSite(lSlot);
  if (!ThisMachine().Dead()) aBook.aList.RequireDone("a deletion", bDeleted);
  if (WentWell(lFaults)) aBook.aList.Conclude();
}

void Import(PassBook& aBook, Random& aRandom) {
  std::vector<SiteRecord> aRecords;
  std::string szFile;
  for (int i = aRandom.Between(1, 6); i > 0 && aBook.aList.aSites.size() + aRecords.size() < lMostSites;
       --i) {
    auto aSite = AnySite(aRandom);
    if (aSite.URL.find(',') != std::string::npos) continue;  // cannot be exchanged
    aSite.Status = static_cast<std::uint8_t>(aRandom.Below(6));
    szFile += FileLine(aSite);
    if (aSite.Status == 0) aSite.Status = 1;
    aRecords.push_back(std::move(aSite));
  }
  const bool bCorrupt = aRandom.Chance(0.1);
  if (bCorrupt) szFile += "x.example,1.2.3,1,1,5\r\n";
  ThisMachine().aDisk.aFiles[szListFile] = szFile;
  const bool bReplace = aRandom.Chance(0.5);
  if (!bCorrupt) aBook.aList.PlanImport(aRecords, bReplace);
  const auto lFaults = ThisMachine().lStoreFaults;
  const auto lFileFaults = ThisMachine().lFileFaults;
  std::vector<SiteRecord> aRead;
  std::int32_t lBadLine = 0;
  const auto iReading = ListExchange::Read(szListFile, aRead, lBadLine);
  if (WentWell(lFaults) && ThisMachine().lFileFaults == lFileFaults)
    Require((iReading == ListExchange::Reading::Fine) != bCorrupt, "a list file is judged wrongly");
  if (iReading != ListExchange::Reading::Fine) return aBook.aList.Abandon();
  const bool bStored = ListExchange::Import(aRead, bReplace, {});
  if (!ThisMachine().Dead()) aBook.aList.RequireDone("an import", bStored);
  if (WentWell(lFaults)) aBook.aList.Conclude();
}

void Export(PassBook& aBook, Random& /*aRandom*/) {
  std::string szMust;
  for (const auto& aSite : aBook.aList.aSites) {
    auto aLine = aSite.aNow;
    if (aLine.Status == 0) aLine.Status = 4;
    szMust += FileLine(aLine);
  }
  const auto szBefore = ThisMachine().aDisk.aFiles[szListFile];
  const bool bDone = ListExchange::Export(szListFile, {});
  if (ThisMachine().Dead()) return;
  RequireSame("the exported list", ThisMachine().aDisk.aFiles[szListFile], bDone ? szMust : szBefore);
}

void ChangeOptions(PassBook& aBook, Random& aRandom) {
  auto& aOptions = aBook.aOptions;
  auto aNew = aOptions.aNow;
  static const std::vector<std::int32_t> aIntervals = {1, 5, 15, 30, 60, 240, 1440};
  if (aRandom.Chance(0.3)) aNew.Interval = aRandom.Pick(aIntervals);
  if (aRandom.Chance(0.3)) aNew.Warning = aRandom.Between(1, 20);
  if (aRandom.Chance(0.2)) aNew.Email = aRandom.Chance(0.2) ? "" : "manager@example.com";
  if (aRandom.Chance(0.2)) aNew.SMTP = aRandom.Chance(0.2) ? "" : "mail.example.com";
  if (aRandom.Chance(0.2)) aNew.Name = aRandom.Chance(0.5) ? "" : "The Manager";
  if (aRandom.Chance(0.3)) aNew.SMTPPort = aRandom.Between(1, 65535);
  const auto Small = [&](int lFrom, int lTo) {
    return static_cast<std::int16_t>(aRandom.Between(lFrom, lTo));
  };
  if (aRandom.Chance(0.3)) aNew.LogPeriod = aRandom.Chance(0.2) ? std::int16_t{0} : Small(1, 2);
  if (aRandom.Chance(0.2))
    aNew.LogPath = aRandom.Chance(0.5) ? "/home/operator/logs" : OptionsBook::szDefaultLogs;
  if (aRandom.Chance(0.2)) aNew.DiskLogMaxFiles = aRandom.Chance(0.9) ? 1 : 0;
  if (aRandom.Chance(0.2)) aNew.MaxLogFiles = Small(1, 6);
  if (aRandom.Chance(0.3)) aNew.DiskLogDisabled = Small(0, 1);
  aNew.AllowType = Small(1, 2);
  const SettingsRecord aOpening = Settings;
  const auto aOld = aOptions.aNow;
  aOptions.PlanSave(aNew);
  if (aNew.Interval != aOld.Interval || aNew.Warning != aOld.Warning)
    aBook.SetNext(std::max(1, aNew.Warning));
  const auto lFaults = ThisMachine().lStoreFaults;
  OptionsRules::Store(OptionsRules::OpeningForm(aNew), aOpening);
  if (!ThisMachine().Dead()) aOptions.RequireSaved(SettingsAreSaved());
  if (!WentWell(lFaults)) return;
  aOptions.Conclude();
  aBook.CompareNext();
}

}  // namespace Simulated::Commands
