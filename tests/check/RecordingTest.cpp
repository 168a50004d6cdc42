// What one site goes through: its states, its row, its log line, the IP check, the alert.
#include <gtest/gtest.h>

#include "check/Bench.h"
#include "check/Schedule.h"

using Fault::Status;

namespace {
const Fault::Answer aHang = {Fault::Hang()};

// Lets the clock run past the site's time-out as soon as the server has got that many requests.
void TimeOutAfter(Bench& aBench, std::size_t lRequests) {
  aBench.View.OnPump = [&aBench, lRequests, bDone = false]() mutable {
    if (bDone || aBench.Server.Count() < lRequests) return;
    bDone = true;
    aBench.aClock.Advance(31);
    aBench.Engine.TimerMain_Timer();
  };
}
}  // namespace

TEST(Recording, FailuresMoveASiteToDownAndASuccessBringsItBack) {
  Bench b;
  b.Server.ServeInOrder("/x",
                        {Status("500 a"), Status("500 b"), Status("404 c"), Fault::Ok(), Status("418 d")});
  b.Add(b.Server.Site("/x"));
  struct Pass {
    std::uint8_t iStatus;
    std::int16_t iLight;
    const char* szRemark;
    const char* szLogTail;
    int lBells;
  };
  const Pass aPasses[] = {
      {2, 2, "500 Internal Server Error", "500 Internal Server Error,0,,4", 0},
      {3, 3, "500 Internal Server Error",
       "500 Internal Server Error,0,E-mail Notification Failed (Missing e-mail address and SMTP),2", 1},
      {3, 3, "404 File Not Found", "404 File Not Found,0,,2", 2},
      {1, 1, "Site OK", "Site OK,0,,1", 2},
      {2, 2, "4xx Request Error Response Received", "4xx Request Error Response Received,0,,4", 2},
  };
  for (const Pass& aPass : aPasses) {
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(b.Site(1).Status, aPass.iStatus);
    EXPECT_EQ(b.View.aLights[1], aPass.iLight);
    EXPECT_EQ(b.View.aRemarks[1], aPass.szRemark);
    EXPECT_EQ(b.Site(1).Comments, aPass.szRemark);
    const auto aLog = b.Log();
    ASSERT_GE(aLog.size(), 3U);
    EXPECT_EQ(b.Plain(aLog[aLog.size() - 2]),
              std::string("11/15/1999 5:44:21 PM,http://SERVER/x,") + aPass.szLogTail);
    EXPECT_EQ(b.View.lBells, aPass.lBells);
  }
  modAddress::LoadSites(true, true);
  EXPECT_EQ(b.Site(1).Status, 2);
  EXPECT_EQ(b.Site(1).Comments, "4xx Request Error Response Received");
}

TEST(Recording, TheAlertRemarkNamesTheMissingSetting) {
  Bench b;
  b.Server.Serve("/x", Status("404 c"));
  b.Add(b.Server.Site("/x"));
  struct Case {
    const char* szEmail;
    const char* szSMTP;
    const char* szTail;
  };
  const Case aCases[] = {
      {"", "mail", ",E-mail Notification Failed (Missing e-mail address),2"},
      {"m@example.org", "", ",E-mail Notification Failed (Missing SMTP),2"},
      {"m@example.org", "127.0.0.1", ",E-mail Notification Failed,2"},  // nobody takes it
  };
  Settings.SMTPPort = FaultServer::RefusingPort();
  for (const Case& aCase : aCases) {
    Settings.Email = aCase.szEmail;
    Settings.SMTP = aCase.szSMTP;
    b.Site(1).Status = 2;
    b.Engine.mF_StartCheck_Click();
    const auto aLog = b.Log();
    EXPECT_TRUE(aLog.at(aLog.size() - 2).ends_with(aCase.szTail)) << aLog.at(aLog.size() - 2);
  }
}

TEST(Recording, TheSecondFailureIsTriedByIPAddress) {
  struct Case {
    Fault::Answer aByName;
    Fault::Answer aByIP;
    const char* szRemark;
    const char* szComments;
    const char* szLogText;
  };
  const Case aCases[] = {
      {Status("404 x"), Fault::Ok(), "404 File Not Found (IP Check: OK)",
       "404 File Not Found (IP Check Status: 404 File Not Found)",
       "(1) 404 File Not Found<BR>(2) 404 File Not Found"},
      {Status("404 x"), Status("503 y"), "404 File Not Found (IP Check: Error)",
       "404 File Not Found (IP Check Status: 503 Service Unavailable)",
       "(1) 404 File Not Found<BR>(2) 503 Service Unavailable"},
      {Status("500 x"), Status("206 y"), "500 Internal Server Error (IP Check: Error)",
       "500 Internal Server Error (IP Check Status: 2xx Success Response Received)",
       "(1) 500 Internal Server Error<BR>(2) 2xx Success Response Received"},
      {{Fault::Send("\r\nno http\r\n")},
       {Fault::Send("nor here")},
       "Unrecognized Reponse Code (IP Check: Error)",
       "Unrecognized Reponse Code (IP Check Status: Unrecognized Reponse Code)",
       "(1) Unrecognized Reponse Code<BR>(2) Unrecognized Reponse Code"},
  };
  for (const Case& aCase : aCases) {
    Bench b;
    b.Server.Serve("/x", aCase.aByName);
    b.Server.Serve("/", aCase.aByIP);
    b.Add(b.Server.Site("/x"), b.Server.Address(), 2);
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(b.Site(1).Status, 3);
    EXPECT_EQ(b.View.aRemarks[1], aCase.szRemark);
    EXPECT_EQ(b.Site(1).Comments, aCase.szComments);
    EXPECT_TRUE(b.View.Has("progress IP Check: http://" + b.Server.Address()));
    ASSERT_EQ(b.Log().size(), 3U) << "one entry for both requests";
    EXPECT_EQ(b.Plain(b.Log()[1]),
              "11/15/1999 5:44:21 PM,(1) http://SERVER/x<BR>(2) http://SERVER," +
                  std::string(aCase.szLogText) +
                  ",0,<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; E-mail Notification "
                  "Failed (Missing e-mail address and SMTP),2");
    EXPECT_EQ(b.View.lBells, 1);
    EXPECT_FALSE(b.Engine.bInetDoubleCheck);
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(b.Server.Count("/"), 1U) << "a site that is down already is not tried by IP again";
  }
}

TEST(Recording, AnOlderGoodIPCheckDoesNotColourTheNextOne) {
  Bench b;
  b.Server.Serve("/", Fault::Ok());
  b.Server.Serve("/x", Status("404 x"));
  FaultServer aOther;
  aOther.Serve("/", Status("500 y"));
  b.Add(b.Server.Site("/x"), b.Server.Address(), 2);
  b.Add(b.Server.Site("/x?2"), aOther.Address(), 2);
  b.Server.Serve("/x?2", Status("404 x"));
  b.Engine.mF_StartCheck_Click();
  EXPECT_EQ(b.View.aRemarks[1], "404 File Not Found (IP Check: OK)");
  EXPECT_EQ(b.View.aRemarks[2], "404 File Not Found (IP Check: Error)");
}

TEST(Recording, ATimeOutCancelsTheRequestAndIsRecordedOnce) {
  Bench b;
  b.Server.Serve("/x", aHang);
  b.Add(b.Server.Site("/x"));
  TimeOutAfter(b, 1);
  b.Engine.mF_StartCheck_Click();
  EXPECT_EQ(b.Site(1).Status, 2);
  EXPECT_EQ(b.Engine.RequestTimeOut, 0);
  ASSERT_EQ(b.Log().size(), 3U);
  EXPECT_TRUE(b.Log()[1].ends_with("Request Timed-Out,31,,4"));
  b.Engine.TimerMain_Timer();
  EXPECT_EQ(b.Log().size(), 3U);
}

TEST(Recording, TimeOutsByNameAndByIPMakeOneEntry) {
  Bench b;
  b.Server.Serve("*", aHang);
  b.Add(b.Server.Site("/x"), b.Server.Address(), 2);
  b.View.OnPump = [&b, lSeen = std::size_t{0}]() mutable {
    if (b.Server.Count() == lSeen) return;
    lSeen = b.Server.Count();
    b.aClock.Advance(31);
    b.Engine.TimerMain_Timer();
  };
  b.Engine.mF_StartCheck_Click();
  EXPECT_EQ(b.Server.Count(), 2U);
  EXPECT_EQ(b.Site(1).Status, 3);
  ASSERT_EQ(b.Log().size(), 3U);
  EXPECT_NE(b.Log()[1].find("(1) Request Timed-Out<BR>(2) Request Timed-Out,2,"), std::string::npos)
      << b.Log()[1];
}

// The tick may come late, from under an open menu. What the server answered in time counts.
TEST(Recording, AnAnswerThatLiesReadyIsHeardBeforeTheDeadlineIsLookedAt) {
  Bench b;
  b.Add(b.Server.Site("/x"));
  b.View.OnPump = [&b] {
    if (b.Server.Count() == 0 || !b.Server.WaitUntilIdle(0)) return;
    b.aClock.Advance(31);
    b.Engine.TimerMain_Timer();
  };
  b.Engine.mF_StartCheck_Click();
  EXPECT_EQ(b.Site(1).Status, 1);
  EXPECT_EQ(b.Log().size(), 3U);
}

TEST(Recording, AnAlertWithoutATextStillLeavesAnEntry) {
  for (const bool bWithIP : {false, true}) {
    Bench b;
    Settings.Email = "m@example.org";
    Settings.SMTP = "127.0.0.1";
    b.Server.Serve("*", Status("418 x"));
    b.Add(b.Server.Site("/x"), bWithIP ? b.Server.Address() : "", 2);
    b.Engine.mF_StartCheck_Click();
    EXPECT_EQ(b.Site(1).Status, 3);
    EXPECT_FALSE(b.Engine.bInetDoubleCheck);
    ASSERT_EQ(b.Log().size(), 3U);
    EXPECT_EQ(b.Log()[1].find("E-mail"), std::string::npos);
    modAddress::LoadSites(true, true);
    EXPECT_EQ(b.Site(1).Status, 2) << "what follows the alert is left out, the save too";
  }
}

TEST(Recording, OddAnswersHaveTheirCodes) {
  struct Case {
    Fault::Answer aAnswer;
    const char* szRemark;
    const char* szLogText;  // nullptr: the same
  };
  const char* szNoCode = "Response Recevied; but server returned an unrecognized response code";
  const Case aCases[] = {
      {{Fault::Send("SSH-2.0-OpenSSH_9\r\n")}, "Unrecognized Reponse Code", szNoCode},
      {{Fault::Send("HTTP/1.1 abc\r\n\r\n")}, "Unrecognized Reponse Code", szNoCode},
      {Status("600 x"), "Unrecognized Response Code", nullptr},
      {{Fault::Send("HTTP/1.1 103 Early\r\n\r\nHTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n")},
       "404 File Not Found",
       nullptr},
      {{Fault::Reset()}, "ERROR:  56 Failure when receiving data from the peer", nullptr},
      {{}, "ERROR:  52 Server returned nothing (no headers no data)", nullptr},
      {{Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nab")},
       "ERROR:  18 Transferred a partial file",
       nullptr},
  };
  Bench b;
  std::int32_t n = 0;
  for (const Case& aCase : aCases) {
    const std::string szPath = "/" + std::to_string(++n);
    b.Server.Serve(szPath, aCase.aAnswer);
    b.Add(b.Server.Site(szPath));
  }
  b.Engine.mF_StartCheck_Click();
  const auto aLog = b.Log();
  ASSERT_EQ(aLog.size(), 2 + std::size(aCases));
  for (std::int32_t i = 1; i <= n; ++i) {
    const Case& aCase = aCases[i - 1];
    EXPECT_EQ(b.View.aRemarks[i], aCase.szRemark);
    const std::string szText = aCase.szLogText != nullptr ? aCase.szLogText : aCase.szRemark;
    EXPECT_NE(aLog[static_cast<std::size_t>(i)].find("," + szText + ",0,,4"), std::string::npos)
        << aLog[static_cast<std::size_t>(i)];
  }
}
