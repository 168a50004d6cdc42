#include "ui/logview/frmLogView.h"

#include <wx/dcclient.h>
#include <wx/infobar.h>
#include <wx/msgdlg.h>
#include <wx/notebook.h>
#include <wx/sizer.h>
#include <wx/stopwatch.h>
#include <wx/utils.h>

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogCsv.h"
#include "history/LogFiles.h"
#include "history/LogGaps.h"
#include "history/LogHtml.h"
#include "history/LogWords.h"
#include "log/LogGrammar.h"
#include "log/LogLine.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/common/VirtualTable.h"
#include "ui/common/frmHelp.h"
#include "ui/logview/CellView.h"
#include "ui/logview/EntriesPage.h"
#include "ui/logview/MorePages.h"
#include "ui/logview/OutagesPage.h"
#include "ui/logview/SummaryPage.h"
#include "ui/system/AccessibleName.h"
#include "ui/system/Foreground.h"
#include "ui/system/WindowScale.h"

namespace {

constexpr int lFirstWidth = 17400;  // twips
constexpr int lFirstHeight = 12600;
constexpr int lLeastWidth = 10200;
constexpr int lLeastHeight = 6000;
constexpr int lFollowMilliseconds = 1000;
constexpr int lAskedMilliseconds = 200;
// A summary that takes long to make is made less often: at most this share of the time is spent on it.
constexpr int lSummaryShare = 10;
constexpr std::size_t lMostNameBytes = 200;
constexpr std::size_t lFirstPages = 3;  // entries, summary, outages

std::int64_t SteadyMilliseconds() {
  return static_cast<std::int64_t>(Clock::SteadyNow() * dSecondsPerDay * 1000);
}

std::string Number(std::uint64_t lNumber, StringId iOne, StringId iMany) {
  return lNumber == 1 ? LoadResString(iOne) : FillResString(iMany, {LogWords::Count(lNumber)});
}

std::string Shown(const std::string& szPath) {
  return Utf8::Clean(szPath);
}

}  // namespace

frmLogView::frmLogView() : wxFrame(nullptr, wxID_ANY, ResText(IDS_VIEW_TITLE)) {
  SetIcons(Images::ProgramIcons());
  BuildMenus();
  BuildStatusBar();
  BuildPages();
  const auto Twips = [this](int lTwips) { return WindowScale::FromTwips(*this, lTwips); };
  SetMinSize(wxSize(Twips(lLeastWidth), Twips(lLeastHeight)));
  const wxSize aScreen = wxGetClientDisplayRect().GetSize();
  SetSize(std::min(Twips(lFirstWidth), aScreen.x), std::min(Twips(lFirstHeight), aScreen.y));
  CentreOnScreen();
  tmrFollow.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { tmrFollow_Timer(); });
  tmrFollow.Start(lFollowMilliseconds);
  tmrAsked.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { tmrAsked_Timer(); });
  tmrAsked.Start(lAskedMilliseconds);
  ShowTitle();
  ShowCounts();
  EnableCommands();
  tabPages->SetFocus();
}

frmLogView::~frmLogView() {
  if (frmHelp::Window()) frmHelp::Window()->Destroy();
}

void frmLogView::BuildPages() {
  pNotice = new wxInfoBar(this);
  pNotice->SetShowHideEffects(wxSHOW_EFFECT_NONE, wxSHOW_EFFECT_NONE);
  tabPages = new wxNotebook(this, wxID_ANY);
  pixEntries = new EntriesPage(tabPages);
  pixSummary = new SummaryPage(tabPages);
  pixOutages = new OutagesPage(tabPages);
  const auto Plain = [](std::int32_t lText) { return wxControl::RemoveMnemonics(ResText(lText)); };
  tabPages->AddPage(pixEntries, Plain(IDS_VIEW_PAGE_ENTRIES));
  tabPages->AddPage(pixSummary, Plain(IDS_VIEW_PAGE_SUMMARY));
  tabPages->AddPage(pixOutages, Plain(IDS_VIEW_PAGE_OUTAGES));
  BuildMorePages();
  auto* pAll = new wxBoxSizer(wxVERTICAL);
  pAll->Add(pNotice, wxSizerFlags().Expand());
  pAll->Add(tabPages, wxSizerFlags(1).Expand());
  SetSizer(pAll);
  tabPages->Bind(wxEVT_NOTEBOOK_PAGE_CHANGED, [this](wxBookCtrlEvent& aEvent) {
    aEvent.Skip();
    ShowSummary();
    if (pHistory) ShowCounts();  // a remark was about the page that was left
    EnableCommands();
  });
  pixEntries->Changed = [this] { ShowCounts(); };
  pixEntries->Remarked = [this](StringId iText) { SetStatusText(ResText(iText)); };
  pixSummary->SiteChosen = [this](const std::string& szSite) { ShowSite(szSite); };
  pixSummary->MomentChosen = [this](const std::string& szSite, DateTime dtMoment, bool bFailure) {
    RunCommand(Command::mV_Entries);
    pixEntries->ShowMoment(szSite, dtMoment, bFailure);
  };
  pixSummary->Told = [this](const std::string& szWords) { SetStatusText(ToWx(szWords)); };
  pixOutages->OutageChosen = [this](const std::string& szSite, DateTime dtMoment) {
    pixSummary->MomentChosen(szSite, dtMoment, true);
  };
  for (auto* pTable : {pixEntries->lvwEntries, pixSummary->lvwSites, pixOutages->lvwOutages})
    pTable->FillMenu = [this](wxMenu& aMenu) { FillMenu(aMenu); };
}

void frmLogView::BuildMorePages() {
  const auto Add = [this](MorePage* pPage, StringId iTitle) {
    aMore.push_back(pPage);
    tabPages->AddPage(pPage, wxControl::RemoveMnemonics(ResText(iTitle)));
    pPage->Told = [this](const std::string& szWords) { SetStatusText(ToWx(szWords)); };
    pPage->MomentChosen = [this](const std::string& szSite, DateTime dtMoment) {
      RunCommand(Command::mV_Entries);
      pixEntries->ShowMoment(szSite, dtMoment, false);
    };
  };
  Add(pixPasses = new PassesPage(tabPages), IDS_VIEW_PAGE_PASSES);
  Add(pixPace = new PacePage(tabPages), IDS_VIEW_PAGE_PACE);
  Add(pixHours = new HoursPage(tabPages), IDS_VIEW_PAGE_HOURS);
  Add(pixPeriods = new PeriodsPage(tabPages), IDS_VIEW_PAGE_PERIODS);
  pixPeriods->PeriodsChosen = [this] {
    aUpToDate.erase(pixPeriods);
    ShowSummary();
  };
  for (auto* pTable : {pixPasses->lvwRows, pixPace->lvwRows, pixPeriods->lvwRows})
    pTable->FillMenu = [this](wxMenu& aMenu) { FillMenu(aMenu); };
  for (std::size_t i = 0; i < tabPages->GetPageCount(); ++i)
    AccessibleName::SetFromLabels(*tabPages->GetPage(i), tabPages->GetPageText(i));
}

MorePage* frmLogView::MoreShown() const {
  const auto lPage = static_cast<std::size_t>(tabPages->GetSelection());
  return lPage >= lFirstPages && lPage - lFirstPages < aMore.size() ? aMore[lPage - lFirstPages] : nullptr;
}

// Made anew only while it is looked at; the others when they are turned to.
void frmLogView::ShowMore() {
  auto* const pPage = MoreShown();
  if (!pPage || !bSummaryShown || aUpToDate.contains(pPage)) return;
  const wxBusyCursor aWait;
  const auto lStart = SteadyMilliseconds();
  pPage->ShowLog(*pHistory, *pSummary);
  aUpToDate.insert(pPage);
  lSummaryDone = SteadyMilliseconds();
  lSummaryCost += lSummaryDone - lStart;
}

void frmLogView::BuildStatusBar() {
  CreateStatusBar(3);
  const int lMargin = FromDIP(24);
  const int aWidths[] = {
      -1, GetStatusBar()->GetTextExtent(ResText(IDS_VIEW_UNREAD_MANY) + "1,000,000").x + lMargin,
      GetStatusBar()->GetTextExtent(ResText(IDS_VIEW_NOT_FOLLOWING)).x + 2 * lMargin};
  SetStatusWidths(3, aWidths);
}

std::unique_ptr<LogHistory> frmLogView::ReadLogs(const std::vector<std::string>& aPaths) {
  const wxBusyCursor aWait;
  SetStatusText(ResText(IDS_VIEW_READING));
  GetStatusBar()->Update();
  auto pNew = std::make_unique<LogHistory>();
  const bool bAny = pNew->Open(aPaths);
  ShowCounts();
  if (bAny) return pNew;
  SayWhyNot(*pNew, aPaths);
  return nullptr;
}

void frmLogView::SayWhyNot(const LogHistory& aFailed, const std::vector<std::string>& aPaths) {
  if (aFailed.Problems().empty()) {
    if (!aPaths.empty()) Say(IDS_VIEW_NO_LOGS, aPaths.front());
    return;
  }
  const auto& aFirst = aFailed.Problems().front();
  Say(aFirst.iWhat == LogReader::Change::TooLarge ? IDS_VIEW_TOO_LARGE : IDS_VIEW_CANNOT_READ, aFirst.szPath);
}

bool frmLogView::OpenLogs(const std::vector<std::string>& aPaths) {
  auto pNew = ReadLogs(aPaths);
  if (!pNew) return false;
  aOpened = aPaths;
  aOpenViewer.Shows(aOpened.back());
  aFolderNames = NamesInFolders();
  aLaterLogs = LaterLogs();
  pixEntries->Open(pNew.get());  // lets go of the old one
  pHistory = std::move(pNew);
  bSummaryShown = bDueKnown = false;
  szOverdueTold.clear();
  // Of what is over, or of many logs, one wants to know first how it went.
  if (aPaths.size() > 1 || Files::FolderExists(aPaths.front()) ||
      (OverdueNow() && !pHistory->Lines().empty()))
    tabPages->SetSelection(1);
  ShowSummary();
  ShowTitle();
  ShowCounts();
  ShowNotice();
  EnableCommands();
  if (tabPages->GetSelection() == 0)
    pixEntries->lvwEntries->TakeFocus();
  else if (tabPages->GetSelection() == 1)
    pixSummary->lvwSites->TakeFocus();
  return true;
}

// All files anew, the view as it is.
void frmLogView::ReadAgain() {
  auto pNew = ReadLogs(aOpened);
  aFolderNames = NamesInFolders();
  if (!pNew) return;
  pixEntries->Follow(pNew.get());
  pHistory = std::move(pNew);
  bSummaryShown = bDueKnown = false;
  szOverdueTold.clear();
  ShowSummary();
  ShowCounts();
  ShowNotice();
}

std::vector<std::string> frmLogView::NamesInFolders() const {
  std::vector<std::string> aNames;
  for (const auto& szPath : aOpened)
    if (Files::FolderExists(szPath))
      for (const auto& szName : Files::List(szPath, LogGrammar::szFileEnding))
        aNames.push_back(szName);
  return aNames;
}

void frmLogView::tmrFollow_Timer() {
  if (!pHistory || !bFollow) return;
  if (GoOnToNextLog()) return;
  if (auto aNames = NamesInFolders(); aNames != aFolderNames && !aNames.empty()) {
    ReadAgain();  // a new day's log, or one that is gone
    return;
  }
  if (pHistory->Update()) {
    pixEntries->Follow(pHistory.get());
    bSummaryShown = bDueKnown = false;
    ShowCounts();
  }
  ShowSummary();
  ShowOverdue();
  pixSummary->ShowAge();
}

void frmLogView::ShowSite(const std::string& szAddress) {
  RunCommand(Command::mV_Entries);
  pixEntries->ShowSite(std::string(SiteOfAddress(szAddress)));
}

void frmLogView::tmrAsked_Timer() {
  const auto szSite = aOpenViewer.Asked();
  if (!szSite) return;
  tmrFollow_Timer();  // what was just written too
  if (!szSite->empty() && pHistory) ShowSite(*szSite);
  if (IsIconized()) Iconize(false);
  Foreground::Take(*this);
}

void frmLogView::FindDue(const LogHistory& aTold) {
  dtLast = 0;
  for (const auto aRef : aTold.Passes())
    dtLast = std::max(dtLast, aTold.Pass(aRef).dtLast);
  dtNextDue = dtLast > 0 ? LogGaps::NextDue(aTold) : 0;
}

bool frmLogView::OverdueNow() {
  constexpr double dWithoutSchedule = 2.0 / 24;
  if (!bDueKnown) {
    bDueKnown = true;
    FindDue(*pHistory);
    // On a full disk a new day's log stays empty: the one before tells since when.
    const auto szBefore = dtLast > 0 || aOpened.empty() ? std::string() : LogFiles::Earlier(aOpened.front());
    LogHistory aBefore;
    if (!szBefore.empty() && aBefore.Open({szBefore})) FindDue(aBefore);
  }
  return dtLast > 0 && Clock::Now() > (dtNextDue > 0 ? dtNextDue : dtLast + dWithoutSchedule);
}

// A monitor that is gone, or a disk that is full, leaves a log that looks well and does not grow.
void frmLogView::ShowOverdue() {
  std::string szNow;
  if (OverdueNow() && dtNextDue > 0)
    szNow = FillResString(IDS_VIEW_OVERDUE,
                          {LogWords::Moment(dtLast), LogWords::Length(SecondsBetween(dtLast, Clock::Now()))});
  if (szNow == szOverdueTold) return;
  const bool bRenewed = !szNow.empty() && !szOverdueTold.empty();
  const bool bStillThere = pNotice->IsShown() && szNotice == szOverdueTold;
  szOverdueTold = szNow;
  if (szNow.empty())
    ShowNotice();
  else if (!bRenewed || bStillThere)  // one that was closed stays closed when only the age is another
    Tell(szNow, true);
}

// A log that is followed ends when its day or week does; its story goes on in the next file.
std::vector<std::string> frmLogView::LaterLogs() const {
  if (aOpened.empty() || Files::FolderExists(aOpened.back())) return {};
  return LogFiles::Later(aOpened.back());
}

bool frmLogView::GoOnToNextLog() {
  const auto aNow = LaterLogs();
  if (aNow == aLaterLogs) return false;
  const bool bWasNewest = aLaterLogs.empty();
  aLaterLogs = aNow;
  if (!bWasNewest) return false;
  // One whose time is over may have been deleted since.
  std::erase_if(aOpened, [](const std::string& szPath) { return !Files::FileExists(szPath); });
  aOpened.insert(aOpened.end(), aNow.begin(), aNow.end());
  aOpenViewer.Shows(aOpened.back());
  aLaterLogs.clear();
  ReadAgain();
  ShowTitle();
  return true;
}

const LogSummary& frmLogView::Summary() {
  if (!bSummaryShown || !pSummary) {
    const auto lStart = SteadyMilliseconds();
    auto pNew = std::make_unique<LogSummary>(Summarise(*pHistory));
    pixSummary->ShowLog(pNew.get());
    pixOutages->ShowLog(pNew.get());
    pSummary = std::move(pNew);
    bSummaryShown = true;
    aUpToDate.clear();
    lSummaryDone = SteadyMilliseconds();
    lSummaryCost = lSummaryDone - lStart;
  }
  return *pSummary;
}

// While it is looked at, and no more often than it can be afforded.
void frmLogView::ShowSummary() {
  if (!pHistory || tabPages->GetSelection() == 0) return;
  const bool bTooSoon = pSummary && SteadyMilliseconds() - lSummaryDone < lSummaryCost * lSummaryShare;
  const bool bTurnedTo = MoreShown() && !aUpToDate.contains(MoreShown());
  if (!bSummaryShown && (!bTooSoon || bTurnedTo)) Summary();
  ShowMore();
}

void frmLogView::ShowTitle() {
  if (!pHistory) {
    SetTitle(ResText(IDS_VIEW_TITLE));
    return;
  }
  SetTitle(ToWx(
      aOpened.size() == 1
          ? FillResString(IDS_VIEW_TITLE_OF,
                          {Utf8::Clean(Utf8::Shorten(LogFiles::NameOf(aOpened.front()), lMostNameBytes))})
          : FillResString(IDS_VIEW_TITLE_FILES, {LogWords::Count(aOpened.size())})));
}

void frmLogView::ShowCounts() {
  if (!pHistory) {
    for (int i = 0; i < 3; ++i)
      SetStatusText("", i);
    return;
  }
  std::uint64_t lEntries = 0, lUnread = 0, lPasses = 0;
  for (const auto aRef : pHistory->Passes()) {
    const auto& aPass = pHistory->Pass(aRef);
    lEntries += aPass.lEntries;
    lUnread += aPass.lUnread;
    lPasses += aPass.bStarted ? 1 : 0;
  }
  const auto lShown = pixEntries->Rows().Entries();
  SetStatusText(
      ToWx(pixEntries->Filtered()
               ? FillResString(IDS_VIEW_COUNT_SHOWN,
                               {LogWords::Count(lShown), LogWords::Count(lEntries + lUnread)})
               : FillResString(IDS_VIEW_COUNT, {Number(lEntries, IDS_VIEW_ENTRIES_ONE, IDS_VIEW_ENTRIES_MANY),
                                                Number(lPasses, IDS_VIEW_PASS_ONE, IDS_VIEW_PASS_MANY)})));
  SetStatusText(lUnread == 0 ? ResText(IDS_VIEW_UNREAD_NONE)
                             : ToWx(Number(lUnread, IDS_VIEW_UNREAD_ONE, IDS_VIEW_UNREAD_MANY)),
                1);
  SetStatusText(ResText(bFollow ? IDS_VIEW_FOLLOWING : IDS_VIEW_NOT_FOLLOWING), 2);
}

// What is odd about the logs shown.
void frmLogView::ShowNotice() {
  const auto& aProblems = pHistory->Problems();
  const auto& aPasses = pHistory->Passes();
  const bool bNothingRead =
      !aPasses.empty() && std::none_of(aPasses.begin(), aPasses.end(), [this](LogHistory::PassRef aRef) {
        const auto& aPass = pHistory->Pass(aRef);
        return aPass.bStarted || aPass.bEnded || aPass.lEntries > 0;
      });
  if (!aProblems.empty())
    Tell(FillResString(IDS_VIEW_SOME_UNREADABLE, {LogWords::Count(aProblems.size()),
                                                  LogWords::Count(aProblems.size() + pHistory->FileCount()),
                                                  Shown(aProblems.front().szPath)}),
         true);
  else if (bNothingRead)
    Tell(LoadResString(IDS_VIEW_NOT_A_LOG), true);
  else
    Tell({}, false);
}

// The bar breaks no lines: a path too long for the narrowest window would push its close button out of it.
// Such a path gets a line of its own, cut in the middle; the tip has it in full.
wxString frmLogView::FittedNotice() {
  wxString szShown = ToWx(szNotice);
  wxClientDC aDC(this);
  aDC.SetFont(GetFont());
  const int lRoom = GetMinSize().x - 13 * GetCharHeight();  // beside its button
  if (const auto lCut = szShown.rfind(": "); lCut != wxString::npos && aDC.GetTextExtent(szShown).x > lRoom) {
    // What stands on its own line now is broken no further: Windows may do so after its first word.
    wxString szLower = szShown.Mid(lCut + 2);
    szLower.Replace(" ", wxString(wxUniChar(0xA0)));
    szShown = szShown.Left(lCut + 1) + "\n" + szLower;
  }
  return wxControl::EscapeMnemonics(
      wxControl::Ellipsize(szShown, aDC, wxELLIPSIZE_MIDDLE, lRoom, wxELLIPSIZE_FLAGS_NONE));
}

void frmLogView::Tell(const std::string& szText, bool bWarning) {
  szNotice = szText;
  if (szText.empty())
    pNotice->Dismiss();
  else
    pNotice->ShowMessage(FittedNotice(), bWarning ? wxICON_WARNING : wxICON_INFORMATION);
  pNotice->SetToolTip(ToWx(szText));
}

void frmLogView::Say(std::int32_t lText, const std::string& szValue) {
  wxString szText = ToWx(FillResString(static_cast<StringId>(lText), {Shown(szValue)}));
  szText.Replace("\r\n", "\n");
  wxMessageDialog(this, szText, ResText(IDS_APP_TITLE), wxOK | wxICON_WARNING).ShowModal();
}

bool frmLogView::Writable(const std::string& szPath) {
  bool bLog = LogFiles::NamesLog(szPath);
  for (std::uint32_t lFile = 0; lFile < pHistory->FileCount(); ++lFile)
    bLog = bLog || Files::Same(pHistory->File(lFile).Path(), szPath);
  if (bLog) Say(IDS_VIEW_TARGET_IS_LOG, szPath);
  return !bLog;
}

bool frmLogView::Written(bool bDone, const std::string& szPath, std::int32_t lNotice) {
  if (bDone)
    Tell(FillResString(static_cast<StringId>(lNotice), {Shown(szPath)}), false);
  else
    Say(IDS_VIEW_CANNOT_WRITE, szPath);
  return bDone;
}

bool frmLogView::SavePage(const std::string& szPath) {
  if (!pHistory || !Writable(szPath)) return false;
  bool bDone = false;
  {
    const wxBusyCursor aWait;
    bDone = LogHtml::Write(szPath, *pHistory, Summary());
  }
  return Written(bDone, szPath, IDS_VIEW_PAGE_WRITTEN);
}

bool frmLogView::SaveTable(const std::string& szPath) {
  if (!pHistory || !Writable(szPath)) return false;
  bool bDone = false;
  {
    const wxBusyCursor aWait;
    bDone = LogCsv::Write(szPath, *pHistory);
  }
  return Written(bDone, szPath, IDS_VIEW_TABLE_WRITTEN);
}
