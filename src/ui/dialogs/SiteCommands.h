// SiteCommands: the main window's commands that change one site, and the options. Each shows its dialog and
// returns; the dialog does the rest.
#pragma once

#include <cstdint>

class MainHost;

namespace SiteCommands {

// The selected site's slot; 0, and a message, where there is none.
std::int32_t SelectedSite(MainHost& aHost);

void NewAddress(MainHost& aHost);
void EditAddress(MainHost& aHost);
void DeleteAddress(MainHost& aHost);
// Of the selected site.
void OpenSite(MainHost& aHost);  // in the web browser
void CopyAddress(MainHost& aHost);
void Options(MainHost& aHost);

}  // namespace SiteCommands
