// log and alert --test.
#include <nlohmann/json.hpp>

#include "cli/Cli.h"
#include "servers/SmtpServer.h"
#include "support/Stored.h"

using namespace testing;

TEST_F(Cli, TestMailSaysWhatTheServerAnswered) {
  SmtpServer aMailServer;
  Stored::PutMailServer(aMailServer.Port());
  EXPECT_THAT(Run({"alert", "--test"}),
              FieldsAre(0, HasPattern("through 127.0.0.1:[0-9]+.\nThe mail server answered: 2"), _));
  ASSERT_EQ(aMailServer.Mails().size(), 1U);
  EXPECT_THAT(aMailServer.Mails()[0].szText, HasSubstr("This is a test mail from Kestrova."));

  aMailServer.At(SmtpServer::Stage::Recipient, Smtp::Say("550 5.1.1 no \033[31msuch\xC2\x9B user"));
  EXPECT_THAT(Run({"alert", "--test"}),
              FieldsAre(2, _, AllOf(HasPattern("The test mail was not sent [^\n]*550 5.1.1 no"), IsPlain())));
}

TEST_F(Cli, LogIsShownAndExportedAndNeverOverwritten) {
  const std::string szLog =
      "[START CHECK: AUTO - 11/21/2026 5:44:21 PM]\r\n"
      "11/21/2026 5:44:23 PM,http://b.invalid,404 File Not Found,0,,4\r\n"
      "torn \033[2J\x07 line\r\n[END CHECK]\r\n";
  const std::string szPath = aHome.Path("D-20261121.kvl"), szNone = aHome.Path("none.kvl");
  const std::string szPage = aHome.Path("o.htm"), szTable = aHome.Path("o.csv");
  aHome.Write("D-20261121.kvl", szLog);
  const struct {
    std::vector<std::string> aArguments;
    int iCode;
    const char* szShown;
  } aCases[] = {{{"log", szPath}, 0, "torn ?[2J? line"},
                {{"log", szPath, "--html", szPage, "--csv", szTable, "--summary"}, 0, "b.invalid"},
                {{"log", szPath, "--html", szPath}, 2, ""},
                {{"log", szNone, szPath, "--csv", szPath}, 2, ""},
                {{"log", szPath, "--html", "x", "--csv", "x"}, 2, ""},
                {{"log", szPath, "--html", aHome.Path("no/x.htm")}, 2, ""}};
  for (const auto& aCase : aCases)
    EXPECT_THAT(Run(aCase.aArguments), FieldsAre(aCase.iCode, AllOf(HasSubstr(aCase.szShown), IsPlain()), _));
  EXPECT_THAT(aHome.Read("o.htm"), AllOf(HasSubstr("</html>"), HasSubstr("404 File Not Found")));
  EXPECT_THAT(aHome.Read("o.csv"), HasSubstr("404 File Not Found"));
  EXPECT_EQ(aHome.Read("D-20261121.kvl"), szLog);
}

TEST_F(Cli, LogAnswersWhatIsAskedOfIt) {
  const std::string szLog =
      "[START CHECK: AUTO - 11/21/2026 5:44:21 PM]\r\n"
      "11/21/2026 5:44:22 PM,http://a.invalid,Site OK,0,,1\r\n"
      "11/21/2026 5:44:23 PM,http://b.invalid,404 File Not Found,0,,4\r\n[END CHECK]\r\n"
      "[START CHECK: AUTO - 11/21/2026 5:49:21 PM]\r\n"
      "11/21/2026 5:49:22 PM,http://a.invalid,Site OK,0,,1\r\n"
      "11/21/2026 5:49:23 PM,http://b.invalid,404 File Not Found,0,E-mail Notification Sent,2\r\n"
      "[END CHECK]\r\n";
  aHome.Write("Logs/D-20261121.kvl", szLog);
  aHome.Write("D.kvl", szLog);
  aHome.Write("letter.txt", "Dear reader,\r\nthis is no log.\r\n");
  const auto szPath = aHome.Path("D.kvl");
  const struct {
    std::vector<std::string> aArguments;
    int iCode;
    const char *szShown, *szNotShown = "\x01";  // nothing shows that
  } aCases[] = {
      {{"log"}, 0, "5:49:23 PM,http://b.invalid"},  // the folder of the settings
      {{"log", szPath, "--site", "A.INV"}, 0, "5:49:22 PM,http://a.invalid", "b.invalid"},
      {{"log", szPath, "--site", "http://c"}, 2, ""},
      {{"log", szPath, "--failures"}, 0, "5:44:23 PM,http://b.invalid", "a.invalid"},
      {{"log", szPath, "--outages"}, 0, "sent after 5 min", "a.invalid"},
      {{"log", szPath, "--outages", "--site", "a.invalid"}, 0, "There was no outage.", "b.invalid"},
      {{"log", szPath, "--summary"}, 0, "b.invalid  Sat Nov 21 2026, 5:44 PM"},
      {{"log", szPath, "--json", "--failures"}, 0, R"("site":"b.invalid","outcome":"Down")", "a.invalid"},
      {{"log", szPath, "--from", "2026-11-21 17:45"}, 0, "5:49:22 PM,http://a.invalid", "5:44:22"},
      {{"log", szPath, "--to", "2026-11-21 17:45"}, 0, "5:44:22 PM,http://a.invalid", "5:49:22"},
      {{"log", szPath, "--from", "1h", "--to", "2026-11-21", "--summary"}, 0, "2 on schedule"},
      {{"log", szPath, "--csv", "-", "--from", "2026-11-22"}, 2, ""},
      {{"log", szPath, "--from", "yesterday"}, 2, ""},
      {{"log", szPath, "--to", "2026-11-20"}, 2, ""},
      {{"log", szPath, "--csv", "-"}, 0, "b.invalid,http://b.invalid,Down", "Written"},
      {{"log", szPath, "--html", "-"}, 0, "</html>"},
      {{"log", szPath, "--html", "-", "--entries", "1"}, 0, "This page holds the last 1 of", "Checks around"},
      {{"log", szPath, "--html", "-", "--entries", "all"}, 0, "Every check", "This page holds"},
      {{"log", szPath, "--html", "-", "--entries", "0"}, 2, ""},
      {{"log", aHome.Path("letter.txt")}, 2, ""},
  };
  for (const auto& aCase : aCases)
    EXPECT_THAT(Run(aCase.aArguments),
                FieldsAre(aCase.iCode, AllOf(HasSubstr(aCase.szShown), Not(HasSubstr(aCase.szNotShown))), _))
        << PrintToString(aCase.aArguments);
  const auto aTold = nlohmann::json::parse(Run({"log", szPath, "--summary", "--json"}).szOutput);
  ASSERT_EQ(aTold.size(), 2U);
  EXPECT_EQ(aTold[1]["failures"][0]["mails"][0]["sent"], true);
  EXPECT_EQ(aTold[1]["failures"][0]["seconds"], 300);
}
