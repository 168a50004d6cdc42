// LogCsv: a history as one table for a spreadsheet (RFC 4180: commas, CR LF, quotes doubled, a header row).
// Every entry and every unread line is in it. A cell that a spreadsheet would take for a formula begins with
// a quote mark instead. UTF-8; a byte-order mark stands in front only where a character beyond ASCII makes it
// necessary.
#pragma once

#include <string>
#include <string_view>

#include "history/LogHistory.h"

namespace LogCsv {

std::string Compose(const LogHistory& aHistory);

// False: it could not be written; an older file of that name stands.
bool Write(const std::string& szPath, const LogHistory& aHistory);

// One cell, quoted where it has to be.
std::string Cell(std::string_view szText);

}  // namespace LogCsv
