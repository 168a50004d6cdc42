#include "fleet/PastTrails.h"

#include <algorithm>
#include <utility>

#include "history/LogFiles.h"
#include "history/LogGaps.h"
#include "history/LogHistory.h"
#include "log/LogGrammar.h"
#include "platform/Files.h"

namespace {

// Some dozens of passes over a full list, by which the usual distance between two is told.
constexpr std::uint64_t lPieceBytes = std::uint64_t{2} << 20U;

}  // namespace

PastTrails::PastTrails(const std::string& szFolder, std::int32_t lDays) {
  std::uint64_t lAll = 0;
  const auto aPaths = LogFiles::Recent(szFolder, lDays);
  for (const auto& szPath : aPaths) {
    aLogs.push_back({szPath, Files::FileSize(szPath).value_or(0)});
    lAll += aLogs.back().lBytes;
  }
  if (lAll > lPieceBytes) {
    // By the days in their names, whatever stretch of time the letter before says.
    std::ranges::stable_sort(aLogs, {}, [](const Log& a) { return LogFiles::NameOf(a.szPath).substr(1); });
    return;
  }
  LogHistory aHistory;
  if (aHistory.Open(aPaths)) TakeHistory(aHistory);
  bDone = true;
}

void PastTrails::TakeHistory(const LogHistory& aHistory) {
  Trails aNew;
  aNew.Take(Summarise(aHistory));
  aTrails.Append(aNew, dMostGap);
  dMostGap = static_cast<double>(LogGaps::LongestPauseAfter(aHistory)) / dSecondsPerDay;
}

void PastTrails::TakeBytes() {
  const Log& aLog = aLogs[lLog];
  const auto lMost = std::min(lPieceBytes - szText.size(), aLog.lBytes - lAt);
  const auto szBytes = Files::ReadPiece(aLog.szPath, lAt, lMost);
  lAt += szBytes ? szBytes->size() : 0;
  if (szBytes) szText += *szBytes;
  // A log that has gone or was cut meanwhile ends here.
  if (szBytes && !szBytes->empty() && lAt < aLog.lBytes) return;
  if (!szText.empty() && !szText.ends_with('\n')) szText += '\n';
  ++lLog;
  lAt = 0;
}

void PastTrails::ReadPiece() {
  if (bDone) return;
  while (lLog < aLogs.size() && szText.size() < lPieceBytes)
    TakeBytes();
  bDone = lLog == aLogs.size();
  std::string szRest;
  if (!bDone) {  // cut between two passes, else between two lines; a file without lines is no log
    const auto lStart = szText.rfind(std::string("\n").append(LogGrammar::szStart));
    const auto lCut = lStart != std::string::npos && lStart > 0 ? lStart : szText.rfind('\n');
    if (lCut != std::string::npos) szRest = szText.substr(lCut + 1);
    szText.resize(szText.size() - szRest.size());
  }
  LogHistory aHistory;
  aHistory.Add("", std::exchange(szText, std::move(szRest)));
  TakeHistory(aHistory);
}

Trails PastTrails::Take() {
  return std::move(aTrails);
}
