#include "ui/logview/LogView.h"

#include "history/LogFiles.h"
#include "ui/common/TextGlue.h"
#include "ui/logview/frmLogView.h"

bool LogView::OnInit() {
  SetAppName(ResText(IDS_APP_TITLE));
  std::vector<std::string> aPaths;
  for (int i = 1; i < argc; ++i)
    aPaths.push_back(FromWx(argv[i]));
  Start(aPaths);
  return true;
}

frmLogView* LogView::Start(const std::vector<std::string>& aPaths) {
  const auto aArguments = LogFiles::Read(aPaths);
  auto* pWindow = new frmLogView;
  pWindow->Show();
  // Messages belong above a window that is there already.
  pWindow->CallAfter([pWindow, aArguments] {
    if (aArguments.aLogs.empty())
      pWindow->AskForLog();
    else if (pWindow->OpenLogs(aArguments.aLogs) && !aArguments.szPage.empty())
      pWindow->SavePage(aArguments.szPage);
  });
  return pWindow;
}
