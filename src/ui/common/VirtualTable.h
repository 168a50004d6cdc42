// VirtualTable: a list that asks for its texts when it draws them, so that a million rows cost nothing. When
// it is empty a hint stands in its place.
#pragma once

#include <wx/listctrl.h>
#include <wx/panel.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class wxMenu;
class wxStaticText;

class VirtualTable : public wxPanel {
 public:
  struct Column {
    std::int32_t lTitle;
    const char* szSample = nullptr;  // as wide as this text, at least
    int lShare = 0;                  // of what is left over; 0: no wider than the sample
    bool bRight = false;
  };
  enum class Style { Plain, Heading, Aside };
  // Positions of the lights in the list; none is -1.
  enum Light { lNone = -1, lGreen, lYellow, lRed, lGrey };

  VirtualTable(wxWindow* pParent, const std::vector<Column>& aColumnList);
  ~VirtualTable() override;
  VirtualTable(const VirtualTable&) = delete;
  VirtualTable& operator=(const VirtualTable&) = delete;
  // Other columns; their widths are chosen anew, and nothing is sorted by them yet. The same ones change
  // nothing.
  void SetColumns(const std::vector<Column>& aColumnList);

  // How the rows look; Cell answers UTF-8.
  std::function<std::string(std::size_t lRow, int iColumn)> Cell;
  std::function<int(std::size_t lRow, int iColumn)> LightOf;
  std::function<Style(std::size_t lRow)> StyleOf;
  // Enter or a double click.
  std::function<void(std::size_t lRow)> Activated;
  std::function<void()> Selected;
  // Puts commands into the menu that the menu key or the right button opens; they go to the window around.
  std::function<void(wxMenu& aMenu)> FillMenu;
  // A click on a header, or the menu, chose another order: once sorts up, once more down, a third time ends
  // it. Unset: headers do nothing.
  std::function<void()> SortChosen;
  int SortColumn() const { return iSortColumn; }  // -1: the table's own order
  bool SortDescending() const { return bSortDescending; }

  void SetRows(std::size_t lRows);
  std::size_t Rows() const { return static_cast<std::size_t>(lvwRows->GetItemCount()); }
  void ShowHint(const wxString& szText);  // while there are no rows

  long Focused() const { return lvwRows->GetFocusedItem(); }  // -1 none
  // Selects that row alone and scrolls to it; into the upper third where what follows it matters more than
  // what is before.
  enum class Place { Seen, UpperThird };
  void GoTo(std::size_t lRow, Place iPlace = Place::Seen);
  void SelectAll();
  void SelectNone();
  // The selected rows, or the one in focus where none is; cells parted by tabs, lines ended by "\n".
  std::string CopyText() const;

  // Where the view stands, for a refill that should not move it.
  bool AtEnd() const;
  std::size_t TopRow() const;
  void ScrollToTop(std::size_t lRow);
  void ScrollToEnd();

  wxListView* List() const { return lvwRows; }
  // Nothing happens while the hint is shown: a hidden list would swallow the keys.
  void TakeFocus() {
    if (lvwRows->IsShown()) lvwRows->SetFocus();
  }

  // Waits for room: while windows are being built they are tiny, and GTK complains about scroll bars.
  bool Layout() override;

 private:
  class RowList;
  wxString Title() const;            // of the tab that it stands under
  wxString Spoken(long lRow) const;  // what a screen reader says of a row
  void AppendColumns();
  void FitColumns();
  void KeepFocusSeen();
  // Shift with a key or a click. The lists' own anchors do not follow a row that was gone to by command.
  bool ExtendByKey(const wxKeyEvent& aEvent);
  void ExtendTo(long lRow);
  void ChooseSort(int iColumn);
  void SortBy(int iColumn, bool bDescending);  // -1: the own order
  void ShowMenu(const wxPoint& aWhere);        // in the list's window; the default: at the row in focus

  std::vector<Column> aColumns;
  bool bWidthsChosen = false;
  int iSortColumn = -1;
  bool bSortDescending = false;
  long lAnchor = -1;  // where a selection that is extended begins; -1 none yet
  bool bExtending = false;
  long lRowsSeen = 0;  // in the height that the list had
  wxListView* lvwRows;
  wxPanel* pixHint;
  wxStaticText* lblHint;
};
