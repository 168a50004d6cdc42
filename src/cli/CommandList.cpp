// list: the stored sites, for a person or for a script.
#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "base/Strings.h"
#include "base/Text.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "cli/SiteChoice.h"
#include "persistence/modAddress.h"

namespace {

void ListAsJson(const std::set<std::int32_t>& aSlots) {
  nlohmann::ordered_json aList = nlohmann::ordered_json::array();
  for (const std::int32_t i : aSlots) {
    const SiteRecord& aSite = modAddress::Site(i);
    aList.push_back({{"number", i},
                     {"url", aSite.URL},
                     {"ip", aSite.IP},
                     {"status", Report::StatusWord(aSite.Status)},
                     {"enabled", aSite.TakesPart()},
                     {"timeOut", aSite.TimeOut},
                     {"remark", aSite.Comments}});
  }
  // Old lists may hold bytes that are no UTF-8, which JSON cannot carry. ASCII alone, so that no control
  // character a terminal knows gets out.
  Report::Say(aList.dump(2, ' ', true, nlohmann::json::error_handler_t::replace));
}

void ListAsTable(const std::set<std::int32_t>& aSlots) {
  std::vector<std::vector<std::string>> aRows = {
      {LoadResString(IDS_CLI_LIST_HEAD), LoadResString(IDS_CLI_LIST_HEAD_STATUS),
       LoadResString(IDS_CLI_LIST_HEAD_ADDRESS), LoadResString(IDS_CLI_LIST_HEAD_IP),
       LoadResString(IDS_CLI_LIST_HEAD_TIMEOUT), LoadResString(IDS_CLI_LIST_HEAD_REMARK)}};
  for (const std::int32_t i : aSlots) {
    const SiteRecord& aSite = modAddress::Site(i);
    aRows.push_back({std::to_string(i),
                     aSite.TakesPart() ? Report::StatusWord(aSite.Status) : LoadResString(IDS_CLI_DISABLED),
                     LoadResString(IDS_AGENT) + Text::Printable(aSite.URL), Text::Printable(aSite.IP),
                     FillResString(IDS_CLI_SECONDS, {std::to_string(aSite.TimeOut)}),
                     Text::Printable(aSite.Comments)});
  }
  std::vector<std::size_t> aWidths(aRows.front().size(), 0);
  for (const auto& aRow : aRows)
    for (std::size_t i = 0; i < aRow.size(); ++i)
      aWidths[i] = std::max(aWidths[i], aRow[i].size());
  for (const auto& aRow : aRows) {
    std::string szLine;
    for (std::size_t i = 0; i < aRow.size(); ++i)
      szLine += aRow[i] + std::string(aWidths[i] - aRow[i].size() + 2, ' ');
    szLine.erase(szLine.find_last_not_of(' ') + 1);
    Report::Say(szLine);
  }
}

}  // namespace

int CliCommands::List(bool bJson, const std::string& szSite) {
  if (!Report::LoadAll()) return Report::iFailed;
  const auto aSlots = SiteChoice::Read(szSite);
  if (!aSlots) return Report::iFailed;
  if (bJson) {
    ListAsJson(*aSlots);
  } else if (lSiteCount < 1) {
    Report::Say(LoadResString(IDS_CLI_EMPTY_LIST));
  } else {
    ListAsTable(*aSlots);
  }
  return Report::iAllUp;
}
