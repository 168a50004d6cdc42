// What is written for other tools, with as many sites as the list holds, onto the real disk.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include "fleet/PrometheusFolder.h"
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

}  // namespace

BENCHMARK_MAIN();
