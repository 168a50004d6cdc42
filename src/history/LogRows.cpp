#include "history/LogRows.h"

#include <algorithm>
#include <array>

#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "history/LogGaps.h"
#include "history/LogWords.h"

namespace {

constexpr std::size_t lMostCellBytes = 400;
constexpr std::size_t lWeekdayLetters = 3;
constexpr std::size_t lMostCounted = 20000;  // lines of a pass that are counted each time it is drawn

bool IsStart(const LogLine& aLine) {
  return aLine.iKind == LineKind::StartManual || aLine.iKind == LineKind::StartAuto;
}

std::string Plain(std::string_view szField) {
  return Utf8::Clean(LogWords::PlainField(Utf8::Shorten(szField, lMostCellBytes)));
}

std::string DayAndTime(DateTime dtMoment) {
  return dtMoment < 1 ? std::string() : FormatGeneral(dtMoment);
}

}  // namespace

void LogRows::Build(const LogHistory& aShown, const LogFilter& aFilter, bool bPasses) {
  pHistory = &aShown;
  aRefs.clear();
  aKinds.clear();
  aGapRows.clear();
  lEntries = 0;
  bSorted = false;
  aGaps = LogGaps::Find(aShown);
  const auto aLines = aFilter.Empty() ? std::vector<LogHistory::LineRef>() : aFilter.Apply(aShown);
  const auto& aUsed = aFilter.Empty() ? aShown.Lines() : aLines;
  aRefs.reserve(aUsed.size());
  aKinds.reserve(aUsed.size());
  // A list of failures, or of lines with a certain word, says nothing about the time between them.
  const bool bGaps = aFilter.lOutcomes == LogFilter::lEvery && aFilter.iRemark == LogFilter::Remark::Any &&
                     Text::IsBlank(aFilter.szWords);
  const auto& aPasses = aShown.Passes();
  std::size_t lPass = 0;
  bool bFirst = true;
  for (const auto aRef : aUsed) {
    const auto& aLine = aShown.Line(aRef);
    if (aLine.iKind == LineKind::End) continue;
    const auto lBefore = lPass;
    while (aPasses[lPass].lFile != aRef.lFile || aPasses[lPass].lPass != aLine.lPass)
      ++lPass;
    if (bFirst || lPass != lBefore) {
      if (bGaps && !bFirst) AddGaps(lBefore, lPass);
      if (bPasses) Add(aRef, Kind::Pass);
      bFirst = false;
    }
    if (!IsStart(aLine)) {
      Add(aRef, Kind::Line);
      ++lEntries;
    }
  }
}

namespace {

// What a column is sorted by: a number where it shows one, else its text as logged.
struct SortKey {
  double dNumber;
  std::string_view szText;
};

bool Before(const SortKey& aLeft, const SortKey& aRight) {
  if (aLeft.dNumber < aRight.dNumber || aRight.dNumber < aLeft.dNumber) return aLeft.dNumber < aRight.dNumber;
  return aLeft.szText < aRight.szText;
}

SortKey KeyOf(const LogHistory& aHistory, LogHistory::LineRef aRef, LogColumn iColumn) {
  const auto& aLine = aHistory.Line(aRef);
  if (iColumn == LogColumn::Time) return {aLine.dtMoment, {}};
  if (iColumn == LogColumn::Result) return {static_cast<double>(LogWords::Rank(StateOf(aLine.iOutcome))), {}};
  if (aLine.iKind != LineKind::Entry) return {-1, {}};
  const auto aFields = aHistory.Fields(aRef);
  switch (iColumn) {
    case LogColumn::Address:
      return {0, aFields.Address};
    case LogColumn::Answer:
      return {0, aFields.StatusText};
    case LogColumn::Seconds:
      return {static_cast<double>(aLine.iSeconds), {}};
    default:
      return {0, aFields.Comment};
  }
}

}  // namespace

void LogRows::SortBy(LogColumn iColumn, bool bDescending) {
  std::vector<std::pair<SortKey, LogHistory::LineRef>> aKeyed;
  aKeyed.reserve(lEntries);
  for (std::size_t lRow = 0; lRow < Count(); ++lRow) {
    if (aKinds[lRow] != Kind::Line) continue;
    aKeyed.emplace_back(KeyOf(*pHistory, aRefs[lRow], iColumn), aRefs[lRow]);
    // A line that could not be read has the time of the one before it.
    auto& dNumber = aKeyed.back().first.dNumber;
    if (iColumn == LogColumn::Time && dNumber < 1 && aKeyed.size() > 1)
      dNumber = (aKeyed.end() - 2)->first.dNumber;
  }
  std::ranges::stable_sort(aKeyed, [bDescending](const auto& aLeft, const auto& aRight) {
    return bDescending ? Before(aRight.first, aLeft.first) : Before(aLeft.first, aRight.first);
  });
  aRefs.clear();
  aGapRows.clear();
  for (const auto& aRow : aKeyed)
    aRefs.push_back(aRow.second);
  aKinds.assign(aRefs.size(), Kind::Line);
  bSorted = true;
}

void LogRows::Add(LogHistory::LineRef aRef, Kind iKind) {
  aRefs.push_back(aRef);
  aKinds.push_back(iKind);
}

void LogRows::AddGaps(std::size_t lFromPass, std::size_t lToPass) {
  for (auto lPass = lFromPass; lPass < lToPass; ++lPass) {
    if (aGaps[lPass].dtTo <= 0 || aRefs.empty()) continue;
    aGapRows.emplace_back(Count(), aGaps[lPass]);
    Add(aRefs.back(), Kind::Gap);
  }
}

const LogPass& LogRows::PassOf(LogHistory::LineRef aRef) const {
  return pHistory->Pass({aRef.lFile, pHistory->Line(aRef).lPass});
}

const StateInterval& LogRows::GapOf(std::size_t lRow) const {
  return std::lower_bound(aGapRows.begin(), aGapRows.end(), lRow,
                          [](const auto& aGap, std::size_t lWanted) { return aGap.first < lWanted; })
      ->second;
}

bool LogRows::IsLine(std::size_t lRow) const {
  return aKinds[lRow] == Kind::Line || (aKinds[lRow] == Kind::Pass && IsStart(pHistory->Line(aRefs[lRow])));
}

Outcome LogRows::OutcomeOf(std::size_t lRow) const {
  return aKinds[lRow] == Kind::Line ? pHistory->Line(aRefs[lRow]).iOutcome : Outcome::None;
}

std::string LogRows::Cell(std::size_t lRow, LogColumn iColumn) const {
  if (aKinds[lRow] == Kind::Pass) return PassCell(lRow, iColumn);
  if (aKinds[lRow] == Kind::Gap) {
    const auto& aGap = GapOf(lRow);
    if (iColumn == LogColumn::Time) return DayAndTime(aGap.dtFrom);
    if (iColumn != LogColumn::Address) return {};
    return FillResString(IDS_VIEW_GAP, {LogWords::Length(SecondsBetween(aGap.dtFrom, aGap.dtTo)),
                                        LogWords::Moment(aGap.dtTo)});
  }
  const auto& aLine = pHistory->Line(aRefs[lRow]);
  if (iColumn == LogColumn::Result) return LoadResString(LogWords::OutcomeName(aLine.iOutcome));
  if (aLine.iKind != LineKind::Entry)
    return iColumn == LogColumn::Address ? Plain(pHistory->Text(aRefs[lRow])) : std::string();
  const auto aFields = pHistory->Fields(aRefs[lRow]);
  switch (iColumn) {
    case LogColumn::Time:
      return Plain(aFields.CheckTime);
    case LogColumn::Address:
      return Plain(aFields.Address);
    case LogColumn::Answer:
      return Plain(LogWords::Answer(aFields.StatusText));
    case LogColumn::Seconds:
      return Plain(aFields.Elapsed);
    default:
      return Plain(aFields.Comment);
  }
}

std::string LogRows::PassCell(std::size_t lRow, LogColumn iColumn) const {
  const auto& aPass = PassOf(aRefs[lRow]);
  switch (iColumn) {
    case LogColumn::Time:
      return DayAndTime(aPass.dtStart);
    case LogColumn::Result:
      return aPass.dtStart < 1 ? LoadResString(IDS_LOG_PASS_UNKNOWN_TIME)
                               : LogWords::Day(aPass.dtStart).substr(0, lWeekdayLetters);
    case LogColumn::Address:
      return PassName(aPass);
    case LogColumn::Answer:
      return PassCount(lRow);
    case LogColumn::Remarks:
      return PassRemark(aPass);
    default:
      return {};
  }
}

std::string LogRows::PassName(const LogPass& aPass) const {
  if (!aPass.bStarted)
    return LoadResString(aPass.lEntries > 0 ? IDS_LOG_PASS_STARTLESS : IDS_LOG_PASS_OUTSIDE);
  return LoadResString(aPass.bManual ? IDS_VIEW_PASS_MANUAL : IDS_VIEW_PASS_AUTO);
}

// "2 Down, 4 Up", the worst first, of the rows shown below it.
std::string LogRows::PassCount(std::size_t lRow) const {
  std::array<std::uint32_t, 6> aCounts{};
  std::size_t lNext = lRow + 1;
  for (; lNext < Count() && aKinds[lNext] == Kind::Line && lNext - lRow <= lMostCounted; ++lNext)
    ++aCounts[static_cast<std::size_t>(OutcomeOf(lNext))];
  if (lNext - lRow > lMostCounted)
    return FillResString(IDS_VIEW_ENTRIES_MANY, {LogWords::Count(PassOf(aRefs[lRow]).lEntries)});
  std::string szParts;
  for (const auto iOutcome :
       {Outcome::Down, Outcome::Warning, Outcome::Up, Outcome::Disabled, Outcome::None, Outcome::Unread})
    if (const auto lCount = aCounts[static_cast<std::size_t>(iOutcome)]; lCount > 0)
      szParts += (szParts.empty() ? "" : ", ") +
                 FillResString(IDS_VIEW_PART,
                               {LogWords::Count(lCount), LoadResString(LogWords::OutcomeName(iOutcome))});
  return szParts;
}

std::string LogRows::PassRemark(const LogPass& aPass) const {
  if (aPass.bStopped) return LoadResString(IDS_LOG_PASS_STOPPED);
  // The last pass may still be running.
  const auto& aLast = pHistory->Passes().back();
  return aPass.bStarted && !aPass.bEnded && &aPass != &pHistory->Pass(aLast) ? LogWords::NoEnd(aPass)
                                                                             : std::string();
}

std::optional<std::size_t> LogRows::Find(std::optional<std::size_t> lFrom, std::string_view szWords,
                                         bool bForward) const {
  if (!pHistory) return {};
  std::optional<std::size_t> lFirstFound;
  for (;;) {
    const auto lFound = bForward ? LogFind::Next(*pHistory, aRefs, lFrom, szWords)
                                 : LogFind::Previous(*pHistory, aRefs, lFrom, szWords);
    if (!lFound || IsLine(*lFound)) return lFound;
    if (lFirstFound && *lFirstFound == *lFound) return {};
    if (!lFirstFound) lFirstFound = lFound;
    lFrom = lFound;
  }
}

std::optional<std::size_t> LogRows::FindFailure(std::optional<std::size_t> lFrom, bool bForward) const {
  const auto lCount = Count();
  auto lRow = lFrom.value_or(bForward ? lCount - 1 : 0);
  for (std::size_t lDone = 0; lDone < lCount; ++lDone) {
    lRow = (lRow + (bForward ? 1 : lCount - 1)) % lCount;
    if (IsFailure(OutcomeOf(lRow))) return lRow;
  }
  return {};
}

std::optional<std::size_t> LogRows::RowOf(LogHistory::LineRef aRef) const {
  std::optional<std::size_t> lNearest;
  for (std::size_t lRow = 0; lRow < Count(); ++lRow) {
    if (aRefs[lRow] == aRef && aKinds[lRow] != Kind::Gap) return lRow;
    if (!bSorted && aRefs[lRow].lFile == aRef.lFile && aRefs[lRow].lLine < aRef.lLine) lNearest = lRow;
  }
  return lNearest;
}

std::optional<std::size_t> LogRows::RowOf(const std::string& szSite, DateTime dtMoment, bool bFailure) const {
  std::optional<std::size_t> lFirst;
  DateTime dtFirst = 0;
  for (std::size_t lRow = 0; lRow < Count() && (bSorted || !lFirst); ++lRow) {
    const auto& aLine = pHistory->Line(aRefs[lRow]);
    const bool bWanted =
        bFailure ? IsFailure(OutcomeOf(lRow)) : aKinds[lRow] == Kind::Line && aLine.iKind == LineKind::Entry;
    if (!bWanted || SecondsBetween(dtMoment, aLine.dtMoment) < 0) continue;
    if ((!szSite.empty() && pHistory->Sites()[aLine.lSite] != szSite) ||
        (lFirst && aLine.dtMoment >= dtFirst))
      continue;
    lFirst = lRow;
    dtFirst = aLine.dtMoment;
  }
  return lFirst;
}

bool LogRows::Continues(const LogRows& aOlder) const {
  return aOlder.Count() <= Count() && std::equal(aOlder.aRefs.begin(), aOlder.aRefs.end(), aRefs.begin()) &&
         std::equal(aOlder.aKinds.begin(), aOlder.aKinds.end(), aKinds.begin());
}
