#include "platform/StandingClock.h"

StandingClock::StandingClock(DateTime dtStart) : dtWall(dtStart) {
  Clock::Replace(this);
}

StandingClock::~StandingClock() {
  Clock::Replace(nullptr);
}

void StandingClock::Advance(double dSeconds) {
  dtWall = AddSeconds(dtWall, dSeconds);
  dSteady += dSeconds;
  dBoot += dSeconds;
}
