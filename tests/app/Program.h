// Program: the whole program with its windows, running inside the test over a store of its own. Time stands
// still until the test moves it (the splash second passes by itself), while timers tick for real.
#pragma once

#include <wx/menu.h>
#include <wx/modalhook.h>

#include <functional>
#include <string>
#include <vector>

#include "app/Commands.h"
#include "app/frmMain.h"
#include "persistence/modAddress.h"
#include "support/TestHome.h"

class wxMessageDialog;

// Handles events until the condition holds. False when the time ran out first.
bool Until(const std::function<bool()>& aHolds, double dSeconds = 5);
void PumpFor(double dSeconds);

// Answers every message box and dialog at once and keeps its text.
class BoxCatcher : public wxModalDialogHook {
 public:
  BoxCatcher() { Register(); }
  ~BoxCatcher() override { Unregister(); }
  std::vector<std::string> aTexts;

 protected:
  int Enter(wxDialog* pDialog) override;
};

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
  void Run(MenuCommand iCommand) { Main().RunCommand(CommandNumber(iCommand)); }
  bool Enabled(MenuCommand iCommand) { return Main().GetMenuBar()->IsEnabled(CommandNumber(iCommand)); }
  bool Checked(MenuCommand iCommand) { return Main().GetMenuBar()->IsChecked(CommandNumber(iCommand)); }
  std::string Panel(int iPanel);
  // The slots shown, from the top, joined by blanks; "*" marks the selected one.
  std::string Slots();
  // A row in short: "[x] http://a (10.0.0.1) Green: Site OK".
  std::string RowText(std::int32_t lSlot);

  TestHome aHome;
  TestClock aClock;

 private:
  wxWeakRef<frmMain> pMain;
};

// A site for the list: URL, enabled, status, IP.
SiteRecord Site(const std::string& szURL, int lEnabled = 1, int lStatus = 4, const std::string& szIP = "");
