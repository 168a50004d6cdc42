// StandingClock: a clock that stands still until told otherwise; Wait moves it on. It is the clock of the
// whole process while it lives, in the machine's own time zone. For the demonstration, whose week takes
// seconds, and for tests.
#pragma once

#include "platform/Clock.h"

class StandingClock : public Clock::Source {
 public:
  explicit StandingClock(DateTime dtStart);
  ~StandingClock() override;
  StandingClock(const StandingClock&) = delete;
  StandingClock& operator=(const StandingClock&) = delete;

  DateTime WallTime() override { return dtWall; }
  double SteadySeconds() override { return dSteady; }
  double BootSeconds() override { return dBoot; }
  void Wait(double dSeconds) override { Advance(dSeconds); }

  void Advance(double dSeconds);                    // all three
  void SetWall(DateTime dtNew) { dtWall = dtNew; }  // as when an operator sets the clock

 private:
  DateTime dtWall;
  double dSteady = 1000;
  double dBoot = 2000;
};
