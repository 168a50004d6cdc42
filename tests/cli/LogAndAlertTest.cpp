// log, alert --test, and the demonstration's servers with a whole story over them.
#include <gmock/gmock.h>

#include "Cli.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "support/SmtpServer.h"

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

void UseMailServer(const SmtpServer& aServer) {
  using namespace RegistryAccess;
  const auto hRoot = Registry::HKEY_LOCAL_MACHINE;
  RegCreatePath(hRoot, ProductKeys::szManager);
  RegWriteValue(hRoot, ProductKeys::szManager, "Email", std::string("me@kestrova.invalid"), 1);
  RegWriteValue(hRoot, ProductKeys::szManager, "SMTP", std::string("127.0.0.1"), 1);
  RegWriteValue(hRoot, ProductKeys::szManager, "SMTPPort", std::int32_t{aServer.Port()}, 4);
}

}  // namespace

TEST_F(Cli, TestMailSaysWhatTheServerAnswered) {
  SmtpServer aMailServer;
  UseMailServer(aMailServer);
  const Result aSent = Run({"alert", "--test"});
  EXPECT_EQ(aSent.iCode, 0) << aSent.szErrors;
  EXPECT_THAT(aSent.szOutput,
              ContainsRegex("me@kestrova.invalid through 127.0.0.1:[0-9]+.\nThe mail server answered: 2"));
  ASSERT_EQ(aMailServer.Mails().size(), 1U);
  EXPECT_THAT(aMailServer.Mails()[0].szText, HasSubstr("This is a test mail from Kestrova."));

  aMailServer.At(SmtpServer::Stage::Recipient, Smtp::Say("550 5.1.1 no \033[31msuch\xC2\x9B user"));
  const Result aRefused = Run({"alert", "--test"});
  EXPECT_EQ(aRefused.iCode, 2);
  EXPECT_EQ(aRefused.szOutput, "");
  EXPECT_THAT(aRefused.szErrors,
              ContainsRegex("^kestrova-cli: The test mail was not sent [^\n]*550 5.1.1 no[^\n]*\n$"));
  EXPECT_FALSE(HasTerminalControls(aRefused.szErrors)) << aRefused.szErrors;
  EXPECT_EQ(aMailServer.Mails().size(), 1U);
}

TEST_F(Cli, LogIsShownSummedUpAndExported) {
  const std::string szFirst =
      "[START CHECK: MANUAL - 11/20/2026 5:44:21 PM]\r\n"
      "11/20/2026 5:44:21 PM,http://a.invalid,Site OK,1,,1\r\n"
      "11/20/2026 5:44:23 PM,http://b.invalid,404 File Not Found,0,,4\r\n[END CHECK]\r\n";
  const std::string szSecond =
      "[START CHECK: AUTO - 11/21/2026 5:44:21 PM]\r\n"
      "11/21/2026 5:44:21 PM,http://a.invalid,Site OK,1,,1\r\n"
      "torn \033[2J\x07 line\r\n[END CHECK]\r\n";
  aHome.Write("D-20261120.kvl", szFirst);
  aHome.Write("D-20261121.kvl", szSecond);
  const std::string szOne = aHome.Path("D-20261120.kvl"), szTwo = aHome.Path("D-20261121.kvl");

  const Result aShown = Run({"log", szTwo, szOne});
  EXPECT_EQ(aShown.iCode, 0) << aShown.szErrors;
  EXPECT_LT(aShown.szOutput.find("11/20/2026 5:44:23"), aShown.szOutput.find("AUTO"));
  EXPECT_THAT(aShown.szOutput, HasSubstr("torn ?[2J? line"));
  EXPECT_FALSE(HasTerminalControls(aShown.szOutput));

  const Result aWritten =
      Run({"log", szOne, szTwo, "--html", aHome.Path("o.htm"), "--csv", aHome.Path("o.csv"), "--summary"});
  EXPECT_EQ(aWritten.iCode, 0) << aWritten.szErrors;
  EXPECT_THAT(aWritten.szOutput, AllOf(HasSubstr("a.invalid"), HasSubstr("o.htm"), HasSubstr("o.csv")));
  EXPECT_FALSE(HasTerminalControls(aWritten.szOutput));
  EXPECT_THAT(aHome.Read("o.htm"), AllOf(HasSubstr("</html>"), HasSubstr("404 File Not Found")));
  EXPECT_THAT(aHome.Read("o.csv"), HasSubstr("404 File Not Found"));

  // An output never takes the place of a log or of the other output.
  const std::vector<std::vector<std::string>> aRefused = {
      {"log", szOne, "--html", szOne},
      {"log", szOne, szTwo, "--csv", szTwo},
      {"log", szOne, "--html", "x", "--csv", "x"},
      {"log", szOne, "--html", aHome.Path("no/x.htm")},
      {"log", szOne, aHome.Path("none.kvl"), "--summary"}};
  for (const auto& aArguments : aRefused)
    EXPECT_EQ(Run(aArguments).iCode, 2) << aArguments.back();
  EXPECT_EQ(aHome.Read("D-20261120.kvl"), szFirst);
  EXPECT_EQ(aHome.Read("D-20261121.kvl"), szSecond);
}

TEST_F(Cli, DemonstrationShowsUpWarningDownIPCheckAndMails) {
  ChildProcess aDemo(ChildProcess::BuiltProgram("kestrova-demo"), {aHome.Folder()});
  for (int i = 0; i < 200 && !Files::FileExists(aHome.Path("ready")); ++i)
    aDemo.WaitForOutput("never printed", 0.05);
  ASSERT_TRUE(Files::FileExists(aHome.Path("ready"))) << aDemo.Errors();
  ASSERT_EQ(Run({"registry", "import", aHome.Path("settings.reg")}).iCode, 0);
  ASSERT_EQ(Run({"import", "--replace", aHome.Path("demo.kvd")}).iCode, 0);

  const auto Pass = [&](const char* szCounts, std::size_t lMailsSoFar) {
    const Result aPass = Run({"check"});
    EXPECT_EQ(aPass.iCode, 1) << aPass.szErrors;
    EXPECT_THAT(aPass.szOutput, HasSubstr(szCounts));
    const std::string szMails = aHome.Path("mails");
    for (int i = 0; i < 100 && Files::List(szMails, ".eml").size() < lMailsSoFar; ++i)
      aDemo.WaitForOutput("never printed", 0.05);
    EXPECT_EQ(Files::List(szMails, ".eml").size(), lMailsSoFar);
    return aPass.szOutput;
  };
  Pass("3 up, 6 warning, 0 down", 0);
  EXPECT_THAT(Pass("3 up, 0 warning, 6 down", 6), HasSubstr("(IP Check: OK)"));
  aDemo.Interrupt();
  EXPECT_EQ(aDemo.Wait(5), 0);
}
