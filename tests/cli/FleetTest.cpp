// What kestrova-cli gives to other tools.
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/Cli.h"
#include "platform/Environment.h"

namespace {

using namespace testing;
using Fleet = Cli;

TEST_F(Fleet, ExportForPrometheusFromTheStoreAndFromAListOfAnyLength) {
  ImportList("www.a.test,,4,1,10\r\nwww.b.test,192.0.2.1,4,0,10\r\nwww.c.test,192.0.2.1,4,1,10\r\n");
  const std::string szFolder = aHome.Path("out");
  Files::MakeFolder(aHome.Path("Messages"));
  aHome.Write("Messages/HTTP-404.txt", "%URL% is gone");
  EXPECT_THAT(Run({"export", "--prometheus", szFolder}),
              FieldsAre(0, HasSubstr("2 sites in"), HasSubstr("mailed to nobody")));
  EXPECT_THAT(aHome.Read("out/targets.json"), HasSubstr("http://www.c.test"));
  EXPECT_THAT(aHome.Read("out/mail.tmpl"), HasSubstr("http://{{ .Labels.site }} is gone"));

  // Longer than one piece of the file, its last line without an end.
  std::string szList = "\xEF\xBB\xBF";
  for (int i = 0; i < 60000; ++i)
    szList += "www.site" + std::to_string(i) + ".test,,4,1,10\n\n";
  aHome.Write("long.kvd", szList + "last.test,,4,1,10");
  const auto Export = [&](const std::string& szFrom) {
    return Run({"export", "--prometheus", szFolder, "--from", aHome.Path(szFrom), "--shards", "2"});
  };
  EXPECT_THAT(Export("long.kvd").szOutput, HasSubstr("60001 sites in"));
  EXPECT_FALSE(Files::FileExists(aHome.Path("out/targets.json")));

  const std::string szTargets = aHome.Read("out/targets-1.json");
  aHome.Write("bad.kvd", szList + "bad.test,not-an-address,4,1,10\n");
  EXPECT_THAT(Export("bad.kvd"), FieldsAre(2, _, HasSubstr("120001")));
  EXPECT_EQ(aHome.Read("out/targets-1.json"), szTargets);
}

TEST_F(Fleet, PassesAsJsonLinesAndAsAPlugin) {
  aServer.Serve("/bad", Fault::Status("404 \x1b[31m"));
  ImportList(ListOf({aServer.Site("/good"), aServer.Site("/bad")}));
  const Result aResult = Run({"check", "--json"});
  EXPECT_EQ(aResult.iCode, 1) << aResult.szErrors;
  std::vector<nlohmann::json> aLines;
  std::istringstream aOutput(aResult.szOutput);
  for (std::string szLine; std::getline(aOutput, szLine);)
    aLines.push_back(nlohmann::json::parse(szLine));
  ASSERT_EQ(aLines.size(), 4U);
  EXPECT_EQ(aLines[0]["event"], "pass-begins");
  EXPECT_EQ(aLines[3]["event"], "pass-ends");
  EXPECT_EQ(aLines[3]["warning"], 1);
  EXPECT_EQ(aLines[3]["up"], 1);
  for (const int i : {1, 2}) {
    const bool bGood = aLines[static_cast<std::size_t>(i)]["url"] == aServer.Site("/good");
    EXPECT_EQ(aLines[static_cast<std::size_t>(i)]["status"], bGood ? "up" : "warning");
    EXPECT_GE(aLines[static_cast<std::size_t>(i)]["seconds"], 0);
  }

  EXPECT_THAT(Run({"check", "--plugin"}),  // the second failure in a row
              FieldsAre(2,
                        HasPattern("^KESTROVA CRITICAL - 1 up, 0 warning, 1 down, 0 disabled; 127[^|]*/bad "
                                   "\\| up=1 warning=0;0 down=1;;0 time=[0-9.]+s\n$"),
                        _));
  aServer.Serve("/bad", Fault::Ok());
  EXPECT_EQ(Run({"check", "--plugin"}).iCode, 0);
  EXPECT_EQ(Run({"check", "--plugin", "--json"}).iCode, 2);
  aServer.Serve("/bad", Fault::Status("404 x"));
  EXPECT_EQ(Run({"check", "--plugin"}).iCode, 1) << "the first one";

  // Called for two services at the same moment, each has its turn.
  const auto pOpen = std::make_shared<std::atomic<bool>>(false);
  // With its length: on Windows the second process inherits the server's end of the connection, which then
  // does not end where the server closes it.
  aServer.Serve("/good",
                {Fault::HoldUntil(pOpen), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  const auto lSeen = aServer.Count();
  Registry::CloseStore();
  ChildProcess aFirst(Program(), {"check", "--plugin", "--site", "/good"});
  ASSERT_TRUE(aServer.WaitForRequests(lSeen + 1));
  ChildProcess aSecond(Program(), {"check", "--plugin", "--site", "/good"});
  EXPECT_EQ(aSecond.Wait(0.5), ChildProcess::lRunning);
  *pOpen = true;
  EXPECT_EQ(aFirst.Wait(dMostSeconds), 0);
  EXPECT_EQ(aSecond.Wait(dMostSeconds), 0);

  ::Environment::Set("KESTROVA_REGISTRY", aHome.Folder());  // a folder is no store
  EXPECT_THAT(Run({"check", "--plugin"}), FieldsAre(3, HasPattern("^KESTROVA UNKNOWN - .*\n$"), ""));
}

TEST_F(Fleet, FilesForOtherToolsAreKept) {
  ImportList(ListOf({aServer.Site("/good")}));
  const std::string szMetrics = aHome.Path("k.prom");
  EXPECT_THAT(Run({"metrics", "--show"}).szOutput, HasSubstr("No such file"));
  EXPECT_EQ(Run({"metrics", szMetrics}).iCode, 0);
  EXPECT_EQ(Run({"page", aHome.Path("p.htm")}).iCode, 0);
  EXPECT_EQ(Run({"metrics", "--show"}).szOutput, szMetrics + "\n");
  EXPECT_EQ(Run({"check"}).iCode, 0);
  EXPECT_THAT(aHome.Read("k.prom"), HasSubstr("kestrova_site_up{site=\"" + aServer.Site("/good") + "\"} 1"));
  EXPECT_THAT(aHome.Read("p.htm"), HasSubstr("The one site is up"));

  // A file that cannot be written costs a line, not the pass.
  EXPECT_THAT(Run({"check", "--metrics", aHome.Path("no/m.prom")}),
              FieldsAre(2, HasSubstr("1 up"), HasPattern("^[^\n]+\n$")));
  EXPECT_THAT(Run({"metrics", aHome.Path("no/m.prom")}), Refuses());
  EXPECT_THAT(Run({"metrics", aHome.Folder()}), Refuses());
  EXPECT_EQ(Run({"metrics", "--off"}).iCode, 0);
  EXPECT_THAT(Run({"metrics", "--show"}).szOutput, HasSubstr("No such file"));
}

TEST_F(Fleet, SomeSitesOnly) {
  aServer.Serve("/bad", Fault::Status("404 x"));
  ImportList(ListOf({aServer.Site("/good"), aServer.Site("/bad"), "off.test"}) + "disabled.test,,4,0,10\r\n");
  EXPECT_EQ(Run({"check", "--site", "/GOOD"}).iCode, 0);
  EXPECT_EQ(aServer.Count("/bad"), 0);
  EXPECT_THAT(Log(),
              AllOf(HasPattern("^.START CHECK: MANUAL"), HasSubstr("/good,"), Not(HasSubstr("END CHECK"))));
  EXPECT_THAT(Run({"check", "--json", "--site", "/bad"}),
              FieldsAre(1, AllOf(HasSubstr("\"sites\":1}"), HasSubstr("\"up\":0,\"warning\":1")), _));
  EXPECT_EQ(Run({"check", "--plugin", "--site", "/good"}).iCode, 0);
  EXPECT_EQ(aServer.Count("/good"), 2);
  EXPECT_EQ(Run({"check", "--site", "disabled"}).iCode, 2);
  for (const char* szNone : {"99", "no-such"})
    EXPECT_THAT(Run({"list", "--site", szNone}), Refuses());
  const auto aByText = nlohmann::json::parse(Run({"list", "--json", "--site", "/bad"}).szOutput);
  ASSERT_EQ(aByText.size(), 1U);
  EXPECT_EQ(aByText[0]["status"], "warning") << "as the pass over it alone has left it";
  const std::string szNumber = std::to_string(aByText[0]["number"].get<int>());
  EXPECT_EQ(nlohmann::json::parse(Run({"list", "--json", "--site", szNumber}).szOutput), aByText);
}

TEST_F(Fleet, TheManualHoldsNestedCommandsAndOptions) {
  EXPECT_THAT(Run({"manual"}).szOutput,
              AllOf(HasSubstr("\n.SS \"startup on"), HasSubstr("\n.B \\-\\-prometheus")));
}

}  // namespace
