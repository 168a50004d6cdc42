// Commands: the main window's commands, each told once: what it is called, where it stands, which keys it
// has, whether it rests during a pass, and what carries it out. Menus, the list's pop-up, its keys and the
// lock are made from this table.
#pragma once

#include <wx/defs.h>

#include <cstdint>
#include <span>

class frmMain;

// The commands' numbers, in the order of the table.
enum MenuCommand : int {
  mF_NewAddress = wxID_HIGHEST + 1,
  mF_Import,
  mF_Export,
  mF_StartCheck,
  mF_StopCheck,
  mF_Exit,
  mE_EditAddress,
  mE_DelAddress,
  mE_CheckSite,
  mE_OpenSite,
  mE_CopyAddress,
  mE_SiteLog,
  mE_Options,
  mV_All,
  mV_Successful,
  mV_Warning,
  mV_Unsuccessful,
  mV_Both,
  mV_Enabled,
  mV_Disabled,
  mnuLog_Open,
  mnuLogs_ViewCur,
  mH_Topics,
  mH_Tour,
  mH_Updates,
  mH_About,
  mnuTray_Restore,
  mnuTray_Exit,
  lCommandsEnd
};

namespace Commands {

enum Traits : unsigned {
  None = 0,
  Locked = 1,     // rests during a pass
  Separated = 2,  // a line above it, in its menu and in the pop-up
  Radio = 4
};

struct Command {
  MenuCommand iNumber;
  std::int32_t lMenu;  // its menu, by the menu's title; 0: the tray's
  std::int32_t lText;
  const char* szKey;      // as the menu shows it; acts wherever the menu does
  const char* szListKey;  // a second one, which only the list knows
  std::int32_t lPopText;  // what the list's pop-up calls it; 0: it does not stand there
  unsigned lTraits;
  void (*Run)(frmMain&);

  bool Has(Traits iTrait) const { return (lTraits & iTrait) != 0; }
};

// All of them, from the top of the first menu to the bottom of the last; the order of locking too.
std::span<const Command> All();

// nullptr for a number that is none of them.
const Command* Find(int lNumber);

}  // namespace Commands
