#include "cli/LogViews.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "base/Strings.h"
#include "base/Utf8.h"
#include "cli/Report.h"
#include "history/LogHours.h"
#include "history/LogTextTable.h"
#include "history/LogWords.h"
#include "platform/Terminal.h"

namespace {

using CliCommands::LogArguments;
using Json = nlohmann::ordered_json;

constexpr const char szBefore[] = "before";
constexpr double dWeek = 7;

std::string TimeOf(DateTime dtMoment) {
  return dtMoment >= 1 ? LogWords::MomentForSorting(dtMoment) : std::string();
}

Json JsonOf(const LogPassTable& aTable) {
  Json aRows = Json::array();
  for (std::size_t lRow = aTable.Rows(); lRow-- > 0;) {  // the first first
    const auto& aFacts = aTable.Facts(lRow);
    aRows.push_back({{"began", TimeOf(aFacts.dtStart)},
                     {"kind", !aFacts.bStarted ? "unknown"
                              : aFacts.bManual ? "manual"
                                               : "auto"},
                     {"whole", aFacts.bWhole},
                     {"seconds", aFacts.lSeconds},
                     {"exact", aFacts.bExact},
                     {"sites", aFacts.lChecks},
                     {"failed", aFacts.lFailures},
                     {"mailsSent", aFacts.lMailsSent},
                     {"mailsFailed", aFacts.lMailsFailed},
                     {"secondsMailAbout", aFacts.lMailSeconds},
                     {"secondsLate", aFacts.lLate},
                     {"longestSite", aFacts.lChecks > 0 ? aTable.LongestSite(lRow) : std::string()},
                     {"longestSeconds", aFacts.lLongest}});
  }
  const auto& aReport = aTable.Report();
  return {{"secondsUsual", aReport.lUsual}, {"secondsInterval", aReport.lInterval},  // 0: not known
          {"secondsWorst", aReport.lWorst}, {"checksUncertain", aReport.lUncertain},
          {"late", aReport.lLate},          {"passes", aRows}};
}

Json JsonOf(const Pace& aPace) {
  return {{"answers", aPace.lAnswers},
          {"median", aPace.lMedian},
          {"most95", aPace.lMost},
          {"longest", aPace.lLongest}};
}

Json JsonOf(const LogPaceTable& aTable) {
  constexpr std::array aTrends{"unknown", "same", "slower", "quicker"};
  Json aRows = Json::array();
  for (const auto& aSite : aTable.Report().aSites) {
    Json aDays = Json::array();
    for (const auto& aDay : aSite.aDays) {
      Json aFigures = JsonOf(aDay.aPace);
      aFigures["day"] = TimeOf(aDay.dtDay).substr(0, 10);
      aDays.push_back(aFigures);
    }
    aRows.push_back({{"site", aSite.szSite},
                     {"all", JsonOf(aSite.aPace)},
                     {"trend", aTrends[static_cast<std::size_t>(aSite.iTrend)]},
                     {"now", JsonOf(aSite.aNow)},
                     {"before", JsonOf(aSite.aBefore)},
                     {"days", aDays}});
  }
  return {{"byWeek", aTable.Report().bByWeek}, {"sites", aRows}};
}

Json JsonOf(const HourReport& aReport) {
  Json aRows = Json::array();
  for (std::size_t lDay = 0; lDay < HourReport::lDays; ++lDay)
    for (std::size_t lHour = 0; lHour < HourReport::lHours; ++lHour) {
      const auto& aCell = aReport.aCells[lDay][lHour];
      aRows.push_back({{"weekday", LogHours::DayName(lDay)},
                       {"hour", lHour},
                       {"checks", aCell.lChecks},
                       {"failuresBegun", aCell.lBegun}});
    }
  return aRows;
}

Json JsonOf(const PeriodFigures& aFigures) {
  return {{"checks", aFigures.lChecks},
          {"answeredWell", aFigures.lWell},
          {"secondsWatched", aFigures.aAvailable.lWatched},
          {"secondsUp", aFigures.aAvailable.lUp},
          {"secondsDown", aFigures.lDown},
          {"outages", aFigures.lOutages}};
}

Json JsonOf(const LogPeriod& aPeriod) {
  return {{"from", TimeOf(aPeriod.dtFrom)}, {"to", TimeOf(aPeriod.dtPast)}};
}

Json JsonOf(const LogPeriodTable& aTable) {
  const auto& aComparison = aTable.Comparison();
  Json aRows = Json::array();
  for (const auto& aSite : aComparison.aSites)
    aRows.push_back({{"site", aSite.szSite}, {"now", JsonOf(aSite.aNow)}, {"before", JsonOf(aSite.aBefore)}});
  return {{"now", JsonOf(aComparison.aNow)}, {"before", JsonOf(aComparison.aBefore)}, {"sites", aRows}};
}

Json JsonOf(WhatIf::Minutes aMinutes) {
  return {{"interval", aMinutes.lInterval}, {"warning", aMinutes.lWarning}};
}

Json JsonOf(const WhatIf& aWhatIf) {
  Json aRows = Json::array();
  for (const auto& aFailure : aWhatIf.Failures())
    aRows.push_back({{"site", aWhatIf.SiteOf(aFailure)},
                     {"firstFailed", TimeOf(aFailure.dtFirst)},
                     {"mailed", TimeOf(aFailure.dtMailed)},
                     {"sent", aFailure.bSent},
                     {"earliest", TimeOf(aFailure.dtEarliest)},
                     {"latest", TimeOf(aFailure.dtLatest)},
                     {"certain", aFailure.Certain()}});
  return {{"asked", JsonOf(aWhatIf.Asked())},
          {"log", JsonOf(aWhatIf.OfLog())},  // 0: it shows no schedule
          {"passes", {aWhatIf.Passes().lLeast, aWhatIf.Passes().lMost}},
          {"passesInLog", aWhatIf.LoggedPasses()},
          {"mails", {aWhatIf.Mails().lLeast, aWhatIf.Mails().lMost}},
          {"mailsInLog", aWhatIf.LoggedMails()},
          {"failures", aRows}};
}

// Sentences, an empty line, the table.
void SayView(StringId iTitle, const std::vector<std::string>& aWords, const std::string& szTable,
             StringId iNote, std::size_t lColumns) {
  auto szText = LoadResString(iTitle) + "\n";
  for (const auto& szSentence : aWords)
    szText += LogTextTable::Lines(Utf8::Clean(szSentence), lColumns);
  if (!szTable.empty()) szText += "\n" + szTable + "\n" + LogTextTable::Lines(LoadResString(iNote), lColumns);
  Report::Say(szText);
}

}  // namespace

LogViews::LogViews(const LogArguments& aTheArguments, const LogHistory& aTheHistory,
                   const LogSummary& aTheSummary, const std::optional<PeriodComparison>& aComparison,
                   std::optional<WhatIf> aTheWhatIf)
    : a(aTheArguments), aHistory(aTheHistory), aSummary(aTheSummary), aWhatIf(std::move(aTheWhatIf)) {
  if (a.bPasses) aPasses.emplace(aHistory);
  if (a.bSlow) aPace.emplace(LogPaces::Of(aHistory, aSummary));
  if (aComparison) aPeriods.emplace(*aComparison);
}

bool LogViews::Any(const LogArguments& a) {
  return a.bPasses || a.bSlow || a.bWhen || !a.szAgainst.empty() || !a.aWhatIf.empty();
}

std::string LogViews::ReadPeriod(const LogArguments& a, const LogHistory& aHistory, LogPeriod& aPeriod) {
  const auto aAll = LogPeriod::Of(aHistory);
  const auto dtFrom =
      a.szFrom.empty() ? aAll.dtFrom : LogPeriod::Moment(a.szFrom, aAll.dtPast, false).value_or(-1);
  // A pass may begin in the last second of the log.
  const auto dtPast =
      a.szTo.empty() ? AddSeconds(aAll.dtPast, 1) : LogPeriod::Moment(a.szTo, aAll.dtPast, true).value_or(-1);
  if (dtFrom < 0 || dtPast < 0) return FillResString(IDS_CLI_LOG_NO_TIME, {dtFrom < 0 ? a.szFrom : a.szTo});
  aPeriod = {dtFrom, dtPast};
  if (dtFrom < dtPast) return {};
  return FillResString(IDS_CLI_LOG_BACKWARDS, {LogWords::Moment(dtFrom), LogWords::Moment(dtPast)});
}

std::string LogViews::Compare(const LogArguments& a, const LogHistory& aHistory, const LogSummary& aSummary,
                              std::optional<PeriodComparison>& aComparison) {
  LogPeriod aNow;
  if (LogPeriod::Of(aHistory).dtFrom <= 0) return LoadResString(IDS_CLI_LOG_NO_START);
  if (auto szWrong = ReadPeriod(a, aHistory, aNow); !szWrong.empty()) return szWrong;
  if (a.szFrom.empty()) aNow.dtFrom = aNow.dtPast - dWeek;
  auto aBefore = aNow.Before();
  if (a.szAgainst != szBefore) {
    const auto dtFrom = LogPeriod::Moment(a.szAgainst, LogPeriod::Of(aHistory).dtPast, false);
    if (!dtFrom) return FillResString(IDS_CLI_LOG_NO_TIME, {a.szAgainst});
    aBefore = {*dtFrom, *dtFrom + aNow.Days()};
  }
  aComparison = LogCompare::Of(aHistory, aSummary, aNow, aBefore);
  return {};
}

const LogGrid* LogViews::Table() const {
  if (aPasses) return &*aPasses;
  if (aPace) return &*aPace;
  if (aPeriods) return &*aPeriods;
  return aWhatIf ? &*aWhatIf : nullptr;
}

void LogViews::Say() const {
  if (a.bJson) {
    SayJson();
    return;
  }
  const auto lColumns = static_cast<std::size_t>(std::max(0, Terminal::Columns()));
  if (aPasses)
    SayView(IDS_LOG_PASSES, aPasses->Words(), aPasses->Text(lColumns), IDS_LOG_PASSES_NOTE, lColumns);
  if (aPace) SayView(IDS_LOG_PACE, aPace->Words(), aPace->Text(lColumns), IDS_LOG_PACE_NOTE, lColumns);
  if (aPeriods)
    SayView(IDS_LOG_PERIODS, aPeriods->Words(), aPeriods->Text(lColumns), IDS_LOG_PERIODS_NOTE, lColumns);
  if (aWhatIf) SayView(IDS_WHAT_IF, aWhatIf->Words(), aWhatIf->Text(lColumns), IDS_WHAT_IF_NOTE, lColumns);
  if (a.bWhen) {
    const auto aReport = LogHours::Of(aHistory, aSummary);
    SayView(IDS_LOG_WHEN, {LogHours::Words(aReport)}, LogHours::Text(aReport, lColumns),
            IDS_LOG_WHEN_TEXT_NOTE, lColumns);
  }
}

void LogViews::SayJson() const {
  Json aAll;
  if (aPasses) aAll["passes"] = JsonOf(*aPasses);
  if (aPace) aAll["slow"] = JsonOf(*aPace);
  if (aPeriods) aAll["against"] = JsonOf(*aPeriods);
  if (aWhatIf) aAll["whatIf"] = JsonOf(*aWhatIf);
  if (a.bWhen) aAll["when"] = JsonOf(LogHours::Of(aHistory, aSummary));
  // ASCII alone, so that no control character a terminal knows gets out.
  Report::Say(aAll.dump(2, ' ', true, nlohmann::json::error_handler_t::replace));
}
