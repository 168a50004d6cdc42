#include "history/LogTextTable.h"

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogWords.h"

namespace {

using LogTextTable::Row;

// Columns as wide as their widest cell, those from lNumbers on to the right.
std::string Table(const std::vector<Row>& aRows, std::size_t lNumbers) {
  std::vector<std::size_t> aWidths(aRows.front().size());
  for (const auto& aRow : aRows)
    for (std::size_t lCell = 0; lCell < aRow.size(); ++lCell)
      aWidths[lCell] = std::max(aWidths[lCell], Utf8::Width(aRow[lCell]));
  std::string szOut;
  for (const auto& aRow : aRows) {
    std::string szLine;
    for (std::size_t lCell = 0; lCell < aRow.size(); ++lCell) {
      const std::string szFill(aWidths[lCell] - Utf8::Width(aRow[lCell]), ' ');
      szLine += (lCell > 0 ? "  " : "") + (lCell < lNumbers ? aRow[lCell] + szFill : szFill + aRow[lCell]);
    }
    szLine.resize(szLine.find_last_not_of(' ') + 1);
    szOut += szLine + "\n";
  }
  return szOut;
}

constexpr std::size_t lWidestName = 60, lNarrowestName = 20;

}  // namespace

std::string LogTextTable::Fit(const std::vector<Row>& aWhole, std::vector<std::size_t> aSpare,
                              std::size_t lNumbers, std::size_t lColumns) {
  auto aRows = aWhole;
  for (std::size_t lName = lWidestName;; lName = std::max(lNarrowestName, lName - 4)) {
    for (std::size_t lRow = 1; lRow < aRows.size(); ++lRow)
      aRows[lRow][0] = Utf8::ShortenMiddle(LogWords::PlainField(aWhole[lRow][0]), lName);
    auto szTable = Table(aRows, lNumbers);
    const bool bFits = lColumns == 0 || Utf8::Width(szTable.substr(0, szTable.find('\n'))) <= lColumns;
    if (bFits || (lName == lNarrowestName && aSpare.empty())) return szTable;
    if (lName > lNarrowestName) continue;
    for (auto& aRow : aRows)
      aRow.erase(aRow.begin() + static_cast<std::ptrdiff_t>(aSpare.front()));
    if (aSpare.front() < lNumbers) --lNumbers;
    const auto lGone = aSpare.front();
    aSpare.erase(aSpare.begin());
    for (auto& lSpare : aSpare)
      if (lSpare > lGone) --lSpare;
    lName = lWidestName + 4;
  }
}
