// PrometheusFolder: writes the folder, whole or not at all as far as a folder can be: everything is written
// beside before the first file is replaced. What is not ours is left alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "fleet/FleetPlan.h"
#include "persistence/modAddress.h"

namespace PrometheusFolder {

inline constexpr std::int32_t lMostShards = 200;  // each has a file open meanwhile

// Hands over the sites one after the other with their slots. False ends the export with nothing replaced.
using Take = std::function<void(const SiteRecord& aSite, std::int64_t lSlot)>;
using Sites = std::function<bool(const Take& aTake)>;

enum class Result {
  Done,
  NoFolder,   // it cannot be made, or is a file
  Foreign,    // a file of one of our names is not ours
  Refused,    // the sites were not to be had
  NotWritten  // a file could not be written
};

struct Report {
  Result iResult = Result::Done;
  std::string szFile;                 // Foreign, NotWritten: which
  std::int64_t lSites = 0;            // enabled ones, written
  std::int32_t lInterval = 0;         // seconds, as it came to be
  std::vector<std::string> aChanged;  // other files than the targets that were there and are now different
};

Report Write(const std::string& szFolder, const FleetPlan& aPlan, const Sites& aSource);

}  // namespace PrometheusFolder
