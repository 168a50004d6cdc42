#include "history/LogHours.h"

#include <algorithm>
#include <cmath>

#include "base/Strings.h"
#include "history/LogPace.h"
#include "history/LogWords.h"

namespace {

constexpr std::size_t lDays = HourReport::lDays, lHours = HourReport::lHours;

struct Place {
  std::size_t lDay, lHour;
};

// Day 0 was a Saturday. A second that as a double lies a hair below its hour belongs to it.
Place PlaceOf(DateTime dtMoment) {
  const auto dtSafe = dtMoment + 0.5 / dSecondsPerDay;
  const auto dtDay = std::floor(dtSafe);
  return {(static_cast<std::size_t>(dtDay) + lDays - 1) % lDays,
          std::min(static_cast<std::size_t>((dtSafe - dtDay) * static_cast<double>(lHours)), lHours - 1)};
}

void CountChecks(HourReport& aReport, const LogHistory& aHistory, const std::vector<bool>& aWanted) {
  for (const auto aRef : aHistory.Lines()) {
    const auto& aLine = aHistory.Line(aRef);
    if (aLine.iKind != LineKind::Entry || aLine.iOutcome != Outcome::Up || !aLine.bTimeKnown ||
        !aWanted[aLine.lSite])
      continue;
    const auto [lDay, lHour] = PlaceOf(aLine.dtMoment);
    ++aReport.aCells[lDay][lHour].lChecks;
  }
}

void CountBegun(HourReport& aReport, std::vector<DateTime> aBegun) {
  std::ranges::sort(aBegun);
  std::array<std::array<DateTime, lHours>, lDays + 1> aLastDay{};
  for (const auto dtMoment : aBegun) {
    const auto [lDay, lHour] = PlaceOf(dtMoment);
    const auto Count = [dtMoment](HourFigures& aCell, DateTime& dtLast) {
      ++aCell.lBegun;
      if (std::floor(dtMoment) != dtLast) ++aCell.lDays;
      dtLast = std::floor(dtMoment);
    };
    Count(aReport.aCells[lDay][lHour], aLastDay[lDay][lHour]);
    Count(aReport.aAllDays[lHour], aLastDay[lDays][lHour]);
    ++aReport.aCells[lDay][lHour].lChecks;
    ++aReport.lBegun;
  }
}

std::string Clock(std::size_t lHour) {
  return std::to_string((lHour + 11) % 12 + 1) + (lHour % 24 < 12 ? " AM" : " PM");
}

double ShareOf(const HourFigures& aCell) {
  return aCell.lChecks > 0 ? static_cast<double>(aCell.lBegun) / aCell.lChecks : 0;
}

// An hour stands out with a quarter of all failures, on three days at least.
bool StandsOut(const HourFigures& aCell, const HourReport& aReport) {
  return aCell.lDays >= 3 && aCell.lBegun * 4 >= aReport.lBegun;
}

}  // namespace

double HourReport::Height(std::size_t lDay, std::size_t lHour) const {
  double dLargest = 0;
  for (std::size_t lRow = lDay < lDays ? 0 : lDays; lRow < (lDay < lDays ? lDays : lDays + 1); ++lRow)
    for (const auto& aCell : Row(lRow))
      dLargest = std::max(dLargest, ShareOf(aCell));
  return dLargest > 0 ? ShareOf(Row(lDay)[lHour]) / dLargest : 0;
}

HourReport LogHours::Of(const LogHistory& aHistory, const LogSummary& aSummary) {
  HourReport aReport;
  CountChecks(aReport, aHistory, LogPaces::SitesOf(aHistory, aSummary));
  std::vector<DateTime> aBegun;
  for (const auto& aSite : aSummary.aSites)
    for (const auto* pRuns : {&aSite.aOutages, &aSite.aHiccups})
      for (const auto& aRun : *pRuns)
        if (aRun.bStartKnown && aRun.dtFrom >= 1) aBegun.push_back(aRun.dtFrom);
  CountBegun(aReport, std::move(aBegun));
  for (const auto& aDay : aReport.aCells)
    for (std::size_t lHour = 0; lHour < lHours; ++lHour)
      aReport.aAllDays[lHour].lChecks += aDay[lHour].lChecks;
  return aReport;
}

std::string LogHours::Words(const HourReport& aReport) {
  constexpr std::uint32_t lEnough = 4;
  if (aReport.lBegun == 0) return LoadResString(IDS_LOG_WHEN_NONE);
  const auto szAll = LogWords::Count(aReport.lBegun);
  if (aReport.lBegun < lEnough) return FillResString(IDS_LOG_WHEN_FEW, {szAll});
  const auto Best = [](const auto& aRow) { return std::ranges::max_element(aRow, {}, &HourFigures::lBegun); };
  // On one weekday alone before every day: the more special is the more telling.
  for (std::size_t lDay = 0; lDay <= lDays; ++lDay) {
    const auto& aRow = aReport.Row(lDay);
    const auto aBest = Best(aRow);
    if (!StandsOut(*aBest, aReport)) continue;
    const auto lHour = static_cast<std::size_t>(aBest - aRow.begin());
    return FillResString(lDay < lDays ? IDS_LOG_WHEN_MOST : IDS_LOG_WHEN_DAILY,
                         {LogWords::Count(aBest->lBegun), szAll, lDay < lDays ? DayName(lDay) : Clock(lHour),
                          Clock(lDay < lDays ? lHour : lHour + 1), Clock(lHour + 1)});
  }
  return FillResString(IDS_LOG_WHEN_EVEN, {szAll});
}

std::string LogHours::DayName(std::size_t lDay) {
  return lDay < lDays ? std::string(LoadResString(IDS_LOG_WEEKDAYS).substr(lDay * 3, 3))
                      : std::string(LoadResString(IDS_LOG_WHEN_ALL));
}

std::string LogHours::CellWords(const HourReport& aReport, std::size_t lDay, std::size_t lHour) {
  const auto& aCell = aReport.Row(lDay)[lHour];
  const auto iText = aCell.lChecks == 0  ? IDS_LOG_WHEN_CELL_NONE
                     : aCell.lBegun == 1 ? IDS_LOG_WHEN_CELL_ONE
                                         : IDS_LOG_WHEN_CELL;
  return FillResString(iText, {DayName(lDay), Clock(lHour), Clock(lHour + 1), LogWords::Count(aCell.lBegun),
                               LogWords::Count(aCell.lChecks)});
}

char LogHours::Sign(const HourFigures& aCell) {
  if (aCell.lChecks == 0) return ' ';
  if (aCell.lBegun == 0) return '.';
  return aCell.lBegun > 9 ? '+' : static_cast<char>('0' + aCell.lBegun);
}

std::string LogHours::Text(const HourReport& aReport, std::size_t lColumns) {
  constexpr std::size_t lNames = 8, lPart = 6;  // a quarter of a day stands apart, where there is room
  const auto Fits = [&](std::size_t lWidth) { return lColumns == 0 || lWidth <= lColumns; };
  const bool bParts = Fits(lNames + 3 * lHours + lHours / lPart);
  const bool bEach = bParts || Fits(lNames + 3 * lHours);  // else only each third hour is named
  const auto Row = [&](std::string szRow, const auto& Cell) {
    for (std::size_t lHour = 0; lHour < lHours; ++lHour) {
      const auto szCell = Cell(lHour);
      const auto lEnd = lNames + (lHour + 1) * (bEach ? 3 : 2) + (bParts ? lHour / lPart + 1 : 0);
      szRow.resize(lEnd - szCell.size(), ' ');
      szRow += szCell;
    }
    return szRow.substr(0, szRow.find_last_not_of(' ') + 1) + "\n";
  };
  auto szText = Row(
      "", [&](std::size_t lHour) { return bEach || lHour % 3 == 0 ? std::to_string(lHour) : std::string(); });
  for (std::size_t lDay = 0; lDay <= lDays; ++lDay)
    szText +=
        Row(DayName(lDay), [&](std::size_t lHour) { return std::string{Sign(aReport.Row(lDay)[lHour])}; });
  return szText;
}
