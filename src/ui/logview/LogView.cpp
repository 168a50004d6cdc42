#include "ui/logview/LogView.h"

#include <wx/msgout.h>

#include <algorithm>

#include "history/LogFiles.h"
#include "platform/Files.h"
#include "ui/common/TextGlue.h"
#include "ui/logview/OpenViewer.h"
#include "ui/logview/frmLogView.h"
#include "ui/system/Foreground.h"

bool LogView::OnInit() {
  SetAppName(ResText(IDS_APP_TITLE));
  std::vector<std::string> aPaths;
  for (int i = 1; i < argc; ++i)
    aPaths.push_back(FromWx(argv[i]));
  const auto IsHelp = [](const std::string& szPath) {
    return (szPath == "--help" || szPath == "-h") && !Files::FileExists(szPath);
  };
  if (std::ranges::any_of(aPaths, IsHelp)) {
    // Into the terminal, or a box where there is none.
    wxMessageOutputBest().Output(ResText(IDS_VIEW_USAGE));
    bNoWindow = true;
    return true;
  }
  const auto aRead = LogFiles::Read(aPaths);
  Foreground::Offer();
  bNoWindow =
      !aRead.aLogs.empty() && aRead.szPage.empty() && OpenViewer::Ask(aRead.aLogs.back(), aRead.szSite);
  if (!bNoWindow) Start(aPaths);
  return true;
}

int LogView::OnRun() {
  return bNoWindow ? 0 : wxApp::OnRun();
}

frmLogView* LogView::Start(const std::vector<std::string>& aPaths) {
  const auto aArguments = LogFiles::Read(aPaths);
  auto* pWindow = new frmLogView;
  pWindow->Show();
  // Messages belong above a window that is there already.
  pWindow->CallAfter([pWindow, aArguments] {
    if (aArguments.aLogs.empty())
      pWindow->AskForLog();
    else if (pWindow->OpenLogs(aArguments.aLogs)) {
      if (!aArguments.szSite.empty()) pWindow->ShowSite(aArguments.szSite);
      if (!aArguments.szPage.empty()) pWindow->SavePage(aArguments.szPage);
    }
  });
  return pWindow;
}
