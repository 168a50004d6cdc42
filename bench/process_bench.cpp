// process_bench: what whole processes cost, from their start to their end, beside peers that do the least.
// Prints its figures; bench/README.md says how to read them.
#include <algorithm>
#include <asio.hpp>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "bench/BareLoop.h"
#include "bench/LongLog.h"
#include "persistence/modAddress.h"
#include "platform/Registry.h"
#include "servers/FaultServer.h"
#include "support/ChildProcess.h"
#include "support/TestHome.h"

namespace {

constexpr std::int32_t lSites = 1000;
constexpr int lRounds = 9;
constexpr double lPatience = 120;  // seconds

std::string PathOf(std::int32_t lSite) {
  return "/" + std::to_string(lSite);
}

// The peer on plain sockets: connect, send, read to the end.
std::int32_t OnSockets(std::uint16_t lPort) {
  std::int32_t lAnswered = 0;
  asio::io_context aContext;
  std::array<char, 4096> aBuffer{};
  for (std::int32_t i = 1; i <= lSites; ++i) {
    asio::ip::tcp::socket aSocket(aContext);
    asio::error_code aError;
    aSocket.connect({asio::ip::address_v4::loopback(), lPort}, aError);
    asio::write(aSocket, asio::buffer("GET " + PathOf(i) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"), aError);
    bool bFine = false;
    for (std::size_t lRead = 0; !aError;) {
      lRead = aSocket.read_some(asio::buffer(aBuffer), aError);
      bFine = bFine || std::string_view(aBuffer.data(), lRead).starts_with("HTTP/1.1 200");
    }
    lAnswered += bFine ? 1 : 0;
  }
  return lAnswered;
}

int RunPeer(const std::string& szPeer, const std::string& szAddress) {
  if (szPeer == "--sockets") {
    const auto lPort =
        static_cast<std::uint16_t>(std::atoi(szAddress.substr(szAddress.rfind(':') + 1).c_str()));
    return OnSockets(lPort) == lSites ? 0 : 2;
  }
  curl_global_init(CURL_GLOBAL_DEFAULT);
  std::vector<std::string> aURLs;
  for (std::int32_t i = 1; i <= lSites; ++i)
    aURLs.push_back("http://" + szAddress + PathOf(i));
  return BareLoop::OnCurl(aURLs) == lSites ? 0 : 2;
}

struct Command {
  std::string szName;
  std::string szProgram;
  std::vector<std::string> aArguments;
  std::function<void()> Prepare = [] {};
  std::vector<double> aWall = {}, aCpu = {};
  std::int64_t lPeak = 0;  // kB
};

double Median(std::vector<double> aValues) {
  std::sort(aValues.begin(), aValues.end());
  return aValues[aValues.size() / 2];
}

void RunOnce(Command& aCommand, bool bCounts) {
  aCommand.Prepare();
  const Stopwatch aWatch;
  ChildProcess aChild(ChildProcess::BuiltProgram(aCommand.szProgram), aCommand.aArguments);
  const auto lCode = aChild.Wait(lPatience);
  const auto dWall = aWatch.Seconds();
  if (lCode != 0) {
    std::printf("NOT VALID: %s ended with %d: %s\n", aCommand.szName.c_str(), lCode, aChild.Errors().c_str());
    std::exit(2);
  }
  if (!bCounts) return;
  aCommand.aWall.push_back(dWall);
  aCommand.aCpu.push_back(aChild.CpuSeconds());
  aCommand.lPeak = std::max(aCommand.lPeak, aChild.PeakKilobytes());
}

// Interleaved, so that what the machine does besides hits all alike.
void Measure(const char* szTitle, std::vector<Command>& aCommands, int lTimes) {
  for (int i = 0; i <= lTimes; ++i)
    for (auto& aCommand : aCommands)
      RunOnce(aCommand, i > 0);
  std::printf("\n%s, median of %d interleaved rounds:\n", szTitle, lTimes);
  for (const auto& aCommand : aCommands)
    std::printf("  %-44s %8.1f ms   CPU %8.1f ms   peak %6lld kB\n", aCommand.szName.c_str(),
                Median(aCommand.aWall) * 1e3, Median(aCommand.aCpu) * 1e3,
                static_cast<long long>(aCommand.lPeak));
}

void StoreSites(const FaultServer& aServer, std::uint8_t iStatus) {
  {
    const Registry::Transaction aAll;
    for (std::int32_t i = 1; i <= lSites; ++i)
      modAddress::WriteSiteRecord({"", aServer.Site(PathOf(i)), iStatus, SiteRecord::iEnabled, 30, ""}, i);
    modAddress::RebuildSiteIndex();
  }
  Registry::CloseStore();
}

void MeasurePasses() {
  const TestHome aHome;
  FaultServer aServer;
  const auto szAddress = aServer.Address();
  std::vector<Command> aCommands = {
      {"bare sockets", "process_bench", {"--sockets", szAddress}},
      {"bare libcurl loop", "process_bench", {"--curl", szAddress}},
      {"kestrova-cli check, as in the pass before", "kestrova-cli", {"check"}, [] {}},
      {"kestrova-cli check, every site changes",
       "kestrova-cli",
       {"check"},
       [&] { StoreSites(aServer, SiteStatus::iWarning); }},
      {"kestrova-cli list", "kestrova-cli", {"list"}}};
  StoreSites(aServer, SiteStatus::iUp);
  Measure("1,000 local sites", aCommands, lRounds);
  const auto dPeer = Median(aCommands[1].aWall);
  for (const std::size_t i : {2U, 3U})
    std::printf("  %-44s %8.2f times the libcurl loop (aim: 1.4)\n", aCommands[i].szName.c_str(),
                Median(aCommands[i].aWall) / dPeer);
}

void MeasureLogs() {
  const TestHome aHome;
  aHome.Write("long.kvl", LongLog());
  const auto szLog = aHome.Path("long.kvl");
  std::vector<Command> aCommands = {
      {"kestrova-cli log --summary", "kestrova-cli", {"log", "--summary", szLog}},
      {"kestrova-cli log --html", "kestrova-cli", {"log", szLog, "--html", aHome.Path("long.htm")}}};
  Measure("A log of a million lines", aCommands, 5);
  std::printf("  the page has %zu kB (aim: 5,000)\n", aHome.Read("long.htm").size() / 1000);
}

}  // namespace

int main(int iCount, char** aValues) {
  if (iCount == 3) return RunPeer(aValues[1], aValues[2]);
  MeasurePasses();
  MeasureLogs();
}
