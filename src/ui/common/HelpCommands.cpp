#include "ui/common/HelpCommands.h"

#include <wx/window.h>

#include <algorithm>
#include <string>

#include "base/Commit.h"
#include "base/Strings.h"
#include "base/Text.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/modBasic.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "ui/common/MainHost.h"
#include "ui/common/frmHelp.h"

namespace {

std::string UpdatesAddress() {
  std::string szAddress;
  std::int32_t lType = 0;
  RegistryAccess::RegReadValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szUpdates, "Updates", szAddress,
                               lType);
  szAddress = Text::Trim(szAddress);
  return szAddress.empty() ? LoadResString(IDS_UPDATES_DEFAULT) : szAddress;
}

// What the shell is handed must be an address and nothing else: it would open a program or a document just
// as readily. Answers the address with its scheme in lower case, or nothing.
std::string WebAddress(const std::string& szAddress) {
  const bool bPlain = std::none_of(szAddress.begin(), szAddress.end(), [](char ch) {
    const auto iByte = static_cast<unsigned char>(ch);
    return iByte <= 32 || iByte == 127 || ch == '"';
  });
  for (const std::string szScheme : {"http://", "https://"})
    if (bPlain && szAddress.size() > szScheme.size() &&
        Text::EqualNoCase(szAddress.substr(0, szScheme.size()), szScheme))
      return szScheme + szAddress.substr(szScheme.size());
  return {};
}

}  // namespace

std::string HelpCommands::szHelpFile;

void HelpCommands::Topics(MainHost& aHost) {
  ShowContext(aHost, HelpContext::lMain);
}

void HelpCommands::ShowContext(MainHost& aHost, std::int32_t lContext) {
  if (!frmHelp::ShowTopic(aHost.Frame(), szHelpFile, lContext))
    aHost.ShowMessage(LoadResString(IDS_HELP_MISSING));
}

void HelpCommands::BindF1(wxWindow& aWindow, MainHost& aHost, std::function<std::int32_t()> aContext) {
  aWindow.Bind(wxEVT_CHAR_HOOK, [&aHost, aContext = std::move(aContext)](wxKeyEvent& aEvent) {
    if (aEvent.GetKeyCode() == WXK_F1 && aEvent.GetModifiers() == wxMOD_NONE)
      ShowContext(aHost, aContext());
    else
      aEvent.Skip();
  });
}

void HelpCommands::BindF1(wxWindow& aWindow, MainHost& aHost, std::int32_t lContext) {
  BindF1(aWindow, aHost, [lContext] { return lContext; });
}

void HelpCommands::Tour(MainHost& aHost) {
  const auto szProgram = modBasic::ProgramFile(Shell::ProgramFileName("KVTour"));
  if (!Files::FileExists(szProgram) || !Shell::StartProgram(szProgram, {}))
    aHost.ShowMessage(LoadResString(IDS_TOUR_MISSING));
}

void HelpCommands::Updates(MainHost& aHost) {
  const auto szStored = UpdatesAddress();
  if (szStored.empty()) {
    const std::string szDay = CommitDay();
    aHost.ShowMessage(FillResString(
        IDS_UPDATES_NONE,
        {KESTROVA_VERSION, CommitName() + (szDay.empty() ? "" : ", " + szDay), modBasic::ProgramFile("")}));
    return;
  }
  const auto szAddress = WebAddress(szStored);
  if (szAddress.empty())
    aHost.ShowMessage(LoadResString(IDS_UPDATES_REFUSED) + szStored +
                      LoadResString(IDS_UPDATES_REFUSED_HELP) + "HKEY_LOCAL_MACHINE\\" +
                      ProductKeys::szUpdates);
  else if (modBasic::OpenWithShell(szAddress) != 0)
    aHost.ShowMessage(LoadResString(IDS_UPDATES_FAILED) + szAddress);
}
