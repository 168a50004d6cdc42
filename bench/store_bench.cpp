// The site list against the real store on disk, with as many sites as it holds.
#include <benchmark/benchmark.h>

#include "persistence/modAddress.h"
#include "platform/Registry.h"
#include "support/TestHome.h"

namespace {

// A store of its own with a full list, as it lies there before a start.
class FullStore {
 public:
  FullStore() {
    const Registry::Transaction aOneCommit;
    for (std::int32_t n = 1; n <= modAddress::lSiteCapacity; ++n)
      modAddress::WriteSiteRecord({"192.0.2.1", "www.site" + std::to_string(n) + ".test/status",
                                   SiteStatus::iUp, SiteRecord::iEnabled, 60, "Site OK"},
                                  n);
    modAddress::RebuildSiteIndex();
    modAddress::LoadSites(true, true);
  }

 private:
  TestHome aHome;
};

bool IsFull(benchmark::State& aState) {
  if (lSiteCount == modAddress::lSiteCapacity) return true;
  aState.SkipWithError("the list is not complete");
  return false;
}

void RebuildSiteIndex(benchmark::State& aState) {
  const FullStore aStore;
  for (auto _ : aState)
    modAddress::RebuildSiteIndex();
}

void LoadSites(benchmark::State& aState) {
  const FullStore aStore;
  for (auto _ : aState) {
    modAddress::LoadSites(false, false);
    if (!IsFull(aState)) break;
  }
}

void StartOfTheProgram(benchmark::State& aState) {
  const FullStore aStore;
  for (auto _ : aState) {
    Registry::CloseStore();
    modAddress::RebuildSiteIndex();
    modAddress::LoadSites(false, false);
    if (!IsFull(aState)) break;
  }
}

void SaveSite(benchmark::State& aState) {
  const FullStore aStore;
  std::int32_t n = 0;
  for (auto _ : aState) {
    n = n % modAddress::lSiteCapacity + 1;
    const bool bUp = modAddress::Site(n).Status == SiteStatus::iUp;
    modAddress::SetStatus(n, bUp ? SiteStatus::iWarning : SiteStatus::iUp);
    modAddress::SaveSite(n, false);
  }
}

BENCHMARK(RebuildSiteIndex)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadSites)->Unit(benchmark::kMillisecond);
BENCHMARK(StartOfTheProgram)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveSite)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
