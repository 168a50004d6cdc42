// StatusPage: how all sites are, as one page for a browser: now and since when, the last 24 hours and 30
// days, the outages. One file, no script, nothing from elsewhere; it loads itself anew, and says when the
// next pass is due, so that a page nobody writes any more cannot look fresh. HTML that is well-formed XML
// too.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "fleet/PassFacts.h"
#include "fleet/Trails.h"
#include "persistence/modAddress.h"

namespace StatusPage {

// What the page keeps to, whatever the sites are called: pictures of quiet sites and the oldest outages go
// first.
inline constexpr std::size_t lMostBytes = 290'000;

// aList as modAddress holds it: slot 0 is not used.
std::string Compose(const std::vector<SiteRecord>& aList, const PassFacts& aFacts, const Trails& aTrails,
                    DateTime dtNow);

}  // namespace StatusPage
