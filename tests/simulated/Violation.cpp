#include "simulated/Violation.h"

#include <cstdio>
#include <cstdlib>

#include "base/DateTime.h"
#include "base/Text.h"
#include "simulated/Machine.h"

namespace Simulated {

Position& Where() {
  static Position aPosition;
  return aPosition;
}

std::map<std::string_view, std::int64_t>& Tallies() {
  static std::map<std::string_view, std::int64_t> aTallies;
  return aTallies;
}

void Trace(const std::string& szWhat) {
  std::printf("%lld %.3f %s | %s | %s\n", static_cast<long long>(Where().lChecks), ThisMachine().Boot(),
              FormatGeneral(ThisMachine().Wall()).c_str(), Where().szStep, Text::Printable(szWhat).c_str());
}

void Violate(const std::string& szWhat) {
  const auto& aAt = Where();
  std::printf("VIOLATION at check %lld, life %lld, %s, %s on the machine's clock:\n  %s\n",
              static_cast<long long>(aAt.lChecks), static_cast<long long>(aAt.lLives), aAt.szStep,
              FormatGeneral(ThisMachine().Wall()).c_str(), Text::Printable(szWhat).c_str());
  std::printf("See it again: kestrova-years --checks %lld --seed %llu\n",
              static_cast<long long>(aAt.lChecks) + 1, static_cast<unsigned long long>(aAt.lSeed));
  std::fflush(stdout);
  std::_Exit(1);
}

void ViolateBy(std::string_view szWhat, const std::string& szIs, const std::string& szMustBe) {
  Violate(std::string(szWhat) + " is \"" + szIs + "\" and must be \"" + szMustBe + "\"");
}

}  // namespace Simulated
