// list: the stored sites, for a person or for a script.
#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <numeric>

#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "cli/SiteChoice.h"
#include "persistence/modAddress.h"
#include "platform/Terminal.h"

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

using Rows = std::vector<std::vector<std::string>>;

constexpr std::size_t lAddress = 2, lRemark = 5;  // columns of the table
constexpr std::size_t lBetween = 2;               // blanks between two columns
constexpr std::size_t lLeast = 20;                // characters that a text keeps where the terminal is narrow

std::vector<std::size_t> WidthsOf(const Rows& aRows) {
  std::vector<std::size_t> aWidths(aRows.front().size(), 0);
  for (const auto& aRow : aRows)
    for (std::size_t i = 0; i < aRow.size(); ++i)
      aWidths[i] = std::max(aWidths[i], Utf8::Width(aRow[i]));
  return aWidths;
}

// Remarks first, then addresses give way until a row fits the terminal.
void Fit(Rows& aRows) {
  const auto lColumns = static_cast<std::size_t>(std::max(0, Terminal::Columns()));
  for (const auto lColumn : {lRemark, lAddress}) {
    const auto aWidths = WidthsOf(aRows);
    const auto lAll = std::accumulate(aWidths.begin(), aWidths.end(), lBetween * (aWidths.size() - 1));
    if (lColumns == 0 || lAll <= lColumns) return;
    const auto lMost = aWidths[lColumn] - std::min(aWidths[lColumn], lAll - lColumns);
    for (auto& aRow : aRows)
      aRow[lColumn] = Utf8::ShortenMiddle(aRow[lColumn], std::max(lMost, lLeast));
  }
}

void ListAsTable(const std::set<std::int32_t>& aSlots) {
  Rows aRows = {{LoadResString(IDS_CLI_LIST_HEAD), LoadResString(IDS_CLI_LIST_HEAD_STATUS),
                 LoadResString(IDS_CLI_LIST_HEAD_ADDRESS), LoadResString(IDS_CLI_LIST_HEAD_IP),
                 LoadResString(IDS_CLI_LIST_HEAD_TIMEOUT), LoadResString(IDS_CLI_LIST_HEAD_REMARK)}};
  for (const std::int32_t i : aSlots) {
    const SiteRecord& aSite = modAddress::Site(i);
    aRows.push_back({std::to_string(i),
                     aSite.TakesPart() ? Report::StatusWord(aSite.Status) : LoadResString(IDS_CLI_DISABLED),
                     Report::AddressOf(aSite), Text::Printable(aSite.IP),
                     FillResString(IDS_CLI_SECONDS, {std::to_string(aSite.TimeOut)}),
                     Text::Printable(aSite.Comments)});
  }
  Fit(aRows);
  const auto aWidths = WidthsOf(aRows);
  for (const auto& aRow : aRows) {
    std::string szLine;
    for (std::size_t i = 0; i < aRow.size(); ++i)
      szLine += Report::Padded(aRow[i], aWidths[i] + lBetween);
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
