// LogSummaryText: a summary for the terminal, lines ended by "\n". What comes from the log cannot control the
// terminal.
#pragma once

#include <string>

#include "history/LogSummary.h"
#include "history/LogTables.h"

namespace LogSummaryText {
// How things stand, the facts, the sites and the outages. lColumns: as wide as all may be, 0 for as wide as
// it gets; sentences are broken, names are cut in the middle, then columns left out, until it fits or nothing
// more can go.
std::string Compose(const LogSummary& aSummary, DateTime dtNow, std::size_t lColumns = 0);
std::string Sites(const LogSummary& aSummary, std::size_t lColumns = 0);
std::string Outages(const LogSummary& aSummary, LogTables::Runs iWanted, std::size_t lColumns = 0);
}  // namespace LogSummaryText
