#include "ui/dialogs/LogCommands.h"

#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/frame.h>

#include <string>
#include <vector>

#include "editing/LastLocation.h"
#include "history/LogFiles.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "persistence/modBasic.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "ui/common/Boxes.h"
#include "ui/common/MainHost.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/SiteCommands.h"

namespace {

constexpr char szPageEnding[] = ".htm";

bool Ask(MainHost& aHost, std::int32_t lText) {
  return Boxes::Ask(aHost.Frame(), LoadResString(lText), wxYES_NO) == wxID_YES;
}

wxString Filter(std::int32_t lName, std::int32_t lPatterns) {
  wxString szFilter = ResText(lName) + ResText(lPatterns);
  // The blank is for the reader; in the patterns it would be taken as part of a file's name.
  const std::size_t lCut = szFilter.find('|');
  wxString szPatterns = szFilter.Mid(lCut);
  szPatterns.Replace("; ", ";");
  return szFilter.Left(lCut) + szPatterns;
}

// Empty when none was chosen.
std::string ChooseLog(MainHost& aHost) {
  const auto& szLogs = aHost.CurrentSettings().LogPath;
  const wxString szFolder = Files::FolderExists(szLogs) ? ToWx(szLogs) : wxString();
  wxFileDialog aDialog(aHost.Frame(), ResText(IDS_OPEN_LOG_TITLE), szFolder, "",
                       Filter(IDS_LOG_FILE, IDS_LOG_FILTER), wxFD_OPEN | wxFD_FILE_MUST_EXIST);
  return aDialog.ShowModal() == wxID_OK ? FromWx(aDialog.GetPath()) : std::string();
}

// Empty when none was chosen: the log is then only shown. The dialog comes again for a name that
// would replace a log or be read as one, and for one that had to be completed and then names a file that is
// there, so that the dialog itself asks before that file is replaced.
std::string ChoosePage(MainHost& aHost, const std::string& szLog) {
  wxFileName aName(ToWx(LastLocation::StartFolder(LastLocation::szPages, aHost.CurrentSettings().LogPath)),
                   ToWx("KV_Log-" + FormatDay(Clock::Now()) + szPageEnding));
  for (;;) {
    wxFileDialog aDialog(aHost.Frame(), ResText(IDS_SAVE_HTML_TITLE), aName.GetPath(), aName.GetFullName(),
                         Filter(IDS_HTML_FILE, IDS_HTML_FILTER), wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (aDialog.ShowModal() != wxID_OK || aDialog.GetPath().empty()) return {};
    aName = wxFileName(aDialog.GetPath());
    const bool bCompleted = !aName.HasExt();
    if (bCompleted) aName.SetExt(szPageEnding + 1);
    if (LogFiles::NamesLog(FromWx(aName.GetFullPath())) || aName.SameAs(wxFileName(ToWx(szLog)))) {
      aHost.ShowMessage(LoadResString(IDS_HTML_IS_LOG));
      continue;
    }
    if (bCompleted && aName.FileExists()) continue;
    auto szPage = FromWx(aName.GetFullPath());
    LastLocation::Remember(LastLocation::szPages, szPage);
    return szPage;
  }
}

void StartViewer(MainHost& aHost, const std::vector<std::string>& aPaths) {
  const auto szViewer = modBasic::ProgramFile(Shell::ProgramFileName("LogView"));
  if (!Files::FileExists(szViewer))
    aHost.ShowMessage(LoadResString(IDS_VIEWER_MISSING));
  else if (!Shell::StartProgram(szViewer, aPaths))
    aHost.ShowMessage(LoadResString(IDS_VIEWER_FAILED) + szViewer);
}

void View(MainHost& aHost, std::vector<std::string> aOptions) {
  CheckLog::GetLogFileName(false);
  if (Files::FileExists(CheckLog::CurrentLogFile)) {
    aOptions.push_back(CheckLog::CurrentLogFile);
    StartViewer(aHost, aOptions);
  } else if (Ask(aHost, IDS_NO_CURRENT_LOG)) {
    LogCommands::Open(aHost);
  }
}

}  // namespace

void LogCommands::Open(MainHost& aHost) {
  const auto szLog = ChooseLog(aHost);
  if (szLog.empty()) return;
  // A log that cannot be read here is left to the viewer, which says so.
  if (modBasic::HasControlCharacters(szLog) == 1) {
    aHost.ShowMessage(LoadResString(IDS_LOG_CORRUPT));
    return;
  }
  std::vector<std::string> aPaths{szLog};
  if (Ask(aHost, IDS_ASK_SAVE_HTML)) {
    const auto szPage = ChoosePage(aHost, szLog);
    if (!szPage.empty()) aPaths.push_back(szPage);
  }
  StartViewer(aHost, aPaths);
}

void LogCommands::ViewCurrent(MainHost& aHost) {
  View(aHost, {});
}

void LogCommands::ViewSite(MainHost& aHost) {
  const auto n = SiteCommands::SelectedSite(aHost);
  if (n != 0) View(aHost, {LogFiles::szSiteOption, LoadResString(IDS_AGENT) + modAddress::Site(n).URL});
}
