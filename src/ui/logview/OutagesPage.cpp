#include "ui/logview/OutagesPage.h"

#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogWords.h"
#include "ui/common/TextGlue.h"
#include "ui/common/TextStyle.h"
#include "ui/common/VirtualTable.h"

namespace {

using LogTables::OutageColumn;
using LogTables::Runs;

constexpr std::size_t lMostBytes = 400;
constexpr int lDetailLines = 8;

const std::vector<VirtualTable::Column> aOutageColumns = {
    {LogTables::Title(OutageColumn::Site), nullptr, 4},
    {LogTables::Title(OutageColumn::From), "Wed Dec 30 2000, 12:00 PM"},
    {LogTables::Title(OutageColumn::To), "Wed Dec 30 2000, 12:00 PM"},
    {LogTables::Title(OutageColumn::Length), nullptr, 2},
    {LogTables::Title(OutageColumn::Answer), nullptr, 4},
    {LogTables::Title(OutageColumn::Mail), nullptr, 8}};

}  // namespace

OutagesPage::OutagesPage(wxWindow* pParent) : wxPanel(pParent) {
  auto* pChoice = new wxBoxSizer(wxHORIZONTAL);
  cboRuns = new wxChoice(this, wxID_ANY);
  cboRuns->SetName(ResText(IDS_VIEW_LABEL_RUNS));
  for (const auto iText : {IDS_LOG_OUTAGES, IDS_LOG_WARNINGS, IDS_VIEW_RUNS_BOTH})
    cboRuns->Append(ResText(iText));
  cboRuns->SetSelection(0);
  pChoice->Add(new wxStaticText(this, wxID_ANY, ResText(IDS_VIEW_LABEL_RUNS)),
               wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(8)));
  pChoice->Add(cboRuns, wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(4)));
  lvwOutages = new VirtualTable(this, aOutageColumns);
  txtDetails =
      new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, wxSize(-1, GetCharHeight() * lDetailLines),
                     wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_BESTWRAP);
  auto* pPage = new wxBoxSizer(wxVERTICAL);
  pPage->Add(pChoice);
  pPage->Add(lvwOutages, wxSizerFlags(1).Expand());
  pPage->Add(txtDetails, wxSizerFlags().Expand());
  SetSizer(pPage);
  lvwOutages->Selected = [this] { ShowDetails(); };
  cboRuns->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) {
    lvwOutages->SelectNone();
    Refill();
  });
  lvwOutages->SortChosen = [this] {
    lvwOutages->SelectNone();
    Refill();
  };
  lvwOutages->Cell = [this](std::size_t lRow, int iColumn) {
    const auto szText = LogTables::Cell(aRows[lRow], static_cast<OutageColumn>(iColumn));
    return LogWords::PlainField(Utf8::Shorten(szText, lMostBytes));
  };
  lvwOutages->LightOf = [this](std::size_t lRow, int iColumn) {
    const auto& aRun = *aRows[lRow].pOutage;
    return iColumn != 0                        ? VirtualTable::lNone
           : !aRun.bDown                       ? VirtualTable::lYellow
           : aRun.iEnd == OutageEnd::StillDown ? VirtualTable::lRed
                                               : VirtualTable::lGrey;
  };
  lvwOutages->Activated = [this](std::size_t lRow) {
    if (OutageChosen) OutageChosen(aRows[lRow].pSite->szSite, aRows[lRow].pOutage->dtFrom);
  };
}

void OutagesPage::ShowLog(const LogSummary* pNew) {
  pSummary = pNew;
  Refill();
}

void OutagesPage::Refill() {
  aRows.clear();
  if (pSummary) aRows = LogTables::Outages(*pSummary, static_cast<Runs>(cboRuns->GetSelection()));
  if (const auto iSort = lvwOutages->SortColumn(); iSort >= 0)
    std::ranges::stable_sort(aRows, [&](const auto& aLeft, const auto& aRight) {
      const bool bDown = lvwOutages->SortDescending();
      return LogTables::Before(bDown ? aRight : aLeft, bDown ? aLeft : aRight,
                               static_cast<OutageColumn>(iSort));
    });
  lvwOutages->ShowHint(ResText(!pSummary                      ? IDS_VIEW_HINT_NONE
                               : cboRuns->GetSelection() == 0 ? IDS_VIEW_HINT_NO_OUTAGE
                                                              : IDS_VIEW_HINT_NO_FAILURE));
  lvwOutages->SetRows(aRows.size());
  ShowDetails();
}

// What the columns cut, in full.
void OutagesPage::ShowDetails() {
  const auto lRow = static_cast<std::size_t>(lvwOutages->Focused());
  const bool bRow = lvwOutages->Focused() >= 0 && lRow < aRows.size();
  txtDetails->Freeze();
  txtDetails->Clear();
  if (bRow)
    for (std::size_t i = 0; i < LogTables::lOutageColumns; ++i) {
      const auto iColumn = static_cast<OutageColumn>(i);
      AppendNamed(*txtDetails, GetFont(),
                  ToWx(FillResString(IDS_VIEW_DETAIL, {LoadResString(LogTables::Title(iColumn))})),
                  ToWx(LogWords::PlainField(Utf8::Clean(LogTables::Cell(aRows[lRow], iColumn)))));
    }
  txtDetails->SetInsertionPoint(0);
  txtDetails->Thaw();
}
