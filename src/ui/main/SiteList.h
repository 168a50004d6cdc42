// SiteList: the report list of the main window. It owns its rows' texts and lights and draws them on demand,
// so that a thousand rows fill at once and no cell text is ever cut. Rows are found by slot, never by
// position: filters and sorting move them. Kept sorted by the text of one column, without regard to letter
// case.
#pragma once

#include <wx/listctrl.h>

#include <cstdint>
#include <string>
#include <vector>

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
  void EnsureRowVisible(std::int32_t lSlot);

  // A click on the header of a column (1 to 5).
  void ClickHeader(int iColumn);
  int SortColumn() const { return iSortColumn; }
  bool Ascending() const { return bAscending; }

  // What an empty list says in its place; empty for nothing.
  void ShowHint(const wxString& szText);
  const wxString& Hint() const { return szHint; }

  // Text of a cell, columns 1 to 5.
  static std::string CellText(const Row& aRow, int iColumn);

 protected:
  wxString OnGetItemText(long lItem, long lColumn) const override;
  int OnGetItemImage(long lItem) const override;
  int OnGetItemColumnImage(long lItem, long lColumn) const override;

 private:
  std::int32_t PositionOf(std::int32_t lSlot) const;
  Row* Find(std::int32_t lSlot);
  void Sort();
  void PlaceHint();
  void ShowWholeText(const wxPoint& aAt);

  std::vector<Row> aRows;                // in the order shown
  std::vector<std::int32_t> aPositions;  // by slot; -1 for no row
  int iSortColumn = 1;
  bool bAscending = true;
  wxPanel* pixHint;
  wxStaticText* lblHint;
  wxString szHint;
};
