#include "simulated/LogBook.h"

#include <algorithm>
#include <cmath>

#include "base/Text.h"
#include "history/LogHistory.h"
#include "history/LogSummary.h"
#include "simulated/Machine.h"
#include "simulated/Rules.h"
#include "simulated/Violation.h"

namespace Simulated {

namespace {

std::string FolderOf(const std::string& szPath) {
  return szPath.substr(0, szPath.rfind('/'));
}

// What is known of one site's outages.
struct Run {
  std::int64_t lFailures = 0, lSent = 0, lFailed = 0;
  bool bDown = false;  // failed again, in one run of the program or in two
  bool bOver = false;
};
struct SiteStory {
  std::int64_t lChecks = 0, lSuccesses = 0;
  std::vector<Run> aRuns;

  void Count(const LogBook::Line& aLine);
  std::string Told() const;
};

void SiteStory::Count(const LogBook::Line& aLine) {
  const bool bUp = aLine.iKind == LogBook::Kind::Up;
  const bool bDown = aLine.iKind == LogBook::Kind::Down;
  if (!bUp && !bDown && aLine.iKind != LogBook::Kind::Warning) return;
  ++lChecks;
  lSuccesses += bUp ? 1 : 0;
  if (bUp && !aRuns.empty()) aRuns.back().bOver = true;
  if (bUp) return;
  if (aRuns.empty() || aRuns.back().bOver) aRuns.emplace_back();
  auto& aRun = aRuns.back();
  aRun.bDown = ++aRun.lFailures > 1 || bDown;
  aRun.lSent += aLine.bSent ? 1 : 0;
  aRun.lFailed += aLine.bFailed ? 1 : 0;
}

// The outages in no order: on a clock that was set back the times tell none.
std::string SiteStory::Told() const {
  std::vector<std::string> aTold;
  for (const auto& aRun : aRuns)
    aTold.push_back(std::to_string(aRun.lFailures) + (aRun.bDown ? " failures, mails " : " failure, mails ") +
                    std::to_string(aRun.lSent) + " sent " + std::to_string(aRun.lFailed) + " failed" +
                    (aRun.bOver ? ", over" : ""));
  std::ranges::sort(aTold);
  return std::to_string(lSuccesses) + " of " + std::to_string(lChecks) + "; " + Text::Joined(aTold, "; ");
}

}  // namespace

std::vector<std::string> LogBook::FilesOfFolder() const {
  std::vector<std::string> aPaths;
  for (const auto& [szPath, szText] : ThisMachine().aDisk.aFiles)
    if (FolderOf(szPath) == szFolder && szPath.ends_with(".kvl")) aPaths.push_back(szPath);
  return aPaths;
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
  auto aOthers = FilesOfFolder();
  std::erase(aOthers, szCurrent);
  if (static_cast<std::int32_t>(aOthers.size()) + 1 <= lMostFiles)
    Violate("a log file was deleted though there is room: " + szFile);
  RequireSame("the log file that is deleted", szFile, aOthers.front());
  aFiles.erase(szFile);
}

void LogBook::RequirePruned() const {
  const auto lFiles = std::ssize(FilesOfFolder());
  if (lMostFiles > 0 && lFiles > lMostFiles) RequireSame("the number of log files", lFiles, lMostFiles);
}

// Logs tell whole seconds.
void LogBook::Add(Line aLine) {
  aLine.dtMoment = std::round(aLine.dtMoment * dSecondsPerDay) / dSecondsPerDay;
  aFiles[szCurrent].push_back(std::move(aLine));
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
std::vector<const LogBook::Line*> LogBook::Merged() const {
  struct Pass {
    DateTime dtKey = 0;
    std::size_t lFile = 0, lPass = 0;
    std::vector<const Line*> aLines;
  };
  std::vector<Pass> aPasses;
  std::size_t lFile = 0;
  for (const auto& [szPath, aFile] : aFiles) {
    if (FolderOf(szPath) != szFolder) continue;
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

void LogBook::ReadBack(bool bNow) {
  std::int64_t lLines = 0;
  for (const auto& [szPath, aFile] : aFiles)
    lLines += FolderOf(szPath) == szFolder ? std::ssize(aFile) : 0;
  if (lLines == 0 || (!bNow && lAdded < 300 + 2 * lLines)) return;
  lAdded = 0;
  ++Tallies()["logs read back"];

  const Machine::Aside aAside;
  LogHistory aHistory;
  aHistory.Open({szFolder});
  const auto aSummary = Summarise(aHistory);
  if (const auto lTorn = ThisMachine().aDisk.lTorn; lTorn > 0)
    return Require(aSummary.lUnread <= lTorn, "one torn line makes more than one line unreadable");
  RequireSame("the number of unreadable log lines", aSummary.lUnread, 0);
  RequireSame("the number of log lines", std::ssize(aHistory.Lines()), lLines);

  std::map<std::string, SiteStory> aStories;
  for (const auto* const pLine : Merged())
    if (!pLine->szSite.empty()) aStories[pLine->szSite].Count(*pLine);
  RequireSame("the number of sites in the log", std::ssize(aSummary.aSites), std::ssize(aStories));
  for (const auto& aSite : aSummary.aSites) {
    SiteStory aTold{aSite.lChecks, aSite.lSuccesses, {}};
    for (const auto* pRuns : {&aSite.aOutages, &aSite.aHiccups})
      for (const auto& aRun : *pRuns) {
        const auto lFailed = static_cast<std::int64_t>(aRun.MailsFailed());
        aTold.aRuns.push_back({aRun.lFailures, std::ssize(aRun.aMails) - lFailed, lFailed, aRun.bDown,
                               aRun.iEnd == OutageEnd::Recovered});
      }
    const auto& aMust = aStories[Text::LowerCase(aSite.szSite)];
    RequireSame("what the log tells of " + aSite.szSite, aTold.Told(), aMust.Told());
    Tallies()["outages compared"] += std::ssize(aMust.aRuns);
  }
}

}  // namespace Simulated
