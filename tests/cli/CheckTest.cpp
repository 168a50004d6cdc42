// check and watch against real servers: what is printed, stored and logged, and what an interrupt or a kill
// leaves behind.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <random>

#include "Cli.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"

using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

constexpr std::int32_t lUsersPolicy = 17;  // no value that the program itself writes

std::int32_t CookiePolicyNow() {
  std::int32_t lValue = -1, lType = 0;
  RegistryAccess::RegReadValue(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, "AllowCookies",
                               lValue, lType);
  Registry::CloseStore();
  return lValue;
}

void SetUsersCookiePolicy() {
  RegistryAccess::RegCreatePath(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings);
  RegistryAccess::RegWriteValue(Registry::HKEY_CURRENT_USER, ProductKeys::szInternetSettings, "AllowCookies",
                                lUsersPolicy, 4);
  Registry::CloseStore();
}

}  // namespace

TEST_F(Cli, ExitCodeAndLinesTellHowTheSitesAre) {
  const Result aEmpty = Run({"check"});
  EXPECT_EQ(aEmpty.iCode, 0);
  EXPECT_EQ(aEmpty.szOutput, "No sites to check.\n");

  aServer.Serve("/gone", Fault::Status("404 Not Found"));
  ImportList(ListOf({aServer.Site("/fine")}) + aServer.Site("/gone") + ",,4,0,10\r\n");
  const Result aFine = Run({"check"});
  EXPECT_EQ(aFine.iCode, 0) << aFine.szOutput << aFine.szErrors;
  EXPECT_THAT(aFine.szOutput, HasSubstr("1 site checked"));
  EXPECT_THAT(aFine.szOutput, HasSubstr("1 disabled."));
  EXPECT_EQ(aServer.Count("/gone"), 0U);

  ImportList(aServer.Site("/gone") + ",,4,1,10\r\n");
  const struct {
    std::vector<std::string> aArguments;
    const char* szLine;
  } aPasses[] = {{{"check"}, "  warning +http://127.0.0.1:[0-9]+/gone +404 File Not Found"},
                 {{"check"}, "  down +http://127.0.0.1:[0-9]+/gone +404 File Not Found"},
                 {{"check"}, "  down +http://"},
                 {{"check", "--restart"}, "  warning +http://"}};
  for (const auto& aPass : aPasses) {
    const Result aResult = Run(aPass.aArguments);
    EXPECT_EQ(aResult.iCode, 1);
    EXPECT_THAT(aResult.szOutput, ContainsRegex(aPass.szLine));
    EXPECT_THAT(aResult.szOutput, ContainsRegex("  up +http://127.0.0.1:[0-9]+/fine +Site OK"));
    EXPECT_THAT(aResult.szOutput, HasSubstr("2 sites checked"));
    EXPECT_EQ(aResult.szErrors, "");
  }
  EXPECT_THAT(Run({"list"}).szOutput, ContainsRegex("[12] +warning +http://127.0.0.1:[0-9]+/gone"));
  EXPECT_THAT(Log(), HasSubstr("[END CHECK]\r\n[START CHECK: MANUAL - "));
}

TEST_F(Cli, NothingThatAServerSendsReachesTheTerminalAsAControl) {
  const std::string szEvil =
      "\033]0;x\007\033[2J\x7f\xC2\x9B"
      "5n";
  aServer.Serve("/reason",
                {Fault::Send("HTTP/1.1 500 " + szEvil + "\r\nX: " + szEvil + "\r\n\r\n" + szEvil)});
  aServer.Serve("/banner", {Fault::Send(szEvil + "\r\n")});
  aServer.Serve("/code", {Fault::Send("HTTP/1.1 " + szEvil + "\r\n\r\n")});
  aServer.Serve("/line", {Fault::Send("HTTP/1.1 200 OK\r\n" + szEvil + "\r\n\r\n")});
  ImportList(ListOf(
      {aServer.Site("/reason"), aServer.Site("/banner"), aServer.Site("/code"), aServer.Site("/line")}));
  SiteRecord aSite;
  aSite.URL = aServer.Site("/" + szEvil);
  aSite.Enabled = 1;
  aSite.TimeOut = 10;
  modAddress::WriteSiteRecord(aSite, 9);
  for (int i = 0; i < 2; ++i) {
    const Result aResult = Run({"check"});
    EXPECT_THAT(aResult.szOutput, HasSubstr("5 sites checked"));
    EXPECT_FALSE(HasTerminalControls(aResult.szOutput + aResult.szErrors)) << aResult.szOutput;
  }
  EXPECT_FALSE(HasTerminalControls(Run({"list"}).szOutput));
}

TEST_F(Cli, SecondInstanceIsRefusedUnlessItOnlyLooks) {
  aServer.Serve("/hang", {Fault::Hang()});
  ImportList(ListOf({aServer.Site("/hang")}, 60));
  ASSERT_EQ(Run({"registry", "export", aHome.Path("a.reg")}).iCode, 0);
  ChildProcess aFirst(Program(), {"check"});
  ASSERT_TRUE(aServer.WaitForRequests(1));
  for (const auto& aArguments :
       std::vector<std::vector<std::string>>{{"check"},
                                             {"watch"},
                                             {"import", "--add", aHome.Path("list.kvd")},
                                             {"registry", "import", aHome.Path("a.reg")}}) {
    const Result aRefused = Run(aArguments);
    EXPECT_EQ(aRefused.iCode, 2) << aArguments[0];
    EXPECT_THAT(aRefused.szErrors, ContainsRegex("^kestrova-cli: Kestrova is already running[^\n]*\n$"));
  }
  EXPECT_EQ(Run({"list"}).iCode, 0);
  EXPECT_EQ(Run({"export", aHome.Path("look.kvd")}).iCode, 0);
  aFirst.Interrupt();
  EXPECT_EQ(aFirst.Wait(dMostSeconds), 1);
  EXPECT_EQ(aServer.Count(), 1U);
}

TEST_F(Cli, InterruptStopsThePassInGoodOrder) {
  ImportList(ListOf({aServer.Site("/a-fine"), aServer.Site("/b-hang"), aServer.Site("/c-never")}, 60));
  aServer.Serve("/b-hang", {Fault::Hang()});
  SetUsersCookiePolicy();
  ChildProcess aCheck(Program(), {"check"});
  ASSERT_TRUE(aServer.WaitForRequests(2));
  EXPECT_NE(CookiePolicyNow(), lUsersPolicy);  // the pass has its own
  const double dStart = Clock::System().SteadySeconds();
  aCheck.Interrupt();
  EXPECT_EQ(aCheck.Wait(dMostSeconds), 1);
  EXPECT_LT(Clock::System().SteadySeconds() - dStart, 2);
  EXPECT_THAT(aCheck.Output(), ContainsRegex("  stopped +http://[^ ]*/b-hang +Manually Stopped."));
  EXPECT_THAT(aCheck.Output(), HasSubstr("Stopped. 1 site checked"));
  EXPECT_EQ(aServer.Count("/c-never"), 0U);
  EXPECT_EQ(CookiePolicyNow(), lUsersPolicy);
  EXPECT_THAT(Log(), ContainsRegex("/b-hang,,[0-9]+,Manually Stopped.,2\r\n\\[END CHECK\\]\r\n$"));
}

TEST_F(Cli, WatchWaitsForItsTimeAndEndsAtOnce) {
  ImportList(ListOf({aServer.Site("/fine")}));
  ChildProcess aWatch(Program(), {"watch"});
  ASSERT_TRUE(aWatch.WaitForOutput("Watching 1 site. Next: ", dMostSeconds));
  aWatch.Interrupt();
  EXPECT_EQ(aWatch.Wait(2), 1);  // not known to be up
  EXPECT_EQ(aServer.Count(), 0U);
}

TEST_F(Cli, KillAtAnyMomentLosesNoSiteAndNoSetting) {
  constexpr int lSites = 40, lKills = 15;
  std::vector<std::string> aPaths;
  for (int i = 0; i < lSites; ++i) {
    const std::string szPath = "/" + std::to_string(100 + i);
    if (i % 3 == 0) aServer.Serve(szPath, Fault::Status("500 Oops"));
    if (i % 3 == 1) aServer.Serve(szPath, {Fault::Delay(2), Fault::Send("HTTP/1.1 200 OK\r\n\r\n")});
    aPaths.push_back(aServer.Site(szPath));
  }
  ImportList(ListOf(aPaths));
  SetUsersCookiePolicy();
  ASSERT_EQ(Run({"check"}).iCode, 1);
  ASSERT_EQ(Run({"registry", "export", aHome.Path("before.reg")}).iCode, 0);
  std::mt19937 aRandom(20261121);
  for (int i = 0; i < lKills; ++i) {
    const std::size_t lSeen = aServer.Count();
    ChildProcess aCheck(Program(), {i % 2 == 0 ? "check" : "watch"});
    if (i % 2 == 0) {
      aServer.WaitForRequests(lSeen + aRandom() % lSites);
    } else {
      aCheck.WaitForOutput("never printed", 0.001 * static_cast<double>(aRandom() % 40));
    }
    aCheck.Kill();
    const auto aList = nlohmann::json::parse(Run({"list", "--json"}).szOutput);
    ASSERT_EQ(aList.size(), static_cast<std::size_t>(lSites));
    for (std::size_t n = 0; n < aPaths.size(); ++n)
      ASSERT_EQ(aList[n]["url"], aPaths[n]);
  }
  // With the results of one whole pass in place again, all is as it was.
  ASSERT_EQ(Run({"check", "--restart"}).iCode, 1);
  EXPECT_EQ(CookiePolicyNow(), lUsersPolicy);
  ASSERT_EQ(Run({"registry", "export", aHome.Path("after.reg")}).iCode, 0);
  EXPECT_EQ(aHome.Read("after.reg"), aHome.Read("before.reg"));
}

TEST_F(Cli, MissingLogFolderIsSaidOnce) {
  ImportList(ListOf({aServer.Site("/a"), aServer.Site("/b")}));
  RegistryAccess::RegWriteValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szLog, "LogPath",
                                aHome.Path("nowhere"), 1);
  const Result aResult = Run({"check"});
  EXPECT_EQ(aResult.iCode, 0);
  EXPECT_THAT(aResult.szErrors, ContainsRegex("^kestrova-cli: The log folder [^\n]*\n$"));
}
