// A pass seen through the main window: rows, panels, commands, the progress window, and what happens when the
// operator does something in the middle of it.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/stattext.h>

#include "app/Program.h"
#include "check/Schedule.h"
#include "check/frmCheckAnim.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "resources/TextGlue.h"
#include "support/FaultServer.h"

namespace {

std::vector<Fault::Step> Slow(int lMilliseconds) {
  return {Fault::Delay(lMilliseconds), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")};
}

std::string LogText(Program& aProgram) {
  return aProgram.aHome.Read(CheckLog::CurrentLogFile.substr(aProgram.aHome.Folder().size() + 1));
}

}  // namespace

TEST(Pass, EveryOutcomeStandsInItsRow) {
  FaultServer aServer;
  for (const char* szPath : {"/first", "/second", "/third", "/off"})
    aServer.Serve(szPath, Fault::Status("404 Not Found"));
  aServer.Serve("/odd", {Fault::Send("hello\r\n\r\n")});
  aServer.Serve("/moved", Fault::Status("301 Moved Permanently"));
  Program aProgram({Site(aServer.Site("/good"), 1, 3), Site(aServer.Site("/first")),
                    Site(aServer.Site("/second"), 1, 2), Site(aServer.Site("/third"), 1, 3),
                    Site(aServer.Site("/off"), 0, 3), Site(aServer.Site("/odd"), 1, 0),
                    Site(aServer.Site("/moved"), 1, 2, aServer.Address()),
                    Site("127.0.0.1:" + std::to_string(FaultServer::RefusingPort()))});
  aProgram.Run(MenuCommand::mF_StartCheck);
  const char* const aEnds[] = {"Green: Site OK",
                               "Yellow: 404 File Not Found",
                               "Red: 404 File Not Found",
                               "Red: 404 File Not Found",
                               "none: ",
                               "Yellow: Unrecognized Reponse Code",
                               "Red: 301 Moved Permanently (IP Check: OK)"};
  for (int i = 0; i < 7; ++i)
    EXPECT_TRUE(aProgram.RowText(i + 1).ends_with(aEnds[i])) << aProgram.RowText(i + 1);
  EXPECT_NE(aProgram.RowText(8).find(" Yellow: ERROR:  7 "), std::string::npos) << aProgram.RowText(8);
  EXPECT_EQ(aProgram.Panel(3), "Last: 12:00:01 PM");
  EXPECT_EQ(aProgram.Panel(2), Schedule::NextPanelText());
  // A refill shows the same: what a row says is kept with the site too.
  const std::string szBefore = aProgram.RowText(2);
  aProgram.Main().Display_lvwMain(0);
  EXPECT_EQ(aProgram.RowText(2), szBefore);
}

TEST(Pass, LocksCommandsShowsProgressAndTakesNoSecondStart) {
  FaultServer aServer;
  aServer.Serve("/slow", Slow(800));
  Program aProgram({Site(aServer.Site("/slow")), Site(aServer.Site("/fine"))});
  PumpFor(0.3);
  int lSeen = 0;
  {
    During aAct([&] {
      if (!aProgram.Main().pProgress || ++lSeen > 5) return;
      for (int i = 0; i < lLockedCommands; ++i)
        EXPECT_FALSE(aProgram.Enabled(static_cast<MenuCommand>(i))) << i;
      EXPECT_EQ(aProgram.Panel(2), "Site checking in progress");
      EXPECT_TRUE(aProgram.Main().GetMenuBar()->IsEnabled(mF_StopCheck));
      EXPECT_EQ(FromWx(aProgram.Main().pProgress->lblSiteName->GetLabelText()),
                "Checking http://" + aServer.Site("/slow"));
      // Keys, double click and pop-up go past the greyed menus; so does the schedule.
      aProgram.Run(MenuCommand::mF_StartCheck);
      aProgram.aClock.SetWall(aProgram.aClock.WallTime() + 1);
      Key(WXK_F5);
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_GE(lSeen, 2);
  EXPECT_EQ(aServer.Count(), 2U) << "one pass, each site once";
  EXPECT_TRUE(aProgram.Enabled(MenuCommand::mF_StartCheck));
  EXPECT_FALSE(aProgram.Main().GetMenuBar()->IsEnabled(mF_StopCheck));
  const auto Quiet = [&] { return aServer.Count() == 4 && !aProgram.Main().Engine().PassRunning(); };
  EXPECT_TRUE(Until(Quiet)) << "the overdue pass follows by itself";
  EXPECT_NE(LogText(aProgram).find("[START CHECK: AUTO - "), std::string::npos);
}

TEST(Pass, EachKeyRunsItsCommandOnce) {
  FaultServer aServer;
  Program aProgram({Site(aServer.Site("/a"))});
  ASSERT_TRUE(Focused(aProgram.Main().lvwMain));
  std::size_t lExpected = 0;
  const struct {
    int lKey, lModifiers;
    bool bStarts;
  } aPresses[] = {{WXK_F5, wxMOD_NONE, true},
                  {'S', wxMOD_CONTROL, true},
                  {'S', wxMOD_CONTROL | wxMOD_SHIFT, false},
                  {'S', wxMOD_NONE, false},
                  {WXK_F5, wxMOD_SHIFT, false}};
  for (const auto& aPress : aPresses) {
    Key(aPress.lKey, aPress.lModifiers);
    PumpFor(0.3);
    lExpected += aPress.bStarts ? 1 : 0;
    EXPECT_EQ(aServer.Count(), lExpected) << aPress.lKey << " " << aPress.lModifiers;
  }
}

TEST(Pass, StopEndsItAndSaysSo) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Hang()});
  Program aProgram({Site(aServer.Site("/hang")), Site(aServer.Site("/never"))});
  for (const bool bByWindow : {true, false}) {
    During aAct([&] {
      if (!aProgram.Main().pProgress || aServer.OpenConnections() == 0) return;
      if (bByWindow)
        aProgram.Main().pProgress->cmdStopAll_Click();
      else
        aProgram.Main().RunCommand(mF_StopCheck);
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
    EXPECT_TRUE(aProgram.RowText(1).ends_with("<Manually Stopped.> Manually Stopped."))
        << aProgram.RowText(1);
    EXPECT_EQ(aServer.Count("/never"), 0U);
    EXPECT_FALSE(aProgram.Main().pProgress);
    EXPECT_TRUE(LogText(aProgram).ends_with("[END CHECK]\r\n")) << LogText(aProgram);
  }
  Answers aAnswers({"ok"});
  aProgram.Main().Engine().StopCheck();
  EXPECT_EQ(aAnswers.aSaid, Texts{"Checking is not in progress."});
}

// A box or a menu that opens in mid-pass stops the pass's own wait. The answer came in time all the same and
// must not become a time-out, and with it a false alert. A message waits for the end of the pass.
TEST(Pass, AnOpenDialogMakesNoFalseTimeOut) {
  FaultServer aServer;
  aServer.Serve("/slow", Slow(300));
  Program aProgram({Site(aServer.Site("/slow"), 1, 1)});
  wxDialog aDialog(&aProgram.Main(), wxID_ANY, "in the way");
  Answers aAnswers({"ok"});
  aAnswers.Unregister();
  bool bOpened = false;
  {
    During aAct([&] {
      if (bOpened || aServer.OpenConnections() == 0) return;
      bOpened = true;
      aProgram.Main().ShowMessage("later");
      During aClose([&] {
        // By now the answer is in, and then the deadline passes while the dialog is still open.
        if (aSites[1].Comments.empty() || !aDialog.IsModal()) return;
        aProgram.aClock.Advance(3600);
        aProgram.Main().Engine().TimerMain_Timer();
        aDialog.EndModal(wxID_OK);
      });
      aDialog.ShowModal();
      aAnswers.Register();
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_TRUE(aProgram.RowText(1).ends_with("Green: Site OK")) << aProgram.RowText(1);
  EXPECT_EQ(aAnswers.aSaid, Texts{"later"});
}

TEST(Pass, AFilterInTheMiddleLosesNothing) {
  FaultServer aServer;
  aServer.Serve("/slow", Slow(150));
  Program aProgram({Site(aServer.Site("/slow"), 1, 1), Site(aServer.Site("/b"), 1, 2)});
  {
    During aAct([&] {
      if (!aProgram.Main().pProgress || aProgram.Main().ResultFilter == 2) return;
      aProgram.Main().ResultFilter = 2;
      aProgram.Main().Display_lvwMain(0);  // the site in flight has no row now
      EXPECT_EQ(aProgram.Slots(), "2");
    });
    aProgram.Run(MenuCommand::mF_StartCheck);
  }
  EXPECT_TRUE(aProgram.RowText(2).ends_with("Green: Site OK")) << "stays until the next rebuild";
  aProgram.Run(MenuCommand::mV_All);
  EXPECT_TRUE(aProgram.RowText(1).ends_with("Green: Site OK"));
}
