#include <gtest/gtest.h>

#include "history/LogCsv.h"
#include "support/LogScript.h"

TEST(LogCsv, HoldsEveryLineQuotedAndDisarmed) {
  TestHome aHome;
  LogScript aScript;
  aScript.Start(true).Up("a/x,y").Entry("(1) http://=b<BR>(2) http://10.0.0.1",
                                        "(1) Request Timed-Out<BR>(2) Site OK", 2,
                                        "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; =cmd");
  aScript.Raw("=torn \"line\"\r\n").End().Raw("12/30/1899 12:00:00 AM,http://c,Site OK,1,,1\r\n");
  Opened aHistory(aHome, aScript.szText);
  const std::string szHead =
      "Pass started,Pass kind,Checked at,Site,Address,Outcome,Answer,Seconds,Remarks,Class\r\n";
  const std::string szRows =
      "2026-01-05 08:00:00,by hand,2026-01-05 08:00:00,\"a/x,y\",\"http://a/x,y\",Up,Site OK,1,,1\r\n"
      "2026-01-05 08:00:00,by hand,2026-01-05 08:00:01,'=b,(1) http://=b; (2) http://10.0.0.1,Down,"
      "(1) Request Timed-Out; (2) Site OK,1,IP Check Performed; =cmd,2\r\n"
      "2026-01-05 08:00:00,by hand,,,,Not read,\"'=torn \"\"line\"\"\",,,\r\n"
      ",,,c,http://c,Up,Site OK,1,,1\r\n";
  EXPECT_TRUE(LogCsv::Write(aHome.Path("log.csv"), aHistory));
  EXPECT_EQ(aHome.Read("log.csv"), szHead + szRows);
}
