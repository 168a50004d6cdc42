// Metrics: sites and passes in Prometheus' text exposition format (version 0.0.4), for a collector that reads
// files.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fleet/PassFacts.h"
#include "persistence/modAddress.h"

namespace Metrics {

// aList as modAddress holds it: slot 0 is not used.
std::string Compose(const std::vector<SiteRecord>& aList, const PassFacts& aFacts);

// What a text tells that Compose made, so that a program that starts goes on from there. Anything else is
// passed over.
void TakeFacts(std::string_view szText, const std::vector<SiteRecord>& aList, PassFacts& aFacts);

}  // namespace Metrics
