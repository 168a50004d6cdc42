#include "ui/system/TrayIcon.h"

#include <gdk/gdkx.h>
#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/notifmsg.h>
#include <wx/taskbar.h>

namespace {

class Icon : public wxTaskBarIcon {
 public:
  Icon(wxFrame& aFrame, TrayIcon& aTray) : Owner(aFrame), Tray(aTray) {
    const auto aRestore = [this](wxTaskBarIconEvent&) {
      if (Tray.Restore) Tray.Restore();
    };
    Bind(wxEVT_TASKBAR_LEFT_UP, aRestore);
    Bind(wxEVT_TASKBAR_LEFT_DCLICK, aRestore);
    // GTK reports the click that activates an icon as a press only.
    Bind(wxEVT_TASKBAR_LEFT_DOWN, aRestore);
    Bind(wxEVT_MENU, [this](wxCommandEvent& aEvent) { Owner.GetEventHandler()->ProcessEvent(aEvent); });
  }

  wxMenu* CreatePopupMenu() override { return Tray.MakeMenu ? Tray.MakeMenu().release() : nullptr; }

 private:
  wxFrame& Owner;
  TrayIcon& Tray;
};

// The icon's window lies in one of the panel. A panel that crashes takes it away, and what GTK asks of it
// before it hears of that is an error of X, at which GTK ends the program. Between a push and its pop it does
// not; there is no pop, because a panel may go at any time.
void OutliveThePanel() {
  static const bool bDone = [] {
    GdkDisplay* const pDisplay = gdk_display_get_default();
    if (GDK_IS_X11_DISPLAY(pDisplay)) gdk_x11_display_error_trap_push(pDisplay);
    return true;
  }();
  static_cast<void>(bDone);
}

}  // namespace

struct TrayIcon::Impl {
  wxFrame& Owner;
  std::unique_ptr<Icon> pIcon;
  wxString szTip;
};

TrayIcon::TrayIcon(wxFrame& aOwner) : pImpl(new Impl{aOwner, nullptr, {}}) {
}

TrayIcon::~TrayIcon() {
  Remove();
}

bool TrayIcon::Available() {
  return wxTaskBarIcon::IsAvailable();
}

bool TrayIcon::Add(const wxString& szTip) {
  OutliveThePanel();
  pImpl->szTip = szTip;
  if (!pImpl->pIcon) pImpl->pIcon = std::make_unique<Icon>(pImpl->Owner, *this);
  return pImpl->pIcon->SetIcon(wxBitmapBundle::FromIconBundle(pImpl->Owner.GetIcons()), szTip);
}

void TrayIcon::RefreshTip(const wxString& szTip) {
  pImpl->szTip = szTip;
}

void TrayIcon::Remove() {
  if (!pImpl->pIcon) return;
  pImpl->pIcon->RemoveIcon();
  // The icon may be the sender of the event that ends the program.
  pImpl->pIcon.release()->Destroy();
}

bool TrayIcon::Added() const {
  return pImpl->pIcon != nullptr;
}

bool TrayIcon::Tell(const wxString& szTitle, const wxString& szText) {
  return wxNotificationMessage(szTitle, szText, &pImpl->Owner, wxICON_WARNING).Show();
}
