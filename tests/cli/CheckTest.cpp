// check and watch against real servers: what is printed, stored and logged, and what an interrupt leaves
// behind.
#include <nlohmann/json.hpp>

#include "cli/Cli.h"
#include "support/Stored.h"

using namespace testing;

constexpr std::int32_t lUsersPolicy = 17;  // no value that the program itself writes

TEST_F(Cli, ExitCodeAndLinesTellHowTheSitesAre) {
  aServer.Serve("/gone", Fault::Status("404 Not Found"));
  const std::string szFine = ListOf({aServer.Site("/fine")}), szGone = aServer.Site("/gone");
  const struct {
    std::string szList;
    std::vector<std::string> aArguments;
    int iCode;
    const char *szLine, *szSummary;
  } aPasses[] = {
      {"", {"check"}, 0, "No sites to check.", ""},
      {szFine + szGone + ",,4,0,10\r\n", {"check"}, 0, "  up +http://127[^ ]+/fine +Site OK", "1 disabled."},
      {szGone + ",,4,1,10\r\n", {"check"}, 1, "  warning +http://127[^ ]+/gone +404 File Not Found", "1 up"},
      {"", {"check"}, 1, "  down +http://127[^ ]+/gone +404 File Not Found", "2 sites checked"},
      {"", {"check"}, 1, "  down +http://", "1 up, 0 warning, 1 down"},
      {"", {"check", "--restart"}, 1, "  warning +http://", "1 up, 1 warning, 0 down"}};
  for (const auto& aPass : aPasses) {
    if (!aPass.szList.empty()) ImportList(aPass.szList);
    EXPECT_THAT(Run(aPass.aArguments),
                FieldsAre(aPass.iCode, AllOf(HasPattern(aPass.szLine), HasSubstr(aPass.szSummary)), ""));
  }
  EXPECT_THAT(Log(), HasSubstr("[END CHECK]\r\n[START CHECK: MANUAL - "));
}

TEST_F(Cli, NothingThatAServerSendsReachesTheTerminalAsAControl) {
  const std::string szEvil = "\033]0;x\007\033[2J\x7f\xE9\xC2\x9B-5n";
  std::string szList;
  for (const auto& szAnswer :
       {"HTTP/1.1 500 " + szEvil + "\r\nX: " + szEvil + "\r\n\r\n" + szEvil, szEvil + "\r\n",
        "HTTP/1.1 " + szEvil + "\r\n\r\n", "HTTP/1.1 200 OK\r\n" + szEvil + "\r\n\r\n"}) {
    const std::string szPath = "/" + std::to_string(szAnswer.size());
    aServer.Serve(szPath, {Fault::Send(szAnswer)});
    szList += ListOf({aServer.Site(szPath)});
  }
  ImportList(szList);
  modAddress::WriteSiteRecord(
      {"", aServer.Site("/" + szEvil), SiteStatus::iNotKnown, SiteRecord::iEnabled, 10, ""}, 9);
  for (const char* szVerb : {"check", "check", "list"})
    EXPECT_THAT(Run({szVerb}), FieldsAre(_, IsPlain(), IsPlain()));
  const std::string szJson = Run({"list", "--json"}).szOutput;
  EXPECT_EQ(nlohmann::json::parse(szJson).size(), 5U);
  EXPECT_THAT(szJson, IsPlain());
}

TEST_F(Cli, APassRefusesOtherProgramsAndAnInterruptStopsItInGoodOrder) {
  ImportList(ListOf({aServer.Site("/a-fine"), aServer.Site("/b-hang"), aServer.Site("/c-never")}, 60));
  aServer.Serve("/b-hang", {Fault::Hang()});
  const std::string szList = aHome.Path("list.kvd"), szReg = aHome.Path("a.reg");
  ASSERT_EQ(Run({"registry", "export", szReg}).iCode, 0);
  Stored::PutCookies(lUsersPolicy);
  ChildProcess aCheck(Program(), {"check"});
  ASSERT_TRUE(aServer.WaitForRequests(2));
  EXPECT_NE(Stored::Cookies(), std::to_string(lUsersPolicy));  // the pass has its own
  EXPECT_TRUE(aCheck.WaitForOutput("/a-fine", dMostSeconds)) << "said while the next site hangs";
  const std::vector<std::string> aRefused[] = {
      {"check"}, {"watch"}, {"import", "--add", szList}, {"registry", "import", szReg}};
  for (const auto& aArguments : aRefused)
    EXPECT_THAT(Run(aArguments), Refuses("Kestrova is already running")) << aArguments[0];
  EXPECT_EQ(Run({"list"}).iCode, 0) << "only looks";
  EXPECT_EQ(Run({"export", aHome.Path("look.kvd")}).iCode, 0) << "only looks";

  aCheck.Interrupt();
  EXPECT_EQ(aCheck.Wait(dMostSeconds), 130) << "128 and the signal's number: not all sites were checked";
  EXPECT_THAT(aCheck.Output(), AllOf(HasPattern("  stopped +http://[^ ]*/b-hang +Manually Stopped."),
                                     HasSubstr("Stopped. 1 site checked")));
  EXPECT_EQ(aServer.Count("/c-never"), 0U);
  EXPECT_EQ(Stored::Cookies(), std::to_string(lUsersPolicy));
  EXPECT_THAT(Log(), HasPattern("/b-hang,,[0-9]+,Manually Stopped.,2\r\n\\[END CHECK\\]\r\n$"));
}

TEST_F(Cli, WatchTellsWhatChangesAndForHowLong) {
  aServer.Serve("/bad", Fault::Status("404 Not Found"));
  ImportList(ListOf({aServer.Site("/fine"), aServer.Site("/bad")}));
  ASSERT_EQ(Run({"check"}).iCode, 1);
  Registry::CloseStore();
  ChildProcess aWatch(ChildProcess::BuiltProgram("hurried-watch"), {});
  ASSERT_TRUE(aWatch.WaitForOutput("So far: 1 up, 1 warning, 0 down.\n  warning  http://", dMostSeconds));
  ASSERT_TRUE(aWatch.WaitForOutput("Pass ended: 1 up, 0 warning, 1 down. Next: ", dMostSeconds));
  ASSERT_TRUE(aServer.WaitForRequests(12)) << "passes in which nothing changes";
  aServer.Serve("/bad", Fault::Status("200 OK"));
  ASSERT_TRUE(aWatch.WaitForOutput("up again after ", dMostSeconds));
  aWatch.Interrupt();
  EXPECT_EQ(aWatch.Wait(dMostSeconds), 0);
  EXPECT_THAT(aWatch.Output(),
              AllOf(HasPattern("[AP]M  down +http://[^ ]*/bad  404 File Not Found \\(since [^,]+ [AP]M, "),
                    HasPattern("Watched for .* changes: 2, mails sent: 0, not sent: 1\\). In the end: 2 up"),
                    Not(HasSubstr("/fine"))))
      << "was up and stayed so";
}
