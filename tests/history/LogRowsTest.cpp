// The viewer's list and what it opens, without a window.
#include <gtest/gtest.h>

#include "history/LogFiles.h"
#include "history/LogFilter.h"
#include "history/LogRows.h"
#include "history/LogWords.h"
#include "platform/Files.h"
#include "support/LogScript.h"

namespace {

constexpr char szIPCheck[] = "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>";

// Three passes, ten hours between the second and the third.
std::string ThreePasses() {
  LogScript aScript;
  aScript.Start(true).Up("www").Warn("shop").End().After(30);
  aScript.Start().Up("www").Entry("(1) http://shop<BR>(2) http://192.0.2.17",
                                  "(1) Request Timed-Out<BR>(2) Site OK", 2,
                                  std::string(szIPCheck) + "; E-mail Notification Failed");
  aScript.Raw("torn\r\n").End().After(600);
  aScript.Start().Entry("http://www", "404 File Not Found", 2, "E-mail Notification Sent").Up("shop").End();
  return aScript.szText;
}

// One letter a row: P pass, - gap, else the result's first letter.
std::string Shape(const LogRows& aRows) {
  std::string szShape;
  for (std::size_t lRow = 0; lRow < aRows.Count(); ++lRow)
    szShape += aRows.KindOf(lRow) == LogRows::Kind::Pass  ? "P"
               : aRows.KindOf(lRow) == LogRows::Kind::Gap ? "-"
                                                          : aRows.Cell(lRow, LogColumn::Result).substr(0, 1);
  return szShape;
}

}  // namespace

TEST(LogRows, AFilterShowsItsEntriesUnderTheirPasses) {
  const TestHome aHome;
  const Opened aHistory(aHome, ThreePasses());
  using Remark = LogFilter::Remark;
  const struct {
    LogFilter aFilter;
    bool bPasses;
    const char *szShape, *szFirstPass;  // what the first pass says it holds
  } aCases[] = {
      {{}, true, "PUWPUDN-PDU", "1 Warning, 1 Up"},
      {{}, false, "UWUDN-DU", nullptr},
      {{"SHOP", LogFilter::lEvery, Remark::Any, ""}, true, "PWPD-PU", "1 Warning"},
      {{"", LogFilter::Bit(Outcome::Down), Remark::Any, ""}, true, "PDPD", "1 Down"},
      {{"", LogFilter::lEvery, Remark::Mail, ""}, true, "PDPD", "1 Down"},
      {{"", LogFilter::lEvery, Remark::FailedMail, ""}, true, "PD", "1 Down"},
      {{"", LogFilter::lEvery, Remark::IPCheck, ""}, true, "PD", "1 Down"},
      {{"www", LogFilter::lEvery, Remark::Mail, ""}, true, "PD", "1 Down"},
      {{"", LogFilter::lEvery, Remark::Any, "TIMED shop"}, true, "PD", "1 Down"},
      {{"", LogFilter::lEvery, Remark::Any, "nowhere"}, true, "", nullptr},
      {{"gone", LogFilter::lEvery, Remark::Any, ""}, true, "", nullptr},
  };
  for (const auto& aCase : aCases) {
    LogRows aRows;
    aRows.Build(aHistory, aCase.aFilter, aCase.bPasses);
    EXPECT_EQ(Shape(aRows), aCase.szShape);
    if (aCase.szFirstPass) {
      EXPECT_EQ(aRows.Cell(0, LogColumn::Answer), aCase.szFirstPass);
    }
  }
}

// A name that is not known cannot come from an address in numbers: there the log repeats the first result.
TEST(LogWords, AGoodAnswerByIPAddressIsToldWhereItIsKnown) {
  EXPECT_EQ(LogWords::Answer("(1) ERROR:  6 x<BR>(2) ERROR:  6 x"), "(1) ERROR:  6 x<BR>(2) answered");
  for (const char* szAsLogged :
       {"(1) 404 x<BR>(2) 404 x", "(1) ERROR:  6 x<BR>(2) Request Timed-Out", "ERROR:  6 x", ""})
    EXPECT_EQ(LogWords::Answer(szAsLogged), szAsLogged);
}

TEST(LogFiles, AMonitorsTwoPathsAreALogAndAPage) {
  const TestHome aHome;
  aHome.Write("odd", "[START CHECK: AUTO - 1/5/2026 8:00:00 AM]\r\n");
  const struct {
    std::vector<std::string> aPaths;
    std::size_t lLogs;
    const char* szPage;
  } aCases[] = {{{"a.kvl", "p.htm"}, 1, "p.htm"},
                {{"a.kvl", "b.kvl"}, 2, ""},
                {{"a.kvl", aHome.Path("odd")}, 2, ""},
                {{"a.kvl", "b.kvl", "p.html"}, 2, "p.html"},
                {{"a.kvl", aHome.Folder()}, 2, ""},
                {{"--site", "http://x.test", "a.kvl"}, 1, ""},
                {{"", "a.kvl"}, 1, ""}};
  for (const auto& aCase : aCases) {
    const auto aRead = LogFiles::Read(aCase.aPaths);
    EXPECT_EQ(aRead.aLogs.size(), aCase.lLogs);
    EXPECT_EQ(aRead.szPage.empty() ? "" : LogFiles::NameOf(aRead.szPage), aCase.szPage);
  }
}
