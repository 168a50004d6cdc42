#include "history/LogCsv.h"

#include <algorithm>

#include "base/Text.h"
#include "base/Utf8.h"
#include "history/LogWords.h"
#include "platform/Files.h"

namespace {

// A number or a fixed word of ours needs no quotes.
void AddCell(std::string& szTable, std::string_view szText, char chAfter = ',') {
  szTable += szText;
  szTable += chAfter;
}

void AddTime(std::string& szTable, DateTime dtMoment, bool bKnown) {
  AddCell(szTable, bKnown ? LogWords::MomentForSorting(dtMoment) : std::string());
}

class Table {
 public:
  explicit Table(const LogHistory& aTheHistory);
  void AddLine(LogHistory::LineRef aRef);

  std::string szText = LoadResString(IDS_CSV_HEAD) + "\r\n";

 private:
  const LogHistory& aHistory;
  const std::string szAuto = LoadResString(IDS_CSV_AUTO);
  const std::string szManual = LoadResString(IDS_CSV_MANUAL);
  std::vector<std::string> aOutcomes, aSites;
};

Table::Table(const LogHistory& aTheHistory) : aHistory(aTheHistory) {
  for (auto lOutcome = 0; lOutcome <= static_cast<int>(Outcome::Unread); ++lOutcome)
    aOutcomes.push_back(LoadResString(LogWords::OutcomeName(static_cast<Outcome>(lOutcome))));
  for (const auto& szSite : aHistory.Sites())
    aSites.push_back(LogCsv::Cell(Utf8::Clean(szSite)));
}

void Table::AddLine(LogHistory::LineRef aRef) {
  const auto& aLine = aHistory.Line(aRef);
  if (aLine.iKind != LineKind::Entry && aLine.iKind != LineKind::Unread) return;
  const auto& aPass = aHistory.Pass({aRef.lFile, aLine.lPass});
  const auto& szOutcome = aOutcomes[static_cast<std::size_t>(aLine.iOutcome)];
  AddTime(szText, aPass.dtStart, aPass.bStarted && aPass.dtStart > 0);
  AddCell(szText, !aPass.bStarted ? "" : aPass.bManual ? szManual : szAuto);
  if (aLine.iKind == LineKind::Unread) {
    szText += ",,," + szOutcome + "," + LogCsv::Cell(Utf8::Clean(aHistory.Text(aRef))) + ",,,\r\n";
    return;
  }
  const auto aFields = aHistory.Fields(aRef);
  AddTime(szText, aLine.dtMoment, aLine.bTimeKnown);
  AddCell(szText, aSites[aLine.lSite]);
  AddCell(szText, LogCsv::Cell(LogWords::PlainField(aFields.Address)));
  AddCell(szText, szOutcome);
  AddCell(szText, LogCsv::Cell(LogWords::PlainField(LogWords::Answer(aFields.StatusText))));
  AddCell(szText, aFields.Elapsed);
  AddCell(szText, LogCsv::Cell(LogWords::PlainField(aFields.Comment)));
  AddCell(szText, aFields.ResultClass, '\r');
  szText += '\n';
}

}  // namespace

std::string LogCsv::Cell(std::string_view szText) {
  constexpr std::string_view szFormula = "=+-@\t\r";
  const bool bFormula = !szText.empty() && szFormula.find(szText.front()) != std::string_view::npos;
  std::string szSafe = (bFormula ? "'" : "") + std::string(szText);
  if (szSafe.find_first_of(",\"\r\n") == std::string::npos) return szSafe;
  return '"' + Text::Replace(szSafe, "\"", "\"\"") + '"';
}

std::string LogCsv::Compose(const LogHistory& aHistory) {
  Table aTable(aHistory);
  for (const auto aRef : aHistory.Lines())
    aTable.AddLine(aRef);
  const bool bAscii = std::all_of(aTable.szText.begin(), aTable.szText.end(),
                                  [](char chByte) { return static_cast<unsigned char>(chByte) < 0x80; });
  if (!bAscii) aTable.szText.insert(0, "\xEF\xBB\xBF");
  return std::move(aTable.szText);
}

bool LogCsv::Write(const std::string& szPath, const LogHistory& aHistory) {
  return Files::WriteWhole(szPath, Compose(aHistory));
}
