// SiteIndex: in which order the sites stand. The index is a key of references, "Domain1", "Domain2", ...,
// each of which names a site's key. The keys bear their numbers too, so that it can be rebuilt from them.
// Internal to persistence/: everybody else asks modAddress, whose RebuildSiteIndex and SetSiteCount stand
// here.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "persistence/SiteKey.h"

namespace SiteIndex {

struct Reference {
  std::string szName;     // "Domain7"
  std::string szKeyName;  // not blank
};

// Makes the key, without a reference. 0, or the code of the failure.
std::int32_t Create();

// In the order of their numbers. 0, or the code of the failure: lInvalidHandle where there is no index.
std::int32_t Read(std::vector<Reference>& aReferences);

std::string NameOf(std::int32_t n);  // of the reference to site n
// 0, or the code of the failure.
std::int32_t Write(std::int32_t n, const std::string& szKeyName);
std::int32_t Remove(const std::string& szName);

// The values of the sites' keys, by the names that the rebuilt index has for them.
using KeysRead = std::map<std::string, SiteKey::Values>;

// RebuildSiteIndex, which also hands out what it has read.
modAddress::Mismatches Rebuild(KeysRead& aRead);

}  // namespace SiteIndex
