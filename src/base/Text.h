// Text: the few operations on 8-bit text that every floor needs, free of the locale.
// Text is bytes, by intent UTF-8; letter case means the ASCII letters only, so lengths and positions
// never change. "Blank" is the byte 0x20 and nothing else.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace Text {

std::string UpperCase(std::string_view szText);
std::string LowerCase(std::string_view szText);
bool EqualNoCase(std::string_view szLeft, std::string_view szRight);

// Cuts blanks from both ends.
std::string Trim(std::string_view szText);
bool IsBlank(std::string_view szText);

std::string Replace(std::string_view szText, std::string_view szFrom, std::string_view szTo);

bool EndsWithNoCase(std::string_view szText, std::string_view szEnd);

// True for one or more ASCII digits and nothing else.
bool IsDigits(std::string_view szText);

// The decimal number at the start of the text: blanks, an optional sign, digits; 0 where there is none.
// Values beyond 32 bits saturate.
std::int32_t LeadingNumber(std::string_view szText);

// A number brought into the range of a narrower field. Wrapping would turn 70000 into 4464.
template <typename Field>
constexpr Field Saturate(std::int64_t lNumber) {
  constexpr std::int64_t lLowest = std::numeric_limits<Field>::lowest();
  constexpr std::int64_t lHighest = std::numeric_limits<Field>::max();
  return static_cast<Field>(lNumber < lLowest ? lLowest : lNumber > lHighest ? lHighest : lNumber);
}

// The texts, with that between each two.
std::string Joined(const std::vector<std::string>& aTexts, std::string_view szBetween);

// The text with every control character replaced by "?", fit for a terminal or one line of a log.
std::string Printable(std::string_view szText);

}  // namespace Text
