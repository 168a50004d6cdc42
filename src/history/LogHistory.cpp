#include "history/LogHistory.h"

#include <algorithm>
#include <functional>
#include <queue>

#include "base/Text.h"
#include "history/LogPeriod.h"
#include "log/LogGrammar.h"
#include "platform/Files.h"

namespace {

constexpr char Lower(char chByte) {
  return chByte >= 'A' && chByte <= 'Z' ? static_cast<char>(chByte + ('a' - 'A')) : chByte;
}

// A check that starts days away from its pass carries a forged or damaged time.
constexpr double dFurthestFromPass = 7;  // days

}  // namespace

std::size_t LogHistory::NoCaseHash::operator()(std::string_view szText) const {
  std::uint64_t lHash = 14695981039346656037U;  // FNV-1a
  for (const char chByte : szText)
    lHash = (lHash ^ static_cast<unsigned char>(Lower(chByte))) * 1099511628211U;
  return static_cast<std::size_t>(lHash);
}

bool LogHistory::NoCaseEqual::operator()(std::string_view szLeft, std::string_view szRight) const {
  return szLeft == szRight ||
         std::equal(szLeft.begin(), szLeft.end(), szRight.begin(), szRight.end(),
                    [](char chLeft, char chRight) { return Lower(chLeft) == Lower(chRight); });
}

bool LogHistory::Open(const std::vector<std::string>& aPaths) {
  aFiles.clear();
  aProblems.clear();
  aSites.clear();
  aSiteNumbers.clear();
  for (const auto& szPath : aPaths) {
    if (!Files::FolderExists(szPath)) {
      AddFile(szPath);
      continue;
    }
    auto aNames = Files::List(szPath, LogGrammar::szFileEnding);
    std::sort(aNames.begin(), aNames.end());
    auto szFolder = szPath;
    if (!szFolder.ends_with(Files::chSeparator)) szFolder += Files::chSeparator;
    for (auto& szName : aNames)
      AddFile(szName.insert(0, szFolder));
  }
  DropCopies();
  for (auto& aFile : aFiles)
    GroupNewLines(aFile);
  PutInOrder();
  return !aFiles.empty();
}

void LogHistory::Add(const std::string& szName, std::string_view szBytes) {
  LogFile aFile;
  aFile.pReader = std::make_unique<LogReader>(szName, szBytes);
  aFiles.push_back(std::move(aFile));
  GroupNewLines(aFiles.back());
  PutInOrder();
}

void LogHistory::AddFile(const std::string& szPath) {
  for (const auto& aFile : aFiles)
    if (aFile.pReader->Path() == szPath) return;
  LogFile aFile;
  aFile.pReader = std::make_unique<LogReader>(szPath);
  const auto iChange = aFile.pReader->Update();
  if (iChange == LogReader::Change::Unreadable || iChange == LogReader::Change::TooLarge)
    aProblems.push_back({szPath, iChange});
  else
    aFiles.push_back(std::move(aFile));
}

void LogHistory::DropCopies() {
  for (std::size_t lFile = 0; lFile < aFiles.size(); ++lFile)
    std::erase_if(aFiles, [pKept = aFiles[lFile].pReader.get()](const LogFile& aOther) {
      return aOther.pReader.get() != pKept && aOther.pReader->SameAs(*pKept);
    });
}

bool LogHistory::Update() {
  bool bChanged = false;
  for (auto& aFile : aFiles) {
    const auto iChange = aFile.pReader->Update();
    if (iChange == LogReader::Change::Replaced) {
      aFile.aPasses.clear();
      aFile.aSiteOf.clear();
      aFile.aProgress = {};
      aFile.bHeldBack = false;
    }
    if (iChange != LogReader::Change::Grown && iChange != LogReader::Change::Replaced) continue;
    GroupNewLines(aFile);
    bChanged = true;
  }
  if (bChanged) PutInOrder();
  return bChanged;
}

void LogHistory::Keep(const LogPeriod& aPeriod) {
  std::erase_if(aOrder, [&](PassRef aRef) { return !aPeriod.Holds(Pass(aRef).dtStart); });
  std::erase_if(aRows, [&](LineRef aRef) {
    return !aPeriod.Holds(Pass({aRef.lFile, Line(aRef).lPass}).dtStart);
  });
}

// An unfinished last line is grouped like any other, but so that this can be undone when the line grows.
void LogHistory::GroupNewLines(LogFile& aFile) {
  auto& aProgress = aFile.aProgress;
  if (aFile.bHeldBack) {
    aProgress = aFile.aBeforeUnfinished;
    aFile.aPasses.resize(aProgress.lPasses);
    if (aProgress.lPasses > 0) aFile.aPasses.back() = aProgress.aLast;
  }
  const auto lAll = aFile.pReader->Lines().size();
  aFile.bHeldBack = aFile.pReader->Unfinished();
  for (; aProgress.lLines < lAll; ++aProgress.lLines) {
    if (aFile.bHeldBack && aProgress.lLines + 1 == lAll) {
      aFile.aBeforeUnfinished = aProgress;
      aFile.aBeforeUnfinished.lPasses = aFile.aPasses.size();
      if (!aFile.aPasses.empty()) aFile.aBeforeUnfinished.aLast = aFile.aPasses.back();
    }
    GroupLine(aFile, static_cast<std::uint32_t>(aProgress.lLines));
  }
}

void LogHistory::GroupLine(LogFile& aFile, std::uint32_t lLine) {
  auto& aLine = aFile.pReader->Lines()[lLine];
  const bool bStart = aLine.iKind == LineKind::StartManual || aLine.iKind == LineKind::StartAuto;
  // A start line that cannot be read ends the pass before it all the same.
  if (bStart || LooksLikeStart(aFile.pReader->Own(aLine))) aFile.aProgress.bOpen = false;
  auto& aPass = PassFor(aFile, lLine);
  aLine.lPass = static_cast<std::uint32_t>(aFile.aPasses.size() - 1);
  aPass.lPast = lLine + 1;
  if (bStart) {
    aPass.bStarted = true;
    aPass.bManual = aLine.iKind == LineKind::StartManual;
    if (aLine.bTimeKnown) aPass.dtStart = aPass.dtLast = aFile.aProgress.dtRunning = aLine.dtMoment;
  } else if (aLine.iKind == LineKind::End) {
    aPass.bEnded = true;
    aFile.aProgress.bOpen = false;
  } else if (aLine.iKind == LineKind::Entry) {
    CountEntry(aFile, aLine);
  } else {
    ++aPass.lUnread;
  }
}

LogPass& LogHistory::PassFor(LogFile& aFile, std::uint32_t lLine) {
  if (!aFile.aProgress.bOpen) {
    aFile.aPasses.emplace_back();
    aFile.aPasses.back().lFirst = lLine;
    aFile.aProgress.bOpen = true;
  }
  return aFile.aPasses.back();
}

void LogHistory::CountEntry(LogFile& aFile, LogLine& aLine) {
  auto& aPass = aFile.aPasses.back();
  ++aPass.lEntries;
  aLine.lSite = SiteOf(aFile, aLine);
  if (aLine.iOutcome == Outcome::None && !aFile.pReader->Fields(aLine).Comment.empty()) aPass.bStopped = true;
  const bool bBelievable =
      aLine.bTimeKnown && (aPass.dtStart == 0 || (aLine.dtMoment - aPass.dtStart < dFurthestFromPass &&
                                                  aPass.dtStart - aLine.dtMoment < dFurthestFromPass));
  if (!bBelievable) {
    aLine.bTimeKnown = false;
    aLine.dtMoment = aFile.aProgress.dtRunning;
    return;
  }
  if (aPass.dtStart == 0) aPass.dtStart = aLine.dtMoment;
  aFile.aProgress.dtRunning = aLine.dtMoment;
  aPass.dtLast = std::max(aPass.dtLast, AddSeconds(aLine.dtMoment, aLine.iSeconds));
}

std::uint32_t LogHistory::SiteOf(LogFile& aFile, const LogLine& aLine) {
  auto& aSiteOf = aFile.aSiteOf;
  if (aLine.lShared >= aSiteOf.size()) aSiteOf.resize(aLine.lShared + 1, lNoSite);
  auto& lSite = aSiteOf[aLine.lShared];
  if (lSite == lNoSite) lSite = SiteNumber(SiteOfAddress(aFile.pReader->Fields(aLine).Address));
  return lSite;
}

std::uint32_t LogHistory::SiteNumber(std::string_view szSite) {
  const auto aFound = aSiteNumbers.find(szSite);
  if (aFound != aSiteNumbers.end()) return aFound->second;
  const auto lNumber = static_cast<std::uint32_t>(aSites.size());
  aSites.emplace_back(szSite);
  aSiteNumbers.emplace(szSite, lNumber);
  return lNumber;
}

// Merges the files by the times of their passes. A time that runs back within a file counts as the latest one
// before it.
void LogHistory::PutInOrder() {
  struct Next {
    DateTime dtKey;
    PassRef aRef;
    bool operator>(const Next& aOther) const {
      return dtKey != aOther.dtKey ? dtKey > aOther.dtKey : aRef.lFile > aOther.aRef.lFile;
    }
  };
  std::priority_queue<Next, std::vector<Next>, std::greater<>> aNext;
  const auto Offer = [&](DateTime dtKey, PassRef aRef) {
    const auto& aPasses = aFiles[aRef.lFile].aPasses;
    if (aRef.lPass < aPasses.size()) aNext.push({std::max(dtKey, aPasses[aRef.lPass].dtStart), aRef});
  };
  aOrder.clear();
  aRows.clear();
  std::size_t lAll = 0;
  for (std::uint32_t lFile = 0; lFile < aFiles.size(); ++lFile) {
    Offer(0, {lFile, 0});
    lAll += aFiles[lFile].pReader->Lines().size();
  }
  aRows.reserve(lAll);
  while (!aNext.empty()) {
    const auto aTop = aNext.top();
    aNext.pop();
    aOrder.push_back(aTop.aRef);
    const auto& aPass = Pass(aTop.aRef);
    for (auto lLine = aPass.lFirst; lLine < aPass.lPast; ++lLine)
      aRows.push_back({aTop.aRef.lFile, lLine});
    Offer(aTop.dtKey, {aTop.aRef.lFile, aTop.aRef.lPass + 1});
  }
}
