// SiteKey: how one site lies in the registry: the key that bears its name, the values in it, and by which
// rules they are read back. What SiteIndex and modAddress share; everybody else asks modAddress.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "persistence/RegistryAccess.h"
#include "persistence/modAddress.h"

namespace SiteKey {

using Values = std::vector<RegistryAccess::RegValueEntry>;

// szKeyName: as modAddress::KeyName gives it, or as an index names it.
std::string Path(const std::string& szKeyName);

// 0, or the code of the failure.
std::int32_t Create(const std::string& szKeyName);
std::int32_t Remove(const std::string& szKeyName);

// All values of the key, as they are. 0, or the code of the failure; what was read until then is there.
std::int32_t Read(const std::string& szKeyName, Values& aStored);

// 0, or the code of the first write that failed; all are tried.
std::int32_t Write(const std::string& szKeyName, const Values& aFields);

// A site's values in the order in which they are written.
Values FieldsOf(const SiteRecord& aRecord, std::int32_t lIndex);

// Those of them that are stored in another way. Nothing where the key cannot be read.
std::optional<Values> ChangedFields(const std::string& szKeyName, const SiteRecord& aRecord,
                                    std::int32_t lIndex);

// The record that the values are, by the rules for each of them. False without a usable URL.
bool RecordOf(const Values& aStored, SiteRecord& aRecord);

bool IsStored(const Values& aStored, const RegistryAccess::RegValueEntry& aField);

}  // namespace SiteKey
