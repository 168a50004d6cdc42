#include "ui/logview/EntriesPage.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

#include <algorithm>

#include "base/Text.h"
#include "base/Utf8.h"
#include "history/LogWords.h"
#include "platform/Clock.h"
#include "ui/common/TextGlue.h"
#include "ui/common/TextStyle.h"
#include "ui/logview/StateLook.h"

namespace {

constexpr std::size_t lMostSites = 1000;  // in the choice; more would take seconds to drop down
constexpr std::size_t lMostSiteBytes = 60;
constexpr int lWordsDelay = 250;  // milliseconds after the last key

const std::vector<VirtualTable::Column> aEntryColumns = {
    {IDS_LOG_COL_TIME, "12/30/2000 12:00:00 AM"},     {IDS_VIEW_COL_RESULT, "MM Switched off"},
    {IDS_LOG_COL_ADDRESS, "10 Down, 10 Warning", 35}, {IDS_LOG_COL_ANSWER, nullptr, 35},
    {IDS_LOG_COL_SECONDS, nullptr, 0, true},          {IDS_LOG_COL_REMARKS, nullptr, 30}};

// A pass's count stands before its name: what is on the right is cut first when the window is narrow.
LogColumn Shown(LogColumn iColumn, LogRows::Kind iKind) {
  if (iKind != LogRows::Kind::Pass) return iColumn;
  return iColumn == LogColumn::Address  ? LogColumn::Answer
         : iColumn == LogColumn::Answer ? LogColumn::Address
                                        : iColumn;
}

}  // namespace

EntriesPage::EntriesPage(wxWindow* pParent) : wxPanel(pParent) {
  BuildFilterBar();
  pSplitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                   wxSP_LIVE_UPDATE | wxSP_NOBORDER);
  lvwEntries = new VirtualTable(pSplitter, aEntryColumns);
  lvwEntries->Cell = [this](std::size_t lRow, int iColumn) {
    return aRows.Cell(lRow, Shown(static_cast<LogColumn>(iColumn), aRows.KindOf(lRow)));
  };
  lvwEntries->LightOf = [this](std::size_t lRow, int iColumn) { return LightOf(lRow, iColumn); };
  lvwEntries->StyleOf = [this](std::size_t lRow) {
    const auto iKind = aRows.KindOf(lRow);
    return iKind == LogRows::Kind::Pass  ? VirtualTable::Style::Heading
           : iKind == LogRows::Kind::Gap ? VirtualTable::Style::Aside
                                         : VirtualTable::Style::Plain;
  };
  lvwEntries->SortChosen = [this] { Refilter(); };
  lvwEntries->Selected = [this] { ShowDetails(); };
  lvwEntries->Activated = [this](std::size_t) { txtDetails->SetFocus(); };
  txtDetails = new wxTextCtrl(pSplitter, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                              wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_BESTWRAP);
  pSplitter->SetMinimumPaneSize(GetCharHeight() * 4);
  pSplitter->SetSashGravity(1);
  pSplitter->SplitHorizontally(lvwEntries, txtDetails, -GetCharHeight() * 9);
  BuildFindBar();

  auto* pPage = new wxBoxSizer(wxVERTICAL);
  pPage->Add(fraFilter, wxSizerFlags().Expand());
  pPage->Add(pSplitter, wxSizerFlags(1).Expand());
  pPage->Add(fraFind, wxSizerFlags().Expand());
  SetSizer(pPage);
  Open(nullptr);
}

void EntriesPage::BuildFilterBar() {
  fraFilter = new wxPanel(this);
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  const auto Add = [&](std::int32_t lLabel, wxWindow* pControl, int lShare) {
    pRow->Add(new wxStaticText(fraFilter, wxID_ANY, ResText(lLabel)),
              wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(8)));
    pRow->Add(pControl, wxSizerFlags(lShare).CentreVertical().Border(wxALL, FromDIP(4)));
    pControl->SetName(ResText(lLabel));
  };
  cboSite = new wxChoice(fraFilter, wxID_ANY);
  cboOutcome = new wxChoice(fraFilter, wxID_ANY);
  txtWords = new wxTextCtrl(fraFilter, wxID_ANY);
  txtWords->SetToolTip(ResText(IDS_VIEW_WORDS_TIP));
  cboSite->SetMinSize(wxSize(GetCharWidth() * 12, -1));
  txtWords->SetMinSize(wxSize(GetCharWidth() * 12, -1));
  Add(IDS_VIEW_LABEL_SITE, cboSite, 3);
  Add(IDS_VIEW_LABEL_OUTCOME, cboOutcome, 0);
  Add(IDS_VIEW_LABEL_WORDS, txtWords, 2);
  auto* cmdClear = new wxButton(fraFilter, wxID_ANY, ResText(IDS_VIEW_CLEAR));
  pRow->Add(cmdClear, wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(4)));
  fraFilter->SetSizer(pRow);

  using Remark = LogFilter::Remark;
  const auto Append = [this](StringId iName, std::uint32_t lMask, Remark iRemark = Remark::Any) {
    cboOutcome->Append(ResText(iName));
    aChoices.push_back({lMask, iRemark});
  };
  Append(IDS_VIEW_ALL_OUTCOMES, LogFilter::lEvery);
  Append(IDS_VIEW_ALL_FAILURES, LogFilter::lFailures);
  for (const auto iOutcome :
       {Outcome::Up, Outcome::Warning, Outcome::Down, Outcome::Disabled, Outcome::None, Outcome::Unread})
    Append(LogWords::OutcomeName(iOutcome), LogFilter::Bit(iOutcome));
  Append(IDS_VIEW_MAILS, LogFilter::lEvery, Remark::Mail);
  Append(IDS_VIEW_MAILS_FAILED, LogFilter::lEvery, Remark::FailedMail);
  Append(IDS_VIEW_IP_CHECKS, LogFilter::lEvery, Remark::IPCheck);
  cboOutcome->SetSelection(0);

  cboSite->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { Refilter(); });
  cboOutcome->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { Refilter(); });
  txtWords->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { tmrWords.StartOnce(lWordsDelay); });
  tmrWords.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Refilter(); });
  cmdClear->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { ShowEverything(); });
}

void EntriesPage::BuildFindBar() {
  fraFind = new wxPanel(this);
  auto* pRow = new wxBoxSizer(wxHORIZONTAL);
  txtFind = new wxTextCtrl(fraFind, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxTE_PROCESS_ENTER);
  txtFind->SetName(ResText(IDS_VIEW_FIND_LABEL));
  auto* cmdNext = new wxButton(fraFind, wxID_ANY, ResText(IDS_VIEW_FIND_BUTTON_NEXT));
  auto* cmdPrevious = new wxButton(fraFind, wxID_ANY, ResText(IDS_VIEW_FIND_BUTTON_PREVIOUS));
  lblFound = new wxStaticText(fraFind, wxID_ANY, "");
  const auto aPlace = wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(4));
  pRow->Add(new wxStaticText(fraFind, wxID_ANY, ResText(IDS_VIEW_FIND_LABEL)), aPlace);
  pRow->Add(txtFind, wxSizerFlags(aPlace).Proportion(1));
  pRow->Add(cmdNext, aPlace);
  pRow->Add(cmdPrevious, aPlace);
  pRow->Add(lblFound, wxSizerFlags(aPlace).Proportion(1));
  fraFind->SetSizer(pRow);
  fraFind->Hide();
  cmdNext->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { FindAgain(true); });
  cmdPrevious->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { FindAgain(false); });
  txtFind->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { FindAgain(!wxGetKeyState(WXK_SHIFT)); });
  fraFind->Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& aEvent) {
    if (aEvent.GetKeyCode() != WXK_ESCAPE) {
      aEvent.Skip();
      return;
    }
    fraFind->Hide();
    Layout();
    lvwEntries->TakeFocus();
  });
}

VirtualTable::Light EntriesPage::LightOf(std::size_t lRow, int iColumn) const {
  if (static_cast<LogColumn>(iColumn) != LogColumn::Result) return VirtualTable::lNone;
  return StateLook::LightOf(StateOf(aRows.OutcomeOf(lRow)));
}

void EntriesPage::Open(const LogHistory* pNew) {
  pHistory = pNew;
  dtOpened = Clock::Now();
  aFilter = {};
  cboOutcome->SetSelection(0);
  txtWords->ChangeValue("");
  FillSites();
  Refill(false);
  if (aRows.Count() > 0) lvwEntries->GoTo(aRows.Count() - 1);
}

void EntriesPage::Follow(const LogHistory* pNew) {
  pHistory = pNew;
  FillSites();
  Refill(true);
}

void EntriesPage::FillSites() {
  static const std::vector<std::string> aNoSites;
  const auto& aSites = pHistory ? pHistory->Sites() : aNoSites;
  wxArrayString aNames;
  aNames.Add(ResText(IDS_VIEW_ALL_SITES));
  int iChosen = 0;
  for (std::size_t i = 0; i < std::min(aSites.size(), lMostSites); ++i) {
    aNames.Add(ToWxLabel(Utf8::Clean(Utf8::Shorten(aSites[i], lMostSiteBytes))));
    if (Text::EqualNoCase(aSites[i], aFilter.szSite)) iChosen = static_cast<int>(i) + 1;
  }
  if (aSites.size() > lMostSites)
    aNames.Add(ToWx(FillResString(IDS_VIEW_SITES_LEFT_OUT, {LogWords::Count(aSites.size() - lMostSites)})));
  if (aNames != cboSite->GetStrings()) cboSite->Set(aNames);
  cboSite->SetSelection(iChosen);
}

void EntriesPage::ReadFilter() {
  const auto iSite = cboSite->GetSelection();
  const bool bSite = pHistory && iSite > 0 && static_cast<std::size_t>(iSite) <= pHistory->Sites().size() &&
                     static_cast<std::size_t>(iSite) <= lMostSites;
  aFilter.szSite = bSite ? pHistory->Sites()[static_cast<std::size_t>(iSite) - 1] : std::string();
  const auto& aChoice = aChoices[static_cast<std::size_t>(std::max(0, cboOutcome->GetSelection()))];
  aFilter.lOutcomes = aChoice.lOutcomes;
  aFilter.iRemark = aChoice.iRemark;
  aFilter.szWords = FromWx(txtWords->GetValue());
}

void EntriesPage::Refilter() {
  tmrWords.Stop();
  ReadFilter();
  std::optional<LogHistory::LineRef> aFocus;
  if (const long lRow = lvwEntries->Focused(); lRow >= 0 && static_cast<std::size_t>(lRow) < aRows.Count())
    aFocus = aRows.RefOf(static_cast<std::size_t>(lRow));
  lvwEntries->SelectNone();
  Refill(false);
  if (aRows.Count() == 0) return;
  const auto lRow = aFocus ? aRows.RowOf(*aFocus) : std::nullopt;
  lvwEntries->GoTo(lRow.value_or(0));
}

void EntriesPage::Refill(bool bKeepPlace) {
  const bool bWasEmpty = aRows.Count() == 0;
  const bool bAtEnd = bKeepPlace && lvwEntries->AtEnd();
  const auto lTop = lvwEntries->TopRow();
  const long lFocus = lvwEntries->Focused();
  LogRows aNew;
  if (pHistory) aNew.Build(*pHistory, aFilter, bPasses);
  if (const auto iSort = lvwEntries->SortColumn(); pHistory && iSort >= 0)
    aNew.SortBy(static_cast<LogColumn>(iSort), lvwEntries->SortDescending());
  const bool bContinues = aNew.Continues(aRows);
  const auto Place = [&](std::size_t lRow) {
    return lRow < aRows.Count() ? aNew.RowOf(aRows.RefOf(lRow)) : std::nullopt;
  };
  const auto lNewTop = bKeepPlace && !bContinues ? Place(lTop) : std::nullopt;
  const auto lNewFocus =
      bKeepPlace && !bContinues && lFocus >= 0 ? Place(static_cast<std::size_t>(lFocus)) : std::nullopt;
  aRows = std::move(aNew);
  lvwEntries->Freeze();
  lvwEntries->ShowHint(Hint());
  if (bKeepPlace && !bContinues) lvwEntries->SelectNone();
  lvwEntries->SetRows(aRows.Count());
  lvwEntries->Thaw();  // a frozen list does not scroll on Windows
  if (lNewFocus) lvwEntries->GoTo(*lNewFocus);
  if (lNewTop) lvwEntries->ScrollToTop(*lNewTop);
  if (bAtEnd) lvwEntries->ScrollToEnd();
  if (bKeepPlace && bWasEmpty && aRows.Count() > 0) lvwEntries->GoTo(aRows.Count() - 1);
  ShowDetails();
  if (Changed) Changed();
}

wxString EntriesPage::Hint() const {
  if (!pHistory) return ResText(IDS_VIEW_HINT_NONE);
  if (!pHistory->Lines().empty()) return ResText(IDS_VIEW_HINT_FILTERED);
  return ToWxLines(FillResString(IDS_VIEW_HINT_EMPTY_SINCE, {LogWords::Moment(dtOpened)}));
}

void EntriesPage::GroupByPass(bool bGroup) {
  bPasses = bGroup;
  Refilter();
}

void EntriesPage::ShowEverything() {
  cboSite->SetSelection(0);
  cboOutcome->SetSelection(0);
  txtWords->ChangeValue("");
  Refilter();
}

void EntriesPage::ShowSite(const std::string& szSite) {
  if (!pHistory) return;
  const auto& aSites = pHistory->Sites();
  const auto lSite =
      static_cast<std::size_t>(std::find(aSites.begin(), aSites.end(), szSite) - aSites.begin());
  cboOutcome->SetSelection(0);
  // A site beyond the choice is found by its words; so is one that the log does not name.
  const bool bChoice = lSite < std::min(aSites.size(), lMostSites);
  cboSite->SetSelection(bChoice ? static_cast<int>(lSite) + 1 : 0);
  txtWords->ChangeValue(bChoice ? wxString() : ToWx(szSite));
  Refilter();
}

void EntriesPage::ShowMoment(const std::string& szSite, DateTime dtMoment, bool bFailure) {
  if (szSite.empty())
    ShowEverything();
  else
    ShowSite(szSite);
  if (const auto lRow = aRows.RowOf(szSite, dtMoment, bFailure)) GoTo(*lRow, VirtualTable::Place::UpperThird);
}

void EntriesPage::GoTo(std::size_t lRow, VirtualTable::Place iPlace) {
  lvwEntries->GoTo(lRow, iPlace);
  ShowDetails();
}

void EntriesPage::ShowFindBar() {
  fraFind->Show();
  lblFound->SetLabel("");
  Layout();
  // The bar takes the last rows' place.
  if (lvwEntries->Focused() >= 0) lvwEntries->List()->EnsureVisible(lvwEntries->Focused());
  txtFind->SetFocus();
  txtFind->SelectAll();
}

void EntriesPage::FindAgain(bool bForward) {
  const auto szWords = FromWx(txtFind->GetValue());
  if (Text::IsBlank(szWords)) {
    ShowFindBar();
    return;
  }
  const long lFocus = lvwEntries->Focused();
  const auto lFrom = lFocus < 0 || static_cast<std::size_t>(lFocus) >= aRows.Count()
                         ? std::nullopt
                         : std::optional(static_cast<std::size_t>(lFocus));
  const auto lFound = aRows.Find(lFrom, szWords, bForward);
  const bool bWrapped = lFound && lFrom && (bForward ? *lFound <= *lFrom : *lFound >= *lFrom);
  const bool bHidden = !lFound && Filtered() && LogFind::Next(*pHistory, pHistory->Lines(), {}, szWords);
  lblFound->SetLabel(bHidden    ? ResText(IDS_VIEW_FIND_HIDDEN)
                     : !lFound  ? ResText(IDS_VIEW_FIND_NONE)
                     : bWrapped ? ResText(IDS_VIEW_FIND_WRAPPED)
                                : wxString());
  if (lFound)
    GoTo(*lFound);
  else
    wxBell();
}

void EntriesPage::GoToFailure(bool bForward) {
  const long lFocus = lvwEntries->Focused();
  const auto lFrom = lFocus < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(lFocus));
  const auto lRow = aRows.Count() == 0 ? std::nullopt : aRows.FindFailure(lFrom, bForward);
  if (!lRow) wxBell();
  if (lRow) GoTo(*lRow);
  const bool bWrapped = lRow && lFrom && (bForward ? *lRow <= *lFrom : *lRow >= *lFrom);
  if (Remarked && (!lRow || bWrapped))
    Remarked(!lRow ? IDS_VIEW_NO_FAILURE : bForward ? IDS_VIEW_FROM_BEGINNING : IDS_VIEW_FROM_END);
}

void EntriesPage::ShowDetails() {
  const long lFocus = lvwEntries->Focused();
  txtDetails->Freeze();
  txtDetails->Clear();
  const auto aPlain = IndentedText(GetFont());
  const auto aBold = IndentedText(GetFont().Bold());
  const auto aEmphasis = IndentedText(GetFont().Bold().Italic());
  if (lFocus >= 0 && static_cast<std::size_t>(lFocus) < aRows.Count())
    for (const auto& aDetail : aRows.Details(static_cast<std::size_t>(lFocus))) {
      txtDetails->SetDefaultStyle(aBold);
      txtDetails->AppendText(ToWx(FillResString(IDS_VIEW_DETAIL, {aDetail.szName})) + " ");
      for (const auto& aRun : aDetail.aRuns) {
        txtDetails->SetDefaultStyle(aRun.bEmphasis ? aEmphasis : aPlain);
        wxString szText = ToWx(aRun.szText);
        szText.Replace("\n", "\n    ");  // a line of its own, below its name
        txtDetails->AppendText(szText);
      }
      txtDetails->AppendText("\n");
    }
  txtDetails->ShowPosition(0);
  txtDetails->SetInsertionPoint(0);
  txtDetails->Thaw();
}
