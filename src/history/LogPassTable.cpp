#include "history/LogPassTable.h"

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogDurations.h"
#include "history/LogWords.h"

namespace {

using LogWords::Count;
using LogWords::Length;

enum { iBegan, iKind, iWaited, iLength, iLate, iSites, iFailed, iMails };

const std::vector<LogGrid::Column> aPassColumns = {{IDS_LOG_COL_BEGAN, "Wed Dec 30 2000, 12:00:00 PM"},
                                                   {IDS_LOG_COL_KIND, "On schedule", false, 0, 3},
                                                   {IDS_LOG_COL_WAITED, nullptr, false, 1, 5},
                                                   {IDS_LOG_COL_LENGTH, "10 min 59 s or more", true},
                                                   {IDS_LOG_COL_LATE, "10 min 59 s", true, 0, 4},
                                                   {IDS_LOG_COL_SITES, "1,000", true, 0, 1},
                                                   {IDS_LOG_COL_FAILED, "1,000", true},
                                                   {IDS_LOG_COL_MAILS, "10, 10 not sent", true, 0, 2}};

constexpr std::size_t lNameBytes = 200;
constexpr std::int64_t lWorthNaming = 2;  // seconds

std::string LengthOf(const PassFigures& aFacts) {
  const auto szLength = Length(aFacts.lSeconds);
  // A check that was answered well is commonly over within a minute; one that failed took the time-out, and
  // the mail server's time.
  return aFacts.bExact || !aFacts.bLastFailed ? szLength : FillResString(IDS_LOG_LENGTH_LEAST, {szLength});
}

std::string StartOf(const PassFigures& aFacts) {
  return LogWords::MomentToSecond(aFacts.dtStart);
}

std::string MailsOf(const PassFigures& aFacts) {
  if (aFacts.lMailsFailed > 0)
    return FillResString(IDS_LOG_MAILS_NOT_SENT, {Count(aFacts.lMailsSent), Count(aFacts.lMailsFailed)});
  return aFacts.lMailsSent > 0 ? Count(aFacts.lMailsSent) : "-";
}

}  // namespace

LogPassTable::LogPassTable(const LogHistory& aHistory)
    : aReport(LogPasses::Of(aHistory)), aSites(aHistory.Sites()) {
  if (!aReport.lLongest) {
    aWords.push_back(LoadResString(IDS_LOG_PASSES_NONE));
    return;
  }
  aWords.push_back(Budget(aReport));
  if (const auto szWaited = LongestWaited(aHistory, aReport); !szWaited.empty()) aWords.push_back(szWaited);
  aWords.push_back(Late());
  if (aReport.lWorst > 0) aWords.push_back(Worst());
  if (aReport.lUncertain > 0)
    aWords.push_back(FillResString(IDS_LOG_MINUTES_UNKNOWN, {Count(aReport.lUncertain)}));
}

const std::vector<LogGrid::Column>& LogPassTable::Columns() const {
  return aPassColumns;
}

std::string LogPassTable::Waited(const PassFigures& aFacts) const {
  if (aFacts.lLongest < lWorthNaming) return "-";
  const auto& szSite = aSites[aFacts.lLongestSite];
  return FillResString(aFacts.bLongestMailed ? IDS_LOG_WAITED_MAIL : IDS_LOG_WAITED,
                       {Utf8::Shorten(szSite, lNameBytes), Length(aFacts.lLongest)});
}

std::string LogPassTable::Cell(std::size_t lRow, std::size_t lColumn) const {
  const auto& aFacts = Facts(lRow);
  switch (lColumn) {
    case iBegan:
      return StartOf(aFacts);
    case iKind:
      return LoadResString(!aFacts.bStarted ? IDS_LOG_KIND_UNKNOWN
                           : aFacts.bManual ? IDS_LOG_KIND_MANUAL
                                            : IDS_LOG_KIND_AUTO);
    case iWaited:
      return Waited(aFacts);
    case iLength:
      return LengthOf(aFacts);
    case iLate:
      return aFacts.lLate > 0 ? Length(aFacts.lLate) : "-";
    case iSites:
      return Count(aFacts.lChecks);
    case iFailed:
      return aFacts.lFailures > 0 ? Count(aFacts.lFailures) : "-";
    default:
      return MailsOf(aFacts);
  }
}

double LogPassTable::Key(std::size_t lRow, std::size_t lColumn) const {
  const auto& aFacts = Facts(lRow);
  switch (lColumn) {
    case iBegan:
      return aFacts.dtStart;
    case iLength:
      return static_cast<double>(aFacts.lSeconds);
    case iLate:
      return static_cast<double>(aFacts.lLate);
    case iSites:
      return aFacts.lChecks;
    case iFailed:
      return aFacts.lFailures;
    default:
      return aFacts.lMailsSent + aFacts.lMailsFailed;
  }
}

bool LogPassTable::Special(std::size_t lRow) const {
  return Facts(lRow).lLate > 0 || aReport.lLongest == PlaceOf(lRow);
}

std::string LogPassTable::Budget(const PassReport& aReport) {
  if (!aReport.lLongest) return {};
  const auto& aLongest = aReport.aPasses[*aReport.lLongest];
  const auto szLongest = LengthOf(aLongest);
  auto szWords = FillResString(IDS_LOG_BUDGET, {Length(aReport.lUsual), szLongest, StartOf(aLongest)});
  if (aLongest.lMailSeconds > 0)
    szWords += FillResString(IDS_LOG_BUDGET_MAIL, {Length(aLongest.lMailSeconds)});
  if (aReport.lInterval == 0) return szWords + LoadResString(IDS_LOG_BUDGET_NO_INTERVAL);
  const bool bRoom = aLongest.lSeconds * 2 <= aReport.lInterval;
  return szWords + FillResString(bRoom                                   ? IDS_LOG_BUDGET_ROOM
                                 : aLongest.lSeconds < aReport.lInterval ? IDS_LOG_BUDGET_TIGHT
                                                                         : IDS_LOG_BUDGET_NO_ROOM,
                                 {Length(aReport.lInterval)});
}

std::string LogPassTable::Worst() const {
  const auto szWords = FillResString(IDS_LOG_BUDGET_WORST, {Length(aReport.lWorst)});
  if (aReport.lInterval == 0) return szWords + ".";
  return szWords + LoadResString(aReport.lWorst <= aReport.lInterval ? IDS_LOG_BUDGET_WORST_FITS
                                                                     : IDS_LOG_BUDGET_WORST_NOT);
}

std::string LogPassTable::Late() const {
  if (!aReport.lLatest) return LoadResString(IDS_LOG_LATE_NONE);
  const auto& aLatest = aReport.aPasses[*aReport.lLatest];
  const auto szBy = Length(aLatest.lLate), szAt = StartOf(aLatest);
  return aReport.lLate == 1 ? FillResString(IDS_LOG_LATE_ONE, {"1", szBy, szAt})
                            : FillResString(IDS_LOG_LATE, {Count(aReport.lLate), szBy, szAt});
}

// The three checks that took longest, of those that took long at all.
std::string LogPassTable::LongestWaited(const LogHistory& aHistory, const PassReport& aReport) {
  constexpr std::size_t lMostNamed = 3;
  constexpr std::int64_t lLong = 5;  // seconds
  std::vector<CheckDuration> aChecks;
  LogDurations::Of(aHistory, aReport.aPasses[*aReport.lLongest].lPass, aChecks);
  std::ranges::stable_sort(aChecks, std::ranges::greater(), &CheckDuration::lSeconds);
  std::string szAll;
  for (std::size_t i = 0; i < std::min(aChecks.size(), lMostNamed) && aChecks[i].lSeconds >= lLong; ++i) {
    const auto& szSite = aHistory.Sites()[aHistory.Line(aChecks[i].aRef).lSite];
    szAll += (i > 0 ? ", " : "") +
             FillResString(IDS_LOG_WAITED,
                           {Utf8::Clean(Utf8::Shorten(szSite, lNameBytes)), Length(aChecks[i].lSeconds)});
  }
  return szAll.empty() ? szAll : FillResString(IDS_LOG_LONGEST_WAITED, {szAll});
}
