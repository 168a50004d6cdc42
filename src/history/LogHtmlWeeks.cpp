#include "history/LogHtmlWeeks.h"

#include <algorithm>
#include <cmath>

#include "history/LogHours.h"
#include "history/LogHtml.h"
#include "history/LogHtmlParts.h"
#include "history/LogPaceTable.h"
#include "history/LogPassTable.h"
#include "history/LogPeriodTable.h"
#include "history/LogWords.h"

namespace {

using namespace LogHtmlParts;
using LogHtml::Escape;

constexpr std::size_t lMostPasses = 100;

std::string Note(const std::string& szMarkup) {
  return "<p class=\"note\">" + szMarkup + "</p>\n";
}

std::string GridCell(const LogGrid& aGrid, std::size_t lRow, std::size_t lColumn) {
  const auto szText = aGrid.Cell(lRow, lColumn);
  if (lColumn == 0)
    return "<th scope=\"row\" class=\"site\">" + (aGrid.OfSites() ? SiteName(szText) : Escape(szText)) +
           "</th>";
  const auto& aColumn = aGrid.Columns()[lColumn];
  return Named(Cell(aColumn.bNumber ? "n" : "", aColumn.bNumber ? Escape(szText) : Isolated(Escape(szText))),
               aColumn.iTitle);
}

// The first lMost rows, and of the others those that are special.
std::string Table(const LogGrid& aGrid, StringId iLabel, std::size_t lMost) {
  std::vector<StringId> aTitles, aNumbers;
  for (const auto& aColumn : aGrid.Columns()) {
    aTitles.push_back(aColumn.iTitle);
    if (aColumn.bNumber) aNumbers.push_back(aColumn.iTitle);
  }
  auto szRows = Heads(aTitles, aNumbers) + "<tbody>\n";
  for (std::size_t lRow = 0; lRow < aGrid.Rows(); ++lRow) {
    if (lRow >= lMost && !aGrid.Special(lRow)) continue;
    szRows += "<tr>";
    for (std::size_t lColumn = 0; lColumn < aTitles.size(); ++lColumn)
      szRows += GridCell(aGrid, lRow, lColumn);
    szRows += "</tr>\n";
  }
  return TableOf("sites grid", iLabel, szRows + "</tbody>\n");
}

std::string Passes(const LogPassTable& aTable) {
  const auto szNote =
      aTable.Rows() > lMostPasses
          ? Words(IDS_LOG_PASSES_LEFT_OUT, {LogWords::Count(lMostPasses), LogWords::Count(aTable.Rows())})
          : Words(IDS_LOG_PASSES_NOTE);
  return Note(szNote) + Table(aTable, IDS_LOG_PASSES, lMostPasses);
}

std::string Strips(const PaceReport& aReport, std::size_t lMostSites, int lMostDays) {
  const auto dtFirst = PaceStrip::FirstDay(aReport, lMostDays);
  auto szStrips =
      Note(Words(IDS_LOG_PACE_STRIPS_NOTE, {LogWords::Day(dtFirst), LogWords::Day(aReport.dtTo)})) +
      PaceStrip::Definitions() + "<div class=\"strips\">\n";
  for (std::size_t lSite = 0; lSite < std::min(aReport.aSites.size(), lMostSites); ++lSite)
    szStrips += "<div class=\"name\">" + SiteName(aReport.aSites[lSite].szSite) + "</div>" +
                PaceStrip::Picture(aReport, aReport.aSites[lSite], dtFirst, "p" + std::to_string(lSite)) +
                "\n";
  return szStrips + "</div>\n";
}

std::string HourCell(const HourReport& aReport, std::size_t lDay, std::size_t lHour) {
  const auto& aCell = aReport.Row(lDay)[lHour];
  const char chSign = LogHours::Sign(aCell);
  const auto lHeight = std::lround(aReport.Height(lDay, lHour) * 100);
  return "<td title=\"" + Escape(LogHours::CellWords(aReport, lDay, lHour)) + "\">" +
         (lHeight > 0 ? "<i style=\"height:" + std::to_string(lHeight) + "%\"></i>" : "") +
         (chSign == ' ' ? std::string() : std::string("<b>") + chSign + "</b>") + "</td>";
}

std::string Hours(const HourReport& aReport) {
  std::string szRows = "<thead><tr><th scope=\"col\">" + Words(IDS_LOG_COL_WEEKDAY) + "</th>";
  for (std::size_t lHour = 0; lHour < HourReport::lHours; ++lHour)
    szRows += "<th scope=\"col\">" + std::to_string(lHour) + "</th>";
  szRows += "</tr></thead>\n<tbody>\n";
  for (std::size_t lDay = 0; lDay <= HourReport::lDays; ++lDay) {
    szRows += "<tr><th scope=\"row\">" + Escape(LogHours::DayName(lDay)) + "</th>";
    for (std::size_t lHour = 0; lHour < HourReport::lHours; ++lHour)
      szRows += HourCell(aReport, lDay, lHour);
    szRows += "</tr>\n";
  }
  return Note(Words(IDS_LOG_WHEN_NOTE)) + TableOf("hours", IDS_LOG_WHEN, szRows + "</tbody>\n");
}

}  // namespace

LogHtmlWeeks::Sections::Sections(const LogHistory& aHistory, const LogSummary& aSummary,
                                 std::size_t lMostSites, int lMostDays) {
  if (aSummary.aSites.empty() || aSummary.dtFrom <= 0) return;
  const LogPassTable aPasses(aHistory);
  Add("passes", IDS_LOG_PASSES, aPasses.Words(), Passes(aPasses));
  const LogPaceTable aPace(LogPaces::Of(aHistory, aSummary));
  const auto& aReport = aPace.Report();
  Add("pace", IDS_LOG_PACE, aPace.Words(),
      aPace.Rows() == 0 ? std::string()
                        : Note(Words(IDS_LOG_PACE_NOTE)) + Table(aPace, IDS_LOG_PACE, lMostSites) +
                              Strips(aReport, lMostSites, lMostDays));
  if (aReport.bLongEnough) {
    const LogPeriodTable aPeriods(LogCompare::Of(aHistory, aSummary, aReport.aNow, aReport.aBefore));
    Add("periods", IDS_LOG_PERIODS, aPeriods.Words(),
        Note(Words(IDS_LOG_PERIODS_NOTE)) + Table(aPeriods, IDS_LOG_PERIODS, lMostSites));
  }
  const auto aHours = LogHours::Of(aHistory, aSummary);
  Add("hours", IDS_LOG_WHEN, {LogHours::Words(aHours)}, Hours(aHours));
}

void LogHtmlWeeks::Sections::Add(const char* szName, StringId iTitle, const std::vector<std::string>& aWords,
                                 const std::string& szBody) {
  szMarkup += std::string("<section id=\"") + szName + "\">\n<h2>" + Words(iTitle) + "</h2>\n";
  for (const auto& szSentence : aWords)
    szMarkup += "<p>" + Isolated(Escape(szSentence)) + "</p>\n";
  szMarkup += szBody + "</section>\n";
  szLinks +=
      std::string(szLinks.empty() ? "" : ", ") + "<a href=\"#" + szName + "\">" + Words(iTitle) + "</a>";
}

std::string LogHtmlWeeks::Sections::Links() const {
  return szLinks.empty() ? szLinks : Note(Words(IDS_LOG_MORE_BELOW) + " " + szLinks);
}
