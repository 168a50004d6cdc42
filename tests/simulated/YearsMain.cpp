// kestrova-years: the program on simulated machines, for as many checks as wanted. Ends with 1, and says how
// to see it again, at the first thing that is not as it must be.
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "simulated/Trial.h"
#include "simulated/Violation.h"

namespace {

using Simulated::Tallied;
using Simulated::Tally;

constexpr std::int64_t lChecksOfOneMachine = 20'000;
constexpr std::uint64_t lMachinesOfOneWord = 50;  // a million checks

struct Arguments {
  std::int64_t lChecks = 1'000'000;
  std::uint64_t lSeed = 1;
};

int Help(bool bWrong) {
  std::fprintf(bWrong ? stderr : stdout,
               "kestrova-years [--checks N] [--seed S | --seed-of-the-day] [--trace C]\n"
               "  N checks (a million) on simulated machines of %lld checks each, the first with seed S (1), "
               "the next\n"
               "  with S + 1 and so on. --trace tells every step from check C of a machine on.\n",
               static_cast<long long>(lChecksOfOneMachine));
  return bWrong ? 2 : 0;
}

std::uint64_t SeedOfTheDay() {
  return static_cast<std::uint64_t>(std::time(nullptr)) / 86400 * 1'000'000;
}

bool Read(int lCount, char** aWords, Arguments& aArguments) {
  for (int i = 1; i < lCount; ++i) {
    const std::string szWord = aWords[i];
    if (szWord == "--seed-of-the-day") {
      aArguments.lSeed = SeedOfTheDay();
      continue;
    }
    char* pEnd = nullptr;
    const auto lNumber = i + 1 < lCount ? std::strtoll(aWords[i + 1], &pEnd, 10) : -1;
    if (lNumber < 0 || pEnd == nullptr || *pEnd != '\0') return false;
    if (szWord == "--checks") aArguments.lChecks = lNumber;
    if (szWord == "--seed") aArguments.lSeed = static_cast<std::uint64_t>(lNumber);
    if (szWord == "--trace") Simulated::Where().lTraceFrom = lNumber;
    if (szWord != "--checks" && szWord != "--seed" && szWord != "--trace") return false;
    ++i;
  }
  return true;
}

void Print(double dSeconds) {
  constexpr std::array szNames = {"checks",
                                  "passes",
                                  "days on the machines' clocks",
                                  "time-outs",
                                  "second looks by IP address",
                                  "mails tried",
                                  "mails repeated after a kill",
                                  "processes",
                                  "kills",
                                  "calls that failed",
                                  "commands of the operator",
                                  "acts of the operator in a pass",
                                  "logs read back",
                                  "outages compared"};
  for (std::size_t i = 0; i < szNames.size(); ++i)
    std::printf("  %-34s %12lld\n", szNames[i], static_cast<long long>(Tallied(static_cast<Tally>(i))));
  std::printf("no violation; %.1f s, %.0f checks a second\n", dSeconds,
              static_cast<double>(Tallied(Tally::Checks)) / dSeconds);
}

}  // namespace

int main(int lCount, char** aWords) {
  if (lCount == 2 && std::strcmp(aWords[1], "--help") == 0) return Help(false);
  Arguments aArguments;
  if (!Read(lCount, aWords, aArguments)) return Help(true);
  std::printf("seed %llu\n", static_cast<unsigned long long>(aArguments.lSeed));
  std::fflush(stdout);
  const auto aStart = std::chrono::steady_clock::now();
  for (std::uint64_t lMachine = 0; Tallied(Tally::Checks) < aArguments.lChecks; ++lMachine) {
    Simulated::Trial(aArguments.lSeed + lMachine)
        .Run(std::min(lChecksOfOneMachine, aArguments.lChecks - Tallied(Tally::Checks)));
    if (lMachine % lMachinesOfOneWord == lMachinesOfOneWord - 1) {
      std::printf("  %lld checks so far\n", static_cast<long long>(Tallied(Tally::Checks)));
      std::fflush(stdout);
    }
  }
  Print(std::chrono::duration<double>(std::chrono::steady_clock::now() - aStart).count());
  return 0;
}
