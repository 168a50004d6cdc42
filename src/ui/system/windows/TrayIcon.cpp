#include "ui/system/TrayIcon.h"

#include <wx/frame.h>
#include <wx/menu.h>

#include <cstring>
#include <cwchar>
#include <iterator>
#include <string>

#include "platform/windows/System.h"

// clang-format off (needs windows.h before it)
#include <commctrl.h>
// clang-format on

namespace {

constexpr UINT lIdentifier = 1;
constexpr UINT lCallback = WM_MOUSEMOVE;  // 512: tray events come as mouse moves of the owner
constexpr std::size_t lTipLength = 63;    // and a NUL

UINT ShellStarted() {
  static const UINT lMessage = RegisterWindowMessageA("TaskbarCreated");
  return lMessage;
}

// A tray event and a mouse move with the left button down look alike; the pointer tells them apart.
bool PointerIsOver(HWND hWindow) {
  POINT aPoint;
  if (GetCapture() == hWindow) return true;
  if (!GetCursorPos(&aPoint)) return false;
  const HWND hUnder = WindowFromPoint(aPoint);
  return hUnder == hWindow || IsChild(hWindow, hUnder);
}

}  // namespace

struct TrayIcon::Impl {
  wxFrame& Owner;
  TrayIcon& Tray;
  HWND hOwner;
  std::string szTip;
  bool bAdded = false;

  bool Notify(DWORD lOperation) {
    // The first form of the record: 88 bytes where handles have 32 bits, 104 here.
    NOTIFYICONDATAA aRecord{};
    aRecord.cbSize = NOTIFYICONDATAA_V1_SIZE;
    aRecord.hWnd = hOwner;
    aRecord.uID = lIdentifier;
    aRecord.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    aRecord.uCallbackMessage = lCallback;
    const wxIcon aIcon =
        Owner.GetIcons().GetIcon(wxSize(GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON)),
                                 wxIconBundle::FALLBACK_NEAREST_LARGER);
    aRecord.hIcon =
        aIcon.IsOk() ? static_cast<HICON>(aIcon.GetHICON()) : LoadIconA(nullptr, MAKEINTRESOURCEA(32512));
    std::memcpy(aRecord.szTip, szTip.data(), szTip.size());
    return Shell_NotifyIconA(lOperation, &aRecord) != FALSE;
  }

  void OpenMenu() {
    if (!Tray.MakeMenu) return;
    SetForegroundWindow(hOwner);  // else the menu stays open when the user clicks elsewhere
    const auto pMenu = Tray.MakeMenu();
    Owner.PopupMenu(pMenu.get());
    PostMessageA(hOwner, WM_NULL, 0, 0);  // the same, second half
  }

  void Event(LPARAM lMessage) {
    if (lMessage == WM_RBUTTONUP) {
      OpenMenu();
    } else if (Tray.Restore) {
      SetForegroundWindow(hOwner);
      Tray.Restore();
    }
  }

  static LRESULT CALLBACK Receive(HWND hWindow, UINT lMessage, WPARAM lFirst, LPARAM lSecond, UINT_PTR,
                                  DWORD_PTR lImpl) {
    auto* const pSelf = reinterpret_cast<Impl*>(lImpl);
    const bool bEvent = lMessage == lCallback && lFirst == lIdentifier &&
                        (lSecond == WM_LBUTTONUP || lSecond == WM_LBUTTONDBLCLK || lSecond == WM_RBUTTONUP);
    if (pSelf->bAdded && bEvent && !PointerIsOver(hWindow)) {
      pSelf->Event(lSecond);
      return 0;
    }
    if (pSelf->bAdded && lMessage == ShellStarted()) pSelf->Notify(NIM_ADD);
    return DefSubclassProc(hWindow, lMessage, lFirst, lSecond);
  }
};

TrayIcon::TrayIcon(wxFrame& aOwner)
    : pImpl(new Impl{aOwner, *this, static_cast<HWND>(aOwner.GetHWND()), {}}) {
  SetWindowSubclass(pImpl->hOwner, Impl::Receive, lIdentifier, reinterpret_cast<DWORD_PTR>(pImpl.get()));
}

TrayIcon::~TrayIcon() {
  Remove();
  RemoveWindowSubclass(pImpl->hOwner, Impl::Receive, lIdentifier);
}

bool TrayIcon::Available() {
  return FindWindowA("Shell_TrayWnd", nullptr) != nullptr;
}

bool TrayIcon::Add(const wxString& szTip) {
  RefreshTip(szTip);
  if (!pImpl->bAdded) pImpl->bAdded = pImpl->Notify(NIM_ADD);
  return pImpl->bAdded;
}

void TrayIcon::RefreshTip(const wxString& szTip) {
  pImpl->szTip = szTip.utf8_string().substr(0, lTipLength);
}

void TrayIcon::Remove() {
  if (pImpl->bAdded) pImpl->Notify(NIM_DELETE);
  pImpl->bAdded = false;
}

bool TrayIcon::Added() const {
  return pImpl->bAdded;
}

bool TrayIcon::Tell(const wxString& szTitle, const wxString& szText) {
  NOTIFYICONDATAW aRecord{};
  aRecord.cbSize = sizeof aRecord;
  aRecord.hWnd = pImpl->hOwner;
  aRecord.uID = lIdentifier;
  aRecord.uFlags = NIF_INFO;
  aRecord.dwInfoFlags = NIIF_WARNING;
  wcsncpy(aRecord.szInfoTitle, szTitle.wc_str(), std::size(aRecord.szInfoTitle) - 1);
  wcsncpy(aRecord.szInfo, szText.wc_str(), std::size(aRecord.szInfo) - 1);
  return pImpl->bAdded && Shell_NotifyIconW(NIM_MODIFY, &aRecord) != FALSE;
}
