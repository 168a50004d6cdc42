#include "ui/common/frmDialog.h"

#include <wx/button.h>
#include <wx/frame.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

#include <algorithm>

#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/system/AccessibleName.h"

frmDialog::frmDialog(MainHost& aHost, std::int32_t lTitle, std::int32_t lHelp)
    : wxDialog(aHost.Frame(), wxID_ANY, ResText(lTitle), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE),
      lHelpContext(lHelp),
      Host(aHost),
      pDisabler(std::make_unique<MainDisabler>(aHost)) {
  SetIcons(Images::ProgramIcons());
  SetEscapeId(wxID_CANCEL);
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Leave(); });
  Bind(wxEVT_CHILD_FOCUS, &frmDialog::Child_Focus, this);
  tmrLeave.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { DeliverSteps(); });
  HelpCommands::BindF1(*this, aHost, [this] { return lHelpContext; });
}

wxBoxSizer* frmDialog::MakeButtons() {
  // Not the toolkit's own OK: Enter would press it from any field.
  cmdOK = new wxButton(this, wxID_ANY, ResText(IDS_OK));
  cmdCancel = new wxButton(this, wxID_CANCEL, ResText(IDS_CANCEL));
  cmdOK->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
    if (!Leaving()) cmdOK_Click();
  });
  cmdCancel->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Leave(); });
  ClickWithoutCheck(cmdOK);
  AccessibleName::SetFromLabels(*this, {});
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  pRow->Add(cmdOK, wxSizerFlags().Border(wxRIGHT, FromDIP(8)));
  pRow->Add(cmdCancel);
  return pRow;
}

void frmDialog::Leave() {
  if (Leaving()) return;
  tmrLeave.Stop();
  aSteps.clear();
  pDisabler.reset();
  Destroy();
}

void frmDialog::ClickWithoutCheck(wxButton* pButton) {
  pButton->Bind(wxEVT_LEFT_DOWN, [this, pButton](wxMouseEvent& aEvent) {
    aEvent.Skip();
    pPressed = pButton;
  });
  pButton->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    pPressed = nullptr;
  });
}

void frmDialog::Child_Focus(wxChildFocusEvent& aEvent) {
  aEvent.Skip();
  wxWindow* pNext = aEvent.GetWindow();
  if (pNext == pFocused || Leaving()) return;
  const bool bUnchecked = bMoving || pNext == cmdCancel || (pPressed && pNext == pPressed);
  if (pFocused && !bUnchecked) {
    aSteps.push_back({pFocused, pNext});
    if (aSteps.size() == 1) CallAfter(&frmDialog::DeliverSteps);
  }
  pFocused = pNext;
}

// The focus may come only later, when the window is active again; it has been moved all the same.
void frmDialog::MoveUnchecked(const std::function<void()>& Move) {
  bMoving = true;
  Move();
  bMoving = false;
  if (wxWindow* pNow = FindFocus(); pNow && IsDescendant(pNow)) pFocused = pNow;
}

void frmDialog::DeliverSteps() {
  constexpr int lTryAgain = 20;  // milliseconds
  if (Leaving() || aSteps.empty()) return;
  // A message between a press and its release would leave the pressed control with a button that never comes
  // up.
  if (wxGetMouseState().LeftIsDown()) {
    tmrLeave.StartOnce(lTryAgain);
    return;
  }
  std::vector<Step> aNow;
  aNow.swap(aSteps);
  for (const auto& aStep : aNow)
    if (Leaving() || !LeaveField(aStep.pLeft, aStep.pNext)) return;
}

void frmDialog::SelectOnFocus(wxTextCtrl* pBox) {
  const auto bEntered = std::make_shared<bool>(false);
  pBox->Bind(wxEVT_SET_FOCUS, [this, pBox](wxFocusEvent& aEvent) {
    aEvent.Skip();
    if (pBox->IsBeingDeleted())
      return;  // the focus wanders while the dialog's boxes go, and the dialog is half gone
    if (pBox == pAtEnd)
      pBox->SetInsertionPointEnd();
    else
      pBox->SelectAll();
  });
  pBox->Bind(wxEVT_KILL_FOCUS, [this, pBox](wxFocusEvent& aEvent) {
    aEvent.Skip();
    if (!pBox->IsBeingDeleted()) pAtEnd = nullptr;
  });
  // A click sets the caret after the focus has come.
  pBox->Bind(wxEVT_LEFT_DOWN, [pBox, bEntered](wxMouseEvent& aEvent) {
    aEvent.Skip();
    *bEntered = !pBox->HasFocus();
  });
  pBox->Bind(wxEVT_LEFT_UP, [pBox, bEntered](wxMouseEvent& aEvent) {
    aEvent.Skip();
    if (*bEntered && !pBox->HasSelection()) pBox->SelectAll();
    *bEntered = false;
  });
}

// The focus comes only once the window manager has made the window active, and may come twice.
void frmDialog::FocusAtEnd(wxTextCtrl* pBox) {
  pBox->SetFocus();
  pBox->SetInsertionPointEnd();
  pAtEnd = pBox;
}

void frmDialog::Put(wxTextCtrl* pBox, const std::string& szText) {
  const wxString szNew = ToWx(szText);
  const wxString szOld = pBox->GetValue();
  if (szNew == szOld) return;
  const long lFromEnd = static_cast<long>(szOld.length()) - pBox->GetInsertionPoint();
  pBox->ChangeValue(szNew);
  pBox->SetInsertionPoint(std::max(0L, static_cast<long>(szNew.length()) - lFromEnd));
}

std::string frmDialog::Get(const wxTextCtrl* pBox) {
  return FromWx(pBox->GetValue());
}

void frmDialog::FitTo(wxTextCtrl* pBox, const wxString& szText) {
  pBox->SetInitialSize(pBox->GetSizeFromTextSize(pBox->GetTextExtent(szText)));
}
