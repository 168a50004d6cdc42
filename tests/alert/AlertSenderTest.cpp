#include "alert/AlertFixture.h"
#include "support/ReadMail.h"

namespace {

using AlertSenderTest = AlertFixture;

TEST_F(AlertSenderTest, TheMailGoesFromAndToTheManager) {
  aHome.Write("Messages/HTTP-500.txt", "J\xC3\xBCrgen,\r\n.\r\n.dot %URL%\r\n\r\nFrom here\r\n");
  ASSERT_EQ(Send("500"), 0);
  const auto aSent = aServer.Mails().at(0);
  EXPECT_EQ(aSent.szSender, aSettings.Email);
  EXPECT_EQ(aSent.aRecipients, std::vector<std::string>{aSettings.Email});
  const ReadMail aMail(aSent.szText);
  EXPECT_EQ(aMail.Only("from"), "Kestrova <manager@example.org>");
  EXPECT_EQ(aMail.Only("to"), aSettings.Email);
  EXPECT_EQ(aMail.Only("subject"), "Kestrova Alert");
  EXPECT_EQ(aMail.Only("x-mailer"), "SendForm 3.0");
  EXPECT_EQ(aMail.szBody, Text::Replace(Compose("500"), "\r\n", "\n"));
}

TEST_F(AlertSenderTest, NothingGoesOutForWhatCannotBeSent) {
  // Composing fails on this template, so an answer at all means that it was not opened.
  aHome.Write("Messages/HTTP-404.txt", std::string(2 * 1024 * 1024, 'x'));
  EXPECT_THROW(Send("404"), AlertAbandoned);
  EXPECT_THROW(Send("3xx"), AlertAbandoned);
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
    aSettings.SMTP = aCase.szSMTP;
    aSettings.Email = aCase.szEmail;
    const std::int32_t lResult = Send(aCase.szCode);
    EXPECT_NE(lResult, 0);
    EXPECT_EQ(lResult == lMailSettingsMissing, aCase.bMissing) << aCase.szSMTP << aCase.szEmail;
  }
  EXPECT_EQ(aServer.Connections(), 0U);
}

}  // namespace
