// CheckFacts: what the check engine knows of a failed check when its alert is due.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/DateTime.h"

// How one request ended.
struct RequestFacts {
  std::string szURL{};            // as requested, with "http://"
  std::string szCode{};           // its result code; empty: it was answered well
  std::string szResult{};         // the same in the log's words
  std::string szErrorText{};      // the client's, empty for none
  std::int32_t lErrorNumber = 0;  // the client's, 0 for none
  std::string szHeader{};         // raw header of the answer, empty for none
};

struct CheckFacts {
  RequestFacts aByName{};               // the request that failed
  std::optional<RequestFacts> aByIP{};  // the site was tried once more by its IP address
  // Wall time of the two failures in a row; 0: not known, as for a first failure before the program started.
  DateTime FirstFailure = 0;
  DateTime SecondFailure = 0;

  const RequestFacts& Last() const { return aByIP ? *aByIP : aByName; }
};
