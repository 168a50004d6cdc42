#include "history/LogPeriodTable.h"

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogWords.h"

namespace {

using LogWords::Count;
using LogWords::Length;
using LogWords::Moment;
using LogWords::Share;

const std::vector<LogGrid::Column> aPeriodColumns = {{IDS_LOG_COL_SITE, nullptr, false, 1},
                                                     {IDS_LOG_COL_WELL_NOW, "100.00%", true, 0, 1},
                                                     {IDS_LOG_COL_WELL_BEFORE, "100.00%", true, 0, 2},
                                                     {IDS_LOG_COL_UP_NOW, "100.00%", true},
                                                     {IDS_LOG_COL_UP_BEFORE, "100.00%", true},
                                                     {IDS_LOG_COL_OUTAGES_NOW, "1,000", true, 0, 3},
                                                     {IDS_LOG_COL_OUTAGES_BEFORE, "1,000", true, 0, 4},
                                                     {IDS_LOG_COL_DOWN_NOW, "23 h 59 min", true},
                                                     {IDS_LOG_COL_DOWN_BEFORE, "23 h 59 min", true}};

// Columns behind the first stand in pairs, now and before.
enum { iWell, iUp, iOutages, iDown };

double PartOf(double dPart, double dWhole) {
  return dWhole > 0 ? dPart / dWhole : -1;
}

}  // namespace

const std::vector<LogGrid::Column>& LogPeriodTable::Columns() const {
  return aPeriodColumns;
}

std::string LogPeriodTable::Cell(std::size_t lRow, std::size_t lColumn) const {
  const auto& aSite = aComparison.aSites[lRow];
  if (lColumn == 0) return aSite.szSite;
  const auto& aFigures = lColumn % 2 == 1 ? aSite.aNow : aSite.aBefore;
  if (!aFigures.Watched()) return "-";
  switch ((lColumn - 1) / 2) {
    case iWell:
      return Share(aFigures.lWell, aFigures.lChecks);
    case iUp:
      return Share(aFigures.aAvailable);
    case iOutages:
      return Count(aFigures.lOutages);
    default:
      return aFigures.lDown > 0 ? Length(aFigures.lDown) : "0";
  }
}

double LogPeriodTable::Key(std::size_t lRow, std::size_t lColumn) const {
  const auto& aSite = aComparison.aSites[lRow];
  const auto& aFigures = lColumn % 2 == 1 ? aSite.aNow : aSite.aBefore;
  if (!aFigures.Watched()) return -1;
  switch ((lColumn - 1) / 2) {
    case iWell:
      return PartOf(aFigures.lWell, aFigures.lChecks);
    case iUp:
      return PartOf(static_cast<double>(aFigures.aAvailable.lUp),
                    static_cast<double>(aFigures.aAvailable.lWatched));
    case iOutages:
      return aFigures.lOutages;
    default:
      return static_cast<double>(aFigures.lDown);
  }
}

std::vector<std::string> LogPeriodTable::Words() const {
  const auto& a = aComparison;
  if (a.aNow.dtFrom < 1)
    return {LoadResString(IDS_LOG_PERIODS_NONE)};  // an empty log has the first day there is
  if (!a.aAllBefore.Watched())
    return {FillResString(IDS_LOG_PERIODS_SHORT, {Moment(a.aBefore.dtFrom), Moment(a.aBefore.dtPast)})};
  std::vector<std::string> aWords{FillResString(
      IDS_LOG_PERIODS_HEAD,
      {Moment(a.aNow.dtFrom), Moment(a.aNow.dtPast), Moment(a.aBefore.dtFrom), Moment(a.aBefore.dtPast)})};
  const auto Down = [](const PeriodFigures& aFigures) { return Length(aFigures.lDown); };
  aWords.push_back(
      FillResString(IDS_LOG_PERIODS_ALL,
                    {Share(a.aAllNow.aAvailable), Share(a.aAllBefore.aAvailable), Count(a.aAllNow.lOutages),
                     Count(a.aAllBefore.lOutages), Down(a.aAllNow), Down(a.aAllBefore)}));
  const auto Tell = [&](StringId iText, const SiteComparison& aSite) {
    aWords.push_back(FillResString(
        iText, {Utf8::Clean(Utf8::Shorten(aSite.szSite, 200)), Down(aSite.aNow), Down(aSite.aBefore)}));
  };
  if (!a.aSites.empty() && a.aSites.front().Worse() > 0) Tell(IDS_LOG_PERIODS_WORSE, a.aSites.front());
  if (!a.aSites.empty() && a.aSites.back().Worse() < 0) Tell(IDS_LOG_PERIODS_BETTER, a.aSites.back());
  return aWords;
}
