// Metrics and status page: what they say of sites with awkward names, of gaps and of a monitor that has
// stopped.
#include <gtest/gtest.h>

#include "check/Schedule.h"
#include "fleet/Metrics.h"
#include "fleet/PassFiles.h"
#include "fleet/PastTrails.h"
#include "fleet/StatusPage.h"
#include "log/CheckLog.h"
#include "persistence/KeptFiles.h"
#include "persistence/Settings.h"
#include "platform/Files.h"
#include "support/LogScript.h"
#include "support/TestHome.h"
#include "support/WellFormed.h"

namespace {

const DateTime dtNow = JoinDateTime({2026, 1, 20, 8, 0, 0});

std::vector<SiteRecord> List(const std::vector<SiteRecord>& aRecords) {
  std::vector<SiteRecord> aList(1);
  aList.insert(aList.end(), aRecords.begin(), aRecords.end());
  return aList;
}

bool Holds(const std::string& szText, const std::string& szPart) {
  return szText.find(szPart) != std::string::npos;
}

TEST(Metrics, SitesWhateverTheyAreCalled) {
  PassFacts aFacts;
  aFacts.aSites["a.test/\"x\\"] = {1700000000, 0.25};
  aFacts.aSites["down.test"] = {1700000001, 3};
  aFacts.lMailsSent = 7;
  const auto aList = List({{"", "a.test/\"x\\", 1, 1, 60, ""},
                           {"", "down.test", 3, 1, 60, ""},
                           {"", "new.test\xE4", 4, 1, 60, ""},
                           {"", "new.test\xE5", 1, 1, 60, ""},
                           {"192.0.2.1", "", 1, 0, 60, ""}});
  const std::string szText = Metrics::Compose(aList, aFacts);
  for (const char* szLine :
       {"kestrova_site_up{site=\"a.test/\\\"x\\\\\"} 1.000\n", "kestrova_site_up{site=\"down.test\"} 0.000\n",
        "kestrova_site_response_seconds{site=\"a.test/\\\"x\\\\\"} 0.250\n",
        "kestrova_site_last_check_timestamp_seconds{site=\"down.test\"} 1700000001.000\n",
        "kestrova_site_status{site=\"new.test\xEF\xBF\xBD\",status=\"unknown\"} 1\n",
        "kestrova_site_status{site=\"192.0.2.1\",status=\"disabled\"} 1\n",
        "kestrova_alert_mails_total{result=\"sent\"} 7\n"})
    EXPECT_TRUE(Holds(szText, szLine)) << szLine << szText;
  for (const char* szAbsent : {"kestrova_site_response_seconds{site=\"down", "kestrova_site_up{site=\"new",
                               "kestrova_site_up{site=\"192", "kestrova_pass_duration_seconds"})
    EXPECT_FALSE(Holds(szText, szAbsent)) << szAbsent;
  EXPECT_EQ(Occurrences(szText, "new.test\xEF\xBF\xBD\",status=\"up\""), 1U)
      << "a series twice costs the file";

  // A program that starts goes on from there.
  PassFacts aNext;
  Metrics::TakeFacts(szText, aList, aNext);
  EXPECT_EQ(aNext.lMailsSent, 7);
  EXPECT_EQ(Metrics::Compose(aList, aNext), szText);
  Metrics::TakeFacts(
      "kestrova_pass_sites -1\nkestrova_pass_sites 1e99\n\n{ \xFF\nkestrova_store_saves_failed_total x",
      aList, aNext);
  EXPECT_EQ(Metrics::Compose(aList, aNext), szText);
}

TEST(Trails, TimeThatNobodyWatchedIsNeitherUpNorDown) {
  Trails aTrails;
  constexpr double dHour = 1.0 / 24;
  using enum SiteState;
  const std::pair<int, SiteState> aSeen[] = {
      {0, Up}, {1, Up},      {2, Warning},  // a single failure is no outage
      {3, Up}, {9, Warning}, {10, Down},   {11, Down}, {12, Up}};
  for (const auto& [lHours, iState] : aSeen)
    aTrails.Add("A.test", iState, dtNow + lHours * dHour, 2.1 * dHour);
  const auto& aStates = aTrails.Of("a.TEST");
  // Up from 0 to 2, failing 2 to 3, nobody from 3 to 9, failing 9 to 12.
  const auto aTime = Trails::TimeUp(aStates, dtNow, dtNow + 1);
  EXPECT_NEAR(aTime.dUp, 2 * 3600, 1);
  EXPECT_NEAR(aTime.dAll, 6 * 3600, 1);
  const auto aFailures = Trails::Failures(aStates);
  ASSERT_EQ(aFailures.size(), 1U);
  EXPECT_NEAR(aFailures[0].dtFrom, dtNow + 9 * dHour, 1e-6);
  EXPECT_TRUE(aFailures[0].bEnded);
  EXPECT_NEAR(aFailures[0].dtTo, dtNow + 12 * dHour, 1e-6);
  aTrails.Trim(dtNow + 40);
  EXPECT_EQ(Trails::TimeUp(aTrails.Of("a.test"), dtNow, dtNow + 40).dAll, 0);
}

// Some days of passes with outages, a pause, and a site that is off the list for a while: more than one
// piece.
void WriteLongLogs(const TestHome& aHome) {
  constexpr int lSites = 24, lDays = 4, lADay = 288;
  std::uint32_t lRandom = 1;
  std::vector<int> aFailing(lSites);
  for (int lDay = 0; lDay < lDays; ++lDay) {
    LogScript aScript{dtNow - lDays + lDay};
    for (int lPass = 0; lPass < lADay; ++lPass) {
      if (lDay == 2 && lPass >= 100 && lPass < 130) continue;  // nobody watched
      aScript.dtNow = dtNow - lDays + lDay + lPass / static_cast<double>(lADay);
      aScript.Start();
      for (int n = 0; n < lSites; ++n) {
        const std::string szSite = "www." + std::to_string(n) + ".test/" + std::string(160, 'x');
        if (n == 5 && lDay == 1) continue;
        lRandom = lRandom * 1664525 + 1013904223;
        auto& lLeft = aFailing[static_cast<std::size_t>(n)];
        lLeft = lLeft > 0 ? lLeft - 1 : (lRandom >> 16U) % 97 == 0 ? static_cast<int>(lRandom >> 28U) : 0;
        lLeft > 0 ? aScript.Warn(szSite) : aScript.Up(szSite);
      }
      aScript.End();
    }
    aHome.Write("D-2026011" + std::to_string(6 + lDay) + ".kvl", aScript.szText);
  }
}

TEST(PastTrails, PieceByPieceTheySayWhatTheLogsSayAsAWhole) {
  const TestHome aHome;
  const StandingClock aClock(dtNow);
  WriteLongLogs(aHome);
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Folder()}));
  Trails aWhole;
  aWhole.Take(Summarise(aHistory));

  PastTrails aPast(aHome.Folder(), 30);
  int lPieces = 0;
  for (; !aPast.Done(); ++lPieces) {
    // What the pass that runs meanwhile writes is not read.
    if (lPieces == 1)
      Files::Append(aHome.Path("D-20260119.kvl"), "[START CHECK: AUTO - 1/20/2026 8:00:00 AM]\r\n");
    aPast.ReadPiece();
  }
  EXPECT_GE(lPieces, 3);
  const Trails aPieced = aPast.Take();
  EXPECT_EQ(aPieced.From(), aWhole.From());
  std::size_t lOutages = 0;
  for (const std::string& szSite : aHistory.Sites()) {
    const auto &aOne = aWhole.Of(szSite), &aOther = aPieced.Of(szSite);
    ASSERT_EQ(aOne.size(), aOther.size()) << szSite;
    for (std::size_t i = 0; i < aOne.size(); ++i) {
      EXPECT_EQ(aOne[i].iState, aOther[i].iState) << szSite << i;
      EXPECT_NEAR(aOne[i].dtFrom, aOther[i].dtFrom, 1e-9) << szSite << i;
      EXPECT_NEAR(aOne[i].dtTo, aOther[i].dtTo, 1e-9) << szSite << i;
    }
    lOutages += Trails::Failures(aOther).size();
  }
  EXPECT_GT(lOutages, 150U);
}

TEST(StatusPage, SaysWhatIsDownAndWhenItIsOld) {
  const TestHome aHome;
  Trails aTrails;
  for (int i = 0; i <= 4; ++i)
    aTrails.Add("<b>.test", i < 2 ? SiteState::Up : SiteState::Down, dtNow - (4 - i) / 24.0, 1);
  PassFacts aFacts;
  aFacts.dtEnded = dtNow;
  aFacts.dDuration = 65;
  aFacts.dtNext = AddMinutes(dtNow, 15);
  const auto aList = List({{"", "up.test", 1, 1, 60, "Site OK"}, {"", "<b>.test", 3, 1, 60, "404 <i>"}});
  const std::string szPage = StatusPage::Compose(aList, aFacts, aTrails, dtNow);
  for (const char* szPart : {">1 down<", "&lt;b&gt;.test", "404 &lt;i&gt;", "since Tue Jan 20 2026, 6:00 AM",
                             "Last pass: Tue Jan 20 2026, 8:00 AM, in 1 min 5 s.",
                             "expected by Tue Jan 20 2026, 8:18 AM", ">50%<", "still down"})
    EXPECT_TRUE(Holds(szPage, szPart)) << szPart << "\n" << szPage;
  EXPECT_LT(szPage.find("&lt;b&gt;.test"), szPage.find("up.test")) << "what is down stands first";
  EXPECT_FALSE(Holds(szPage, "<script"));
  EXPECT_FALSE(Holds(szPage, "src="));
  ExpectWellFormed(aHome, szPage);
  aFacts.dtNext = 0;
  EXPECT_TRUE(Holds(StatusPage::Compose(aList, aFacts, aTrails, dtNow), "no next one is planned"));
}

TEST(StatusPage, StaysShortHoweverManySitesFailAndHoweverTheyAreCalled) {
  Trails aTrails;
  std::vector<SiteRecord> aRecords;
  for (int n = 0; n < 1000; ++n) {
    aRecords.push_back(
        {"", "&&&" + std::to_string(n) + std::string(220, 'x'), 3, 1, 60, std::string(300, '<')});
    for (int i = 0; i < 96; ++i)
      aTrails.Add(aRecords.back().URL, i % 2 ? SiteState::Up : SiteState::Down, dtNow - (96 - i) / 96.0, 1);
  }
  const std::string szPage = StatusPage::Compose(List(aRecords), {}, aTrails, dtNow);
  EXPECT_LE(szPage.size(), 500'000U);
  for (auto& aRecord : aRecords)
    aRecord.URL = aRecord.URL.substr(0, 40), aRecord.Comments = "404 File Not Found";
  EXPECT_LE(StatusPage::Compose(List(aRecords), {}, aTrails, dtNow).size(), 300'000U);
}

// As a view tells it of a pass, over the real store.
TEST(PassFiles, AreWrittenAtEachPassAndNeverHoldItUp) {
  const TestHome aHome;
  StandingClock aClock(dtNow);
  Settings = {};
  Settings.Interval = 15;
  Settings.LogPath = aHome.Folder();
  modAddress::WriteSiteRecord({"", "a.test", 1, 1, 60, ""}, 1);
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(true, true);
  Schedule::SetNextCheck(15);
  ASSERT_TRUE(KeptFiles::Store(KeptFiles::Kind::Metrics, aHome.Path("m.prom")));
  ASSERT_TRUE(KeptFiles::Store(KeptFiles::Kind::Page, aHome.Path("p.htm")));
  EXPECT_EQ(KeptFiles::Read(KeptFiles::Kind::Page), aHome.Path("p.htm"));

  PassFiles aFiles;
  const auto Pass = [&] {
    aFiles.PassBegins();
    EXPECT_TRUE(Holds(aHome.Read("m.prom"), "kestrova_pass_start_timestamp_seconds"));
    aFiles.RequestMoves();
    aClock.Advance(0.5);
    aFiles.Answered();
    aClock.Advance(20);  // the mail
    CheckLog::CurrentEntry = {};
    CheckLog::AddComment("E-mail Notification Sent");
    aFiles.SiteRecorded(1);
    return aFiles.PassEnds();
  };
  EXPECT_TRUE(aFiles.PassEnds().empty()) << "no pass has begun";
  EXPECT_TRUE(Pass().empty());
  const std::string szMetrics = aHome.Read("m.prom");
  for (const char* szLine :
       {"kestrova_site_response_seconds{site=\"a.test\"} 0.500", "kestrova_pass_sites 1.000",
        "kestrova_pass_duration_seconds 20.500", "result=\"sent\"} 1\n",
        "kestrova_store_saves_failed_total 0\n", "kestrova_pass_interval_seconds 900.000"})
    EXPECT_TRUE(Holds(szMetrics, szLine)) << szLine << "\n" << szMetrics;
  EXPECT_TRUE(Holds(aHome.Read("p.htm"), "The one site is up"));

  // No store takes a name as long as this.
  modAddress::ReplaceSite(1, {"", "a.test/" + std::string(300, 'x'), 1, 1, 60, ""});
  modAddress::SaveSite(1, false);
  PassFiles aAnother;  // a program started anew goes on counting
  std::swap(aFiles, aAnother);
  EXPECT_TRUE(Pass().empty());
  EXPECT_TRUE(Holds(aHome.Read("m.prom"), "result=\"sent\"} 2\n"));
  EXPECT_TRUE(Holds(aHome.Read("m.prom"), "kestrova_store_saves_failed_total 1\n"));

  aFiles.szOwnPage = aHome.Path("no/such/folder/p.htm");
  EXPECT_EQ(Pass(), std::vector<std::string>{aFiles.szOwnPage});
  EXPECT_TRUE(KeptFiles::Store(KeptFiles::Kind::Metrics, ""));
  EXPECT_EQ(KeptFiles::Read(KeptFiles::Kind::Metrics), "");
}

}  // namespace
