// OptionsBook: what the settings must be, in memory and in the store, and whose the cookie policy is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulated/Program.h"

namespace Simulated {

class OptionsBook {
 public:
  Program::Options aNow;      // in memory
  bool bCookiesOwed = false;  // calls failed in a pass: the user's policy may not be back yet

  void PlanLoad();
  void PlanSave(const Program::Options& aNew);
  void Conclude();  // the plan holds
  // The store has what was before or what was planned: whole, or each value for itself.
  void ConcludeAfterTrouble(bool bWhole);

  // The user's own policy; nothing: not set. They do not touch it while the program's own is left in its
  // place.
  void SetCookies(std::optional<std::int32_t> aPolicy);
  void RequireOwnCookies() const;
  void RequireProgramCookies() const;

  void Compare() const;

  static constexpr char szDefaultLogs[] = "/program/Logs";

 private:
  using Raw = std::vector<std::string>;  // what is stored, each value as text
  static Raw ReadStore();
  static std::optional<std::int32_t> CookiesNow();

  Program::Options aPlanned;
  Raw aStored, aPlannedStore;
  std::optional<std::int32_t> aCookies;
};

}  // namespace Simulated
