#include "simulated/Commands.h"

#include <array>

#include "editing/AddressRules.h"
#include "editing/ListExchange.h"
#include "editing/OptionsRules.h"
#include "simulated/Disk.h"
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

Program::Site AnySite(Random& aRandom) {
  Program::Site aSite;
  aSite.szUrl = AnyUrl(aRandom);
  if (aRandom.Chance(0.6)) aSite.szIp = "192.0.2." + std::to_string(aRandom.Below(50));
  aSite.iEnabled = aRandom.Chance(0.9) ? 1 : 0;
  aSite.lTimeOut = aRandom.Chance(0.01) ? aRandom.Between(60, 1800) : aRandom.Between(1, 12);
  aSite.iStatus = 4;
  return aSite;
}

AddressRules::Form FormOf(const Program::Site& aSite) {
  AddressRules::Form aForm;
  aForm.szURL = aSite.szUrl;
  std::size_t lFrom = 0;
  for (auto& szOctet : aForm.aOctets) {
    if (aSite.szIp.empty()) break;
    const auto lDot = std::min(aSite.szIp.find('.', lFrom), aSite.szIp.size());
    szOctet = aSite.szIp.substr(lFrom, lDot - lFrom);
    lFrom = lDot + 1;
  }
  aForm.szTimeOut = std::to_string(aSite.lTimeOut);
  aForm.bEnabled = aSite.iEnabled == 1;
  return aForm;
}

// True when every call went well and the machine is still there.
bool WentWell(std::int64_t lFaultsBefore) {
  return !The().Dead() && The().lStoreFaults == lFaultsBefore;
}

std::string FileLine(const Program::Site& aSite) {
  return aSite.szUrl + "," + aSite.szIp + "," + std::to_string(aSite.iStatus) + "," +
         std::to_string(aSite.iEnabled) + "," + std::to_string(aSite.lTimeOut) + "\r\n";
}

}  // namespace

void Add(PassBook& aBook, Random& aRandom) {
  if (aBook.aList.aSites.size() >= lMostSites) return;
  auto aSite = AnySite(aRandom);
  aSite.szRemark = "Added";
  const bool bTaken = aBook.aList.IsTaken(aSite.szUrl, 0);
  if (!bTaken) aBook.aList.PlanAdd(aSite);
  const auto lFaults = The().lStoreFaults;
  AddressRules::AddressMode = 0;
  auto aForm = FormOf(aSite);
  SiteRecord aRecord;
  const auto aVerdict = AddressRules::Check(aForm, aRecord);
  if (!The().Dead())
    Require(aVerdict.szMessage.empty() != bTaken, "a site that is known is added, or a new one is not");
  if (!aVerdict.szMessage.empty()) return;
  AddressRules::Store(aRecord);
  if (WentWell(lFaults)) aBook.aList.Conclude();
}

std::int32_t Edit(PassBook& aBook, Random& aRandom, std::int32_t lSlot) {
  const auto& aBooked = aBook.aList.aSites[static_cast<std::size_t>(lSlot) - 1];
  const auto aOld = aBooked.aNow;
  const auto iStoredStatus = aOld.iStatus;
  auto aNew = aOld;
  const auto aOther = AnySite(aRandom);
  if (aRandom.Chance(0.3)) aNew.szUrl = aOther.szUrl;
  if (aRandom.Chance(0.3)) aNew.szIp = aOther.szIp;
  if (aRandom.Chance(0.5)) aNew.lTimeOut = aOther.lTimeOut;
  if (aRandom.Chance(0.3)) aNew.iEnabled = aOther.iEnabled;
  aNew.iStatus = aNew.szUrl == aOld.szUrl && aNew.iEnabled == 1 ? iStoredStatus : 4;
  aNew.szRemark = "Edited";
  const bool bTaken = aBook.aList.IsTaken(aNew.szUrl, lSlot);
  if (!bTaken) aBook.aList.PlanEdit(lSlot, aNew);
  const auto lFaults = The().lStoreFaults;
  AddressRules::AddressMode = 1;
  AddressRules::AddressIndex = lSlot;
  AddressRules::EditCopy.assign(1, SiteRecord{});
  AddressRules::EditCopy[0].URL = aOld.szUrl;
  AddressRules::EditCopy[0].IP = aOld.szIp;
  auto aForm = FormOf(aNew);
  SiteRecord aRecord;
  const auto aVerdict = AddressRules::Check(aForm, aRecord);
  if (!The().Dead())
    Require(aVerdict.szMessage.empty() != bTaken, "a site is given another's address, or not its own");
  if (!aVerdict.szMessage.empty()) return 0;
  const auto aResult = AddressRules::Store(aRecord);
  if (!WentWell(lFaults)) return 0;
  aBook.aList.Conclude();
  return aResult.bAddressChanged ? aResult.lSlot : 0;
}

void Delete(PassBook& aBook, Random& aRandom) {
  if (aBook.aList.aSites.empty()) return;
  const auto lSlot = aRandom.Between(1, static_cast<std::int32_t>(aBook.aList.aSites.size()));
  aBook.aList.PlanDelete(lSlot);
  const auto lFaults = The().lStoreFaults;
  modAddress::DeleteSite(lSlot);
  if (WentWell(lFaults)) aBook.aList.Conclude();
}

void Import(PassBook& aBook, Random& aRandom) {
  std::vector<Program::Site> aRecords;
  std::string szFile;
  for (int i = aRandom.Between(1, 6); i > 0 && aBook.aList.aSites.size() + aRecords.size() < lMostSites;
       --i) {
    auto aSite = AnySite(aRandom);
    if (aSite.szUrl.find(',') != std::string::npos) continue;  // cannot be exchanged
    aSite.iStatus = aRandom.Below(6);
    szFile += FileLine(aSite);
    if (aSite.iStatus == 0) aSite.iStatus = 1;
    aRecords.push_back(std::move(aSite));
  }
  const bool bCorrupt = aRandom.Chance(0.1);
  if (bCorrupt) szFile += "x.example,1.2.3,1,1,5\r\n";
  Disk::The().aFiles[szListFile] = szFile;
  const bool bReplace = aRandom.Chance(0.5);
  if (!bCorrupt) aBook.aList.PlanImport(aRecords, bReplace);
  const auto lFaults = The().lStoreFaults;
  const auto lFileFaults = The().lFileFaults;
  std::vector<SiteRecord> aRead;
  std::int32_t lBadLine = 0;
  const auto iReading = ListExchange::Read(szListFile, aRead, lBadLine);
  if (WentWell(lFaults) && The().lFileFaults == lFileFaults)
    Require((iReading == ListExchange::Reading::Fine) != bCorrupt, "a list file is judged wrongly");
  if (iReading != ListExchange::Reading::Fine) return aBook.aList.Abandon();
  const bool bStored = ListExchange::Import(aRead, bReplace, {});
  if (!The().Dead()) aBook.aList.RequireImported(bStored);
  if (WentWell(lFaults)) aBook.aList.Conclude();
}

void Export(PassBook& aBook, Random& /*aRandom*/) {
  std::string szMust;
  for (const auto& aSite : aBook.aList.aSites) {
    auto aLine = aSite.aNow;
    if (aLine.iStatus == 0) aLine.iStatus = 4;
    szMust += FileLine(aLine);
  }
  const auto szBefore = Disk::The().aFiles[szListFile];
  const bool bDone = ListExchange::Export(szListFile, {});
  if (The().Dead()) return;
  RequireSame("the exported list", Disk::The().aFiles[szListFile], bDone ? szMust : szBefore);
}

void ChangeOptions(PassBook& aBook, Random& aRandom) {
  auto& aOptions = aBook.aOptions;
  auto aNew = aOptions.aNow;
  static const std::vector<std::int32_t> aIntervals = {1, 5, 15, 30, 60, 240, 1440};
  if (aRandom.Chance(0.3)) aNew.lInterval = aRandom.Pick(aIntervals);
  if (aRandom.Chance(0.3)) aNew.lWarning = aRandom.Between(1, 20);
  if (aRandom.Chance(0.2)) aNew.szEmail = aRandom.Chance(0.2) ? "" : "manager@example.com";
  if (aRandom.Chance(0.2)) aNew.szServer = aRandom.Chance(0.2) ? "" : "mail.example.com";
  if (aRandom.Chance(0.2)) aNew.szName = aRandom.Chance(0.5) ? "" : "The Manager";
  if (aRandom.Chance(0.3)) aNew.lPort = aRandom.Between(1, 65535);
  if (aRandom.Chance(0.3)) aNew.lLogPeriod = aRandom.Chance(0.2) ? 0 : aRandom.Between(1, 2);
  if (aRandom.Chance(0.2))
    aNew.szLogPath = aRandom.Chance(0.5) ? "/home/operator/logs" : OptionsBook::szDefaultLogs;
  if (aRandom.Chance(0.2)) aNew.lLimitFiles = aRandom.Chance(0.9) ? 1 : 0;
  if (aRandom.Chance(0.2)) aNew.lMostFiles = aRandom.Between(1, 6);
  if (aRandom.Chance(0.3)) aNew.lSkipDisabled = aRandom.Below(2);
  aNew.lCookies = aRandom.Between(1, 2);
  const SettingsRecord aOpening = Settings;
  auto aForm = OptionsRules::OpeningForm(aOpening);
  aForm.szTimerInterval = std::to_string(aNew.lInterval);
  aForm.szTimerWarning = std::to_string(aNew.lWarning);
  aForm.szMgrEmail = aNew.szEmail;
  aForm.szMgrName = aNew.szName;
  aForm.szSMTP = aNew.szServer;
  aForm.szSMTPPort = std::to_string(aNew.lPort);
  aForm.LogPeriod = static_cast<std::int16_t>(aNew.lLogPeriod);
  aForm.szLogPath = aNew.szLogPath;
  aForm.szMaxLogFiles = std::to_string(aNew.lMostFiles);
  aForm.bDiskMaxLogFiles = aNew.lLimitFiles == 1;
  aForm.bDiskNoLogDisabled = aNew.lSkipDisabled == 1;
  aForm.bCookieDisable = aNew.lCookies == 2;
  const auto aOld = aOptions.aNow;
  aOptions.PlanSave(aNew);
  if (aNew.lInterval != aOld.lInterval || aNew.lWarning != aOld.lWarning)
    aBook.SetNext(std::max(1, aNew.lWarning));
  const auto lFaults = The().lStoreFaults;
  OptionsRules::Store(aForm, aOpening);
  if (!WentWell(lFaults)) return;
  aOptions.Conclude();
  aBook.CompareNext();
}

}  // namespace Simulated::Commands
