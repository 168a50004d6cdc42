#include <gtest/gtest.h>

#include "log/LogCsv.h"
#include "log/LogFilter.h"
#include "log/LogHistory.h"
#include "log/LogHtml.h"
#include "log/LogReader.h"
#include "support/LogWeek.h"
#include "support/TestHome.h"

namespace {

constexpr const char* szTime = "1/5/2026 8:00:00 AM";

LogLine Read(std::string_view szLine) {
  LogLine aLine;
  ReadLogLine(szLine, aLine);
  return aLine;
}

std::string Site(const LogHistory& aHistory, std::size_t lRow) {
  return aHistory.Sites()[aHistory.Line(aHistory.Lines()[lRow]).lSite];
}

}  // namespace

TEST(LogLine, ReadsEntriesFromBothEnds) {
  struct Case {
    std::string szRest, szAddress, szStatus, szComment, szSite;
  };
  const Case aCases[] = {
      {"http://a.com,Site OK,1,,1", "http://a.com", "Site OK", "", "a.com"},
      {"http:// a.com ,Site OK,59,,1", "http:// a.com ", "Site OK", "", "a.com"},
      {"http://a.com/x,1,2?,Site OK,1,,1", "http://a.com/x,1,2?", "Site OK", "", "a.com/x,1,2?"},
      {"http://a.com,404 File Not Found,0,sent, twice,2", "http://a.com", "404 File Not Found", "sent, twice",
       "a.com"},
      {"http://a.com,ERROR:  7 odd, text, 12 parts,3,,4", "http://a.com", "ERROR:  7 odd, text, 12 parts", "",
       "a.com"},
      {"http://a.com/q,b,,3,Manually Stopped.,2", "http://a.com/q,b", "", "Manually Stopped.", "a.com/q,b"},
      {"http://a.com,,3,Manually Stopped.,2", "http://a.com", "", "Manually Stopped.", "a.com"},
      {"(1) http://a.com/x,y<BR>(2) http://10.0.0.1,(1) Request Timed-Out<BR>(2) Site OK,5,"
       "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>,2",
       "(1) http://a.com/x,y<BR>(2) http://10.0.0.1", "(1) Request Timed-Out<BR>(2) Site OK",
       "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>", "a.com/x,y"},
      {"Unknown Site: Site #3,Missing Site Address,0,,2", "Unknown Site: Site #3", "Missing Site Address", "",
       "Unknown Site: Site #3"},
      {"http://a.com,Unknown Site: Site #,0,,3", "http://a.com", "Unknown Site: Site #", "", "a.com"},
      {"http://a.com,a text, of others,7,,4", "http://a.com", "a text, of others", "", "a.com"},
  };
  for (const auto& aCase : aCases) {
    const auto szLine = std::string(szTime) + "," + aCase.szRest;
    const auto aLine = Read(szLine);
    ASSERT_EQ(aLine.iKind, LineKind::Entry) << szLine;
    const auto aFields = SplitLogLine(szLine, aLine);
    EXPECT_EQ(aFields.CheckTime, szTime);
    EXPECT_EQ(aFields.Address, aCase.szAddress);
    EXPECT_EQ(aFields.StatusText, aCase.szStatus);
    EXPECT_EQ(aFields.Comment, aCase.szComment);
    EXPECT_EQ(SiteOfAddress(aFields.Address), aCase.szSite);
  }
}

TEST(LogLine, KeepsWhatIsNoLineOfOursAsUnread) {
  const std::string aLines[] = {
      "x",
      ",,,,,",
      "[END CHECK",
      "[START CHECK: AUTO - 13/45/2026 9:00:00 AM]",
      "[START CHECK: HOURLY - 1/5/2026 8:00:00 AM]",
      "1/5/2026 8:00:00 AM,http://a.com,Site OK,1,,",
      "1/5/2026 8:00:00 AM,http://a.com,Site OK,1,,7",
      "1/5/2026 8:00:00 AM,http://a.com,Site OK,60,,1",
      "1/5/2026 8:00:00 AM,http://a.com,Site OK,1",
      "1/5/2026 8:00:00 AM,http://a.com,1,,1",
      "1/5/2026 8:00:00 AM,ftp://a.com,Site OK,1,,1",
      "2/30/2026 8:00:00 AM,http://a.com,Site OK,1,,1",
      "soon,http://a.com,Site OK,1,,1",
      "1/5/2026 8:00:00 AM,http://a.co1/5/2026 8:00:02 AM,http://b.com,Site OK,1,,1",
      std::string(10, '\0'),
      std::string("\xFF\xFE[\0E", 5),
      std::string(100'000, ','),
  };
  for (const auto& szLine : aLines)
    EXPECT_EQ(Read(szLine).iKind, LineKind::Unread) << szLine.substr(0, 90);
}

TEST(LogLine, ReadsOlderAndMissingTimes) {
  EXPECT_EQ(Read("[START CHECK: MANUAL - 11/15/99 5:44:21 PM]").dtMoment,
            JoinDateTime({1999, 11, 15, 17, 44, 21}));
  for (const auto* szZero : {"12/30/1899 12:00:00 AM", "12:00:00 AM"}) {
    const auto aLine = Read(std::string(szZero) + ",http://10.0.0.1,Site OK,7,,1");
    EXPECT_EQ(aLine.iKind, LineKind::Entry);
    EXPECT_FALSE(aLine.bTimeKnown);
  }
}

TEST(LogHistory, FormsPassesWhateverTheLines) {
  TestHome aHome;
  LogWeek::Script aScript(JoinDateTime({2026, 1, 5, 8, 0, 0}));
  aScript.Raw("\xEF\xBB\xBF")
      .Start(true)
      .Up("a")
      .Raw("torn\n\r\n")
      .Raw("12:00:00 AM,http://b,Site OK,9,,1\n")
      .End();
  aScript.Raw(std::string("between\0passes\r\n", 16)).After(30).Start().Up("A");  // no end line
  aScript.After(30).Raw("[START CHECK: AUTO - never]\r\n").Up("c");
  aScript.After(30).Raw("1/1/9999 1:00:00 AM,http://c,Site OK,1,,1\r\n").End();
  aHome.Write("D.kvl", aScript.Text());
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("D.kvl")}));
  ASSERT_EQ(aHistory.Passes().size(), 4U);
  const auto Pass = [&](std::size_t lPass) { return aHistory.Pass(aHistory.Passes()[lPass]); };
  EXPECT_TRUE(Pass(0).bStarted && Pass(0).bManual && Pass(0).bEnded && !Pass(0).Complete());
  EXPECT_EQ(Pass(0).lEntries, 2U);
  EXPECT_EQ(Pass(0).lUnread, 1U);
  EXPECT_TRUE(!Pass(1).bStarted && Pass(1).lEntries == 0 && Pass(1).lUnread == 1);
  EXPECT_TRUE(Pass(2).bStarted && !Pass(2).bManual && !Pass(2).bEnded);
  EXPECT_TRUE(!Pass(3).bStarted && Pass(3).lEntries == 2 && Pass(3).lUnread == 1);
  EXPECT_EQ(aHistory.Sites(), (std::vector<std::string>{"a", "b", "c"}));
  const auto& aTimeless = aHistory.Line(aHistory.Lines()[3]);
  EXPECT_EQ(aTimeless.dtMoment, JoinDateTime({2026, 1, 5, 8, 0, 0})) << "takes the time of its neighbour";
  const auto& aForged = aHistory.Line(aHistory.Lines()[10]);
  EXPECT_EQ(aForged.iKind, LineKind::Entry);
  EXPECT_FALSE(aForged.bTimeKnown) << "a check thousands of years after its pass";
}

TEST(LogHistory, FollowsAFileThatGrowsIsCutAndReplaced) {
  TestHome aHome;
  LogWeek::Script aScript(JoinDateTime({2026, 1, 5, 8, 0, 0}));
  aScript.Start().Up("a.com").Warn("b.com").End().After(30).Start().Up("a.com").Down("b.com").End();
  const auto& szAll = aScript.Text();
  aHome.Write("D.kvl", "");
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("D.kvl")}));
  for (std::size_t lBytes = 1; lBytes <= szAll.size(); ++lBytes) {
    aHome.Write("D.kvl", szAll.substr(0, lBytes));
    EXPECT_TRUE(aHistory.Update());
    EXPECT_FALSE(aHistory.Update());
  }
  const auto ExpectAll = [&] {
    ASSERT_EQ(aHistory.Passes().size(), 2U);
    ASSERT_EQ(aHistory.Lines().size(), 8U);
    for (const auto aRef : aHistory.Passes())
      EXPECT_TRUE(aHistory.Pass(aRef).Complete());
    EXPECT_EQ(aHistory.Pass(aHistory.Passes()[1]).lEntries, 2U);
    EXPECT_EQ(Site(aHistory, 6), "b.com");
  };
  ExpectAll();
  aHome.Write("D.kvl", szAll.substr(0, 60));  // cut
  EXPECT_TRUE(aHistory.Update());
  EXPECT_EQ(aHistory.Lines().size(), 2U);
  aHome.Write("D.kvl", szAll);
  EXPECT_TRUE(aHistory.Update());
  ExpectAll();
  LogWeek::Script aOther(JoinDateTime({2026, 2, 5, 8, 0, 0}));
  for (int lPass = 0; lPass < 9; ++lPass)
    aOther.Start().Up("c.com").End();
  aHome.Write("D.kvl", aOther.Text());  // replaced by a longer one
  EXPECT_TRUE(aHistory.Update());
  EXPECT_EQ(aHistory.Passes().size(), 9U);
  EXPECT_EQ(Site(aHistory, 1), "c.com");
}

TEST(LogHistory, MergesSeveralFilesByTime) {
  TestHome aHome;
  const auto Write = [&](const char* szName, std::vector<int> aDays, const char* szSite) {
    std::string szText;
    for (const int lDay : aDays)
      szText += LogWeek::Script(JoinDateTime({2026, 1, lDay, 8, 0, 0})).Start().Up(szSite).End().Text();
    aHome.Write(std::string("Logs/") + szName, szText);
  };
  Write("W-20260104.kvl", {4, 6, 7}, "week");  // to daily files on the 5th, and back
  Write("D-20260105.kvl", {5}, "day");
  Write("copy of D-20260105.kvl", {5}, "day");
  Write("notes.txt", {1}, "no log");
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("Logs"), aHome.Path("none.kvl"), aHome.Path("Logs")}));
  EXPECT_EQ(aHistory.FileCount(), 2U);
  ASSERT_EQ(aHistory.Problems().size(), 1U);
  EXPECT_EQ(aHistory.Problems()[0].iWhat, LogReader::Change::Unreadable);
  ASSERT_EQ(aHistory.Passes().size(), 4U);
  for (std::size_t lPass = 0; lPass < 4; ++lPass)
    EXPECT_EQ(SplitDateTime(aHistory.Pass(aHistory.Passes()[lPass]).dtStart).lDay,
              static_cast<int>(lPass) + 4);
  EXPECT_FALSE(LogHistory().Open({aHome.Path("none.kvl")}));
}

TEST(LogHistory, SurvivesAnyBytes) {
  TestHome aHome;
  const auto szWeek = LogWeek::Text();
  std::string szBytes = szWeek.substr(0, 3000) + std::string(10'000'000, 'x') + "\r\n";
  std::uint32_t lRandom = 1;
  const auto Next = [&] { return lRandom = lRandom * 1664525 + 1013904223; };
  for (int lRound = 0; lRound < 500; ++lRound) {
    auto szPiece = szWeek.substr(Next() % 50000, 300);
    for (int lFlip = 0; lFlip < 12; ++lFlip)
      szPiece[Next() % szPiece.size()] = static_cast<char>(Next() >> 24);
    szBytes += szPiece;
  }
  aHome.Write("D.kvl", szBytes);
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("D.kvl")}));
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
  TestHome aHome;
  LogWeek::Script aScript(JoinDateTime({2026, 1, 5, 8, 0, 0}));
  aScript.Start().Up("a.com").Warn("b.com").End().Start().Up("a.com").Raw("torn a.com\r\n").Up("b.com").End();
  aHome.Write("D.kvl", aScript.Text());
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("D.kvl")}));
  const auto Rows = [&](const LogFilter& aFilter) {
    std::string szRows;
    for (const auto aRef : aFilter.Apply(aHistory))
      szRows += std::to_string(aRef.lLine) + " ";
    return szRows;
  };
  EXPECT_EQ(Rows({}), "0 1 2 3 4 5 6 7 8 ");
  EXPECT_EQ(Rows({"B.COM", LogFilter::lEvery, ""}), "0 2 4 7 ");
  EXPECT_EQ(Rows({"", LogFilter::Bit(Outcome::Warning), ""}), "0 2 ");
  EXPECT_EQ(Rows({"", LogFilter::Bit(Outcome::Unread), ""}), "4 6 ");
  EXPECT_EQ(Rows({"", LogFilter::lEvery, " site  A.COM "}), "0 1 4 5 ");
  EXPECT_EQ(Rows({"nowhere", LogFilter::lEvery, ""}), "");
  const auto& aLines = aHistory.Lines();
  EXPECT_EQ(LogFind::Next(aHistory, aLines, {}, "a.com"), 1U);
  EXPECT_EQ(LogFind::Next(aHistory, aLines, 6, "a.com"), 1U) << "from the top again";
  EXPECT_EQ(LogFind::Previous(aHistory, aLines, 5, "A.com OK"), 1U);
  EXPECT_EQ(LogFind::Previous(aHistory, aLines, {}, "a.com"), 6U);
  EXPECT_EQ(LogFind::Next(aHistory, aLines, 0, "zebra"), std::nullopt);
  EXPECT_EQ(LogFind::Next(aHistory, aLines, 0, "  "), std::nullopt);
}
