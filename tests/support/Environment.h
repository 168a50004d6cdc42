// The process's environment and number, for tests on either system.
#pragma once

#include <string>

namespace Environment {
void Set(const std::string& szName, const std::string& szValue);
void Unset(const std::string& szName);
long ProcessNumber();
}  // namespace Environment
