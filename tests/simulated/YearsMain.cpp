// kestrova-years: the program on simulated machines, for as many checks as wanted. Ends with 1, and says how
// to see it again, at the first thing that is not as it must be.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

#include "simulated/Trial.h"
#include "simulated/Violation.h"

namespace {

using Simulated::Tallies;

constexpr std::int64_t lChecksOfOneMachine = 20'000;
constexpr std::uint64_t lMachinesOfOneWord = 50;  // a million checks

std::uint64_t SeedOfTheDay() {
  return static_cast<std::uint64_t>(std::time(nullptr)) / 86400 * 1'000'000;
}

void Print(double dSeconds) {
  for (const auto& [szOf, lTally] : Tallies())
    std::printf("  %-34s %12lld\n", szOf.data(), static_cast<long long>(lTally));
  std::printf("no violation; %.1f s, %.0f checks a second\n", dSeconds,
              static_cast<double>(Tallies()["checks"]) / dSeconds);
}

}  // namespace

int main(int lCount, char** aWords) {
  std::int64_t lChecks = 1'000'000;
  std::uint64_t lSeed = 1;
  CLI::App aApp("Checks on simulated machines of 20,000 checks each; the next machine has the next seed.");
  aApp.add_option("--checks", lChecks, "how many")->capture_default_str();
  auto* const pSeed = aApp.add_option("--seed", lSeed, "of the first machine")->capture_default_str();
  aApp.add_flag_callback("--seed-of-the-day", [&] { lSeed = SeedOfTheDay(); })->excludes(pSeed);
  aApp.add_option("--trace", Simulated::Where().lTraceFrom,
                  "tell every step from that check of a machine on");
  CLI11_PARSE(aApp, lCount, aWords);
  std::printf("seed %llu\n", static_cast<unsigned long long>(lSeed));
  std::fflush(stdout);
  const auto aStart = std::chrono::steady_clock::now();
  for (std::uint64_t lMachine = 0; Tallies()["checks"] < lChecks; ++lMachine) {
    Simulated::Trial(lSeed + lMachine).Run(std::min(lChecksOfOneMachine, lChecks - Tallies()["checks"]));
    if (lMachine % lMachinesOfOneWord == lMachinesOfOneWord - 1) {
      std::printf("  %lld checks so far\n", static_cast<long long>(Tallies()["checks"]));
      std::fflush(stdout);
    }
  }
  Print(std::chrono::duration<double>(std::chrono::steady_clock::now() - aStart).count());
  return 0;
}
