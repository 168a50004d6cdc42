// FleetFiles: the text files of a folder for Prometheus, composed from a plan. They read no file and know no
// folder.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "fleet/FleetPlan.h"

namespace FleetFiles {

// Stands in the first line of every file that can hold a remark: what bears it is ours to replace.
inline constexpr std::string_view szMark = "Written by kestrova-cli export --prometheus.";

struct File {
  std::string szName, szBytes;
};

// All but the targets. aTimeOuts: those in use, in seconds; lSites: how many sites there are.
std::vector<File> Compose(const FleetPlan& aPlan, const std::set<std::int32_t>& aTimeOuts,
                          std::int64_t lSites);

// How long a scrape may take, and how far two of them lie apart, in seconds: the interval asked for, or as
// much more as the longest time-out takes.
std::int32_t ScrapeLimit(const std::set<std::int32_t>& aTimeOuts);
std::int32_t ScrapeInterval(const FleetPlan& aPlan, const std::set<std::int32_t>& aTimeOuts);

// Answers that the blackbox exporter judges otherwise than the desk does, one line each.
extern const std::string_view szDisagreements;

}  // namespace FleetFiles
