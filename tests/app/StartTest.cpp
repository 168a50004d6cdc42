// How the program starts and how it ends, in this process and as the program that an operator starts.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/msgdlg.h>
#include <wx/uiaction.h>

#include <filesystem>

#include "app/Program.h"
#include "app/frmSplash.h"
#include "app/frmWelcome.h"
#include "app/modMain.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "resources/TextGlue.h"
#include "support/ChildProcess.h"
#include "support/FaultServer.h"
#include "support/Stored.h"

namespace {

template <typename Window>
Window* Shown() {
  for (wxWindow* pWindow : wxTopLevelWindows)
    if (auto* pFound = dynamic_cast<Window*>(pWindow); pFound && pFound->IsShown()) return pFound;
  return nullptr;
}

void Click(wxButton* pButton) {
  wxCommandEvent aClick(wxEVT_BUTTON, pButton->GetId());
  aClick.SetEventObject(pButton);
  pButton->GetEventHandler()->ProcessEvent(aClick);
}

}  // namespace

TEST(Start, TheFirstRunWelcomesOnce) {
  Program aProgram({}, Program::Start::First);
  EXPECT_GE(aProgram.aClock.SteadySeconds(), 1000.99) << "the splash stays a second";
  EXPECT_FALSE(Shown<frmSplash>());
  EXPECT_TRUE(aProgram.Main().IsShown());
  EXPECT_TRUE(aProgram.Main().TimerAutoCheck.IsRunning() && aProgram.Main().TimerMain.IsRunning());
  EXPECT_EQ(aProgram.Panel(2), "Next: 12:15:01 PM");
  EXPECT_EQ(Stored::Get(ProductKeys::szSetup, "startup"), "1");
  auto* pWelcome = Shown<frmWelcome>();
  ASSERT_TRUE(pWelcome);
  {
    BoxCatcher aBoxes;
    Click(pWelcome->cmdRunTour);
    EXPECT_EQ(aBoxes.aTexts, std::vector<std::string>{FromWx(ResText(IDS_TOUR_MISSING))});
  }
  const std::string szTour = Shell::ProgramFileName("KVTour");
  aProgram.aHome.Write(szTour, "#!/bin/sh\ntouch \"$KESTROVA_HOME/toured\"\n");
  std::filesystem::permissions(aProgram.aHome.Path(szTour), std::filesystem::perms::owner_all);
  Click(pWelcome->cmdRunTour);
  EXPECT_TRUE(Until([&] { return Files::FileExists(aProgram.aHome.Path("toured")); }));
  EXPECT_TRUE(Shown<frmWelcome>()) << "the tour leaves it open";
  Click(pWelcome->cmdClose);
  EXPECT_TRUE(Until([] { return !Shown<frmWelcome>(); }));
  Program aSecond;
  EXPECT_FALSE(Shown<frmWelcome>());
}

TEST(Start, ASecondCopyRefusesAndLeavesTheFirstAlone) {
  TestHome aHome;
  ChildProcess aFirst(ChildProcess::BuiltProgram("kestrova"), {});
  ASSERT_TRUE(Until([] { return Stored::Get(ProductKeys::szSetup, "startup") == "1"; }, 15))
      << aFirst.Errors();
  {
    BoxCatcher aBoxes;
    EXPECT_FALSE(modMain::Main());
    EXPECT_EQ(aBoxes.aTexts,
              std::vector<std::string>{
                  "Kestrova has already started!\nTo restore Kestrova, right-mouse click on the "
                  "Kestrova icon located in the system tray, and select Restore."});
    EXPECT_FALSE(modMain::MainWindow());
  }
  EXPECT_EQ(aFirst.Wait(0.1), ChildProcess::lRunning);
  aFirst.Interrupt();
  EXPECT_EQ(aFirst.Wait(5), 0) << "a signal ends it as Exit does";
}

// The real program is told to end while a site hangs: it ends by itself, with the log closed and the user's
// cookie setting back.
TEST(Start, ASignalInMidPassUnwindsThePass) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Hang()});
  TestHome aHome;
  Stored::Put(ProductKeys::szSetup, "startup", std::int32_t{1});
  modAddress::WriteSiteRecord(Site(aServer.Site("/hang")), 1);
  const auto hUser = Registry::HKEY_CURRENT_USER;
  RegistryAccess::RegCreatePath(hUser, ProductKeys::szInternetSettings);
  RegistryAccess::RegWriteValue(hUser, ProductKeys::szInternetSettings, "AllowCookies", std::int32_t{7}, 4);
  ChildProcess aProgram(ChildProcess::BuiltProgram("kestrova"), {});
  wxUIActionSimulator aKeys;
  ASSERT_TRUE(Until(
      [&] {
        aKeys.Char(WXK_F5);
        wxMilliSleep(200);
        return aServer.OpenConnections() > 0;
      },
      15));
  aProgram.Interrupt();
  EXPECT_EQ(aProgram.Wait(5), 0) << aProgram.Errors();
  std::int32_t lPolicy = -1, lType = 0;
  RegistryAccess::RegReadValue(hUser, ProductKeys::szInternetSettings, "AllowCookies", lPolicy, lType);
  EXPECT_EQ(lPolicy, 7);
  const std::vector<std::string> aLogs = Files::List(aHome.Path("Logs"), ".kvl");
  ASSERT_EQ(aLogs.size(), 1U);
  const std::string szLog = *Files::ReadWhole(aHome.Path("Logs") + Files::chSeparator + aLogs[0], 10000);
  EXPECT_NE(szLog.find("Manually Stopped."), std::string::npos) << szLog;
  EXPECT_TRUE(szLog.ends_with("[END CHECK]\r\n")) << szLog;
}

TEST(Exit, EndsOurDialogsAndWaitsForTheToolkitsOwn) {
  for (const bool bNative : {false, true}) {
    Program aProgram({Site("a")});
    wxTimer aAct;
    int lTicks = 0;
    aAct.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
      if (++lTicks == 1) modMain::RequestExit();
      if (!bNative || lTicks < 4) return;
      EXPECT_FALSE(aProgram.Ended());
      wxUIActionSimulator().Char(WXK_ESCAPE);
    });
    aAct.Start(100);
    const int lAnswer =
        bNative ? wxMessageDialog(&aProgram.Main(), "Are you sure?", "Kestrova", wxYES_NO).ShowModal()
                : wxDialog(&aProgram.Main(), wxID_ANY, "ours").ShowModal();
    aAct.Stop();
    EXPECT_NE(lAnswer, wxID_YES);
    EXPECT_TRUE(Until([&] { return modMain::MainWindow() == nullptr; }));
  }
}

TEST(Exit, ADisabledMainWindowComesBackOnlyWhileTheProgramRuns) {
  Program aProgram({Site("a")});
  auto* pDialog = new wxDialog(&aProgram.Main(), wxID_ANY, "modeless");
  struct Held : wxClientData {
    explicit Held(MainHost& aHost) : aDisabler(aHost) {}
    MainDisabler aDisabler;
  };
  pDialog->SetClientObject(new Held(aProgram.Main()));
  pDialog->Show();
  EXPECT_FALSE(aProgram.Main().IsEnabled());
  EXPECT_FALSE(aProgram.Main().CommandAllowed(CommandNumber(MenuCommand::mF_StartCheck)));
  modMain::RequestExit();
  EXPECT_TRUE(Until([&] { return aProgram.Ended(); }));
  EXPECT_EQ(wxTopLevelWindows.size(), 0U);
}
