#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "persistence/Settings.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace CheckLog {

Entry CurrentEntry;

namespace {

std::int32_t lMissingLines = 0;

using namespace LogGrammar;

std::string StartLine(bool bManual) {
  return std::string(bManual ? szStartManual : szStartAuto) + FormatGeneral(Clock::Now()).append(szStartEnd);
}

// The fields go out as they are, HTML included; only what would break the line in two is replaced.
std::string EntryLine() {
  const auto& aEntry = CurrentEntry;
  // The seconds hand of the elapsed time, not its total: 75 seconds are logged as 15.
  const auto lElapsed = std::max<std::int64_t>(0, SecondsBetween(aEntry.CheckTime, Clock::Now())) % 60;
  return FormatGeneral(aEntry.CheckTime) + chField + Text::Printable(aEntry.Address) + chField +
         Text::Printable(aEntry.StatusText.Text()) + chField + std::to_string(lElapsed) + chField +
         Text::Printable(aEntry.Comment) + chField + std::to_string(aEntry.ResultClass);
}

}  // namespace

void AddComment(const std::string& szNew) {
  if (!CurrentEntry.Comment.empty()) CurrentEntry.Comment += szRemark;
  CurrentEntry.Comment += szNew;
}

void WriteLog(bool bWriteStart, bool bWriteStartManual, bool bWriteEnd) {
  if (Settings.LogPeriod == 0) return;
  auto szLine = bWriteStart ? StartLine(bWriteStartManual) : bWriteEnd ? std::string(szEnd) : EntryLine();
  if (!Files::Append(CurrentLogFile, szLine.append(szLineEnd))) ++lMissingLines;
}

std::int32_t TakeMissingLines() {
  return std::exchange(lMissingLines, 0);
}

}  // namespace CheckLog
