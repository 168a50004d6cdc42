// The folder for Prometheus as files: what stands in it, what becomes of what was there.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "fleet/FleetFiles.h"
#include "fleet/PrometheusFolder.h"
#include "fleet/TargetFiles.h"
#include "platform/Files.h"
#include "support/TestHome.h"

namespace {

using Names = std::vector<std::string>;
using PrometheusFolder::Result;

class Folder : public testing::Test {
 protected:
  PrometheusFolder::Report Write(const std::vector<SiteRecord>& aList) {
    return PrometheusFolder::Write(aHome.Path("p"), aPlan, [&](const PrometheusFolder::Take& aTake) {
      for (std::size_t i = 0; i < aList.size(); ++i)
        aTake(aList[i], static_cast<std::int64_t>(i) + 1);
      return bSitesComplete;
    });
  }
  static SiteRecord Site(const std::string& szURL, std::int32_t lTimeOut = 60, const std::string& szIP = "") {
    return {szIP, szURL, SiteStatus::iNotKnown, SiteRecord::iEnabled, lTimeOut, ""};
  }
  std::string Read(const std::string& szName) const { return aHome.Read("p/" + szName); }
  nlohmann::json Targets(const std::string& szName = "targets.json") const {
    return nlohmann::json::parse(Read(szName));
  }

  TestHome aHome;
  FleetPlan aPlan;
  bool bSitesComplete = true;
};

TEST_F(Folder, TargetsAreTheEnabledSitesWhateverTheirNamesHold) {
  SiteRecord aOff = Site("off.test");
  aOff.Enabled = SiteRecord::iDisabled;
  const auto aReport = Write({Site("www.a.test/x y", 5, "192.0.2.1"), aOff,
                              Site("b.test/\"q\\\xE4\x01", 99999), Site(" ", 5, "192.0.2.7"), Site("  ")});
  ASSERT_EQ(aReport.iResult, Result::Done) << aReport.szFile;
  EXPECT_EQ(aReport.lSites, 3);
  const auto aExpected = nlohmann::json::parse(R"([
    {"targets": ["http://www.a.test/x%20y"],
     "labels": {"site": "www.a.test/x y", "slot": "1", "timeout": "5s", "ip": "192.0.2.1"}},
    {"targets": ["http://b.test/\"q%5C%E4%01"],
     "labels": {"site": "b.test/\"q\\\ufffd\ufffd", "slot": "3", "timeout": "1800s"}},
    {"targets": ["http://192.0.2.7"], "labels": {"site": "192.0.2.7", "slot": "4", "timeout": "5s"}}])");
  EXPECT_EQ(Targets(), aExpected);
  EXPECT_NE(Read("blackbox.yml").find("kestrova_1800s:"), std::string::npos);
  EXPECT_EQ(aReport.lInterval, 3600);

  ASSERT_EQ(Write({}).iResult, Result::Done);
  EXPECT_EQ(Targets(), nlohmann::json::array());
}

TEST_F(Folder, TheIntervalLeavesTimeForTheSlowestSite) {
  aPlan.lInterval = 60;
  EXPECT_EQ(Write({Site("a.test", 20)}).lInterval, 60);
  EXPECT_GT(Write({Site("a.test", 60)}).lInterval, 61);
  EXPECT_NE(Read("README.txt").find("Your interval, 60s, is shorter"), std::string::npos);
}

// Only what is new is written, and the operator hears which servers have to read it.
TEST_F(Folder, WrittenAgainItTellsWhatElseChanged) {
  EXPECT_EQ(Write({Site("a.test")}).aChanged, Names());
  EXPECT_EQ(Write({Site("a.test"), Site("b.test")}).aChanged, Names());
  EXPECT_EQ(Write({Site("a.test", 30)}).aChanged, (Names{"prometheus.yml", "blackbox.yml", "rules.yml"}));
  aPlan.szEmail = "m@example.org";
  aPlan.szMailServer = "mail.example.org";
  EXPECT_EQ(Write({Site("a.test", 30)}).aChanged, Names{"alertmanager.yml"});
}

TEST_F(Folder, WhatIsNotOursStays) {
  ASSERT_TRUE(Files::MakeFolder(aHome.Path("p")));
  aHome.Write("p/own.yml", "mine");
  ASSERT_EQ(Write({Site("a.test")}).iResult, Result::Done);
  EXPECT_EQ(Read("own.yml"), "mine");

  for (const char* szName : {"prometheus.yml", "targets.json", "README.txt"}) {
    const std::string szOld = Read(szName);
    const std::string szRules = Read("rules.yml");
    aHome.Write(std::string("p/") + szName, "[{\"targets\": []}]\n");
    const auto aReport = Write({Site("new.test", 7)});
    EXPECT_EQ(aReport.iResult, Result::Foreign);
    EXPECT_EQ(aReport.szFile, aHome.Path("p") + Files::chSeparator + szName);
    EXPECT_EQ(Read(szName), "[{\"targets\": []}]\n");
    EXPECT_EQ(Read("rules.yml"), szRules) << "nothing may be replaced";
    aHome.Write(std::string("p/") + szName, szOld);
  }
  aHome.Write("file", "x");
  EXPECT_EQ(PrometheusFolder::Write(aHome.Path("file"), aPlan, {}).iResult, Result::NoFolder);
}

TEST_F(Folder, AListThatBreaksOffLeavesAllAsItWas) {
  ASSERT_EQ(Write({Site("a.test")}).iResult, Result::Done);
  const std::string szTargets = Read("targets.json");
  bSitesComplete = false;
  EXPECT_EQ(Write({Site("b.test", 7)}).iResult, Result::Refused);
  EXPECT_EQ(Read("targets.json"), szTargets);
  EXPECT_EQ(Read("blackbox.yml").find("kestrova_7s"), std::string::npos);
  EXPECT_TRUE(Files::List(aHome.Path("p"), "").size() == 7) << "something was left behind";
}

TEST_F(Folder, ShardsAreEvenStableAndTakeTheOldOnesAway) {
  std::vector<SiteRecord> aList;
  for (int i = 0; i < 3000; ++i)
    aList.push_back(Site("www.site" + std::to_string(i) + ".test/status"));
  aPlan.lShards = 4;
  ASSERT_EQ(Write(aList).iResult, Result::Done);
  std::set<std::string> aSeen;
  for (int n = 1; n <= 4; ++n) {
    const auto aTargets = Targets("targets-" + std::to_string(n) + ".json");
    EXPECT_NEAR(static_cast<double>(aTargets.size()), 750, 100);
    for (const auto& aTarget : aTargets)
      EXPECT_TRUE(aSeen.insert(aTarget["labels"]["site"]).second);
    EXPECT_NE(Read("prometheus-" + std::to_string(n) + ".yml").find("{shard: \"" + std::to_string(n) + "\"}"),
              std::string::npos);
  }
  EXPECT_EQ(aSeen.size(), 3000U);

  int lMoved = 0;
  for (const auto& aSite : aList) {
    const auto lFour = ShardOf(aSite.URL, 4), lFive = ShardOf(aSite.URL, 5);
    lMoved += lFour == lFive ? 0 : 1;
    EXPECT_TRUE(lFour == lFive || lFive == 5);
  }
  EXPECT_NEAR(lMoved, 600, 100);
  EXPECT_EQ(ShardOf("WWW.Site1.test", 200), ShardOf("www.site1.TEST", 200));

  aHome.Write("p/targets-3.json", "mine");
  aPlan.lShards = 2;
  ASSERT_EQ(Write(aList).iResult, Result::Done);
  EXPECT_EQ(Files::List(aHome.Path("p"), ".json"),
            (Names{"targets-1.json", "targets-2.json", "targets-3.json"}));
  EXPECT_FALSE(Files::FileExists(aHome.Path("p/prometheus-3.yml")));
}

}  // namespace
