#include "persistence/RegFileParser.h"

#include <algorithm>
#include <charconv>

#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf16.h"
#include "persistence/ProductKeys.h"
#include "platform/Registry.h"

namespace {

using RegFileParser::Change;

constexpr std::size_t lLongestKeyName = 255;
constexpr std::size_t lLongestValueName = 16383;

// The file's text as 8-bit text, whatever form it came in.
std::string Decoded(const std::string& szBytes) {
  if (szBytes.starts_with("\xFF\xFE")) return Utf16::ToBytes(Utf16::FromLittleEndian(szBytes.substr(2)));
  if (szBytes.starts_with("\xFE\xFF"))
    return Utf16::ToBytes(Utf16::FromLittleEndian(szBytes.substr(2), true));
  return szBytes.starts_with("\xEF\xBB\xBF") ? szBytes.substr(3) : szBytes;
}

void SkipBlanks(std::string_view& szRest) {
  szRest.remove_prefix(std::min(szRest.find_first_not_of(" \t"), szRest.size()));
}

bool OnlyBlanks(std::string_view szRest) {
  return szRest.find_first_not_of(" \t") == std::string_view::npos;
}

// Takes a text in quotes, in which "\" stands before a quote or itself.
bool TakeQuoted(std::string_view& szRest, std::string& szText) {
  if (!szRest.starts_with('"')) return false;
  for (std::size_t i = 1; i < szRest.size(); ++i) {
    if (szRest[i] == '"') {
      szRest.remove_prefix(i + 1);
      return true;
    }
    if (szRest[i] == '\\' && ++i == szRest.size()) return false;
    szText += szRest[i];
  }
  return false;
}

bool TakeHexNumber(std::string_view& szRest, std::size_t lMostDigits, std::uint32_t& lNumber) {
  const auto* const pEnd = szRest.data() + std::min(lMostDigits, szRest.size());
  const auto aRead = std::from_chars(szRest.data(), pEnd, lNumber, 16);
  if (aRead.ec != std::errc{}) return false;
  szRest.remove_prefix(static_cast<std::size_t>(aRead.ptr - szRest.data()));
  return true;
}

// "01,02,ff"; nothing at all is no byte. The registry editor leaves a comma before a continuation.
bool TakeHexBytes(std::string_view szRest, std::string& szData) {
  for (SkipBlanks(szRest); !szRest.empty(); SkipBlanks(szRest)) {
    std::uint32_t lByte = 0;
    if (!TakeHexNumber(szRest, 2, lByte)) return false;
    szData += static_cast<char>(static_cast<unsigned char>(lByte));
    SkipBlanks(szRest);
    if (szRest.empty()) break;
    if (!szRest.starts_with(',')) return false;
    szRest.remove_prefix(1);
  }
  return true;
}

bool TakeData(std::string_view szRest, Change& aChange) {
  std::uint32_t lNumber = 0;
  if (szRest.starts_with('"')) {
    aChange.lType = Registry::REG_SZ;
    if (!TakeQuoted(szRest, aChange.szData)) return false;
    aChange.szData += '\0';
    return OnlyBlanks(szRest);
  }
  if (Text::EqualNoCase(szRest.substr(0, 6), "dword:")) {
    szRest.remove_prefix(6);
    SkipBlanks(szRest);
    aChange.lType = Registry::REG_DWORD;
    if (!TakeHexNumber(szRest, 8, lNumber)) return false;
    for (int lShift = 0; lShift < 32; lShift += 8)
      aChange.szData += static_cast<char>(static_cast<unsigned char>(lNumber >> lShift & 0xFF));
    return OnlyBlanks(szRest);
  }
  if (!Text::EqualNoCase(szRest.substr(0, 3), "hex")) return false;
  szRest.remove_prefix(3);
  aChange.lType = Registry::REG_BINARY;
  if (szRest.starts_with('(')) {
    szRest.remove_prefix(1);
    if (!TakeHexNumber(szRest, 8, aChange.lType) || !szRest.starts_with(')')) return false;
    szRest.remove_prefix(1);
  }
  if (!szRest.starts_with(':') || !TakeHexBytes(szRest.substr(1), aChange.szData)) return false;
  if (!RegFileParser::IsTextType(aChange.lType)) return true;
  if (aChange.szData.size() % 2 != 0) return false;
  aChange.szData = Utf16::ToBytes(Utf16::FromLittleEndian(aChange.szData));
  return true;
}

// What a line is refused for, as the number of its text; 0 when it is fine.
std::int32_t ReadKeyLine(std::string_view szLine, Change& aChange) {
  const auto lEnd = szLine.rfind(']');
  if (lEnd == std::string_view::npos || !OnlyBlanks(szLine.substr(lEnd + 1))) return IDS_REGFILE_BAD_KEY;
  auto szPath = szLine.substr(1, lEnd - 1);
  aChange.iKind = szPath.starts_with('-') ? Change::Kind::DeleteKey : Change::Kind::MakeKey;
  if (szPath.starts_with('-')) szPath.remove_prefix(1);
  const auto szBase = std::string("HKEY_LOCAL_MACHINE\\") + ProductKeys::szBase;
  if (!Text::EqualNoCase(szPath.substr(0, szBase.size()), szBase) ||
      (szPath.size() > szBase.size() && szPath[szBase.size()] != '\\')) {
    return IDS_REGFILE_FOREIGN_KEY;
  }
  for (std::size_t lStart = 0; lStart <= szPath.size();) {
    const auto lNext = std::min(szPath.find('\\', lStart), szPath.size());
    if (lNext == lStart || lNext - lStart > lLongestKeyName) return IDS_REGFILE_BAD_KEY;
    lStart = lNext + 1;
  }
  aChange.szPath = szPath.substr(szPath.find('\\') + 1);
  return aChange.szPath.find('\0') == std::string::npos ? 0 : IDS_REGFILE_BAD_KEY;
}

std::int32_t ReadValueLine(std::string_view szLine, Change& aChange) {
  if (szLine.starts_with('@')) {
    szLine.remove_prefix(1);
  } else if (!TakeQuoted(szLine, aChange.szName)) {
    return IDS_REGFILE_BAD_LINE;
  }
  SkipBlanks(szLine);
  if (!szLine.starts_with('=') || aChange.szName.size() > lLongestValueName ||
      aChange.szName.find('\0') != std::string::npos) {
    return IDS_REGFILE_BAD_LINE;
  }
  szLine.remove_prefix(1);
  SkipBlanks(szLine);
  aChange.iKind = szLine.starts_with('-') ? Change::Kind::DeleteValue : Change::Kind::SetValue;
  if (aChange.iKind == Change::Kind::DeleteValue)
    return OnlyBlanks(szLine.substr(1)) ? 0 : IDS_REGFILE_BAD_DATA;
  return TakeData(szLine, aChange) ? 0 : IDS_REGFILE_BAD_DATA;
}

// The text's lines; a line that ends in "\" goes on in the next, as long hexadecimal data does. lLine is the
// number of the last one taken.
class Lines {
 public:
  explicit Lines(std::string_view szAll) : szRest(szAll) {}

  bool Next(std::string& szLine) {
    if (szRest.empty()) return false;
    szLine.clear();
    do {
      if (szLine.ends_with('\\')) szLine.pop_back();
      const auto lEnd = std::min(szRest.find('\n'), szRest.size());
      szLine += szRest.substr(0, lEnd);
      szRest.remove_prefix(std::min(lEnd + 1, szRest.size()));
      while (szLine.ends_with('\r'))
        szLine.pop_back();
      ++lLine;
    } while (szLine.ends_with('\\') && !szRest.empty() && IsHex(szLine));
    return true;
  }

  std::int32_t lLine = 0;

 private:
  // A key or a text may end in "\" too.
  static bool IsHex(const std::string& szLine) {
    return !szLine.starts_with('[') && szLine.find("=hex") != std::string::npos;
  }
  std::string_view szRest;
};

std::string LineError(std::int32_t lLine, std::int32_t lReason) {
  return FillResString(IDS_REGFILE_LINE, {std::to_string(lLine), LoadResString(lReason)});
}

}  // namespace

bool RegFileParser::IsTextType(std::uint32_t lType) {
  return lType == 1 || lType == 2 || lType == 7;
}

bool RegFileParser::Parse(const std::string& szBytes, std::vector<Change>& aChanges, std::string& szError) {
  const auto szAll = Decoded(szBytes);
  Lines aLines(szAll);
  std::string szLine;
  if (!aLines.Next(szLine) || Text::Trim(szLine) != szHeader) {
    szError = LoadResString(IDS_REGFILE_NO_HEADER);
    return false;
  }
  Change aKey;
  bool bHasKey = false;
  while (aLines.Next(szLine)) {
    std::string_view szRest = szLine;
    SkipBlanks(szRest);
    if (szRest.empty() || szRest.starts_with(';')) continue;
    std::int32_t lReason = 0;
    if (szRest.starts_with('[')) {
      lReason = ReadKeyLine(szRest, aKey);
      bHasKey = aKey.iKind == Change::Kind::MakeKey;
      aChanges.push_back(aKey);
    } else {
      Change aValue;
      aValue.szPath = aKey.szPath;
      lReason = bHasKey ? ReadValueLine(szRest, aValue) : std::int32_t{IDS_REGFILE_NO_KEY};
      aChanges.push_back(std::move(aValue));
    }
    if (lReason != 0) {
      szError = LineError(aLines.lLine, lReason);
      return false;
    }
  }
  return true;
}
