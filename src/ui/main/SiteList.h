// SiteList: the report list of the main window. It owns its rows' texts and lights and draws them on demand,
// so that a thousand rows fill at once and texts of any length stay whole. Rows are found by slot, never by
// position: filters and sorting move them. Kept sorted by the text of one column, without regard to letter
// case.
#pragma once

#include <wx/listctrl.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/DateTime.h"

class wxPanel;
class wxStaticText;

class SiteList : public wxListView {
 public:
  explicit SiteList(wxWindow* pParent);

  struct Row {
    std::int32_t lSlot = 0;
    bool bChecked = false;
    std::string szAddress;  // with "http://"
    std::string szIP;
    std::int16_t iLight = 0;  // 1 Green, 2 Yellow, 3 Red; 0 none
    std::string szLightText;
    std::string szRemark;
  };

  // Replaces all rows. Nothing is selected afterwards.
  void Fill(std::vector<Row> aNew);
  // Selects the slot's row and scrolls to it; a slot without a row selects nothing.
  void SelectSlot(std::int32_t lSlot);
  std::int32_t SelectedSlot() const;  // 0 for none
  std::int32_t RowCount() const { return static_cast<std::int32_t>(aRows.size()); }
  const Row* RowAt(std::int32_t lPosition) const;  // from 0; nullptr beyond the end
  const Row* RowOf(std::int32_t lSlot) const;      // nullptr when the slot has no row

  // In place; a slot without a row is passed over.
  void ShowLight(std::int32_t lSlot, std::int16_t iIcon);
  void ShowLightText(std::int32_t lSlot, const std::string& szText);
  void ShowRemark(std::int32_t lSlot, const std::string& szText);
  void ClearRemarks();
  // For a pass, which goes through the rows: does nothing while the operator reads (has used keys, wheel or
  // mouse here in the last ten seconds).
  void EnsureRowVisible(std::int32_t lSlot);
  // The place in the list that the operator had before the pass moved it.
  void GiveBackPlace();

  // A click on the header of a column (1 to 5).
  void ClickHeader(int iColumn);
  int SortColumn() const { return iSortColumn; }
  bool Ascending() const { return bAscending; }

  // What an empty list says in its place; empty for nothing.
  void ShowHint(const wxString& szText);
  const wxString& Hint() const { return szHint; }

  // Text of a cell, columns 1 to 5.
  static std::string CellText(const Row& aRow, int iColumn);
  // The whole row in words, with its number.
  wxString Tip(const Row& aRow) const;
  // What a screen reader says of the row at that position, from 0: all that it shows, in one line.
  wxString Spoken(long lRow) const;

  // What a cell shows at its column's present width; positions and columns from 0.
  wxString OnGetItemText(long lItem, long lColumn) const override;

 protected:
  int OnGetItemImage(long lItem) const override;
  int OnGetItemColumnImage(long lItem, long lColumn) const override;

 private:
  std::int32_t PositionOf(std::int32_t lSlot) const;
  Row* Find(std::int32_t lSlot);
  void Sort();
  void PlaceHint();
  void Touched();
  void TypeAhead(wxKeyEvent& aEvent);
  // The first row from there on, and round, whose address begins with the text; "www." in front does not
  // count.
  std::int32_t RowFrom(std::int32_t lPosition, const std::string& szBegin) const;
  void ShowWholeRow(const wxPoint& aAt);

  std::vector<Row> aRows;                // in the order shown
  std::vector<std::int32_t> aPositions;  // by slot; -1 for no row
  int iSortColumn = 1;
  bool bAscending = true;
  int lImageSide = 0;      // pixels
  DateTime dtTouched = 0;  // by the operator; steady
  DateTime dtTyped = 0;    // steady
  std::string szTyped;     // the beginning of an address
  // The top row that the operator had; -1: the list stands where the operator left it.
  long lOperatorsTop = -1;
  wxPanel* pixHint;
  wxStaticText* lblHint;
  wxString szHint;
};
