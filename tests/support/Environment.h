// The process's environment and number, for tests on either system.
#pragma once

#include <string>

namespace Environment {
void Set(const std::string& szName, const std::string& szValue);
void Unset(const std::string& szName);
long ProcessNumber();
// Removes the store that KESTROVA_REGISTRY names, where it is no file (see platform/Registry.h).
void RemoveStore();
}  // namespace Environment
