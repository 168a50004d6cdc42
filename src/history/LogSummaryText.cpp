#include "history/LogSummaryText.h"

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogFacts.h"
#include "history/LogTextTable.h"
#include "history/LogWords.h"

namespace {

// Names in a column of their own; a second line of a fact stands below its first.
std::string Facts(const LogSummary& aSummary, std::size_t lColumns) {
  std::string szOut;
  const auto aFacts = LogFacts::Of(aSummary);
  std::size_t lNames = 0;
  for (const auto& aFact : aFacts)
    lNames = std::max(lNames, Utf8::Width(LoadResString(aFact.iName)));
  for (const auto& aFact : aFacts) {
    auto szName = LoadResString(aFact.iName) + ":";
    for (const auto& szLine : aFact.aLines) {
      szName.resize(szName.size() + lNames + 2 - Utf8::Width(szName), ' ');
      szOut += LogTextTable::Lines(szName + szLine, lColumns, lNames + 2);
      szName.clear();
    }
  }
  return szOut;
}

}  // namespace

std::string LogSummaryText::Sites(const LogSummary& aSummary, std::size_t lColumns) {
  if (aSummary.aSites.empty()) return {};
  using enum LogTables::SiteColumn;
  // What is at the end of the second list is the last to go.
  std::vector<LogTables::SiteColumn> aColumns,
      aSpareColumns{Checks, UpMonth, UpWeek, Longest, Hiccups, UpDay, Share};
  for (const auto iColumn : LogTables::SiteColumns(aSummary))
    if (iColumn != Since) aColumns.push_back(iColumn);
  std::vector<std::size_t> aSpare;
  for (const auto iColumn : aSpareColumns)
    if (const auto aAt = std::ranges::find(aColumns, iColumn); aAt != aColumns.end())
      aSpare.push_back(static_cast<std::size_t>(aAt - aColumns.begin()));
  std::vector<LogTextTable::Row> aRows(1);
  for (const auto iColumn : aColumns)
    aRows.front().push_back(LoadResString(LogTables::Title(iColumn)));
  for (const auto lSite : LogWords::ByInterest(aSummary)) {
    aRows.emplace_back();
    for (const auto iColumn : aColumns)
      aRows.back().push_back(LogTables::Cell(aSummary.aSites[lSite], iColumn));
  }
  return LogTextTable::Fit(aRows, aSpare, 2, lColumns);
}

std::string LogSummaryText::Outages(const LogSummary& aSummary, LogTables::Runs iWanted,
                                    std::size_t lColumns) {
  const auto aOutages = LogTables::Outages(aSummary, iWanted);
  if (aOutages.empty()) return {};
  constexpr std::size_t lAnswer = static_cast<std::size_t>(LogTables::OutageColumn::Answer);
  constexpr std::size_t lMostAnswer = 40;
  std::vector<LogTextTable::Row> aRows(1);
  for (std::size_t i = 0; i < LogTables::lOutageColumns; ++i)
    aRows.front().push_back(LoadResString(LogTables::Title(static_cast<LogTables::OutageColumn>(i))));
  for (const auto& aOutage : aOutages) {
    aRows.emplace_back();
    for (std::size_t i = 0; i < LogTables::lOutageColumns; ++i)
      aRows.back().push_back(LogTables::Cell(aOutage, static_cast<LogTables::OutageColumn>(i)));
    aRows.back()[lAnswer] = Utf8::ShortenMiddle(LogWords::PlainField(aRows.back()[lAnswer]), lMostAnswer);
  }
  return LogTextTable::Fit(aRows, {lAnswer, static_cast<std::size_t>(LogTables::OutageColumn::To)},
                           LogTables::lOutageColumns, lColumns);
}

std::string LogSummaryText::Compose(const LogSummary& aSummary, DateTime dtNow, std::size_t lColumns) {
  auto szOut = LogTextTable::Lines(LogWords::Headline(aSummary, dtNow), lColumns);
  for (const auto& szSentence : LogWords::Lead(aSummary, dtNow))
    szOut += LogTextTable::Lines(szSentence, lColumns);
  szOut += "\n" + Facts(aSummary, lColumns);
  for (const auto& szTable :
       {Sites(aSummary, lColumns), Outages(aSummary, LogTables::Runs::Outages, lColumns)})
    if (!szTable.empty()) szOut += "\n" + szTable;
  return szOut;
}
