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

TEST(LogRows, GoesFromFailureToFailureAndFromFindToFindAroundTheEnd) {
  const TestHome aHome;
  const Opened aHistory(aHome, ThreePasses());
  LogRows aRows;
  aRows.Build(aHistory, {}, true);  // PUFPUDN-PDU
  const struct {
    std::optional<std::size_t> lFrom;
    bool bForward;
    std::optional<std::size_t> lFailure, lShop;
  } aCases[] = {{{}, true, 2, 2},   {2, true, 5, 5},   {5, true, 9, 10}, {10, true, 2, 2},
                {{}, false, 9, 10}, {2, false, 9, 10}, {9, false, 5, 5}};
  for (const auto& aCase : aCases) {
    EXPECT_EQ(aRows.FindFailure(aCase.lFrom, aCase.bForward), aCase.lFailure);
    EXPECT_EQ(aRows.Find(aCase.lFrom, "shop", aCase.bForward), aCase.lShop);
  }
  EXPECT_EQ(aRows.Find({}, "nowhere", true), std::nullopt);
  EXPECT_EQ(aRows.RowOf("shop", AddMinutes(dtMonday, 5), true), 5U) << "the first failure from then on";
  EXPECT_EQ(aRows.RowOf("shop", AddMinutes(dtMonday, 60), true), std::nullopt);
}

TEST(LogRows, EveryColumnSortsTheLinesAlone) {
  const TestHome aHome;
  const Opened aHistory(aHome, ThreePasses());
  const struct {
    LogColumn iColumn;
    const char *szUp, *szDown;  // the results in that order
  } aCases[] = {
      {LogColumn::Time, "UWUDNDU", "UDDNUWU"},    {LogColumn::Result, "DDWUUUN", "NUUUWDD"},
      {LogColumn::Address, "NDWUUUD", "UUDWUDN"}, {LogColumn::Answer, "NDWDUUU", "UUUWDDN"},
      {LogColumn::Seconds, "NUWUDDU", "UWUDDUN"}, {LogColumn::Remarks, "NUWUUDD", "DDUWUUN"},
  };
  for (const auto& aCase : aCases) {
    LogRows aRows;
    aRows.Build(aHistory, {}, true);
    aRows.SortBy(aCase.iColumn, false);
    EXPECT_EQ(Shape(aRows), aCase.szUp) << static_cast<int>(aCase.iColumn);
    aRows.SortBy(aCase.iColumn, true);
    EXPECT_EQ(Shape(aRows), aCase.szDown) << static_cast<int>(aCase.iColumn);
    const auto lFailure = aRows.RowOf("shop", dtMonday, true);
    ASSERT_TRUE(lFailure);
    EXPECT_EQ(aRows.Cell(*lFailure, LogColumn::Result), "Warning") << "the first by time, not by place";
  }
}

// A name that is not known cannot come from an address in numbers: there the log repeats the first result.
TEST(LogWords, AGoodAnswerByIPAddressIsToldWhereItIsKnown) {
  const struct {
    const char *szLogged, *szTold;
  } aCases[] = {
      {"(1) ERROR:  6 Couldn't resolve host name<BR>(2) ERROR:  6 Couldn't resolve host name",
       "(1) ERROR:  6 Couldn't resolve host name<BR>(2) answered"},
      {"(1) 404 File Not Found<BR>(2) 404 File Not Found",
       "(1) 404 File Not Found<BR>(2) 404 File Not Found"},
      {"(1) ERROR:  6 x<BR>(2) Request Timed-Out", "(1) ERROR:  6 x<BR>(2) Request Timed-Out"},
      {"ERROR:  6 x", "ERROR:  6 x"},
      {"", ""},
  };
  for (const auto& aCase : aCases)
    EXPECT_EQ(LogWords::Answer(aCase.szLogged), aCase.szTold);
}

TEST(LogRows, ARowInFullHasItsBreaksAndItsEmphasis) {
  const TestHome aHome;
  const Opened aHistory(aHome, ThreePasses());
  LogRows aRows;
  aRows.Build(aHistory, {}, true);
  const auto Text = [&](std::size_t lRow) {
    std::string szAll;
    for (const auto& aDetail : aRows.Details(lRow)) {
      szAll += aDetail.szName + "=";
      for (const auto& aRun : aDetail.aRuns)
        szAll += aRun.bEmphasis ? "*" + aRun.szText + "*" : aRun.szText;
      szAll += "|";
    }
    return szAll;
  };
  EXPECT_EQ(Text(5),
            "Address=(1) http://shop\n(2) http://192.0.2.17|Time=Mon Jan 5 2026, 8:30:03 AM|Result=Down|"
            "Answer=(1) Request Timed-Out\n(2) Site OK|Remarks=*IP Check Performed*; E-mail Notification "
            "Failed|Seconds=1 (the seconds part only: 75 seconds show as 15)|File=D.kvl|");
  EXPECT_NE(Text(6).find("Line=torn|"), std::string::npos);
  EXPECT_NE(Text(7).find("Mon Jan 5 2026, 8:30:04 AM to Mon Jan 5 2026, 6:30:0"), std::string::npos)
      << Text(7);
}

TEST(LogFiles, AreFoundByWhatTheirNamesTell) {
  const TestHome aHome;
  for (const auto* szName :
       {"D-20260104.kvl", "D-20260105.kvl", "D-20260106.kvl", "W-20251228.kvl", "notes.kvl"})
    aHome.Write(szName, "x");
  const auto Names = [](const std::vector<std::string>& aPaths) {
    std::string szAll;
    for (const auto& szPath : aPaths)
      szAll += LogFiles::NameOf(szPath) + " ";
    return szAll;
  };
  EXPECT_EQ(Names(LogFiles::Later(aHome.Path("D-20260104.kvl"))), "D-20260105.kvl D-20260106.kvl ");
  EXPECT_EQ(Names(LogFiles::Later(aHome.Path("D-20260106.kvl"))), "");
  EXPECT_EQ(Names(LogFiles::Later(aHome.Path("notes.kvl"))), "");
  const StandingClock aClock(AddDays(dtMonday, 1));
  EXPECT_EQ(Names(LogFiles::Recent(aHome.Folder(), 2)), "D-20260105.kvl D-20260106.kvl ");
}

TEST(LogFiles, AMonitorsTwoPathsAreALogAndAPage) {
  const TestHome aHome;
  aHome.Write("odd", "[START CHECK: AUTO - 1/5/2026 8:00:00 AM]\r\n");
  const struct {
    std::vector<std::string> aPaths;
    std::size_t lLogs;
    const char* szPage;
  } aCases[] = {{{"a.kvl", "p.htm"}, 1, "p.htm"},
                {{"a.kvl", "p"}, 1, "p"},
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
