#include "ui/logview/SummaryPage.h"

#include <wx/generic/statbmpg.h>
#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogFacts.h"
#include "history/LogWords.h"
#include "platform/Clock.h"
#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/common/TextStyle.h"
#include "ui/common/VirtualTable.h"
#include "ui/logview/StateLook.h"
#include "ui/logview/StripView.h"
#include "ui/system/WindowScale.h"

namespace {

using LogTables::SiteColumn;

constexpr std::size_t lMostBytes = 400;
constexpr int lLightTwips = 480;
constexpr int lFactLines = 12;
constexpr std::size_t lRowsSeen = 5;  // at least, of the table
constexpr int lRowTwips = 330;

// As wide as the widest that commonly stands there; the names take what is left.
const char* SampleOf(SiteColumn iColumn, const LogSummary* pSummary) {
  const auto Any = [pSummary](auto Is) { return pSummary && std::ranges::any_of(pSummary->aSites, Is); };
  switch (iColumn) {
    case SiteColumn::Site:
      return "intranet.example.com";
    case SiteColumn::State:
      return Any([](const SiteSummary& a) { return a.iCurrent == SiteState::Unwatched; })
                 ? "MM No longer checked"
                 : "MM Switched off";
    case SiteColumn::Since:
      return Any(LogTables::SinceIsLeast) ? "Wed Dec 30 2000, 12:00 PM or before"
                                          : "Wed Dec 30 2000, 12:00 PM";
    case SiteColumn::Longest:
    case SiteColumn::DownTime:
      return "23 h 59 min";
    default:
      return "100.00%";
  }
}

}  // namespace

SummaryPage::SummaryPage(wxWindow* pParent) : wxPanel(pParent) {
  // The native one has a ground of its own on Windows, which is not the page's.
  imgLight = new wxGenericStaticBitmap(
      this, wxID_ANY, Images::Bundle("Blank", ToDIP(WindowScale::FromTwips(*this, lLightTwips))));
  lblHeadline = new wxStaticText(this, wxID_ANY, "");
  lblHeadline->SetFont(GetFont().Bold().Scaled(1.5f));
  pSplitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(400, 500)),
                                   wxSP_LIVE_UPDATE | wxSP_NOBORDER);
  auto* pUpper = new wxPanel(pSplitter);
  txtFacts = new wxTextCtrl(pUpper, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                            wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_BESTWRAP);
  lvwSites = new VirtualTable(pUpper, {});
  picStrips = new StripView(pSplitter);
  auto* pUpperSizer = new wxBoxSizer(wxVERTICAL);
  pUpperSizer->Add(txtFacts, wxSizerFlags().Expand());
  pUpperSizer->Add(lvwSites, wxSizerFlags(1).Expand().Border(wxTOP, FromDIP(4)));
  pUpper->SetSizer(pUpperSizer);
  pSplitter->SetMinimumPaneSize(GetCharHeight() * 4);
  pSplitter->SetSashGravity(0.6);
  pSplitter->SplitHorizontally(pUpper, picStrips);
  auto* pHead = new wxBoxSizer(wxHORIZONTAL);
  pHead->Add(imgLight, wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(6)));
  pHead->Add(lblHeadline, wxSizerFlags(1).CentreVertical().Border(wxALL, FromDIP(6)));
  auto* pPage = new wxBoxSizer(wxVERTICAL);
  pPage->Add(pHead, wxSizerFlags().Expand());
  pPage->Add(pSplitter, wxSizerFlags(1).Expand());
  SetSizer(pPage);
  FollowSizes(*pUpper);
  ConnectTable();
  ConnectStrips();
}

void SummaryPage::FollowSizes(wxWindow& aUpper) {
  pSplitter->Bind(wxEVT_SPLITTER_SASH_POS_CHANGING, [this](wxSplitterEvent& aEvent) {
    aEvent.Skip();
    bSashChosen = true;
  });
  pSplitter->Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    CallAfter([this] { PlaceSash(); });
  });
  Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    if (aEvent.GetSize().x != lWrappedAt) FitHeadline();
    aEvent.Skip();
  });
  aUpper.Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    FitFacts();
  });
}

void SummaryPage::ConnectTable() {
  lvwSites->Cell = [this](std::size_t lRow, int iColumn) {
    const auto szText = LogTables::Cell(SiteAt(lRow), ColumnAt(iColumn));
    return LogWords::PlainField(Utf8::Shorten(szText, lMostBytes));
  };
  lvwSites->LightOf = [this](std::size_t lRow, int iColumn) {
    return ColumnAt(iColumn) == SiteColumn::State ? StateLook::LightOf(SiteAt(lRow).iCurrent)
                                                  : VirtualTable::lNone;
  };
  lvwSites->SortChosen = [this] {
    lvwSites->SelectNone();
    PutInOrder();
    lvwSites->SetRows(aOrder.size());
    picStrips->ShowSites(pSummary, &aOrder);
  };
  lvwSites->Selected = [this] {
    if (lvwSites->Focused() >= 0) picStrips->Mark(static_cast<std::size_t>(lvwSites->Focused()));
  };
  lvwSites->Activated = [this](std::size_t lRow) {
    if (SiteChosen) SiteChosen(SiteAt(lRow).szSite);
  };
}

void SummaryPage::ConnectStrips() {
  picStrips->Marked = [this](std::size_t lPlace) { lvwSites->GoTo(lPlace); };
  picStrips->Chosen = [this](std::size_t lPlace, DateTime dtMoment, bool bFailure) {
    if (MomentChosen) MomentChosen(SiteAt(lPlace).szSite, dtMoment, bFailure);
  };
  picStrips->Told = [this](const std::string& szWords) {
    if (Told) Told(szWords);
  };
}

void SummaryPage::ShowLog(const LogSummary* pNew) {
  pSummary = pNew;
  ShowColumns();
  PutInOrder();
  szToldAge.clear();
  ShowAge();
  lvwSites->ShowHint(ResText(pNew ? IDS_LOG_HEAD_EMPTY : IDS_VIEW_HINT_NONE));
  lvwSites->SetRows(aOrder.size());
  picStrips->ShowSites(pSummary, &aOrder);
  CallAfter([this] { PlaceSash(); });
  Layout();
}

void SummaryPage::ShowAge() {
  const auto szAge = pSummary ? LogWords::LastCheck(*pSummary, Clock::Now()) : std::string("-");
  if (szAge == szToldAge) return;
  szToldAge = szAge;
  const auto dtNow = Clock::Now();
  FitHeadline();
  // Green is for what is up now.
  const bool bKnown = pSummary && !LogWords::Overdue(*pSummary, dtNow);
  imgLight->SetBitmap(Images::Bundle(StateLook::PictureOf(bKnown ? pSummary->Worst() : SiteState::Unwatched),
                                     ToDIP(WindowScale::FromTwips(*this, lLightTwips))));
  ShowFacts();
  Layout();
}

void SummaryPage::ShowColumns() {
  aColumns = LogTables::SiteColumns(pSummary ? *pSummary : LogSummary());
  std::vector<VirtualTable::Column> aShown;
  for (const auto iColumn : aColumns)
    aShown.push_back({LogTables::Title(iColumn), SampleOf(iColumn, pSummary),
                      iColumn == SiteColumn::Site ? 1 : 0, LogTables::IsNumber(iColumn)});
  lvwSites->SetColumns(aShown);
}

void SummaryPage::PutInOrder() {
  aOrder = pSummary ? LogWords::ByInterest(*pSummary) : std::vector<std::size_t>();
  const auto iSort = lvwSites->SortColumn();
  if (iSort < 0) return;
  std::ranges::stable_sort(aOrder, [&](std::size_t lLeft, std::size_t lRight) {
    if (lvwSites->SortDescending()) std::swap(lLeft, lRight);
    return LogTables::Before(pSummary->aSites[lLeft], pSummary->aSites[lRight], ColumnAt(iSort));
  });
}

// Header, some rows and the bar below them: what the table has before anything else gets more than its least.
int SummaryPage::TableNeeds() const {
  const auto lRows = static_cast<int>(std::clamp<std::size_t>(aOrder.size(), 1, lRowsSeen));
  return (lRows + 2) * WindowScale::FromTwips(*this, lRowTwips);
}

// The strips get what they need, at most half, and in a low window what the table leaves. Where the user puts
// the sash, it stays.
void SummaryPage::PlaceSash() {
  if (bSashChosen || !pSummary || !IsShownOnScreen()) return;
  const int lHeight = pSplitter->GetClientSize().y;
  if (lHeight < 3 * pSplitter->GetMinimumPaneSize()) return;  // still being built
  const int lUpper = std::max(lHeight / 2, lHeight - picStrips->FullHeight());
  const int lMost = lHeight - pSplitter->GetMinimumPaneSize();
  pSplitter->SetSashPosition(std::min(lMost, std::max(lUpper, TableNeeds() + LeastFacts())));
}

void SummaryPage::ShowFacts() {
  txtFacts->Freeze();
  const auto lTop = txtFacts->GetInsertionPoint();
  txtFacts->Clear();
  txtFacts->SetDefaultStyle(IndentedText(GetFont()));
  if (pSummary) {
    for (const auto& szSentence : LogWords::Lead(*pSummary, Clock::Now()))
      txtFacts->AppendText(ToWx(Utf8::Clean(szSentence)) + "\n");
    for (const auto& aFact : LogFacts::Of(*pSummary)) {
      std::string szValue;
      for (const auto& szLine : aFact.aLines)
        szValue += (szValue.empty() ? "" : "; ") + szLine;
      if (!aFact.szNote.empty()) szValue += ". " + aFact.szNote;
      AppendNamed(*txtFacts, GetFont(), ToWx(FillResString(IDS_VIEW_DETAIL, {LoadResString(aFact.iName)})),
                  ToWx(szValue));
    }
  }
  FitFacts();
  txtFacts->SetInsertionPoint(std::min(lTop, txtFacts->GetLastPosition()));
  txtFacts->ShowPosition(txtFacts->GetInsertionPoint());
  txtFacts->Thaw();
}

bool SummaryPage::Layout() {
  return GetClientSize().y < 12 * GetCharHeight() || wxPanel::Layout();
}

// In as many lines as it takes.
void SummaryPage::FitHeadline() {
  lblHeadline->SetLabel(pSummary ? ToWxLabel(LogWords::Headline(*pSummary, Clock::Now())) : wxString());
  lWrappedAt = GetClientSize().x;
  // GTK measures a little wider than Wrap does, and would break what then is too wide once more, out of
  // sight.
  const int lRoom = lWrappedAt - imgLight->GetSize().x - FromDIP(30) - 3 * GetCharWidth();
  lblHeadline->Wrap(std::max(lRoom, 40 * GetCharWidth()));
}

int SummaryPage::LeastFacts() const {
  return GetCharHeight() * 3;
}

// No more room than they need, and never so much that a low window no longer shows the sites.
void SummaryPage::FitFacts() {
  const int lUpper = txtFacts->GetParent()->GetClientSize().y;
  const int lRoom = std::min(lUpper * 2 / 5, lUpper - TableNeeds());
  const int lNeeded = GetCharHeight() * std::min(lFactLines, LinesOf(*txtFacts) + 1);
  const wxSize aWanted(-1, std::max(LeastFacts(), std::min(lNeeded, lRoom)));
  if (txtFacts->GetMinSize() == aWanted) return;
  txtFacts->SetMinSize(aWanted);
  txtFacts->GetParent()->Layout();
}
