// What a pass leaves for others, read by those for whom it is: the metrics by the real promtool, and the
// status page in Chromium (packages prometheus, chromium).
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "base/Text.h"
#include "cli/Cli.h"
#include "fleet/Metrics.h"
#include "fleet/StatusPage.h"
#include "platform/Files.h"

namespace {

using namespace testing;

const DateTime dtNow = JoinDateTime({2026, 1, 20, 8, 0, 0});

// Names that a shell, a label, a page and a narrow screen could stumble over.
std::vector<SiteRecord> List() {
  const std::uint8_t iEnabled = SiteRecord::iEnabled;
  return {{},
          {"", "www.fine.test/a b\\c\"d{}", SiteStatus::iUp, iEnabled, 60, "Site OK"},
          {"", "<script>document.title='no'</script>.test", SiteStatus::iDown, iEnabled, 60, "404 <b>x</b>"},
          {"", "www." + std::string(150, 'w') + ".test", SiteStatus::iWarning, iEnabled, 60, "Time-out"},
          {"", "bytes\xE4\xFF.test", SiteStatus::iUp, iEnabled, 60, "Site OK"},
          {"192.0.2.7", "", SiteStatus::iNotKnown, SiteRecord::iDisabled, 60, ""}};
}

PassFacts Facts() {
  PassFacts aFacts;
  aFacts.dStarted = 1700000000;
  aFacts.dDuration = 12.5;
  aFacts.dtEnded = dtNow;
  aFacts.dtNext = AddMinutes(dtNow, 15);
  for (const SiteRecord& aSite : List())
    if (!SiteName(aSite).empty()) aFacts.aSites[SiteName(aSite)] = {1700000001, 0.25};
  return aFacts;
}

class Served : public Cli {
 protected:
  // By a shell, in the test's folder.
  Result Shell(const std::string& szScript) const {
    return Started("/bin/sh", {"-c", "cd '" + aHome.Folder() + "' && " + szScript}, 60);
  }
};

// What is written is what Prometheus takes, and what the rules and the dashboard ask for.
TEST_F(Served, RulesAndDashboardKnowTheMetrics) {
  if (access("/usr/bin/promtool", X_OK) != 0) GTEST_SKIP() << "install prometheus";
  const std::string szDocs = std::string(KESTROVA_SOURCE) + "/docs/fleet/";
  const auto aBoard =
      nlohmann::json::parse(Files::ReadWhole(szDocs + "dashboard.json", 1 << 20).value_or(""));
  const std::string szRules = Files::ReadWhole(szDocs + "kestrova-rules.yml", 1 << 20).value_or("");
  nlohmann::json aQueries = nlohmann::json::array();
  std::string szAll = szRules;
  for (const auto& aPanel : aBoard.at("panels"))
    for (const auto& aTarget : aPanel.at("targets")) {
      const auto szQuery = aTarget.at("expr").get<std::string>();
      szAll += "\n" + szQuery;
      aQueries.push_back({{"record", "q"}, {"expr", Text::Replace(szQuery, "$__range", "1h")}});
    }
  aHome.Write("queries.yml", nlohmann::json{{"groups", {{{"name", "board"}, {"rules", aQueries}}}}}.dump());
  EXPECT_THAT(Shell("promtool check rules --lint=none queries.yml"), Field(&Result::iCode, 0));

  const std::string szWritten = Metrics::Compose(List(), Facts());
  aHome.Write("kestrova.prom", szWritten);
  EXPECT_THAT(Shell("promtool check metrics < kestrova.prom"), FieldsAre(0, "", ""));
  const std::regex aName("kestrova_[a-z_]+");
  for (std::sregex_iterator a(szAll.begin(), szAll.end(), aName); a != std::sregex_iterator(); ++a)
    EXPECT_NE(szWritten.find("# TYPE " + a->str() + " "), std::string::npos) << a->str();
}

TEST_F(Served, ARuleTellsThatThePassesHaveStopped) {
  if (access("/usr/bin/promtool", X_OK) != 0) GTEST_SKIP() << "install prometheus";
  // Passes of 5 minutes each quarter of an hour, begun at 0, 15 and 30 minutes; none after that.
  aHome.Write("test.yml",
              "rule_files: ['" + std::string(KESTROVA_SOURCE) + R"(/docs/fleet/kestrova-rules.yml']
evaluation_interval: 1m
tests:
  - interval: 1m
    input_series:
      - series: 'kestrova_pass_start_timestamp_seconds{instance="desk"}'
        values: '0x14 900x14 1800x60'
      - series: 'kestrova_pass_interval_seconds{instance="desk"}'
        values: '900x90'
      - series: 'kestrova_pass_duration_seconds{instance="desk"}'
        values: '_x4 300x85'
    alert_rule_test:
      - {eval_time: 10m, alertname: KestrovaStopped, exp_alerts: []}
      - {eval_time: 65m, alertname: KestrovaStopped, exp_alerts: []}
      - eval_time: 67m
        alertname: KestrovaStopped
        exp_alerts:
          - exp_labels: {severity: page, instance: desk}
            exp_annotations: {summary: "Kestrova on desk has begun no pass for 37m 0s"}
  - interval: 1m
    input_series: [{series: 'up', values: '1x30'}]
    alert_rule_test:
      - {eval_time: 14m, alertname: KestrovaSilent, exp_alerts: []}
      - eval_time: 16m
        alertname: KestrovaSilent
        exp_alerts: [{exp_labels: {severity: page}, exp_annotations: {summary: "No metrics of Kestrova arrive"}}]
)");
  EXPECT_THAT(Shell("promtool test rules test.yml"), Field(&Result::iCode, 0));
}

class Page : public Served {
 protected:
  void SetUp() override {
    if (access("/usr/bin/chromium", X_OK) != 0) GTEST_SKIP() << "install chromium";
    const std::string szHeader = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n";
    Trails aTrails;
    for (const SiteRecord& aSite : List())
      for (int i = 0; i < 40 && !SiteName(aSite).empty(); ++i)
        aTrails.Add(SiteName(aSite), i % 9 < 6 ? SiteState::Up : SiteState::Down, dtNow - (40 - i) / 30.0, 1);
    aServer.Serve("/status.htm",
                  {Fault::Send(szHeader + StatusPage::Compose(List(), Facts(), aTrails, dtNow))});
    // Looks at the page in a frame of that width, and says in its own title what it has seen.
    aServer.Serve("/look.htm",
                  {Fault::Send(szHeader + R"(<!DOCTYPE html><title>?</title><style>body{margin:0}</style>
<iframe id="f" src="status.htm" width="400" height="900" style="border:0"></iframe><script>
f.onload = () => {
  const page = f.contentDocument, body = f.contentWindow.getComputedStyle(page.body);
  document.title = JSON.stringify({wide: page.scrollingElement.scrollWidth, room: page.scrollingElement.clientWidth, title: page.title,
    rows: page.querySelectorAll("tbody")[0].rows.length, paper: body.backgroundColor, ink: body.color,
    elsewhere: f.contentWindow.performance.getEntriesByType("resource").length});
};</script>)")});
  }

  Result Chromium(const std::string& szOptions, const std::string& szPath) const {
    return Shell(
        "HOME=$PWD exec chromium --headless --no-sandbox --disable-gpu --disable-dev-shm-usage "
        "--user-data-dir=\"$PWD/profile\" --virtual-time-budget=3000 " +
        szOptions + " " + aServer.URL(szPath));
  }
  nlohmann::json Look(const std::string& szOptions) const {
    const Result aSeen = Chromium(szOptions + " --dump-dom", "/look.htm");
    std::smatch aTitle;
    if (!std::regex_search(aSeen.szOutput, aTitle, std::regex("<title>(\\{.*\\})</title>"))) {
      ADD_FAILURE() << aSeen.szOutput << aSeen.szErrors;
      return {};
    }
    return nlohmann::json::parse(aTitle[1].str(), nullptr, false);
  }
};

TEST_F(Page, IsReadableOnATelephoneInBothLightsAndOnPaper) {
  const auto aLight = Look("--blink-settings=preferredColorScheme=1");
  EXPECT_LE(aLight["room"], 400);
  EXPECT_EQ(aLight["wide"], aLight["room"]) << "it must be scrolled sideways";
  EXPECT_EQ(aLight["title"], "Kestrova: status");
  EXPECT_EQ(aLight["rows"], 5);
  EXPECT_EQ(aLight["elsewhere"], 0);
  EXPECT_EQ(aLight["paper"], "rgb(255, 255, 255)");
  const auto aDark = Look("--blink-settings=preferredColorScheme=0");
  EXPECT_NE(aDark["paper"], aLight["paper"]);
  EXPECT_NE(aDark["ink"], aLight["ink"]);

  Chromium("--print-to-pdf=page.pdf", "/status.htm");
  EXPECT_TRUE(aHome.Read("page.pdf").starts_with("%PDF-"));
}

}  // namespace
