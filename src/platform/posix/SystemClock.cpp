#include <time.h>

#include <algorithm>

#include "platform/Clock.h"

namespace {

double Seconds(clockid_t lClock) {
  timespec aTime{};
  clock_gettime(lClock, &aTime);
  return static_cast<double>(aTime.tv_sec) + static_cast<double>(aTime.tv_nsec) / 1e9;
}

class SystemSource : public Clock::Source {
 public:
  DateTime WallTime() override {
    timespec aTime{};
    clock_gettime(CLOCK_REALTIME, &aTime);
    if (aTime.tv_sec != lSecond) LookAtZone(aTime.tv_sec);
    return AddSeconds(dtSecond, static_cast<double>(aTime.tv_nsec) / 1e9);
  }

  std::int32_t MinutesEastOfUtc(DateTime dtLocal) override {
    const DateParts aParts = SplitDateTime(dtLocal);
    const time_t lNow = time(nullptr);
    if (lNow == lAskedAt && dtLocal == dtAsked) return lMinutesEast;
    tzset();
    tm aNow{};
    localtime_r(&lNow, &aNow);
    tm aTried{};
    for (const int iSummerTime : {aNow.tm_isdst, -1}) {
      aTried = {};
      aTried.tm_year = aParts.lYear - 1900;
      aTried.tm_mon = aParts.lMonth - 1;
      aTried.tm_mday = aParts.lDay;
      aTried.tm_hour = aParts.lHour;
      aTried.tm_min = aParts.lMinute;
      aTried.tm_sec = aParts.lSecond;
      aTried.tm_isdst = iSummerTime;
      mktime(&aTried);  // moves the hour where it was told the wrong kind of time
      if (aTried.tm_hour == aParts.lHour) break;
    }
    lAskedAt = lNow;
    dtAsked = dtLocal;
    lMinutesEast = static_cast<std::int32_t>(aTried.tm_gmtoff / 60);
    return lMinutesEast;
  }

  double SteadySeconds() override { return Seconds(CLOCK_MONOTONIC); }
  double BootSeconds() override { return Seconds(CLOCK_BOOTTIME); }

  // A signal ends the wait early, so that Ctrl-C is noticed at once.
  void Wait(double dSeconds) override {
    const double dBounded = std::clamp(dSeconds, 0.0, 86400.0);
    const auto lWhole = static_cast<time_t>(dBounded);
    const timespec aTime{lWhole, static_cast<long>((dBounded - static_cast<double>(lWhole)) * 1e9)};
    nanosleep(&aTime, nullptr);
  }

 private:
  // Once a second is enough: each look asks the system for the zone's file.
  void LookAtZone(time_t lNow) {
    tzset();  // localtime_r alone would miss a change of the machine's time zone
    tm aLocal{};
    localtime_r(&lNow, &aLocal);
    lSecond = lNow;
    dtSecond = JoinDateTime({.lYear = aLocal.tm_year + 1900,
                             .lMonth = aLocal.tm_mon + 1,
                             .lDay = aLocal.tm_mday,
                             .lHour = aLocal.tm_hour,
                             .lMinute = aLocal.tm_min,
                             .lSecond = aLocal.tm_sec});
  }

  time_t lSecond = -1;    // the one looked at last
  DateTime dtSecond = 0;  // the same as local time
  // The last answer of MinutesEastOfUtc, and when it was asked for; good for that second too.
  time_t lAskedAt = -1;
  DateTime dtAsked = 0;
  std::int32_t lMinutesEast = 0;
};

}  // namespace

Clock::Source& Clock::System() {
  static SystemSource aSource;
  return aSource;
}
