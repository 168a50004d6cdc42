// LogTables: the sites of a summary and its outages as tables: which columns there are, what stands in a cell
// and what comes before what. For page, window and terminal alike. Cells are bytes as logged where they come
// from the log; who shows them makes them fit.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Strings.h"
#include "history/LogSummary.h"

namespace LogTables {

enum class SiteColumn : std::uint8_t {
  Site,
  State,
  Since,
  UpDay,
  UpWeek,
  UpMonth,
  UpAll,
  Outages,
  Hiccups,
  Longest,
  DownTime,
  Share,
  Checks
};
// Those that say something: a stretch of time that the log does not cover is left out.
std::vector<SiteColumn> SiteColumns(const LogSummary& aSummary);
StringId Title(SiteColumn iColumn);
bool IsNumber(SiteColumn iColumn);
std::string Cell(const SiteSummary& aSite, SiteColumn iColumn);
// The state may be older than the log tells, and its cell says so.
bool SinceIsLeast(const SiteSummary& aSite);
// Sorting from the least to the most, by the cell's meaning.
bool Before(const SiteSummary& aLeft, const SiteSummary& aRight, SiteColumn iColumn);

enum class OutageColumn : std::uint8_t { Site, From, To, Length, Answer, Mail };
inline constexpr std::size_t lOutageColumns = 6;
struct OutageRow {
  const SiteSummary* pSite;
  const Outage* pOutage;
};
enum class Runs : std::uint8_t { Outages, Hiccups, Both };
// The latest first.
std::vector<OutageRow> Outages(const LogSummary& aSummary, Runs iWanted = Runs::Outages);
StringId Title(OutageColumn iColumn);
std::string Cell(const OutageRow& aRow, OutageColumn iColumn);
bool Before(const OutageRow& aLeft, const OutageRow& aRight, OutageColumn iColumn);

}  // namespace LogTables
