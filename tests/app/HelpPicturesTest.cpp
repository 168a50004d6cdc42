// The pictures of the help book and the tour, taken anew from the real windows: set KESTROVA_HELP_PICTURES to
// src/resources/help/pictures.
#include <gtest/gtest.h>
#include <wx/imagpng.h>
#include <wx/stattext.h>
#include <wx/toplevel.h>

#include <cstdlib>

#include "app/Program.h"
#include "check/frmCheckAnim.h"
#include "resources/Images.h"
#include "resources/TextGlue.h"
#include "support/ChildProcess.h"

namespace {

class HelpPictures : public testing::Test {
 protected:
  void SetUp() override {
    const char* const szWanted = std::getenv("KESTROVA_HELP_PICTURES");
    if (!szWanted || *szWanted == '\0') GTEST_SKIP() << "KESTROVA_HELP_PICTURES names no folder";
    szFolder = szWanted;
  }

  // A part of the screen, in few colours, so that the book stays small.
  void Save(const std::string& szName, const wxRect& aPart) const {
    PumpFor(0.5);
    const std::string szCrop = std::to_string(aPart.width) + "x" + std::to_string(aPart.height) + "+" +
                               std::to_string(aPart.x) + "+" + std::to_string(aPart.y);
    ChildProcess aCamera("import", {"-window", "root", "-crop", szCrop, "+repage", "-strip", "+dither",
                                    "-colors", "96", "PNG8:" + szFolder + "/" + szName + ".png"});
    EXPECT_EQ(aCamera.Wait(10), 0) << aCamera.Errors();
  }
  void Save(const std::string& szName, wxTopLevelWindow& aWindow) const {
    aWindow.Raise();
    PumpFor(0.2);
    Save(szName, aWindow.GetScreenRect());
  }
  std::string szFolder;
};

const std::vector<SiteRecord> aShownSites{
    Site("www.example.com", 1, 1, "192.0.2.10"), Site("www.example.com/shop", 1, 1),
    Site("intranet.example.com/start", 1, 2),    Site("www.example.org", 1, 3, "198.51.100.7"),
    Site("mail.example.net:8080", 1, 1),         Site("old.example.net", 0, 4)};
const char* const aShownRemarks[] = {
    "Site OK", "Site OK", "Request Timed-Out", "404 File Not Found (IP Check: OK)", "Site OK", ""};

}  // namespace

TEST_F(HelpPictures, MainWindow) {
  Program aProgram(aShownSites);
  frmMain& aMain = aProgram.Main();
  for (std::size_t i = 0; i < aShownSites.size(); ++i)
    aSites[i + 1].Comments = aShownRemarks[i];
  aMain.SetSize(wxSize(720, 360));
  aMain.Display_lvwMain(4);
  ASSERT_TRUE(Until([&] { return !aProgram.Panel(1).empty(); }));
  aMain.ShowPanel(3, "Last: 11:58:30 AM");
  Save("main", aMain);
  const wxRect aList = aMain.lvwMain->GetScreenRect();
  Save("list", wxRect(aList.x, aList.y, aList.width, 180));
  if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG)) wxImage::AddHandler(new wxPNGHandler);
  for (const char* szLight : {"Green", "Yellow", "Red"}) {
    std::string szName(szLight);
    szName[0] = static_cast<char>(szName[0] + ('a' - 'A'));
    wxImage aLight = Images::Bundle(szLight, 20).GetBitmap(wxSize(20, 20)).ConvertToImage();
    EXPECT_TRUE(aLight.SaveFile(szFolder + "/" + szName + ".png", wxBITMAP_TYPE_PNG));
  }
}

TEST_F(HelpPictures, Progress) {
  auto* pWindow = new frmCheckAnim(nullptr, [] {});
  pWindow->lblSiteName->SetLabel("Checking http://www.example.com/shop");
  pWindow->lblSiteStatus->SetLabel(ResText(IDS_STATE_RECEIVING));
  pWindow->Show();
  ASSERT_TRUE(Until([&] { return pWindow->pixRayForward.bVisible && pWindow->pixRayForward.lLeft > 3000; }));
  pWindow->tmrCheckAnim.Stop();
  Save("progress", *pWindow);
  pWindow->Destroy();
}
