#include "history/LogPaceTable.h"

#include <algorithm>
#include <cmath>

#include "base/Utf8.h"
#include "history/LogHtml.h"
#include "history/LogWords.h"

namespace {

using LogWords::Count;
using LogWords::Length;

enum { iSite, iTrend, iByDay, iMedian, iMost, iLongest, iGood };

const std::vector<LogGrid::Column> aPaceColumns = {{IDS_LOG_COL_SITE, nullptr, false, 2},
                                                   {IDS_LOG_COL_TREND, "slower: 10 s, 10 s before"},
                                                   {IDS_LOG_COL_BY_DAY, "10 10 10 10 10 10 10", false, 1, 2},
                                                   {IDS_LOG_COL_MEDIAN, "59 min 59 s", true},
                                                   {IDS_LOG_COL_MOST, "59 min 59 s", true},
                                                   {IDS_LOG_COL_LONGEST, "59 min 59 s", true, 0, 3},
                                                   {IDS_LOG_COL_GOOD, "1,000,000", true, 0, 1}};

constexpr std::size_t lNameBytes = 200;

std::string Name(const SitePace& aSite) {
  return Utf8::Clean(Utf8::Shorten(aSite.szSite, lNameBytes));
}

std::string Trend(const SitePace& aSite) {
  switch (aSite.iTrend) {
    case PaceTrend::Slower:
    case PaceTrend::Quicker:
      return FillResString(aSite.iTrend == PaceTrend::Slower ? IDS_LOG_TREND_SLOWER : IDS_LOG_TREND_QUICKER,
                           {Length(aSite.aNow.lMedian), Length(aSite.aBefore.lMedian)});
    case PaceTrend::Same:
      return LoadResString(IDS_LOG_TREND_SAME);
    default:
      return LoadResString(IDS_LOG_TREND_FEW);
  }
}

// The medians of the last days in seconds; "." for a day without a good answer.
std::string ByDay(const PaceReport& aReport, const SitePace& aSite) {
  constexpr int lMostDays = 14;
  const int lCount = PaceStrip::DayCount(aReport);
  std::string szDays;
  for (int lDay = std::max(0, lCount - lMostDays); lDay < lCount; ++lDay) {
    const auto aFound = std::ranges::find(aSite.aDays, std::floor(aReport.dtFrom) + lDay, &PaceDay::dtDay);
    szDays += (szDays.empty() ? "" : " ") +
              (aFound == aSite.aDays.end() ? "." : std::to_string(aFound->aPace.lMedian));
  }
  return szDays;
}

}  // namespace

const std::vector<LogGrid::Column>& LogPaceTable::Columns() const {
  return aPaceColumns;
}

std::string LogPaceTable::Cell(std::size_t lRow, std::size_t lColumn) const {
  const auto& aSite = aReport.aSites[lRow];
  switch (lColumn) {
    case iSite:
      return aSite.szSite;
    case iTrend:
      return Trend(aSite);
    case iByDay:
      return ByDay(aReport, aSite);
    case iMedian:
      return Length(aSite.aPace.lMedian);
    case iMost:
      return Length(aSite.aPace.lMost);
    case iLongest:
      return Length(aSite.aPace.lLongest);
    default:
      return Count(aSite.aPace.lAnswers);
  }
}

double LogPaceTable::Key(std::size_t lRow, std::size_t lColumn) const {
  const auto& aPace = aReport.aSites[lRow].aPace;
  switch (lColumn) {
    case iMedian:
      return static_cast<double>(aPace.lMedian);
    case iMost:
      return static_cast<double>(aPace.lMost);
    case iLongest:
      return static_cast<double>(aPace.lLongest);
    default:
      return aPace.lAnswers;
  }
}

std::vector<std::string> LogPaceTable::Words() const {
  constexpr std::size_t lMostNamed = 3;
  if (aReport.aSites.empty()) return {LoadResString(IDS_LOG_PACE_NONE)};
  const auto& aSlowest = aReport.aSites.front();
  std::vector<std::string> aWords{
      FillResString(IDS_LOG_PACE_SLOWEST, {Name(aSlowest), Length(aSlowest.aPace.lMedian),
                                           Length(aSlowest.aPace.lMost), Length(aSlowest.aPace.lLongest)})};
  if (!aReport.bLongEnough) {
    aWords.push_back(LoadResString(IDS_LOG_PACE_SHORT));
    return aWords;
  }
  const auto szBefore = LoadResString(aReport.bByWeek ? IDS_LOG_BEFORE_WEEK : IDS_LOG_BEFORE_HALF);
  std::size_t lSlower = 0;
  for (const auto& aSite : aReport.aSites)
    if (aSite.iTrend == PaceTrend::Slower && ++lSlower <= lMostNamed)
      aWords.push_back(
          FillResString(IDS_LOG_PACE_SLOWER,
                        {Name(aSite), szBefore, Length(aSite.aNow.lMedian), Length(aSite.aBefore.lMedian),
                         Count(aSite.aNow.lAnswers), Count(aSite.aBefore.lAnswers)}));
  if (lSlower == 0) aWords.push_back(FillResString(IDS_LOG_PACE_SLOWER_NONE, {szBefore}));
  if (lSlower > lMostNamed)
    aWords.push_back(FillResString(IDS_LOG_PACE_SLOWER_MORE, {Count(lSlower - lMostNamed)}));
  return aWords;
}

std::string LogPaceTable::DayWords(const SitePace& aSite, DateTime dtDay) {
  const auto aFound = std::ranges::find(aSite.aDays, dtDay, &PaceDay::dtDay);
  const auto szDay = LogWords::Day(dtDay);
  if (aFound == aSite.aDays.end()) return FillResString(IDS_LOG_PACE_DAY_NONE, {szDay});
  const auto& aPace = aFound->aPace;
  return FillResString(IDS_LOG_PACE_DAY, {szDay, Length(aPace.lMedian), Length(aPace.lMost),
                                          Length(aPace.lLongest), Count(aPace.lAnswers)});
}

int PaceStrip::DayCount(const PaceReport& aReport) {
  return static_cast<int>(std::floor(aReport.dtTo) - std::floor(aReport.dtFrom)) + 1;
}

std::int64_t PaceStrip::FullHeight(const SitePace& aSite) {
  std::int64_t lMost = 4;
  for (const auto& aDay : aSite.aDays)
    lMost = std::max(lMost, aDay.aPace.lMost);
  return lMost;
}

std::string PaceStrip::Definitions() {
  return R"svg(<svg class="defs" width="0" height="0" aria-hidden="true" focusable="false"><defs>
<pattern id="p-most" width="4" height="4" patternUnits="userSpaceOnUse"><rect class="s-median" width="4" height="1.5"/></pattern>
</defs></svg>
)svg";
}

DateTime PaceStrip::FirstDay(const PaceReport& aReport, int lMostDays) {
  return std::max(std::floor(aReport.dtFrom), std::floor(aReport.dtTo) - (lMostDays - 1));
}

std::string PaceStrip::Picture(const PaceReport& aReport, const SitePace& aSite, DateTime dtFirst,
                               const std::string& szId) {
  constexpr double dHeight = 24, dWidth = 10, dBar = 8;
  const int lDays = static_cast<int>(std::floor(aReport.dtTo) - dtFirst) + 1;
  // A page has thousands of these.
  const auto Number = [](double dValue) {
    const auto lTenths = std::lround(dValue * 10);
    return std::to_string(lTenths / 10) + (lTenths % 10 == 0 ? "" : "." + std::to_string(lTenths % 10));
  };
  const auto lFull = FullHeight(aSite);
  const double dScale = dHeight / static_cast<double>(lFull);
  const auto Shape = [&](const char* szStyle, double dLeft, double dFrom, double dTo) {
    if (dTo <= dFrom) return std::string();
    return std::string("<rect ") + szStyle + " x=\"" + Number(dLeft) + "\" y=\"" +
           Number(dHeight - dTo * dScale) + "\" width=\"" + Number(dBar) + "\" height=\"" +
           Number((dTo - dFrom) * dScale) + "\"/>";
  };
  std::string szPicture =
      "<svg class=\"strip\" viewBox=\"0 0 " + std::to_string(lDays * static_cast<int>(dWidth)) +
      " 24\" preserveAspectRatio=\"none\" role=\"img\" aria-labelledby=\"" + szId + "\"><title id=\"" + szId +
      "\">" +
      LogHtml::Escape(
          Name(aSite) + ": " +
          FillResString(IDS_LOG_PACE_DESC, {Length(aSite.aPace.lMedian), Length(aSite.aPace.lMost),
                                            Length(aSite.aPace.lLongest)})) +
      "</title>";
  for (const auto& aDay : aSite.aDays) {
    if (aDay.dtDay < dtFirst) continue;
    const double dLeft = (aDay.dtDay - dtFirst) * dWidth + (dWidth - dBar) / 2;
    const auto Height = [lFull](std::int64_t lSeconds) {
      return static_cast<double>(std::min(lSeconds, lFull));
    };
    szPicture += "<g><title>" + LogHtml::Escape(LogPaceTable::DayWords(aSite, aDay.dtDay)) + "</title>" +
                 Shape("class=\"s-most\"", dLeft, Height(aDay.aPace.lMedian), Height(aDay.aPace.lMost)) +
                 Shape("class=\"s-median\"", dLeft, 0, Height(aDay.aPace.lMedian)) +
                 Shape("class=\"s-longest\"", dLeft, Height(aDay.aPace.lLongest) - 1.5 / dScale,
                       Height(aDay.aPace.lLongest)) +
                 "</g>";
  }
  return szPicture + "</svg>";
}
