#include "history/LogGrid.h"

#include <algorithm>

#include "history/LogCsv.h"
#include "history/LogTextTable.h"
#include "history/LogWords.h"

bool LogGrid::Before(std::size_t lLeft, std::size_t lRight, std::size_t lColumn) const {
  if (!Columns()[lColumn].bNumber && lColumn > 0) return Cell(lLeft, lColumn) < Cell(lRight, lColumn);
  if (lColumn == 0 && OfSites()) return Cell(lLeft, lColumn) < Cell(lRight, lColumn);
  return Key(lLeft, lColumn) < Key(lRight, lColumn);
}

std::string LogGrid::Text(std::size_t lColumns) const {
  if (Rows() == 0) return {};
  const auto& aColumns = Columns();
  std::vector<LogTextTable::Row> aRows(Rows() + 1);
  std::vector<std::size_t> aSpare;
  for (std::size_t lColumn = 0; lColumn < aColumns.size(); ++lColumn) {
    aRows[0].push_back(LoadResString(aColumns[lColumn].iTitle));
    if (aColumns[lColumn].lSpare > 0) aSpare.push_back(lColumn);
    for (std::size_t lRow = 0; lRow < Rows(); ++lRow)
      aRows[lRow + 1].push_back(LogWords::PlainField(Cell(lRow, lColumn)));
  }
  std::ranges::sort(aSpare, {}, [&](std::size_t lColumn) { return aColumns[lColumn].lSpare; });
  const auto lNumbers = std::ranges::find(aColumns, true, &Column::bNumber) - aColumns.begin();
  return LogTextTable::Fit(aRows, aSpare, static_cast<std::size_t>(lNumbers), lColumns);
}

std::string LogGrid::Csv() const {
  std::string szTable;
  const auto AddLine = [&](const auto& TextOf) {
    for (std::size_t lColumn = 0; lColumn < Columns().size(); ++lColumn)
      szTable += (lColumn > 0 ? "," : "") + LogCsv::Cell(TextOf(lColumn));
    szTable += "\r\n";
  };
  AddLine([&](std::size_t lColumn) { return std::string(LoadResString(Columns()[lColumn].iTitle)); });
  for (std::size_t lRow = 0; lRow < Rows(); ++lRow)
    AddLine([&](std::size_t lColumn) { return LogWords::PlainField(Cell(lRow, lColumn)); });
  return szTable;
}
