// That it is the same monitor: the exported folder under the real Prometheus, blackbox exporter and
// Alertmanager (packages prometheus, prometheus-blackbox-exporter, prometheus-alertmanager), beside the
// desk's own engine, over servers that misbehave. All of it on 127.0.0.1.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "check/PassFixture.h"
#include "fleet/FleetFiles.h"
#include "fleet/PrometheusFolder.h"
#include "servers/SmtpServer.h"
#include "support/ChildProcess.h"
#include "support/ReadMail.h"

namespace {

using namespace std::string_literals;

struct Case {
  std::string szName;
  Fault::Answer aAnswer;
  bool bJudgedOtherwise = false;  // README.txt says why
};

// What a server can answer, or fail to.
std::vector<Case> Catalogue() {
  using namespace Fault;
  const std::string szOk = "HTTP/1.1 200 OK\r\n";
  std::vector<Case> aCases;
  for (const int i : {200, 201, 202, 203, 204, 206, 300, 301, 302, 303, 304,
                      307, 400, 401, 403, 404, 418, 500, 503, 599, 999})
    aCases.push_back({std::to_string(i), Status(std::to_string(i) + " X")});
  const std::vector<Case> aOthers = {
      {"redirect", {Send("HTTP/1.1 302 Found\r\nLocation: /404\r\nContent-Length: 0\r\n\r\n")}},
      {"interim", {Send("HTTP/1.1 100 Continue\r\n\r\n" + szOk + "Content-Length: 0\r\n\r\n")}},
      {"only-interim", {Send("HTTP/1.1 100 Continue\r\n\r\n")}},
      {"switch", {Send("HTTP/1.1 101 Switch\r\n\r\n")}},
      {"hang", {Hang()}},
      {"hang-in-body", {Send(szOk + "Content-Length: 9\r\n\r\nabc"), Hang()}},
      {"endless", {Send(szOk + "\r\n"), Endless(std::string(1000, 'x')), Hang()}},
      {"slow", {Delay(1200), Send(szOk + "Content-Length: 0\r\n\r\n")}},
      {"nothing", {}},
      {"reset", {Reset()}},
      {"cut-header", {Send(szOk + "Content-Ty")}},
      {"cut-body", {Send(szOk + "Content-Length: 100\r\n\r\nabc")}},
      {"reset-in-body", {Send(szOk + "Content-Length: 9\r\n\r\nabc"), Delay(50), Reset()}},
      {"bad-chunk", {Send(szOk + "Transfer-Encoding: chunked\r\n\r\nzz\r\n")}},
      {"no-length", {Send(szOk + "\r\nabc")}},
      {"no-http", {Send("220 mail ESMTP\r\n")}},
      {"page-alone", {Send("<html>hello</html>\r\n")}},
      {"no-status", {Send("HTTP/1.1 abc\r\n\r\n")}},
      {"nonsense-header", {Send(szOk + "nonsense\r\n\r\n")}},
      {"negative-length", {Send(szOk + "Content-Length: -1\r\n\r\n")}},
      {"broken-gzip", {Send(szOk + "Content-Encoding: gzip\r\nContent-Length: 3\r\n\r\nabc")}},
      {"lower-case", {Send("http/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")}, true},
      {"header-60k", {Send(szOk + "A: " + std::string(60000, 'x') + "\r\nContent-Length: 0\r\n\r\n")}},
      {"header-200k",
       {Send(szOk + "A: " + std::string(204800, 'x') + "\r\nContent-Length: 0\r\n\r\n")},
       true},
  };
  aCases.insert(aCases.end(), aOthers.begin(), aOthers.end());
  return aCases;
}

// One of the real servers, in the folder.
std::vector<std::string> InFolder(const std::string& szFolder, const std::string& szCommand) {
  return {"-c", "cd '" + szFolder + "' && exec " + szCommand};
}

class PrometheusServers : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* szProgram :
         {"/usr/bin/prometheus", "/usr/bin/promtool", "/usr/bin/prometheus-blackbox-exporter",
          "/usr/bin/prometheus-alertmanager", "/usr/bin/amtool"})
      if (access(szProgram, X_OK) != 0)
        GTEST_SKIP() << szProgram << " is not here: install prometheus, prometheus-blackbox-exporter and "
                     << "prometheus-alertmanager";
  }

  void Export(const std::vector<SiteRecord>& aList) {
    aPlan.szBlackbox = "127.0.0.1:" + std::to_string(FaultServer::RefusingPort());
    aPlan.szAlertmanager = "127.0.0.1:" + std::to_string(FaultServer::RefusingPort());
    szPrometheus = "127.0.0.1:" + std::to_string(FaultServer::RefusingPort());
    const auto aReport = PrometheusFolder::Write(szFolder, aPlan, [&](const PrometheusFolder::Take& aTake) {
      for (std::size_t i = 0; i < aList.size(); ++i)
        aTake(aList[i], static_cast<std::int64_t>(i) + 1);
      return true;
    });
    ASSERT_EQ(aReport.iResult, PrometheusFolder::Result::Done) << aReport.szFile;
  }

  void Start() {
    for (const std::string& szCommand :
         {"prometheus-blackbox-exporter --config.file=blackbox.yml --web.listen-address=" + aPlan.szBlackbox,
          "prometheus-alertmanager --config.file=alertmanager.yml --data.retention=17520h --storage.path=am "
          "--cluster.listen-address= --web.listen-address=" +
              aPlan.szAlertmanager,
          "prometheus --config.file=prometheus.yml --storage.tsdb.path=data --web.listen-address=" +
              szPrometheus})
      aServers.push_back(std::make_unique<ChildProcess>("/bin/sh", InFolder(szFolder, szCommand)));
  }

  // What the tool says of the exported files; it exits with 0 when it is content.
  void ExpectContent(const std::string& szCommand) {
    ChildProcess aTool("/bin/sh", InFolder(szFolder, szCommand));
    EXPECT_EQ(aTool.Wait(30), 0) << szCommand << ": " << aTool.Output() << aTool.Errors();
  }

  // The values of a query by site; empty while Prometheus is not ready.
  std::map<std::string, double> Query(const std::string& szQuery) {
    ChildProcess aTool("/usr/bin/promtool",
                       {"query", "instant", "-o", "json", "http://" + szPrometheus, szQuery});
    std::map<std::string, double> aValues;
    if (aTool.Wait(20) != 0) return aValues;
    for (const auto& aSample : nlohmann::json::parse(aTool.Output(), nullptr, false))
      aValues[aSample["metric"].value("site", "")] = std::stod(aSample["value"][1].get<std::string>());
    return aValues;
  }

  template <typename Condition>
  bool WaitFor(double dSeconds, Condition aCondition) {
    const Stopwatch aWatch;
    while (!aCondition()) {
      if (aWatch.Seconds() > dSeconds) return false;
      ChildProcess("/bin/sleep", {"0.2"}).Wait(5);  // nothing to wait on: the servers tell nobody
    }
    return true;
  }

  std::string Complaints() const {
    std::string szAll;
    for (const auto& pServer : aServers)
      szAll += pServer->Errors().substr(0, 3000);
    return szAll;
  }

  PassFixture b;
  SmtpServer aMail;
  FleetPlan aPlan;
  std::string szFolder = b.Home.Path("p"), szPrometheus;
  std::vector<std::unique_ptr<ChildProcess>> aServers;
};

TEST_F(PrometheusServers, EveryAnswerIsJudgedAsOnTheDesk) {
  const auto aCases = Catalogue();
  constexpr std::int32_t lTimeOut = 3;
  const auto AddSite = [&](const std::string& szURL) { b.Add(szURL, "", SiteStatus::iNotKnown, lTimeOut); };
  for (const Case& aCase : aCases) {
    b.Server.Serve("/" + aCase.szName, aCase.aAnswer);
    AddSite(b.Server.Site("/" + aCase.szName));
  }
  AddSite(b.Server.Site("/a b\xC3\xA4?q=1#part"));
  AddSite("127.0.0.1:" + std::to_string(FaultServer::RefusingPort()));
  const DeafPort aDeaf;
  AddSite("127.0.0.1:" + std::to_string(aDeaf.Port()));
  AddSite("no-such-name.invalid");

  aPlan.lInterval = 6;
  Export({aSites.begin() + 1, aSites.end()});
  Start();
  const Stopwatch aWatch;
  b.View.OnPump = [&] {
    b.aClock.Advance(std::max(0.0, aWatch.Seconds() + 1000 - b.aClock.SteadySeconds()));
    b.Engine.TimerMain_Timer();
  };
  b.Engine.mF_StartCheck_Click();

  std::map<std::string, double> aProbed;
  ASSERT_TRUE(WaitFor(60,
                      [&] {
                        aProbed = Query("probe_success{job=\"kestrova\"}");
                        return aProbed.size() == static_cast<std::size_t>(lSiteCount);
                      }))
      << aProbed.size() << Complaints();
  for (std::int32_t n = 1; n <= lSiteCount; ++n) {
    const SiteRecord& aSite = modAddress::Site(n);
    const bool bDesk = aSite.Status == SiteStatus::iUp;
    const auto i = static_cast<std::size_t>(n - 1);
    const bool bOtherwise = i < aCases.size() && aCases[i].bJudgedOtherwise;
    EXPECT_EQ(aProbed.at(aSite.URL) == 1, bDesk != bOtherwise) << aSite.URL << ": " << aSite.Comments;
  }
  EXPECT_EQ(modAddress::Site(1).Status, SiteStatus::iUp);
}

// Fails three times, recovers, fails once, recovers, fails twice.
TEST_F(PrometheusServers, OneMailForEachOutageOfASiteThatFlaps) {
  using Fault::Ok, Fault::Status;
  b.Server.ServeInOrder("/flaps", {Status("404 x"), Status("404 x"), Status("404 x"), Ok(), Status("500 x"),
                                   Ok(), Status("503 x"), Status("503 x"), Ok()});
  aPlan.szManager = "J\xC3\xBCrgen";
  aPlan.szEmail = "manager@example.org";
  aPlan.szMailServer = "127.0.0.1";
  aPlan.lMailPort = aMail.Port();
  aPlan.lInterval = 3;
  aPlan.aMessages = {{"0", "other"},
                     {"404", "Dear %MGRNAME%,\r\n{{ %url% }} is gone (%TIMEOUT%).\r\n"},
                     {"5xx", "%URL% is broken."},
                     {"answered", "PS. %IP% answered."}};
  SiteRecord aSite{
      b.Server.Address(), b.Server.Site("/flaps"), SiteStatus::iNotKnown, SiteRecord::iEnabled, 1, ""};
  Export({aSite});
  ExpectContent("promtool check config prometheus.yml");
  ExpectContent("promtool check rules rules.yml");
  ExpectContent("amtool check-config alertmanager.yml");
  ExpectContent("prometheus-blackbox-exporter --config.check --config.file=blackbox.yml");
  Start();

  std::set<std::string> aAlerts;
  ASSERT_TRUE(WaitFor(110,
                      [&] {
                        for (const char* szAlert : {"KestrovaSiteWarning", "KestrovaSiteDown"})
                          if (Query("ALERTS{alertstate='firing',alertname='"s + szAlert + "'}").size() == 1)
                            aAlerts.insert(szAlert + std::to_string(b.Server.Count("/flaps")));
                        return b.Server.Count("/flaps") >= 10;
                      }))
      << b.Server.Count("/flaps") << Complaints();
  for (const char* szTold : {"KestrovaSiteWarning1", "KestrovaSiteDown2", "KestrovaSiteWarning5"})
    EXPECT_TRUE(aAlerts.contains(szTold)) << szTold << testing::PrintToString(aAlerts);
  for (const char* szQuiet :
       {"KestrovaSiteDown1", "KestrovaSiteDown5", "KestrovaSiteDown6", "KestrovaSiteDown10"})
    EXPECT_FALSE(aAlerts.contains(szQuiet)) << szQuiet;

  const auto aMails = aMail.Mails();
  ASSERT_EQ(aMails.size(), 2U) << Complaints();
  const std::string szURL = "http://" + aSite.URL;
  const std::string szPostscript = "PS. http://" + b.Server.Address() + " answered.";
  const std::string aBodies[] = {
      "Dear J\xC3\xBCrgen,\n{{ " + szURL + " }} is gone (1 sec.).\n\n\n" + szPostscript,
      szURL + " is broken.\n\n" + szPostscript};
  for (std::size_t i = 0; i < aMails.size(); ++i) {
    const ReadMail aRead(aMails[i].szText);
    EXPECT_EQ(aMails[i].aRecipients, std::vector<std::string>{"manager@example.org"});
    EXPECT_EQ(aRead.Only("from"), "Kestrova <manager@example.org>");
    EXPECT_EQ(aRead.Only("subject"), "Kestrova Alert");
    // It comes as the one part of a multipart mail.
    const std::string szPart = aMails[i].szText.substr(aMails[i].szText.find("\r\n--") + 2);
    const ReadMail aPart(szPart.substr(szPart.find("\r\n") + 2));
    EXPECT_TRUE(aPart.Only("content-type").starts_with("text/plain")) << aMails[i].szText;
    EXPECT_TRUE(aPart.szBody.starts_with(aBodies[i])) << aPart.szBody;
  }
}

}  // namespace
