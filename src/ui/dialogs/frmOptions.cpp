#include "ui/dialogs/frmOptions.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <iterator>

#include "alert/TestMail.h"
#include "base/Text.h"
#include "check/Schedule.h"
#include "ui/common/Boxes.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/frmBusy.h"
#include "ui/system/FolderChooser.h"
#include "ui/system/WindowScale.h"

using namespace OptionsRules;

namespace {
constexpr int lManagerTab = 1;
constexpr int lLogsTab = 2;
}  // namespace

frmOptions::frmOptions(MainHost& aHost, std::unique_ptr<AutoTimerHold> pHold)
    : frmDialog(aHost, IDS_OPTIONS_TITLE, HelpContext::lTimer),
      pTimer(std::move(pHold)),
      aOpening(aHost.CurrentSettings()),
      aChecks(OpeningForm(aOpening)) {
  tabOptions = new wxNotebook(this, wxID_ANY);
  BuildTimerPage();
  BuildManagerPage();
  BuildLogsPage();
  BuildCookiesPage();
  const int lBorder = WindowScale::FromTwips(*this, 150);
  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(tabOptions, wxSizerFlags(1).Expand().Border(wxALL, lBorder));
  pColumn->Add(MakeButtons(), wxSizerFlags().Right().Border(wxLEFT | wxRIGHT | wxBOTTOM, lBorder));
  SetSizerAndFit(pColumn);
  CentreOnParent();
  cmdOK->SetDefault();
  ShowForm(OpeningForm(aOpening));
  BindControls();
  FocusOn(txtTimerInterval, true);
}

void frmOptions::BindControls() {
  aNumbers = {{txtTimerInterval, Field::TimerInterval, Get(txtTimerInterval)},
              {txtTimerWarning, Field::TimerWarning, Get(txtTimerWarning)},
              {txtSMTPPort, Field::SMTPPort, Get(txtSMTPPort)},
              {txtMaxLogFiles, Field::MaxLogFiles, Get(txtMaxLogFiles)}};
  for (NumberBox& aBox : aNumbers)
    aBox.pBox->Bind(wxEVT_TEXT, [this, &aBox](wxCommandEvent&) { txtNumber_Change(aBox); });
  for (wxRadioButton* pOption : {optLogDaily, optLogWeekly, optNoLogs})
    pOption->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { EnableLogControls(); });
  chkDiskMaxLogFiles->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { EnableLogControls(); });
  cmdLogDirBrowse->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { cmdLogDirBrowse_Click(); });
  ClickWithoutCheck(cmdLogDirBrowse);
  cmdTestMail->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { cmdTestMail_Click(); });
  ShowMailHint();
  tabOptions->Bind(wxEVT_NOTEBOOK_PAGE_CHANGED, [this](wxBookCtrlEvent& aEvent) {
    aEvent.Skip();
    // The toolkit gives the tab itself the focus when this event is over.
    CallAfter(&frmOptions::EnterPage);
  });
}

// The field that loses the focus is left.
void frmOptions::EnterBox(wxTextCtrl* pBox) {
  pBox->SetFocus();
  pBox->SelectAll();
}

void frmOptions::EnterPage() {
  if (Leaving()) return;
  lHelpContext = HelpContext::lTimer + tabOptions->GetSelection();
  switch (tabOptions->GetSelection()) {
    case 0:
      EnterBox(txtTimerInterval);
      break;
    case lManagerTab:
      txtMgrName->SetFocus();
      txtMgrName->SetSelection(0, std::min(txtMgrEmail->GetLastPosition(), txtMgrName->GetLastPosition()));
      break;
    case lLogsTab:
      if (optNoLogs->GetValue())
        optNoLogs->SetFocus();
      else
        EnterBox(txtLogPath);
      break;
    default:
      // The control that had it is hidden now, and the toolkit would go on to one of the new page: it stays
      // with the tabs. Not the notebook's own SetFocus, which passes it on to the page.
      tabOptions->wxWindow::SetFocus();
  }
}

void frmOptions::txtNumber_Change(NumberBox& aBox) {
  pEdited = aBox.pBox;
  const auto szNew = Get(aBox.pBox);
  const auto aChange = ChangeNumber(aBox.iField, szNew);
  if (!aChange.bRejected) {
    aBox.szLast = szNew;
    return;
  }
  Put(aBox.pBox, aBox.szLast);
  if (aChange.lMessage == 0) {
    wxBell();
    return;
  }
  CallAfter([this, &aBox, lMessage = aChange.lMessage] {
    if (Leaving()) return;
    Ask({LoadResString(lMessage)});
    FocusOn(aBox.pBox, false);
  });
}

void frmOptions::EnableLogControls() {
  const auto aForm = ReadForm();
  txtLogPath->Enable(aForm.FolderEnabled());
  cmdLogDirBrowse->Enable(aForm.FolderEnabled());
  chkDiskMaxLogFiles->Enable(aForm.FolderEnabled());
  chkDiskNoLogDisabled->Enable(aForm.FolderEnabled());
  txtMaxLogFiles->Enable(aForm.CountEnabled());
}

void frmOptions::cmdLogDirBrowse_Click() {
  const wxString szFolder =
      FolderChooser::Choose(this, ResText(IDS_BROWSE_INSTRUCTION), txtLogPath->GetValue());
  if (!Leaving() && !szFolder.empty()) Put(txtLogPath, FromWx(szFolder));
}

// With what stands in the fields, so that it can be tried before it is stored.
void frmOptions::cmdTestMail_Click() {
  ShowMailHint();
  const auto aSettings = RecordOf(ReadForm());
  if (aSettings.Email.empty() || aSettings.SMTP.empty())
    return Boxes::Say(this, LoadResString(IDS_HINT_NO_MAIL));
  TestMailResult aResult;
  {
    const frmBusy aNotice(Host, LoadResString(IDS_APP_TITLE), LoadResString(IDS_SENDING_TEST), 0, this);
    aResult = SendTestMail(aSettings);
  }
  if (!Leaving()) Boxes::Say(this, Text::Printable(aResult.szSaid), Text::Printable(aResult.szReply));
}

void frmOptions::ShowMailHint() {
  const auto lHint = MailHint(ReadForm());
  const wxString szHint = lHint == 0 ? wxString() : ResText(lHint);
  lblMailHint->SetLabel(szHint);
  lblMailHint->Wrap(lblMailHint->GetMinSize().x);
}

Form frmOptions::ReadForm() const {
  Form aForm;
  aForm.szTimerInterval = Get(txtTimerInterval);
  aForm.szTimerWarning = Get(txtTimerWarning);
  aForm.szMgrEmail = Get(txtMgrEmail);
  aForm.szMgrName = Get(txtMgrName);
  aForm.szSMTP = Get(txtSMTP);
  aForm.szSMTPPort = Get(txtSMTPPort);
  const int iPeriod = optLogWeekly->GetValue() ? 2 : optNoLogs->GetValue() ? 0 : 1;
  aForm.LogPeriod = static_cast<std::int16_t>(iPeriod);
  aForm.szLogPath = Get(txtLogPath);
  aForm.szMaxLogFiles = Get(txtMaxLogFiles);
  aForm.bDiskMaxLogFiles = chkDiskMaxLogFiles->GetValue();
  aForm.bDiskNoLogDisabled = chkDiskNoLogDisabled->GetValue();
  aForm.bCookieDisable = optCookieDisable->GetValue();
  return aForm;
}

void frmOptions::ShowForm(const Form& aForm) {
  PutNumbers(aForm);
  Put(txtSMTPPort, aForm.szSMTPPort);
  Put(txtMgrEmail, aForm.szMgrEmail);
  Put(txtMgrName, aForm.szMgrName);
  Put(txtSMTP, aForm.szSMTP);
  Put(txtLogPath, aForm.szLogPath);
  chkDiskMaxLogFiles->SetValue(aForm.bDiskMaxLogFiles);
  chkDiskNoLogDisabled->SetValue(aForm.bDiskNoLogDisabled);
  (aForm.LogPeriod == 0 ? optNoLogs : aForm.LogPeriod == 2 ? optLogWeekly : optLogDaily)->SetValue(true);
  (aForm.bCookieDisable ? optCookieDisable : optCookieAccept)->SetValue(true);
  EnableLogControls();
}

void frmOptions::PutNumbers(const Form& aForm) {
  Put(txtTimerInterval, aForm.szTimerInterval);
  Put(txtTimerWarning, aForm.szTimerWarning);
  Put(txtMaxLogFiles, aForm.szMaxLogFiles);
  for (NumberBox& aBox : aNumbers)
    aBox.szLast = Get(aBox.pBox);
}

wxTextCtrl* frmOptions::BoxOf(Field iField) const {
  switch (iField) {
    case Field::TimerInterval:
      return txtTimerInterval;
    case Field::TimerWarning:
      return txtTimerWarning;
    case Field::MgrEmail:
      return txtMgrEmail;
    case Field::LogPath:
      return txtLogPath;
    case Field::MaxLogFiles:
      return txtMaxLogFiles;
    default:
      return txtSMTPPort;
  }
}

Field frmOptions::FieldOf(const wxWindow* pBox) const {
  for (const Field iField : aConfirmOrder)
    if (pBox == BoxOf(iField)) return iField;
  return Field::None;
}

void frmOptions::TurnTo(std::size_t iPage) {
  tabOptions->ChangeSelection(iPage);
  lHelpContext = HelpContext::lTimer + static_cast<std::int32_t>(iPage);
}

void frmOptions::FocusOn(wxTextCtrl* pBox, bool bSelectAll) {
  MoveUnchecked([&] {
    for (std::size_t i = 0; i < tabOptions->GetPageCount(); ++i)
      if (tabOptions->GetPage(i)->IsDescendant(pBox)) TurnTo(i);
    pBox->SetFocus();
  });
  if (bSelectAll) pBox->SelectAll();
}

Answer frmOptions::Ask(const Finding& aFinding) {
  if (aFinding.iButtons == Buttons::OK) {
    Boxes::Say(this, aFinding.szMessage, aFinding.szMore);
    return Answer::OK;
  }
  const long lButtons = aFinding.iButtons == Buttons::YesNo ? wxYES_NO : wxYES_NO | wxCANCEL;
  const int lPressed = Boxes::Ask(this, aFinding.szMessage, lButtons);
  return lPressed == wxID_YES ? Answer::Yes : lPressed == wxID_NO ? Answer::No : Answer::Cancel;
}

bool frmOptions::CheckField(Field iField, bool bConfirm, wxWindow* pNext) {
  auto aForm = ReadForm();
  const auto aFinding = bConfirm ? aChecks.Confirm(iField, aForm) : aChecks.Leave(iField, aForm);
  PutNumbers(aForm);
  Put(txtLogPath, aForm.szLogPath);
  if (aFinding.szMessage.empty()) return true;
  // The page of the field first: a box about what is not to be seen is a riddle.
  wxTextCtrl* pBox = BoxOf(iField);
  const int lPage = tabOptions->GetSelection();
  FocusOn(pBox, true);
  const auto GoOn = [&] {
    if (!pNext) return true;
    MoveUnchecked([&] {
      if (lPage == tabOptions->GetSelection()) return pNext->SetFocus();
      TurnTo(static_cast<std::size_t>(lPage));
      EnterPage();
    });
    return true;
  };
  const auto iAnswer = Ask(aFinding);
  if (Leaving()) return false;
  const bool bOther = FieldOf(pNext) == Field::TimerInterval || FieldOf(pNext) == Field::TimerWarning;
  if (aFinding.bRelation && bOther) return GoOn();
  Finding aFurther;
  if (aChecks.Answered(iField, bConfirm, iAnswer, aForm, aFurther)) return GoOn();
  if (!aFurther.szMessage.empty()) Ask(aFurther);
  if (!Leaving()) FocusOn(pBox, true);
  return false;
}

bool frmOptions::LeaveField(wxWindow* pLeft, wxWindow* pNext) {
  if (lblMailHint->GetParent()->IsDescendant(pLeft)) ShowMailHint();
  const Field iField = FieldOf(pLeft);
  return iField == Field::None || CheckField(iField, false, pNext);
}

// The field that was edited last comes first: of two that disagree it is the one that the operator thinks of.
void frmOptions::cmdOK_Click() {
  std::vector<Field> aOrder(std::begin(aConfirmOrder), std::end(aConfirmOrder));
  std::stable_partition(aOrder.begin(), aOrder.end(),
                        [this](Field iField) { return BoxOf(iField) == pEdited; });
  for (const Field iField : aOrder)
    if (!CheckField(iField, true, nullptr)) return;
  if (Store(ReadForm(), aOpening)) Host.ShowPanel(2, Schedule::NextPanelText());
  Host.SeeThatAllIsStored();
  Leave();
}

void frmOptions::Leave() {
  pTimer.reset();
  frmDialog::Leave();
}
