// CookiePolicy: the user's own cookie setting is replaced by the program's while a pass runs and put back
// after it, whichever way the pass ends. What the user has not set is not invented: a missing value is
// missing again afterwards, and a missing key or a value of another type is left alone.
#pragma once

#include <cstdint>
#include <optional>

class CookiePolicy {
 public:
  // Replaces the user's value by iAllowType.
  explicit CookiePolicy(std::int16_t iAllowType);
  ~CookiePolicy();  // puts it back
  CookiePolicy(const CookiePolicy&) = delete;
  CookiePolicy& operator=(const CookiePolicy&) = delete;

  // Puts the user's value back where a killed process left the program's own. For the start, under the lock
  // of the single instance.
  static void RestoreAfterKill();

 private:
  std::optional<std::int32_t> SavedAllowCookies;  // nothing: the value was missing
  bool bReplaced = false;
};
