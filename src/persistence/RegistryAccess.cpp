#include "persistence/RegistryAccess.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

#include "base/Text.h"

namespace RegistryAccess {
namespace {

constexpr std::uint32_t lFullAccess = 0x3F;
constexpr std::uint32_t lKeyNameBuffer = 256;
constexpr std::size_t lLongestValueName = 16384;  // with its NUL
constexpr std::size_t lUsualName = 64;            // more than nearly all values have
constexpr std::size_t lUsualData = 512;

// A key that is missing stays 0, and the call made with it answers lInvalidHandle. A store that refuses is
// something else: taken for a missing key it would make callers put defaults over what is stored.
class OpenedKey {
 public:
  OpenedKey(Registry::Key hRoot, const std::string& szPath) {
    if (Registry::RegOpenKeyExA(hRoot, szPath.c_str(), lFullAccess, hKey) == Registry::lAccessDenied)
      bRefused = true;
  }
  ~OpenedKey() {
    if (hKey != 0) Registry::RegCloseKey(hKey);
  }
  OpenedKey(const OpenedKey&) = delete;
  OpenedKey& operator=(const OpenedKey&) = delete;

  Registry::Key hKey = 0;
  bool bRefused = false;
};

std::optional<std::int32_t> NumberOfText(const std::string& szText) {
  const auto szNumber = Text::Trim(szText);
  const bool bSigned = szNumber.starts_with('-') || szNumber.starts_with('+');
  if (!Text::IsDigits(std::string_view(szNumber).substr(bSigned ? 1 : 0))) return std::nullopt;
  return Text::LeadingNumber(szNumber);
}

std::optional<std::int32_t> NumberOf(const Variant& aValue) {
  if (const auto* pNumber = std::get_if<std::int32_t>(&aValue)) return *pNumber;
  if (const auto* pText = std::get_if<std::string>(&aValue)) return NumberOfText(*pText);
  return 0;
}

std::string TextOf(const Variant& aValue) {
  if (const auto* pNumber = std::get_if<std::int32_t>(&aValue)) return std::to_string(*pNumber);
  if (const auto* pText = std::get_if<std::string>(&aValue)) return *pText;
  return {};
}

void Assign(const Variant& aValue, Variant& aField) {
  aField = aValue;
}

void Assign(const Variant& aValue, std::string& szField) {
  szField = TextOf(aValue);
}

template <typename Number>
void Assign(const Variant& aValue, Number& lField) {
  if (const auto lNumber = NumberOf(aValue)) lField = Text::Saturate<Number>(*lNumber);
}

// What was stored as text or as a number. Nothing of another type, nor of a size that is none of a number,
// nor of a text without even its NUL.
std::optional<Variant> Decode(std::uint32_t lStoredType, std::string_view szData) {
  if (lStoredType == Registry::REG_SZ && !szData.empty())
    return std::string(
        szData.substr(0, szData.size() - 1));  // without the NUL that every stored string ends with
  std::int32_t lNumber = 0;
  if (lStoredType != Registry::REG_DWORD || szData.size() > sizeof lNumber) return std::nullopt;
  std::memcpy(&lNumber, szData.data(), szData.size());
  return lNumber;
}

std::int32_t TypeOf(std::uint32_t lStoredType) {
  return lStoredType == Registry::REG_SZ ? lTypeText : lStoredType == Registry::REG_DWORD ? lTypeNumber : 0;
}

// The buffer grows where it is too small for the data.
std::int32_t QueryData(Registry::Key hKey, const std::string& szName, std::uint32_t& lStoredType,
                       std::string& szData) {
  szData.resize(lUsualData);
  auto lSize = static_cast<std::uint32_t>(szData.size());
  auto lCode = Registry::RegQueryValueExA(hKey, szName.c_str(), &lStoredType, szData.data(), &lSize);
  if (lCode == Registry::lMoreData) {
    szData.resize(lSize);
    lCode = Registry::RegQueryValueExA(hKey, szName.c_str(), &lStoredType, szData.data(), &lSize);
  }
  szData.resize(std::min<std::size_t>(szData.size(), lSize));
  return lCode;
}

// aFound and lType stay as they are where there is nothing to answer.
std::int32_t Query(Registry::Key hKey, const std::string& szName, std::optional<Variant>& aFound,
                   std::int32_t& lType) {
  std::uint32_t lStoredType = 0;
  std::string szData;
  const auto lCode = QueryData(hKey, szName, lStoredType, szData);
  if (lCode != Registry::lSuccess) {
    if (lStoredType != Registry::REG_SZ) return lCode;
    aFound = Variant{};  // a text that was there, and could not be read whole
    lType = lTypeText;
    return lCode;
  }
  aFound = Decode(lStoredType, szData);
  if (lStoredType == Registry::REG_SZ && !aFound) return lCode;
  lType = TypeOf(lStoredType);
  if (lStoredType == Registry::REG_DWORD && !aFound) return Registry::lMoreData;
  return lType != 0 ? lCode : -1;
}

template <typename Field>
std::int32_t ReadInto(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                      Field& aField, std::int32_t& lType) {
  const OpenedKey aKey(hRoot, szPath);
  if (aKey.bRefused) return Registry::lAccessDenied;
  std::optional<Variant> aFound;
  const auto lCode = Query(aKey.hKey, szName, aFound, lType);
  if (aFound) Assign(*aFound, aField);
  return lCode;
}

void FillEntry(std::uint32_t lStoredType, std::string_view szData, RegValueEntry& aEntry) {
  if (lStoredType == Registry::REG_SZ) {
    aEntry.Value = Text::Trim(szData.substr(0, szData.find('\0')));
    aEntry.Type = lTypeText;
  } else if (lStoredType == Registry::REG_DWORD) {
    aEntry.Value = Decode(lStoredType, szData).value_or(std::int32_t{0});
    aEntry.Type = lTypeNumber;
  } else {
    aEntry.Type = -1;
  }
}

// True when the left key belongs before the right one: numbers by size, an empty key as 0, texts last.
bool IsLess(const Variant& aLeft, const Variant& aRight) {
  const auto* pLeft = std::get_if<std::string>(&aLeft);
  const auto* pRight = std::get_if<std::string>(&aRight);
  if (pLeft != nullptr || pRight != nullptr)
    return pRight != nullptr && (pLeft == nullptr || *pLeft < *pRight);
  const auto* pLeftNumber = std::get_if<std::int32_t>(&aLeft);
  const auto* pRightNumber = std::get_if<std::int32_t>(&aRight);
  return (pLeftNumber != nullptr ? *pLeftNumber : 0) < (pRightNumber != nullptr ? *pRightNumber : 0);
}

}  // namespace

std::int32_t RegCreatePath(Registry::Key hRoot, const std::string& szPath) {
  Registry::Key hKey = 0;
  const auto lCode = Registry::RegCreateKeyExA(hRoot, szPath.c_str(), lFullAccess, hKey);
  if (hKey != 0) Registry::RegCloseKey(hKey);
  return lCode;
}

std::int32_t RegRemoveKey(Registry::Key hRoot, const std::string& szPath) {
  return Registry::RegDeleteKeyA(hRoot, szPath.c_str());
}

std::int32_t RegRemoveValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName) {
  const OpenedKey aKey(hRoot, szPath);
  if (aKey.bRefused) return Registry::lAccessDenied;
  return Registry::RegDeleteValueA(aKey.hKey, szName.c_str());
}

std::int32_t RegListKeys(Registry::Key hRoot, const std::string& szPath, std::string& szNames,
                         std::int32_t& lCount, std::int32_t& lMaxIndex, std::int32_t& lBufferLength,
                         std::int32_t* pEnd) {
  szNames.clear();
  lCount = 0;
  if (lMaxIndex == 0) lMaxIndex = 50;
  if (lBufferLength == 0) lBufferLength = 256;
  const OpenedKey aKey(hRoot, szPath);
  const auto lBytes = std::max<std::uint32_t>(Text::Saturate<std::uint32_t>(lBufferLength), lKeyNameBuffer);
  auto lCode = aKey.bRefused ? Registry::lAccessDenied : Registry::lSuccess;
  std::string szName(lBytes, ' ');
  for (std::int32_t lIndex = 0; lIndex <= lMaxIndex && lCode == Registry::lSuccess; ++lIndex) {
    lCode =
        Registry::RegEnumKeyA(aKey.hKey, static_cast<std::uint32_t>(lIndex), szName.data(), lKeyNameBuffer);
    if (lCode == Registry::lSuccess) {
      szNames += Text::Trim(std::string_view(szName).substr(0, szName.find('\0') + 1));
      ++lCount;
    } else if (lCode == Registry::lMoreData) {
      lCode = Registry::lSuccess;  // one name that is too long must not hide all those after it
    }
  }
  if (pEnd != nullptr) *pEnd = lCode;
  return Registry::lSuccess;
}

std::int32_t RegListValues(Registry::Key hRoot, const std::string& szPath,
                           std::vector<RegValueEntry>& aEntries, std::int32_t& lCount,
                           std::int32_t& lFirstLimit, std::int32_t& lLimit) {
  lCount = 0;
  aEntries.clear();
  if (lFirstLimit == 0) lFirstLimit = 50;
  if (lLimit == 0) lLimit = 256;
  aEntries.resize(1);
  const OpenedKey aKey(hRoot, szPath);
  if (aKey.bRefused) return Registry::lAccessDenied;
  const auto lBytes = Text::Saturate<std::uint32_t>(lLimit);
  std::string szName(lBytes, ' '), szData(lBytes, ' ');
  std::int32_t lResult = Registry::lSuccess;
  for (std::int32_t lIndex = 0; lIndex <= lLimit; ++lIndex) {
    ++lCount;
    std::uint32_t lStoredType = 0, lNameSize = lBytes, lDataSize = lBytes;
    const auto Enumerate = [&](void* pData) {
      lNameSize = lBytes;
      return Registry::RegEnumValueA(aKey.hKey, static_cast<std::uint32_t>(lIndex), szName.data(), &lNameSize,
                                     &lStoredType, pData, &lDataSize);
    };
    auto lCode = Enumerate(szData.data());
    if (lCode == Registry::lMoreData && lDataSize > lBytes) {  // data beyond the limit is not read
      lCode = Enumerate(nullptr);
      lDataSize = 0;
    }
    if (lCode != Registry::lSuccess) {
      if (lCode != Registry::lNoMoreItems) lResult = lCode;
      break;
    }
    auto& aEntry = aEntries.emplace_back();
    aEntry.Name = Text::Trim(std::string_view(szName).substr(0, szName.find('\0')));
    FillEntry(lStoredType, std::string_view(szData).substr(0, lDataSize), aEntry);
  }
  if (lCount > 0) --lCount;  // the last turn failed or went past the limit
  aEntries.resize(static_cast<std::size_t>(lCount) + 1);
  return lResult;
}

std::int32_t RegReadValues(Registry::Key hRoot, const std::string& szPath,
                           std::vector<RegValueEntry>& aEntries) {
  aEntries.clear();
  const OpenedKey aKey(hRoot, szPath);
  if (aKey.bRefused) return Registry::lAccessDenied;
  std::string szName(lUsualName, '\0'), szData(lUsualData, '\0');
  for (std::uint32_t lIndex = 0;;) {
    auto lNameSize = static_cast<std::uint32_t>(szName.size());
    auto lSize = static_cast<std::uint32_t>(szData.size());
    std::uint32_t lStoredType = 0;
    const auto lCode = Registry::RegEnumValueA(aKey.hKey, lIndex, szName.data(), &lNameSize, &lStoredType,
                                               szData.data(), &lSize);
    if (lCode == Registry::lMoreData && (lSize > szData.size() || szName.size() < lLongestValueName)) {
      szData.resize(std::max<std::size_t>(szData.size(), lSize));
      szName.resize(lLongestValueName);
      continue;
    }
    if (lCode != Registry::lSuccess) return lCode == Registry::lNoMoreItems ? Registry::lSuccess : lCode;
    ++lIndex;
    if (auto aFound = Decode(lStoredType, std::string_view(szData).substr(0, lSize)))
      aEntries.push_back({szName.substr(0, lNameSize), std::move(*aFound), TypeOf(lStoredType)});
  }
}

const RegValueEntry* FindValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName) {
  const auto pFound = std::find_if(aEntries.begin(), aEntries.end(), [&](const RegValueEntry& aEntry) {
    return Text::EqualNoCase(aEntry.Name, szName);
  });
  return pFound != aEntries.end() ? &*pFound : nullptr;
}

void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::string& szField) {
  if (const auto* const pEntry = FindValue(aEntries, szName)) Assign(pEntry->Value, szField);
}

void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::uint8_t& iField) {
  if (const auto* const pEntry = FindValue(aEntries, szName)) Assign(pEntry->Value, iField);
}

void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::int16_t& iField) {
  if (const auto* const pEntry = FindValue(aEntries, szName)) Assign(pEntry->Value, iField);
}

void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::int32_t& lField) {
  if (const auto* const pEntry = FindValue(aEntries, szName)) Assign(pEntry->Value, lField);
}

std::int32_t RegWriteValueAt(Registry::Key hKey, const std::string& szName, std::int32_t lType,
                             const Variant& aValue) {
  if (lType == lTypeText) {
    const auto szText = TextOf(aValue);
    return Registry::RegSetValueExA(
        hKey, szName.c_str(), Registry::REG_SZ, szText.c_str(),
        Text::Saturate<std::uint32_t>(static_cast<std::int64_t>(szText.size()) + 1));
  }
  if (lType == lTypeNumber) {
    const auto lNumber = NumberOf(aValue);
    if (!lNumber) return Registry::lInvalidParameter;
    return Registry::RegSetValueExA(hKey, szName.c_str(), Registry::REG_DWORD, &*lNumber, sizeof *lNumber);
  }
  return Registry::lSuccess;
}

std::int32_t RegWriteValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                           const Variant& aValue, std::int32_t lType) {
  const OpenedKey aKey(hRoot, szPath);
  if (aKey.bRefused) return Registry::lAccessDenied;
  return RegWriteValueAt(aKey.hKey, szName, lType, aValue);
}

std::int32_t RegReadValueAt(Registry::Key hKey, const std::string& szName, Variant& aValue,
                            std::int32_t& lType) {
  std::optional<Variant> aFound;
  const auto lCode = Query(hKey, szName, aFound, lType);
  if (aFound) aValue = *aFound;
  return lCode;
}

std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          Variant& aValue, std::int32_t& lType) {
  return ReadInto(hRoot, szPath, szName, aValue, lType);
}

std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::string& szField, std::int32_t& lType) {
  return ReadInto(hRoot, szPath, szName, szField, lType);
}

std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::uint8_t& iField, std::int32_t& lType) {
  return ReadInto(hRoot, szPath, szName, iField, lType);
}

std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::int16_t& iField, std::int32_t& lType) {
  return ReadInto(hRoot, szPath, szName, iField, lType);
}

std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::int32_t& lField, std::int32_t& lType) {
  return ReadInto(hRoot, szPath, szName, lField, lType);
}

void SortKeyedRecords(std::vector<std::pair<Variant, Variant>>& aRecords, std::int32_t lCount,
                      bool bAscending) {
  const auto lEnd = std::min(aRecords.size(), static_cast<std::size_t>(std::max(lCount, 0)) + 1);
  const auto IsBefore = [&](const auto& aLeft, const auto& aRight) {
    return bAscending ? IsLess(aLeft.first, aRight.first) : IsLess(aRight.first, aLeft.first);
  };
  if (lEnd < 2 ||
      std::is_sorted(aRecords.begin() + 1, aRecords.begin() + static_cast<std::ptrdiff_t>(lEnd), IsBefore))
    return;  // as it nearly always is
  for (std::size_t i = 1; i < lEnd; ++i) {
    for (std::size_t j = i + 1; j < lEnd; ++j)
      if (IsBefore(aRecords[j], aRecords[i])) std::swap(aRecords[i], aRecords[j]);
  }
}

}  // namespace RegistryAccess
