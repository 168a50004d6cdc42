// Environment: the variables of this process, which programs that it starts inherit, and its number.
#pragma once

#include <string>

namespace Environment {

// Empty where the variable is not set.
std::string Get(const std::string& szName);
void Set(const std::string& szName, const std::string& szValue);
void Unset(const std::string& szName);

long ProcessNumber();

}  // namespace Environment
