// LogPeriodTable: two periods compared as a table, what got worse most first, and in sentences.
#pragma once

#include <string>
#include <vector>

#include "history/LogCompare.h"
#include "history/LogGrid.h"

class LogPeriodTable : public LogGrid {
 public:
  explicit LogPeriodTable(PeriodComparison aTheComparison) : aComparison(std::move(aTheComparison)) {}

  const std::vector<Column>& Columns() const override;
  std::size_t Rows() const override { return aComparison.aSites.size(); }
  std::string Cell(std::size_t lRow, std::size_t lColumn) const override;
  double Key(std::size_t lRow, std::size_t lColumn) const override;
  bool Special(std::size_t lRow) const override { return aComparison.aSites[lRow].Worse() > 0; }

  const PeriodComparison& Comparison() const { return aComparison; }
  // Which periods, all sites together, who got worse and who better. Bytes as logged.
  std::vector<std::string> Words() const;

 private:
  PeriodComparison aComparison;
};
