#include "base/Utf8.h"

#include <algorithm>

namespace {

constexpr char32_t chReplacement = 0xFFFD;

unsigned Byte(std::string_view szBytes, std::size_t lAt) {
  return lAt < szBytes.size() ? static_cast<unsigned char>(szBytes[lAt]) : 0U;
}

std::size_t LengthBy(unsigned iFirst) {
  return iFirst < 0x80   ? 1
         : iFirst < 0xC2 ? 0
         : iFirst < 0xE0 ? 2
         : iFirst < 0xF0 ? 3
         : iFirst < 0xF5 ? 4
                         : 0;
}

}  // namespace

std::size_t Utf8::Decode(std::string_view szBytes, char32_t& chCharacter) {
  if (szBytes.empty()) return 0;
  const unsigned iFirst = Byte(szBytes, 0);
  const std::size_t lLength = LengthBy(iFirst);
  if (lLength == 0) return 0;
  char32_t chRead = lLength == 1 ? iFirst : iFirst & (0x7FU >> lLength);
  for (std::size_t i = 1; i < lLength; ++i) {
    if ((Byte(szBytes, i) & 0xC0U) != 0x80) return 0;
    chRead = chRead << 6 | (Byte(szBytes, i) & 0x3FU);
  }
  constexpr char32_t aSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool bSurrogate = chRead >= 0xD800 && chRead < 0xE000;
  if (chRead < aSmallest[lLength] || chRead > 0x10FFFF || bSurrogate) return 0;
  chCharacter = chRead;
  return lLength;
}

void Utf8::Append(std::string& szBytes, char32_t chCharacter) {
  const auto Add = [&](char32_t iByte) { szBytes += static_cast<char>(static_cast<unsigned char>(iByte)); };
  if (chCharacter < 0x80) {
    Add(chCharacter);
  } else if (chCharacter < 0x800) {
    Add(0xC0 | chCharacter >> 6);
  } else if (chCharacter < 0x10000) {
    Add(0xE0 | chCharacter >> 12);
  } else {
    Add(0xF0 | chCharacter >> 18);
  }
  if (chCharacter >= 0x10000) Add(0x80 | (chCharacter >> 12 & 0x3F));
  if (chCharacter >= 0x800) Add(0x80 | (chCharacter >> 6 & 0x3F));
  if (chCharacter >= 0x80) Add(0x80 | (chCharacter & 0x3F));
}

char32_t Utf8::NextClean(std::string_view szBytes, std::size_t lAt, std::size_t& lBytes) {
  char32_t chCharacter = 0;
  const std::size_t lLength = Decode(szBytes.substr(lAt), chCharacter);
  lBytes = std::max<std::size_t>(lLength, 1);
  const bool bNoCharacter = (chCharacter & 0xFFFE) == 0xFFFE;
  return lLength == 0 || IsControl(chCharacter) || bNoCharacter ? chReplacement : chCharacter;
}

std::string Utf8::Clean(std::string_view szBytes) {
  std::string szClean;
  szClean.reserve(szBytes.size());
  for (std::size_t lAt = 0, lBytes = 0; lAt < szBytes.size(); lAt += lBytes)
    Append(szClean, NextClean(szBytes, lAt, lBytes));
  return szClean;
}

std::string Utf8::FromLatin1WhereNeeded(std::string_view szBytes) {
  std::string szText;
  szText.reserve(szBytes.size());
  while (!szBytes.empty()) {
    char32_t chCharacter = Byte(szBytes, 0);
    const std::size_t lLength = std::max<std::size_t>(Decode(szBytes, chCharacter), 1);
    Append(szText, chCharacter);
    szBytes.remove_prefix(lLength);
  }
  return szText;
}

std::string_view Utf8::Shorten(std::string_view szBytes, std::size_t lMost) {
  if (szBytes.size() <= lMost) return szBytes;
  const auto lFurthestBack = lMost > 3 ? lMost - 3 : 0;
  while (lMost > lFurthestBack && (Byte(szBytes, lMost) & 0xC0U) == 0x80)
    --lMost;
  return szBytes.substr(0, lMost);
}

std::size_t Utf8::Width(std::string_view szText) {
  return static_cast<std::size_t>(std::ranges::count_if(
      szText, [](char chByte) { return (static_cast<unsigned char>(chByte) & 0xC0U) != 0x80; }));
}

std::string_view Utf8::First(std::string_view szText, std::size_t lMost) {
  std::size_t lAt = 0;
  for (; lAt < szText.size(); ++lAt)
    if ((Byte(szText, lAt) & 0xC0U) != 0x80 && lMost-- == 0) break;
  return szText.substr(0, lAt);
}

std::string Utf8::ShortenMiddle(std::string_view szText, std::size_t lMost) {
  constexpr std::string_view szCut = "...";
  const auto lWidth = Width(szText);
  if (lWidth <= lMost) return std::string(szText);
  const auto lTail = (lMost - szCut.size()) / 2, lHead = lMost - szCut.size() - lTail;
  const auto szTail = szText.substr(First(szText, lWidth - lTail).size());
  return std::string(First(szText, lHead)).append(szCut).append(szTail);
}
