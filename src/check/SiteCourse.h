// SiteCourse: what a check makes of a site. An answer makes it up; the first failure warns, the second in a
// row is mailed, and no further one is.
#pragma once

#include <cstdint>

#include "persistence/modAddress.h"

namespace SiteCourse {

struct Turn {
  std::uint8_t iStatus;  // see SiteStatus
  bool bAlert = false;   // the managers are told
  bool bSoon = false;    // the next pass comes after the warning interval
};

// iBefore: the site's status when it was asked.
constexpr Turn AfterFailure(std::uint8_t iBefore) {
  if (iBefore == SiteStatus::iDown) return {.iStatus = SiteStatus::iDown};
  if (iBefore == SiteStatus::iWarning) return {.iStatus = SiteStatus::iDown, .bAlert = true};
  return {.iStatus = SiteStatus::iWarning, .bSoon = true};
}

}  // namespace SiteCourse
