// What the check engine shows through the main window.
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/msgdlg.h>
#include <wx/stattext.h>
#include <wx/stopwatch.h>

#include "app/frmMain.h"
#include "app/modMain.h"
#include "resources/TextGlue.h"

void frmMain::ShowPanel(int iPanel, const std::string& szText) {
  const wxString szNew = ToWx(szText);
  if (sbrMain->GetStatusText(iPanel - 1) != szNew) sbrMain->SetStatusText(szNew, iPanel - 1);
}

void frmMain::ClearRemarks() {
  lvwMain->ClearRemarks();
}

void frmMain::EnsureRowVisible(std::int32_t lSlot) {
  lvwMain->EnsureRowVisible(lSlot);
}

void frmMain::ShowLight(std::int32_t lSlot, std::int16_t iIcon) {
  lvwMain->ShowLight(lSlot, iIcon);
}

void frmMain::ShowLightText(std::int32_t lSlot, const std::string& szText) {
  lvwMain->ShowLightText(lSlot, szText);
}

void frmMain::ShowRemark(std::int32_t lSlot, const std::string& szText) {
  lvwMain->ShowRemark(lSlot, szText);
}

void frmMain::OpenProgress() {
  if (bExiting) return;
  if (!pProgress) {
    pProgress = new frmCheckAnim(this, [this] { aEngine.StopCheck(); });
    pProgress->CentreOnParent();
    pProgress->ShowWithoutActivating();
  }
  pProgress->lblSiteName->SetLabel("");
  pProgress->lblSiteStatus->SetLabel("");
}

void frmMain::CloseProgress() {
  if (!pProgress) return;
  frmCheckAnim* pClosing = pProgress.get();
  pProgress.Release();
  pClosing->Destroy();
}

void frmMain::ShowProgressSite(const std::string& szText) {
  if (pProgress) pProgress->lblSiteName->SetLabel(ToWxLabel(szText));
}

void frmMain::ShowProgressStatus(const std::string& szText) {
  if (pProgress) pProgress->lblSiteStatus->SetLabel(ToWxLabel(szText));
}

void frmMain::ShowMessage(const std::string& szText) {
  if (aEngine.PassRunning()) {
    aWaitingMessages.push_back(szText);
    return;
  }
  modMain::ShowBox(szText);
}

void frmMain::AfterPass() {
  while (!aWaitingMessages.empty() && !bExiting && !aEngine.PassRunning()) {
    const std::string szText = aWaitingMessages.front();
    aWaitingMessages.erase(aWaitingMessages.begin());
    modMain::ShowBox(szText);
  }
  modMain::ExitSoon();
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

void frmMain::PumpEvents() {
  modMain::PumpEvents();
}
