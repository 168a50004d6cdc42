// pass_bench: what a pass costs. Prints its figures; bench/README.md says how to read them.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "bench/BareLoop.h"
#include "check/CheckEngine.h"
#include "check/QuietView.h"
#include "persistence/ProductKeys.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"
#include "platform/Registry.h"
#include "servers/FaultServer.h"
#include "support/TestHome.h"

namespace {

double Now() {
  return Clock::System().SteadySeconds();
}

// Shows nothing; ticks the engine's timer once a second as every view does.
class SilentView : public QuietView {
 public:
  CheckEngine* pEngine = nullptr;
  std::int32_t lRecorded = 0;

  void SiteRecorded(std::int32_t) override { ++lRecorded; }
  void ShowMessage(const std::string& szText) override { std::printf("%s\n", szText.c_str()); }
  void PumpEvents() override {
    if (Now() < dNextTick) return;
    dNextTick = Now() + 1;
    pEngine->TimerMain_Timer();
  }

 private:
  double dNextTick = 0;
};

struct Runner {
  SilentView aView;
  CheckEngine aEngine{aView};
  Runner() { aView.pEngine = &aEngine; }
  double Pass() {
    const double dStart = Now();
    aEngine.mF_StartCheck_Click();
    return Now() - dStart;
  }
};

SiteRecord Site(const std::string& szURL, std::int32_t lTimeOut) {
  SiteRecord aSite;
  aSite.URL = szURL;
  aSite.Enabled = SiteRecord::iEnabled;
  aSite.TimeOut = lTimeOut;
  return aSite;
}

void Store(const std::vector<SiteRecord>& aRecords) {
  {
    const Registry::Transaction aAll;
    for (const auto& aRecord : aRecords)
      modAddress::WriteSiteRecord(aRecord, 0);
  }
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(false, false);
}

double TimeBareLoop(const std::vector<std::string>& aURLs) {
  const double dStart = Now();
  BareLoop::OnCurl(aURLs);
  return Now() - dStart;
}

double Median(std::vector<double> aValues) {
  std::sort(aValues.begin(), aValues.end());
  return aValues[aValues.size() / 2];
}

// A figure of /proc/self/status ("VmRSS", in kB; "Threads"); -1 where the system has none.
long ProcessFigure(const std::string& szName) {
  std::ifstream aStatus("/proc/self/status");
  for (std::string szLine; std::getline(aStatus, szLine);)
    if (szLine.starts_with(szName + ":")) return std::stol(szLine.substr(szName.size() + 1));
  return -1;
}

long Descriptors() {
  std::error_code aError;
  long lCount = 0;
  for (auto aEntry = std::filesystem::directory_iterator("/proc/self/fd", aError);
       !aError && aEntry != std::filesystem::directory_iterator(); aEntry.increment(aError))
    ++lCount;
  return aError ? -1 : lCount;
}

void CompareWithBareLoop() {
  constexpr std::int32_t lSites = 1000;
  constexpr int lRounds = 7;
  const TestHome aHome;
  LoadSettings();
  FaultServer aServer;
  std::vector<std::string> aURLs;
  std::vector<SiteRecord> aRecords;
  for (std::int32_t i = 1; i <= lSites; ++i) {
    aURLs.push_back(aServer.URL("/" + std::to_string(i)));
    aRecords.push_back(Site(aServer.Site("/" + std::to_string(i)), 30));
  }
  Store(aRecords);
  double dStart = Now();
  modAddress::RebuildSiteIndex();
  const double dRebuild = Now() - dStart;
  dStart = Now();
  modAddress::LoadSites(false, false);
  std::printf("%d sites: RebuildSiteIndex %.0f ms, LoadSites %.0f ms (aim: under 100 ms together)\n",
              lSiteCount, dRebuild * 1e3, (Now() - dStart) * 1e3);

  const auto aStored = aSites;
  // A site that has an IP address only is requested by it and never saved, for want of a key.
  auto aUnsaved = aStored;
  for (std::size_t i = 1; i < aUnsaved.size(); ++i)
    std::swap(aUnsaved[i].IP, aUnsaved[i].URL);
  const auto TakeList = [](const std::vector<SiteRecord>& aNew) {
    for (std::int32_t n = 1; n <= lSiteCount; ++n)
      modAddress::ReplaceSite(n, aNew[static_cast<std::size_t>(n)]);
  };

  Runner aRunner;
  std::vector<double> aBare, aPlain, aFull;
  for (int i = 0; i < lRounds; ++i) {
    aBare.push_back(TimeBareLoop(aURLs));
    TakeList(aUnsaved);
    Settings.LogPeriod = 0;
    aPlain.push_back(aRunner.Pass());
    TakeList(aStored);
    Settings.LogPeriod = 1;
    aFull.push_back(aRunner.Pass());
  }
  const auto lUp = std::ranges::count(aSites, SiteStatus::iUp, &SiteRecord::Status);
  if (lUp != lSites || aRunner.aView.lRecorded != 2 * lRounds * lSites)
    std::printf("NOT VALID: %ld of %d sites up, %d outcomes\n", static_cast<long>(lUp), lSites,
                aRunner.aView.lRecorded);
  std::printf("\n%d local sites one after the other, median of %d interleaved rounds:\n", lSites, lRounds);
  std::printf("  bare libcurl multi loop                  %7.1f ms\n", Median(aBare) * 1e3);
  std::printf("  pass without saves and log lines         %7.1f ms   ratio %.2f (aim: at most 1.5)\n",
              Median(aPlain) * 1e3, Median(aPlain) / Median(aBare));
  std::printf("  pass with every save and log line        %7.1f ms   ratio %.2f (aim: at most 2)\n",
              Median(aFull) * 1e3, Median(aFull) / Median(aBare));
}

std::vector<SiteRecord> BadSites(FaultServer& aServer) {
  using namespace Fault;
  const std::string szHead = "HTTP/1.1 200 OK\r\n";
  aServer.Serve("/404", Status("404 Not Found"));
  aServer.Serve("/500", Status("500 Oops", std::string(100000, 'x')));
  aServer.Serve("/nothing", {});
  aServer.Serve("/reset", {Reset()});
  aServer.Serve("/banner", {Send("220 mail.invalid ESMTP\r\n")});
  aServer.Serve("/code", {Send("HTTP/1.1 abc\r\n\r\n")});
  aServer.Serve("/cut", {Send(szHead + "Content-Le")});
  aServer.Serve("/folded", {Send("HTTP/1.1 200 OK\r\n folded\r\n\r\n")});
  aServer.Serve("/short", {Send(szHead + "Content-Length: 99\r\n\r\nabc")});
  aServer.Serve("/chunk", {Send(szHead + "Transfer-Encoding: chunked\r\n\r\nzz\r\n"), Reset()});
  aServer.Serve("/line", {Send(szHead + "X: " + std::string(200000, 'x') + "\r\n\r\n")});
  aServer.Serve("/header", {Send(szHead), Endless("X: 1234567890\r\n")});
  aServer.Serve("/trailer", {Send(szHead + "Transfer-Encoding: chunked\r\n\r\n0\r\n"), Endless("X: 1\r\n")});
  aServer.Serve("/interim", {Send("HTTP/1.1 103 Early Hints\r\n\r\n")});
  aServer.Serve("/nul", {Send(std::string("HTTP/1.1 2\0000 OK\r\n\r\n", 19))});
  std::vector<SiteRecord> aRecords;
  for (const char* szPath :
       {"/404", "/500", "/nothing", "/reset", "/banner", "/code", "/cut", "/folded", "/short", "/chunk",
        "/line", "/header", "/trailer", "/interim", "/nul", "/fine", "/also"})
    aRecords.push_back(Site(aServer.Site(szPath), 10));
  aRecords.push_back(Site("127.0.0.1:" + std::to_string(FaultServer::RefusingPort()), 10));
  return aRecords;
}

void WatchResources() {
  constexpr std::int32_t lChecks = 10000;
  constexpr std::int32_t lWarmUp = 1000;
  const TestHome aHome;
  LoadSettings();
  FaultServer aServer;
  Store(BadSites(aServer));
  Runner aRunner;
  while (aRunner.aView.lRecorded < lWarmUp)
    aRunner.Pass();
  aServer.WaitUntilIdle();
  const long lMemory = ProcessFigure("VmRSS"), lFiles = Descriptors(), lThreads = ProcessFigure("Threads");
  const double dStart = Now();
  const std::int32_t lGoal = aRunner.aView.lRecorded + lChecks;
  while (aRunner.aView.lRecorded < lGoal)
    aRunner.Pass();
  const double dElapsed = Now() - dStart;
  aServer.WaitUntilIdle();
  std::printf("\n%d checks of %d badly behaved sites, %.1f s (saves and log lines included):\n", lChecks,
              lSiteCount, dElapsed);
  std::printf("  memory grew by %ld kB to %ld kB (aim: under 1024 kB)\n", ProcessFigure("VmRSS") - lMemory,
              ProcessFigure("VmRSS"));
  std::printf("  descriptors %ld before, %ld after; threads %ld before, %ld after\n", lFiles, Descriptors(),
              lThreads, ProcessFigure("Threads"));
}

void WatchHangingServer(std::int32_t lSeconds) {
  const TestHome aHome;
  LoadSettings();
  FaultServer aServer;
  aServer.Serve("/", {Fault::Hang()});
  Store({Site(aServer.Site("/"), lSeconds)});
  Runner aRunner;
  const std::clock_t lCpu = std::clock();
  const double dElapsed = aRunner.Pass();
  std::printf(
      "\nOne server that hangs, time-out %d s: %.1f s, CPU time %.0f ms (aim: under 100 ms for 30 s)\n",
      lSeconds, dElapsed, 1e3 * static_cast<double>(std::clock() - lCpu) / CLOCKS_PER_SEC);
}

}  // namespace

// pass_bench [SECONDS]: how long the hanging server hangs, 30 unless told.
int main(int iCount, char** aValues) {
  const int iSeconds = iCount > 1 ? std::atoi(aValues[1]) : 30;
  if (iCount > 2 || iSeconds < 1) {
    std::fprintf(stderr, "usage: pass_bench [SECONDS]\n");
    return 2;
  }
  curl_global_init(CURL_GLOBAL_DEFAULT);
  CompareWithBareLoop();
  WatchResources();
  WatchHangingServer(iSeconds);
}
