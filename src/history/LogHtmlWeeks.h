// LogHtmlWeeks: what the log's page says of passes, of how long sites take, of two periods, and of the hours
// in which failures begin. These sections stand behind the entries.
#pragma once

#include <string>
#include <vector>

#include "base/Strings.h"
#include "history/LogHistory.h"
#include "history/LogSummary.h"

namespace LogHtmlWeeks {

class Sections {
 public:
  // lMostSites: in each of the tables; lMostDays: in the pictures of how long they take.
  Sections(const LogHistory& aHistory, const LogSummary& aSummary, std::size_t lMostSites, int lMostDays);

  const std::string& Markup() const { return szMarkup; }
  // For the top of the page, because the entries before them are long.
  std::string Links() const;

 private:
  void Add(const char* szName, StringId iTitle, const std::vector<std::string>& aWords,
           const std::string& szBody);

  std::string szMarkup, szLinks;
};

}  // namespace LogHtmlWeeks
