#include "fleet/Metrics.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>

#include "base/Text.h"
#include "base/Utf8.h"

namespace {

constexpr std::array<std::string_view, 5> aStatusNames = {"up", "warning", "down", "unknown", "disabled"};

std::string_view StatusOf(const SiteRecord& aSite) {
  if (!aSite.TakesPart()) return "disabled";
  return SiteStatus::HasLight(aSite.Status) ? aStatusNames[aSite.Status - 1U] : "unknown";
}

// Without the locale, in which a number may have a comma.
void AppendNumber(std::string& szOut, double dNumber) {
  std::array<char, 64> aBuffer{};
  const auto aResult =
      std::to_chars(aBuffer.data(), aBuffer.data() + aBuffer.size(), dNumber, std::chars_format::fixed, 3);
  szOut.append(aBuffer.data(), aResult.ptr);
}

// A label's value: what is no UTF-8, and control characters, are shown as such.
std::string Label(std::string_view szText) {
  return Text::Replace(Text::Replace(Utf8::Clean(szText), "\\", "\\\\"), "\"", "\\\"");
}

void Head(std::string& szOut, std::string_view szName, std::string_view szType, std::string_view szHelp) {
  szOut.append("# HELP ").append(szName).append(" ").append(szHelp).append("\n# TYPE ");
  szOut.append(szName).append(" ").append(szType).append("\n");
}

struct Row {
  const SiteRecord* pSite;
  std::string szLabel;
  SiteFacts aFacts;
};

// Each name once: two series of one name would cost the whole file.
std::vector<Row> Rows(const std::vector<SiteRecord>& aList, const PassFacts& aFacts) {
  std::vector<Row> aRows;
  std::unordered_set<std::string> aSeen;
  for (std::size_t n = 1; n < aList.size(); ++n) {
    const SiteRecord& aSite = aList[n];
    const std::string szName = SiteName(aSite);
    std::string szLabel = Label(szName);
    if (szName.empty() || !aSeen.insert(szLabel).second) continue;
    const auto pFacts = aFacts.aSites.find(szName);
    aRows.push_back(
        {&aSite, std::move(szLabel), pFacts == aFacts.aSites.end() ? SiteFacts{} : pFacts->second});
  }
  return aRows;
}

void Sample(std::string& szOut, std::string_view szName, const Row& aRow, double dValue) {
  szOut.append(szName).append("{site=\"").append(aRow.szLabel).append("\"} ");
  AppendNumber(szOut, dValue);
  szOut += '\n';
}

void SiteMetrics(std::string& szOut, const std::vector<Row>& aRows) {
  Head(szOut, "kestrova_site_up", "gauge", "1 when the site's last check was answered well, 0 when not.");
  for (const Row& aRow : aRows)
    if (aRow.pSite->TakesPart() && SiteStatus::HasLight(aRow.pSite->Status))
      Sample(szOut, "kestrova_site_up", aRow, aRow.pSite->Status == SiteStatus::iUp ? 1 : 0);
  Head(szOut, "kestrova_site_status", "gauge", "1 for the status that the site is in, 0 for the others.");
  for (const Row& aRow : aRows)
    for (const std::string_view szStatus : aStatusNames) {
      szOut.append("kestrova_site_status{site=\"").append(aRow.szLabel).append("\",status=\"");
      szOut.append(szStatus).append(StatusOf(*aRow.pSite) == szStatus ? "\"} 1\n" : "\"} 0\n");
    }
  Head(szOut, "kestrova_site_response_seconds", "gauge",
       "Time from the request to the last answer, for sites that are up.");
  for (const Row& aRow : aRows)
    if (aRow.pSite->TakesPart() && aRow.pSite->Status == SiteStatus::iUp && aRow.aFacts.dResponse >= 0)
      Sample(szOut, "kestrova_site_response_seconds", aRow, aRow.aFacts.dResponse);
  Head(szOut, "kestrova_site_last_check_timestamp_seconds", "gauge", "When the site was last checked.");
  for (const Row& aRow : aRows)
    if (aRow.aFacts.dChecked > 0)
      Sample(szOut, "kestrova_site_last_check_timestamp_seconds", aRow, aRow.aFacts.dChecked);
}

}  // namespace

std::string Metrics::Compose(const std::vector<SiteRecord>& aList, const PassFacts& aFacts) {
  std::string szOut;
  SiteMetrics(szOut, Rows(aList, aFacts));
  const auto Gauge = [&](std::string_view szName, std::string_view szHelp, double dValue,
                         bool bKnown = true) {
    if (!bKnown) return;
    Head(szOut, szName, "gauge", szHelp);
    szOut.append(szName).append(" ");
    AppendNumber(szOut, dValue);
    szOut += '\n';
  };
  Gauge("kestrova_pass_start_timestamp_seconds", "When the last pass was begun.", aFacts.dStarted,
        aFacts.dStarted > 0);
  Gauge("kestrova_pass_duration_seconds", "How long the last pass took that has ended.", aFacts.dDuration,
        aFacts.dDuration >= 0);
  Gauge("kestrova_pass_sites", "Sites checked in the last pass that has ended.",
        static_cast<double>(aFacts.lChecked), aFacts.dDuration >= 0);
  Gauge("kestrova_pass_interval_seconds", "Time from one automatic pass to the next, as set.",
        aFacts.lInterval);
  Head(szOut, "kestrova_alert_mails_total", "counter", "Alert mails by what became of them.");
  const auto Mails = [&](std::string_view szResult, std::int64_t lNumber) {
    szOut.append("kestrova_alert_mails_total{result=\"").append(szResult).append("\"} ");
    szOut.append(std::to_string(lNumber)).append("\n");
  };
  Mails("sent", aFacts.lMailsSent);
  Mails("failed", aFacts.lMailsFailed);
  Mails("not_configured", aFacts.lMailsNotSet);
  Head(szOut, "kestrova_store_saves_failed_total", "counter",
       "Results of checks that the store did not keep.");
  szOut += "kestrova_store_saves_failed_total " + std::to_string(aFacts.lSavesFailed) + "\n";
  Head(szOut, "kestrova_build_info", "gauge", "1, with the program's version.");
  szOut += "kestrova_build_info{version=\"" KESTROVA_VERSION "\"} 1\n";
  return szOut;
}

void Metrics::TakeFacts(std::string_view szText, const std::vector<SiteRecord>& aList, PassFacts& aFacts) {
  std::unordered_map<std::string_view, double> aSamples;  // by all that stands before the number
  for (std::size_t lAt = 0; lAt < szText.size();) {
    const std::size_t lEnd = std::min(szText.find('\n', lAt), szText.size());
    const std::string_view szLine = szText.substr(lAt, lEnd - lAt);
    lAt = lEnd + 1;
    const std::size_t lBlank = szLine.rfind(' ');
    double dNumber = 0;
    if (lBlank != std::string_view::npos &&
        std::from_chars(szLine.data() + lBlank + 1, szLine.data() + szLine.size(), dNumber).ec == std::errc())
      aSamples.emplace(szLine.substr(0, lBlank), dNumber);
  }
  const auto Take = [&](const std::string& szName, auto& aField) {
    constexpr double dMost = 1e15;
    if (const auto pSample = aSamples.find(szName); pSample != aSamples.end() && pSample->second >= 0)
      aField = static_cast<std::decay_t<decltype(aField)>>(std::min(pSample->second, dMost));
  };
  Take("kestrova_alert_mails_total{result=\"sent\"}", aFacts.lMailsSent);
  Take("kestrova_alert_mails_total{result=\"failed\"}", aFacts.lMailsFailed);
  Take("kestrova_alert_mails_total{result=\"not_configured\"}", aFacts.lMailsNotSet);
  Take("kestrova_store_saves_failed_total", aFacts.lSavesFailed);
  Take("kestrova_pass_duration_seconds", aFacts.dDuration);
  Take("kestrova_pass_sites", aFacts.lChecked);
  for (std::size_t n = 1; n < aList.size(); ++n) {
    const std::string szSite = "{site=\"" + Label(SiteName(aList[n])) + "\"}";
    SiteFacts aSite;
    Take("kestrova_site_last_check_timestamp_seconds" + szSite, aSite.dChecked);
    Take("kestrova_site_response_seconds" + szSite, aSite.dResponse);
    if (aSite.dChecked > 0) aFacts.aSites.try_emplace(SiteName(aList[n]), aSite);
  }
}
