// Clock: the present moment, three ways. Shown and logged times are wall time; deadlines must not move
// when the wall clock is set, so they use the steady date-time; the schedule must count the hours that the
// machine slept, so it has the boot date-time. All three are date-times and agree while the clock runs true.
#pragma once

#include "base/DateTime.h"

namespace Clock {

// Where the moments come from. Tests put their own in place.
class Source {
 public:
  virtual ~Source() = default;
  virtual DateTime WallTime() = 0;  // local time
  // How many minutes local time is ahead of UTC at that local time, negative where it is behind. As on this
  // machine, unless a source lives somewhere else.
  virtual std::int32_t MinutesEastOfUtc(DateTime dtLocal);
  virtual double SteadySeconds() = 0;      // never set, may stand still while the machine sleeps
  virtual double BootSeconds() = 0;        // never set, counts sleep
  virtual void Wait(double dSeconds) = 0;  // returns after about that time
};

// The wall clock as people read it: the whole second that has begun, never one that is still to come.
DateTime Now();
// Minutes that hold at that local time; where the hour comes twice, those that hold at present are preferred.
std::int32_t MinutesEastOfUtc(DateTime dtLocal);
DateTime SteadyNow();  // wall time at the first use plus steady seconds since
DateTime BootNow();    // wall time at the first use plus boot seconds since
void Wait(double dSeconds);
double UnixNow();  // Now as whole seconds since 1970, UTC, for other tools

// Puts another source in place (not owned); nullptr puts the system's own back. SteadyNow and BootNow start
// anew.
void Replace(Source* pSource);

// The system's own source.
Source& System();

}  // namespace Clock
