#include "ui/main/frmSplash.h"

#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"

frmSplash::frmSplash()
    : wxFrame(nullptr, wxID_ANY, ResText(IDS_APP_TITLE), wxDefaultPosition, wxDefaultSize,
              wxFRAME_NO_TASKBAR | wxBORDER_SIMPLE) {
  SetIcons(Images::ProgramIcons());
  auto* pPanel = new wxPanel(this);
  pPanel->SetBackgroundColour(wxColour(0x17, 0x39, 0x5c));
  const auto Line = [&](const wxString& szText, float dScale) {
    auto* pText = new wxStaticText(pPanel, wxID_ANY, szText);
    pText->SetFont(pText->GetFont().Scaled(dScale));
    pText->SetForegroundColour(wxColour(0xf2, 0xf5, 0xf8));
    return pText;
  };
  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(Line(ResText(IDS_APP_TITLE), 2.2f));
  pColumn->Add(Line(ResText(IDS_SPLASH_LINE), 1.1f), wxSizerFlags().Border(wxTOP, FromDIP(4)));
  pColumn->Add(Line(ResText(IDS_SPLASH_VERSION) + KESTROVA_VERSION, 0.9f),
               wxSizerFlags().Border(wxTOP, FromDIP(12)));
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  pRow->Add(new wxStaticBitmap(pPanel, wxID_ANY, Images::Bundle("Kestrova", 96)),
            wxSizerFlags().Centre().Border(wxALL, FromDIP(28)));
  pRow->Add(pColumn, wxSizerFlags().Centre().Border(wxTOP | wxBOTTOM | wxRIGHT, FromDIP(28)));
  pPanel->SetSizer(pRow);
  auto* pFill = new wxBoxSizer(wxVERTICAL);
  pFill->Add(pPanel, wxSizerFlags(1).Expand());
  SetSizerAndFit(pFill);
  CentreOnScreen();
}
