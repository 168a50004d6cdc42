// The main window's states and its keys, with a real window manager and a real notification area.
#include <gtest/gtest.h>
#include <wx/uiaction.h>

#include "app/Program.h"
#include "app/modSysTray.h"
#include "check/frmCheckAnim.h"
#include "platform/TrayIcon.h"
#include "support/Display.h"
#include "support/FaultServer.h"

namespace {

// A notification area at the bottom left corner, as large as its icons.
class Tray {
 public:
  Tray() {
    Display::StartTray();
    EXPECT_TRUE(Until([] { return TrayIcon::Available(); }));
  }
  ~Tray() {
    Display::StopTray();
    EXPECT_TRUE(Until([] { return !TrayIcon::Available(); }));
  }
  Tray(const Tray&) = delete;
  Tray& operator=(const Tray&) = delete;

  void Click(int lButton) const {
    wxUIActionSimulator aMouse;
    aMouse.MouseMove(12, wxGetDisplaySize().y - 12);
    PumpFor(0.2);
    aMouse.MouseClick(lButton);
    PumpFor(0.3);
  }
};

bool Minimise(Program& aProgram) {
  PumpFor(0.2);
  aProgram.Main().Iconize();
  return Until([&] { return aProgram.Main().HasMinimised(); });
}

}  // namespace

TEST(State, MinimisesToTheTrayAndComesBack) {
  Tray aTray;
  Program aProgram({Site("a")});
  frmMain& aMain = aProgram.Main();
  ASSERT_TRUE(modSysTray::HasIcon());
  EXPECT_FALSE(modSysTray::RestoreEnabled());
  aMain.Maximize();
  ASSERT_TRUE(Until([&] { return aMain.IsMaximized(); }));
  for (const bool bByIcon : {true, false}) {
    ASSERT_TRUE(Minimise(aProgram));
    EXPECT_TRUE(Until([&] { return !aMain.IsShown(); })) << "gone from the task bar";
    EXPECT_TRUE(modSysTray::RestoreEnabled());
    PumpFor(0.3);
    EXPECT_TRUE(aMain.HasMinimised());
    if (bByIcon)
      aTray.Click(wxMOUSE_BTN_LEFT);
    else
      aMain.RunCommand(mnuTray_Restore);
    EXPECT_TRUE(Until([&] { return aMain.IsShown() && !aMain.HasMinimised() && !aMain.IsIconized(); }));
    PumpFor(0.2);
    EXPECT_TRUE(aMain.IsShown());
    EXPECT_TRUE(Until([&] { return !aMain.IsMaximized(); }));
    EXPECT_FALSE(modSysTray::RestoreEnabled());
  }
  // The icon's own menu, whose last item is Exit. An open menu runs its own event loop: keys come from a
  // timer.
  wxTimer aKeys;
  aKeys.Bind(wxEVT_TIMER, [](wxTimerEvent&) {
    wxUIActionSimulator().Char(WXK_UP);
    wxMilliSleep(50);
    wxUIActionSimulator().Char(WXK_RETURN);
  });
  aKeys.StartOnce(700);
  aTray.Click(wxMOUSE_BTN_RIGHT);
  EXPECT_TRUE(Until([&] { return aProgram.Ended(); }));
  EXPECT_FALSE(modSysTray::HasIcon());
}

TEST(State, WithoutATrayTheWindowIsNeverLost) {
  Program aProgram({Site("a")});
  ASSERT_FALSE(TrayIcon::Available());
  ASSERT_TRUE(Minimise(aProgram));
  EXPECT_TRUE(aProgram.Main().IsShown()) << "it stays on the task bar";
  aProgram.Main().Iconize(false);
  EXPECT_TRUE(Until([&] { return !aProgram.Main().HasMinimised(); }));
  {
    // The notification area may come and go while the program runs.
    Tray aTray;
    PumpFor(0.6);
    ASSERT_TRUE(Minimise(aProgram));
    EXPECT_TRUE(Until([&] { return !aProgram.Main().IsShown(); }));
    aProgram.Main().RestoreWindow();
    PumpFor(0.6);
  }
  ASSERT_TRUE(Minimise(aProgram));
  EXPECT_TRUE(aProgram.Main().IsShown());
  aProgram.Main().RestoreWindow();
  EXPECT_TRUE(Until([&] { return !aProgram.Main().HasMinimised() && !aProgram.Main().IsIconized(); }));
}

TEST(State, TheProgressWindowFollowsAtTheNextSite) {
  FaultServer aServer;
  std::vector<SiteRecord> aStored;
  for (int i = 1; i <= 4; ++i) {
    const std::string szPath = "/" + std::to_string(i);
    aServer.Serve(szPath, {Fault::Delay(400), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
    aStored.push_back(Site(aServer.Site(szPath)));
  }
  Program aProgram(aStored);
  PumpFor(0.2);
  std::int32_t lMinimisedAt = 0, lClosedAt = 0, lRestoredAt = 0, lShownAgainAt = 0;
  wxTimer aAct;
  aAct.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
    frmMain& aMain = aProgram.Main();
    const std::int32_t lSite = aMain.Engine().lCheckIndex;
    if (lMinimisedAt == 0 && aMain.pProgress) {
      EXPECT_FALSE(aMain.pProgress->IsActive()) << "took the focus";
      aMain.Iconize();
    }
    if (lMinimisedAt == 0 && aMain.HasMinimised()) lMinimisedAt = lSite;
    if (lMinimisedAt != 0 && lClosedAt == 0 && !aMain.pProgress) {
      lClosedAt = lSite;
      aMain.RestoreWindow();
      lRestoredAt = lSite;
    }
    if (lRestoredAt != 0 && lShownAgainAt == 0 && aMain.pProgress) lShownAgainAt = lSite;
  });
  aAct.Start(20);
  aProgram.Run(MenuCommand::mF_StartCheck);
  EXPECT_EQ(lClosedAt, lMinimisedAt + 1);
  EXPECT_EQ(lShownAgainAt, lRestoredAt + 1);
}

TEST(State, EachKeyRunsItsCommandOnce) {
  FaultServer aServer;
  Program aProgram({Site(aServer.Site("/a"))});
  PumpFor(0.3);
  wxUIActionSimulator aKeys;
  std::size_t lExpected = 0;
  const struct {
    int lKey, lModifiers;
    bool bStarts;
  } aPresses[] = {
      {WXK_F5, wxMOD_NONE, true}, {'S', wxMOD_CONTROL, true},   {'S', wxMOD_CONTROL | wxMOD_SHIFT, false},
      {'S', wxMOD_NONE, false},   {WXK_F5, wxMOD_SHIFT, false}, {WXK_RETURN, wxMOD_NONE, false}};
  for (const auto& aPress : aPresses) {
    aKeys.Char(aPress.lKey, aPress.lModifiers);
    PumpFor(0.3);
    lExpected += aPress.bStarts ? 1 : 0;
    EXPECT_EQ(aServer.Count(), lExpected) << aPress.lKey << " " << aPress.lModifiers;
  }
}
