#include "fleet/FleetFiles.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "base/Embedded.h"
#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "fleet/TargetFiles.h"

extern const Embedded::Files aFleetFileTexts;  // the folder files/

namespace {

using Values = std::initializer_list<std::pair<std::string_view, std::string_view>>;

// The text of files/ with each %NAME% of the values replaced, in one go; any other "%" stays.
std::string Fill(std::string_view szName, const Values& aValues) {
  const std::string_view szText = Embedded::Bytes(aFleetFileTexts, szName);
  std::string szFilled;
  for (std::size_t lAt = 0; lAt < szText.size();) {
    const auto pValue = std::ranges::find_if(aValues, [&](const auto& aValue) {
      const std::string_view szRest = szText.substr(lAt);
      return szRest.starts_with('%') && szRest.substr(1).starts_with(aValue.first) &&
             szRest.substr(1 + aValue.first.size()).starts_with('%');
    });
    if (pValue == aValues.end()) {
      szFilled += szText[lAt++];
    } else {
      szFilled += pValue->second;
      lAt += pValue->first.size() + 2;
    }
  }
  return szFilled;
}

std::string Duration(std::int32_t lSeconds) {
  return std::to_string(lSeconds) + "s";
}

// Text that a Go template gives out as it stands.
std::string ForTemplate(std::string_view szText) {
  return Text::Replace(szText, "{{", "{{ \"{{\" }}");
}

// A double-quoted YAML text. What it cannot hold, line ends too, becomes U+FFFD.
std::string Quoted(std::string_view szText) {
  return '"' + Text::Replace(Text::Replace(Utf8::Clean(szText), "\\", "\\\\"), "\"", "\\\"") + '"';
}

// A port below 1 stands for the usual one, as in every mail that goes out.
std::string SmartHost(const FleetPlan& aPlan) {
  const bool bIPv6 = std::ranges::count(aPlan.szMailServer, ':') > 1 && !aPlan.szMailServer.starts_with('[');
  const std::string szHost = bIPv6 ? "[" + aPlan.szMailServer + "]" : aPlan.szMailServer;
  return szHost + ":" + std::to_string(aPlan.lMailPort < 1 ? lSmtpPort : aPlan.lMailPort);
}

// A message of ours as a template of Alertmanager's: the placeholders become what the alert knows.
std::string AsTemplate(const FleetPlan& aPlan, const std::string& szMessage) {
  struct Placeholder {
    std::string_view szName;
    std::string szValue;
  };
  // The alert knows less than the desk: the code of the result, whether the IP address answered well, and
  // when it began.
  const std::string szMeaning = "{{ if eq .Annotations.second_look \"answered\" }}" +
                                LoadResString(IDS_FLEET_IP_ANSWERED) + "{{ else }}" +
                                LoadResString(IDS_FLEET_IP_FAILED) + "{{ end }}";
  const std::array<Placeholder, 14> aPlaceholders = {{
      {"%FIRSTFAILURE%", LoadResString(IDS_FLEET_FIRST_FAILURE)},
      {"%SECONDFAILURE%", "{{ .StartsAt.Local.Format \"1/2/2006 3:04:05 PM\" }}"},
      {"%RESULT%", "{{ .Annotations.code }}"},
      {"%IPRESULT%", "{{ .Annotations.second_look }}"},
      {"%MEANING%", szMeaning},
      {"%ANSWER%", LoadResString(IDS_FLEET_NO_HEADER)},
      {"%MGRNAME%", ForTemplate(Text::IsBlank(aPlan.szManager) ? std::string(LoadResString(IDS_ALERT_MANAGER))
                                                               : aPlan.szManager)},
      {"%URL%", "http://{{ .Labels.site }}"},
      {"%IP%", "http://{{ .Annotations.ip }}"},
      {"%TIMEOUT%", "{{ .Annotations.timeout }} " + LoadResString(IDS_ALERT_SECONDS)},
      {"%ERRORINFO%", LoadResString(IDS_FLEET_NO_ERROR)},
      {"%ERRORCODE%", "-"},
      {"%RESPONSECODE%", ""},
      {"%HEADER%", LoadResString(IDS_FLEET_NO_HEADER)},
  }};
  const std::string szText = ForTemplate(Text::Replace(szMessage, "\r\n", "\n"));
  const std::string szUpper = Text::UpperCase(szText);  // placeholders count in any letter case
  std::string szFilled;
  for (std::size_t lAt = 0; lAt < szText.size();) {
    const auto* const pPlaceholder =
        std::ranges::find_if(aPlaceholders, [&](const Placeholder& aPlaceholder) {
          return std::string_view(szUpper).substr(lAt).starts_with(aPlaceholder.szName);
        });
    if (pPlaceholder == aPlaceholders.end()) {
      szFilled += szText[lAt++];
    } else {
      szFilled += pPlaceholder->szValue;
      lAt += pPlaceholder->szName.size();
    }
  }
  return Utf8::FromLatin1WhereNeeded(szFilled);
}

std::string MailTemplate(const FleetPlan& aPlan) {
  std::string szChoice;
  std::string szDefinitions;
  // Whole codes before classes, so that 404 is not taken for any 4xx.
  for (const bool bClass : {false, true}) {
    for (const auto& [szCode, szText] : aPlan.aMessages) {
      if (szCode.ends_with("xx") != bClass) continue;
      szDefinitions += "{{ define \"kestrova." + szCode + "\" }}" + AsTemplate(aPlan, szText) + "{{ end }}\n";
      if (!Text::IsDigits(szCode.substr(0, 1)) || szCode == "0") continue;
      szChoice += std::string(szChoice.empty() ? "{{ if " : "{{ else if ") +
                  (bClass ? "match \"^" + szCode.substr(0, 1) + "..$\" .Annotations.code"
                          : "eq .Annotations.code \"" + szCode + "\"") +
                  " }}{{ template \"kestrova." + szCode + "\" . }}";
    }
  }
  for (const char* szNeeded : {"0", "answered", "failed"})
    if (!aPlan.aMessages.contains(szNeeded))
      szDefinitions += std::string("{{ define \"kestrova.") + szNeeded + "\" }}{{ end }}\n";
  if (szChoice.empty()) szChoice = "{{ if false }}";
  return Fill("mail.tmpl", {{"MARK", FleetFiles::szMark}, {"CHOICE", szChoice}}) + szDefinitions;
}

std::string Alertmanager(const FleetPlan& aPlan, const std::string& szSettled) {
  std::string szMail;
  std::string szReceiver;
  if (aPlan.Mails()) {
    const std::string szFrom = LoadResString(IDS_ALERT_FROM) + aPlan.szEmail + ">";
    szMail = Fill("mail-server.yml",
                  {{"SMARTHOST", Quoted(SmartHost(aPlan))}, {"FROM", Quoted(ForTemplate(szFrom))}});
    szReceiver = Fill("receiver.yml", {{"TO", Quoted(ForTemplate(aPlan.szEmail))},
                                       {"SUBJECT", Quoted(LoadResString(IDS_ALERT_SUBJECT))},
                                       {"MAILER", Quoted(LoadResString(IDS_ALERT_MAILER))}});
  }
  return Fill(
      "alertmanager.yml",
      {{"MARK", FleetFiles::szMark}, {"MAIL", szMail}, {"SETTLED", szSettled}, {"RECEIVER", szReceiver}});
}

std::string Blackbox(const std::set<std::int32_t>& aTimeOuts) {
  std::string szModules;
  for (const std::int32_t lTimeOut : aTimeOuts)
    szModules +=
        Fill("module.yml", {{"TIMEOUT", Duration(lTimeOut)}, {"AGENT", "Kestrova/" KESTROVA_VERSION}});
  if (szModules.empty()) szModules = "  {}\n";
  return Fill("blackbox.yml", {{"MARK", FleetFiles::szMark}, {"MODULES", szModules}});
}

// Seconds between two looks of the rules at the answers.
std::int32_t Evaluation(const FleetPlan& aPlan) {
  return std::clamp(aPlan.lInterval / 12, 1, 30);
}

// "prometheus.yml", or "prometheus-2.yml" where there are several shards.
std::string PrometheusName(std::int32_t lShard, std::int32_t lShards) {
  return lShards == 1 ? "prometheus.yml" : "prometheus-" + std::to_string(lShard) + ".yml";
}

}  // namespace

const std::string_view FleetFiles::szDisagreements =
    "      - a header of 100 KB to 10 MB: down on the desk, which gives up; up here\n"
    "      - \"http/1.1\" in small letters where HTTP/1.1 must stand: up on the desk, down here";

std::int32_t FleetFiles::ScrapeLimit(const std::set<std::int32_t>& aTimeOuts) {
  // The exporter ends a probe half a second before the scrape's limit.
  return (aTimeOuts.empty() ? 1 : *aTimeOuts.rbegin()) + 1;
}

std::int32_t FleetFiles::ScrapeInterval(const FleetPlan& aPlan, const std::set<std::int32_t>& aTimeOuts) {
  // Between a probe that took its whole time and the next one the rules must have looked once.
  return std::max(aPlan.lInterval, ScrapeLimit(aTimeOuts) + 2 * Evaluation(aPlan) + 1);
}

std::vector<FleetFiles::File> FleetFiles::Compose(const FleetPlan& aPlan,
                                                  const std::set<std::int32_t>& aTimeOuts,
                                                  std::int64_t lSites) {
  const std::int32_t lInterval = ScrapeInterval(aPlan, aTimeOuts);
  const std::int32_t lLimit = ScrapeLimit(aTimeOuts);
  const std::string szInterval = Duration(lInterval);
  const std::string szLimit = Duration(lLimit);
  const std::string szEvaluation = Duration(Evaluation(aPlan));
  const std::string szPair = Duration(2 * lInterval - Evaluation(aPlan) - 1);
  const std::string szLast = Duration(2 * lInterval + lLimit);

  std::vector<File> aFiles;
  std::string szStart;
  for (std::int32_t n = 1; n <= aPlan.lShards; ++n) {
    const std::string szName = PrometheusName(n, aPlan.lShards);
    const std::string szShard =
        aPlan.lShards == 1 ? "" : "  external_labels: {shard: \"" + std::to_string(n) + "\"}\n";
    aFiles.push_back({szName, Fill("prometheus.yml", {{"MARK", szMark},
                                                      {"INTERVAL", szInterval},
                                                      {"LIMIT", szLimit},
                                                      {"EVALUATION", szEvaluation},
                                                      {"SHARD", szShard},
                                                      {"TARGETS", TargetFiles::Name(n, aPlan.lShards)},
                                                      {"BLACKBOX", aPlan.szBlackbox},
                                                      {"ALERTMANAGER", aPlan.szAlertmanager}})});
    szStart += "  prometheus --config.file=" + szName + " --storage.tsdb.path=prometheus-data" +
               (aPlan.lShards == 1 ? "" : "-" + std::to_string(n)) + "\n";
  }
  if (aPlan.lShards > 1) szStart += LoadResString(IDS_FLEET_SHARDS) + "\n";
  aFiles.push_back({"blackbox.yml", Blackbox(aTimeOuts)});
  aFiles.push_back({"rules.yml", Fill("rules.yml", {{"MARK", szMark}, {"PAIR", szPair}, {"LAST", szLast}})});
  aFiles.push_back({"alertmanager.yml", Alertmanager(aPlan, szEvaluation)});
  aFiles.push_back({"mail.tmpl", MailTemplate(aPlan)});

  std::string szNote;
  if (lInterval > aPlan.lInterval)
    szNote += FillResString(IDS_FLEET_INTERVAL, {Duration(aPlan.lInterval), szInterval}) + "\n";
  if (!aPlan.Mails()) szNote += LoadResString(IDS_FLEET_NO_MAIL) + "\n";
  aFiles.push_back({"README.txt", Fill("README.txt", {{"MARK", szMark},
                                                      {"SITES", std::to_string(lSites) +
                                                                    (lSites == 1 ? " site" : " sites")},
                                                      {"INTERVAL", szInterval},
                                                      {"START", szStart},
                                                      {"LAST", szLast},
                                                      {"DISAGREE", szDisagreements},
                                                      {"NOTE", szNote}})});
  return aFiles;
}
