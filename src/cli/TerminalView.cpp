#include "cli/TerminalView.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "check/CheckEngine.h"
#include "cli/Report.h"
#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Terminal.h"

namespace {

constexpr double dTickSeconds = 1.0;
// A fast site passes through ten states in a millisecond; nobody reads those.
constexpr double dDrawSeconds = 0.05;
// Wider lines would wrap on an ordinary terminal and could not be rewritten.
constexpr std::size_t lProgressWidth = 78;
constexpr std::size_t lWordWidth = 8;
constexpr std::size_t lAddressWidth = 44;

double SteadySeconds() {
  return Clock::System().SteadySeconds();
}

const char* ColourOf(std::uint8_t iStatus) {
  return iStatus == SiteStatus::iUp ? "32" : iStatus == SiteStatus::iWarning ? "33" : "31";
}

std::string Seconds(double dSeconds) {
  char szNumber[32];
  std::snprintf(szNumber, sizeof szNumber, "%.1f", std::max(0.0, dSeconds));
  return szNumber;
}

}  // namespace

TerminalView::TerminalView() : bTerminal(Terminal::OutputIsTerminal()), bColour(Terminal::ColourWanted()) {
}

void TerminalView::ShowPanel(int /*iPanel*/, const std::string& /*szText*/) {
  // The terminal has no status bar. What stands there is in the headline and the summary.
}

// The first thing a pass shows.
void TerminalView::ClearRemarks() {
  ErasePassing();
  ++lPasses;
  lChecked = lUp = lWarning = lDown = 0;
  bStopped = false;
  dPassStarted = SteadySeconds();
  if (bHeadline) Report::Say(FillResString(IDS_CLI_PASS_AT, {FormatGeneral(Clock::Now())}));
}

void TerminalView::OpenProgress() {
  szSite.clear();
  szStatus.clear();
  szRemark.clear();
  bSiteStopped = false;
  dtRequested = Clock::SteadyNow();
  dtAnswered = 0;
  bProgress = true;
  bProgressDirty = true;
}

void TerminalView::CloseProgress() {
  ErasePassing();
  std::cout << std::flush;
  bProgress = false;
}

void TerminalView::ShowProgressSite(const std::string& szText) {
  szSite = Text::Printable(szText);
  bProgressDirty = true;
}

void TerminalView::ShowProgressStatus(const std::string& szText) {
  szStatus = szText;  // one of our own
  bProgressDirty = true;
}

// What was said of other sites does not wait for the mail that may follow.
void TerminalView::ShowLight(std::int32_t /*lSlot*/, std::int16_t iStatus) {
  if (iStatus == SiteStatus::iDown) std::cout << std::flush;
}

void TerminalView::ShowLightText(std::int32_t /*lSlot*/, const std::string& /*szText*/) {
  bSiteStopped = true;
  bStopped = true;
}

// Comes with the outcome and before the alert mail, whose time is not the site's.
void TerminalView::ShowRemark(std::int32_t /*lSlot*/, const std::string& szText) {
  szRemark = szText;
  dtAnswered = Clock::SteadyNow();
}

void TerminalView::SiteRecorded(std::int32_t lSlot) {
  if (!modAddress::IsSite(lSlot)) return;
  const SiteRecord& aSite = modAddress::Site(lSlot);
  Outcome aOutcome{lSlot, bSiteStopped, LoadResString(IDS_CLI_STOPPED), "36", {}, {}, {}, {}};
  if (!bSiteStopped) {
    ++lChecked;
    ++(aSite.Status == SiteStatus::iUp ? lUp : aSite.Status == SiteStatus::iWarning ? lWarning : lDown);
    aOutcome.szWord = Report::StatusWord(aSite.Status);
    aOutcome.szColour = ColourOf(aSite.Status);
    aOutcome.szComment = Text::Printable(LogGrammar::WithoutMarks(CheckLog::CurrentEntry.Comment));
  }
  if (dtRequested > 0) {
    const DateTime dtEnd = dtAnswered > 0 ? dtAnswered : Clock::SteadyNow();
    aOutcome.szElapsed = FillResString(IDS_CLI_SECONDS, {Seconds((dtEnd - dtRequested) * dSecondsPerDay)});
  }
  aOutcome.szRemark = Text::Printable(szRemark.empty() ? CheckLog::CurrentEntry.StatusText.Text() : szRemark);
  aOutcome.szAddress = Report::AddressOf(aSite);
  ErasePassing();
  ShowOutcome(aOutcome);
  bProgressDirty = true;
  szRemark.clear();
  dtRequested = dtAnswered = 0;
}

void TerminalView::ShowOutcome(const Outcome& aOutcome) {
  auto szLine = "  " + Coloured(Report::Padded(aOutcome.szWord, lWordWidth), aOutcome.szColour) + ' ' +
                Report::Padded(aOutcome.szAddress, lAddressWidth) + "  " + aOutcome.szRemark;
  if (!aOutcome.szElapsed.empty()) szLine += "  " + Coloured(aOutcome.szElapsed, "2");
  if (!aOutcome.szComment.empty()) szLine += "  " + Coloured("[" + aOutcome.szComment + "]", "2");
  std::cout << szLine << '\n';
}

void TerminalView::ShowMessage(const std::string& szText) {
  ErasePassing();
  Report::Say(szText);
}

void TerminalView::ReportTrouble(const std::string& szText) {
  ErasePassing();
  Report::Complain(szText);
}

void TerminalView::SoundBell() {
  if (Terminal::ErrorIsTerminal()) std::cerr << '\a' << std::flush;
}

void TerminalView::PumpEvents() {
  if (pEngine == nullptr) return;
  if ((Terminal::Interrupted() || OutputClosed()) && pEngine->CheckInProgress()) {
    bStopped = true;
    pEngine->StopCheck();
    return;
  }
  TickMainTimer();
  if (bProgress && bProgressDirty && SteadySeconds() >= dNextDraw) DrawProgress();
}

// Now and then what was said goes out, and the system is asked whether anybody still reads it; events are
// handled several times for each site.
bool TerminalView::OutputClosed() {
  constexpr double dLookSeconds = 0.02;
  const double dNow = SteadySeconds();
  if (dNow < dNextLook) return false;
  dNextLook = dNow + dLookSeconds;
  std::cout << std::flush;
  return Terminal::OutputClosed();
}

void TerminalView::TickMainTimer() {
  if (SteadySeconds() < dNextTick) return;
  dNextTick = SteadySeconds() + dTickSeconds;
  pEngine->TimerMain_Timer();
}

void TerminalView::DrawProgress() {
  bProgressDirty = false;
  dNextDraw = SteadySeconds() + dDrawSeconds;
  if (!bTerminal) return;
  const auto aTurn = pEngine->TurnNow();
  std::string szLine =
      "  " + FillResString(IDS_CLI_SITE_OF, {std::to_string(aTurn.lAt), std::to_string(aTurn.lOf)}) + "  " +
      szSite;
  const std::size_t lRoom = lProgressWidth - std::min(lProgressWidth, Utf8::Width(szStatus) + 2);
  szLine = std::string(Utf8::First(szLine, lRoom)) + "  " + szStatus;
  ShowPassing(szLine);
}

void TerminalView::ShowPassing(const std::string& szLine) {
  if (!bTerminal) {
    std::cout << szLine << std::endl;
    return;
  }
  const std::string szCut(Utf8::First(szLine, lProgressWidth));
  std::cout << '\r' << Coloured(Report::Padded(szCut, lDrawnWidth), "2") << std::flush;
  lDrawnWidth = Utf8::Width(szCut);
}

// Without control sequences, so that it also works where there is no colour.
void TerminalView::ErasePassing() {
  if (lDrawnWidth == 0) return;
  std::cout << '\r' << std::string(lDrawnWidth, ' ') << '\r' << std::flush;
  lDrawnWidth = 0;
}

std::string TerminalView::Coloured(const std::string& szWord, const char* szColour) const {
  return bColour ? std::string("\033[") + szColour + "m" + szWord + "\033[0m" : szWord;
}

void TerminalView::ShowSummary() {
  std::string szLine = FillResString(bStopped ? IDS_CLI_SUMMARY_STOPPED : IDS_CLI_SUMMARY,
                                     {Report::SiteNumber(lChecked), Seconds(SteadySeconds() - dPassStarted),
                                      std::to_string(lUp), std::to_string(lWarning), std::to_string(lDown)});
  const auto lDisabled = std::count_if(aSites.begin() + 1, aSites.end(),
                                       [](const SiteRecord& aSite) { return !aSite.TakesPart(); });
  if (lDisabled > 0) szLine += " " + FillResString(IDS_CLI_SUMMARY_DISABLED, {std::to_string(lDisabled)});
  if (Settings.LogPeriod != 0 && Files::FileExists(CheckLog::CurrentLogFile))
    szLine += " " + FillResString(IDS_CLI_SUMMARY_LOG, {Text::Printable(CheckLog::CurrentLogFile)});
  Report::Say(szLine);
}
