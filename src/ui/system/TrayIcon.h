// TrayIcon: the program's icon in the desktop's notification area. One for the whole life of the main window:
// added once at start, removed once before the window goes. On Windows it is the shell's own record in its
// first form, sent with Shell_NotifyIconA, whose events come back as mouse moves of the owner window;
// elsewhere the toolkit's icon. Both know the same two actions.
#pragma once

#include <wx/string.h>

#include <functional>
#include <memory>

class wxFrame;
class wxMenu;

class TrayIcon {
 public:
  // The owner receives the menu's commands and, on Windows, the shell's messages; its own icon is the one
  // shown.
  explicit TrayIcon(wxFrame& aOwner);
  ~TrayIcon();  // removes the icon
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;

  // Left click or double click on the icon. The owner is raised by the handler.
  std::function<void()> Restore;
  // Right click: makes the menu for this one opening. Its commands arrive at the owner as wxEVT_MENU.
  std::function<std::unique_ptr<wxMenu>()> MakeMenu;

  // Whether the desktop shows tray icons now. Many Linux desktops do not, and it can change while the program
  // runs: ask before each hiding, because a window hidden without an icon cannot be brought back.
  static bool Available();

  // Shows the icon with this tip (at most 63 bytes are kept). False when the desktop refuses.
  bool Add(const wxString& szTip);
  // Keeps the tip for the next Add; the icon shown stays as it is.
  void RefreshTip(const wxString& szTip);
  // Harmless when there is none.
  void Remove();
  bool Added() const;

  // Shows one notification on the desktop, for as long as the desktop likes. On Windows it comes from the
  // icon, and what is longer than 255 UTF-16 units is cut. False when it could not be handed over.
  bool Tell(const wxString& szTitle, const wxString& szText);

 private:
  struct Impl;
  std::unique_ptr<Impl> pImpl;
};
