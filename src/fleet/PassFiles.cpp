#include "fleet/PassFiles.h"

#include <algorithm>
#include <utility>

#include "base/Strings.h"
#include "check/Schedule.h"
#include "fleet/Metrics.h"
#include "fleet/StatusPage.h"
#include "log/CheckLog.h"
#include "persistence/KeptFiles.h"
#include "persistence/Settings.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace {

constexpr std::uint64_t lMostMetrics = std::uint64_t{4} << 20U;
constexpr std::int32_t lMinute = 60;
constexpr double dMinutesPerDay = 1440;

double Steady() {
  return Clock::SteadyNow() * dSecondsPerDay;
}

SiteState StateOf(std::uint8_t iStatus) {
  return iStatus == SiteStatus::iUp        ? SiteState::Up
         : iStatus == SiteStatus::iWarning ? SiteState::Warning
         : iStatus == SiteStatus::iDown    ? SiteState::Down
                                           : SiteState::Unwatched;
}

}  // namespace

void PassFiles::PassBegins() {
  bBegun = true;
  aUnwritten.clear();
  lRecorded = 0;
  bStopped = false;
  dRequested = dAnswered = 0;
  dBegan = Steady();
  aFacts.dStarted = Clock::UnixNow();
  aFacts.lInterval = IntervalMinutes() * lMinute;
  szMetrics = szOwnMetrics.empty() ? KeptFiles::Read(KeptFiles::Kind::Metrics) : szOwnMetrics;
  szPage = szOwnPage.empty() ? KeptFiles::Read(KeptFiles::Kind::Page) : szOwnPage;
  if (!szPage.empty() && !bPastRead) {
    bPastRead = true;
    aPast.emplace(Settings.LogPath, Trails::lDays + 1);
    ReadPast(0);
  }
  if (szMetrics.empty()) return;
  if (!bFactsTaken)
    Metrics::TakeFacts(Files::ReadWhole(szMetrics, lMostMetrics).value_or(""), aSites, aFacts);
  bFactsTaken = true;
  WriteMetrics();  // if it fails it will at the end too, and be told then
}

// The logs are read once, after each site a piece, at least one; from then on the results themselves tell.
void PassFiles::ReadPast(double dMostSeconds) {
  const double dBegun = Steady();
  while (aPast && !aPast->Done()) {
    aPast->ReadPiece();
    if (Steady() - dBegun >= dMostSeconds) break;
  }
  if (!aPast || !aPast->Done()) return;
  Trails aWhole = aPast->Take();
  aWhole.Append(aTrails, MostGap());
  aTrails = std::move(aWhole);
  aPast.reset();
}

// Days. Two intervals, and as long as the last pass took, are no gap yet.
double PassFiles::MostGap() const {
  return (2.0 * IntervalMinutes() + 5) / dMinutesPerDay +
         std::max(0.0, aFacts.dDuration) / (dMinutesPerDay * lMinute);
}

void PassFiles::RequestMoves() {
  if (dRequested == 0) dRequested = Steady();
}

void PassFiles::Answered() {
  if (dAnswered == 0) dAnswered = Steady();
}

void PassFiles::Stopped() {
  bStopped = true;
}

void PassFiles::SiteRecorded(std::int32_t lSlot) {
  dLastResponse = -1;
  if (!bBegun || bStopped || !modAddress::IsSite(lSlot)) return;
  const SiteRecord& aSite = modAddress::Site(lSlot);
  const double dEnd = dAnswered > 0 ? dAnswered : Steady();
  if (dRequested > 0) dLastResponse = std::max(0.0, dEnd - dRequested);
  dRequested = dAnswered = 0;
  ++lRecorded;
  CountMail();
  aFacts.aSites[SiteName(aSite)] = {Clock::UnixNow(), dLastResponse};
  if (szMetrics.empty() && szPage.empty()) return;
  if (modAddress::IsUnsaved(lSlot)) ++aFacts.lSavesFailed;
  if (szPage.empty()) return;
  aTrails.Add(SiteName(aSite), StateOf(aSite.Status), Clock::Now(), MostGap());
  ReadPast(0);
}

void PassFiles::CountMail() {
  const std::string& szComment = CheckLog::CurrentEntry.Comment;
  const auto Says = [&](StringId iText) { return szComment.find(LoadResString(iText)) != std::string::npos; };
  if (Says(IDS_MAIL_SENT))
    ++aFacts.lMailsSent;
  else if (Says(IDS_MAIL_NO_ADDRESS_NO_SMTP) || Says(IDS_MAIL_NO_ADDRESS) || Says(IDS_MAIL_NO_SMTP))
    ++aFacts.lMailsNotSet;
  else if (Says(IDS_MAIL_FAILED))
    ++aFacts.lMailsFailed;
}

bool PassFiles::WriteMetrics() const {
  return Files::WriteWhole(szMetrics, Metrics::Compose(aSites, aFacts));
}

std::vector<std::string> PassFiles::PassEnds() {
  if (!bBegun) return {};
  bBegun = false;
  aFacts.dDuration = std::max(0.0, Steady() - dBegan);
  aFacts.dtEnded = Clock::Now();
  aFacts.dtNext = bSinglePass ? 0 : NextCheckTime;
  aFacts.lChecked = lRecorded;
  if (!szMetrics.empty() && !WriteMetrics()) aUnwritten.push_back(szMetrics);
  if (!szPage.empty()) {
    // A monitor that goes on reads the rest beside its next pass.
    constexpr double dMoment = 0.3;
    constexpr double dAsLongAsItTakes = 3600;
    ReadPast(bSinglePass && !bStopped ? dAsLongAsItTakes : dMoment);
    aTrails.Trim(Clock::Now());
    if (!Files::WriteWhole(szPage, StatusPage::Compose(aSites, aFacts, aTrails, Clock::Now())))
      aUnwritten.push_back(szPage);
  }
  return aUnwritten;
}
