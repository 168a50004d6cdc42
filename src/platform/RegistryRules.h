// RegistryRules: what holds in the registry's entry points wherever they are not the system's own, for who
// implements them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Registry {

inline constexpr std::size_t lLongestKeyName = 255;  // bytes

// The names of the keys of a path. False when one is too long.
bool SplitPath(std::string_view szPath, std::vector<std::string_view>& aParts);

// Hands a value's type and data to the caller's buffer, as far as they are asked for and fit.
std::int32_t Deliver(std::uint32_t lType, std::string_view szData, std::uint32_t* pType, void* pData,
                     std::uint32_t* pSize);

// The name with its NUL; false, and nothing done, where lRoom bytes are too few.
bool CopyName(std::string_view szName, char* szBuffer, std::uint32_t lRoom);

}  // namespace Registry
