#include "history/LogWords.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>
#include <utility>

#include "base/Utf8.h"
#include "history/LogTables.h"
#include "log/LogGrammar.h"
#include "log/ResultText.h"
#include "platform/Inet.h"

namespace {

std::string TwoDigits(std::int32_t lNumber) {
  return (lNumber < 10 ? "0" : "") + std::to_string(lNumber);
}

std::string ClockTime(const DateParts& aParts, bool bSeconds) {
  return std::to_string((aParts.lHour + 11) % 12 + 1) + ":" + TwoDigits(aParts.lMinute) +
         (bSeconds ? ":" + TwoDigits(aParts.lSecond) : "") + (aParts.lHour < 12 ? " AM" : " PM");
}

std::string ThreeLetters(StringId iNames, std::int32_t lNumber) {
  return std::string(LoadResString(iNames).substr(static_cast<std::size_t>(lNumber - 1) * 3, 3));
}

std::string AnswerOf(const Outage& aOutage) {
  return LogWords::PlainField(Utf8::Shorten(aOutage.szText, 200));
}

}  // namespace

std::string LogWords::Count(std::uint64_t lNumber) {
  auto szDigits = std::to_string(lNumber);
  for (auto lAt = szDigits.size(); lAt > 3; lAt -= 3)
    szDigits.insert(lAt - 3, ",");
  return szDigits;
}

std::string LogWords::Length(std::int64_t lSeconds) {
  constexpr std::array<std::int64_t, 4> aUnits{86400, 3600, 60, 1};
  constexpr std::array aNames{IDS_LOG_DAYS, IDS_LOG_HOURS, IDS_LOG_MINUTES, IDS_LOG_SECONDS};
  lSeconds = std::max<std::int64_t>(0, lSeconds);
  // What is not shown is rounded: a pause of three seconds less than ten hours is no "9 h 59 min".
  for (const auto& [lFrom, lStep] : {std::pair<std::int64_t, std::int64_t>{600, 60}, {86400, 3600}})
    if (lSeconds >= lFrom) lSeconds = (lSeconds + lStep / 2) / lStep * lStep;
  std::size_t lUnit = 0;
  while (lUnit < 3 && lSeconds < aUnits[lUnit])
    ++lUnit;
  auto szWords = FillResString(aNames[lUnit], {Count(static_cast<std::uint64_t>(lSeconds / aUnits[lUnit]))});
  if (lUnit == 2 && lSeconds >= 600) return szWords;
  const auto lRest = lUnit < 3 ? lSeconds % aUnits[lUnit] / aUnits[lUnit + 1] : 0;
  if (lRest > 0) szWords += " " + FillResString(aNames[lUnit + 1], {std::to_string(lRest)});
  return szWords;
}

std::string LogWords::Day(DateTime dtMoment) {
  const auto aParts = SplitDateTime(dtMoment);
  return ThreeLetters(IDS_LOG_WEEKDAYS, aParts.lWeekday) + " " + ThreeLetters(IDS_LOG_MONTHS, aParts.lMonth) +
         " " + std::to_string(aParts.lDay) + " " + std::to_string(aParts.lYear);
}

std::string LogWords::Moment(DateTime dtMoment) {
  if (dtMoment < 1) return LoadResString(IDS_LOG_PASS_UNKNOWN_TIME);
  return Day(dtMoment) + ", " + ClockTime(SplitDateTime(dtMoment), false);
}

std::string LogWords::MomentToSecond(DateTime dtMoment) {
  return Day(dtMoment) + ", " + ClockTime(SplitDateTime(dtMoment), true);
}

std::string LogWords::MomentForSorting(DateTime dtMoment) {
  const auto aParts = SplitDateTime(dtMoment);
  std::array<char, 64> aBuffer{};
  std::snprintf(aBuffer.data(), aBuffer.size(), "%04d-%02d-%02d %02d:%02d:%02d", aParts.lYear, aParts.lMonth,
                aParts.lDay, aParts.lHour, aParts.lMinute, aParts.lSecond);
  return aBuffer.data();
}

std::string LogWords::Share(std::uint64_t lPart, std::uint64_t lWhole) {
  if (lWhole == 0) return "-";
  auto lHundredths = lPart * 10000 / lWhole;
  if (lPart > 0 && lHundredths == 0) lHundredths = 1;
  auto szShare = std::to_string(lHundredths / 100);
  if (lHundredths % 100 != 0) szShare += "." + TwoDigits(static_cast<std::int32_t>(lHundredths % 100));
  return szShare + "%";
}

std::string LogWords::Share(const Availability& aAvailability) {
  return Share(static_cast<std::uint64_t>(aAvailability.lUp),
               static_cast<std::uint64_t>(aAvailability.lWatched));
}

std::string LogWords::Name(const SiteSummary& aSite) {
  return Utf8::Clean(Utf8::Shorten(aSite.szSite, 200));
}

StringId LogWords::StateName(SiteState iState) {
  constexpr std::array aNames{IDS_LOG_UNWATCHED, IDS_LOG_UP, IDS_LOG_WARNING, IDS_LOG_DOWN, IDS_LOG_DISABLED};
  return aNames[static_cast<std::size_t>(iState)];
}

StringId LogWords::OutcomeName(Outcome iOutcome) {
  constexpr std::array aNames{IDS_LOG_NOTHING_SAID, IDS_LOG_UP,      IDS_LOG_DOWN,
                              IDS_LOG_DISABLED,     IDS_LOG_WARNING, IDS_LOG_UNREAD};
  return aNames[static_cast<std::size_t>(iOutcome)];
}

std::string LogWords::State(const SiteSummary& aSite) {
  if (aSite.iCurrent != SiteState::Unwatched) return LoadResString(StateName(aSite.iCurrent));
  return LoadResString(aSite.lChecks == 0 ? IDS_LOG_NEVER_CHECKED : IDS_LOG_NO_LONGER_CHECKED);
}

std::string LogWords::OutageEndWords(const Outage& aOutage) {
  if (aOutage.iEnd == OutageEnd::StillDown) return LoadResString(IDS_LOG_STILL_DOWN);
  const auto szTo = Moment(aOutage.dtTo);
  if (aOutage.iEnd == OutageEnd::NoLongerWatched) return FillResString(IDS_LOG_NO_LONGER_WATCHED, {szTo});
  return aOutage.bEndKnown ? szTo : FillResString(IDS_LOG_OR_EARLIER, {szTo});
}

std::string LogWords::OutageLength(const Outage& aOutage) {
  const auto szLength = Length(aOutage.lSeconds);
  return aOutage.lUnwatched > 0
             ? FillResString(IDS_LOG_LENGTH_UNWATCHED, {szLength, Length(aOutage.lUnwatched)})
             : szLength;
}

// Commonly one mail, and it went out: then only how long that took.
std::string LogWords::Mails(const Outage& aOutage) {
  std::string szAll;
  const auto After = [&](const MailAttempt& aMail) {
    return Length(SecondsBetween(aOutage.dtFrom, aMail.dtMoment));
  };
  if (aOutage.aMails.size() == 1 && aOutage.aMails.front().bSent)
    return FillResString(IDS_LOG_MAIL_SENT_AFTER, {After(aOutage.aMails.front())});
  for (const auto& aMail : aOutage.aMails)
    szAll += (szAll.empty() ? "" : "; ") +
             (aMail.bSent ? FillResString(IDS_LOG_MAIL_SENT_AT, {Moment(aMail.dtMoment), After(aMail)})
                          : FillResString(IDS_LOG_MAIL_FAILED_AT, {Moment(aMail.dtMoment)}));
  return szAll.empty() ? "-" : szAll;
}

std::string LogWords::BrokenOff(const LogSummary& aSummary) {
  const auto lCount = aSummary.lEndless + aSummary.lStartless;
  return FillResString(lCount == 1 ? IDS_LOG_FACT_BROKEN_OFF_ONE : IDS_LOG_FACT_BROKEN_OFF_VALUE,
                       {Count(lCount)});
}

std::string LogWords::ChosenSites(const LogSummary& aSummary) {
  return FillResString(aSummary.lPartial == 1 ? IDS_LOG_FACT_PARTIAL_ONE : IDS_LOG_FACT_PARTIAL_VALUE,
                       {Count(aSummary.lPartial)});
}

std::string LogWords::NoEnd(const LogPass& aPass) {
  if (!aPass.bManual || aPass.lEntries == 0) return LoadResString(IDS_LOG_PASS_ENDLESS);
  return FillResString(IDS_LOG_PASS_PARTIAL,
                       {aPass.lEntries == 1 ? LoadResString(IDS_CLI_SITE_ONE)
                                            : FillResString(IDS_CLI_SITE_MANY, {Count(aPass.lEntries)})});
}

std::string LogWords::Checks(const LogSummary& aSummary) {
  std::uint64_t lChecks = 0;
  std::uint64_t lSuccesses = 0;
  for (const auto& aSite : aSummary.aSites) {
    lChecks += aSite.lChecks;
    lSuccesses += aSite.lSuccesses;
  }
  return FillResString(IDS_LOG_FACT_CHECKS_VALUE,
                       {Count(lChecks), Count(lSuccesses), Share(lSuccesses, lChecks)});
}

std::string LogWords::Gap(const StateInterval& aGap) {
  return FillResString(IDS_LOG_FACT_GAP, {Moment(aGap.dtFrom), Moment(aGap.dtTo),
                                          Length(SecondsBetween(aGap.dtFrom, aGap.dtTo))});
}

std::vector<std::string> LogWords::Gaps(const LogSummary& aSummary) {
  constexpr std::size_t lMostGaps = 10;
  const auto& aGaps = aSummary.aGaps;
  const auto lEarlier = aGaps.size() > lMostGaps ? aGaps.size() - lMostGaps : 0;
  std::vector<std::string> aLines;
  std::int64_t lSeconds = 0;
  for (std::size_t lGap = 0; lGap < aGaps.size(); ++lGap) {
    if (lGap < lEarlier) lSeconds += SecondsBetween(aGaps[lGap].dtFrom, aGaps[lGap].dtTo);
    if (lGap + 1 == lEarlier)
      aLines.push_back(FillResString(IDS_LOG_FACT_GAPS_MORE, {Count(lEarlier), Length(lSeconds)}));
    if (lGap >= lEarlier) aLines.push_back(Gap(aGaps[lGap]));
  }
  return aLines;
}

bool LogWords::Overdue(const LogSummary& aSummary, DateTime dtNow) {
  constexpr double dWithoutSchedule = 2.0 / 24;
  if (aSummary.dtLastCheck <= 0) return false;
  return dtNow > (aSummary.dtNextDue > 0 ? aSummary.dtNextDue : aSummary.dtLastCheck + dWithoutSchedule);
}

std::string LogWords::LastCheck(const LogSummary& aSummary, DateTime dtNow) {
  const auto lAge = SecondsBetween(aSummary.dtLastCheck, dtNow);
  const auto szMoment = Moment(aSummary.dtLastCheck);
  return lAge < 0 ? szMoment : FillResString(IDS_LOG_AGE, {szMoment, Length(lAge)});
}

std::string LogWords::Headline(const LogSummary& aSummary, DateTime dtNow) {
  const auto lDown = aSummary.Count(SiteState::Down);
  const auto lWarning = aSummary.Count(SiteState::Warning);
  const auto lWatched = lDown + lWarning + aSummary.Count(SiteState::Up);
  if (aSummary.lEntries == 0) return LoadResString(IDS_LOG_HEAD_EMPTY);
  if (lWatched == 0) return LoadResString(IDS_LOG_HEAD_NONE);
  const bool bThen = Overdue(aSummary, dtNow);
  const auto lFailed = lDown > 0 ? lDown : lWarning;
  const auto Pick = [&](StringId iIs, StringId iWas) {
    return FillResString(bThen ? iWas : iIs, {Count(lWatched), Count(lFailed), LastCheck(aSummary, dtNow)});
  };
  if (lFailed == 0)
    return lWatched == 1 ? Pick(IDS_LOG_HEAD_UP_ONE, IDS_LOG_HEAD_WAS_UP_ONE)
                         : Pick(IDS_LOG_HEAD_UP_ALL, IDS_LOG_HEAD_WAS_UP_ALL);
  if (lDown > 0)
    return lWatched == 1  ? Pick(IDS_LOG_HEAD_DOWN_ONLY, IDS_LOG_HEAD_WAS_DOWN_ONLY)
           : lFailed == 1 ? Pick(IDS_LOG_HEAD_DOWN_ONE, IDS_LOG_HEAD_WAS_DOWN_ONE)
                          : Pick(IDS_LOG_HEAD_DOWN, IDS_LOG_HEAD_WAS_DOWN);
  return lWatched == 1  ? Pick(IDS_LOG_HEAD_WARNING_ONLY, IDS_LOG_HEAD_WAS_WARNING_ONLY)
         : lFailed == 1 ? Pick(IDS_LOG_HEAD_WARNING_ONE, IDS_LOG_HEAD_WAS_WARNING_ONE)
                        : Pick(IDS_LOG_HEAD_WARNING, IDS_LOG_HEAD_WAS_WARNING);
}

namespace {

constexpr std::size_t lMostNamed = 5;

// The sites that are failing at the end of the log.
std::size_t TellFailing(const LogSummary& aSummary, std::vector<std::string>& aLead) {
  std::size_t lNamed = 0;
  for (const auto lSite : LogWords::ByInterest(aSummary)) {
    const auto& aSite = aSummary.aSites[lSite];
    const auto* pRun = aSite.Current();
    if (!pRun || ++lNamed > lMostNamed) continue;
    const auto szSince = LogWords::Moment(pRun->dtFrom);
    if (aSite.iCurrent == SiteState::Warning) {
      aLead.push_back(
          FillResString(IDS_LOG_HEAD_WARNING_SITE, {LogWords::Name(aSite), szSince, AnswerOf(*pRun)}));
      continue;
    }
    aLead.push_back(
        FillResString(pRun->bStartKnown ? IDS_LOG_HEAD_DOWN_SITE : IDS_LOG_HEAD_DOWN_SITE_LEAST,
                      {LogWords::Name(aSite), szSince, LogWords::OutageLength(*pRun), AnswerOf(*pRun)}));
    if (pRun->dtRestarted > 0)
      aLead.back() += ". " + FillResString(IDS_LOG_RESTARTED, {LogWords::Moment(pRun->dtRestarted)});
  }
  if (lNamed > lMostNamed)
    aLead.push_back(FillResString(IDS_LOG_HEAD_MORE_SITES, {LogWords::Count(lNamed - lMostNamed)}));
  return lNamed;
}

// The outages of which nobody heard, or late, because a mail could not be sent; the latest first.
void TellUntold(const LogSummary& aSummary, std::vector<std::string>& aLead) {
  std::size_t lUntold = 0;
  for (const auto& [pSite, pRun] : LogTables::Outages(aSummary, LogTables::Runs::Both)) {
    const auto aFailed = std::ranges::find(pRun->aMails, false, &MailAttempt::bSent);
    const auto* pSent = pRun->FirstSent();
    // What was told before has been told.
    if (aFailed == pRun->aMails.end() || (pSent && pSent->dtMoment < aFailed->dtMoment)) continue;
    if (++lUntold > lMostNamed) continue;
    const auto szFailed = LogWords::Moment(aFailed->dtMoment);
    aLead.push_back(pSent ? FillResString(IDS_LOG_UNTOLD_FOR,
                                          {LogWords::Name(*pSite),
                                           LogWords::Length(SecondsBetween(pRun->dtFrom, pSent->dtMoment)),
                                           szFailed, LogWords::Moment(pSent->dtMoment)})
                          : FillResString(IDS_LOG_UNTOLD,
                                          {LogWords::Name(*pSite), LogWords::OutageLength(*pRun), szFailed}));
  }
  if (lUntold > lMostNamed)
    aLead.push_back(FillResString(IDS_LOG_UNTOLD_MORE, {LogWords::Count(lUntold - lMostNamed)}));
}

// How many outages and hiccups there were, and who comes and goes.
void TellFailures(const LogSummary& aSummary, std::size_t lFailing, std::vector<std::string>& aLead) {
  std::size_t lOutages = 0, lHiccups = 0;
  const SiteSummary* pWorst = nullptr;
  for (const auto& aSite : aSummary.aSites) {
    lOutages += aSite.aOutages.size();
    lHiccups += aSite.aHiccups.size() - (aSite.iCurrent == SiteState::Warning ? 1 : 0);
    const auto* const pLongest = aSite.Longest();
    if (pLongest && (!pWorst || pLongest->lSeconds > pWorst->Longest()->lSeconds)) pWorst = &aSite;
  }
  if (lOutages == 0) aLead.push_back(LoadResString(IDS_LOG_NO_OUTAGES));
  if (pWorst && lOutages > lFailing)
    aLead.push_back(
        lOutages == 1
            ? FillResString(IDS_LOG_OUTAGES_ONE,
                            {LogWords::Name(*pWorst), LogWords::OutageLength(*pWorst->Longest())})
            : FillResString(IDS_LOG_OUTAGES_MANY, {LogWords::Count(lOutages), LogWords::Name(*pWorst),
                                                   LogWords::OutageLength(*pWorst->Longest())}));
  if (lHiccups > 0)
    aLead.push_back(
        FillResString(lHiccups == 1 ? IDS_LOG_HICCUPS_ONE : IDS_LOG_HICCUPS, {LogWords::Count(lHiccups)}));
  std::size_t lFlappingSites = 0;
  for (const auto& aSite : aSummary.aSites)
    if (const auto lMost = aSite.MostFailuresADay(); lMost >= lFlapping && ++lFlappingSites <= lMostNamed)
      aLead.push_back(FillResString(IDS_LOG_FLAPS, {LogWords::Name(aSite), LogWords::Count(lMost)}));
}

}  // namespace

std::vector<std::string> LogWords::Lead(const LogSummary& aSummary, DateTime dtNow) {
  std::vector<std::string> aLead;
  if (aSummary.lEntries == 0) return aLead;
  if (Overdue(aSummary, dtNow) && aSummary.dtNextDue > 0)
    aLead.push_back(
        FillResString(IDS_LOG_OVERDUE, {Moment(aSummary.dtLastCheck), Moment(aSummary.dtNextDue)}));
  else if (aSummary.dtLastCheck > 0)
    aLead.push_back(FillResString(IDS_LOG_AS_OF, {LastCheck(aSummary, dtNow)}));
  const auto lFailing = TellFailing(aSummary, aLead);
  TellUntold(aSummary, aLead);
  TellFailures(aSummary, lFailing, aLead);
  return aLead;
}

int LogWords::Rank(SiteState iState) {
  switch (iState) {
    case SiteState::Down:
      return 0;
    case SiteState::Warning:
      return 1;
    case SiteState::Up:
      return 2;
    default:
      return 3;
  }
}

std::vector<std::size_t> LogWords::ByInterest(const LogSummary& aSummary) {
  const auto& aSites = aSummary.aSites;
  std::vector<std::size_t> aOrder(aSites.size());
  std::iota(aOrder.begin(), aOrder.end(), std::size_t{0});
  const auto RankOf = [&](std::size_t lSite) { return Rank(aSites[lSite].iCurrent); };
  std::stable_sort(aOrder.begin(), aOrder.end(), [&](std::size_t lLeft, std::size_t lRight) {
    if (RankOf(lLeft) != RankOf(lRight)) return RankOf(lLeft) < RankOf(lRight);
    const auto &aOne = aSites[lLeft], &aOther = aSites[lRight];
    return std::pair(aOne.aOutages.size(), aOne.aHiccups.size()) >
           std::pair(aOther.aOutages.size(), aOther.aHiccups.size());
  });
  return aOrder;
}

std::string LogWords::PlainField(std::string_view szField) {
  return Utf8::Clean(LogGrammar::WithoutMarks(szField));
}

std::string LogWords::Answer(std::string_view szStatusText) {
  using namespace LogGrammar;
  static const auto szNameUnknown = ResultText::ErrorBegin(Inet::lNameUnknown);
  const auto szByName = FirstOfNumbered(szStatusText);
  const bool bRepeated = szByName.size() < szStatusText.size() && szByName.starts_with(szNameUnknown) &&
                         szStatusText == Numbered(szByName, szByName);
  return bRepeated ? Numbered(szByName, LoadResString(IDS_LOG_ANSWERED)) : std::string(szStatusText);
}
