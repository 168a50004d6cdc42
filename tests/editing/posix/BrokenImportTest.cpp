// An import that is killed, or that runs out of disk, leaves the old list or the new one.
#include <gtest/gtest.h>

#include <span>

#include "editing/ListExchange.h"
#include "support/Stored.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

namespace {

class BrokenImportTest : public testing::Test {
 protected:
  BrokenImportTest() {
    for (int i = 1; i <= 20; ++i)
      Stored::PutSite("old" + std::to_string(i), i);
    for (int i = 1; i <= 900; ++i)
      aRecords.push_back({"", "new" + std::to_string(i) + std::string(200, 'x'), 1, 1, 60, ""});
    aRecords.push_back({"1.1.1.1", "old7", 1, 1, 60, ""});
    modAddress::RebuildSiteIndex();
  }

  // The number of sites after a start; each of them whole.
  int SitesAfterStart() {
    modAddress::RebuildSiteIndex();
    EXPECT_EQ(modAddress::LoadSites(true, true), 0);
    for (const auto& aSite : std::span(aSites).subspan(1))
      EXPECT_EQ(aSite.IP, lSiteCount > 20 && aSite.URL == "old7" ? "1.1.1.1" : "") << aSite.URL;
    return lSiteCount;
  }

  TestHome aHome;
  TestBoxes aBoxes;
  std::vector<SiteRecord> aRecords;
};

TEST_F(BrokenImportTest, KilledOrOnAFullDiskItChangesNothing) {
  constexpr rlim_t lNoLimit = RLIM_INFINITY;
  struct Case {
    std::int32_t lLast;  // the site after which it is killed, 0: it is not
    rlim_t lBytes;       // how long a file may become
  };
  for (const Case& a : {Case{1, lNoLimit}, Case{450, lNoLimit}, Case{901, lNoLimit}, Case{0, 0},
                        Case{0, 60'000}, Case{0, 400'000}}) {
    const int iEnd = InChild([&] {
      LimitFiles(a.lBytes);
      ListExchange::Import(aRecords, true,
                           [&](std::int32_t lDone) { return lDone == a.lLast ? raise(SIGKILL) : 0; });
      return 0;
    });
    EXPECT_EQ(iEnd, a.lLast == 0 ? 0 : -SIGKILL);
    EXPECT_EQ(SitesAfterStart(), 20) << a.lLast << " " << a.lBytes;
  }
  ListExchange::Import(aRecords, true, {});
  EXPECT_EQ(SitesAfterStart(), 920);
}

}  // namespace
