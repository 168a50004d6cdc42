// The main window's life: built, loaded, ticking, closed.
#include "ui/main/frmMain.h"

#include <wx/panel.h>
#include <wx/sizer.h>

#include "persistence/modAddress.h"
#include "platform/MsgBox.h"
#include "platform/Terminal.h"
#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/common/WindowPlace.h"

namespace {

constexpr int lSecond = 1000;  // milliseconds
const char* const szPlace = "Main";
const char* const szProgressPlace = "Progress";

// Set while it lives; timers run within one another.
class InTimer {
 public:
  explicit InTimer(bool& bFlag) : Flag(bFlag), bBefore(bFlag) { Flag = true; }
  ~InTimer() { Flag = bBefore; }
  InTimer(const InTimer&) = delete;
  InTimer& operator=(const InTimer&) = delete;

 private:
  bool& Flag;
  const bool bBefore;
};

}  // namespace

frmMain::frmMain(ProgramExit aExit)
    : wxFrame(nullptr, wxID_ANY, ResText(IDS_APP_TITLE)), aProgramExit(std::move(aExit)), aEngine(*this) {
  SetIcons(Images::ProgramIcons());
  pixClient = new wxPanel(this);
  BuildMenus();
  BuildStatusBar();
  BuildCurrentView();
  BuildList();
  TimerAutoCheck.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { TimerAutoCheck_Timer(); });
  TimerMain.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { TimerMain_Timer(); });
  tmrServe.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { aEngine.ServeClient(); });
  Bind(wxEVT_CLOSE_WINDOW, &frmMain::Form_Close, this);
  Bind(wxEVT_MENU, &frmMain::Menu_Click, this);
  Bind(wxEVT_CHAR_HOOK, &frmMain::LockedKey, this);
  Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    Form_Resize();
  });
  Bind(wxEVT_MAXIMIZE, [this](wxMaximizeEvent& aEvent) {
    aEvent.Skip();
    if (tmrRestored.IsRunning()) Maximize(false);
  });
  Bind(wxEVT_ICONIZE, [this](wxIconizeEvent& aEvent) {
    aEvent.Skip();
    Form_Iconize(aEvent.IsIconized());
  });
  WindowPlace::Restore(*this, szPlace);
  aProgressPlace = WindowPlace::Corner(szProgressPlace);
  Form_Load();
}

frmMain::~frmMain() = default;

void frmMain::Form_Load() {
  modAddress::Mismatches aFound;
  modAddress::LoadRebuilt(false, false, aFound);
  if (const auto szSaid = aFound.Said(); !szSaid.empty()) MsgBox(szSaid);
  frmMain::Display_lvwMainEx(0);
  Check_MnuView();
  for (const int iPanel : {1, 2, 3})
    frmMain::ShowPanel(iPanel, "");
}

void frmMain::EnableTimers() {
  TimerAutoCheck.Start(lSecond);
  TimerMain.Start(lSecond);
}

void frmMain::TimerAutoCheck_Timer() {
  const InTimer aMark(bInTimer);
  RunEngine([this] { aEngine.TimerAutoCheck_Timer(); });
}

void frmMain::TimerMain_Timer() {
  const InTimer aMark(bInTimer);
  aEngine.TimerMain_Timer();
  KeepReachable();
  if (Terminal::Interrupted()) aProgramExit.Request();
  aProgramExit.GoOn();
}

// The window never goes by itself: the program's end is decided in one place, and a running pass has to
// unwind first.
void frmMain::Form_Close(wxCloseEvent& aEvent) {
  if (aEvent.CanVeto()) aEvent.Veto();
  aProgramExit.Request();
}

void frmMain::PrepareExit() {
  bExiting = true;
  TimerAutoCheck.Stop();
  CloseProgress();
  if (IsShown() && !bMinimised) WindowPlace::Keep(*this, szPlace);
  WindowPlace::KeepCorner(aProgressPlace, szProgressPlace);
  Hide();
  aEngine.Quit();
}

void frmMain::EnableMain(bool bEnable) {
  Enable(bEnable);
  if (!bEnable || bExiting) return;
  ShowCounts();  // the settings may be others now
  if (!bMinimised) {
    Show();
    Raise();
  }
  lvwMain->SetFocus();
}
