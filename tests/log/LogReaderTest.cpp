#include <gtest/gtest.h>

#include <random>

#include "log/LogBench.h"
#include "log/LogCsv.h"
#include "log/LogFilter.h"
#include "log/LogHistory.h"
#include "log/LogHtml.h"
#include "log/LogReader.h"

using namespace std::string_literals;

namespace {

constexpr const char* szTime = "1/5/2026 8:00:00 AM";

LogLine Read(std::string_view szLine) {
  LogLine aLine;
  ReadLogLine(szLine, aLine);
  return aLine;
}

}  // namespace

TEST(LogLine, ReadsEntriesFromBothEnds) {
  const struct {
    std::string szAddress, szStatus, szTail, szComment, szSite;
  } aCases[] = {
      {"http://a.com", "Site OK", "1,,1", "", "a.com"},
      {"http:// a.com ", "Site OK", "59,,1", "", "a.com"},
      {"http://a.com/x,1,2?", "Site OK", "1,,1", "", "a.com/x,1,2?"},
      {"http://a.com", "404 File Not Found", "0,sent, twice,2", "sent, twice", "a.com"},
      {"http://a.com", "ERROR:  7 odd, text, 12 parts", "3,,4", "", "a.com"},
      {"http://a.com/q,b", "", "3,Manually Stopped.,2", "Manually Stopped.", "a.com/q,b"},
      {"(1) http://a.com/x,y<BR>(2) http://10.0.0.1", "(1) Request Timed-Out<BR>(2) Site OK",
       "5,<SPAN class=\"Emphasis\">IP</SPAN>,2", "<SPAN class=\"Emphasis\">IP</SPAN>", "a.com/x,y"},
      {"Unknown Site: Site #3", "Missing Site Address", "0,,2", "", "Unknown Site: Site #3"},
      {"http://a.com", "Unknown Site: Site #", "0,,3", "", "a.com"},
  };
  for (const auto& aCase : aCases) {
    const auto szLine =
        std::string(szTime) + "," + aCase.szAddress + "," + aCase.szStatus + "," + aCase.szTail;
    const auto aLine = Read(szLine);
    ASSERT_EQ(aLine.iKind, LineKind::Entry) << szLine;
    const auto aFields = SplitLogLine(szLine, aLine);
    EXPECT_EQ(aFields.CheckTime, szTime);
    EXPECT_EQ(aFields.Address, aCase.szAddress);
    EXPECT_EQ(aFields.StatusText, aCase.szStatus);
    EXPECT_EQ(aFields.Comment, aCase.szComment);
    EXPECT_EQ(SiteOfAddress(aFields.Address), aCase.szSite);
  }
  EXPECT_EQ(Read("[START CHECK: MANUAL - 11/15/99 5:44:21 PM]").dtMoment,
            JoinDateTime({1999, 11, 15, 17, 44, 21}));
  for (const auto* szZero : {"12/30/1899 12:00:00 AM", "12:00:00 AM"}) {
    const auto aLine = Read(std::string(szZero) + ",http://10.0.0.1,Site OK,7,,1");
    EXPECT_TRUE(aLine.iKind == LineKind::Entry && !aLine.bTimeKnown);
  }
}

TEST(LogLine, KeepsWhatIsNoLineOfOursAsUnread) {
  const std::string szGood = szTime + ",http://a.com,Site OK,1,"s;
  const std::string aLines[] = {"x",
                                ",,,,,",
                                "[END CHECK",
                                "[START CHECK: AUTO - 13/45/2026 9:00:00 AM]",
                                "[START CHECK: HOURLY - 1/5/2026 8:00:00 AM]",
                                szGood + ",",
                                szGood + ",7",
                                szTime + ",http://a.com,Site OK,60,,1"s,
                                szTime + ",http://a.com,Site OK,1"s,
                                szTime + ",http://a.com,1,,1"s,
                                szTime + ",ftp://a.com,Site OK,1,,1"s,
                                "2/30/2026 8:00:00 AM,http://a.com,Site OK,1,,1",
                                "soon,http://a.com,Site OK,1,,1",
                                szTime + ",http://a.co1/5/2026 8:00:02 AM,http://b.com,Site OK,1,,1"s,
                                std::string(10, '\0'),
                                "\xFF\xFE[\0E"s,
                                std::string(100'000, ',')};
  for (const auto& szLine : aLines)
    EXPECT_EQ(Read(szLine).iKind, LineKind::Unread) << szLine.substr(0, 90);
}

TEST(LogHistory, FormsPassesWhateverTheLines) {
  const TestHome aHome;
  LogWeek::Script aScript(dtMonday);
  aScript.Raw("\xEF\xBB\xBF").Start(true).Up("a").Raw("torn\n\r\n12:00:00 AM,http://b,Site OK,9,,1\n").End();
  aScript.Raw("between\0passes\r\n"s).After(30).Start().Up("A");  // no end line
  aScript.After(30).Raw("[START CHECK: AUTO - never]\r\n").Up("c");
  aScript.After(30).Raw("1/1/9999 1:00:00 AM,http://c,Site OK,1,,1\r\n").End();
  const Opened aHistory(aHome, aScript.Text());
  std::string szPasses;  // started, manual, ended, entries, unread
  for (const auto aRef : aHistory.Passes()) {
    const auto& aPass = aHistory.Pass(aRef);
    szPasses += (aPass.bStarted ? "s" : "-") + std::string(aPass.bManual ? "m" : "-") +
                (aPass.bEnded ? "e" : "-") + std::to_string(aPass.lEntries) + std::to_string(aPass.lUnread) +
                " ";
  }
  EXPECT_EQ(szPasses, "sme21 ---01 s--10 --e21 ");
  EXPECT_EQ(aHistory.Sites(), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(aHistory.Line(aHistory.Lines()[3]).dtMoment, dtMonday) << "takes the time of its neighbour";
  EXPECT_FALSE(aHistory.Line(aHistory.Lines()[10]).bTimeKnown) << "thousands of years after its pass";
}

TEST(LogHistory, FollowsAFileThatGrowsIsCutAndReplaced) {
  const TestHome aHome;
  LogWeek::Script aScript(dtMonday), aOther(AddDays(dtMonday, 31));
  aScript.Start().Up("a.com").Warn("b.com").End().After(30).Start().Up("a.com").Down("b.com").End();
  for (int lPass = 0; lPass < 9; ++lPass)
    aOther.Start().Up("c.com").End();
  const auto& szAll = aScript.Text();
  Opened aHistory(aHome, "");
  const auto Expect = [&](const std::string& szText, std::size_t lPasses, std::size_t lLines,
                          const char* szSite) {
    aHome.Write("D.kvl", szText);
    EXPECT_TRUE(aHistory.Update());
    EXPECT_FALSE(aHistory.Update());
    EXPECT_EQ(aHistory.Passes().size(), lPasses);
    ASSERT_EQ(aHistory.Lines().size(), lLines);
    EXPECT_EQ(aHistory.Sites()[aHistory.Line(aHistory.Lines()[lLines - 2]).lSite], szSite);
  };
  for (std::size_t lBytes = 1; lBytes < szAll.size(); ++lBytes) {
    aHome.Write("D.kvl", szAll.substr(0, lBytes));
    EXPECT_TRUE(aHistory.Update());
  }
  Expect(szAll, 2, 8, "b.com");
  aHome.Write("D.kvl", szAll.substr(0, 60));  // cut
  EXPECT_TRUE(aHistory.Update());
  EXPECT_EQ(aHistory.Lines().size(), 2U);
  Expect(szAll, 2, 8, "b.com");
  Expect(aOther.Text(), 9, 27, "c.com");  // replaced by a longer one
}

TEST(LogHistory, MergesSeveralFilesByTime) {
  const TestHome aHome;
  const std::pair<const char*, std::vector<int>> aFiles[] = {
      {"W-20260104.kvl", {4, 6, 7}},  // to daily files on the 5th, and back
      {"D-20260105.kvl", {5}},
      {"copy of D-20260105.kvl", {5}},
      {"notes.txt", {1}}};
  for (const auto& [szName, aDays] : aFiles) {
    std::string szText;
    for (const int lDay : aDays)
      szText += LogWeek::Script(JoinDateTime({2026, 1, lDay, 8, 0, 0})).Start().Up("a").End().Text();
    aHome.Write("Logs/"s + szName, szText);
  }
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("Logs"), aHome.Path("none.kvl"), aHome.Path("Logs")}));
  EXPECT_EQ(aHistory.FileCount(), 2U);
  ASSERT_EQ(aHistory.Problems().size(), 1U);
  EXPECT_EQ(aHistory.Problems()[0].iWhat, LogReader::Change::Unreadable);
  std::string szDays;
  for (const auto aRef : aHistory.Passes())
    szDays += FormatDay(aHistory.Pass(aRef).dtStart).substr(7);
  EXPECT_EQ(szDays, "4567");
  EXPECT_FALSE(LogHistory().Open({aHome.Path("none.kvl")}));
}

TEST(LogHistory, SurvivesAnyBytes) {
  const TestHome aHome;
  const auto szWeek = LogWeek::Text();
  std::string szBytes = szWeek.substr(0, 3000) + std::string(10'000'000, 'x') + "\r\n";
  std::mt19937 aRandom(1);
  for (int lRound = 0; lRound < 500; ++lRound) {
    auto szPiece = szWeek.substr(aRandom() % 50000, 300);
    for (int lFlip = 0; lFlip < 12; ++lFlip)
      szPiece[aRandom() % szPiece.size()] = static_cast<char>(aRandom());
    szBytes += szPiece;
  }
  const Opened aHistory(aHome, szBytes);
  std::size_t lLines = 0;
  for (const auto aRef : aHistory.Passes())
    lLines += aHistory.Pass(aRef).lPast - aHistory.Pass(aRef).lFirst;
  EXPECT_EQ(lLines, aHistory.Lines().size()) << "every line stands in one pass";
  EXPECT_GT(lLines, 500U);
  const auto aSummary = Summarise(aHistory);
  EXPECT_GT(aSummary.lUnread, 500U);
  EXPECT_TRUE(LogHtml::Compose(aHistory, aSummary).ends_with("</html>\n"));
  EXPECT_GT(LogCsv::Compose(aHistory).size(), 10'000'000U) << "nothing is cut there";
}

TEST(LogFilter, FindsBySiteOutcomeAndWords) {
  const TestHome aHome;
  LogWeek::Script aScript(dtMonday);
  aScript.Start().Up("a.com").Warn("b.com").End().Start().Up("a.com").Raw("torn a.com\r\n").Up("b.com").End();
  const Opened aHistory(aHome, aScript.Text());
  const std::pair<LogFilter, const char*> aCases[] = {{{}, "012345678"},
                                                      {{"B.COM", LogFilter::lEvery, ""}, "0247"},
                                                      {{"", LogFilter::Bit(Outcome::Warning), ""}, "02"},
                                                      {{"", LogFilter::Bit(Outcome::Unread), ""}, "46"},
                                                      {{"", LogFilter::lEvery, " site  A.COM "}, "0145"},
                                                      {{"nowhere", LogFilter::lEvery, ""}, ""}};
  for (const auto& [aFilter, szRows] : aCases) {
    std::string szSeen;
    for (const auto aRef : aFilter.Apply(aHistory))
      szSeen += std::to_string(aRef.lLine);
    EXPECT_EQ(szSeen, szRows);
  }
  const auto& aLines = aHistory.Lines();
  EXPECT_EQ(LogFind::Next(aHistory, aLines, {}, "a.com"), 1U);
  EXPECT_EQ(LogFind::Next(aHistory, aLines, 6, "a.com"), 1U) << "from the top again";
  EXPECT_EQ(LogFind::Previous(aHistory, aLines, 5, "A.com OK"), 1U);
  EXPECT_EQ(LogFind::Previous(aHistory, aLines, {}, "a.com"), 6U);
  for (const char* szNowhere : {"zebra", "  "})
    EXPECT_EQ(LogFind::Next(aHistory, aLines, 0, szNowhere), std::nullopt);
}
