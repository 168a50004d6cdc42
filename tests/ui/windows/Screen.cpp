#include "ui/Screen.h"

#include <wx/bitmap.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/image.h>

#include "platform/windows/System.h"
#include "ui/Operator.h"
#include "ui/common/TextGlue.h"
#include "ui/main/frmMain.h"
#include "ui/main/modMain.h"

bool Screen::Save(const std::string& szFile, const wxRect& aPart) {
  wxBitmap aPicture(aPart.GetSize(), 24);
  wxScreenDC aScreen;
  wxMemoryDC(aPicture).Blit(wxPoint(), aPart.GetSize(), &aScreen, aPart.GetPosition());
  if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG)) wxImage::AddHandler(new wxPNGHandler);
  return aPicture.SaveFile(ToWx(szFile), wxBITMAP_TYPE_PNG);
}

// The shell's message for it: where the icon stands only the shell knows. The pointer is then not over the
// window, by which the program tells the message from a move of the mouse.
void Screen::ClickTrayIcon(bool bRight) {
  SetCursorPos(0, wxGetDisplaySize().y - 1);
  Settle();
  PostMessageA(static_cast<HWND>(modMain::MainWindow()->GetHWND()), WM_MOUSEMOVE, 1,
               bRight ? WM_RBUTTONUP : WM_LBUTTONUP);
  Settle();
}
