#include "ui/system/FolderChooser.h"

#include <wx/window.h>

#include <string>

#include "platform/Files.h"
#include "platform/windows/System.h"

// clang-format off (needs windows.h before it)
#include <shlobj.h>
// clang-format on

namespace {

int CALLBACK SelectStart(HWND hDialog, UINT lMessage, LPARAM, LPARAM lStart) {
  if (lMessage == BFFM_INITIALIZED) SendMessageA(hDialog, BFFM_SETSELECTIONA, TRUE, lStart);
  return 0;
}

}  // namespace

wxString FolderChooser::Choose(wxWindow* pOwner, const wxString& szInstruction, const wxString& szStart) {
  const std::string szTitle = szInstruction.utf8_string(), szFolder = szStart.utf8_string();
  BROWSEINFOA aRequest{};
  aRequest.hwndOwner = pOwner ? static_cast<HWND>(pOwner->GetHWND()) : nullptr;
  aRequest.lpszTitle = szTitle.c_str();
  aRequest.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  if (Files::FolderExists(szFolder)) {
    aRequest.lpfn = SelectStart;
    aRequest.lParam = reinterpret_cast<LPARAM>(szFolder.c_str());
  }
  char szChosen[MAX_PATH] = "";
  if (const auto aChoice = SHBrowseForFolderA(&aRequest)) {
    if (!SHGetPathFromIDListA(aChoice, szChosen)) szChosen[0] = '\0';
    CoTaskMemFree(aChoice);
  }
  return wxString::FromUTF8(szChosen);
}
