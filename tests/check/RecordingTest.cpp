// From a failure to its mail. What a site goes through otherwise, its states, row, log line and IP check, the
// simulated machine follows check by check (docs/trust.md).
#include <gtest/gtest.h>

#include "check/PassFixture.h"
#include "check/ResultCodes.h"
#include "servers/SmtpServer.h"
#include "support/ReadMail.h"

using Fault::Status;

// The client remembers only its last request; the mail is about the first.
TEST(Recording, TheMailHasBothResultsAndBothTimes) {
  const std::string szTemplate = "%FIRSTFAILURE%|%SECONDFAILURE%|%RESULT%|%IPRESULT%|%ERRORCODE%|%ANSWER%";
  const struct {
    bool bRefused;  // by name; else it answers 418
    Fault::Answer aByIP;
    std::string szCode, szMail;
  } aCases[] = {
      {true, Status("404 x"), "8080", "ERROR:  7 Couldn't connect to server|404 File Not Found|0|"},
      {true, Status("200 OK"), "8080", "ERROR:  7 Couldn't connect to server|Site OK|0|"},
      {false,
       {Fault::Close()},
       "4xx",
       "4xx Request Error Response Received|ERROR:  52 Server returned nothing (no headers no data)|52|"
       "HTTP/1.1 418 x"},
  };
  for (const auto& aCase : aCases) {
    PassFixture aPass;
    SmtpServer aMail;
    Settings.Email = "m@example.org";
    Settings.SMTP = "127.0.0.1";
    Settings.SMTPPort = aMail.Port();
    aPass.Home.Write("Messages/HTTP-" + aCase.szCode + ".txt", szTemplate);
    aPass.Home.Write("Messages/DT_OK.txt", "");
    aPass.Home.Write("Messages/DT_NG.txt", "");
    aPass.Server.Serve("/x", Status("418 x"));
    aPass.Server.Serve("/", aCase.aByIP);
    aPass.Add(
        aCase.bRefused ? "127.0.0.1:" + std::to_string(FaultServer::RefusingPort()) : aPass.Server.Site("/x"),
        aPass.Server.Address());
    aPass.Engine.mF_StartCheck_Click();
    aPass.aClock.Advance(900);
    aPass.Engine.mF_StartCheck_Click();
    ASSERT_EQ(aMail.Mails().size(), 1U);
    const ReadMail aRead(aMail.Mails()[0].szText);
    EXPECT_EQ(aRead.Only("x-mailer"), "SendForm 3.0");
    const std::string& szBody = aRead.szBody;
    EXPECT_TRUE(Text::Replace(Text::Replace(szBody, "\n", ""), " |", "|")
                    .starts_with("11/15/1999 5:44:21 PM|11/15/1999 5:59:21 PM|" + aCase.szMail))
        << szBody;
  }
}

// What an answer means otherwise, the simulated machine holds against its book.
TEST(ResultCodes, AnOddAnswerToTheIPCheckIsToldFromAFailure) {
  for (const char* szOdd : {"HTTP/1.1 101 x", "HTTP/1.1 206 x", "HTTP/1.1 307 x"})
    EXPECT_EQ(ClassifyResponse(szOdd).iBackupOutcome, iServerAnswered) << szOdd;
  for (const char* szFailure : {"HTTP/1.1 404 x", "HTTP/1.1 418 x", "HTTP/1.1 599 x", "HTTP/1.1 600 x", ""})
    EXPECT_EQ(ClassifyResponse(szFailure).iBackupOutcome, iServerFailed) << szFailure;
}
