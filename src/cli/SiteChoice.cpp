#include "cli/SiteChoice.h"

#include "base/Strings.h"
#include "base/Text.h"
#include "cli/Report.h"
#include "persistence/modAddress.h"

std::optional<std::set<std::int32_t>> SiteChoice::Read(const std::string& szSite) {
  std::set<std::int32_t> aSlots;
  if (Text::IsDigits(szSite)) {
    const std::int32_t lSite = Text::LeadingNumber(szSite);
    if (modAddress::IsSite(lSite)) return std::set{lSite};
    Report::Complain(FillResString(IDS_CLI_NO_SUCH_SITE, {szSite, Report::SiteNumber(lSiteCount)}));
    return {};
  }
  const std::string szPart = Text::LowerCase(szSite);
  for (std::int32_t n = 1; n <= lSiteCount; ++n) {
    const SiteRecord& aSite = modAddress::Site(n);
    const auto Holds = [&](const std::string& szText) {
      return Text::LowerCase(szText).find(szPart) != std::string::npos;
    };
    if (Holds(aSite.URL) || Holds(aSite.IP)) aSlots.insert(n);
  }
  if (!aSlots.empty() || szSite.empty()) return aSlots;
  Report::Complain(FillResString(IDS_CLI_FILTER_NO_SITE, {szSite}));
  return {};
}
