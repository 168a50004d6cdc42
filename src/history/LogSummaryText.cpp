#include "history/LogSummaryText.h"

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogWords.h"

namespace {

using LogWords::Count;
using LogWords::Length;
using LogWords::Moment;

// Characters, as far as a terminal shows one column for each.
std::size_t Width(std::string_view szText) {
  return static_cast<std::size_t>(std::count_if(szText.begin(), szText.end(), [](char chByte) {
    return (static_cast<unsigned char>(chByte) & 0xC0U) != 0x80;
  }));
}

void AddFact(std::string& szOut, StringId iName, const std::string& szValue) {
  szOut += LoadResString(iName) + szValue + "\n";
}

std::string Facts(const LogSummary& aSummary) {
  std::string szOut;
  if (aSummary.dtFrom > 0)
    AddFact(szOut, IDS_SUM_COVERED,
            FillResString(IDS_LOG_SPAN, {Moment(aSummary.dtFrom), Moment(aSummary.dtTo)}));
  AddFact(szOut, IDS_SUM_ROUNDS,
          FillResString(IDS_LOG_FACT_PASSES_VALUE, {Count(aSummary.lAutomatic + aSummary.lManual),
                                                    Count(aSummary.lAutomatic), Count(aSummary.lManual)}));
  AddFact(szOut, IDS_SUM_CHECKS, LogWords::Checks(aSummary));
  AddFact(
      szOut, IDS_SUM_MAILS,
      FillResString(IDS_LOG_FACT_MAILS_VALUE, {Count(aSummary.lMailsSent), Count(aSummary.lMailsFailed)}));
  if (aSummary.aGaps.empty() && aSummary.lEntries > 0)
    AddFact(szOut, IDS_SUM_NOT_WATCHED, LoadResString(IDS_SUM_NO_GAPS));
  for (const auto& szGap : LogWords::Gaps(aSummary))
    AddFact(szOut, IDS_SUM_NOT_WATCHED, szGap);
  if (aSummary.lEndless + aSummary.lStartless > 0)
    AddFact(szOut, IDS_SUM_BROKEN_OFF, LogWords::BrokenOff(aSummary));
  if (aSummary.lUnread > 0) AddFact(szOut, IDS_SUM_UNREAD, Count(aSummary.lUnread));
  return szOut;
}

using Row = std::vector<std::string>;

// Columns as wide as their widest cell; all but the first two to the right.
std::string Table(const std::vector<Row>& aRows) {
  std::vector<std::size_t> aWidths(aRows.front().size());
  for (const auto& aRow : aRows)
    for (std::size_t lCell = 0; lCell < aRow.size(); ++lCell)
      aWidths[lCell] = std::max(aWidths[lCell], Width(aRow[lCell]));
  std::string szOut;
  for (const auto& aRow : aRows) {
    std::string szLine;
    for (std::size_t lCell = 0; lCell < aRow.size(); ++lCell) {
      const std::string szFill(aWidths[lCell] - Width(aRow[lCell]), ' ');
      szLine += (lCell > 0 ? "  " : "") + (lCell < 2 ? aRow[lCell] + szFill : szFill + aRow[lCell]);
    }
    szOut += szLine + "\n";
  }
  return szOut;
}

std::string Sites(const LogSummary& aSummary) {
  constexpr std::size_t lLongestName = 60;  // bytes
  std::vector<Row> aRows{{LoadResString(IDS_LOG_COL_SITE), LoadResString(IDS_LOG_COL_NOW),
                          LoadResString(IDS_LOG_COL_CHECKS), LoadResString(IDS_LOG_COL_SHARE),
                          LoadResString(IDS_LOG_COL_OUTAGES), LoadResString(IDS_LOG_COL_LONGEST),
                          LoadResString(IDS_LOG_COL_DOWN_TIME)}};
  for (const auto lSite : LogWords::ByInterest(aSummary)) {
    const auto& aSite = aSummary.aSites[lSite];
    const auto* const pLongest = aSite.Longest();
    aRows.push_back({Utf8::Clean(Utf8::Shorten(aSite.szSite, lLongestName)), LogWords::State(aSite),
                     Count(aSite.lChecks), LogWords::Share(aSite.lSuccesses, aSite.lChecks),
                     Count(aSite.aOutages.size()), pLongest ? Length(pLongest->lSeconds) : "-",
                     pLongest ? Length(aSite.lDownSeconds) : "-"});
  }
  return Table(aRows);
}

}  // namespace

std::string LogSummaryText::Compose(const LogSummary& aSummary) {
  auto szOut = LogWords::Headline(aSummary) + "\n";
  for (const auto& szSentence : LogWords::Lead(aSummary))
    szOut += szSentence + "\n";
  szOut += "\n" + Facts(aSummary);
  if (!aSummary.aSites.empty()) szOut += "\n" + Sites(aSummary);
  return szOut;
}
