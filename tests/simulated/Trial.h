// Trial: one simulated machine through its life: processes that start, watch, are used, fail, are killed and
// start again.
#pragma once

#include <cstdint>
#include <memory>

#include "simulated/Desk.h"
#include "simulated/PassBook.h"
#include "simulated/Random.h"
#include "simulated/Store.h"
#include "simulated/World.h"

namespace Simulated {

class Trial {
 public:
  explicit Trial(std::uint64_t lSeed);

  // Lives on until that many sites were checked.
  void Run(std::int64_t lChecks);

 private:
  void LiveOnce();
  bool Boot(bool bKeep);  // false when the machine went away meanwhile
  void AfterPowerCut();
  void Watch();
  void WaitForPass();
  void OnePass();
  void PlanPass();
  void Operate();
  void Command();
  void ChangeClocks();
  void ForgetOldLogs();
  void RequireNothingGrew();

  Random aRandom;
  World aWorld;
  PassBook aBook;
  std::unique_ptr<Desk> pDesk;
  bool bTrouble = false;  // a call failed in a command: the process is to be started again
};

}  // namespace Simulated
