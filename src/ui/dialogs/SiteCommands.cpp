#include "ui/dialogs/SiteCommands.h"

#include <wx/clipbrd.h>
#include <wx/dataobj.h>
#include <wx/frame.h>

#include "editing/AddressRules.h"
#include "persistence/StoreMessages.h"
#include "persistence/modBasic.h"
#include "ui/common/Boxes.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/frmAddress.h"
#include "ui/dialogs/frmBusy.h"
#include "ui/dialogs/frmOptions.h"

namespace {

bool AskToDelete(MainHost& aHost, std::int32_t n) {
  return Boxes::Ask(aHost.Frame(), LoadResString(IDS_DELETE_QUESTION), wxYES_NO | wxNO_DEFAULT,
                    LoadResString(IDS_AGENT) + modAddress::Site(n).URL) == wxID_YES;
}

}  // namespace

std::int32_t SiteCommands::SelectedSite(MainHost& aHost) {
  const auto n = aHost.SelectedSlot();
  if (modAddress::IsSite(n)) return n;
  aHost.ShowMessage(LoadResString(IDS_NONE_SELECTED));
  return 0;
}

void SiteCommands::NewAddress(MainHost& aHost) {
  if (AddressRules::ListIsFull()) {
    aHost.ShowMessage(LoadResString(IDS_LIST_FULL));
    return;
  }
  AddressRules::AddressMode = 0;
  AddressRules::AddressIndex = lSiteCount + 1;
  (new frmAddress(aHost))->Show();
}

void SiteCommands::EditAddress(MainHost& aHost) {
  const auto n = SelectedSite(aHost);
  if (n == 0) return;
  AddressRules::AddressMode = 1;
  AddressRules::AddressIndex = n;
  AddressRules::EditCopy.assign(1, modAddress::Site(n));
  (new frmAddress(aHost))->Show();
}

void SiteCommands::DeleteAddress(MainHost& aHost) {
  auto n = SelectedSite(aHost);
  if (n == 0 || !AskToDelete(aHost, n)) return;
  // A pass may have run above the question.
  n = SelectedSite(aHost);
  if (n == 0) return;
  bool bDeleted = false;
  {
    const frmBusy aNotice(aHost, LoadResString(IDS_APP_TITLE), LoadResString(IDS_DELETING));
    bDeleted = modAddress::DeleteSite(n);
    aHost.Display_lvwMainEx(0);
  }
  aHost.SeeThatAllIsStored();
  if (!bDeleted)
    aHost.ShowMessage(FillResString(IDS_STORE_NOT_DELETED, {StoreMessages::Compose(Registry::OpenStore())}));
}

void SiteCommands::OpenSite(MainHost& aHost) {
  const auto n = SelectedSite(aHost);
  if (n == 0) return;
  const auto szAddress = LoadResString(IDS_AGENT) + modAddress::Site(n).URL;
  if (modBasic::OpenWithShell(szAddress) != 0)
    aHost.ShowMessage(LoadResString(IDS_UPDATES_FAILED) + szAddress);
}

void SiteCommands::CopyAddress(MainHost& aHost) {
  const auto n = SelectedSite(aHost);
  if (n == 0 || !wxTheClipboard->Open()) return;
  wxTheClipboard->SetData(new wxTextDataObject(ToWx(LoadResString(IDS_AGENT) + modAddress::Site(n).URL)));
  wxTheClipboard->Close();
}

void SiteCommands::Options(MainHost& aHost) {
  auto pTimer = std::make_unique<AutoTimerHold>(aHost);
  (new frmOptions(aHost, std::move(pTimer)))->Show();
}
