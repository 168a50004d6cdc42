#include "ui/main/App.h"

#include "ui/common/TextGlue.h"
#include "ui/common/WindowPlace.h"
#include "ui/main/modMain.h"

bool App::PrepareWindows() {
  SetAppName(ResText(IDS_APP_TITLE));
  // The program outlives its windows: the main window may be hidden in the tray.
  SetExitOnFrameDelete(false);
  Bind(wxEVT_QUERY_END_SESSION, [](wxCloseEvent&) {});
  Bind(wxEVT_END_SESSION, [](wxCloseEvent&) {
    modMain::RequestExit();
    modMain::TryExit();
  });
  return true;
}

bool App::OnInit() {
  if (!PrepareWindows()) return false;
  WindowPlace::Open();
  CallAfter([] { modMain::Main(); });
  return true;
}
