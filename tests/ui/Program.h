// Program: the whole program with its windows, running inside the test over a store of its own. Time stands
// still until the test moves it (the splash second passes by itself), while timers tick for real.
#pragma once

#include <wx/menu.h>
#include <wx/timer.h>
#include <wx/weakref.h>

#include <string>
#include <vector>

#include "persistence/modAddress.h"
#include "support/TestHome.h"
#include "ui/Operator.h"
#include "ui/main/Commands.h"
#include "ui/main/frmMain.h"

class Program {
 public:
  enum class Start { Later, First };
  // Stores the sites and starts the program.
  explicit Program(const std::vector<SiteRecord>& aStored = {}, Start iStart = Start::Later);
  ~Program();  // ends it, by exit if it still runs
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  frmMain& Main() { return *pMain; }
  bool Ended() const { return !pMain; }
  void Run(MenuCommand iCommand) { Main().RunCommand(iCommand); }
  std::string Panel(int iPanel);
  // The slots shown, from the top, joined by blanks; "*" marks the selected one.
  std::string Slots();
  // A row in short: "[x] http://a (10.0.0.1) Green: Site OK".
  std::string RowText(std::int32_t lSlot);

  TestHome aHome;
  StandingClock aClock;

 private:
  wxWeakRef<frmMain> pMain;
};

// A site for the list: URL, enabled, status, IP.
SiteRecord Site(const std::string& szURL, int lEnabled = 1, int lStatus = 4, const std::string& szIP = "");

// Whatever is done while a pass or a box waits is done from here, every 20 ms: they run inside an event
// handler.
class During {
 public:
  explicit During(std::function<void()> aAct) : aWhat(std::move(aAct)) {
    aTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { aWhat(); });
    aTimer.Start(20);
  }

 private:
  wxTimer aTimer;
  std::function<void()> aWhat;
};
