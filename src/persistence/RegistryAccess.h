// RegistryAccess: the one way to the registry for everything above the platform. Every operation opens the
// key it needs, does one thing, closes the key and answers the platform's result code; it keeps nothing and
// shows nothing. Whether the key was found is not looked at: on a missing key the next call answers 6
// (invalid handle), and callers read 6 as "no such key", 2 as "no such value". A store that refuses the open
// answers 5, so that it is never taken for an empty one.
//
// Two types are handled: text (REG_SZ) and numbers (REG_DWORD, read as signed).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Registry.h"

namespace RegistryAccess {

inline constexpr auto lTypeText = static_cast<std::int32_t>(Registry::REG_SZ);
inline constexpr auto lTypeNumber = static_cast<std::int32_t>(Registry::REG_DWORD);

using Variant = std::variant<std::monostate, std::int32_t, std::string>;  // monostate: empty

struct RegValueEntry {
  std::string Name;
  Variant Value;
  std::int32_t Type = 0;  // lTypeText, lTypeNumber, or -1 for any other
};

// The key with all missing parents. An existing one is fine.
std::int32_t RegCreatePath(Registry::Key hRoot, const std::string& szPath);
std::int32_t RegRemoveKey(Registry::Key hRoot, const std::string& szPath);
std::int32_t RegRemoveValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName);

// Subkey names in listing order, each followed by one NUL; index 0 to lMaxIndex inclusive. lCount: how many
// they are. Always 0. lMaxIndex 0 becomes 50, lBufferLength 0 becomes 256. A name of more than 255 bytes is
// left out. pEnd, where given, gets the code that ended the listing: lNoMoreItems, lSuccess at the bound,
// lInvalidHandle for a missing key; with any other one the names are not all there.
std::int32_t RegListKeys(Registry::Key hRoot, const std::string& szPath, std::string& szNames,
                         std::int32_t& lCount, std::int32_t& lMaxIndex, std::int32_t& lBufferLength,
                         std::int32_t* pEnd = nullptr);

// Entries stand in slots 1..lCount, slot 0 stays empty; at most lLimit entries. 0, or the first code other
// than "no more items". lFirstLimit 0 becomes 50 and is not used further, lLimit 0 becomes 256.
std::int32_t RegListValues(Registry::Key hRoot, const std::string& szPath,
                           std::vector<RegValueEntry>& aEntries, std::int32_t& lCount,
                           std::int32_t& lFirstLimit, std::int32_t& lLimit);

// All values of the key in one walk, from slot 0: each as RegReadValue gives it, and those left out of which
// it gives none. 0, or the code that ended it; the values are then not all there.
std::int32_t RegReadValues(Registry::Key hRoot, const std::string& szPath,
                           std::vector<RegValueEntry>& aEntries);

// Writes the value converted to the type. Any other type writes nothing and answers 0.
// Text that is no number, written as a number, writes nothing and answers lInvalidParameter.
std::int32_t RegWriteValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                           const Variant& aValue, std::int32_t lType);
std::int32_t RegWriteValueAt(Registry::Key hKey, const std::string& szName, std::int32_t lType,
                             const Variant& aValue);  // the same below a key that is open

// A value that cannot be read leaves aValue and lType untouched; a value of another type answers -1 and sets
// lType to 0.
std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          Variant& aValue, std::int32_t& lType);
std::int32_t RegReadValueAt(Registry::Key hKey, const std::string& szName, Variant& aValue,
                            std::int32_t& lType);

// The same into a typed field. A number out of the field's range saturates; text that is no number leaves the
// field as it was.
std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::string& szField, std::int32_t& lType);
std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::uint8_t& iField, std::int32_t& lType);
std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::int16_t& iField, std::int32_t& lType);
std::int32_t RegReadValue(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
                          std::int32_t& lField, std::int32_t& lType);

// The value of that name among those that were read, into a typed field in the same way; without one the
// field stays as it was. nullptr where there is none.
const RegValueEntry* FindValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName);
void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::string& szField);
void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::uint8_t& iField);
void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::int16_t& iField);
void TakeValue(const std::vector<RegValueEntry>& aEntries, std::string_view szName, std::int32_t& lField);

// An exchange sort of slots 1..lCount by the first of each pair; numbers by size, an empty key as 0. Equal
// keys are never swapped with each other.
void SortKeyedRecords(std::vector<std::pair<Variant, Variant>>& aRecords, std::int32_t lCount,
                      bool bAscending);

}  // namespace RegistryAccess
