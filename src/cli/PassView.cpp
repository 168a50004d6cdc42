#include "cli/PassView.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "base/Strings.h"
#include "base/Text.h"
#include "check/Schedule.h"
#include "cli/Report.h"
#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"

namespace {

using Json = nlohmann::ordered_json;

// At once, so that who reads along learns of each site as it happens. ASCII alone: no byte from outside gets
// through.
void SayLine(const Json& aObject) {
  std::cout << aObject.dump(-1, ' ', true, Json::error_handler_t::replace) << std::endl;
}

// To the millisecond.
Json Rounded(double dSeconds) {
  if (dSeconds < 0) return nullptr;
  return std::round(dSeconds * 1000) / 1000;
}

Json Timestamp(double dUnix) {
  return static_cast<std::int64_t>(dUnix);
}

double Steady() {
  return Clock::System().SteadySeconds();
}

}  // namespace

PassView::PassView(const PassOptions& aGiven, bool bSinglePass) : aOptions(aGiven) {
  aFiles.bSinglePass = bSinglePass;
  aFiles.szOwnMetrics = aGiven.szMetrics;
  aFiles.szOwnPage = aGiven.szPage;
}

void PassView::ClearRemarks() {
  TerminalView::ClearRemarks();
  dBegan = Steady();
  aFiles.PassBegins();
  if (aOptions.bJson) SayPassBegins();
}

void PassView::OpenProgress() {
  bSiteStopped = false;
  if (!ForPrograms()) TerminalView::OpenProgress();
}

void PassView::ShowProgressStatus(const std::string& szText) {
  aFiles.RequestMoves();
  TerminalView::ShowProgressStatus(szText);
}

void PassView::ShowRemark(std::int32_t lSlot, const std::string& szText) {
  aFiles.Answered();
  TerminalView::ShowRemark(lSlot, szText);
}

void PassView::ShowLightText(std::int32_t lSlot, const std::string& szText) {
  bSiteStopped = true;
  aFiles.Stopped();
  TerminalView::ShowLightText(lSlot, szText);
}

void PassView::SiteRecorded(std::int32_t lSlot) {
  if (!modAddress::IsSite(lSlot)) return;
  aFiles.SiteRecorded(lSlot);
  if (aOptions.bJson)
    SaySite(lSlot);
  else if (!aOptions.bPlugin)
    TerminalView::SiteRecorded(lSlot);
}

void PassView::ShowMessage(const std::string& szText) {
  if (ForPrograms())
    Report::Complain(szText);
  else
    TerminalView::ShowMessage(szText);
}

bool PassView::EndPass() {
  const auto aUnwritten = aFiles.PassEnds();
  if (aOptions.bJson)
    SayPassEnds();
  else if (!aOptions.bPlugin)
    ShowSummary();
  for (const auto& szFile : aUnwritten)
    Report::Complain(FillResString(IDS_CLI_CANNOT_WRITE, {szFile}));
  return aUnwritten.empty();
}

PassView::Found PassView::CountSites() const {
  Found aFound;
  for (std::int32_t n = 1; n <= lSiteCount; ++n) {
    const SiteRecord& aSite = modAddress::Site(n);
    if (!aSlots.empty() && !aSlots.contains(n)) continue;
    if (!aSite.TakesPart()) {
      ++aFound.lDisabled;
    } else if (aSite.Status == SiteStatus::iUp) {
      ++aFound.lUp;
    } else if (aSite.Status == SiteStatus::iWarning) {
      ++aFound.lWarning;
    } else if (aSite.Status == SiteStatus::iDown) {
      ++aFound.lDown;
      aFound.aDown.push_back(SiteName(aSite));
    }
  }
  return aFound;
}

void PassView::SayPassBegins() const {
  SayLine({{"event", "pass-begins"},
           {"timestamp", Timestamp(Clock::UnixNow())},
           {"sites", aSlots.empty() ? lSiteCount : static_cast<std::int32_t>(aSlots.size())}});
}

void PassView::SaySite(std::int32_t lSlot) const {
  const SiteRecord& aSite = modAddress::Site(lSlot);
  SayLine({{"event", "site"},
           {"timestamp", Timestamp(Clock::UnixNow())},
           {"number", lSlot},
           {"url", aSite.URL},
           {"ip", aSite.IP},
           {"status", bSiteStopped ? LoadResString(IDS_CLI_STOPPED) : Report::StatusWord(aSite.Status)},
           {"remark", aSite.Comments},
           {"seconds", Rounded(aFiles.LastResponse())},
           {"comment", LogGrammar::WithoutMarks(CheckLog::CurrentEntry.Comment)}});
}

void PassView::SayPassEnds() const {
  const Found aFound = CountSites();
  SayLine({{"event", "pass-ends"},
           {"timestamp", Timestamp(Clock::UnixNow())},
           {"seconds", Rounded(Steady() - dBegan)},
           {"up", aFound.lUp},
           {"warning", aFound.lWarning},
           {"down", aFound.lDown},
           {"disabled", aFound.lDisabled},
           {"stopped", WasStopped()}});
}

// As the Monitoring Plugins' guidelines have it: what matters first, figures behind a bar.
int PassView::AnswerAsPlugin(const std::string& szComplaint) const {
  constexpr std::size_t lMostNamed = 5;
  enum Answer { iOk, iWarning, iCritical, iUnknown };
  constexpr const char* szNames[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
  const auto Plain = [](const std::string& szText) {
    return Text::Replace(Text::Printable(szText), "|", "?");
  };
  if (PassesStarted() == 0 || WasStopped() || Report::ListMayBeIncomplete()) {
    const std::string szReason = szComplaint.empty() ? LoadResString(IDS_CLI_STOPPED) : szComplaint;
    Report::Say(FillResString(IDS_CLI_PLUGIN_UNKNOWN, {Plain(szReason)}));
    return iUnknown;
  }
  const Found aFound = CountSites();
  std::string szMore;
  for (std::size_t i = 0; i < std::min(aFound.aDown.size(), lMostNamed); ++i)
    szMore += (i == 0 ? "; " : ", ") + Plain(aFound.aDown[i]);
  if (aFound.aDown.size() > lMostNamed) szMore += ", ...";
  if (!szComplaint.empty()) szMore += "; " + Plain(szComplaint);
  const Answer iAnswer = aFound.lDown > 0                              ? iCritical
                         : aFound.lWarning > 0 || !szComplaint.empty() ? iWarning
                         : aFound.lUp > 0                              ? iOk
                                                                       : iUnknown;
  char szSeconds[32];
  std::snprintf(szSeconds, sizeof szSeconds, "%.3f", Steady() - dBegan);
  Report::Say(
      FillResString(IDS_CLI_PLUGIN_LINE,
                    {szNames[iAnswer], std::to_string(aFound.lUp), std::to_string(aFound.lWarning),
                     std::to_string(aFound.lDown), std::to_string(aFound.lDisabled), szMore, szSeconds}));
  return iAnswer;
}
