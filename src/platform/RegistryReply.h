// RegistryReply: how the entry points hand back what they found, for whoever implements the registry.
#pragma once

#include <cstdint>
#include <string_view>

namespace Registry {

// Hands a value's type and data to the caller's buffer, as far as they are asked for and fit.
std::int32_t Deliver(std::uint32_t lType, std::string_view szData, std::uint32_t* pType, void* pData,
                     std::uint32_t* pSize);

// The name with its NUL; false, and nothing done, where lRoom bytes are too few.
bool CopyName(std::string_view szName, char* szBuffer, std::uint32_t lRoom);

}  // namespace Registry
