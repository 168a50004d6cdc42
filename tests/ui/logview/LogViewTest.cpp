// The log viewer's window over real files.
#include <gtest/gtest.h>
#include <wx/choice.h>
#include <wx/notebook.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/weakref.h>

#include <algorithm>
#include <filesystem>

#include "platform/Files.h"
#include "platform/StandingClock.h"
#include "support/ChildProcess.h"
#include "support/LogScript.h"
#include "ui/Operator.h"
#include "ui/common/TextGlue.h"
#include "ui/logview/CellView.h"
#include "ui/logview/EntriesPage.h"
#include "ui/logview/LogView.h"
#include "ui/logview/MorePages.h"
#include "ui/logview/OutagesPage.h"
#include "ui/logview/StripView.h"
#include "ui/logview/SummaryPage.h"
#include "ui/logview/frmLogView.h"

namespace {

using Command = frmLogView::Command;

// The viewer as started with some files of its home; the answers are for boxes at the start.
class Viewer {
 public:
  Viewer(const std::vector<std::pair<std::string, std::string>>& aFiles, const Texts& aNames,
         const Texts& aAnswers = {}) {
    Texts aPaths;
    for (const auto& [szName, szText] : aFiles)
      aHome.Write(szName, szText);
    for (const auto& szName : aNames)
      aPaths.push_back(szName.empty() ? aHome.Folder() : aHome.Path(szName));
    Answers aStart(aAnswers);
    pWindow = LogView::Start(aPaths);
    EXPECT_TRUE(Until([&] {
      return pWindow->History() || aStart.aSaid.size() == std::max<std::size_t>(1, aAnswers.size());
    }));
  }
  ~Viewer() {
    pWindow->Destroy();
    Until([this] { return !pWindow; });
  }
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;
  EntriesPage& Entries() { return *pWindow->pixEntries; }
  VirtualTable& List() { return *Entries().lvwEntries; }
  long Rows() { return static_cast<long>(Entries().Rows().Count()); }
  std::string Row(long lRow) {
    std::string szRow;
    for (int i = 0; i < 6; ++i)
      szRow += (i > 0 ? "|" : "") +
               Entries().Rows().Cell(static_cast<std::size_t>(lRow), static_cast<LogColumn>(i));
    return szRow;
  }
  std::string Status(int iPanel) { return FromWx(pWindow->GetStatusBar()->GetStatusText(iPanel)); }
  void Choose(wxChoice* cboFilter, const char* szChoice) {
    cboFilter->SetStringSelection(szChoice);
    wxCommandEvent aChosen(wxEVT_CHOICE, cboFilter->GetId());
    cboFilter->ProcessWindowEvent(aChosen);
  }
  // Writes the file anew, as if it had grown, and lets the viewer look.
  void Write(const std::string& szName, const std::string& szText) {
    aHome.Write(szName, szText);
    pWindow->tmrFollow_Timer();
  }

  TestHome aHome;
  wxWeakRef<frmLogView> pWindow;
};

void ClickHeader(const VirtualTable& aTable, int iColumn) {
  wxListEvent aClick(wxEVT_LIST_COL_CLICK, aTable.List()->GetId());
  aClick.m_col = iColumn;
  aTable.List()->ProcessWindowEvent(aClick);
}

std::string Day(int lDay) {
  return LogScript{AddDays(dtMonday, lDay)}.Start().Up("a.com").End().szText;
}

// A hundred passes over two days; the shop fails from the 32nd to the 53rd, and is asked by IP address.
std::string TwoDays() {
  LogScript aScript;
  for (int lPass = 1; lPass <= 100; ++lPass) {
    const auto dtNext = AddMinutes(aScript.dtNow, 30);
    aScript.Start(lPass == 1).Up("www.example.com");
    if (lPass < 32 || lPass > 53)
      aScript.Up("shop.example.com");
    else if (lPass == 33)
      aScript.Entry("(1) http://shop.example.com<BR>(2) http://192.0.2.17",
                    "(1) Request Timed-Out<BR>(2) Site OK", 2,
                    "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; E-mail Notification Sent", 21);
    else
      aScript.Entry("http://shop.example.com", "500 Internal Server Error", lPass == 32 ? 4 : 2, "", 9);
    if (lPass == 60)
      aScript.Raw("1/6/2026 9:32:0\r\n").Entry("http://old.example.org", "", 2, "Manually Stopped.");
    aScript.End().dtNow = dtNext;
  }
  return aScript.szText;
}

// Just after the last pass of those two days: the log is of now.
const DateTime dtAfterTwoDays = AddMinutes(dtMonday, 100 * 30 - 20);

class LogOfNow : public testing::Test {
 protected:
  StandingClock aClock{dtAfterTwoDays};
  Viewer aViewer{{{"W-20260104.kvl", TwoDays()}}, {"W-20260104.kvl"}};
};

}  // namespace

TEST_F(LogOfNow, OpensOnItsLastEntryAPastOneAndAFolderOnTheSummary) {
  EXPECT_EQ(aViewer.pWindow->tabPages->GetSelection(), 0);
  EXPECT_EQ(aViewer.Row(0), "1/5/2026 8:00:00 AM|Mon|Pass started by hand|2 Up||");
  EXPECT_EQ(aViewer.List().Focused(), aViewer.Rows() - 1);
  EXPECT_EQ(aViewer.Status(1), "1 line not read");
  aClock.Advance(600 * 60);
  Viewer aPast({{"W-20260104.kvl", TwoDays()}}, {"W-20260104.kvl"});
  EXPECT_EQ(aPast.pWindow->tabPages->GetSelection(), 1);
  Viewer aFolder({{"D-20260105.kvl", Day(0)}}, {""});
  EXPECT_EQ(aFolder.pWindow->tabPages->GetSelection(), 1);
}

TEST_F(LogOfNow, ASecondOneForTheSameLogHandsItsSiteToTheFirst) {
  aViewer.pWindow->RunCommand(Command::mV_Summary);
  const auto szLog = aViewer.aHome.Path("W-20260104.kvl");
  for (const auto& [szSite, szShown] : {std::pair{"http://shop.example.com", "100 of 202 entries shown"},
                                        std::pair{"http://new.example.com", "0 of 202 entries shown"}}) {
    ChildProcess aSecond(ChildProcess::BuiltProgram("LogView"), {"--site", szSite, szLog});
    EXPECT_TRUE(Until([&] { return aSecond.Wait(0) != ChildProcess::lRunning; })) << szSite;
    EXPECT_EQ(aSecond.Wait(0), 0);
    EXPECT_EQ(aViewer.Status(0), szShown);
    EXPECT_EQ(aViewer.pWindow->tabPages->GetSelection(), 0);
  }
}

TEST_F(LogOfNow, FiltersBySiteResultWordsMailsAndIPChecks) {
  auto& aEntries = aViewer.Entries();
  aViewer.Choose(aEntries.cboSite, "shop.example.com");
  aViewer.Choose(aEntries.cboOutcome, "Down");
  EXPECT_EQ(aViewer.Status(0), "21 of 202 entries shown");
  // The IP check's marks read as a break and as emphasis, never as tags.
  aViewer.List().GoTo(1);
  EXPECT_EQ(aViewer.pWindow->CopyText(),
            "1/6/2026 12:00:01 AM\tDown\t(1) http://shop.example.com; (2) http://192.0.2.17\t"
            "(1) Request Timed-Out; (2) Site OK\t21\tIP Check Performed; E-mail Notification Sent\n");
  EXPECT_EQ(TextOf(aEntries.txtDetails).find('<'), std::string::npos);
  aViewer.pWindow->RunCommand(Command::mV_Everything);
  EXPECT_EQ(aViewer.Status(0), "201 entries in 100 passes");
  aEntries.txtWords->SetValue("TIMED-out shop");
  ASSERT_TRUE(Until([&] { return aViewer.Status(0).starts_with("1 of"); })) << aViewer.Status(0);
}

TEST_F(LogOfNow, FindsAroundTheEndAndSaysWhatAFilterHides) {
  auto& aEntries = aViewer.Entries();
  const auto Find = [&](const char* szWords) {
    aEntries.txtFind->SetValue(szWords);
    aViewer.pWindow->RunCommand(Command::mE_FindNext);
    return FromWx(aEntries.lblFound->GetLabelText());
  };
  aViewer.pWindow->RunCommand(Command::mE_Find);
  EXPECT_EQ(Find("manually"), "Continued from the other end.");
  EXPECT_NE(aViewer.Row(aViewer.List().Focused()).find("Manually Stopped."), std::string::npos);
  EXPECT_EQ(Find("nowhere"), "Not found.");
  aViewer.Choose(aEntries.cboOutcome, "Up");
  EXPECT_EQ(Find("manually"), "Not found here, but among the entries that the filter hides.");
}

TEST_F(LogOfNow, AnOutageLeadsToItsBeginningInTheUpperThird) {
  aViewer.pWindow->RunCommand(Command::mV_Outages);
  auto& aOutages = *aViewer.pWindow->pixOutages->lvwOutages;
  ASSERT_EQ(aOutages.Rows(), 1U);
  EXPECT_EQ(aOutages.Cell(0, 5), "sent after 30 min");
  aOutages.Activated(0);
  EXPECT_EQ(aViewer.pWindow->tabPages->GetSelection(), 0);
  EXPECT_EQ(aViewer.Row(aViewer.List().Focused()),
            "1/5/2026 11:30:01 PM|Warning|http://shop.example.com|500 Internal Server Error|9|");
  const auto lBelowTop = aViewer.List().Focused() - static_cast<long>(aViewer.List().TopRow());
  EXPECT_TRUE(lBelowTop >= 0 && lBelowTop <= aViewer.List().List()->GetCountPerPage() / 3) << lBelowTop;
}

TEST_F(LogOfNow, PagesOfWeeksAreMadeWhenTheyAreTurnedTo) {
  auto& aWindow = *aViewer.pWindow;
  EXPECT_EQ(TextOf(aWindow.pixPasses->txtWords), "");
  const struct {
    Command iCommand;
    const MorePage* pPage;
    const char *szWords, *szCopied;
  } aCases[] = {
      {Command::mV_PagePasses, aWindow.pixPasses, "A pass takes 2 s, the longest took 22 s", "By hand"},
      {Command::mV_PagePace, aWindow.pixPace, "No site has clearly become slower",
       "shop.example.com\tno clear"},
      {Command::mV_PageHours, aWindow.pixHours, "Too few to point at an hour.", "All days "},
      {Command::mV_PagePeriods, aWindow.pixPeriods, "shop.example.com got better most",
       "shop.example.com\t"}};
  for (const auto& aCase : aCases) {
    aWindow.RunCommand(aCase.iCommand);
    EXPECT_NE(TextOf(aCase.pPage->txtWords).find(aCase.szWords), std::string::npos)
        << TextOf(aCase.pPage->txtWords);
    aWindow.RunCommand(Command::mE_SelectAll);
    EXPECT_NE(aWindow.CopyText().find(aCase.szCopied), std::string::npos) << aWindow.CopyText();
  }
}

TEST_F(LogOfNow, CellsAreReadWithTheKeys) {
  aViewer.pWindow->RunCommand(Command::mV_PageHours);
  ASSERT_TRUE(Focused(aViewer.pWindow->pixHours->picHours));
  Key(WXK_DOWN);
  Key(WXK_END);
  ASSERT_TRUE(Until([&] { return aViewer.Status(0) == "Mon, 11 PM to 12 AM: 1 failure began in 4 checks"; }))
      << aViewer.Status(0);
}

TEST(LogView, WritesAPageAndNeverOverALog) {
  const auto szText = TwoDays();
  Viewer aViewer({{"W-20260104.kvl", szText}}, {"W-20260104.kvl", "page.htm"});
  ASSERT_TRUE(Until([&] { return !aViewer.aHome.Read("page.htm").empty(); }));
  EXPECT_NE(aViewer.aHome.Read("page.htm").find("All 2 sites were up"), std::string::npos);
  Answers aAnswers({"ok", "ok"});
  for (const char* szName : {"W-20260104.kvl", "D-20260105.kvl"})
    EXPECT_FALSE(aViewer.pWindow->SavePage(aViewer.aHome.Path(szName))) << szName;
  EXPECT_EQ(aViewer.aHome.Read("W-20260104.kvl"), szText);
}

TEST(LogView, FollowsAFileThatGrowsAndIsCut) {
  const StandingClock aClock(dtMonday);
  Viewer aViewer({{"D-1.kvl", ""}}, {"D-1.kvl"});
  auto& aList = aViewer.List();
  auto szText = TwoDays();
  szText.resize(szText.rfind('['));  // the last pass is still running
  aViewer.Write("D-1.kvl", szText);
  EXPECT_TRUE(aList.AtEnd());
  aViewer.Write("D-1.kvl", szText += "1/6/2026 9:00:00 AM,http://new.example.com,Site OK,1,,1\r\n");
  EXPECT_EQ(aViewer.Row(aViewer.Rows() - 1), "1/6/2026 9:00:00 AM|Up|http://new.example.com|Site OK|1|");
  EXPECT_TRUE(aList.AtEnd());
  // Not at the end: nothing moves.
  aList.GoTo(20);
  aList.ScrollToTop(15);
  const auto lTop = aList.TopRow();
  aViewer.Write("D-1.kvl", szText += TwoDays());
  EXPECT_EQ(aList.TopRow(), lTop);
  EXPECT_EQ(aList.Focused(), 20);
  aViewer.Write("D-1.kvl", szText.substr(0, 500));
  EXPECT_LT(aList.Focused(), 12);
}

TEST(LogView, GoesOnToTheNextDaysFileAndToANewOneOfItsFolder) {
  Viewer aFolder({{"D-20260108.kvl", Day(3)}, {"D-20260102.kvl", Day(-3)}}, {""});
  EXPECT_EQ(aFolder.Status(0), "2 entries in 2 passes");
  aFolder.Write("D-20260109.kvl", Day(4));
  EXPECT_EQ(aFolder.Status(0), "3 entries in 3 passes");

  Viewer aNewest({{"D-20260105.kvl", Day(0)}, {"D-20260104.kvl", Day(-1)}}, {"D-20260105.kvl"});
  aNewest.Write("D-20260106.kvl", Day(1));
  EXPECT_EQ(aNewest.Status(0), "2 entries in 2 passes") << "midnight";
  aNewest.aHome.Write("D-20260107.kvl", Day(2));
  std::filesystem::remove(aNewest.aHome.Path("D-20260105.kvl"));  // pruned
  aNewest.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aNewest.Status(0), "2 entries in 2 passes");

  Viewer aOld({{"D-20260105.kvl", Day(0)}, {"D-20260106.kvl", Day(1)}}, {"D-20260105.kvl"});
  aOld.Write("D-20260107.kvl", Day(2));
  EXPECT_EQ(aOld.Status(0), "1 entry in 1 pass") << "an old day was opened to be looked at";
}

TEST_F(LogOfNow, WarnsWhenNothingIsWrittenAnyMore) {
  aViewer.pWindow->RunCommand(Command::mV_Summary);
  aViewer.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aViewer.pWindow->Notice(), "");
  aClock.Advance(4 * 3600);
  aViewer.pWindow->tmrFollow_Timer();
  EXPECT_TRUE(aViewer.pWindow->Notice().starts_with("Nothing was written since Wed Jan 7 2026, 9:30 AM (4 h"))
      << aViewer.pWindow->Notice();
  LogScript aMore{AddMinutes(dtAfterTwoDays, 4 * 60)};
  aViewer.Write("W-20260104.kvl", TwoDays() + aMore.Start().Up("www.example.com").End().szText);
  aViewer.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aViewer.pWindow->Notice(), "");
}

TEST(LogView, AnEmptyLogSaysSinceWhenNothingWasWritten) {
  StandingClock aClock(dtAfterTwoDays);
  Viewer aAlone({{"D-20260107.kvl", ""}}, {"D-20260107.kvl"});
  EXPECT_EQ(aAlone.pWindow->tabPages->GetSelection(), 0);
  EXPECT_EQ(aAlone.pWindow->Notice(), "");
  // The disk became full at midnight: the new file is there, and stays empty.
  Viewer aViewer({{"D-20260105.kvl", TwoDays()}, {"D-20260108.kvl", ""}}, {"D-20260108.kvl"});
  aClock.Advance(24 * 3600);
  aViewer.pWindow->tmrFollow_Timer();
  EXPECT_TRUE(aViewer.pWindow->Notice().starts_with("Nothing was written since Wed Jan 7 2026, 9:30 AM (1 d"))
      << aViewer.pWindow->Notice();
}

TEST(LogView, EntriesSortByEveryHeaderAndFollowOn) {
  const StandingClock aClock(dtMonday);
  LogScript aScript{dtMonday};
  aScript.Start().Up("b.com").Up("c.com").Down("a.com").End().After(30);
  Viewer aViewer({{"D-1.kvl", aScript.szText}}, {"D-1.kvl"});
  const auto Sites = [&] {
    std::string szSites;
    for (long lRow = 0; lRow < aViewer.Rows(); ++lRow) {
      const auto szRow = aViewer.Row(lRow);
      const auto lSite = szRow.find("http://");
      szSites += lSite == std::string::npos ? '-' : szRow[lSite + 7];
    }
    return szSites;
  };
  EXPECT_EQ(Sites(), "-bca");
  ClickHeader(aViewer.List(), static_cast<int>(LogColumn::Address));
  EXPECT_EQ(Sites(), "abc");
  ClickHeader(aViewer.List(), static_cast<int>(LogColumn::Address));
  aViewer.List().GoTo(0);
  aViewer.Write("D-1.kvl", aScript.Start().Up("d.com").Up("a.com").End().szText);
  EXPECT_EQ(Sites(), "dcbaa");
  EXPECT_EQ(aViewer.List().Focused(), 1) << "the row that was looked at";
  ClickHeader(aViewer.List(), static_cast<int>(LogColumn::Address));
  EXPECT_EQ(Sites(), "-bca-da") << "its own order, with its passes";
}

TEST_F(LogOfNow, KeysGoAlongTheStripsAndEnterLeadsToTheMoment) {
  aViewer.pWindow->RunCommand(Command::mV_Summary);
  auto& aStrips = *aViewer.pWindow->pixSummary->picStrips;
  aStrips.SetFocus();
  ASSERT_TRUE(Focused(&aStrips));
  Key(WXK_HOME);
  EXPECT_EQ(aViewer.Status(0), "shop.example.com: Up: Mon Jan 5 2026, 8:00 AM to Mon Jan 5 2026, 11:30 PM");
  Key(WXK_RIGHT);
  EXPECT_EQ(aViewer.Status(0),
            "shop.example.com: Down: Mon Jan 5 2026, 11:30 PM to Tue Jan 6 2026, 10:30 AM");
  Key(WXK_RETURN);
  EXPECT_EQ(aViewer.pWindow->tabPages->GetSelection(), 0);
  EXPECT_EQ(aViewer.Row(aViewer.List().Focused()),
            "1/5/2026 11:30:01 PM|Warning|http://shop.example.com|500 Internal Server Error|9|");
}

TEST(LogView, HostileMissingAndNoFilesGetPlainWords) {
  Viewer aViewer({{"bad.kvl", "<script>" + std::string(300000, 'x') + std::string("\n\0\xFF", 3)},
                  {"good.kvl", TwoDays()}},
                 {"bad.kvl"});
  EXPECT_TRUE(aViewer.pWindow->Notice().starts_with("This does not look like a check log"));
  const auto szGone = aViewer.aHome.Path("gone.kvl");
  EXPECT_TRUE(aViewer.pWindow->OpenLogs({aViewer.aHome.Path("good.kvl"), szGone}));
  EXPECT_TRUE(aViewer.pWindow->Notice().starts_with("1 of 2 logs cannot be read"));
  {
    Answers aAnswers({"ok"});
    EXPECT_FALSE(aViewer.pWindow->OpenLogs({szGone}));
  }
  EXPECT_NE(aViewer.pWindow->History(), nullptr) << "what was shown stays";
  Viewer aNothing({}, {}, {"cancel"});
  for (const auto iCommand : {Command::mE_FindNext, Command::mV_Everything, Command::mV_Outages})
    aNothing.pWindow->RunCommand(iCommand);
  EXPECT_EQ(aNothing.pWindow->History(), nullptr);
}
