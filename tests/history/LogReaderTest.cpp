#include <gtest/gtest.h>

#include <random>

#include "history/LogCsv.h"
#include "history/LogHistory.h"
#include "history/LogHtml.h"
#include "history/LogSummary.h"
#include "support/LogScript.h"

using namespace std::string_literals;

TEST(LogHistory, FormsPassesWhateverTheLines) {
  const TestHome aHome;
  LogScript aScript;
  aScript.Raw("\xEF\xBB\xBF").Start(true).Up("a").Raw("torn\n\r\n12:00:00 AM,http://b,Site OK,9,,1\n").End();
  aScript.Raw("between\0passes\r\n"s).After(30).Start().Up("A");  // no end line
  aScript.After(30).Raw("[START CHECK: AUTO - never]\r\n").Up("c");
  aScript.After(30).Raw("1/1/9999 1:00:00 AM,http://c,Site OK,1,,1\r\n").End();
  const Opened aHistory(aHome, aScript.szText);
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
  LogScript aScript, aOther{AddDays(dtMonday, 31)};
  aScript.Start().Up("a.com").Warn("b.com").End().After(30).Start().Up("a.com").Down("b.com").End();
  for (int lPass = 0; lPass < 9; ++lPass)
    aOther.Start().Up("c.com").End();
  const auto& szAll = aScript.szText;
  Opened aHistory(aHome, "");
  const auto Expect = [&](const std::string& szText, std::size_t lPasses, std::size_t lLines) {
    aHome.Write("D.kvl", szText);
    EXPECT_TRUE(aHistory.Update());
    EXPECT_FALSE(aHistory.Update());
    EXPECT_EQ(aHistory.Passes().size(), lPasses);
    EXPECT_EQ(aHistory.Lines().size(), lLines);
  };
  for (std::size_t lBytes = 1; lBytes < szAll.size(); ++lBytes) {
    aHome.Write("D.kvl", szAll.substr(0, lBytes));
    EXPECT_TRUE(aHistory.Update());
  }
  Expect(szAll, 2, 8);
  Expect(szAll.substr(0, 60), 1, 2);  // cut
  Expect(aOther.szText, 9, 27);       // replaced by a longer one
}

// What entries share is kept once, and a long file is read in pieces: each line comes back as it was written.
TEST(LogHistory, GivesEveryLineBackAsItStands) {
  const TestHome aHome;
  LogScript aScript;
  std::mt19937 aRandom(20261122);
  for (int lPass = 0; aScript.szText.size() < 2'500'000; ++lPass, aScript.End().After(5)) {
    aScript.Start(lPass % 7 == 0);
    for (int lSite = 0; lSite < 40; ++lSite) {
      const auto szSite = "site" + std::to_string(lSite);
      const auto lKind = aRandom() % 40;
      if (lKind == 0) aScript.Raw("[torn," + std::to_string(aRandom()) + "\r\n");
      if (lKind == 1) aScript.Raw("never,http://" + szSite + ",Site OK,1,,1\r\n");  // shared, but no time
      if (lKind == 2) aScript.Entry("http://" + szSite, "Site OK", 1, "remark " + std::to_string(lPass), 59);
      lKind == 3 ? aScript.Warn(szSite) : aScript.Up(szSite);
    }
  }
  const Opened aHistory(aHome, aScript.szText);
  std::string szAgain;
  std::size_t lUnread = 0;
  for (const auto aRef : aHistory.Lines()) {
    szAgain += aHistory.Text(aRef) + "\r\n";
    const auto& aLine = aHistory.Line(aRef);
    PlacedLine aAlone;
    const auto szLine = aHistory.Text(aRef);
    ReadLogLine(szLine, aAlone);
    ASSERT_EQ(aLine.iKind, aAlone.iKind) << szLine;
    lUnread += aLine.iKind == LineKind::Unread;
    if (aLine.iKind != LineKind::Entry) continue;
    const auto aFields = aHistory.Fields(aRef), aExpected = SplitLogLine(szLine, aAlone);
    ASSERT_EQ(aFields.CheckTime, aExpected.CheckTime);
    ASSERT_EQ(aFields.StatusText, aExpected.StatusText);
    ASSERT_EQ(aFields.Comment, aExpected.Comment);
    ASSERT_EQ(aHistory.Sites()[aLine.lSite], SiteOfAddress(aExpected.Address));
    ASSERT_TRUE(aLine.iOutcome == aAlone.iOutcome && aLine.iSeconds == aAlone.iSeconds &&
                aLine.dtMoment == aAlone.dtMoment)
        << szLine;
  }
  EXPECT_EQ(szAgain, aScript.szText);
  EXPECT_GT(lUnread, 100U);
}

TEST(LogHistory, SurvivesAnyBytes) {
  const TestHome aHome;
  LogScript aScript;
  while (aScript.szText.size() < 60000)
    aScript.Start()
        .Up("a.com/x,y")
        .Entry("(1) http://b<BR>(2) http://10.0.0.1", "(1) x<BR>(2) y", 2)
        .End()
        .After(30);
  std::string szBytes = aScript.szText.substr(0, 3000) + std::string(10'000'000, 'x') + "\r\n";
  std::mt19937 aRandom(1);
  for (int lPass = 0; lPass < 500; ++lPass) {
    auto szPiece = aScript.szText.substr(aRandom() % 50000, 300);
    for (int lFlip = 0; lFlip < 12; ++lFlip)
      szPiece[aRandom() % szPiece.size()] = static_cast<char>(aRandom());
    szBytes += szPiece;
  }
  const Opened aHistory(aHome, szBytes);
  const auto aSummary = Summarise(aHistory);
  EXPECT_GT(aSummary.lUnread, 500U);
  EXPECT_TRUE(LogHtml::Compose(aHistory, aSummary).ends_with("</html>\n"));
  EXPECT_GT(LogCsv::Compose(aHistory).size(), 10'000'000U) << "nothing is cut there";
}
