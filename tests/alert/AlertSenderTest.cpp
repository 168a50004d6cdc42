#include "alert/AlertBench.h"
#include "platform/SendForm3.h"
#include "support/ReadMail.h"

namespace {

using AlertSenderTest = AlertBench;

TEST_F(AlertSenderTest, OneMailAsComposed) {
  aHome.Write("Messages/HTTP-404.txt", "Gr\xC3\xBC\xC3\x9F %MGRNAME%\r\n.\r\n.dot\n%URL% is gone\r\n");
  aFacts.bIPCheckPerformed = true;
  for (const char* szCode : {"404", "8001"}) {
    EXPECT_EQ(SendEmail(szCode, 2, aFacts), 0);
    const auto aMails = aServer.Mails();
    ASSERT_EQ(aMails.size(), aServer.Connections());
    EXPECT_EQ(aMails.back().aRecipients, std::vector<std::string>{"manager@example.org"});
    const ReadMail aMail(aMails.back().szText);
    EXPECT_EQ(aMail.Only("from"), "Kestrova <manager@example.org>");
    EXPECT_EQ(aMail.Only("subject"), "Kestrova Alert");
    EXPECT_EQ(aMail.Only("x-mailer"), "SendForm 3.0");
    const std::string szBody = Text::Replace(Compose(szCode), "\r\n", "\n");
    EXPECT_EQ(aMail.szBody, szBody + (szBody.ends_with('\n') ? "" : "\n"));
  }
  EXPECT_EQ(aServer.Connections(), 2U);
}

TEST_F(AlertSenderTest, TheMailCallsNumberComesBackAfterOneTry) {
  // Only an empty text counts as missing; whether blanks are an address is for the server to say.
  for (const char* szEmail : {"manager@example.org", "   "}) {
    SmtpServer aFaulty;
    aFaulty.At(SmtpServer::Stage::Sender, Smtp::Say("501 5.1.7 bad sender address syntax"));
    Settings.Email = szEmail;
    Settings.SMTPPort = aFaulty.Port();
    const std::int32_t lResult = SendEmail("404", 2, aFacts);
    EXPECT_EQ(aFaulty.Connections(), 1U);
    EXPECT_TRUE(lResult != 0 && lResult != lMailSettingsMissing) << lResult;
    EXPECT_EQ(lResult, SendForm3("", Settings.SMTP, Settings.SMTPPort, Settings.Email, "",
                                 "Kestrova <x@example.org>", Settings.Email, "", "x\r\n", "", 0, 0, "", ""));
  }
}

TEST_F(AlertSenderTest, NothingGoesOutForWhatCannotBeSent) {
  // Composing fails on this template, so an answer at all means that it was not opened.
  aHome.Write("Messages/HTTP-404.txt", std::string(2 * 1024 * 1024, 'x'));
  EXPECT_THROW(SendEmail("404", 2, aFacts), AlertAbandoned);
  EXPECT_THROW(SendEmail("3xx", 2, aFacts), AlertAbandoned);
  const struct {
    const char *szSMTP, *szEmail, *szCode;
    bool bMissing;
  } aCases[] = {
      {"", "", "404", true},
      {"127.0.0.1", "", "404", true},
      {"", "m@example.org", "3xx", true},
      {"127.0.0.1", "a@example.org\r\nBcc: b@example.org", "500", false},
      {"127.0.0.1\r\nx", "m@example.org", "500", false},
  };
  for (const auto& aCase : aCases) {
    Settings.SMTP = aCase.szSMTP;
    Settings.Email = aCase.szEmail;
    const std::int32_t lResult = SendEmail(aCase.szCode, 2, aFacts);
    EXPECT_NE(lResult, 0);
    EXPECT_EQ(lResult == lMailSettingsMissing, aCase.bMissing) << aCase.szSMTP << aCase.szEmail;
  }
  EXPECT_EQ(aServer.Connections(), 0U);
}

}  // namespace
