#include <gtest/gtest.h>

#include "history/LogHtml.h"
#include "support/LogScript.h"
#include "support/WellFormed.h"

namespace {

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
  LogScript aScript;
  aScript.Start();
  for (const auto& szText : aHostile)
    aScript.Entry("http://" + szText, szText, 2, szText).Raw("raw " + szText + "\r\n");
  aScript.Entry("(1) http://x<BR>(2) http://y", "(1) z<BR>(2) Site OK", 2,
                "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; E-mail Notification Sent");
  aScript.Entry("http://a", "", 2, "Manually Stopped.").Start().Start(true).Up("a").Start();
  const auto szPage = PageOf(aHome, aScript.szText);
  for (const auto* szTag :
       {"<script", "<img", "<svg onload", "<SPAN", "<BR", "<!--", "onclick=\"x", "]]>", "\x1b"})
    EXPECT_EQ(szPage.find(szTag), std::string::npos) << szTag;
  EXPECT_EQ(szPage.find('\0'), std::string::npos);
  for (const auto* szPart :
       {"(1) z<br/>(2) Site OK",
        "<span class=\"Emphasis\">IP Check Performed</span>; E-mail Notification Sent", "(stopped by hand)",
        "(its end is missing)", "(a check of 1 site alone, or broken off)", "<bdi>raw &lt;script"})
    EXPECT_NE(szPage.find(szPart), std::string::npos) << szPart;
  ExpectWellFormed(aHome, szPage);
}

TEST(LogHtml, HoldsTheEntriesAroundFailuresUnlessAllAreWanted) {
  TestHome aHome;
  LogScript aScript;
  for (const char* szStory : {"UU", "UU", "UW", "UD", "UU", "UU", "UU"}) {
    aScript.Start();
    for (const auto& szSite : {"a", "b"}) {
      const char chState = szStory[szSite[0] - 'a'];
      if (chState == 'U') aScript.Up(szSite);
      if (chState == 'W') aScript.Warn(szSite);
      if (chState == 'D') aScript.Down(szSite);
    }
    aScript.End().After(30);
  }
  auto szPage = PageOf(aHome, aScript.szText);
  EXPECT_EQ(Occurrences(szPage, "scope=\"rowgroup\""), 3U);
  EXPECT_EQ(Occurrences(szPage, "<td>http://a</td>"), 0U);
  EXPECT_EQ(Occurrences(szPage, "<td>http://b</td>"), 3U) << "once, down, up again";
  EXPECT_EQ(Occurrences(szPage, ">2 passes in which no check failed<"), 2U);
  EXPECT_NE(szPage.find("This page holds 3 of 28 lines"), std::string::npos);
  ExpectWellFormed(aHome, szPage);
  LogHtml::Limits aLimits;
  aLimits.lLines = 2;
  szPage = PageOf(aHome, aScript.szText, aLimits);
  EXPECT_EQ(Occurrences(szPage, "<td>http://b</td>"), 2U) << "down, up again";
  EXPECT_NE(szPage.find("This page holds the last 2 of 3 lines."), std::string::npos);
  ExpectWellFormed(aHome, szPage);
  aLimits = {.bEveryEntry = true};
  szPage = PageOf(aHome, aScript.szText, aLimits);
  EXPECT_EQ(Occurrences(szPage, "scope=\"rowgroup\""), 7U);
  EXPECT_EQ(Occurrences(szPage, "<td>http://a</td>"), 7U);
}
