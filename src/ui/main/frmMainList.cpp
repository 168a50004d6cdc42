// The main window's list: which sites it shows, and how the two filters are cycled.
#include <wx/menu.h>
#include <wx/panel.h>
#include <wx/statusbr.h>
#include <wx/utils.h>

#include <memory>

#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "ui/common/PictureBox.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/frmBusy.h"
#include "ui/main/Commands.h"
#include "ui/main/frmMain.h"

void frmMain::BuildList() {
  lvwMain = new SiteList(pixClient);
  lvwMain->Bind(wxEVT_KEY_DOWN, &frmMain::lvwMain_KeyDown, this);
  lvwMain->Bind(wxEVT_LIST_ITEM_ACTIVATED, [this](wxListEvent&) { lvwMain_Activated(); });
  lvwMain->Bind(wxEVT_CONTEXT_MENU, &frmMain::lvwMain_ContextMenu, this);
  lvwMain->Bind(wxEVT_RIGHT_UP, &frmMain::lvwMain_RightUp, this);
  lvwMain->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    lvwMain->Refresh();
  });
  lvwMain->SetFocus();
}

// A double click; Enter has been dealt with as a key.
void frmMain::lvwMain_Activated() {
  if (SelectedSlot() != 0) RunCommand(mE_EditAddress);
}

// GTK asks for the menu when the button goes down, Windows when it comes up. It opens when it comes up.
void frmMain::lvwMain_ContextMenu(wxContextMenuEvent& aEvent) {
  const bool bByKey = aEvent.GetPosition() == wxDefaultPosition;
  bPopupDue = !bByKey && wxGetMouseState().RightIsDown();
  if (!bPopupDue) OpenPopup(bByKey);
}

void frmMain::lvwMain_RightUp(wxMouseEvent& aEvent) {
  aEvent.Skip();
  if (!bPopupDue) return;
  bPopupDue = false;
  OpenPopup(false);
}

void frmMain::OpenPopup(bool bByKey) {
  const std::unique_ptr<wxMenu> pMenu(MakePopup());
  // From the keyboard there is no position: open at the selected row, or at the top of the list.
  wxPoint aAt = wxDefaultPosition;
  if (bByKey) {
    wxRect aRow;
    if (const long lRow = lvwMain->GetFirstSelected(); lRow >= 0) {
      lvwMain->EnsureVisible(lRow);
      lvwMain->GetItemRect(lRow, aRow);
    }
    aAt = aRow.GetBottomLeft() + wxPoint(FromDIP(24), 0);
  }
  lvwMain->PopupMenu(pMenu.get(), aAt);
}

bool frmMain::FitsFilters(std::int32_t i) const {
  const SiteRecord& aSite = modAddress::Site(i);
  if (ResultFilter >= 1 && ResultFilter <= 3 && aSite.Status != ResultFilter) return false;
  if (EnabledFilter == 1 && !aSite.TakesPart()) return false;
  return EnabledFilter != 2 || !aSite.TakesPart();
}

void frmMain::Display_lvwMainEx(std::int32_t SelectNumber) {
  ShowFilterPictures();
  std::vector<SiteList::Row> aRows;
  aRows.reserve(static_cast<std::size_t>(lSiteCount));
  for (std::int32_t i = 1; i <= lSiteCount; ++i) {
    if (!FitsFilters(i)) continue;
    const SiteRecord& aSite = modAddress::Site(i);
    SiteList::Row aRow;
    aRow.lSlot = i;
    aRow.bChecked = aSite.TakesPart();
    if (!aSite.URL.empty()) aRow.szAddress = LoadResString(IDS_AGENT) + aSite.URL;
    aRow.szIP = aSite.IP;
    if (aRow.bChecked && SiteStatus::HasLight(aSite.Status)) aRow.iLight = aSite.Status;
    aRow.szRemark = aSite.Comments;
    aRows.push_back(std::move(aRow));
  }
  if (lSiteCount > 0 && sbrMain->GetStatusText(2) == ResText(IDS_NO_SITES)) ShowPanel(3, "");
  const bool bEmpty = aRows.empty();
  lvwMain->Fill(std::move(aRows));
  lvwMain->SelectSlot(SelectNumber);
  ShowCounts();
  lvwMain->ShowHint(!bEmpty ? wxString() : ResText(lSiteCount == 0 ? IDS_HINT_EMPTY : IDS_HINT_FILTERED));
}

// The lights that the list would show without filters.
void frmMain::ShowCounts() {
  bCountsDue = false;
  CountStrip::Counts aCounts{lSiteCount, lvwMain->RowCount(), {}};
  for (std::int32_t i = 1; modAddress::IsSite(i); ++i) {
    const SiteRecord& aSite = aSites[static_cast<std::size_t>(i)];
    if (aSite.Enabled == 1 && aSite.Status >= 1 && aSite.Status <= 3) ++aCounts.aLights[aSite.Status - 1U];
  }
  pixCounts->Show(aCounts);
  const SettingsRecord& aSettings = CurrentSettings();
  const bool bMail = !aSettings.Email.empty() && !aSettings.SMTP.empty();
  pixCounts->ShowNote(bMail ? wxString() : ResText(IDS_COUNT_NO_MAIL));
}

void frmMain::Display_lvwMain(std::int32_t SelectNumber) {
  frmBusy aNotice(*this, LoadResString(IDS_APP_TITLE), LoadResString(IDS_PROCESSING));
  Display_lvwMainEx(SelectNumber);
}

void frmMain::ShowFilterPictures() {
  static const char* const aLights[] = {"Green", "Yellow", "Red"};
  imgColors->Picture(ResultFilter >= 1 && ResultFilter <= 3 ? aLights[ResultFilter - 1] : "colors_all");
  imgEnabled->Picture(EnabledFilter == 1 ? "Checked" : EnabledFilter == 2 ? "UnChecked" : "enable_both");
}

void frmMain::ShowOnly(std::int16_t iResult, std::int16_t iEnabled) {
  ResultFilter = iResult;
  EnabledFilter = iEnabled;
  Check_MnuView();
  Display_lvwMain(0);
}

void frmMain::imgColors_Click() {
  if (aEngine.ListBusy()) return;
  ResultFilter = ResultFilter >= 0 && ResultFilter <= 2 ? static_cast<std::int16_t>(ResultFilter + 1)
                 : ResultFilter == 3                    ? static_cast<std::int16_t>(0)
                                                        : static_cast<std::int16_t>(1);
  Display_lvwMain(1);
  Check_MnuView();
}

void frmMain::imgEnabled_Click() {
  if (aEngine.ListBusy()) return;
  EnabledFilter = EnabledFilter == 0 || EnabledFilter == 1 ? static_cast<std::int16_t>(EnabledFilter + 1)
                  : EnabledFilter == 2                     ? static_cast<std::int16_t>(0)
                                                           : static_cast<std::int16_t>(1);
  Display_lvwMain(1);
  Check_MnuView();
}
