#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

#include "long/Stand.h"
#include "long/Trials.h"

namespace fs = std::filesystem;

namespace {

struct Size {
  long lKilobytes = 0;
  std::ptrdiff_t lDescriptors = 0;
};

Size SizeOf(std::intptr_t lProcess) {
  const fs::path aFolder = "/proc/" + std::to_string(lProcess);
  Size aSize;
  std::ifstream aStatus(aFolder / "status");
  for (std::string szWord; aStatus >> szWord;)
    if (szWord == "VmRSS:") aStatus >> aSize.lKilobytes;
  aSize.lDescriptors = std::distance(fs::directory_iterator(aFolder / "fd"), fs::directory_iterator());
  return aSize;
}

}  // namespace

void Trials::Soak(int lSeconds) {
  constexpr int lSites = 10;
  constexpr long lMostGrowth = 2048;
  Stand aStand(lSites);
  // Each site fails a while, in ways of its own.
  const Fault::Answer aWays[] = {Fault::Ok(),
                                 Fault::Ok(),
                                 Fault::Status("404 Not Found"),
                                 {Fault::Send("HTTP/1.1 200"), Fault::Reset()},
                                 {Fault::Close()},
                                 {Fault::Send("\r\nnothing\r\n")}};
  std::signal(SIGINT, SIG_DFL);  // who runs in the background may have it ignored, and hands that on
  ChildProcess aWatch(ChildProcess::BuiltProgram("hurried-watch"), {});
  const Stopwatch aClock;
  Size aFirst;
  while (aClock.Seconds() < lSeconds) {
    aStand.aWeb.Serve((aStand.Below(2) == 0 ? "/good" : "/bad") + std::to_string(aStand.Below(lSites)),
                      aWays[aStand.Below(std::size(aWays))]);
    Must(aWatch.Wait(0.02) == ChildProcess::lRunning, "watch goes on: " + aWatch.Errors());
    if (aFirst.lKilobytes == 0 && aClock.Seconds() > lSeconds / 10.0) aFirst = SizeOf(aWatch.Number());
  }
  const auto lRequests = aStand.aWeb.Count();
  Size aLast;  // between two passes there are fewer descriptors than in one
  aLast.lDescriptors = PTRDIFF_MAX;
  for (int i = 0; i < 50; ++i) {
    const auto aNow = SizeOf(aWatch.Number());
    aLast = {aNow.lKilobytes, std::min(aLast.lDescriptors, aNow.lDescriptors)};
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
  }
  aWatch.Interrupt();
  const int iEnd = aWatch.Wait(30);
  Must(iEnd == 0,
       "watch ends when it is asked to, and not with " + std::to_string(iEnd) + ": " + aWatch.Errors());
  std::cout << "  " << lSeconds << " s, " << lRequests << " requests, " << aStand.aMail.Mails().size()
            << " mails; memory " << aFirst.lKilobytes << " kB at the tenth part, " << aLast.lKilobytes
            << " kB at the end; descriptors " << aFirst.lDescriptors << " and " << aLast.lDescriptors
            << std::endl;
  Must(aLast.lKilobytes - aFirst.lKilobytes < lMostGrowth, "the memory does not grow");
  Must(aLast.lDescriptors <= aFirst.lDescriptors, "no descriptor is left open");
}
