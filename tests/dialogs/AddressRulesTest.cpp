#include <gtest/gtest.h>

#include <random>

#include "dialogs/AddressRules.h"
#include "platform/Text.h"
#include "resources/Strings.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace AddressRules;
using Stored::Get;
using Stored::SiteKey;
using Stored::Urls;

namespace {

// Texts made of the characters that the rules are about, of all lengths up to some.
class Texts {
 public:
  explicit Texts(std::string szFrom) : szLetters(std::move(szFrom)) {}
  std::string Next() {
    std::string szText(aRandom() % 14, ' ');
    for (char& ch : szText)
      ch = szLetters[aRandom() % szLetters.size()];
    return szText;
  }

 private:
  std::string szLetters;
  std::mt19937 aRandom{20261121};
};

void StoreSites(const std::vector<SiteRecord>& aRecords) {
  for (std::size_t i = 0; i < aRecords.size(); ++i)
    modAddress::WriteSiteRecord(aRecords[i], static_cast<std::int32_t>(i) + 1);
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(true, true);
}

void OpenNew() {
  AddressMode = 0;
  AddressIndex = lSiteCount + 1;
}

void OpenEdit(std::int32_t n) {
  AddressMode = 1;
  AddressIndex = n;
  EditCopy.assign(1, aSites.at(static_cast<std::size_t>(n)));
}

std::string Boxes(const Form& aForm) {
  std::string szAll;
  for (const auto& szOctet : aForm.aOctets)
    szAll += "[" + szOctet + "]";
  return szAll;
}

std::string Shown(std::int32_t n) {
  const auto& aSite = aSites.at(static_cast<std::size_t>(n));
  return aSite.URL + "|" + aSite.IP + "|" + std::to_string(aSite.Status) + "|" +
         std::to_string(aSite.Enabled) + "|" + std::to_string(aSite.TimeOut) + "|" + aSite.Comments;
}

TEST(AddressRulesTest, TheAgentIsRemoved) {
  const struct {
    const char *szTyped, *szLeft;
    bool bAgent;
  } aCases[] = {{"www.a.test", "www.a.test", false},
                {"http://www.a.test", "www.a.test", true},
                {"HTTP:/a/b", "a/b", true},
                {"http:", "", true},
                {"a?http://b", "a?b", true},
                {"http:/http://a", "a", true},
                {"hthttp://tp:a", "a", true},
                {"https://a", "https://a", false},
                {"http", "http", false},
                {"a.test\r\n", "a.test", false}};
  for (const auto& aCase : aCases) {
    const auto aChange = ChangeURL(aCase.szTyped);
    EXPECT_EQ(aChange.szText, aCase.szLeft) << aCase.szTyped;
    EXPECT_EQ(aChange.bAgent, aCase.bAgent) << aCase.szTyped;
  }
  Texts aTexts("htpHTP:/ax\n");
  for (int i = 0; i < 20000; ++i) {
    const auto szText = aTexts.Next();
    const auto aChange = ChangeURL(szText);
    ASSERT_EQ(Text::LowerCase(aChange.szText).find("http:"), std::string::npos) << szText;
    ASSERT_EQ(aChange.szText.find('\n'), std::string::npos);
    ASSERT_EQ(ChangeURL(aChange.szText).szText, aChange.szText) << szText;
  }
}

TEST(AddressRulesTest, OctetsAndTimeOutsKeepDigitsOnly) {
  const struct {
    const char *szTyped, *szLeft;
    bool bBeep, bNext;
  } aOctets[] = {{"", "", false, false},           {"1", "1", false, false}, {"192", "192", false, true},
                 {"192.", "192", false, true},     {".", "0", false, true},  {"1.", "1", false, true},
                 {"1.2.3.4", "1234", false, true}, {"1a", "1", true, false}, {"1,9", "19", true, false},
                 {"300", "300", false, true},      {"a", "", true, false},   {"a.", "0", true, true}};
  for (const auto& aCase : aOctets) {
    const auto aChange = ChangeOctet(aCase.szTyped);
    EXPECT_EQ(aChange.szText, aCase.szLeft) << aCase.szTyped;
    EXPECT_EQ(aChange.bBeep, aCase.bBeep) << aCase.szTyped;
    EXPECT_EQ(aChange.bNext, aCase.bNext) << aCase.szTyped;
  }
  const struct {
    const char *szTyped, *szLeft;
  } aTimeOuts[] = {{"", ""},
                   {"60", "60"},
                   {"007", "7"},
                   {"6x0", "60"},
                   {"-5", "5"},
                   {"1.5", "15"},
                   {"99999999999999999999", "2147483647"}};
  for (const auto& aCase : aTimeOuts)
    EXPECT_EQ(ChangeTimeOut(aCase.szTyped).szText, aCase.szLeft) << aCase.szTyped;
  Texts aTexts("0123456789..,-+ ax");
  for (int i = 0; i < 20000; ++i) {
    const auto szText = aTexts.Next();
    const auto szOctet = ChangeOctet(szText).szText;
    ASSERT_TRUE(szOctet.empty() || Text::IsDigits(szOctet)) << szText;
    ASSERT_EQ(ChangeOctet(szOctet).szText, szOctet);
    ASSERT_EQ(ChangeOctet(szText).bNext && szOctet.empty(), false) << szText;
    const auto aTimeOut = ChangeTimeOut(szText);
    ASSERT_EQ(ChangeTimeOut(aTimeOut.szText).szText, aTimeOut.szText) << szText;
    ASSERT_FALSE(ChangeTimeOut(aTimeOut.szText).bBeep) << szText;
    const auto szLeft = LeaveTimeOut(aTimeOut.szText).szText;
    ASSERT_TRUE(Text::IsDigits(szLeft) && Text::LeadingNumber(szLeft) >= 1 &&
                Text::LeadingNumber(szLeft) <= 1800)
        << szText;
    ASSERT_EQ(LeaveTimeOut(szLeft).lMessage, 0) << szText;
  }
  const struct {
    const char *szTyped, *szLeft;
    std::int32_t lMessage;
  } aLeft[] = {{"", "60", IDS_TIME_OUT_BLANK},
               {"0", "1", IDS_TIME_OUT_RANGE},
               {"1", "1", 0},
               {"1800", "1800", 0},
               {"1801", "1800", IDS_TIME_OUT_RANGE},
               {"5000", "1800", IDS_TIME_OUT_RANGE}};
  for (const auto& aCase : aLeft) {
    EXPECT_EQ(LeaveTimeOut(aCase.szTyped).szText, aCase.szLeft);
    EXPECT_EQ(LeaveTimeOut(aCase.szTyped).lMessage, aCase.lMessage) << aCase.szTyped;
  }
}

TEST(AddressRulesTest, KeysLeadFromBoxToBox) {
  const int aExpected[4][5] = {{2, 0, 0, 2, 2}, {3, 1, 1, 3, 3}, {4, 2, 2, 4, 4}, {-1, 3, 3, -1, -1}};
  for (int i = 0; i < 4; ++i)
    for (int k = 0; k < 5; ++k)
      EXPECT_EQ(MoveFromOctet(i + 1, static_cast<OctetKey>(k)), aExpected[i][k]) << i << k;
}

TEST(AddressRulesTest, OpensWithTheSiteOrEmpty) {
  const TestHome aHome;
  const struct {
    const char *szIP, *szBoxes;
  } aCases[] = {{"", "[][][][]"},        {"10.0.0.1", "[10][0][0][1]"},
                {"10.1", "[10][1][][]"}, {"1.2.3.4.5", "[1][2][3][4.5]"},
                {"..", "[][][][]"},      {"host", "[host][][][]"}};
  for (const auto& aCase : aCases) {
    StoreSites({{aCase.szIP, "a.test", 1, 1, 90, ""}});
    OpenEdit(1);
    EXPECT_EQ(Boxes(OpeningForm()), aCase.szBoxes) << aCase.szIP;
  }
  EXPECT_EQ(OpeningForm().szURL + OpeningForm().szTimeOut, "a.test90");
  OpenNew();
  const auto aForm = OpeningForm();
  EXPECT_EQ(aForm.szURL + Boxes(aForm) + aForm.szTimeOut, "[][][][]60");
  EXPECT_TRUE(aForm.bEnabled);
}

TEST(AddressRulesTest, OKRefusesWithAMessageOrYieldsASite) {
  const TestHome aHome;
  StoreSites(
      {{"", "taken.test", 1, 1, 60, ""}, {"", "x\\y", 1, 1, 60, ""}, {"1.2.3.4", "Mine", 1, 1, 60, ""}});
  const std::string szLong(227, 'k');
  const struct {
    int iMode;  // 0 new, otherwise the slot that is edited
    Form aForm;
    std::string szMessage;  // or, accepted, URL and IP
    const char* szBoxes;
  } aCases[] = {
      {0, {"", {}, "60", true}, "You need to complete the URL Field.", "[][][][]"},
      {0, {"   ", {}, "60", true}, "You need to complete the URL Field.", "[][][][]"},
      {0, {" a.test ", {}, "60", true}, "a.test|", "[][][][]"},
      {0, {"a.test", {"", "7", "", ""}, "60", true}, "a.test|0.7.0.0", "[0][7][0][0]"},
      {0,
       {"a.test", {"010", "99999999999999999999", "x", "4.5"}, "60", true},
       "a.test|10.2147483647.0.4",
       "[10][2147483647][0][4]"},
      {0, {"", {"10", "0", "0", "1"}, "60", true}, "10.0.0.1|", "[][][][]"},
      {0,
       {"taken.test", {}, "60", true},
       "The URL http://taken.test already exists!\r\nPlease enter another URL.",
       "[][][][]"},
      {0,
       {" TAKEN.Test ", {}, "60", true},
       "The URL http://TAKEN.Test already exists!\r\nPlease enter another URL.",
       "[][][][]"},
      {0,
       {"X%5CY", {}, "60", true},
       "The URL http://X%5CY already exists!\r\nPlease enter another URL.",
       "[][][][]"},
      {0, {szLong, {}, "60", true}, szLong + "|", "[][][][]"},
      {0, {szLong + "k", {}, "60", true}, LoadResString(IDS_URL_TOO_LONG), "[][][][]"},
      {0, {std::string(76, '\\'), {}, "60", true}, LoadResString(IDS_URL_TOO_LONG), "[][][][]"},
      {0, {"a.test", {}, "", true}, "The Time Out field cannot be left blank.", "[][][][]"},
      {0, {"", {}, "5000", true}, "Time Out values must be from 1 to 1800 seconds.", "[][][][]"},
      {3, {"mine", {}, "60", true}, "mine|", "[][][][]"},
      {3,
       {"taken.test", {}, "60", true},
       "The URL http://taken.test already exists!\r\nPlease enter another URL.",
       "[][][][]"},
      {2, {"x%5cY", {}, "60", true}, "x%5cY|", "[][][][]"},
  };
  for (const auto& aCase : aCases) {
    if (aCase.iMode == 0)
      OpenNew();
    else
      OpenEdit(aCase.iMode);
    auto aForm = aCase.aForm;
    SiteRecord aRecord;
    const auto aVerdict = Check(aForm, aRecord);
    EXPECT_EQ(aVerdict.szMessage.empty() ? aRecord.URL + "|" + aRecord.IP : aVerdict.szMessage,
              aCase.szMessage)
        << aCase.aForm.szURL;
    EXPECT_EQ(Boxes(aForm), aCase.szBoxes) << aCase.aForm.szURL;
    EXPECT_EQ(aVerdict.iField == Verdict::Field::None, aVerdict.szMessage.empty());
    EXPECT_TRUE(Text::IsDigits(aForm.szTimeOut));
  }
  // A list that the store does not know, as when it cannot be read, still has no site twice.
  aSites.push_back({"", "memory", 1, 1, 60, ""});
  ++lSiteCount;
  OpenNew();
  Form aForm{"MEMORY", {}, "60", true};
  SiteRecord aRecord;
  EXPECT_FALSE(Check(aForm, aRecord).szMessage.empty());
  aForm.szURL = "one.more";
  aSites.resize(1001, {"", "filler", 1, 1, 60, ""});
  lSiteCount = 1000;
  OpenNew();
  EXPECT_EQ(Check(aForm, aRecord).szMessage, LoadResString(IDS_LIST_FULL));
  OpenEdit(3);
  EXPECT_EQ(Check(aForm, aRecord).szMessage, "");
}

TEST(AddressRulesTest, WhateverIsTypedGivesAWholeSiteOrARefusal) {
  const TestHome aHome;
  StoreSites({});
  Texts aTexts("htp:/.0123456789 a\\\t");
  std::mt19937 aRandom(7);
  for (int i = 0; i < 5000; ++i) {
    OpenNew();
    Form aForm = OpeningForm();
    if (aRandom() % 3) aForm.szURL = ChangeURL(aTexts.Next()).szText;
    for (auto& szOctet : aForm.aOctets)
      if (aRandom() % 2) szOctet = ChangeOctet(aTexts.Next()).szText;
    aForm.szTimeOut = ChangeTimeOut(aTexts.Next()).szText;
    SiteRecord aRecord;
    if (!Check(aForm, aRecord).szMessage.empty()) continue;
    ASSERT_FALSE(modAddress::KeyName(aRecord.URL).empty());
    ASSERT_EQ(aRecord.URL, Text::Trim(aRecord.URL));
    ASSERT_TRUE(aRecord.TimeOut >= 1 && aRecord.TimeOut <= 1800);
    ASSERT_TRUE(aRecord.IP.empty() || std::count(aRecord.IP.begin(), aRecord.IP.end(), '.') == 3)
        << aRecord.IP;
    const auto aFirst = aForm;
    ASSERT_EQ(Check(aForm, aRecord).szMessage, "");
    ASSERT_EQ(aForm.szURL + Boxes(aForm), aFirst.szURL + Boxes(aFirst)) << "a second OK changes nothing";
  }
}

TEST(AddressRulesTest, StoresWhereItBelongsAndSurvivesAReload) {
  const TestHome aHome;
  const TestBoxes aBoxes;
  const struct {
    const char* szWhat;
    int iMode;
    SiteRecord aRecord;
    const char *szRow, *szUrls;
    bool bAddressChanged;
  } aCases[] = {
      {"new", 0, {"", "new", 0, 1, 5, ""}, "new||4|1|5|Added", "a B\\c d new", false},
      {"nothing changed", 1, {"1.1.1.1", "a", 0, 1, 60, ""}, "a|1.1.1.1|3|1|60|Edited", "a B\\c d", false},
      {"other IP", 1, {"", "a", 0, 1, 60, ""}, "a||3|1|60|Edited", "a B\\c d", true},
      {"disabled", 1, {"1.1.1.1", "a", 0, 0, 60, ""}, "a|1.1.1.1|4|0|60|Edited", "a B\\c d", false},
      {"letter case only", 1, {"1.1.1.1", "A", 0, 1, 60, ""}, "A|1.1.1.1|4|1|60|Edited", "A B\\c d", true},
      {"another name", 1, {"1.1.1.1", "z", 0, 1, 60, ""}, "z|1.1.1.1|4|1|60|Edited", "z B\\c d", true},
      {"same key, other spelling", 2, {"", "b%5cC", 0, 1, 60, ""}, "b%5cC||4|1|60|Edited", "a b%5cC d", true},
      {"a backslash goes", 2, {"", "bc", 0, 1, 60, ""}, "bc||4|1|60|Edited", "a bc d", true},
  };
  for (const auto& aCase : aCases) {
    const TestHome aOwn;
    StoreSites({{"1.1.1.1", "a", 1, 1, 60, ""}, {"", "B\\c", 1, 1, 60, ""}, {"", "d", 1, 1, 60, ""}});
    if (aCase.iMode == 0)
      OpenNew();
    else
      OpenEdit(aCase.iMode);
    aSites[1].Status = 3;  // a pass that ran while the editor was open
    const auto aResult = Store(aCase.aRecord);
    EXPECT_EQ(aResult.lSlot, aCase.iMode == 0 ? 4 : aCase.iMode) << aCase.szWhat;
    EXPECT_EQ(aResult.bAddressChanged, aCase.bAddressChanged) << aCase.szWhat;
    EXPECT_EQ(Shown(aResult.lSlot), aCase.szRow) << aCase.szWhat;
    EXPECT_EQ(Get(ProductKeys::szAddress, "NumActualDomain"), std::to_string(lSiteCount)) << aCase.szWhat;
    modAddress::LoadSites(true, true);
    EXPECT_EQ(Urls(), aCase.szUrls) << aCase.szWhat;
    modAddress::RebuildSiteIndex();
    modAddress::LoadSites(true, true);
    EXPECT_EQ(Urls(), aCase.szUrls) << aCase.szWhat << ", after a restart";
    EXPECT_EQ(Shown(aResult.lSlot), aCase.szRow) << aCase.szWhat;
  }
}

TEST(AddressRulesTest, NeverLeavesAGapInTheList) {
  const TestHome aHome;
  StoreSites({{"", "a", 1, 1, 60, ""}});
  AddressMode = 0;
  AddressIndex = 9;
  EXPECT_EQ(Store({"", "b", 0, 1, 60, ""}).lSlot, 2);
  OpenEdit(2);
  AddressIndex = 7;  // the slot is gone
  EXPECT_EQ(Store({"", "c", 0, 1, 60, ""}).lSlot, 3);
  EXPECT_EQ(Urls(), "a b c");
  EXPECT_EQ(Get(SiteKey("b"), "URL"), "b");
}

}  // namespace
