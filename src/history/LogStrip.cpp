#include "history/LogStrip.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "base/Utf8.h"
#include "history/LogHtml.h"
#include "history/LogWords.h"

namespace {

constexpr int lColumns = 720;
constexpr int lNarrowest = 3;  // columns of a failure
constexpr std::array aWorstLast{SiteState::Up, SiteState::Disabled, SiteState::Unwatched, SiteState::Warning,
                                SiteState::Down};

std::string Shape(SiteState iState, int lFirst, int lPast) {
  const auto aBand = LogStrip::BandOf(iState);
  const std::string szPlace = std::string("x=\"") + std::to_string(lFirst) + "\" y=\"" +
                              std::to_string(aBand.lTop) + "\" width=\"" + std::to_string(lPast - lFirst) +
                              "\" height=\"" + std::to_string(aBand.lHeight) + "\"";
  const std::string szClass = LogStrip::ClassOf(iState);
  if (iState == SiteState::Up) return "<rect class=\"s-up\" " + szPlace + "/>";
  return "<rect class=\"s-" + szClass + "\" " + szPlace + "/><rect fill=\"url(#p-" + szClass + ")\" " +
         szPlace + "/>";
}

std::string Run(const LogStrip::Scale& aScale, const SiteSummary& aSite, SiteState iState, int lFirst,
                int lPast) {
  if (iState == SiteState::Up) return Shape(iState, lFirst, lPast);
  return "<g><title>" + LogHtml::Escape(LogStrip::Words(aScale, aSite, iState, lFirst, lPast)) + "</title>" +
         Shape(iState, lFirst, lPast) + "</g>";
}

struct ColumnRange {
  int lFirst, lLast;
};

// The columns that a stretch is painted on; a failure on enough of them to be seen.
ColumnRange ColumnsOf(const LogStrip::Scale& aScale, const StateInterval& aInterval) {
  const bool bFailure = IsFailure(aInterval.iState);
  const auto lFirst = aScale.Column(aInterval.dtFrom);
  const auto lLast = std::max(lFirst, aScale.Column(aInterval.dtTo));
  return {bFailure ? std::max(0, std::min(lFirst, lLast + 1 - lNarrowest)) : lFirst, lLast};
}

// One shape for all good days; each of the others says what it was.
std::string Squares(const LogSummary& aSummary, const SiteSummary& aSite) {
  const auto aDays = LogStrip::Days(aSummary, aSite);
  const LogStrip::Scale aScale(aSummary, lColumns);
  std::string szGood, szOther;
  for (std::size_t i = 0; i < aDays.size(); ++i) {
    const auto dtDay = LogStrip::DayAt(aSummary, static_cast<int>(i));
    const int lFirst = aScale.Column(dtDay);
    const int lPast = std::max(lFirst + 1, (i + 1 < aDays.size() ? aScale.Column(dtDay + 1) : lColumns) - 1);
    const auto aBand = LogStrip::BandOf(SiteState::Up);
    if (aDays[i] == SiteState::Unwatched) {
      while (i + 1 < aDays.size() && aDays[i + 1] == SiteState::Unwatched)
        ++i;
      szOther += Shape(SiteState::Unwatched, lFirst,
                       aScale.Column(LogStrip::DayAt(aSummary, static_cast<int>(i) + 1)));
    } else if (aDays[i] == SiteState::Up) {
      szGood += "M" + std::to_string(lFirst) + " " + std::to_string(aBand.lTop) + "H" +
                std::to_string(lPast) + "v" + std::to_string(aBand.lHeight) + "H" + std::to_string(lFirst) +
                "z";
    } else {
      std::string szWords;
      for (const auto& szLine : LogStrip::DayWords(aSite, dtDay))
        szWords += (szWords.empty() ? "" : "; ") + szLine;
      szOther +=
          "<g><title>" + LogHtml::Escape(szWords) + "</title>" + Shape(aDays[i], lFirst, lPast) + "</g>";
    }
  }
  return (szGood.empty() ? "" : "<path class=\"s-up\" d=\"" + szGood + "\"/>") + szOther;
}

std::string Percent(double dPart) {
  const auto lTenths = std::lround(dPart * 1000);
  return std::to_string(lTenths / 10) + "." + std::to_string(lTenths % 10) + "%";
}

}  // namespace

bool LogStrip::ByDay(const LogSummary& aSummary) {
  constexpr int lTwoWeeks = 14, lMostSquares = 400;  // a log with a wrong date may span a century
  return DayCount(aSummary) > lTwoWeeks && DayCount(aSummary) <= lMostSquares;
}

int LogStrip::DayCount(const LogSummary& aSummary) {
  return static_cast<int>(std::floor(aSummary.dtTo) - std::floor(aSummary.dtFrom)) + 1;
}

DateTime LogStrip::DayAt(const LogSummary& aSummary, int lDay) {
  return std::floor(aSummary.dtFrom) + lDay;
}

std::vector<SiteState> LogStrip::Days(const LogSummary& aSummary, const SiteSummary& aSite) {
  constexpr std::array aDaysWorstLast{SiteState::Unwatched, SiteState::Disabled, SiteState::Up,
                                      SiteState::Warning, SiteState::Down};
  const auto dtFirst = DayAt(aSummary, 0);
  std::vector<SiteState> aDays(static_cast<std::size_t>(DayCount(aSummary)), SiteState::Unwatched);
  for (const auto iState : aDaysWorstLast)
    for (const auto& aInterval : aSite.aStates) {
      if (aInterval.iState != iState) continue;
      const auto Day = [&](DateTime dtMoment) {
        return std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(std::floor(dtMoment - dtFirst)), 0,
                                          std::ssize(aDays) - 1);
      };
      // What ends at midnight is none of the next day's.
      const bool bAtMidnight =
          aInterval.dtTo > aInterval.dtFrom && aInterval.dtTo == std::floor(aInterval.dtTo);
      std::fill(aDays.begin() + Day(aInterval.dtFrom),
                aDays.begin() + Day(aInterval.dtTo) + (bAtMidnight ? 0 : 1), iState);
    }
  return aDays;
}

std::vector<std::string> LogStrip::DayWords(const SiteSummary& aSite, DateTime dtDay) {
  constexpr std::size_t lMostLines = 8;
  Availability aDay;
  std::vector<std::string> aWords(1);
  for (const auto& aInterval : aSite.aStates) {
    const auto dtFrom = std::max(aInterval.dtFrom, dtDay), dtTo = std::min(aInterval.dtTo, dtDay + 1);
    if (dtTo < dtFrom || (dtTo == dtFrom && aInterval.dtTo > aInterval.dtFrom)) continue;
    const bool bUp = aInterval.iState == SiteState::Up;
    if (bUp) aDay.lUp += SecondsBetween(dtFrom, dtTo);
    if (aInterval.iState != SiteState::Unwatched && aInterval.iState != SiteState::Disabled)
      aDay.lWatched += SecondsBetween(dtFrom, dtTo);
    if (!bUp && aWords.size() < lMostLines)
      aWords.push_back(FillResString(IDS_LOG_STRIP_PART,
                                     {LoadResString(LogWords::StateName(aInterval.iState)),
                                      LogWords::Moment(aInterval.dtFrom), LogWords::Moment(aInterval.dtTo)}));
  }
  aWords.front() = aDay.lWatched > 0
                       ? FillResString(IDS_LOG_STRIP_DAY, {LogWords::Day(dtDay), LogWords::Share(aDay)})
                       : LogWords::Day(dtDay);
  return aWords;
}

LogStrip::Scale::Scale(const LogSummary& aSummary, int lColumnCount)
    : dtFrom(ByDay(aSummary) ? DayAt(aSummary, 0) : aSummary.dtFrom),
      dSpan(ByDay(aSummary) ? DayCount(aSummary)
                            : std::max(aSummary.dtTo - aSummary.dtFrom, 1 / dSecondsPerDay)),
      lColumns(lColumnCount) {
}

double LogStrip::Scale::Part(DateTime dtMoment) const {
  return std::clamp((dtMoment - dtFrom) / dSpan, 0.0, 1.0);
}

int LogStrip::Scale::Column(DateTime dtMoment) const {
  return std::min(static_cast<int>(Part(dtMoment) * lColumns), lColumns - 1);
}

std::vector<SiteState> LogStrip::Columns(const Scale& aScale, const SiteSummary& aSite) {
  std::vector<SiteState> aColumns(static_cast<std::size_t>(aScale.ColumnCount()), SiteState::Unwatched);
  for (const auto iState : aWorstLast)
    for (const auto& aInterval : aSite.aStates) {
      if (aInterval.iState != iState) continue;
      const auto [lFirst, lLast] = ColumnsOf(aScale, aInterval);
      std::fill(aColumns.begin() + lFirst, aColumns.begin() + lLast + 1, iState);
    }
  return aColumns;
}

StateInterval LogStrip::Stretch(const Scale& aScale, const SiteSummary& aSite, SiteState iState, int lFirst,
                                int lPast) {
  StateInterval aWhole{0, 0, iState};
  for (const auto& aInterval : aSite.aStates) {
    const auto aColumns = ColumnsOf(aScale, aInterval);
    if (aInterval.iState != iState || aColumns.lLast < lFirst || aColumns.lFirst >= lPast) continue;
    if (aWhole.dtFrom <= 0) aWhole.dtFrom = aInterval.dtFrom;
    aWhole.dtTo = aInterval.dtTo;
  }
  return aWhole;
}

std::string LogStrip::Words(const Scale& aScale, const SiteSummary& aSite, SiteState iState, int lFirst,
                            int lPast) {
  const auto aWhole = Stretch(aScale, aSite, iState, lFirst, lPast);
  const auto szState = LoadResString(LogWords::StateName(iState));
  if (aWhole.dtFrom <= 0) return szState;
  return FillResString(IDS_LOG_STRIP_PART,
                       {szState, LogWords::Moment(aWhole.dtFrom), LogWords::Moment(aWhole.dtTo)});
}

std::vector<DateTime> LogStrip::Midnights(const LogSummary& aSummary) {
  const auto lFirst = static_cast<std::int32_t>(std::floor(aSummary.dtFrom));
  const auto lLast = static_cast<std::int32_t>(std::floor(aSummary.dtTo));
  const auto lStep = std::max(1, (lLast - lFirst + 7) / 8);
  std::vector<DateTime> aDays;
  for (auto lDay = lFirst + 1; lDay <= lLast; lDay += lStep)
    aDays.push_back(lDay);
  return aDays;
}

std::vector<DateTime> LogStrip::AxisDays(const LogSummary& aSummary) {
  constexpr double dNameWidth = 0.11;  // of the axis
  const Scale aScale(aSummary, 1);
  std::vector<DateTime> aDays{ByDay(aSummary) ? DayAt(aSummary, 0) : aSummary.dtFrom};
  for (const auto dtDay : Midnights(aSummary))
    if (aScale.Part(dtDay) >= dNameWidth) aDays.push_back(dtDay);
  return aDays;
}

LogStrip::Band LogStrip::BandOf(SiteState iState) {
  constexpr std::array<Band, 5> aBands{{{10, 4}, {6, 12}, {3, 18}, {0, 24}, {9, 6}}};
  return aBands[static_cast<std::size_t>(iState)];
}

const char* LogStrip::ClassOf(SiteState iState) {
  constexpr std::array<const char*, 5> aNames{"unwatched", "up", "warning", "down", "off"};
  return aNames[static_cast<std::size_t>(iState)];
}

std::string LogStrip::Definitions() {
  return R"svg(<svg class="defs" width="0" height="0" aria-hidden="true" focusable="false"><defs>
<pattern id="p-warning" width="6" height="6" patternUnits="userSpaceOnUse" patternTransform="rotate(45)"><rect class="mark" width="2" height="6"/></pattern>
<pattern id="p-down" width="6" height="6" patternUnits="userSpaceOnUse"><path class="stroke" d="M0 0L6 6M6 0L0 6"/></pattern>
<pattern id="p-unwatched" width="8" height="24" patternUnits="userSpaceOnUse"><rect class="dash" width="5" height="24"/></pattern>
<pattern id="p-off" width="5" height="5" patternUnits="userSpaceOnUse"><circle class="dash" cx="2" cy="2" r="1"/></pattern>
<symbol id="icon-up" viewBox="0 0 16 16"><circle class="s-up" cx="8" cy="8" r="7"/><path class="sign" d="M4.5 8.5L7 11L11.5 5.5"/></symbol>
<symbol id="icon-warning" viewBox="0 0 16 16"><path class="s-warning" d="M8 1L15.5 15H.5Z"/><path class="sign" d="M8 5.5V10M8 12V13.2"/></symbol>
<symbol id="icon-down" viewBox="0 0 16 16"><path class="s-down" d="M5 .5H11L15.5 5V11L11 15.5H5L.5 11V5Z"/><path class="sign" d="M5 5L11 11M11 5L5 11"/></symbol>
<symbol id="icon-off" viewBox="0 0 16 16"><circle class="ring" cx="8" cy="8" r="6.5"/><path class="line" d="M4.5 8H11.5"/></symbol>
<symbol id="icon-unwatched" viewBox="0 0 16 16"><circle class="ring dashed" cx="8" cy="8" r="6.5"/></symbol>
</defs></svg>
)svg";
}

std::string LogStrip::Icon(SiteState iState) {
  return std::string("<svg class=\"icon\" aria-hidden=\"true\" focusable=\"false\"><use href=\"#icon-") +
         ClassOf(iState) + "\"/></svg>";
}

std::string LogStrip::Key(SiteState iState) {
  return "<svg class=\"key\" viewBox=\"0 0 48 24\" aria-hidden=\"true\" focusable=\"false\">" +
         Shape(iState, 0, 48) + "</svg>";
}

std::string LogStrip::Picture(const LogSummary& aSummary, const SiteSummary& aSite, const std::string& szId) {
  const Scale aScale(aSummary, lColumns);
  const auto szDescription = FillResString(
      IDS_LOG_STRIP_DESC, {LogWords::State(aSite), LogWords::Share(aSite.aAvailability.back()),
                           LogWords::Count(aSite.aOutages.size()), LogWords::Length(aSite.lDownSeconds)});
  std::string szPicture =
      "<svg class=\"strip\" viewBox=\"0 0 720 24\" preserveAspectRatio=\"none\" role=\"img\" "
      "aria-labelledby=\"" +
      szId + "t " + szId + "d\"><title id=\"" + szId + "t\">" +
      LogHtml::Escape(Utf8::Shorten(aSite.szSite, 200)) + "</title><desc id=\"" + szId + "d\">" +
      LogHtml::Escape(szDescription) + "</desc>";
  if (ByDay(aSummary)) return szPicture + Squares(aSummary, aSite) + "</svg>";
  const auto aColumns = Columns(aScale, aSite);
  for (int lFirst = 0, lPast = 0; lFirst < lColumns; lFirst = lPast) {
    const auto iState = aColumns[static_cast<std::size_t>(lFirst)];
    while (lPast < lColumns && aColumns[static_cast<std::size_t>(lPast)] == iState)
      ++lPast;
    szPicture += Run(aScale, aSite, iState, lFirst, lPast);
  }
  std::string szDays;
  for (const auto dtDay : Midnights(aSummary))
    szDays += "M" + std::to_string(aScale.Column(dtDay)) + " 0V24";
  if (!szDays.empty()) szPicture += "<path class=\"day\" d=\"" + szDays + "\"/>";
  return szPicture + "</svg>";
}

std::string LogStrip::Axis(const LogSummary& aSummary) {
  const Scale aScale(aSummary, lColumns);
  std::string szAxis = "<div class=\"axis\" aria-hidden=\"true\">";
  for (const auto dtDay : AxisDays(aSummary)) {
    if (aScale.Part(dtDay) > 0.93) continue;  // no room for its name
    const auto szDay = LogWords::Day(dtDay);
    szAxis += "<span style=\"left:" + Percent(aScale.Part(dtDay)) + "\">" +
              LogHtml::Escape(std::string_view(szDay).substr(0, szDay.size() - 5)) + "</span>";
  }
  return szAxis + "</div>\n";
}
