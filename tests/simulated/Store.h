// Store: the simulated registry as it lies on the machine. These are the hands that look and reach into it
// past the program: they never fail, are not counted, and see and leave committed what they do.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Registry.h"

namespace Simulated::Store {

struct Value {
  std::string szName;
  std::uint32_t lType = 0;
  std::string szData;  // raw, with the NUL of a text

  std::string Text() const { return szData.substr(0, szData.find('\0')); }
  std::int32_t Number() const;
};

// Empty where there is no such key. References and pointers are good until the next call of anybody.
std::vector<std::string> Keys(Registry::Key hRoot, const std::string& szPath);
const std::vector<Value>& Values(Registry::Key hRoot, const std::string& szPath);
bool HasKey(Registry::Key hRoot, const std::string& szPath);
// nullptr where there is none.
const Value* Find(Registry::Key hRoot, const std::string& szPath, const std::string& szName);

void PutNumber(Registry::Key hRoot, const std::string& szPath, const std::string& szName,
               std::int32_t lNumber);
void Remove(Registry::Key hRoot, const std::string& szPath, const std::string& szName);

// What must not grow.
struct Size {
  std::size_t lOpenKeys = 0, lKeys = 0, lValues = 0;
  std::int32_t lBrackets = 0;
  bool operator==(const Size&) const = default;
};
Size Measure();

void Clear();
void LosePower();

}  // namespace Simulated::Store
