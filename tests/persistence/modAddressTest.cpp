#include <gtest/gtest.h>

#include <algorithm>

#include "persistence/modAddress.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace modAddress;
using Stored::Get;
using Stored::Put;
using Stored::PutSite;
using Stored::SiteKey;
using Stored::Urls;

namespace {

constexpr auto szIndex = ProductKeys::szAddressKey;

class modAddressTest : public testing::Test {
 protected:
  ~modAddressTest() override { EXPECT_EQ(aBoxes.aTexts, std::vector<std::string>{}); }
  TestHome aHome;
  TestBoxes aBoxes;
};

std::vector<std::string> Index() {
  auto aValues = Stored::Values(szIndex);
  std::sort(aValues.begin(), aValues.end());
  return aValues;
}

TEST_F(modAddressTest, FirstStartBeginsAnEmptyIndex) {
  EXPECT_EQ(LoadSites(false, false), 0);
  EXPECT_EQ(lSiteCount, 0);
  EXPECT_EQ(Get(ProductKeys::szAddress, "NumActualDomain"), "0");
  EXPECT_EQ(LoadSites(false, false), 0);
}

TEST_F(modAddressTest, StartNumbersTheSitesAndForgetsTheirStates) {
  PutSite("Late.test", 0);  // no number of its own: 2000
  PutSite("b.test", 7);
  PutSite("a.test/Path", 9);
  RebuildSiteIndex();
  EXPECT_EQ(LoadSites(false, false), 0);
  EXPECT_EQ(Urls(), "b.test a.test/Path Late.test");
  EXPECT_EQ(Index(),
            (std::vector<std::string>{"Domain1=b.test", "Domain2=a.test/path", "Domain3=late.test"}));
  EXPECT_EQ(Get(ProductKeys::szAddress, "NumActualDomain"), "3");
  EXPECT_EQ(Get(SiteKey("late.test"), "Index"), "3");
  EXPECT_EQ(Get(SiteKey("a.test/path"), "Status"), "4");
  EXPECT_EQ(Get(SiteKey("a.test/path"), "Comments"), "");
  EXPECT_EQ(aSites[2].Status, 0);
  EXPECT_EQ(aSites[2].Comments, "");

  aSites[2].Status = 3;
  aSites[2].Comments = "down";
  SaveSite(2, false);
  EXPECT_EQ(LoadSites(true, true), 0);
  EXPECT_EQ(aSites[2].Status, 3);
  EXPECT_EQ(aSites[2].Comments, "down");
}

TEST_F(modAddressTest, StoredValuesAreBroughtIntoRange) {
  const struct {
    int lTimeOut, lStatus, lEnabled;        // stored; -9 none
    int lTimeOutOf, lStatusOf, lEnabledOf;  // read
  } aCases[] = {
      {0, 9, 2, 1, 4, 0},   {5000, 0, 1, 1800, 4, 1}, {-9, -9, -9, 1, 4, 0},
      {60, 3, 0, 60, 3, 0}, {-1, 257, 257, 1, 4, 0},  {1800, 1, -255, 1800, 1, 0},
  };
  for (const auto& aCase : aCases) {
    RegistryAccess::RegRemoveKey(Stored::hRoot, SiteKey("x"));
    Put(SiteKey("x"), "URL", "X");
    if (aCase.lTimeOut != -9) Put(SiteKey("x"), "Timeout", aCase.lTimeOut);
    if (aCase.lStatus != -9) Put(SiteKey("x"), "Status", aCase.lStatus);
    if (aCase.lEnabled != -9) Put(SiteKey("x"), "Enabled", aCase.lEnabled);
    Put(SiteKey("x"), "Index", 5);
    std::vector<SiteRecord> aTemp;
    EXPECT_EQ(ReadSite("x", aTemp, 5), 0);
    EXPECT_EQ(ReadSite("x", aTemp, 6), 2);
    EXPECT_EQ(aTemp[1].TimeOut, aCase.lTimeOutOf);
    EXPECT_EQ(aTemp[1].Status, aCase.lStatusOf);
    EXPECT_EQ(aTemp[1].Enabled, aCase.lEnabledOf);
  }
}

TEST_F(modAddressTest, SlotsFollowTheNumbersWhateverTheIndexHolds) {
  for (const char* szURL : {"two", "seven", "ten", "eleven", "nil"})
    PutSite(szURL, 1);
  Put(SiteKey("blank"), "URL", "  ");
  Put(SiteKey("number"), "URL", 5);
  for (const auto& [szName, szKeyName] :
       std::vector<std::pair<std::string, std::string>>{{"Domain99999999999", "ELEVEN"},
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
  EXPECT_EQ(lSiteCount, 5);
  EXPECT_EQ(Get(ProductKeys::szAddress, "NumActualDomain"), "5");
  EXPECT_EQ(Index(), (std::vector<std::string>{"Domain10=ten", "Domain2=two", "Domain5=Two", "Domain6=6",
                                               "Domain99999999999=ELEVEN", "Domain= ", "DomainName=nil",
                                               "Foreign=ten", "domain7=seven"}));
  DeleteSite(2);  // slot 2, although "Domain2" happens to fit as well
  EXPECT_EQ(lSiteCount, 4);
  DeleteSite(3);
  EXPECT_EQ(Urls().find("two"), std::string::npos);
  EXPECT_EQ(lSiteCount, 3);
  EXPECT_EQ(Get(szIndex, "Domain4"), "(none)");
}

TEST_F(modAddressTest, DeleteTakesTheSiteThatIsSeenWhereTheIndexHasAGap) {
  for (const char* szURL : {"a", "c", "d"})
    PutSite(szURL, 1);
  Put(szIndex, "Domain1", "a");
  Put(szIndex, "Domain3", "c");
  Put(szIndex, "Domain4", "d");
  LoadSites(true, true);
  DeleteSite(3);
  EXPECT_EQ(Urls(), "a c");
  DeleteSite(0);
  DeleteSite(3);
  EXPECT_EQ(Urls(), "a c");
}

TEST_F(modAddressTest, RebuildDropsOnlyKeysThatDoNotFitTheirUrl) {
  PutSite("  Outer.test ", 2);
  PutSite("good", 1);
  Put(SiteKey("other"), "URL", "renamed");
  Put(SiteKey("no url"), "IP", "1.2.3.4");
  Put(SiteKey("5"), "URL", 5);
  Stored::PutRaw(SiteKey("bin"), "URL", Registry::REG_BINARY, "bin");
  Stored::PutRaw(SiteKey("broken"), "URL", Registry::REG_DWORD, "8 bytes.");  // reading it fails: it stays
  Put(SiteKey("stale parent"), "URL", "x");
  Put(SiteKey("stale parent\\child"), "v", 1);
  RebuildSiteIndex();
  std::vector<std::string> aNames;
  EXPECT_TRUE(ListKeyNames(aNames));
  std::sort(aNames.begin(), aNames.end());
  EXPECT_EQ(aNames, (std::vector<std::string>{"broken", "good", "outer.test", "stale parent"}));
  EXPECT_EQ(Index(), (std::vector<std::string>{"Domain1=good", "Domain2=outer.test"}));
  LoadSites(true, true);
  EXPECT_EQ(Urls(), "good   Outer.test ");
}

TEST_F(modAddressTest, AnIndexThatCannotBeDeletedIsEmptied) {
  PutSite("a", 1);
  Put(szIndex, "Domain9", "a");
  Put(std::string(szIndex) + "\\child", "v", 1);
  RebuildSiteIndex();
  EXPECT_EQ(Index(), std::vector<std::string>{"Domain1=a"});
}

TEST_F(modAddressTest, BackslashesKeepTheirNumberAndTouchNoOtherSite) {
  PutSite("X\\y", 4);
  PutSite("x\\", 6);
  PutSite("\\", 7);
  PutSite("x", 5);
  PutSite("z", 3);
  RebuildSiteIndex();
  LoadSites(false, false);
  EXPECT_EQ(Urls(), "z X\\y x x\\ \\");
  EXPECT_EQ(Get(SiteKey("x%5cy"), "Index"), "4");
  EXPECT_EQ(Get(SiteKey("x%5c"), "Index"), "6");
  EXPECT_EQ(Get(SiteKey("x"), "Index"), "3");
  EXPECT_EQ(Get(ProductKeys::szAddress, "Index"), "(none)");
  EXPECT_EQ(Get(szIndex, "Domain2"), "x%5cy");
  DeleteSite(4);
  EXPECT_EQ(Urls(), "z x X\\y \\");  // "x" is number 3 by now, "X\\y" still 4
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
  EXPECT_EQ(Index(), (std::vector<std::string>{"Domain1=new.test/a", "Domain3=" + szLongest}));
  EXPECT_EQ(Stored::Values(ProductKeys::szAddress), std::vector<std::string>{"NumActualDomain=0"});
  SiteRecord aFound;
  EXPECT_TRUE(FindStoredSite("NEW.test/a", aFound));
  EXPECT_EQ(aFound.URL + aFound.IP + aFound.Comments, " New.test/A 1.2.3.4Added");
  EXPECT_TRUE(FindStoredSite(szLongest, aFound));
  EXPECT_FALSE(FindStoredSite("  ", aFound));
  EXPECT_FALSE(FindStoredSite("new.test", aFound));
  aSites[1].URL = "moved";
  SaveSite(1, false);  // an old site's key is not made anew
  EXPECT_FALSE(FindStoredSite("moved", aFound));
  SaveSite(1, true);
  EXPECT_TRUE(FindStoredSite("moved", aFound));
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
  EXPECT_EQ(aSites[1000].URL, "site1000");
  EXPECT_EQ(Get(SiteKey("site1001"), "Index"), "1001");
}

}  // namespace
