#include <gtest/gtest.h>

#include "persistence/RegFile.h"
#include "platform/Environment.h"
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
  EXPECT_EQ(RegFile::Compose(), "");
  std::string szError;
  EXPECT_FALSE(RegFile::Apply("Windows Registry Editor Version 5.00", szError));
}

}  // namespace
