#include "persistence/RegFile.h"

#include <array>
#include <cstring>
#include <vector>

#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf16.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegFileParser.h"
#include "persistence/modAddress.h"
#include "platform/Registry.h"

using namespace Registry;

namespace {

constexpr std::uint32_t lFullAccess = 0x3F;
constexpr std::size_t lLineWidth = 76;  // where the registry editor breaks hexadecimal lines

struct StoredValue {
  std::string szName;
  std::uint32_t lType = 0;
  std::string szData;
};

// A key that is closed when it goes.
class HeldKey {
 public:
  explicit HeldKey(const std::string& szPath) {
    lCode = RegOpenKeyExA(HKEY_LOCAL_MACHINE, szPath.c_str(), lFullAccess, hKey);
  }
  ~HeldKey() {
    if (hKey != 0) RegCloseKey(hKey);
  }
  HeldKey(const HeldKey&) = delete;
  HeldKey& operator=(const HeldKey&) = delete;
  Key hKey = 0;
  std::int32_t lCode = 0;
};

std::int32_t ListSubkeys(Key hKey, std::vector<std::string>& aNames) {
  std::array<char, 1024> aName{};
  std::int32_t lCode = lSuccess;
  for (std::uint32_t i = 0; lCode == lSuccess; ++i) {
    lCode = RegEnumKeyA(hKey, i, aName.data(), aName.size());
    if (lCode == lSuccess) aNames.emplace_back(aName.data());
  }
  return lCode == lNoMoreItems ? lSuccess : lCode;
}

std::int32_t ListValues(Key hKey, std::vector<StoredValue>& aValues) {
  std::string szName(16384, '\0');
  for (std::uint32_t i = 0;; ++i) {
    StoredValue aValue;
    auto lNameSize = static_cast<std::uint32_t>(szName.size());
    std::uint32_t lSize = 0;
    auto lCode = RegEnumValueA(hKey, i, szName.data(), &lNameSize, &aValue.lType, nullptr, &lSize);
    if (lCode == lNoMoreItems) return lSuccess;
    if (lCode != lSuccess) return lCode;
    aValue.szName.assign(szName, 0, lNameSize);
    aValue.szData.resize(lSize);
    lCode = RegQueryValueExA(hKey, aValue.szName.c_str(), &aValue.lType, aValue.szData.data(), &lSize);
    if (lCode != lSuccess) return lCode;
    aValue.szData.resize(lSize);
    aValues.push_back(std::move(aValue));
  }
}

std::string Quoted(std::string_view szText) {
  return "\"" + Text::Replace(Text::Replace(szText, "\\", "\\\\"), "\"", "\\\"") + "\"";
}

std::string HexByte(unsigned char chByte) {
  constexpr char szDigits[] = "0123456789abcdef";
  return {szDigits[chByte >> 4], szDigits[chByte & 15]};
}

std::string Hexadecimal(std::string szLine, std::string_view szData) {
  std::string szText;
  for (std::size_t i = 0; i < szData.size(); ++i) {
    if (szLine.size() > lLineWidth) {
      szText += szLine + "\\\r\n";
      szLine = "  ";
    }
    szLine += HexByte(static_cast<unsigned char>(szData[i])) + (i + 1 < szData.size() ? "," : "");
  }
  return szText + szLine;
}

// Text that one quoted line can hold: ended by its only NUL, without line ends.
bool IsPlainText(const std::string& szData) {
  return !szData.empty() && szData.find('\0') == szData.size() - 1 &&
         szData.find_first_of("\r\n") == std::string::npos;
}

std::string ValueLine(const StoredValue& aValue) {
  const auto szStart = (aValue.szName.empty() ? "@" : Quoted(aValue.szName)) + "=";
  if (aValue.lType == REG_SZ && IsPlainText(aValue.szData))
    return szStart + Quoted({aValue.szData.data(), aValue.szData.size() - 1});
  if (aValue.lType == REG_DWORD && aValue.szData.size() == 4) {
    auto szLine = szStart + "dword:";
    for (std::size_t i = 4; i-- > 0;)
      szLine += HexByte(static_cast<unsigned char>(aValue.szData[i]));
    return szLine;
  }
  if (aValue.lType == REG_BINARY) return Hexadecimal(szStart + "hex:", aValue.szData);
  std::array<char, 16> aType{};
  std::snprintf(aType.data(), aType.size(), "hex(%x):", aValue.lType);
  const auto szData = RegFileParser::IsTextType(aValue.lType)
                          ? Utf16::LittleEndian(Utf16::FromBytes(aValue.szData))
                          : aValue.szData;
  return Hexadecimal(szStart + aType.data(), szData);
}

std::string Below(std::string szPath, const std::string& szName) {
  return szPath.append("\\").append(szName);
}

bool ComposeKey(const std::string& szPath, std::string& szText) {
  std::vector<StoredValue> aValues;
  std::vector<std::string> aSubkeys;
  {
    const HeldKey aKey(szPath);
    if (aKey.lCode == lNotFound) return true;
    if (ListValues(aKey.hKey, aValues) != lSuccess || ListSubkeys(aKey.hKey, aSubkeys) != lSuccess)
      return false;
  }
  szText += "[HKEY_LOCAL_MACHINE\\" + szPath + "]\r\n";
  for (const auto& aValue : aValues)
    szText += ValueLine(aValue) + "\r\n";
  szText += "\r\n";
  for (const auto& szName : aSubkeys) {
    if (!ComposeKey(Below(szPath, szName), szText)) return false;
  }
  return true;
}

std::int32_t DeleteTree(const std::string& szPath) {
  std::vector<std::string> aSubkeys;
  {
    const HeldKey aKey(szPath);
    if (aKey.lCode == lNotFound) return lSuccess;
    const auto lCode = ListSubkeys(aKey.hKey, aSubkeys);
    if (lCode != lSuccess) return lCode;
  }
  for (const auto& szName : aSubkeys) {
    const auto lCode = DeleteTree(Below(szPath, szName));
    if (lCode != lSuccess) return lCode;
  }
  return RegDeleteKeyA(HKEY_LOCAL_MACHINE, szPath.c_str());
}

// The product's own key is emptied and stays: on Windows it carries the right of every user to write, and a
// user who has that right may not make the key again.
std::int32_t EmptyBase() {
  std::vector<StoredValue> aValues;
  std::vector<std::string> aSubkeys;
  const HeldKey aBase(ProductKeys::szBase);
  if (aBase.lCode != lSuccess) return aBase.lCode == lNotFound ? lSuccess : aBase.lCode;
  auto lCode = ListSubkeys(aBase.hKey, aSubkeys);
  if (lCode == lSuccess) lCode = ListValues(aBase.hKey, aValues);
  for (const auto& szName : aSubkeys)
    if (lCode == lSuccess) lCode = DeleteTree(Below(ProductKeys::szBase, szName));
  for (const auto& aValue : aValues)
    if (lCode == lSuccess) lCode = RegDeleteValueA(aBase.hKey, aValue.szName.c_str());
  return lCode;
}

using RegFileParser::Change;

std::int32_t Carry(const Change& aChange) {
  if (aChange.iKind == Change::Kind::DeleteKey)
    return Text::EqualNoCase(aChange.szPath, ProductKeys::szBase) ? EmptyBase() : DeleteTree(aChange.szPath);
  Key hKey = 0;
  auto lCode = RegCreateKeyExA(HKEY_LOCAL_MACHINE, aChange.szPath.c_str(), lFullAccess, hKey);
  if (lCode == lSuccess && aChange.iKind == Change::Kind::SetValue)
    lCode = RegSetValueExA(hKey, aChange.szName.c_str(), aChange.lType, aChange.szData.data(),
                           static_cast<std::uint32_t>(aChange.szData.size()));
  if (lCode == lSuccess && aChange.iKind == Change::Kind::DeleteValue) {
    lCode = RegDeleteValueA(hKey, aChange.szName.c_str());
    if (lCode == lNotFound) lCode = lSuccess;
  }
  RegCloseKey(hKey);
  return lCode;
}

// The list would not load what goes beyond its capacity.
bool HasTooManySites() {
  std::vector<std::string> aNames;
  return modAddress::ListKeyNames(aNames) && aNames.size() > modAddress::lSiteCapacity;
}

std::int32_t CarryAll(const std::vector<Change>& aChanges, bool& bTooMany) {
  Transaction aWhole(Written::ByTheOperator);
  std::int32_t lCode = lSuccess;
  for (const auto& aChange : aChanges)
    if (lCode == lSuccess) lCode = Carry(aChange);
  bTooMany = lCode == lSuccess && HasTooManySites();
  if (lCode == lSuccess && !bTooMany) return aWhole.Commit();
  aWhole.Abandon();
  return lCode;
}

// Where the registry knows no brackets, what was written before a failure is still there. False when the
// product's keys cannot be made what szBefore says; one that refuses does not keep the others from it.
bool PutBack(const std::string& szBefore) {
  const auto szNow = RegFile::Compose();
  if (szNow.empty() || szNow == szBefore) return true;
  std::vector<Change> aOld;
  std::string szError;
  if (!RegFileParser::Parse(szBefore, aOld, szError)) return false;
  EmptyBase();
  for (const auto& aChange : aOld)
    Carry(aChange);
  if (aOld.empty()) RegDeleteKeyA(HKEY_LOCAL_MACHINE, ProductKeys::szBase);
  return RegFile::Compose() == szBefore;
}

}  // namespace

std::string RegFile::Compose() {
  std::string szText = std::string(RegFileParser::szHeader) + "\r\n\r\n";
  if (!ComposeKey(ProductKeys::szBase, szText)) return {};
  return "\xFF\xFE" + Utf16::LittleEndian(Utf16::FromBytes(szText));
}

bool RegFile::Apply(const std::string& szBytes, std::string& szError) {
  std::vector<Change> aChanges;
  if (!RegFileParser::Parse(szBytes, aChanges, szError)) return false;
  const auto szBefore = Compose();
  bool bTooMany = false;
  const auto lCode = szBefore.empty() ? lAccessDenied : CarryAll(aChanges, bTooMany);
  if (lCode == lSuccess && !bTooMany) return true;
  if (!PutBack(szBefore))
    szError = FillResString(IDS_REGFILE_PART, {std::to_string(lCode)});
  else if (bTooMany)
    szError = FillResString(IDS_REGFILE_TOO_MANY, {std::to_string(modAddress::lSiteCapacity)});
  else
    szError = FillResString(IDS_REGFILE_WRITE, {std::to_string(lCode)});
  return false;
}
