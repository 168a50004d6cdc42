#include "long/Stand.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/Environment.h"
#include "platform/Files.h"
#include "support/Stored.h"

namespace fs = std::filesystem;

namespace {

constexpr double dMostSeconds = 60;

bool IsOurs(const std::string& szName) {
  return szName.starts_with("registry.db") || szName.ends_with(".kvl");
}

}  // namespace

void Must(bool bHolds, const std::string& szWhat) {
  if (bHolds) return;
  std::cout << "NOT SO: " << szWhat << std::endl;
  std::_Exit(1);
}

Tally::~Tally() {
  std::cout << "  " << szTrial << ":";
  for (const auto& [szWhat, lTimes] : aTimes)
    std::cout << " " << lTimes << " " << szWhat << ";";
  std::cout << std::endl;
}

Stand::Stand(int lCount, const std::string& szGiven)
    : lSites(lCount), szFolder(szGiven.empty() ? aHome.Folder() : szGiven) {
  Environment::Set("KESTROVA_REGISTRY", StorePath());
  Environment::Set("no_proxy", "*");
  Stored::PutMailServer(aMail.Port());
  Stored::Put(ProductKeys::szLog, "LogPath", szFolder);
  std::string szList;
  for (int i = 0; i < lSites; ++i) {
    aWeb.Serve("/bad" + std::to_string(i), Fault::Status("404 Not Found"));
    for (const char* const szPath : {"/good", "/bad"})
      szList += aWeb.Site(szPath + std::to_string(i)) + ",,4,1,10\r\n";
  }
  aHome.Write("list.kvd", szList);
  Must(Run({"import", "--replace", aHome.Path("list.kvd")}).iCode == 0, "the first import succeeds");
  const Result aFirstPass = Run({"check"});
  Must(aFirstPass.iCode == 1 && aFirstPass.szErrors.empty(),
       "the first pass succeeds: " + aFirstPass.szErrors);
  KeepAsFirst();
}

Stand::Result Stand::Run(const std::vector<std::string>& aArguments) {
  Registry::CloseStore();
  ChildProcess aProgram(Program(), aArguments);
  const int iCode = aProgram.Wait(dMostSeconds);
  Result aResult{iCode, aProgram.Output(), aProgram.Errors()};
  Must(iCode >= 0 && iCode <= 2, aArguments.front() + " ends by itself, with 0, 1 or 2, and not with " +
                                     std::to_string(iCode) + ": " + aResult.szErrors);
  Must((iCode == 2) <= !aResult.szErrors.empty(), aArguments.front() + " says why it ends with 2");
  return aResult;
}

void Stand::KeepAsFirst() {
  Registry::CloseStore();
  aFirst.clear();
  for (const auto& aEntry : fs::directory_iterator(szFolder))
    if (const auto szName = aEntry.path().filename().string(); IsOurs(szName))
      aFirst[szName] = Files::ReadWhole(aEntry.path().string(), UINT32_MAX).value_or("");
}

void Stand::PutBack() {
  Registry::CloseStore();
  std::vector<fs::path> aOld;
  for (const auto& aEntry : fs::directory_iterator(szFolder))
    if (IsOurs(aEntry.path().filename().string())) aOld.push_back(aEntry.path());
  for (const auto& aPath : aOld)
    fs::remove(aPath);
  for (const auto& [szName, szBytes] : aFirst)
    Must(Files::WriteWhole(StorePath(szName), szBytes), "the trial can put its store back");
  lMailsBefore = aMail.Mails().size();
}

std::string Stand::LogPath() const {
  const auto aNames = Files::List(szFolder, ".kvl");
  Must(aNames.size() == 1, "there is one log (what began just before midnight is to be begun again)");
  return StorePath(aNames.front());
}

Stand::List Stand::Parsed(const std::string& szJson) {
  List aList;
  for (const auto& aSite : nlohmann::json::parse(szJson))
    aList[aSite["url"]] = aSite["status"].get<std::string>() + "|" + aSite["ip"].get<std::string>() + "|" +
                          std::to_string(aSite["timeOut"].get<int>());
  return aList;
}

Stand::List Stand::Listed() {
  const Result aResult = Run({"list", "--json"});
  Must(aResult.iCode == 0 && aResult.szErrors.empty(), "the list can be read: " + aResult.szErrors);
  return Parsed(aResult.szOutput);
}

std::map<std::string, int> Stand::Mailed() const {
  std::map<std::string, int> aTimes;
  const auto aMails = aMail.Mails();
  for (std::size_t i = lMailsBefore; i < aMails.size(); ++i)
    for (int n = 0; n < lSites; ++n) {
      const auto szSite = aWeb.Site("/bad" + std::to_string(n));
      const auto lAt = aMails[i].szText.find(szSite);
      if (lAt != std::string::npos &&
          std::isdigit(static_cast<unsigned char>(aMails[i].szText[lAt + szSite.size()])) == 0)
        ++aTimes[szSite];
    }
  return aTimes;
}
