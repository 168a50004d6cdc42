// What the main window says without a box: the fourth panel of the status bar, which is there while there is
// something, and the remarks that a stopped pass gives back.
#include <wx/statusbr.h>

#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "platform/Clock.h"
#include "ui/common/TextGlue.h"
#include "ui/main/frmMain.h"

const SettingsRecord& frmMain::CurrentSettings() {
  return Settings;
}

// The first of them that there is: what was refused just now, what was not kept, what is missing.
std::string frmMain::Note() const {
  return !szRestsNote.empty() ? szRestsNote : !szStoreNote.empty() ? szStoreNote : szLogNote;
}

void frmMain::ShowNotes() {
  LayOutStatusBar();
  if (sbrMain->GetFieldsCount() > 3) sbrMain->SetStatusText(ToWx(Note()), 3);
}

void frmMain::SeeThatAllIsStored() {
  szStoreNote = modAddress::SaveAgain();
  ShowNotes();
}

void frmMain::CountMissingLines() {
  const auto lNew = CheckLog::TakeMissingLines();
  if (lNew == 0) return;
  lMissingLines += lNew;
  szLogNote = FillResString(IDS_NOTICE_LOG, {std::to_string(lMissingLines), CheckLog::CurrentLogFile,
                                             FormatTimeOfDay(Clock::Now())});
}

void frmMain::RememberRemarks() {
  aBeforePass = aSites;
}

// A pass empties all remarks when it begins. A site that a stopped one has not reached keeps its light, and
// with it the remark that tells the reason.
void frmMain::GiveBackRemarks() {
  for (std::int32_t n = aEngine.CheckIndex() + 1; modAddress::IsSite(n); ++n) {
    const auto i = static_cast<std::size_t>(n);
    if (i >= aBeforePass.size() || aBeforePass[i].URL != aSites[i].URL || !aSites[i].Comments.empty())
      continue;
    modAddress::SetComments(n, aBeforePass[i].Comments);
    lvwMain->ShowRemark(n, aBeforePass[i].Comments);
  }
}
