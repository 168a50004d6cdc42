#include "ui/common/VirtualTable.h"

#include <wx/bookctrl.h>
#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/utils.h>

#include <algorithm>
#include <utility>

#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"
#include "ui/system/AccessibleName.h"
#include "ui/system/AccessibleRows.h"
#include "ui/system/WindowScale.h"

namespace {

constexpr int lImageTwips = 240;
constexpr int lLeastShare = 24;  // characters, of a column that shares what is left
constexpr const char* aLights[] = {"Green", "Yellow", "Red", "Blank"};

wxColour Between(const wxColour& aOne, const wxColour& aOther, double dPart) {
  const auto Mix = [dPart](unsigned char lOne, unsigned char lOther) {
    return static_cast<unsigned char>(lOne + (lOther - lOne) * dPart);
  };
  return {Mix(aOne.Red(), aOther.Red()), Mix(aOne.Green(), aOther.Green()), Mix(aOne.Blue(), aOther.Blue())};
}

}  // namespace

class VirtualTable::RowList : public wxListView {
 public:
  explicit RowList(VirtualTable* pOwner)
      : wxListView(pOwner, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxLC_REPORT | wxLC_VIRTUAL),
        pTable(pOwner) {
    const auto aPaper = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOX);
    const auto aInk = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT);
    aHeading.SetFont(GetFont().Bold());
    aHeading.SetBackgroundColour(Between(aPaper, aInk, 0.07));
    aHeading.SetTextColour(aInk);
    aAside.SetFont(GetFont().Italic());
    aAside.SetTextColour(Between(aPaper, aInk, 0.6));
    wxVector<wxBitmapBundle> aBundles;
    for (const char* szLight : aLights)
      aBundles.push_back(Images::Bundle(szLight, ToDIP(WindowScale::FromTwips(*this, lImageTwips))));
    SetSmallImages(aBundles);
  }

 protected:
  wxString OnGetItemText(long lItem, long lColumn) const override {
    return Known(lItem) && pTable->Cell
               ? ToWx(pTable->Cell(static_cast<std::size_t>(lItem), static_cast<int>(lColumn)))
               : wxString();
  }
  int OnGetItemImage(long lItem) const override { return OnGetItemColumnImage(lItem, 0); }
  int OnGetItemColumnImage(long lItem, long lColumn) const override {
    return Known(lItem) && pTable->LightOf
               ? pTable->LightOf(static_cast<std::size_t>(lItem), static_cast<int>(lColumn))
               : lNone;
  }
  wxItemAttr* OnGetItemAttr(long lItem) const override {
    if (!Known(lItem) || !pTable->StyleOf) return nullptr;
    const auto iStyle = pTable->StyleOf(static_cast<std::size_t>(lItem));
    return iStyle == Style::Plain ? nullptr : iStyle == Style::Heading ? &aHeading : &aAside;
  }

 private:
  bool Known(long lItem) const { return lItem >= 0 && lItem < GetItemCount(); }
  VirtualTable* pTable;
  mutable wxItemAttr aHeading, aAside;
};

VirtualTable::VirtualTable(wxWindow* pParent, const std::vector<Column>& aColumnList)
    : wxPanel(pParent), aColumns(aColumnList) {
  lvwRows = new RowList(this);
  AccessibleRows::Tell(
      *lvwRows, [this] { return Title(); }, [this](long lRow) { return Spoken(lRow); });
  AppendColumns();
  pixHint = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_THEME);
  pixHint->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOX));
  lblHint =
      new wxStaticText(pixHint, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL);
  lblHint->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
  auto* pInner = new wxBoxSizer(wxVERTICAL);
  pInner->AddStretchSpacer();
  pInner->Add(lblHint, wxSizerFlags().Centre().Border(wxALL, FromDIP(12)));
  pInner->AddStretchSpacer();
  pixHint->SetSizer(pInner);
  pixHint->Hide();
  auto* pOuter = new wxBoxSizer(wxVERTICAL);
  pOuter->Add(lvwRows, wxSizerFlags(1).Expand());
  pOuter->Add(pixHint, wxSizerFlags(1).Expand());
  SetSizer(pOuter);

  // The list's own size: it gets none while the hint stands in its place.
  lvwRows->Bind(wxEVT_SIZE, [this](wxSizeEvent& aEvent) {
    aEvent.Skip();
    CallAfter([this] {
      FitColumns();
      KeepFocusSeen();
    });
  });
  lvwRows->Bind(wxEVT_LIST_COL_END_DRAG, [this](wxListEvent& aEvent) {
    aEvent.Skip();
    bWidthsChosen = true;
  });
  lvwRows->Bind(wxEVT_LIST_ITEM_ACTIVATED, [this](wxListEvent& aEvent) {
    if (Activated && aEvent.GetIndex() >= 0) Activated(static_cast<std::size_t>(aEvent.GetIndex()));
  });
  for (const auto& iEvent : {wxEVT_LIST_ITEM_SELECTED, wxEVT_LIST_ITEM_FOCUSED})
    lvwRows->Bind(iEvent, [this, bFocus = iEvent == wxEVT_LIST_ITEM_FOCUSED](wxListEvent& aEvent) {
      aEvent.Skip();
      if (bExtending) return;
      if (bFocus && !wxGetKeyState(WXK_SHIFT)) lAnchor = aEvent.GetIndex();
      if (Selected) Selected();
    });
  lvwRows->Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& aEvent) {
    if (!ExtendByKey(aEvent)) aEvent.Skip();
  });
  lvwRows->Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent& aEvent) {
    int lWhere = 0;
    const long lRow = lvwRows->HitTest(aEvent.GetPosition(), lWhere);
    if (lRow >= 0 && aEvent.ShiftDown() && !aEvent.ControlDown()) {
      lvwRows->SetFocus();
      ExtendTo(lRow);
      return;
    }
    if (lRow >= 0) lAnchor = lRow;
    aEvent.Skip();
  });
  lvwRows->Bind(wxEVT_CONTEXT_MENU, [this](wxContextMenuEvent& aEvent) {
    const auto aAt = aEvent.GetPosition();
    ShowMenu(aAt == wxDefaultPosition ? aAt : lvwRows->ScreenToClient(aAt));
  });
  lvwRows->Bind(wxEVT_LIST_COL_CLICK, [this](wxListEvent& aEvent) { ChooseSort(aEvent.GetColumn()); });
}

// The list tells of its focus while it goes. It goes while there is a table to tell, and who would listen
// beyond it may be gone already.
VirtualTable::~VirtualTable() {
  Activated = nullptr;
  Selected = nullptr;
  SortChosen = nullptr;
  DestroyChildren();
}

void VirtualTable::AppendColumns() {
  for (const auto& aColumn : aColumns)
    lvwRows->AppendColumn(ResText(aColumn.lTitle), aColumn.bRight ? wxLIST_FORMAT_RIGHT : wxLIST_FORMAT_LEFT);
}

void VirtualTable::SetColumns(const std::vector<Column>& aColumnList) {
  if (std::ranges::equal(aColumns, aColumnList, {}, &Column::lTitle, &Column::lTitle)) return;
  aColumns = aColumnList;
  iSortColumn = -1;
  bWidthsChosen = false;
  lvwRows->DeleteAllColumns();
  AppendColumns();
  FitColumns();
}

void VirtualTable::ChooseSort(int iColumn) {
  if (!SortChosen || iColumn < 0) return;
  const bool bSame = iColumn == iSortColumn;
  SortBy(bSame && bSortDescending ? -1 : iColumn, bSame && !bSortDescending);
}

void VirtualTable::SortBy(int iColumn, bool bDescending) {
  iSortColumn = iColumn;
  bSortDescending = bDescending;
  if (iSortColumn < 0)
    lvwRows->RemoveSortIndicator();
  else
    lvwRows->ShowSortIndicator(iSortColumn, !bSortDescending);
  SortChosen();
}

void VirtualTable::ShowMenu(const wxPoint& aWhere) {
  constexpr int lFirstColumn = 1, lOwnOrder = 999;  // below every command's number
  wxMenu aMenu;
  if (FillMenu) FillMenu(aMenu);
  if (SortChosen) {
    auto* pSort = new wxMenu;
    for (std::size_t i = 0; i < aColumns.size(); ++i)
      pSort->AppendRadioItem(lFirstColumn + static_cast<int>(i), ResText(aColumns[i].lTitle));
    pSort->AppendRadioItem(lOwnOrder, ResText(IDS_VIEW_SORT_NONE));
    pSort->Check(iSortColumn < 0 ? lOwnOrder : lFirstColumn + iSortColumn, true);
    if (aMenu.GetMenuItemCount() > 0) aMenu.AppendSeparator();
    aMenu.AppendSubMenu(pSort, ResText(IDS_VIEW_SORT_BY));
  }
  if (aMenu.GetMenuItemCount() == 0) return;
  auto aAt = aWhere;
  if (wxRect aRow; aAt == wxDefaultPosition && Focused() >= 0 && lvwRows->GetItemRect(Focused(), aRow))
    aAt = aRow.GetBottomLeft();
  const int iChosen = lvwRows->GetPopupMenuSelectionFromUser(aMenu, aAt);
  const int iColumn = iChosen - lFirstColumn;
  if (iChosen == lOwnOrder) {
    SortBy(-1, false);
  } else if (iColumn >= 0 && iColumn < static_cast<int>(aColumns.size())) {
    SortBy(iColumn, iColumn == iSortColumn && !bSortDescending);
  } else if (iChosen != wxID_NONE) {
    wxCommandEvent aCommand(wxEVT_MENU, iChosen);
    ProcessWindowEvent(aCommand);
  }
}

bool VirtualTable::ExtendByKey(const wxKeyEvent& aEvent) {
  if (aEvent.GetModifiers() != wxMOD_SHIFT || Rows() == 0) return false;
  const long lLast = static_cast<long>(Rows()) - 1, lPage = std::max(1, lvwRows->GetCountPerPage());
  const long lFrom = std::max(0L, Focused());
  long lTo = 0;
  switch (aEvent.GetKeyCode()) {
    case WXK_UP:
      lTo = lFrom - 1;
      break;
    case WXK_DOWN:
      lTo = lFrom + 1;
      break;
    case WXK_PAGEUP:
      lTo = lFrom - lPage;
      break;
    case WXK_PAGEDOWN:
      lTo = lFrom + lPage;
      break;
    case WXK_HOME:
      break;
    case WXK_END:
      lTo = lLast;
      break;
    default:
      return false;
  }
  ExtendTo(std::clamp(lTo, 0L, lLast));
  return true;
}

void VirtualTable::ExtendTo(long lRow) {
  if (lAnchor < 0 || static_cast<std::size_t>(lAnchor) >= Rows()) lAnchor = std::max(0L, Focused());
  bExtending = true;
  SelectNone();
  for (long lAt = std::min(lAnchor, lRow); lAt <= std::max(lAnchor, lRow); ++lAt)
    lvwRows->Select(lAt);
  lvwRows->Focus(lRow);  // scrolls to it
  bExtending = false;
  if (Selected) Selected();
}

bool VirtualTable::Layout() {
  const wxSize aRoom = GetClientSize();
  return std::min(aRoom.x, aRoom.y) > 4 * GetCharHeight() && wxPanel::Layout();
}

void VirtualTable::FitColumns() {
  if (bWidthsChosen) return;
  const int lPadding = FromDIP(20);
  // Windows keeps room for a picture in the first column, whether a row has one there or not.
  int lPicture = WindowScale::FromTwips(*this, lImageTwips);
  int lLeft = lvwRows->GetClientSize().x - wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, this);
  int lShares = 0;
  std::vector<int> aWidths;
  for (const auto& aColumn : aColumns) {
    int lWidth = lvwRows->GetTextExtent(ResText(aColumn.lTitle)).x + lPadding;
    if (aColumn.szSample) {
      const wxFont aFont = StyleOf ? lvwRows->GetFont().Bold() : lvwRows->GetFont();
      int lText = 0;
      lvwRows->GetTextExtent(aColumn.szSample, &lText, nullptr, nullptr, nullptr, &aFont);
      lWidth = std::max(lWidth, lText + lPicture + lPadding);
    }
    lPicture = 0;
    aWidths.push_back(lWidth);
    lShares += aColumn.lShare;
    if (aColumn.lShare == 0) lLeft -= lWidth;
  }
  for (std::size_t i = 0; i < aColumns.size(); ++i) {
    const int lShare = aColumns[i].lShare;
    const int lLeast = aColumns[i].szSample ? aWidths[i] : GetCharWidth() * lLeastShare;
    const int lWidth = lShare > 0 ? std::max(lLeast, lLeft * lShare / std::max(lShares, 1)) : aWidths[i];
    if (lvwRows->GetColumnWidth(static_cast<int>(i)) != lWidth)
      lvwRows->SetColumnWidth(static_cast<int>(i), lWidth);
  }
}

void VirtualTable::SetRows(std::size_t lRows) {
  if (Rows() > lRows) SelectNone();  // a selection beyond the end would outlive its rows
  lvwRows->SetItemCount(static_cast<long>(lRows));
  lvwRows->Refresh();
  const bool bHint = lRows == 0 && !lblHint->GetLabel().empty();
  if (pixHint->IsShown() != bHint) {
    lvwRows->Show(!bHint);
    pixHint->Show(bHint);
    Layout();
  }
}

void VirtualTable::ShowHint(const wxString& szText) {
  lblHint->SetLabel(szText);
  AccessibleName::Set(*pixHint, szText);
  pixHint->Layout();
}

void VirtualTable::GoTo(std::size_t lRow, Place iPlace) {
  SelectNone();
  lAnchor = static_cast<long>(lRow);
  lvwRows->Select(lAnchor);
  lvwRows->Focus(lAnchor);
  const auto lThird = static_cast<std::size_t>(std::max(0, lvwRows->GetCountPerPage() / 3));
  if (iPlace == Place::UpperThird) ScrollToTop(lRow > lThird ? lRow - lThird : 0);
  lvwRows->EnsureVisible(lAnchor);
}

void VirtualTable::SelectAll() {
  if (Rows() > 0) lvwRows->SetItemState(-1, wxLIST_STATE_SELECTED, wxLIST_STATE_SELECTED);
}

void VirtualTable::SelectNone() {
  if (Rows() > 0) lvwRows->SetItemState(-1, 0, wxLIST_STATE_SELECTED);
}

wxString VirtualTable::Title() const {
  for (const wxWindow* pPart = this; pPart; pPart = pPart->GetParent())
    if (const auto* tabPages = dynamic_cast<const wxBookCtrlBase*>(pPart->GetParent()))
      return tabPages->GetPageText(static_cast<std::size_t>(tabPages->FindPage(pPart)));
  return {};
}

wxString VirtualTable::Spoken(long lRow) const {
  wxString szSpoken;
  for (std::size_t i = 0; Cell && i < aColumns.size(); ++i) {
    const auto szCell = ToWx(Cell(static_cast<std::size_t>(lRow), static_cast<int>(i)));
    if (!szCell.empty()) szSpoken << (szSpoken.empty() ? "" : ", ") << szCell;
  }
  return szSpoken;
}

std::string VirtualTable::CopyText() const {
  std::string szText;
  const long lFirst = lvwRows->GetFirstSelected() >= 0 ? lvwRows->GetFirstSelected() : Focused();
  for (long lRow = lFirst; lRow >= 0 && lRow < lvwRows->GetItemCount();
       lRow = lvwRows->GetNextSelected(lRow)) {
    for (std::size_t i = 0; i < aColumns.size(); ++i)
      szText += (i > 0 ? "\t" : "") + Cell(static_cast<std::size_t>(lRow), static_cast<int>(i));
    szText += '\n';
  }
  return szText;
}

bool VirtualTable::AtEnd() const {
  const long lCount = lvwRows->GetItemCount();
  // The row at the lower edge may be cut; it counts as seen.
  return lCount == 0 || lvwRows->GetTopItem() + lvwRows->GetCountPerPage() + 1 >= lCount;
}

std::size_t VirtualTable::TopRow() const {
  return static_cast<std::size_t>(std::max(0L, lvwRows->GetTopItem()));
}

// A list that becomes lower, as by a message above it, loses its last rows; never the one in focus, if that
// was seen before.
void VirtualTable::KeepFocusSeen() {
  const long lBefore = std::exchange(lRowsSeen, lvwRows->GetCountPerPage());
  const long lPast = lvwRows->GetTopItem() + lBefore;
  if (lRowsSeen < lBefore && Focused() >= lvwRows->GetTopItem() && Focused() <= lPast &&
      Focused() < lvwRows->GetItemCount())
    lvwRows->EnsureVisible(Focused());
}

void VirtualTable::ScrollToTop(std::size_t lRow) {
  // Coming from the end, the row that is made visible is the top one.
  ScrollToEnd();
  if (Rows() > 0) lvwRows->EnsureVisible(static_cast<long>(std::min(lRow, Rows() - 1)));
}

void VirtualTable::ScrollToEnd() {
  if (Rows() > 0) lvwRows->EnsureVisible(static_cast<long>(Rows() - 1));
}
