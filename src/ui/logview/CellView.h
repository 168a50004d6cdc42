// CellView: rows of cells as a picture: a name, then a place for each hour or day. What a cell holds differs
// by height, hatching and sign, not by colour alone. What the pointer is on is told in words; with the arrow
// keys one goes from cell to cell.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "ui/logview/PaintedView.h"

class CellView : public PaintedView {
 public:
  // Heights are parts of the cell's, 0 to 1.
  struct Cell {
    double dSolid = 0;    // from the bottom
    double dHatched = 0;  // above it, up to there
    double dLine = 0;     // 0: none
    std::string szSign;   // in front of the bar
  };
  struct Cells {
    std::size_t lRows = 0, lColumns = 0;
    std::function<std::string(std::size_t lRow)> Name;
    std::function<Cell(std::size_t lRow, std::size_t lColumn)> At;
    std::function<std::string(std::size_t lRow, std::size_t lColumn)> Words;
    std::function<std::string(std::size_t lColumn)> Head;  // below the cells, where there is room
  };

  CellView(wxWindow* pParent, const wxString& szName);

  void ShowCells(Cells aNew);
  // A click on a cell, or Enter.
  std::function<void(std::size_t lRow, std::size_t lColumn)> Chosen;
  wxString TipAt(const wxPoint& aPoint) const override;
  int FullHeight() const;

 private:
  void OnPaint(wxDC& aDC) override;
  void OnClick(const wxPoint& aPoint) override;
  void PaintRow(wxDC& aDC, std::size_t lRow);
  void PaintCell(wxDC& aDC, const wxRect& aArea, const Cell& aCell) const;
  void PaintHeads(wxDC& aDC, int lTop) const;
  bool OnKey(const wxKeyEvent& aEvent) override;
  void MoveTo(std::size_t lRow, std::size_t lColumn);
  void Measure() override;
  bool Empty() const { return aCells.lRows == 0 || aCells.lColumns == 0; }
  bool At(const wxPoint& aPoint, std::size_t& lRow, std::size_t& lColumn) const;
  wxRect Area(std::size_t lRow, std::size_t lColumn) const;  // in the window
  int Footer() const { return lLine + 2 * lGap; }

  Cells aCells;
  std::size_t lRowAt = 0, lColumnAt = 0;
  int lNames = 100, lWidth = 400;
};
