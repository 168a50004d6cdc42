#include "ui/tour/frmTour.h"

#include <wx/button.h>
#include <wx/dcclient.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/tour/TourPages.h"

namespace {

constexpr int lMargin = 24;
constexpr double dMostEnlarged = 1.5;  // beyond that a picture of a window looks coarse

}  // namespace

frmTour::frmTour() : wxFrame(nullptr, wxID_ANY, ResText(IDS_TOUR_TITLE)) {
  SetIcons(Images::ProgramIcons());
  auto* pPanel = new wxPanel(this);
  lblHeading = new wxStaticText(pPanel, wxID_ANY, "");
  lblHeading->SetFont(lblHeading->GetFont().Bold().Scaled(1.6f));
  lblText = new wxStaticText(pPanel, wxID_ANY, "");
  lblText->SetFont(lblText->GetFont().Scaled(1.15f));
  pixPage = new wxPanel(pPanel, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE);
  pixPage->SetDoubleBuffered(true);
  lblPage = new wxStaticText(pPanel, wxID_ANY, "");
  cmdBack = new wxButton(pPanel, wxID_BACKWARD, ResText(IDS_TOUR_BACK));
  cmdNext = new wxButton(pPanel, wxID_FORWARD, ResText(IDS_TOUR_NEXT));
  cmdClose = new wxButton(pPanel, wxID_CLOSE, ResText(IDS_TOUR_CLOSE));

  const int lEdge = FromDIP(lMargin);
  auto* pButtons = new wxBoxSizer(wxHORIZONTAL);
  pButtons->Add(lblPage, wxSizerFlags().CentreVertical());
  pButtons->AddStretchSpacer();
  pButtons->Add(cmdBack);
  pButtons->Add(cmdNext, wxSizerFlags().Border(wxLEFT, FromDIP(8)));
  pButtons->Add(cmdClose, wxSizerFlags().Border(wxLEFT, FromDIP(24)));
  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(lblHeading, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, lEdge));
  pColumn->AddSpacer(FromDIP(8));
  pColumn->Add(lblText, wxSizerFlags().Border(wxLEFT | wxRIGHT, lEdge));
  pColumn->Add(pixPage, wxSizerFlags(1).Expand().Border(wxALL, lEdge));
  pColumn->Add(pButtons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, lEdge));
  pPanel->SetSizer(pColumn);
  auto* pFill = new wxBoxSizer(wxVERTICAL);
  pFill->Add(pPanel, wxSizerFlags(1).Expand());
  SetSizer(pFill);
  SetMinSize(FromDIP(wxSize(560, 480)));
  SetSize(FromDIP(wxSize(960, 720)));

  cmdBack->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { GoTo(lPage - 1); });
  cmdNext->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { GoTo(lPage + 1); });
  cmdClose->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Close(); });
  pixPage->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent&) { GoTo(lPage + 1); });
  pixPage->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { pixPage_Paint(); });
  pixPage->Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    pixPage->Refresh();
  });
  Bind(wxEVT_CHAR_HOOK, &frmTour::Form_KeyDown, this);
  Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    Form_Resize();
  });
  lPage = lTourPages;
  GoTo(0);
}

void frmTour::GoTo(std::size_t lNew) {
  if (lNew >= lTourPages || lNew == lPage) return;
  lPage = lNew;
  const TourPage& aPage = aTourPages[lPage];
  aPicture = TourPicture(aPage.szPicture);
  aScaled = wxBitmap();
  lblHeading->SetLabelText(ResText(aPage.lHeading));
  lblPage->SetLabelText(
      ToWx(FillResString(IDS_TOUR_PAGE, {std::to_string(lPage + 1), std::to_string(lTourPages)})));
  const bool bLast = lPage + 1 == lTourPages;
  cmdBack->Enable(lPage > 0);
  cmdNext->Enable(!bLast);
  // A greyed button would keep the focus and take no key.
  wxButton* pFocus = bLast ? cmdClose : cmdNext;
  pFocus->SetDefault();
  pFocus->SetFocus();
  Form_Resize();
  pixPage->Refresh();
}

void frmTour::Form_KeyDown(wxKeyEvent& aEvent) {
  if (aEvent.HasAnyModifiers()) {
    aEvent.Skip();
    return;
  }
  switch (aEvent.GetKeyCode()) {
    case WXK_RIGHT:
    case WXK_PAGEDOWN:
      GoTo(lPage + 1);
      break;
    case WXK_LEFT:
    case WXK_PAGEUP:
    case WXK_BACK:
      GoTo(lPage - 1);
      break;
    case WXK_HOME:
      GoTo(0);
      break;
    case WXK_END:
      GoTo(lTourPages - 1);
      break;
    case WXK_ESCAPE:
      Close();
      break;
    default:
      aEvent.Skip();
  }
}

// The text is broken anew for the window's width, but on the widest screens not into lines too long to read.
void frmTour::Form_Resize() {
  if (lPage >= lTourPages) return;
  const int lWidth = GetClientSize().x - 2 * FromDIP(lMargin);
  lblText->SetLabelText(ResText(aTourPages[lPage].lText));
  lblText->Wrap(std::max(1, std::min(lWidth, 150 * lblText->GetCharWidth())));
  Layout();
}

void frmTour::pixPage_Paint() {
  wxPaintDC aDC(pixPage);
  const wxSize aRoom = pixPage->GetClientSize();
  if (!aPicture.IsOk() || aRoom.x <= 0 || aRoom.y <= 0) return;
  const double dScale =
      std::min({static_cast<double>(aRoom.x) / aPicture.GetWidth(),
                static_cast<double>(aRoom.y) / aPicture.GetHeight(), dMostEnlarged * GetDPIScaleFactor()});
  const auto Scaled = [dScale](int lLength) { return std::max(1, static_cast<int>(lLength * dScale)); };
  const wxSize aSize(Scaled(aPicture.GetWidth()), Scaled(aPicture.GetHeight()));
  if (!aScaled.IsOk() || aScaled.GetSize() != aSize)
    aScaled = wxBitmap(aPicture.Scale(aSize.x, aSize.y, wxIMAGE_QUALITY_HIGH));
  const wxPoint aAt((aRoom.x - aSize.x) / 2, 0);
  aDC.DrawBitmap(aScaled, aAt);
  const wxRect aMark = TourMark(aTourPages[lPage].szPicture, aTourPages[lPage].szMark);
  if (aMark.IsEmpty()) return;
  aDC.SetPen(wxPen(wxColour(0xe0, 0x5a, 0x00), FromDIP(3)));
  aDC.SetBrush(*wxTRANSPARENT_BRUSH);
  aDC.DrawRoundedRectangle(aAt + wxPoint(Scaled(aMark.x), Scaled(aMark.y)),
                           wxSize(Scaled(aMark.width), Scaled(aMark.height)), FromDIP(5));
}
