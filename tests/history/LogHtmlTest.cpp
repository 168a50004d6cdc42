#include <gtest/gtest.h>

#include "history/LogHtml.h"
#include "support/LogScript.h"
#include "support/WellFormed.h"

namespace {

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
  const Opened aHistory(aHome, aScript.szText);
  const auto szPage = LogHtml::Compose(aHistory, Summarise(aHistory));
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
