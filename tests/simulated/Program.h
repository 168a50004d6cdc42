// Program: the one place of the simulation that looks into the program's own variables, and starts it as its
// two front ends do.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/DateTime.h"

namespace Simulated::Program {

struct Site {
  std::string szUrl, szIp, szRemark;
  int iStatus = 0, iEnabled = 0;
  std::int32_t lTimeOut = 0;
  bool operator==(const Site&) const = default;
};

struct Options {
  std::int32_t lInterval = 0, lWarning = 0;
  std::string szEmail, szName, szServer;
  std::int32_t lPort = 0;
  std::string szLogPath;
  std::int32_t lLogPeriod = 0, lLimitFiles = 0, lMostFiles = 0, lSkipDisabled = 0, lCookies = 0;
  bool operator==(const Options&) const = default;
};

std::int32_t SiteCount();
Site SiteIn(std::int32_t lSlot);
Options Current();
DateTime NextCheck();
// How many sites the program says are not saved.
std::int32_t Unsaved();
// How many lines it says the log misses, since the last call.
std::int32_t TakeMissingLines();

// A process begins: nothing of the one before is left in memory.
void Begin();
// What the program does before its first tick. bKeep: one pass for a scheduler, which goes on where the last
// one left off; else a program that stays.
void Load(bool bKeep);

}  // namespace Simulated::Program
