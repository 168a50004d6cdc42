#include "simulated/LogBook.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/Text.h"
#include "history/LogHistory.h"
#include "history/LogSummary.h"
#include "simulated/Machine.h"
#include "simulated/Rules.h"
#include "simulated/Violation.h"

namespace Simulated {

namespace {

// Logs tell whole seconds.
DateTime Rounded(DateTime dtMoment) {
  return std::round(dtMoment * dSecondsPerDay) / dSecondsPerDay;
}

std::string FolderOf(const std::string& szPath) {
  return szPath.substr(0, szPath.rfind('/'));
}

}  // namespace

// What is known of one site's outages.
struct LogBook::SiteStory {
  struct Outage {
    std::uint32_t lFailures = 0, lSent = 0, lFailed = 0;
    bool bDown = false;  // failed again, in one run of the program or in two
    bool bOver = false;
  };
  std::uint32_t lChecks = 0, lSuccesses = 0;
  std::vector<Outage> aOutages;

  void Count(const Line& aLine);
};

void LogBook::SiteStory::Count(const Line& aLine) {
  if (aLine.iKind == Kind::Up) {
    ++lChecks;
    ++lSuccesses;
    if (!aOutages.empty()) aOutages.back().bOver = true;
  } else if (aLine.iKind == Kind::Warning || aLine.iKind == Kind::Down) {
    ++lChecks;
    if (aOutages.empty() || aOutages.back().bOver) aOutages.emplace_back();
    ++aOutages.back().lFailures;
    if (aLine.iKind == Kind::Down || aOutages.back().lFailures > 1) aOutages.back().bDown = true;
    aOutages.back().lSent += aLine.bSent ? 1 : 0;
    aOutages.back().lFailed += aLine.bFailed ? 1 : 0;
  }
}

void LogBook::BeginPass(const SettingsRecord& aOptions) {
  szFolder = aOptions.LogPath;
  auto dtDay = ThisMachine().Second();
  if (aOptions.LogPeriod != 1) dtDay = AddDays(dtDay, 1 - SplitDateTime(dtDay).lWeekday);
  szCurrent = szFolder + (aOptions.LogPeriod == 1 ? "/D-" : "/W-") + FormatDay(dtDay) + ".kvl";
  lMostFiles = aOptions.LogPeriod != 0 && aOptions.DiskLogMaxFiles == 1 ? aOptions.MaxLogFiles : 0;
}

// The first by name goes, never the one in use, and none while there is room.
void LogBook::Deleted(const std::string& szFile) {
  if (lMostFiles == 0) Violate("a log file was deleted though there is no limit: " + szFile);
  std::vector<std::string> aOthers;
  for (const auto& [szPath, szText] : ThisMachine().aDisk.aFiles)
    if (FolderOf(szPath) == szFolder && szPath.ends_with(".kvl") && szPath != szCurrent)
      aOthers.push_back(szPath);
  if (static_cast<std::int32_t>(aOthers.size()) + 1 <= lMostFiles)
    Violate("a log file was deleted though there is room: " + szFile);
  RequireSame("the log file that is deleted", szFile, aOthers.front());
  aFiles.erase(szFile);
}

void LogBook::RequirePruned() const {
  if (lMostFiles == 0) return;
  std::int64_t lFiles = 0;
  for (const auto& [szPath, szText] : ThisMachine().aDisk.aFiles)
    lFiles += FolderOf(szPath) == szFolder && szPath.ends_with(".kvl") ? 1 : 0;
  if (lFiles > lMostFiles) RequireSame("the number of log files", lFiles, lMostFiles);
}

void LogBook::Add(const std::string& szFile, const Line& aLine) {
  aFiles[szFile].push_back(aLine);
  aFiles[szFile].back().dtMoment = Rounded(aLine.dtMoment);
  ++lAdded;
}

std::int64_t LogBook::LineCount() const {
  std::int64_t lLines = 0;
  for (const auto& [szPath, aFile] : aFiles)
    lLines += static_cast<std::int64_t>(aFile.size());
  return lLines;
}

void LogBook::ForgetAll() {
  auto& aOnDisk = ThisMachine().aDisk.aFiles;
  std::erase_if(aOnDisk, [](const auto& aFile) { return aFile.first.ends_with(".kvl"); });
  aFiles.clear();
  ThisMachine().aDisk.lTorn = 0;
}

// The passes of all files by their times; a time that runs back within a file counts as the latest before it.
std::vector<const LogBook::Line*> LogBook::Merged(const std::string& szOf) const {
  struct Pass {
    DateTime dtKey = 0;
    std::size_t lFile = 0, lPass = 0;
    std::vector<const Line*> aLines;
  };
  std::vector<Pass> aPasses;
  std::size_t lFile = 0;
  for (const auto& [szPath, aFile] : aFiles) {
    if (FolderOf(szPath) != szOf) continue;
    bool bOpen = false;
    DateTime dtLatest = 0;
    std::size_t lPass = 0;
    for (const auto& aLine : aFile) {
      if (!bOpen || aLine.iKind == Kind::Start) {
        if (aLine.iKind != Kind::End) dtLatest = std::max(dtLatest, aLine.dtMoment);
        aPasses.push_back({dtLatest, lFile, lPass++, {}});
      }
      bOpen = aLine.iKind != Kind::End;
      aPasses.back().aLines.push_back(&aLine);
    }
    ++lFile;
  }
  std::stable_sort(aPasses.begin(), aPasses.end(), [](const Pass& aOne, const Pass& aOther) {
    return aOne.dtKey != aOther.dtKey ? aOne.dtKey < aOther.dtKey : aOne.lFile < aOther.lFile;
  });
  std::vector<const Line*> aAll;
  for (const auto& aPass : aPasses)
    aAll.insert(aAll.end(), aPass.aLines.begin(), aPass.aLines.end());
  return aAll;
}

bool LogBook::ReadBack(bool bNow) {
  std::int64_t lLines = 0;
  for (const auto& [szPath, aFile] : aFiles)
    lLines += FolderOf(szPath) == szFolder ? static_cast<std::int64_t>(aFile.size()) : 0;
  if (lLines == 0 || (!bNow && lAdded < 300 + 2 * lLines)) return false;
  lAdded = 0;
  ++Tallied(Tally::ReadBacks);

  const Machine::Aside aAside;
  LogHistory aHistory;
  aHistory.Open({szFolder});
  const auto aSummary = Summarise(aHistory);
  if (const auto lTorn = ThisMachine().aDisk.lTorn; lTorn > 0) {
    Require(aSummary.lUnread <= lTorn, "one torn line makes more than one line unreadable");
    return true;
  }
  RequireSame("the number of unreadable log lines", aSummary.lUnread, 0);
  RequireSame("the number of log lines", static_cast<std::int64_t>(aHistory.Lines().size()), lLines);

  std::map<std::string, SiteStory> aTallies;
  for (const auto* const pLine : Merged(szFolder))
    if (!pLine->szSite.empty()) aTallies[pLine->szSite].Count(*pLine);
  RequireSame("the number of sites in the log", static_cast<std::int64_t>(aSummary.aSites.size()),
              static_cast<std::int64_t>(aTallies.size()));
  for (const auto& aSite : aSummary.aSites) {
    const auto pTally = aTallies.find(Text::LowerCase(aSite.szSite));
    if (pTally == aTallies.end()) Violate("the log names a site that was never checked: " + aSite.szSite);
    const auto& aTally = pTally->second;
    RequireSame("the checks that the log tells of " + aSite.szSite, aSite.lChecks, aTally.lChecks);
    RequireSame("the successes that the log tells of " + aSite.szSite, aSite.lSuccesses, aTally.lSuccesses);
    // Failures, an outage or a hiccup, mails sent, mails failed, over. In no order: on a clock that was set
    // back the times tell none.
    std::vector<std::array<std::int64_t, 5>> aTold, aMust;
    for (const auto* pRuns : {&aSite.aOutages, &aSite.aHiccups})
      for (const auto& aRun : *pRuns) {
        const auto lFailed = static_cast<std::int64_t>(aRun.MailsFailed());
        aTold.push_back({aRun.lFailures, aRun.bDown, std::ssize(aRun.aMails) - lFailed, lFailed,
                         aRun.iEnd == OutageEnd::Recovered});
      }
    for (const auto& aRun : aTally.aOutages)
      aMust.push_back({aRun.lFailures, aRun.bDown, aRun.lSent, aRun.lFailed, aRun.bOver});
    std::ranges::sort(aTold);
    std::ranges::sort(aMust);
    RequireSame("the failures that the log tells of " + aSite.szSite, std::ssize(aTold), std::ssize(aMust));
    for (std::size_t i = 0; i < aMust.size(); ++i)
      for (std::size_t lPart = 0; lPart < aMust[i].size(); ++lPart)
        RequireSame("failure " + std::to_string(i + 1) + " of " + aSite.szSite + ", part " +
                        std::to_string(lPart + 1),
                    aTold[i][lPart], aMust[i][lPart]);
    Tallied(Tally::Outages) += std::ssize(aMust);
  }
  return true;
}

}  // namespace Simulated
