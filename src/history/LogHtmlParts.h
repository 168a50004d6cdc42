// LogHtmlParts: what the sections of the log's page are put together from. All of it is markup, and lets
// nothing in that a text holds.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "base/Strings.h"

namespace LogHtmlParts {

std::string Words(StringId iText);
std::string Words(StringId iText, std::initializer_list<std::string_view> aValues);

// Names come from outside; on their own they cannot turn the direction of the text around them.
std::string Isolated(const std::string& szMarkup);
std::string SiteName(std::string_view szSite);

std::string Cell(const char* szClass, const std::string& szMarkup);
// A cell that names its column: where a window is narrow, a row is shown as a card.
std::string Named(std::string szCell, StringId iColumn);
std::string Heads(const std::vector<StringId>& aColumns, const std::vector<StringId>& aNumbers = {});

// What is too wide for the window is scrolled by itself, with the keyboard too.
std::string Region(StringId iLabel, const std::string& szMarkup);
std::string TableOf(const char* szClass, StringId iLabel, const std::string& szRows);

}  // namespace LogHtmlParts
