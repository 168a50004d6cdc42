#include "history/LogPeriod.h"

#include <algorithm>
#include <array>

#include "base/Text.h"
#include "history/LogHistory.h"

namespace {

constexpr double dSecond = 1 / dSecondsPerDay;

// Takes a number of so many digits and the text behind it off the front.
bool Take(std::string_view& szText, std::size_t lDigits, std::string_view szBehind, std::int32_t& lNumber) {
  if (szText.size() < lDigits || !Text::IsDigits(szText.substr(0, lDigits))) return false;
  lNumber = Text::LeadingNumber(szText.substr(0, lDigits));
  szText.remove_prefix(lDigits);
  if (!szText.starts_with(szBehind)) return false;
  szText.remove_prefix(szBehind.size());
  return true;
}

std::optional<DateTime> Ago(std::string_view szText, DateTime dtEnd) {
  constexpr std::string_view szUnits = "hdw";
  constexpr std::array aHours{1, 24, 168};
  constexpr std::size_t lMostDigits = 4;
  if (szText.size() < 2 || szText.size() > lMostDigits + 1) return {};
  const auto lUnit = szUnits.find(szText.back());
  szText.remove_suffix(1);
  if (lUnit == std::string_view::npos || !Text::IsDigits(szText)) return {};
  return AddMinutes(dtEnd, -60.0 * Text::LeadingNumber(szText) * aHours[lUnit]);
}

bool Same(const DateParts& aLeft, const DateParts& aRight) {
  const auto Parts = [](const DateParts& a) {
    return std::array{a.lYear, a.lMonth, a.lDay, a.lHour, a.lMinute, a.lSecond};
  };
  return Parts(aLeft) == Parts(aRight);
}

}  // namespace

LogPeriod LogPeriod::Of(const LogHistory& aHistory) {
  LogPeriod aAll;
  for (const auto aRef : aHistory.Passes()) {
    const auto& aPass = aHistory.Pass(aRef);
    if (aPass.dtStart <= 0) continue;
    aAll.dtFrom = aAll.dtFrom > 0 ? std::min(aAll.dtFrom, aPass.dtStart) : aPass.dtStart;
    aAll.dtPast = std::max(aAll.dtPast, aPass.dtLast);
  }
  return aAll;
}

LogPeriod LogPeriod::Last(const LogHistory& aHistory, double dDays) {
  const auto dtPast = Of(aHistory).dtPast + dSecond;
  return {dtPast - dDays, dtPast};
}

std::optional<DateTime> LogPeriod::Moment(std::string_view szText, DateTime dtEnd, bool bPast) {
  if (const auto dtAgo = Ago(szText, dtEnd)) return dtAgo;
  DateParts aParts;
  if (!Take(szText, 4, "-", aParts.lYear) || !Take(szText, 2, "-", aParts.lMonth) ||
      !Take(szText, 2, "", aParts.lDay))
    return {};
  const bool bDay = szText.empty();
  if (!bDay) {
    if (szText.front() != ' ' && szText.front() != 'T') return {};
    szText.remove_prefix(1);
    if (!Take(szText, 2, ":", aParts.lHour) || !Take(szText, 2, "", aParts.lMinute)) return {};
    if (szText.starts_with(':')) {
      szText.remove_prefix(1);
      if (!Take(szText, 2, "", aParts.lSecond)) return {};
    }
    if (!szText.empty()) return {};
  }
  // What is no day of the calendar comes back as another one.
  const auto dtMoment = JoinDateTime(aParts);
  if (!Same(SplitDateTime(dtMoment), aParts)) return {};
  return bDay && bPast ? AddDays(dtMoment, 1) : dtMoment;
}
