// MainHost: how the dialogs reach the main window, which stands a floor above them. Everything here runs on
// the one user-interface thread. A dialog holds the reference for as long as it is shown; the main window
// outlives every dialog.
#pragma once

#include <cstdint>
#include <string>

class CheckEngine;
class wxFrame;
struct SettingsRecord;

class MainHost {
 public:
  virtual ~MainHost() = default;

  // Owner for dialogs, file boxes and message boxes.
  virtual wxFrame* Frame() = 0;

  // false: the main window takes no input while a dialog is open (a pass may still start and the progress
  // window stays usable, which is why dialogs are not modal). true: input again, and the window is shown and
  // raised unless it is minimised. Harmless when repeated. See MainDisabler for the safe way.
  virtual void EnableMain(bool bEnable) = 0;

  // Rebuilds the list from aSites, with the busy notice around it or (Ex) without. SelectNumber: the slot of
  // the row to select afterwards; 0, or a slot that the filters hide, selects nothing.
  virtual void Display_lvwMain(std::int32_t SelectNumber) = 0;
  virtual void Display_lvwMainEx(std::int32_t SelectNumber) = 0;

  virtual std::int32_t SelectedSlot() = 0;  // slot of the selected row, 0 for none
  virtual std::int32_t RowCount() = 0;      // rows shown, after the filters

  virtual CheckEngine& Engine() = 0;

  // What the operator has set; what stands there changes when the options dialog stores.
  virtual const SettingsRecord& CurrentSettings() = 0;

  // TimerAutoCheck, which starts the scheduled passes.
  virtual void EnableAutoTimer(bool bEnable) = 0;

  // Status bar: panel 1 the clock, 2 the pass state or the next check, 3 the last check.
  virtual void ShowPanel(int iPanel, const std::string& szText) = 0;

  // The operator entered something: what could not be stored is tried once more and said in the status bar,
  // as is that the store had to be put together again for it.
  virtual void SeeThatAllIsStored() = 0;

  // A message box with an OK button. During a pass it does not wait: the text is shown when the pass has
  // ended, because a box stops the pass beneath it.
  virtual void ShowMessage(const std::string& szText) = 0;
};

// Disables the main window while it lives. A dialog keeps one as a member, so that every way out of the
// dialog, a failed creation too, gives the main window back.
class MainDisabler {
 public:
  explicit MainDisabler(MainHost& aHost) : Host(aHost) { Host.EnableMain(false); }
  ~MainDisabler() { Host.EnableMain(true); }
  MainDisabler(const MainDisabler&) = delete;
  MainDisabler& operator=(const MainDisabler&) = delete;

 private:
  MainHost& Host;
};
