#include "ui/main/frmWelcome.h"

#include <wx/button.h>
#include <wx/frame.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "platform/Clock.h"
#include "ui/common/HelpCommands.h"
#include "ui/common/Images.h"
#include "ui/common/MainHost.h"
#include "ui/common/TextGlue.h"

namespace {
constexpr double dComingUp = 1;  // seconds
constexpr int lTextWidth = 360;
}  // namespace

frmWelcome::frmWelcome(MainHost& aHost)
    : wxDialog(aHost.Frame(), wxID_ANY, ResText(IDS_APP_TITLE), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE),
      dtMade(Clock::SteadyNow()) {
  auto* pTitle = new wxStaticText(this, wxID_ANY, ResText(IDS_WELCOME_TITLE));
  pTitle->SetFont(pTitle->GetFont().Bold().Scaled(1.4f));
  auto* pText = new wxStaticText(this, wxID_ANY, ResText(IDS_WELCOME_TEXT));
  auto* pHelp = new wxStaticText(this, wxID_ANY, ResText(IDS_WELCOME_HELP));
  // Wrapped to a width that grows with the text, not with the pixels.
  const int lWidth = lTextWidth * GetCharHeight() / FromDIP(17);
  pText->Wrap(FromDIP(lWidth));
  pHelp->Wrap(FromDIP(lWidth));

  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(pTitle);
  pColumn->AddSpacer(FromDIP(10));
  pColumn->Add(pText);
  pColumn->AddSpacer(FromDIP(8));
  pColumn->Add(pHelp);
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  pRow->Add(new wxStaticBitmap(this, wxID_ANY, Images::Bundle("Kestrova", 48)),
            wxSizerFlags().Border(wxRIGHT, FromDIP(16)));
  pRow->Add(pColumn, wxSizerFlags(1));

  cmdRunTour = new wxButton(this, wxID_ANY, ResText(IDS_RUN_TOUR));
  cmdClose = new wxButton(this, wxID_CLOSE, ResText(IDS_CLOSE));
  auto* pButtons = new wxBoxSizer(wxHORIZONTAL);
  pButtons->Add(cmdRunTour, wxSizerFlags().Border(wxRIGHT, FromDIP(8)));
  pButtons->Add(cmdClose);
  auto* pAll = new wxBoxSizer(wxVERTICAL);
  pAll->Add(pRow, wxSizerFlags().Expand().Border(wxALL, FromDIP(18)));
  pAll->Add(pButtons, wxSizerFlags().Right().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(14)));
  SetSizerAndFit(pAll);
  SetEscapeId(wxID_CLOSE);
  cmdRunTour->SetDefault();
  cmdRunTour->SetFocus();
  CentreOnParent();

  cmdRunTour->Bind(wxEVT_BUTTON, [&aHost](wxCommandEvent&) { HelpCommands::Tour(aHost); });
  cmdClose->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Close(); });
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Destroy(); });
  HelpCommands::BindF1(*this, aHost, HelpContext::lMain);
  aHost.Frame()->Bind(wxEVT_ACTIVATE, &frmWelcome::Main_Activate, this);
}

// Both windows come up at the same moment, and a window manager may give the keyboard to the one behind.
// Later the operator chooses.
void frmWelcome::Main_Activate(wxActivateEvent& aEvent) {
  aEvent.Skip();
  if (aEvent.GetActive() && !IsBeingDeleted() && Clock::SteadyNow() < AddSeconds(dtMade, dComingUp))
    CallAfter([this] { Raise(); });
}
