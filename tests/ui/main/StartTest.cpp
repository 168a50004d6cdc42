// How the program starts and how it ends, in this process and as the program that an operator starts.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/msgdlg.h>
#include <wx/uiaction.h>

#include "persistence/Settings.h"
#include "platform/Environment.h"
#include "platform/Files.h"
#include "servers/FaultServer.h"
#include "support/ChildProcess.h"
#include "support/Stored.h"
#include "ui/Program.h"
#include "ui/common/TextGlue.h"
#include "ui/main/frmSplash.h"
#include "ui/main/frmWelcome.h"
#include "ui/main/modMain.h"

TEST(Start, TheFirstRunWelcomesOnce) {
  {
    Program aProgram({}, Program::Start::First);
    EXPECT_GE(aProgram.aClock.SteadySeconds(), 1000.99) << "the splash stays a second";
    EXPECT_TRUE(Until([] { return !Open<frmSplash>(); }));
    EXPECT_TRUE(aProgram.Main().IsShown());
    EXPECT_TRUE(aProgram.Main().TimerAutoCheck.IsRunning() && aProgram.Main().TimerMain.IsRunning());
    EXPECT_EQ(aProgram.Panel(2), "Next: 12:15:01 PM");
    EXPECT_EQ(Stored::Get(ProductKeys::szSetup, "startup"), "1");
    ASSERT_TRUE(Open<frmWelcome>() && Focused(Open<frmWelcome>()->cmdRunTour));
    // The window manager may yet give the keyboard to the main window, and get it taken back.
    EXPECT_TRUE(Until([] { return Key(WXK_ESCAPE), !Open<frmWelcome>(); }));
  }
  Program aSecond;
  EXPECT_FALSE(Open<frmWelcome>());
}

// What the boxes say that come before there is a main window; Esc closes each.
struct EarlyBoxes : wxModalDialogHook {
  EarlyBoxes() { Register(); }
  int Enter(wxDialog* pBox) override {
    aSaid.push_back(FromWx(dynamic_cast<wxMessageDialog*>(pBox)->GetMessage()));
    return wxID_NONE;
  }
  std::vector<std::string> aSaid;
  During aAct{[this] {
    if (!aSaid.empty() && !modMain::MainWindow()) wxUIActionSimulator().Char(WXK_ESCAPE);
  }};
};

TEST(Start, AStoreThatCannotBeUsedIsSaidAndTheProgramRuns) {
  const TestHome aHome;
  Environment::Set("KESTROVA_REGISTRY", aHome.Path(std::string(300, 'x')));  // no system takes such a name
  Settings = {};
  const EarlyBoxes aBoxes;
  ASSERT_TRUE(modMain::Main());
  ASSERT_EQ(aBoxes.aSaid.size(), 2U);  // the list cannot be read either
  EXPECT_NE(aBoxes.aSaid[0].find("cannot be opened"), std::string::npos) << aBoxes.aSaid[0];
  EXPECT_TRUE(modMain::MainWindow()->TimerAutoCheck.IsRunning() && Settings.Interval == 60);
  modMain::RequestExit();
  EXPECT_TRUE(Until([] { return !modMain::MainWindow(); }));
}

// The real program: a second copy refuses, and a signal in mid-pass ends the first as Exit does, with the log
// closed and the user's cookie setting back.
TEST(Start, OneCopyThatASignalEndsInMidPass) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Hang()});
  TestHome aHome;
  Stored::Put(ProductKeys::szSetup, "startup", std::int32_t{1});
  modAddress::WriteSiteRecord(Site(aServer.Site("/hang")), 1);
  Stored::PutCookies(7);
  ChildProcess aFirst(ChildProcess::BuiltProgram("kestrova"), {});
  // Until its window is up the key goes nowhere.
  ASSERT_TRUE(Until([&] {
    wxUIActionSimulator().Char(WXK_F5);
    wxMilliSleep(20);
    return aServer.OpenConnections() > 0;
  }));
  {
    Answers aAnswers({"ok"});
    EXPECT_FALSE(modMain::Main());
    EXPECT_TRUE(aAnswers.aSaid.at(0).starts_with("Kestrova has already started!\nTo restore Kestrova, "));
    EXPECT_FALSE(modMain::MainWindow());
  }
  EXPECT_EQ(aFirst.Wait(0), ChildProcess::lRunning);
  EXPECT_NE(Stored::Cookies(), "7");
  aFirst.Interrupt();
  EXPECT_EQ(aFirst.Wait(60), 0) << aFirst.Errors();
  EXPECT_EQ(Stored::Cookies(), "7");
  const auto aLogs = Files::List(aHome.Path("Logs"), ".kvl");
  ASSERT_EQ(aLogs.size(), 1U);
  const auto szLog = *Files::ReadWhole(aHome.Path("Logs") + Files::chSeparator + aLogs[0], 10000);
  EXPECT_NE(szLog.find("Manually Stopped."), std::string::npos) << szLog;
  EXPECT_TRUE(szLog.ends_with("[END CHECK]\r\n")) << szLog;
}

TEST(Exit, EndsOurDialogsAndMenusAndWaitsForTheToolkitsBoxes) {
  for (const int lOpen : {0, 1, 2}) {
    Program aProgram({Site("a")});
    int lTicks = 0;
    During aAct([&] {
      if (++lTicks == 5) aProgram.Main().Close();
      if (lOpen != 1 || lTicks < 20) return;
      EXPECT_TRUE(lTicks > 20 || !aProgram.Ended()) << "the box is still open";
      if (!aProgram.Ended()) wxUIActionSimulator().Char(WXK_ESCAPE);
    });
    frmMain& aMain = aProgram.Main();
    if (lOpen == 0) wxDialog(&aMain, wxID_ANY, "ours").ShowModal();
    if (lOpen == 1) wxMessageDialog(&aMain, "Are you sure?", "Kestrova", wxYES_NO | wxCANCEL).ShowModal();
    if (lOpen == 2) aMain.PopupMenu(std::unique_ptr<wxMenu>(aMain.MakePopup()).get());
    EXPECT_TRUE(Until([&] { return aProgram.Ended(); }));
  }
}
