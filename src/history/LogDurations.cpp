#include "history/LogDurations.h"

namespace {

constexpr std::int64_t lMinute = 60;
constexpr std::int64_t lPause = 5;  // seconds between two checks at most, where nothing came between them

// What lies behind a check: the seconds to the next start that is known, and whether it is the very next
// one's.
struct Behind {
  std::int64_t lSeconds;
  bool bNext;
};

CheckDuration Measure(const LogHistory& aHistory, LogHistory::LineRef aRef, Behind aBehind) {
  using enum CheckDuration::Known;
  const std::int64_t lHand = aHistory.Line(aRef).iSeconds;
  const auto lMinutes = aBehind.lSeconds < lHand ? -1 : (aBehind.lSeconds - lHand) / lMinute;
  if (lMinutes == 0) return {aRef, lHand, Exact};
  const auto lMost = lHand + lMinutes * lMinute;
  const bool bFits = lMinutes > 0 && aBehind.bNext && aBehind.lSeconds - lMost <= lPause;
  return bFits ? CheckDuration{aRef, lMost, Exact} : CheckDuration{aRef, lHand, Least};
}

// The start of the pass after this one; 0 where it has none.
DateTime NextStart(const LogHistory& aHistory, std::size_t lPass) {
  return lPass + 1 < aHistory.Passes().size() ? aHistory.Pass(aHistory.Passes()[lPass + 1]).dtStart : 0;
}

}  // namespace

void LogDurations::Of(const LogHistory& aHistory, std::size_t lPass, std::vector<CheckDuration>& aInto) {
  const auto aPass = aHistory.Passes()[lPass];
  const auto& aLines = aHistory.Pass(aPass);
  aInto.clear();
  for (auto lLine = aLines.lFirst; lLine < aLines.lPast; ++lLine)
    if (const LogHistory::LineRef aRef{aPass.lFile, lLine}; aHistory.Line(aRef).iKind == LineKind::Entry)
      aInto.push_back({aRef});
  auto dtNext = NextStart(aHistory, lPass);
  bool bNext = false;  // a pass begins when it is due, not when the one before has ended
  for (auto lAt = aInto.size(); lAt-- > 0;) {
    const auto& aLine = aHistory.Line(aInto[lAt].aRef);
    if (!aLine.bTimeKnown) {
      bNext = false;
      continue;
    }
    aInto[lAt] =
        Measure(aHistory, aInto[lAt].aRef, {dtNext > 0 ? SecondsBetween(aLine.dtMoment, dtNext) : -1, bNext});
    dtNext = aLine.dtMoment;
    bNext = true;
  }
  // A check without a time of its own began when the one before it ended.
  for (std::size_t lAt = 1; lAt + 1 < aInto.size(); ++lAt) {
    const auto& aBefore = aHistory.Line(aInto[lAt - 1].aRef);
    const auto& aAfter = aHistory.Line(aInto[lAt + 1].aRef);
    if (aHistory.Line(aInto[lAt].aRef).bTimeKnown || !aAfter.bTimeKnown || !aBefore.bTimeKnown ||
        aInto[lAt - 1].iKnown != CheckDuration::Known::Exact)
      continue;
    const auto lSeconds = SecondsBetween(aBefore.dtMoment, aAfter.dtMoment) - aInto[lAt - 1].lSeconds;
    aInto[lAt] = {aInto[lAt].aRef, lSeconds, CheckDuration::Known::Exact};
  }
}
