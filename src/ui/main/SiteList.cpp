#include "ui/main/SiteList.h"

#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/stattext.h>

#include <algorithm>

#include "base/Text.h"
#include "platform/Clock.h"
#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/system/AccessibleRows.h"
#include "ui/system/WindowScale.h"

namespace {

// imgLights in its order, then the header's own. Positions from 0, keys from 1.
const char* const aImages[] = {"Green",   "Yellow",    "Red",       "Blank",
                               "Checked", "UnChecked", "Ascending", "Descending"};
constexpr int lImageChecked = 4;
constexpr int lImageUnChecked = 5;
constexpr int lImageAscending = 6;
constexpr int lImageDescending = 7;
constexpr int lLightCount = 3;

constexpr int lImageTwips = 240;
constexpr int lImageColumnTwips = 300;
constexpr int lCellGap = 8;  // what the toolkit's list keeps free of each column, in pixels
constexpr int lHintMargin = 12;

}  // namespace

SiteList::SiteList(wxWindow* pParent)
    : wxListView(pParent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxLC_REPORT | wxLC_VIRTUAL | wxLC_SINGLE_SEL) {
  lImageSide = std::min(WindowScale::FromTwips(*this, lImageTwips),
                        WindowScale::FromTwips(*this, lImageColumnTwips) - lCellGap);
  wxVector<wxBitmapBundle> aBundles;
  for (const char* szImage : aImages)
    aBundles.push_back(Images::Bundle(szImage, ToDIP(lImageSide)));
  SetSmallImages(aBundles);
  AppendColumn("", wxLIST_FORMAT_LEFT);
  AppendColumn(ResText(IDS_COLUMN_ADDRESS), wxLIST_FORMAT_LEFT);
  AppendColumn(ResText(IDS_COLUMN_IP), wxLIST_FORMAT_LEFT);
  AppendColumn("", wxLIST_FORMAT_CENTRE);
  AppendColumn(ResText(IDS_COLUMN_COMMENTS), wxLIST_FORMAT_LEFT);

  AccessibleRows::Tell(
      *this, [] { return ResText(IDS_LOG_SITES); }, [this](long lRow) { return Spoken(lRow); });

  // A window of its own: a bare label would be drawn beneath the list's rows.
  pixHint = new wxPanel(this);
  pixHint->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOX));
  lblHint =
      new wxStaticText(pixHint, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL);
  lblHint->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
  for (wxWindow* pWindow : {static_cast<wxWindow*>(pixHint), static_cast<wxWindow*>(lblHint)})
    pWindow->Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent&) { SetFocus(); });
  pixHint->Hide();

  Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    PlaceHint();
  });
  Bind(wxEVT_MOTION, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    ShowWholeRow(aEvent.GetPosition());
  });
  for (const auto& aType : {wxEVT_LEFT_DOWN, wxEVT_RIGHT_DOWN})
    Bind(aType, [this](wxMouseEvent& aEvent) {
      aEvent.Skip();
      Touched();
    });
  Bind(wxEVT_MOUSEWHEEL, [this](wxMouseEvent& aEvent) {
    aEvent.Skip();
    Touched();
  });
  Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& aEvent) {
    aEvent.Skip();
    Touched();
  });
  Bind(wxEVT_CHAR, &SiteList::TypeAhead, this);
  Bind(wxEVT_LIST_BEGIN_LABEL_EDIT, [](wxListEvent& aEvent) { aEvent.Veto(); });
  Bind(wxEVT_LIST_COL_CLICK, [this](wxListEvent& aEvent) { ClickHeader(aEvent.GetColumn() + 1); });
}

void SiteList::Fill(std::vector<Row> aNew) {
  Freeze();
  SelectSlot(0);
  aRows = std::move(aNew);
  lOperatorsTop = -1;
  Sort();
  SetItemCount(RowCount());
  Refresh();
  Thaw();
}

void SiteList::Sort() {
  struct Key {
    std::string szText;
    std::size_t lRow;
  };
  std::vector<Key> aKeys;
  aKeys.reserve(aRows.size());
  for (std::size_t i = 0; i < aRows.size(); ++i)
    aKeys.push_back({Text::LowerCase(CellText(aRows[i], iSortColumn)), i});
  std::sort(aKeys.begin(), aKeys.end(), [this](const Key& aLeft, const Key& aRight) {
    if (const int lOrder = aLeft.szText.compare(aRight.szText)) return bAscending ? lOrder < 0 : lOrder > 0;
    return aRows[aLeft.lRow].lSlot < aRows[aRight.lRow].lSlot;
  });
  std::vector<Row> aSorted;
  aSorted.reserve(aRows.size());
  std::int32_t lHighest = 0;
  for (const Key& aKey : aKeys) {
    aSorted.push_back(std::move(aRows[aKey.lRow]));
    lHighest = std::max(lHighest, aSorted.back().lSlot);
  }
  aRows = std::move(aSorted);
  aPositions.assign(static_cast<std::size_t>(lHighest) + 1, -1);
  for (std::size_t i = 0; i < aRows.size(); ++i)
    aPositions[static_cast<std::size_t>(aRows[i].lSlot)] = static_cast<std::int32_t>(i);
}

std::int32_t SiteList::PositionOf(std::int32_t lSlot) const {
  const auto i = static_cast<std::size_t>(lSlot);
  return lSlot > 0 && i < aPositions.size() ? aPositions[i] : -1;
}

const SiteList::Row* SiteList::RowAt(std::int32_t lPosition) const {
  return lPosition >= 0 && lPosition < RowCount() ? &aRows[static_cast<std::size_t>(lPosition)] : nullptr;
}

const SiteList::Row* SiteList::RowOf(std::int32_t lSlot) const {
  return RowAt(PositionOf(lSlot));
}

SiteList::Row* SiteList::Find(std::int32_t lSlot) {
  return const_cast<Row*>(RowOf(lSlot));
}

void SiteList::SelectSlot(std::int32_t lSlot) {
  const long lOld = GetFirstSelected();
  if (lOld >= 0) Select(lOld, false);
  const std::int32_t lPosition = PositionOf(lSlot);
  if (lPosition < 0) return;
  Select(lPosition);
  Focus(lPosition);  // scrolls too
}

std::int32_t SiteList::SelectedSlot() const {
  const Row* pRow = RowAt(static_cast<std::int32_t>(GetFirstSelected()));
  return pRow ? pRow->lSlot : 0;
}

void SiteList::ShowLight(std::int32_t lSlot, std::int16_t iIcon) {
  if (Row* pRow = Find(lSlot)) {
    pRow->iLight = iIcon;
    RefreshItem(PositionOf(lSlot));
  }
}

void SiteList::ShowLightText(std::int32_t lSlot, const std::string& szText) {
  if (Row* pRow = Find(lSlot)) {
    pRow->szLightText = szText;
    RefreshItem(PositionOf(lSlot));
  }
}

void SiteList::ShowRemark(std::int32_t lSlot, const std::string& szText) {
  if (Row* pRow = Find(lSlot)) {
    pRow->szRemark = szText;
    RefreshItem(PositionOf(lSlot));
  }
}

void SiteList::ClearRemarks() {
  for (Row& aRow : aRows)
    aRow.szRemark.clear();
  if (!aRows.empty()) RefreshItems(0, RowCount() - 1);
}

void SiteList::Touched() {
  dtTouched = Clock::SteadyNow();
  lOperatorsTop = -1;
}

std::int32_t SiteList::RowFrom(std::int32_t lPosition, const std::string& szBegin) const {
  const std::string szAgent = LoadResString(IDS_AGENT);
  for (std::int32_t i = 0; i < RowCount(); ++i) {
    const std::int32_t lRow = (lPosition + i) % RowCount();
    std::string szAddress = Text::LowerCase(RowAt(lRow)->szAddress);
    if (szAddress.starts_with(szAgent)) szAddress.erase(0, szAgent.size());
    if (szAddress.starts_with(szBegin)) return lRow;
    if (szAddress.starts_with("www.") && szAddress.substr(4).starts_with(szBegin)) return lRow;
  }
  return -1;
}

// What is typed without a long pause is the beginning of an address; one letter again and again goes from row
// to row.
void SiteList::TypeAhead(wxKeyEvent& aEvent) {
  constexpr double dPause = 1;  // seconds
  const wxChar ch = aEvent.GetUnicodeKey();
  if (ch <= ' ' || ch == WXK_DELETE || aEvent.HasModifiers() || RowCount() == 0) {
    aEvent.Skip();
    return;
  }
  const DateTime dtNow = Clock::SteadyNow();
  if (dtNow > AddSeconds(dtTyped, dPause)) szTyped.clear();
  dtTyped = dtNow;
  const std::string szNew = Text::LowerCase(FromWx(wxString(ch)));
  if (szTyped != szNew) szTyped += szNew;
  const auto lFrom = std::max(0L, GetFirstSelected()) + (szTyped == szNew ? 1 : 0);
  const std::int32_t lRow = RowFrom(static_cast<std::int32_t>(lFrom), szTyped);
  if (lRow < 0)
    wxBell();
  else
    SelectSlot(RowAt(lRow)->lSlot);
}

void SiteList::EnsureRowVisible(std::int32_t lSlot) {
  constexpr double dReading = 10;  // seconds
  const std::int32_t lPosition = PositionOf(lSlot);
  if (lPosition < 0 || Clock::SteadyNow() < AddSeconds(dtTouched, dReading)) return;
  if (lOperatorsTop < 0) lOperatorsTop = GetTopItem();
  EnsureVisible(lPosition);
}

// The last row first: what is then made visible comes up at the top.
void SiteList::GiveBackPlace() {
  if (lOperatorsTop >= 0 && lOperatorsTop < RowCount() && GetTopItem() != lOperatorsTop) {
    EnsureVisible(RowCount() - 1);
    EnsureVisible(lOperatorsTop);
  }
  lOperatorsTop = -1;
}

void SiteList::ClickHeader(int iColumn) {
  for (const int i : {2, 3}) {
    wxListItem aHeader;
    aHeader.SetMask(wxLIST_MASK_TEXT);
    aHeader.SetText(ResText(i == 2 ? IDS_COLUMN_ADDRESS : IDS_COLUMN_IP));
    SetColumn(i - 1, aHeader);
    ClearColumnImage(i - 1);
  }
  const bool bSortable = iColumn == 2 || iColumn == 3;
  if (bSortable && iColumn != iSortColumn) {
    iSortColumn = iColumn;
    bAscending = true;
  } else if (bSortable && bAscending) {
    bAscending = false;
  } else {
    iSortColumn = 1;
    bAscending = true;
  }
  if (iSortColumn != 1) SetColumnImage(iSortColumn - 1, bAscending ? lImageAscending : lImageDescending);
  const std::int32_t lSelected = SelectedSlot();
  Sort();
  SelectSlot(lSelected);
  Refresh();
}

std::string SiteList::CellText(const Row& aRow, int iColumn) {
  switch (iColumn) {
    case 1:
      return std::to_string(aRow.lSlot);
    case 2:
      return aRow.szAddress;
    case 3:
      return aRow.szIP;
    case 4:
      return aRow.szLightText;
    default:
      return aRow.szRemark;
  }
}

// Beside a picture a text is shown as far as the column has room: at the width that the window gives these
// columns there is none, and the toolkit would draw the dots of a text that is cut. A number that is cut
// would be another number.
wxString SiteList::OnGetItemText(long lItem, long lColumn) const {
  const Row* pRow = RowAt(static_cast<std::int32_t>(lItem));
  if (!pRow) return {};
  wxString szText = ToWx(CellText(*pRow, static_cast<int>(lColumn) + 1));
  if (lColumn != 0 && lColumn != 3) return szText;
  const int lRoom = GetColumnWidth(static_cast<int>(lColumn)) - 2 * lCellGap -
                    (OnGetItemColumnImage(lItem, lColumn) < 0 ? 0 : lImageSide);
  if (lColumn == 0 && GetTextExtent(szText).x > lRoom) return {};
  while (!szText.empty() && GetTextExtent(szText).x > lRoom)
    szText.RemoveLast();
  return szText;
}

int SiteList::OnGetItemImage(long lItem) const {
  return OnGetItemColumnImage(lItem, 0);
}

int SiteList::OnGetItemColumnImage(long lItem, long lColumn) const {
  const Row* pRow = RowAt(static_cast<std::int32_t>(lItem));
  if (!pRow) return -1;
  if (lColumn == 0) return pRow->bChecked ? lImageChecked : lImageUnChecked;
  if (lColumn == 3 && pRow->iLight >= 1 && pRow->iLight <= lLightCount) return pRow->iLight - 1;
  return -1;
}

void SiteList::ShowHint(const wxString& szText) {
  pixHint->Show(!szText.empty());
  if (szHint == szText) return;
  szHint = szText;
  PlaceHint();
}

void SiteList::PlaceHint() {
  if (!pixHint->IsShown()) return;
  const wxSize aArea = GetClientSize();
  const int lMargin = FromDIP(lHintMargin);
  const int lWidth = std::max(0, aArea.x - 2 * lMargin);
  lblHint->SetLabel(szHint);
  lblHint->Wrap(lWidth);
  const wxSize aText = lblHint->GetBestSize();
  lblHint->SetSize((lWidth - aText.x) / 2, 0, aText.x, aText.y);
  pixHint->SetSize(lMargin, std::max(lMargin, (aArea.y - aText.y) / 2), lWidth, aText.y);
  pixHint->Raise();
}

wxString SiteList::Tip(const Row& aRow) const {
  std::string szTip = FillResString(IDS_TIP_ROW, {std::to_string(aRow.lSlot), aRow.szAddress});
  for (const std::string* pText : {&aRow.szIP, &aRow.szLightText, &aRow.szRemark})
    if (!pText->empty() && (pText != &aRow.szRemark || aRow.szRemark != aRow.szLightText))
      szTip += "\n" + *pText;
  return BreakLines(ToWx(szTip), this);
}

// What the pictures show is said in the words of the View menu.
wxString SiteList::Spoken(long lRow) const {
  const Row* pRow = RowAt(static_cast<std::int32_t>(lRow));
  if (!pRow) return {};
  constexpr std::int32_t aLights[] = {IDS_VIEW_SUCCESSFUL, IDS_VIEW_WARNING, IDS_VIEW_UNSUCCESSFUL};
  std::vector<std::string> aParts = {std::to_string(pRow->lSlot), pRow->szAddress, pRow->szIP};
  if (pRow->iLight >= 1 && pRow->iLight <= lLightCount)
    aParts.push_back(FromWx(wxControl::RemoveMnemonics(ResText(aLights[pRow->iLight - 1]))));
  if (pRow->szLightText != pRow->szRemark) aParts.push_back(pRow->szLightText);
  aParts.push_back(pRow->szRemark);
  aParts.push_back(pRow->bChecked ? "" : FromWx(wxControl::RemoveMnemonics(ResText(IDS_VIEW_DISABLED))));
  std::string szSpoken;
  for (const std::string& szPart : aParts)
    if (!szPart.empty()) szSpoken += (szSpoken.empty() ? "" : ", ") + szPart;
  return ToWx(szSpoken);
}

// The whole row, with its number: columns cut their texts.
void SiteList::ShowWholeRow(const wxPoint& aAt) {
  int lFlags = 0;
  const Row* pRow = RowAt(static_cast<std::int32_t>(HitTest(aAt, lFlags)));
  const wxString szTip = pRow ? Tip(*pRow) : wxString();
  if (szTip == GetToolTipText()) return;
  if (szTip.empty())
    UnsetToolTip();
  else
    SetToolTip(szTip);
}
