// One alert through a real mail server (exim, from the package exim4-daemon-light) and back out of the
// mailbox.
#include <grp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "alert/AlertBench.h"
#include "platform/Files.h"
#include "support/ReadMail.h"

namespace {

constexpr const char* szExim = "/usr/sbin/exim4";
constexpr const char* szConfiguration =
    "keep_environment =\nspool_directory = FOLDER/spool\nlog_file_path = FOLDER/%slog\n"
    "primary_hostname = mail.example\nexim_user = USER\nexim_group = GROUP\ndeliver_drop_privilege = true\n"
    "smtp_receive_timeout = 20s\nacl_smtp_rcpt = RULE\nacl_smtp_data = accept\n"
    "begin routers\nall:\n  driver = accept\n  transport = mailbox\n"
    "begin transports\nmailbox:\n  driver = appendfile\n  maildir_format\n  return_path_add\n"
    "  envelope_to_add\n  directory = FOLDER/box\n";

// Serves one connection as inetd would, so that nothing of the machine's own mail set-up is read and root is
// not needed. As root the server would refuse to deliver; it then runs as the user nobody.
[[noreturn]] void Serve(int iListener, const std::string& szConfig, uid_t iUser, gid_t iGroup) {
  pollfd aPoll{iListener, POLLIN, 0};
  const int iClient = poll(&aPoll, 1, 20'000) == 1 ? accept(iListener, nullptr, nullptr) : -1;
  if (iClient >= 0 && dup2(iClient, STDIN_FILENO) >= 0 && dup2(iClient, STDOUT_FILENO) >= 0 &&
      (geteuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(iGroup) == 0 && setuid(iUser) == 0)))
    execl(szExim, szExim, "-C", szConfig.c_str(), "-bs", "-odf", static_cast<char*>(nullptr));
  _exit(1);
}

using MailServerTest = AlertBench;

TEST_F(MailServerTest, TheMailLiesInTheMailboxAsItWasWrittenUnlessRefused) {
  if (access(szExim, X_OK) != 0) GTEST_SKIP() << "no mail server to test with: install exim4-daemon-light";
  const uid_t iUser = geteuid() == 0 ? 65534 : geteuid();
  const gid_t iGroup = geteuid() == 0 ? 65534 : getegid();
  const std::pair<std::string, const char*> aCases[] = {
      {"J\xC3\xBCrgen,\r\n.\r\n..two\r\n.dot %URL%\r\nblank \r\n\ttab = 3D\r\nFrom here\r\n" +
           std::string(1200, 'x'),
       "accept"},
      {"Plain text,\r\n.\r\n.dot\r\nFrom %URL%\r\n", "accept"},
      {"refused", "deny"}};
  for (const auto& [szTemplate, szRule] : aCases) {
    const std::string szFolder = aHome.Path(std::to_string(&szTemplate - &aCases[0].first));
    const std::string szConfig = szFolder + "/exim.conf";
    std::string szText = Text::Replace(Text::Replace(szConfiguration, "FOLDER", szFolder), "RULE", szRule);
    szText =
        Text::Replace(Text::Replace(szText, "USER", std::to_string(iUser)), "GROUP", std::to_string(iGroup));
    ASSERT_TRUE(Files::MakeFolder(szFolder) && Files::WriteWhole(szConfig, szText));
    ASSERT_TRUE(chown(szFolder.c_str(), iUser, iGroup) == 0 && chown(szConfig.c_str(), iUser, iGroup) == 0);
    std::uint16_t iPort = 0;
    const auto iListener = static_cast<int>(Sockets::Listen(iPort));
    const pid_t lServer = fork();
    if (lServer == 0) Serve(iListener, szConfig, iUser, iGroup);
    close(iListener);
    Settings.SMTPPort = iPort;
    aHome.Write("Messages/HTTP-500.txt", szTemplate);
    const std::int32_t lResult = SendEmail("500", 2, aFacts);
    waitpid(lServer, nullptr, 0);
    const auto szLog = Files::ReadWhole(szFolder + "/mainlog", 65536).value_or("no log");
    const auto aMails = Files::List(szFolder + "/box/new", "");
    EXPECT_EQ(lResult == 0, szTemplate != "refused") << szLog;
    EXPECT_EQ(szLog.find("rejected RCPT") == std::string::npos, lResult == 0) << szLog;
    ASSERT_EQ(aMails.size(), lResult == 0 ? 1U : 0U) << szLog;
    if (aMails.empty()) continue;
    const ReadMail aMail(Files::ReadWhole(szFolder + "/box/new/" + aMails[0], 65536).value_or(""));
    EXPECT_EQ(aMail.Only("from"), "Kestrova <manager@example.org>");
    EXPECT_EQ(aMail.Only("return-path"), "<manager@example.org>");
    EXPECT_EQ(aMail.Only("envelope-to"), "manager@example.org");
    EXPECT_EQ(aMail.Only("subject"), "Kestrova Alert");
    const std::string szBody = Text::Replace(Compose("500"), "\r\n", "\n");
    EXPECT_EQ(aMail.szBody, szBody + (szBody.ends_with('\n') ? "" : "\n"));
  }
}

}  // namespace
