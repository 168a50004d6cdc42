// What the check engine shows through the main window.
#include <wx/stattext.h>

#include <algorithm>

#include "base/Strings.h"
#include "platform/Clock.h"
#include "ui/common/Boxes.h"
#include "ui/common/EventPump.h"
#include "ui/common/TextGlue.h"
#include "ui/main/frmMain.h"

void frmMain::ShowPanel(int iPanel, const std::string& szText) {
  const wxString szNew = ToWx(szText);
  if (sbrMain->GetStatusText(iPanel - 1) != szNew) sbrMain->SetStatusText(szNew, iPanel - 1);
}

void frmMain::ClearRemarks() {
  aPassFiles.PassBegins();
  if (aEngine.Chosen().empty()) lvwMain->ClearRemarks();
  for (const auto n : aEngine.Chosen())
    lvwMain->ShowRemark(n, "");
}

void frmMain::EnsureRowVisible(std::int32_t lSlot) {
  lSlotToShow = lSlot;
}

void frmMain::ShowLight(std::int32_t lSlot, std::int16_t iIcon) {
  lvwMain->ShowLight(lSlot, iIcon);
  bCountsDue = true;
}

void frmMain::ShowLightText(std::int32_t lSlot, const std::string& szText) {
  aPassFiles.Stopped();
  lvwMain->ShowLightText(lSlot, szText);
}

void frmMain::ShowRemark(std::int32_t lSlot, const std::string& szText) {
  aPassFiles.Answered();
  lvwMain->ShowRemark(lSlot, szText);
}

void frmMain::OpenProgress() {
  if (bExiting) return;
  if (!pProgress || pProgress->IsBeingDeleted()) {
    pProgress = new frmCheckAnim(this, [this] { StopCheck(); });
    pProgress->Move(aProgressPlace == wxDefaultPosition ? FirstProgressPlace(pProgress->GetSize())
                                                        : aProgressPlace);
    pProgress->Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& aEvent) {  // by the operator
      aProgressPlace = pProgress->GetPosition();
      aEvent.Skip();
    });
    pProgress->ShowWithoutActivating();
  }
  szProgressSite.clear();
  szProgressStatus.clear();
}

// Beside the columns that tell the results, where there is room; else in the middle.
wxPoint frmMain::FirstProgressPlace(const wxSize& aProgress) const {
  int lResults = 0;
  for (const int lColumn : {0, 1, 2})
    lResults += lvwMain->GetColumnWidth(lColumn);
  const wxRect aList = lvwMain->GetScreenRect();
  const int lWidth = lResults >= aProgress.x ? lResults : aList.width;
  return {aList.x + (lWidth - aProgress.x) / 2, aList.y + (aList.height - aProgress.y) / 2};
}

void frmMain::CloseProgress() {
  ShowPending();
  if (!pProgress) return;
  frmCheckAnim* pClosing = pProgress.get();
  aProgressPlace = pClosing->GetPosition();
  pProgress.Release();
  pClosing->Destroy();
}

void frmMain::ShowProgressSite(const std::string& szText) {
  szProgressSite = szText;
}

void frmMain::ShowProgressStatus(const std::string& szText) {
  aPassFiles.RequestMoves();
  szProgressStatus = szText;
}

// A fast server goes through ten states in a millisecond. What nobody could see is not drawn: labels and the
// list's position follow when events are handled.
void frmMain::ShowPending() {
  if (lSlotToShow != 0) lvwMain->EnsureRowVisible(lSlotToShow);
  lSlotToShow = 0;
  if (bCountsDue) ShowCounts();
  if (!pProgress) return;
  const wxString szSite = ToWxLabel(szProgressSite), szStatus = ToWxLabel(szProgressStatus);
  if (pProgress->lblSiteName->GetLabel() != szSite) pProgress->lblSiteName->SetLabel(szSite);
  if (pProgress->lblSiteStatus->GetLabel() != szStatus) pProgress->lblSiteStatus->SetLabel(szStatus);
  const auto aTurn = aEngine.TurnNow();
  pProgress->ShowCount(aTurn.lAt, aTurn.lOf);
}

// A box waits for its operator. On the stack of a pass it would hold the pass up; on that of a timer, the
// timer: the toolkit does not run a timer within itself, and the schedule would stand still until somebody
// comes.
void frmMain::ShowMessage(const std::string& szText) {
  if (aEngine.PassRunning() || bInTimer)
    KeepMessage(szText);
  else
    SayNow(szText);
}

// What is waiting already is not said twice: a fault that every pass meets would fill the screen overnight.
void frmMain::KeepMessage(const std::string& szText) {
  if (std::ranges::count(aWaitingMessages, szText) == 0) aWaitingMessages.push_back(szText);
  CallAfter(&frmMain::ShowWaitingMessages);
}

void frmMain::SayNow(const std::string& szText) {
  Boxes::Say(IsShown() ? this : nullptr, szText);
}

void frmMain::EndPassFiles() {
  const auto aUnwritten = aPassFiles.PassEnds();
  if (!aUnwritten.empty() && !bToldUnwritten && !bExiting)
    KeepMessage(FillResString(IDS_PASS_FILE_UNWRITTEN, {aUnwritten.front()}));
  bToldUnwritten = !aUnwritten.empty();
}

// One after the other. Passes go on meanwhile, and what they have to say waits for its turn.
void frmMain::ShowWaitingMessages() {
  if (bShowingMessages) return;
  bShowingMessages = true;
  while (!aWaitingMessages.empty() && !bExiting && !aEngine.PassRunning()) {
    SayNow(aWaitingMessages.front());
    aWaitingMessages.erase(aWaitingMessages.begin());
  }
  bShowingMessages = false;
}

void frmMain::AfterPass() {
  if (bPassRan) {
    bPassRan = false;
    szRestsNote.clear();
    CountMissingLines();
    szStoreNote = aEngine.StoreTrouble();  // the pass has just tried
    ShowNotes();
    NotifyOfPass();
  }
  if (!aWaitingMessages.empty()) CallAfter(&frmMain::ShowWaitingMessages);
  aProgramExit.GoOn();
}

void frmMain::SoundBell() {
  wxBell();
}

void frmMain::EnableAutoTimer(bool bEnable) {
  constexpr int lSecond = 1000;
  if (!bEnable)
    TimerAutoCheck.Stop();
  else if (!bExiting && !TimerAutoCheck.IsRunning())
    TimerAutoCheck.Start(lSecond);
}

// The engine asks after every packet. Handling events that often would cost more than the check itself; an
// operator sees and feels no difference at this gap. A clock that stands still leaves nothing to measure:
// then every call handles them.
void frmMain::PumpEvents() {
  constexpr double dGap = 0.008;  // seconds
  const DateTime dtNow = Clock::SteadyNow();
  if (dtLastPump < dtNow && dtNow < AddSeconds(dtLastPump, dGap)) return;
  ShowPending();
  EventPump::Run();
  dtLastPump = Clock::SteadyNow();
}
