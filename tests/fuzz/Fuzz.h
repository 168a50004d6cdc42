// Fuzz: what every target shares: its entry, and how it says that something does not hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t lSize);

namespace Fuzz {

inline std::string_view Bytes(const std::uint8_t* pData, std::size_t lSize) {
  return {reinterpret_cast<const char*>(pData), lSize};
}

// A crash is what the fuzzer looks for.
inline void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

}  // namespace Fuzz
