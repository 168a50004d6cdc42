// LogSummaryText: a summary for the terminal, lines ended by "\n". What comes from the log cannot control the
// terminal.
#pragma once

#include <string>

#include "history/LogSummary.h"

namespace LogSummaryText {
std::string Compose(const LogSummary& aSummary);
}  // namespace LogSummaryText
