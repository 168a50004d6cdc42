#include "base/DateTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace {

constexpr std::int64_t lDayOf1970 = 25569;  // 1 January 1970, counted from 30 December 1899

// Years 1 to 9999, which is what four digits can show. A number that is none counts as day 0.
double Bounded(DateTime dtMoment) {
  constexpr double dFirst = -693593;
  constexpr double dLast = 2958466 - 1 / dSecondsPerDay;
  return std::isnan(dtMoment) ? 0 : std::clamp(dtMoment, dFirst, dLast);
}

template <typename... Numbers>
std::string Format(const char* szForm, Numbers... aNumbers) {
  std::array<char, 64> aBuffer{};
  std::snprintf(aBuffer.data(), aBuffer.size(), szForm, aNumbers...);
  return aBuffer.data();
}

// "11/15/1999 5:44:21 PM" without the detour over a format: who reads a long log writes each time again.
class GeneralText {
 public:
  explicit GeneralText(const DateParts& aParts) {
    Put(aParts.lMonth, '/');
    Put(aParts.lDay, '/');
    for (const auto lScale : {1000, 100, 10})
      if (aParts.lYear < lScale) *pPast++ = '0';
    Put(aParts.lYear, ' ');
    lTime = static_cast<std::size_t>(pPast - aBuffer.data());
    Put((aParts.lHour + 11) % 12 + 1, ':');
    PutTwo(aParts.lMinute, ':');
    PutTwo(aParts.lSecond, ' ');
    *pPast++ = aParts.lHour < 12 ? 'A' : 'P';
    *pPast++ = 'M';
  }
  GeneralText(const GeneralText&) = delete;
  GeneralText& operator=(const GeneralText&) = delete;

  std::string_view Whole() const {
    return {aBuffer.data(), static_cast<std::size_t>(pPast - aBuffer.data())};
  }
  std::string_view Time() const { return Whole().substr(lTime); }

 private:
  void Put(std::int32_t lNumber, char chAfter) {
    pPast = std::to_chars(pPast, aBuffer.data() + aBuffer.size(), lNumber).ptr;
    *pPast++ = chAfter;
  }
  void PutTwo(std::int32_t lNumber, char chAfter) {
    if (lNumber < 10) *pPast++ = '0';
    Put(lNumber, chAfter);
  }

  std::array<char, 32> aBuffer{};
  char* pPast = aBuffer.data();
  std::size_t lTime = 0;
};

}  // namespace

DateParts SplitDateTime(DateTime dtMoment) {
  const auto lSeconds = static_cast<std::int64_t>(std::llround(Bounded(dtMoment) * dSecondsPerDay));
  const auto aDays = std::chrono::floor<std::chrono::days>(std::chrono::seconds(lSeconds));
  const auto lInDay = static_cast<std::int32_t>(lSeconds - aDays.count() * 86400);
  const std::chrono::sys_days aDay{aDays - std::chrono::days(lDayOf1970)};
  const std::chrono::year_month_day aDate{aDay};
  DateParts aParts;
  aParts.lYear = static_cast<int>(aDate.year());
  aParts.lMonth = static_cast<std::int32_t>(static_cast<unsigned>(aDate.month()));
  aParts.lDay = static_cast<std::int32_t>(static_cast<unsigned>(aDate.day()));
  aParts.lHour = lInDay / 3600;
  aParts.lMinute = lInDay / 60 % 60;
  aParts.lSecond = lInDay % 60;
  aParts.lWeekday = static_cast<std::int32_t>(std::chrono::weekday{aDay}.c_encoding()) + 1;
  return aParts;
}

DateTime JoinDateTime(const DateParts& aParts) {
  const auto aMonth = std::chrono::year{aParts.lYear} / 1 + std::chrono::months{aParts.lMonth - 1};
  const std::chrono::sys_days aFirst{aMonth / 1};
  const auto lDays = aFirst.time_since_epoch().count() + aParts.lDay - 1 + lDayOf1970;
  const double dSeconds = aParts.lHour * 3600.0 + aParts.lMinute * 60.0 + aParts.lSecond;
  return static_cast<double>(lDays) + dSeconds / dSecondsPerDay;
}

DateTime AddSeconds(DateTime dtMoment, double dSeconds) {
  return dtMoment + dSeconds / dSecondsPerDay;
}

DateTime AddMinutes(DateTime dtMoment, double dMinutes) {
  return AddSeconds(dtMoment, dMinutes * 60);
}

DateTime AddDays(DateTime dtMoment, std::int32_t lDays) {
  return dtMoment + lDays;
}

std::int64_t SecondsBetween(DateTime dtFirst, DateTime dtSecond) {
  return std::llround((Bounded(dtSecond) - Bounded(dtFirst)) * dSecondsPerDay);
}

std::string FormatGeneral(DateTime dtMoment) {
  return std::string(GeneralText(SplitDateTime(dtMoment)).Whole());
}

std::string FormatTimeOfDay(DateTime dtMoment) {
  return std::string(GeneralText(SplitDateTime(dtMoment)).Time());
}

std::string FormatDay(DateTime dtMoment) {
  const auto aParts = SplitDateTime(dtMoment);
  return Format("%04d%02d%02d", aParts.lYear, aParts.lMonth, aParts.lDay);
}

std::string FormatMonth(DateTime dtMoment) {
  const auto aParts = SplitDateTime(dtMoment);
  return Format("%04d%02d", aParts.lYear, aParts.lMonth);
}

bool ParseGeneral(std::string_view szText, DateTime& dtMoment) {
  DateParts aParts;
  const char* const pEnd = szText.data() + szText.size();
  const char* pAt = szText.data();
  const auto Number = [&](std::int32_t& lNumber, char chAfter) {
    const auto aRead = std::from_chars(pAt, pEnd, lNumber);
    if (aRead.ec != std::errc{} || aRead.ptr == pEnd || *aRead.ptr != chAfter) return false;
    pAt = aRead.ptr + 1;
    return lNumber >= 0 && lNumber <= 9999;
  };
  if (!Number(aParts.lMonth, '/') || !Number(aParts.lDay, '/') || !Number(aParts.lYear, ' ') ||
      !Number(aParts.lHour, ':') || !Number(aParts.lMinute, ':') || !Number(aParts.lSecond, ' ')) {
    return false;
  }
  aParts.lHour = aParts.lHour % 12 + (std::string_view(pAt, pEnd) == "PM" ? 12 : 0);
  const auto dtRead = JoinDateTime(aParts);
  if (GeneralText(SplitDateTime(dtRead)).Whole() != szText)
    return false;  // a leading zero, 2/30, 25:00:00, "am"
  dtMoment = dtRead;
  return true;
}
