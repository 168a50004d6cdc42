// The options dialog's four pages: their controls, in tab order, and how they are laid out.
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "ui/common/TextGlue.h"
#include "ui/dialogs/frmOptions.h"
#include "ui/system/AccessibleName.h"
#include "ui/system/WindowScale.h"

namespace {

constexpr int lFrameWidth = 4845;  // twips
constexpr int lGap = 120;
constexpr int lTextCharacters = 32;

int Twips(const wxWindow* pWindow, int lTwips) {
  return WindowScale::FromTwips(*pWindow, lTwips);
}

wxStaticText* Label(wxWindow* pParent, std::int32_t lText) {
  return new wxStaticText(pParent, wxID_ANY, ResText(lText));
}

wxTextCtrl* TextBox(wxWindow* pParent, const char* szName) {
  return new wxTextCtrl(pParent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 0,
                        wxDefaultValidator, szName);
}

wxStaticBoxSizer* Frame(wxPanel* pPage, wxSizer* pColumn, std::int32_t lCaption, wxSizer* pContent) {
  auto* pFrame = new wxStaticBoxSizer(wxVERTICAL, pPage, ResText(lCaption));
  pFrame->SetMinSize(Twips(pPage, lFrameWidth), -1);
  pFrame->Add(pContent, wxSizerFlags(1).Expand().Border(wxALL, Twips(pPage, lGap)));
  pColumn->Add(pFrame, wxSizerFlags().Expand().Border(wxALL, Twips(pPage, lGap)));
  return pFrame;
}

wxFlexGridSizer* Grid(wxWindow* pWindow, int lColumns) {
  return new wxFlexGridSizer(lColumns, Twips(pWindow, lGap), Twips(pWindow, 90));
}

const wxSizerFlags& LabelFlags() {
  static const auto aFlags = wxSizerFlags().CentreVertical();
  return aFlags;
}

}  // namespace

wxPanel* frmOptions::AddPage(std::int32_t lTab) {
  auto* pPage = new wxPanel(tabOptions);
  pPage->SetSizer(new wxBoxSizer(wxVERTICAL));
  tabOptions->AddPage(pPage, ResText(lTab));
  return pPage;
}

void frmOptions::BuildTimerPage() {
  wxPanel* pPage = AddPage(IDS_TAB_TIMER);
  auto* pGrid = Grid(pPage, 3);
  auto* pBox = Frame(pPage, pPage->GetSizer(), IDS_FRAME_TIMER, pGrid)->GetStaticBox();
  const auto Row = [&](std::int32_t lLabel, const char* szName) {
    pGrid->Add(Label(pBox, lLabel), LabelFlags());
    auto* pText = TextBox(pBox, szName);
    FitTo(pText, "000000");
    pGrid->Add(pText, LabelFlags());
    pGrid->Add(Label(pBox, IDS_MINUTES), LabelFlags());
    return pText;
  };
  txtTimerInterval = Row(IDS_INTERVAL, "txtTimerInterval");
  txtTimerWarning = Row(IDS_WARNING, "txtTimerWarning");
}

void frmOptions::BuildManagerPage() {
  wxPanel* pPage = AddPage(IDS_TAB_MANAGER);
  auto* pGrid = Grid(pPage, 2);
  pGrid->AddGrowableCol(1);
  auto* pBox = Frame(pPage, pPage->GetSizer(), IDS_FRAME_MANAGER, pGrid)->GetStaticBox();
  const auto Row = [&](std::int32_t lLabel, const char* szName, bool bWide) {
    pGrid->Add(Label(pBox, lLabel), LabelFlags());
    auto* pText = TextBox(pBox, szName);
    FitTo(pText, bWide ? wxString('n', lTextCharacters) : wxString("000000"));
    pGrid->Add(pText, bWide ? wxSizerFlags(1).Expand() : wxSizerFlags());
    return pText;
  };
  txtMgrName = Row(IDS_MANAGER_NAME, "txtMgrName", true);
  txtMgrEmail = Row(IDS_MANAGER_EMAIL, "txtMgrEmail", true);
  txtSMTP = Row(IDS_SMTP_SERVER, "txtSMTP", true);
  txtSMTPPort = Row(IDS_SMTP_PORT, "txtSMTPPort", false);
  pGrid->AddSpacer(0);
  cmdTestMail = new wxButton(pBox, wxID_ANY, ResText(IDS_SEND_TEST));
  pGrid->Add(cmdTestMail);
  lblMailHint = new wxStaticText(pPage, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE);
  lblMailHint->SetMinSize(wxSize(Twips(pPage, lFrameWidth), 2 * lblMailHint->GetCharHeight()));
  pPage->GetSizer()->Add(lblMailHint,
                         wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, Twips(pPage, 2 * lGap)));
}

void frmOptions::BuildLogsPage() {
  wxPanel* pPage = AddPage(IDS_TAB_LOGS);
  LayOutLogFrame(pPage, pPage->GetSizer());
  LayOutDiskFrame(pPage, pPage->GetSizer());
}

void frmOptions::LayOutLogFrame(wxPanel* pPage, wxSizer* pColumn) {
  auto* pGrid = Grid(pPage, 2);
  pGrid->AddGrowableCol(1);
  auto* pBox = Frame(pPage, pColumn, IDS_FRAME_LOG, pGrid)->GetStaticBox();
  pGrid->Add(Label(pBox, IDS_LOG_PERIOD), LabelFlags());
  auto* pPeriods = new wxBoxSizer(wxHORIZONTAL);
  const auto Period = [&](std::int32_t lText, long lStyle) {
    auto* pOption =
        new wxRadioButton(pBox, wxID_ANY, ResText(lText), wxDefaultPosition, wxDefaultSize, lStyle);
    pPeriods->Add(pOption, wxSizerFlags().Border(wxRIGHT, Twips(pPage, 150)));
    return pOption;
  };
  optLogDaily = Period(IDS_LOG_DAILY, wxRB_GROUP);
  optLogWeekly = Period(IDS_LOG_WEEKLY, 0);
  optNoLogs = Period(IDS_LOG_NONE, 0);
  pGrid->Add(pPeriods);
  pGrid->Add(Label(pBox, IDS_LOG_PATH), LabelFlags());
  txtLogPath = TextBox(pBox, "txtLogPath");
  FitTo(txtLogPath, wxString('n', lTextCharacters));
  cmdLogDirBrowse = new wxButton(pBox, wxID_ANY, ResText(IDS_BROWSE));
  auto* pPath = new wxBoxSizer(wxHORIZONTAL);
  pPath->Add(txtLogPath, wxSizerFlags(1).CentreVertical());
  pPath->Add(cmdLogDirBrowse, wxSizerFlags().CentreVertical().Border(wxLEFT, Twips(pPage, 90)));
  pGrid->Add(pPath, wxSizerFlags(1).Expand());
}

void frmOptions::LayOutDiskFrame(wxPanel* pPage, wxSizer* pColumn) {
  auto* pRows = new wxBoxSizer(wxVERTICAL);
  auto* pBox = Frame(pPage, pColumn, IDS_FRAME_DISK, pRows)->GetStaticBox();
  chkDiskMaxLogFiles = new wxCheckBox(pBox, wxID_ANY, ResText(IDS_KEEP_MAXIMUM));
  txtMaxLogFiles = TextBox(pBox, "txtMaxLogFiles");
  AccessibleName::Set(*txtMaxLogFiles,
                      wxControl::RemoveMnemonics(ResText(IDS_KEEP_MAXIMUM)) + ResText(IDS_LOG_FILES));
  FitTo(txtMaxLogFiles, "00000");
  auto* pCount = new wxBoxSizer(wxHORIZONTAL);
  pCount->Add(chkDiskMaxLogFiles, LabelFlags());
  pCount->Add(txtMaxLogFiles, LabelFlags());
  pCount->Add(Label(pBox, IDS_LOG_FILES), wxSizerFlags().CentreVertical().Border(wxLEFT, Twips(pPage, 90)));
  pRows->Add(pCount);
  chkDiskNoLogDisabled = new wxCheckBox(pBox, wxID_ANY, ResText(IDS_NO_LOG_DISABLED));
  pRows->Add(chkDiskNoLogDisabled, wxSizerFlags().Border(wxTOP, Twips(pPage, lGap)));
}

void frmOptions::BuildCookiesPage() {
  wxPanel* pPage = AddPage(IDS_TAB_COOKIES);
  auto* pRows = new wxBoxSizer(wxVERTICAL);
  auto* pBox = Frame(pPage, pPage->GetSizer(), IDS_FRAME_COOKIES, pRows)->GetStaticBox();
  auto* pText = Label(pBox, IDS_COOKIES_TEXT);
  optCookieAccept = new wxRadioButton(pBox, wxID_ANY, ResText(IDS_COOKIES_ACCEPT), wxDefaultPosition,
                                      wxDefaultSize, wxRB_GROUP);
  optCookieDisable = new wxRadioButton(pBox, wxID_ANY, ResText(IDS_COOKIES_REFUSE));
  auto* pNote = Label(pBox, IDS_COOKIES_NOTE);
  // As wide as the widest of the other pages, so that the text does not decide the dialog's width.
  const int lWidth = tabOptions->GetPage(2)->GetSizer()->CalcMin().x - Twips(pPage, 5 * lGap);
  pText->Wrap(lWidth);
  pNote->Wrap(lWidth);
  const int lSpace = Twips(pPage, lGap);
  pRows->Add(pText);
  pRows->Add(optCookieAccept, wxSizerFlags().Border(wxTOP, lSpace));
  pRows->Add(optCookieDisable, wxSizerFlags().Border(wxTOP | wxBOTTOM, lSpace));
  pRows->Add(pNote);
}
