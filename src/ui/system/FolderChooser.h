// FolderChooser: the system's own window for choosing a folder. Waits for the operator.
#pragma once

#include <wx/string.h>

class wxWindow;

namespace FolderChooser {

// The chosen folder, empty when none was. Opens at szStart where that is a folder.
wxString Choose(wxWindow* pOwner, const wxString& szInstruction, const wxString& szStart);

}  // namespace FolderChooser
