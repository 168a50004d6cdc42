// PassFacts: what a monitor tells of itself and of its checks, beside the list of sites.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "base/DateTime.h"
#include "persistence/modAddress.h"

struct SiteFacts {
  double dChecked = 0;    // seconds since 1970; 0: not yet
  double dResponse = -1;  // seconds from request to outcome; below 0: not known
};

struct PassFacts {
  double dStarted = 0;            // of the last pass begun, seconds since 1970; 0: none yet
  double dDuration = -1;          // of the last pass ended, seconds; below 0: none yet
  DateTime dtEnded = 0;           // of the last pass ended; 0: none yet
  DateTime dtNext = 0;            // when the next automatic pass begins; 0: nobody has planned one
  std::int64_t lChecked = 0;      // sites checked in the last pass ended
  std::int32_t lInterval = 3600;  // seconds from pass to pass
  // Since the metrics file was first written.
  std::int64_t lMailsSent = 0, lMailsFailed = 0, lMailsNotSet = 0, lSavesFailed = 0;
  std::unordered_map<std::string, SiteFacts> aSites;  // by SiteName
};

// What a site is called towards others: its URL, or its IP address where it has none. Empty where it has
// neither.
std::string SiteName(const SiteRecord& aSite);
