#include "fleet/PassFacts.h"

#include "base/Text.h"

std::string SiteName(const SiteRecord& aSite) {
  return Text::Trim(Text::IsBlank(aSite.URL) ? aSite.IP : aSite.URL);
}
