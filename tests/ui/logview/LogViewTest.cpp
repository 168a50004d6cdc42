// The log viewer's window over real files.
#include <gtest/gtest.h>
#include <wx/choice.h>
#include <wx/notebook.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <filesystem>

#include "support/ChildProcess.h"
#include "support/LogScript.h"
#include "ui/Operator.h"
#include "ui/common/TextGlue.h"
#include "ui/common/frmHelp.h"
#include "ui/logview/EntriesPage.h"
#include "ui/logview/LogView.h"
#include "ui/logview/SummaryPage.h"
#include "ui/logview/frmLogView.h"

namespace {

using Command = frmLogView::Command;

// The viewer as started with some files of its home; the answers are for boxes at the start.
class Viewer {
 public:
  Viewer(const std::vector<std::pair<std::string, std::string>>& aFiles,
         const std::vector<std::string>& aNames, const Texts& aAnswers = {}) {
    std::vector<std::string> aPaths;
    for (const auto& [szName, szText] : aFiles)
      aHome.Write(szName, szText);
    for (const auto& szName : aNames)
      aPaths.push_back(szName.empty() ? aHome.Folder() : aHome.Path(szName));
    Answers aStart(aAnswers);
    pWindow = LogView::Start(aPaths);
    PumpFor(0.1);
  }
  ~Viewer() {
    pWindow->Destroy();
    PumpFor(0.02);
  }
  EntriesPage& Entries() { return *pWindow->pixEntries; }
  long Rows() { return static_cast<long>(Entries().Rows().Count()); }
  std::string Row(long lRow) {
    std::string szRow;
    for (int i = 0; i < 6; ++i)
      szRow += (i > 0 ? "|" : "") +
               Entries().Rows().Cell(static_cast<std::size_t>(lRow), static_cast<LogColumn>(i));
    return szRow;
  }
  std::string Status(int iPanel) { return FromWx(pWindow->GetStatusBar()->GetStatusText(iPanel)); }

  TestHome aHome;
  frmLogView* pWindow;
};

// A hundred rounds over two days; the shop fails from the 32nd to the 53rd, and is asked by IP address.
std::string TwoDays() {
  LogScript aScript;
  for (int lRound = 1; lRound <= 100; ++lRound) {
    const auto dtNext = AddMinutes(aScript.dtNow, 30);
    aScript.Start(lRound == 1).Up("www.example.com");
    if (lRound < 32 || lRound > 53)
      aScript.Up("shop.example.com");
    else if (lRound == 33)
      aScript.Entry("(1) http://shop.example.com<BR>(2) http://192.0.2.17",
                    "(1) Request Timed-Out<BR>(2) Site OK", 2,
                    "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>; E-mail Notification Sent", 21);
    else
      aScript.Entry("http://shop.example.com", "500 Internal Server Error", lRound == 32 ? 4 : 2, "", 9);
    if (lRound == 60)
      aScript.Raw("1/6/2026 9:32:0\r\n").Entry("http://old.example.org", "", 2, "Manually Stopped.");
    aScript.End().dtNow = dtNext;
  }
  return aScript.szText;
}

}  // namespace

TEST(LogView, ShowsFiltersFindsSavesAndLeadsFromAnOutageToItsEntry) {
  const auto szText = TwoDays();
  Viewer aViewer({{"W-20260104.kvl", szText}}, {"W-20260104.kvl", "page.htm"});
  EXPECT_NE(aViewer.aHome.Read("page.htm").find("All 2 sites"), std::string::npos);
  Answers aAnswers({"ok"});
  EXPECT_FALSE(aViewer.pWindow->SavePage(aViewer.aHome.Path("W-20260104.kvl")));
  EXPECT_EQ(aViewer.aHome.Read("W-20260104.kvl"), szText);
  auto& aEntries = aViewer.Entries();
  auto& aList = *aEntries.lvwEntries;
  EXPECT_EQ(aViewer.Row(0), "1/5/2026 8:00:00 AM|Mon|Pass started by hand|2 Up||");
  EXPECT_EQ(aViewer.Status(1), "1 line not read");
  EXPECT_EQ(aList.Focused(), aViewer.Rows() - 1);
  // Down, at one site: the IP check's marks read as a break and as emphasis, never as tags.
  aEntries.cboSite->SetSelection(2);
  aEntries.cboOutcome->SetStringSelection("Down");
  wxPostEvent(aEntries.cboSite, wxCommandEvent(wxEVT_CHOICE, aEntries.cboSite->GetId()));
  ASSERT_TRUE(Until([&] { return aViewer.Status(0) == "21 of 202 entries shown"; })) << aViewer.Status(0);
  aList.GoTo(1);
  EXPECT_EQ(aViewer.pWindow->CopyText(),
            "1/6/2026 12:00:01 AM\tDown\t(1) http://shop.example.com; (2) http://192.0.2.17\t"
            "(1) Request Timed-Out; (2) Site OK\t21\tIP Check Performed; E-mail Notification Sent\n");
  EXPECT_EQ(TextOf(aEntries.txtDetails).find('<'), std::string::npos);
  aViewer.pWindow->RunCommand(Command::mV_Everything);
  aEntries.txtWords->SetValue("TIMED-out shop");
  ASSERT_TRUE(Until([&] { return aViewer.Status(0).starts_with("1 of"); })) << aViewer.Status(0);
  aViewer.pWindow->RunCommand(Command::mV_Everything);
  aViewer.pWindow->RunCommand(Command::mE_Find);
  aEntries.txtFind->SetValue("manually");
  aList.GoTo(0);
  aViewer.pWindow->RunCommand(Command::mE_FindNext);
  EXPECT_NE(aViewer.Row(aList.Focused()).find("Manually Stopped."), std::string::npos);
  aViewer.pWindow->RunCommand(Command::mV_Outages);
  const auto& aOutages = *aViewer.pWindow->pixOutages->lvwOutages;
  ASSERT_EQ(aOutages.Rows(), 1U);
  aOutages.Activated(0);
  EXPECT_EQ(aViewer.pWindow->tabPages->GetSelection(), 0);
  const auto lBelowTop = aList.Focused() - static_cast<long>(aList.TopRow());
  EXPECT_LE(lBelowTop, aList.List()->GetCountPerPage() / 3) << "in the upper third";
  EXPECT_EQ(aViewer.Row(aList.Focused()),
            "1/5/2026 11:30:01 PM|Failed once|http://shop.example.com|500 Internal Server Error|9|");
  const auto aBuilt = std::filesystem::path(ChildProcess::BuiltProgram("LogView")).parent_path();
  std::filesystem::copy_file(aBuilt / "Kestrova.hlp", aViewer.aHome.Path("Kestrova.hlp"));
  aViewer.pWindow->RunCommand(Command::mH_Topics);
  EXPECT_TRUE(Until([] { return frmHelp::Window() && frmHelp::Window()->Page() == "viewer.html"; }));
}

TEST(LogView, FollowsAFileThatGrowsAndIsCutAndAFolder) {
  Viewer aViewer({{"D-1.kvl", ""}}, {"D-1.kvl"});
  auto& aList = *aViewer.Entries().lvwEntries;
  const auto Write = [&](const std::string& szText) {
    aViewer.aHome.Write("D-1.kvl", szText);
    aViewer.pWindow->tmrFollow_Timer();
  };
  auto szText = TwoDays();
  szText.resize(szText.rfind('['));  // the last round is still running
  Write(szText);
  EXPECT_TRUE(aList.AtEnd());
  Write(szText += "1/6/2026 9:00:00 AM,http://new.example.com,Site OK,1,,1\r\n");
  EXPECT_EQ(aViewer.Row(aViewer.Rows() - 1), "1/6/2026 9:00:00 AM|Up|http://new.example.com|Site OK|1|");
  EXPECT_TRUE(aList.AtEnd());
  // Not at the end: nothing moves.
  aList.GoTo(20);
  aList.ScrollToTop(15);
  const auto lTop = aList.TopRow();
  Write(szText += TwoDays());
  EXPECT_EQ(aList.TopRow(), lTop);
  EXPECT_EQ(aList.Focused(), 20);
  Write(szText.substr(0, 500));
  EXPECT_LT(aList.Focused(), 12);

  const auto Day = [](int lDay) {
    return LogScript{AddDays(dtMonday, lDay)}.Start().Up("a.com").End().szText;
  };
  Viewer aFolder({{"D-20260108.kvl", Day(8)}, {"D-20260102.kvl", Day(2)}}, {""});
  EXPECT_EQ(aFolder.Status(0), "2 entries in 2 passes");
  aFolder.aHome.Write("D-20260109.kvl", Day(9));
  aFolder.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aFolder.Status(0), "3 entries in 3 passes");
}

TEST(LogView, KeysSelectFromTheRowThatWasGoneTo) {
  Viewer aViewer({{"W-20260104.kvl", TwoDays()}}, {"W-20260104.kvl"});
  auto& aList = *aViewer.Entries().lvwEntries;
  const auto Copied = [&] {
    const auto szText = aViewer.pWindow->CopyText();
    return std::to_string(std::count(szText.begin(), szText.end(), '\n')) + " from " +
           szText.substr(0, szText.find('\t'));
  };
  ASSERT_TRUE(Focused(aList.List()));
  EXPECT_EQ(Copied(), "1 from 1/7/2026 9:30:01 AM") << "a fresh window";
  Key(WXK_UP, wxMOD_SHIFT);
  ASSERT_TRUE(Until([&] { return Copied() == "2 from 1/7/2026 9:30:00 AM"; })) << Copied();
  aViewer.pWindow->RunCommand(Command::mE_NextFailure);
  EXPECT_EQ(Copied(), "1 from 1/5/2026 11:30:01 PM");
  Key(WXK_DOWN, wxMOD_SHIFT);
  Key(WXK_DOWN, wxMOD_SHIFT);
  ASSERT_TRUE(Until([&] { return Copied() == "3 from 1/5/2026 11:30:01 PM"; })) << Copied();
  Key(WXK_DOWN);
  ASSERT_TRUE(Until([&] { return Copied().starts_with("1 from"); })) << Copied();
  const auto lFrom = aList.Focused();
  Key(WXK_UP, wxMOD_SHIFT);
  EXPECT_TRUE(Until([&] { return Copied().starts_with("2 from") && aList.Focused() == lFrom - 1; }))
      << Copied();
}

TEST(LogView, GoesOnToTheNextDaysFile) {
  const auto Day = [](int lDay) {
    return LogScript{AddDays(dtMonday, lDay)}.Start().Up("a.com").End().szText;
  };
  Viewer aNewest({{"D-20260105.kvl", Day(0)}, {"D-20260104.kvl", Day(-1)}}, {"D-20260105.kvl"});
  aNewest.aHome.Write("D-20260106.kvl", Day(1));
  aNewest.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aNewest.Status(0), "2 entries in 2 passes") << "midnight";
  aNewest.aHome.Write("D-20260107.kvl", Day(2));
  std::filesystem::remove(aNewest.aHome.Path("D-20260105.kvl"));  // pruned
  aNewest.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aNewest.Status(0), "2 entries in 2 passes") << "of the two days that are left";
  Viewer aOld({{"D-20260105.kvl", Day(0)}, {"D-20260106.kvl", Day(1)}}, {"D-20260105.kvl"});
  aOld.aHome.Write("D-20260107.kvl", Day(2));
  aOld.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aOld.Status(0), "1 entry in 1 pass") << "an old day was opened to be looked at";
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
