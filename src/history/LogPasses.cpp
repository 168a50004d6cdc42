#include "history/LogPasses.h"

#include <algorithm>

#include "base/Strings.h"
#include "history/LogDurations.h"
#include "history/LogGaps.h"

namespace {

class Reporter {
 public:
  explicit Reporter(const LogHistory& aTheHistory)
      : aHistory(aTheHistory),
        aLongestOf(aTheHistory.Sites().size()),
        aLastFailure(aTheHistory.Sites().size()) {}

  PassReport Run();
  PassReport Lengths();

 private:
  PassFigures FactsOf(std::size_t lPass) const;
  void AddPass(std::size_t lPass);
  void AddCheck(PassFigures& aFacts, const CheckDuration& aDuration);
  void AddMail(PassFigures& aFacts, const CheckDuration& aDuration, std::string_view szComment);
  void FindLate();
  void Weigh();
  void AddUpWorst();

  const LogHistory& aHistory;
  PassReport aReport;
  std::vector<CheckDuration> aChecks;      // of the pass in hand
  std::vector<std::int64_t> aLongestOf;    // by site
  std::vector<std::int64_t> aLastFailure;  // by site: how long its last failed check took
  const std::string szMailSent = LoadResString(IDS_MAIL_SENT);
  const std::string szMailFailed = LoadResString(IDS_MAIL_FAILED);
  const std::string szIPCheck = LoadResString(IDS_IP_CHECK_PERFORMED);
};

PassReport Reporter::Run() {
  for (std::size_t lPass = 0; lPass < aHistory.Passes().size(); ++lPass)
    AddPass(lPass);
  FindLate();
  Weigh();
  AddUpWorst();
  return std::move(aReport);
}

PassReport Reporter::Lengths() {
  for (std::size_t lPass = 0; lPass < aHistory.Passes().size(); ++lPass)
    if (const auto aFacts = FactsOf(lPass); aFacts.dtStart > 0) aReport.aPasses.push_back(aFacts);
  Weigh();
  aReport.lInterval = LogGaps::Interval(aHistory);
  return std::move(aReport);
}

// Without what its entries say; dtStart 0 where it is none that can be told of.
PassFigures Reporter::FactsOf(std::size_t lPass) const {
  const auto& aPass = aHistory.Pass(aHistory.Passes()[lPass]);
  PassFigures aFacts;
  if (aPass.dtStart <= 0 || aPass.lEntries == 0) return aFacts;
  aFacts.lPass = lPass;
  aFacts.dtStart = aPass.dtStart;
  aFacts.bStarted = aPass.bStarted;
  aFacts.bManual = aPass.bManual;
  aFacts.bWhole = aPass.Complete();
  aFacts.lSeconds = SecondsBetween(aPass.dtStart, aPass.dtLast);
  return aFacts;
}

void Reporter::AddPass(std::size_t lPass) {
  auto aFacts = FactsOf(lPass);
  if (aFacts.dtStart <= 0) return;
  LogDurations::Of(aHistory, lPass, aChecks);
  for (const auto& aCheck : aChecks)
    AddCheck(aFacts, aCheck);
  const auto& aLast = aChecks.back();
  const auto& aLine = aHistory.Line(aLast.aRef);
  aFacts.bLastFailed = IsFailure(aLine.iOutcome);
  aFacts.bExact = aLast.iKnown == CheckDuration::Known::Exact;
  if (aLine.bTimeKnown)
    aFacts.lSeconds =
        std::max(aFacts.lSeconds, SecondsBetween(aFacts.dtStart, aLine.dtMoment) + aLast.lSeconds);
  aReport.aPasses.push_back(aFacts);
}

void Reporter::AddCheck(PassFigures& aFacts, const CheckDuration& aDuration) {
  const auto& aLine = aHistory.Line(aDuration.aRef);
  const bool bFailed = IsFailure(aLine.iOutcome);
  if (aDuration.iKnown != CheckDuration::Known::Exact) ++aReport.lUncertain;
  if (!bFailed && aLine.iOutcome != Outcome::Up) return;
  ++aFacts.lChecks;
  auto& lLongestOf = aLongestOf[aLine.lSite];
  lLongestOf = std::max(lLongestOf, aDuration.lSeconds);
  const bool bLongest = aFacts.lChecks == 1 || aDuration.lSeconds > aFacts.lLongest;
  if (bLongest) {
    aFacts.lLongestSite = aLine.lSite;
    aFacts.lLongest = aDuration.lSeconds;
    aFacts.bLongestMailed = false;
  }
  if (!bFailed) return;
  ++aFacts.lFailures;
  const auto lMailsBefore = aFacts.lMailsSent + aFacts.lMailsFailed;
  AddMail(aFacts, aDuration, aHistory.Fields(aDuration.aRef).Comment);
  const bool bMailed = aFacts.lMailsSent + aFacts.lMailsFailed > lMailsBefore;
  if (bLongest) aFacts.bLongestMailed = bMailed;
  if (!bMailed) aLastFailure[aLine.lSite] = aDuration.lSeconds;
}

void Reporter::AddMail(PassFigures& aFacts, const CheckDuration& aDuration, std::string_view szComment) {
  const auto Tells = [&](const std::string& szText) {
    return szComment.find(szText) != std::string_view::npos;
  };
  const bool bSent = Tells(szMailSent), bFailed = Tells(szMailFailed);
  if (!bSent && !bFailed) return;
  ++(bSent ? aFacts.lMailsSent : aFacts.lMailsFailed);
  // The IP address is taken to have been as slow as the name.
  const auto lRequests = aLastFailure[aHistory.Line(aDuration.aRef).lSite] * (Tells(szIPCheck) ? 2 : 1);
  aFacts.lMailSeconds += std::max<std::int64_t>(0, aDuration.lSeconds - lRequests);
}

// An overdue pass begins at the first tick after the end of the one before.
void Reporter::FindLate() {
  constexpr std::int64_t lTick = 2;  // seconds
  const auto aUsual = LogGaps::Usual(aHistory);
  for (std::size_t i = 1; i < aReport.aPasses.size(); ++i) {
    auto& aFacts = aReport.aPasses[i];
    const auto& aBefore = aReport.aPasses[i - 1];
    const auto lDistance = SecondsBetween(aBefore.dtStart, aFacts.dtStart);
    const auto lUsual = aUsual[aFacts.lPass];
    if (!aFacts.bStarted || aFacts.bManual || lUsual == 0 || lDistance <= lUsual + lTick ||
        lDistance < aBefore.lSeconds || lDistance > aBefore.lSeconds + lTick)
      continue;
    aFacts.lLate = lDistance - lUsual;
    ++aReport.lLate;
    if (!aReport.lLatest || aFacts.lLate > aReport.aPasses[*aReport.lLatest].lLate) aReport.lLatest = i;
  }
  if (!aUsual.empty()) aReport.lInterval = aUsual.back();
}

void Reporter::Weigh() {
  std::vector<std::int64_t> aLengths, aScheduled;
  for (std::size_t i = 0; i < aReport.aPasses.size(); ++i) {
    const auto& aFacts = aReport.aPasses[i];
    if (!aFacts.bWhole) continue;
    aLengths.push_back(aFacts.lSeconds);
    // By hand one may have asked some sites only.
    if (!aFacts.bManual) aScheduled.push_back(aFacts.lSeconds);
    if (!aReport.lLongest || aFacts.lSeconds > aReport.aPasses[*aReport.lLongest].lSeconds)
      aReport.lLongest = i;
  }
  auto& aUsual = aScheduled.empty() ? aLengths : aScheduled;
  if (aUsual.empty()) return;
  const auto aMiddle = aUsual.begin() + static_cast<std::ptrdiff_t>((aUsual.size() - 1) / 2);
  std::ranges::nth_element(aUsual, aMiddle);
  aReport.lUsual = *aMiddle;
}

void Reporter::AddUpWorst() {
  const auto aLast = std::find_if(aReport.aPasses.rbegin(), aReport.aPasses.rend(),
                                  [&](const auto& aFacts) { return aFacts.bWhole && !aFacts.bManual; });
  if (aLast == aReport.aPasses.rend()) return;
  LogDurations::Of(aHistory, aLast->lPass, aChecks);
  for (const auto& aCheck : aChecks)
    aReport.lWorst += aLongestOf[aHistory.Line(aCheck.aRef).lSite];
}

}  // namespace

PassReport LogPasses::Of(const LogHistory& aHistory) {
  return Reporter(aHistory).Run();
}

PassReport LogPasses::Lengths(const LogHistory& aHistory) {
  return Reporter(aHistory).Lengths();
}
