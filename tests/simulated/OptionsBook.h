// OptionsBook: what the settings must be, in memory and in the store, and whose the cookie policy is.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "persistence/Settings.h"

namespace Simulated {

class OptionsBook {
 public:
  SettingsRecord aNow;        // in memory
  bool bCookiesOwed = false;  // calls failed in a pass: the user's policy may not be back yet

  void PlanLoad();
  void PlanSave(const SettingsRecord& aNew);
  void Conclude();  // the plan holds
  // What SaveSettings answered is so.
  void RequireSaved(bool bSaid) const;
  // The store has what was before or what was planned: whole, or each value for itself.
  void ConcludeAfterTrouble(bool bWhole);

  // The user's own policy; nothing: not set. They do not touch it while the program's own is left in its
  // place.
  void SetCookies(std::optional<std::int32_t> aPolicy);
  void RequireOwnCookies() const;
  void RequireProgramCookies() const;

  static constexpr char szDefaultLogs[] = "/program/Logs";

 private:
  using Raw = std::map<std::string, std::string>;  // what is stored, by name, as text
  static Raw RawOf(const SettingsRecord& aSettings);
  static Raw ReadStore();
  static std::string Shown(const Raw& aRaw);
  static std::optional<std::int32_t> CookiesNow();

  SettingsRecord aPlanned;
  Raw aStored, aPlannedStore;
  std::optional<std::int32_t> aCookies;
};

}  // namespace Simulated
