#include "base/Utf16.h"

#include <cstdint>

namespace {

constexpr bool IsHigh(char32_t lUnit) {
  return lUnit >= 0xD800 && lUnit <= 0xDBFF;
}

constexpr bool IsLow(char32_t lUnit) {
  return lUnit >= 0xDC00 && lUnit <= 0xDFFF;
}

// The length of the UTF-8 character (RFC 3629) at the start of the text and its number; 0 where there is
// none.
std::size_t Character(std::string_view szBytes, char32_t& lNumber) {
  const auto Byte = [&](std::size_t i) { return static_cast<unsigned char>(szBytes[i]); };
  const char32_t lFirst = Byte(0);
  const std::size_t lLength = lFirst < 0x80       ? 1
                              : lFirst >> 5 == 6  ? 2
                              : lFirst >> 4 == 14 ? 3
                              : lFirst >> 3 == 30 ? 4
                                                  : 0;
  if (lLength == 0 || lLength > szBytes.size()) return 0;
  lNumber = lLength == 1 ? lFirst : lFirst & (0x7FU >> lLength);
  for (std::size_t i = 1; i < lLength; ++i) {
    if (Byte(i) >> 6 != 2) return 0;
    lNumber = lNumber << 6 | (Byte(i) & 0x3FU);
  }
  constexpr char32_t aSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool bSurrogate = IsHigh(lNumber) || IsLow(lNumber);
  return lNumber < aSmallest[lLength] || lNumber > 0x10FFFF || bSurrogate ? 0 : lLength;
}

void AppendCharacter(std::string& szBytes, char32_t lNumber) {
  const auto Add = [&](char32_t lByte) { szBytes += static_cast<char>(static_cast<unsigned char>(lByte)); };
  if (lNumber < 0x80) {
    Add(lNumber);
  } else if (lNumber < 0x800) {
    Add(0xC0 | lNumber >> 6);
  } else if (lNumber < 0x10000) {
    Add(0xE0 | lNumber >> 12);
  } else {
    Add(0xF0 | lNumber >> 18);
  }
  if (lNumber >= 0x10000) Add(0x80 | (lNumber >> 12 & 0x3F));
  if (lNumber >= 0x800) Add(0x80 | (lNumber >> 6 & 0x3F));
  if (lNumber >= 0x80) Add(0x80 | (lNumber & 0x3F));
}

}  // namespace

std::u16string Utf16::FromBytes(std::string_view szBytes) {
  std::u16string szText;
  while (!szBytes.empty()) {
    char32_t lNumber = 0;
    const auto lLength = Character(szBytes, lNumber);
    if (lLength == 0) {
      szText += static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(szBytes[0]));
    } else if (lNumber < 0x10000) {
      szText += static_cast<char16_t>(lNumber);
    } else {
      szText += static_cast<char16_t>(0xD800 + ((lNumber - 0x10000) >> 10));
      szText += static_cast<char16_t>(0xDC00 + (lNumber & 0x3FF));
    }
    szBytes.remove_prefix(lLength == 0 ? 1 : lLength);
  }
  return szText;
}

std::string Utf16::ToBytes(std::u16string_view szText) {
  std::string szBytes;
  for (std::size_t i = 0; i < szText.size(); ++i) {
    const char32_t lUnit = szText[i];
    if (IsHigh(lUnit) && i + 1 < szText.size() && IsLow(szText[i + 1])) {
      AppendCharacter(szBytes, 0x10000 + ((lUnit - 0xD800) << 10) + (szText[++i] - 0xDC00U));
    } else if (lUnit >= 0xDC80 && lUnit <= 0xDCFF) {
      szBytes += static_cast<char>(static_cast<unsigned char>(lUnit - 0xDC00));
    } else {
      AppendCharacter(szBytes, lUnit);
    }
  }
  return szBytes;
}

std::string Utf16::LittleEndian(std::u16string_view szText) {
  std::string szBytes;
  for (const char16_t lUnit : szText) {
    szBytes += static_cast<char>(static_cast<unsigned char>(lUnit & 0xFF));
    szBytes += static_cast<char>(static_cast<unsigned char>(lUnit >> 8));
  }
  return szBytes;
}

std::u16string Utf16::FromLittleEndian(std::string_view szBytes, bool bSwapped) {
  std::u16string szText;
  for (std::size_t i = 0; i + 1 < szBytes.size(); i += 2) {
    const auto lFirst = static_cast<unsigned char>(szBytes[i]);
    const auto lSecond = static_cast<unsigned char>(szBytes[i + 1]);
    szText += static_cast<char16_t>(bSwapped ? lFirst << 8 | lSecond : lSecond << 8 | lFirst);
  }
  return szText;
}
