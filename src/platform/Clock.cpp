#include "platform/Clock.h"

#include <cmath>
#include <optional>

namespace {

// The moment from which the steady and the boot date-time count, taken together so that they agree.
struct Start {
  DateTime dtWall;
  double dSteady;
  double dBoot;
};

Clock::Source* pReplaced = nullptr;
std::optional<Start> aStart;

Clock::Source& Current() {
  return pReplaced != nullptr ? *pReplaced : Clock::System();
}

const Start& Started() {
  if (!aStart) aStart = {Current().WallTime(), Current().SteadySeconds(), Current().BootSeconds()};
  return *aStart;
}

}  // namespace

std::int32_t Clock::Source::MinutesEastOfUtc(DateTime dtLocal) {
  return System().MinutesEastOfUtc(dtLocal);
}

DateTime Clock::Now() {
  constexpr double dHair = 1e-4;  // a whole second may lie a hair below itself
  return std::floor(Current().WallTime() * dSecondsPerDay + dHair) / dSecondsPerDay;
}

std::int32_t Clock::MinutesEastOfUtc(DateTime dtLocal) {
  return Current().MinutesEastOfUtc(dtLocal);
}

DateTime Clock::SteadyNow() {
  const auto& aFrom = Started();
  return AddSeconds(aFrom.dtWall, Current().SteadySeconds() - aFrom.dSteady);
}

DateTime Clock::BootNow() {
  const auto& aFrom = Started();
  return AddSeconds(aFrom.dtWall, Current().BootSeconds() - aFrom.dBoot);
}

void Clock::Wait(double dSeconds) {
  Current().Wait(dSeconds);
}

void Clock::Replace(Source* pSource) {
  pReplaced = pSource;
  aStart.reset();
}

double Clock::UnixNow() {
  constexpr std::int64_t lMinute = 60;
  const DateTime dtNow = Now();
  const DateTime dtEpoch = JoinDateTime({.lYear = 1970, .lMonth = 1, .lDay = 1});
  return static_cast<double>(SecondsBetween(dtEpoch, dtNow) - MinutesEastOfUtc(dtNow) * lMinute);
}
