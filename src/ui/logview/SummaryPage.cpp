#include "ui/logview/SummaryPage.h"

#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

#include "base/Utf8.h"
#include "history/LogWords.h"
#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/common/TextStyle.h"
#include "ui/common/VirtualTable.h"
#include "ui/logview/StripView.h"
#include "ui/system/WindowScale.h"

namespace {

using LogWords::Count;

constexpr std::size_t lMostBytes = 400;
constexpr int lLightTwips = 480;
constexpr int lFactLines = 12;

const std::vector<VirtualTable::Column> aSiteColumns = {
    {IDS_LOG_COL_SITE, nullptr, 1},
    {IDS_LOG_COL_NOW, "MM No longer checked"},
    {IDS_LOG_COL_SINCE, "Wed Dec 30 2000, 12:00 PM or before"},
    {IDS_LOG_COL_CHECKS, "1,000,000", 0, true},
    {IDS_LOG_COL_SHARE, "100.00%", 0, true},
    {IDS_LOG_COL_OUTAGES, "10,000", 0, true},
    {IDS_LOG_COL_LONGEST, "23 h 59 min", 0, true},
    {IDS_LOG_COL_DOWN_TIME, "23 h 59 min", 0, true}};

const std::vector<VirtualTable::Column> aOutageColumns = {{IDS_LOG_COL_SITE, nullptr, 4},
                                                          {IDS_LOG_COL_FROM, "Wed Dec 30 2000, 12:00 PM"},
                                                          {IDS_LOG_COL_TO, "Wed Dec 30 2000, 12:00 PM"},
                                                          {IDS_LOG_COL_LENGTH, nullptr, 3},
                                                          {IDS_LOG_COL_WHAT, nullptr, 5},
                                                          {IDS_LOG_COL_MAIL, "could not be sent"}};

int LightOf(SiteState iState) {
  switch (iState) {
    case SiteState::Up:
      return VirtualTable::lGreen;
    case SiteState::Warning:
      return VirtualTable::lYellow;
    case SiteState::Down:
      return VirtualTable::lRed;
    case SiteState::Disabled:
      return VirtualTable::lGrey;
    default:
      return VirtualTable::lNone;
  }
}

std::string Clean(std::string_view szText) {
  return Utf8::Clean(LogWords::PlainField(Utf8::Shorten(szText, lMostBytes)));
}

std::string Since(const SiteSummary& aSite) {
  if (aSite.dtSince <= 0) return {};
  const auto szSince = LogWords::Moment(aSite.dtSince);
  return aSite.bSinceKnown || aSite.iCurrent == SiteState::Unwatched
             ? szSince
             : FillResString(IDS_LOG_SINCE_LEAST, {szSince});
}

// The facts of the whole log: name and value.
std::vector<std::pair<StringId, std::string>> Facts(const LogSummary& aSummary) {
  std::vector<std::pair<StringId, std::string>> aFacts;
  if (aSummary.dtFrom > 0)
    aFacts.emplace_back(IDS_LOG_FACT_COVERED, FillResString(IDS_LOG_SPAN, {LogWords::Moment(aSummary.dtFrom),
                                                                           LogWords::Moment(aSummary.dtTo)}));
  aFacts.emplace_back(
      IDS_LOG_FACT_PASSES,
      FillResString(IDS_LOG_FACT_PASSES_VALUE, {Count(aSummary.lAutomatic + aSummary.lManual),
                                                Count(aSummary.lAutomatic), Count(aSummary.lManual)}));
  aFacts.emplace_back(IDS_LOG_FACT_CHECKS, LogWords::Checks(aSummary));
  aFacts.emplace_back(
      IDS_LOG_FACT_MAILS,
      FillResString(IDS_LOG_FACT_MAILS_VALUE, {Count(aSummary.lMailsSent), Count(aSummary.lMailsFailed)}));
  std::string szGaps;
  for (const auto& szGap : LogWords::Gaps(aSummary))
    szGaps += (szGaps.empty() ? "" : "; ") + szGap;
  if (aSummary.lEntries > 0)
    aFacts.emplace_back(IDS_LOG_FACT_GAPS, szGaps.empty()
                                               ? LoadResString(IDS_LOG_FACT_GAPS_NONE)
                                               : szGaps + ". " + LoadResString(IDS_LOG_FACT_GAPS_NOTE));
  if (aSummary.lEndless + aSummary.lStartless > 0)
    aFacts.emplace_back(IDS_LOG_FACT_BROKEN_OFF, LogWords::BrokenOff(aSummary));
  if (aSummary.lUnread > 0)
    aFacts.emplace_back(IDS_LOG_FACT_UNREAD, FillResString(IDS_VIEW_UNREAD_VALUE, {Count(aSummary.lUnread)}));
  return aFacts;
}

SiteState Worst(const LogSummary& aSummary) {
  for (const auto iState : {SiteState::Down, SiteState::Warning, SiteState::Up})
    if (aSummary.Count(iState) > 0) return iState;
  return SiteState::Unwatched;
}

}  // namespace

SummaryPage::SummaryPage(wxWindow* pParent) : wxPanel(pParent) {
  imgLight =
      new wxStaticBitmap(this, wxID_ANY, Images::Bundle("Blank", WindowScale::FromTwips(*this, lLightTwips)));
  lblHeadline = new wxStaticText(this, wxID_ANY, "");
  lblHeadline->SetFont(GetFont().Bold().Scaled(1.5f));
  pSplitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                   wxSP_LIVE_UPDATE | wxSP_NOBORDER);
  auto* pUpper = new wxPanel(pSplitter);
  txtFacts = new wxTextCtrl(pUpper, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                            wxTE_MULTILINE | wxTE_READONLY | wxTE_RICH2 | wxTE_BESTWRAP);
  lvwSites = new VirtualTable(pUpper, aSiteColumns);
  picStrips = new StripView(pSplitter);
  auto* pUpperSizer = new wxBoxSizer(wxVERTICAL);
  pUpperSizer->Add(txtFacts, wxSizerFlags().Expand());
  txtFacts->SetMinSize(wxSize(-1, GetCharHeight() * lFactLines));
  pUpperSizer->Add(lvwSites, wxSizerFlags(1).Expand().Border(wxTOP, FromDIP(4)));
  pUpper->SetSizer(pUpperSizer);
  pSplitter->SetMinimumPaneSize(GetCharHeight() * 6);
  pSplitter->SetSashGravity(0.6);
  pSplitter->SplitHorizontally(pUpper, picStrips);

  auto* pHead = new wxBoxSizer(wxHORIZONTAL);
  pHead->Add(imgLight, wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(6)));
  pHead->Add(lblHeadline, wxSizerFlags(1).CentreVertical().Border(wxALL, FromDIP(6)));
  auto* pPage = new wxBoxSizer(wxVERTICAL);
  pPage->Add(pHead, wxSizerFlags().Expand());
  pPage->Add(pSplitter, wxSizerFlags(1).Expand());
  SetSizer(pPage);

  lvwSites->Cell = [this](std::size_t lRow, int iColumn) { return Cell(lRow, iColumn); };
  lvwSites->LightOf = [this](std::size_t lRow, int iColumn) {
    return iColumn == 1 ? ::LightOf(pSummary->aSites[aOrder[lRow]].iCurrent) : VirtualTable::lNone;
  };
  lvwSites->Selected = [this] {
    if (lvwSites->Focused() >= 0) picStrips->Mark(static_cast<std::size_t>(lvwSites->Focused()));
  };
  lvwSites->Activated = [this](std::size_t lRow) {
    if (SiteChosen) SiteChosen(pSummary->aSites[aOrder[lRow]].szSite);
  };
  picStrips->Clicked = [this](std::size_t lPlace) { lvwSites->GoTo(lPlace); };
}

void SummaryPage::ShowLog(const LogSummary* pNew) {
  pSummary = pNew;
  aOrder = pNew ? LogWords::ByInterest(*pNew) : std::vector<std::size_t>();
  lblHeadline->SetLabel(pNew ? ToWxLabel(LogWords::Headline(*pNew)) : wxString());
  const auto iLight = pNew ? ::LightOf(Worst(*pNew)) : VirtualTable::lNone;
  constexpr const char* aNames[] = {"Blank", "Green", "Yellow", "Red"};
  imgLight->SetBitmap(Images::Bundle(iLight >= 0 && iLight < 3 ? aNames[iLight + 1] : aNames[0],
                                     WindowScale::FromTwips(*this, lLightTwips)));
  ShowFacts();
  lvwSites->ShowHint(ResText(pNew ? IDS_LOG_HEAD_EMPTY : IDS_VIEW_HINT_NONE));
  lvwSites->SetRows(aOrder.size());
  picStrips->ShowSites(pSummary, &aOrder);
  CallAfter([this] { PlaceSash(); });
  Layout();
}

// As much as the strips need, at most half; from then on it is where the user puts it.
void SummaryPage::PlaceSash() {
  if (bSashPlaced || !pSummary || !IsShownOnScreen()) return;
  bSashPlaced = true;
  const int lHeight = pSplitter->GetClientSize().y;
  pSplitter->SetSashPosition(std::max(lHeight / 2, lHeight - picStrips->FullHeight()));
}

void SummaryPage::ShowFacts() {
  txtFacts->Freeze();
  const auto lTop = txtFacts->GetInsertionPoint();
  txtFacts->Clear();
  const auto aPlain = IndentedText(GetFont());
  const auto aBold = IndentedText(GetFont().Bold());
  txtFacts->SetDefaultStyle(aPlain);
  if (pSummary) {
    for (const auto& szSentence : LogWords::Lead(*pSummary))
      txtFacts->AppendText(ToWx(Utf8::Clean(szSentence)) + "\n");
    for (const auto& [iName, szValue] : Facts(*pSummary)) {
      txtFacts->SetDefaultStyle(aBold);
      txtFacts->AppendText(ToWx(FillResString(IDS_VIEW_DETAIL, {LoadResString(iName)})) + " ");
      txtFacts->SetDefaultStyle(aPlain);
      txtFacts->AppendText(ToWx(szValue) + "\n");
    }
  }
  // No more room than they need, so that a low window still shows the sites.
  txtFacts->SetMinSize(wxSize(-1, GetCharHeight() * std::min(lFactLines, txtFacts->GetNumberOfLines() + 2)));
  txtFacts->GetParent()->Layout();
  txtFacts->SetInsertionPoint(std::min(lTop, txtFacts->GetLastPosition()));
  txtFacts->ShowPosition(txtFacts->GetInsertionPoint());
  txtFacts->Thaw();
}

std::string SummaryPage::Cell(std::size_t lRow, int iColumn) const {
  const auto& aSite = pSummary->aSites[aOrder[lRow]];
  const auto* pLongest = aSite.Longest();
  switch (iColumn) {
    case 0:
      return Clean(aSite.szSite);
    case 1:
      return LogWords::State(aSite);
    case 2:
      return Since(aSite);
    case 3:
      return Count(aSite.lChecks);
    case 4:
      return LogWords::Share(aSite.lSuccesses, aSite.lChecks);
    case 5:
      return Count(aSite.aOutages.size());
    case 6:
      return pLongest ? LogWords::Length(pLongest->lSeconds) : "-";
    default:
      return pLongest ? LogWords::Length(aSite.lDownSeconds) : "-";
  }
}

OutagesPage::OutagesPage(wxWindow* pParent) : wxPanel(pParent) {
  lvwOutages = new VirtualTable(this, aOutageColumns);
  auto* pPage = new wxBoxSizer(wxVERTICAL);
  pPage->Add(lvwOutages, wxSizerFlags(1).Expand());
  SetSizer(pPage);
  lvwOutages->Cell = [this](std::size_t lRow, int iColumn) { return Cell(lRow, iColumn); };
  lvwOutages->LightOf = [this](std::size_t lRow, int iColumn) {
    return iColumn != 0                                  ? VirtualTable::lNone
           : OutageOf(lRow).iEnd == OutageEnd::StillDown ? VirtualTable::lRed
                                                         : VirtualTable::lGrey;
  };
  lvwOutages->Activated = [this](std::size_t lRow) {
    if (OutageChosen) OutageChosen(pSummary->aSites[aPlaces[lRow].lSite].szSite, OutageOf(lRow).dtFrom);
  };
}

void OutagesPage::ShowLog(const LogSummary* pNew) {
  pSummary = pNew;
  aPlaces.clear();
  if (pNew) {
    for (std::size_t lSite = 0; lSite < pNew->aSites.size(); ++lSite)
      for (std::size_t lOutage = 0; lOutage < pNew->aSites[lSite].aOutages.size(); ++lOutage)
        aPlaces.push_back({lSite, lOutage});
    std::stable_sort(aPlaces.begin(), aPlaces.end(), [pNew](const Place& aLeft, const Place& aRight) {
      return pNew->aSites[aLeft.lSite].aOutages[aLeft.lOutage].dtFrom >
             pNew->aSites[aRight.lSite].aOutages[aRight.lOutage].dtFrom;
    });
  }
  lvwOutages->ShowHint(ResText(pNew ? IDS_VIEW_HINT_NO_OUTAGE : IDS_VIEW_HINT_NONE));
  lvwOutages->SetRows(aPlaces.size());
}

const Outage& OutagesPage::OutageOf(std::size_t lRow) const {
  return pSummary->aSites[aPlaces[lRow].lSite].aOutages[aPlaces[lRow].lOutage];
}

std::string OutagesPage::Cell(std::size_t lRow, int iColumn) const {
  const auto& aOutage = OutageOf(lRow);
  switch (iColumn) {
    case 0:
      return Clean(pSummary->aSites[aPlaces[lRow].lSite].szSite);
    case 1:
      return aOutage.bStartKnown ? LogWords::Moment(aOutage.dtFrom)
                                 : FillResString(IDS_LOG_OR_EARLIER, {LogWords::Moment(aOutage.dtFrom)});
    case 2:
      return LogWords::OutageEndWords(aOutage);
    case 3:
      return LogWords::OutageLength(aOutage);
    case 4:
      return Clean(aOutage.szText);
    default:
      return aOutage.lMailsSent > 0     ? LoadResString(IDS_LOG_MAIL_SENT)
             : aOutage.lMailsFailed > 0 ? std::string(LoadResString(IDS_LOG_MAIL_FAILED))
                                        : "-";
  }
}
