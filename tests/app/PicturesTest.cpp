// Pictures of the windows, taken when KESTROVA_PICTURES names a folder. The folder may be the help book's
// own: the names are those of its pictures. GDK_DPI_SCALE=1.5 shows the windows at 150 per cent.
#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/stattext.h>

#include <cstdlib>

#include "app/Program.h"
#include "check/frmCheckAnim.h"
#include "resources/TextGlue.h"
#include "support/ChildProcess.h"

namespace {

// A part of the screen, in few colours, so that the book stays small.
void Save(const std::string& szName, const wxRect& aPart) {
  PumpFor(0.5);
  const std::string szCrop = std::to_string(aPart.width) + "x" + std::to_string(aPart.height) + "+" +
                             std::to_string(aPart.x) + "+" + std::to_string(aPart.y);
  // The toolkit's own copy of the screen is taken once and then stale; ImageMagick asks the display.
  ChildProcess aCamera("import",
                       {"-window", "root", "-crop", szCrop, "+repage", "-strip", "+dither", "-colors", "96",
                        "PNG8:" + std::string(std::getenv("KESTROVA_PICTURES")) + "/" + szName + ".png"});
  EXPECT_EQ(aCamera.Wait(10), 0) << aCamera.Errors();
}

}  // namespace

TEST(Pictures, OfTheWindows) {
  if (!std::getenv("KESTROVA_PICTURES")) GTEST_SKIP() << "KESTROVA_PICTURES names no folder";
  Program aProgram({Site("www.example.com", 1, 1, "192.0.2.10"), Site("www.example.com/shop", 1, 1),
                    Site("intranet.example.com/start", 1, 2), Site("www.example.org", 1, 3, "198.51.100.7"),
                    Site("mail.example.net:8080", 1, 1), Site("old.example.net", 0, 4)});
  frmMain& aMain = aProgram.Main();
  const char* const aRemarks[] = {"Site OK", "Site OK", "Request Timed-Out",
                                  "404 File Not Found (IP Check: OK)", "Site OK"};
  for (std::size_t i = 0; i < std::size(aRemarks); ++i)
    aSites[i + 1].Comments = aRemarks[i];
  aMain.SetSize(wxSize(720, 360));
  aMain.Display_lvwMain(4);
  aMain.ShowPanel(3, "Last: 11:58:30 AM");
  Save("main", aMain.GetScreenRect());
  const wxRect aList = aMain.lvwMain->GetScreenRect();
  Save("list", wxRect(aList.x, aList.y, aList.width, 180));
  auto* pProgress = new frmCheckAnim(nullptr, [] {});
  pProgress->lblSiteName->SetLabel("Checking http://www.example.com/shop");
  pProgress->lblSiteStatus->SetLabel(ResText(IDS_STATE_RECEIVING));
  pProgress->Show();
  EXPECT_TRUE(Until([&] { return pProgress->pixRayForward.lLeft > 3000; }));
  pProgress->tmrCheckAnim.Stop();
  Save("progress", pProgress->GetScreenRect());
  pProgress->Destroy();
  for (const auto& [iCommand, szName] :
       {std::pair(MenuCommand::mF_NewAddress, "editor"), {MenuCommand::mE_Options, "options-timer"}}) {
    aProgram.Run(iCommand);
    PumpFor(0.2);
    Save(szName, Open<wxDialog>()->GetScreenRect());
    Key(WXK_ESCAPE);
  }
  aMain.SetSize(10, 10);
  Save("main-smallest", aMain.GetScreenRect());
}
