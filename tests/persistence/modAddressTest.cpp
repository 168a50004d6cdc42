#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "support/Stored.h"
#include "support/TestHome.h"

using namespace modAddress;
using Stored::Get;
using Stored::hRoot;
using Stored::Put;
using Stored::PutSite;
using Stored::SiteKey;
using Stored::Urls;

namespace {

using Texts = std::vector<std::string>;
constexpr auto szIndex = ProductKeys::szAddressKey;

class modAddressTest : public testing::Test {
 protected:
  ~modAddressTest() override { EXPECT_EQ(aBoxes.aTexts, Texts{}); }
  TestHome aHome;
  TestBoxes aBoxes;
};

TEST_F(modAddressTest, StoredValuesAreBroughtIntoRange) {
  const struct {
    int lTimeOut, lStatus, lEnabled;  // stored
    const char* szRead;
  } aCases[] = {{0, 9, 2, "1 4 0"},
                {5000, 0, 1, "1800 4 1"},
                {60, 3, 0, "60 3 0"},
                {-1, 257, 257, "1 4 0"},
                {1800, 1, -255, "1800 1 0"}};
  for (const auto& aCase : aCases) {
    PutSite("x", 5);
    Put(SiteKey("x"), "Timeout", aCase.lTimeOut);
    Put(SiteKey("x"), "Status", aCase.lStatus);
    Put(SiteKey("x"), "Enabled", aCase.lEnabled);
    std::vector<SiteRecord> aTemp;
    EXPECT_EQ(ReadSite("x", aTemp, 5), 0);
    EXPECT_EQ(std::to_string(aTemp[1].TimeOut) + " " + std::to_string(aTemp[1].Status) + " " +
                  std::to_string(aTemp[1].Enabled),
              aCase.szRead);
  }
}

TEST_F(modAddressTest, SlotsFollowTheNumbersWhateverTheIndexHolds) {
  for (const char* szURL : {"two", "seven", "ten", "eleven", "nil"})
    PutSite(szURL, 1);
  const std::pair<const char*, const char*> aValues[] = {
      {"Domain99999999999", "ELEVEN"},
      {"Domain10", "ten"},
      {"Domain1", "gone"},
      {"Domain2", "two"},
      {"domain7", "seven"},
      {"Domain5", "Two"},
      {"DomainName", "nil"},
  };
  for (const auto& [szName, aValue] : aValues)
    Put(szIndex, szName, aValue);
  EXPECT_EQ(LoadSites(true, true), 0);
  EXPECT_EQ(Urls(), "nil two seven ten eleven");
  DeleteSite(2);  // the site that is seen in slot 2, although "Domain2" happens to fit as well
  EXPECT_EQ(Urls().find("two"), std::string::npos);
  DeleteSite(0);
  DeleteSite(5);
  EXPECT_EQ(lSiteCount, 4);
}

TEST_F(modAddressTest, RebuildDropsOnlyKeysThatDoNotFitTheirUrl) {
  PutSite("  Outer.test ", 2);
  PutSite("good", 1);
  Put(SiteKey("other"), "URL", "renamed");
  RawRegistry::Put(SiteKey("bin"), "URL", Registry::REG_BINARY, "bin");
  RawRegistry::Put(SiteKey("broken"), "URL", Registry::REG_DWORD, "8 bytes.");  // reading fails: it stays
  Put(SiteKey("stale parent"), "URL", "x");
  Put(SiteKey("stale parent\\child"), "v", 1);
  Put(std::string(szIndex) + "\\child", "v", 1);  // it cannot be deleted, only emptied
  RebuildSiteIndex();
  Texts aNames;
  EXPECT_TRUE(ListKeyNames(aNames));
  std::ranges::sort(aNames);
  EXPECT_EQ(aNames, (Texts{"broken", "good", "outer.test", "stale parent"}));
  EXPECT_EQ(Stored::Values(szIndex), (Texts{"Domain1=good", "Domain2=outer.test"}));
  LoadSites(true, true);
  EXPECT_EQ(Urls(), "good   Outer.test ");
}

TEST_F(modAddressTest, RebuildMendsWhateverIsWrongWithTheIndex) {
  const std::function<void()> aFaults[] = {
      [] {},
      [] { Put(szIndex, "Domain3", "one"); },
      [] { Put(szIndex, "Domain2", "one"); },
      [] { Put(szIndex, "Domain2", 2); },
      [] { RegistryAccess::RegRemoveValue(hRoot, szIndex, "Domain1"); },
      [] { RegistryAccess::RegRemoveKey(hRoot, szIndex); },
      [] { Put(SiteKey("two"), "Index", "2"); },
      [] { Put(SiteKey("two"), "Index", 2000); },
      [] {
        RegistryAccess::RegRemoveValue(hRoot, SiteKey("two"), "Index"), Put(SiteKey("one"), "Index", -1);
      },
      [] { PutSite("three", 1), Put(SiteKey("three"), "URL", "other"); },
      [] { Put(std::string(ProductKeys::szAddress), "NumActualDomain", "2"); },
  };
  PutSite("one", 1);
  PutSite("two", 2);
  RebuildSiteIndex();
  for (const auto& Spoil : aFaults) {
    Spoil();
    RebuildSiteIndex();
    const auto lFault = &Spoil - aFaults;
    EXPECT_EQ(Stored::Values(szIndex), (Texts{"Domain1=one", "Domain2=two"})) << lFault;
    EXPECT_EQ(Get(SiteKey("one"), "Index") + Get(SiteKey("two"), "Index"), "12") << lFault;
    EXPECT_EQ(RawRegistry::Get(SiteKey("two"), "Index").size(), 4U) << lFault << ": a number";
    EXPECT_EQ(RawRegistry::Get(ProductKeys::szAddress, "NumActualDomain").size(), 4U) << lFault;
    Texts aNames;
    ListKeyNames(aNames);
    EXPECT_EQ(aNames, (Texts{"one", "two"})) << lFault;
  }
}

TEST_F(modAddressTest, MoreSitesThanTheListHoldsStayStored) {
  {
    const Registry::Transaction aOneCommit;
    for (int i = 1; i <= lSiteCapacity + 1; ++i)
      PutSite("site" + std::to_string(i), i);
  }
  RebuildSiteIndex();
  EXPECT_EQ(LoadSites(false, false), 0);
  EXPECT_EQ(lSiteCount, lSiteCapacity);
  EXPECT_EQ(aSites[10].URL, "site10");
  EXPECT_EQ(Get(SiteKey("site1001"), "Index"), "1001");
}

}  // namespace
