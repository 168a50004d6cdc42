// A pass seen through the main window: rows, panels, commands, the progress window, and what happens when the
// operator does something in the middle of it.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/stattext.h>

#include "app/Program.h"
#include "app/modMain.h"
#include "check/Schedule.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "resources/TextGlue.h"
#include "support/FaultServer.h"
#include "support/Stored.h"

namespace {

// Whatever is done while the pass runs is done from here: the pass is inside an event handler of the window.
class During {
 public:
  explicit During(std::function<void()> aAct) : aWhat(std::move(aAct)) {
    aTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { aWhat(); });
    aTimer.Start(20);
  }

 private:
  wxTimer aTimer;
  std::function<void()> aWhat;
};

std::string LogText(Program& aProgram) {
  const std::string szFolder = aProgram.aHome.Folder() + "/";
  return aProgram.aHome.Read(CheckLog::CurrentLogFile.substr(szFolder.size()));
}

}  // namespace

TEST(Pass, EveryOutcomeStandsInItsRow) {
  FaultServer aServer;
  for (const char* szPath : {"/first", "/second", "/third", "/off"})
    aServer.Serve(szPath, Fault::Status("404 Not Found"));
  aServer.Serve("/odd", {Fault::Send("hello\r\n\r\n")});
  aServer.Serve("/teapot", Fault::Status("418 I'm a teapot"));
  aServer.Serve("/moved", Fault::Status("301 Moved Permanently"));
  Program aProgram(
      {Site(aServer.Site("/good"), 1, 3), Site(aServer.Site("/first")), Site(aServer.Site("/second"), 1, 2),
       Site(aServer.Site("/third"), 1, 3), Site(aServer.Site("/off"), 0, 3), Site(aServer.Site("/odd"), 1, 0),
       Site(aServer.Site("/teapot")), Site("127.0.0.1:" + std::to_string(FaultServer::RefusingPort())),
       Site(aServer.Site("/moved"), 1, 2, aServer.Address())});
  EXPECT_EQ(aProgram.Panel(2), "Next: 12:15:01 PM");
  aProgram.Run(MenuCommand::mF_StartCheck);
  const struct {
    std::int32_t lSlot;
    std::string szEnd;
  } aRows[] = {{1, " Green: Site OK"},
               {2, " Yellow: 404 File Not Found"},
               {3, " Red: 404 File Not Found"},
               {4, " Red: 404 File Not Found"},
               {6, " Yellow: Unrecognized Reponse Code"},
               {7, " Yellow: 4xx Request Error Response Received"},
               {9, " Red: 301 Moved Permanently (IP Check: OK)"}};
  for (const auto& aRow : aRows)
    EXPECT_TRUE(aProgram.RowText(aRow.lSlot).ends_with(aRow.szEnd)) << aProgram.RowText(aRow.lSlot);
  EXPECT_EQ(aProgram.RowText(5).substr(0, 4), "[ ] ");
  EXPECT_NE(aProgram.RowText(8).find(" Yellow: ERROR:  7 "), std::string::npos) << aProgram.RowText(8);
  EXPECT_EQ(aProgram.Panel(3), "Last: 12:00:01 PM");
  EXPECT_EQ(aProgram.Panel(2), Schedule::NextPanelText());
  EXPECT_FALSE(aProgram.Main().pProgress);
  // A refill shows the same: what a row says is kept with the site too.
  const std::string szBefore = aProgram.RowText(2);
  aProgram.Main().Display_lvwMain(0);
  EXPECT_EQ(aProgram.RowText(2), szBefore);
}

TEST(Pass, LocksCommandsShowsProgressAndTakesNoSecondStart) {
  FaultServer aServer;
  aServer.Serve("/slow", {Fault::Delay(500), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  Program aProgram({Site(aServer.Site("/slow")), Site(aServer.Site("/fine"))});
  int lSeen = 0;
  {
    During aAct([&] {
      if (!aProgram.Main().pProgress || ++lSeen > 5) return;
      if (lSeen == 1) {
        for (int i = 0; i < lLockedCommands; ++i)
          EXPECT_FALSE(aProgram.Enabled(static_cast<MenuCommand>(i))) << i;
        EXPECT_EQ(aProgram.Panel(2), "Site checking in progress");
        EXPECT_TRUE(aProgram.Main().GetMenuBar()->IsEnabled(mF_StopCheck));
        EXPECT_EQ(FromWx(aProgram.Main().pProgress->lblSiteName->GetLabelText()),
                  "Checking http://" + aServer.Site("/slow"));
      }
      // Keys, double click and pop-up go past the greyed menus; so does the schedule.
      aProgram.Run(MenuCommand::mF_StartCheck);
      aProgram.aClock.SetWall(aProgram.aClock.WallTime() + 1);
      wxKeyEvent aKey(wxEVT_KEY_DOWN);
      aKey.m_keyCode = WXK_F5;
      aProgram.Main().lvwMain->GetEventHandler()->ProcessEvent(aKey);
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_GE(lSeen, 5);
  EXPECT_EQ(aServer.Count(), 2U) << "one pass, each site once";
  EXPECT_TRUE(aProgram.Enabled(MenuCommand::mF_StartCheck));
  EXPECT_TRUE(aProgram.Enabled(MenuCommand::mF_Exit));
  EXPECT_FALSE(aProgram.Main().GetMenuBar()->IsEnabled(mF_StopCheck));
  EXPECT_TRUE(Until([&] { return aServer.Count() == 4; })) << "the overdue pass follows by itself";
  EXPECT_TRUE(Until([&] { return !aProgram.Main().Engine().PassRunning(); }));
}

TEST(Pass, StopEndsItAndSaysSo) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Hang()});
  for (const bool bByWindow : {true, false}) {
    Program aProgram({Site(aServer.Site("/hang")), Site(aServer.Site("/never"))});
    {
      During aAct([&] {
        if (!aProgram.Main().pProgress || aServer.OpenConnections() == 0) return;
        if (bByWindow) {
          wxCommandEvent aClick(wxEVT_BUTTON);
          aProgram.Main().pProgress->cmdStopAll->GetEventHandler()->ProcessEvent(aClick);
        } else {
          aProgram.Main().RunCommand(mF_StopCheck);
        }
      });
      aProgram.Run(MenuCommand::mF_StartCheck);
    }
    EXPECT_TRUE(aProgram.RowText(1).ends_with("<Manually Stopped.> Manually Stopped."))
        << aProgram.RowText(1);
    EXPECT_EQ(aServer.Count("/never"), 0U);
    EXPECT_FALSE(aProgram.Main().pProgress);
    EXPECT_TRUE(aProgram.Enabled(MenuCommand::mF_StartCheck));
    const std::string szLog = LogText(aProgram);
    EXPECT_NE(szLog.find("Manually Stopped."), std::string::npos) << szLog;
    EXPECT_TRUE(szLog.ends_with("[END CHECK]\r\n")) << szLog;
  }
  Program aProgram;
  BoxCatcher aBoxes;
  aProgram.Main().Engine().StopCheck();
  aProgram.Run(MenuCommand::mF_StartCheck);
  EXPECT_EQ(aBoxes.aTexts, (std::vector<std::string>{"Checking is not in progress.", "No sites to check."}));
}

// A box that opens in mid-pass stops the pass's own wait. The answer came in time all the same and must not
// become a time-out, and with it a false alert.
TEST(Pass, AnOpenDialogMakesNoFalseTimeOut) {
  FaultServer aServer;
  aServer.Serve("/slow", {Fault::Delay(300), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  Program aProgram({Site(aServer.Site("/slow"), 1, 1)});
  wxDialog aDialog(&aProgram.Main(), wxID_ANY, "in the way");
  bool bOpened = false;
  {
    During aAct([&] {
      if (bOpened || aServer.OpenConnections() == 0) return;
      bOpened = true;
      wxTimer aClose;
      aClose.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        // By now the answer is in, and then the deadline passes while the dialog is still open.
        if (aSites[1].Comments.empty()) return;
        aProgram.aClock.Advance(3600);
        aProgram.Main().Engine().TimerMain_Timer();
        aDialog.EndModal(wxID_OK);
      });
      aClose.Start(50);
      aDialog.ShowModal();
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_TRUE(bOpened);
  EXPECT_TRUE(aProgram.RowText(1).ends_with("Green: Site OK")) << aProgram.RowText(1);
}

TEST(Pass, MessagesWaitForItsEnd) {
  FaultServer aServer;
  aServer.Serve("/slow", {Fault::Delay(200), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  Program aProgram({Site(aServer.Site("/slow"))});
  BoxCatcher aBoxes;
  bool bSaid = false;
  {
    During aAct([&] {
      if (bSaid || !aProgram.Main().pProgress) return;
      bSaid = true;
      aProgram.Main().ShowMessage("later");
      EXPECT_TRUE(aBoxes.aTexts.empty());
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_EQ(aBoxes.aTexts, std::vector<std::string>{"later"});
}

TEST(Pass, RebuildsAndFiltersInTheMiddleLoseNothing) {
  FaultServer aServer;
  aServer.Serve("/slow", {Fault::Delay(150), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  Program aProgram(
      {Site(aServer.Site("/slow"), 1, 1), Site(aServer.Site("/b"), 1, 2), Site(aServer.Site("/c"), 0, 2)});
  bool bDone = false;
  {
    During aAct([&] {
      if (bDone || !aProgram.Main().pProgress) return;
      bDone = true;
      aProgram.Main().ResultFilter = 2;
      aProgram.Main().Display_lvwMain(0);  // the site in flight has no row now
      EXPECT_EQ(aProgram.Slots(), "2 3");
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_EQ(aSites[1].Comments, "Site OK");
  EXPECT_TRUE(aProgram.RowText(2).ends_with("Green: Site OK")) << "stays until the next rebuild";
  aProgram.Run(MenuCommand::mV_All);
  EXPECT_EQ(aProgram.Slots(), "1 2 3");
  EXPECT_TRUE(aProgram.RowText(1).ends_with("Green: Site OK"));
}

// The end is asked for in mid-pass: the pass unwinds, the user's own cookie setting is back, no window is
// left.
TEST(Pass, ExitInTheMiddleUnwinds) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Hang()});
  Program aProgram({Site(aServer.Site("/hang")), Site(aServer.Site("/never"))});
  const auto hUser = Registry::HKEY_CURRENT_USER;
  RegistryAccess::RegCreatePath(hUser, ProductKeys::szInternetSettings);
  RegistryAccess::RegWriteValue(hUser, ProductKeys::szInternetSettings, "AllowCookies", std::int32_t{7}, 4);
  const auto Policy = [&] {
    std::int32_t lValue = -1, lType = 0;
    RegistryAccess::RegReadValue(hUser, ProductKeys::szInternetSettings, "AllowCookies", lValue, lType);
    return lValue;
  };
  std::int32_t lDuring = -1;
  {
    During aAct([&] {
      if (aServer.OpenConnections() == 0 || modMain::ExitRequested()) return;
      lDuring = Policy();
      aProgram.Main().Close();
      aProgram.Main().RunCommand(mnuTray_Exit);  // twice does no harm
      EXPECT_FALSE(aProgram.Main().IsShown());
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_NE(lDuring, 7);
  EXPECT_EQ(Policy(), 7);
  EXPECT_EQ(aServer.Count("/never"), 0U);
  EXPECT_TRUE(Until([&] { return aProgram.Ended(); }));
  EXPECT_TRUE(LogText(aProgram).ends_with("[END CHECK]\r\n"));
}

TEST(Pass, TheScheduleStartsAndAdvancesItself) {
  FaultServer aServer;
  Program aProgram({Site(aServer.Site("/a"))});
  aProgram.aClock.Advance(Settings.Warning * 60 - 1);
  PumpFor(1.2);
  EXPECT_EQ(aServer.Count(), 0U);
  aProgram.aClock.Advance(1);
  EXPECT_TRUE(Until([&] { return aServer.Count() == 1 && !aProgram.Main().Engine().PassRunning(); }));
  EXPECT_TRUE(aProgram.RowText(1).ends_with("Green: Site OK"));
  EXPECT_NE(LogText(aProgram).find("[START CHECK: AUTO - "), std::string::npos);
}

TEST(ProgressWindow, TheRaysTakeTurns) {
  int lStops = 0;
  auto* pWindow = new frmCheckAnim(nullptr, [&] { ++lStops; });
  pWindow->tmrCheckAnim.Stop();
  const auto Steps = [&](auto aWhile) {
    int lSteps = 0;
    for (; aWhile() && lSteps < 1000; ++lSteps)
      pWindow->tmrCheckAnim_Timer();
    return lSteps;
  };
  EXPECT_FALSE(pWindow->pixRayForward.bVisible || pWindow->pixRayBack.bVisible);
  // 43 steps of 100 twips, and one to turn round.
  EXPECT_EQ(Steps([&] { return !pWindow->pixRayForward.bVisible; }), 44);
  EXPECT_EQ(pWindow->pixRayForward.lLeft, 1020);
  EXPECT_EQ(Steps([&] { return !pWindow->pixRayBack.bVisible; }), 44);
  EXPECT_FALSE(pWindow->pixRayForward.bVisible);
  EXPECT_EQ(pWindow->pixRayBack.lLeft, 5295);
  EXPECT_EQ(Steps([&] { return !pWindow->pixRayForward.bVisible; }), 44);
  wxWeakRef<frmCheckAnim> pWatched(pWindow);
  pWindow->cmdStopAll_Click();
  EXPECT_EQ(lStops, 1);
  EXPECT_TRUE(Until([&] { return !pWatched; }));
}
