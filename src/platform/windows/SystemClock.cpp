#include <algorithm>
#include <cmath>

#include "platform/Clock.h"
#include "platform/windows/Interrupt.h"
#include "platform/windows/System.h"

namespace {

DateTime ToDateTime(const SYSTEMTIME& aTime) {
  return JoinDateTime({.lYear = aTime.wYear,
                       .lMonth = aTime.wMonth,
                       .lDay = aTime.wDay,
                       .lHour = aTime.wHour,
                       .lMinute = aTime.wMinute,
                       .lSecond = aTime.wSecond});
}

SYSTEMTIME ToSystemTime(DateTime dtMoment) {
  const DateParts aParts = SplitDateTime(dtMoment);
  SYSTEMTIME aTime{};
  aTime.wYear = static_cast<WORD>(aParts.lYear);
  aTime.wMonth = static_cast<WORD>(aParts.lMonth);
  aTime.wDay = static_cast<WORD>(aParts.lDay);
  aTime.wHour = static_cast<WORD>(aParts.lHour);
  aTime.wMinute = static_cast<WORD>(aParts.lMinute);
  aTime.wSecond = static_cast<WORD>(aParts.lSecond);
  return aTime;
}

std::int32_t MinutesBetween(DateTime dtUtc, DateTime dtLocal) {
  return static_cast<std::int32_t>(std::lround(static_cast<double>(SecondsBetween(dtUtc, dtLocal)) / 60));
}

class SystemSource : public Clock::Source {
 public:
  DateTime WallTime() override {
    SYSTEMTIME aNow;
    GetLocalTime(&aNow);
    return AddSeconds(ToDateTime(aNow), aNow.wMilliseconds / 1000.0);
  }

  std::int32_t MinutesEastOfUtc(DateTime dtLocal) override {
    SYSTEMTIME aUtc, aLocal;
    GetSystemTime(&aUtc);
    GetLocalTime(&aLocal);
    const std::int32_t lNow = MinutesBetween(ToDateTime(aUtc), ToDateTime(aLocal));
    aUtc = ToSystemTime(AddMinutes(dtLocal, -lNow));
    if (SystemTimeToTzSpecificLocalTime(nullptr, &aUtc, &aLocal) != 0 &&
        MinutesBetween(ToDateTime(aUtc), ToDateTime(aLocal)) == lNow)
      return lNow;
    aLocal = ToSystemTime(dtLocal);
    if (TzSpecificLocalTimeToSystemTime(nullptr, &aLocal, &aUtc) == 0) return lNow;
    return MinutesBetween(ToDateTime(aUtc), ToDateTime(aLocal));
  }

  double SteadySeconds() override {
    ULONGLONG lTicks = 0;  // of 100 ns, without the time asleep
    QueryUnbiasedInterruptTime(&lTicks);
    return static_cast<double>(lTicks) / 1e7;
  }

  double BootSeconds() override { return static_cast<double>(GetTickCount64()) / 1000; }

  // Ctrl-C ends the wait early.
  void Wait(double dSeconds) override {
    const double dBounded = std::clamp(dSeconds, 0.0, 86400.0);
    WaitForSingleObject(InterruptEvent(), static_cast<DWORD>(std::ceil(dBounded * 1000)));
  }
};

}  // namespace

Clock::Source& Clock::System() {
  static SystemSource aSource;
  return aSource;
}
