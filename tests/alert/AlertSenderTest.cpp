#include <gtest/gtest.h>

#include <regex>

#include "alert/AlertSender.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/SendForm3.h"
#include "platform/Text.h"
#include "support/ReadMail.h"
#include "support/SmtpServer.h"
#include "support/TestHome.h"

namespace {

class AlertSenderTest : public testing::Test {
 protected:
  AlertSenderTest() {
    Settings = {};
    Settings.Name = "Ada";
    Settings.Email = "manager@example.org";
    Settings.SMTP = "127.0.0.1";
    Settings.SMTPPort = aServer.Port();
    aSites.assign(2, {});
    aSites[1] = {.IP = "192.0.2.7",
                 .URL = "www.example.org/shop",
                 .Status = 2,
                 .Enabled = 1,
                 .TimeOut = 30,
                 .Comments = ""};
    lSiteCount = 1;
    aFacts.szRequestURL = "http://www.example.org/shop";
  }
  ~AlertSenderTest() override {
    Settings = {};
    aSites.clear();
    lSiteCount = 0;
  }

  TestHome aHome;
  SmtpServer aServer;
  CheckFacts aFacts;
};

TEST_F(AlertSenderTest, MissingSettingsAreToldApartBeforeAnythingIsTouched) {
  // Composing would fail on this template, so an answer at all means that it was not opened.
  aHome.Write("Messages/HTTP-404.txt", std::string(2 * 1024 * 1024, 'x'));
  ASSERT_THROW(SendEmail("404", 1, aFacts), AlertAbandoned);
  for (const auto& [szSMTP, szEmail] :
       {std::pair{"", ""}, std::pair{"127.0.0.1", ""}, std::pair{"", "manager@example.org"}}) {
    Settings.SMTP = szSMTP;
    Settings.Email = szEmail;
    EXPECT_EQ(SendEmail("404", 1, aFacts), 999);
    EXPECT_EQ(SendEmail("3xx", 1, aFacts), 999);
  }
  EXPECT_EQ(aServer.Connections(), 0U);
}

TEST_F(AlertSenderTest, OneMailAsComposed) {
  aHome.Write("Messages/HTTP-404.txt", "Gr\xC3\xBC\xC3\x9F %MGRNAME%\r\n.\r\n.dot\n%URL% is gone\r\n");
  aFacts.bIPCheckPerformed = true;
  for (const char* szCode : {"404", "8001"}) {
    EXPECT_EQ(SendEmail(szCode, 1, aFacts), 0);
    const auto aMails = aServer.Mails();
    ASSERT_EQ(aMails.size(), aServer.Connections());
    EXPECT_TRUE(aMails.back().bTaken);
    EXPECT_EQ(aMails.back().szSender, "manager@example.org");
    EXPECT_EQ(aMails.back().aRecipients, std::vector<std::string>{"manager@example.org"});
    const ReadMail aMail(aMails.back().szText);
    EXPECT_EQ(aMail.Only("from"), "Kestrova <manager@example.org>");
    EXPECT_NE(aMail.Only("to").find("manager@example.org"), std::string::npos);
    EXPECT_EQ(aMail.Only("subject"), "Kestrova Alert");
    EXPECT_EQ(aMail.Only("x-mailer"), "SendForm 3.0");
    EXPECT_EQ(aMail.Only("mime-version"), "1.0");
    const std::string szBody = Text::Replace(AlertText::ComposeBody(szCode, 1, aFacts), "\r\n", "\n");
    EXPECT_EQ(aMail.szBody, szBody + (szBody.ends_with('\n') ? "" : "\n"));
  }
  EXPECT_EQ(aServer.Connections(), 2U);
}

TEST_F(AlertSenderTest, TheMailCallsNumberComesBackUnchangedAfterOneTry) {
  using enum SmtpServer::Stage;
  const std::pair<SmtpServer::Stage, Smtp::Act> aFaults[] = {
      {Greeting, Smtp::Say("554 no service here")},
      {Greeting, Smtp::Drop()},
      {Hello, Smtp::Reset()},
      {Sender, Smtp::Say("451 4.3.0 try again later")},
      {Recipient, Smtp::Say("550 5.1.1 no such user")},
      {Data, Smtp::Say("554 5.7.1 refused")},
      {Text, Smtp::Say("552 5.3.4 too much")},
      {Text, Smtp::Drop()},
  };
  for (const auto& [iStage, aAct] : aFaults) {
    SCOPED_TRACE(static_cast<int>(iStage));
    SmtpServer aFaulty;
    aFaulty.At(iStage, aAct);
    Settings.SMTPPort = aFaulty.Port();
    const std::int32_t lResult = SendEmail("404", 1, aFacts);
    EXPECT_EQ(aFaulty.Connections(), 1U);
    EXPECT_NE(lResult, 0);
    EXPECT_NE(lResult, lMailSettingsMissing);
    EXPECT_EQ(lResult, SendForm3("", Settings.SMTP, Settings.SMTPPort, Settings.Email, "",
                                 "Kestrova <x@example.org>", Settings.Email, "", "x\r\n", "", 0, 0, "", ""));
  }
}

TEST_F(AlertSenderTest, NothingGoesOutForWhatCannotBeSent) {
  EXPECT_THROW(SendEmail("3xx", 1, aFacts), AlertAbandoned);
  for (const char* szEmail : {"a@example.org\r\nBcc: b@example.org", "a@example.org>\nRCPT TO:<b@c"}) {
    Settings.Email = szEmail;
    const std::int32_t lResult = SendEmail("404", 1, aFacts);
    EXPECT_TRUE(lResult != 0 && lResult != lMailSettingsMissing) << szEmail << lResult;
  }
  Settings.Email = "manager@example.org";
  Settings.SMTP = "127.0.0.1\r\nx";
  EXPECT_NE(SendEmail("404", 1, aFacts), 0);
  EXPECT_EQ(aServer.Connections(), 0U);
}

// Only an empty text counts as missing; whether blanks are an address is for the server to say.
TEST_F(AlertSenderTest, AnAddressOfBlanksIsTried) {
  Settings.Email = "   ";
  aServer.At(SmtpServer::Stage::Sender, Smtp::Say("501 5.1.7 bad sender address syntax"));
  const std::int32_t lResult = SendEmail("404", 1, aFacts);
  EXPECT_TRUE(lResult != 0 && lResult != lMailSettingsMissing) << lResult;
  EXPECT_EQ(aServer.Connections(), 1U);
}

}  // namespace
