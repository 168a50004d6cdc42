#include "ui/main/modMain.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/modalhook.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "check/CookiePolicy.h"
#include "check/Schedule.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/Settings.h"
#include "persistence/StoreMessages.h"
#include "persistence/modBasic.h"
#include "platform/Clock.h"
#include "platform/MsgBox.h"
#include "platform/SingleInstance.h"
#include "platform/Terminal.h"
#include "ui/common/Boxes.h"
#include "ui/common/EventPump.h"
#include "ui/common/HelpCommands.h"
#include "ui/common/TextGlue.h"
#include "ui/main/frmMain.h"
#include "ui/main/frmSplash.h"
#include "ui/main/frmWelcome.h"
#include "ui/main/modSysTray.h"
#include "ui/system/Menus.h"
#include "ui/system/SystemBox.h"

namespace {

constexpr double dSplashSeconds = 1;

// Knows which modal windows are open, ours and the toolkit's, because the program cannot end beneath them.
class ModalWatch : public wxModalDialogHook {
 public:
  const std::vector<wxDialog*>& Open() const { return aOpen; }

 protected:
  int Enter(wxDialog* pDialog) override {
    aOpen.push_back(pDialog);
    return wxID_NONE;
  }
  void Exit(wxDialog* pDialog) override {
    aOpen.erase(std::remove(aOpen.begin(), aOpen.end(), pDialog), aOpen.end());
    modMain::ExitSoon();
  }

 private:
  std::vector<wxDialog*> aOpen;
};

std::unique_ptr<SingleInstance> pInstance;
std::unique_ptr<SingleInstance> pWindow;  // beside it: a window, not the terminal, holds the store
std::unique_ptr<ModalWatch> pModals;
wxWeakRef<frmMain> pMain;
wxWeakRef<frmSplash> pSplash;
bool bExitRequested = false;
bool bEnded = false;

// Before there is a main window that shows its own boxes.
void SayAtStart(const std::string& szText) {
  Boxes::Say(pSplash.get(), szText);
}

void CloseSplash() {
  if (pSplash) pSplash->Destroy();
  pSplash.Release();
}

void WaitForSplash(DateTime dtStart) {
  const DateTime dtEnd = AddSeconds(dtStart, dSplashSeconds);
  while (!bExitRequested && Clock::SteadyNow() < dtEnd) {
    EventPump::Run();
    Clock::Wait(0.01);
    if (Terminal::Interrupted()) modMain::RequestExit();
  }
}

void WelcomeAtFirstRun() {
  std::int16_t iStartUp = 0;
  std::int32_t lType = 0;
  RegistryAccess::RegReadValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szSetup, "startup", iStartUp,
                               lType);
  if (iStartUp >= 1) return;
  RegistryAccess::RegCreatePath(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szSetup);
  RegistryAccess::RegWriteValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szSetup, "startup",
                                std::int32_t{1}, RegistryAccess::lTypeNumber);
  (new frmWelcome(*pMain))->Show();
}

// A store that cannot be used is said once, at the start; the program then runs without saving.
void OpenStore() {
  const auto szMessage = StoreMessages::Compose(Registry::OpenStore());
  if (!szMessage.empty()) SayAtStart(szMessage);
}

bool LoadAndShow() {
  const DateTime dtStart = Clock::SteadyNow();
  HelpCommands::szHelpFile = modBasic::ProgramFile("Kestrova.hlp");
  pSplash = new frmSplash;
  pSplash->Show();
  pSplash->Update();
  EventPump::Run();
  OpenStore();
  // Not before: a box that comes until here waits for its operator, and a signal may end it as it stands.
  Terminal::CatchInterrupt();
  if (bExitRequested) return false;
  CookiePolicy::RestoreAfterKill();
  LoadSettings();
  pMain = new frmMain({modMain::RequestExit, modMain::ExitSoon});
  WaitForSplash(dtStart);
  CloseSplash();
  if (bExitRequested) return false;
  Schedule::SetNextCheck(WarningMinutes());
  pMain->ShowPanel(2, Schedule::NextPanelText());
  pMain->Show();
  pMain->Update();
  modSysTray::AddIcon(*pMain, [] {
    if (pMain) pMain->RestoreWindow();
  });
  WelcomeAtFirstRun();
  pMain->EnableTimers();
  return true;
}

}  // namespace

bool modMain::Main() {
  bExitRequested = false;
  bEnded = false;
  pModals = std::make_unique<ModalWatch>();
  pModals->Register();
  MsgBox_SetPresenter([](const std::string& szText) {
    if (pMain)
      pMain->ShowMessage(szText);
    else
      SayAtStart(szText);
  });
  pInstance = std::make_unique<SingleInstance>();
  pWindow = std::make_unique<SingleInstance>("window");
  const bool bWindow = !pWindow->TryLock();
  if (!pInstance->TryLock()) {
    SayAtStart(LoadResString(bWindow ? IDS_ALREADY_STARTED : IDS_ALREADY_IN_TERMINAL));
    ShutDown();
    return false;
  }
  if (LoadAndShow()) return true;
  RequestExit();
  ExitSoon();
  return false;
}

void modMain::ShutDown() {
  if (bEnded) return;
  bEnded = true;
  bExitRequested = true;
  modSysTray::DeleteIcon();
  MsgBox_SetPresenter({});
  if (pModals) pModals->Unregister();
  pModals.reset();
  CloseSplash();
  // The dialogs first: they hold on to the main window.
  std::vector<wxWindow*> aOpen(wxTopLevelWindows.begin(), wxTopLevelWindows.end());
  for (wxWindow* pOpen : aOpen)
    if (pOpen != pMain.get()) pOpen->Destroy();
  if (pMain) {
    pMain->TimerMain.Stop();
    pMain->Destroy();
  }
  pMain.Release();
  pInstance.reset();
  pWindow.reset();
  wxTheApp->ExitMainLoop();
}

void modMain::RequestExit() {
  if (!bExitRequested) {
    bExitRequested = true;
    modSysTray::DeleteIcon();
    if (pMain) pMain->PrepareExit();
    CloseSplash();
  }
  Menus::CloseOpen();
  // Innermost first. A box of the system's own that cannot be ended from here is brought forward and waited
  // for.
  if (pModals) {
    const std::vector<wxDialog*> aOpen = pModals->Open();
    for (auto i = aOpen.rbegin(); i != aOpen.rend(); ++i) {
      if ((*i)->IsModal())
        (*i)->EndModal(wxID_CANCEL);
      else if (!SystemBox::Dismiss(**i))
        (*i)->Raise();
    }
  }
  ExitSoon();
}

bool modMain::ExitRequested() {
  return bExitRequested;
}

void modMain::TryExit() {
  if (!bExitRequested || bEnded) return;
  if (pModals && !pModals->Open().empty()) return;
  if (pMain && (pMain->Engine().PassRunning() || pMain->Engine().ListBusy())) return;
  ShutDown();
}

void modMain::ExitSoon() {
  if (bExitRequested && !bEnded) wxTheApp->CallAfter([] { TryExit(); });
}

frmMain* modMain::MainWindow() {
  return pMain.get();
}
