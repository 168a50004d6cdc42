// log: check logs as lines, as a summary, as a page and as a table.
#include <algorithm>
#include <iostream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "base/Strings.h"
#include "base/Text.h"
#include "cli/CliCommands.h"
#include "cli/LogViews.h"
#include "cli/Report.h"
#include "history/LogCsv.h"
#include "history/LogFiles.h"
#include "history/LogFilter.h"
#include "history/LogHistory.h"
#include "history/LogHtml.h"
#include "history/LogPeriod.h"
#include "history/LogSummary.h"
#include "history/LogSummaryText.h"
#include "history/LogTextTable.h"
#include "history/LogWords.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Terminal.h"

namespace {

using CliCommands::LogArguments;

constexpr std::string_view szStandard = "-";
constexpr std::string_view szEveryEntry = "all";

// What is wrong with the names, as a sentence; empty when nothing is. Checked before anything is written.
std::string WrongNames(const LogArguments& a) {
  for (const auto& szOutput : {a.szHtml, a.szCsv})
    if (LogFiles::NamesLog(szOutput)) return FillResString(IDS_CLI_SAME_FILE, {szOutput});
  for (const auto& szFile : a.aFiles) {
    if (szFile != szStandard && !Files::FileExists(szFile) && !Files::FolderExists(szFile))
      return FillResString(IDS_CLI_CANNOT_READ, {szFile});
    for (const auto& szOutput : {a.szHtml, a.szCsv})
      if (!szOutput.empty() && szOutput != szStandard && Files::Same(szFile, szOutput))
        return FillResString(IDS_CLI_SAME_FILE, {szOutput});
  }
  if (!a.szHtml.empty() && Files::Same(a.szHtml, a.szCsv))
    return FillResString(IDS_CLI_SAME_OUTPUT, {a.szHtml});
  return {};
}

// A sentence that says why the logs cannot be used; empty when they can.
std::string Read(const std::vector<std::string>& aNames, LogHistory& aHistory) {
  std::vector<std::string> aFiles;
  for (const auto& szName : aNames)
    if (szName != szStandard) aFiles.push_back(szName);
  aHistory.Open(aFiles);
  // A history with a hole in it would count wrongly, so one file that cannot be read is enough to give up.
  if (!aHistory.Problems().empty())
    return FillResString(IDS_CLI_CANNOT_READ, {aHistory.Problems().front().szPath});
  if (aFiles.size() < aNames.size())
    aHistory.Add(std::string(szStandard), std::string(std::istreambuf_iterator<char>(std::cin), {}));
  if (aHistory.FileCount() == 0) return FillResString(IDS_CLI_NO_LOGS, {aNames.front()});
  for (std::uint32_t lFile = 0; lFile < aHistory.FileCount(); ++lFile) {
    const auto& aLines = aHistory.File(lFile).Lines();
    if (!aLines.empty() &&
        std::ranges::count(aLines, LineKind::Unread, &LogLine::iKind) == std::ssize(aLines))
      return FillResString(IDS_CLI_LOG_NOT_A_LOG, {aHistory.File(lFile).Path()});
  }
  return {};
}

// Only the passes asked for; a sentence where none is.
std::string KeepPeriod(const LogArguments& a, LogHistory& aHistory) {
  if (a.szFrom.empty() && a.szTo.empty()) return {};
  LogPeriod aPeriod;
  if (auto szWrong = LogViews::ReadPeriod(a, aHistory, aPeriod); !szWrong.empty()) return szWrong;
  const auto aAll = LogPeriod::Of(aHistory);
  aHistory.Keep(aPeriod);
  if (!aHistory.Passes().empty()) return {};
  return FillResString(IDS_CLI_LOG_NO_PASS,
                       {LogWords::Moment(aPeriod.dtFrom), LogWords::Moment(aPeriod.dtPast),
                        LogWords::Moment(aAll.dtFrom), LogWords::Moment(aAll.dtPast)});
}

// Which of the log's sites are asked for, by their numbers; none where no address holds the text.
std::vector<bool> Wanted(const LogHistory& aHistory, const std::string& szSite) {
  std::vector<bool> aWanted;
  const auto szLowered = Text::LowerCase(SiteOfAddress(szSite));
  for (const auto& szKnown : aHistory.Sites())
    aWanted.push_back(Text::LowerCase(szKnown).find(szLowered) != std::string::npos);
  return aWanted;
}

void LeaveWanted(LogSummary& aSummary, const LogHistory& aHistory, const std::vector<bool>& aWanted) {
  if (std::ranges::count(aWanted, false) == 0) return;
  std::erase_if(aSummary.aSites, [&](const auto& aSite) {
    const auto aFound = std::ranges::find(aHistory.Sites(), aSite.szSite);
    return !aWanted[static_cast<std::size_t>(aFound - aHistory.Sites().begin())];
  });
}

std::string SitesOf(const LogHistory& aHistory) {
  constexpr std::size_t lMostNamed = 10;
  std::string szAll;
  for (std::size_t i = 0; i < std::min(aHistory.Sites().size(), lMostNamed); ++i)
    szAll += (i > 0 ? ", " : "") + aHistory.Sites()[i];
  return szAll + (aHistory.Sites().size() > lMostNamed ? ", ..." : "");
}

bool Write(const std::string& szName, const std::string& szText) {
  if (szName == szStandard) {
    std::cout << szText;
    return true;
  }
  if (!Files::WriteWhole(szName, szText)) return false;
  Report::Say(FillResString(IDS_CLI_FILE_WRITTEN, {Text::Printable(szName)}));
  return true;
}

nlohmann::ordered_json JsonOf(const Outage& aOutage) {
  nlohmann::ordered_json aMails = nlohmann::ordered_json::array();
  for (const auto& aMail : aOutage.aMails)
    aMails.push_back({{"time", LogWords::MomentForSorting(aMail.dtMoment)}, {"sent", aMail.bSent}});
  return {{"from", LogWords::MomentForSorting(aOutage.dtFrom)},
          {"to", LogWords::MomentForSorting(aOutage.dtTo)},
          {"over", aOutage.iEnd == OutageEnd::Recovered},
          {"outage", aOutage.bDown},
          {"seconds", aOutage.lSeconds},
          {"secondsNotWatched", aOutage.lUnwatched},
          {"failedChecks", aOutage.lFailures},
          {"answer", aOutage.szText},
          {"mails", aMails}};
}

nlohmann::ordered_json JsonOf(const SiteSummary& aSite) {
  auto aAvailable = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < aAvailabilityDays.size(); ++i)
    aAvailable.push_back({{"days", aAvailabilityDays[i]},  // 0: the whole log
                          {"secondsUp", aSite.aAvailability[i].lUp},
                          {"secondsWatched", aSite.aAvailability[i].lWatched}});
  auto aFailures = nlohmann::ordered_json::array();
  for (const auto* pRuns : {&aSite.aOutages, &aSite.aHiccups})
    for (const auto& aRun : *pRuns)
      aFailures.push_back(JsonOf(aRun));
  return {
      {"site", aSite.szSite},
      {"state", LogWords::State(aSite)},
      {"since", aSite.dtSince > 0 ? LogWords::MomentForSorting(aSite.dtSince) : std::string()},
      {"lastCheck", aSite.dtLastCheck > 0 ? LogWords::MomentForSorting(aSite.dtLastCheck) : std::string()},
      {"checks", aSite.lChecks},
      {"answeredWell", aSite.lSuccesses},
      {"availability", aAvailable},
      {"failures", aFailures}};
}

void SayJson(const nlohmann::ordered_json& aValue, int iIndent) {
  // ASCII alone, so that no control character a terminal knows gets out.
  Report::Say(aValue.dump(iIndent, ' ', true, nlohmann::json::error_handler_t::replace));
}

void SayEntryAsJson(const LogHistory& aHistory, LogHistory::LineRef aRef) {
  const auto& aLine = aHistory.Line(aRef);
  const auto aFields = aHistory.Fields(aRef);
  SayJson({{"time", aLine.bTimeKnown ? LogWords::MomentForSorting(aLine.dtMoment) : std::string()},
           {"site", aHistory.Sites()[aLine.lSite]},
           {"outcome", LoadResString(LogWords::OutcomeName(aLine.iOutcome))},
           {"answer", LogWords::PlainField(LogWords::Answer(aFields.StatusText))},
           {"remarks", LogWords::PlainField(aFields.Comment)}},
          -1);
}

// The lines of the log; of some sites, or for a script, only its entries.
void SayLines(const LogArguments& a, const LogHistory& aHistory, const std::vector<bool>& aWanted) {
  LogFilter aFilter;
  if (a.bFailures) aFilter.lOutcomes = LogFilter::lFailures;
  for (const auto aRef : aFilter.Apply(aHistory)) {
    const auto& aLine = aHistory.Line(aRef);
    const bool bEntry = aLine.iKind == LineKind::Entry;
    if (bEntry ? !aWanted[aLine.lSite] : a.bJson || !a.szSite.empty()) continue;
    if (a.bJson)
      SayEntryAsJson(aHistory, aRef);
    else
      Report::Say(Text::Printable(aHistory.Text(aRef)));
  }
}

std::string Compare(const LogArguments& a, const LogHistory& aHistory, const std::vector<bool>& aWanted,
                    std::optional<PeriodComparison>& aComparison) {
  auto aSummary = Summarise(aHistory);
  LeaveWanted(aSummary, aHistory, aWanted);
  return LogViews::Compare(a, aHistory, aSummary, aComparison);
}

std::string WithoutLineEnd(const std::string& szLines) {
  return szLines.substr(0, szLines.size() - 1);
}

// What goes to the terminal, if anything is asked for or no file is.
void Show(const LogArguments& a, const LogHistory& aHistory, const LogSummary& aSummary,
          const std::vector<bool>& aWanted) {
  const auto lColumns = static_cast<std::size_t>(std::max(0, Terminal::Columns()));
  const bool bSummary = a.bSummary || a.bOutages;
  if (bSummary && a.bJson) {
    auto aSites = nlohmann::ordered_json::array();
    for (const auto& aSite : aSummary.aSites)
      aSites.push_back(JsonOf(aSite));
    SayJson(aSites, 2);
  } else if (a.bSummary) {
    Report::Say(LogSummaryText::Compose(aSummary, Clock::Now(), lColumns));
    const auto szBudget = LogPassTable::Budget(LogPasses::Lengths(aHistory));
    if (!szBudget.empty()) Report::Say(WithoutLineEnd(LogTextTable::Lines(szBudget, lColumns)));
  } else if (a.bOutages) {
    const auto szTable = LogSummaryText::Outages(aSummary, LogTables::Runs::Outages, lColumns);
    Report::Say(szTable.empty() ? std::string(LoadResString(IDS_CLI_LOG_NO_OUTAGES))
                                : WithoutLineEnd(szTable));
  }
  const bool bAnyFile = !a.szHtml.empty() || !a.szCsv.empty();
  if (a.bFailures || (!bSummary && !LogViews::Any(a) && (a.bJson || !bAnyFile)))
    SayLines(a, aHistory, aWanted);
}

}  // namespace

int CliCommands::Log(LogArguments a) {
  if (a.aFiles.empty()) {
    if (!Report::OpenToLook()) return Report::iFailed;
    a.aFiles.push_back(LogFiles::MonitorFolder());
    if (a.aFiles.front().empty()) return Report::Fail(LoadResString(IDS_CLI_LOG_NO_FOLDER));
  }
  std::string szWrong = WrongNames(a);
  WhatIf::Minutes aMinutes;
  if (szWrong.empty()) szWrong = WhatIf::Read(a.aWhatIf, aMinutes);
  if (!szWrong.empty()) return Report::Fail(szWrong);
  LogHistory aHistory;
  szWrong = Read(a.aFiles, aHistory);
  const auto aWanted = Wanted(aHistory, a.szSite);
  std::optional<PeriodComparison> aComparison;
  if (szWrong.empty() && !a.szAgainst.empty()) szWrong = Compare(a, aHistory, aWanted, aComparison);
  if (szWrong.empty()) szWrong = KeepPeriod(a, aHistory);
  if (!szWrong.empty()) return Report::Fail(szWrong);

  if (!a.szSite.empty() && std::ranges::count(aWanted, true) == 0)
    return Report::Fail(FillResString(IDS_CLI_LOG_NO_SITE, {a.szSite, SitesOf(aHistory)}));
  LogSummary aSummary = Summarise(aHistory);
  std::optional<WhatIf> aWhatIf;
  if (!a.aWhatIf.empty()) aWhatIf.emplace(aHistory, aSummary, aMinutes, aWanted);
  LeaveWanted(aSummary, aHistory, aWanted);
  const LogViews aViews(a, aHistory, aSummary, aComparison, std::move(aWhatIf));
  LogHtml::Limits aLimits;
  aLimits.bEveryEntry = !a.szEntries.empty();
  if (a.szEntries == szEveryEntry) {
    aLimits.lLines = aHistory.Lines().size();
    aLimits.lPaceDays = std::numeric_limits<int>::max();
  } else if (aLimits.bEveryEntry) {
    aLimits.lLines = static_cast<std::size_t>(Text::LeadingNumber(a.szEntries));
  }
  if (!a.szHtml.empty() && !Write(a.szHtml, LogHtml::Compose(aHistory, aSummary, aLimits)))
    return Report::Fail(FillResString(IDS_CLI_CANNOT_WRITE, {a.szHtml}));
  const auto* const pTable = aViews.Table();
  if (!a.szCsv.empty() && !Write(a.szCsv, pTable ? pTable->Csv() : LogCsv::Compose(aHistory)))
    return Report::Fail(FillResString(IDS_CLI_CANNOT_WRITE, {a.szCsv}));
  Show(a, aHistory, aSummary, aWanted);
  if (LogViews::Any(a) && (a.bJson || a.szCsv != szStandard)) aViews.Say();
  return Report::iAllUp;
}
