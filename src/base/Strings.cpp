#include "base/Strings.h"

#include <algorithm>
#include <array>

namespace {

struct NumberedText {
  std::int32_t lNumber;
  TableText szText;
};

constexpr auto aTexts = [] {
  std::array aTable{
#define STRING(name, number, text) NumberedText{number, TableText(text, sizeof(text) - 1)},
#include "resources/strings/all.def"
#undef STRING
  };
  std::ranges::sort(aTable, {}, &NumberedText::lNumber);
  return aTable;
}();
static_assert(std::ranges::adjacent_find(aTexts, {}, &NumberedText::lNumber) == aTexts.end(),
              "a number is given twice");

}  // namespace

TableText LoadResString(std::int32_t lNumber) {
  const auto aFound = std::ranges::lower_bound(aTexts, lNumber, {}, &NumberedText::lNumber);
  return aFound != aTexts.end() && aFound->lNumber == lNumber ? aFound->szText : TableText();
}

std::string FillResString(std::int32_t lNumber, std::initializer_list<std::string_view> aValues) {
  const std::string_view szPattern = LoadResString(lNumber);
  std::string szFilled;
  for (std::size_t i = 0; i < szPattern.size(); ++i) {
    const bool bPlace =
        szPattern[i] == '%' && i + 1 < szPattern.size() && szPattern[i + 1] >= '1' && szPattern[i + 1] <= '9';
    const auto lIndex = bPlace ? static_cast<std::size_t>(szPattern[i + 1] - '1') : aValues.size();
    if (lIndex < aValues.size()) {
      szFilled += aValues.begin()[lIndex];
      ++i;
    } else {
      szFilled += szPattern[i];
    }
  }
  return szFilled;
}

std::string operator+(TableText szLeft, std::string_view szRight) {
  return std::string(szLeft.data(), szLeft.size()).append(szRight);
}

std::string operator+(std::string szLeft, TableText szRight) {
  szLeft.append(szRight.data(), szRight.size());
  return szLeft;
}

std::string operator+(TableText szLeft, TableText szRight) {
  return szLeft + std::string_view(szRight);
}
