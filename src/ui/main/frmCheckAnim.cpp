#include "ui/main/frmCheckAnim.h"

#include <wx/button.h>
#include <wx/dcclient.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/system/WindowScale.h"

namespace {

constexpr int lTick = 30;  // milliseconds
constexpr int lStep = 100;
constexpr int lPathLeft = 1020;
constexpr int lPathRight = 5295;
constexpr int lPathTop = 465;
constexpr int lFieldWidth = 6435;
constexpr int lFieldHeight = 1260;

constexpr int lTextWidth = 5700;

// 1,000
std::string Grouped(std::int32_t lNumber) {
  std::string szDigits = std::to_string(lNumber);
  for (auto i = static_cast<std::ptrdiff_t>(szDigits.size()) - 3; i > 0; i -= 3)
    szDigits.insert(static_cast<std::size_t>(i), 1, ',');
  return szDigits;
}

}  // namespace

frmCheckAnim::frmCheckAnim(wxWindow* pOwner, std::function<void()> StopAll)
    : wxFrame(pOwner, wxID_ANY, ResText(IDS_CHECKING_SITES), wxDefaultPosition, wxDefaultSize,
              wxCAPTION | wxCLOSE_BOX | wxFRAME_FLOAT_ON_PARENT | wxFRAME_NO_TASKBAR | wxCLIP_CHILDREN),
      aStopAll(std::move(StopAll)) {
  const auto Twips = [this](int lTwips) { return WindowScale::FromTwips(*this, lTwips); };
  SetIcons(Images::ProgramIcons());
  auto* pPanel = new wxPanel(this);
  pixField =
      new wxPanel(pPanel, wxID_ANY, wxDefaultPosition, wxSize(Twips(lFieldWidth), Twips(lFieldHeight)));
  pixField->SetDoubleBuffered(true);
  pixField->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { PaintField(); });

  for (Picture* pPicture : {&pixEarth, &pixRayForward, &pixRayBack, &pixSpaceShip})
    pPicture->aImage = Images::Bundle(pPicture->szImage, ToDIP(Twips(pPicture->lSide)));

  fraStatus = new wxStaticBoxSizer(wxVERTICAL, pPanel, ResText(IDS_STATUS));
  const long lStyle = wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_MIDDLE;
  wxStaticBox* pBox = fraStatus->GetStaticBox();
  const wxSize aTextSize(Twips(lTextWidth), -1);
  lblSiteName = new wxStaticText(pBox, wxID_ANY, " ", wxDefaultPosition, aTextSize, lStyle);
  lblSiteStatus = new wxStaticText(pBox, wxID_ANY, " ", wxDefaultPosition, aTextSize, lStyle);
  lblSiteCount = new wxStaticText(pBox, wxID_ANY, " ", wxDefaultPosition, aTextSize, lStyle);
  fraStatus->Add(lblSiteName, wxSizerFlags().Expand().Border(wxALL, Twips(90)));
  for (wxStaticText* pLine : {lblSiteStatus, lblSiteCount})
    fraStatus->Add(pLine, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, Twips(90)));

  cmdStopAll = new wxButton(pPanel, wxID_ANY, ResText(IDS_STOP));
  cmdStopAll->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { cmdStopAll_Click(); });
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& aEvent) {
    if (aEvent.GetKeyCode() == WXK_ESCAPE)
      Close();
    else if (aEvent.GetKeyCode() == '.' && aEvent.GetModifiers() == wxMOD_CONTROL)
      cmdStopAll_Click();
    else
      aEvent.Skip();
  });

  auto* pColumn = new wxBoxSizer(wxVERTICAL);
  pColumn->Add(pixField);
  pColumn->Add(fraStatus, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, Twips(150)));
  pColumn->Add(cmdStopAll, wxSizerFlags().Centre().Border(wxALL, Twips(150)));
  pPanel->SetSizer(pColumn);
  auto* pFill = new wxBoxSizer(wxVERTICAL);
  pFill->Add(pPanel, wxSizerFlags(1).Expand());
  SetSizerAndFit(pFill);
  lblSiteName->SetLabel("");
  lblSiteStatus->SetLabel("");
  lblSiteCount->SetLabel("");

  ResetRayForward();
  ResetRayBack();
  tmrCheckAnim.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { tmrCheckAnim_Timer(); });
  tmrCheckAnim.Start(lTick);
}

void frmCheckAnim::ShowCount(std::int32_t lSite, std::int32_t lSites) {
  const wxString szCount =
      lSite < 1 ? wxString() : ToWx(FillResString(IDS_SITE_OF, {Grouped(lSite), Grouped(lSites)}));
  if (lblSiteCount->GetLabel() != szCount) lblSiteCount->SetLabel(szCount);
}

void frmCheckAnim::cmdStopAll_Click() {
  aStopAll();
  Close();
}

void frmCheckAnim::ResetRayForward() {
  pixRayForward.lTop = lPathTop;
  pixRayForward.lLeft = lPathLeft;
}

void frmCheckAnim::ResetRayBack() {
  pixRayBack.lTop = lPathTop;
  pixRayBack.lLeft = lPathRight;
}

// The first crossing is made by the back ray while both are hidden: a pass that is over at once shows no
// flicker of rays.
void frmCheckAnim::tmrCheckAnim_Timer() {
  if (iDirection == 1) {
    if (pixRayBack.lLeft >= lPathLeft) {
      pixRayBack.lLeft -= lStep;
    } else {
      iDirection = 0;
      pixRayBack.bVisible = false;
      ResetRayForward();
      pixRayForward.bVisible = true;
    }
  } else if (pixRayForward.lLeft < lPathRight) {
    pixRayForward.lLeft += lStep;
  } else {
    iDirection = 1;
    pixRayForward.bVisible = false;
    ResetRayBack();
    pixRayBack.bVisible = true;
  }
  RefreshPath();
}

void frmCheckAnim::RefreshPath() {
  if (!pixRayForward.bVisible && !pixRayBack.bVisible) return;
  const auto Twips = [this](int lTwips) { return WindowScale::FromTwips(*this, lTwips); };
  const int lFrom = Twips(lPathLeft - lStep);
  const int lTo = Twips(lPathRight + lStep + pixRayForward.lSide);
  pixField->RefreshRect(wxRect(lFrom, Twips(lPathTop), lTo - lFrom, Twips(pixRayForward.lSide) + 1));
}

void frmCheckAnim::PaintField() {
  wxPaintDC aDC(pixField);
  for (const Picture* pPicture : {&pixEarth, &pixRayForward, &pixRayBack, &pixSpaceShip}) {
    if (!pPicture->bVisible) continue;
    aDC.DrawBitmap(pPicture->aImage.GetBitmapFor(pixField), WindowScale::FromTwips(*this, pPicture->lLeft),
                   WindowScale::FromTwips(*this, pPicture->lTop), true);
  }
}
