// The numbered table of every text that the operator sees. The texts stand in resources/strings/*.def, one
// file for each area; a number is never reused. Some of them look wrong: see the comment there before
// "correcting" one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

enum StringId : std::int32_t {
#define STRING(name, number, text) name = (number),
#include "resources/strings/all.def"
#undef STRING
};

// The texts with which a result begins (resources/strings/results.def).
inline constexpr std::array aResultTexts{
#define STRING(name, number, text) name,
#include "resources/strings/results.def"
#undef STRING
};

// A text of the table: a view that holds as long as the program runs, and becomes a string where one is
// needed.
struct TableText : std::string_view {
  constexpr TableText() = default;
  constexpr TableText(const char* szText, std::size_t lLength) : std::string_view(szText, lLength) {}
  operator std::string() const { return std::string(data(), size()); }  // NOLINT(google-explicit-constructor)
};
std::string operator+(TableText szLeft, std::string_view szRight);
std::string operator+(std::string szLeft, TableText szRight);
std::string operator+(TableText szLeft, TableText szRight);

// The text of that number, UTF-8. An unknown number gives an empty text.
TableText LoadResString(std::int32_t lNumber);

// The text with %1 to %9 replaced by the values, in one go: what a value itself holds stays as it is. A place
// without a value stays too.
std::string FillResString(std::int32_t lNumber, std::initializer_list<std::string_view> aValues);
