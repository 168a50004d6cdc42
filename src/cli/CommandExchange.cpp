// import and export: the site list as a file.
#include "base/Strings.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "editing/ListExchange.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "persistence/modBasic.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/SingleInstance.h"

int CliCommands::Import(const std::string& szFile, bool bReplace) {
  if (!Files::FileExists(szFile)) return Report::Fail(FillResString(IDS_CLI_CANNOT_READ, {szFile}));
  if (!Report::OpenStore(true)) return Report::iFailed;
  SingleInstance aInstance;
  if (!aInstance.TryLock()) return Report::Fail(FillResString(IDS_CLI_IN_USE, {Registry::StoreName()}));
  LoadSettings();
  if (!Report::LoadRebuilt(true)) return Report::iFailed;

  if (modBasic::HasControlCharacters(szFile) == 1)
    return Report::Fail(FillResString(IDS_CLI_LIST_NO_TEXT, {szFile}));
  std::vector<SiteRecord> aRecords;
  std::int32_t lBadLine = 0;
  switch (ListExchange::Read(szFile, aRecords, lBadLine)) {
    case ListExchange::Reading::Fine:
      break;
    case ListExchange::Reading::Unreadable:
      return Report::Fail(FillResString(IDS_CLI_CANNOT_READ, {szFile}));
    case ListExchange::Reading::Corrupt:
      return Report::Fail(FillResString(IDS_CLI_LIST_CORRUPT, {szFile, std::to_string(lBadLine)}));
    case ListExchange::Reading::TooMany:
      return Report::Fail(
          FillResString(IDS_CLI_LIST_TOO_MANY, {szFile, std::to_string(modAddress::lSiteCapacity)}));
  }
  // Nothing can be added to an empty list that would not replace it.
  if (!ListExchange::Import(aRecords, bReplace || lSiteCount < 1, {}))
    return Report::Fail(LoadResString(IDS_STORE_NOT_IMPORTED));
  Report::Say(LoadResString(IDS_CLI_IMPORTED));
  Report::Say(FillResString(
      IDS_CLI_NOW_IN_LIST,
      {Report::SiteNumber(static_cast<std::int32_t>(aRecords.size())), Report::SiteNumber(lSiteCount)}));
  for (const auto& szFlaw : ListExchange::Flaws(aRecords))
    Report::Complain(szFlaw);
  return Report::iAllUp;
}

int CliCommands::Export(const std::string& szFile) {
  if (!Report::LoadAll()) return Report::iFailed;
  const std::string szComplete = ListExchange::CompleteFileName(szFile);
  // A name that we made up must not cost the file that has it.
  if (szComplete != szFile && Files::FileExists(szComplete))
    return Report::Fail(FillResString(IDS_CLI_EXPORT_EXISTS, {szComplete}));
  if (Report::ListMayBeIncomplete() && Files::FileExists(szComplete))
    return Report::Fail(FillResString(IDS_CLI_EXPORT_INCOMPLETE, {szComplete}));
  if (!ListExchange::Export(szComplete, {}))
    return Report::Fail(FillResString(IDS_CLI_CANNOT_WRITE, {szComplete}));
  Report::Say(LoadResString(IDS_CLI_EXPORTED));
  Report::Say(FillResString(IDS_CLI_WRITTEN_TO, {Report::SiteNumber(lSiteCount), szComplete}));
  return Report::iAllUp;
}
