// LogPassTable: a report on passes as a table, the latest first, and in sentences.
#pragma once

#include <string>
#include <vector>

#include "history/LogGrid.h"
#include "history/LogPasses.h"

class LogPassTable : public LogGrid {
 public:
  // What it shows it keeps: the history may change.
  explicit LogPassTable(const LogHistory& aHistory);

  const std::vector<Column>& Columns() const override;
  std::size_t Rows() const override { return aReport.aPasses.size(); }
  std::string Cell(std::size_t lRow, std::size_t lColumn) const override;
  double Key(std::size_t lRow, std::size_t lColumn) const override;
  bool Special(std::size_t lRow) const override;
  bool OfSites() const override { return false; }

  // Whether passes fit into the interval, in one sentence; empty where no pass tells.
  static std::string Budget(const PassReport& aReport);

  const PassReport& Report() const { return aReport; }
  const PassFigures& Facts(std::size_t lRow) const { return aReport.aPasses[PlaceOf(lRow)]; }
  // Of the check that took longest.
  const std::string& LongestSite(std::size_t lRow) const { return aSites[Facts(lRow).lLongestSite]; }
  // Whether passes fit, which were late, what the longest waited for, and what cannot be told. Bytes as
  // logged.
  const std::vector<std::string>& Words() const { return aWords; }

 private:
  std::size_t PlaceOf(std::size_t lRow) const { return aReport.aPasses.size() - 1 - lRow; }
  std::string Waited(const PassFigures& aFacts) const;
  std::string Worst() const;
  std::string Late() const;
  static std::string LongestWaited(const LogHistory& aHistory, const PassReport& aReport);

  PassReport aReport;
  std::vector<std::string> aSites, aWords;
};
