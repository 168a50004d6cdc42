// The pass against a real server and the real store: what it shows, whom it asks, what it leaves of the
// user's cookies. What may come in the middle of it, and the schedule, is tried out by tests/simulated/ from
// every side.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "check/PassFixture.h"

using Events = std::vector<std::string>;
using modAddress::Site;

TEST(Pass, ShowsItsStepsInOrder) {
  PassFixture aPass;
  aPass.Add(aPass.Server.Site("/x"));
  aPass.Engine.mF_StartCheck_Click();
  const Events aManual = {"locked",
                          "panel 3: Last: 5:44:21 PM",
                          "timer off",
                          "panel 2: Site checking in progress",
                          "remarks cleared",
                          "progress opened",
                          "progress Checking http://" + aPass.Server.Site("/x"),
                          "visible 1",
                          "light 1: 1",
                          "remark 1: Site OK",
                          "recorded 1",
                          "progress closed",
                          "panel 2: Next: 6:44:21 PM",
                          "timer on",
                          "unlocked"};
  EXPECT_EQ(aPass.View.aEvents, aManual);
  EXPECT_EQ(aPass.View.aStates.front(), "Resolving Host...");
  EXPECT_EQ(aPass.View.aStates.back(), "Disconnected...");
  EXPECT_EQ(aPass.Log().front(), "[START CHECK: MANUAL - 11/15/1999 5:44:21 PM]");
  EXPECT_EQ(aPass.Log().back(), "[END CHECK]");

  aPass.View.aEvents.clear();
  aPass.Engine.TimerAutoCheck_Timer();
  EXPECT_TRUE(aPass.View.aEvents.empty()) << "not due yet";
  aPass.aClock.Advance(3600);
  aPass.Engine.TimerAutoCheck_Timer();
  Events aAutomatic = aManual;
  aAutomatic[1] = "panel 3: Last: 6:44:21 PM";
  aAutomatic[12] = "panel 2: Next: 7:44:21 PM";
  std::erase(aAutomatic, "timer off");
  std::erase(aAutomatic, "timer on");
  EXPECT_EQ(aPass.View.aEvents, aAutomatic);
  EXPECT_EQ(aPass.Log()[3], "[START CHECK: AUTO - 11/15/1999 6:44:21 PM]");

  aPass.Server.Serve("/x", Fault::Status("404 x"));
  modAddress::ReplaceSite(1, {aPass.Server.Address(), aPass.Server.Site("/x"), SiteStatus::iWarning,
                              SiteRecord::iEnabled, 30, ""});
  aPass.Engine.mF_StartCheck_Click();
  EXPECT_TRUE(aPass.View.Has("progress IP Check: http://" + aPass.Server.Address()));
}

TEST(Pass, DisabledAndUnusableSites) {
  PassFixture aPass;
  aPass.AddPaths(4);
  const SiteRecord aUnusable[] = {
      {"", aPass.Server.Site("/1"), SiteStatus::iNotKnown, SiteRecord::iDisabled, 30, ""},
      {"", "  ", SiteStatus::iNotKnown, SiteRecord::iEnabled, 30, ""},
      {"  ", "", SiteStatus::iNotKnown, SiteRecord::iEnabled, 30, ""},
      {aPass.Server.Address(), "", SiteStatus::iNotKnown, SiteRecord::iEnabled, 30, ""}};
  for (std::int32_t n = 1; n <= 4; ++n)
    modAddress::ReplaceSite(n, aUnusable[n - 1]);
  Settings.DiskLogDisabled = 0;
  aPass.Engine.mF_StartCheck_Click();
  const auto aLog = aPass.Log();
  // A site known by its address alone has no time of its own; its seconds count from midnight.
  EXPECT_EQ(aLog, (Events{aLog[0], "11/15/1999 5:44:21 PM,http://SERVER/1,Unknown Site: Site #,0,,3",
                          "11/15/1999 5:44:21 PM,Unknown Site: Site #3,Missing Site Address,0,,2",
                          "12/30/1899 12:00:00 AM,http://SERVER,Site OK,21,,1", "[END CHECK]"}));
  EXPECT_EQ(aPass.Server.Count(), 1U);
}

TEST(Stop, QuitIsSilentAndStartsNothingMore) {
  PassFixture aPass;
  aPass.Server.Serve("/x", {Fault::Hang()});
  aPass.Add(aPass.Server.Site("/x"));
  aPass.View.OnPump = [&aPass] {
    if (aPass.Server.Count() > 0) aPass.Engine.Quit();
  };
  aPass.Engine.mF_StartCheck_Click();
  EXPECT_EQ(aPass.Log().size(), 3U);
  EXPECT_FALSE(aPass.View.Has("timer on"));
  aPass.Engine.mF_StartCheck_Click();
  aPass.Engine.StopCheck();
  EXPECT_EQ(aPass.Server.Count(), 1U);
  EXPECT_TRUE(aPass.View.aMessages.empty());
}

TEST(Pass, ASiteThatThrowsCostsTheNextOneNothing) {
  PassFixture aPass;
  aPass.Server.Serve("/1", {Fault::Hang()});
  aPass.AddPaths(2);
  aPass.View.OnPump = [&aPass, bThrown = false]() mutable {
    if (aPass.Server.Count("/1") == 0 || bThrown) return;
    bThrown = true;
    throw std::runtime_error("window");
  };
  const Stopwatch aWatch;
  aPass.Engine.mF_StartCheck_Click();
  EXPECT_EQ(Site(1).Status, SiteStatus::iNotKnown);
  EXPECT_EQ(Site(2).Status, SiteStatus::iUp);
  EXPECT_EQ(aPass.Log().size(), 3U);
  EXPECT_LT(aWatch.Seconds(), 20) << "the first one's time-out is 30";
}

TEST(Pass, CookiesAreKeptForOnePassAtMost) {
  for (const bool bAccept : {true, false}) {
    PassFixture aPass;
    Settings.AllowType = bAccept ? 0 : 2;
    aPass.Server.Serve("*", {Fault::Send("HTTP/1.1 200 OK\r\nSet-Cookie: a=b\r\nContent-Length: 0\r\n\r\n")});
    aPass.AddPaths(2);
    aPass.Engine.mF_StartCheck_Click();
    aPass.Engine.mF_StartCheck_Click();
    std::string szSent;
    for (const auto& aRequest : aPass.Server.Requests())
      szSent += aRequest.szHead.find("Cookie: a=b") != std::string::npos ? "y" : "n";
    EXPECT_EQ(szSent, bAccept ? "nyny" : "nnnn");
  }
}
