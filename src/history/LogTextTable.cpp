#include "history/LogTextTable.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

#include "base/Utf8.h"
#include "history/LogWords.h"

namespace {

using LogTextTable::Row;

constexpr std::size_t lWidestName = 60, lNarrowestName = 20;
constexpr std::size_t lEasyWidth = 26;      // of a text broken into lines: a day and a time
constexpr std::size_t lNarrowestText = 10;  // what a text is broken down to where nothing else helps

// As wide as their widest cell.
std::vector<std::size_t> Widths(const std::vector<Row>& aRows) {
  std::vector<std::size_t> aWidths(aRows.front().size());
  for (const auto& aRow : aRows)
    for (std::size_t lCell = 0; lCell < aRow.size(); ++lCell)
      aWidths[lCell] = std::max(aWidths[lCell], Utf8::Width(aRow[lCell]));
  return aWidths;
}

std::size_t WidthOf(const std::vector<std::size_t>& aWidths) {
  return std::accumulate(aWidths.begin(), aWidths.end(), 2 * (aWidths.size() - 1));
}

// Takes what is too much from the texts behind the name, the widest first, down to lLeast.
void Narrow(std::vector<std::size_t>& aWidths, std::size_t lNumbers, std::size_t lColumns,
            std::size_t lLeast) {
  while (lColumns > 0 && lNumbers > 1 && WidthOf(aWidths) > lColumns) {
    const auto aPast = aWidths.begin() + static_cast<std::ptrdiff_t>(std::min(lNumbers, aWidths.size()));
    const auto aWidest = std::max_element(aWidths.begin() + 1, aPast);
    if (aWidest == aPast || *aWidest <= lLeast) return;
    --*aWidest;
  }
}

// Takes the next line of a text off its front: as many words as there is room for, one at least.
std::string_view NextLine(std::string_view& szRest, std::size_t lWidth) {
  auto lEnd = Utf8::First(szRest, lWidth).size();
  if (lEnd < szRest.size()) {
    const auto lBlank = szRest.rfind(' ', lEnd);
    lEnd = lBlank == szRest.npos || lBlank == 0 ? szRest.find(' ', 1) : lBlank;
  }
  const auto szLine = szRest.substr(0, lEnd);
  szRest.remove_prefix(std::min(szRest.size(), szLine.size() + 1));
  return szLine;
}

// The columns from lNumbers on to the right; a text that is wider than its column goes on below.
std::string Table(const std::vector<Row>& aRows, std::size_t lNumbers,
                  const std::vector<std::size_t>& aWidths) {
  std::string szOut;
  for (const auto& aRow : aRows) {
    std::vector<std::string_view> aRest(aRow.begin(), aRow.end());
    do {
      std::string szLine;
      for (std::size_t lCell = 0; lCell < aRest.size(); ++lCell) {
        const bool bText = lCell > 0 && lCell < lNumbers;
        const auto szCell = bText ? NextLine(aRest[lCell], aWidths[lCell]) : std::exchange(aRest[lCell], {});
        const auto lShown = Utf8::Width(szCell);
        const std::string szFill(aWidths[lCell] > lShown ? aWidths[lCell] - lShown : 0, ' ');
        if (lCell > 0) szLine += "  ";
        if (lCell < lNumbers)
          szLine.append(szCell).append(szFill);
        else
          szLine.append(szFill).append(szCell);
      }
      szLine.resize(szLine.find_last_not_of(' ') + 1);
      szOut += szLine + "\n";
    } while (!std::ranges::all_of(aRest, &std::string_view::empty));
  }
  return szOut;
}

}  // namespace

std::string LogTextTable::Fit(const std::vector<Row>& aWhole, std::vector<std::size_t> aSpare,
                              std::size_t lNumbers, std::size_t lColumns) {
  auto aRows = aWhole;
  for (std::size_t lName = lWidestName;; lName = std::max(lNarrowestName, lName - 4)) {
    for (std::size_t lRow = 1; lRow < aRows.size(); ++lRow)
      aRows[lRow][0] = Utf8::ShortenMiddle(LogWords::PlainField(aWhole[lRow][0]), lName);
    auto aWidths = Widths(aRows);
    Narrow(aWidths, lNumbers, lColumns, lEasyWidth);
    const bool bFits = lColumns == 0 || WidthOf(aWidths) <= lColumns;
    if (bFits || (lName == lNarrowestName && aSpare.empty())) {
      Narrow(aWidths, lNumbers, lColumns, lNarrowestText);
      return Table(aRows, lNumbers, aWidths);
    }
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

std::string LogTextTable::Lines(std::string_view szText, std::size_t lColumns, std::size_t lIndent) {
  if (lColumns == 0) return std::string(szText) + "\n";
  std::string szOut(NextLine(szText, lColumns));
  szOut += "\n";
  while (!szText.empty())
    szOut.append(lIndent, ' ')
        .append(NextLine(szText, std::max(lColumns, lIndent + 1) - lIndent))
        .append("\n");
  return szOut;
}
