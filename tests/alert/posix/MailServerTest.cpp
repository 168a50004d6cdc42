// Alerts through a real mail server (exim, from the package exim4-daemon-light) and back out of the mailbox.
#include <unistd.h>

#include "alert/AlertFixture.h"
#include "platform/Files.h"
#include "servers/FaultServer.h"
#include "support/ChildProcess.h"
#include "support/ReadMail.h"

namespace {

constexpr const char* szExim = "/usr/sbin/exim4";
constexpr const char* szConfiguration =
    "keep_environment =\nspool_directory = FOLDER/spool\nlog_file_path = FOLDER/%slog\n"
    "pid_file_path = FOLDER/pid\nprimary_hostname = mail.example\nexim_user = USER\nexim_group = GROUP\n"
    "deliver_drop_privilege = true\nsmtp_receive_timeout = 20s\nacl_smtp_data = accept\n"
    "acl_smtp_rcpt = ${if eq{$local_part}{refused} {deny}{accept}}\n"
    "begin routers\nall:\n  driver = accept\n  transport = mailbox\n"
    "begin transports\nmailbox:\n  driver = appendfile\n  maildir_format\n  return_path_add\n"
    "  envelope_to_add\n  directory = FOLDER/box\n";

using MailServerTest = AlertFixture;

TEST_F(MailServerTest, TheMailLiesInTheMailboxAsItWasWrittenUnlessRefused) {
  if (access(szExim, X_OK) != 0) GTEST_SKIP() << "no mail server to test with: install exim4-daemon-light";
  // As root the server would refuse to deliver; it then runs as the user nobody.
  const uid_t iUser = geteuid() == 0 ? 65534 : geteuid();
  const gid_t iGroup = geteuid() == 0 ? 65534 : getegid();
  const std::string szUser = std::to_string(iUser), szGroup = std::to_string(iGroup);
  const std::string szFolder = aHome.Path("mail");
  const std::string szConfig = szFolder + "/exim.conf", szLog = szFolder + "/mainlog";
  ASSERT_TRUE(Files::MakeFolder(szFolder));
  std::string szText = szConfiguration;
  for (const auto& [szName, szValue] : {std::pair{"FOLDER", szFolder}, {"USER", szUser}, {"GROUP", szGroup}})
    szText = Text::Replace(szText, szName, szValue);
  ASSERT_TRUE(Files::WriteWhole(szConfig, szText));
  ASSERT_TRUE(chown(szFolder.c_str(), iUser, iGroup) == 0 && chown(szConfig.c_str(), iUser, iGroup) == 0);
  aSettings.SMTPPort = FaultServer::RefusingPort();
  std::vector<std::string> aWords{szExim, "-C", szConfig, "-bdf", "-odf", "-oX"};
  aWords.push_back("127.0.0.1." + std::to_string(aSettings.SMTPPort));
  if (geteuid() == 0)
    aWords.insert(aWords.begin(), {"setpriv", "--reuid", szUser, "--regid", szGroup, "--clear-groups"});
  ChildProcess aExim("env", aWords);
  const auto Log = [&] { return Files::ReadWhole(szLog, 65536).value_or(aExim.Errors()); };
  while (Log().find("listening") == std::string::npos)
    ASSERT_EQ(aExim.Wait(0.02), ChildProcess::lRunning) << Log();

  const std::pair<const char*, std::string> aCases[] = {
      {"manager@example.org",
       "J\xC3\xBCrgen,\r\n.\r\n..two\r\n.dot %URL%\r\nblank \r\n\ttab = 3D\r\nFrom here\r\n" +
           std::string(1200, 'x')},
      {"refused@example.org", "x"}};
  for (const auto& [szEmail, szTemplate] : aCases) {
    aSettings.Email = szEmail;
    aHome.Write("Messages/HTTP-500.txt", szTemplate);
    const bool bTaken = szTemplate != "x";
    EXPECT_EQ(Send("500") == 0, bTaken) << Log();
    const auto Mails = [&] { return Files::List(szFolder + "/box/new", ""); };
    for (const Stopwatch aWatch; bTaken && Mails().empty() && aWatch.Seconds() < 20;)
      aExim.Wait(0.02);  // it delivers what it has said it took
    const auto aMails = Mails();
    ASSERT_EQ(aMails.size(), bTaken ? 1U : 0U) << Log();
    if (!bTaken) continue;
    const std::string szMail = szFolder + "/box/new/" + aMails[0];
    const ReadMail aMail(Files::ReadWhole(szMail, 65536).value_or(""));
    Files::Delete(szMail);
    EXPECT_EQ(aMail.Only("from"), "Kestrova <manager@example.org>");
    EXPECT_EQ(aMail.Only("return-path"), "<manager@example.org>");
    EXPECT_EQ(aMail.Only("envelope-to"), "manager@example.org");
    EXPECT_EQ(aMail.Only("subject"), "Kestrova Alert");
    EXPECT_EQ(aMail.Only("x-mailer"), "SendForm 3.0");
    const std::string szBody = Text::Replace(Compose("500"), "\r\n", "\n");
    EXPECT_EQ(aMail.szBody, szBody + (szBody.ends_with('\n') ? "" : "\n"));
  }
}

}  // namespace
