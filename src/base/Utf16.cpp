#include "base/Utf16.h"

#include "base/Utf8.h"

namespace {

constexpr bool IsHigh(char32_t lUnit) {
  return lUnit >= 0xD800 && lUnit <= 0xDBFF;
}

constexpr bool IsLow(char32_t lUnit) {
  return lUnit >= 0xDC00 && lUnit <= 0xDFFF;
}

}  // namespace

std::u16string Utf16::FromBytes(std::string_view szBytes) {
  std::u16string szText;
  while (!szBytes.empty()) {
    char32_t lNumber = 0;
    const auto lLength = Utf8::Decode(szBytes, lNumber);
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
      Utf8::Append(szBytes, 0x10000 + ((lUnit - 0xD800) << 10) + (szText[++i] - 0xDC00U));
    } else if (lUnit >= 0xDC80 && lUnit <= 0xDCFF) {
      szBytes += static_cast<char>(static_cast<unsigned char>(lUnit - 0xDC00));
    } else {
      Utf8::Append(szBytes, lUnit);
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
