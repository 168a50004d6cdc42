// What kestrova-cli gives to other tools.
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "cli/Cli.h"
#include "platform/Environment.h"

namespace {

using Fleet = Cli;

TEST_F(Fleet, ExportForPrometheusFromTheStoreAndFromAListOfAnyLength) {
  ImportList("www.a.test,,4,1,10\r\nwww.b.test,192.0.2.1,4,0,10\r\nwww.c.test,192.0.2.1,4,1,10\r\n");
  const std::string szFolder = aHome.Path("out");
  Files::MakeFolder(aHome.Path("Messages"));
  aHome.Write("Messages/HTTP-404.txt", "%URL% is gone");
  Result aResult = Run({"export", "--prometheus", szFolder});
  EXPECT_EQ(aResult.iCode, 0) << aResult.szErrors;
  EXPECT_THAT(aResult.szOutput, testing::HasSubstr("2 sites in"));
  EXPECT_THAT(aResult.szErrors, testing::HasSubstr("mailed to nobody"));
  EXPECT_THAT(aHome.Read("out/targets.json"), testing::HasSubstr("http://www.c.test"));
  EXPECT_THAT(aHome.Read("out/mail.tmpl"), testing::HasSubstr("http://{{ .Labels.site }} is gone"));

  // Longer than one piece of the file, its last line without an end.
  std::string szList = "\xEF\xBB\xBF";
  for (int i = 0; i < 60000; ++i)
    szList += "www.site" + std::to_string(i) + ".test,,4,1,10\n\n";
  aHome.Write("long.kvd", szList + "last.test,,4,1,10");
  aResult = Run({"export", "--prometheus", szFolder, "--from", aHome.Path("long.kvd"), "--shards", "2"});
  EXPECT_THAT(aResult.szOutput, testing::HasSubstr("60001 sites in")) << aResult.szErrors;
  EXPECT_FALSE(Files::FileExists(aHome.Path("out/targets.json")));

  const std::string szTargets = aHome.Read("out/targets-1.json");
  aHome.Write("bad.kvd", szList + "bad.test,not-an-address,4,1,10\n");
  aResult = Run({"export", "--prometheus", szFolder, "--from", aHome.Path("bad.kvd"), "--shards", "2"});
  EXPECT_EQ(aResult.iCode, 2);
  EXPECT_THAT(aResult.szErrors, testing::HasSubstr("120001"));
  EXPECT_EQ(aHome.Read("out/targets-1.json"), szTargets);
}

TEST_F(Fleet, ExportForPrometheusSaysWhatIsWrong) {
  aHome.Write("file", "x");
  const std::vector<std::string> aCases[] = {
      {"export", "--prometheus", aHome.Path("file")},
      {"export", "--prometheus", aHome.Path("no/such/folder")},
      {"export", "--prometheus", aHome.Path("o"), "--from", "missing.kvd"},
      {"export", "--prometheus", aHome.Path("o"), "--shards", "0"},
      {"export", "--prometheus", aHome.Path("o"), "x.kvd"},
      {"export", "--shards", "2", "x.kvd"},
      {"export"}};
  for (const auto& aArguments : aCases) {
    const Result aResult = Run(aArguments);
    EXPECT_EQ(aResult.iCode, 2) << testing::PrintToString(aArguments);
    EXPECT_EQ(std::ranges::count(aResult.szErrors, '\n'), 1) << aResult.szErrors;
  }
  EXPECT_EQ(aHome.Read("file"), "x");
}

TEST_F(Fleet, PassesAsJsonLinesAndAsAPlugin) {
  aServer.Serve("/bad", Fault::Status("404 \x1b[31m"));
  ImportList(ListOf({aServer.Site("/good"), aServer.Site("/bad")}));
  Result aResult = Run({"check", "--json"});
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

  aResult = Run({"check", "--plugin"});  // the second failure in a row
  EXPECT_EQ(aResult.iCode, 2);
  EXPECT_THAT(aResult.szOutput,
              HasPattern("^KESTROVA CRITICAL - 1 up, 0 warning, 1 down, 0 disabled; 127[^|]*/bad \\| "
                         "up=1 warning=0;0 down=1;;0 time=[0-9.]+s\n$"));
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

  aHome.Write("no.db", std::string(5000, 'x'));
  Environment::Set("KESTROVA_REGISTRY", aHome.Folder());  // a folder is no store
  aResult = Run({"check", "--plugin"});
  EXPECT_EQ(aResult.iCode, 3);
  EXPECT_THAT(aResult.szOutput, HasPattern("^KESTROVA UNKNOWN - .*\n$"));
  EXPECT_EQ(aResult.szErrors, "");
}

TEST_F(Fleet, FilesForOtherToolsAreKept) {
  ImportList(ListOf({aServer.Site("/good")}));
  const std::string szMetrics = aHome.Path("k.prom");
  EXPECT_THAT(Run({"metrics", "--show"}).szOutput, testing::HasSubstr("No such file"));
  EXPECT_EQ(Run({"metrics", szMetrics}).iCode, 0);
  EXPECT_EQ(Run({"page", aHome.Path("p.htm")}).iCode, 0);
  EXPECT_EQ(Run({"metrics", "--show"}).szOutput, szMetrics + "\n");
  EXPECT_EQ(Run({"check"}).iCode, 0);
  EXPECT_THAT(aHome.Read("k.prom"),
              testing::HasSubstr("kestrova_site_up{site=\"" + aServer.Site("/good") + "\"} 1"));
  EXPECT_THAT(aHome.Read("p.htm"), testing::AllOf(testing::HasSubstr("The one site is up"),
                                                  testing::HasSubstr("no next one is planned")));

  // A file that cannot be written costs a line, not the pass.
  const Result aResult = Run({"check", "--metrics", aHome.Path("no/m.prom")});
  EXPECT_EQ(aResult.iCode, 2);
  EXPECT_EQ(std::ranges::count(aResult.szErrors, '\n'), 1) << aResult.szErrors;
  EXPECT_THAT(aResult.szOutput, testing::HasSubstr("1 up"));
  EXPECT_EQ(Run({"metrics", aHome.Path("no/m.prom")}).iCode, 2);
  EXPECT_EQ(Run({"metrics", aHome.Folder()}).iCode, 2);
  EXPECT_EQ(Run({"metrics", "--off"}).iCode, 0);
  EXPECT_THAT(Run({"metrics", "--show"}).szOutput, testing::HasSubstr("No such file"));
}

TEST_F(Fleet, SomeSitesOnly) {
  aServer.Serve("/bad", Fault::Status("404 x"));
  ImportList(ListOf({aServer.Site("/good"), aServer.Site("/bad"), "off.test"}) + "disabled.test,,4,0,10\r\n");
  Result aResult = Run({"check", "--site", "/GOOD"});
  EXPECT_EQ(aResult.iCode, 0) << aResult.szErrors;
  EXPECT_EQ(aServer.Count("/bad"), 0);
  EXPECT_THAT(Log(), testing::AllOf(HasPattern("^.START CHECK: MANUAL"), testing::HasSubstr("/good,"),
                                    testing::Not(testing::HasSubstr("END CHECK"))));
  aResult = Run({"check", "--json", "--site", "/bad"});
  EXPECT_EQ(aResult.iCode, 1);
  EXPECT_THAT(aResult.szOutput, testing::AllOf(testing::HasSubstr("\"sites\":1}"),
                                               testing::HasSubstr("\"up\":0,\"warning\":1")));
  EXPECT_EQ(Run({"check", "--plugin", "--site", "/good"}).iCode, 0);
  EXPECT_EQ(aServer.Count("/good"), 2);
  EXPECT_EQ(Run({"check", "--site", "disabled"}).iCode, 2);
  for (const char* szNone : {"99", "no-such"}) {
    aResult = Run({"list", "--site", szNone});
    EXPECT_EQ(aResult.iCode, 2);
    EXPECT_EQ(std::ranges::count(aResult.szErrors, '\n'), 1) << aResult.szErrors;
  }
  const auto aByText = nlohmann::json::parse(Run({"list", "--json", "--site", "/bad"}).szOutput);
  ASSERT_EQ(aByText.size(), 1U);
  EXPECT_EQ(aByText[0]["status"], "warning") << "as the pass over it alone has left it";
  const std::string szNumber = std::to_string(aByText[0]["number"].get<int>());
  EXPECT_EQ(nlohmann::json::parse(Run({"list", "--json", "--site", szNumber}).szOutput), aByText);
}

// The words that stand in the usage of "--help", with those of nested commands.
TEST_F(Fleet, ManualHoldsEveryCommandAndOption) {
  const std::string szPage = Run({"manual"}).szOutput;
  const std::string szHelp = Run({"--help"}).szOutput;
  std::vector<std::vector<std::string>> aVerbs;
  std::istringstream aLines(szHelp.substr(szHelp.find("Subcommands:")));
  for (std::string szLine; std::getline(aLines, szLine);)
    if (std::smatch aMatch; std::regex_search(szLine, aMatch, std::regex("^  ([a-z]+) ")))
      aVerbs.push_back({aMatch[1]});
  ASSERT_GE(aVerbs.size(), 13U);
  aVerbs.insert(aVerbs.end(), {{"startup", "on"}, {"registry", "export"}});
  const auto InPage = [](const std::string& szWord) {
    return std::regex_replace(szWord, std::regex("-"), "\\-");
  };
  for (auto aVerb : aVerbs) {
    const std::string szVerb = aVerb.size() == 1 ? aVerb[0] : aVerb[0] + " " + aVerb[1];
    EXPECT_THAT(szPage, testing::HasSubstr("\n.SS \"" + szVerb));
    aVerb.emplace_back("--help");
    const std::string szUsage = Run(aVerb).szOutput;
    const std::regex aOption("\n  (--[a-z]+)");
    for (std::sregex_iterator a(szUsage.begin(), szUsage.end(), aOption); a != std::sregex_iterator(); ++a)
      EXPECT_THAT(szPage.substr(szPage.find("\n.SS \"" + szVerb)),
                  testing::HasSubstr("\n.B " + InPage((*a)[1])))
          << szVerb;
  }
}

}  // namespace
