// What is written for other tools, with as many sites as the list holds, onto the real disk.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>

#include "fleet/Metrics.h"
#include "fleet/PastTrails.h"
#include "fleet/PrometheusFolder.h"
#include "fleet/StatusPage.h"
#include "platform/Files.h"
#include "support/LogScript.h"
#include "support/TestHome.h"

namespace {

SiteRecord Site(std::int64_t n) {
  return {"192.0.2." + std::to_string(n % 250),
          "www.site" + std::to_string(n) + ".test/status",
          1,
          1,
          n % 7 == 0 ? 30 : 60,
          "Site OK"};
}

// Whole folder, the first time and again over itself.
void ExportFolder(benchmark::State& aState) {
  const TestHome aHome;
  const std::int64_t lSites = aState.range(0);
  for (auto _ : aState) {
    const auto aReport =
        PrometheusFolder::Write(aHome.Path("p"), {}, [&](const PrometheusFolder::Take& aTake) {
          for (std::int64_t n = 1; n <= lSites; ++n)
            aTake(Site(n), n);
          return true;
        });
    if (aReport.iResult != PrometheusFolder::Result::Done) aState.SkipWithError("not written");
  }
  rusage aUsage{};
  getrusage(RUSAGE_SELF, &aUsage);
  aState.counters["peak_kB"] = static_cast<double>(aUsage.ru_maxrss);
}
BENCHMARK(ExportFolder)->Arg(1000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// A list of which a tenth is down, and what passes of a month have found of it.
constexpr DateTime dtNow = 46042.5;

std::vector<SiteRecord> FullList() {
  std::vector<SiteRecord> aList(1);
  for (std::int32_t n = 1; n <= modAddress::lSiteCapacity; ++n) {
    aList.push_back(Site(n));
    if (n % 10 == 0) aList.back().Status = SiteStatus::iDown;
  }
  return aList;
}

PassFacts FullFacts(const std::vector<SiteRecord>& aList) {
  PassFacts aFacts;
  aFacts.dtEnded = dtNow;
  aFacts.dtNext = AddMinutes(dtNow, 15);
  for (const SiteRecord& aSite : aList)
    aFacts.aSites[SiteName(aSite)] = {1700000000, 0.123};
  return aFacts;
}

// Composed, written beside, synced as the seam does it, renamed.
void WriteMetrics(benchmark::State& aState) {
  const TestHome aHome;
  const auto aList = FullList();
  const auto aFacts = FullFacts(aList);
  for (auto _ : aState)
    if (!Files::WriteWhole(aHome.Path("k.prom"), Metrics::Compose(aList, aFacts)))
      aState.SkipWithError("not written");
  aState.counters["bytes"] = static_cast<double>(Files::FileSize(aHome.Path("k.prom")).value_or(0));
}
BENCHMARK(WriteMetrics)->Unit(benchmark::kMillisecond);

void WritePage(benchmark::State& aState) {
  const TestHome aHome;
  const auto aList = FullList();
  const auto aFacts = FullFacts(aList);
  Trails aTrails;
  for (std::size_t n = 1; n < aList.size(); ++n)
    for (int i = 0; i < 30 * 24; ++i)  // an outage every other day for a tenth of the sites
      aTrails.Add(SiteName(aList[n]), n % 10 == 0 && i % 48 >= 46 ? SiteState::Down : SiteState::Up,
                  dtNow - (30 * 24 - i) / 24.0, 1);
  for (auto _ : aState)
    if (!Files::WriteWhole(aHome.Path("p.htm"), StatusPage::Compose(aList, aFacts, aTrails, dtNow)))
      aState.SkipWithError("not written");
  aState.counters["bytes"] = static_cast<double>(Files::FileSize(aHome.Path("p.htm")).value_or(0));
}
BENCHMARK(WritePage)->Unit(benchmark::kMillisecond);

// One day of the month that is read back at a program's start: 1,000 sites each five minutes.
void ReadADayOfLogs(benchmark::State& aState) {
  const TestHome aHome;
  LogScript aScript;
  for (int lPass = 0; lPass < 288; ++lPass) {
    aScript.dtNow = dtMonday + lPass / 288.0;
    aScript.Start();
    for (int n = 0; n < modAddress::lSiteCapacity; ++n)
      (lPass * 7 + n) % 400 < 2 ? aScript.Warn(Site(n).URL) : aScript.Up(Site(n).URL);
    aScript.End();
  }
  aHome.Write("D-20260105.kvl", aScript.szText);
  double dLongest = 0;
  for (auto _ : aState) {
    PastTrails aPast(aHome.Folder(), 1);
    while (!aPast.Done()) {
      const Stopwatch aWatch;
      aPast.ReadPiece();
      dLongest = std::max(dLongest, aWatch.Seconds());
    }
    benchmark::DoNotOptimize(aPast.Take());
  }
  aState.counters["bytes"] = static_cast<double>(aScript.szText.size());
  aState.counters["longest_piece_ms"] = dLongest * 1000;
}
BENCHMARK(ReadADayOfLogs)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
