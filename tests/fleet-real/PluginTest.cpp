// check --plugin as the command of a real Nagios (package nagios4-core), which calls it as services of its
// own please, side by side.
#include <unistd.h>

#include <sstream>

#include "cli/Cli.h"

namespace {

class Plugin : public Cli {
 protected:
  void WriteObjects() const {
    const std::string szAlways =
        "  contacts nobody\n  max_check_attempts 1\n  check_period always\n"
        "  notification_interval 0\n  notification_period always\n";
    std::string szText = "define timeperiod {\n  timeperiod_name always\n  alias always\n";
    for (const char* szDay : {"sun", "mon", "tues", "wednes", "thurs", "fri", "satur"})
      szText += std::string("  ") + szDay + "day 00:00-24:00\n";
    szText += "}\ndefine command {\n  command_name kestrova\n  command_line " + Program() +
              " check --plugin $ARG1$\n}\ndefine contact {\n  contact_name nobody\n";
    for (const char* szWhat : {"host", "service"})
      szText += std::string("  ") + szWhat + "_notifications_enabled 0\n  " + szWhat +
                "_notification_period always\n  " + szWhat + "_notification_commands kestrova\n";
    szText += "}\ndefine host {\n  host_name desk\n  address 127.0.0.1\n  active_checks_enabled 0\n" +
              szAlways + "}\n";
    for (const auto& [szName, szCommand] : {std::pair{"list", "kestrova"},
                                            {"good", "kestrova!--site /good"},
                                            {"also", "kestrova!--site /also"}})
      szText += std::string("define service {\n  service_description ") + szName +
                "\n  host_name desk\n  check_command " + szCommand +
                "\n  check_interval 1\n  retry_interval 1\n" + szAlways + "}\n";
    aHome.Write("objects.cfg", szText);
  }

  // Each service once a second; what comes back is one line of the file "results".
  void WriteSettings() const {
    std::string szText = "cfg_file=" + aHome.Path("objects.cfg") + "\ninterval_length=1\nuse_syslog=0\n" +
                         "service_inter_check_delay_method=n\nprocess_performance_data=1\n" +
                         "service_perfdata_file_mode=a\nservice_perfdata_file_template=" +
                         "$SERVICEDESC$ $SERVICESTATE$: $SERVICEOUTPUT$ | $SERVICEPERFDATA$\n";
    for (const char* szFile :
         {"log_file", "object_cache_file", "precached_object_file", "status_file", "state_retention_file",
          "temp_file", "command_file", "lock_file", "query_socket"})
      szText += std::string(szFile) + "=" + aHome.Path(szFile) + "\n";
    szText += "service_perfdata_file=" + aHome.Path("results") + "\ntemp_path=" + aHome.Folder() +
              "\ncheck_result_path=" + aHome.Path("spool") + "\n";
    if (geteuid() == 0) szText += "nagios_user=root\nnagios_group=root\n";
    aHome.Write("nagios.cfg", szText);
    Files::MakeFolder(aHome.Path("spool"));
  }

  // What Nagios has taken of a service, in order; a line that it is still writing not yet.
  std::vector<std::string> Taken(const std::string& szService) const {
    std::vector<std::string> aTaken;
    const std::string szAll = aHome.Read("results");
    std::istringstream aLines(szAll.substr(0, szAll.rfind('\n') + 1));
    for (std::string szLine; std::getline(aLines, szLine);)
      if (szLine.starts_with(szService + " ")) aTaken.push_back(szLine.substr(szService.size() + 1));
    return aTaken;
  }

  template <typename Condition>
  static bool WaitFor(Condition aCondition) {
    constexpr double dMost = 90;
    const Stopwatch aWatch;
    while (!aCondition()) {
      if (aWatch.Seconds() > dMost) return false;
      ChildProcess("/bin/sleep", {"0.1"}).Wait(5);  // nothing to wait on: it tells nobody
    }
    return true;
  }
};

TEST_F(Plugin, NagiosReadsStateTextAndPerformanceData) {
  const std::string szNagios = "/usr/sbin/nagios4";
  if (access(szNagios.c_str(), X_OK) != 0) GTEST_SKIP() << "install nagios4-core";
  using Fault::Ok, Fault::Status;
  aServer.ServeInOrder("/flaps", {Ok(), Status("404 x"), Status("404 x"), Ok()});
  ImportList(ListOf({aServer.Site("/flaps"), aServer.Site("/good"), aServer.Site("/also")}));
  WriteObjects();
  WriteSettings();
  const ChildProcess aNagios(szNagios, {aHome.Path("nagios.cfg")});
  const auto Complaints = [&] { return aNagios.Output() + aHome.Read("log_file"); };

  // As many checks as answers have been prepared, however long each may take.
  ASSERT_TRUE(WaitFor([&] { return Taken("list").size() >= 4 && !Taken("good").empty(); })) << Complaints();
  const std::string szTime = " time=[0-9.]+s";
  const auto aTaken = Taken("list");
  const std::string szExpected[] = {
      "^OK: KESTROVA OK - 3 up, 0 warning, 0 down, 0 disabled \\| up=3 warning=0;0 down=0;;0" + szTime,
      "^WARNING: KESTROVA WARNING - 2 up, 1 warning, 0 down, 0 disabled \\| up=2 warning=1;0 down=0;;0",
      // Nagios, which parts the fields of its own log by semicolons, shows colons.
      "^CRITICAL: KESTROVA CRITICAL - 2 up, 0 warning, 1 down, 0 disabled[:;] [^|]*/flaps \\| up=2",
      "^OK: KESTROVA OK - 3 up"};
  for (std::size_t i = 0; i < std::size(szExpected); ++i)
    EXPECT_THAT(aTaken[i], HasPattern(szExpected[i]));

  // They are all called at the same moment, and each had its turn.
  ASSERT_TRUE(WaitFor([&] { return Taken("good").size() >= 3 && Taken("also").size() >= 3; }))
      << Complaints();
  for (const char* szService : {"good", "also"})
    for (const auto& szLine : Taken(szService))
      EXPECT_THAT(szLine, HasPattern("^OK: KESTROVA OK - 1 up, 0 warning, 0 down, 0 disabled \\| up=1"));

  // A store that cannot be read is no verdict on the sites.
  ASSERT_EQ(rename(aHome.Path("registry.db").c_str(), aHome.Path("away").c_str()), 0);
  Files::MakeFolder(aHome.Path("registry.db"));
  EXPECT_TRUE(WaitFor([&] { return Taken("list").back().starts_with("UNKNOWN: KESTROVA UNKNOWN - "); }))
      << Complaints();
}

}  // namespace
