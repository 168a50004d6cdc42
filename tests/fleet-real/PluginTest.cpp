// check --plugin as the command of a real Nagios (package nagios4-core), whose own record of the service says
// how it was understood.
#include <gmock/gmock.h>
#include <unistd.h>

#include "cli/Cli.h"

namespace {

using Plugin = Cli;

TEST_F(Plugin, NagiosTakesStateTextAndFigures) {
  if (access("/usr/sbin/nagios4", X_OK) != 0) GTEST_SKIP() << "install nagios4-core";
  aServer.Serve("/bad|'x", Fault::Status("404 x"));
  ImportList(ListOf({aServer.Site("/good"), aServer.Site("/bad|'x")}));
  EXPECT_EQ(Run({"check"}).iCode, 1);
  const std::string szFolder = aHome.Folder() + "/";
  Files::MakeFolder(szFolder + "results");
  aHome.Write("objects.cfg", R"(
define timeperiod {
  timeperiod_name always
  alias           always
  sunday          00:00-24:00
  monday          00:00-24:00
  tuesday         00:00-24:00
  wednesday       00:00-24:00
  thursday        00:00-24:00
  friday          00:00-24:00
  saturday        00:00-24:00
}
define command {
  command_name kestrova
  command_line )" + Program() + R"( check --plugin
}
define command {
  command_name nothing
  command_line /bin/true
}
define contact {
  contact_name                  nobody
  service_notification_commands nothing
  host_notification_commands    nothing
  service_notification_period   always
  host_notification_period      always
}
define host {
  host_name          desk
  address            127.0.0.1
  max_check_attempts 1
  check_period       always
  contacts           nobody
}
define service {
  host_name           desk
  service_description sites
  check_command       kestrova
  check_period        always
  check_interval      60
  retry_interval      60
  max_check_attempts  1
  contacts            nobody
}
)");
  std::string szSettings;
  for (const char* szFile :
       {"log_file", "object_cache_file", "precached_object_file", "status_file", "lock_file", "temp_file",
        "command_file", "state_retention_file", "query_socket"})
    szSettings += std::string(szFile) + "=" + szFolder + szFile + "\n";
  const std::string szUser = geteuid() == 0 ? "root" : std::to_string(geteuid());
  aHome.Write("nagios.cfg",
              szSettings + "cfg_file=" + szFolder + "objects.cfg\ntemp_path=" + szFolder +
                  "\ncheck_result_path=" + szFolder + "results\nnagios_user=" + szUser +
                  "\nnagios_group=" + szUser +
                  "\nuse_syslog=0\nretain_state_information=0\nenable_notifications=0\n"
                  "check_external_commands=0\nevent_broker_options=0\nstatus_update_interval=1\n"
                  "service_inter_check_delay_method=n\nmax_service_check_spread=1\n");
  Registry::CloseStore();
  ChildProcess aNagios("/usr/sbin/nagios4", {szFolder + "nagios.cfg"});
  ASSERT_TRUE(aNagios.Wait(0) == ChildProcess::lRunning) << aNagios.Output() << aNagios.Errors();
  std::string szStatus;
  for (int i = 0; i < 300 && szStatus.find("plugin_output=KESTROVA") == std::string::npos; ++i) {
    ChildProcess("/bin/sleep", {"0.2"}).Wait(5);  // nothing to wait on: it tells nobody
    szStatus = aHome.Read("status_file");
  }
  const std::string szService = szStatus.substr(std::min(szStatus.find("servicestatus {"), szStatus.size()));
  EXPECT_THAT(szService, HasPattern("\tcurrent_state=2\n"))
      << szStatus << aNagios.Output() << aNagios.Errors();
  EXPECT_THAT(
      szService,
      HasPattern("\tplugin_output=KESTROVA CRITICAL - 1 up, 0 warning, 1 down, 0 disabled[:;] 127[^\n]*\n"));
  EXPECT_THAT(szService, HasPattern("\tperformance_data=up=1 warning=0;0 down=1;;0 time=[0-9.]+s\n"));
}

}  // namespace
