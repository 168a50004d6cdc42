// Pictures of the windows, taken when KESTROVA_PICTURES names a folder. The names of those that the help book
// shows are the book's. GDK_DPI_SCALE=1.5 shows the windows at 150 per cent.
#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/imagpng.h>
#include <wx/notebook.h>
#include <wx/stattext.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "support/ChildProcess.h"
#include "support/LogScript.h"
#include "ui/Program.h"
#include "ui/Screen.h"
#include "ui/common/HelpCommands.h"
#include "ui/common/PictureBox.h"
#include "ui/common/TextGlue.h"
#include "ui/common/frmHelp.h"
#include "ui/common/frmNotice.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmAddress.h"
#include "ui/dialogs/frmOptions.h"
#include "ui/logview/LogView.h"
#include "ui/logview/frmLogView.h"
#include "ui/main/frmCheckAnim.h"
#include "ui/main/frmSplash.h"
#include "ui/main/frmWelcome.h"
#include "ui/tour/frmTour.h"

namespace fs = std::filesystem;

namespace {

// Taken again until three pictures in a row are alike: by then all is drawn, and stands where the window
// manager wants it.
void Save(const std::string& szName, wxWindow* pWindow, int lMostHeight = 10000) {
  ASSERT_TRUE(pWindow) << szName;
  const auto szFile = std::string(std::getenv("KESTROVA_PICTURES")) + "/" + szName + ".png";
  if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG)) wxImage::AddHandler(new wxPNGHandler);
  wxGetTopLevelParent(pWindow)->Raise();
  std::vector<unsigned char> aBefore;
  int lAlike = 0;
  EXPECT_TRUE(Until([&] {
    pWindow->Update();
    Settle();
    wxRect aPart = pWindow->GetScreenRect();
    aPart.height = std::min(aPart.height, lMostHeight);
    wxImage aTaken;
    if (!Screen::Save(szFile, aPart) || !aTaken.LoadFile(ToWx(szFile), wxBITMAP_TYPE_PNG)) return false;
    const auto lBytes = 3 * aTaken.GetWidth() * aTaken.GetHeight();
    std::vector<unsigned char> aNow(aTaken.GetData(), aTaken.GetData() + lBytes);
    lAlike = aNow == aBefore ? lAlike + 1 : 1;
    aBefore = std::move(aNow);
    // A window that is covered, or not yet drawn, is a plain area.
    constexpr unsigned long lPlain = 8;
    return lAlike >= 3 && aTaken.CountColours(lPlain + 1) > lPlain;
  })) << szName;
}

template <typename Window>
void SaveAndDestroy(const std::string& szName, Window* pWindow) {
  pWindow->Show();
  Save(szName, pWindow);
  pWindow->Destroy();
}

void SaveProgress(frmMain& aMain) {
  auto* pProgress = new frmCheckAnim(&aMain, [] {});
  pProgress->lblSiteName->SetLabel("Checking http://www.example.com/shop");
  pProgress->lblSiteStatus->SetLabel(ResText(IDS_STATE_RECEIVING));
  pProgress->ShowCount(2, 5);
  pProgress->Show();
  EXPECT_TRUE(Until([&] { return pProgress->pixRayForward.lLeft > 3000; }));
  pProgress->tmrCheckAnim.Stop();
  SaveAndDestroy("progress", pProgress);
}

void SaveViewer(Program& aProgram) {
  LogScript aMorning;
  for (const bool bFails : {false, true, false}) {
    aMorning.Start()
        .Up("www.example.com")
        .Entry("http://www.example.org", bFails ? "404 File Not Found" : "Site OK", bFails ? 4 : 1)
        .End()
        .After(60);
  }
  aProgram.aHome.Write("D-20260105.kvl", aMorning.szText);
  auto* pViewer = LogView::Start({aProgram.aHome.Path("D-20260105.kvl")});
  for (std::size_t i = 0;
       const char* szPage : {"entries", "summary", "outages", "passes", "slow", "hours", "comparison"}) {
    pViewer->tabPages->SetSelection(i++);
    Save(std::string("viewer-") + szPage, pViewer);
  }
  pViewer->tabPages->SetSelection(0);
  pViewer->SetSize(860, 540);
  SaveAndDestroy("viewer", pViewer);
}

// Where the parts are that the tour points at, beside the picture.
void SaveMarks(frmMain& aMain) {
  std::ofstream aFile(std::string(std::getenv("KESTROVA_PICTURES")) + "/main.txt");
  const auto Mark = [&](const char* szName, wxRect aPart) {
    aPart.Inflate(2);
    aPart.Offset(-aMain.GetScreenPosition());
    aFile << szName << ' ' << aPart.x << ' ' << aPart.y << ' ' << aPart.width << ' ' << aPart.height << '\n';
  };
  const wxRect aList = aMain.lvwMain->GetScreenRect();
  wxRect aRow, aLights = aList;
  EXPECT_TRUE(aMain.lvwMain->GetSubItemRect(0, 3, aRow));
  aLights.x += aRow.x;
  aLights.width = aRow.width;
  Mark("list", aList);
  Mark("lights", aLights);
  Mark("view", aMain.lblCurView->GetScreenRect()
                   .Union(aMain.imgColors->GetScreenRect())
                   .Union(aMain.imgEnabled->GetScreenRect()));
  EXPECT_TRUE(aFile.flush());
}

void SaveMain(Program& aProgram) {
  frmMain& aMain = aProgram.Main();
  const char* const aRemarks[] = {"Site OK", "Site OK", "Request Timed-Out",
                                  "404 File Not Found (IP Check: OK)", "Site OK"};
  for (std::int32_t n = 0; const char* szRemark : aRemarks)
    modAddress::SetComments(++n, szRemark);
  aMain.SetSize(wxSize(720, 360));
  aMain.Display_lvwMain(4);
  aMain.ShowPanel(3, "Last: 11:58:30 AM");
  EXPECT_TRUE(Until([&] { return !aProgram.Panel(1).empty(); }));
  Save("main", &aMain);
  SaveMarks(aMain);
  Save("list", aMain.lvwMain, 180);
  SaveProgress(aMain);
}

void CloseDialog(Program& aProgram) {
  Key(WXK_ESCAPE);
  EXPECT_TRUE(Until([&] { return !Open<wxDialog>() && aProgram.Main().IsEnabled(); }));
}

void SaveDialogs(Program& aProgram) {
  aProgram.Run(mF_NewAddress);
  Key(WXK_RETURN);
  EXPECT_TRUE(Until([] { return Open<frmNotice>() != nullptr; }));
  Save("notice", Open<frmNotice>());
  CloseNotice();
  auto* pEditor = Open<frmAddress>();
  pEditor->txtURL->ChangeValue("www.example.com/shop");
  wxTextCtrl* const aOctets[] = {pEditor->txtIP1, pEditor->txtIP2, pEditor->txtIP3, pEditor->txtIP4};
  for (std::size_t i = 0; const char* szOctet : {"192", "0", "2", "10"})
    aOctets[i++]->ChangeValue(szOctet);
  Save("editor", pEditor);
  CloseDialog(aProgram);
  aProgram.Run(mE_Options);
  for (std::size_t i = 0; const char* szPage : {"timer", "manager", "logs", "cookies"}) {
    Open<frmOptions>()->tabOptions->SetSelection(i++);
    Save(std::string("options-") + szPage, Open<frmOptions>());
  }
  CloseDialog(aProgram);
  aProgram.Run(mH_About);
  Save("about", Open<frmAbout>());
  CloseDialog(aProgram);
}

void SaveOthers(Program& aProgram) {
  SaveAndDestroy("splash", new frmSplash);
  SaveAndDestroy("welcome", new frmWelcome(aProgram.Main()));
  SaveAndDestroy("tour", new frmTour);
  fs::copy_file(fs::path(ChildProcess::BuiltProgram("kestrova")).parent_path() / "Kestrova.hlp",
                aProgram.aHome.Path("Kestrova.hlp"));
  HelpCommands::ShowContext(aProgram.Main(), 20000);
  Save("help", frmHelp::Window());
  frmHelp::Window()->Close();
  SaveViewer(aProgram);
}

}  // namespace

TEST(Pictures, OfTheWindows) {
  if (!std::getenv("KESTROVA_PICTURES")) GTEST_SKIP() << "KESTROVA_PICTURES names no folder";
  Program aProgram({Site("www.example.com", 1, 1, "192.0.2.10"), Site("www.example.com/shop", 1, 1),
                    Site("intranet.example.com/start", 1, 2), Site("www.example.org", 1, 3, "198.51.100.7"),
                    Site("mail.example.net:8080", 1, 1), Site("old.example.net", 0, 4)});
  SaveMain(aProgram);
  SaveDialogs(aProgram);
  SaveOthers(aProgram);
  aProgram.Main().SetSize(10, 10);
  Save("main-smallest", &aProgram.Main());
}
