#include "ui/logview/MorePages.h"

#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "base/Utf8.h"
#include "history/LogPaceTable.h"
#include "history/LogPassTable.h"
#include "history/LogPeriodTable.h"
#include "history/LogWords.h"
#include "ui/common/TextGlue.h"
#include "ui/common/TextStyle.h"
#include "ui/common/VirtualTable.h"
#include "ui/logview/CellView.h"
#include "ui/system/AccessibleName.h"

namespace {

constexpr std::size_t lMostBytes = 400;
constexpr int lWordLines = 12;

}  // namespace

MorePage::MorePage(wxWindow* pParent) : wxPanel(pParent) {
  txtWords = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                            wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_BESTWRAP);
  pPageSizer = new wxBoxSizer(wxVERTICAL);
  pPageSizer->Add(txtWords, wxSizerFlags().Expand());
  SetSizer(pPageSizer);
  Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    FitWords();
  });
}

bool MorePage::Layout() {
  return GetClientSize().y < 12 * GetCharHeight() || wxPanel::Layout();
}

void MorePage::ShowWords(const std::vector<std::string>& aSentences, StringId iNote) {
  wxString szAll;
  for (const auto& szSentence : aSentences)
    szAll += ToWx(Utf8::Clean(szSentence)) + "\n";
  szAll += ResText(iNote);
  if (txtWords->GetValue() == szAll) return;
  txtWords->SetDefaultStyle(IndentedText(GetFont()));
  txtWords->ChangeValue("");
  txtWords->AppendText(szAll);
  txtWords->SetInsertionPoint(0);
  txtWords->ShowPosition(0);
  FitWords();
}

std::string MorePage::WordsText() const {
  return FromWx(txtWords->GetValue()) + "\n";
}

// No more room than they need, and never so much that a low window no longer shows what is below.
void MorePage::FitWords() {
  const int lNeeded = GetCharHeight() * std::min(lWordLines, LinesOf(*txtWords) + 1);
  const wxSize aWanted(-1, std::max(GetCharHeight() * 3, std::min(lNeeded, GetClientSize().y / 3)));
  if (txtWords->GetMinSize() == aWanted) return;
  txtWords->SetMinSize(aWanted);
  Layout();
}

GridPage::GridPage(wxWindow* pParent, StringId iTheNote) : MorePage(pParent), iNote(iTheNote) {
  pSplitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(400, 500)),
                                   wxSP_LIVE_UPDATE | wxSP_NOBORDER);
  pSplitter->SetMinimumPaneSize(GetCharHeight() * 6);
  pSplitter->SetSashGravity(0.5);
  lvwRows = new VirtualTable(pSplitter, {});
  pSplitter->Initialize(lvwRows);
  pPageSizer->Add(pSplitter, wxSizerFlags(1).Expand().Border(wxTOP, FromDIP(4)));
  lvwRows->ShowHint(ResText(IDS_VIEW_HINT_NONE));
  lvwRows->Cell = [this](std::size_t lRow, int iColumn) {
    const auto szText = pGrid->Cell(aOrder[lRow], static_cast<std::size_t>(iColumn));
    return LogWords::PlainField(Utf8::Shorten(szText, lMostBytes));
  };
  lvwRows->StyleOf = [this](std::size_t lRow) {
    return pGrid->Special(aOrder[lRow]) ? VirtualTable::Style::Heading : VirtualTable::Style::Plain;
  };
  lvwRows->SortChosen = [this] {
    lvwRows->SelectNone();
    PutInOrder();
    lvwRows->SetRows(aOrder.size());
  };
  lvwRows->Activated = [this](std::size_t lRow) { RowChosen(aOrder[lRow]); };
}

void GridPage::ShowGrid(std::unique_ptr<LogGrid> pNew, const std::vector<std::string>& aSentences) {
  pGrid = std::move(pNew);
  std::vector<VirtualTable::Column> aColumns;
  for (const auto& aColumn : pGrid->Columns())
    aColumns.push_back({aColumn.iTitle, aColumn.szSample, aColumn.lShare, aColumn.bNumber});
  lvwRows->SetColumns(aColumns);
  PutInOrder();
  lvwRows->ShowHint(aSentences.empty() ? wxString() : ToWx(Utf8::Clean(aSentences.front())));
  lvwRows->SetRows(aOrder.size());
  ShowWords(aSentences, iNote);
}

void GridPage::PutInOrder() {
  aOrder.resize(pGrid ? pGrid->Rows() : 0);
  std::iota(aOrder.begin(), aOrder.end(), std::size_t{0});
  if (lvwRows->SortColumn() < 0) return;
  const auto lColumn = static_cast<std::size_t>(lvwRows->SortColumn());
  std::ranges::stable_sort(aOrder, [&](std::size_t lLeft, std::size_t lRight) {
    if (lvwRows->SortDescending()) std::swap(lLeft, lRight);
    return pGrid->Before(lLeft, lRight, lColumn);
  });
}

void GridPage::TakeFocus() {
  lvwRows->TakeFocus();
}

void GridPage::SelectAll() {
  lvwRows->SelectAll();
}

std::string GridPage::CopyText() const {
  const auto szRows = lvwRows->CopyText();
  return szRows.empty() && pGrid ? WordsText() + "\n" + pGrid->Text(0) : szRows;
}

void PassesPage::ShowLog(const LogHistory& aHistory, const LogSummary& /*aSummary*/) {
  auto pTable = std::make_unique<LogPassTable>(aHistory);
  const auto aSentences = pTable->Words();
  ShowGrid(std::move(pTable), aSentences);
}

void PassesPage::RowChosen(std::size_t lRow) {
  const auto& aTable = static_cast<const LogPassTable&>(*pGrid);
  if (MomentChosen) MomentChosen({}, aTable.Facts(lRow).dtStart);
}

PacePage::PacePage(wxWindow* pParent) : GridPage(pParent, IDS_LOG_PACE_NOTE) {
  picDays = new CellView(pSplitter, ResText(IDS_LOG_COL_BY_DAY));
  pSplitter->SplitHorizontally(lvwRows, picDays);
  picDays->Told = [this](const std::string& szWords) {
    if (Told) Told(szWords);
  };
}

void PacePage::ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) {
  constexpr int lMostDays = 400;  // a log with a wrong date may span a century
  auto pTable = std::make_unique<LogPaceTable>(LogPaces::Of(aHistory, aSummary));
  const auto& aReport = pTable->Report();
  const auto aSentences = pTable->Words();
  const int lDays = PaceStrip::DayCount(aReport);
  const auto dtFirst = std::floor(aReport.dtFrom) + std::max(0, lDays - lMostDays);
  ShowGrid(std::move(pTable), aSentences);
  const auto DayAt = [dtFirst](std::size_t lColumn) { return dtFirst + static_cast<double>(lColumn); };
  CellView::Cells aCells;
  aCells.lRows = aReport.aSites.size();
  aCells.lColumns = static_cast<std::size_t>(std::min(lDays, lMostDays));
  aCells.Name = [&aReport](std::size_t lRow) { return aReport.aSites[lRow].szSite; };
  aCells.Words = [&aReport, DayAt](std::size_t lRow, std::size_t lColumn) {
    const auto& aSite = aReport.aSites[lRow];
    return std::string(Utf8::Shorten(aSite.szSite, lMostBytes)) + ": " +
           LogPaceTable::DayWords(aSite, DayAt(lColumn));
  };
  aCells.Head = [DayAt](std::size_t lColumn) {
    const auto szDay = LogWords::Day(DayAt(lColumn));
    return szDay.substr(0, szDay.size() - 5);
  };
  aCells.At = [&aReport, DayAt](std::size_t lRow, std::size_t lColumn) {
    const auto& aSite = aReport.aSites[lRow];
    const auto aDay = std::ranges::find(aSite.aDays, DayAt(lColumn), &PaceDay::dtDay);
    if (aDay == aSite.aDays.end()) return CellView::Cell();
    const auto Part = [lFull = PaceStrip::FullHeight(aSite)](std::int64_t lSeconds) {
      return static_cast<double>(std::min(lSeconds, lFull)) / static_cast<double>(lFull);
    };
    return CellView::Cell{Part(aDay->aPace.lMedian), Part(aDay->aPace.lMost), Part(aDay->aPace.lLongest), {}};
  };
  picDays->Chosen = [this, &aReport, DayAt](std::size_t lRow, std::size_t lColumn) {
    if (MomentChosen) MomentChosen(aReport.aSites[lRow].szSite, DayAt(lColumn));
  };
  picDays->ShowCells(std::move(aCells));
  CallAfter([this] { PlaceSash(); });
}

// As much as the strips need, at most half; from then on it is where the user puts it.
void PacePage::PlaceSash() {
  if (bSashPlaced || !IsShownOnScreen()) return;
  bSashPlaced = true;
  const int lHeight = pSplitter->GetClientSize().y;
  pSplitter->SetSashPosition(std::max(lHeight / 2, lHeight - picDays->FullHeight()));
}

void PacePage::RowChosen(std::size_t lRow) {
  const auto& aReport = static_cast<const LogPaceTable&>(*pGrid).Report();
  if (MomentChosen) MomentChosen(aReport.aSites[lRow].szSite, aReport.aNow.dtFrom);
}

PeriodsPage::PeriodsPage(wxWindow* pParent) : GridPage(pParent, IDS_LOG_PERIODS_NOTE) {
  cboPeriods = new wxChoice(this, wxID_ANY);
  cboPeriods->SetName(ResText(IDS_VIEW_LABEL_PERIODS));
  AccessibleName::Set(*cboPeriods, wxControl::RemoveMnemonics(ResText(IDS_VIEW_LABEL_PERIODS)));
  for (const auto iText :
       {IDS_VIEW_PERIODS_DAY, IDS_VIEW_PERIODS_WEEK, IDS_VIEW_PERIODS_MONTH, IDS_VIEW_PERIODS_HALF})
    cboPeriods->Append(ResText(iText));
  cboPeriods->MoveBeforeInTabOrder(txtWords);
  auto* pChoice = new wxBoxSizer(wxHORIZONTAL);
  pChoice->Add(new wxStaticText(this, wxID_ANY, ResText(IDS_VIEW_LABEL_PERIODS)),
               wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(8)));
  pChoice->Add(cboPeriods, wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(4)));
  pPageSizer->Insert(0, pChoice);
  cboPeriods->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) {
    bChosen = true;
    lvwRows->SelectNone();
    if (PeriodsChosen) PeriodsChosen();
  });
}

void PeriodsPage::ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) {
  constexpr double dTwoWeeks = 14;
  constexpr std::array aDays{1.0, 7.0, 30.0};
  const auto dAll = LogPeriod::Of(aHistory).Days();
  if (!bChosen) cboPeriods->SetSelection(dAll >= dTwoWeeks ? 1 : static_cast<int>(aDays.size()));
  const auto lChoice = static_cast<std::size_t>(cboPeriods->GetSelection());
  const auto aNow = LogPeriod::Last(aHistory, lChoice < aDays.size() ? aDays[lChoice] : dAll / 2);
  dtNow = aNow.dtFrom;
  auto pTable = std::make_unique<LogPeriodTable>(LogCompare::Of(aHistory, aSummary, aNow, aNow.Before()));
  const auto aSentences = pTable->Words();
  ShowGrid(std::move(pTable), aSentences);
}

void PeriodsPage::RowChosen(std::size_t lRow) {
  if (MomentChosen) MomentChosen(pGrid->Cell(lRow, 0), dtNow);
}

HoursPage::HoursPage(wxWindow* pParent) : MorePage(pParent) {
  picHours = new CellView(this, ResText(IDS_LOG_WHEN));
  pPageSizer->Add(picHours, wxSizerFlags(1).Expand().Border(wxTOP, FromDIP(4)));
  picHours->Told = [this](const std::string& szWords) {
    if (Told) Told(szWords);
  };
}

void HoursPage::ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) {
  aReport = LogHours::Of(aHistory, aSummary);
  ShowWords({LogHours::Words(aReport)}, IDS_LOG_WHEN_NOTE);
  CellView::Cells aCells;
  aCells.lRows = HourReport::lDays + 1;
  aCells.lColumns = HourReport::lHours;
  aCells.Name = LogHours::DayName;
  aCells.Words = [this](std::size_t lRow, std::size_t lColumn) {
    return LogHours::CellWords(aReport, lRow, lColumn);
  };
  aCells.Head = [](std::size_t lColumn) { return std::to_string(lColumn); };
  aCells.At = [this](std::size_t lRow, std::size_t lColumn) {
    const char chSign = LogHours::Sign(aReport.Row(lRow)[lColumn]);
    return CellView::Cell{aReport.Height(lRow, lColumn), 0, 0, chSign == ' ' ? "" : std::string{chSign}};
  };
  picHours->ShowCells(std::move(aCells));
}

void HoursPage::TakeFocus() {
  picHours->SetFocus();
}

std::string HoursPage::CopyText() const {
  return WordsText() + "\n" + LogHours::Text(aReport);
}
