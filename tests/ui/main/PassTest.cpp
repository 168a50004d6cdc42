// A pass seen through the main window: rows, panels, commands, the progress window, and what happens when the
// operator does something in the middle of it.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/evtloop.h>
#include <wx/modalhook.h>
#include <wx/stattext.h>
#include <wx/statusbr.h>

#include <algorithm>

#include "persistence/ProductKeys.h"
#include "servers/FaultServer.h"
#include "support/Stored.h"
#include "ui/Program.h"
#include "ui/common/TextGlue.h"
#include "ui/main/frmCheckAnim.h"

TEST(Pass, EachKeyRunsItsCommandOnceForAllSitesOrTheSelectedOne) {
  FaultServer aServer;
  Program aProgram({Site(aServer.Site("/a")), Site(aServer.Site("/b"))});
  aProgram.Main().lvwMain->SelectSlot(2);
  ASSERT_TRUE(Focused(aProgram.Main().lvwMain));
  const std::tuple<int, int, std::size_t> aPresses[] = {
      {WXK_F5, wxMOD_NONE, 2}, {WXK_F5, wxMOD_CONTROL, 3}, {'S', wxMOD_CONTROL, 5}, {'S', wxMOD_NONE, 5}};
  for (const auto& [lKey, lModifiers, lAsked] : aPresses) {
    Key(lKey, lModifiers);
    EXPECT_TRUE(Until(
        [&, lDue = lAsked] { return aServer.Count() >= lDue && !aProgram.Main().Engine().PassRunning(); }));
    EXPECT_EQ(aServer.Count(), lAsked) << lKey << " " << lModifiers;
  }
  EXPECT_EQ(aServer.Count("/b"), 3U);
}

TEST(Pass, LocksCommandsShowsProgressAndIsStopped) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Hang()});
  Program aProgram({Site(aServer.Site("/hang")), Site(aServer.Site("/never"))});
  const auto Enabled = [&](int lCommand) { return aProgram.Main().GetMenuBar()->IsEnabled(lCommand); };
  const MenuCommand aUnlocked[] = {mF_StopCheck, mE_OpenSite, mE_CopyAddress, mE_SiteLog,
                                   mH_Topics,    mH_Tour,     mH_Updates};
  for (const bool bByWindow : {true, false}) {
    // What an earlier pass was stopped at stands in the row alone.
    const std::string szRemark = bByWindow ? "404 File Not Found" : "Manually Stopped.";
    modAddress::SetComments(2, bByWindow ? szRemark : "");
    aProgram.Main().Display_lvwMain(0);
    aProgram.Main().ShowRemark(2, szRemark);
    During aAct([&] {
      const auto& pProgress = aProgram.Main().pProgress;
      if (!pProgress || aServer.OpenConnections() == 0) return;
      for (const auto& aCommand : Commands::All()) {
        if (aCommand.lMenu == 0) continue;
        EXPECT_EQ(Enabled(aCommand.iNumber), std::ranges::count(aUnlocked, aCommand.iNumber) > 0)
            << LoadResString(aCommand.lText);
      }
      EXPECT_EQ(aProgram.Panel(2), "Site checking in progress");
      EXPECT_EQ(FromWx(pProgress->lblSiteName->GetLabelText()), "Checking http://" + aServer.Site("/hang"));
      aProgram.Run(mE_DelAddress);  // keys and pop-up go past the greyed menus
      EXPECT_EQ(aProgram.Panel(4), FromWx(ResText(IDS_NOTICE_RESTS)));
      if (bByWindow)
        pProgress->cmdStopAll_Click();
      else
        aProgram.Main().RunCommand(mF_StopCheck);
    });
    aProgram.Run(mF_StartCheck);
    EXPECT_TRUE(aProgram.RowText(1).ends_with("<Manually Stopped.> Manually Stopped."))
        << aProgram.RowText(1);
    EXPECT_TRUE(aProgram.RowText(2).ends_with(szRemark)) << "not reached, and given back";
    EXPECT_EQ(aProgram.Main().sbrMain->GetFieldsCount(), 3);
    EXPECT_TRUE(Enabled(mF_StartCheck) && Enabled(mF_StopCheck));
    EXPECT_FALSE(aProgram.Main().pProgress);
  }
  EXPECT_EQ(aServer.Count("/never"), 0U);
  Answers aAnswers({"ok"});
  aProgram.Run(mF_StopCheck);
  EXPECT_EQ(aAnswers.aSaid, Texts{"Checking is not in progress."});
}

// One notification for a pass that nobody saw, and none for what was down before.
TEST(Pass, WhatGoesDownWhileTheWindowIsAwayIsNotified) {
  FaultServer aServer;
  for (const char* szPath : {"/gone", "/old"})
    aServer.Serve(szPath, Fault::Status("404 Not Found"));
  Program aProgram(
      {Site(aServer.Site("/gone"), 1, 2), Site(aServer.Site("/old"), 1, 3), Site(aServer.Site("/a"))});
  Texts aNotified;
  aProgram.Main().Notify = [&](const std::string& szText) { aNotified.push_back(szText); };
  const auto szGone = "http://" + aServer.Site("/gone");
  for (const bool bWanted : {true, false}) {
    if (!bWanted) Stored::Put(ProductKeys::szWindow, "Notify", std::int32_t{0});
    modAddress::SetStatus(1, 2);
    aProgram.Main().Hide();
    aProgram.Main().StartCheck();
    EXPECT_EQ(aNotified, (Texts{szGone + " is down. The mail about " + szGone + " could not be sent."}));
    aProgram.Main().Show();
  }
}

// What a pass has to say waits for its end, and then for its operator, who may be asleep.
TEST(Pass, TheScheduleGoesOnUnderABoxThatNobodyCloses) {
  struct LeftOpen : wxModalDialogHook {
    LeftOpen() { Register(); }
    int Enter(wxDialog*) override {
      ++lOpened;
      wxGUIEventLoop aOwn;  // as the box's own would run, until somebody comes
      pLoop = &aOwn;
      aOwn.Run();
      pLoop = nullptr;
      return wxID_OK;
    }
    int lOpened = 0;
    wxGUIEventLoop* pLoop = nullptr;
  };
  FaultServer aServer;
  aServer.Serve("/slow", {Fault::Delay(100), Fault::Send("HTTP/1.1 200 OK\r\n\r\n")});
  Program aProgram({Site(aServer.Site("/slow"), 1, 1)});
  LeftOpen aBoxes;  // after the program's own hook, which would wait for the end of a box that it has seen
  constexpr std::size_t lPasses = 4;
  {
    During aAct([&] {
      if (aProgram.Main().Engine().PassRunning())
        aProgram.Main().ShowMessage("The same in every pass.");
      else if (aServer.Count() < lPasses)
        aProgram.aClock.Advance(600);
      else if (aBoxes.pLoop != nullptr && aBoxes.pLoop->IsRunning())
        aBoxes.pLoop->Exit();
    });
    EXPECT_TRUE(
        Until([&] { return aServer.Count() == lPasses && aBoxes.lOpened > 0 && aBoxes.pLoop == nullptr; }));
  }
  EXPECT_EQ(aBoxes.lOpened, 1);
}

// A box or a menu that opens in mid-pass stops the pass's own wait. The answer came in time all the same and
// must not become a time-out, and with it a false alert. A message waits for the end of the pass.
TEST(Pass, AnOpenDialogMakesNoFalseTimeOut) {
  FaultServer aServer;
  const auto pOpen = std::make_shared<std::atomic<bool>>(false);
  aServer.Serve("/slow", {Fault::HoldUntil(pOpen), Fault::Send("HTTP/1.1 200 OK\r\n\r\n")});
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
        *pOpen = aDialog.IsModal();
        // By now the answer is in, and then the deadline passes while the dialog is still open.
        if (aSites[1].Comments.empty() || !aDialog.IsModal()) return;
        aProgram.aClock.Advance(3600);
        aProgram.Main().Engine().TimerMain_Timer();
        aDialog.EndModal(wxID_OK);
      });
      aDialog.ShowModal();
      aAnswers.Register();
    });
    aProgram.Run(mF_StartCheck);
  }
  EXPECT_TRUE(aProgram.RowText(1).ends_with("Green: Site OK")) << aProgram.RowText(1);
  EXPECT_TRUE(Until([&] { return aAnswers.aSaid == Texts{"later"}; }));
}
