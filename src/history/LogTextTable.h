// LogTextTable: rows of texts as a table for the terminal, and what stands above and below it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace LogTextTable {

using Row = std::vector<std::string>;

// Lines ended by "\n", the columns from lNumbers on to the right; the first row is the heads. The first
// column is names, bytes as logged. Until the table is no wider than lColumns (0: any width), long texts of
// other columns are broken into lines, names are cut in the middle, then the columns of aSpare are left out
// one after the other; where nothing more can go, texts get narrower still.
std::string Fit(const std::vector<Row>& aWhole, std::vector<std::size_t> aSpare, std::size_t lNumbers,
                std::size_t lColumns);
// A text outside of the table, broken between words (lColumns 0: not at all), each line ended by "\n" and the
// second and later ones lIndent characters further in. A longer word than a line stays whole.
std::string Lines(std::string_view szText, std::size_t lColumns, std::size_t lIndent = 0);

}  // namespace LogTextTable
