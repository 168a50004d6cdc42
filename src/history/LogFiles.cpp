#include "history/LogFiles.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <utility>

#include "base/DateTime.h"
#include "base/Text.h"
#include "log/LogGrammar.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Shell.h"

namespace {

bool IsLog(const std::string& szPath) {
  if (LogFiles::NamesLog(szPath) || Files::FolderExists(szPath)) return true;
  if (Text::EndsWithNoCase(szPath, ".htm") || Text::EndsWithNoCase(szPath, ".html")) return false;
  constexpr auto szStart = LogGrammar::szStart;
  return Files::FileExists(szPath) && Files::ReadPiece(szPath, 0, szStart.size()) == szStart;
}

bool IsPage(const std::string& szPath) {
  return Text::EndsWithNoCase(szPath, ".htm") || Text::EndsWithNoCase(szPath, ".html");
}

struct Span {
  DateTime dtFirst = 0, dtLast = 0;  // days
};

// "D-20260105.kvl", "W-20260104.kvl", "M-202601.kvl".
std::optional<Span> SpanOf(const std::string& szName) {
  const std::size_t lDigits = szName.size() < 2 || szName[0] != 'M' ? 8 : 6;
  if (szName.size() != lDigits + 2 + sizeof LogGrammar::szFileEnding - 1 || szName[1] != '-' ||
      !Text::IsDigits(szName.substr(2, lDigits)))
    return {};
  DateParts aParts{};
  aParts.lYear = Text::LeadingNumber(szName.substr(2, 4));
  aParts.lMonth = Text::LeadingNumber(szName.substr(6, 2));
  aParts.lDay = lDigits == 8 ? Text::LeadingNumber(szName.substr(8, 2)) : 1;
  aParts.lHour = aParts.lMinute = aParts.lSecond = 0;
  const auto dtFirst = JoinDateTime(aParts);
  if (szName[0] == 'D') return Span{dtFirst, dtFirst};
  if (szName[0] == 'W') return Span{dtFirst, dtFirst + 6};
  if (szName[0] == 'M') return Span{dtFirst, dtFirst + 30};
  return {};
}

// The logs of that log's folder and when they begin, by their names; none where its own name tells no time.
std::vector<std::pair<DateTime, std::string>> Beside(const std::string& szLog) {
  std::vector<std::pair<DateTime, std::string>> aBeside;
  if (!SpanOf(LogFiles::NameOf(szLog))) return aBeside;
  const auto aFolder = std::filesystem::path(szLog).parent_path();
  for (const auto& szName : Files::List(aFolder.string(), LogGrammar::szFileEnding))
    if (const auto aSpan = SpanOf(szName)) aBeside.emplace_back(aSpan->dtFirst, (aFolder / szName).string());
  return aBeside;
}

}  // namespace

bool LogFiles::NamesLog(const std::string& szPath) {
  return Text::EndsWithNoCase(szPath, LogGrammar::szFileEnding);
}

LogFiles::Arguments LogFiles::Read(const std::vector<std::string>& aPaths) {
  Arguments aRead;
  const bool bSite = aPaths.size() > 1 && aPaths.front() == szSiteOption;
  if (bSite) aRead.szSite = aPaths[1];
  for (auto i = bSite ? std::size_t{2} : std::size_t{0}; i < aPaths.size(); ++i)
    if (!aPaths[i].empty()) aRead.aLogs.push_back(Files::Absolute(aPaths[i]));
  if (aRead.aLogs.size() < 2) return aRead;
  const auto& szLast = aRead.aLogs.back();
  if (aRead.aLogs.size() == 2 ? !IsLog(szLast) : IsPage(szLast)) {
    aRead.szPage = szLast;
    aRead.aLogs.pop_back();
  }
  return aRead;
}

std::vector<std::string> LogFiles::Recent(const std::string& szFolder, std::int32_t lDays) {
  std::vector<std::pair<std::string, Span>> aDated;
  const auto szBefore = szFolder + Files::chSeparator;
  const auto dtToday = std::floor(Clock::Now());
  DateTime dtNewest = 0;
  for (const auto& szName : Files::List(szFolder, LogGrammar::szFileEnding))
    if (const auto aSpan = SpanOf(szName)) {
      aDated.emplace_back(szBefore + szName, *aSpan);
      // The week or month that is running reaches into the future.
      dtNewest = std::max(dtNewest, std::min(aSpan->dtLast, std::max(dtToday, aSpan->dtFirst)));
    }
  std::vector<std::string> aRecent;
  for (const auto& [szPath, aSpan] : aDated)
    if (aSpan.dtLast > dtNewest - lDays) aRecent.push_back(szPath);
  std::sort(aRecent.begin(), aRecent.end());
  return aRecent;
}

std::vector<std::string> LogFiles::Later(const std::string& szLog) {
  std::vector<std::string> aLater;
  for (const auto& [dtFirst, szPath] : Beside(szLog))
    if (dtFirst > SpanOf(NameOf(szLog))->dtFirst) aLater.push_back(szPath);
  std::sort(aLater.begin(), aLater.end());
  return aLater;
}

std::string LogFiles::Earlier(const std::string& szLog) {
  std::pair<DateTime, std::string> aLatest;
  for (const auto& aLog : Beside(szLog))
    if (aLog.first < SpanOf(NameOf(szLog))->dtFirst) aLatest = std::max(aLatest, aLog);
  return aLatest.second;
}

std::string LogFiles::MonitorFolder() {
  RegistryAccess::Variant aValue;
  std::int32_t lType = 0;
  RegistryAccess::RegReadValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szLog, "LogPath", aValue, lType);
  if (const auto* pText = std::get_if<std::string>(&aValue); pText && Files::FolderExists(*pText))
    return *pText;
  const auto szDefault = Shell::DefaultLogFolder();
  return Files::FolderExists(szDefault) ? szDefault : std::string();
}

std::string LogFiles::FolderOf(const std::string& szPath) {
  if (Files::FolderExists(szPath)) return szPath;
  return std::filesystem::path(szPath).parent_path().string();
}

std::string LogFiles::NameOf(const std::string& szPath) {
  auto szName = std::filesystem::path(szPath).filename().string();
  return szName.empty() ? szPath : szName;
}
