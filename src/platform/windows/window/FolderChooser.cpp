#include "platform/FolderChooser.h"

#include <wx/window.h>

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

std::string FolderChooser::Choose(wxWindow* pOwner, const std::string& szInstruction,
                                  const std::string& szStart) {
  BROWSEINFOA aRequest{};
  aRequest.hwndOwner = pOwner ? static_cast<HWND>(pOwner->GetHWND()) : nullptr;
  aRequest.lpszTitle = szInstruction.c_str();
  aRequest.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  if (Files::FolderExists(szStart)) {
    aRequest.lpfn = SelectStart;
    aRequest.lParam = reinterpret_cast<LPARAM>(szStart.c_str());
  }
  char szChosen[MAX_PATH] = "";
  if (const auto aChoice = SHBrowseForFolderA(&aRequest)) {
    if (!SHGetPathFromIDListA(aChoice, szChosen)) szChosen[0] = '\0';
    CoTaskMemFree(aChoice);
  }
  return szChosen;
}
