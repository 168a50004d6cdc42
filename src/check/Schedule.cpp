#include "check/Schedule.h"

#include "base/Strings.h"
#include "platform/Clock.h"

DateTime NextCheckTime = 0;

namespace {
// The same moment on the clock that nobody sets: if the wall clock is put back, NextCheckTime may lie days
// ahead.
DateTime dtNextByBoot = 0;
}  // namespace

void Schedule::SetNextCheck(std::int32_t lMinutes) {
  NextCheckTime = AddMinutes(Clock::Now(), lMinutes);
  dtNextByBoot = AddMinutes(Clock::BootNow(), lMinutes);
}

bool Schedule::IsDue() {
  // Whole seconds: added up in days they may lie a hair apart.
  return SecondsBetween(NextCheckTime, Clock::Now()) >= 0 || Clock::BootNow() >= dtNextByBoot;
}

std::string Schedule::NextPanelText() {
  return LoadResString(IDS_NEXT) + " " + FormatTimeOfDay(NextCheckTime);
}
