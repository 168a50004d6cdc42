#include "platform/FolderChooser.h"

#include <wx/dirdlg.h>

#include "resources/TextGlue.h"

std::string FolderChooser::Choose(wxWindow* pOwner, const std::string& szInstruction,
                                  const std::string& szStart) {
  wxDirDialog aDialog(pOwner, ToWx(szInstruction), ToWx(szStart), wxDD_DEFAULT_STYLE);
  return aDialog.ShowModal() == wxID_OK ? FromWx(aDialog.GetPath()) : std::string();
}
