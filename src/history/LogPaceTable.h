// LogPaceTable: how long sites take as a table, the slowest first, and in sentences.
#pragma once

#include <string>
#include <vector>

#include "history/LogGrid.h"
#include "history/LogPace.h"

class LogPaceTable : public LogGrid {
 public:
  explicit LogPaceTable(PaceReport aTheReport) : aReport(std::move(aTheReport)) {}

  const std::vector<Column>& Columns() const override;
  std::size_t Rows() const override { return aReport.aSites.size(); }
  std::string Cell(std::size_t lRow, std::size_t lColumn) const override;
  double Key(std::size_t lRow, std::size_t lColumn) const override;
  bool Special(std::size_t lRow) const override { return aReport.aSites[lRow].iTrend == PaceTrend::Slower; }

  const PaceReport& Report() const { return aReport; }
  // The slowest, and which have become slower. Bytes as logged.
  std::vector<std::string> Words() const;
  // What a day of a site says; a day without a good answer too.
  static std::string DayWords(const SitePace& aSite, DateTime dtDay);

 private:
  PaceReport aReport;
};

// A site's days as a picture: from the first to the last day of the log, a place for each.
namespace PaceStrip {
int DayCount(const PaceReport& aReport);
// The seconds that the full height stands for: those that 95 of 100 answers of its slowest day kept to, 4 at
// least. One that hung for half an hour would else press all days flat.
std::int64_t FullHeight(const SitePace& aSite);
// Shapes shared by all pictures; once a page.
std::string Definitions();
// The first day of a picture of so many days at most, the last ones.
DateTime FirstDay(const PaceReport& aReport, int lMostDays);
// As SVG, from that day on; szId unique in the page.
std::string Picture(const PaceReport& aReport, const SitePace& aSite, DateTime dtFirst,
                    const std::string& szId);
}  // namespace PaceStrip
