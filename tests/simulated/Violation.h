// Violation: what is said when a rule does not hold, with all that is needed to see it again. It ends the
// process.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace Simulated {

// How far the trial has come.
struct Position {
  std::uint64_t lSeed = 0;
  std::int64_t lChecks = 0, lLives = 0;
  const char* szStep = "";
  std::int64_t lTraceFrom = -1;  // from that check on every step is told
};
Position& Where();

// What has been done by now, by its name, for the figures at the end.
std::map<std::string_view, std::int64_t>& Tallies();

inline bool Traced() {
  return Where().lTraceFrom >= 0 && Where().lChecks >= Where().lTraceFrom;
}
void Trace(const std::string& szWhat);

[[noreturn]] void Violate(const std::string& szWhat);

inline void Require(bool bHolds, const char* szWhat) {
  if (!bHolds) Violate(szWhat);
}

[[noreturn]] void ViolateBy(std::string_view szWhat, const std::string& szIs, const std::string& szMustBe);

inline void RequireSame(std::string_view szWhat, std::string_view szIs, std::string_view szMustBe) {
  if (szIs != szMustBe) ViolateBy(szWhat, std::string(szIs), std::string(szMustBe));
}
inline void RequireSame(std::string_view szWhat, std::int64_t lIs, std::int64_t lMustBe) {
  if (lIs != lMustBe) ViolateBy(szWhat, std::to_string(lIs), std::to_string(lMustBe));
}

}  // namespace Simulated
