#include "history/LogFacts.h"

#include <algorithm>

#include "history/LogTables.h"
#include "history/LogWords.h"

namespace {

using LogWords::Count;
using LogWords::Moment;

// Of all sites together, the stretches that the log covers.
std::string Available(const LogSummary& aSummary) {
  std::string szAll;
  for (std::size_t i = 0; i < aAvailabilityDays.size(); ++i) {
    const auto lDays = aAvailabilityDays[i];
    if (lDays > 0 && aSummary.dtTo - aSummary.dtFrom <= lDays) continue;
    Availability aSum;
    for (const auto& aSite : aSummary.aSites) {
      aSum.lUp += aSite.aAvailability[i].lUp;
      aSum.lWatched += aSite.aAvailability[i].lWatched;
    }
    constexpr std::array aNames{IDS_LOG_FACT_UP_DAY, IDS_LOG_FACT_UP_WEEK, IDS_LOG_FACT_UP_MONTH,
                                IDS_LOG_FACT_UP_ALL};
    szAll += (szAll.empty() ? "" : ", ") + FillResString(aNames[i], {LogWords::Share(aSum)});
  }
  return szAll;
}

std::string Failures(const LogSummary& aSummary) {
  std::size_t lOutages = 0, lHiccups = 0;
  std::int64_t lDown = 0, lOnce = 0;
  for (const auto& aSite : aSummary.aSites) {
    lOutages += aSite.aOutages.size();
    lHiccups += aSite.aHiccups.size();
    lDown += aSite.lDownSeconds;
    lOnce += aSite.lHiccupSeconds;
  }
  return FillResString(IDS_LOG_FACT_OUTAGES_VALUE,
                       {Count(lOutages), LogWords::Length(lDown), Count(lHiccups), LogWords::Length(lOnce)});
}

// How many, and then the last that could not be sent, by time and site.
std::vector<std::string> Mails(const LogSummary& aSummary) {
  constexpr std::size_t lMostNamed = 10;
  struct Failed {
    DateTime dtMoment;
    const SiteSummary* pSite;
  };
  std::vector<Failed> aFailed;
  for (const auto& aRow : LogTables::Outages(aSummary, LogTables::Runs::Both))
    for (const auto& aMail : aRow.pOutage->aMails)
      if (!aMail.bSent) aFailed.push_back({aMail.dtMoment, aRow.pSite});
  std::ranges::stable_sort(aFailed, std::ranges::greater(), &Failed::dtMoment);
  std::vector<std::string> aLines{
      FillResString(IDS_LOG_FACT_MAILS_VALUE, {Count(aSummary.lMailsSent), Count(aSummary.lMailsFailed)})};
  for (const auto& aMail : aFailed) {
    if (aLines.size() > lMostNamed) break;
    aLines.push_back(
        FillResString(IDS_LOG_FACT_MAIL_FAILED, {LogWords::Name(*aMail.pSite), Moment(aMail.dtMoment)}));
  }
  return aLines;
}

}  // namespace

std::vector<LogFacts::Fact> LogFacts::Of(const LogSummary& aSummary) {
  std::vector<Fact> aFacts;
  const auto Add = [&](StringId iName, std::vector<std::string> aLines, std::string szNote = {}) {
    aFacts.push_back({iName, std::move(aLines), std::move(szNote)});
  };
  if (aSummary.dtFrom > 0)
    Add(IDS_LOG_FACT_COVERED,
        {FillResString(IDS_LOG_SPAN, {Moment(aSummary.dtFrom), Moment(aSummary.dtTo)})});
  Add(IDS_LOG_FACT_PASSES,
      {FillResString(IDS_LOG_FACT_PASSES_VALUE, {Count(aSummary.lAutomatic + aSummary.lManual),
                                                 Count(aSummary.lAutomatic), Count(aSummary.lManual)})});
  if (!aSummary.aSites.empty()) {
    Add(IDS_LOG_FACT_UP, {Available(aSummary)});
    Add(IDS_LOG_FACT_CHECKS, {LogWords::Checks(aSummary)});
    Add(IDS_LOG_OUTAGES, {Failures(aSummary)});
  }
  Add(IDS_LOG_FACT_MAILS, Mails(aSummary));
  if (aSummary.lEntries > 0 && aSummary.aGaps.empty())
    Add(IDS_LOG_FACT_GAPS, {LoadResString(IDS_LOG_FACT_GAPS_NONE)});
  if (!aSummary.aGaps.empty())
    Add(IDS_LOG_FACT_GAPS, LogWords::Gaps(aSummary), LoadResString(IDS_LOG_FACT_GAPS_NOTE));
  if (aSummary.lUnreached > 0)
    Add(IDS_LOG_FACT_UNREACHED,
        {FillResString(IDS_LOG_FACT_UNREACHED_VALUE,
                       {Count(aSummary.lUnreached), Count(aSummary.lAutomatic + aSummary.lManual),
                        Moment(aSummary.dtLastUnreached)})});
  if (aSummary.lEndless + aSummary.lStartless > 0)
    Add(IDS_LOG_FACT_BROKEN_OFF, {LogWords::BrokenOff(aSummary)});
  if (aSummary.lPartial > 0) Add(IDS_LOG_FACT_PARTIAL, {LogWords::ChosenSites(aSummary)});
  if (aSummary.lUnread > 0)
    Add(IDS_LOG_FACT_UNREAD, {FillResString(IDS_LOG_FACT_UNREAD_VALUE, {Count(aSummary.lUnread)})});
  return aFacts;
}
