// LogHtml: a history as one page that can be sent to somebody who has never seen the program. One file, no
// script, nothing loaded from elsewhere; readable light, dark, narrow and on paper. States differ by colour,
// by shape and by word. The page is HTML that is well-formed XML as well.
//
// Of what the log's fields hold, only <BR> and <SPAN class="Emphasis">...</SPAN> in exactly that spelling,
// and the latter only in pairs, keep their meaning; all else is text. Bytes that are no UTF-8 are replaced.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "history/LogHistory.h"
#include "history/LogSummary.h"

namespace LogHtml {

// What is shown at most; the page says so where it leaves something out. Counts always cover everything.
struct Limits {
  std::size_t lLines = 20000;  // the last ones, whole passes: some 4 MB
  std::size_t lSites = 500;
  std::size_t lOutages = 500;  // the last ones
  int lPaceDays = 92;  // of how long sites take, the last ones; a year of them would be most of a page
  std::size_t lFieldBytes = 2000;  // of one field or unread line
  // Else only what failed, what could not be read, and the check with which a site was up again.
  bool bEveryEntry = false;
};

std::string Compose(const LogHistory& aHistory, const LogSummary& aSummary, const Limits& aLimits = {});

// Composes and writes beside the file, then renames. False: it could not be written, the old one stands.
bool Write(const std::string& szPath, const LogHistory& aHistory, const LogSummary& aSummary,
           const Limits& aLimits = {});

// Text for an element or attribute: nothing in it is markup.
std::string Escape(std::string_view szBytes);
// A field of the log, its own marks kept.
std::string Field(std::string_view szBytes);

}  // namespace LogHtml
