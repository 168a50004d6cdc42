// Store: the open registry store of this process: the database, opened when first needed, the keys that
// callers hold open, and where paths lead.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Registry.h"
#include "platform/posix/Database.h"

namespace Store {

using Path = std::span<const std::string_view>;  // key names, from the top

struct Value {
  std::string szName;
  std::uint32_t lType = 0;
  std::string szData;
  std::int64_t lId = 0;
};

// A key as a caller holds it, with what it listed last: enumeration asks index by index.
struct OpenKey {
  std::int64_t lId = 0;
  std::int64_t lKeysSeen = -1;  // the moment of the listing, see ListKeys
  std::vector<std::string> aKeys;
  std::int64_t lValuesSeen = -1;
  std::shared_ptr<const std::vector<Value>> pValues = {};
};

// Answered where the store itself fails: a key on which every call answers 5.
inline constexpr Registry::Key hUnreadable = 4;

// The store, opened if need be, or nullptr. After a failure it is tried again a second later at the soonest.
Database* Get();

// What a call on hKey works on. 0, or the code to answer.
std::int32_t Find(Registry::Key hKey, Database*& pDatabase, OpenKey*& pKey);

Registry::Key Hold(std::int64_t lId);
std::int32_t Release(Registry::Key hKey);

// The key at the path below lBase: 0, 2 where it is missing, 6 where lBase is, 5.
std::int32_t Resolve(Database& aDatabase, std::int64_t lBase, Path aParts, std::int64_t& lId);
// The same, made with all parents where it is missing.
std::int32_t Make(Database& aDatabase, std::int64_t lBase, Path aParts, std::int64_t& lId);
// 0, 6 where the key is gone, 5.
std::int32_t CheckExists(Database& aDatabase, std::int64_t lId);

// Bring the key's listing up to date.
std::int32_t ListKeys(Database& aDatabase, OpenKey& aKey);
std::int32_t ListValues(Database& aDatabase, OpenKey& aKey);
// To be called with every change, so that listings are read again.
void KeysChanged();
void ValuesChanged(std::int64_t lKey);  // of that key

}  // namespace Store
