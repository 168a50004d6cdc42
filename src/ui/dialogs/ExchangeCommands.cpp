#include "ui/dialogs/ExchangeCommands.h"

#include <wx/filedlg.h>
#include <wx/frame.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "editing/AddressRules.h"
#include "editing/ListExchange.h"
#include "persistence/modBasic.h"
#include "platform/Files.h"
#include "ui/common/Boxes.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/frmBusy.h"

namespace {

std::string About(std::int32_t lMessage, const std::string& szFile) {
  return FillResString(lMessage, {szFile});
}

// The chosen file, empty when the operator cancelled.
std::string ChooseFile(MainHost& aHost, std::int32_t lTitle, const std::string& szName, long lStyle) {
  const wxString szFilter = ResText(IDS_DATA_FILE) + ResText(IDS_DATA_FILE_FILTER);
  wxFileDialog aDialog(aHost.Frame(), ResText(lTitle), ToWx(ListExchange::StartFolder()), ToWx(szName),
                       szFilter, lStyle);
  return aDialog.ShowModal() == wxID_OK ? FromWx(aDialog.GetPath()) : std::string();
}

// Which line is wrong helps whoever edits such files by hand.
void SayCorrupt(MainHost& aHost, std::int32_t lBadLine) {
  Boxes::Say(aHost.Frame(), LoadResString(IDS_IMPORT_CORRUPT),
             About(IDS_IMPORT_BAD_LINE, std::to_string(lBadLine)));
}

bool ReadFile(MainHost& aHost, const std::string& szFile, std::vector<SiteRecord>& aRecords) {
  if (modBasic::HasControlCharacters(szFile) == 1) {
    aHost.ShowMessage(LoadResString(IDS_IMPORT_CORRUPT));
    return false;
  }
  std::int32_t lBadLine = 0;
  switch (ListExchange::Read(szFile, aRecords, lBadLine)) {
    case ListExchange::Reading::Fine:
      return true;
    case ListExchange::Reading::Corrupt:
      SayCorrupt(aHost, lBadLine);
      return false;
    case ListExchange::Reading::TooMany:
      aHost.ShowMessage(LoadResString(IDS_IMPORT_TOO_MANY));
      return false;
    case ListExchange::Reading::Unreadable:
      aHost.ShowMessage(About(IDS_IMPORT_UNREADABLE, szFile));
      return false;
  }
  return false;
}

std::string Sites(std::int32_t lCount) {
  return About(lCount == 1 ? IDS_COUNT_SITE : IDS_COUNT_SITES, std::to_string(lCount));
}

// How many came, how many of them are new, and how many there are now.
std::string Summary(const std::string& szFile, const std::vector<SiteRecord>& aRecords,
                    std::int32_t lBefore) {
  return FillResString(IDS_IMPORTED_FROM, {Sites(static_cast<std::int32_t>(aRecords.size())), szFile,
                                           std::to_string(lSiteCount - lBefore), Sites(lSiteCount)});
}

std::string Flaws(const std::vector<SiteRecord>& aRecords) {
  std::string szFlaws;
  for (const auto& szFlaw : ListExchange::Flaws(aRecords))
    szFlaws += "\r\n\r\n" + szFlaw;
  return szFlaws;
}

}  // namespace

void ExchangeCommands::ExportList(MainHost& aHost) {
  const auto szChosen = ChooseFile(aHost, IDS_EXPORT_DIALOG, ListExchange::DefaultFileName(),
                                   wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
  if (szChosen.empty()) return;
  const auto szFile = ListExchange::CompleteFileName(szChosen);
  // The file dialog has asked about the name as it was typed.
  if (szFile != szChosen && Files::FileExists(szFile) &&
      Boxes::Ask(aHost.Frame(), About(IDS_OVERWRITE, szFile), wxYES_NO | wxNO_DEFAULT) != wxID_YES)
    return;
  ListExchange::RememberFolder(szFile);
  bool bWritten = false;
  {
    frmBusy aNotice(aHost, LoadResString(IDS_EXPORT), LoadResString(IDS_EXPORTING), lSiteCount);
    bWritten = ListExchange::Export(szFile, [&](std::int32_t lDone) { aNotice.Progress(lDone); });
  }
  if (bWritten)
    Boxes::Say(aHost.Frame(), LoadResString(IDS_EXPORTED),
               FillResString(IDS_EXPORTED_TO, {Sites(lSiteCount), szFile}));
  else
    aHost.ShowMessage(About(IDS_EXPORT_FAILED, szFile));
}

void ExchangeCommands::ImportList(MainHost& aHost) {
  const auto szFile = ChooseFile(aHost, IDS_IMPORT_DIALOG, "", wxFD_OPEN | wxFD_FILE_MUST_EXIST);
  std::vector<SiteRecord> aRecords;
  if (szFile.empty() || !ReadFile(aHost, szFile, aRecords)) return;
  bool bReplace = true;
  if (lSiteCount > 0) {
    const int lAnswer = Boxes::Ask(aHost.Frame(), LoadResString(IDS_IMPORT_QUESTION), wxYES_NO | wxCANCEL,
                                   LoadResString(IDS_IMPORT_ANSWERS));
    if (lAnswer != wxID_YES && lAnswer != wxID_NO) return;
    bReplace = lAnswer == wxID_YES;
  }
  ListExchange::RememberFolder(szFile);
  const auto lBefore = lSiteCount;
  bool bStored = false;
  {
    frmBusy aNotice(aHost, LoadResString(IDS_IMPORT), LoadResString(IDS_PREPARING),
                    static_cast<std::int32_t>(aRecords.size()));
    aNotice.Message(LoadResString(IDS_IMPORTING));
    bStored = ListExchange::Import(aRecords, bReplace, [&](std::int32_t lDone) { aNotice.Progress(lDone); });
    aHost.Display_lvwMainEx(0);
  }
  aHost.SeeThatAllIsStored();
  if (!bStored) {
    aHost.ShowMessage(LoadResString(IDS_STORE_NOT_IMPORTED));
    return;
  }
  Boxes::Say(aHost.Frame(), LoadResString(IDS_IMPORTED),
             Summary(szFile, aRecords, lBefore) + Flaws(aRecords));
}
