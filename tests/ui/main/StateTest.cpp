// The main window minimised and restored, with a real window manager and a real notification area.
#include <gtest/gtest.h>
#include <wx/display.h>
#include <wx/fileconf.h>
#include <wx/mstream.h>
#include <wx/uiaction.h>

#include "ui/Display.h"
#include "ui/Program.h"
#include "ui/Screen.h"
#include "ui/main/modSysTray.h"
#include "ui/system/TrayIcon.h"

namespace {

class Tray {
 public:
  Tray() {
    Display::StartTray();
    EXPECT_TRUE(Until([] { return TrayIcon::Available(); }));
  }
  ~Tray() { Display::StopTray(); }
};

bool Minimise(Program& aProgram) {
  // For a while after it came back the window undoes what window managers still do to it.
  EXPECT_TRUE(Until([&] { return !aProgram.Main().tmrRestored.IsRunning(); }));
  aProgram.Main().Iconize();
  return Until([&] { return aProgram.Main().HasMinimised(); });
}

// The window manager moves a window more than once while it frames it: waits until it does no more.
wxPoint RestingPlace(const wxWindow& aWindow) {
  wxPoint aPlace = aWindow.GetPosition();
  int lSame = 0;
  EXPECT_TRUE(Until([&] {
    constexpr int lAtRest = 10;  // rounds of events
    const wxPoint aNow = aWindow.GetPosition();
    lSame = aNow == aPlace ? lSame + 1 : 0;
    aPlace = aNow;
    Settle();
    return lSame == lAtRest;
  }));
  return aPlace;
}

}  // namespace

TEST(State, MinimisesToTheTrayAndComesBack) {
  const Tray aTray;
  Program aProgram;  // no row: Enter means nothing outside the menu
  frmMain& aMain = aProgram.Main();
  EXPECT_FALSE(modSysTray::RestoreEnabled());
  aMain.Maximize();
  ASSERT_TRUE(Until([&] { return aMain.IsMaximized(); }));
  for (const bool bByIcon : {true, false}) {
    ASSERT_TRUE(Minimise(aProgram));
    EXPECT_TRUE(Until([&] { return !aMain.IsShown(); })) << "gone from the task bar";
    EXPECT_TRUE(modSysTray::RestoreEnabled());
    if (bByIcon)
      Screen::ClickTrayIcon(false);
    else
      aMain.RunCommand(mnuTray_Restore);
    EXPECT_TRUE(Until([&] { return aMain.IsShown() && !aMain.HasMinimised() && !aMain.IsMaximized(); }));
    EXPECT_FALSE(modSysTray::RestoreEnabled());
  }
  // The icon's own menu, whose last item is Exit. An open menu runs its own event loop: keys come from a
  // timer, again where the first ones were lost.
  {
    OpenedMenus aMenus;
    int lTicks = 0;
    During aKeys([&] {
      constexpr int lAgain = 50;
      if (aProgram.Ended() || (aMenus.lOpened == 0 && lTicks < lAgain && ++lTicks < lAgain)) return;
      const int lPhase = ++lTicks % lAgain;
      if (lPhase == 5) wxUIActionSimulator().Char(WXK_UP);
      if (lPhase == 10) wxUIActionSimulator().Char(WXK_RETURN);
    });
    int lRounds = 0;  // without a menu: the click was lost, or a key closed it that was to choose
    EXPECT_TRUE(Until([&] {
      constexpr int lAgain = 500;
      if (aProgram.Ended()) return true;
      lRounds = aMenus.lOpened == aMenus.lClosed ? lRounds + 1 : 0;
      if (lRounds % lAgain == 1) Screen::ClickTrayIcon(true);
      return aProgram.Ended();
    }));
  }
  EXPECT_FALSE(modSysTray::HasIcon());
}

// The notification area may come and go while the program runs.
TEST(State, WithoutATrayTheWindowIsNeverLost) {
  Program aProgram({Site("a")});
  for (const bool bTray : {false, true, false}) {
    auto pTray = bTray ? std::make_unique<Tray>() : nullptr;
    ASSERT_TRUE(Until([&] { return TrayIcon::Available() == bTray; }));
    ASSERT_TRUE(Minimise(aProgram));
    EXPECT_TRUE(Until([&] { return aProgram.Main().IsShown() != bTray; })) << "it stays on the task bar";
    pTray.reset();
    EXPECT_TRUE(Until([&] { return aProgram.Main().IsShown(); })) << "and returns to it when the tray ends";
    aProgram.Main().RestoreWindow();
    EXPECT_TRUE(Until([&] { return !aProgram.Main().HasMinimised() && !aProgram.Main().IsIconized(); }));
  }
}

TEST(State, PlaceAndSizeComeBackButNeverOffTheScreen) {
  struct InMemory {
    InMemory() { delete wxConfigBase::Set(new wxFileConfig(aNone)); }
    ~InMemory() { delete wxConfigBase::Set(nullptr); }
    wxMemoryInputStream aNone{"", 0};
  } const aFile;
  const wxRect aPlace(150, 120, 640, 480);
  wxPoint aSeen;
  for (const int lRun : {0, 1, 2}) {
    Program aProgram;
    frmMain& aMain = aProgram.Main();
    if (lRun == 0) aMain.SetSize(aPlace);
    EXPECT_TRUE(Until([&] { return aMain.GetSize() == aPlace.GetSize(); })) << "run " << lRun;
    if (lRun == 0) aSeen = RestingPlace(aMain);
    EXPECT_TRUE(Until([&] { return aMain.GetPosition() == aSeen; })) << "it does not creep, run " << lRun;
    EXPECT_EQ(RestingPlace(aMain), aSeen) << "run " << lRun;
  }
  for (const char* szField : {"/Main/x", "/Main/y"})
    wxConfigBase::Get()->Write(szField, 30000);
  Program aProgram;
  EXPECT_TRUE(wxDisplay(0U).GetClientArea().Contains(aProgram.Main().GetScreenRect().GetTopLeft()));
}
