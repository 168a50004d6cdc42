#include "ui/common/frmNotice.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "ui/common/TextGlue.h"
#include "ui/system/BoxLook.h"

namespace {
constexpr int lWidestText = 60;  // average characters
}

frmNotice::frmNotice(wxWindow* pOwner, const std::string& szText, std::function<void()> aClosed)
    : wxDialog(pOwner, wxID_ANY, ResText(IDS_APP_TITLE), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE),
      szMessage(szText),
      aAfter(std::move(aClosed)) {
  pOwner->Disable();
  const long lAlign = BoxLook::bPictured ? wxALIGN_LEFT : wxALIGN_CENTRE_HORIZONTAL;
  auto* pText = new wxStaticText(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, lAlign);
  pText->SetLabel(wxControl::EscapeMnemonics(BreakLines(ToWxLines(szText), pOwner)));
  pText->Wrap(lWidestText * GetCharWidth());
  auto* cmdOK = new wxButton(this, wxID_ANY, ResText(IDS_OK));
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  if (BoxLook::bPictured)
    pRow->Add(new wxStaticBitmap(this, wxID_ANY, BoxLook::Picture()),
              wxSizerFlags().Border(wxRIGHT, FromDIP(14)));
  pRow->Add(pText, wxSizerFlags(1).CentreVertical());
  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(pRow, wxSizerFlags().Expand().Border(wxALL, FromDIP(16)));
  pColumn->Add(cmdOK, BoxLook::bPictured
                          ? wxSizerFlags().Right().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(14))
                          : wxSizerFlags().Expand());
  SetSizerAndFit(pColumn);
  cmdOK->SetDefault();
  SetEscapeId(cmdOK->GetId());
  cmdOK->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Leave(); });
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Leave(); });
  CentreOnParent();
  Show();
  cmdOK->SetFocus();
}

void frmNotice::Leave() {
  if (IsBeingDeleted() || !aAfter) return;
  std::function<void()> aRun;
  aRun.swap(aAfter);
  GetParent()->Enable();
  GetParent()->Raise();
  Destroy();
  aRun();
}
