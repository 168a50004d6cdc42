#include <gtest/gtest.h>

#include "dialogs/ListExchange.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace ListExchange;
using Stored::Get;
using Stored::SiteKey;
using Stored::Urls;

namespace {

std::string Shown(const SiteRecord& aRecord) {
  return aRecord.URL + "|" + aRecord.IP + "|" + std::to_string(aRecord.Status) + "|" +
         std::to_string(aRecord.Enabled) + "|" + std::to_string(aRecord.TimeOut) + "|" + aRecord.Comments;
}

TEST(ListExchangeTest, ParsesALineLeniently) {
  const struct {
    std::string szLine, szRecord;  // empty: no site
  } aCases[] = {
      {"a.test,1.2.3.4,3,0,90", "a.test|1.2.3.4|3|0|90|"},
      {"a.test,,2,1,90,", "a.test||2|1|90|"},
      {"a.test", "a.test||1|0|60|"},
      {" a.test , 1.2.3.4 ,0,2,0", "a.test|1.2.3.4|1|1|60|"},
      {"a.test,,-5,-1,-9", "a.test||1|0|60|"},
      {"a.test,,300,300,99999999999", "a.test||255|1|2147483647|"},
      {"a.test,,3x,1y,90 s,more,fields", "a.test||3|1|90|"},
      {",1.2.3.4,1,1,30", "1.2.3.4||1|1|30|"},
      {"a.test,999.0.0.1,4,1,30", "a.test|999.0.0.1|4|1|30|"},
      {"a\tb,,4,1,30", "a\tb||4|1|30|"},
      {std::string(227, 'k'), std::string(227, 'k') + "||1|0|60|"},
      {std::string(228, 'k'), ""},
      {std::string(76, '\\'), ""},  // each counts three bytes in the key's name
      {",", ""},
      {" , ,1,1,60", ""},
      {"a.test,1.2.3", ""},
      {"a.test,1.2.3.4.5", ""},
      {"a.test,1.2..4", ""},
      {"a.test,1.2.3.x", ""},
      {"a.test,1.2.3.-4", ""},
      {"Name,Address,Interval", ""},
      {"a.te\x01st,,1,1,60", ""},
      {std::string("a\0b", 3), ""},
      {"a\rb", ""},
  };
  for (const auto& aCase : aCases) {
    SiteRecord aRecord;
    const bool bSite = ParseLine(aCase.szLine, aRecord);
    EXPECT_EQ(bSite ? Shown(aRecord) : "", aCase.szRecord) << aCase.szLine;
  }
}

TEST(ListExchangeTest, ReadsAFileOrSaysWhatIsWrong) {
  const TestHome aHome;
  std::string szFull, szHostile, szTwice;
  for (int i = 0; i < modAddress::lSiteCapacity; ++i)
    szFull += "site" + std::to_string(i) + "\r\n";
  for (int i = 0; i < 100000; ++i)
    szHostile += "host" + std::to_string(i) + ",1.2.3.4,1,1,60\r\n";
  for (int i = 0; i < 10001; ++i)
    szTwice += "same\n";
  modAddress::WriteSiteRecord({"", "SITE0", 1, 1, 60, ""}, 0);
  const struct {
    const char* szWhat;
    std::string szBytes;
    Reading iReading;
    std::size_t lRecords;
    int lBadLine;
  } aCases[] = {
      {"empty", "", Reading::Fine, 0, 0},
      {"CR LF, blank lines", "a\r\n\r\n  \r\nb\r\n\r\n", Reading::Fine, 2, 0},
      {"LF, mark, last line open",
       "\xEF\xBB\xBF"
       "a\nb",
       Reading::Fine, 2, 0},
      {"old code page", "caf\xE9.test,,1,1,60\r\n", Reading::Fine, 1, 0},
      {"bad third line", "a\r\n\r\n,,1\r\nb\r\n", Reading::Corrupt, 0, 3},
      {"NUL bytes", std::string("a\r\n\0\0\0\r\n", 8), Reading::Corrupt, 0, 2},
      {"a program",
       std::string("\x7F"
                   "ELF\x02\x01\0\0",
                   8),
       Reading::Corrupt, 0, 1},
      {"UTF-16",
       std::string("\xFF\xFE"
                   "a\0,\0",
                   6),
       Reading::Corrupt, 0, 1},
      {"other program's table", "name;url\nShop;http://x,y\n", Reading::Corrupt, 0, 2},
      {"a 10 MB line", std::string(10'000'000, 'x'), Reading::Corrupt, 0, 1},
      {"beyond all bounds", std::string(17 * 1024 * 1024, '\n'), Reading::TooMany, 0, 0},
      {"as many as fit", szFull, Reading::Fine, 1000, 0},
      {"one more", szFull + "more\r\n", Reading::TooMany, 0, 0},
      {"100,000 sites", szHostile, Reading::TooMany, 0, 0},
      {"too many and a bad end", szFull + "more\r\n,", Reading::Corrupt, 0, 1002},
      {"one site 10,001 times", szTwice, Reading::TooMany, 0, 0},
  };
  for (const auto& aCase : aCases) {
    aHome.Write("list.kvd", aCase.szBytes);
    std::vector<SiteRecord> aRecords(3);
    std::int32_t lBadLine = 9;
    EXPECT_EQ(Read(aHome.Path("list.kvd"), aRecords, lBadLine), aCase.iReading) << aCase.szWhat;
    EXPECT_EQ(aRecords.size(), aCase.lRecords) << aCase.szWhat;
    EXPECT_EQ(lBadLine, aCase.lBadLine) << aCase.szWhat;
  }
  std::vector<SiteRecord> aRecords;
  std::int32_t lBadLine = 0;
  EXPECT_EQ(Read(aHome.Path("none"), aRecords, lBadLine), Reading::Unreadable);
  EXPECT_EQ(Read(aHome.Folder(), aRecords, lBadLine), Reading::Unreadable);
}

TEST(ListExchangeTest, ImportReplacesOrAddsAndKeepsTheOthers) {
  for (const bool bReplace : {true, false}) {
    const TestHome aHome;
    TestBoxes aBoxes;
    modAddress::WriteSiteRecord({"9.9.9.9", "B.test", 3, 1, 30, "remark"}, 1);
    modAddress::WriteSiteRecord({"", "kept", 1, 1, 30, "own"}, 2);
    modAddress::WriteSiteRecord({"", "x\\y", 1, 1, 30, "slash"}, 3);
    modAddress::RebuildSiteIndex();
    modAddress::LoadSites(true, true);
    aHome.Write("list.kvd",
                "z.test,,0,1,5000\r\nb.TEST,,4,0,90\r\na.test,1.2.3.4,3,1,10\r\nX%5Cy,,2,1,60\r\n");
    std::vector<SiteRecord> aRecords;
    std::int32_t lBadLine = 0;
    ASSERT_EQ(Read(aHome.Path("list.kvd"), aRecords, lBadLine), Reading::Fine);
    std::vector<int> aDone;
    Import(aRecords, bReplace, [&](std::int32_t lDone) { aDone.push_back(lDone); });
    EXPECT_EQ(aDone, (std::vector<int>{1, 2, 3, 4}));
    // Numbered sites first, imported ones behind them as the exchange sort leaves them.
    EXPECT_EQ(Urls(), "kept b.TEST a.test X%5Cy z.test");
    EXPECT_EQ(Shown(aSites[1]), "kept||1|1|30|own");
    EXPECT_EQ(Shown(aSites[3]), "a.test|1.2.3.4|3|1|10|Import New");
    EXPECT_EQ(Shown(aSites[2]), bReplace ? "b.TEST||4|0|90|Import Replace" : "b.TEST||4|0|90|remark");
    EXPECT_EQ(Shown(aSites[5]), "z.test||1|1|1800|Import New");
    EXPECT_EQ(Get(ProductKeys::szAddressKey, "Domain5"), "z.test");
    EXPECT_EQ(Get(SiteKey("z.test"), "Index"), "5");
    EXPECT_TRUE(aBoxes.aTexts.empty());
  }
}

TEST(ListExchangeTest, ExportWritesWhatImportReads) {
  const TestHome aHome;
  const auto szFile = aHome.Path("list.kvd");
  modAddress::LoadSites(false, false);
  EXPECT_TRUE(Export(szFile, {}));
  EXPECT_EQ(Files::FileSize(szFile), 0U);
  modAddress::WriteSiteRecord({"1.2.3.4", " a.test/x?y=1 ", 3, 1, 1800, "not exported"}, 1);
  modAddress::WriteSiteRecord({"", "b\\c", 2, 0, 5, ""}, 2);
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(false, false);
  aSites[2].Status = 2;
  int lLast = 0;
  EXPECT_TRUE(Export(szFile, [&](std::int32_t lDone) { lLast = lDone; }));
  EXPECT_EQ(lLast, 2);
  EXPECT_EQ(aHome.Read("list.kvd"), "a.test/x?y=1,1.2.3.4,4,1,1800\r\nb\\c,,2,0,5\r\n");
  EXPECT_FALSE(Export(aHome.Path("missing") + Files::chSeparator + "list.kvd", {}));
  std::vector<SiteRecord> aRecords;
  std::int32_t lBadLine = 0;
  ASSERT_EQ(Read(szFile, aRecords, lBadLine), Reading::Fine);
  EXPECT_EQ(Shown(aRecords.at(1)), "b\\c||2|0|5|");
}

TEST(ListExchangeTest, NamesAndFolders) {
  const TestHome aHome;
  const TestClock aClock(JoinDateTime({2026, 11, 21, 23, 59, 59}));
  EXPECT_EQ(DefaultFileName(), "KVList-20261121.kvd");
  EXPECT_EQ(CompleteFileName("mylist"), "mylist.kvd");
  EXPECT_EQ(CompleteFileName("my.KVD"), "my.KVD");
  EXPECT_EQ(CompleteFileName("kvd"), "kvd.kvd");
  EXPECT_TRUE(Files::FolderExists(StartFolder()));
  const auto szFirst = StartFolder();
  ASSERT_TRUE(Files::MakeFolder(aHome.Path("lists")));
  RememberFolder(aHome.Path("lists") + Files::chSeparator + "a.kvd");
  EXPECT_EQ(StartFolder(), aHome.Path("lists"));
  EXPECT_EQ(Get(ProductKeys::szLastLoc, "imex"), aHome.Path("lists"));
  RememberFolder(aHome.Path("gone") + Files::chSeparator + "a.kvd");
  EXPECT_EQ(StartFolder(), szFirst);
}

}  // namespace
