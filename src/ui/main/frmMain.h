// frmMain: the main window. It shows the site list, runs the schedule's timers, and is the check engine's
// view and the dialogs' host. Its code stands in several files: frmMain (its life), frmMainMenus (commands),
// frmMainList (rows and filters), frmMainLayout (sizes and window state), frmMainView (what the engine
// shows), frmMainNotes (what is said without a box).
//
// A pass runs inside an event handler of this window and handles events meanwhile, so handlers here may run
// inside a pass. What must wait for its end (messages, the end of the program) is kept and done in AfterPass.
#pragma once

#include <wx/frame.h>
#include <wx/timer.h>
#include <wx/weakref.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "check/CheckEngine.h"
#include "check/CheckView.h"
#include "fleet/PassFiles.h"
#include "persistence/modAddress.h"
#include "ui/common/MainHost.h"
#include "ui/main/CountStrip.h"
#include "ui/main/SiteList.h"
#include "ui/main/frmCheckAnim.h"

class wxMenu;
class wxStaticText;
class PictureBox;

// The end of the program is decided outside this window.
struct ProgramExit {
  std::function<void()> Request;  // the operator, or the system, asks for it
  std::function<void()> GoOn;     // something that an end already asked for had to wait for may be over
};

class frmMain : public wxFrame, public CheckView, public MainHost {
 public:
  // Loads the site list and fills the view. Not shown, timers disabled.
  explicit frmMain(ProgramExit aExit);
  ~frmMain() override;

  // Commands, by number. RunCommand is the one way in for menus, keys, double click and pop-ups: a command
  // that is greyed, or may not run now, rings the bell and does nothing.
  void RunCommand(int lCommand);
  bool CommandAllowed(int lCommand);
  void StartCheck();
  void CheckSelected();  // a pass over the selected site alone
  void StopCheck();
  void Check_MnuView();
  wxMenu* MakePopup();

  // 0 all, 1 successful, 2 warning, 3 unsuccessful; 0 both, 1 enabled, 2 disabled.
  std::int16_t ResultFilter = 0;
  std::int16_t EnabledFilter = 0;
  // Sets both and shows what is left.
  void ShowOnly(std::int16_t iResult, std::int16_t iEnabled);
  void imgColors_Click();
  void imgEnabled_Click();
  void lvwMain_KeyDown(wxKeyEvent& aEvent);
  void LockedKey(wxKeyEvent& aEvent);

  void EnableTimers();  // the last step of the start
  void RestoreWindow();
  bool HasMinimised() const { return bMinimised; }
  // The program is ending: no window of ours stays in sight, a running pass unwinds.
  void PrepareExit();
  // Shows one notification on the desktop; where it appears is the desktop's matter.
  std::function<void(const std::string& szText)> Notify;
  // Sees to what had to wait for the end of a pass.
  void AfterPass();

  // CheckView
  void ShowPanel(int iPanel, const std::string& szText) override;
  void ClearRemarks() override;
  void EnsureRowVisible(std::int32_t lSlot) override;
  void ShowLight(std::int32_t lSlot, std::int16_t iIcon) override;
  void ShowLightText(std::int32_t lSlot, const std::string& szText) override;
  void ShowRemark(std::int32_t lSlot, const std::string& szText) override;
  void SiteRecorded(std::int32_t lSlot) override;
  bool IsMinimised() override { return bMinimised; }
  void OpenProgress() override;
  void CloseProgress() override;
  void ShowProgressSite(const std::string& szText) override;
  void ShowProgressStatus(const std::string& szText) override;
  void ShowMessage(const std::string& szText) override;
  void ReportTrouble(const std::string& szText) override;
  void SoundBell() override;
  void LockCommands(bool bLock) override;
  void EnableAutoTimer(bool bEnable) override;
  void PumpEvents() override;

  // MainHost
  wxFrame* Frame() override { return this; }
  void EnableMain(bool bEnable) override;
  void Display_lvwMain(std::int32_t SelectNumber) override;
  void Display_lvwMainEx(std::int32_t SelectNumber) override;
  std::int32_t SelectedSlot() override { return lvwMain->SelectedSlot(); }
  std::int32_t RowCount() override { return lvwMain->RowCount(); }
  CheckEngine& Engine() override { return aEngine; }
  const SettingsRecord& CurrentSettings() override;
  void SeeThatAllIsStored() override;

  SiteList* lvwMain;
  wxPanel* pixClient;  // carries the controls
  CountStrip* pixCounts;
  wxPanel* fraCurView;
  wxStaticText* lblCurView;
  PictureBox* imgColors;
  PictureBox* imgEnabled;
  wxStatusBar* sbrMain;
  wxTimer TimerAutoCheck;
  wxTimer TimerMain;
  wxTimer tmrServe;     // keeps a request going while a menu or a dialog holds the pass's wait up
  wxTimer tmrRestored;  // runs for a moment after the window came back from the tray
  wxWeakRef<frmCheckAnim> pProgress;

 private:
  // frmMainMenus
  void BuildMenus();
  void Menu_Click(wxCommandEvent& aEvent);
  void EndPassFiles();
  void RunEngine(const std::function<void()>& Start);

  // frmMainList
  void BuildList();
  void ShowFilterPictures();
  void ShowCounts();
  bool FitsFilters(std::int32_t i) const;
  void lvwMain_Activated();
  void lvwMain_ContextMenu(wxContextMenuEvent& aEvent);
  void lvwMain_RightUp(wxMouseEvent& aEvent);
  void OpenPopup(bool bByKey);

  // frmMainLayout
  void BuildStatusBar();
  void BuildCurrentView();
  void Form_Resize();
  void LayOut();
  void LayOutStatusBar();
  void PaintLines();
  void Form_Iconize(bool bIconized);
  void EnterMinimised();
  void LeaveMinimised();
  void KeepReachable();

  // frmMainNotes
  std::string Note() const;
  void ShowNotes();
  void CountMissingLines();
  void RememberRemarks();
  void GiveBackRemarks();
  // Of a pass that nobody saw: which sites went down in it, and which mails about them could not be sent.
  void NotifyOfPass();

  wxPoint FirstProgressPlace(const wxSize& aProgress) const;

  void Form_Load();
  void Form_Close(wxCloseEvent& aEvent);
  void TimerAutoCheck_Timer();
  void TimerMain_Timer();

  void ShowPending();
  void KeepMessage(const std::string& szText);
  void SayNow(const std::string& szText);
  void ShowWaitingMessages();

  const ProgramExit aProgramExit;
  CheckEngine aEngine;
  PassFiles aPassFiles;         // what every pass leaves for other tools
  bool bToldUnwritten = false;  // said once until it succeeds again
  std::vector<std::string> aWaitingMessages;
  std::string szProgressSite, szProgressStatus;
  std::int32_t lSlotToShow = 0;  // 0 none
  bool bCountsDue = false;
  std::string szRestsNote, szStoreNote, szPassNote, szLogNote;  // in the status bar; empty for none
  std::int32_t lMissingLines = 0;  // of the log, since somebody has seen the note
  std::vector<SiteRecord> aBeforePass;
  std::map<std::int32_t, std::string> aShownBefore;  // the rows' remarks, by slot
  std::vector<std::string> aWentDown, aUnmailed;     // addresses, in this pass
  bool bPassRan = false;
  bool bStopped = false;                       // by the operator
  wxPoint aProgressPlace = wxDefaultPosition;  // where the progress window was last
  DateTime dtLastPump = 0;                     // steady
  bool bPopupDue = false;                      // asked for with the button still down
  bool bInTimer = false;                       // the stack is that of TimerAutoCheck or TimerMain
  bool bShowingMessages = false;
  bool bMinimised = false;
  bool bExiting = false;
  bool bLayingOut = false;
};
