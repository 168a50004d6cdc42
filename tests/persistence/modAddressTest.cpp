#include <gtest/gtest.h>

#include <algorithm>

#include "support/Stored.h"
#include "support/TestHome.h"

using namespace modAddress;
using Stored::Get;
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

TEST_F(modAddressTest, StartNumbersTheSitesAndForgetsTheirStates) {
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(LoadSites(false, false), 0);
    EXPECT_EQ(Get(ProductKeys::szAddress, "NumActualDomain"), "0");
  }
  PutSite("Late.test", 0);  // no number of its own: 2000
  PutSite("X\\y", 4);
  PutSite("x\\", 6);
  PutSite("\\", 7);
  PutSite("x", 5);
  RebuildSiteIndex();
  EXPECT_EQ(LoadSites(false, false), 0);
  EXPECT_EQ(Urls(), "X\\y x x\\ \\ Late.test");
  EXPECT_EQ(Stored::SortedValues(szIndex),
            (Texts{"Domain1=x%5cy", "Domain2=x", "Domain3=x%5c", "Domain4=%5c", "Domain5=late.test"}));
  EXPECT_EQ(Get(ProductKeys::szAddress, "NumActualDomain"), "5");
  // Backslashes keep their number and touch no other site.
  EXPECT_EQ(Get(SiteKey("late.test"), "Index") + Get(SiteKey("x%5cy"), "Index") + Get(SiteKey("x"), "Index"),
            "542");
  EXPECT_EQ(Get(ProductKeys::szAddress, "Index"), "(none)");
  EXPECT_EQ(Get(SiteKey("x"), "Status") + Get(SiteKey("x"), "Comments"), "4");
  EXPECT_EQ(std::to_string(aSites[2].Status) + aSites[2].Comments, "0");

  aSites[2].Status = 3;
  aSites[2].Comments = "down";
  SaveSite(2, false);
  EXPECT_EQ(LoadSites(true, true), 0);
  EXPECT_EQ(std::to_string(aSites[2].Status) + aSites[2].Comments, "3down");
}

TEST_F(modAddressTest, StoredValuesAreBroughtIntoRange) {
  const struct {
    int lTimeOut, lStatus, lEnabled;  // stored; -9 none
    const char* szRead;
  } aCases[] = {
      {0, 9, 2, "1 4 0"},   {5000, 0, 1, "1800 4 1"}, {-9, -9, -9, "1 4 0"},
      {60, 3, 0, "60 3 0"}, {-1, 257, 257, "1 4 0"},  {1800, 1, -255, "1800 1 0"},
  };
  for (const auto& aCase : aCases) {
    RegistryAccess::RegRemoveKey(Stored::hRoot, SiteKey("x"));
    Put(SiteKey("x"), "URL", "X");
    for (const auto& [szName, lValue] : {std::pair{"Timeout", aCase.lTimeOut},
                                         {"Status", aCase.lStatus},
                                         {"Enabled", aCase.lEnabled},
                                         {"Index", 5}})
      if (lValue != -9) Put(SiteKey("x"), szName, lValue);
    std::vector<SiteRecord> aTemp;
    EXPECT_EQ(ReadSite("x", aTemp, 5), 0);
    EXPECT_EQ(ReadSite("x", aTemp, 6), 2);
    EXPECT_EQ(std::to_string(aTemp[1].TimeOut) + " " + std::to_string(aTemp[1].Status) + " " +
                  std::to_string(aTemp[1].Enabled),
              aCase.szRead);
  }
}

TEST_F(modAddressTest, SlotsFollowTheNumbersWhateverTheIndexHolds) {
  for (const char* szURL : {"two", "seven", "ten", "eleven", "nil"})
    PutSite(szURL, 1);
  Put(SiteKey("blank"), "URL", "  ");
  Put(SiteKey("number"), "URL", 5);
  for (const auto& [szName, szKeyName] :
       std::vector<std::pair<const char*, const char*>>{{"Domain99999999999", "ELEVEN"},
                                                        {"Domain10", "ten"},
                                                        {"Domain1", "gone"},
                                                        {"Domain2", "two"},
                                                        {"domain7", "seven"},
                                                        {"Domain3", "blank"},
                                                        {"Domain4", "number"},
                                                        {"Domain5", "Two"},
                                                        {"Domain", " "},
                                                        {"DomainName", "nil"},
                                                        {"Foreign", "ten"}})
    Put(szIndex, szName, szKeyName);
  Put(szIndex, "Domain6", 6);
  EXPECT_EQ(LoadSites(true, true), 0);
  EXPECT_EQ(Urls(), "nil two seven ten eleven");
  EXPECT_EQ(Get(ProductKeys::szAddress, "NumActualDomain"), "5");
  EXPECT_EQ(Stored::SortedValues(szIndex),
            (Texts{"Domain10=ten", "Domain2=two", "Domain5=Two", "Domain6=6", "Domain99999999999=ELEVEN",
                   "Domain= ", "DomainName=nil", "Foreign=ten", "domain7=seven"}));
  DeleteSite(2);  // the site that is seen in slot 2, although "Domain2" happens to fit as well
  EXPECT_EQ(lSiteCount, 4);
  DeleteSite(3);
  EXPECT_EQ(Urls().find("two"), std::string::npos);
  EXPECT_EQ(Get(szIndex, "Domain4"), "(none)");
  DeleteSite(0);
  DeleteSite(4);
  EXPECT_EQ(lSiteCount, 3);
}

TEST_F(modAddressTest, RebuildDropsOnlyKeysThatDoNotFitTheirUrl) {
  PutSite("  Outer.test ", 2);
  PutSite("good", 1);
  Put(SiteKey("other"), "URL", "renamed");
  Put(SiteKey("no url"), "IP", "1.2.3.4");
  Put(SiteKey("5"), "URL", 5);
  RawRegistry::Put(SiteKey("bin"), "URL", Registry::REG_BINARY, "bin");
  RawRegistry::Put(SiteKey("broken"), "URL", Registry::REG_DWORD, "8 bytes.");  // reading fails: it stays
  Put(SiteKey("stale parent"), "URL", "x");
  Put(SiteKey("stale parent\\child"), "v", 1);
  Put(szIndex, "Domain9", "good");
  Put(std::string(szIndex) + "\\child", "v", 1);  // it cannot be deleted, only emptied
  RebuildSiteIndex();
  Texts aNames;
  EXPECT_TRUE(ListKeyNames(aNames));
  std::ranges::sort(aNames);
  EXPECT_EQ(aNames, (Texts{"broken", "good", "outer.test", "stale parent"}));
  EXPECT_EQ(Stored::SortedValues(szIndex), (Texts{"Domain1=good", "Domain2=outer.test"}));
  LoadSites(true, true);
  EXPECT_EQ(Urls(), "good   Outer.test ");
}

TEST_F(modAddressTest, SavesUnderTheKeyNameAndNeverWithoutOne) {
  LoadSites(false, false);
  const std::string szLongest(lKeyNameLimit, 'k');
  for (const std::string& szURL : {std::string(" New.test/A "), std::string("   "), szLongest}) {
    aSites.push_back({"1.2.3.4", szURL, 4, 1, 60, "Added"});
    SaveSite(++lSiteCount, true);
  }
  aSites.push_back({"", "outside", 4, 1, 60, ""});
  SaveSite(4, true);  // beyond the count
  SaveSite(0, true);
  EXPECT_EQ(Stored::SortedValues(szIndex), (Texts{"Domain1=new.test/a", "Domain3=" + szLongest}));
  EXPECT_EQ(Stored::Values(ProductKeys::szAddress), Texts{"NumActualDomain=0"});
  SiteRecord aFound;
  EXPECT_TRUE(FindStoredSite(szLongest, aFound) && FindStoredSite("NEW.test/a", aFound));
  EXPECT_EQ(aFound.URL + aFound.IP + aFound.Comments, " New.test/A 1.2.3.4Added");
  EXPECT_FALSE(FindStoredSite("  ", aFound) || FindStoredSite("new.test", aFound));
  aSites[1].URL = "moved";
  SaveSite(1, false);  // an old site's key is not made anew
  EXPECT_FALSE(FindStoredSite("moved", aFound));
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
  // Which one is left out follows from the order in which the system lists values.
  EXPECT_TRUE(aSites[1000].URL == "site1000" || aSites[1000].URL == "site1001") << aSites[1000].URL;
  EXPECT_EQ(Get(SiteKey("site1001"), "Index"), "1001");
}

}  // namespace
