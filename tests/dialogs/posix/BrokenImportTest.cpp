// An import that is killed, or that runs out of disk, leaves the old list or the new one.
#include <gtest/gtest.h>

#include "dialogs/ListExchange.h"
#include "support/Stored.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

namespace {

class BrokenImportTest : public testing::Test {
 protected:
  BrokenImportTest() {
    for (int i = 1; i <= 20; ++i) {
      Stored::PutSite("old" + std::to_string(i), i);
      aRecords.push_back({"", "new" + std::to_string(i), 1, 1, 60, ""});
    }
    aRecords.push_back({"1.1.1.1", "old7", 1, 1, 60, ""});
    modAddress::RebuildSiteIndex();
  }

  // The number of sites after a start; each of them whole.
  int SitesAfterStart() {
    modAddress::RebuildSiteIndex();
    EXPECT_EQ(modAddress::LoadSites(true, true), 0);
    const bool bNew = lSiteCount > 20;
    for (std::int32_t n = 1; n <= lSiteCount; ++n) {
      const auto& aSite = aSites[static_cast<std::size_t>(n)];
      EXPECT_EQ(aSite.TimeOut, 60) << aSite.URL;
      EXPECT_EQ(aSite.IP, bNew && aSite.URL == "old7" ? "1.1.1.1" : "") << aSite.URL;
    }
    return lSiteCount;
  }

  TestHome aHome;
  std::vector<SiteRecord> aRecords;
};

TEST_F(BrokenImportTest, KilledAtAnySite) {
  for (const std::int32_t lLast : {1, 10, 20, 21}) {
    EXPECT_EQ(-SIGKILL, InChild([&] {
      ListExchange::Import(aRecords, true,
                           [&](std::int32_t lDone) { return lDone == lLast ? raise(SIGKILL) : 0; });
      return 0;
    }));
    EXPECT_EQ(SitesAfterStart(), 20) << lLast;
  }
  ListExchange::Import(aRecords, true, {});
  EXPECT_EQ(SitesAfterStart(), 40);
}

TEST_F(BrokenImportTest, OnAFullDisk) {
  for (int i = 0; i < 900; ++i)
    aRecords.push_back({"", "more" + std::to_string(i) + std::string(200, 'x'), 1, 1, 60, ""});
  for (const rlim_t lBytes : {0UL, 60'000UL, 200'000UL, 400'000UL}) {
    EXPECT_EQ(0, InChild([&] {
                const TestBoxes aBoxes;
                LimitFiles(lBytes);
                ListExchange::Import(aRecords, true, {});
                return 0;
              }));
    EXPECT_EQ(SitesAfterStart(), 20) << lBytes;
  }
  ListExchange::Import(aRecords, true, {});
  EXPECT_EQ(SitesAfterStart(), 940);
}

}  // namespace
