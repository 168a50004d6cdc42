// LogGrid: a table of what a history says, for terminal, page, window and spreadsheet alike: which columns
// there are, what stands in a cell, and what comes before what.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/Strings.h"

class LogGrid {
 public:
  struct Column {
    StringId iTitle;
    const char* szSample = nullptr;  // a text that is as wide as what commonly stands there
    bool bNumber = false;            // these come behind the texts
    int lShare = 0;                  // of the width that is left over
    int lSpare = 0;  // where room is short the column with the lowest number goes first; 0: none
  };

  virtual ~LogGrid() = default;
  virtual const std::vector<Column>& Columns() const = 0;
  virtual std::size_t Rows() const = 0;
  // Bytes as logged where they come from the log.
  virtual std::string Cell(std::size_t lRow, std::size_t lColumn) const = 0;
  // What a column of numbers is sorted by; the others are by their texts.
  virtual double Key(std::size_t lRow, std::size_t lColumn) const = 0;
  // A row that one would want to see even where only the first ones are shown.
  virtual bool Special(std::size_t /*lRow*/) const { return false; }
  // The cell that names the row is a site; else a moment.
  virtual bool OfSites() const { return true; }

  // Sorting from the least to the most.
  bool Before(std::size_t lLeft, std::size_t lRight, std::size_t lColumn) const;
  // For the terminal; empty without rows. lColumns: as in LogTextTable.
  std::string Text(std::size_t lColumns) const;
  // For a spreadsheet, as LogCsv writes.
  std::string Csv() const;
};
