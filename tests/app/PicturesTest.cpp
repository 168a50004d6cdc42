// Pictures of every window, to look at: set KESTROVA_PICTURES to a folder. Text is as large as the desktop
// says; GDK_DPI_SCALE=1.5 shows the windows at 150 per cent.
#include <gtest/gtest.h>

#include <cstdlib>

#include "app/Program.h"
#include "app/frmSplash.h"
#include "app/modMain.h"
#include "dialogs/frmBusy.h"
#include "support/ChildProcess.h"
#include "support/FaultServer.h"

namespace {

class Pictures : public testing::Test {
 protected:
  void SetUp() override {
    const char* const szWanted = std::getenv("KESTROVA_PICTURES");
    if (!szWanted || *szWanted == '\0') GTEST_SKIP() << "KESTROVA_PICTURES names no folder";
    szFolder = szWanted;
  }

  void Save(const std::string& szName) const {
    PumpFor(0.4);
    // The toolkit's own copy of the screen is taken once and then stale; ImageMagick asks the display.
    ChildProcess aCamera("import", {"-window", "root", szFolder + "/" + szName + ".png"});
    EXPECT_EQ(aCamera.Wait(10), 0) << aCamera.Errors();
  }

  std::string szFolder;
};

}  // namespace

TEST_F(Pictures, MainWindow) {
  {
    Program aProgram({}, Program::Start::First);
    Save("welcome");
  }
  {
    Program aProgram;
    Save("main-empty");
    aProgram.Main().SetSize(10, 10);
    Save("main-empty-smallest");
  }
  FaultServer aServer;
  aServer.Serve("/error", Fault::Status("500 Oops"));
  aServer.Serve("/missing", Fault::Status("404 Not Found"));
  std::vector<SiteRecord> aStored{Site("www.example.org", 0, 4, "192.0.2.10"), Site(aServer.Site("/shop")),
                                  Site(aServer.Site("/error"), 1, 2, aServer.Address()),
                                  Site(aServer.Site("/missing"))};
  for (int i = 0; i < 8; ++i)
    aStored.push_back(Site(aServer.Site("/page" + std::to_string(i))));
  {
    Program aProgram(aStored);
    aProgram.Run(MenuCommand::mF_StartCheck);
    aProgram.Main().Display_lvwMain(3);
    Save("main");
    aProgram.Main().lvwMain->ClickHeader(2);
    Save("main-sorted");
    aProgram.Run(MenuCommand::mV_Warning);
    aProgram.Run(MenuCommand::mV_Enabled);
    Save("main-filtered");
    aProgram.Run(MenuCommand::mV_Disabled);
    Save("main-nothing-fits");
    frmBusy aNotice(aProgram.Main(), "Kestrova", "Importing... please wait.", 100);
    aNotice.Progress(40);
    Save("busy");
  }
  const std::string szLong =
      "a-very-long-name-of-a-web-server-in-a-deep-department.example.org/and/a/long/path?with=a&query=";
  for (int i = 0; i < 60; ++i)
    aStored.push_back(
        Site(szLong + std::to_string(i), i % 2, 1 + i % 4, "192.168.222.1" + std::to_string(i)));
  Program aProgram(aStored);
  for (std::int32_t i = 13; i <= lSiteCount; ++i)
    aSites[static_cast<std::size_t>(i)].Comments =
        "403 Forbidden (IP Check Status: 504 Gateway Time-Out) & more";
  aProgram.Main().Display_lvwMain(17);
  Save("main-long");
}

TEST_F(Pictures, Progress) {
  FaultServer aServer;
  const std::string szLong =
      "/a/very/long/path/that/does/not/fit/into/the/progress/window/at/all?with=a&query=1";
  aServer.Serve("/slow", {Fault::Delay(3500), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  aServer.Serve(szLong, {Fault::Delay(2200), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  Program aProgram({Site(aServer.Site("/slow")), Site(aServer.Site(szLong))});
  wxTimer aTimer;
  int lTicks = 0;
  aTimer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
    if (++lTicks == 2 || lTicks == 4) Save(lTicks == 2 ? "progress" : "progress-long");
  });
  aTimer.Start(1300);
  aProgram.Run(MenuCommand::mF_StartCheck);
}

TEST_F(Pictures, Splash) {
  auto* pSplash = new frmSplash;
  pSplash->Show();
  Save("splash");
  pSplash->Destroy();
}
