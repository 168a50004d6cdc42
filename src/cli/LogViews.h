// LogViews: what log shows of passes, of how long sites take, of the hours in which failures begin, of two
// periods side by side, and of other intervals; as sentences and tables, or as one JSON object each.
#pragma once

#include <optional>
#include <string>

#include "cli/CliCommands.h"
#include "cli/WhatIf.h"
#include "history/LogPaceTable.h"
#include "history/LogPassTable.h"
#include "history/LogPeriodTable.h"

class LogViews {
 public:
  // Makes what is asked for. The history and the summary have to stay.
  LogViews(const CliCommands::LogArguments& aTheArguments, const LogHistory& aTheHistory,
           const LogSummary& aTheSummary, const std::optional<PeriodComparison>& aComparison,
           std::optional<WhatIf> aTheWhatIf);

  static bool Any(const CliCommands::LogArguments& a);
  // The time asked for with --from and --to; the whole log's where neither is given. Else a sentence that
  // says what is wrong.
  static std::string ReadPeriod(const CliCommands::LogArguments& a, const LogHistory& aHistory,
                                LogPeriod& aPeriod);
  // The two periods of --against, over the whole history. Else such a sentence.
  static std::string Compare(const CliCommands::LogArguments& a, const LogHistory& aHistory,
                             const LogSummary& aSummary, std::optional<PeriodComparison>& aComparison);

  void Say() const;
  // The first of the tables that are asked for; nullptr: none is.
  const LogGrid* Table() const;

 private:
  void SayJson() const;

  const CliCommands::LogArguments& a;
  const LogHistory& aHistory;
  const LogSummary& aSummary;
  std::optional<LogPassTable> aPasses;
  std::optional<LogPaceTable> aPace;
  std::optional<LogPeriodTable> aPeriods;
  std::optional<WhatIf> aWhatIf;
};
