#include "history/LogHtmlParts.h"

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogHtml.h"

using LogHtml::Escape;

std::string LogHtmlParts::Words(StringId iText) {
  return Escape(LoadResString(iText));
}

std::string LogHtmlParts::Words(StringId iText, std::initializer_list<std::string_view> aValues) {
  return Escape(FillResString(iText, aValues));
}

std::string LogHtmlParts::Isolated(const std::string& szMarkup) {
  return "<bdi>" + szMarkup + "</bdi>";
}

std::string LogHtmlParts::SiteName(std::string_view szSite) {
  return Isolated(Escape(Utf8::Shorten(szSite, 200)));
}

std::string LogHtmlParts::Cell(const char* szClass, const std::string& szMarkup) {
  return std::string("<td") + (*szClass ? std::string(" class=\"") + szClass + "\"" : "") + ">" + szMarkup +
         "</td>";
}

std::string LogHtmlParts::Named(std::string szCell, StringId iColumn) {
  constexpr std::string_view szStart = "<td";
  return szCell.starts_with(szStart) ? szCell.insert(szStart.size(), " data-name=\"" + Words(iColumn) + "\"")
                                     : szCell;
}

std::string LogHtmlParts::Heads(const std::vector<StringId>& aColumns,
                                const std::vector<StringId>& aNumbers) {
  std::string szHeads = "<thead><tr>";
  for (const auto iColumn : aColumns) {
    const bool bNumber = std::find(aNumbers.begin(), aNumbers.end(), iColumn) != aNumbers.end();
    szHeads +=
        std::string("<th scope=\"col\"") + (bNumber ? " class=\"n\">" : ">") + Words(iColumn) + "</th>";
  }
  return szHeads + "</tr></thead>\n";
}

std::string LogHtmlParts::Region(StringId iLabel, const std::string& szMarkup) {
  return "<div class=\"wide\" role=\"region\" tabindex=\"0\" aria-label=\"" + Words(iLabel) + "\">" +
         szMarkup + "</div>\n";
}

std::string LogHtmlParts::TableOf(const char* szClass, StringId iLabel, const std::string& szRows) {
  return Region(iLabel, std::string("<table class=\"") + szClass + "\">\n" + szRows + "</table>");
}
