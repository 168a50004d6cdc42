// What a shell and a desktop take from kestrova-cli: the completion for bash, and starting by itself.
#include <filesystem>

#include "cli/Cli.h"
#include "platform/Environment.h"

using namespace testing;
namespace fs = std::filesystem;

namespace {

class Startup : public Cli {
 protected:
  void SetUp() override {
    for (const char* szName :
         {"HOME", "DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS"})
      aBefore.emplace_back(szName, ::Environment::Get(szName));
    for (const auto& [szName, szValue] : aBefore)
      ::Environment::Unset(szName);
    ::Environment::Set("HOME", aHome.Folder());
    ::Environment::Set("XDG_CONFIG_HOME", aHome.Path("co nf$ig"));
  }
  void TearDown() override {
    ::Environment::Unset("XDG_CONFIG_HOME");
    for (const auto& [szName, szValue] : aBefore)
      if (!szValue.empty()) ::Environment::Set(szName, szValue);
  }
  std::string Config(const std::string& szName) const { return aHome.Path("co nf$ig/" + szName); }

  std::vector<std::pair<std::string, std::string>> aBefore;
};

TEST_F(Startup, AServiceWhereThereIsNoDesktop) {
  EXPECT_THAT(Run({"startup", "status"}).szOutput, HasSubstr("does not start"));
  EXPECT_THAT(Run({"startup", "on"}).szOutput, HasSubstr("loginctl enable-linger"));
  EXPECT_THAT(aHome.Read("co nf$ig/systemd/user/kestrova-watch.service"),
              AllOf(HasSubstr("ExecStart=\"" + Program() + "\" watch --verbose\n"),
                    HasSubstr("Environment=\"KESTROVA_REGISTRY=" + aHome.Folder())));
  EXPECT_TRUE(fs::is_symlink(Config("systemd/user/default.target.wants/kestrova-watch.service")));
  EXPECT_THAT(Run({"startup", "status"}).szOutput, HasSubstr("starts by itself, as a service"));
  EXPECT_THAT(Shell("command -v systemd-analyze >/dev/null || exit 0; export XDG_RUNTIME_DIR=$HOME; "
                    "exec systemd-analyze --user --man=no verify '" +
                    Config("systemd/user/kestrova-watch.service") + "'"),
              FieldsAre(0, _, ""));

  // By hand, as the service is started, and ended as systemd ends it.
  aServer.Serve("/x", Fault::Ok());
  ImportList(ListOf({aServer.Site("/x")}));
  ChildProcess aWatch("/bin/sh", {"-c", "unset TERM; exec \"" + Program() + "\" watch"});
  EXPECT_TRUE(aWatch.WaitForOutput("Watching", dMostSeconds));
  aWatch.Interrupt();
  EXPECT_EQ(aWatch.Wait(dMostSeconds), 0);
  EXPECT_THAT(aWatch.Output(), IsPlain());

  EXPECT_EQ(Run({"startup", "off"}).iCode, 0);
  EXPECT_FALSE(
      fs::exists(fs::symlink_status(Config("systemd/user/default.target.wants/kestrova-watch.service"))));
  EXPECT_FALSE(fs::exists(Config("systemd/user/kestrova-watch.service")));
}

TEST_F(Startup, TheWindowWhereThereIsADesktop) {
  if (!fs::exists(ChildProcess::BuiltProgram("kestrova"))) GTEST_SKIP() << "there is no window";
  ::Environment::Set("DISPLAY", ":7");
  EXPECT_EQ(Run({"startup", "on"}).iCode, 0);
  EXPECT_THAT(aHome.Read("co nf$ig/autostart/kestrova.desktop"),
              HasPattern("Exec=env \"KESTROVA_REGISTRY=[^\n]*\" \"[^\n]*/kestrova\"\n"));
  EXPECT_FALSE(fs::exists(Config("systemd")));
  EXPECT_THAT(Run({"startup", "status"}).szOutput, HasSubstr("autostart/kestrova.desktop"));
  EXPECT_EQ(Run({"startup", "off"}).iCode, 0);
  EXPECT_FALSE(fs::exists(Config("autostart/kestrova.desktop")));
  // What cannot be written is said.
  fs::remove_all(Config(""));
  aHome.Write("co nf$ig", "a file");
  EXPECT_THAT(Run({"startup", "on"}), Refuses("cannot be written"));
}

TEST_F(Startup, BashCompletesCommandsOptionsAndFiles) {
  aHome.Write("a list.kvd", "x");
  fs::create_directory(aHome.Path("a folder"));
  const auto Complete = [&](const std::string& szWords) {
    return Started("/bin/bash",
                   {"-c",
                    "cd \"$1\"; source <(\"$2\" completion); COMP_WORDS=(kestrova-cli " + szWords +
                        "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _kestrova_cli; "
                        "printf '%s,' \"${COMPREPLY[@]}\"",
                    "bash", aHome.Folder(), Program()});
  };
  const std::vector<std::pair<std::string, std::string>> aCases = {
      {"che", "check,"},
      {"check --pl", "--plugin,"},
      {"startup o", "on,off,"},
      {"registry export a", "a folder,a list.kvd,"},
      {"import --add a", "a folder,a list.kvd,"},
      {"import 'a list.kvd' --a", "--add,"},
      {"export --prometheus a", "a folder,"},
      {"check --site a", ","},
      {"log --csv a", "a folder,a list.kvd,"}};
  for (const auto& [szWords, szFound] : aCases)
    EXPECT_THAT(Complete(szWords), FieldsAre(0, szFound, "")) << szWords;
}

}  // namespace
