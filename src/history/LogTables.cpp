#include "history/LogTables.h"

#include <algorithm>
#include <array>

#include "history/LogWords.h"

namespace {

using namespace LogTables;

std::size_t Index(SiteColumn iColumn) {
  return static_cast<std::size_t>(iColumn);
}

const Availability& AvailabilityOf(const SiteSummary& aSite, SiteColumn iColumn) {
  return aSite.aAvailability[Index(iColumn) - Index(SiteColumn::UpDay)];
}

std::string Since(const SiteSummary& aSite) {
  if (aSite.dtSince <= 0) return {};
  const auto szSince = LogWords::Moment(aSite.dtSince);
  return SinceIsLeast(aSite) ? FillResString(IDS_LOG_SINCE_LEAST, {szSince}) : szSince;
}

// What a column is sorted by; the two of text are not.
double Key(const SiteSummary& aSite, SiteColumn iColumn) {
  const auto Part = [](std::int64_t lPart, std::int64_t lWhole) {
    return lWhole > 0 ? static_cast<double>(lPart) / static_cast<double>(lWhole) : -1;
  };
  switch (iColumn) {
    case SiteColumn::Since:
      return aSite.dtSince;
    case SiteColumn::UpDay:
    case SiteColumn::UpWeek:
    case SiteColumn::UpMonth:
    case SiteColumn::UpAll: {
      const auto& aPart = AvailabilityOf(aSite, iColumn);
      return Part(aPart.lUp, aPart.lWatched);
    }
    case SiteColumn::Share:
      return Part(aSite.lSuccesses, aSite.lChecks);
    case SiteColumn::Checks:
      return aSite.lChecks;
    case SiteColumn::Outages:
      return static_cast<double>(aSite.aOutages.size());
    case SiteColumn::Hiccups:
      return static_cast<double>(aSite.aHiccups.size());
    case SiteColumn::Longest:
      return aSite.Longest() ? static_cast<double>(aSite.Longest()->lSeconds) : -1;
    default:
      return aSite.aOutages.empty() ? -1 : static_cast<double>(aSite.lDownSeconds);
  }
}

}  // namespace

std::vector<LogTables::SiteColumn> LogTables::SiteColumns(const LogSummary& aSummary) {
  std::vector<SiteColumn> aColumns;
  for (auto i = Index(SiteColumn::Site); i <= Index(SiteColumn::Checks); ++i) {
    const auto iColumn = static_cast<SiteColumn>(i);
    const bool bStretch = iColumn >= SiteColumn::UpDay && iColumn < SiteColumn::UpAll;
    const auto lDays = bStretch ? aAvailabilityDays[i - Index(SiteColumn::UpDay)] : 0;
    if (!bStretch || aSummary.dtTo - aSummary.dtFrom > lDays) aColumns.push_back(iColumn);
  }
  return aColumns;
}

StringId LogTables::Title(SiteColumn iColumn) {
  constexpr std::array aTitles{
      IDS_LOG_COL_SITE,      IDS_LOG_COL_NOW,    IDS_LOG_COL_SINCE,   IDS_LOG_COL_UP_DAY, IDS_LOG_COL_UP_WEEK,
      IDS_LOG_COL_UP_MONTH,  IDS_LOG_COL_UP_ALL, IDS_LOG_COL_OUTAGES, IDS_LOG_WARNINGS,   IDS_LOG_COL_LONGEST,
      IDS_LOG_COL_DOWN_TIME, IDS_LOG_COL_SHARE,  IDS_LOG_COL_CHECKS};
  return aTitles[Index(iColumn)];
}

bool LogTables::IsNumber(SiteColumn iColumn) {
  return iColumn >= SiteColumn::UpDay;
}

bool LogTables::SinceIsLeast(const SiteSummary& aSite) {
  return aSite.dtSince > 0 && !aSite.bSinceKnown && aSite.iCurrent != SiteState::Unwatched;
}

std::string LogTables::Cell(const SiteSummary& aSite, SiteColumn iColumn) {
  switch (iColumn) {
    case SiteColumn::Site:
      return aSite.szSite;
    case SiteColumn::State:
      return LogWords::State(aSite);
    case SiteColumn::Since:
      return Since(aSite);
    case SiteColumn::UpDay:
    case SiteColumn::UpWeek:
    case SiteColumn::UpMonth:
    case SiteColumn::UpAll:
      return LogWords::Share(AvailabilityOf(aSite, iColumn));
    case SiteColumn::Share:
      return LogWords::Share(aSite.lSuccesses, aSite.lChecks);
    case SiteColumn::Checks:
      return LogWords::Count(aSite.lChecks);
    case SiteColumn::Outages:
      return LogWords::Count(aSite.aOutages.size());
    case SiteColumn::Hiccups:
      return LogWords::Count(aSite.aHiccups.size());
    case SiteColumn::Longest:
      return aSite.Longest() ? LogWords::Length(aSite.Longest()->lSeconds) : "-";
    default:
      return aSite.aOutages.empty() ? "-" : LogWords::Length(aSite.lDownSeconds);
  }
}

bool LogTables::Before(const SiteSummary& aLeft, const SiteSummary& aRight, SiteColumn iColumn) {
  if (iColumn == SiteColumn::Site) return aLeft.szSite < aRight.szSite;
  if (iColumn == SiteColumn::State) return LogWords::Rank(aLeft.iCurrent) < LogWords::Rank(aRight.iCurrent);
  return Key(aLeft, iColumn) < Key(aRight, iColumn);
}

std::vector<LogTables::OutageRow> LogTables::Outages(const LogSummary& aSummary, Runs iWanted) {
  std::vector<OutageRow> aRows;
  for (const auto& aSite : aSummary.aSites) {
    if (iWanted != Runs::Hiccups)
      for (const auto& aOutage : aSite.aOutages)
        aRows.push_back({&aSite, &aOutage});
    if (iWanted != Runs::Outages)
      for (const auto& aHiccup : aSite.aHiccups)
        aRows.push_back({&aSite, &aHiccup});
  }
  std::ranges::stable_sort(aRows, [](const OutageRow& aLeft, const OutageRow& aRight) {
    return aLeft.pOutage->dtFrom > aRight.pOutage->dtFrom;
  });
  return aRows;
}

StringId LogTables::Title(OutageColumn iColumn) {
  constexpr std::array<StringId, lOutageColumns> aTitles{IDS_LOG_COL_SITE, IDS_LOG_COL_FROM,
                                                         IDS_LOG_COL_TO,   IDS_LOG_COL_LENGTH,
                                                         IDS_LOG_COL_WHAT, IDS_LOG_COL_MAIL};
  return aTitles[static_cast<std::size_t>(iColumn)];
}

std::string LogTables::Cell(const OutageRow& aRow, OutageColumn iColumn) {
  const auto& aOutage = *aRow.pOutage;
  switch (iColumn) {
    case OutageColumn::Site:
      return aRow.pSite->szSite;
    case OutageColumn::From: {
      const auto szFrom = LogWords::Moment(aOutage.dtFrom);
      return aOutage.bStartKnown ? szFrom : FillResString(IDS_LOG_OR_EARLIER, {szFrom});
    }
    case OutageColumn::To:
      return LogWords::OutageEndWords(aOutage);
    case OutageColumn::Length:
      return LogWords::OutageLength(aOutage);
    case OutageColumn::Answer:
      return aOutage.szText;
    default:
      return LogWords::Mails(aOutage);
  }
}

bool LogTables::Before(const OutageRow& aLeft, const OutageRow& aRight, OutageColumn iColumn) {
  const auto &aOne = *aLeft.pOutage, &aOther = *aRight.pOutage;
  switch (iColumn) {
    case OutageColumn::Site:
      return aLeft.pSite->szSite < aRight.pSite->szSite;
    case OutageColumn::From:
      return aOne.dtFrom < aOther.dtFrom;
    case OutageColumn::To:
      return aOne.dtTo < aOther.dtTo;
    case OutageColumn::Length:
      return aOne.lSeconds < aOther.lSeconds;
    case OutageColumn::Answer:
      return aOne.szText < aOther.szText;
    default:
      return Cell(aLeft, iColumn) < Cell(aRight, iColumn);
  }
}
