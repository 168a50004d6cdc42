#include "fleet/PrometheusFolder.h"

#include <algorithm>
#include <deque>
#include <optional>

#include "base/Text.h"
#include "fleet/FleetFiles.h"
#include "fleet/TargetFiles.h"
#include "platform/Files.h"

namespace {

constexpr std::uint64_t lMostText = std::uint64_t{16} << 20U;
constexpr std::uint64_t lHeadBytes = 512;

bool IsTargets(const std::string& szName) {
  return szName.starts_with("targets") && szName.ends_with(".json");
}

// Ours: begins as we begin such a file. An empty one holds nothing that could be lost.
bool IsOurs(const std::string& szPath, const std::string& szName) {
  const auto szHead = Files::ReadPiece(szPath, 0, lHeadBytes);
  if (!szHead) return false;
  if (!IsTargets(szName)) return szHead->empty() || szHead->find(FleetFiles::szMark) != std::string::npos;
  return szHead->empty() || *szHead == "[\n]\n" || szHead->starts_with("[\n  {\"targets\": [\"http://");
}

// "targets-12.json" with the two ends given.
bool IsShardName(const std::string& szName, std::string_view szStart, std::string_view szEnd) {
  return szName.size() > szStart.size() + szEnd.size() && szName.starts_with(szStart) &&
         szName.ends_with(szEnd) &&
         Text::IsDigits(szName.substr(szStart.size(), szName.size() - szStart.size() - szEnd.size()));
}

// What an export with another number of shards has left.
void RemoveOtherShards(const std::string& szFolder, const std::vector<std::string>& aWritten) {
  std::vector<std::string> aNames = Files::List(szFolder, ".json");
  const std::vector<std::string> aMore = Files::List(szFolder, ".yml");
  aNames.insert(aNames.end(), aMore.begin(), aMore.end());
  for (const std::string& szName : aNames) {
    const bool bOurName = szName == "targets.json" || szName == "prometheus.yml" ||
                          IsShardName(szName, "targets-", ".json") ||
                          IsShardName(szName, "prometheus-", ".yml");
    const std::string szPath = szFolder + Files::chSeparator + szName;
    if (bOurName && std::ranges::find(aWritten, szName) == aWritten.end() && IsOurs(szPath, szName))
      Files::Delete(szPath);
  }
}

std::vector<std::string> TargetNames(std::int32_t lShards) {
  std::vector<std::string> aNames;
  for (std::int32_t n = 1; n <= lShards; ++n)
    aNames.push_back(TargetFiles::Name(n, lShards));
  return aNames;
}

}  // namespace

PrometheusFolder::Report PrometheusFolder::Write(const std::string& szFolder, const FleetPlan& aPlan,
                                                 const Sites& aSource) {
  Report aReport;
  const auto Fail = [&](Result iResult, const std::string& szFile = {}) {
    aReport.iResult = iResult;
    aReport.szFile = szFile;
    return aReport;
  };
  const auto Path = [&](const std::string& szName) { return szFolder + Files::chSeparator + szName; };
  const auto NotOurs = [&](const std::string& szName) {
    return (Files::FileExists(Path(szName)) || Files::FolderExists(Path(szName))) &&
           !IsOurs(Path(szName), szName);
  };

  if (!Files::MakeFolder(szFolder)) return Fail(Result::NoFolder);
  std::vector<std::string> aNames = TargetNames(aPlan.lShards);
  if (const auto pForeign = std::ranges::find_if(aNames, NotOurs); pForeign != aNames.end())
    return Fail(Result::Foreign, Path(*pForeign));

  TargetFiles aTargets(szFolder, aPlan.lShards);
  if (!aSource([&](const SiteRecord& aSite, std::int64_t lSlot) { aTargets.Add(aSite, lSlot); }))
    return Fail(Result::Refused);
  aReport.lSites = aTargets.Count();
  aReport.lInterval = FleetFiles::ScrapeInterval(aPlan, aTargets.TimeOuts());

  const auto aFiles = FleetFiles::Compose(aPlan, aTargets.TimeOuts(), aTargets.Count());
  for (const auto& aFile : aFiles) {
    if (NotOurs(aFile.szName)) return Fail(Result::Foreign, Path(aFile.szName));
    aNames.push_back(aFile.szName);
  }
  struct New {
    std::string szPath;
    Files::Replacement aFile;
    explicit New(const std::string& szFile) : szPath(szFile), aFile(szFile) {}
  };
  std::deque<New> aNew;
  for (const auto& aFile : aFiles) {
    const auto szOld = Files::ReadWhole(Path(aFile.szName), lMostText);
    if (szOld && *szOld == aFile.szBytes) continue;
    if (!aNew.emplace_back(Path(aFile.szName)).aFile.Write(aFile.szBytes))
      return Fail(Result::NotWritten, aNew.back().szPath);
    if (szOld && aFile.szName != "README.txt") aReport.aChanged.push_back(aFile.szName);
  }
  if (!aTargets.Finish()) return Fail(Result::NotWritten, Path(aNames.front()));
  // The modules of new time-outs first, then the targets that name them.
  for (New& aFile : aNew)
    if (!aFile.aFile.Commit()) return Fail(Result::NotWritten, aFile.szPath);
  if (!aTargets.Commit()) return Fail(Result::NotWritten, Path(aNames.front()));
  RemoveOtherShards(szFolder, aNames);
  return aReport;
}
