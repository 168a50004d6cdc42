// One alert through a real mail server (exim, from the package exim4-daemon-light) and back out of the
// mailbox.
#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "alert/AlertSender.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Text.h"
#include "support/ReadMail.h"
#include "support/Sockets.h"
#include "support/TestHome.h"

namespace {

namespace fs = std::filesystem;
constexpr const char* szExim = "/usr/sbin/exim4";

// Serves one connection out of a folder of its own: started as inetd would, on a port that the system chose,
// so nothing of the machine's own mail set-up is read, and root is not needed. As root it would refuse to
// deliver, so it then runs as the user nobody.
class MailServer {
 public:
  MailServer(const TestHome& aHome, const std::string& szRecipientRule) : szFolder(aHome.Path("mail")) {
    const uid_t iUser = geteuid() == 0 ? 65534 : geteuid();
    const gid_t iGroup = geteuid() == 0 ? 65534 : getegid();
    const std::string szConfig = szFolder + "/exim.conf";
    std::string szText = R"(keep_environment =
spool_directory = FOLDER/spool
log_file_path = FOLDER/%slog
primary_hostname = mail.example
exim_user = USER
exim_group = GROUP
deliver_drop_privilege = true
smtp_receive_timeout = 20s
acl_smtp_rcpt = RULE
acl_smtp_data = accept
begin routers
all:
  driver = accept
  transport = mailbox
begin transports
mailbox:
  driver = appendfile
  maildir_format
  return_path_add
  envelope_to_add
  directory = FOLDER/box
)";
    for (const auto& [szFrom, szTo] : {std::pair<std::string, std::string>{"FOLDER", szFolder},
                                       {"USER", std::to_string(iUser)},
                                       {"GROUP", std::to_string(iGroup)},
                                       {"RULE", szRecipientRule}})
      szText = Text::Replace(szText, szFrom, szTo);
    aHome.Write("mail/exim.conf", szText);
    if (geteuid() == 0) {
      for (const auto& szPath : {szFolder, szConfig})
        if (chown(szPath.c_str(), iUser, iGroup) != 0) throw std::runtime_error("cannot hand over " + szPath);
    }
    const auto iListener = static_cast<int>(Sockets::Listen(iPort));
    lProcess = fork();
    if (lProcess == 0) Serve(iListener, szConfig.c_str(), iUser, iGroup);
    close(iListener);
  }
  ~MailServer() { Finish(); }
  MailServer(const MailServer&) = delete;
  MailServer& operator=(const MailServer&) = delete;

  std::int32_t Port() const { return iPort; }

  // The mails delivered, once the server is through with its connection.
  std::vector<std::string> Finish() {
    if (lProcess > 0) waitpid(lProcess, nullptr, 0);
    lProcess = 0;
    std::vector<std::string> aMails;
    for (const auto& aEntry : fs::exists(szFolder + "/box/new")
                                  ? fs::directory_iterator(szFolder + "/box/new")
                                  : fs::directory_iterator())
      aMails.push_back(ReadFile(aEntry.path()));
    return aMails;
  }
  std::string Log() const { return ReadFile(szFolder + "/mainlog") + ReadFile(szFolder + "/paniclog"); }

 private:
  [[noreturn]] static void Serve(int iListener, const char* szConfig, uid_t iUser, gid_t iGroup) {
    pollfd aPoll{iListener, POLLIN, 0};
    if (poll(&aPoll, 1, 20'000) != 1) _exit(1);
    const int iClient = accept(iListener, nullptr, nullptr);
    close(iListener);
    if (dup2(iClient, STDIN_FILENO) < 0 || dup2(iClient, STDOUT_FILENO) < 0 ||
        (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(iGroup) != 0 || setuid(iUser) != 0)))
      _exit(1);
    close(iClient);
    execl(szExim, szExim, "-C", szConfig, "-bs", "-odf", static_cast<char*>(nullptr));
    _exit(1);
  }
  static std::string ReadFile(const fs::path& aPath) {
    std::ostringstream aText;
    aText << std::ifstream(aPath, std::ios::binary).rdbuf();
    return aText.str();
  }

  std::string szFolder;
  std::uint16_t iPort = 0;
  pid_t lProcess = 0;
};

class MailServerTest : public testing::Test {
 protected:
  void SetUp() override {
    if (access(szExim, X_OK) != 0) GTEST_SKIP() << "no mail server to test with: install exim4-daemon-light";
    Settings = {};
    Settings.Name = "J\xC3\xBCrgen";
    Settings.Email = "manager@example.org";
    Settings.SMTP = "127.0.0.1";
    aSites.assign(2, {});
    aSites[1].URL = "www.example.org";
    lSiteCount = 1;
  }
  void TearDown() override {
    Settings = {};
    aSites.clear();
    lSiteCount = 0;
  }

  TestHome aHome;
};

TEST_F(MailServerTest, TheMailLiesInTheMailboxAsItWasWritten) {
  CheckFacts aFacts;
  aFacts.szRequestURL = "http://www.example.org";
  const std::string szLong(1200, 'x');
  for (const std::string& szTemplate :
       {"Dear %MGRNAME%,\r\n.\r\n..two\r\n.dot %URL%\r\nends in a blank \r\n\ttab = 3D\r\nFrom here\r\n\r\n" +
            szLong,
        std::string("Plain text,\r\n.\r\n.dot\r\nFrom %URL%\r\n")}) {
    aHome.Write("Messages/HTTP-500.txt", szTemplate);
    MailServer aServer(aHome, "accept");
    Settings.SMTPPort = aServer.Port();
    const std::string szBody = AlertText::ComposeBody("500", 1, aFacts);
    EXPECT_EQ(SendEmail("500", 1, aFacts), 0);
    const auto aMails = aServer.Finish();
    ASSERT_EQ(aMails.size(), 1U) << aServer.Log();
    fs::remove_all(aHome.Path("mail"));

    const ReadMail aMail(aMails[0]);
    EXPECT_EQ(aMail.Only("from"), "Kestrova <manager@example.org>");
    EXPECT_TRUE(std::regex_match(aMail.Only("to"), std::regex("<?manager@example\\.org>?"))) << aMails[0];
    EXPECT_EQ(aMail.Only("subject"), "Kestrova Alert");
    EXPECT_EQ(aMail.Only("x-mailer"), "SendForm 3.0");
    EXPECT_EQ(aMail.Only("return-path"), "<manager@example.org>");
    EXPECT_EQ(aMail.Only("envelope-to"), "manager@example.org");
    EXPECT_TRUE(std::regex_match(aMail.Only("message-id"), std::regex("<[^<>@ ]+@[^<>@ ]+>"))) << aMails[0];
    EXPECT_TRUE(std::regex_match(
        aMail.Only("date"), std::regex("\\w{3}, \\d{1,2} \\w{3} \\d{4} \\d\\d:\\d\\d:\\d\\d [+-]\\d{4}")))
        << aMails[0];
    EXPECT_FALSE(std::regex_search(aMails[0], std::regex("[^\n]{999}")));
    EXPECT_EQ(aMail.szBody, Text::Replace(szBody, "\r\n", "\n") + (szBody.ends_with('\n') ? "" : "\n"));
  }
}

TEST_F(MailServerTest, ARefusedRecipientIsAFailureAndNoMail) {
  MailServer aServer(aHome, "deny");
  Settings.SMTPPort = aServer.Port();
  const std::int32_t lResult = SendEmail("500", 1, {});
  EXPECT_NE(lResult, 0);
  EXPECT_NE(lResult, lMailSettingsMissing);
  EXPECT_TRUE(aServer.Finish().empty());
  EXPECT_NE(aServer.Log().find("rejected RCPT"), std::string::npos) << aServer.Log();
}

}  // namespace
