// LogTextTable: rows of texts as a table for the terminal.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace LogTextTable {

using Row = std::vector<std::string>;

// Lines ended by "\n", the columns from lNumbers on to the right; the first row is the heads. The first
// column is names, bytes as logged: they are cut in the middle until the table is no wider than lColumns (0:
// any width), then the columns of aSpare are left out one after the other, until it fits or nothing more can
// go.
std::string Fit(const std::vector<Row>& aWhole, std::vector<std::size_t> aSpare, std::size_t lNumbers,
                std::size_t lColumns);

}  // namespace LogTextTable
