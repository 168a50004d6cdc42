#include <gtest/gtest.h>

#include "persistence/Settings.h"
#include "support/Environment.h"
#include "support/Stored.h"
#include "support/TestHome.h"

namespace {

// A store that is there and refuses must not pass for an empty one.
TEST(RefusingStoreTest, AnswersFiveAndTheListSaysSo) {
  const TestHome aHome;
  const TestBoxes aBoxes;
  Environment::Set("KESTROVA_REGISTRY", aHome.Folder());  // a folder is no store, root or not
  EXPECT_EQ(RegistryAccess::RegWriteValue(Stored::hRoot, "Software", "v", 1, 4), 5);
  std::vector<std::string> aNames;
  EXPECT_FALSE(modAddress::ListKeyNames(aNames));
  modAddress::RebuildSiteIndex();
  EXPECT_EQ(modAddress::LoadSites(false, false), 5);
  EXPECT_EQ(lSiteCount, 0);
  EXPECT_EQ(aBoxes.aTexts,
            std::vector<std::string>{"Error ccured while trying to retrieve Addresses.\r\n\r\nError: 5"});
  Settings = {};
  LoadSettings();
  EXPECT_TRUE(Settings.Interval == 60 && Settings.Warning == 15 && !Settings.LogPath.empty());
}

// The order in which values are written, which the store keeps when it lists them.
TEST(WriteOrderTest, OfSettingsAndSites) {
  const TestHome aHome;
  using namespace ProductKeys;
  for (const char* szKey : {szTimer, szManager, szLog})
    RegistryAccess::RegCreatePath(Stored::hRoot, szKey);
  SaveSettings({30, 10, "e", "n", "s", 26, "p", 2, 1, 9, 0, 2});
  Stored::PutSite("a", 4);
  const std::pair<std::string, std::vector<std::string>> aCases[] = {
      {szTimer, {"Interval=30", "Warning=10"}},
      {szManager, {"Email=e", "Name=n", "SMTP=s", "SMTPPort=26"}},
      {szLog, {"LogPeriod=2", "LogPath=p", "MaxLogFiles=9", "DiskLogMaxFiles=1", "DiskLogDisabled=0"}},
      {szAllowCookie, {}},  // its key is missing
      {Stored::SiteKey("a"),
       {"Index=4", "URL=a", "IP=", "Comments=old", "Enabled=1", "Status=3", "Timeout=60"}}};
  for (const auto& [szKey, aValues] : aCases)
    EXPECT_EQ(Stored::Values(szKey), aValues) << szKey;
  EXPECT_EQ(Settings.AllowType, 2);
}

}  // namespace
