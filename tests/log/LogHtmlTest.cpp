#include <gtest/gtest.h>

#include <cstdlib>

#include "log/LogBench.h"
#include "log/LogHtml.h"

namespace {

std::size_t Occurrences(const std::string& szText, const std::string& szPart) {
  std::size_t lCount = 0;
  for (auto lAt = szText.find(szPart); lAt != std::string::npos; lAt = szText.find(szPart, lAt + 1))
    ++lCount;
  return lCount;
}

std::string PageOf(const TestHome& aHome, const std::string& szText, const LogHtml::Limits& aLimits = {}) {
  const Opened aHistory(aHome, szText);
  return LogHtml::Compose(aHistory, Summarise(aHistory), aLimits);
}

const std::string aHostile[] = {"<script>alert(1)</script>",
                                "\"><img src=x onerror=alert(1)>",
                                "' onmouseover='alert(1)",
                                "]]></title></style><svg onload=alert(1)>",
                                "&lt;b&gt; &#60;i&#62; &amp",
                                "-->\x01\x1b[31m\x7f\xC2\x85<!--",
                                "\xC0\xBCscript\xC0\xBE \xED\xA0\x80 \xF4\x90\x80\x80 \xFF\xFE \xEF\xBF\xBE",
                                "<BR/><br><BR onclick=x>",
                                "<SPAN class=\"Emphasis\" onclick=\"x\">a</SPAN>",
                                std::string("nul\0byte", 8)};

}  // namespace

TEST(LogHtml, LetsNothingHostileIn) {
  TestHome aHome;
  LogWeek::Script aScript(dtMonday);
  aScript.Start();
  for (const auto& szText : aHostile)
    aScript.Entry("http://" + szText, szText, 2, szText).Raw("raw " + szText + "\r\n");
  aScript.Entry("(1) http://x<BR>(2) http://y", "(1) z<BR>(2) Site OK", 2).End();
  const auto szPage = PageOf(aHome, aScript.Text());
  for (const auto* szTag :
       {"<script", "<img", "<svg onload", "<SPAN", "<BR", "<!--", "onclick=\"x", "]]>", "\x1b"})
    EXPECT_EQ(szPage.find(szTag), std::string::npos) << szTag;
  EXPECT_EQ(szPage.find('\0'), std::string::npos);
  EXPECT_NE(szPage.find("(1) z<br/>(2) Site OK"), std::string::npos);
  aHome.Write("hostile.htm", szPage);
  aHome.Write("week.htm", PageOf(aHome, LogWeek::Text()));
  const auto szOut = " > \"" + aHome.Path("out.txt") + "\" 2>&1";
  if (std::system(("xmllint --version" + szOut).c_str()) != 0) GTEST_SKIP() << "xmllint is not installed";
  for (const auto* szName : {"hostile.htm", "week.htm"})
    EXPECT_EQ(std::system(("xmllint --noout \"" + aHome.Path(szName) + "\"" + szOut).c_str()), 0)
        << szName << ": " << aHome.Read("out.txt").substr(0, 2000);
}

TEST(LogHtml, SaysHowThingsStandAndShowsEverything) {
  TestHome aHome;
  TestClock aClock(JoinDateTime({2026, 1, 12, 9, 0, 0}));
  const auto szPage = PageOf(aHome, LogWeek::Text());
  for (const auto* szPart :
       {"<span>2 of 5 sites are down.</span>", "Made by Kestrova", "Mon Jan 12 2026, 9:00 AM.",
        "Not watched: Wed Jan 7 2026, 3:00 PM to Thu Jan 8 2026, 1:00 AM (10 h)",
        "<span class=\"Emphasis\">IP Check Performed</span>; E-mail Notification Sent", "(stopped by hand)",
        "(its end is missing)", "<span class=\"raw\"><bdi>1/6/2026 9:32:0</bdi></span>"})
    EXPECT_NE(szPage.find(szPart), std::string::npos) << szPart;
  EXPECT_EQ(Occurrences(szPage, "scope=\"rowgroup\""), 261U);
  EXPECT_EQ(szPage.find("src="), std::string::npos) << "nothing is loaded from elsewhere";
}

TEST(LogHtml, ShowsTheLastWholePassesOfALongLog) {
  TestHome aHome;
  LogHtml::Limits aLimits;
  aLimits.lLines = 52 * 3 + 10;
  aLimits.lSites = 7;
  const auto szPage = PageOf(aHome, LogWeek::Long(20), aLimits);
  EXPECT_EQ(Occurrences(szPage, "scope=\"rowgroup\""), 3U);
  EXPECT_EQ(Occurrences(szPage, "role=\"img\""), 7U);
  EXPECT_NE(szPage.find("This page holds the last 156 of 1,040 lines."), std::string::npos);
}
