#include <algorithm>
#include <stdexcept>

#include "base/Text.h"
#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "persistence/Settings.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace CheckLog {

std::string CurrentLogFile;

namespace {

std::string NameForToday() {
  const auto dtNow = Clock::Now();
  switch (Settings.LogPeriod) {
    case 1:
      return "D-" + FormatDay(dtNow) + LogGrammar::szFileEnding;
    case 3:
      return "M-" + FormatMonth(dtNow) + LogGrammar::szFileEnding;
    default:
      return "W-" + FormatDay(AddDays(dtNow, 1 - SplitDateTime(dtNow).lWeekday)) + LogGrammar::szFileEnding;
  }
}

// False when no file is left to delete.
bool DeleteFirstListed(const std::string& szCurrentName) {
  const auto aNames = Files::List(Settings.LogPath, LogGrammar::szFileEnding);
  const auto pName = std::find_if(aNames.begin(), aNames.end(), [&](const std::string& szName) {
    return !Text::EqualNoCase(szName, szCurrentName);
  });
  if (pName == aNames.end()) return false;
  const auto szPath = Settings.LogPath + Files::chSeparator + *pName;
  // A file that somebody else has just deleted counts as well.
  if (Files::Delete(szPath) == Files::Deletion::Failed)
    throw std::runtime_error("cannot delete the log file " + szPath);
  return true;
}

// Makes room so that MaxLogFiles remain once the current file is there. Files go in listing order, which by
// their names means daily before weekly and old before new; the current one stays.
void PruneLogFiles(const std::string& szCurrentName) {
  auto lDelete = static_cast<std::int64_t>(Files::List(Settings.LogPath, LogGrammar::szFileEnding).size()) -
                 Settings.MaxLogFiles + (Files::FileExists(CurrentLogFile) ? 0 : 1);
  while (lDelete > 0 && DeleteFirstListed(szCurrentName))
    --lDelete;
}

}  // namespace

void GetLogFileName(bool bDeleteFiles) {
  const auto szName = NameForToday();
  CurrentLogFile = Settings.LogPath + Files::chSeparator + szName;
  if (bDeleteFiles && Settings.DiskLogMaxFiles == 1 && Settings.LogPeriod != 0) PruneLogFiles(szName);
}

}  // namespace CheckLog
