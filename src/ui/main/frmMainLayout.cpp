// The main window's sizes, in twips, and its two states: shown, or minimised to the tray.
#include <wx/dcclient.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/statusbr.h>
#include <wx/tooltip.h>

#include <algorithm>

#include "ui/common/PictureBox.h"
#include "ui/common/TextGlue.h"
#include "ui/main/Commands.h"
#include "ui/main/frmMain.h"
#include "ui/main/modSysTray.h"
#include "ui/system/AccessibleName.h"
#include "ui/system/WindowScale.h"

namespace {

constexpr int lLeastWidth = 5600;
constexpr int lLeastHeight = 4600;
constexpr int lFirstWidth = 12000;
constexpr int lFirstHeight = 7800;
constexpr int lLineInset = 10;
constexpr int lViewFromRight = 2100;
constexpr int lViewTop = 90;
constexpr int lViewWidth = 2040;
constexpr int lViewHeight = 450;
constexpr int lCountsLeft = 120;
constexpr int lCountsTop = 45;
constexpr int lListTop = 600;
constexpr int lPictureSide = 240;

int Twips(const wxWindow& aWindow, int lTwips) {
  return WindowScale::FromTwips(aWindow, lTwips);
}

int FieldAt(const wxStatusBar& aBar, const wxPoint& aAt) {
  for (int i = 0; i < aBar.GetFieldsCount(); ++i) {
    wxRect aField;
    if (aBar.GetFieldRect(i, aField) && aField.Contains(aAt)) return i;
  }
  return -1;
}

}  // namespace

void frmMain::BuildStatusBar() {
  sbrMain = CreateStatusBar(3, wxSTB_ELLIPSIZE_END | wxFULL_REPAINT_ON_RESIZE);
  sbrMain->Bind(wxEVT_MOTION, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    const std::int32_t aNames[] = {IDS_PANEL_CLOCK, IDS_PANEL_NEXT, IDS_PANEL_LAST};
    const int iField = FieldAt(*sbrMain, aEvent.GetPosition());
    if (iField < 0) return;
    const wxString szName = iField < 3 ? ResText(aNames[iField]).Trim() : BreakLines(ToWx(Note()), this);
    if (sbrMain->GetToolTipText() != szName) sbrMain->SetToolTip(szName);
  });
  // What lasts until somebody has seen it.
  sbrMain->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    if (FieldAt(*sbrMain, aEvent.GetPosition()) < 3 || Note() != szLogNote) return;
    szLogNote.clear();
    lMissingLines = 0;
    ShowNotes();
  });
  SetStatusBarPane(-1);  // the menus' help would take the clock's place
  LayOutStatusBar();
}

void frmMain::LayOutStatusBar() {
  // Each panel has room for its widest text. In a narrow window the two times come first and the clock gives
  // way.
  const auto Needs = [this](const wxString& szText) {
    return sbrMain->GetTextExtent(szText).x + FromDIP(20);
  };
  const int lClock = Needs("12/30/2000 12:00:00 AM");
  const int lNext = Needs(ResText(IDS_NEXT) + " 12:00:00 AM");
  const int lLast = std::max(Needs(ResText(IDS_LAST) + " 12:00:00 AM"), Needs(ResText(IDS_NO_SITES)));
  if (Note().empty()) {
    const bool bNarrow = GetClientSize().x < lClock + lNext + lLast;
    const int aWidths[] = {bNarrow ? -1 : lClock, bNarrow ? lNext : -1, lLast};
    sbrMain->SetFieldsCount(3, aWidths);
    return;
  }
  const int lNote = GetClientSize().x - lClock - lNext - lLast;
  const bool bNarrow = lNote < lLast;
  const int aWidths[] = {bNarrow ? -1 : lClock, lNext, lLast, bNarrow ? -2 : -1};
  sbrMain->SetFieldsCount(4, aWidths);
}

void frmMain::BuildCurrentView() {
  // Only what has a light is counted, so the number's own sites are the enabled ones.
  pixCounts = new CountStrip(pixClient, [this](std::int16_t iResult) {
    if (!CommandAllowed(mV_All + iResult))
      SoundBell();
    else
      ShowOnly(iResult, iResult == 0 ? std::int16_t{0} : std::int16_t{1});
  });
  pixCounts->NoteClicked = [this] { RunCommand(mE_Options); };
  fraCurView = new wxPanel(pixClient, wxID_ANY, wxDefaultPosition,
                           wxSize(Twips(*this, lViewWidth), Twips(*this, lViewHeight)));
  lblCurView = new wxStaticText(fraCurView, wxID_ANY, ResText(IDS_CURRENT_VIEW));
  const int lSide = Twips(*this, lPictureSide);
  imgColors = new PictureBox(fraCurView, lSide);
  imgEnabled = new PictureBox(fraCurView, lSide);
  imgColors->SetToolTip(ResText(IDS_TIP_RESULTS));
  imgEnabled->SetToolTip(ResText(IDS_TIP_ENABLED));
  AccessibleName::Set(*imgColors, ResText(IDS_TIP_RESULTS));
  AccessibleName::Set(*imgEnabled, ResText(IDS_TIP_ENABLED));
  imgColors->Click = [this] { imgColors_Click(); };
  imgEnabled->Click = [this] { imgEnabled_Click(); };
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  pRow->AddStretchSpacer();
  pRow->Add(lblCurView, wxSizerFlags().CentreVertical());
  pRow->Add(imgColors, wxSizerFlags().CentreVertical().Border(wxLEFT, Twips(*this, 60)));
  pRow->Add(imgEnabled, wxSizerFlags().CentreVertical().Border(wxLEFT, Twips(*this, 60)));
  fraCurView->SetSizer(pRow);
  fraCurView->Layout();
  pixClient->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { PaintLines(); });
  SetMinSize(wxSize(Twips(*this, lLeastWidth), Twips(*this, lLeastHeight)));
  SetSize(Twips(*this, lFirstWidth), Twips(*this, lFirstHeight));
  CentreOnScreen();
}

// An etched line across the top: a dark one, and a light one just below it.
void frmMain::PaintLines() {
  wxPaintDC aDC(pixClient);
  const int lInset = std::max(1, Twips(*this, lLineInset));
  const int lRight = pixClient->GetClientSize().x - lInset;
  const int lCompanion = std::max(lInset + 1, Twips(*this, lLineInset + 1));
  aDC.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_3DSHADOW)));
  aDC.DrawLine(lInset, lInset, lRight, lInset);
  aDC.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_3DHIGHLIGHT)));
  aDC.DrawLine(lInset, lCompanion, lRight, lCompanion);
}

void frmMain::Form_Resize() {
  if (!sbrMain || !lvwMain || bLayingOut || IsIconized()) return;
  bLayingOut = true;
  modSysTray::RefreshTip();
  modSysTray::EnableRestore(bMinimised);
  const wxSize aLeast = GetMinSize();
  const wxSize aSize = GetSize();
  if (aSize.x < aLeast.x || aSize.y < aLeast.y)
    SetSize(std::max(aSize.x, aLeast.x), std::max(aSize.y, aLeast.y));
  LayOut();
  bLayingOut = false;
}

void frmMain::LayOut() {
  const auto To = [this](int lPixels) { return WindowScale::ToTwips(*this, lPixels); };
  const wxSize aClient = GetClientSize();
  pixClient->SetSize(aClient);
  LayOutStatusBar();
  fraCurView->Move(aClient.x - Twips(*this, lViewFromRight), Twips(*this, lViewTop));

  const int lViewLeft = aClient.x - Twips(*this, lViewFromRight);
  const int lTop = Twips(*this, lListTop);
  pixCounts->SetSize(Twips(*this, lCountsLeft), Twips(*this, lCountsTop),
                     std::max(0, lViewLeft - Twips(*this, lCountsLeft)), lTop - Twips(*this, lCountsTop));

  const int lWidth = To(aClient.x);
  const int lOuter = To(GetSize().y);
  const int lBar = To(sbrMain->GetSize().y);
  int lListHeight = lvwMain->GetSize().y;
  // Under a window manager with tall captions the list would reach below the status bar's edge.
  if (lOuter - lBar > 1500)
    lListHeight = std::min(Twips(*this, lOuter - lBar - 1500), std::max(0, aClient.y - lTop));
  lvwMain->SetSize(0, lTop, std::max(0, Twips(*this, lWidth - 100)), lListHeight);

  const int lComments = static_cast<int>(0.3 * (lWidth - 100));
  const int lAddress = lWidth - 300 - 300 - lComments - 2000;
  if (lComments >= 0 && lAddress >= 0) {
    const int aWidths[] = {300, lAddress, 1500, 300, lComments};
    for (int i = 0; i < 5; ++i)
      lvwMain->SetColumnWidth(i, Twips(*this, aWidths[i]));
  }
  pixClient->Refresh();
}

void frmMain::Form_Iconize(bool bIconized) {
  if (!bIconized)
    LeaveMinimised();
  else if (tmrRestored.IsRunning())
    Iconize(false);
  else
    EnterMinimised();
}

void frmMain::EnterMinimised() {
  if (bMinimised || bExiting) return;
  bMinimised = true;
  modSysTray::EnableRestore(true);
  // Without a tray a hidden window could not be brought back: then it stays on the task bar.
  if (modSysTray::CanHideWindow()) Hide();
  modSysTray::RefreshTip();
}

// The tray may come and go. The icon is added as soon as there is a place for it; a hidden window whose tray
// has gone returns to the task bar, still minimised.
void frmMain::KeepReachable() {
  if (bExiting || modSysTray::CanHideWindow() || !bMinimised || IsShown()) return;
  Iconize();
  Show();
}

void frmMain::LeaveMinimised() {
  // A hidden window may be reported as not iconised though nobody restored it.
  if (!bMinimised || !IsShown()) return;
  bMinimised = false;
  modSysTray::EnableRestore(false);
  Form_Resize();
}

void frmMain::RestoreWindow() {
  if (bExiting) return;
  bMinimised = false;
  if (IsIconized()) Iconize(false);
  if (IsMaximized()) Maximize(false);
  // A window manager remembers the state of a window that was hidden, and puts it on the screen in that state
  // again before it hears of another one.
  constexpr int lSettled = 500;  // milliseconds
  tmrRestored.StartOnce(lSettled);
  Show();
  Raise();
  modSysTray::EnableRestore(false);
  Form_Resize();
  if (IsEnabled()) return;
  // A dialog holds the main window: it belongs in front.
  for (wxWindow* pWindow : wxTopLevelWindows)
    if (pWindow != this && pWindow->IsShown() && pWindow != pProgress.get()) pWindow->Raise();
}
