// Random: numbers out of a seed, the same on every system and with every compiler (splitmix64).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Simulated {

class Random {
 public:
  explicit Random(std::uint64_t lSeed) : lState(lSeed) {}

  std::uint64_t Next() {
    std::uint64_t lMixed = lState += 0x9E3779B97F4A7C15U;
    lMixed = (lMixed ^ (lMixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    lMixed = (lMixed ^ (lMixed >> 27U)) * 0x94D049BB133111EBU;
    return lMixed ^ (lMixed >> 31U);
  }
  // 0 to lBound - 1; lBound 1 at least.
  std::int32_t Below(std::int32_t lBound) {
    return static_cast<std::int32_t>(Next() % static_cast<std::uint64_t>(lBound));
  }
  std::int32_t Between(std::int32_t lFrom, std::int32_t lTo) { return lFrom + Below(lTo - lFrom + 1); }
  // 0 to below 1.
  double Real() { return static_cast<double>(Next() >> 11U) / 9007199254740992.0; }
  double Between(double dFrom, double dTo) { return dFrom + (dTo - dFrom) * Real(); }
  bool Chance(double dShare) { return Real() < dShare; }
  template <typename Item>
  const Item& Pick(const std::vector<Item>& aItems) {
    return aItems[static_cast<std::size_t>(Below(static_cast<std::int32_t>(aItems.size())))];
  }

 private:
  std::uint64_t lState;
};

}  // namespace Simulated
