// The log viewer's window over real files.
#include <gtest/gtest.h>
#include <wx/choice.h>
#include <wx/notebook.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <filesystem>

#include "app/Program.h"
#include "dialogs/frmHelp.h"
#include "logview/EntriesPage.h"
#include "logview/LogFiles.h"
#include "logview/LogView.h"
#include "logview/StripView.h"
#include "logview/SummaryPage.h"
#include "logview/frmLogView.h"
#include "resources/TextGlue.h"
#include "support/ChildProcess.h"
#include "support/LogWeek.h"

namespace {

using Command = frmLogView::Command;

// The viewer as started with these files of its home.
class Viewer {
 public:
  explicit Viewer(const std::vector<std::pair<std::string, std::string>>& aFiles,
                  const std::vector<std::string>& aNames) {
    std::vector<std::string> aPaths;
    for (const auto& [szName, szText] : aFiles)
      aHome.Write(szName, szText);
    for (const auto& szName : aNames)
      aPaths.push_back(szName.empty() ? aHome.Folder() : aHome.Path(szName));
    pWindow = LogView::Start(aPaths);
    PumpFor(0.1);
  }
  ~Viewer() {
    pWindow->Destroy();
    PumpFor(0.02);
  }
  EntriesPage& Entries() { return *pWindow->pixEntries; }
  std::size_t Rows() { return Entries().Rows().Count(); }
  std::string Row(long lRow) {
    std::string szRow;
    for (int i = 0; i < 6; ++i)
      szRow += (i > 0 ? "|" : "") +
               Entries().Rows().Cell(static_cast<std::size_t>(lRow), static_cast<LogColumn>(i));
    return szRow;
  }
  std::string Status(int iPanel) { return FromWx(pWindow->GetStatusBar()->GetStatusText(iPanel)); }

  TestHome aHome;
  BoxCatcher aBoxes;
  frmLogView* pWindow;
};

const std::string& Week() {
  static const auto szText = LogWeek::Text();
  return szText;
}

}  // namespace

TEST(LogView, ShowsFiltersFindsAndCopies) {
  Viewer aViewer({{"W-20260104.kvl", Week()}}, {"W-20260104.kvl"});
  auto& aEntries = aViewer.Entries();
  EXPECT_EQ(aViewer.pWindow->GetTitle(), "W-20260104.kvl - Kestrova Log");
  EXPECT_EQ(aViewer.Row(0), "1/5/2026 8:00:00 AM|Mon|Round started by hand|6 Up||");
  EXPECT_EQ(aViewer.Row(1), "1/5/2026 8:00:00 AM|Up|http://www.example.com|Site OK|1|");
  EXPECT_EQ(aViewer.Status(1), "1 line not read");
  EXPECT_EQ(aEntries.lvwEntries->Focused(), static_cast<long>(aViewer.Rows()) - 1);

  // Down, at one site: the IP check's marks read as a break and as emphasis, never as tags.
  aEntries.cboSite->SetSelection(2);
  aEntries.cboOutcome->SetStringSelection("Down");
  wxPostEvent(aEntries.cboSite, wxCommandEvent(wxEVT_CHOICE, aEntries.cboSite->GetId()));
  ASSERT_TRUE(Until([&] { return aViewer.Status(0) == "21 of 1,565 entries shown"; })) << aViewer.Status(0);
  aEntries.lvwEntries->GoTo(1);
  EXPECT_EQ(aViewer.Row(1),
            "1/6/2026 12:00:01 AM|Down|(1) http://shop.example.com/basket; (2) http://192.0.2.17|"
            "(1) 500 Internal Server Error; (2) Site OK|21|IP Check Performed; E-mail Notification Sent");
  const auto szDetails = FromWx(aEntries.txtDetails->GetValue());
  EXPECT_NE(szDetails.find("(1) http://shop.example.com/basket\n    (2) http://192.0.2.17"),
            std::string::npos)
      << szDetails;
  EXPECT_EQ(szDetails.find('<'), std::string::npos);
  EXPECT_EQ(aViewer.pWindow->CopyText(),
            "1/6/2026 12:00:01 AM\tDown\t(1) http://shop.example.com/basket; (2) http://192.0.2.17\t"
            "(1) 500 Internal Server Error; (2) Site OK\t21\tIP Check Performed; E-mail Notification Sent\n");

  aViewer.pWindow->RunCommand(Command::mV_Everything);
  aEntries.txtWords->SetValue("TIMED-out intranet");
  ASSERT_TRUE(Until([&] { return aViewer.Status(0).starts_with("1 of"); })) << aViewer.Status(0);
  aViewer.pWindow->RunCommand(Command::mV_Everything);

  aViewer.pWindow->RunCommand(Command::mE_Find);
  aEntries.txtFind->SetValue("manually");
  aEntries.lvwEntries->GoTo(0);
  for (const bool bForward : {true, true, false}) {
    aViewer.pWindow->RunCommand(bForward ? Command::mE_FindNext : Command::mE_FindPrevious);
    EXPECT_NE(aViewer.Row(aEntries.lvwEntries->Focused()).find("Manually Stopped."), std::string::npos);
  }
  const auto lFound = aEntries.lvwEntries->Focused();
  aEntries.txtFind->SetValue("no such words");
  aViewer.pWindow->RunCommand(Command::mE_FindNext);
  EXPECT_EQ(aEntries.lblFound->GetLabel(), "Not found.");
  EXPECT_EQ(aEntries.lvwEntries->Focused(), lFound);

  std::size_t lGaps = 0;
  for (std::size_t i = 0; i < aViewer.Rows(); ++i)
    lGaps += aEntries.Rows().KindOf(i) == LogRows::Kind::Gap;
  EXPECT_EQ(lGaps, 1U);
  EXPECT_TRUE(aViewer.aBoxes.aTexts.empty());
}

TEST(LogView, SummaryLeadsToTheEntries) {
  Viewer aViewer({{"W-20260104.kvl", Week()}}, {"W-20260104.kvl"});
  auto& aWindow = *aViewer.pWindow;
  aWindow.RunCommand(Command::mV_Summary);
  EXPECT_EQ(aWindow.pixSummary->lblHeadline->GetLabel(), "2 of 5 sites are down.");
  EXPECT_EQ(aWindow.pixSummary->lvwSites->Rows(), 6U);
  EXPECT_NE(aWindow.CopyText().find("2 of 5"), std::string::npos);
  PumpFor(0.1);
  EXPECT_NE(FromWx(aWindow.pixSummary->picStrips->TipAt(
                       {aWindow.pixSummary->picStrips->GetClientSize().x - 30, 48}))
                .find("Down: "),
            std::string::npos);
  aWindow.RunCommand(Command::mV_Outages);
  const auto& aOutages = *aWindow.pixOutages->lvwOutages;
  ASSERT_EQ(aOutages.Rows(), 6U);
  aOutages.Activated(5);  // the first of the week
  EXPECT_EQ(aWindow.tabPages->GetSelection(), 0);
  EXPECT_EQ(aViewer.Row(aViewer.Entries().lvwEntries->Focused()),
            "1/5/2026 11:30:01 PM|Failed once|http://shop.example.com/basket|500 Internal Server Error|9|");
}

TEST(LogView, FollowsAFileThatGrowsIsCutAndStartsEmpty) {
  Viewer aViewer({{"D-1.kvl", ""}}, {"D-1.kvl"});
  auto& aList = *aViewer.Entries().lvwEntries;
  const auto Write = [&](const std::string& szText) {
    aViewer.aHome.Write("D-1.kvl", szText);
    aViewer.pWindow->tmrFollow_Timer();
  };
  EXPECT_FALSE(aList.List()->IsShown()) << "an empty log says so in the list's place";
  auto szText = Week().substr(0, 40000);
  szText.resize(szText.rfind('\n') + 1);
  Write(szText);
  EXPECT_TRUE(aList.List()->IsShown());
  EXPECT_TRUE(aList.AtEnd());
  const auto lBefore = aViewer.Rows();
  Write(szText += "1/6/2026 9:00:00 AM,http://new.example.com,Si");
  EXPECT_EQ(aViewer.Row(static_cast<long>(lBefore)).substr(0, 10), "|Not read|") << "a line half written";
  Write(szText += "te OK,1,,1\r\n");
  EXPECT_EQ(aViewer.Rows(), lBefore + 1);
  EXPECT_EQ(aViewer.Row(static_cast<long>(lBefore)),
            "1/6/2026 9:00:00 AM|Up|http://new.example.com|Site OK|1|");
  EXPECT_TRUE(aList.AtEnd());
  // Not at the end: nothing moves.
  aList.GoTo(20);
  aList.ScrollToTop(15);
  const auto lTop = aList.TopRow();
  Write(szText += Week());
  EXPECT_EQ(aList.TopRow(), lTop);
  EXPECT_EQ(aList.Focused(), 20);
  Write(Week().substr(0, 500));
  EXPECT_LT(aViewer.Rows(), 12U);
  EXPECT_LT(aList.Focused(), 12);
  EXPECT_EQ(aViewer.Status(2), "Following");
}

TEST(LogView, SecondPathGetsThePageAndALogIsNeverOverwritten) {
  Viewer aViewer({{"a.kvl", Week()}}, {"a.kvl", "page.htm"});
  EXPECT_NE(aViewer.aHome.Read("page.htm").find("2 of 5 sites are down."), std::string::npos);
  EXPECT_NE(aViewer.pWindow->Notice().find("page.htm"), std::string::npos);
  EXPECT_TRUE(aViewer.pWindow->SaveTable(aViewer.aHome.Path("table.csv")));
  EXPECT_FALSE(aViewer.pWindow->SavePage(aViewer.aHome.Path("a.kvl")));
  EXPECT_FALSE(aViewer.pWindow->SavePage(aViewer.aHome.Path("no such folder/page.htm")));
  EXPECT_EQ(aViewer.aHome.Read("a.kvl"), Week());
  ASSERT_EQ(aViewer.aBoxes.aTexts.size(), 2U);
  EXPECT_TRUE(aViewer.aBoxes.aTexts[1].starts_with("The file cannot be written."));
  aViewer.aHome.Write("b.log", Week());
  const auto aTwo = LogFiles::Read({aViewer.aHome.Path("a.kvl"), aViewer.aHome.Path("b.log")});
  EXPECT_EQ(aTwo.aLogs.size(), 2U) << "a log by its content";
}

TEST(LogView, AFolderIsOneHistoryThatGrowsByANewDay) {
  const auto Day = [](int lDay) {
    return LogWeek::Script(JoinDateTime({2026, 1, lDay, 8, 0, 0})).Start().Up("a.com").End().Text();
  };
  Viewer aViewer({{"D-20260101.kvl", Day(1)}, {"D-20260108.kvl", Day(8)}, {"D-20260102.kvl", Day(2)}}, {""});
  EXPECT_EQ(aViewer.Status(0), "3 entries in 3 rounds");
  aViewer.aHome.Write("D-20260109.kvl", Day(9));
  aViewer.pWindow->tmrFollow_Timer();
  EXPECT_EQ(aViewer.Status(0), "4 entries in 4 rounds");
  EXPECT_EQ(LogFiles::Recent(aViewer.aHome.Folder(), 7).size(), 2U);
  EXPECT_EQ(LogFiles::Recent(aViewer.aHome.Folder(), 31).size(), 4U);
}

TEST(LogView, HostileAndMissingFilesGetPlainWords) {
  std::string szBytes = "<script>alert(1)</script>" + std::string(300000, 'x') + "\n";
  for (int i = 0; i < 100000; ++i)
    szBytes += static_cast<char>(i * 7919 % 256);
  Viewer aViewer({{"bad.kvl", szBytes}, {"good.kvl", Week()}}, {"bad.kvl"});
  EXPECT_TRUE(aViewer.pWindow->Notice().starts_with("This does not look like a check log"));
  for (std::size_t i = 0; i < std::min<std::size_t>(aViewer.Rows(), 50); ++i)
    aViewer.Entries().lvwEntries->GoTo(i);
  aViewer.pWindow->RunCommand(Command::mV_Summary);
  aViewer.pWindow->RunCommand(Command::mV_Outages);
  PumpFor(0.1);
  EXPECT_TRUE(aViewer.pWindow->OpenLogs({aViewer.aHome.Path("good.kvl"), aViewer.aHome.Path("gone.kvl")}));
  EXPECT_TRUE(aViewer.pWindow->Notice().starts_with("1 of 2 logs cannot be read"));
  EXPECT_TRUE(aViewer.aBoxes.aTexts.empty());
  EXPECT_FALSE(aViewer.pWindow->OpenLogs({aViewer.aHome.Path("gone.kvl")}));
  EXPECT_EQ(aViewer.aBoxes.aTexts.size(), 1U);
  EXPECT_NE(aViewer.pWindow->History(), nullptr) << "what was shown stays";
}

TEST(LogView, NothingGivenOffersToOpenALog) {
  Viewer aViewer({}, {});
  EXPECT_EQ(aViewer.aBoxes.aTexts.size(), 1U);
  for (int i = 0; i < static_cast<int>(Command::lEnd) - static_cast<int>(Command::mF_Open); ++i)
    if (const auto iCommand = static_cast<Command>(static_cast<int>(Command::mF_Open) + i);
        iCommand != Command::mF_Exit)
      aViewer.pWindow->RunCommand(iCommand);
  EXPECT_EQ(aViewer.pWindow->History(), nullptr);
}

TEST(LogView, F1OpensTheBookAtTheViewerAndSaysWhenItIsMissing) {
  Viewer aViewer({{"a.kvl", Week()}}, {"a.kvl"});
  aViewer.pWindow->RunCommand(Command::mH_Topics);
  EXPECT_TRUE(aViewer.aBoxes.aTexts.at(0).starts_with("Unable to open the Kestrova Help file."));
  const auto aBuilt = std::filesystem::path(ChildProcess::BuiltProgram("LogView")).parent_path();
  std::filesystem::copy_file(aBuilt / "Kestrova.hlp", aViewer.aHome.Path("Kestrova.hlp"));
  aViewer.pWindow->RunCommand(Command::mH_Topics);
  EXPECT_TRUE(Until([] { return frmHelp::Window() && frmHelp::Window()->Page() == "logs.html"; }));
}
