#include <algorithm>

#include "base/Text.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace CheckLog {

Entry CurrentEntry;

namespace {

std::string StartLine(bool bManual) {
  return std::string("[START CHECK: ") + (bManual ? "MANUAL" : "AUTO") + " - " + FormatGeneral(Clock::Now()) +
         "]";
}

// The fields go out as they are, HTML included; only what would break the line in two is replaced.
std::string EntryLine() {
  const auto& aEntry = CurrentEntry;
  // The seconds hand of the elapsed time, not its total: 75 seconds are logged as 15.
  const auto lElapsed = std::max<std::int64_t>(0, SecondsBetween(aEntry.CheckTime, Clock::Now())) % 60;
  return FormatGeneral(aEntry.CheckTime) + "," + Text::Printable(aEntry.Address) + "," +
         Text::Printable(aEntry.StatusText) + "," + std::to_string(lElapsed) + "," +
         Text::Printable(aEntry.Comment) + "," + std::to_string(aEntry.ResultClass);
}

}  // namespace

void AddComment(const std::string& szRemark) {
  if (!CurrentEntry.Comment.empty()) CurrentEntry.Comment += "; ";
  CurrentEntry.Comment += szRemark;
}

void WriteLog(bool bWriteStart, bool bWriteStartManual, bool bWriteEnd) {
  if (Settings.LogPeriod == 0) return;
  const auto szLine = bWriteStart ? StartLine(bWriteStartManual) : bWriteEnd ? "[END CHECK]" : EntryLine();
  Files::Append(CurrentLogFile, szLine + "\r\n");
}

}  // namespace CheckLog
