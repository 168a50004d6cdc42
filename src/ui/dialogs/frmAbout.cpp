#include "ui/dialogs/frmAbout.h"

#include <wx/button.h>
#include <wx/frame.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "base/Commit.h"
#include "ui/common/HelpCommands.h"
#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"

frmAbout::frmAbout(MainHost& aHost)
    : wxDialog(aHost.Frame(), wxID_ANY, ResText(IDS_ABOUT_TITLE), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE),
      aDisabler(aHost) {
  auto* pTitle = new wxStaticText(this, wxID_ANY, ResText(IDS_APP_TITLE));
  pTitle->SetFont(pTitle->GetFont().Bold().Scaled(1.7f));
  auto* pWhat = new wxStaticText(this, wxID_ANY, ResText(IDS_ABOUT_WHAT));
  lblVersion = new wxStaticText(this, wxID_ANY,
                                ResText(IDS_ABOUT_VERSION) + KESTROVA_VERSION + " (" + CommitName() + ")");
  auto* pLicence = new wxStaticText(this, wxID_ANY, ResText(IDS_ABOUT_LICENCE));
  auto* pBuilt = new wxStaticText(this, wxID_ANY, ResText(IDS_ABOUT_BUILT_WITH) + KESTROVA_LIBRARIES + ".");

  const int lGap = FromDIP(8);
  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(pTitle, wxSizerFlags().Expand());
  pColumn->Add(pWhat, wxSizerFlags().Expand().Border(wxTOP, lGap / 2));
  pColumn->Add(lblVersion, wxSizerFlags().Expand().Border(wxTOP, 2 * lGap));
  pColumn->Add(pLicence, wxSizerFlags().Expand().Border(wxTOP, lGap));
  pColumn->Add(pBuilt, wxSizerFlags().Expand().Border(wxTOP, lGap));
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  pRow->Add(new wxStaticBitmap(this, wxID_ANY, Images::Bundle("Kestrova", 64)),
            wxSizerFlags().Border(wxRIGHT, FromDIP(18)));
  pRow->Add(pColumn, wxSizerFlags(1));

  cmdOK = new wxButton(this, wxID_OK, ResText(IDS_OK));
  auto* pAll = new wxBoxSizer(wxVERTICAL);
  pAll->Add(pRow, wxSizerFlags().Expand().Border(wxALL, FromDIP(18)));
  pAll->Add(cmdOK, wxSizerFlags().Right().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(14)));
  SetSizerAndFit(pAll);
  SetAffirmativeId(wxID_OK);
  SetEscapeId(wxID_OK);
  cmdOK->SetDefault();
  cmdOK->SetFocus();
  CentreOnParent();

  cmdOK->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Close(); });
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Destroy(); });
  HelpCommands::BindF1(*this, aHost, HelpContext::lMain);
}

void ShowAbout(MainHost& aHost) {
  (new frmAbout(aHost))->Show();
}
