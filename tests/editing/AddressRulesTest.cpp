#include <gtest/gtest.h>

#include "base/Strings.h"
#include "editing/AddressRules.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace AddressRules;

namespace {

void StoreSites(const std::vector<SiteRecord>& aRecords) {
  for (std::size_t i = 0; i < aRecords.size(); ++i)
    modAddress::WriteSiteRecord(aRecords[i], static_cast<std::int32_t>(i) + 1);
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(true, true);
}

// Opens the editor on a slot, or on a new site with 0.
void Open(std::int32_t lSlot) {
  AddressMode = lSlot == 0 ? 0 : 1;
  AddressIndex = lSlot == 0 ? lSiteCount + 1 : lSlot;
  if (lSlot != 0) EditCopy.assign(1, aSites.at(static_cast<std::size_t>(lSlot)));
}

TEST(AddressRulesTest, OKRefusesWithAMessageOrYieldsASite) {
  const TestHome aHome;
  StoreSites({{"", "taken", 1, 1, 60, ""}, {"", "x\\y", 1, 1, 60, ""}, {"1.2.3.4", "Mine", 1, 1, 60, ""}});
  const std::string szLong(227, 'k'), szTooLong = LoadResString(IDS_URL_TOO_LONG);
  const std::string szTaken = " already exists!\r\nPlease enter another URL.";
  const struct {
    int lSlot;
    Form aForm;
    std::string szAnswer;  // the message, or URL and IP
  } aCases[] = {
      {0, {"   ", {}, "60", true}, "You need to complete the URL Field."},
      {0, {" a ", {}, "60", true}, "a|"},
      {0, {"a", {"", "7", "", ""}, "60", true}, "a|0.7.0.0"},
      {0, {"a", {"010", "99999999999", "x", "4.5"}, "60", true}, "a|10.2147483647.0.4"},
      {0, {"", {"10", "0", "0", "1"}, "60", true}, "10.0.0.1|"},
      {0, {" TAKEN ", {}, "60", true}, "The URL http://TAKEN" + szTaken},
      {0, {"X%5CY", {}, "60", true}, "The URL http://X%5CY" + szTaken},
      {0, {szLong, {}, "60", true}, szLong + "|"},
      {0, {szLong + "k", {}, "60", true}, szTooLong},
      {0, {std::string(76, '\\'), {}, "60", true}, szTooLong},  // three bytes each in the key's name
      {0, {"a", {}, "", true}, "The Time Out field cannot be left blank."},
      {0, {"", {}, "5000", true}, "Time Out values must be from 1 to 1800 seconds."},
      {3, {"mine", {}, "60", true}, "mine|"},
      {3, {"taken", {}, "60", true}, "The URL http://taken" + szTaken},
      {2, {"x%5cY", {}, "60", true}, "x%5cY|"},
  };
  SiteRecord aRecord;
  for (const auto& aCase : aCases) {
    Open(aCase.lSlot);
    auto aForm = aCase.aForm;
    const auto szMessage = Check(aForm, aRecord).szMessage;
    EXPECT_EQ(szMessage.empty() ? aRecord.URL + "|" + aRecord.IP : szMessage, aCase.szAnswer);
    if (!szMessage.empty()) continue;
    SiteRecord aAgain;
    Check(aForm, aAgain);
    EXPECT_EQ(aAgain.URL + "|" + aAgain.IP, aCase.szAnswer) << "a second OK changes nothing";
  }
}

// What an edited site becomes is held against the simulated machine's book.
TEST(AddressRulesTest, AnotherIPAddressAloneIsAnotherAddressToAsk) {
  const TestHome aHome;
  StoreSites({{"1.1.1.1", "a", 1, 1, 60, ""}});
  Open(1);
  EXPECT_FALSE(Store({"1.1.1.1", "a", 0, 1, 90, ""}).bAddressChanged);
  EXPECT_TRUE(Store({"", "a", 0, 1, 60, ""}).bAddressChanged);
}

}  // namespace
