#include "ui/logview/OutagesPage.h"

#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogWords.h"
#include "ui/common/TextGlue.h"
#include "ui/common/VirtualTable.h"

namespace {

using LogTables::OutageColumn;
using LogTables::Runs;

constexpr std::size_t lMostBytes = 400;

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
  for (const auto iText : {IDS_LOG_OUTAGES, IDS_LOG_WARNING, IDS_VIEW_RUNS_BOTH})
    cboRuns->Append(ResText(iText));
  cboRuns->SetSelection(0);
  pChoice->Add(new wxStaticText(this, wxID_ANY, ResText(IDS_VIEW_LABEL_RUNS)),
               wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(8)));
  pChoice->Add(cboRuns, wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(4)));
  lvwOutages = new VirtualTable(this, aOutageColumns);
  auto* pPage = new wxBoxSizer(wxVERTICAL);
  pPage->Add(pChoice);
  pPage->Add(lvwOutages, wxSizerFlags(1).Expand());
  SetSizer(pPage);
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
}
