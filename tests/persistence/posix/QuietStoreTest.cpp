#include <gtest/gtest.h>

#include "platform/Files.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace modAddress;

namespace {

// The pages that the store's file is owed.
std::uint64_t Journal(const TestHome& aHome) {
  return Files::FileSize(aHome.Path("registry.db-wal")).value_or(0);
}

// A list that is as it was costs the disk nothing: not at the start, not when it is looked at, not by a pass
// whose results are those of the pass before.
TEST(QuietStoreTest, WhatHasNotChangedIsNotWritten) {
  const TestHome aHome;
  for (int i = 1; i <= 50; ++i)
    Stored::PutSite("site" + std::to_string(i), i);
  RebuildSiteIndex();
  LoadSites(false, false);
  const auto Pass = [](std::uint8_t iStatus) {
    for (std::int32_t n = 1; n <= lSiteCount; ++n) {
      SetStatus(n, iStatus);
      SetComments(n, "Site OK");
      SaveSite(n, false);
    }
  };
  Pass(SiteStatus::iUp);
  const auto lBefore = Journal(aHome);
  RebuildSiteIndex();
  LoadSites(true, true);
  Pass(SiteStatus::iUp);
  EXPECT_EQ(Journal(aHome), lBefore);
  SetStatus(7, SiteStatus::iDown);
  SaveSite(7, false);
  EXPECT_GT(Journal(aHome), lBefore);
  EXPECT_EQ(Stored::Get(Stored::SiteKey("site7"), "Status"), "3");
}

}  // namespace
