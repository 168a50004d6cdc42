#include <gtest/gtest.h>

#include "base/Text.h"
#include "editing/ListExchange.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace ListExchange;
using namespace std::string_literals;

namespace {

std::string Shown(const SiteRecord& aRecord) {
  return aRecord.URL + "|" + aRecord.IP + "|" + std::to_string(aRecord.Status) + "|" +
         std::to_string(aRecord.Enabled) + "|" + std::to_string(aRecord.TimeOut) + "|" + aRecord.Comments;
}

TEST(ListExchangeTest, ParsesALineLeniently) {
  const std::pair<std::string, const char*> aCases[] = {
      {"a.test,1.2.3.4,3,0,90", "a.test|1.2.3.4|3|0|90|"},
      {" a.test , 1.2.3.4 ,0,2,0", "a.test|1.2.3.4|1|1|60|"},
      {"a.test,,300,300,99999999999", "a.test||255|1|2147483647|"},
      {"a.test,,3x,1y,90 s,more,fields", "a.test||3|1|90|"},
      {",1.2.3.4,1,1,30", "1.2.3.4||1|1|30|"},
      {"a.test,999.0.0.1,4,1,30", "a.test|999.0.0.1|4|1|30|"},
  };
  SiteRecord aRecord;
  for (const auto& [szLine, szRecord] : aCases) {
    EXPECT_TRUE(ParseLine(szLine, aRecord)) << szLine;
    EXPECT_EQ(Shown(aRecord), szRecord);
  }
  EXPECT_TRUE(ParseLine(std::string(227, 'k'), aRecord));
  for (const std::string& szNone :
       {std::string(228, 'k'), std::string(76, '\\') /* three bytes each in the key's name */, ","s,
        " , ,1,1,60"s, "a.test,1.2.3"s, "a.test,1.2.3.4.5"s, "a.test,1.2..4"s, "a.test,1.2.3.x"s,
        "a.test,1.2.3.-4"s, "Name,Address,Interval"s, "a.te\x01st,,1,1,60"s, "a\0b"s, "a\rb"s, "a\x7F"s})
    EXPECT_FALSE(ParseLine(szNone, aRecord)) << szNone;
}

TEST(ListExchangeTest, ReadsAFileOrSaysWhatIsWrong) {
  const TestHome aHome;
  std::string szFull;
  for (int i = 0; i < modAddress::lSiteCapacity; ++i)
    szFull += "site" + std::to_string(i) + "\r\n";
  modAddress::WriteSiteRecord({"", "SITE0", 1, 1, 60, ""}, 0);
  const struct {
    std::string szBytes;
    Reading iReading;
    std::size_t lRecords;
    int lBadLine;
  } aCases[] = {
      {"", Reading::Fine, 0, 0},
      {"\xEF\xBB\xBFsite\r\n\r\n  \nb", Reading::Fine, 2, 0},
      {"caf\xE9.test,,1,1,60\r\n", Reading::Fine, 1, 0},
      {"a\r\n\r\n,,1\r\nb\r\n", Reading::Corrupt, 0, 3},
      {"\xFF\xFEs\0,\0"s, Reading::Corrupt, 0, 1},
      {"name;url\nShop;http://x,y\n", Reading::Corrupt, 0, 2},
      {std::string(10'000'000, 'x'), Reading::Corrupt, 0, 1},
      {std::string(17 * 1024 * 1024, '\n'), Reading::TooMany, 0, 0},
      {szFull, Reading::Fine, 1000, 0},
      {szFull + "more\r\n", Reading::TooMany, 0, 0},
      {szFull + "more\r\nmore\r\n,", Reading::Corrupt, 0, 1003},
      {Text::Replace(std::string(10001, 'x'), "x", "same\n"), Reading::TooMany, 0, 0},
  };
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szBytes.substr(0, 40));
    aHome.Write("list.kvd", aCase.szBytes);
    std::vector<SiteRecord> aRecords(3);
    std::int32_t lBadLine = 9;
    EXPECT_EQ(Read(aHome.Path("list.kvd"), aRecords, lBadLine), aCase.iReading);
    EXPECT_EQ(aRecords.size(), aCase.lRecords);
    EXPECT_EQ(lBadLine, aCase.lBadLine);
  }
}

}  // namespace
