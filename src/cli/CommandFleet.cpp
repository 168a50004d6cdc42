// export --prometheus: the list and the settings as a folder for Prometheus.
#include <algorithm>

#include "alert/AlertText.h"
#include "base/Strings.h"
#include "base/Text.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "editing/ListExchange.h"
#include "fleet/PrometheusFolder.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Files.h"

namespace {

// Every result that has a text of its own, and "0" for all the others.
constexpr const char* szCodes[] = {"0",   "204", "301", "400", "401", "403", "404", "405", "500",  "501",
                                   "502", "503", "504", "1xx", "2xx", "3xx", "4xx", "5xx", "8001", "8080"};

FleetPlan PlanOfSettings(std::int32_t lShards) {
  constexpr std::int32_t lMinute = 60;
  FleetPlan aPlan;
  aPlan.lInterval = IntervalMinutes() * lMinute;
  aPlan.lShards = lShards;
  aPlan.szManager = Settings.Name;
  aPlan.szEmail = Settings.Email;
  aPlan.szMailServer = Settings.SMTP;
  aPlan.lMailPort = Settings.SMTPPort;
  // Where there is no text for a result, that for all the others stands in.
  const auto Add = [&](const std::string& szCode, const auto& aText) {
    try {
      aPlan.aMessages[szCode] = aText();
    } catch (const AlertAbandoned&) {
      aPlan.aMessages.erase(szCode);
    }
  };
  for (const char* szCode : szCodes)
    Add(szCode, [&] { return AlertText::BodyTemplate(szCode); });
  Add("answered", [] { return AlertText::PostscriptTemplate(true); });
  Add("failed", [] { return AlertText::PostscriptTemplate(false); });
  return aPlan;
}

bool TakeStored(const PrometheusFolder::Take& aTake) {
  for (std::int32_t n = 1; n <= lSiteCount; ++n)
    aTake(modAddress::Site(n), n);
  return true;
}

// The file piece by piece, so that its length does not matter. False after it has said what is wrong.
bool TakeFile(const std::string& szFile, const PrometheusFolder::Take& aTake) {
  constexpr std::uint64_t lPiece = std::uint64_t{1} << 20U;
  constexpr std::size_t lLongestLine = std::size_t{1} << 16U;
  constexpr std::string_view szByteOrderMark = "\xEF\xBB\xBF";
  std::string szLeft;  // the last piece's unfinished line
  std::int64_t lLine = 0;
  std::int64_t lSlot = 0;
  for (std::uint64_t lFrom = 0;; lFrom += lPiece) {
    const auto szPiece = Files::ReadPiece(szFile, lFrom, lPiece);
    if (!szPiece) return Report::Fail(FillResString(IDS_CLI_CANNOT_READ, {szFile})) == Report::iAllUp;
    const bool bLast = szPiece->size() < lPiece;
    szLeft += *szPiece;
    if (lFrom == 0 && szLeft.starts_with(szByteOrderMark)) szLeft.erase(0, szByteOrderMark.size());
    if (bLast && !szLeft.ends_with('\n')) szLeft += '\n';
    std::size_t lAt = 0;
    for (std::size_t lEnd; (lEnd = szLeft.find('\n', lAt)) != std::string::npos; lAt = lEnd + 1) {
      ++lLine;
      std::string szLine = szLeft.substr(lAt, lEnd - lAt);
      if (szLine.ends_with('\r')) szLine.pop_back();
      if (Text::IsBlank(szLine)) continue;
      SiteRecord aSite;
      if (!ListExchange::ParseLine(szLine, aSite))
        return Report::Fail(FillResString(IDS_CLI_LIST_CORRUPT, {szFile, std::to_string(lLine)})) ==
               Report::iAllUp;
      aTake(aSite, ++lSlot);
    }
    szLeft.erase(0, lAt);
    if (szLeft.size() > lLongestLine)
      return Report::Fail(FillResString(IDS_CLI_LIST_CORRUPT, {szFile, std::to_string(lLine + 1)})) ==
             Report::iAllUp;
    if (bLast) return true;
  }
}

int Tell(const PrometheusFolder::Report& aReport, const std::string& szFolder) {
  switch (aReport.iResult) {
    case PrometheusFolder::Result::NoFolder:
      return Report::Fail(FillResString(IDS_CLI_FLEET_NO_FOLDER, {szFolder}));
    case PrometheusFolder::Result::Foreign:
      return Report::Fail(FillResString(IDS_CLI_FLEET_FOREIGN, {aReport.szFile}));
    case PrometheusFolder::Result::NotWritten:
      return Report::Fail(FillResString(IDS_CLI_CANNOT_WRITE, {aReport.szFile}));
    case PrometheusFolder::Result::Refused:
      return Report::iFailed;  // said already
    case PrometheusFolder::Result::Done:
      break;
  }
  const auto lSites = Text::Saturate<std::int32_t>(aReport.lSites);
  Report::Say(Text::Printable(FillResString(
      IDS_CLI_FLEET_WRITTEN, {Report::SiteNumber(lSites), szFolder, std::to_string(aReport.lInterval)})));
  std::string szChanged;
  for (const auto& szName : aReport.aChanged)
    szChanged += (szChanged.empty() ? "" : ", ") + szName;
  if (!szChanged.empty()) Report::Say(FillResString(IDS_CLI_FLEET_CHANGED, {szChanged}));
  return Report::iAllUp;
}

}  // namespace

int CliCommands::ExportPrometheus(const std::string& szFolder, const std::string& szFrom,
                                  std::int32_t lShards) {
  if (!szFrom.empty() && !Files::FileExists(szFrom))
    return Report::Fail(FillResString(IDS_CLI_CANNOT_READ, {szFrom}));
  if (!Report::LoadAll()) return Report::iFailed;
  const FleetPlan aPlan = PlanOfSettings(lShards);
  const auto Sites = [&](const PrometheusFolder::Take& aTake) {
    return szFrom.empty() ? TakeStored(aTake) : TakeFile(szFrom, aTake);
  };
  const int iCode = Tell(PrometheusFolder::Write(szFolder, aPlan, Sites), szFolder);
  if (iCode == Report::iAllUp && !aPlan.Mails()) Report::Complain(LoadResString(IDS_CLI_FLEET_NO_MAIL));
  return iCode;
}
