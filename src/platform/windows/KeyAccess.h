// Who may use a key of the registry; apart from Registry.cpp because the system's headers for it bring names
// that the registry seam has too.
#pragma once

#include <cstdint>
#include <string>

// Gives the built-in group Users full access to the key and everything below it, now and later. What others
// may do stays. The path begins with MACHINE or CURRENT_USER, as SetNamedSecurityInfo has it. 0, or the
// system's code: 5 where the caller may not change the key's access.
std::int32_t GrantUsersFullAccess(const std::string& szPath);
