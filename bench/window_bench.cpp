// What the windows cost, each figure beside its aim: a long log in the viewer, filling the list, starting up,
// a pass seen through the main window, and doing nothing in the background. Needs a display (xvfb-run will
// do); prints one line each.
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/stopwatch.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "bench/LongLog.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "servers/FaultServer.h"
#include "support/Stored.h"
#include "support/TestHome.h"
#include "ui/common/EventPump.h"
#include "ui/common/VirtualTable.h"
#include "ui/logview/EntriesPage.h"
#include "ui/logview/LogView.h"
#include "ui/logview/frmLogView.h"
#include "ui/main/App.h"
#include "ui/main/frmMain.h"
#include "ui/main/modMain.h"

namespace {

using Steady = std::chrono::steady_clock;
constexpr std::int32_t lSites = 1000;

double MillisecondsSince(Steady::time_point aStart) {
  return std::chrono::duration<double, std::milli>(Steady::now() - aStart).count();
}

void Report(const char* szWhat, double dFigure, double dAim, const char* szUnit) {
  std::printf("%-66s %9.2f %s (aim: under %g) %s\n", szWhat, dFigure, szUnit, dAim,
              dFigure < dAim ? "" : "MISSED");
}

// Runs as often as the event loop lets it, and keeps the longest stretch between two runs.
class GapWatch : public wxTimer {
 public:
  void Notify() override {
    if (aLast != Steady::time_point()) dLongest = std::max(dLongest, MillisecondsSince(aLast));
    aLast = Steady::now();
  }
  double dLongest = 0;

 private:
  Steady::time_point aLast;
};

void Pump(double dSeconds) {
  const auto aStart = Steady::now();
  while (MillisecondsSince(aStart) < dSeconds * 1000) {
    EventPump::Run();
    wxMilliSleep(1);
  }
}

void RefillRows(frmMain& aMain) {
  constexpr int lTimes = 20;
  const auto aStart = Steady::now();
  for (int i = 0; i < lTimes; ++i)
    aMain.Display_lvwMainEx(500);
  Report("refill of 1,000 rows", MillisecondsSince(aStart) / lTimes, 30, "ms");
  const auto aNoticeStart = Steady::now();
  for (int i = 0; i < lTimes; ++i) {
    aMain.Display_lvwMain(500);
    EventPump::Run();
  }
  std::printf("%-66s %9.2f ms\n", "  the same with the busy notice",
              MillisecondsSince(aNoticeStart) / lTimes);
}

void PassOverAll(frmMain& aMain, FaultServer& aServer) {
  const std::size_t lBefore = aServer.Count();
  GapWatch aGaps;
  aGaps.Start(1);
  const auto aStart = Steady::now();
  const std::clock_t lCPU = std::clock();
  aMain.Engine().mF_StartCheck_Click();
  const double dSeconds = MillisecondsSince(aStart) / 1000;
  aGaps.Stop();
  Report("pass over 1,000 local sites, seen in the main window", dSeconds, 3, "s ");
  std::printf("%-66s %9.2f s\n", "  CPU time in it, the test's web server included",
              static_cast<double>(std::clock() - lCPU) / CLOCKS_PER_SEC);
  Report("  longest stretch without handling events", aGaps.dLongest, 50, "ms");
  if (aServer.Count() - lBefore != lSites)
    std::printf("  only %zu requests came in\n", aServer.Count() - lBefore);
}

void Idle(double dSeconds) {
  wxEventLoopBase* pLoop = wxEventLoopBase::GetActive();
  const std::clock_t lStart = std::clock();
  const auto aEnd = Steady::now() + std::chrono::duration<double>(dSeconds);
  while (Steady::now() < aEnd) {
    pLoop->DispatchTimeout(1000);
    pLoop->ProcessIdle();
  }
  const double dUsed = static_cast<double>(std::clock() - lStart) / CLOCKS_PER_SEC;
  Report("CPU time for a minute in the background", dUsed * 60 / dSeconds, 0.1, "s ");
}

// With what the toolkit took to start, as if the viewer had been started as a program.
void OpenLongLog(const TestHome& aHome, double dToolkit) {
  aHome.Write("long.kvl", LongLog());
  const std::clock_t lCPU = std::clock();
  auto aStart = Steady::now();
  frmLogView& aViewer = *LogView::Start({aHome.Path("long.kvl")});
  while (!aViewer.History())
    EventPump::Run();
  VirtualTable& aList = *aViewer.pixEntries->lvwEntries;
  const auto Drawn = [&] {
    EventPump::Run();
    aList.List()->Update();
  };
  Drawn();
  Report("log of 1,000,000 lines in the viewer, from start to its last line",
         dToolkit + MillisecondsSince(aStart), 2000, "ms");
  std::printf("%-66s %9.2f ms\n", "  CPU time in it, without the start of the toolkit",
              1000.0 * static_cast<double>(std::clock() - lCPU) / CLOCKS_PER_SEC);
  aStart = Steady::now();
  for (const std::size_t lRow : {std::size_t{0}, aList.Rows() / 2, aList.Rows() - 1}) {
    aList.GoTo(lRow);
    Drawn();
  }
  Report("  from there to the first line, the middle and the end", MillisecondsSince(aStart), 200, "ms");
  aViewer.Destroy();
  EventPump::Run();
}

int Run(double dIdleSeconds, double dToolkit) {
  TestHome aHome;
  OpenLongLog(aHome, dToolkit);
  FaultServer aServer;
  Stored::Put(ProductKeys::szSetup, "startup", std::int32_t{1});
  {
    const Registry::Transaction aAll;
    for (std::int32_t i = 1; i <= lSites; ++i)
      modAddress::WriteSiteRecord(
          {"", aServer.Site("/" + std::to_string(i)), SiteStatus::iNotKnown, SiteRecord::iEnabled, 60, ""},
          i);
  }
  constexpr double dSplash = 1000;
  const auto aStart = Steady::now();
  modMain::Main();
  const double dBeyond = MillisecondsSince(aStart) - dSplash;
  Report("start to shown window with 1,000 sites, beyond the splash second", dBeyond, 150, "ms");
  frmMain& aMain = *modMain::MainWindow();
  Pump(0.5);
  RefillRows(aMain);
  PassOverAll(aMain, aServer);
  aMain.Hide();
  Pump(0.5);
  if (dIdleSeconds > 0) Idle(dIdleSeconds);
  modMain::RequestExit();
  Pump(0.5);
  return 0;
}

class BenchApp : public App {
 public:
  bool OnInit() override { return PrepareWindows(); }
};

}  // namespace

// The argument: how many seconds to watch the idle program (60).
int main(int lCount, char** aArguments) {
  const double dIdleSeconds = lCount > 1 ? std::atof(aArguments[1]) : 60;
  const auto aStart = Steady::now();
  wxApp::SetInstance(new BenchApp);
  if (!wxEntryStart(lCount, aArguments) || !wxTheApp->CallOnInit()) return 2;
  const double dToolkit = MillisecondsSince(aStart);
  int lResult = 0;
  {
    wxEventLoop aLoop;
    wxEventLoopActivator aActive(&aLoop);
    lResult = Run(dIdleSeconds, dToolkit);
  }
  wxEntryCleanup();
  return lResult;
}
