#include <gtest/gtest.h>

#include "log/LogCsv.h"
#include "support/LogWeek.h"
#include "support/TestHome.h"

TEST(LogCsv, QuotesAndDisarmsCells) {
  const struct {
    const char *szText, *szCell;
  } aCases[] = {
      {"", ""},
      {"plain text", "plain text"},
      {"a,b", "\"a,b\""},
      {"say \"x\"", "\"say \"\"x\"\"\""},
      {"two\r\nlines", "\"two\r\nlines\""},
      {"=HYPERLINK(\"http://x\",1)", "\"'=HYPERLINK(\"\"http://x\"\",1)\""},
      {"+1", "'+1"},
      {"-1", "'-1"},
      {"@SUM(A1)", "'@SUM(A1)"},
      {"\t=1", "'\t=1"},
      {"1-2", "1-2"},
  };
  for (const auto& aCase : aCases)
    EXPECT_EQ(LogCsv::Cell(aCase.szText), aCase.szCell);
}

TEST(LogCsv, HoldsEveryEntryAndUnreadLine) {
  TestHome aHome;
  LogWeek::Script aScript(JoinDateTime({2026, 1, 5, 8, 0, 0}));
  aScript.Start(true).Up("a/x,y").Entry("(1) http://=b<BR>(2) http://10.0.0.1",
                                        "(1) Request Timed-Out<BR>(2) Site OK", 2,
                                        "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; =cmd");
  aScript.Raw("=torn \"line\"\r\n").End().Raw("12/30/1899 12:00:00 AM,http://c,Site OK,1,,1\r\n");
  aHome.Write("D.kvl", aScript.Text());
  LogHistory aHistory;
  ASSERT_TRUE(aHistory.Open({aHome.Path("D.kvl")}));
  const std::string szHead =
      "Round started,Round kind,Checked at,Site,Address,Outcome,Answer,Seconds,Remarks,Class\r\n";
  const std::string szRows =
      "2026-01-05 08:00:00,by hand,2026-01-05 08:00:00,\"a/x,y\",\"http://a/x,y\",Up,Site OK,1,,1\r\n"
      "2026-01-05 08:00:00,by hand,2026-01-05 08:00:01,'=b,(1) http://=b; (2) http://10.0.0.1,Down,"
      "(1) Request Timed-Out; (2) Site OK,1,IP Check Performed; =cmd,2\r\n"
      "2026-01-05 08:00:00,by hand,,,,Not read,\"'=torn \"\"line\"\"\",,,\r\n"
      ",,,c,http://c,Up,Site OK,1,,1\r\n";
  EXPECT_EQ(LogCsv::Compose(aHistory), szHead + szRows);
  EXPECT_TRUE(LogCsv::Write(aHome.Path("log.csv"), aHistory));
  EXPECT_EQ(aHome.Read("log.csv"), szHead + szRows);

  aHome.Write("D.kvl", aScript.Start().Up("caf\xC3\xA9\xFF").End().Text());
  EXPECT_TRUE(aHistory.Update());
  const auto szTable = LogCsv::Compose(aHistory);
  EXPECT_EQ(szTable.find("\xEF\xBB\xBF" + szHead), 0U) << "beyond ASCII a spreadsheet needs the mark";
  EXPECT_NE(szTable.find("caf\xC3\xA9\xEF\xBF\xBD"), std::string::npos);
}
