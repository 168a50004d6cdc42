#include "base/Text.h"

#include <algorithm>

namespace Text {

namespace {

constexpr char Upper(char chByte) {
  return chByte >= 'a' && chByte <= 'z' ? static_cast<char>(chByte - 'a' + 'A') : chByte;
}

constexpr char Lower(char chByte) {
  return chByte >= 'A' && chByte <= 'Z' ? static_cast<char>(chByte - 'A' + 'a') : chByte;
}

constexpr bool IsDigit(char chByte) {
  return chByte >= '0' && chByte <= '9';
}

}  // namespace

std::string UpperCase(std::string_view szText) {
  std::string szResult(szText);
  std::transform(szResult.begin(), szResult.end(), szResult.begin(), Upper);
  return szResult;
}

std::string LowerCase(std::string_view szText) {
  std::string szResult(szText);
  std::transform(szResult.begin(), szResult.end(), szResult.begin(), Lower);
  return szResult;
}

bool EqualNoCase(std::string_view szLeft, std::string_view szRight) {
  return std::equal(szLeft.begin(), szLeft.end(), szRight.begin(), szRight.end(),
                    [](char chLeft, char chRight) { return Lower(chLeft) == Lower(chRight); });
}

std::string Trim(std::string_view szText) {
  const auto lFirst = szText.find_first_not_of(' ');
  if (lFirst == std::string_view::npos) return {};
  return std::string(szText.substr(lFirst, szText.find_last_not_of(' ') - lFirst + 1));
}

bool IsBlank(std::string_view szText) {
  return szText.find_first_not_of(' ') == std::string_view::npos;
}

std::string Replace(std::string_view szText, std::string_view szFrom, std::string_view szTo) {
  if (szFrom.empty()) return std::string(szText);
  std::string szResult;
  std::size_t lStart = 0;
  for (auto lHit = szText.find(szFrom); lHit != std::string_view::npos; lHit = szText.find(szFrom, lStart)) {
    szResult.append(szText, lStart, lHit - lStart).append(szTo);
    lStart = lHit + szFrom.size();
  }
  return szResult.append(szText, lStart);
}

bool EndsWithNoCase(std::string_view szText, std::string_view szEnd) {
  return szText.size() >= szEnd.size() && EqualNoCase(szText.substr(szText.size() - szEnd.size()), szEnd);
}

bool IsDigits(std::string_view szText) {
  return !szText.empty() && std::all_of(szText.begin(), szText.end(), IsDigit);
}

std::int32_t LeadingNumber(std::string_view szText) {
  auto lAt = szText.find_first_not_of(' ');
  if (lAt == std::string_view::npos) return 0;
  const bool bNegative = szText[lAt] == '-';
  if (bNegative || szText[lAt] == '+') ++lAt;
  std::int64_t lNumber = 0;
  for (; lAt < szText.size() && IsDigit(szText[lAt]); ++lAt) {
    lNumber = std::min<std::int64_t>(lNumber * 10 + (szText[lAt] - '0'), std::int64_t{1} << 32);
  }
  return Saturate<std::int32_t>(bNegative ? -lNumber : lNumber);
}

std::string Joined(const std::vector<std::string>& aTexts, std::string_view szBetween) {
  std::string szAll;
  for (const auto& szText : aTexts)
    szAll.append(szAll.empty() ? std::string_view() : szBetween).append(szText);
  return szAll;
}

std::string Printable(std::string_view szText) {
  const bool bAllPlain = std::none_of(szText.begin(), szText.end(), [](char ch) {
    return (ch >= 0 && ch < 0x20) || ch == 0x7F || ch == '\xC2';
  });
  if (bAllPlain) return std::string(szText);  // as nearly all texts are
  std::string szResult;
  for (std::size_t lAt = 0; lAt < szText.size(); ++lAt) {
    const auto chByte = static_cast<unsigned char>(szText[lAt]);
    const auto chNext = lAt + 1 < szText.size() ? static_cast<unsigned char>(szText[lAt + 1]) : 0U;
    if (chByte == 0xC2 && chNext >= 0x80 && chNext <= 0x9F) {
      // U+0080 to U+009F: a UTF-8 terminal obeys these as it does an escape sequence.
      szResult += '?';
      ++lAt;
    } else {
      szResult += chByte < 0x20 || chByte == 0x7F ? '?' : szText[lAt];
    }
  }
  return szResult;
}

}  // namespace Text
