#include "ui/dialogs/frmBusy.h"

#include <wx/evtloop.h>
#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

#include "platform/Clock.h"
#include "ui/common/TextGlue.h"

namespace {
constexpr double dPaintInterval = 0.03;  // seconds
}  // namespace

frmBusy::frmBusy(MainHost& aHost, const std::string& szTitle, const std::string& szMessage,
                 std::int32_t lRange, wxWindow* pOver)
    : aHold(aHost.Engine()) {
  wxWindow* pOwner = pOver ? pOver : aHost.Frame()->IsShown() ? aHost.Frame() : nullptr;
  pNotice = new wxFrame(pOwner, wxID_ANY, ToWx(szTitle), wxDefaultPosition, wxDefaultSize,
                        wxCAPTION | wxFRAME_FLOAT_ON_PARENT | wxFRAME_NO_TASKBAR | wxCLIP_CHILDREN);
  auto* pPanel = new wxPanel(pNotice);
  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  lblMessage = new wxStaticText(pPanel, wxID_ANY, ToWx(szMessage));
  pColumn->Add(lblMessage, wxSizerFlags().Expand().Border(wxALL, pPanel->FromDIP(20)));
  if (lRange > 0) {
    pBar = new wxGauge(pPanel, wxID_ANY, lRange, wxDefaultPosition, pPanel->FromDIP(wxSize(260, -1)),
                       wxGA_HORIZONTAL | wxGA_SMOOTH);
    pColumn->Add(pBar, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, pPanel->FromDIP(20)));
  }
  pPanel->SetSizer(pColumn);
  auto* pFill = new wxBoxSizer(wxVERTICAL);
  pFill->Add(pPanel, wxSizerFlags(1).Expand());
  pNotice->SetSizer(pFill);
  pColumn->SetMinSize(pNotice->FromDIP(wxSize(260, -1)));
  pFill->SetSizeHints(pNotice);
  if (pOwner)
    pNotice->CentreOnParent();
  else
    pNotice->CentreOnScreen();
  pNotice->ShowWithoutActivating();
  Repaint();
}

frmBusy::~frmBusy() {
  pNotice->Hide();
  pNotice->Destroy();
}

void frmBusy::Message(const std::string& szMessage) {
  lblMessage->SetLabel(ToWx(szMessage));
  pNotice->Layout();
  Repaint();
}

void frmBusy::Progress(std::int32_t lDone) {
  if (pBar) pBar->SetValue(std::min(lDone, pBar->GetRange()));
  if (Clock::SteadyNow() >= AddSeconds(dtLastPaint, dPaintInterval)) Repaint();
}

void frmBusy::Repaint() {
  pNotice->Update();
  if (wxEventLoopBase* pLoop = wxEventLoopBase::GetActive()) pLoop->YieldFor(wxEVT_CATEGORY_UI);
  dtLastPaint = Clock::SteadyNow();
}
