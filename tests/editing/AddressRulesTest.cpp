#include <gtest/gtest.h>

#include <random>

#include "base/Strings.h"
#include "base/Text.h"
#include "editing/AddressRules.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace AddressRules;
using Stored::Urls;

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

std::string Shown(std::int32_t n) {
  const auto& aSite = aSites.at(static_cast<std::size_t>(n));
  return aSite.URL + "|" + aSite.IP + "|" + std::to_string(aSite.Status) + "|" + aSite.Comments;
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
  }
}

TEST(AddressRulesTest, WhateverIsTypedGivesAWholeSiteOrARefusal) {
  const TestHome aHome;
  StoreSites({});
  Open(0);
  std::mt19937 aRandom(7);
  const std::string szLetters = "htpHTP:/.0123456789 a\\\t\n,-";
  const auto Typed = [&] {
    std::string szText(aRandom() % 14, ' ');
    for (char& ch : szText)
      ch = szLetters[aRandom() % szLetters.size()];
    return szText;
  };
  for (int i = 0; i < 5000; ++i) {
    Form aForm = OpeningForm();
    aForm.szURL = ChangeURL(Typed()).szText;
    ASSERT_EQ(Text::LowerCase(aForm.szURL).find("http:"), std::string::npos) << aForm.szURL;
    for (auto& szOctet : aForm.aOctets) {
      if (aRandom() % 2) szOctet = ChangeOctet(Typed()).szText;
      ASSERT_TRUE(szOctet.empty() || Text::IsDigits(szOctet)) << szOctet;
    }
    aForm.szTimeOut = ChangeTimeOut(Typed()).szText;
    SiteRecord aRecord, aSecond;
    if (!Check(aForm, aRecord).szMessage.empty()) continue;
    ASSERT_FALSE(modAddress::KeyName(aRecord.URL).empty());
    ASSERT_TRUE(aRecord.TimeOut >= 1 && aRecord.TimeOut <= 1800);
    ASSERT_TRUE(aRecord.IP.empty() || std::ranges::count(aRecord.IP, '.') == 3) << aRecord.IP;
    ASSERT_EQ(Check(aForm, aSecond).szMessage, "");
    ASSERT_EQ(aRecord.URL + aRecord.IP, aSecond.URL + aSecond.IP) << "a second OK changes nothing";
  }
}

TEST(AddressRulesTest, StoresWhereItBelongsAndSurvivesARestart) {
  const struct {
    int lSlot;
    SiteRecord aRecord;
    const char *szRow, *szUrls;
    bool bAddressChanged;
  } aCases[] = {
      {0, {"", "new", 0, 1, 5, ""}, "new||4|Added", "a B\\c d new", false},
      {1, {"1.1.1.1", "a", 0, 1, 60, ""}, "a|1.1.1.1|3|Edited", "a B\\c d", false},
      {1, {"", "a", 0, 1, 60, ""}, "a||3|Edited", "a B\\c d", true},
      {1, {"1.1.1.1", "a", 0, 0, 60, ""}, "a|1.1.1.1|4|Edited", "a B\\c d", false},
      {1, {"1.1.1.1", "A", 0, 1, 60, ""}, "A|1.1.1.1|4|Edited", "A B\\c d", true},
      {1, {"1.1.1.1", "z", 0, 1, 60, ""}, "z|1.1.1.1|4|Edited", "z B\\c d", true},
      {2, {"", "b%5cC", 0, 1, 60, ""}, "b%5cC||4|Edited", "a b%5cC d", true},  // the same key
      {2, {"", "bc", 0, 1, 60, ""}, "bc||4|Edited", "a bc d", true},
  };
  for (const auto& aCase : aCases) {
    const TestHome aHome;
    StoreSites({{"1.1.1.1", "a", 1, 1, 60, ""}, {"", "B\\c", 1, 1, 60, ""}, {"", "d", 1, 1, 60, ""}});
    Open(aCase.lSlot);
    modAddress::SetStatus(1, SiteStatus::iDown);  // a pass that ran while the editor was open
    const auto aResult = Store(aCase.aRecord);
    EXPECT_EQ(aResult.bAddressChanged, aCase.bAddressChanged) << aCase.szRow;
    EXPECT_EQ(Shown(aResult.lSlot), aCase.szRow);
    modAddress::RebuildSiteIndex();
    modAddress::LoadSites(true, true);
    EXPECT_EQ(Urls(), aCase.szUrls);
    EXPECT_EQ(Shown(aResult.lSlot), aCase.szRow) << "after a restart";
  }
}

}  // namespace
