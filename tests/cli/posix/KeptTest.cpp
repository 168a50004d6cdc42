// What cannot be read or written is said, in a line and in the exit code: the store damaged, deleted, locked
// and full, the log without a place, the output closed.
#include <sqlite3.h>

#include <filesystem>

#include "cli/Cli.h"
#include "servers/SmtpServer.h"
#include "support/Stored.h"

using namespace testing;
namespace fs = std::filesystem;

namespace {

class Kept : public Cli {
 protected:
  // With no file longer than so many blocks of 512 bytes.
  static Result Limited(const std::string& szBlocks, const std::string& szArguments) {
    return Shell("trap '' XFSZ; ulimit -f " + szBlocks + "; exec " + Program() + " " + szArguments);
  }
  void RemoveStore() const {
    for (const auto& szName : aHome.Names())
      if (szName.starts_with("registry.db")) fs::remove(aHome.Path(szName));
  }
  std::string Reg(const std::string& szKeys) const {
    aHome.Write("a.reg", "Windows Registry Editor Version 5.00\r\n" + szKeys);
    return aHome.Path("a.reg");
  }
  static std::string SiteLines(const std::string& szName, const std::string& szURL) {
    return "[HKEY_LOCAL_MACHINE\\" + Stored::SiteKey(szName) + "]\r\n\"URL\"=\"" + szURL + "\"\r\n";
  }
};

TEST_F(Kept, AListThatDamageEmptiedIsNeverASuccess) {
  ImportList(ListOf({aServer.Site("/fine")}));
  RemoveStore();
  aHome.Write("registry.db", std::string(50000, 'Z'));
  aHome.Write("backup.kvd", "the operator's own");
  for (int i = 0; i < 2; ++i)
    for (const auto& aArguments : std::vector<std::vector<std::string>>{
             {"check"}, {"watch"}, {"list"}, {"export", aHome.Path("backup.kvd")}})
      EXPECT_THAT(Run(aArguments), Refuses("is damaged, nothing of it")) << aArguments[0];
  EXPECT_EQ(aHome.Read("backup.kvd"), "the operator's own");
  ImportList(ListOf({aServer.Site("/fine")}));
  EXPECT_EQ(Run({"check"}).iCode, 0);
}

TEST_F(Kept, ADamagedStoreComesBackFromItsCopyAndThatIsSaid) {
  ImportList(ListOf({aServer.Site("/fine"), "other.invalid"}));
  Registry::CloseStore();
  aHome.Write("registry.db", "garbage");
  EXPECT_THAT(Run({"list"}),
              FieldsAre(0, AllOf(HasSubstr("/fine"), HasSubstr("other.invalid")),
                        AllOf(HasSubstr("registry.db.damaged-"), HasSubstr("from the copy of "))));
}

TEST_F(Kept, RegistryFilesWithTooManyOrUselessSitesAreNotTakenInSilence) {
  ImportList(ListOf({"one.invalid"}));
  std::string szMany;
  for (int i = 0; i < 1000; ++i) {
    const auto szSite = "s" + std::to_string(i) + ".invalid";
    szMany += SiteLines(szSite, szSite);
  }
  EXPECT_THAT(Run({"registry", "import", Reg(szMany)}), Refuses("more than 1000 sites. Nothing was changed"));
  EXPECT_THAT(Run({"list"}).szOutput, Not(HasSubstr("s1.invalid")));
  const auto szUseless = SiteLines("good.invalid", "good.invalid") + SiteLines("bad.invalid", "no");
  EXPECT_THAT(Run({"registry", "import", Reg(szUseless)}),
              FieldsAre(2, _, AllOf(HasSubstr("left out: bad.invalid"), Not(HasSubstr("good.invalid")))));
  EXPECT_THAT(Run({"list"}).szOutput, AllOf(HasSubstr("one.invalid"), HasSubstr("good.invalid")));
  Stored::Put(Stored::SiteKey("good.invalid"), "URL", "gooe.invalid");  // as a turned bit leaves it
  EXPECT_THAT(
      Run({"list"}),
      FieldsAre(2, _,
                HasSubstr("the list does not lead to them, as after damage to the store: good.invalid.")));
  EXPECT_THAT(Run({"import", "--add", aHome.Path("list.kvd")}),
              FieldsAre(0, _, HasSubstr("put back from the last good copy: good.invalid.")));
  EXPECT_THAT(Run({"list"}),
              FieldsAre(_, AllOf(HasSubstr("/good.invalid"), Not(HasSubstr("gooe.invalid"))), ""));
}

TEST_F(Kept, AnImportThatDoesNotFitIsNone) {
  ImportList(ListOf({"one.invalid"}));
  aHome.Write("many.kvd", ListOf(900));
  const auto szBefore = Run({"list"}).szOutput;
  for (const char* const szBlocks : {"128", "256", "512"}) {
    EXPECT_THAT(Limited(szBlocks, "import --replace " + aHome.Path("many.kvd")), Refuses()) << szBlocks;
    EXPECT_EQ(Run({"list"}).szOutput, szBefore);
  }
}

TEST_F(Kept, ALogWithoutAPlaceIsCountedAndNotNamed) {
  ImportList(ListOf({aServer.Site("/fine")}));
  ASSERT_EQ(Run({"check"}).iCode, 0);
  Stored::Put(ProductKeys::szLog, "LogPath", aHome.Path("gone"));
  EXPECT_THAT(Run({"check"}),
              FieldsAre(2, AllOf(HasSubstr("1 up"), Not(HasSubstr("Log:"))),
                        HasPattern("^kestrova-cli: 3 lines of the check log [^\n]*gone[^\n]*\n$")));
}

// How few are too few depends on libcurl; whether a site is to blame does not.
TEST_F(Kept, AMachineWithoutDescriptorsBlamesNoSite) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers need descriptors of their own, and see faults where they have none";
#endif
  ImportList(ListOf({aServer.Site("/a"), aServer.Site("/b")}));
  ASSERT_EQ(Run({"check"}).iCode, 0);
  const auto szBefore = Run({"list"}).szOutput;
  int lTooFew = 0;
  for (const char* const szLimit : {"7", "8", "9", "10"}) {
    SCOPED_TRACE(szLimit);
    const Result aResult = Shell(std::string("ulimit -n ") + szLimit + "; exec " + Program() + " check");
    EXPECT_THAT(aResult.szOutput, Not(HasPattern("[1-9] (warning|down)")));
    EXPECT_EQ(aResult.iCode == 2, !aResult.szErrors.empty()) << aResult.szErrors;
    lTooFew += aResult.szErrors.find("this computer has no file descriptor") != std::string::npos ? 1 : 0;
    EXPECT_EQ(Run({"list"}).szOutput, szBefore);
  }
  EXPECT_GT(lTooFew, 0);
}

TEST_F(Kept, WhereNobodyCanBeReachedThatIsSaid) {
  const std::string szSaid = "No site could be reached: the fault is probably here.";
  ImportList(ListOf({"one.invalid", "two.invalid"}));
  EXPECT_THAT(Run({"check"}), FieldsAre(1, _, HasSubstr(szSaid)));
  EXPECT_THAT(Run({"log", "--summary"}).szOutput,
              HasPattern("No site reached[^\n]* in 1 of 1 passes, the last one on [^\n]*probably here"));
  ImportList(ListOf({"one.invalid", "127.0.0.1:" + std::to_string(FaultServer::RefusingPort())}));
  EXPECT_THAT(Run({"check"}).szErrors, Not(HasSubstr(szSaid))) << "who refuses is there";
}

// What was stored before the disk was full is not mailed again; how much was not is said.
TEST_F(Kept, ADiskThatFillsInMidPassIsSaidInOneLineAndRepeatsNoMailThatIsStored) {
  constexpr int lSites = 40;
  SmtpServer aMail;
  Stored::PutMailServer(aMail.Port());
  std::vector<std::string> aPaths;
  for (int i = 0; i < lSites; ++i)
    aPaths.push_back(aServer.Site("/" + std::to_string(i)));
  aServer.Serve("*", Fault::Status("404 Not Found"));
  ImportList(ListOf(aPaths));
  ASSERT_EQ(Run({"check"}).iCode, 1);
  const Result aFull = Limited("300", "check");
  EXPECT_THAT(aFull, FieldsAre(2, _, HasPattern("^kestrova-cli: [^\n]*\n$")));
  EXPECT_EQ(aMail.Mails().size(), lSites);
  std::smatch aCount;
  ASSERT_TRUE(std::regex_search(aFull.szErrors, aCount, std::regex("results of ([0-9]+) sites")))
      << aFull.szErrors;
  const auto lUnsaved = std::stoul(aCount[1]);
  EXPECT_TRUE(lUnsaved > 0 && lUnsaved < lSites) << aFull.szErrors;
  EXPECT_EQ(Run({"check"}).iCode, 1);
  EXPECT_EQ(aMail.Mails().size(), lSites + lUnsaved);
}

TEST_F(Kept, ARegistryExportSweepsWhatKilledOnesLeft) {
  ImportList(ListOf({"one.invalid"}));
  for (const char* const szName : {".kestrova-Ab12Cd", ".kestrova-inUse0", ".kestrova-notes.txt"})
    aHome.Write(szName, "half a file");
  ChildProcess aOther("/usr/bin/flock", {aHome.Path(".kestrova-inUse0"), "sh", "-c", "echo held; sleep 60"});
  ASSERT_TRUE(aOther.WaitForOutput("held", dMostSeconds));
  EXPECT_EQ(Run({"registry", "export", aHome.Path("all.reg")}).iCode, 0);
  EXPECT_THAT(aHome.Names(), AllOf(IsSupersetOf({".kestrova-inUse0", ".kestrova-notes.txt"}),
                                   Not(Contains(".kestrova-Ab12Cd"))));
}

TEST_F(Kept, ASecondInterruptGivesUpASilentMailServer) {
  SmtpServer aMail;
  aMail.At(SmtpServer::Stage::Greeting, {Fault::Hang()});
  Stored::PutMailServer(aMail.Port());
  aServer.Serve("/a", Fault::Status("404 Not Found"));
  ImportList(ListOf({aServer.Site("/a"), aServer.Site("/b")}));
  ASSERT_EQ(Run({"check"}).iCode, 1);
  Registry::CloseStore();
  ChildProcess aCheck(Program(), {"check"});
  for (const Stopwatch aPatience; aMail.Connections() == 0 && aPatience.Seconds() < dMostSeconds;)
    aCheck.Wait(0.01);
  aCheck.Interrupt();
  EXPECT_EQ(aCheck.Wait(1.5), ChildProcess::lRunning) << "the first waits for the mail";
  aCheck.Interrupt();
  EXPECT_EQ(aCheck.Wait(5), 130);
  EXPECT_THAT(Log(), HasSubstr("E-mail Notification Failed"));
  EXPECT_THAT(Run({"list"}).szOutput, HasPattern("down +http://[^ ]*/a"));
}

TEST_F(Kept, ResultsThatTheLockedStoreDoesNotTakeAreTriedAgainAndSaid) {
  ImportList(ListOf({aServer.Site("/a"), aServer.Site("/slow")}));
  for (const bool bForEver : {true, false}) {
    const auto pLocked = std::make_shared<std::atomic<bool>>(false);
    aServer.Serve("/slow", {Fault::HoldUntil(pLocked), Fault::Send("HTTP/1.1 200 OK\r\n\r\n")});
    Registry::CloseStore();
    const auto lSeen = aServer.Count();
    ChildProcess aCheck(Program(), {"check", "--restart"});
    ASSERT_TRUE(aServer.WaitForRequests(lSeen + 2));
    sqlite3* pOther = nullptr;
    sqlite3_open(aHome.Path("registry.db").c_str(), &pOther);
    EXPECT_EQ(SQLITE_OK, sqlite3_exec(pOther, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr));
    *pLocked = true;
    if (!bForEver) aCheck.WaitForOutput("/slow", dMostSeconds);
    if (!bForEver) sqlite3_close(pOther);
    EXPECT_EQ(aCheck.Wait(dMostSeconds), bForEver ? 2 : 0) << aCheck.Errors();
    EXPECT_EQ(aCheck.Errors().find("could not be stored") != std::string::npos, bForEver);
    if (bForEver) sqlite3_close(pOther);
  }
  EXPECT_THAT(Run({"list"}).szOutput, Not(HasSubstr("unknown")));
}

TEST_F(Kept, AStoreDeletedUnderAWatchComesBackAndThatIsSaid) {
  ImportList(ListOf({aServer.Site("/a"), aServer.Site("/b")}));
  Stored::Put(ProductKeys::szManager, "Name", "the operator's own");
  for (const bool bCopyToo : {true, false}) {
    const std::string szSaid =
        bCopyToo ? "List and settings have been stored anew" : "was missing. It has been put together again";
    Registry::CloseStore();
    const auto lSeen = aServer.Count();
    ChildProcess aWatch(ChildProcess::BuiltProgram("hurried-watch"), {});
    ASSERT_TRUE(aServer.WaitForRequests(lSeen + 4));
    const auto szCopy = aHome.Read("registry.db.good");
    RemoveStore();
    if (!bCopyToo) aHome.Write("registry.db.good", szCopy);
    const Stopwatch aPatience;
    while (aWatch.Errors().find(szSaid) == std::string::npos && aPatience.Seconds() < dMostSeconds)
      aWatch.Wait(0.01);
    EXPECT_THAT(aWatch.Errors(), HasSubstr(szSaid));
    aWatch.Interrupt();
    EXPECT_EQ(aWatch.Wait(dMostSeconds), 0);
    EXPECT_THAT(Run({"list"}).szOutput, AllOf(HasSubstr("/a"), HasSubstr("/b")));
    EXPECT_EQ(Stored::Get(ProductKeys::szManager, "Name"), "the operator's own");
  }
}

TEST_F(Kept, IgnoredSignalsStayIgnoredAndAClosedOutputEndsTheProgram) {
  ImportList(ListOf({aServer.Site("/fine")}));
  Registry::CloseStore();
  ChildProcess aWatch("/bin/sh", {"-c", "trap '' INT; exec " + Program() + " watch"});
  ASSERT_TRUE(aWatch.WaitForOutput("Watching", dMostSeconds));
  aWatch.Interrupt();
  EXPECT_EQ(aWatch.Wait(0.5), ChildProcess::lRunning);
  EXPECT_EQ(aServer.Count(), 0U) << "it waits for its time";
  aWatch.Kill();
  EXPECT_EQ(aWatch.Wait(dMostSeconds), ChildProcess::lKilled);
  const Result aUnread = Shell(Program() + " watch | head -1");
  EXPECT_NE(aUnread.iCode, ChildProcess::lRunning);
  EXPECT_THAT(aUnread.szErrors, HasSubstr("Nobody reads the output"));
}

TEST_F(Kept, TwoWaysToOneStoreAreOneStore) {
  aServer.Serve("/slow", {Fault::Hang()});
  ImportList(ListOf({aServer.Site("/slow")}, 60));
  Registry::CloseStore();
  fs::create_symlink(aHome.Path("registry.db"), aHome.Path("link.db"));
  ChildProcess aCheck(Program(), {"check"});
  ASSERT_TRUE(aServer.WaitForRequests(1));
  EXPECT_THAT(Shell("KESTROVA_REGISTRY=" + aHome.Path("link.db") + " exec " + Program() + " check").szErrors,
              HasSubstr("already running on this list"));
  aCheck.Interrupt();
  EXPECT_EQ(aCheck.Wait(dMostSeconds), 130);
}

}  // namespace
