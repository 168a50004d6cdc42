// kestrova-years: the program on simulated machines, for as many checks as wanted. Ends with 1, and says how
// to see it again, at the first thing that is not as it must be.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "simulated/Trial.h"
#include "simulated/Violation.h"

namespace {

constexpr std::int64_t lChecksOfOneMachine = 20'000;

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

void Print(const Simulated::Totals& a, double dSeconds) {
  const auto Line = [](const char* szWhat, std::int64_t lNumber) {
    std::printf("  %-34s %12lld\n", szWhat, static_cast<long long>(lNumber));
  };
  Line("checks", a.lChecks);
  Line("passes", a.lPasses);
  Line("days on the machines' clocks", static_cast<std::int64_t>(a.dDays));
  Line("time-outs", a.lTimeOuts);
  Line("second looks by IP address", a.lBackups);
  Line("mails tried", a.lMails);
  Line("mails repeated after a kill", a.lRepeats);
  Line("processes", a.lLives);
  Line("kills", a.lKills);
  Line("calls that failed", a.lFaults);
  Line("commands of the operator", a.lCommands);
  Line("acts of the operator in a pass", a.lActsInPasses);
  Line("logs read back", a.lReadBacks);
  Line("outages compared", a.lOutages);
  std::printf("no violation; %.1f s, %.0f checks a second\n", dSeconds,
              static_cast<double>(a.lChecks) / dSeconds);
}

}  // namespace

int main(int lCount, char** aWords) {
  if (lCount == 2 && std::strcmp(aWords[1], "--help") == 0) return Help(false);
  Arguments aArguments;
  if (!Read(lCount, aWords, aArguments)) return Help(true);
  std::printf("seed %llu\n", static_cast<unsigned long long>(aArguments.lSeed));
  std::fflush(stdout);
  const auto aStart = std::chrono::steady_clock::now();
  Simulated::Totals aAll;
  for (std::uint64_t lMachine = 0; aAll.lChecks < aArguments.lChecks; ++lMachine) {
    Simulated::Trial aTrial(aArguments.lSeed + lMachine);
    aAll.Add(aTrial.Run(std::min(lChecksOfOneMachine, aArguments.lChecks - aAll.lChecks)));
  }
  Print(aAll, std::chrono::duration<double>(std::chrono::steady_clock::now() - aStart).count());
  return 0;
}
