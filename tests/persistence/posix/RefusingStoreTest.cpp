// A store that is there and refuses must not pass for an empty one.
#include <gtest/gtest.h>

#include "persistence/Settings.h"
#include "support/Environment.h"
#include "support/Stored.h"
#include "support/TestHome.h"

namespace {

class RefusingStoreTest : public testing::Test {
 protected:
  RefusingStoreTest() {
    Registry::CloseStore();
    Environment::Set("KESTROVA_REGISTRY", aHome.Folder());  // a folder is no store, root or not
  }
  TestHome aHome;
  TestBoxes aBoxes;
};

TEST_F(RefusingStoreTest, AnswersFiveAndTheListSaysSo) {
  std::int32_t lType = 9;
  std::string szValue = "before";
  EXPECT_EQ(RegistryAccess::RegReadValue(Stored::hRoot, "Software", "v", szValue, lType), 5);
  EXPECT_EQ(szValue, "before");
  EXPECT_EQ(RegistryAccess::RegWriteValue(Stored::hRoot, "Software", "v", 1, 4), 5);
  std::vector<std::string> aNames;
  EXPECT_FALSE(modAddress::ListKeyNames(aNames));
  modAddress::RebuildSiteIndex();
  EXPECT_EQ(modAddress::LoadSites(false, false), 5);
  EXPECT_EQ(lSiteCount, 0);
  EXPECT_EQ(aBoxes.aTexts,
            std::vector<std::string>{"Error ccured while trying to retrieve Addresses.\r\n\r\nError: 5"});
}

TEST_F(RefusingStoreTest, SettingsFallBackToTheDefaultsInMemory) {
  Settings = {};
  LoadSettings();
  EXPECT_EQ(Settings.Interval * 100 + Settings.Warning, 6015);
  EXPECT_EQ(Settings.MaxLogFiles, 7);
  EXPECT_FALSE(Settings.LogPath.empty());
}

// The order in which values are written, which the store keeps when it lists them.
TEST(WriteOrderTest, OfSettingsAndSites) {
  const TestHome aHome;
  using Texts = std::vector<std::string>;
  for (const char* szKey : {ProductKeys::szTimer, ProductKeys::szManager, ProductKeys::szLog})
    RegistryAccess::RegCreatePath(Stored::hRoot, szKey);
  SaveSettings({30, 10, "e", "n", "s", 26, "p", 2, 1, 9, 0, 2});
  EXPECT_EQ(Stored::Values(ProductKeys::szTimer), (Texts{"Interval=30", "Warning=10"}));
  EXPECT_EQ(Stored::Values(ProductKeys::szManager), (Texts{"Email=e", "Name=n", "SMTP=s", "SMTPPort=26"}));
  EXPECT_EQ(Stored::Values(ProductKeys::szLog),
            (Texts{"LogPeriod=2", "LogPath=p", "MaxLogFiles=9", "DiskLogMaxFiles=1", "DiskLogDisabled=0"}));
  EXPECT_EQ(Settings.AllowType, 2);  // in memory although its key is missing
  EXPECT_EQ(Stored::Values(ProductKeys::szAllowCookie), Texts{});
  Stored::PutSite("a", 4);
  EXPECT_EQ(Stored::Values(Stored::SiteKey("a")),
            (Texts{"Index=4", "URL=a", "IP=", "Comments=old", "Enabled=1", "Status=3", "Timeout=60"}));
}

}  // namespace
