#include "ui/system/FolderChooser.h"

#include <wx/dirdlg.h>

wxString FolderChooser::Choose(wxWindow* pOwner, const wxString& szInstruction, const wxString& szStart) {
  wxDirDialog aDialog(pOwner, szInstruction, szStart, wxDD_DEFAULT_STYLE);
  return aDialog.ShowModal() == wxID_OK ? aDialog.GetPath() : wxString();
}
