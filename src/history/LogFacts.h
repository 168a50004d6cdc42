// LogFacts: what a history says as a whole, as names and values, for page, window and terminal alike.
#pragma once

#include <string>
#include <vector>

#include "base/Strings.h"
#include "history/LogSummary.h"

namespace LogFacts {

struct Fact {
  StringId iName;
  std::vector<std::string> aLines;  // one at least; bytes as logged
  std::string szNote;               // what they mean; may be empty
};

std::vector<Fact> Of(const LogSummary& aSummary);

}  // namespace LogFacts
