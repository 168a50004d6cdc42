#include <algorithm>
#include <cmath>

#include "platform/Clock.h"
#include "platform/windows/Interrupt.h"
#include "platform/windows/System.h"

namespace {

class SystemSource : public Clock::Source {
 public:
  DateTime WallTime() override {
    SYSTEMTIME aNow;
    GetLocalTime(&aNow);
    const DateParts aParts{.lYear = aNow.wYear,
                           .lMonth = aNow.wMonth,
                           .lDay = aNow.wDay,
                           .lHour = aNow.wHour,
                           .lMinute = aNow.wMinute,
                           .lSecond = aNow.wSecond};
    return AddSeconds(JoinDateTime(aParts), aNow.wMilliseconds / 1000.0);
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
