// What one site goes through: its states, its row, its log line, the IP check, the alert.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <utility>

#include "check/PassFixture.h"
#include "check/Schedule.h"
#include "servers/SmtpServer.h"
#include "support/ReadMail.h"

using Fault::Status;
using modAddress::Site;

TEST(Recording, FailuresMoveASiteToDownAndASuccessBringsItBack) {
  PassFixture b;
  b.Server.ServeInOrder("/x",
                        {Status("500 a"), Status("500 b"), Status("404 c"), Fault::Ok(), Status("418 d")});
  b.Add(b.Server.Site("/x"));
  const struct {
    std::uint8_t iStatus;
    const char *szRemark, *szLogTail;
    int lBells;
  } aPasses[] = {
      {SiteStatus::iWarning, "500 Internal Server Error", "0,,4", 0},
      {SiteStatus::iDown, "500 Internal Server Error",
       "0,E-mail Notification Failed (Missing e-mail address and SMTP),2", 1},
      {SiteStatus::iDown, "404 File Not Found", "0,,2", 2},
      {SiteStatus::iUp, "Site OK", "0,,1", 2},
      {SiteStatus::iWarning, "4xx Request Error Response Received", "0,,4", 2},
  };
  for (const auto& aPass : aPasses) {
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(Site(1).Status, aPass.iStatus);
    EXPECT_EQ(b.View.aLights[1], aPass.iStatus);
    EXPECT_EQ(b.View.aRemarks[1], aPass.szRemark);
    const auto aLog = b.Log();
    ASSERT_GE(aLog.size(), 3U);
    EXPECT_EQ(aLog[aLog.size() - 2],
              std::string("11/15/1999 5:44:21 PM,http://SERVER/x,") + aPass.szRemark + "," + aPass.szLogTail);
    EXPECT_EQ(b.View.lBells, aPass.lBells);
    EXPECT_EQ(Schedule::NextPanelText(),
              aPass.iStatus == SiteStatus::iWarning ? "Next: 5:59:21 PM" : "Next: 6:44:21 PM");
  }
  modAddress::LoadSites(true, true);
  EXPECT_EQ(Site(1).Status, SiteStatus::iWarning);
  EXPECT_EQ(Site(1).Comments, "4xx Request Error Response Received");
}

TEST(Recording, TheSecondFailureIsTriedByIPAddress) {
  const std::string szNoCode = "Unrecognized Reponse Code";
  const struct {
    Fault::Answer aByName, aByIP;
    std::string szFirst, szSecond;
    bool bAnswered;
  } aCases[] = {
      {Status("404 x"), Fault::Ok(), "404 File Not Found", "404 File Not Found", true},
      {Status("500 x"), Status("206 y"), "500 Internal Server Error", "2xx Success Response Received", false},
      {{Fault::Send("\r\nno http\r\n")}, {Fault::Send("nor here")}, szNoCode, szNoCode, false},
  };
  for (const auto& aCase : aCases) {
    PassFixture b;
    b.Server.Serve("/x", aCase.aByName);
    b.Server.Serve("/", aCase.aByIP);
    b.Add(b.Server.Site("/x"), b.Server.Address(), SiteStatus::iWarning);
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(Site(1).Status, SiteStatus::iDown);
    EXPECT_EQ(b.View.aRemarks[1],
              aCase.szFirst + (aCase.bAnswered ? " (IP Check: OK)" : " (IP Check: Error)"));
    EXPECT_EQ(Site(1).Comments, aCase.szFirst + " (IP Check Status: " + aCase.szSecond + ")");
    EXPECT_TRUE(b.View.Has("progress IP Check: http://" + b.Server.Address()));
    ASSERT_EQ(b.Log().size(), 3U) << "one entry for both requests";
    EXPECT_EQ(b.Log()[1], "11/15/1999 5:44:21 PM,(1) http://SERVER/x<BR>(2) http://SERVER,(1) " +
                              aCase.szFirst + "<BR>(2) " + aCase.szSecond +
                              ",0,<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; E-mail Notification "
                              "Failed (Missing e-mail address and SMTP),2");
    EXPECT_EQ(b.View.lBells, 1);
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(b.Server.Count("/"), 1U) << "a site that is down already is not tried by IP again";
  }
}

TEST(Recording, TimeOutsByNameAndByIPMakeOneEntryEach) {
  for (const bool bWithIP : {false, true}) {
    PassFixture b;
    b.Server.Serve("*", {Fault::Hang()});
    b.Add(b.Server.Site("/x"), bWithIP ? b.Server.Address() : "",
          bWithIP ? SiteStatus::iWarning : SiteStatus::iNotKnown);
    b.View.OnPump = [&b, lSeen = std::size_t{0}]() mutable {
      if (b.Server.Count() == lSeen) return;
      lSeen = b.Server.Count();
      b.aClock.Advance(31);
      b.Engine.TimerMain_Timer();
    };
    b.Engine.mF_StartCheck_Click();
    b.Engine.TimerMain_Timer();
    EXPECT_EQ(b.Server.Count(), bWithIP ? 2U : 1U);
    EXPECT_EQ(Site(1).Status, bWithIP ? SiteStatus::iDown : SiteStatus::iWarning);
    EXPECT_EQ(b.Engine.State(), PassState::Idle);
    ASSERT_EQ(b.Log().size(), 3U);
    EXPECT_NE(b.Log()[1].find(bWithIP ? ",(1) Request Timed-Out<BR>(2) Request Timed-Out,2,"
                                      : ",Request Timed-Out,31,,4"),
              std::string::npos)
        << b.Log()[1];
  }
}

// The tick may come late, from under an open menu. What the server answered in time counts.
TEST(Recording, AnAnswerThatLiesReadyIsHeardBeforeTheDeadlineIsLookedAt) {
  PassFixture b;
  b.Add(b.Server.Site("/x"));
  b.View.OnPump = [&b] {
    if (b.Server.Count() == 0 || !b.Server.WaitUntilIdle(0)) return;
    b.aClock.Advance(31);
    b.Engine.TimerMain_Timer();
  };
  b.Engine.mF_StartCheck_Click();
  EXPECT_EQ(Site(1).Status, SiteStatus::iUp);
  EXPECT_EQ(b.Log().size(), 3U);
}

// Who was stopped by a signal, or suspended, finds the time-out gone and perhaps the connection too.
TEST(Recording, ARequestDuringWhichTheProcessStoodStillProvesNothing) {
  for (const bool bReset : {false, true}) {
    PassFixture b;
    b.Server.Serve("/x",
                   bReset ? Fault::Answer{Fault::Delay(500), Fault::Reset()} : Fault::Answer{Fault::Hang()});
    b.Add(b.Server.Site("/x"));
    b.View.OnPump = [&b, bReset, bSlept = false]() mutable {
      if (b.Server.Count() == 0 || std::exchange(bSlept, true)) return;
      b.Server.Serve("/x", Fault::Status("200 OK"));
      std::this_thread::sleep_for(std::chrono::milliseconds(2200));
      b.aClock.Advance(31);
      if (!bReset) b.Engine.TimerMain_Timer();
    };
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(b.Server.Count(), 2U) << bReset;
    EXPECT_EQ(Site(1).Status, SiteStatus::iUp);
    ASSERT_EQ(b.Log().size(), 3U);
    EXPECT_EQ(b.Log()[1], "11/15/1999 5:44:52 PM,http://SERVER/x,Site OK,0,,1");
  }
}

TEST(Recording, TheMailServersFaultStandsInTheLogAndNotInTheList) {
  using Stage = SmtpServer::Stage;
  const std::string szSent = "E-mail Notification Sent", szFailed = "E-mail Notification Failed";
  const struct {
    Stage iStage;
    Fault::Answer aAct;
    std::string szRemark;
  } aCases[] = {
      {Stage::Quit, {Fault::Close()}, szSent},
      {Stage::Text, Smtp::Say("554 refused"), szFailed},
  };
  for (const auto& aCase : aCases) {
    PassFixture b;
    SmtpServer aMail;
    aMail.At(aCase.iStage, aCase.aAct);
    Settings.Email = "m@example.org";
    Settings.SMTP = "127.0.0.1";
    Settings.SMTPPort = aMail.Port();
    b.Server.Serve("/x", Status("404 x"));
    b.Add(b.Server.Site("/x"), "", SiteStatus::iWarning);
    b.Engine.mF_StartCheck_Click();
    b.Engine.mF_StartCheck_Click();
    ASSERT_EQ(b.Log().size(), 6U);
    EXPECT_EQ(b.Log()[1],
              "11/15/1999 5:44:21 PM,http://SERVER/x,404 File Not Found,0," + aCase.szRemark + ",2");
    EXPECT_EQ(b.View.aRemarks[1], "404 File Not Found");
    EXPECT_EQ(aMail.Connections(), 1U) << "one attempt an outage";
  }
}

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
    PassFixture b;
    SmtpServer aMail;
    Settings.Email = "m@example.org";
    Settings.SMTP = "127.0.0.1";
    Settings.SMTPPort = aMail.Port();
    b.Home.Write("Messages/HTTP-" + aCase.szCode + ".txt", szTemplate);
    b.Home.Write("Messages/DT_OK.txt", "");
    b.Home.Write("Messages/DT_NG.txt", "");
    b.Server.Serve("/x", Status("418 x"));
    b.Server.Serve("/", aCase.aByIP);
    b.Add(aCase.bRefused ? "127.0.0.1:" + std::to_string(FaultServer::RefusingPort()) : b.Server.Site("/x"),
          b.Server.Address());
    b.Engine.mF_StartCheck_Click();
    b.aClock.Advance(900);
    b.Engine.mF_StartCheck_Click();
    ASSERT_EQ(aMail.Mails().size(), 1U);
    const std::string szBody = ReadMail(aMail.Mails()[0].szText).szBody;
    EXPECT_TRUE(Text::Replace(Text::Replace(szBody, "\n", ""), " |", "|")
                    .starts_with("11/15/1999 5:44:21 PM|11/15/1999 5:59:21 PM|" + aCase.szMail))
        << szBody;
  }
}

TEST(Recording, AnAlertWithoutATextStillLeavesAnEntry) {
  PassFixture b;
  Settings.Email = "m@example.org";
  Settings.SMTP = "127.0.0.1";
  b.Server.Serve("*", Status("418 x"));
  b.Add(b.Server.Site("/x"), b.Server.Address(), SiteStatus::iWarning);
  b.Engine.mF_StartCheck_Click();
  EXPECT_EQ(Site(1).Status, SiteStatus::iDown);
  ASSERT_EQ(b.Log().size(), 3U);
  EXPECT_EQ(b.Log()[1].find("E-mail"), std::string::npos);
  modAddress::LoadSites(true, true);
  EXPECT_EQ(Site(1).Status, SiteStatus::iWarning) << "what follows the alert is left out, the save too";
}
