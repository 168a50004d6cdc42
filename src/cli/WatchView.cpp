#include "cli/WatchView.h"

#include <algorithm>
#include <iostream>

#include "base/Strings.h"
#include "base/Text.h"
#include "check/Schedule.h"
#include "cli/Report.h"
#include "fleet/PassFacts.h"
#include "fleet/PastTrails.h"
#include "history/LogFiles.h"
#include "history/LogWords.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"
#include "platform/Terminal.h"

namespace {

constexpr std::size_t lWordWidth = 8;

bool Fails(const SiteRecord& aSite) {
  return aSite.TakesPart() && (SiteStatus::IsFailure(aSite.Status));
}

bool AnyFails() {
  return std::any_of(aSites.begin() + 1, aSites.end(), Fails);
}

std::string Length(DateTime dtFrom) {
  return LogWords::Length(std::max<std::int64_t>(0, SecondsBetween(dtFrom, Clock::Now())));
}

// "3 up, 1 warning, 2 down", of the sites that take part.
std::string Counts() {
  const auto Number = [](std::uint8_t iStatus) {
    return std::to_string(std::count_if(aSites.begin() + 1, aSites.end(), [iStatus](const SiteRecord& aSite) {
      return aSite.TakesPart() && aSite.Status == iStatus;
    }));
  };
  return FillResString(IDS_CLI_WATCH_COUNTS,
                       {Number(SiteStatus::iUp), Number(SiteStatus::iWarning), Number(SiteStatus::iDown)});
}

// Of the sites that fail: since when, by their slots. The last days tell it of nearly all; a site that failed
// throughout them is looked for in a month.
std::map<std::int32_t, DateTime> FailingByLog() {
  std::map<std::int32_t, DateTime> aFailing;
  const auto szFolder = LogFiles::MonitorFolder();
  if (szFolder.empty()) return aFailing;
  for (const std::int32_t lDaysBack : {2, 31}) {
    PastTrails aPast(szFolder, lDaysBack);
    while (!aPast.Done() && !Terminal::Interrupted())
      aPast.ReadPiece();
    const Trails aTrails = aPast.Take();
    bool bAllKnown = true;
    for (std::int32_t i = 1; i <= lSiteCount; ++i) {
      if (!Fails(modAddress::Site(i))) continue;
      const auto& aStates = aTrails.Of(SiteName(modAddress::Site(i)));
      aFailing[i] = Trails::FailingSince(aStates);
      bAllKnown = bAllKnown && !aStates.empty() && aFailing[i] != aStates.front().dtFrom;
    }
    if (bAllKnown) break;
  }
  return aFailing;
}

}  // namespace

WatchView::Site& WatchView::Known(std::int32_t lSlot) {
  return aKnown[Report::AddressOf(modAddress::Site(lSlot))];
}

void WatchView::ShowStart() {
  dtStarted = Clock::Now();
  if (bJson) return;
  Report::Say(FillResString(IDS_CLI_WATCHING, {Report::SiteNumber(lSiteCount), Schedule::NextPanelText()}));
  const auto aFailing = AnyFails() ? FailingByLog() : std::map<std::int32_t, DateTime>();
  for (std::int32_t i = 1; i <= lSiteCount; ++i) {
    const SiteRecord& aSite = modAddress::Site(i);
    const auto aFound = aFailing.find(i);
    Known(i) = {aSite.Status, aFound != aFailing.end() ? aFound->second : 0};
  }
  const bool bAnyKnown = std::any_of(aSites.begin() + 1, aSites.end(), [](const SiteRecord& aSite) {
    return aSite.TakesPart() && SiteStatus::HasLight(aSite.Status);
  });
  if (!bEverything && bAnyKnown) {
    Report::Say(FillResString(IDS_CLI_WATCH_SO_FAR, {Counts()}));
    ShowFailing();
  }
  std::cout.flush();
}

void WatchView::ShowFailing() const {
  for (std::int32_t i = 1; i <= lSiteCount; ++i) {
    const SiteRecord& aSite = modAddress::Site(i);
    if (!Fails(aSite)) continue;
    const auto aFound = aKnown.find(Report::AddressOf(aSite));
    const auto dtFailing = aFound == aKnown.end() ? 0 : aFound->second.dtFailing;
    const auto szSince =
        dtFailing > 0 ? FillResString(IDS_CLI_WATCH_SINCE, {FormatGeneral(dtFailing), Length(dtFailing)})
                      : std::string();
    Report::Say("  " + Report::Padded(Report::StatusWord(aSite.Status), lWordWidth) + " " +
                Report::AddressOf(aSite) + "  " + Text::Printable(aSite.Comments) + szSince);
  }
}

// What a site's new state says beside the word for it. A site that was never seen and is up is no news.
void WatchView::ShowOutcome(const Outcome& aOutcome) {
  if (bEverything) {
    TerminalView::ShowOutcome(aOutcome);
    return;
  }
  if (aOutcome.bStopped) return;
  const SiteRecord& aSite = modAddress::Site(aOutcome.lSlot);
  auto& aSeen = Known(aOutcome.lSlot);
  const auto Remarks = [&](StringId iText) {
    return aOutcome.szComment.find(LoadResString(iText)) != std::string::npos;
  };
  const bool bSent = Remarks(IDS_MAIL_SENT), bNotSent = Remarks(IDS_MAIL_FAILED);
  lMailsSent += bSent ? 1 : 0;
  lMailsFailed += bNotSent ? 1 : 0;
  const bool bChanged =
      aSeen.iStatus != aSite.Status && (Fails(aSite) || SiteStatus::HasLight(aSeen.iStatus));
  const auto dtFailing = aSeen.dtFailing;
  if (!Fails(aSite)) aSeen.dtFailing = 0;
  if (Fails(aSite) && dtFailing <= 0) aSeen.dtFailing = Clock::Now();
  aSeen.iStatus = aSite.Status;
  if (!bChanged && !bSent && !bNotSent) return;
  lChanges += bChanged ? 1 : 0;
  auto szWhat = aOutcome.szRemark;
  if (!Fails(aSite))
    szWhat = dtFailing > 0 ? FillResString(IDS_CLI_WATCH_UP_AFTER, {Length(dtFailing)})
                           : LoadResString(IDS_CLI_WATCH_UP_AGAIN);
  else if (dtFailing > 0)
    szWhat += FillResString(IDS_CLI_WATCH_SINCE, {FormatGeneral(dtFailing), Length(dtFailing)});
  auto szLine = FormatGeneral(Clock::Now()) + "  " +
                Coloured(Report::Padded(aOutcome.szWord, lWordWidth), aOutcome.szColour) + " " +
                aOutcome.szAddress + "  " + szWhat;
  if (!aOutcome.szComment.empty()) szLine += "  " + Coloured("[" + aOutcome.szComment + "]", "2");
  std::cout << szLine << std::endl;
}

void WatchView::ShowSummary() {
  if (bEverything) {
    TerminalView::ShowSummary();
    Report::Say(Schedule::NextPanelText());
    std::cout.flush();
    return;
  }
  ShowPassing(
      FillResString(IDS_CLI_WATCH_ALIVE, {FormatGeneral(Clock::Now()), Counts(), Schedule::NextPanelText()}));
}

void WatchView::ShowEnd() {
  ErasePassing();
  if (bJson || bEverything || PassesStarted() == 0) return;
  Report::Say(FillResString(IDS_CLI_WATCH_END,
                            {Length(dtStarted), std::to_string(PassesStarted()), std::to_string(lChanges),
                             std::to_string(lMailsSent), std::to_string(lMailsFailed), Counts()}));
  ShowFailing();
}
