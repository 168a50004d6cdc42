// What the main window says without a box: the fourth panel of the status bar, which is there while there is
// something, a notification about a pass that nobody saw, and the remarks that a stopped pass gives back.
#include <wx/statusbr.h>

#include "log/CheckLog.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/Settings.h"
#include "persistence/StoreMessages.h"
#include "platform/Clock.h"
#include "platform/Registry.h"
#include "ui/common/TextGlue.h"
#include "ui/main/frmMain.h"
#include "ui/main/modSysTray.h"

namespace {

// On unless the operator has stored 0.
bool NotifyWanted() {
  std::int32_t lWanted = 1;
  std::int32_t lType = 0;
  const auto lCode = RegistryAccess::RegReadValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szWindow,
                                                  "Notify", lWanted, lType);
  return lCode != Registry::lSuccess || lWanted != 0;
}

std::string OneOrMany(const std::vector<std::string>& aAddresses, std::int32_t lOne, std::int32_t lMany) {
  if (aAddresses.empty()) return {};
  return aAddresses.size() == 1 ? FillResString(lOne, {aAddresses.front()})
                                : FillResString(lMany, {std::to_string(aAddresses.size())});
}

}  // namespace

const SettingsRecord& frmMain::CurrentSettings() {
  return Settings;
}

// The first of them that there is: what was refused just now, what was not kept, what is missing.
std::string frmMain::Note() const {
  return !szRestsNote.empty()   ? szRestsNote
         : !szStoreNote.empty() ? szStoreNote
         : !szPassNote.empty()  ? szPassNote
                                : szLogNote;
}

void frmMain::ShowNotes() {
  LayOutStatusBar();
  if (sbrMain->GetFieldsCount() > 3) sbrMain->SetStatusText(ToWx(Note()), 3);
}

// What the pass says of the store is the store's own note.
void frmMain::ReportTrouble(const std::string& szText) {
  if (szText != aEngine.StoreTrouble()) szPassNote = szText;
  ShowNotes();
}

void frmMain::SeeThatAllIsStored() {
  szStoreNote = modAddress::SaveAgain();
  // What was entered may have put the store together again.
  if (szStoreNote.empty()) szStoreNote = StoreMessages::Compose(Registry::OpenStore());
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
  aShownBefore.clear();
  for (std::int32_t i = 0; i < lvwMain->RowCount(); ++i)
    aShownBefore.emplace(lvwMain->RowAt(i)->lSlot, lvwMain->RowAt(i)->szRemark);
}

// A pass empties all remarks when it begins. A site that a stopped one has not reached keeps its light, and
// with it the remark that tells the reason. "Manually Stopped." of an earlier pass stood in the row alone.
void frmMain::GiveBackRemarks() {
  for (std::int32_t n = aEngine.CheckIndex() + 1; modAddress::IsSite(n); ++n) {
    const auto i = static_cast<std::size_t>(n);
    if (i >= aBeforePass.size() || aBeforePass[i].URL != aSites[i].URL || !aSites[i].Comments.empty())
      continue;
    modAddress::SetComments(n, aBeforePass[i].Comments);
    const auto pShown = aShownBefore.find(n);
    lvwMain->ShowRemark(n, pShown == aShownBefore.end() ? aBeforePass[i].Comments : pShown->second);
  }
}

void frmMain::SiteRecorded(std::int32_t lSlot) {
  aPassFiles.SiteRecorded(lSlot);
  const auto i = static_cast<std::size_t>(lSlot);
  if (!modAddress::IsSite(lSlot) || i >= aBeforePass.size()) return;
  const SiteRecord& aSite = aSites[i];
  if (aSite.Status != SiteStatus::iDown || aBeforePass[i].Status == SiteStatus::iDown) return;
  aWentDown.push_back(LoadResString(IDS_AGENT) + aSite.URL);
  if (CheckLog::CurrentEntry.Comment.find(LoadResString(IDS_MAIL_SENT)) == std::string::npos)
    aUnmailed.push_back(aWentDown.back());
}

void frmMain::NotifyOfPass() {
  if (aWentDown.empty() || (IsShown() && !bMinimised) || bExiting || !NotifyWanted()) return;
  const auto szText = OneOrMany(aWentDown, IDS_NOTIFY_ONE, IDS_NOTIFY_MANY) +
                      OneOrMany(aUnmailed, IDS_NOTIFY_MAIL_ONE, IDS_NOTIFY_MAIL_MANY);
  if (Notify)
    Notify(szText);
  else
    modSysTray::Tell(ToWx(szText));  // who missed it sees the lights
}
