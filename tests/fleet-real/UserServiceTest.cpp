// The service that "startup on" sets up, under a real systemd of the user's own (package systemd; only root
// may give it a /run of its own).
#include "cli/Cli.h"
#include "platform/Environment.h"

namespace {

using UserService = Cli;

TEST_F(UserService, IsStartedKilledAndStopped) {
  aServer.Serve("/bad", Fault::Status("404 \x1b[31m"));
  ImportList(ListOf({aServer.Site("/good"), aServer.Site("/bad")}));
  Environment::Set("XDG_CONFIG_HOME", aHome.Path("config"));
  const auto szPrograms = Program().substr(0, Program().rfind('/'));
  ChildProcess aScript(std::string(KESTROVA_SOURCE) + "/tests/fleet-real/user-service.sh", {szPrograms});
  const int iCode = aScript.Wait(90);
  Environment::Unset("XDG_CONFIG_HOME");
  if (iCode == 77) GTEST_SKIP() << "no systemd of the user's own runs here: " << aScript.Output();
  ASSERT_EQ(iCode, 0) << aScript.Output() << aScript.Errors();

  const std::string szAll = aScript.Output();
  for (const char* szStep :
       {"on: \"kestrova-cli watch\" starts by itself", "state: active\n", "stopped: inactive, success, 0\n",
        "killed: active again\n", "off: Kestrova does not start", "then: inactive, success, 0\n"})
    EXPECT_THAT(szAll, testing::HasSubstr(szStep));
  // The first pass in the journal: a line a site, fit for any terminal.
  const std::string szJournal = szAll.substr(szAll.find("journal:\n"));
  EXPECT_THAT(szJournal,
              testing::AllOf(IsPlain(), HasPattern("\nPass of [^\n]*\n  warning [^\n]*/bad [^\n]*\n  up "
                                                   "[^\n]*/good [^\n]*\n2 sites checked in [^\n]*\n$")));
}

}  // namespace
