// The log reader over a log of a million lines: open, filter, summary, page, spreadsheet.
#include <benchmark/benchmark.h>

#include <fstream>

#include "bench/LongLog.h"
#include "history/LogCsv.h"
#include "history/LogFilter.h"
#include "history/LogHistory.h"
#include "history/LogHtml.h"
#include "history/LogSummary.h"

namespace {

const std::string& LongFile() {
  static const TestHome aHome;
  static const std::string szPath = [] {
    aHome.Write("long.kvl", LongLog());
    return aHome.Path("long.kvl");
  }();
  return szPath;
}

const LogHistory& Opened() {
  static LogHistory aHistory;
  static const bool bOpened = aHistory.Open({LongFile()});
  if (!bOpened) std::abort();
  return aHistory;
}

void Open(benchmark::State& aState) {
  const auto& szPath = LongFile();
  for (auto _ : aState) {
    LogHistory aHistory;
    aHistory.Open({szPath});
    aState.counters["lines"] = static_cast<double>(aHistory.Lines().size());
    benchmark::DoNotOptimize(aHistory);
  }
}

void FollowOneLine(benchmark::State& aState) {
  LogHistory aHistory;
  aHistory.Open({LongFile()});
  for (auto _ : aState) {
    aState.PauseTiming();
    std::ofstream(LongFile(), std::ios::binary | std::ios::app) << "[END CHECK]\r\n";
    aState.ResumeTiming();
    aHistory.Update();
  }
}

void Filter(benchmark::State& aState) {
  const auto& aHistory = Opened();
  LogFilter aFilter;
  aFilter.szWords = "unavailable SITE7.";
  for (auto _ : aState) {
    const auto aFound = aFilter.Apply(aHistory);
    aState.counters["found"] = static_cast<double>(aFound.size());
  }
}

void Summary(benchmark::State& aState) {
  const auto& aHistory = Opened();
  for (auto _ : aState)
    benchmark::DoNotOptimize(Summarise(aHistory));
}

void Html(benchmark::State& aState) {
  const auto& aHistory = Opened();
  const auto aSummary = Summarise(aHistory);
  for (auto _ : aState)
    benchmark::DoNotOptimize(LogHtml::Compose(aHistory, aSummary));
}

void Csv(benchmark::State& aState) {
  const auto& aHistory = Opened();
  for (auto _ : aState)
    benchmark::DoNotOptimize(LogCsv::Compose(aHistory));
}

BENCHMARK(Open)->Unit(benchmark::kMillisecond);
BENCHMARK(Filter)->Unit(benchmark::kMillisecond);
BENCHMARK(Summary)->Unit(benchmark::kMillisecond);
BENCHMARK(Html)->Unit(benchmark::kMillisecond);
BENCHMARK(Csv)->Unit(benchmark::kMillisecond);
BENCHMARK(FollowOneLine)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

BENCHMARK_MAIN();
