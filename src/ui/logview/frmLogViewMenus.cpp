// The log viewer's commands: menus, keys and dialogs.
#include <wx/choice.h>
#include <wx/clipbrd.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/menu.h>
#include <wx/notebook.h>
#include <wx/textctrl.h>
#include <wx/textentry.h>

#include "editing/LastLocation.h"
#include "history/LogFiles.h"
#include "history/LogSummaryText.h"
#include "history/LogWords.h"
#include "persistence/modBasic.h"
#include "platform/Clock.h"
#include "ui/common/HelpCommands.h"
#include "ui/common/TextGlue.h"
#include "ui/common/frmHelp.h"
#include "ui/logview/EntriesPage.h"
#include "ui/logview/MorePages.h"
#include "ui/logview/OutagesPage.h"
#include "ui/logview/SummaryPage.h"
#include "ui/logview/frmLogView.h"

namespace {

using Command = frmLogView::Command;

constexpr std::int32_t lWeekDays = 7;
constexpr std::int32_t lMonthDays = 31;

struct Item {
  Command iCommand;  // lEnd a separator
  std::int32_t lText = 0;
  const char* szKey = "";
  wxItemKind iKind = wxITEM_NORMAL;
};

const Item aFile[] = {{Command::mF_Open, IDS_VIEW_OPEN, "Ctrl+O"},
                      {Command::mF_OpenFolder, IDS_VIEW_OPEN_FOLDER, "Ctrl+Shift+O"},
                      {Command::mF_Week, IDS_VIEW_WEEK, "Ctrl+W"},
                      {Command::mF_Month, IDS_VIEW_MONTH, "Ctrl+M"},
                      {Command::lEnd},
                      {Command::mF_SavePage, IDS_VIEW_SAVE_PAGE, "Ctrl+S"},
                      {Command::mF_SaveTable, IDS_VIEW_SAVE_TABLE, "Ctrl+Shift+S"},
                      {Command::lEnd},
                      {Command::mF_Exit, IDS_VIEW_EXIT, "Ctrl+Q"}};
const Item aEdit[] = {{Command::mE_Copy, IDS_VIEW_COPY, "Ctrl+C"},
                      {Command::mE_SelectAll, IDS_VIEW_SELECT_ALL, "Ctrl+A"},
                      {Command::lEnd},
                      {Command::mE_Find, IDS_VIEW_FIND, "Ctrl+F"},
                      {Command::mE_FindNext, IDS_VIEW_FIND_NEXT, "F3"},
                      {Command::mE_FindPrevious, IDS_VIEW_FIND_PREVIOUS, "Shift+F3"},
                      {Command::lEnd},
                      {Command::mE_NextFailure, IDS_VIEW_NEXT_FAILURE, "F4"},
                      {Command::mE_PreviousFailure, IDS_VIEW_PREVIOUS_FAILURE, "Shift+F4"}};
const Item aView[] = {{Command::mV_Entries, IDS_VIEW_PAGE_ENTRIES, "Ctrl+1"},
                      {Command::mV_Summary, IDS_VIEW_PAGE_SUMMARY, "Ctrl+2"},
                      {Command::mV_Outages, IDS_VIEW_PAGE_OUTAGES, "Ctrl+3"},
                      {Command::mV_PagePasses, IDS_VIEW_PAGE_PASSES, "Ctrl+4"},
                      {Command::mV_PagePace, IDS_VIEW_PAGE_PACE, "Ctrl+5"},
                      {Command::mV_PageHours, IDS_VIEW_PAGE_HOURS, "Ctrl+6"},
                      {Command::mV_PagePeriods, IDS_VIEW_PAGE_PERIODS, "Ctrl+7"},
                      {Command::lEnd},
                      {Command::mV_FilterSite, IDS_VIEW_FILTER_SITE, "Ctrl+I"},
                      {Command::mV_FilterOutcome, IDS_VIEW_FILTER_OUTCOME, "Ctrl+R"},
                      {Command::mV_FilterWords, IDS_VIEW_FILTER_WORDS, "Ctrl+L"},
                      {Command::mV_Everything, IDS_VIEW_FILTER_NONE, "Ctrl+0"},
                      {Command::lEnd},
                      {Command::mV_Passes, IDS_VIEW_PASSES, "Ctrl+G", wxITEM_CHECK},
                      {Command::mV_Follow, IDS_VIEW_FOLLOW, "Ctrl+T", wxITEM_CHECK},
                      {Command::mV_ReadAgain, IDS_VIEW_READ_AGAIN, "F5"}};
const Item aHelp[] = {{Command::mH_Topics, IDS_HELP_TOPICS, "F1"}};

template <std::size_t lCount>
wxMenu* BuildMenu(const Item (&aItems)[lCount]) {
  auto* pMenu = new wxMenu;
  for (const Item& aItem : aItems) {
    if (aItem.iCommand == Command::lEnd)
      pMenu->AppendSeparator();
    else
      pMenu->Append(static_cast<int>(aItem.iCommand), ResText(aItem.lText) + '\t' + aItem.szKey, "",
                    aItem.iKind);
  }
  return pMenu;
}

void PutOnClipboard(const std::string& szText) {
  if (szText.empty()) {
    wxBell();
    return;
  }
  const wxClipboardLocker aOpen;
  if (!aOpen) return;
  wxTheClipboard->SetData(new wxTextDataObject(ToWx(szText)));
  wxTheClipboard->Flush();  // it stays when the window closes
}

}  // namespace

void frmLogView::BuildMenus() {
  auto* pBar = new wxMenuBar;
  pBar->Append(BuildMenu(aFile), ResText(IDS_VIEW_MENU_FILE));
  pBar->Append(BuildMenu(aEdit), ResText(IDS_VIEW_MENU_EDIT));
  pBar->Append(BuildMenu(aView), ResText(IDS_VIEW_MENU_VIEW));
  pBar->Append(BuildMenu(aHelp), ResText(IDS_MENU_HELP));
  pBar->Check(static_cast<int>(Command::mV_Passes), true);
  pBar->Check(static_cast<int>(Command::mV_Follow), true);
  SetMenuBar(pBar);
  Bind(wxEVT_MENU, &frmLogView::Menu_Click, this, static_cast<int>(Command::mF_Open),
       static_cast<int>(Command::lEnd) - 1);
}

// The menu of a list: what the menu bar has about rows.
void frmLogView::FillMenu(wxMenu& aMenu) const {
  for (const Item& aItem : aEdit) {
    const bool bEntries = aItem.iCommand != Command::mE_Copy && aItem.iCommand != Command::mE_SelectAll;
    if (bEntries && tabPages->GetSelection() != 0) break;
    if (aItem.iCommand == Command::lEnd)
      aMenu.AppendSeparator();
    else
      aMenu.Append(static_cast<int>(aItem.iCommand), ResText(aItem.lText) + '\t' + aItem.szKey);
  }
}

void frmLogView::EnableCommands() {
  for (const auto iCommand :
       {Command::mF_SavePage, Command::mF_SaveTable, Command::mE_Copy, Command::mE_SelectAll,
        Command::mE_Find, Command::mE_FindNext, Command::mE_FindPrevious, Command::mE_NextFailure,
        Command::mE_PreviousFailure, Command::mV_FilterSite, Command::mV_FilterOutcome,
        Command::mV_FilterWords, Command::mV_Everything, Command::mV_ReadAgain})
    GetMenuBar()->Enable(static_cast<int>(iCommand), pHistory != nullptr);
}

void frmLogView::Menu_Click(wxCommandEvent& aEvent) {
  RunCommand(static_cast<Command>(aEvent.GetId()));
}

void frmLogView::RunCommand(Command iCommand) {
  if (RunFileCommand(iCommand) || RunViewCommand(iCommand) || !pHistory) return;
  if (iCommand == Command::mE_Copy) {
    auto* pText = dynamic_cast<wxTextEntry*>(FindFocus());
    if (pText && pText->CanCopy())
      pText->Copy();
    else
      PutOnClipboard(CopyText());
  } else if (iCommand == Command::mE_SelectAll) {
    SelectAll();
  } else {
    RunEntriesCommand(iCommand);
  }
}

MorePage* frmLogView::PageOf(Command iCommand) const {
  return aMore[static_cast<std::size_t>(iCommand) - static_cast<std::size_t>(Command::mV_PagePasses)];
}

bool frmLogView::RunFileCommand(Command iCommand) {
  switch (iCommand) {
    case Command::mF_Open:
      AskForLog();
      return true;
    case Command::mF_OpenFolder:
      AskForFolder();
      return true;
    case Command::mF_Week:
      OpenRecent(lWeekDays);
      return true;
    case Command::mF_Month:
      OpenRecent(lMonthDays);
      return true;
    case Command::mF_SavePage:
    case Command::mF_SaveTable:
      if (pHistory) AskForTarget(iCommand == Command::mF_SavePage);
      return true;
    case Command::mF_Exit:
      Close();
      return true;
    default:
      return false;
  }
}

bool frmLogView::RunViewCommand(Command iCommand) {
  switch (iCommand) {
    case Command::mV_Entries:
      tabPages->SetSelection(0);
      pixEntries->lvwEntries->TakeFocus();
      return true;
    case Command::mV_Summary:
      tabPages->SetSelection(1);
      pixSummary->lvwSites->TakeFocus();
      return true;
    case Command::mV_Outages:
      tabPages->SetSelection(2);
      pixOutages->lvwOutages->TakeFocus();
      return true;
    case Command::mV_PagePasses:
    case Command::mV_PagePace:
    case Command::mV_PageHours:
    case Command::mV_PagePeriods:
      tabPages->SetSelection(static_cast<std::size_t>(tabPages->FindPage(PageOf(iCommand))));
      PageOf(iCommand)->TakeFocus();
      return true;
    case Command::mV_Passes:
      pixEntries->GroupByPass(GetMenuBar()->IsChecked(static_cast<int>(iCommand)));
      return true;
    case Command::mV_Follow:
      bFollow = GetMenuBar()->IsChecked(static_cast<int>(iCommand));
      ShowCounts();
      return true;
    case Command::mV_ReadAgain:
      if (pHistory) ReadAgain();
      return true;
    case Command::mH_Topics:
      ShowHelp();
      return true;
    default:
      return false;
  }
}

// What concerns the list of entries brings it to the front.
void frmLogView::RunEntriesCommand(Command iCommand) {
  const bool bFailure = iCommand == Command::mE_NextFailure || iCommand == Command::mE_PreviousFailure;
  const bool bTurned = tabPages->GetSelection() != 0;
  tabPages->SetSelection(0);
  // The keys that come next are for the row that is found: to mark on from there.
  if (bFailure || bTurned) pixEntries->lvwEntries->TakeFocus();
  switch (iCommand) {
    case Command::mE_Find:
      pixEntries->ShowFindBar();
      break;
    case Command::mE_FindNext:
    case Command::mE_FindPrevious:
      pixEntries->FindAgain(iCommand == Command::mE_FindNext);
      break;
    case Command::mE_NextFailure:
    case Command::mE_PreviousFailure:
      pixEntries->GoToFailure(iCommand == Command::mE_NextFailure);
      break;
    case Command::mV_FilterSite:
      pixEntries->cboSite->SetFocus();
      break;
    case Command::mV_FilterOutcome:
      pixEntries->cboOutcome->SetFocus();
      break;
    case Command::mV_FilterWords:
      pixEntries->txtWords->SetFocus();
      break;
    default:
      pixEntries->ShowEverything();
  }
}

void frmLogView::SelectAll() {
  if (auto* pText = dynamic_cast<wxTextEntry*>(FindFocus()))
    pText->SelectAll();
  else if (auto* const pMore = MoreShown())
    pMore->SelectAll();
  else if (tabPages->GetSelection() == 0)
    pixEntries->lvwEntries->SelectAll();
  else if (tabPages->GetSelection() == 1)
    pixSummary->lvwSites->SelectAll();
  else
    pixOutages->lvwOutages->SelectAll();
}

std::string frmLogView::CopyText() const {
  if (const auto* const pMore = MoreShown()) return pMore->CopyText();
  if (tabPages->GetSelection() == 0) return pixEntries->lvwEntries->CopyText();
  if (tabPages->GetSelection() == 2) return pixOutages->lvwOutages->CopyText();
  const auto szRows = pixSummary->lvwSites->CopyText();
  return szRows.empty() && pSummary ? LogSummaryText::Compose(*pSummary, Clock::Now()) : szRows;
}

void frmLogView::ShowHelp() {
  if (!frmHelp::ShowTopic(this, modBasic::ProgramFile("Kestrova.hlp"), HelpContext::lViewer))
    Say(IDS_HELP_MISSING, {});
}

std::string frmLogView::StartFolder() const {
  return aOpened.empty() ? LogFiles::MonitorFolder() : LogFiles::FolderOf(aOpened.front());
}

void frmLogView::AskForLog() {
  wxFileDialog aDialog(this, ResText(IDS_VIEW_OPEN_TITLE), ToWx(StartFolder()), "",
                       ResText(IDS_VIEW_LOG_FILTER), wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
  if (aDialog.ShowModal() != wxID_OK) return;
  wxArrayString aChosen;
  aDialog.GetPaths(aChosen);
  std::vector<std::string> aPaths;
  for (const auto& szPath : aChosen)
    aPaths.push_back(FromWx(szPath));
  if (!aPaths.empty()) OpenLogs(aPaths);
}

void frmLogView::AskForFolder() {
  wxDirDialog aDialog(this, ResText(IDS_VIEW_FOLDER_TITLE), ToWx(StartFolder()),
                      wxDD_DEFAULT_STYLE | wxDD_DIR_MUST_EXIST);
  if (aDialog.ShowModal() == wxID_OK && !aDialog.GetPath().empty()) OpenLogs({FromWx(aDialog.GetPath())});
}

void frmLogView::OpenRecent(std::int32_t lDays) {
  const auto szFolder = StartFolder();
  const auto aPaths = LogFiles::Recent(szFolder, lDays);
  if (aPaths.empty())
    Say(IDS_VIEW_NO_RECENT, szFolder);
  else
    OpenLogs(aPaths);
}

// A name that had to be completed comes before the user again, so that the dialog itself asks before a file
// is replaced.
void frmLogView::AskForTarget(bool bPage) {
  const wxString szEnding = bPage ? "htm" : "csv";
  wxFileName aName(ToWx(LastLocation::StartFolder(LastLocation::szPages)),
                   ToWx("KV_Log-" + FormatDay(Clock::Now())), szEnding);
  for (bool bAgain = true; bAgain;) {
    wxFileDialog aDialog(this, ResText(bPage ? IDS_VIEW_PAGE_TITLE : IDS_VIEW_TABLE_TITLE), aName.GetPath(),
                         aName.GetFullName(), ResText(bPage ? IDS_VIEW_PAGE_FILTER : IDS_VIEW_TABLE_FILTER),
                         wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (aDialog.ShowModal() != wxID_OK || aDialog.GetPath().empty()) return;
    aName = wxFileName(aDialog.GetPath());
    bAgain = !aName.HasExt();
    if (bAgain) aName.SetExt(szEnding);
    bAgain = bAgain && aName.FileExists();
  }
  const auto szPath = FromWx(aName.GetFullPath());
  LastLocation::Remember(LastLocation::szPages, szPath);
  if (bPage)
    SavePage(szPath);
  else
    SaveTable(szPath);
}
